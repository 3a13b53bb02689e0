"""Every call of every save failing in turn: the old file or the new one, a status and a sentence."""
from __future__ import annotations

import errno
import json
import random
from collections import Counter
from dataclasses import dataclass
from pathlib import Path

from attack import topics
from attack.parallel import WORKERS, each
from attack.rows import Row
from attack.saving import Save, decide, ended_badly, populate, lost, set_minutes
from attack.shim import ERRORS, ONLY_NOTE, Shim
from attack.web import Site, page
from attack.world import World

ONCE, EVER, ITS_NAME = 0, 1, 2


@dataclass(frozen=True)
class Failing:
    """One failure: which call, of which name, with what, and whether it lasts."""

    what: str  # "trier" or "reglages"
    call: str
    nth: int
    error: int
    ever: int
    half: bool = False

    def __str__(self) -> str:
        lasting = {ONCE: "once", EVER: "and every later one", ITS_NAME: "and each later one of it"}
        return (f"{self.what}: {self.call} number {self.nth} fails with "
                f"{errno.errorcode[self.error]}, {lasting[self.ever]}"
                + (", half written" if self.half else ""))


def calls_of(world: World, shim: Shim, what: str, rng: random.Random) -> dict[str, int]:
    """How often such a save makes each call on our files."""
    populate(world, rng)
    save = save_for(world, what, rng)
    world.run(*save.words, env=shim.environment(world, nth=1, error=ONLY_NOTE, ever=EVER))
    made = Counter(line.split()[0] for line in shim.fired(world))
    return {call: made[call] for call in ERRORS}


def save_for(world: World, what: str, rng: random.Random) -> Save:
    return (decide(topics.read(world.topics), rng) if what == "trier" else set_minutes(world, rng))


def plan(world: World, shim: Shim, rng: random.Random) -> list[Failing]:
    cases = []
    for what in ("trier", "reglages"):
        for call, count in calls_of(world, shim, what, rng).items():
            for nth in range(1, min(count, 40) + 1):
                for error in ERRORS[call]:
                    for ever in (ONCE, EVER, ITS_NAME):
                        cases.append(Failing(what, call, nth, error, ever))
                if call == "write":
                    cases.append(Failing(what, call, nth, errno.ENOSPC, ITS_NAME, half=True))
    return cases


def attempt(world: World, shim: Shim, case: Failing, seed: int, row: Row) -> None:
    rng = random.Random(f"{seed} {case}")
    before = topics.read(world.topics)
    settings = json.loads(world.settings.read_bytes())
    save = save_for(world, case.what, rng)
    env = shim.environment(world, nth=case.nth, error=case.error, calls=case.call,
                           ever=case.ever, half=case.half)
    result = world.run(*save.words, env=env)
    if not shim.fired(world):
        return
    row.draws += 1
    fault = ended_badly(save, result, world) or lost(world, before, settings)
    asides = [path for folder in (world.data, world.settings.parent)
              for path in folder.glob("*.illisible-*")]
    for aside in asides:
        fault = fault or f"a healthy file was set aside as {aside.name}"
        aside.unlink()
    if fault:
        row.fault(f"{case}: {fault}")
        populate(world, rng)


def saves(program: Path, shim: Shim, draws: int, seed: int) -> Row:
    row = Row("calls", "each call of a save (open, read, write, fsync, rename, close, stat, lock, …) "
                       "failing in turn with EIO, ENOSPC, EDQUOT, EMFILE, EACCES, …, once or for good")
    rng = random.Random(seed)
    with World(program, "calls") as first:
        cases = plan(first, shim, rng)
    rng.shuffle(cases)
    chosen = cases[:draws]
    row.note = f"{len(chosen)} of {len(cases)} cases that such saves have"

    def share(number: int) -> Row:
        part = Row(row.area, row.tried)
        with World(program, "calls") as world:
            populate(world, random.Random(seed))
            for case in chosen[number::WORKERS]:
                attempt(world, shim, case, seed, part)
            world.run("trier", topics.identity(1), "garder")
            world.run("reglages", "weeklyMinutes", "90")
            processes, files = world.settle(5)
            for left in processes + files:
                part.fault(f"left behind after the next start: {left}")
        return part

    for part in each(share, range(WORKERS)):
        row.draws += part.draws
        row.faults += part.faults
    return row


RUN_CALLS = ("open", "write", "fsync", "rename", "close", "mkdir")


def run_once(program: Path, shim: Shim, site: Site, case: Failing, seed: int, row: Row) -> None:
    """A search run during which one of our writes fails."""
    rng = random.Random(seed)
    with World(program, "run") as world:
        populate(world, rng, count=6)
        world.give_settings(interests=["Rust"], projects={"Potager": ""},
                            projectDescriptions={"Potager": "un carnet de jardin"}, calibrated=True)
        settings = json.loads(world.settings.read_bytes())
        links = [site.link(f"/{number}") for number in range(4)]
        world.give_agent({"candidates": {"**Potager**": candidates(links[:2], "Potager"),
                                         "Topics the person": candidates(links[2:], "Rust")}})
        before = topics.read(world.topics)
        env = shim.environment(world, nth=case.nth, error=case.error, calls=case.call,
                               ever=case.ever, half=case.half)
        result = world.run("fouille", env={**env, "VORLE_ALLOW_LOOPBACK": "1"})
        if not shim.fired(world):
            return
        row.draws += 1
        fault = result.crash or lost(world, before, settings)
        if not fault and result.status != 0 and not result.told:
            fault = f"status {result.status} without a word"
        if not fault and result.status == 0:
            added = len(topics.read(world.topics)) - len(before)
            searched = "lastSearch" in json.loads(world.settings.read_bytes())
            if added < len(links):
                fault = f"status 0, and {len(links) - added} judged topics are not on disk"
            elif not searched and "recherche" not in result.err and "fouille" not in result.err:
                fault = "status 0 without a word, and the run's date is not on disk"
        processes, files = world.settle(5)
        files = [] if case.call == "close" else files
        fault = fault or next((f"left behind: {left}" for left in processes + files), "")
        if fault:
            where = shim.fired(world)[0].replace(str(world.root), "")
            row.fault(f"{case} ({where}): {fault}")


def candidates(links: list[str], about: str) -> list[dict[str, str]]:
    return [{"title": f"Nouvelle {link[-12:]}", "url": link, "kind": "article", "about": about}
            for link in links]


def runs(program: Path, shim: Shim, draws: int, seed: int) -> Row:
    row = Row("calls", "the same during a search run, on topics, settings and the files beside")
    cases = [Failing("fouille", call, nth, ERRORS[call][nth % len(ERRORS[call])], ever)
             for call in RUN_CALLS for nth in range(1, 31) for ever in (ONCE, EVER)]
    random.Random(seed).shuffle(cases)
    with Site() as site:
        for number in range(4):
            site.serve(f"/{number}", page(f"Nouvelle {number}", "mot " * 400))
        each(lambda case: run_once(program, shim, site, case, seed, row), cases[:draws])
    return row


def run(program: Path, draws: int, seed: int) -> list[Row]:
    shim = Shim()
    try:
        return [saves(program, shim, max(4, draws * 5 // 6), seed),
                runs(program, shim, max(4, draws // 6), seed)]
    finally:
        shim.close()
