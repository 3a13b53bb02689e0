"""What an area hands back: one row a kind of attack, and the table that they make."""
from __future__ import annotations

from dataclasses import dataclass, field


@dataclass
class Row:
    """One kind of attack: how often it was tried, and everything that did not hold."""

    area: str
    tried: str
    draws: int = 0
    faults: list[str] = field(default_factory=list)
    note: str = ""
    left_out: str = ""

    def fault(self, text: str) -> None:
        """Notes that the bar was missed, with what a reader needs to see it again."""
        self.faults.append(" ".join(text.split())[:400])

    @property
    def held(self) -> bool:
        return not self.faults

    def outcome(self) -> str:
        if self.left_out:
            return f"left out: {self.left_out}"
        said = "nothing" if self.held else f"**{len(self.faults)}**: {self.faults[0][:160]}"
        return f"{said} ({self.note})" if self.note else said


def left_out(area: str, tried: str, why: str) -> Row:
    return Row(area, tried, left_out=why)


HEAD = ["| area | what was tried | how often | what was lost | when |", "|---|---|---:|---|---|"]


def line(row: Row, when: str) -> str:
    times = "–" if row.left_out else f"{row.draws:,}"
    cells = [row.area, row.tried, times, row.outcome(), when]
    return "| " + " | ".join(cell.replace("|", "\\|").replace("<", "\\<") for cell in cells) + " |"


def table(rows: list[Row], when: str) -> str:
    """The rows as Markdown. `when`: the date, the commit and the build they are of."""
    return "\n".join([*HEAD, *(line(row, when) for row in rows)])


def recorded(page: str, rows: list[Row], when: str) -> str:
    """The page, with these rows in its table in the place of earlier ones of the same areas."""
    areas = {row.area for row in rows}
    before, head, rest = page.partition("\n".join(HEAD) + "\n")
    if not head:
        raise ValueError("the page has no table to record in")
    lines = rest.split("\n")
    end = next((n for n, text in enumerate(lines) if not text.startswith("|")), len(lines))
    kept = [text for text in lines[:end] if text.split("|")[1].strip() not in areas]
    made = kept + [line(row, when) for row in rows]
    order = {area: n for n, area in enumerate(
        "kills ends calls disks files places servers addresses pages answers names clocks".split())}
    made.sort(key=lambda text: order.get(text.split("|")[1].strip(), 99))
    return before + head + "\n".join(made + lines[end:])
