"""Runs ended in every way: nothing judged is lost, and neither process nor file is left behind."""
from __future__ import annotations

import random
import signal
import subprocess
import time
from dataclasses import dataclass
from pathlib import Path

from attack import topics
from attack.parallel import each, shares
from attack.rows import Row
from attack.saving import populate
from attack.web import Site, page
from attack.world import World

# What stands between us and the agent: npm installs launchers, and agents start tools of their own.
SHAPES = {
    "the agent itself": "",
    "an agent behind a shell": '$STAND_IN "$@"',
    "behind two launchers": 'sh -c \'"$@" & wait $!\' launcher $STAND_IN "$@"',
    "with a tool in a session of its own": 'setsid sleep 300 & exec $STAND_IN "$@"',
    "with a daemon that let go of everything":
        '(setsid sh -c "sleep 300 & sleep 301" </dev/null >/dev/null 2>&1 &); exec $STAND_IN "$@"',
    "deaf to signals": 'trap "" TERM INT HUP; $STAND_IN "$@"',
}
ENDS: dict[str, signal.Signals | None] = {
    "kill -9": signal.SIGKILL, "SIGTERM": signal.SIGTERM, "SIGINT": signal.SIGINT,
    "SIGHUP": signal.SIGHUP, "its own end": None,
}
PAGES = 6


@dataclass(frozen=True)
class Case:
    shape: str
    end: str
    slow: bool  # the agent hangs rather than answers


def prepare(world: World, site: Site, case: Case, rng: random.Random) -> None:
    populate(world, rng, count=5)
    world.give_settings(interests=["Rust"], projects={"Potager": ""},
                        projectDescriptions={"Potager": "un carnet de jardin"}, calibrated=True)
    links = [site.link(f"/{number}") for number in range(PAGES)]

    def bring(chosen: list[str], about: str) -> list[dict[str, str]]:
        return [{"title": "Une nouvelle", "url": link, "kind": "article", "about": about}
                for link in chosen]

    hanging = case.slow and case.end != "its own end"
    world.give_agent({"candidates": {"**Potager**": bring(links[:3], "Potager"),
                                     "Topics the person": "hang" if hanging
                                     else bring(links[3:], "Rust")},
                      "seconds": 0.1, "delays": {"Topics the person": 0.4}}, SHAPES[case.shape])


def end_it(process: subprocess.Popen[bytes], case: Case, after: float) -> int:
    """Ends the run as the case says, and gives its status. @raises TimeoutExpired"""
    number = ENDS[case.end]
    try:
        process.communicate(timeout=after if number else 90)
    except subprocess.TimeoutExpired:
        if number is None:
            raise
        process.send_signal(number)
        process.communicate(timeout=20)
    return process.returncode


def attempt(world: World, site: Site, case: Case, rng: random.Random, usual: float) -> str:
    """One run ended; what was wrong about it, or nothing."""
    prepare(world, site, case, rng)
    before = topics.read(world.topics)
    process = world.start("fouille", env={"VORLE_ALLOW_LOOPBACK": "1"}, out=subprocess.DEVNULL)
    try:
        status = end_it(process, case, rng.uniform(0.1, 1.1) * usual)
    except subprocess.TimeoutExpired:
        process.kill()
        process.communicate()
        return "the run did not end within 20 s of being asked to"
    killed = status == -signal.SIGKILL
    # Before it listens for signals they end it at once: it has started nothing yet.
    if status not in (0, 1) and status != -(ENDS[case.end] or 0):
        return f"ended with status {status}"
    processes, files = settle(world, killed)
    if processes:
        return f"still alive 5 s after: {processes[0]}"
    if files and not killed:
        return f"left behind 5 s after: {files[0]}"
    kept = topics.read(world.topics)
    missing = topics.losses(before, kept)
    if missing:
        return missing
    # The next start takes up what the run left.
    world.give_agent({"candidates": {}})
    again = world.run("fouille", env={"VORLE_ALLOW_LOOPBACK": "1"})
    after = topics.read(world.topics)
    if again.crash:
        return "the next run: " + again.crash
    if missing := topics.losses(kept, after):
        return "after the next run: " + missing
    if any(one["status"] == "pending" for one in after):
        return "a judged topic is still pending after the next run"
    processes, files = world.settle(5)
    left = processes + files
    return f"left behind after the next start: {left[0]}" if left else ""


def settle(world: World, killed: bool) -> tuple[list[str], list[str]]:
    """After five seconds at most; a killed one can take no file away, the next start does."""
    end = time.monotonic() + 5
    while killed and world.processes() and time.monotonic() < end:
        time.sleep(0.1)
    return (world.processes(), []) if killed else world.settle(5)


def one_share(program: Path, site: Site, cases: list[Case], seed: int) -> list[tuple[Case, str]]:
    rng = random.Random(seed)
    with World(program, "ends") as world:
        plain = Case("the agent itself", "its own end", slow=False)
        prepare(world, site, plain, rng)
        usual = world.run("fouille", env={"VORLE_ALLOW_LOOPBACK": "1"}).seconds
        found = []
        for case in cases:
            found.append((case, attempt(world, site, case, rng, usual)))
            for line in world.processes():  # a fault is told once
                subprocess.run(["kill", "-9", line.split()[0]], check=False)
            for stray in world.strays():
                (world.root / stray).unlink(missing_ok=True)
        return found


def run(program: Path, draws: int, seed: int) -> list[Row]:
    rng = random.Random(seed)
    every = [Case(shape, end, slow) for shape in SHAPES for end in ENDS for slow in (False, True)]
    rng.shuffle(every)
    # The worst first: a kill while the agent hangs behind something.
    every.sort(key=lambda case: not (case.end == "kill -9" and case.slow))
    cases = (every * (draws // len(every) + 1))[:draws]
    parts = shares(len(cases), seed)
    with Site() as site:
        for number in range(PAGES):
            site.serve(f"/{number}", page(f"Nouvelle {number}", "mot " * 400))
        results = each(lambda part: one_share(program, site, cases[part[0]::len(parts)], part[1]),
                       list(enumerate(share[1] for share in parts)))
    rows = {end: Row("ends", f"runs ended by {end}, the agent plain or behind launchers, daemons, deaf")
            for end in ENDS}
    for case, fault in (pair for part in results for pair in part):
        rows[case.end].draws += 1
        if fault:
            hanging = ", hanging" if case.slow else ""
            rows[case.end].fault(f"{case.end}, {case.shape}{hanging}: {fault}")
    return [row for row in rows.values() if row.draws]
