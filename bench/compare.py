#!/usr/bin/env python3
"""Compares the benchmarks with their goals and with rivals, and writes the table to
docs/performance.md. Called by `scripts/bench --compare`; --quick measures each thing once, and --steps
measures only the steps and the growth, and replaces their sections.

Rivals run in alternation with the program, so that both meet the same state of the machine. The
figures are medians; the spread is the lowest and the highest of the runs.
"""
import json
import os
import platform
import re
import statistics
import subprocess
import sys
from datetime import date
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "release"
BENCHES = BUILD / "bench"
RUNS = 1 if "--quick" in sys.argv else 5
PASS = {"courses": 10, "students": 120, "assignments": 40, "latency": 50}


def run(*command):
    environment = os.environ | {"QT_QPA_PLATFORM": "offscreen"}
    return subprocess.run([str(word) for word in command], check=True, capture_output=True,
                          text=True, env=environment).stdout


def google_bench(name, *arguments, filter=None):
    """The results of a benchmark program, by the name of the benchmark."""
    command = [BENCHES / f"{name}_bench", "--benchmark_format=json", *arguments]
    if filter:
        command.append(f"--benchmark_filter={filter}")
    results = json.loads(run(*command))["benchmarks"]
    for each in results:
        if each.get("error_occurred"):
            sys.exit(f"{each['name']}: {each['error_message']}")
    return {each["name"].split("/iterations")[0]: each for each in results}


class Row:
    def __init__(self, what, unit, ours, goal, rival=None, rival_name="", ratio_goal=None,
                 pairs=None):
        """`goal` is the limit for our figure, `ratio_goal` that for the ratio of each pair."""
        self.what, self.unit, self.ours, self.goal = what, unit, ours, goal
        self.rival, self.rival_name, self.ratio_goal = rival, rival_name, ratio_goal
        ratios = pairs or ([a / b for a, b in zip(ours, rival)] if rival else [])
        self.ratio = statistics.median(ratios) if ratios else None

    def holds(self):
        held = self.goal is None or statistics.median(self.ours) <= self.goal
        return held and (self.ratio_goal is None or self.ratio <= self.ratio_goal)

    def cells(self):
        def figure(value):
            return f"{value:.0f}" if value >= 100 else f"{value:.3g}"

        def figures(values):
            text = f"{figure(statistics.median(values))} {self.unit}"
            if len(values) > 1:
                text += f" ({figure(min(values))} to {figure(max(values))})"
            return text
        goals = []
        if self.goal is not None:
            goals.append(f"{figure(self.goal)} {self.unit}")
        if self.ratio_goal is not None:
            goals.append(f"{self.ratio_goal} ×")
        rival = f"{self.rival_name}: {figures(self.rival)}" if self.rival else ""
        return [self.what, figures(self.ours), rival,
                f"{self.ratio:.2f}" if self.ratio is not None else "", ", ".join(goals) or "none",
                "yes" if self.holds() else "**no**"]


def served_canvas():
    options = [f"--{name}={value}" for name, value in PASS.items()]
    server = subprocess.Popen(
        [BUILD / "tests" / "ellwynd-fake-canvas", "--seconds=1800", *options],
        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    return server, server.stdout.readline().strip(), server.stdout.readline().strip()


def compare_passes():
    """Our pass, the bound for it, and a serial script, in alternation."""
    ours, bound, serial, memory = [], [], [], []
    server, address, authority = served_canvas()
    try:
        for _ in range(RUNS):
            result = google_bench("pass", "1")["scoreAllCourses"]
            ours.append(result["median_s"])
            bound.append(result["bound_s"])
            memory.append(result["peak_MB"])
            serial.append(float(run(
                sys.executable, ROOT / "bench" / "serialpass.py", address, authority,
                "secret-token", PASS["students"], PASS["assignments"])))
    finally:
        server.stdin.close()
        server.wait()
    what = "scoring pass, 10 courses × 120 students × 40 assignments, 50 ms a request"
    return [Row(what, "s", ours, None, bound, "the bound, six requests in flight", 1.05),
            Row(what, "s", ours, None, serial, "serial Python", 1),
            Row("memory of that process", "MB", memory, 45),
            Row("memory of the process after the pass of the large teacher", "MB",
                [google_bench("pass", "1", 40, 200, 60)["scoreAllCourses"]["peak_MB"]], 200)]


def compare_decoding():
    ours, parse, loop = [], [], []
    for _ in range(RUNS):
        results = google_bench("decoding")
        ours.append(results["decodeSubmissions/real_time"]["real_time"])
        parse.append(results["parseOnly/real_time"]["real_time"])
        loop.append(results["handWrittenLoop/real_time"]["real_time"])
    what = "decode 30,000 submissions, 36 MB"
    return [Row(what, "ms", ours, None, parse, "simdjson’s DOM parse alone", 1.1),
            Row(what, "ms", ours, None, loop, "a loop over the seven keys in simdjson’s DOM")]


def compare_startup():
    text = run(BENCHES / "startup_bench")

    def median(name):
        return [float(value) for value in re.search(
            rf"^{name}: median ([\d.]+).*?lowest ([\d.]+), highest ([\d.]+)", text, re.M).groups()]
    start, empty, ratio = median("startup"), median("empty window"), median("ratio of a pair")
    return [Row("start to the first painted dashboard of the sample college", "ms", start, 70,
                empty, "empty window", 1.5, pairs=ratio[:1])]


def simple_rows():
    rows = []
    for what, bench, name, goal, scale in (
            ("score 500 students × 80 assignments with reasons", "scoring", "scoreLargeCourse", 1.5,
             1),
            ("load a year of history", "history", "loadYear/1", 25, 1),
            ("record a visit and save", "history", "recordAndSave/1", 8, 1),
            ("movement of one course", "history", "movementOfCourse/1", 0.5, 1),
            ("first push of 1,000 settings, longest step", "sync", "push", 16, "longest_step_ms"),
            ("take-over of 1,000 settings, longest step", "sync", "takeOver", 16,
             "longest_step_ms")):
        figures = []
        for _ in range(RUNS):
            result = google_bench(bench, filter=f"^{name}")[name]
            figures.append(result["cpu_time"] if scale == 1 else result[scale])
        rows.append(Row(what, "ms", figures, goal))
    return rows


def requests():
    """What a busy minute asks Canvas for, beside what it may."""
    counts = {name: [int(count)] for name, count in
              re.findall(r"^(.*): (\d+)$", run(BENCHES / "minute_bench"), re.M)}
    (minute, bound), (refreshes, two) = list(counts.items())[:2], list(counts.items())[2:]
    return [Row(each[0], "requests", each[1], None, limit[1], limit[0], 1)
            for each, limit in ((minute, bound), (refreshes, two))]


def window_program(*arguments):
    """The longest step of each phase of a run, the memory after the first pass, and the most in any
    phase."""
    worst, after_pass, most = {}, 0, 0
    for line in run(BENCHES / "largeteacher_bench", *arguments).splitlines():
        phase = re.match(r" *(\S.*?) {2,}([\d.]+) +([\d.]+) +([\d.]+) +(\d+)", line)
        if phase:
            name, step, resident = phase[1], (float(phase[2]), float(phase[3])), int(phase[5])
            worst[name] = tuple(map(max, worst.get(name, step), step))
            if name == "the end of the pass" and not after_pass:
                after_pass = resident
            most = max(most, resident)
    return worst, after_pass, most


def warm_up():
    """A short run that is not counted. It reads the program and the fonts from the disk."""
    run(BENCHES / "largeteacher_bench", "--courses", 2, "--students", 10, "--assignments", 5,
        "--settle", 20)


def large_teacher():
    """The longest steps of each phase in each run, and the memory of the window program."""
    runs = []
    for _ in range(RUNS):
        warm_up()
        runs.append(window_program())
    phases = {name: [worst[name] for worst, _, _ in runs] for name in runs[0][0]}
    return phases, memory_rows("the large teacher", runs, 260)


def ten_courses():
    runs = [window_program("--courses", 10, "--students", 120, "--assignments", 40)
            for _ in range(RUNS)]
    return memory_rows("10 courses × 120 students × 40 assignments", runs, 70)


def memory_rows(of, runs, goal):
    return [Row(f"window program after the pass of {of}, resident memory", "MB",
                [after_pass for _, after_pass, _ in runs], goal),
            Row("the same, the most in any phase", "MB", [most for _, _, most in runs], None)]


def memory_between(passes, first, *arguments):
    """The memory of the window program after five passes from one on, and after its last five."""
    text = run(BENCHES / "largeteacher_bench", "--passes", passes, "--from", first, *arguments)
    return ([float(value) for value in readings.split()] for readings in
            re.findall(r"^memory after \d+ passes, MB: (.*)$", text, re.M))


def long_runs():
    passes, days = (12, 2) if RUNS == 1 else (100, 120)
    early, late = memory_between(passes, 2)
    rows = [Row(f"window program of the large teacher after {passes} passes, memory", "MB", late, max(early),
                early, "after the second to the sixth")]
    # Small courses, so that a term takes minutes.
    early, late = memory_between(48 * days, 44, "--courses", 3, "--students", 30, "--assignments",
                                 10, "--settle", 20)
    return rows + [Row(f"memory of three small courses after {days} days of passes", "MB", late,
                       max(early), early, "at the end of the first day")]


def table(head, rows):
    lines = ["| " + " | ".join(head) + " |", "|" + "---|" * len(head)]
    lines += ["| " + " | ".join(row) + " |" for row in rows]
    return "\n".join(lines)


def main():
    rows = []
    for measure in (compare_startup, compare_decoding, simple_rows, compare_passes, requests):
        for row in measure():
            print(*row.cells(), sep=" | ", file=sys.stderr, flush=True)
            rows.append(row)
    phases, memory = large_teacher()
    rows += memory + ten_courses() + long_runs()
    write_document(rows, phases)


def steps_only():
    page = ROOT / "docs" / "performance.md"
    steps = steps_table(large_teacher()[0])
    growth = run(BENCHES / "growth_bench").rstrip()
    text = page.read_text()
    text = re.sub(r"\| phase \|.*?\n\n", lambda _: steps + "\n\n", text, flags=re.S)
    text = re.sub(r"```\n.*?\n```", lambda _: f"```\n{growth}\n```", text, flags=re.S)
    page.write_text(text)


def steps_table(phases):
    def cell(values):
        return f"{statistics.median(values):.1f} ({min(values):.1f} to {max(values):.1f})"

    rows = []
    for name, steps in phases.items():
        processor, wall = zip(*steps)
        held = max(wall) <= 16
        rows.append([name, cell(processor), cell(wall), "yes" if held else "**no**"])
    return table(["phase", "processor time, ms", "wall time, ms", "at most 16 ms"], rows)


def write_document(rows, phases):
    growth = run(BENCHES / "growth_bench").rstrip()
    head = ["what", "ours", "beside", "ratio", "goal", "holds"]
    results = table(head, [row.cells() for row in rows])
    steps = steps_table(phases)
    load = os.getloadavg()
    document = METHOD.format(
        day=date.today().isoformat(), cores=os.cpu_count(), machine=platform.machine(),
        load=f"{load[0]:.1f}", runs=RUNS, results=results, steps=steps, growth=growth)
    (ROOT / "docs" / "performance.md").write_text(document)
    print(results, "", steps, "", growth, sep="\n")


METHOD = """\
# Performance

This page is written by `scripts/bench --compare`, which builds the program as released and runs the
programs of `bench/`. The figures below are of {day}, on a machine with {cores} cores ({machine}); at
the end of the run its load was {load}. With other programs on the machine, wall times are too high.

## Method

- Each figure is the median of {runs} runs unless its line says otherwise; the lowest and the highest
  follow in parentheses. What is compared runs in alternation with the program. Figures without a
  spread are of one run.
- The scoring pass reads a fake Canvas over HTTPS on loopback, in a process of its own, which delays
  every response. Its bound is the time of the longest chain of pages that follow each other, with six
  requests in flight and nothing else taking time. The serial script is `bench/serialpass.py`.
- The start is measured from the start of the process to its first painted course card, beside a
  program that shows an empty window of the same toolkit, in pairs.
- A step is one event that the main thread handles, with everything that it causes before the thread
  returns to its event loop. The application object measures each event in wall time and in processor
  time of the main thread. The goal of 16 ms is for wall time; processor time is given because other
  programs change it less. Each run follows a short one that is not counted, so that the program and
  the fonts need not be read from the disk.
- The large teacher has 40 courses of 200 students and 60 assignments, 216,000 recorded levels on 27
  days, 2,000 contacts and settings of 500 courses. The worse of the figures after the first and after
  the second pass counts for a run; a phase holds if it does in every run.

## Goals

{results}

## Longest steps of the large teacher

{steps}

## Growth

Milliseconds for a size, 4 times and 16 times the size, and the exponent e of “time ~ size^e” between
the first and the last. Only sorting may be above 1.

```
{growth}
```
"""


if "--steps" in sys.argv:
    steps_only()
else:
    main()
