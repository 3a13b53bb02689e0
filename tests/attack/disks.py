"""Full disks: saves on a small disk of our own with so many bytes left, and under a size limit."""
from __future__ import annotations

import json
import os
import random
import resource
import subprocess
from pathlib import Path

from attack import namespace, topics
from attack.rows import Row, left_out
from attack.saving import decide, ended_badly, populate, lost, set_minutes
from attack.world import World

TRIED = "saves on a disk (a small tmpfs) with 0 to 200 pages left, in space and in files"
LIMITED = "the same under a limit on a file's size (`ulimit -f`)"
DISK = "1536k"


def fill(folder: Path, left: int) -> None:
    """Takes the disk's space but for that many bytes."""
    space = os.statvfs(folder)
    size = max(0, space.f_bavail * space.f_frsize - left)
    with (folder / "filler").open("wb") as filler:
        for _ in range(size // 4096):
            filler.write(bytes(4096))


def one_save(world: World, rng: random.Random, row: Row, left: int, where: str) -> None:
    before = topics.read(world.topics)
    settings = json.loads(world.settings.read_bytes())
    save = decide(before, rng) if rng.random() < 0.6 else set_minutes(world, rng)
    result = world.run(*save.words)
    row.draws += 1
    fault = ended_badly(save, result, world) or lost(world, before, settings)
    if fault:
        row.fault(f"{where} {left}, {save.words[0]}: {fault}")


def mend(world: World, rng: random.Random) -> None:
    """After a loss, something to lose again."""
    try:
        topics.read(world.topics)
        json.loads(world.settings.read_bytes())
    except (ValueError, OSError):
        populate(world, rng)


def small_disk(program: Path, draws: int, seed: int) -> list[Row]:
    """In a mount namespace of its own: the scratch home lies on a disk of 1.5 MB."""
    row = Row("disks", TRIED)
    rng = random.Random(seed)
    with World(program, "disk") as world:
        mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={DISK},nr_inodes=60",
                                  "tmpfs", str(world.home)], capture_output=True, text=True,
                                 check=False)
        if mounted.returncode != 0:
            return [left_out("disks", TRIED, mounted.stderr.strip()[:100])]
        for folder in (world.data, world.settings.parent, world.cache):
            folder.mkdir(parents=True, exist_ok=True)
        populate(world, rng, count=40)
        try:
            world.run("sujets")  # makes the folders it wants
            while row.draws < draws:
                left = rng.choice((0, 1, 2, 3, rng.randrange(4, 30), rng.randrange(30, 200)))
                if rng.random() < 0.15:
                    crowd(world.home)
                else:
                    fill(world.home, left * 4096)
                one_save(world, rng, row, left, "pages left")
                for filler in world.home.glob("filler*"):
                    filler.unlink()
                mend(world, rng)
            for stray in world.settle(5)[1]:
                row.fault(f"left behind: {stray}")
        finally:
            subprocess.run(["umount", str(world.home)], check=False)
    return [row]


def crowd(folder: Path) -> None:
    """Takes every file that the disk may hold."""
    number = 0
    try:
        while True:
            (folder / f"filler{number}").touch()
            number += 1
    except OSError:
        return


def size_limit(program: Path, draws: int, seed: int) -> Row:
    row = Row("disks", LIMITED)
    rng = random.Random(seed)
    with World(program, "limit") as world:
        populate(world, rng)
        size = world.topics.stat().st_size
        old = resource.getrlimit(resource.RLIMIT_FSIZE)
        while row.draws < draws:
            limit = rng.choice((0, 1, 200, 4096, size // 2, size - 1, size + 200))
            resource.setrlimit(resource.RLIMIT_FSIZE, (limit, old[1]))
            try:
                one_save(world, rng, row, limit, "largest file, in bytes:")
            finally:
                resource.setrlimit(resource.RLIMIT_FSIZE, old)
            mend(world, rng)
        for stray in world.settle(5)[1]:
            row.fault(f"left behind: {stray}")
    return row


def run(program: Path, draws: int, seed: int) -> list[Row]:
    rows = [size_limit(program, max(2, draws // 4), seed)]
    inside = namespace.run("disks", "small_disk", program, draws - rows[0].draws, seed, net=False)
    return rows + (inside or [left_out("disks", TRIED, "this machine allows no mount of our own")])
