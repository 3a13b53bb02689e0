"""The command: which areas, how much of each, and the table in the end."""
from __future__ import annotations

import argparse
import datetime
import importlib
import os
import signal
import subprocess
import sys
import time
import traceback
from pathlib import Path

from attack import slot_table
from attack.rows import Row, recorded, table
from attack.world import ROOT, World, sweep

# Each area with its draws: in full, and in the short form that the tests run.
AREAS: dict[str, tuple[int, int]] = {
    "kills": (1000, 24),
    "ends": (180, 8),
    "calls": (1200, 40),
    "disks": (120, 8),
    "files": (1000, 40),
    "servers": (270, 36),
    "addresses": (1300, 120),
    "places": (99, 8),
    "pages": (400, 40),
    "answers": (120, 8),
    "names": (1000, 60),
    "clocks": (900, 150),
}


def program_at(given: str | None) -> Path:
    """The program under attack: the one named, else a build's. @raises SystemExit without one"""
    places = [Path(given)] if given else [ROOT / "build" / preset / "bin" / "vorle"
                                          for preset in ("release", "asan", "dev")]
    for place in places:
        if place.is_file() and os.access(place, os.X_OK):
            return place.resolve()
    sys.exit("scripts/attack: no program; build one (cmake --preset release && "
             "ninja -C build/release vorle vorle_attack_probe) or give --program")


def commit() -> str:
    done = subprocess.run(["git", "rev-parse", "--short", "HEAD"], cwd=ROOT, capture_output=True,
                          text=True, check=False)
    return done.stdout.strip() or "unknown"


def run_area(name: str, program: Path, draws: int, seed: int) -> list[Row]:
    try:
        area = importlib.import_module(f"attack.{name}")
        return area.run(program, draws, seed)
    except Exception:  # an area that falls is told as one, and the others go on
        row = Row(name, "the area itself")
        row.fault("the driver failed: " + traceback.format_exc()[-380:])
        return [row]


def leave(number: int, _: object) -> None:
    """Asked to end in the middle: nothing of ours lives on or stays behind."""
    for world in list(World.living):
        world.close()
    sweep(mine=True)
    os._exit(128 + number)


def main(words: list[str]) -> int:
    parser = argparse.ArgumentParser(prog="scripts/attack",
                                     description="Attacks the built program and counts what is lost.")
    parser.add_argument("areas", nargs="*", metavar="area", help=", ".join(AREAS))
    parser.add_argument("--short", action="store_true", help="a minute or two of it")
    parser.add_argument("--draws", type=int, help="how often, for each area named")
    parser.add_argument("--seed", type=int, default=20261121)
    parser.add_argument("--program", help="the program to attack")
    parser.add_argument("--record", action="store_true",
                        help="put the rows into docs/reliability.md")
    parser.add_argument("--slots", action="store_true",
                        help="print what each slot of the schedule got, and nothing else")
    asked = parser.parse_args(words)
    unknown = [area for area in asked.areas if area not in AREAS]
    if unknown:
        parser.error(f"no such area: {', '.join(unknown)}")
    program = program_at(asked.program)
    if asked.slots:
        return 1 if slot_table.show(program) else 0
    sweep()
    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, leave)
    rows: list[Row] = []
    begun = time.monotonic()
    for area in asked.areas or AREAS:
        draws = asked.draws or AREAS[area][1 if asked.short else 0]
        started = time.monotonic()
        print(f"{area}: {draws} draws…", file=sys.stderr, flush=True)
        found = run_area(area, program, draws, asked.seed)
        rows += found
        missed = [fault for row in found for fault in row.faults]
        print(f"{area}: {len(missed)} faults, {time.monotonic() - started:.0f} s", file=sys.stderr,
              flush=True)
        for fault in missed[:20]:
            print(f"  {fault}", file=sys.stderr, flush=True)
    today = datetime.date.today().isoformat()
    when = f"{today}, {commit()}, {program.parent.parent.name}"
    print(f"Seed {asked.seed}, {time.monotonic() - begun:.0f} s.\n")
    print(table(rows, when))
    if asked.record:
        page = ROOT / "docs" / "reliability.md"
        page.write_text(recorded(page.read_text("utf-8"), rows, when), "utf-8")
    return 0 if all(row.held for row in rows) else 1
