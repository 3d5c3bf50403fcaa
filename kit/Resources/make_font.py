"""Makes one of the kit's fonts of Debian's Inter, under the name that the kit asks for.

    make_font.py INTER_FOLDER Semibold|Regular|Bold OUTPUT.otf

The characters are cut down to those of the kit's languages; the licence (OFL) stays inside.
"""

import sys

from fontTools import subset
from fontTools.ttLib import TTFont

# The file of the semibold face spells it with a small b, the face itself with a capital one.
STYLES = {"Semibold": "SemiBold", "Regular": "Regular", "Bold": "Bold"}
FAMILY = "Zuvi Text"
# Basic Latin, Latin-1, Latin Extended-A, punctuation, currency, arrows.
CHARACTERS = [*range(0x20, 0x7F), *range(0xA0, 0x180), *range(0x2010, 0x2040), 0x20AC, 0x2122,
              *range(0x2190, 0x2194), 0x2212, 0x2713]


def main():
    folder, style, output = sys.argv[1:]
    face = STYLES[style]
    post_script_name = "SFProText-" + face
    font = TTFont(f"{folder}/Inter-{face}.otf")

    options = subset.Options()
    options.layout_features = ["kern", "mark", "mkmk", "ccmp", "locl", "liga", "calt"]
    options.name_IDs = ["*"]
    subsetter = subset.Subsetter(options)
    subsetter.populate(unicodes=CHARACTERS)
    subsetter.subset(font)

    names = {1: f"{FAMILY} {face}", 2: "Regular", 3: post_script_name, 4: f"{FAMILY} {face}",
             6: post_script_name, 16: FAMILY, 17: face}
    for record in list(font["name"].names):
        if record.nameID in names:
            font["name"].removeNames(nameID=record.nameID)
    for name_id, text in names.items():
        font["name"].setName(text, name_id, 3, 1, 0x409)
    if "CFF " in font:
        table = font["CFF "].cff
        table.fontNames = [post_script_name]
        table.topDictIndex[0].FullName = f"{FAMILY} {face}"
        table.topDictIndex[0].FamilyName = FAMILY
    font.save(output)


if __name__ == "__main__":
    main()
