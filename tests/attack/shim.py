"""The library that makes calls fail: builds it once, and says how it is preloaded."""
from __future__ import annotations

import errno
import shutil
import subprocess
from pathlib import Path

from attack.world import HERE, World, scratch

# What a file system really answers to each call.
ERRORS: dict[str, tuple[int, ...]] = {
    "open": (errno.EMFILE, errno.EACCES, errno.EIO, errno.ENOSPC, errno.ENFILE),
    "read": (errno.EIO,),
    "write": (errno.ENOSPC, errno.EIO, errno.EDQUOT, errno.EFBIG),
    "fsync": (errno.EIO, errno.ENOSPC, errno.EDQUOT),
    "rename": (errno.EIO, errno.EACCES, errno.ENOSPC, errno.EDQUOT),
    "close": (errno.EIO, errno.EDQUOT),
    "truncate": (errno.EIO,),
    "chmod": (errno.EPERM, errno.EIO),
    "lock": (errno.ENOLCK, errno.EIO),
    "stat": (errno.EIO, errno.EACCES),
    "fstat": (errno.EIO,),
    "link": (errno.EPERM, errno.EMLINK, errno.ENOSPC),
    "unlink": (errno.EIO,),
    "mkdir": (errno.ENOSPC, errno.EACCES),
    "access": (errno.EIO,),
}
KILL = 0
ONLY_NOTE = -1


class Shim:
    """Built into a folder of its own, which goes with it. @raises OSError without a C compiler"""

    def __init__(self) -> None:
        compiler = next((c for c in map(shutil.which, ("cc", "clang-19", "clang", "gcc")) if c), None)
        if compiler is None:
            raise OSError("no C compiler")
        self.folder = scratch("shim")
        self.library = self.folder / "shim.so"
        try:
            subprocess.run([compiler, "-shared", "-fPIC", "-O1", "-o", str(self.library),
                            str(HERE / "shim.c"), "-ldl"], check=True, capture_output=True)
        except BaseException:
            self.close()
            raise

    def environment(self, world: World, *, nth: int, error: int, calls: str = "", ever: int = 0,
                    half: bool = False, under: str = "") -> dict[str, str]:
        """What to start the program with so that the nth of these calls fails, or kills it."""
        note = self.note(world)
        note.unlink(missing_ok=True)
        return {"LD_PRELOAD": str(self.library), "ATTACK_PROGRAM": str(world.program),
                "ATTACK_UNDER": under or f"{world.data}:{world.settings.parent}",
                "ATTACK_CALLS": calls, "ATTACK_NTH": str(nth), "ATTACK_ERRNO": str(error),
                "ATTACK_EVER": str(ever), "ATTACK_HALF": "1" if half else "0",
                "ATTACK_NOTE": str(note)}

    @staticmethod
    def note(world: World) -> Path:
        return world.root / "failed-calls"

    def fired(self, world: World) -> list[str]:
        """The calls that were made to fail, with their files."""
        note = self.note(world)
        return note.read_text().splitlines() if note.exists() else []

    def close(self) -> None:
        shutil.rmtree(self.folder, ignore_errors=True)
