"""kill -9 in the middle of saves: at every call on our files in turn, and at any moment."""
from __future__ import annotations

import json
import random
import subprocess
import time
from pathlib import Path

from attack import topics
from attack.parallel import each, shares
from attack.rows import Row
from attack.saving import decide, populate, lost, set_minutes
from attack.shim import KILL, Shim
from attack.world import World


def one_share(program: Path, shim: Shim, draws: int, seed: int) -> tuple[Row, Row]:
    """That many kills on one machine, one after the other: each finds what the last one left."""
    steps = Row("kills", "kill -9 at each call on our files in turn, in saves of topics and settings")
    moments = Row("kills", "kill -9 at any moment of such a save")
    rng = random.Random(seed)
    with World(program, "kills") as world:
        populate(world, rng)
        usual = max(world.run("trier", topics.identity(1), "garder").seconds, 0.02)
        nth = 1 + rng.randrange(3)
        while steps.draws + moments.draws < draws:
            before = topics.read(world.topics)
            settings = json.loads(world.settings.read_bytes())
            save = decide(before, rng) if rng.random() < 0.7 else set_minutes(world, rng)
            stepwise = rng.random() < 0.6
            if stepwise:
                env = shim.environment(world, nth=nth, error=KILL, half=rng.random() < 0.5)
                result = world.run(*save.words, env=env)
                if not shim.fired(world):  # past the last call: from the start again
                    nth = 1 + rng.randrange(3)
                    continue
                where = f"at call {nth}, {shim.fired(world)[-1].split()[0]}"
                nth += 1 + rng.randrange(3)
                row = steps
            else:
                after = rng.uniform(0.2, 1.1) * usual
                result = world.run(*save.words, kill_after=after)
                where = f"after {after * 1000:.0f} ms"
                row = moments
            row.draws += 1
            fault = lost(world, before, settings)
            if not fault and result.status == 0 and not save.happened(world):
                fault = "status 0, and the change is not on disk"
            if result.status not in (-9, 0, 1):
                fault = fault or result.crash
            if fault:
                row.fault(f"seed {seed}: killed {where} in {' '.join(save.words)}: {fault}")
                populate(world, rng)
        check_strays(world, steps)
    return steps, moments


def open_window(program: Path, draws: int, seed: int) -> Row:
    """The open window takes commands from the terminal, and is killed among them."""
    row = Row("kills", "kill -9 of the open window while the terminal hands it decisions")
    rng = random.Random(seed)
    with World(program, "window") as world:
        populate(world, rng)
        while row.draws < draws:
            before = topics.read(world.topics)
            known = {topic["id"]: topic for topic in before}
            window = world.start(out=subprocess.DEVNULL)
            time.sleep(0.3)
            end = time.monotonic() + rng.uniform(0.2, 1.5)
            done = []
            while time.monotonic() < end:
                save = decide(list(known.values()), rng)
                process = world.start(*save.words, out=subprocess.DEVNULL)
                if time.monotonic() + 0.1 > end:
                    time.sleep(rng.uniform(0, 0.05))
                    window.kill()
                try:
                    process.communicate(timeout=30)
                except subprocess.TimeoutExpired:
                    process.kill()
                    row.fault(f"seed {seed}: a command hung when the window was killed")
                if process.returncode == 0:
                    known[save.topic]["status"] = save.status
                    done = [one for one in done if one.topic != save.topic] + [save]
            window.kill()
            window.communicate()
            row.draws += 1
            fault = topics.losses(before, topics.read(world.topics))
            for save in done:
                if not save.happened(world):
                    fault = fault or f"{' '.join(save.words)} ended with 0, and is not on disk"
            if fault:
                row.fault(f"seed {seed}: {fault}")
        check_strays(world, row)
    return row


def check_strays(world: World, row: Row) -> None:
    """What the killed ones left goes at the next start."""
    end = world.run("trier", topics.identity(2), "retirer")
    if end.status != 0:
        row.fault(f"the next start failed: {end.err[-200:]}")
    world.run("reglages", "weeklyMinutes", "90")
    processes, files = world.settle(5)
    for left in processes + files:
        row.fault(f"left behind after the next start: {left}")


def run(program: Path, draws: int, seed: int) -> list[Row]:
    shim = Shim()
    try:
        parts = each(lambda share: one_share(program, shim, *share), shares(draws, seed))
    finally:
        shim.close()
    windows = each(lambda share: open_window(program, *share), shares(max(2, draws // 16), seed))
    parts = [(*rows, window) for rows, window in zip(parts, windows)]
    rows = list(parts[0])
    for more in parts[1:]:
        for row, other in zip(rows, more):
            row.draws += other.draws
            row.faults += other.faults
    return rows
