"""Ways a file gets damaged, and which of its entries nobody can call damaged."""
from __future__ import annotations

import json
import random
from dataclasses import dataclass, field
from typing import Callable

from attack.topics import Topic


@dataclass
class Damaged:
    """A damaged list of topics."""

    how: str
    content: bytes
    sure: set[str] = field(default_factory=set)  # entries that any careful reader finds again
    hoped: set[str] = field(default_factory=set)  # whole, but behind damage to the frame
    whole: bool = False  # still a valid file, as it stands
    huge: int = 0  # extended to that many bytes, as a hole


def encoded(topics: list[Topic]) -> tuple[bytes, list[tuple[int, int]]]:
    """The file, and where each entry lies in it."""
    out = b"["
    spans = []
    for number, topic in enumerate(topics):
        out += b",\n    " if number else b"\n    "
        text = json.dumps(topic, ensure_ascii=False, indent=8, sort_keys=True).encode()
        spans.append((len(out), len(out) + len(text)))
        out += text
    return out + b"\n]\n", spans


def ids(topics: list[Topic], chosen: Callable[[int], bool]) -> set[str]:
    return {topic["id"] for number, topic in enumerate(topics) if chosen(number)}


def hurt_bytes(topics: list[Topic], how: str, content: bytes, places: list[int]) -> Damaged:
    """Bytes were changed at these places of the file."""
    _, spans = encoded(topics)
    first = min(places)
    return Damaged(how, content, ids(topics, lambda n: spans[n][1] <= first),
                   ids(topics, lambda n: not any(spans[n][0] <= at < spans[n][1] for at in places)))


def truncated(topics: list[Topic], rng: random.Random) -> Damaged:
    text, spans = encoded(topics)
    cut = rng.randrange(1, len(text) - 2)
    return Damaged("truncated", text[:cut], ids(topics, lambda n: spans[n][1] <= cut))


def flipped(topics: list[Topic], rng: random.Random) -> Damaged:
    text = bytearray(encoded(topics)[0])
    places = [rng.randrange(len(text)) for _ in range(rng.randint(1, 4))]
    for at in places:
        text[at] ^= 1 << rng.randrange(8)
    return hurt_bytes(topics, "bits flipped", bytes(text), places)


def overwritten(topics: list[Topic], rng: random.Random) -> Damaged:
    text = bytearray(encoded(topics)[0])
    size = rng.choice((1, 64, 512, 4096))
    at = rng.randrange(max(1, len(text) - size))
    text[at:at + size] = bytes(size) if rng.random() < 0.5 else rng.randbytes(size)
    return hurt_bytes(topics, "a block overwritten", bytes(text), list(range(at, at + size)))


WRONG: dict[str, tuple[object, ...]] = {
    "status": ("boxed", 3, None, [], ""), "id": ("no identity", 7, None, {}),
    "title": (None, 12, ["a"]), "score": ("ten", None, {}, [3]), "sources": ("none", {}, [3]),
    "foundAt": ("yesterday", 12, None), "minutes": ("long", True, {}), "gallery": ({}, "x", None),
    "postponedCount": ("twice", None, []), "readLevel": ("whole", 3, []),
}


def wrong_type(topics: list[Topic], rng: random.Random) -> Damaged:
    bad = {rng.randrange(len(topics)) for _ in range(rng.randint(1, 3))}
    changed = [dict(topic) for topic in topics]
    for number in bad:
        key = rng.choice(list(WRONG))
        changed[number][key] = rng.choice(WRONG[key])
    return Damaged("a value of the wrong type", encoded(changed)[0],
                   ids(topics, lambda n: n not in bad))


def missing_key(topics: list[Topic], rng: random.Random) -> Damaged:
    bad = rng.randrange(len(topics))
    changed = [dict(topic) for topic in topics]
    del changed[bad][rng.choice(["id", "title", "status", "sources", "foundAt", "gallery"])]
    return Damaged("a key missing", encoded(changed)[0], ids(topics, lambda n: n != bad))


def no_entry(topics: list[Topic], rng: random.Random) -> Damaged:
    alien = rng.choice([None, 3, "text", [], [[]], True, {}, {"id": None}])
    at = rng.randrange(len(topics) + 1)
    return Damaged("something that is no topic in between",
                   json.dumps([*topics[:at], alien, *topics[at:]], ensure_ascii=False).encode(),
                   ids(topics, lambda n: True))


def byte_order_mark(topics: list[Topic], rng: random.Random) -> Damaged:
    text = encoded(topics)[0]
    if rng.random() < 0.5:
        return Damaged("a byte order mark", b"\xef\xbb\xbf" + text, ids(topics, lambda n: True))
    return Damaged("saved as UTF-16", text.decode().encode("utf-16"))


def bad_text(topics: list[Topic], rng: random.Random) -> Damaged:
    bad = rng.randrange(len(topics))
    marker = "À REMPLACER"
    changed = [dict(topic) for topic in topics]
    changed[bad]["summary"] = marker
    alien = rng.choice([b"\xff\xfe", b"\xc3", b"\xed\xa0\x80", b"\\ud800", b"\x00", b"\\u0000",
                        b"\n", b"\\x", b"\xf4\x90\x80\x80"])
    text = encoded(changed)[0].replace(marker.encode(), b"a" + alien + b"b")
    return Damaged("a text that is none", text, ids(topics, lambda n: n < bad),
                   ids(topics, lambda n: n != bad))


def deep(topics: list[Topic], rng: random.Random) -> Damaged:
    depth = rng.choice((100, 2_000, 1_000_000))
    opening, closing = rng.choice(((b"[", b"]"), (b'{"a":', b"}")))
    nest = opening * depth + b"1" + closing * (depth if rng.random() < 0.5 else 0)
    at = rng.randrange(len(topics))
    text, spans = encoded(topics)
    where = spans[at][0]
    if rng.random() < 0.3:
        return Damaged("nothing but nesting", nest)
    return Damaged("deep nesting in between", text[:where] + nest + b"," + text[where:],
                   ids(topics, lambda n: n < at), ids(topics, lambda n: True))


def odd_root(topics: list[Topic], rng: random.Random) -> Damaged:
    text = encoded(topics)[0]
    every = ids(topics, lambda n: True)
    return rng.choice([
        Damaged("an object around the list", b'{"topics":' + text + b"}", hoped=every),
        Damaged("two lists", text + text, every),
        Damaged("text behind the list", text + b"<<<<<<< HEAD\n", every),
        Damaged("empty", b""), Damaged("blank", b" \n\t"), Damaged("null", b"null"),
        Damaged("a number", b"1e999"), Damaged("an open string", b'"' + text),
        Damaged("zeros", bytes(len(text))), Damaged("noise", rng.randbytes(len(text))),
    ])


def huge(topics: list[Topic], rng: random.Random) -> Damaged:
    text, _ = encoded(topics)
    return Damaged("200 MB of zeros behind the list", text, ids(topics, lambda n: True),
                   huge=200_000_000)


def unknown_keys(topics: list[Topic], rng: random.Random) -> Damaged:
    changed = [{**topic, "from the future": {"x": [1, 2, None]}} for topic in topics]
    return Damaged("keys from the future", encoded(changed)[0], ids(topics, lambda n: True),
                   whole=True)


EVERY: list[Callable[[list[Topic], random.Random], Damaged]] = [
    truncated, flipped, overwritten, wrong_type, missing_key, no_entry, byte_order_mark, bad_text,
    deep, odd_root, unknown_keys,
]
RARE = huge  # it costs a second


def damage(topics: list[Topic], rng: random.Random, number: int) -> Damaged:
    """The number-th damage: every kind in turn."""
    if number % 100 == 99:
        return RARE(topics, rng)
    return EVERY[number % len(EVERY)](topics, rng)
