"""Runs a part of an area in namespaces of its own: mounts, and where asked a network, that nothing
else on the machine sees."""
from __future__ import annotations

import importlib
import json
import os
import subprocess
import sys
from dataclasses import asdict
from pathlib import Path

from attack.rows import Row

TESTS = Path(__file__).resolve().parent.parent


def run(area: str, part: str, program: Path, draws: int, seed: int, *, net: bool) -> list[Row] | None:
    """The rows of `part` (a function of the area's module), or nothing where the machine allows no
    such namespace."""
    way = ["unshare", "--mount", *(["--net"] if net else []),
           *([] if os.geteuid() == 0 else ["--map-root-user"])]
    try:
        allowed = subprocess.run([*way, "true"], capture_output=True, check=False).returncode == 0
    except OSError:
        return None
    if not allowed:
        return None
    done = subprocess.run([*way, sys.executable, "-B", "-m", "attack.namespace", area, part,
                           str(program), str(draws), str(seed)], capture_output=True, text=True,
                          cwd=TESTS, check=False)
    if done.returncode != 0:
        raise RuntimeError(f"{area}, in namespaces of its own: {done.stderr[-300:]}")
    return [Row(**row) for row in json.loads(done.stdout)]


def main(words: list[str]) -> None:
    area, part, program, draws, seed = words
    module = importlib.import_module(f"attack.{area}")
    rows = getattr(module, part)(Path(program), int(draws), int(seed))
    print(json.dumps([asdict(row) for row in rows]))


if __name__ == "__main__":
    main(sys.argv[1:])
