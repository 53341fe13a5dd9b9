#!/usr/bin/env python3
"""make_html.py FOLDER DOCUMENT...: the documents as pages for a browser, with their pictures.

cmark-gfm turns each into HTML; headings get the names by which links call them, and links to the
other documents lead to their pages. Links to what is no page become plain text. A link, in any
document of their folders, that leads to no file or no heading of one ends it with an error.
"""
import glob
import os
import re
import shutil
import subprocess
import sys

PAGE = """<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>{title} - QUILT!</title>
<style>
:root {{ color-scheme: light dark }}
body {{ font: 1rem/1.5 sans-serif; max-width: 52rem; margin: 0 auto; padding: 1rem }}
nav {{ border-bottom: 1px solid gray; padding-bottom: .5rem }}
nav a {{ margin-right: 1rem }}
img {{ max-width: 100%; height: auto; margin: .25rem 0 }}
table {{ border-collapse: collapse }}
th, td {{ border: 1px solid gray; padding: .2rem .6rem; text-align: left; vertical-align: top }}
pre {{ overflow-x: auto; border: 1px solid gray; padding: .5rem }}
</style>
</head>
<body>
<nav>{nav}</nav>
{body}</body>
</html>
"""


def page_name(document):
    return os.path.splitext(os.path.basename(document))[0].lower() + ".html"


def heading_id(text):
    text = re.sub(r"<[^>]*>|&\w+;", "", text)
    return re.sub(r"[^a-z0-9 -]", "", text.lower()).replace(" ", "-")


def headings(document):
    with open(document, encoding="utf-8") as text:
        return {heading_id(line.lstrip("#").strip()) for line in text if line.startswith("#")}


def dead_links(document):
    with open(document, encoding="utf-8") as text:
        links = re.findall(r"\]\((?!http)([^)#]*)#?([^)]*)\)", text.read())
    for target, heading in links:
        path = os.path.join(os.path.dirname(document), target) if target else document
        if not os.path.exists(path) or (heading and heading not in headings(path)):
            yield f"{document}: {target}#{heading} leads nowhere"


def convert(document, pages):
    body = subprocess.run(["cmark-gfm", "-e", "table", document], check=True, text=True,
                          capture_output=True).stdout
    pictures = re.findall(r'<img src="([^"]*)"', body)
    body = re.sub(r'<img src="(?:docs/)?', '<img src="', body)
    body = re.sub(r"<h(\d)>(.*?)</h\1>",
                  lambda m: f'<h{m[1]} id="{heading_id(m[2])}">{m[2]}</h{m[1]}>', body)

    def link(match):
        target, mark, heading = match[1].partition("#")
        name = page_name(target) if target else ""
        if target.startswith("http") or not target:
            return match[0]
        return f'<a href="{name}{mark}{heading}">{match[2]}</a>' if name in pages else match[2]

    return re.sub(r'<a href="([^"]*)">(.*?)</a>', link, body, flags=re.S), pictures


def main(folder, documents):
    pages = {page_name(document): document for document in documents}
    titles = {}
    for name, document in pages.items():
        with open(document, encoding="utf-8") as text:
            titles[name] = text.readline().strip("# \n")
    folders = {os.path.dirname(document) for document in documents}
    dead = [fault for place in folders for document in glob.glob(os.path.join(place, "*.md"))
            for fault in dead_links(document)]
    if dead:
        sys.exit("\n".join(dead))
    nav = " \n".join(f'<a href="{name}">{title}</a>' for name, title in titles.items())
    os.makedirs(folder, exist_ok=True)
    for name, document in pages.items():
        body, pictures = convert(document, pages)
        with open(os.path.join(folder, name), "w", encoding="utf-8") as page:
            page.write(PAGE.format(title=titles[name], nav=nav, body=body))
        for picture in pictures:
            to = os.path.join(folder, re.sub("^docs/", "", picture))
            os.makedirs(os.path.dirname(to), exist_ok=True)
            shutil.copyfile(os.path.join(os.path.dirname(document), picture), to)


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2:])
