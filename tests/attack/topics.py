"""Topics as the topics file holds them, and what may differ between two states of one."""
from __future__ import annotations

import json
import random
from pathlib import Path
from typing import Any

Topic = dict[str, Any]

WORDS = "veille page version note été projet « lien » œuvre 项目 dépendance faille gain".split()

# What a decision of the user's changes in a topic, and nothing else.
TRIAGE = {"status", "postponedCount", "triagedAt", "doneAt", "worth"}


def identity(number: int) -> str:
    return f"{number:08X}-0000-4000-8000-{number * 7919 % 0xFFFFFFFFFFFF:012X}"


def sample(number: int, rng: random.Random, text: int = 600) -> Topic:
    words = " ".join(rng.choice(WORDS) for _ in range(text // 6))
    return {
        "id": identity(number), "title": f"Sujet {number}", "score": number % 11, "gallery": [],
        "minutes": 15, "summary": "Un résumé.", "why": "Parce que.", "firstStep": "Lis.",
        "sources": [{"title": "Source", "url": f"https://example.org/{number}"}],
        "status": "inbox", "postponedCount": 0, "foundAt": "2026-11-01T08:00:00Z",
        "readLevel": "full", "seenText": words,
    }


def samples(count: int, rng: random.Random, text: int = 600) -> list[Topic]:
    return [sample(number, rng, text) for number in range(1, count + 1)]


def write(path: Path, topics: list[Topic]) -> None:
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(json.dumps(topics, ensure_ascii=False, indent=4, sort_keys=True) + "\n",
                    encoding="utf-8")


def read(path: Path) -> list[Topic]:
    """@raises ValueError when the file is no list of objects with an identity"""
    topics = json.loads(path.read_bytes())
    if not isinstance(topics, list) or not all(isinstance(one, dict) and "id" in one
                                               for one in topics):
        raise ValueError("no list of topics")
    return topics


def without_triage(topic: Topic) -> Topic:
    return {key: value for key, value in topic.items() if key not in TRIAGE}


def losses(before: list[Topic], after: list[Topic]) -> str:
    """What of `before` is not in `after`, decisions apart; empty when nothing is missing."""
    found = {topic["id"]: without_triage(topic) for topic in after}
    for topic in before:
        if topic["id"] not in found:
            return f"{topic['id']} is gone"
        if found[topic["id"]] != without_triage(topic):
            return f"{topic['id']} is not what it was"
    return ""
