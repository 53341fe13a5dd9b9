#!/usr/bin/env python3
"""Runs the benchmarks and prints each figure as a ratio to its stated limit.

    bench/ratios.py [--page] [PROGRAM-FOLDER]     default build/release/bin

What is measured and what it is compared to take turns, seven times or more. A row shows the
median of the ratios of the turns and the least and the greatest of them, by real time and by the
processor time of all threads; it is missed when one of the medians is above its limit. With
--page the table is put into docs/speed.md, too.
"""
import json
import os
import pathlib
import platform
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
TURNS = 7
STARTS = 21
PAGE = ROOT / "docs" / "speed.md"

# Rows of the benchmarks: what is measured, less what, over what, at most. Sums of names, which
# may have a factor.
PROGRAMS = {
    "compositor_bench": [
        ("the world drawn, one board of solid tiles / copying its rows",
         "BoardFillsTarget", "CopyRows", 1.6),
        ("the board behind a layer with holes / back to front",
         "HoleyLayer", "HoleyLayerBackToFront", 0.2),
        ("1,000 objects with holes / back to front",
         "ManyObjects", "ManyObjectsBackToFront", 0.2),
        ("what 100,000 unseen objects add / a walk over as many nodes",
         "Covered/100000 - Covered/0", "WalkNodes/100000", 2.0),
    ],
    "areas_bench": [
        ("fill of 1,000 by 1,000 / one memset of the picture", "Fill/1000", "ClearSurface", 3.5),
        ("fill of 1,000 by 1,000 / the same cell by cell", "Fill/1000", "FillCells/1000", 0.8),
        ("paste / a fill cell by cell", "Paste/1000", "FillCells/1000", 2.0),
        ("blend / the same", "Blend/1000", "FillCells/1000", 2.0),
        ("Normal Fade without Random / the same", "Normal/1000", "FillCells/1000", 1.3),
        ("Normal Fade with the most Random / the same and as many random numbers",
         "ScatteredNormal/1000", "FillCells/1000 + NormalDraws", 1.3),
        ("Distance Fade / the same and as many random numbers",
         "Distance/1000", "FillCells/1000 + DistanceDraws", 1.3),
        ("Slime Fade / the same and as many random numbers",
         "Slime/1000", "FillCells/1000 + SlimeDraws", 2.5),
        ("flood of a plain grid / Allegro's floodfill", "FloodPlain/1000", "AllegroFloodPlain", 3),
        ("flood through noise / the same", "FloodNoise/1000", "AllegroFloodNoise", 0.1),
        ("flood of a comb / the same", "FloodComb/1000", "AllegroFloodComb", 0.1),
        ("flood along a serpentine / the same",
         "FloodSerpentine/1000", "AllegroFloodSerpentine", 0.5),
        ("one tile selected by a box / clearing the mask",
         "SelectOneByRect", "ClearMaskAlone", 1.1),
        ("one tile selected by a flood / clearing the mask",
         "SelectOneByFlood", "ClearMaskAlone", 1.1),
    ] + [
        (f"{name}: a cell of 1,000 by 1,000 / of 500 by 500", f"{name}/1000", f"{name}/500", 1.5)
        for name in ("FloodPlain", "Fill", "Paste", "Blend", "Normal", "ScatteredNormal",
                     "Distance", "Slime")
    ],
    "view_bench": [
        ("whole repaint of the edit view / QPainter's drawImage of 8 bits",
         "RepaintView", "DrawIndexedImage", 1.2),
    ],
    "script_bench": [
        ("Programming on 60,000 characters / on an empty script, and a bare control's text",
         "OpenLongScript", "OpenEmptyAndSetBareText", 1.5),
    ],
    "tree_bench": [
        ("repaint of the list, 10,000 nodes / 100 that fill it",
         "Repaint/10000/0", "Repaint/100/0", 1.1),
        ("the same, scrolled to its end", "Repaint/10000/9900", "Repaint/100/0", 1.1),
        ("a click on the last of 10,000 rows / of 100", "Click/10000", "Click/100", 1.1),
    ],
    # 100 ** 0.05 and 100 ** 0.1: how the cost may grow from 1,000 nodes to 100,000.
    "nodes_bench": [
        ("copy of 100,000 objects / 100 times 1,000", "Copy/100000", "100 * Copy/1000", 1.26),
        ("reading 100,000 objects / 100 times 1,000", "Read/100000", "100 * Read/1000", 1.26),
        ("moving one of 100,000 objects / one of 1,000", "Move/100000", "100 * Move/1000", 1.26),
        ("finding one of 100,000 ids / one of 1,000", "Find/100000", "Find/1000", 1.58),
    ],
    "files_bench": [
        (f"{verb.lower()}, {what} / {reference}",
         f"{verb}/{game}", f"{alone}/{game}", limits[game])
        for verb, alone, reference, limits in (
            ("Load", "Inflate", "inflate and checksum",
             {"samples": 2.5, "sample": 2.5, "random": 1.6}),
            ("Save", "Deflate", "deflate", {"samples": 1.15, "sample": 1.15, "random": 1.05}))
        for game, what in (("samples", "1,000 boards of the sample's kind"),
                           ("sample", "the sample"), ("random", "300 random boards"))
    ] + [
        ("load of 300 boards / 30 times that of 10", "Load/random", "30 * Load/few", 1.2),
        ("save of 300 boards / 30 times that of 10", "Save/random", "30 * Save/few", 1.2),
    ],
}

# Rows of whole programs, which take turns as well. What a peer takes to start, with a map of one
# tile, is taken off its time and not off ours.
TOOL = "{bin}/quilt-tool"
RASTERIZER = "tmxrasterizer --no-smoothing"
COMMANDS = {
    "diff": f"{TOOL} diff a.zqlt b.zqlt",
    "merge": f"{TOOL} merge a.zqlt a.zqlt b.zqlt -o joined.zqlt",
    "info a": f"{TOOL} info a.zqlt",
    "info b": f"{TOOL} info b.zqlt",
    "render random": f"{TOOL} render random.zqlt out.png",
    "render calm": f"{TOOL} render calm.zqlt out.png",
    "render small": f"{TOOL} render small.zqlt out.png",
    "repack": f"{TOOL} repack random.zqlt again.zqlt",
    "tiled random": f"{RASTERIZER} random.tmx peer.png",
    "tiled calm": f"{RASTERIZER} calm.tmx peer.png",
    "tiled small": f"{RASTERIZER} small.tmx peer.png",
    "tiled again": "tiled --export-map tmx random.tmx again.tmx",
    "tiled start": "tiled --export-map tmx one.tmx again.tmx",
    "start": "{bin}/view_bench --start",
    "empty": "{bin}/empty_window",
}
PROCESSES = [
    ("quilt-tool diff of two games of 1,000 boards / loading both", "diff", "info a + info b", 2.5),
    ("quilt-tool merge of such games / loading both", "merge", "info a + info b", 4.0),
    ("render 1,000 by 1,000 random / Tiled's rasterizer", "render random", "tiled random", 1 / 6),
    ("render 1,000 by 1,000 calm / the same", "render calm", "tiled calm", 1 / 15),
    ("render 128 by 96 / the same", "render small", "tiled small", 1 / 4),
    ("load and save 1,000 by 1,000 random / Tiled, CSV",
     "repack", "tiled again - tiled start", 1.0),
    ("start to the first painted window, off screen / a window by Qt alone", "start", "empty", 1.4),
    ("the same on an X server", "start X", "empty X", 1.2),
]


def terms(expression):
    """(factor, name) of each term."""
    sign = 1
    for term in re.split(r" ([+-]) ", expression):
        if term in "+-":
            sign = 1 if term == "+" else -1
        else:
            factor, _, name = term.rpartition(" * ")
            yield sign * int(factor or 1), name


def ratios(turns, measured, reference):
    """The ratios of the turns, by real time and by processor time."""
    def summed(turn, expression, clock):
        return sum(factor * turn[name][clock] for factor, name in terms(expression))
    return [[summed(turn, measured, clock) / summed(turn, reference, clock) for turn in turns]
            for clock in (0, 1)]


def benchmark_turns(program):
    """A table name: (real time, processor time) for each turn of a benchmark program."""
    out = subprocess.run(
        [program, "--benchmark_format=json", f"--benchmark_repetitions={TURNS}",
         "--benchmark_min_time=0.02", "--benchmark_enable_random_interleaving=true"],
        cwd=program.parent, check=True, capture_output=True, text=True).stdout
    turns = [{} for _ in range(TURNS)]
    for run in json.loads(out)["benchmarks"]:
        if run["run_type"] == "iteration":
            name = re.sub(r"/(iterations:\d+|process_time|real_time)", "", run["run_name"])
            turns[run["repetition_index"]][name] = (run["real_time"], run["cpu_time"])
    return turns


def run_once(command, folder, environment):
    """The real time and the processor time of a command, in seconds."""
    begin = time.perf_counter()
    with subprocess.Popen(command.split(), cwd=folder, env=environment, stdin=subprocess.DEVNULL,
                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as child:
        _, _, usage = os.wait4(child.pid, 0)
        real = time.perf_counter() - begin
        child.returncode = 0
    return real, usage.ru_utime + usage.ru_stime


class Inputs:
    """A folder of games and maps, and an X server if there is one to be had."""

    def __init__(self, programs):
        self.bin = programs
        self.folder = tempfile.TemporaryDirectory()
        bench = programs / "files_bench"
        subprocess.run([bench, "--write", self.folder.name], cwd=programs, check=True)
        os.symlink(programs / "Library", f"{self.folder.name}/Library")
        run = f"{programs}/quilt-tool render glyphs.zqlt glyphs.png"
        subprocess.run(run.split(), cwd=self.folder.name, check=True, stdout=subprocess.DEVNULL)
        self.server = None
        if shutil.which("Xvfb"):
            read, write = os.pipe()
            self.server = subprocess.Popen(["Xvfb", "-displayfd", str(write)], pass_fds=[write],
                                           stderr=subprocess.DEVNULL)
            self.display = ":" + os.read(read, 16).decode().strip()

    def close(self):
        if self.server:
            self.server.terminate()
            self.server.wait()
        self.folder.cleanup()

    def lacks(self, name):
        """What must be installed for a command, or None."""
        if name.endswith(" X"):
            return None if self.server else "Xvfb"
        program = COMMANDS[name].split()[0]
        return None if shutil.which(program.format(bin=self.bin)) else program

    def run(self, name):
        environment = dict(os.environ, QT_QPA_PLATFORM="offscreen")
        if name.endswith(" X"):
            environment.update(QT_QPA_PLATFORM="xcb", DISPLAY=self.display)
        starts = name.split()[0] in ("start", "empty")
        command = COMMANDS[name.removesuffix(" X")].format(bin=self.bin)
        return run_once(command, self.bin if starts else self.folder.name, environment)

    def memory(self):
        """The bytes at the peak of a load and those held afterwards."""
        out = subprocess.run([self.bin / "files_bench", "--memory", f"{self.folder.name}/a.zqlt"],
                             cwd=self.bin, check=True, capture_output=True, text=True).stdout
        return [int(number) for number in out.split()]


class Table:
    def __init__(self):
        self.lines = []
        self.missed = 0

    def add(self, what, limit, real, cpu=None):
        """A row of the ratios of all turns, by one clock or two."""
        middles = [statistics.median(series) for series in (real, cpu) if series]
        missed = max(middles) > limit
        self.missed += missed
        cells = [f"{statistics.median(s):.2f} ({min(s):.2f} to {max(s):.2f})" if s else "–"
                 for s in (real, cpu)]
        self.lines.append((what, *cells, f"{limit:.2f}", "missed" if missed else ""))
        print(f"{cells[0]:24} {cells[1]:24} of {limit:4.2f} {'MISSED ' if missed else ''}{what}",
              flush=True)

    def put_into_page(self):
        rows = ["| measured / compared to | real time | processor time | at most | |",
                "|---|---|---|---|---|", *("| " + " | ".join(line) + " |" for line in self.lines)]
        machine = f"{os.cpu_count()} processors, {platform.system()} {platform.machine()}"
        text = PAGE.read_text(encoding="utf-8")
        head = text[:text.index("<!-- table -->")]
        PAGE.write_text(head + "<!-- table -->\n\n" + "\n".join(rows) +
                        f"\n\nMeasured on {machine}.\n", encoding="utf-8")


def main():
    arguments = [a for a in sys.argv[1:] if a != "--page"]
    programs = pathlib.Path(arguments[0] if arguments else ROOT / "build/release/bin").resolve()
    table = Table()
    for name, rows in PROGRAMS.items():
        turns = benchmark_turns(programs / name)
        for what, measured, reference, limit in rows:
            table.add(what, limit, *ratios(turns, measured, reference))
    inputs = Inputs(programs)
    try:
        peak, world = inputs.memory()
        table.add("memory at the peak of a load / the world afterwards", 1.3, [peak / world])
        for what, measured, reference, limit in PROCESSES:
            names = {name for side in (measured, reference) for _, name in terms(side)}
            lacking = {inputs.lacks(name) for name in names} - {None}
            if lacking:
                print(f"left out, since {' and '.join(lacking)} is not installed: {what}")
                continue
            count = STARTS if measured.startswith("start") else TURNS
            turns = [{name: inputs.run(name) for name in sorted(names)} for _ in range(count)]
            table.add(what, limit, *ratios(turns, measured, reference))
    finally:
        inputs.close()
    if len(arguments) < len(sys.argv) - 1:
        table.put_into_page()
    return 1 if table.missed else 0


sys.exit(main())
