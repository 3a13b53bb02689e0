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


def table(rows: list[Row]) -> str:
    """The rows as Markdown."""
    lines = ["| area | what was tried | how often | what was lost |", "|---|---|---:|---|"]
    for row in rows:
        times = "–" if row.left_out else f"{row.draws:,}"
        cells = [row.area, row.tried, times, row.outcome()]
        lines.append("| " + " | ".join(cell.replace("|", "\\|") for cell in cells) + " |")
    return "\n".join(lines)
