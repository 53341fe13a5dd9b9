#!/usr/bin/env python3
"""check_man.py PROGRAMS PAGES: every command and option that a program's --help names stands in
its man page, and the page names no option that the program does not know.
"""
import gzip
import pathlib
import re
import subprocess
import sys

OPTION = re.compile(r"(?<![\w-])--[a-z][a-z-]*")


def help_of(*command):
    return subprocess.run([*command, "--help"], check=True, capture_output=True, text=True).stdout


def subcommands(text):
    listed = re.search(r"^Subcommands:\n((?:  .*\n)+)", text, re.M)
    return re.findall(r"^  ([\w-]+)", listed[1], re.M) if listed else []


def main():
    programs, pages = map(pathlib.Path, sys.argv[1:])
    faults = []
    for page in sorted(pages.glob("quilt-*.1.gz")):
        program = str(programs / page.name.removesuffix(".1.gz"))
        words = gzip.decompress(page.read_bytes()).decode().replace("\\-", "-")
        text = help_of(program)
        commands = subcommands(text)
        known = set(OPTION.findall(text + "".join(help_of(program, each) for each in commands)))
        told = set(OPTION.findall(words))
        faults += [f"{page.name} does not tell of {each}" for each in sorted(known - told)]
        faults += [f"{page.name} tells of {each}, which is not" for each in sorted(told - known)]
        faults += [f"{page.name} has no command {each}" for each in commands
                   if f".B {each}\n" not in words]
    print("\n".join(faults))
    return 1 if faults else 0


sys.exit(main())
