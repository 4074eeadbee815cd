#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Prints a page of docs as doxygen takes it: markdown.py PAGE

Links between the pages and names of the library become references, which doxygen checks; diagrams
(the part of Mermaid that the pages use) become pictures in $AUX_OUTPUT/html."""

import os
import pathlib
import re
import subprocess
import sys

SHAPES = {"[": "box", "[/": "note", "[(": "cylinder", "([": "oval", "{{": "hexagon", "{": "diamond"}
NODE = re.compile(r' *(\w+)(?:([\[({/]+)"([^"]*)"[\])}/]+)?')
ARROW = re.compile(r' *(--|-\.)(?: "([^"]*)" (?:--|\.-))?-?>')


def chain(line):
    """The statements of DOT for nodes with arrows between them."""
    node = NODE.match(line)
    previous = arrow = None
    while node:
        name, shape, label = node.groups()
        if shape:
            label = label.replace("<br>", "\\n")
            yield f'{name} [shape={SHAPES[shape]} label="{label}"]'
        if arrow:
            style = "dashed" if arrow[1] == "-." else "solid"
            yield f'{previous} -> {name} [style={style} label="{arrow[2] or ""}"]'
        previous = name
        arrow = ARROW.match(line, node.end())
        if not arrow:
            break
        node = NODE.match(line, arrow.end())
    if not node or line[node.end():].strip():
        raise SystemExit(f"no diagram: {line}")


def as_dot(diagram):
    heading, *lines = diagram.strip().splitlines()
    yield f'digraph {{ rankdir={heading.split()[1]} bgcolor=transparent fontname="sans-serif" fontsize=12'
    yield 'nodesep=0.4 node [shape=box fontname="sans-serif" fontsize=12 height=0.3] edge [fontname="sans-serif" fontsize=11]'
    for line in lines:
        subgraph = re.fullmatch(r' *subgraph (\w+)(?:\["(.*)"\])?', line)
        if subgraph:
            yield f'subgraph cluster_{subgraph[1]} {{ label="{subgraph[2] or subgraph[1]}"'
        elif line.strip() == "end":
            yield "}"
        else:
            yield from chain(line)
    yield "}"


def slug(heading):
    return re.sub(r"[^\w-]", "", heading.lower().replace(" ", "-"))


def converted(page, text):
    directory = pathlib.Path(os.environ["AUX_OUTPUT"], "html")
    directory.mkdir(exist_ok=True)
    count = 0

    def picture(match):
        nonlocal count
        count += 1
        name = f"{page}-{count}.svg"
        subprocess.run(["dot", "-Tsvg", "-o", directory / name], check=True, text=True,
                       input="\n".join(as_dot(match[1])))
        return f'@htmlonly<div class="image"><img src="{name}" alt="diagram"/></div>@endhtmlonly'

    text = re.sub(r"^```mermaid\n(.*?)^```$", picture, text, flags=re.M | re.S)
    text = re.sub(r"^# (.*)$", rf"# \1 {{#{page}}}", text, count=1, flags=re.M)
    text = re.sub(r"^(##+ )(.*)$", lambda m: f"{m[0]} {{#{page}-{slug(m[2])}}}", text, flags=re.M)
    text = re.sub(r"\[([^]]*)\]\((?:([\w-]+)\.md)?(?:#([\w-]+))?\)",
                  lambda m: f'@ref {"-".join(filter(None, (m[2] or page, m[3])))} "{m[1]}"', text)
    text = re.sub(r"`([\w-]+-\w+)::(\w+)`", r"<tt>\1\\::\2</tt>", text)  # a target of CMake
    return re.sub(r"`(aux::(?!aux`)[\w:]*\w)(?:::)?`", r"<tt>@ref \1</tt>", text)


path = pathlib.Path(sys.argv[1])
print(converted(path.stem, path.read_text(encoding="utf-8")), end="")
