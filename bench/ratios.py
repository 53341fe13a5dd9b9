#!/usr/bin/env python3
"""Runs the benchmarks and prints each figure as a ratio to its stated limit.

    bench/ratios.py [PROGRAM-FOLDER]     default build/release/bin

A measurement is the median of several repeats. The table below says what is compared to what:
a row is (what it says, measured, subtracted, reference, limit), the names being those of the
benchmarks; the ratio is (measured - subtracted) / reference. "name:counter" is a counter of a
benchmark instead of its time, and "100 * name" a hundred times its value.
"""
import json
import pathlib
import re
import statistics
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
REPEATS = 7
STARTS = 21

TABLE = {
    "compositor_bench": [
        ("DrawWorld, one board of solid tiles / copying the rows",
         "BoardFillsTarget", None, "CopyRows", 1.6),
        ("the board behind a layer with holes / back to front",
         "HoleyLayer", None, "HoleyLayerBackToFront", 0.6),
        ("1,000 objects with holes / back to front",
         "ManyObjects", None, "ManyObjectsBackToFront", 0.6),
        ("what 100,000 unseen objects add / a walk over as many nodes",
         "Covered/100000", "Covered/0", "WalkNodes/100000", 2.0),
    ],
    "areas_bench": [
        ("SelectFlood of 1,000 by 1,000 / Allegro's floodfill",
         "Flood/1000", None, "AllegroFloodfill", 6.0),
        ("FillRegion / drawing the glyphs alone", "Fill/1000", None, "DrawTiles", 1.5),
        ("PasteRegion / FillRegion", "Paste/1000", None, "Fill/1000", 2.0),
        ("BlendRegion / FillRegion", "Blend/1000", None, "Fill/1000", 2.0),
        ("Normal fade / FillRegion", "Normal/1000", None, "Fill/1000", 2.0),
        ("Normal fade with the most scatter / FillRegion",
         "ScatteredNormal/1000", None, "Fill/1000", 2.0),
        # The generator alone takes more than twice a fill here: four draws of rand for each cell.
        ("Normal fade with the most scatter, less its four draws a cell / FillRegion",
         "ScatteredNormal/1000", "FourDraws", "Fill/1000", 2.0),
        ("Distance fade / FillRegion", "Distance/1000", None, "Fill/1000", 2.0),
        ("Slime fade / FillRegion", "Slime/1000", None, "Fill/1000", 6.0),
        ("one tile selected by SelectRect / clearing the mask",
         "SelectOneByRect", None, "ClearMaskAlone", 1.1),
        ("one tile selected by SelectFlood / clearing the mask",
         "SelectOneByFlood", None, "ClearMaskAlone", 1.1),
    ] + [
        (f"{name} per cell, 1,000 by 1,000 / 250 by 250",
         f"{name}/1000", None, f"{name}/250", 1.5)
        for name in ("Flood", "Fill", "Paste", "Blend", "Normal", "ScatteredNormal", "Distance",
                     "Slime")
    ],
    "view_bench": [
        ("whole repaint of the edit view / QPainter's drawImage of 8 bits",
         "RepaintView", None, "DrawIndexedImage", 1.2),
        ("program start to the first painted window / an empty Qt window's",
         "Start", None, "EmptyStart", 1.5),
    ],
    "script_bench": [
        ("Programming dialog on 60,000 characters / on an empty script, and a bare control's text",
         "OpenLongScript", None, "OpenEmptyAndSetBareText", 1.5),
    ],
    "tree_bench": [
        ("repaint of the list, 10,000 nodes / 100 that fill it",
         "Repaint/10000/0", None, "Repaint/100/0", 1.5),
        ("a click on the last of 10,000 rows, less one in 100 / a walk over the nodes",
         "Click/10000", "Click/100", "WalkNodes/10000", 2.0),
    ],
    "files_bench": [
        ("load 1,000 boards / inflating and checksumming the entries",
         "Load/1000", None, "InflateEntries", 2.5),
        ("save 1,000 boards / deflating the entries",
         "Save/1000", None, "DeflateEntries", 1.1),
        ("memory at the peak of that load / the world afterwards",
         "LoadMemory:peak", None, "LoadMemory:world", 1.3),
        ("load of 1,000 boards / 100 times that of 10",
         "Load/1000", None, "100 * Load/10", 1.2),
        ("save of 1,000 boards / 100 times that of 10",
         "Save/1000", None, "100 * Save/10", 1.2),
        ("quilt-tool render, 1,000 by 1,000 / deflating the picture",
         "RenderBoard", None, "DeflatePicture", 1.5),
        ("quilt-tool diff of two games of 1,000 boards / loading both",
         "Diff", None, "LoadTwo", 2.5),
        ("quilt-tool merge of such games / loading both", "Merge", None, "LoadTwo", 4.0),
    ],
}


def medians(program):
    out = subprocess.run(
        [program, "--benchmark_format=json", f"--benchmark_repetitions={REPEATS}",
         "--benchmark_report_aggregates_only=true"],
        cwd=program.parent, check=True, capture_output=True, text=True).stdout
    values = {}
    for b in json.loads(out)["benchmarks"]:
        if b.get("aggregate_name") == "median":
            name = re.sub(r"/(iterations:\d+|real_time)$", "", b["run_name"])
            values[name] = b["real_time"]
            values.update({f"{name}:{key}": b[key] for key in ("peak", "world") if key in b})
    return values


def value(values, name):
    times, _, rest = name.rpartition(" * ")
    return int(times or 1) * values[rest]


def start_time(program, option):
    """The median of the wall time that the program takes with that option, in nanoseconds."""
    times = []
    for _ in range(STARTS):
        begin = time.perf_counter_ns()
        subprocess.run([program, option], cwd=program.parent, check=True, capture_output=True)
        times.append(time.perf_counter_ns() - begin)
    return statistics.median(times)


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ROOT / "build/release/bin")
    missed = 0
    for name, rows in TABLE.items():
        program = (folder / name).resolve()
        if not program.exists():
            continue
        times = medians(program)
        if name == "view_bench":
            times["Start"] = start_time(program, "--start")
            times["EmptyStart"] = start_time(program, "--empty-start")
        for what, measured, subtracted, reference, limit in rows:
            taken_off = value(times, subtracted) if subtracted else 0
            ratio = (value(times, measured) - taken_off) / value(times, reference)
            missed += ratio > limit
            print(f"{ratio:6.2f} of at most {limit:4.2f}  {'' if ratio <= limit else 'MISSED  '}{what}")
    return 1 if missed else 0


sys.exit(main())
