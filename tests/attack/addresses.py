"""Links that strangers give: none leads to this machine or its networks, however it is spelled, by
redirect, by a name that resolves there, or by one that resolves there the second time."""
from __future__ import annotations

import ipaddress
import random
from pathlib import Path

from attack import namespace
from attack.network import Network
from attack.rows import Row, left_out
from attack.spellings import PRIVATE, PUBLIC, dressed, hosts
from attack.web import page, redirect, reply
from attack.world import World

TRIED = ("links of agents, pages and feeds to private addresses: by spelling, by name, by redirect, "
         "by rebinding, as pictures, as feeds; everything that was reached is noted")
WAYS = ("direct", "direct", "redirect", "redirect", "name", "rebinding", "picture", "dug", "feed link")
A_RUN = 60


def is_public(address: str) -> bool:
    parsed = ipaddress.ip_address(address)
    inner = getattr(parsed, "ipv4_mapped", None)
    return (inner or parsed).is_global and not parsed.is_multicast


class Round:
    """One search run, with a set of links that all lead where they may not."""

    def __init__(self, network: Network, rng: random.Random, number: int) -> None:
        self.network = network
        self.rng = rng
        self.number = number
        self.links: list[str] = []
        self.dug: dict[str, dict[str, str]] = {}
        self.items: list[str] = []
        self.targets: list[str] = []

    def add(self, index: int, host: str) -> None:
        way = self.rng.choice(WAYS)
        target = dressed(host, self.rng)
        self.targets.append(f"{way}: {target}")
        place = f"/{self.number}-{index}"
        public = f"http://{PUBLIC}{place}"
        private = self.rng.choice(PRIVATE).replace(".", "-")
        if way == "direct":
            self.links.append(target)
        elif way == "redirect":
            hops = self.rng.randrange(3)
            for hop in range(hops):
                self.network.serve(f"{place}-{hop}", redirect(f"{place}-{hop + 1}"))
            self.network.serve(f"{place}-{hops}", redirect(target.replace("\n", "").strip()))
            self.links.append(f"{public}-0")
        elif way == "name":
            self.links.append(f"http://{self.rng.choice(('a', 'six'))}-{private}.example.org{place}")
        elif way == "rebinding":
            name = f"turn-{private}.n{self.number}-{index}.example.org"
            self.network.serve(place, redirect(f"http://{name}{place}-more"))
            self.links.append(f"http://{name}{place}")
        elif way == "picture":
            body = (f'<title>Page</title><meta property="og:image" content="{target}">'
                    f'<link rel="icon" href="{target}"><article><p>{"mot " * 300}</article>')
            self.network.serve(place, reply(body.encode()))
            self.links.append(public)
        elif way == "dug":
            self.network.serve(place, reply(b"", status="404 Not Found"))
            self.links.append(public)
            self.dug[place] = {"url": target, "title": "Ailleurs", "what": "Une nouvelle."}
        else:
            self.items.append(f"<item><title>Article {index}</title><link>{place}</link>"
                              f"<guid>{index}</guid></item>")
            self.network.serve(place, redirect(target.strip()))


def feed_sites(network: Network, round_: Round, rng: random.Random) -> list[dict[str, str]]:
    """Sites the person trusts, whose pages announce feeds elsewhere."""
    items = "".join(round_.items)
    feed = f'<?xml version="1.0"?><rss version="2.0"><channel><title>F</title>{items}</channel></rss>'
    network.serve("/feed", reply(feed.encode(), "Content-Type: application/rss+xml"))
    sites = []
    for number in range(3):
        target = "/feed" if number == 0 else dressed(rng.choice(hosts()), rng).strip()
        body = (f'<title>Site</title><link rel="alternate" type="application/rss+xml" '
                f'href="{target}">')
        network.serve(f"/site{number}", reply(body.encode()))
        sites.append({"address": f"http://{PUBLIC}/site{number}"})
    return sites


def one_run(world: World, network: Network, rng: random.Random, chosen: list[str], number: int,
            row: Row) -> None:
    round_ = Round(network, rng, number)
    for index, host in enumerate(chosen):
        round_.add(index, host)
    network.serve("/control", page("Une page publique", "mot " * 400))
    links = [f"http://{PUBLIC}/control", "http://ordinary.example.org/control-2", *round_.links]
    network.serve("/control-2", page("Une autre", "mot " * 400))
    world.topics.unlink(missing_ok=True)
    world.give_settings(interests=[f"Sujet {n}" for n in range(12)], calibrated=True,
                        prioritySites=feed_sites(network, round_, rng))
    found = [{"title": f"Nouvelle {n}", "url": link, "kind": "article", "about": f"Sujet {n % 12}"}
             for n, link in enumerate(links)]
    from_feed = [{"title": "Article", "url": f"http://{PUBLIC}/{number}-{n}", "kind": "article",
                  "about": "Sujet 1"} for n in range(len(chosen))][:20]
    world.give_agent({"candidates": {"trusts, for their": from_feed, "Topics the person": found},
                      "dig": round_.dug})
    network.forget()
    allowed = {"VORLE_ALLOW_LOOPBACK": "0"} if number % 2 else {}  # both mean no
    result = world.run("fouille", env=allowed, seconds=240)
    row.draws += len(chosen)
    if result.crash:
        row.fault(result.crash)
    private = sorted({address for address in network.reached() if not is_public(address)})
    for address in private:
        row.fault(f"run {number}: {address} was reached; asked: "
                  f"{[a for a in network.asked() if PUBLIC not in a][:3]}")
    asked = " ".join(network.asked())
    if "/control" not in asked or "/control-2" not in asked:
        row.fault(f"run {number}: the public pages were not reached, so nothing is shown: "
                  f"{result.err[-200:]}")


def inside(program: Path, draws: int, seed: int) -> list[Row]:
    row = Row("addresses", TRIED)
    rng = random.Random(seed)
    try:
        network = Network(PUBLIC)
    except OSError as error:
        return [left_out("addresses", TRIED, str(error))]
    network.otherwise(page("Une page", "mot " * 300))
    every = hosts()
    rng.shuffle(every)
    plan = (every * (draws // len(every) + 1))[:draws]
    typed = Row("addresses", "the same addresses typed by the person, which may be reached")
    with World(program, "net") as world:
        for number, start in enumerate(range(0, len(plan), A_RUN)):
            one_run(world, network, rng, plan[start:start + A_RUN], number, row)
        for address in ("127.0.0.1", "10.1.2.3", "localhost"):
            network.forget()
            result = world.run("lire", f"http://{address}/typed", "--json")
            typed.draws += 1
            if result.status != 0 or not network.reached():
                typed.fault(f"{address} was typed and not reached: {result.err[-160:]}")
        for left in sum(world.settle(5), []):
            row.fault(f"left behind: {left}")
    row.note = "IPv4 and IPv6" if network.six else "IPv4 alone: no IPv6 here"
    return [row, typed]


def run(program: Path, draws: int, seed: int) -> list[Row]:
    rows = namespace.run("addresses", "inside", program, draws, seed, net=True)
    return rows or [left_out("addresses", TRIED, "this machine allows no network of our own")]
