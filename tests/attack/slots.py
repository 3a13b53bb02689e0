"""When a weekly run is due, worked out here without a word from the program."""
from __future__ import annotations

import datetime as dt
from zoneinfo import ZoneInfo

DAY = 86_400


def offset(zone: ZoneInfo, moment: int) -> int:
    shown = dt.datetime.fromtimestamp(moment, zone).utcoffset()
    assert shown is not None
    return int(shown.total_seconds())


def change_between(zone: ZoneInfo, first: int, last: int) -> int:
    """The moment between the two at which the zone's clocks change. There is one."""
    before = offset(zone, first)
    while last - first > 1:
        middle = (first + last) // 2
        if offset(zone, middle) == before:
            first = middle
        else:
            last = middle
    return last


def slot(zone: ZoneInfo, day: dt.date, hour: int, minute: int) -> int:
    """The moment of that time on that day: of a time shown twice the first; of one that is skipped
    the moment of the skip."""
    shown = dt.datetime(day.year, day.month, day.day, hour, minute, tzinfo=zone)
    moment = int(shown.timestamp())
    back = dt.datetime.fromtimestamp(moment, zone)
    if (back.date(), back.hour, back.minute) == (day, hour, minute):
        return moment
    return change_between(zone, moment - DAY // 2, moment + 60)


def slots(zone: ZoneInfo, first: int, last: int, weekdays: list[int], hour: int,
          minute: int) -> list[int]:
    """Every moment after `first`, up to `last`, at which a run is due. Weekdays: Sunday 1 to
    Saturday 7."""
    day = dt.datetime.fromtimestamp(first, zone).date() - dt.timedelta(days=1)
    end = dt.datetime.fromtimestamp(last, zone).date() + dt.timedelta(days=1)
    found = []
    while day <= end:
        if day.isoweekday() % 7 + 1 in weekdays:
            moment = slot(zone, day, hour, minute)
            if first < moment <= last:
                found.append(moment)
        day += dt.timedelta(days=1)
    return found
