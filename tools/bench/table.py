"""From measurements to verdicts: rows, their ratios, and how they are shown."""

import dataclasses
import math
import statistics
import typing


@dataclasses.dataclass
class Row:
    """One line of the table. With pairs, (ours, baseline) of interleaved runs, its figure is the
    ratio of the medians; without a baseline it is the median of ours."""

    name: str
    aim: typing.Optional[float]  # None for a figure that only accompanies another
    unit: str  # of ours and baseline; "" when there is no baseline
    pairs: list = dataclasses.field(default_factory=list)
    skipped: str = ""
    notes: dict = dataclasses.field(default_factory=dict)  # further figures, for bench.json

    @property
    def ours(self):
        return statistics.median(pair[0] for pair in self.pairs)

    @property
    def baseline(self) -> typing.Optional[float]:
        if self.pairs[0][1] is None:
            return None
        return statistics.median(pair[1] for pair in self.pairs)

    @property
    def figure(self):
        return self.ours if self.baseline is None else self.ours / self.baseline

    @property
    def spread(self):
        """The middle half of the single runs' figures."""
        figures = [ours if base is None else ours / base for ours, base in self.pairs]
        if len(figures) < 2:
            return (figures[0], figures[0])
        quarters = statistics.quantiles(figures, n=4, method="inclusive")
        return (quarters[0], quarters[2])

    @property
    def verdict(self):
        if self.skipped:
            return f"skipped: {self.skipped}"
        if self.aim is None:
            return "no aim"
        return "ok" if self.pairs and self.figure <= self.aim else "miss"

    def as_json(self):
        result = {"name": self.name, "aim": self.aim, "verdict": self.verdict}
        if not self.skipped and self.pairs:
            result.update(ours=self.ours, baseline=self.baseline, unit=self.unit,
                          figure=self.figure, spread=self.spread, runs=len(self.pairs))
        if self.notes:
            result["notes"] = self.notes
        return result


def number(value):
    """Three significant digits, and thousands set apart."""
    if value is None:
        return ""
    if value == 0:
        return "0"
    digits = max(0, 2 - math.floor(math.log10(abs(value))))
    return f"{value:,.{digits}f}"


def exponent(points):
    """Of the power of its size with which the cost grows over the last two sizes: 1 is linear."""
    (small, small_cost), (large, large_cost) = sorted(points)[-2:]
    return math.log(large_cost / small_cost) / math.log(large / small)


HEADINGS = ("row", "ours", "baseline", "unit", "ratio", "spread", "aim", "")


def cells(row):
    if row.skipped or not row.pairs:
        return (row.name, "", "", "", "", "", number(row.aim), row.verdict)
    low, high = row.spread
    return (row.name, number(row.ours), number(row.baseline), row.unit, number(row.figure),
            f"{number(low)} to {number(high)}", number(row.aim), row.verdict)


def as_text(rows):
    lines = [HEADINGS, *map(cells, rows)]
    widths = [max(len(line[i]) for line in lines) for i in range(len(HEADINGS))]
    return "\n".join(
        "  ".join(text.ljust(width) if i in (0, 3, 7) else text.rjust(width)
                  for i, (text, width) in enumerate(zip(line, widths))).rstrip()
        for line in lines)


def as_markdown(rows):
    lines = ["| " + " | ".join(HEADINGS[:-1]) + " | verdict |",
             "|---|--:|--:|---|--:|--:|--:|---|"]
    lines += ["| " + " | ".join(cells(row)) + " |" for row in rows]
    return "\n".join(lines)


def replaced_block(text, block, begin="<!-- figures -->", end="<!-- end of figures -->"):
    """The text with what stands between the marks replaced."""
    before, found, rest = text.partition(begin)
    _, found_end, after = rest.partition(end)
    if not found or not found_end:
        raise ValueError("the text has no place for the figures")
    return f"{before}{begin}\n{block}\n{end}{after}"
