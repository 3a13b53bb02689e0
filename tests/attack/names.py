"""Hostile names through the launcher: the agent gets them as one argument, and nothing else runs."""
from __future__ import annotations

import random
import stat
import time
from pathlib import Path

from attack.parallel import each, shares
from attack.probe import MISSING, Probe, path_for
from attack.rows import Row, left_out
from attack.world import World

TRIED = ("projects, folders, titles and links with quotes, newlines, $(), leading dashes, 255 bytes, "
         "direction marks, through the launcher's real script and a login shell")

# "pwned" is a program on the search path; a name that is read as more than a name runs it.
PIECES = [
    "$(pwned)", "`pwned`", "${IFS}pwned", "'; pwned; '", '"; pwned; "', "\npwned\n", "a;pwned;b",
    "a&pwned&b", "a|pwned", "&& pwned", "|| pwned", "\r\npwned\r\n", "'$(pwned)'", "\\'; pwned #",
    "<(pwned)", ">(pwned)", "=(pwned)", "=pwned", "a<<EOF\npwned\nEOF", "!pwned", "!!", "{pwned,b}", "*",
    "[a-z]", "~", "-rf", "--help", "-c pwned", "+1", "$'\\x60pwned\\x60'", "$((1+1))", "%s%n%1", ":",
    " ", "\t", "...", "\\", "\x1b]0;pwned\x07", "\x1b[31m", "\u009b31m", "\u202egpj.exe", "\u2066a\u2069",
    "\u2028pwned\u2028", "项目", "e\u0301", "👩‍💻", "« l’été »", "REM' OR '1'='1", "\x7f", "\x01",
    "'", '"', "''", "\\\\", "$", "`", "(", ")", "#", "\n", "$PATH", "$0", "@/etc/passwd", "eval pwned",
]


# How the prompt's first line may begin; a title of nothing that is seen has none.
LABELS = ("Sujet de veille", "Pourquoi ça me", "Premier pas", "Sources : ", "Mon projet : ",
          "Aide-moi")


def hostile_name(rng: random.Random, number: int) -> str:
    """One file name: no slash, no zero byte, at most 255 bytes."""
    if number < len(PIECES):
        name = PIECES[number]
    elif number % 20 == 0:
        name = rng.choice(PIECES) * 255
    else:
        name = "".join(rng.choices(PIECES, k=rng.randint(1, 6)))
    name = name.replace("/", "∕").replace("\0", "")
    while len(name.encode()) > 255:
        name = name[:-1]
    return "a" + name if name in ("", ".", "..") else name


def executable(path: Path, body: str) -> None:
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text("#!/bin/sh\n" + body + "\n")
    path.chmod(path.stat().st_mode | stat.S_IXUSR)


def prepare(world: World) -> dict[str, str]:
    """A world with a terminal that runs what it is given, and a trap; gives its environment."""
    stage = world.root / "stage"
    stage.mkdir()
    executable(stage / "tools" / "pwned", f'printf "%s\\n" "$*" >> "{stage}/executed"')
    executable(stage / "tools" / "clear", ":")
    # A terminal: it runs its command in a session of its own, and stays until that ends.
    executable(stage / "tools" / "x-terminal-emulator",
               'shift; exec "$@" </dev/null >/dev/null 2>&1')
    for profile in (".profile", ".bash_profile", ".zprofile"):
        (world.home / profile).write_text(f'PATH="{stage}/tools:/usr/bin:/bin"\n')
    executable(world.home / ".local" / "bin" / "claude",
               f'{{ printf "%s\\0" "$#" "$1"; pwd -P; }} > "{stage}/told.tmp"\n'
               f'mv "{stage}/told.tmp" "{stage}/told"')
    (world.home / ".claude.json").write_text('{"oauthAccount": {}}')
    return world.environment(PATH=f"{stage}/tools:/usr/bin:/bin", STAGE=str(stage))


def attempt(world: World, probe: Probe, name: str, rng: random.Random, number: int) -> str:
    stage = world.root / "stage"
    told = stage / "told"
    told.unlink(missing_ok=True)
    folder = world.root / "projets" / name
    folder.mkdir(parents=True, exist_ok=True)
    other = hostile_name(rng, number + 1)
    answer = probe.ask({"project": name, "folder": str(folder), "title": other + name,
                        "why": name * 3, "firstStep": other, "url": "https://example.org/" + other})
    if answer["error"]:
        return f"refused: {answer['error']}"
    end = time.monotonic() + 20
    while not told.exists() and time.monotonic() < end:
        time.sleep(0.01)
    if (stage / "executed").exists():
        ran = (stage / "executed").read_text(errors="replace")
        (stage / "executed").unlink()
        return f"EXECUTED: {ran!r}"
    if not told.exists():
        return "the agent never ran"
    count, _, rest = told.read_bytes().partition(b"\0")
    prompt, _, place = rest.partition(b"\0")
    if count != b"1":
        return f"the agent got {count!r} arguments"
    if not prompt.decode(errors="replace").startswith(LABELS):
        return f"the prompt begins with {prompt[:40]!r}"
    if place != str(folder.resolve()).encode() + b"\n":
        return f"the agent works in {place!r}"
    return ""


def one_share(program: Path, probe_path: Path, draws: int, seed: int, first: int) -> Row:
    row = Row("names", TRIED)
    rng = random.Random(seed)
    with World(program, "names") as world:
        probe = Probe(probe_path, "launch", world, prepare(world))
        for number in range(first, first + draws):
            name = hostile_name(rng, number)
            row.draws += 1
            try:
                if fault := attempt(world, probe, name, rng, number):
                    row.fault(f"{name!r}: {fault}")
            except RuntimeError as error:
                row.fault(f"{name!r}: {error}")
                break
        else:
            probe.close()
        for left in sum(world.settle(5), []):
            row.fault(f"left behind: {left}")
    return row


def listed(program: Path, draws: int, seed: int) -> Row:
    """The same names given to commands: nothing runs, and no sign that a terminal obeys comes back."""
    row = Row("names", "the same names given to `projet` and `decouverte`, and printed by them")
    rng = random.Random(seed)
    with World(program, "listed") as world:
        env = prepare(world)
        for number in range(draws):
            name = hostile_name(rng, number * 7)
            folder = world.root / "projets" / name
            folder.mkdir(parents=True, exist_ok=True)
            (folder / "requirements.txt").write_text("flask==3.0\n")
            for words in (("projet", "ajouter", str(folder), f"--nom={name}", f"--description={name}"),
                          ("projet",), ("decouverte", str(folder)), ("projet", "retirer", name)):
                result = world.run(*words, env=env)
                row.draws += 1
                if result.crash:
                    row.fault(f"{words}: {result.crash}")
                if b"\x1b" in result.out or "\x1b" in result.err or b"\xc2\x9b" in result.out:
                    row.fault(f"{words[0]} printed an escape sequence of {name!r}")
        if (world.root / "stage" / "executed").exists():
            row.fault("EXECUTED by a command")
    return row


def run(program: Path, draws: int, seed: int) -> list[Row]:
    probe = path_for(program)
    rows = [listed(program, max(3, draws // 20), seed)]
    if probe is None:
        return [left_out("names", TRIED, MISSING), *rows]
    parts = shares(draws, seed)
    firsts = [sum(part[0] for part in parts[:n]) for n in range(len(parts))]
    done = each(lambda n: one_share(program, probe, *parts[n], firsts[n]), range(len(parts)))
    whole = done[0]
    for part in done[1:]:
        whole.draws += part.draws
        whole.faults += part.faults
    return [whole, *rows]
