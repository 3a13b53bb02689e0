"""scripts/attack --slots: what each slot of the schedule got, run or banner, case by case, told by
the program's own timer."""
from __future__ import annotations

import datetime as dt
from pathlib import Path
from typing import Any, Iterator
from zoneinfo import ZoneInfo

from attack.clocks import HOUR, LATE, changes
from attack.probe import MISSING, Probe, path_for
from attack.slots import DAY, change_between, slot, slots
from attack.world import World

PLACES = [("Europe/Paris", [(2, 30), (8, 0)]), ("America/New_York", [(2, 30), (8, 0)]),
          ("Australia/Lord_Howe", [(1, 45), (2, 15)])]
MISHAPS = ["none", "asleep across it", "set back an hour after it", "away and back"]
YEAR = 2026


def weekday(day: dt.date) -> int:
    return day.isoweekday() % 7 + 1


def steps(mishap: str, start: int, due: int, end: int) -> list[dict[str, Any]]:
    """What happens around the slot due at `due`."""
    before = due - start - HOUR
    if mishap == "asleep across it":
        return [{"pass": before}, {"sleep": 4 * HOUR}, {"pass": end - due - 3 * HOUR}]
    if mishap == "set back an hour after it":
        return [{"pass": before + 2 * HOUR}, {"set": -HOUR}, {"pass": end - due}]
    if mishap == "away and back":
        return [{"pass": before + 2 * HOUR}, {"zone": "Asia/Tokyo"}, {"pass": 30 * HOUR},
                {"zone": "home"}, {"pass": end - due - 31 * HOUR}]
    return [{"pass": end - start}]


def cases() -> Iterator[tuple[dict[str, Any], dt.date, str]]:
    for zone, times in PLACES:
        info = ZoneInfo(zone)
        for moment in changes(zone, YEAR):
            day = dt.datetime.fromtimestamp(change_between(info, moment, moment + DAY), info).date()
            for hour, minute in times:
                for days in ([weekday(day)], [weekday(day), weekday(day + dt.timedelta(days=1))],
                             list(range(1, 8))):
                    for mishap in MISHAPS:
                        due = slot(info, day, hour, minute)
                        start = due - 3 * DAY - 5 * HOUR
                        end = due + 4 * DAY + 5 * HOUR
                        told = steps(mishap, start, due, end)
                        for step in told:
                            if step.get("zone") == "home":
                                step["zone"] = zone
                        yield ({"zone": zone, "start": start, "late": 0, "weekdays": sorted(days),
                                "runSeconds": 240, "hour": hour, "minute": minute,
                                "takesOffers": True, "steps": told}, day, mishap)


def wanted(story: dict[str, Any], mishap: str) -> int | None:
    """How many slots there were; nothing where a journey names them otherwise."""
    if mishap == "away and back":
        return None
    end = story["start"] + sum(abs(step.get("pass", 0)) + step.get("sleep", 0) + step.get("set", 0)
                               for step in story["steps"])
    return len(slots(ZoneInfo(story["zone"]), story["start"], end - LATE, story["weekdays"],
                     story["hour"], story["minute"]))


def show(program: Path) -> int:
    """Prints the table. Gives how many cases were not as they should be."""
    path = path_for(program)
    if path is None:
        print(MISSING)
        return 1
    wrong = 0
    print("| zone | clocks change on | time | days | mishap | slots | runs | banners |")
    print("|---|---|---|---|---|---|---|---|")
    with World(program, "slots") as world:
        probe = Probe(path, "clock", world, world.environment())
        for story, day, mishap in cases():
            told = probe.ask(story)
            runs, banners = len(told["due"]), len(told["offered"])
            count = wanted(story, mishap)
            held = count is None or runs + banners == count
            wrong += not held
            print(f"| {story['zone']} | {day} | {story['hour']}:{story['minute']:02} | "
                  f"{len(story['weekdays'])} | {mishap} | {'' if count is None else count} | {runs} "
                  f"| {banners}{'' if held else ' WRONG'} |")
        probe.close()
    return wrong
