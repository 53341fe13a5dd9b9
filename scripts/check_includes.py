#!/usr/bin/env python3
"""Checks that no folder includes what it may not look at, and that only one folder sees Qt.

LAYERS says for each folder which folders of the tree its files may include from and which
outside libraries they may use; the longest matching folder counts. CMake's link lines hold the
same rule; this finds what an include path lets through.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

ENGINE = {"engine"}
PLATFORM = {"platform"}
QT = re.compile(r"^(Q[A-Z]\w*|Qt\w+/.*|Qsci/.*)$")
ALLEGRO = re.compile(r"^allegro")

#   folder: (folders it may include from, may use Qt)
LAYERS = {
    "engine": (ENGINE, False),
    "platform": (PLATFORM, False),
    "platform/qt": (PLATFORM | {"platform/qt"}, True),
    "editor": (ENGINE | PLATFORM | {"editor"}, False),
    "editor/view": (ENGINE | PLATFORM | {"editor", "editor/view"}, False),
    "editor/tools": (ENGINE | PLATFORM | {"editor", "editor/view", "editor/tools"}, False),
    "editor/script": (ENGINE | PLATFORM | {"editor", "editor/script"}, False),
    "editor/shell": (
        ENGINE | PLATFORM
        | {"editor", "editor/view", "editor/tools", "editor/script", "editor/shell"},
        False,
    ),
    "editor/shell/main": (ENGINE | PLATFORM | {"platform/qt", "editor/shell"}, False),
    "tool": (ENGINE | {"tool", "tool/compare"}, False),
    "tool/compare": (ENGINE | {"tool/compare"}, False),
    "library-src": (ENGINE | {"library-src", "tool"}, False),
    "library-src/sample": (
        ENGINE | PLATFORM
        | {"editor", "editor/view", "editor/tools", "library-src", "library-src/sample"},
        False,
    ),
}


def layer_of(path):
    folder = path.parent
    while str(folder) not in (".", "/"):
        if str(folder) in LAYERS:
            return str(folder)
        folder = folder.parent
    return None


def main():
    faults = []
    files = [p for top in {l.split("/")[0] for l in LAYERS}
             for p in sorted((ROOT / top).rglob("*")) if p.suffix in (".cpp", ".h")]
    for path in files:
        name = path.relative_to(ROOT)
        layer = layer_of(name)
        allowed, qt = LAYERS[layer]
        for number, line in enumerate(path.read_text().splitlines(), 1):
            found = re.match(r'\s*#\s*include\s*([<"])([^">]+)[">]', line)
            if not found:
                continue
            target = found.group(2)
            if QT.match(target) and not qt:
                faults.append(f"{name}:{number}: Qt's {target}")
            if ALLEGRO.match(target) and name.as_posix() != "engine/allegro_api.h" \
                    and layer != "library-src":
                faults.append(f"{name}:{number}: Allegro is included by engine/allegro_api.h only")
            own = layer_of(pathlib.Path(target)) if "/" in target else None
            if found.group(1) == '"' and own and own not in allowed:
                faults.append(f"{name}:{number}: {layer} may not look at {own} ({target})")
    print("\n".join(faults) or f"{len(files)} files look where they may")
    return 1 if faults or not files else 0


sys.exit(main())
