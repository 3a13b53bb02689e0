"""Reads a prompt back as the most gullible reader would: every line break of Unicode is one, nothing
invisible is there, and whatever looks like a quote, a hash or a backquote is one."""
from __future__ import annotations

import re
import unicodedata
from dataclasses import dataclass, field

QUOTES = "“”„‟″‶〃ˮʺ״❝❞〝〞〟˝˶＂"
HASHES = "♯＃﹟⌗"
BREAKS = "\n\v\f\x1c\x1d\x1e\x85\u2028\u2029"
FILLERS = "\u034f\u115f\u1160\u17b4\u17b5\u2800\u3164\uffa0"
FENCE = '"""'
MARK = "INTRUS"

# How a line of a candidate's block may begin, outside its content.
HEADS = ("### id: ", "Title: ", "Link: ", "Link (could not be read): ", "Kind (guessed): ",
         "Read level: ", "Their note when saving it: ", "Content:")


def seen(text: str) -> str:
    """What that reader sees of the text."""
    out = []
    for sign in unicodedata.normalize("NFKC", text.replace("\r\n", "\n").replace("\r", "\n")):
        kind = unicodedata.category(sign)
        if sign in BREAKS:
            out.append("\n")
        elif sign in QUOTES:
            out.append('"')
        elif sign in HASHES:
            out.append("#")
        elif kind == "Co" and ord(sign) & 0xFF in (0x22, 0x23, 0x60):
            out.append(chr(ord(sign) & 0xFF))  # fonts of symbols lie there by their ASCII places
        elif sign in FILLERS or 0xFE00 <= ord(sign) <= 0xFE0F or ord(sign) >= 0xE0000:
            continue
        elif kind in ("Cf", "Co") or (kind == "Cc" and sign != "\t"):
            continue
        else:
            out.append(sign)
    plain = unicodedata.normalize("NFD", "".join(out))
    return "".join(sign for sign in plain if unicodedata.category(sign) not in ("Mn", "Me"))


@dataclass
class Reading:
    """A prompt read back."""

    faults: list[str] = field(default_factory=list)
    identities: int = 0
    contents: int = 0


def headings(instruction: str) -> set[str]:
    """The headings that the instruction itself has."""
    return {line.strip() for line in seen(instruction).splitlines() if line.startswith("#")}


def without_code(lines: list[str]) -> list[str]:
    """The lines that stand in no ``` block, as Markdown reads them."""
    out, fence = [], ""
    for line in lines:
        ticks = re.match(r"\s{0,3}(`{3,})", line)
        if fence:
            if ticks and len(ticks[1]) >= len(fence) and not line.strip().strip("`"):
                fence = ""
        elif ticks:
            fence = ticks[1]
        else:
            out.append(line)
    return [*out, "a ``` block that never ends"] if fence else out


def judged(lines: list[str], reading: Reading) -> list[str]:
    """Reads the blocks of candidates or examples; gives the lines outside their contents."""
    outside, inside = [], False
    for line in lines:
        bare = line.strip()
        if bare == FENCE:
            inside = not inside
            reading.contents += inside
        elif FENCE in bare:
            reading.faults.append(f"a fence within a line: {bare[:80]}")
        elif inside:
            if bare.startswith("#"):
                reading.faults.append(f"a heading within a content: {bare[:80]}")
        else:
            outside.append(line)
    if inside:
        reading.faults.append("a content without end")
    return outside


def read_back(prompt: str, own_headings: set[str]) -> Reading:
    """What is wrong with a prompt: fences that do not hold, headings that are not the
    instruction's, identities that are not ours."""
    reading = Reading()
    text = seen(prompt)
    frame, found, blocks = text.rpartition("\n# Candidates\n")
    if found:
        for line in judged(blocks.splitlines(), reading):
            if line.strip() and not line.startswith(HEADS):
                reading.faults.append(f"a line of a stranger's in the frame: {line[:80]}")
            reading.identities += line.startswith("### id: ")
        if reading.identities != reading.contents:
            reading.faults.append(f"{reading.identities} identities, {reading.contents} contents")
        lines = judged(frame.splitlines(), reading)
    else:
        lines = without_code(text.splitlines())
    for line in lines + (blocks.splitlines() if found else []):
        bare = line.strip()
        if bare.startswith("### id:"):
            if MARK in bare:
                reading.faults.append(f"a foreign identity: {bare[:80]}")
        elif bare.startswith("#") and bare not in own_headings and line in lines:
            reading.faults.append(f"a heading that is not ours: {bare[:80]}")
        if bare == "a ``` block that never ends":
            reading.faults.append(bare)
    return reading
