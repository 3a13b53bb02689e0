"""One person's machine in a scratch folder: a home, settings, topics, an agent, nothing else."""
from __future__ import annotations

import json
import os
import random
import shutil
import signal
import stat
import subprocess
import tempfile
import time
from dataclasses import dataclass
from pathlib import Path
from typing import ClassVar

from attack import topics
from attack.topics import Topic

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent.parent
STAND_IN = ROOT / "tests" / "support" / "stand-in-agent.py"

# A sanitizer that found something ends the program with this, so that it cannot pass for a refusal.
SANITIZER_STATUS = 99
SANITIZED = ("AddressSanitizer", "LeakSanitizer", "runtime error:")


# Every scratch folder carries the process that made it, so that it can be told from one in use.
PREFIX = "vorle-attack-"


def scratch(name: str) -> Path:
    """A new folder in the temporary one."""
    return Path(tempfile.mkdtemp(prefix=f"{PREFIX}{os.getpid()}-{name}-"))


def sweep(mine: bool = False) -> None:
    """Removes what drivers that were killed left; `mine`: what this one made."""
    for folder in Path(tempfile.gettempdir()).glob(PREFIX + "*"):
        process = folder.name.removeprefix(PREFIX).partition("-")[0]
        if process.isdigit() and (int(process) == os.getpid() if mine
                                  else not Path("/proc", process).exists()):
            shutil.rmtree(folder, ignore_errors=True)


@dataclass
class Result:
    """How one start of the program ended."""

    status: int  # negative: the signal that ended it
    out: bytes
    err: str
    seconds: float
    peak_kb: int = 0
    hung: bool = False

    @property
    def crash(self) -> str:
        """Why this end is a crash; empty when it is none. A kill of ours is not asked about."""
        if self.hung:
            return "never ended"
        if self.status == SANITIZER_STATUS or any(word in self.err for word in SANITIZED):
            at = next((i for word in SANITIZED if (i := self.err.find(word)) >= 0), 0)
            return "sanitizer: " + self.err[at:at + 200]
        if self.status < 0:
            return f"ended by signal {-self.status}: {self.err[-200:]}"
        if self.status not in (0, 1, 2):
            return f"status {self.status}: {self.err[-200:]}"
        return ""

    @property
    def told(self) -> bool:
        """Whether a person was told something: a line that is no line of the log."""
        lines = [line.strip() for line in self.err.splitlines()]
        return any(line and not line.startswith("vorle: ") and " " in line for line in lines)


class World:
    """A scratch machine. Its agent is the stand-in of the tests, behind the real command line."""

    living: "ClassVar[list[World]]" = []

    def __init__(self, program: Path, name: str = "w") -> None:
        self.program = program
        self.root = scratch(name)
        World.living.append(self)
        self.home = self.root / "home"
        self.data = self.home / ".local" / "share" / "vorle"
        self.topics = self.data / "topics.json"
        self.settings = self.home / ".config" / "vorle" / "settings.json"
        self.cache = self.home / ".cache"
        self.data.mkdir(parents=True)
        self.settings.parent.mkdir(parents=True)
        self.cache.mkdir()
        self.sanitized = b"__asan_init" in program.read_bytes()

    def environment(self, **extra: str) -> dict[str, str]:
        env = {"HOME": str(self.home), "PATH": "/usr/local/bin:/usr/bin:/bin", "LANG": "C.UTF-8",
               "TZ": "Europe/Paris", "USER": "essai", "QT_QPA_PLATFORM": "offscreen",
               "ASAN_OPTIONS": f"exitcode={SANITIZER_STATUS}:detect_leaks=0:"
                               "allocator_may_return_null=1",
               "UBSAN_OPTIONS": f"exitcode={SANITIZER_STATUS}"}
        env.update(extra)
        return env

    def start(self, *words: str, env: dict[str, str] | None = None,
              out: int | None = subprocess.PIPE) -> subprocess.Popen[bytes]:
        return subprocess.Popen([str(self.program), *words], env=self.environment(**(env or {})),
                                cwd=self.home, stdin=subprocess.DEVNULL, stdout=out,
                                stderr=subprocess.PIPE, start_new_session=True)

    def run(self, *words: str, env: dict[str, str] | None = None, seconds: float = 90,
            kill_after: float | None = None) -> Result:
        """Runs the program to its end, or kills it after that many seconds."""
        begun = time.monotonic()
        process = self.start(*words, env=env)
        hung = False
        try:
            out, err = process.communicate(timeout=kill_after or seconds)
        except subprocess.TimeoutExpired:
            hung = kill_after is None
            process.kill()
            out, err = process.communicate()
        return Result(process.returncode, out, err.decode(errors="replace"),
                      time.monotonic() - begun, hung=hung)

    def measured(self, *words: str, seconds: float) -> Result:
        """As `run`, with the most memory it held."""
        begun = time.monotonic()
        with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
            process = subprocess.Popen([str(self.program), *words], env=self.environment(),
                                       cwd=self.home, stdin=subprocess.DEVNULL, stdout=out,
                                       stderr=err, start_new_session=True)
            end = begun + seconds
            done, status, usage = os.wait4(process.pid, os.WNOHANG)
            while not done and time.monotonic() < end:
                time.sleep(0.02)
                done, status, usage = os.wait4(process.pid, os.WNOHANG)
            if hung := not done:
                process.kill()
                _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
            out.seek(0)
            err.seek(0)
            return Result(process.returncode, out.read(), err.read().decode(errors="replace"),
                          time.monotonic() - begun, usage.ru_maxrss, hung)

    def give_topics(self, count: int, rng: random.Random, text: int = 600) -> list[Topic]:
        made = topics.samples(count, rng, text)
        topics.write(self.topics, made)
        return made

    def give_settings(self, **values: object) -> None:
        self.settings.write_text(json.dumps(values, ensure_ascii=False, indent=4), "utf-8")

    def give_agent(self, table: dict[str, object], script: str = "") -> None:
        """Installs the stand-in, signed in. `script`: the shell in front of it, when not the
        plain one; it finds the stand-in's command in $STAND_IN."""
        folder = self.home / ".local" / "bin"
        folder.mkdir(parents=True, exist_ok=True)
        agent = folder / "claude"
        body = script or 'exec $STAND_IN "$@"'
        agent.write_text(f'#!/bin/sh\nSTAND_IN="python3 -S {STAND_IN}"\n{body}\n')
        agent.chmod(agent.stat().st_mode | stat.S_IXUSR)
        (self.home / ".claude.json").write_text('{"oauthAccount": {"displayName": "Essai"}}')
        (self.home / "table.json").write_text(json.dumps(table, ensure_ascii=False), "utf-8")

    def processes(self) -> list[str]:
        """Every living process that is of this world, by what it was told or where it lives."""
        mark = str(self.root).encode()
        found = []
        for entry in Path("/proc").iterdir():
            if not entry.name.isdigit() or int(entry.name) == os.getpid():
                continue
            try:
                state = (entry / "stat").read_text().rsplit(")", 1)[1].split()[0]
                told = (entry / "environ").read_bytes() + (entry / "cmdline").read_bytes()
                there = os.readlink(entry / "cwd").encode() + told
            except (OSError, IndexError):
                continue
            if state != "Z" and mark in there:
                line = (entry / "cmdline").read_bytes().replace(b"\0", b" ").decode(errors="replace")
                found.append(f"{entry.name} {line[:120]}")
        return found

    def strays(self) -> list[str]:
        """Every file that only passes: what lies in temporary folders or beside a store. The socket
        of a window that was killed is none: the next window takes its place."""
        passing = []
        for path in self.root.rglob("*"):
            name = path.name
            if name.startswith("vorle-app-") or (path.is_dir() and not name.startswith("vorle-")):
                continue
            if ".vorle-" in name or name.startswith(("vorle-", "qt_temp")) or (
                    path.parent.name == "tmp"):
                passing.append(str(path.relative_to(self.root)))
        return passing

    def settle(self, seconds: float = 5) -> tuple[list[str], list[str]]:
        """What still lives and lies there once that long has passed, or nothing at once."""
        end = time.monotonic() + seconds
        while True:
            left = self.processes(), self.strays()
            if not any(left) or time.monotonic() >= end:
                return left
            time.sleep(0.1)

    def close(self) -> None:
        for line in self.processes():
            try:
                os.kill(int(line.split()[0]), signal.SIGKILL)
            except OSError:
                pass
        shutil.rmtree(self.root, ignore_errors=True)
        if self in World.living:
            World.living.remove(self)

    def __enter__(self) -> "World":
        return self

    def __exit__(self, *_: object) -> None:
        self.close()
