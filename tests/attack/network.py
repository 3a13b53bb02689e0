"""A network of our own where every address answers: who was asked, under which address, is noted.
Only for use inside a network namespace, where nothing else is."""
from __future__ import annotations

import ipaddress
import shutil
import socket
import struct
import subprocess
import threading
from pathlib import Path

from attack.web import Site
from attack.world import scratch

PORTS = (80, 8080, 443)


def shell(*words: str) -> bool:
    return subprocess.run(words, capture_output=True, check=False).returncode == 0


class Names(threading.Thread):
    """A name server on loopback. A name's first labels say what it resolves to: "a-10-1-2-3.NAME"
    to that address; "turn-10-1-2-3.NAME" to a public one at first and to that one afterwards; "six-…"
    to the same as IPv6; any other name to a public one."""

    def __init__(self, public: str) -> None:
        super().__init__(daemon=True)
        self.public = public
        self.turned: set[str] = set()
        self.socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.socket.bind(("127.0.0.1", 53))

    def run(self) -> None:
        while True:
            question, asker = self.socket.recvfrom(4096)
            try:
                self.socket.sendto(self.answer(question), asker)
            except (OSError, ValueError, IndexError, struct.error):
                continue

    def answer(self, question: bytes) -> bytes:
        at, labels = 12, []
        while question[at]:
            labels.append(question[at + 1:at + 1 + question[at]].decode("latin-1"))
            at += 1 + question[at]
        kind = struct.unpack("!H", question[at + 1:at + 3])[0]
        record = self.record(labels, kind)
        head = question[:2] + struct.pack("!HHHHH", 0x8180, 1, 1 if record else 0, 0, 0)
        tail = b""
        if record:
            tail = b"\xc0\x0c" + struct.pack("!HHIH", kind, 1, 0, len(record)) + record
        return head + question[12:at + 5] + tail

    def record(self, labels: list[str], kind: int) -> bytes:
        how, _, rest = labels[0].lower().partition("-")
        target = self.public
        if how in ("a", "turn", "six") and rest.count("-") == 3:
            target = rest.replace("-", ".")
        if how == "turn" and kind == 1 and labels[0] not in self.turned:
            self.turned.add(labels[0])
            target = self.public
        if kind == 28 and how == "six":
            return ipaddress.IPv6Address("::ffff:" + target).packed
        return ipaddress.IPv4Address(target).packed if kind == 1 and how != "six" else b""


class Network:
    """@raises OSError when the namespace does not let itself be furnished"""

    def __init__(self, public: str) -> None:
        if not (shell("ip", "link", "set", "lo", "up") and
                shell("ip", "route", "add", "local", "0.0.0.0/0", "dev", "lo")):
            raise OSError("the network namespace cannot be furnished (iproute2?)")
        self.six = shell("ip", "-6", "route", "add", "local", "::/0", "dev", "lo")
        target = str(Path("/etc/resolv.conf").resolve())
        # Once mounted it needs no name of its own any more.
        folder = scratch("net")
        try:
            file = folder / "resolv.conf"
            file.write_text("nameserver 127.0.0.1\noptions attempts:1 timeout:1\n")
            if not shell("mount", "--bind", str(file), target):
                raise OSError("the name server cannot be set")
        finally:
            shutil.rmtree(folder, ignore_errors=True)
        Names(public).start()
        self.sites = [Site("0.0.0.0", port) for port in PORTS]
        if self.six:
            self.sites += [Site("::", port) for port in PORTS]

    def serve(self, path: str, answer: bytes) -> None:
        for site in self.sites:
            site.serve(path, answer)

    def otherwise(self, answer: bytes) -> None:
        for site in self.sites:
            site.otherwise = answer

    def reached(self) -> list[str]:
        return [address for site in self.sites for address in list(site.reached)]

    def asked(self) -> list[str]:
        return [f"{host}{path}" for site in self.sites for host, path in list(site.asked)]

    def forget(self) -> None:
        for site in self.sites:
            site.reached.clear()
            site.asked.clear()
