"""Machines where something is missing or odd: every command ends with a status and a sentence, --help
always answers, and what is saved is the user's alone."""
from __future__ import annotations

import os
import random
import resource
import stat
import subprocess
import time
from dataclasses import dataclass, field
from pathlib import Path
from typing import Callable

from attack import topics
from attack.parallel import each
from attack.rows import Row
from attack.world import Result, World

LONGEST = 20  # seconds; nothing here is worth waiting for


@dataclass
class Place:
    """One odd machine."""

    name: str
    set: dict[str, str] = field(default_factory=dict)
    unset: tuple[str, ...] = ()
    prepare: Callable[[World], None] = lambda world: None
    limits: dict[int, int] = field(default_factory=dict)
    out: str = ""  # where standard output goes, when not to us
    umask: int = 0o022
    full_output: bool = False


def fifo(name: str) -> Callable[[World], None]:
    return lambda world: os.mkfifo(world.root / name)


def folder(name: str, mode: int = 0o700) -> Callable[[World], None]:
    def make(world: World) -> None:
        (world.root / name).mkdir(exist_ok=True)
        (world.root / name).chmod(mode)

    return make


def text(name: str, content: str = "") -> Callable[[World], None]:
    def make(world: World) -> None:
        path = world.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(content)

    return make


def places() -> list[Place]:
    """`@` in a value stands for the world's folder."""
    return [
        Place("no HOME", unset=("HOME",)), Place("an empty HOME", {"HOME": ""}),
        Place("a HOME that is not there", {"HOME": "@/nowhere"}),
        Place("a HOME that is a file", {"HOME": "@/file"}, prepare=text("file")),
        Place("a relative HOME", {"HOME": "somewhere"}),
        Place("a relative XDG_DATA_HOME", {"XDG_DATA_HOME": "elsewhere"}),
        Place("a relative XDG_CONFIG_HOME", {"XDG_CONFIG_HOME": "elsewhere"}),
        Place("a relative XDG_CACHE_HOME", {"XDG_CACHE_HOME": "./elsewhere"}),
        Place("an XDG_DATA_HOME that is a file", {"XDG_DATA_HOME": "@/file"}, prepare=text("file")),
        Place("a cache that is a file", {"XDG_CACHE_HOME": "@/file"}, prepare=text("file")),
        Place("a runtime folder that is not there", {"XDG_RUNTIME_DIR": "@/nowhere"}),
        Place("a runtime folder for everybody", {"XDG_RUNTIME_DIR": "@/open"},
              prepare=folder("open", 0o777)),
        Place("a TMPDIR that is not there", {"TMPDIR": "@/nowhere"}),
        Place("a TMPDIR for the group", {"TMPDIR": "@/group"}, prepare=folder("group", 0o770)),
        Place("a TMPDIR that is a file", {"TMPDIR": "@/file"}, prepare=text("file")),
        Place("a relative TMPDIR", {"TMPDIR": "tmp"}),
        Place("a store that is a folder", {"VORLE_STORE": "@/box"}, prepare=folder("box")),
        Place("a store that is a pipe", {"VORLE_STORE": "@/pipe"}, prepare=fifo("pipe")),
        Place("a store that is a device", {"VORLE_STORE": "/dev/full"}),
        Place("a store in a folder that is not there", {"VORLE_STORE": "@/new/sub/topics.json"}),
        Place("a store whose name is no UTF-8", {"VORLE_STORE": "@/t\udcff\udce9.json"}),
        Place("a relative store", {"VORLE_STORE": "topics.json"}),
        Place("settings that are a pipe", {"VORLE_SETTINGS": "@/pipe"}, prepare=fifo("pipe")),
        Place("settings that are a folder", {"VORLE_SETTINGS": "@/box"}, prepare=folder("box")),
        Place("settings whose name is no UTF-8", {"VORLE_SETTINGS": "@/s\udcff.json"}),
        Place("a fresh empty lock on settings",
              prepare=text("home/.config/vorle/settings.json.lock")),
        Place("a fresh empty lock on topics",
              prepare=text("home/.local/share/vorle/topics.json.lock")),
        Place("16 descriptors", limits={resource.RLIMIT_NOFILE: 16}),
        Place("one process", limits={resource.RLIMIT_NPROC: 1}),
        Place("files of no byte", limits={resource.RLIMIT_FSIZE: 0}),
        Place("a full standard output", out="/dev/full", full_output=True),
        Place("an odd locale", {"LANG": "xx_YY.ZZ", "LC_ALL": "tlh", "LANGUAGE": "\x1b"}),
        Place("an odd zone", {"TZ": ":/dev/zero"}), Place("no search path", unset=("PATH",)),
        Place("an umask of nothing", umask=0), Place("an umask of everything", umask=0o777),
        Place("no variable at all", unset=("HOME", "PATH", "LANG", "TZ", "USER")),
    ]


COMMANDS = (("--help",), ("--version",), ("reglages", "weeklyMinutes", "90"), ("sujets", "--json"),
            ("trier", topics.identity(1), "garder"), ("consignes",), ("agents",), ("fouille",))


def start(world: World, place: Place, words: tuple[str, ...]) -> Result:
    env = {**world.environment(), **{key: value.replace("@", str(world.root))
                                     for key, value in place.set.items()}}
    for key in place.unset:
        env.pop(key, None)

    def narrow() -> None:
        os.umask(place.umask)
        for limit, value in place.limits.items():
            resource.setrlimit(limit, (value, resource.getrlimit(limit)[1]))

    out = open(place.out, "wb") if place.out else None
    begun = time.monotonic()
    process = subprocess.Popen([str(world.program), *words], cwd=world.root, env=env,
                               stdin=subprocess.DEVNULL, stdout=out or subprocess.PIPE,
                               stderr=subprocess.PIPE, preexec_fn=narrow, start_new_session=True)
    hung = False
    try:
        shown, err = process.communicate(timeout=LONGEST)
    except subprocess.TimeoutExpired:
        hung = True
        process.kill()
        shown, err = process.communicate()
    if out:
        out.close()
    return Result(process.returncode, shown or b"", err.decode(errors="replace"),
                  time.monotonic() - begun, hung=hung)


def open_to_others(world: World) -> str:
    """A file of ours that others can read; empty when there is none."""
    for path in [*world.data.iterdir(), *world.settings.parent.iterdir()]:
        if path.is_file() and path.stat().st_mode & (stat.S_IRWXG | stat.S_IRWXO):
            return f"{path.name} has mode {stat.S_IMODE(path.stat().st_mode):o}"
    return ""


def judge(world: World, place: Place, words: tuple[str, ...], result: Result) -> str:
    if result.crash:
        return result.crash
    if place.full_output:
        prints = words[0] in ("--help", "--version", "sujets", "consignes", "agents")
        return "status 0 on a full output" if prints and result.status == 0 else ""
    if words[0] in ("--help", "--version") and (result.status != 0 or not result.out):
        return f"status {result.status}: {result.err[-120:]}"
    if result.status != 0 and not result.told:
        return f"status {result.status} without a word: {result.err[-120:]}"
    if (world.root / "elsewhere").exists():
        return "a relative path was taken"
    return open_to_others(world) if place.umask != 0o022 else ""


def one(program: Path, place: Place, seed: int) -> tuple[int, list[str]]:
    rng = random.Random(seed)
    faults = []
    with World(program, "places") as world:
        made = world.give_topics(3, rng, 100)
        world.give_settings(interests=["Rust"], calibrated=True)
        world.topics.chmod(0o600)
        world.settings.chmod(0o600)
        world.give_agent({"candidates": {}})
        place.prepare(world)
        for words in COMMANDS:
            if fault := judge(world, place, words, start(world, place, words)):
                faults.append(f"{place.name}: {words[0]}: {fault}")
        if missing := topics.losses(made, topics.read(world.topics)):
            faults.append(f"{place.name}: {missing}")
    return len(COMMANDS), faults


def run(program: Path, draws: int, seed: int) -> list[Row]:
    row = Row("places", "machines without a home, a cache, descriptors, processes; pipes, folders and "
                        "names of no language for files; a full output; odd locks, zones and masks")
    chosen = places()
    random.Random(seed).shuffle(chosen)
    for count, faults in each(lambda place: one(program, place, seed), chosen[:draws]):
        row.draws += count
        for fault in faults:
            row.fault(fault)
    return [row]
