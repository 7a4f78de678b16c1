"""A poster: a quill writes a line across a moonlit sea. One page, five layers, one of them hidden."""

import math

import letters
from pdf import Canvas, File, ring, star, stream

WIDTH, HEIGHT = 842, 1191
BLEED = 9

# RGB
NIGHT = (0.078, 0.137, 0.267)
DEEP = (0.106, 0.227, 0.388)
SEA = (0.118, 0.376, 0.490)
SURF = (0.251, 0.561, 0.600)
FOAM = (0.620, 0.792, 0.765)
SPRAY = (0.808, 0.894, 0.855)
CREAM = (0.973, 0.945, 0.878)
# CMYK
PAPER = (0.02, 0.04, 0.12, 0)
INK = (0.85, 0.7, 0.35, 0.45)
SUN = (0, 0.48, 0.82, 0)
CORAL = (0, 0.72, 0.62, 0.02)
GOLD = (0.03, 0.25, 0.80, 0)
# Gray
WHITE, DARK = (1,), (0.15,)

CENTRE = (421, 722)
RADIUS = 322
MOON = (292, 832)


def background(canvas):
    canvas.fill(*PAPER).rectangle(-BLEED, -BLEED, WIDTH + 2 * BLEED, HEIGHT + 2 * BLEED).op("f")
    canvas.stroke(*INK).width(1.5).rectangle(36, 36, WIDTH - 72, HEIGHT - 72).op("S")
    canvas.width(0.5).rectangle(42, 42, WIDTH - 84, HEIGHT - 84).op("S")


def wave(canvas, y, height, count, shift):
    """A band from a wavy edge down to below the disc."""
    left, right = CENTRE[0] - RADIUS - 80 + shift, CENTRE[0] + RADIUS + 80
    step = (right - left) / count
    canvas.start(left, y)
    for i in range(count):
        x = left + i * step
        canvas.curve(x + step * 0.35, y - height, x + step * 0.62, y + height * 0.2, x + step * 0.7, y + height)
        canvas.curve(x + step * 0.8, y + height * 0.9, x + step * 0.92, y + height * 0.3, x + step, y)
    canvas.line(right, CENTRE[1] - RADIUS - 20).line(left, CENTRE[1] - RADIUS - 20).close().op("f")


def sea(canvas):
    """All of it in a round clip, with clips of its own inside."""
    canvas.save().circle(*CENTRE, RADIUS).clip()
    canvas.fill(*NIGHT).rectangle(CENTRE[0] - RADIUS, CENTRE[1] - RADIUS, 2 * RADIUS, 2 * RADIUS).op("f")
    for i in range(3):
        glow = (i + 1) / 3
        canvas.fill(*(dark + glow * (light - dark) for dark, light in zip(NIGHT, (0.180, 0.290, 0.470))))
        canvas.circle(*MOON, 270 - 62 * i).op("f")

    # Stars, on a spiral that looks scattered.
    for i in range(64):
        angle, radius = i * 2.399963, 20 + 38 * math.sqrt(i)
        x, y = CENTRE[0] + radius * math.cos(angle), CENTRE[1] + 120 + radius * 0.72 * math.sin(angle)
        if math.hypot(x - MOON[0], y - MOON[1]) < 90:
            continue
        size = (0.9, 1.3, 2.1, 1.1)[i % 4]
        canvas.fill(*(CREAM if i % 3 else FOAM))
        if i % 8 == 2:
            canvas.polygon(star(4, size * 4.2, size * 1.1, 90, x, y)).op("f")
        else:
            canvas.circle(x, y, size).op("f")

    # The moon: all but the shadow's disc, by the even-odd rule, and in that the moon's own.
    canvas.save().move(*MOON)
    canvas.save().rectangle(-100, -100, 200, 200).circle(34, 22, 66).clip("W*")
    canvas.save().circle(0, 0, 84).clip()
    canvas.fill(*CREAM).rectangle(-90, -90, 180, 180).op("f")
    canvas.fill(0.93, 0.87, 0.74)
    for x, y, radius in ((-54, -14, 13), (-38, -48, 8), (-64, 20, 7), (-8, -64, 10)):
        canvas.circle(x, y, radius)
    canvas.op("f").restore().restore()
    canvas.fill(*GOLD).polygon(star(5, 17, 6.6, 78, 30, 28)).op("f").restore()

    # The sun goes down in slices, each a window of the same clip.
    canvas.save()
    for i in range(6):
        canvas.rectangle(300, 618 + 28 * i, 300, 13 + 3.2 * i)
    canvas.clip()
    canvas.fill(*SUN).circle(452, 645, 126).op("f")
    canvas.fill(*GOLD).circle(452, 645, 92).op("f").restore()

    for colour, y, height, count, shift in ((DEEP, 640, 16, 5, 0), (SEA, 590, 19, 5, -70), (SURF, 536, 20, 4, -20),
                                            (FOAM, 478, 18, 4, -90), (SPRAY, 428, 14, 3, -40)):
        canvas.fill(*colour)
        wave(canvas, y, height, count, shift)
    canvas.restore()

    # A rope round it: long dashes under round ones.
    canvas.stroke(*INK).width(7).circle(*CENTRE, RADIUS + 7).op("S")
    canvas.stroke(*GOLD).width(3, cap=1).dash(0, 10.18).circle(*CENTRE, RADIUS + 7).op("S").dash()


def boat(canvas):
    canvas.save().move(640, 596).transform(0.94, 0, 0, 0.94, 0, 0).turn(-4)
    canvas.fill(*CREAM).start(0, 16).line(0, 118).curve(26, 88, 46, 50, 54, 16).close().op("f")
    canvas.fill(*CORAL).start(-6, 22).line(-6, 104).curve(-18, 74, -32, 44, -42, 22).close().op("f")
    canvas.stroke(*CREAM).width(2.5, cap=1).start(-3, 0).line(-3, 122).op("S")
    canvas.fill(*CORAL).polygon([(-3, 122), (-3, 112), (-22, 117)]).op("f")
    canvas.fill(*INK).stroke(*CREAM).width(1.5, join=1)
    canvas.start(-58, 10).line(66, 10).curve(56, -8, 42, -16, 26, -18).line(-26, -18).curve(-42, -16, -52, -6, -58, 10)
    canvas.op("b")
    canvas.fill(*GOLD)
    for x in (-26, -6, 14, 34):
        canvas.circle(x, -3, 3.6)
    canvas.op("f").restore()


def quill(canvas):
    """Drawn along the x axis with the nib at the origin, then turned into place."""
    # The line that it writes: the first letter, and from there on to dashes and dots.
    canvas.stroke(*INK).width(5, cap=1, join=1)
    canvas.start(276, 372).curve(238, 360, 226, 315.5, 135, 315.5).op("S")
    canvas.width(3.5, cap=1).dash(12, 9).start(71, 252).curve(70, 300, 86, 340, 86, 392).op("S")
    canvas.dash(0, 9, phase=2).start(86, 402).curve(86, 450, 72, 500, 80, 560).op("S").dash()

    canvas.save().turn(47, 276, 372)
    vane = Canvas().start(150, 3)
    vane.curve(210, 74, 420, 118, 700, 34).curve(610, -34, 330, -96, 190, -40).curve(170, -32, 158, -14, 150, 3).close()
    outline = vane.text()

    canvas.fill(*CREAM).stroke(*INK).width(3, join=1).raw(outline.rstrip()).op("B")
    canvas.save().raw(outline.rstrip()).clip()
    # The lower half is in the shade.
    canvas.fill(*CORAL).start(140, -120).line(720, -120).line(720, 32).curve(500, 30, 330, 12, 140, 2).close().op("f")
    canvas.stroke(*INK).width(0.8, cap=1)
    for i in range(38):
        x = 158 + i * 14
        rise = 3 + (x - 150) * 0.056
        canvas.start(x, rise).curve(x + 26, rise + 34, x + 60, rise + 66, x + 104, rise + 92)
        canvas.start(x, rise).curve(x + 26, rise - 28, x + 54, rise - 58, x + 84, rise - 96)
    canvas.op("S")
    # Notches, as a feather gets them.
    canvas.fill(*INK)
    for x, y, lean in ((330, 104, -1), (470, 100, -1), (300, -78, 1), (450, -62, 1)):
        canvas.polygon([(x, y), (x + 26, y - lean * 4), (x - 22, y + lean * 54)]).op("f")
    canvas.restore()

    # Shaft, then the nib, whose slit and hole the even-odd rule leaves open.
    canvas.fill(*GOLD).stroke(*INK).width(1.6, join=1)
    canvas.start(60, -6).curve(240, -2, 480, 20, 694, 33).curve(480, 30, 240, 12, 60, 7).close().op("b")
    canvas.fill(*INK).start(0, 0).curve(26, 5, 44, 14, 64, 15).curve(78, 15, 84, 10, 86, 8).line(86, -7)
    canvas.curve(84, -10, 78, -14, 64, -14).curve(44, -13, 26, -5, 0, 0).close()
    canvas.polygon([(4, 0.5), (40, 1.3), (40, -0.5), (4, -0.2)]).circle(44, 0.4, 4).op("f*")
    canvas.restore()


def title(canvas):
    """QUILLET, built of rings and bars; the L is one form, drawn twice."""
    canvas.save().move(73, 186).fill(*INK)
    height, bar = 132, 30
    # Q: a ring by the even-odd rule and a tail.
    canvas.circle(62, 66, 66).circle(62, 66, 36).op("f*")
    canvas.fill(*CORAL).polygon([(60, 52), (82, 66), (134, 2), (98, 2)]).op("f").fill(*INK)
    canvas.move(150, 0)
    # U: a half ring below two bars.
    canvas.start(0, height).line(bar, height).line(bar, 50).arc(50, 50, 20, 180, 360, is_new=False)
    canvas.line(70, height).line(100, height).arc(50, 50, 50, 0, -180, is_new=False).close().op("f")
    canvas.move(122, 0).rectangle(0, 0, bar, 96).op("f").fill(*SUN).circle(15, 116, 16).op("f").fill(*INK)
    canvas.move(52, 0).draw("LetterL").move(92, 0).draw("LetterL").move(92, 0)
    for y in (0, 51, 102):
        canvas.rectangle(0, y, 76, bar)
    canvas.op("f").rectangle(0, 0, bar, height).op("f")
    # T: narrow, so that the line stays in its frame.
    canvas.move(92, 0).fill(*INK).rectangle(0, 102, 96, bar).op("f").fill(*CORAL).rectangle(33, 0, bar, 96).op("f")
    canvas.restore()
    canvas.stroke(*INK).width(1.8, cap=1, join=1)
    for i, word in enumerate(("SHAPES", "CLIPS", "LAYERS")):
        letters.write(canvas, word, 66, 1112 - 22 * i, 11, 2.4)
    canvas.width(2.4, cap=1, join=1)
    letters.write_centred(canvas, "EVERY PAGE A DRAWING AGAIN", WIDTH / 2, 148, 13, 2.6)


def tile(canvas, index):
    """One of the ornaments of the lowest row, in a square of 72 units."""
    if index == 0:
        canvas.save().rectangle(0, 0, 72, 72).clip().fill(*SEA).rectangle(0, 0, 72, 72).op("f").fill(*CREAM)
        for x, y in ((0, 0), (72, 0), (72, 72), (0, 72)):
            canvas.circle(x, y, 30)
        canvas.op("f").fill(*CORAL).circle(36, 36, 11).op("f").restore()
    elif index == 1:
        canvas.fill(*GOLD).rectangle(0, 0, 72, 72).op("f").fill(*INK)
        canvas.polygon(ring(5, 34, 90, 36, 33)[::2] + ring(5, 34, 90, 36, 33)[1::2]).op("f*")
    elif index == 2:
        canvas.fill(*NIGHT).rectangle(0, 0, 72, 72).op("f")
        for i in range(6):
            canvas.fill(0.25 + 0.15 * i).circle(36, 36, 33 - 5.5 * i).op("f")
    elif index == 3:
        canvas.fill(*CORAL).rectangle(0, 0, 72, 72).op("f").fill(*CREAM)
        canvas.save().transform(1, 0.25, -0.25, 1, 14, 4)
        for row in range(5):
            for column in range(5):
                if (row + column) % 2:
                    canvas.rectangle(column * 11, row * 11, 11, 11)
        canvas.op("f").restore()
    elif index == 4:
        canvas.fill(*SURF).rectangle(0, 0, 72, 72).op("f")
        for i, colour in enumerate((CREAM, GOLD, INK)):
            canvas.save().turn(60 * i, 36, 36).stroke(*colour).width(4).ellipse(0, 0, 31, 11).op("s").restore()
    elif index == 5:
        canvas.fill(*PAPER).rectangle(0, 0, 72, 72).op("f").stroke(*INK)
        for i, (cap, join) in enumerate(((0, 0), (1, 1), (2, 2))):
            canvas.width(8, cap, join).polygon([(14, 10 + 20 * i), (36, 24 + 20 * i), (58, 10 + 20 * i)], False).op("S")
    elif index == 6:
        canvas.fill(*INK).rectangle(0, 0, 72, 72).op("f")
        for i, colour in enumerate((SUN, CREAM, CORAL)):
            canvas.fill(*colour).polygon(ring(6, 33 - 10 * i, 30 * i, 36, 36)).op("f")
    else:
        canvas.save().rectangle(0, 0, 72, 72).clip().fill(*SUN).rectangle(0, 0, 72, 72).op("f")
        canvas.stroke(*CREAM).width(5)
        for i in range(9):
            canvas.start(-72 + 18 * i, 0).line(18 * i, 72)
        canvas.op("S").restore()
    canvas.stroke(*INK).width(2, join=0).rectangle(0, 0, 72, 72).op("S")


def ornament(canvas):
    for i in range(8):
        canvas.save().move(74.5 + 88.7 * i, 60)
        tile(canvas, i)
        canvas.restore()


def inks(canvas):
    """Three inks that print over each other, as one group."""
    canvas.save().raw("/Overprint gs").draw("Inks").restore()


def guides(canvas):
    """How the poster was laid out; hidden until somebody asks for it."""
    canvas.stroke(0, 1, 0, 0).width(0.5).dash(6, 3, 1, 3)
    for x in (36, WIDTH / 2, WIDTH - 36):
        canvas.start(x, 0).line(x, HEIGHT)
    for y in (36, 186, 318, CENTRE[1], HEIGHT - 36):
        canvas.start(0, y).line(WIDTH, y)
    canvas.op("S").stroke(1, 0, 0, 0).dash(4, 4)
    canvas.start(276 - 300, 372 - 322).line(276 + 600, 372 + 643).circle(*CENTRE, RADIUS).circle(*CENTRE, 7).op("S")
    canvas.dash()


def make():
    file = File()
    catalog, pages, page, content = (file.reserve() for _ in range(4))
    layers = {}
    for key, name in (("Paper", "Paper"), ("Sea", "Moonlit sea"), ("Quill", "Quill"), ("Words", "Lettering"),
                      ("Tiles", "Ornament"), ("Guides", "Guides")):
        layers[key] = file.add(f"<< /Type /OCG /Name ({name}) >>")

    letter = Canvas().fill(*INK).rectangle(0, 0, 30, 132).rectangle(0, 0, 76, 30).op("f")
    letter_form = file.add(stream(letter.text(), "/Type /XObject /Subtype /Form /BBox [0 0 76 132] ", False))
    multiply = file.add("<< /Type /ExtGState /BM /Multiply >>")
    group = Canvas().raw("/Multiply gs")
    for colour, (x, y) in zip(((0.9, 0, 0, 0), (0, 0.85, 0, 0), (0, 0, 0.95, 0)), ring(3, 25, 90, 62, 62)):
        group.fill(*colour).circle(x, y, 36).op("f")
    inks_form = file.add(stream(
        group.text(), "/Type /XObject /Subtype /Form /BBox [0 0 124 136] /Matrix [1 0 0 1 660 1006] "
        "/Group << /S /Transparency /CS /DeviceCMYK /I true /K false >> "
        f"/Resources << /ExtGState << /Multiply {multiply} 0 R >> >> ", False))
    overprint = file.add("<< /Type /ExtGState /CA 0.88 /ca 0.88 /BM /Multiply >>")

    canvas = Canvas()
    for key, parts in (("Paper", (background,)), ("Sea", (sea, boat)), ("Quill", (quill,)), ("Words", (title,)),
                       ("Tiles", (ornament, inks)), ("Guides", (guides,))):
        canvas.begin_layer(key)
        for part in parts:
            canvas.save()
            part(canvas)
            canvas.restore()
        canvas.end_layer()

    references = " ".join(f"{number_} 0 R" for number_ in layers.values())
    file.set(catalog, f"<< /Type /Catalog /Pages {pages} 0 R /OCProperties << /OCGs [{references}] "
                      f"/D << /Name (Poster) /Order [{references}] /OFF [{layers['Guides']} 0 R] >> >> >>")
    file.set(pages, f"<< /Type /Pages /Kids [{page} 0 R] /Count 1 >>")
    properties = " ".join(f"/{key} {number_} 0 R" for key, number_ in layers.items())
    file.set(page, f"<< /Type /Page /Parent {pages} 0 R /Contents {content} 0 R "
                   f"/MediaBox [{-BLEED} {-BLEED} {WIDTH + BLEED} {HEIGHT + BLEED}] /TrimBox [0 0 {WIDTH} {HEIGHT}] "
                   f"/Resources << /Properties << {properties} >> "
                   f"/XObject << /LetterL {letter_form} 0 R /Inks {inks_form} 0 R >> "
                   f"/ExtGState << /Overprint {overprint} 0 R >> >> >>")
    # Plain text, so that the sample can be read beside what becomes of it.
    file.set(content, stream(canvas.text(), is_packed=False))
    info = file.add("<< /Title (Every page a drawing again) /Author (The Quillet authors) /Keywords (poster, layers, clips) >>")
    return file.classic(f"/Root {catalog} 0 R /Info {info} 0 R")
