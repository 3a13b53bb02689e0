"""Damaged files: no crash, nothing overwritten unasked, every readable entry kept."""
from __future__ import annotations

import json
import os
import random
import signal
import subprocess
import time
from dataclasses import dataclass
from pathlib import Path

from attack import topics
from attack.damage import Damaged, damage, encoded
from attack.parallel import each, shares
from attack.rows import Row
from attack.topics import Topic
from attack.web import Site, reply
from attack.world import Result, World

BESIDE = ("score-notes.json", "found-again.json", "runs.json", "run-left.json", "window.json")
# Those that are written by no command of the reading kind: by a window's end, or by a run.
REWRITTEN = ("window.json", "screened.json", "runs.json", "run-left.json")


@dataclass
class Tally:
    """The rows of one machine, and how much was saved beyond what had to be."""

    topics: Row
    settings: Row
    beside: Row
    rewritten: Row
    hoped: int = 0
    found: int = 0


def tally() -> Tally:
    return Tally(Row("files", "damaged topics files: cut, bits flipped, wrong types, byte order "
                              "marks, deep nesting, empty, 200 MB; then `reparer`, or a first save"),
                 Row("files", "damaged settings, read and then changed"),
                 Row("files", "damaged score notes, returns, run history, rest of a run and "
                              "window place"),
                 Row("files", "a damaged window place, written anew by a window; damaged items passed "
                              "over, run history and rest of a run, by a run"))


def put(path: Path, hurt: Damaged) -> None:
    path.write_bytes(hurt.content)
    if hurt.huge:
        os.truncate(path, hurt.huge)


def same(path: Path, hurt: Damaged) -> bool:
    if not path.exists() or path.stat().st_size != (hurt.huge or len(hurt.content)):
        return False
    with path.open("rb") as file:
        return file.read(len(hurt.content)) == hurt.content


def asides(path: Path) -> list[Path]:
    return sorted(path.parent.glob(path.name + ".illisible-*"))


def stands_aside(path: Path, hurt: Damaged) -> bool:
    return any(same(aside, hurt) for aside in asides(path))


def judge_reading(world: World, hurt: Damaged, result: Result) -> str:
    if result.crash:
        return result.crash
    if not same(world.topics, hurt):
        return "reading changed the file"
    if result.status == 0:
        listed = {topic["id"] for topic in json.loads(result.out)}
        if not hurt.sure <= listed and hurt.content.strip():
            return f"status 0, and {len(hurt.sure - listed)} entries are not listed"
    elif not result.told:
        return "refused without a word"
    return ""


def judge_repair(world: World, hurt: Damaged, healthy: bool, count: Tally) -> str:
    """`vorle reparer` keeps the original aside and leaves a file with what can be read."""
    result = world.run("reparer", "--json")
    if result.crash:
        return "reparer: " + result.crash
    if result.status not in (0, 1):
        return f"reparer: status {result.status}: {result.err[-160:]}"
    if result.status == 1:
        if not result.told:
            return "reparer refused without a word"
        if not same(world.topics, hurt):
            return "reparer refused, and the file is not what it was"
        return "reparer refused what can be read in part" if hurt.sure and not hurt.huge else ""
    if healthy:
        return ""
    try:
        kept = {topic["id"] for topic in topics.read(world.topics)}
    except (ValueError, OSError) as error:
        return f"reparer left a file that cannot be read: {error}"
    if not hurt.sure <= kept:
        return f"reparer lost {len(hurt.sure - kept)} of {len(hurt.sure)} readable entries"
    if not same(world.topics, hurt) and not stands_aside(world.topics, hurt):
        return "reparer did not keep the original aside"
    after = world.run("sujets", "--json")
    if after.crash or after.status != 0 or not hurt.sure <= {one["id"] for one in
                                                              json.loads(after.out)}:
        return f"what reparer left is not read again: {after.err[-160:]}"
    beyond = hurt.hoped - hurt.sure
    count.hoped += len(beyond)
    count.found += len(beyond & kept)
    return ""


def judge_first_save(world: World, hurt: Damaged, known: list[Topic]) -> str:
    """A command that changes topics never saves over what it could not read."""
    if hurt.whole:
        known = json.loads(hurt.content)  # with what it has besides
    result = world.run("trier", known[0]["id"], "garder")
    if result.crash:
        return "first save: " + result.crash
    if not same(world.topics, hurt) and not stands_aside(world.topics, hurt):
        # A whole file's own words count: keys that the program does not know stay too.
        before = json.loads(hurt.content) if hurt.whole else known
        try:
            return topics.losses([one for one in before if one["id"] in hurt.sure],
                                 topics.read(world.topics))
        except ValueError as error:
            return f"the first save left a file that cannot be read: {error}"
    return ""


def one_topics_file(world: World, rng: random.Random, number: int, repairs: bool,
                    count: Tally) -> None:
    known = topics.samples(rng.choice((1, 3, 12, 40)), rng, rng.choice((60, 1500)))
    hurt = damage(known, rng, number)
    for aside in asides(world.topics):
        aside.unlink()
    put(world.topics, hurt)
    count.topics.draws += 1
    listed = world.run("sujets", "--json")
    fault = judge_reading(world, hurt, listed)
    if not fault and repairs and number % 3:
        fault = judge_repair(world, hurt, listed.status == 0, count)
    elif not fault:
        fault = judge_first_save(world, hurt, known)
    if fault:
        count.topics.fault(f"{hurt.how} (draw {number}, {len(hurt.content)} bytes): {fault}")


def settings_damage(rng: random.Random, number: int) -> tuple[str, bytes, dict[str, object]]:
    """How, the bytes, and what any careful reader still reads of them."""
    good: dict[str, object] = {"weeklyMinutes": 120, "job": "Jardinière", "interests": ["Rust"],
                               "projects": {"Potager": "/x"}, "d’ailleurs": {"x": [1]}}
    text = json.dumps(good, ensure_ascii=False, indent=4).encode()
    kind = number % 8
    if kind == 0:
        return "cut", text[:rng.randrange(1, len(text) - 1)], {}
    if kind == 1:
        at = rng.randrange(len(text))
        return "a byte changed", text[:at] + rng.randbytes(1) + text[at + 1:], {}
    if kind == 2:
        bad = rng.choice(["weeklyMinutes", "interests", "projects"])
        changed = {**good, bad: rng.choice([None, [[]], {"a": {}}, "x", 1e300, True])}
        rest = {key: value for key, value in good.items() if key not in (bad, "weeklyMinutes")}
        return f"{bad} of a wrong type", json.dumps(changed).encode(), rest
    if kind == 3:
        return "a byte order mark", b"\xef\xbb\xbf" + text, {}
    if kind == 4:
        return "empty or blank", rng.choice([b"", b" \n", b"\0" * 100]), {}
    if kind == 5:
        return "nesting", b'{"a":' * rng.choice((50, 100_000)), {}
    if kind == 6:
        return "no object", rng.choice([b"[]", b"3", b"null", b'"x"', text + text]), {}
    return "noise", rng.randbytes(rng.choice((1, 300, 5000))), {}


def one_settings_file(world: World, rng: random.Random, number: int, count: Tally) -> None:
    how, content, rest = settings_damage(rng, number)
    hurt = Damaged(how, content, huge=200_000_000 if number % 60 == 59 else 0)
    for aside in asides(world.settings):
        aside.unlink()
    put(world.settings, hurt)
    count.settings.draws += 1
    shown = world.run("reglages", "--json", seconds=30)
    fault = shown.crash or ("" if same(world.settings, hurt) else "reading changed the file")
    if hurt.huge and shown.seconds > 10:
        fault = fault or f"200 MB held the program for {shown.seconds:.0f} s"
    try:
        # A control character in a text hinders no reader.
        healthy = isinstance(json.loads(content, strict=False), dict) and not hurt.huge
    except (ValueError, RecursionError):
        healthy = not content.strip()
    if not fault and not healthy and not (shown.told or shown.status):
        fault = "unreadable settings, and not a word"
    changed = world.run("reglages", "weeklyMinutes", "90", seconds=30)
    fault = fault or changed.crash
    if not fault and not healthy and not same(world.settings, hurt) and not stands_aside(
            world.settings, hurt):
        fault = "the first change saved over a file that could not be read"
    if not fault and healthy and rest and changed.status == 0:
        now = json.loads(world.settings.read_bytes())
        gone = [key for key, value in rest.items() if now.get(key) != value]
        fault = f"the change lost {gone}" if gone else ""
    if fault:
        count.settings.fault(f"{how} (draw {number}): {fault}")


def hurt_beside(name: str, known: list[Topic], rng: random.Random) -> Damaged:
    record = [{"topic": one["id"], "at": "2026-11-01T08:00:00Z"} for one in known]
    text, _ = encoded(record)
    return Damaged(name, rng.choice([
        text[:rng.randrange(1, len(text))], b"", b"{}", b"null", b"[" * 100_000, rng.randbytes(200),
        text.replace(b"2026", b"20x6"), b"\xef\xbb\xbf" + text, b'{"a":' * 50_000]))


def end_a_window(world: World, done: Path, hurt: Damaged) -> str:
    """Opens the window and asks it to end, as a session does; longer where the machine is busy."""
    for wait in (1, 4, 12):
        window = world.start(out=subprocess.DEVNULL)
        time.sleep(wait)
        window.send_signal(signal.SIGTERM)
        try:
            _, err = window.communicate(timeout=60)
        except subprocess.TimeoutExpired:
            window.kill()
            window.communicate()
            return "the window never ended"
        if window.returncode not in (0, 1):
            return f"the window ended with {window.returncode}: {err.decode(errors='replace')[-160:]}"
        if not same(done, hurt):
            return ""
    return "no window kept its place, so nothing is shown"


def one_run(world: World, site: Site, done: Path, hurt: Damaged) -> str:
    """A run that passes over the one item of a trusted site's feed."""
    world.give_settings(interests=["Rust"], calibrated=True,
                        prioritySites=[{"address": site.link("/site"), "feed": site.link("/feed")}])
    world.give_agent({"candidates": {"trusts, for their": [], "Topics the person": [],
                                     "came back empty on": []}})
    result = world.run("fouille", env={"VORLE_ALLOW_LOOPBACK": "1"})
    if result.crash or result.status != 0:
        return result.crash or f"the run ended with {result.status}: {result.err[-160:]}"
    return "the run wrote nothing, so nothing is shown" if same(done, hurt) else ""


def one_rewritten(world: World, site: Site, rng: random.Random, number: int, count: Tally) -> None:
    known = topics.samples(3, rng)
    topics.write(world.topics, known)
    name = REWRITTEN[number % len(REWRITTEN)]
    place = world.data / name
    hurt = hurt_beside(name, known, rng)
    put(place, hurt)
    count.rewritten.draws += 1
    fault = (end_a_window(world, place, hurt) if name == "window.json"
             else one_run(world, site, place, hurt))
    fault = fault or topics.losses(known, topics.read(world.topics))
    if not fault and not stands_aside(place, hurt):
        fault = "saved over what could not be read"
    for aside in asides(place):
        aside.unlink()
    if fault:
        count.rewritten.fault(f"{name} (draw {number}, {hurt.content[:12]!r}): {fault}")


def one_file_beside(world: World, rng: random.Random, number: int, count: Tally) -> None:
    known = topics.samples(3, rng)
    topics.write(world.topics, known)
    name = BESIDE[number % len(BESIDE)]
    hurt = hurt_beside(name, known, rng)
    content = hurt.content
    put(world.data / name, hurt)
    count.beside.draws += 1
    fault = ""
    for words in (("sujets", known[0]["id"]), ("programme",), ("trier", known[1]["id"], "garder")):
        result = world.run(*words)
        fault = fault or result.crash or ("" if result.status == 0 else
                                          f"{words[0]}: status {result.status}: {result.err[-160:]}")
    fault = fault or topics.losses(known, topics.read(world.topics))
    if not fault and not same(world.data / name, hurt) and not stands_aside(world.data / name, hurt):
        fault = "saved over what could not be read"
    if fault:
        count.beside.fault(f"{name} (draw {number}, {content[:12]!r}): {fault}")


def one_share(program: Path, draws: int, seed: int) -> Tally:
    count = tally()
    rng = random.Random(seed)
    with World(program, "files") as world:
        repairs = b"reparer" in world.run("--help").out
        if not repairs:
            count.topics.note = "this program has no `reparer`: not tried"
        for number in range(draws * 6 // 10):
            one_topics_file(world, rng, number + seed % 7, repairs, count)
        world.topics.unlink(missing_ok=True)
        for number in range(draws * 3 // 10):
            one_settings_file(world, rng, number, count)
        world.settings.unlink(missing_ok=True)
        rest = draws - draws * 6 // 10 - draws * 3 // 10
        for number in range(rest):
            one_file_beside(world, rng, number, count)
        for name in BESIDE:
            (world.data / name).unlink(missing_ok=True)
        site = Site()
        item = f"<item><title>Article</title><link>{site.link('/item')}</link></item>"
        site.serve("/feed", reply(f'<rss version="2.0"><channel>{item}</channel></rss>'.encode(),
                                  "Content-Type: application/rss+xml"))
        for number in range(max(1, rest // 3)):
            one_rewritten(world, site, rng, number + seed, count)
    return count


def run(program: Path, draws: int, seed: int) -> list[Row]:
    parts = each(lambda share: one_share(program, *share), shares(draws, seed))
    whole = parts[0]
    for part in parts[1:]:
        whole.hoped += part.hoped
        whole.found += part.found
    rows = [whole.topics, whole.settings, whole.beside, whole.rewritten]
    for part in parts[1:]:
        for row, other in zip(rows, (part.topics, part.settings, part.beside,
                                    part.rewritten)):
            row.draws += other.draws
            row.faults += other.faults
    if whole.hoped:
        whole.topics.note = (f"and {whole.found} of {whole.hoped} whole entries behind damage to the "
                             "list itself were found again")
    return rows
