"""A hundred plates of ornaments, in a page tree of chapters and sections that hand down boxes, rotations and resources."""

import math

import letters
from pdf import Canvas, File, ring, star, stream

PAPER, INK = (0.965, 0.945, 0.9), (0.15, 0.17, 0.25)
PALETTE = ((0.80, 0.25, 0.20), (0.90, 0.62, 0.20), (0.22, 0.50, 0.45), (0.20, 0.35, 0.60), (0.45, 0.30, 0.50))

# Width and height as the file has them, and the turn in which they are read. Chapters hand these down; the last one
# gives a size only, and its sections and its own pages the turns.
CHAPTERS = (
    ("CIRCLES", (420, 595), 0),
    ("STARS", (595, 420), 0),
    ("ROSETTES", (595, 420), 90),
    ("SPIRALS", (320, 320), None),
)
TURNS = (180, 270, -90, 360, 0)
SECTIONS, PAGES = 5, 5


def motif_forms():
    """Shapes about the origin, with a reach of 10, in the colour that is set where they are drawn."""
    petal = Canvas().start(0, 0).curve(6, 2, 6, 8, 0, 10).curve(-6, 8, -6, 2, 0, 0).close().op("f")
    drop = Canvas().start(0, 10).curve(1, 6, 5, 3, 5, -1).curve(5, -6, -5, -6, -5, -1).curve(-5, 3, -1, 6, 0, 10).op("f")
    band = Canvas().circle(0, 0, 10).circle(0, 0, 6).op("f*")
    spark = Canvas().polygon(star(4, 10, 2.5)).op("f")
    leaf = Canvas().save().polygon(ring(3, 10)).clip().circle(0, 0, 7).op("f").restore()
    return {"Petal": petal, "Drop": drop, "Band": band, "Spark": spark, "Leaf": leaf}


def place(canvas, form, x, y, degrees, scale):
    return canvas.save().turn(degrees, x, y).transform(scale, 0, 0, scale, 0, 0).draw(form).restore()


def ornament(canvas, chapter, section, page, reach):
    """Drawn about the origin within `reach`."""
    forms = list(motif_forms())
    form, other = forms[section], forms[(section + page + 1) % 5]
    count = 5 + page + 2 * section
    for ring_number in range(3 + page % 2):
        radius = reach * (0.86 - 0.25 * ring_number)
        canvas.fill(*PALETTE[(chapter + section + ring_number) % 5])
        for i in range(count):
            angle = 360 * (i + 0.5 * (ring_number % 2)) / count
            x, y = radius * math.cos(math.radians(angle)), radius * math.sin(math.radians(angle))
            size = min(reach * 0.019, 0.27 * radius / count)
            turn = (angle - 90, angle + 90, 30 * i, -angle)[chapter]
            place(canvas, form if ring_number % 2 == 0 else other, x, y, turn, size)
    canvas.stroke(*PALETTE[(page + 3) % 5]).width(1 + section * 0.5, cap=1, join=1)
    if chapter == 0:
        for i in range(count):
            canvas.circle(*ring(count, reach * 0.3)[i], reach * (0.12 + 0.02 * page))
        canvas.op("S")
    elif chapter == 1:
        canvas.polygon(star(count, reach * 0.34, reach * (0.14 + 0.03 * page))).op("b*")
    elif chapter == 2:
        for i in range(count):
            canvas.save().turn(360 * i / count).ellipse(reach * 0.2, 0, reach * 0.16, reach * (0.04 + 0.01 * page))
            canvas.op("S").restore()
    else:
        points = [(reach * 0.36 * i / 150 * math.cos(i * 0.07 * (3 + page)), reach * 0.36 * i / 150 *
                   math.sin(i * 0.07 * (3 + page))) for i in range(151)]
        canvas.dash(*((), (6, 3), (0.1, 5), (8, 3, 1, 3), (3, 6))[section]).polygon(points, False).op("S").dash()


def page_text(chapter, section, page, size):
    name = CHAPTERS[chapter][0]
    width, height = size
    canvas = Canvas().fill(*PAPER).rectangle(0, 0, width, height).op("f").stroke(*INK).width(0.8)
    canvas.rectangle(14, 14, width - 28, height - 28).op("S")
    canvas.save().move(width / 2, height / 2 + 14)
    ornament(canvas, chapter, section, page, min(width, height - 28) / 2 - 30)
    canvas.restore().stroke(*INK).width(1.4, cap=1, join=1)
    plate = 25 * chapter + 5 * section + page + 1
    letters.write_centred(canvas, f"{name} {plate}", width / 2, 24, 11)
    return canvas.text()


def boxes(width, height, margin=0.0):
    return f"[{margin} {margin} {width - margin} {height - margin}]"


def make():
    file = File("1.5")
    catalog, root = file.reserve(), file.reserve()
    forms = {name: file.add(stream(canvas.text(), "/Type /XObject /Subtype /Form /BBox [-11 -11 11 11] ", False))
             for name, canvas in motif_forms().items()}
    x_objects = " ".join(f"/{name} {number} 0 R" for name, number in forms.items())
    resources = file.add(f"<< /XObject << {x_objects} >> >>")

    chapters = []
    for chapter, (_, size, turn) in enumerate(CHAPTERS):
        node = file.reserve()
        sections = []
        for section in range(SECTIONS):
            # The first pages of a chapter hang on it directly; the others are a level deeper.
            parent = node if section == 0 else file.reserve()
            pages = []
            for page in range(PAGES):
                content = file.add(stream(page_text(chapter, section, page, size)))
                # Here and there a page has a box of its own.
                own = f"/CropBox {boxes(*size, 7)} " if page == 4 else f"/TrimBox {boxes(*size, 14)} " if page == 3 else ""
                if turn is None and section == 0:
                    own += f"/Rotate {TURNS[section]} "
                pages.append(file.add(f"<< /Type /Page /Parent {parent} 0 R /Contents {content} 0 R {own}>>"))
            kids = " ".join(f"{number} 0 R" for number in pages)
            if section == 0:
                sections.append(kids)
                continue
            own = f"/Rotate {TURNS[section]} " if turn is None else ""
            file.set(parent, f"<< /Type /Pages /Parent {node} 0 R /Kids [{kids}] /Count {PAGES} {own}>>")
            sections.append(f"{parent} 0 R")
        # The first chapter has the size that the root hands down.
        own = f"/MediaBox {boxes(*size)} " if chapter else ""
        own += f"/Rotate {turn} " if turn else ""
        file.set(node, f"<< /Type /Pages /Parent {root} 0 R /Kids [{' '.join(sections)}] /Count {SECTIONS * PAGES} {own}>>")
        chapters.append(f"{node} 0 R")

    file.set(catalog, f"<< /Type /Catalog /Pages {root} 0 R >>")
    file.set(root, f"<< /Type /Pages /Kids [{' '.join(chapters)}] /Count {len(CHAPTERS) * SECTIONS * PAGES} "
                   f"/MediaBox {boxes(*CHAPTERS[0][1])} /Resources {resources} 0 R >>")
    info = file.add("<< /Title (A hundred ornaments) /Subject (Page trees) >>")
    return file.classic(f"/Root {catalog} 0 R /Info {info} 0 R")
