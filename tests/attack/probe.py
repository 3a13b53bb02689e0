"""The part of the program that no command reaches, asked through a small program beside it."""
from __future__ import annotations

import json
import subprocess
from pathlib import Path
from typing import Any

from attack.world import World

NAME = "vorle_attack_probe"


def path_for(program: Path) -> Path | None:
    probe = program.parent / NAME
    return probe if probe.is_file() else None


MISSING = f"{NAME} is not built: ninja -C BUILD {NAME}"


class Probe:
    """A conversation with it: a line asked, a line answered."""

    def __init__(self, probe: Path, mode: str, world: World, env: dict[str, str]) -> None:
        self.errors = (world.root / "probe-errors").open("wb+")
        self.process = subprocess.Popen([str(probe), mode], env=env, cwd=world.home,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=self.errors)

    def ask(self, question: dict[str, Any]) -> dict[str, Any]:
        """@raises RuntimeError when it died over the question"""
        assert self.process.stdin and self.process.stdout
        self.process.stdin.write(json.dumps(question).encode() + b"\n")
        self.process.stdin.flush()
        line = self.process.stdout.readline()
        if not line:
            self.errors.seek(0)
            raise RuntimeError("the probe died: "
                               + self.errors.read().decode(errors="replace")[-300:])
        return json.loads(line)

    def close(self) -> None:
        assert self.process.stdin
        self.process.stdin.close()
        self.process.wait(timeout=30)
        self.errors.close()
