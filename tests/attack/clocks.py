"""Clocks: exactly one run a slot, whatever becomes of the clock, the zone, the machine's sleep."""
from __future__ import annotations

import datetime as dt
import random
from pathlib import Path
from typing import Any
from zoneinfo import ZoneInfo

from attack.probe import MISSING, Probe, path_for
from attack.rows import Row, left_out
from attack.slots import DAY, slot, slots
from attack.world import World

TRIED = "the schedule's timer through "
LATE = 12 * 60 + 60  # a look at the clock, and what a coarse timer adds
MINUTE, HOUR = 60, 3600
WEEK = 7 * DAY

# Zones that skip midnight, repeat odd hours, shift by half an hour, or do nothing at all.
ZONES = ["Europe/Paris", "America/Santiago", "America/Havana", "Asia/Beirut", "Africa/Cairo",
         "America/Asuncion", "Australia/Lord_Howe", "America/New_York", "Asia/Kathmandu", "UTC",
         "Pacific/Chatham", "America/St_Johns", "Africa/Casablanca", "Asia/Gaza", "America/Nuuk",
         "Pacific/Auckland", "Europe/London"]

Story = dict[str, Any]


def when(zone: str, moment: int) -> str:
    return dt.datetime.fromtimestamp(moment, ZoneInfo(zone)).strftime("%a %Y-%m-%d %H:%M:%S %Z")


def base(rng: random.Random, zone: str, start: int, **given: Any) -> Story:
    return {"zone": zone, "start": start, "late": rng.choice((0, 0.02, 0.05)), "weekdays":
            sorted(rng.sample(range(1, 8), rng.choice((1, 1, 2, 7)))), "runSeconds":
            rng.choice((30, 300, 1500)), "hour": rng.choice((0, 0, 1, 2, 3, 8, 23)),
            "minute": rng.choice((0, 0, 15, 30, 59)), "steps": [], **given}


def changes(zone: str, year: int) -> list[int]:
    """The days' starts around which the zone's clocks change in that year."""
    info = ZoneInfo(zone)
    start = int(dt.datetime(year, 1, 1, tzinfo=dt.timezone.utc).timestamp())
    found = []
    for day in range(366):
        moment = start + day * DAY
        if dt.datetime.fromtimestamp(moment, info).utcoffset() != dt.datetime.fromtimestamp(
                moment + DAY, info).utcoffset():
            found.append(moment)
    return found


def through_a_change(rng: random.Random) -> tuple[Story, list[int] | None]:
    """Weeks around a change of the clocks, in peace: every slot, once."""
    zone = rng.choice(ZONES)
    around = changes(zone, rng.randrange(2022, 2036)) or [1_790_000_000]
    start = rng.choice(around) - rng.randrange(1, 8) * DAY + rng.randrange(DAY)
    story = base(rng, zone, start, hour=rng.choice((0, 0, 1, 2, 3)), minute=rng.choice((0, 15, 30, 45)))
    length = 3 * WEEK
    story["steps"] = [{"pass": length}]
    due = slots(ZoneInfo(zone), start, start + length - LATE, story["weekdays"], story["hour"],
                story["minute"])
    return story, due


def first_slot(story: Story) -> int:
    return slots(ZoneInfo(story["zone"]), story["start"], story["start"] + 9 * DAY,
                 story["weekdays"], story["hour"], story["minute"])[0]


def set_back(rng: random.Random) -> tuple[Story, list[int] | None]:
    """After a run the clock is set back by minutes, hours or days: no second run of that slot, and
    the next one comes."""
    story = base(rng, rng.choice(ZONES), 1_700_000_000 + rng.randrange(5 * 365 * DAY))
    story["weekdays"] = [rng.randrange(1, 8)]
    once = first_slot(story)
    after = rng.choice((story["runSeconds"] + 5, 20 * MINUTE, 3 * HOUR)) + LATE
    after = max(after, story["runSeconds"] + LATE)
    back = rng.choice((5 * MINUTE, HOUR, 2 * HOUR, DAY, DAY + HOUR, 2 * DAY))
    restart = [{"restart": True}] if rng.random() < 0.3 else []
    story["steps"] = [{"pass": once - story["start"] + after}, {"set": -back}, *restart,
                      {"pass": back + 10 * DAY}]
    following = slots(ZoneInfo(story["zone"]), once, once + after + 10 * DAY - LATE,
                      story["weekdays"], story["hour"], story["minute"])
    return story, [once, *following]


def asleep(rng: random.Random) -> tuple[Story, list[int] | None]:
    """The machine sleeps, or the clock is set forward, over a slot: at most its one run, and only
    soon after it; the others come."""
    story = base(rng, rng.choice(ZONES), 1_700_000_000 + rng.randrange(5 * 365 * DAY))
    story["weekdays"] = [rng.randrange(1, 8)]
    once = first_slot(story)
    before = rng.choice((MINUTE, HOUR, 5 * HOUR))
    before = min(before, once - story["start"] - 1)
    over = before + rng.choice((30, 5 * MINUTE, 11 * MINUTE, HOUR, DAY, 3 * DAY))
    how = rng.choice(("sleep", "set"))
    story["steps"] = [{"pass": once - story["start"] - before}, {how: over}, {"pass": 12 * DAY}]
    return story, None


def abroad(rng: random.Random) -> tuple[Story, list[int] | None]:
    """The zone changes while the app is open: at most one run a day of the calendar."""
    story = base(rng, rng.choice(ZONES), 1_700_000_000 + rng.randrange(5 * 365 * DAY))
    story["steps"] = [step for _ in range(4) for step in
                      ({"pass": rng.randrange(DAY, 4 * DAY)}, {"zone": rng.choice(ZONES)})]
    story["steps"].append({"pass": WEEK})
    return story, None


def restarted(rng: random.Random) -> tuple[Story, list[int] | None]:
    """The app is started again just after, or during, a slot's run."""
    story = base(rng, rng.choice(ZONES), 1_700_000_000 + rng.randrange(5 * 365 * DAY))
    once = first_slot(story)
    pause = rng.choice((story["runSeconds"] + LATE, HOUR + LATE + story["runSeconds"]))
    story["steps"] = [{"pass": once - story["start"] + pause}, {"restart": True}, {"restart": True},
                      {"pass": WEEK}]
    return story, slots(ZoneInfo(story["zone"]), story["start"],
                        once + pause + WEEK - LATE, story["weekdays"], story["hour"], story["minute"])


def judge(story: Story, wanted: list[int] | None, due: list[int]) -> str:
    zone = story["zone"]
    if wanted is not None:
        if len(due) != len(wanted) and not (
                len(due) == len(wanted) + 1 and due[-1] > wanted[-1] + LATE):
            return (f"{len(due)} runs for {len(wanted)} slots: "
                    f"{[when(zone, m) for m in due[:6]]}, wanted {[when(zone, m) for m in wanted[:6]]}")
        for moment, slot_moment in zip(due, wanted):
            if not 0 <= moment - slot_moment <= LATE:
                return f"a run at {when(zone, moment)} for the slot of {when(zone, slot_moment)}"
        return ""
    return at_most_once(story, due)


def zone_at(story: Story, moment: int) -> str:
    """The zone shown at that moment of a story without jumps."""
    zone, at = story["zone"], story["start"]
    for step in story["steps"]:
        at += step.get("pass", 0)
        if at >= moment:
            break
        zone = step.get("zone", zone)
    return zone


def at_most_once(story: Story, due: list[int]) -> str:
    """Without a word on which slots were to be served: no day of the calendar twice, and none that
    is not due."""
    moves = any("zone" in step for step in story["steps"])
    served: set[dt.date] = set()
    for moment in due:
        zone = ZoneInfo(zone_at(story, moment) if moves else story["zone"])
        possible = slots(zone, moment - LATE - 1, moment, story["weekdays"], story["hour"],
                         story["minute"])
        if not possible:
            return f"a run at {when(zone.key, moment)}, where none is due"
        day = dt.datetime.fromtimestamp(possible[-1], zone).date()
        if day in served:
            return f"two runs for {day}, the second at {when(zone.key, moment)}"
        served.add(day)
    if not moves and not due:
        return "no run in two weeks"
    return ""


KINDS = [
    (through_a_change, "weeks with a change of the clocks (midnights skipped, hours repeated)"),
    (set_back, "a clock set back by minutes to days after a run"),
    (asleep, "sleep, or a clock set forward, over a slot"),
    (abroad, "changes of zone while the app is open"),
    (restarted, "starts again just after a slot"),
]


def run(program: Path, draws: int, seed: int) -> list[Row]:
    path = path_for(program)
    if path is None:
        return [left_out("clocks", TRIED + "changing clocks", MISSING)]
    rng = random.Random(seed)
    rows = [Row("clocks", TRIED + what) for _, what in KINDS]
    with World(program, "clocks") as world:
        probe = Probe(path, "clock", world, world.environment())
        for number in range(draws):
            kind = number % len(KINDS)
            story, wanted = KINDS[kind][0](rng)
            rows[kind].draws += 1
            try:
                due = probe.ask(story)["due"]
            except RuntimeError as error:
                rows[kind].fault(f"draw {number}: {error}")
                return rows
            if fault := judge(story, wanted, due):
                rows[kind].fault(f"draw {number}, {story['zone']}, {story['hour']}:"
                                 f"{story['minute']:02} on {story['weekdays']}: {fault}")
        probe.close()
    return rows
