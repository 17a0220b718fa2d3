#!/usr/bin/env python3
"""Draws all icons of data/icons on one sheet, to be looked at after a change.

    tools/icon_sheet.py [SHEET.png]

Each icon is drawn at 16, 32 and 64 pixels, on the left on a light ground and on the right on a dark one; the dark half
has the strokes in the colour that the program gives them there. Needs ImageMagick, and rsvg-convert (package
librsvg2-bin) for the drawing: ImageMagick's own reader of SVG puts black lines around filled shapes.
"""
import argparse
import pathlib
import shutil
import subprocess
import sys
import tempfile

icons = pathlib.Path(__file__).resolve().parent.parent / "data" / "icons"
sizes = (16, 32, 64)
grounds = {"light": "#ffffff", "dark": "#232629"}
stroke, stroke_on_dark = "#303030", "#e0e0e0"
tile_width, tile_height, columns = 144, 96, 6


def magick(*arguments):
    program = "magick" if shutil.which("magick") else "convert"
    subprocess.run([program, *map(str, arguments)], check=True)


def draw(svg, size, png):
    subprocess.run(["rsvg-convert", "-w", str(size), "-h", str(size), "-o", str(png), str(svg)], check=True)


def half(icon, ground, folder):
    """Returns the three sizes of an icon in a row, above its name, on one ground."""
    text = icon.read_text()
    if ground == "dark":
        text = text.replace(stroke, stroke_on_dark)
    svg = folder / f"{icon.stem}-{ground}.svg"
    svg.write_text(text)
    arguments = ["-size", f"{tile_width}x{tile_height}", f"xc:{grounds[ground]}"]
    left = 8
    for size in sizes:
        png = svg.with_suffix(f".{size}.png")
        draw(svg, size, png)
        arguments += [png, "-geometry", f"+{left}+{72 - size}", "-composite"]
        left += size + 8
    arguments += ["-fill", stroke_on_dark if ground == "dark" else stroke, "-pointsize", 11]
    arguments += ["-annotate", f"+8+{tile_height - 8}", icon.stem]
    tile = svg.with_suffix(".tile.png")
    magick(*arguments, tile)
    return tile


def sheet(target):
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        tiles = [half(icon, ground, folder) for icon in sorted(icons.glob("*.svg")) for ground in grounds]
        rows = []
        for start in range(0, len(tiles), columns):
            rows.append(folder / f"row{len(rows)}.png")
            magick(*tiles[start:start + columns], "+append", rows[-1])
        magick(*rows, "-append", target)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("sheet", nargs="?", default="icons.png", help="the picture to write, icons.png by default")
    target = parser.parse_args().sheet
    if not (shutil.which("magick") or shutil.which("convert")):
        sys.exit("icon_sheet: ImageMagick is not installed")
    if not shutil.which("rsvg-convert"):
        sys.exit("icon_sheet: rsvg-convert (package librsvg2-bin) is not installed")
    sheet(target)
    print(target)


if __name__ == "__main__":
    main()
