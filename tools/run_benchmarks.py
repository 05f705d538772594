#!/usr/bin/env python3
"""Runs the benchmarks, prints them as they come, and writes docs/benchmarks.md (the table) and
docs/benchmarks.svg (the chart of the ratios).

A benchmark prints a heading "WHAT; peer: WHO", and under it rows
    WHAT  OURS  PEER'S  UNIT  x RATIO  [goal <= GOAL]
where the ratio is the median of the paired, interleaved runs' ratios.
"""

import argparse
import os
import re
import subprocess
import sys
from dataclasses import dataclass
from pathlib import Path

import matplotlib

matplotlib.use("svg")
import matplotlib.pyplot as plt  # noqa: E402  (the backend is chosen before)

REPOSITORY = Path(__file__).resolve().parent.parent
DOCS = REPOSITORY / "docs"
HEADING = re.compile(r"^(\S.*); peer: (.+)$")
ROW = re.compile(
    r"^  (\S.*?) +([\d.]+) +([\d.]+) (\S+) +x +([\d.]+)(?:  goal ([<>])= ([\d.]+))?$"
)
# More of these is better.
RATES = ("GB/s", "MB/s")


@dataclass
class Row:
    what: str
    ours: float
    peers: float
    unit: str
    ratio: float
    sign: str
    goal: float

    @property
    def times_better(self):
        """How much better ours is than the peer's, whatever the unit counts."""
        return self.ratio if self.unit in RATES else 1 / max(self.ratio, 1e-6)

    @property
    def is_reached(self):
        if not self.sign:
            return None
        return self.ratio <= self.goal if self.sign == "<" else self.ratio >= self.goal


def run(command):
    """[(heading, peer, rows)] of a program, whose output goes on to the caller's."""
    sections = []
    with subprocess.Popen(
        ["bash", "-c", f". tools/environment.sh; {command}"],
        cwd=REPOSITORY, stdout=subprocess.PIPE, text=True, errors="replace",
    ) as program:  # fmt: skip
        for line in program.stdout:
            line = line.rstrip()
            print(line, flush=True)
            if heading := HEADING.match(line):
                sections.append((heading[1], heading[2], []))
            elif row := ROW.match(line):
                what, ours, peers, unit, ratio, sign, goal = row.groups()
                sections[-1][2].append(
                    Row(what, float(ours), float(peers), unit, float(ratio), sign, float(goal or 0))
                )
    if program.returncode != 0:
        sys.exit(f"error: {command} failed")
    return sections


def machine():
    model = next(
        (line.split(":")[1].strip() for line in open("/proc/cpuinfo") if "model name" in line),
        "unknown processor",
    )
    release = subprocess.run(["wine", "--version"], check=True, capture_output=True, text=True)
    return f"{model}, {os.cpu_count()} cores; {release.stdout.strip()}"


def number(value):
    return f"{value:,.0f}" if value >= 1000 else f"{value:.3g}"


def table(sections, where):
    lines = [
        "# Benchmarks",
        "",
        f"Measured by `./bench` on {where}. Each row stands for paired, interleaved runs in one",
        "process or one after the other: the medians of our figures and of the peer's, and the median",
        "of the ratios of ours to the peer's. For times and sizes less is better, for rates more.",
        "",
        "![How much better than the peer](benchmarks.svg)",
        "",
    ]
    for heading, peer, rows in sections:
        lines += [f"## {heading}", "", f"Peer: {peer}.", ""]
        lines += ["| what | ours | peer | unit | ratio | goal | |", "|---|--:|--:|---|--:|--:|---|"]
        for row in rows:
            goal = f"{'≤' if row.sign == '<' else '≥'} {number(row.goal)}" if row.sign else ""
            verdict = {True: "reached", False: "missed", None: ""}[row.is_reached]
            lines.append(
                f"| {row.what} | {number(row.ours)} | {number(row.peers)} | {row.unit} "
                f"| {number(row.ratio)} | {goal} | {verdict} |"
            )
        lines.append("")
    return "\n".join(lines)


def chart(sections, where, path):
    shades = {True: "#2b7a4b", False: "#b5542a", None: "#7a8694"}
    labels, bars, headings = [], [], []
    for heading, peer, rows in sections:
        headings.append(len(labels))
        labels.append(f"{heading}; peer: {peer}")
        for row in rows:
            bars.append((len(labels), row.times_better - 1, shades[row.is_reached]))
            labels.append(row.what)
    matplotlib.rcParams.update({"svg.hashsalt": "qvrtlib", "svg.fonttype": "none", "font.size": 7})
    figure, axes = plt.subplots(figsize=(9, 1 + 0.14 * len(labels)), layout="constrained")
    places, lengths, colors = zip(*bars)
    axes.barh(places, lengths, left=1, color=colors, height=0.7)
    ticks = axes.set_yticks(range(len(labels)), labels)
    for place in headings:
        ticks[place].label1.set_fontweight("bold")
    axes.tick_params(axis="y", length=0)
    axes.set_ylim(len(labels), -1)
    axes.set_xscale("log")
    axes.xaxis.set_major_formatter(lambda times, _: f"{times:g} x")
    axes.tick_params(axis="x", top=True, labeltop=True)
    axes.axvline(1, color="black", linewidth=0.6)
    axes.grid(axis="x", linewidth=0.3)
    axes.set_axisbelow(True)
    axes.set_xlabel(
        "times better than the peer; green: goal reached, brown: goal missed, grey: no goal"
    )
    figure.suptitle(f"QvRtLib beside its peers ({where})", fontsize=8)
    figure.savefig(path, metadata={"Date": None})


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("commands", nargs="+", help="what to run, a benchmark each")
    parser.add_argument("--keep", action="store_true", help="print only, leave the documents alone")
    options = parser.parse_args()
    sections = [section for command in options.commands for section in run(command) if section[2]]
    rows = [row for _, _, group in sections for row in group]
    judged = [row for row in rows if row.is_reached is not None]
    print(f"\n{len(rows)} rows; {sum(row.is_reached for row in judged)} of {len(judged)} goals reached")
    if options.keep:
        return
    where = machine()
    (DOCS / "benchmarks.md").write_text(table(sections, where), "utf-8")
    chart(sections, where, DOCS / "benchmarks.svg")


if __name__ == "__main__":
    main()
