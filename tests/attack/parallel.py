"""Work shared out over the machine's processors, the same way each time."""
from __future__ import annotations

import os
from concurrent.futures import ThreadPoolExecutor
from typing import Callable, Iterable, TypeVar

Item = TypeVar("Item")
Made = TypeVar("Made")

WORKERS = max(2, min(os.cpu_count() or 2, 8))


def shares(draws: int, seed: int) -> list[tuple[int, int]]:
    """(draws, seed) for each worker; none without a draw."""
    each, rest = divmod(draws, WORKERS)
    cut = [each + (1 if worker < rest else 0) for worker in range(WORKERS)]
    return [(part, seed + worker) for worker, part in enumerate(cut) if part]


def each(work: Callable[[Item], Made], items: Iterable[Item], workers: int = WORKERS) -> list[Made]:
    """What `work` makes of every item, in their order."""
    with ThreadPoolExecutor(workers) as pool:
        return list(pool.map(work, items))
