"""A command that saves, and the two states its files may be in afterwards."""
from __future__ import annotations

import json
import random
from dataclasses import dataclass

from attack import topics
from attack.topics import Topic
from attack.world import Result, World

DECISIONS = {"garder": "program", "plus-tard": "reserve", "pas-pour-moi": "dismissed"}


@dataclass
class Save:
    """One command that changes one thing in one file."""

    words: tuple[str, ...]
    topic: str = ""
    status: str = ""
    minutes: int = 0

    def happened(self, world: World) -> bool:
        """Whether the change is on disk. @raises ValueError, OSError for a file nobody can read"""
        if self.topic:
            return any(one["id"] == self.topic and one["status"] == self.status
                       for one in topics.read(world.topics))
        settings = json.loads(world.settings.read_bytes())
        return settings.get("weeklyMinutes") == self.minutes


def decide(known: list[Topic], rng: random.Random) -> Save:
    """A decision that changes the topic's place, whatever it was."""
    one = rng.choice(known)
    word = rng.choice([w for w, status in DECISIONS.items() if status != one["status"]])
    return Save(("trier", one["id"], word), topic=one["id"], status=DECISIONS[word])


def set_minutes(world: World, rng: random.Random) -> Save:
    old = json.loads(world.settings.read_bytes()).get("weeklyMinutes", 180)
    new = rng.choice([m for m in range(30, 600, 10) if m != old])
    return Save(("reglages", "weeklyMinutes", str(new)), minutes=new)


def populate(world: World, rng: random.Random, count: int = 40, text: int = 4000) -> None:
    """Topics and settings to lose."""
    world.give_topics(count, rng, text)
    world.give_settings(weeklyMinutes=180, job="Jardinière", interests=["Rust", "Vélo"],
                        projects={"Potager": ""}, **{"une clé d’ailleurs": [1, 2]})


def lost(world: World, before: list[Topic], settings: dict[str, object]) -> str:
    """What is missing of what was there; empty when all of it stands. A settings' change of
    minutes, and a decision, are no loss."""
    try:
        missing = topics.losses(before, topics.read(world.topics))
    except (ValueError, OSError) as error:
        return f"topics.json cannot be read: {error}"
    if missing:
        return missing
    try:
        now = json.loads(world.settings.read_bytes())
    except (ValueError, OSError) as error:
        return f"settings.json cannot be read: {error}"
    gone = [key for key, value in settings.items()
            if key != "weeklyMinutes" and now.get(key) != value]
    return f"settings lost: {gone}" if gone else ""


def ended_badly(save: Save, result: Result, world: World) -> str:
    """Why this end of the command is a fault, whatever was made to fail; empty when it is none."""
    if result.crash:
        return result.crash
    try:
        happened = save.happened(world)
    except (ValueError, OSError) as error:
        return f"a file cannot be read: {error}"
    if result.status == 0 and not happened:
        return "status 0, and the change is not on disk"
    if result.status != 0 and not result.told:
        return f"status {result.status} without a word: {result.err[-150:]!r}"
    return ""
