#!/usr/bin/env python3
"""Filter for Doxygen: prints a Markdown document with links that Doxygen follows as GitHub does.

Doxygen 1.9.4 knows only the anchors that headings name themselves, and these in all documents together. So each heading
gets the anchor that GitHub would give it, after the name of its document, and links to it are changed alike.
"""

import pathlib
import re
import sys

FENCE = re.compile(r"^(```|~~~)")
HEADING = re.compile(r"^(##+) (.*)$")
LINK = re.compile(r"\]\((?:([\w-]+)\.md)?#([\w-]+)\)")
OUTSIDE = re.compile(r"\[([^\]]+)\]\(\.\./[^)]*\)")  # what is in no package


def anchor(document, heading):
    text = re.sub(r"[^\w\- ]", "", heading.lower())
    return f"{document}-{text.replace(' ', '-')}"


def filtered(line, document):
    heading = HEADING.match(line)
    if heading:
        return f"{line} {{#{anchor(document, heading[2])}}}"
    line = LINK.sub(lambda link: f"](#{link[1] or document}-{link[2]})", line)
    return OUTSIDE.sub(r"\1", line)


def main():
    path = pathlib.Path(sys.argv[1])
    in_code = False
    for line in path.read_text(encoding="utf-8").splitlines():
        if FENCE.match(line):
            in_code = not in_code
        print(line if in_code else filtered(line, path.stem))


main()
