"""A technical drawing of a flange: hatched sections, centre lines, dimensions. The page is turned by its Rotate entry."""

import math

import letters
from pdf import Canvas, File, ring, stream

# What a reader sees: A4 across, with a bleed and room for printer's marks round it.
WIDTH, HEIGHT = 842, 595
MARGIN = 36
BLEED = 9

HAIRLINE, THIN, THICK = 0.25, 0.5, 1.1
INK, BLUE, RED, GRID = (0,), (0.1, 0.3, 0.6), (0.75, 0.1, 0.1), (0.86, 0.915, 0.95)

SCALE = 1.35
HUB, BORE, CIRCLE, RIM, HOLE = 34, 20, 66, 88, 8


def grid(canvas):
    canvas.stroke(*GRID)
    for width, step in ((0, 10), (THIN, 50)):
        canvas.width(width)
        for x in range(0, WIDTH + 1, step):
            canvas.start(x, 0).line(x, HEIGHT)
        for y in range(0, HEIGHT + 1, step):
            canvas.start(0, y).line(WIDTH, y)
        canvas.op("S")


def hatch(canvas, box, outline, angle, step):
    """Hairlines at an angle, clipped into the shape that `outline` adds."""
    left, bottom, right, top = box
    canvas.save()
    outline(canvas)
    canvas.clip("W*").stroke(*BLUE).width(HAIRLINE)
    reach = math.hypot(right - left, top - bottom) / 2
    canvas.turn(angle, (left + right) / 2, (bottom + top) / 2)
    for i in range(-int(reach / step), int(reach / step) + 1):
        canvas.start(-reach, i * step).line(reach, i * step)
    canvas.op("S").restore()


def front(canvas, x, y):
    canvas.save().transform(SCALE, 0, 0, SCALE, x, y)
    hatch(canvas, (-HUB, -HUB, HUB, HUB), lambda c: c.circle(0, 0, HUB).circle(0, 0, BORE), 45, 3)
    canvas.stroke(*INK).width(THICK)
    for radius in (RIM, HUB, BORE):
        canvas.circle(0, 0, radius)
    for hole in ring(6, CIRCLE):
        canvas.circle(*hole, HOLE)
    canvas.op("S").width(HAIRLINE)
    for hole in ring(6, CIRCLE):
        canvas.circle(*hole, HOLE - 1.6)
    canvas.op("S")
    # Keyway
    canvas.fill(1).rectangle(-5, BORE - 4, 10, 11).op("f").width(THICK)
    canvas.polygon([(-5, math.sqrt(BORE ** 2 - 25)), (-5, BORE + 7), (5, BORE + 7), (5, math.sqrt(BORE ** 2 - 25))], False)
    canvas.op("S")
    # Centre lines: long and short.
    canvas.stroke(*RED).width(HAIRLINE).dash(9, 2, 2, 2)
    canvas.start(-RIM - 10, 0).line(RIM + 10, 0).start(0, -RIM - 10).line(0, RIM + 10).circle(0, 0, CIRCLE).op("S")
    for i in range(6):
        canvas.save().turn(90 + 60 * i).start(CIRCLE - 14, 0).line(CIRCLE + 14, 0).op("S").restore()
    canvas.dash().restore()


def half_section(canvas):
    """The upper half of the cut, right of the axis."""
    canvas.polygon([(0, BORE), (92, BORE), (92, HUB), (30, HUB + 4), (24, HUB + 10), (24, RIM - 3), (21, RIM), (0, RIM)])


def section(canvas, x, y):
    canvas.save().transform(SCALE, 0, 0, SCALE, x, y)
    for mirror in (1, -1):
        canvas.save().transform(1, 0, 0, mirror, 0, 0)

        def cut(c):
            half_section(c)
            c.rectangle(0, CIRCLE - HOLE, 24, 2 * HOLE)

        hatch(canvas, (0, BORE, 92, RIM), cut, 45, 3)
        canvas.stroke(*INK).width(THICK, join=1)
        half_section(canvas)
        canvas.start(0, CIRCLE - HOLE).line(24, CIRCLE - HOLE).start(0, CIRCLE + HOLE).line(24, CIRCLE + HOLE).op("S")
        canvas.stroke(*RED).width(HAIRLINE).dash(9, 2, 2, 2).start(-6, CIRCLE).line(32, CIRCLE).op("S").dash().restore()
    canvas.stroke(*INK).width(THICK).start(0, -BORE).line(0, BORE).start(92, -BORE).line(92, BORE).op("S")
    canvas.stroke(*RED).width(HAIRLINE).dash(9, 2, 2, 2).start(-14, 0).line(106, 0).op("S").dash().restore()


def arrow(canvas, x, y, angle):
    canvas.save().turn(angle, x, y).draw("Arrow").restore()


def dimension(canvas, start, end, offset, text):
    """Between two points, measured along the line between them, `offset` to its left."""
    length = math.dist(start, end)
    angle = math.degrees(math.atan2(end[1] - start[1], end[0] - start[0]))
    canvas.save().turn(angle, *start)
    canvas.stroke(*INK).fill(*INK).width(HAIRLINE)
    side = math.copysign(1, offset)
    for x in (0, length):
        canvas.start(x, side * 3).line(x, offset + side * 4)
    canvas.start(0, offset).line(length, offset).op("S")
    arrow(canvas, 0, offset, 180)
    arrow(canvas, length, offset, 0)
    canvas.width(0.7, cap=1, join=1)
    letters.write_centred(canvas, text, length / 2, offset + 3, 7)
    canvas.restore()


def leader(canvas, tip, elbow, text):
    canvas.stroke(*INK).fill(*INK).width(HAIRLINE)
    width = letters.width(text, 7) + 6
    canvas.polygon([tip, elbow, (elbow[0] + width, elbow[1])], False).op("S")
    arrow(canvas, *tip, math.degrees(math.atan2(tip[1] - elbow[1], tip[0] - elbow[0])))
    canvas.width(0.7, cap=1, join=1)
    letters.write(canvas, text, elbow[0] + 4, elbow[1] + 3, 7)


def graph(canvas, x, y, width, height):
    """Load over angle: axes with arrows, ticks, three curves in a clip."""
    canvas.save().move(x, y).stroke(*GRID).width(HAIRLINE)
    for i in range(1, 11):
        canvas.start(i * width / 10, 0).line(i * width / 10, height)
    for i in range(1, 7):
        canvas.start(0, i * height / 6).line(width, i * height / 6)
    canvas.op("S").save().rectangle(0, 0, width, height).clip()
    for number, (colour, dash) in enumerate(((RED, ()), (BLUE, (4, 2)), (INK, (0.5, 2)))):
        canvas.stroke(*colour).width(0.9, cap=1, join=1).dash(*dash)
        points = [(i * width / 90, height * (0.52 + (0.42 - 0.07 * number) * math.exp(-i / (70 - 16 * number)) *
                                             math.sin(i / (6 + number)))) for i in range(91)]
        canvas.polygon(points, False).op("S")
    canvas.restore().stroke(*INK).fill(*INK).width(THIN)
    canvas.start(0, 0).line(width + 14, 0).start(0, 0).line(0, height + 14).op("S")
    arrow(canvas, width + 16, 0, 0)
    arrow(canvas, 0, height + 16, 90)
    canvas.width(0.6, cap=1, join=1)
    for i in range(0, 11, 2):
        canvas.start(i * width / 10, 0).line(i * width / 10, -3).op("S")
        letters.write_centred(canvas, str(36 * i), i * width / 10, -11, 5)
    # Turned by the axis, as labels of upright axes are.
    canvas.save().turn(90, -8, height / 2)
    letters.write_centred(canvas, "LOAD", 0, 0, 6)
    canvas.restore().restore()


def title_block(canvas):
    left, bottom = WIDTH - MARGIN - 236, MARGIN
    canvas.stroke(*INK).width(THICK).rectangle(MARGIN, MARGIN, WIDTH - 2 * MARGIN, HEIGHT - 2 * MARGIN)
    canvas.rectangle(left, bottom, 236, 62).op("S").width(THIN)
    canvas.start(left, bottom + 22).line(left + 236, bottom + 22).start(left + 84, bottom).line(left + 84, bottom + 22)
    canvas.start(left + 160, bottom).line(left + 160, bottom + 22).op("S").width(1.3, cap=1, join=1)
    letters.write(canvas, "FLANGE 6 X 16", left + 10, bottom + 34, 15)
    canvas.width(0.7, cap=1, join=1)
    for x, text in ((8, "SCALE 1-1"), (92, "SHEET 1"), (168, "A4 - MM")):
        letters.write(canvas, text, left + x, bottom + 8, 6)


def marks(canvas):
    """Outside the trim: crop marks and a wedge of inks."""
    canvas.stroke(1, 1, 1, 1).width(HAIRLINE)
    for x, outward in ((0, -1), (WIDTH, 1)):
        for y, upward in ((0, -1), (HEIGHT, 1)):
            canvas.start(x + 12 * outward, y).line(x + 24 * outward, y)
            canvas.start(x, y + 12 * upward).line(x, y + 24 * upward)
    canvas.op("S")
    for i, colour in enumerate(((1, 0, 0, 0), (0, 1, 0, 0), (0, 0, 1, 0), (0, 0, 0, 1), (0, 0, 0, 0.5))):
        canvas.fill(*colour).rectangle(60 + 14 * i, HEIGHT + 12, 12, 8).op("f")


def make():
    file = File()
    catalog, pages, page, content = (file.reserve() for _ in range(4))
    head = Canvas().polygon([(0, 0), (-8, 1.5), (-6.6, 0), (-8, -1.5)]).op("f")
    arrow_form = file.add(stream(head.text(), "/Type /XObject /Subtype /Form /BBox [-9 -2 1 2] /Resources << >> ", False))

    canvas = Canvas()
    # The sheet stands upright in the file: x goes up its side, y to the left.
    canvas.transform(0, 1, -1, 0, HEIGHT, 0)
    grid(canvas)
    canvas.fill(1).rectangle(WIDTH - MARGIN - 236, MARGIN, 236, 62).op("f")
    front(canvas, 190, 375)
    section(canvas, 420, 375)
    graph(canvas, 78, 70, 300, 120)
    title_block(canvas)

    s = SCALE
    dimension(canvas, (420, 375 + RIM * s), (420 + 24 * s, 375 + RIM * s), 22, "24")
    dimension(canvas, (420, 375 - RIM * s), (420 + 92 * s, 375 - RIM * s), -24, "92")
    dimension(canvas, (420 + 92 * s, 375 - BORE * s), (420 + 92 * s, 375 + BORE * s), -30, "40")
    dimension(canvas, (420 + 92 * s, 375 - HUB * s), (420 + 92 * s, 375 + HUB * s), -54, "68")
    dimension(canvas, (420 + 24 * s, 375 - RIM * s), (420 + 24 * s, 375 + RIM * s), -190, "176")
    dimension(canvas, (190 - RIM * s, 375), (190 + RIM * s, 375), -RIM * s - 26, "176")
    hole = ring(6, CIRCLE * s)[5]
    leader(canvas, (190 + hole[0] + HOLE, 375 + hole[1] + HOLE), (306, 480), "6 X 16")
    leader(canvas, (420 + 60 * s, 375 + (HUB + 2) * s), (540, 470), "CAST")
    marks(canvas)

    bleed, media = BLEED, 28
    file.set(catalog, f"<< /Type /Catalog /Pages {pages} 0 R >>")
    file.set(pages, f"<< /Type /Pages /Kids [{page} 0 R] /Count 1 >>")
    file.set(page, f"<< /Type /Page /Parent {pages} 0 R /Contents {content} 0 R /Rotate 90 "
                   f"/MediaBox [{-media} {-media} {HEIGHT + media} {WIDTH + media}] "
                   f"/CropBox [{-bleed} {-bleed} {HEIGHT + bleed} {WIDTH + bleed}] "
                   f"/BleedBox [{-bleed} {-bleed} {HEIGHT + bleed} {WIDTH + bleed}] "
                   f"/TrimBox [0 0 {HEIGHT} {WIDTH}] "
                   f"/ArtBox [{MARGIN} {MARGIN} {HEIGHT - MARGIN} {WIDTH - MARGIN}] "
                   f"/Resources << /XObject << /Arrow {arrow_form} 0 R >> >> >>")
    file.set(content, stream(canvas.text()))
    info = file.add("<< /Title (Flange, six holes) /Creator (make-samples) >>")
    return file.classic(f"/Root {catalog} 0 R /Info {info} 0 R")
