"""Makes the kit's fonts with widths of their own, so that layouts are alike on every machine: those
of Inter differ between distributions. No character is narrower than Inter's, so what has room here
has room with the real ones.

    make_fonts.py FOLDER
"""

import sys
import unicodedata

from fontTools.fontBuilder import FontBuilder
from fontTools.pens.ttGlyphPen import TTGlyphPen

UNITS = 1000
WIDTHS = {250: "ijl", 300: " !',.:I’¡·", 350: ";|", 400: "()/[\\]frt", 450: "{}", 500: '"-1^_`',
          550: "*?ksx¿", 600: "7FJLacehnouvyz«»", 650: "#$&02345689EPRSTZbdgpqß",
          700: "+<=>ABKVXY~€", 750: "CDGHU", 800: "NOQ", 850: "w", 900: "m…✓", 950: "Mæ",
          1000: "%@Wœ"}
WIDTH = {character: width for width, characters in WIDTHS.items() for character in characters}
# The first stands for the desktop's plain face too.
STYLES = {"Regular": 1, "Semibold": 1.05, "Bold": 1.1}


def width_of(character):
    plain = unicodedata.normalize("NFD", character)[0]  # without its accent
    return WIDTH.get(character) or WIDTH.get(plain, 1000)


def box(width):
    pen = TTGlyphPen(None)
    pen.moveTo((50, 0))
    for point in ((50, 600), (width - 50, 600), (width - 50, 0)):
        pen.lineTo(point)
    pen.closePath()
    return pen.glyph()


def main():
    folder = sys.argv[1]
    characters = [*range(0x20, 0x7F), *range(0xA0, 0x180), *range(0x2010, 0x2040), 0x20AC, 0x2713]
    for style, factor in STYLES.items():
        face = style.replace("bold", "Bold") if style == "Semibold" else style
        glyphs = {f"u{code:04X}": round(width_of(chr(code)) * factor) for code in characters}
        glyphs[".notdef"] = UNITS
        font = FontBuilder(UNITS, isTTF=True)
        font.setupGlyphOrder([".notdef", *(name for name in glyphs if name != ".notdef")])
        font.setupCharacterMap({code: f"u{code:04X}" for code in characters})
        font.setupGlyf({name: box(width) for name, width in glyphs.items()})
        font.setupHorizontalMetrics({name: (width, 50) for name, width in glyphs.items()})
        font.setupHorizontalHeader(ascent=970, descent=-240)
        font.setupNameTable({"familyName": f"Layout {face}", "styleName": "Regular",
                             "psName": f"SFProText-{face}"})
        font.setupOS2(sTypoAscender=970, sTypoDescender=-240, usWinAscent=970, usWinDescent=240,
                      usWeightClass=400)
        font.setupPost()
        font.save(f"{folder}/ZVSFProText-{style}.otf")


if __name__ == "__main__":
    main()
