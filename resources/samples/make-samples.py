#!/usr/bin/env python3
"""Makes Lumbra's sample pictures: one or more of every picture type the program shows.

    python3 make-samples.py [OUTPUT-FOLDER]

Writes into the folder this script lives in unless told otherwise. Needs ImageMagick's
`convert` for the photographs and drawings; the icon, the cursor and the metafile are written
byte by byte here, so their exact layout is under our control. Output is the same on every run.
"""

import math
import os
import struct
import subprocess
import sys
import zlib

# Keeps ImageMagick from stamping dates into the files, so a rerun changes nothing.
NO_DATES = ["-strip", "-define", "png:exclude-chunks=date,time"]


def convert(*args):
    subprocess.run(["convert", *map(str, args)], check=True)


def draw(primitive):
    return ["-draw", primitive]


# ---------------------------------------------------------------------------------------------
# Photographs and drawings through ImageMagick


def landscape(path):
    """A wide summer landscape: sky, sun, clouds, mountains, hills, a lake and a few trees."""
    args = ["-size", "640x400", "gradient:#3d7fd6-#d8efff"]
    # The sun with a soft glow around it.
    for radius, colour in ((110, "rgba(255,240,180,0.15)"), (70, "rgba(255,240,180,0.30)"),
                           (36, "#fff4b8")):
        args += ["-fill", colour] + draw(f"circle 470,110 470,{110 + radius}")
    args += ["-fill", "rgba(255,255,255,0.9)"]
    for cx, cy, rx, ry in ((140, 88, 58, 17), (178, 76, 40, 20), (108, 78, 30, 15),
                           (300, 130, 44, 11), (330, 122, 26, 12)):
        args += draw(f"ellipse {cx},{cy} {rx},{ry} 0,360")
    args += ["-fill", "#8b9dc6"] + draw(
        "polygon 0,262 70,196 130,232 212,150 300,236 382,182 452,240 540,168 640,228 640,300 0,300")
    args += ["-fill", "#eef3ff"] + draw("polygon 212,150 193,168 204,166 213,176 224,165 233,170")
    args += draw("polygon 540,168 524,182 534,181 542,188 550,180 558,183")
    args += ["-fill", "#5d9e5a"] + draw(
        "path 'M 0,290 C 120,240 220,300 330,272 C 440,244 540,286 640,262 L 640,400 L 0,400 Z'")
    args += ["-fill", "#6fa8dc"] + draw(
        "path 'M 250,332 C 320,302 480,306 560,332 C 520,357 300,362 250,332 Z'")
    args += ["-fill", "rgba(255,244,184,0.55)"] + draw("ellipse 470,322 30,4 0,360")
    args += draw("ellipse 466,334 18,3 0,360")
    args += ["-fill", "#3f7f3a"] + draw(
        "path 'M 0,342 C 100,302 180,362 300,352 C 420,342 520,392 640,352 L 640,400 L 0,400 Z'")
    for x, y, h in ((60, 300, 46), (88, 296, 38), (590, 292, 44), (612, 300, 36), (40, 318, 30)):
        args += ["-fill", "#6b4a2b"] + draw(f"rectangle {x - 2},{y} {x + 2},{y + 8}")
        args += ["-fill", "#2d5e2a"] + draw(f"polygon {x},{y - h} {x - h // 3},{y + 2} {x + h // 3},{y + 2}")
    convert(*args, "-quality", "85", "-sampling-factor", "2x2", *NO_DATES, path)


def flower(path):
    """A pink flower with leaves on a transparent background."""
    args = ["-size", "280x280", "xc:none"]
    args += ["-fill", "none", "-stroke", "#3c8d3c", "-strokewidth", "8"] + draw(
        "path 'M 140,150 C 132,200 152,232 140,276'")
    args += ["-stroke", "#2e6e2e", "-strokewidth", "2", "-fill", "#4caf50"]
    for x, y, angle, rx, ry in ((168, 222, -30, 30, 11), (114, 244, 28, 28, 10)):
        args += draw(f"push graphic-context translate {x},{y} rotate {angle} "
                     f"ellipse 0,0 {rx},{ry} 0,360 pop graphic-context")
    args += ["-stroke", "#d94a8c", "-strokewidth", "1.5"]
    for ring, (colour, reach, rx, ry) in enumerate((("#ff7eb6", -50, 22, 44), ("#ffb3d4", -36, 15, 30))):
        args += ["-fill", colour]
        for petal in range(8):
            angle = petal * 45 + ring * 22.5
            args += draw(f"push graphic-context translate 140,115 rotate {angle} "
                         f"ellipse 0,{reach} {rx},{ry} 0,360 pop graphic-context")
    args += ["-stroke", "#e69a00", "-strokewidth", "2", "-fill", "#ffcc33"] + draw("circle 140,115 140,139")
    args += ["-stroke", "none", "-fill", "#c77800"]
    for i in range(12):
        a = i * math.pi / 6
        r = 9 + 6 * (i % 2)
        x, y = 140 + r * math.cos(a), 115 + r * math.sin(a)
        args += draw(f"circle {x:.1f},{y:.1f} {x + 2:.1f},{y:.1f}")
    convert(*args, "-depth", "8", *NO_DATES, path)


def star_points(cx, cy, outer, inner, points=5):
    corners = []
    for i in range(points * 2):
        r = outer if i % 2 == 0 else inner
        a = -math.pi / 2 + i * math.pi / points
        corners.append(f"{cx + r * math.cos(a):.1f},{cy + r * math.sin(a):.1f}")
    return " ".join(corners)


def shapes(path):
    """Geometric shapes on squared paper, as a run-length compressed 256-colour bitmap."""
    hexagon = " ".join(f"{205 + 30 * math.cos(math.pi / 3 * i):.1f},{50 + 30 * math.sin(math.pi / 3 * i):.1f}"
                       for i in range(6))
    args = ["-size", "240x180", "xc:#f6f2e6", "-stroke", "#e4dcc6", "-strokewidth", "1"]
    for x in range(0, 240, 20):
        args += draw(f"line {x},0 {x},180")
    for y in range(0, 180, 20):
        args += draw(f"line 0,{y} 240,{y}")
    args += ["-strokewidth", "3"]
    args += ["-stroke", "#a32020", "-fill", "#e5484d"] + draw("circle 50,50 50,82")
    args += ["-stroke", "#1f4e99", "-fill", "#4c8ee8"] + draw("roundrectangle 96,18 164,84 12,12")
    args += ["-stroke", "#5b2f86", "-fill", "#9b6ad6"] + draw(f"polygon {hexagon}")
    args += ["-stroke", "#a57a00", "-fill", "#ffd23f"] + draw("polygon 14,168 58,100 102,168")
    args += ["-stroke", "#23743a", "-fill", "#46c06a"] + draw(f"polygon {star_points(158, 132, 40, 17)}")
    args += ["-stroke", "#b45309", "-fill", "#fb923c"] + draw("polygon 218,112 236,140 218,168 200,140")
    convert(*args, "+dither", "-colors", "256", "-type", "Palette", "-compress", "RLE", "BMP3:" + path)


def sunset(path):
    """A sunset over the sea, as a 24-bit bitmap (a BMP file under the .dib name)."""
    sky = ["(", "-size", "160x62", "gradient:#2a1f63-#ff8a3d",
           "-fill", "rgba(255,210,122,0.35)"] + draw("circle 80,62 80,96") + \
          ["-fill", "#ffd27a"] + draw("circle 80,62 80,84") + \
          ["-fill", "none", "-stroke", "#2a1f40", "-strokewidth", "1.2"] + \
          draw("path 'M 30,22 q 4,-4 8,0 q 4,-4 8,0'") + draw("path 'M 48,14 q 3,-3 6,0 q 3,-3 6,0'") + [")"]
    sea = ["(", "-size", "160x38", "gradient:#6a3f7a-#1c1240", "-stroke", "none", "-fill", "#ffb45a"]
    for row, half in enumerate((22, 18, 15, 12, 9, 7, 5, 3)):
        y = 2 + row * 4
        sea += draw(f"rectangle {80 - half},{y} {80 + half},{y + 1}")
    sea += ["-fill", "#1a1030"] + draw("polygon 118,14 136,14 132,19 122,19") + \
        draw("polygon 127,1 127,13 137,13") + [")"]
    convert("-respect-parentheses", *sky, *sea, "-append", "-type", "TrueColor", "-strip", "BMP3:" + path)


def balloon(path):
    """A hot-air balloon drifting over the hills: an animated GIF of eight frames."""
    frames = []
    for i in range(8):
        cx, cy = 62 + 11 * i, 78 - 6 * i + (2 if i % 2 else 0)
        frame = ["(", "-size", "200x150", "xc:#bfe6ff", "-fill", "white"]
        frame += draw("ellipse 40,30 22,8 0,360") + draw("ellipse 56,25 14,8 0,360")
        frame += draw("ellipse 160,48 18,6 0,360")
        frame += ["-fill", "#7cc36b"] + draw("path 'M 0,125 C 50,105 110,135 200,115 L 200,150 L 0,150 Z'")
        frame += ["-fill", "#5aa24a"] + draw("path 'M 0,140 C 70,125 140,150 200,135 L 200,150 L 0,150 Z'")
        frame += ["-stroke", "#5a3b22", "-strokewidth", "1"]
        frame += draw(f"line {cx - 8},{cy + 30} {cx - 5},{cy + 38}")
        frame += draw(f"line {cx + 8},{cy + 30} {cx + 5},{cy + 38}")
        frame += ["-stroke", "#9e1f1f", "-fill", "#e23b3b"]
        frame += draw(f"polygon {cx - 20},{cy + 8} {cx + 20},{cy + 8} {cx + 8},{cy + 30} {cx - 8},{cy + 30}")
        frame += draw(f"circle {cx},{cy} {cx},{cy + 22}")
        frame += ["-stroke", "none", "-fill", "#ffd23f"] + draw(f"ellipse {cx},{cy + 1} 8,21 0,360")
        frame += ["-fill", "#8b5a2b"] + draw(f"rectangle {cx - 6},{cy + 38} {cx + 6},{cy + 46}")
        frame += [")"]
        frames += frame
    convert("-respect-parentheses", "-delay", "18", *frames,
            "-loop", "0", "+dither", "-layers", "Optimize", path)


def lighthouse(path):
    """A lighthouse on the rocks at dusk: the portrait sample, as an LZW-compressed TIFF."""
    args = ["-size", "220x330", "gradient:#1d2b64-#f8c9a8"]
    args += ["-fill", "#fffbe6"]
    for x, y in ((24, 30), (70, 18), (150, 40), (196, 22), (180, 70), (40, 80), (118, 12)):
        args += draw(f"circle {x},{y} {x + 1},{y}")
    args += ["-fill", "rgba(255,236,150,0.35)"]
    args += draw("polygon 110,96 0,60 0,120") + draw("polygon 110,96 220,70 220,122")
    args += ["-fill", "#2a5d8f"] + draw("rectangle 0,250 220,330")
    args += ["-fill", "#4f86b8"]
    for y in (262, 280, 300, 318):
        args += draw(f"rectangle {20 + y % 40},{y} {70 + y % 40},{y + 1}")
        args += draw(f"rectangle {150 - y % 30},{y + 6} {200 - y % 30},{y + 7}")
    args += ["-fill", "#5b5f66"] + draw("polygon 40,330 60,268 100,252 150,258 182,290 196,330")
    args += ["-fill", "#7a7f88"] + draw("polygon 70,330 84,282 120,270 160,296 168,330")
    args += ["-stroke", "#3a3a3a", "-strokewidth", "1", "-fill", "#f4f4f0"]
    args += draw("polygon 96,118 124,118 134,262 86,262")
    args += ["-stroke", "none", "-fill", "#d83a34"]
    def side(y):  # the tower's half width at height y
        return 14 + 10 * (y - 118) / 144
    for t in (136, 180, 224):
        b = t + 20
        args += draw(f"polygon {110 - side(t):.1f},{t} {110 + side(t):.1f},{t} "
                     f"{110 + side(b):.1f},{b} {110 - side(b):.1f},{b}")
    args += ["-fill", "#2c2c34"] + draw("rectangle 90,112 130,118") + draw("rectangle 98,84 122,112")
    args += ["-fill", "#ffe98a"] + draw("rectangle 101,88 119,110")
    args += ["-fill", "#fff8d0"] + draw("circle 110,98 110,104")
    args += ["-fill", "#d83a34"] + draw("polygon 94,84 126,84 110,70")
    args += ["-fill", "#2c2c34"] + draw("rectangle 106,240 114,262")
    convert(*args, "-depth", "8", "-compress", "lzw", "-define", "tiff:predictor=2", "-strip", path)


# ---------------------------------------------------------------------------------------------
# Icons and cursors, written byte by byte


def png_bytes(width, height, pixels):
    """A 32-bit RGBA PNG; pixels are (r, g, b, a) rows from the top."""
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    raw = b"".join(b"\0" + bytes(c for px in row for c in px) for row in pixels)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b""))


def padded_row(data):
    return data + b"\0" * (-len(data) % 4)


def and_mask(pixels):
    """The 1-bit mask of a BMP icon entry, bottom row first: set where the pixel is transparent."""
    rows = []
    for row in reversed(pixels):
        bits = bytearray((len(row) + 7) // 8)
        for x, px in enumerate(row):
            if px[3] == 0:
                bits[x // 8] |= 0x80 >> (x % 8)
        rows.append(padded_row(bytes(bits)))
    return b"".join(rows)


def bmp_entry(pixels, bits, palette=None):
    """A BMP icon entry: header (height doubled), palette, colour bitmap and mask."""
    height, width = len(pixels), len(pixels[0])
    rows = []
    for row in reversed(pixels):
        if bits == 32:
            rows.append(padded_row(b"".join(bytes((b, g, r, a)) for r, g, b, a in row)))
        else:
            indices = [palette.index(px[:3]) if px[3] else 0 for px in row]
            if bits == 4:
                indices += [0] * (len(indices) % 2)
                data = bytes(indices[i] << 4 | indices[i + 1] for i in range(0, len(indices), 2))
            else:
                data = bytes(indices)
            rows.append(padded_row(data))
    colours = b""
    if palette is not None:
        entries = palette + [(0, 0, 0)] * ((1 << bits) - len(palette))
        colours = b"".join(bytes((b, g, r, 0)) for r, g, b in entries)
    image = b"".join(rows) + and_mask(pixels)
    header = struct.pack("<IiiHHIIiiII", 40, width, height * 2, 1, bits, 0, len(image), 0, 0, 0, 0)
    return header + colours + image


def icon_file(kind, entries):
    """An .ico (kind 1) or .cur (kind 2) file. Each entry is (width, height, word1, word2, data,
    colour count): word1 and word2 are planes and bit count for an icon, the hot spot for a cursor."""
    out = struct.pack("<HHH", 0, kind, len(entries))
    offset = 6 + 16 * len(entries)
    for width, height, word1, word2, data, colours in entries:
        out += struct.pack("<BBBBHHII", width % 256, height % 256, colours, 0, word1, word2,
                           len(data), offset)
        offset += len(data)
    return out + b"".join(entry[4] for entry in entries)


def hex_colour(text):
    return tuple(int(text[i:i + 2], 16) for i in (1, 3, 5))


FRAME, ACCENT, SKY, SUN, HILL, SNOW = map(
    hex_colour, ("#2f6f3f", "#c0ffc0", "#9fd8ff", "#f5c542", "#3f8f4f", "#ffffff"))
ICON_PALETTE = [(0, 0, 0), FRAME, ACCENT, SKY, SUN, HILL, SNOW]


def inside_polygon(x, y, corners):
    inside = False
    for (x1, y1), (x2, y2) in zip(corners, corners[1:] + corners[:1]):
        if (y1 > y) != (y2 > y) and x < x1 + (y - y1) * (x2 - x1) / (y2 - y1):
            inside = not inside
    return inside


def rounded_box(x, y, left, top, right, bottom, radius):
    cx = min(max(x, left + radius), right - radius)
    cy = min(max(y, top + radius), bottom - radius)
    return (x - cx) ** 2 + (y - cy) ** 2 <= radius ** 2


def picture_icon_colour(u, v):
    """The program's picture-frame motif at (u, v) in the unit square, or None where clear."""
    if not rounded_box(u, v, 0.04, 0.14, 0.96, 0.88, 0.12):
        return None
    if not rounded_box(u, v, 0.10, 0.20, 0.90, 0.82, 0.07):
        return FRAME
    if not (0.18 <= u <= 0.82 and 0.28 <= v <= 0.74):
        return ACCENT
    if (u - 0.34) ** 2 + (v - 0.41) ** 2 <= 0.08 ** 2:
        return SUN
    if inside_polygon(u, v, [(0.18, 0.74), (0.42, 0.48), (0.55, 0.61), (0.66, 0.52), (0.82, 0.68), (0.82, 0.74)]):
        return SNOW if v < 0.53 else HILL
    return SKY


def render(size, colour_at, samples):
    """Renders colour_at over a size x size grid, averaging samples x samples points a pixel.
    colour_at gives (r, g, b), (r, g, b, opacity from 0 to 1) or None where clear."""
    pixels = []
    for y in range(size):
        row = []
        for x in range(size):
            r = g = b = cover = 0.0
            for sy in range(samples):
                for sx in range(samples):
                    c = colour_at((x + (sx + 0.5) / samples) / size, (y + (sy + 0.5) / samples) / size)
                    if c:
                        a = c[3] if len(c) > 3 else 1.0
                        r, g, b, cover = r + c[0] * a, g + c[1] * a, b + c[2] * a, cover + a
            if cover == 0:
                row.append((0, 0, 0, 0))
            else:
                row.append((round(r / cover), round(g / cover), round(b / cover),
                            round(255 * cover / samples ** 2)))
        pixels.append(row)
    return pixels


def icon(path):
    """The program's icon in four sizes and four kinds of entry: 16 colours, 256 colours,
    32-bit with alpha, and a 256-pixel PNG."""
    entries = []
    for size, bits in ((16, 4), (32, 8)):
        pixels = render(size, picture_icon_colour, 1)
        colours = 16 if bits == 4 else 0
        entries.append((size, size, 1, bits, bmp_entry(pixels, bits, ICON_PALETTE), colours))
    entries.append((48, 48, 1, 32, bmp_entry(render(48, picture_icon_colour, 4), 32), 0))
    entries.append((256, 256, 1, 32, png_bytes(256, 256, render(256, picture_icon_colour, 2)), 0))
    with open(path, "wb") as f:
        f.write(icon_file(1, entries))


def distance_to_segment(px, py, ax, ay, bx, by):
    dx, dy = bx - ax, by - ay
    t = max(0.0, min(1.0, ((px - ax) * dx + (py - ay) * dy) / (dx * dx + dy * dy)))
    return math.hypot(px - ax - t * dx, py - ay - t * dy)


ARROW = [(0.06, 0.06), (0.06, 0.75), (0.22, 0.60), (0.34, 0.88), (0.46, 0.83), (0.34, 0.56), (0.56, 0.56)]


def arrow_colour(u, v):
    """A pointer in the accent colour with a dark outline and a soft shadow."""
    if inside_polygon(u, v, ARROW):
        edges = zip(ARROW, ARROW[1:] + ARROW[:1])
        if min(distance_to_segment(u, v, *a, *b) for a, b in edges) < 0.045:
            return (20, 40, 28)
        return ACCENT
    if inside_polygon(u - 0.04, v - 0.04, ARROW):
        return (60, 60, 60, 0.4)
    return None


def cursor(path):
    """A pointer cursor, 32 and 48 pixels, hot spot at its tip."""
    entries = []
    for size in (32, 48):
        tip = round(ARROW[0][0] * size)
        entries.append((size, size, tip, tip, bmp_entry(render(size, arrow_colour, 4), 32), 0))
    with open(path, "wb") as f:
        f.write(icon_file(2, entries))


# ---------------------------------------------------------------------------------------------
# A placeable Windows metafile


def colorref(text):
    r, g, b = hex_colour(text)
    return r | g << 8 | b << 16


class Metafile:
    """Collects metafile records and keeps the object table as the playback side will."""

    def __init__(self):
        self.records = []
        self.slots = []

    def record(self, function, *words, data=b""):
        params = struct.pack(f"<{len(words)}h", *words) + data
        params += b"\0" * (len(params) % 2)
        self.records.append(struct.pack("<IH", 3 + len(params) // 2, function) + params)

    def create(self, function, data):
        """Creates an object in the lowest free slot of the table and returns the slot."""
        self.record(function, data=data)
        slot = self.slots.index(False) if False in self.slots else len(self.slots)
        if slot == len(self.slots):
            self.slots.append(True)
        self.slots[slot] = True
        return slot

    def pen(self, colour, width=0, style=0):
        return self.create(0x02FA, struct.pack("<HhhI", style, width, 0, colorref(colour)))

    def null_pen(self):
        return self.create(0x02FA, struct.pack("<HhhI", 5, 0, 0, 0))

    def brush(self, colour, style=0, hatch=0):
        return self.create(0x02FC, struct.pack("<HIH", style, colorref(colour), hatch))

    def font(self, height, weight, face):
        name = face.encode("latin-1") + b"\0"
        return self.create(0x02FB, struct.pack("<hhhhh8B", height, 0, 0, 0, weight, 0, 0, 0, 0, 0, 0, 2, 0x22) + name)

    def select(self, *slots):
        for slot in slots:
            self.record(0x012D, slot)

    def delete(self, *slots):
        for slot in slots:
            self.record(0x01F0, slot)
            self.slots[slot] = False

    def points(self, function, corners):
        self.record(function, len(corners), *[c for xy in corners for c in xy])

    def rectangle(self, left, top, right, bottom):
        self.record(0x041B, bottom, right, top, left)

    def ellipse(self, left, top, right, bottom):
        self.record(0x0418, bottom, right, top, left)

    def line(self, x1, y1, x2, y2):
        self.record(0x0214, y1, x1)
        self.record(0x0213, y2, x2)

    def text(self, x, y, text):
        data = text.encode("latin-1")
        self.record(0x0521, len(data), data=data + b"\0" * (len(data) % 2) + struct.pack("<hh", y, x))

    def file_bytes(self, width, height, inch):
        self.record(0x0000)
        body = b"".join(self.records)
        largest = max(struct.unpack_from("<I", r)[0] for r in self.records)
        header = struct.pack("<HHHIHIH", 1, 9, 0x0300, 9 + len(body) // 2, len(self.slots), largest, 0)
        placeable = struct.pack("<IHhhhhHI", 0x9AC6CDD7, 0, 0, 0, width, height, inch, 0)
        checksum = 0
        for (word,) in struct.iter_unpack("<H", placeable):
            checksum ^= word
        return placeable + struct.pack("<H", checksum) + header + body


def house(path):
    """A house under the sun, drawn with pens, brushes, rectangles, ellipses, polygons, lines and
    text: 4 by 3 inches, in twips."""
    width, height = 5760, 4320
    m = Metafile()
    m.record(0x0103, 8)                  # anisotropic mapping
    m.record(0x020B, 0, 0)               # window origin
    m.record(0x020C, height, width)      # window extent
    m.record(0x0102, 1)                  # transparent background for text and hatches
    m.record(0x0106, 1)                  # alternate polygon filling

    no_pen, sky = m.null_pen(), m.brush("#9fd4ff")
    m.select(no_pen, sky)
    m.rectangle(0, 0, width, 3100)
    clouds = m.brush("#ffffff")
    m.select(clouds)
    for left, top, right, bottom in ((500, 500, 1500, 900), (900, 350, 1700, 850), (1400, 550, 2100, 900)):
        m.ellipse(left, top, right, bottom)
    grass = m.brush("#7cc36b")
    m.select(grass)
    m.points(0x0324, [(0, 2900), (1200, 2650), (2600, 2800), (4000, 2600), (width, 2750), (width, height), (0, height)])
    m.delete(sky, clouds, grass)

    rays, sun = m.pen("#f0a500", 60), m.brush("#ffd54a")
    m.select(rays, sun)
    for i in range(12):
        a = i * math.pi / 6
        m.line(round(4800 + 520 * math.cos(a)), round(800 + 520 * math.sin(a)),
               round(4800 + 700 * math.cos(a)), round(800 + 700 * math.sin(a)))
    m.ellipse(4400, 400, 5200, 1200)
    m.delete(rays, sun)

    outline, wall = m.pen("#5a3b22", 40), m.brush("#f4e1c1")
    m.select(outline, wall)
    m.rectangle(1200, 2000, 2800, 3500)
    roof = m.brush("#c8553d")
    m.select(roof)
    m.points(0x0324, [(1000, 2060), (2000, 1250), (3000, 2060)])
    tiles = m.brush("#8e2f20", style=2, hatch=5)
    m.select(tiles)
    m.points(0x0324, [(1000, 2060), (2000, 1250), (3000, 2060)])
    door = m.brush("#8b5a2b")
    m.select(door)
    m.record(0x061C, 200, 200, 3500, 2250, 2700, 1850)   # round rectangle: corner size, box
    glass = m.brush("#cfeaff")
    m.select(glass)
    m.rectangle(1400, 2250, 1700, 2550)
    m.rectangle(2350, 2250, 2650, 2550)
    m.line(1550, 2250, 1550, 2550)
    m.line(1400, 2400, 1700, 2400)
    m.line(2500, 2250, 2500, 2550)
    m.line(2350, 2400, 2650, 2400)
    m.delete(wall, roof, tiles, door, glass)

    bark, leaves = m.brush("#7a4a24"), m.brush("#3f8f3f")
    m.select(bark)
    m.rectangle(3750, 2600, 3950, 3550)
    m.select(leaves)
    m.ellipse(3300, 1650, 4400, 2850)
    m.delete(outline, bark, leaves)

    fence = m.pen("#ffffff", 50)
    m.select(fence)
    m.points(0x0325, [(4500, 3300), (4500, 2950), (4650, 2850), (4800, 2950), (4800, 3300)])
    m.points(0x0325, [(4950, 3300), (4950, 2950), (5100, 2850), (5250, 2950), (5250, 3300)])
    m.line(4400, 3050, 5350, 3050)
    m.line(4400, 3200, 5350, 3200)
    m.delete(fence)

    caption = m.font(-330, 700, "Arial")
    m.select(caption)
    m.record(0x0209, data=struct.pack("<I", colorref("#1f3b2a")))   # text colour
    m.record(0x012E, 0)                                             # align to the top left
    m.text(400, 3750, "Home, sweet home")
    m.delete(caption, no_pen)

    with open(path, "wb") as f:
        f.write(m.file_bytes(width, height, 1440))


SAMPLES = {
    "landscape.jpg": landscape,
    "flower.png": flower,
    "shapes.bmp": shapes,
    "sunset.dib": sunset,
    "balloon.gif": balloon,
    "lighthouse.tif": lighthouse,
    "lumbra.ico": icon,
    "pointer.cur": cursor,
    "house.wmf": house,
}


def main():
    folder = sys.argv[1] if len(sys.argv) > 1 else os.path.dirname(os.path.abspath(__file__))
    os.makedirs(folder, exist_ok=True)
    for name, make in SAMPLES.items():
        target = os.path.join(folder, name)
        make(target)
        print(f"{name:16} {os.path.getsize(target):7,} bytes")


if __name__ == "__main__":
    main()
