#!/usr/bin/env python3
# Draws a picture of the kit for dark screens: the same shapes in other colours.
#   make_dark.py PICTURE.svg OUTPUT.svg
# White that stays white, such as a mark on a coloured ground, is spelt #FFF in the pictures.
import re
import sys

COLOURS = {
    "#1F2635": "#E3E9F2",  # outlines
    "#8A94A6": "#8A94A6",  # the chevron
    "#FFFFFF": "#222C3D",  # cards, screens
    "#FFF": "#FFF",
    "#1E88E5": "#42A1F5",  # marks
    "#8FC4F6": "#5B86B8",  # lines of text
    "#CFE5FB": "#2A4363",  # dots
    "#E8F3FE": "#1F3A59",  # within marks
    "#F1F7FE": "#18222F",  # grounds
    "#E05252": "#E05252",  # the button that records
    "#D93B3B": "#E25555",  # the same of what failed
    "#F3B7AC": "#9C6A66",
    "#F9D3CB": "#5A3436",
    "#FDE6E1": "#43292D",
    "#FEF4F2": "#241D24",
    "#16A765": "#16A765",  # the same of what is done
    "#BFE8D1": "#2A6B4D",
    "#EFF9F4": "#12302A",
}

with open(sys.argv[1], encoding="utf-8") as file:
    drawing = file.read()
try:
    drawing = re.sub("#[0-9A-Fa-f]+", lambda found: COLOURS[found.group()], drawing)
except KeyError as unknown:
    sys.exit(f"{sys.argv[1]}: there is no dark colour for {unknown}")
with open(sys.argv[2], "w", encoding="utf-8") as file:
    file.write(drawing)
