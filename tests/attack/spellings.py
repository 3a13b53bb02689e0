"""Addresses that no stranger may lead us to, in every spelling that some reader understands."""
from __future__ import annotations

import ipaddress
import random

PRIVATE = ["127.0.0.1", "127.8.9.1", "10.1.2.3", "192.168.7.7", "172.16.5.5", "172.31.255.1",
           "169.254.169.254", "100.64.1.1", "0.0.0.0", "198.18.0.1", "192.0.2.9", "224.0.0.1",
           "255.255.255.255"]
PRIVATE_6 = ["::1", "::", "fd00::1", "fe80::1", "fec0::1", "ff02::1", "::7f00:1", "100::1",
             "2001:db8::1"]
NAMES = ["localhost", "LOCALHOST", "localhost.", "a.localhost", "printer.local", "ip6-localhost",
         "localhost.localdomain", "ｌｏｃａｌｈｏｓｔ", "loc\u00adalhost", "ⓛocalhost"]
PUBLIC = "93.184.215.14"


def fullwidth(text: str) -> str:
    return "".join(chr(ord(c) + 0xFEE0) if c.isdigit() else c for c in text)


def circled(text: str) -> str:
    return "".join(chr(0x2460 + int(c) - 1) if c in "123456789" else c for c in text)


def of_v4(address: str) -> list[str]:
    """The ways to write one IPv4 address as a host."""
    value = int(ipaddress.IPv4Address(address))
    a, b, c, d = address.split(".")
    low = value & 0xFFFF
    hexadecimal = f"{value >> 16:x}:{low:x}"
    return [
        address, f"{a}.{b}.{int(c) * 256 + int(d)}", f"{a}.{value & 0xFFFFFF}", str(value),
        hex(value), f"0{value:o}", f"0x{int(a):x}.0x{int(b):x}.0x{int(c):x}.0x{int(d):x}",
        f"0{int(a):o}.0{int(b):o}.0{int(c):o}.0{int(d):o}", f"0{int(a):o}.{b}.0x{low:x}",
        f"000{int(a):o}.{b}.{c}.{d}", address + ".", fullwidth(address), circled(address),
        address.replace(".", "。"), address.replace(".", "．"), address.replace(".", "%2e"),
        "".join(f"%{ord(ch):02x}" for ch in address), f"[::ffff:{address}]", f"[::ffff:{hexadecimal}]",
        f"[0:0:0:0:0:ffff:{hexadecimal}]", f"[64:ff9b::{hexadecimal}]", f"[2002:{hexadecimal}::]",
        f"[::{address}]", f"[64:ff9b:1::{hexadecimal}]", f"[2001:0:{hexadecimal}::]",
        str(value + 2 ** 32), f"{a}.{b}.{c}.{int(d) + 256}", hex(value).upper(), address + "%00",
    ]


def hosts() -> list[str]:
    every = [host for address in PRIVATE for host in of_v4(address)]
    for address in PRIVATE_6:
        every += [f"[{address}]", f"[{ipaddress.IPv6Address(address).exploded}]",
                  f"[{address}%25lo]", f"[{address.upper()}]"]
    return every + NAMES


def dressed(host: str, rng: random.Random) -> str:
    """A link to that host, in one of the forms that parsers disagree about."""
    return rng.choice([
        f"http://{host}/", f"http://{host}/", f"http://{host}:80/x", f"http://{host}:8080/",
        f"https://{host}/", f"HTTP://{host}/?q=1", f"http://{PUBLIC}@{host}/",
        f"http://{host}\\@{PUBLIC}/", f"http://{host}#@{PUBLIC}/", f"http:/{host}/", f"http:{host}",
        f"http:///{host}/", f"http:\\\\{host}\\x", f" http://{host}/ ", f"http://{host}\t/",
        f"ht\ntp://{host}/", f"http://a:b@{host}/", f"http://{host}?{PUBLIC}", f"//{host}/x",
        f"http://{PUBLIC}:80#@{host}/", f"http://{PUBLIC}%2f@{host}/", f"http://{host}:0080/",
        f"http://{host}./", f"http://[{host}]/", f"http://{PUBLIC}\u3000@{host}/",
    ])
