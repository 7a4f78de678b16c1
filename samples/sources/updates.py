"""A document in three revisions, as an editor leaves it that appends what it changes.

Every revision has a cross-reference stream, and an object stream for what is no stream itself. The second one replaces
the content of a page, adds a page and drops one; the third uses the number of a dropped object again and repaints a form
that all pages share.
"""

import letters
from pdf import Canvas, indirect, ring, star, stream

WIDTH, HEIGHT = 420, 298
INK, PAPER = (0.12, 0.16, 0.28), (0.97, 0.95, 0.9)
RED, GREEN, BLUE, GREY = (0.85, 0.25, 0.2), (0.2, 0.55, 0.4), (0.15, 0.4, 0.7), (0.6,)

CATALOG, PAGES, FRAME, NOTE, RESOURCES, INFO = 1, 2, 3, 4, 5, 6
# The numbers 13 and 14 are those of the first revision's object stream and table.
PAGE_OBJECTS = {1: 7, 2: 9, 3: 11, 4: 15}


def page_object(page):
    return PAGE_OBJECTS[page]


def content_object(page):
    return PAGE_OBJECTS[page] + 1


class Revisions:
    """A file that only grows."""

    def __init__(self):
        self.out = bytearray(b"%PDF-1.6\n%\xe2\xe3\xcf\xd3\n")
        self.size = 0
        self.previous = None

    def append(self, bodies, freed=(), generations=None):
        """Bodies by number. Freed entries are pairs: a number, and the generation of its next use.

        The free list needs no next number here: each freed entry leads to 0.
        """
        generations = generations or {}
        entries = {number: (0, 0, generation) for number, generation in freed}
        packed = [(number, body) for number, body in bodies.items()
                  if isinstance(body, str) and not generations.get(number)]
        for number, body in bodies.items():
            if (number, body) in packed:
                continue
            entries[number] = (1, len(self.out), generations.get(number, 0))
            self.out += indirect(number, body, generations.get(number, 0))

        number = max(self.size, max(bodies) + 1)
        offsets, texts = "", ""
        for index, (member, body) in enumerate(packed):
            offsets += f"{member} {len(texts)} "
            texts += body + " "
            entries[member] = (2, number, index)
        entries[number] = (1, len(self.out), 0)
        self.out += indirect(number, stream(offsets + texts, f"/Type /ObjStm /N {len(packed)} /First {len(offsets)} "))
        self.append_table(number + 1, entries)

    def append_table(self, number, entries):
        start = len(self.out)
        entries[number] = (1, start, 0)
        if self.previous is None:
            entries[0] = (0, 0, 65535)
        self.size = number + 1
        rows = sorted(entries.items())
        data = b"".join(kind.to_bytes(1, "big") + first.to_bytes(3, "big") + second.to_bytes(2, "big")
                        for _, (kind, first, second) in rows)
        # Runs of numbers that follow one another.
        index = []
        for member, _ in rows:
            if index and index[-1][0] + index[-1][1] == member:
                index[-1][1] += 1
            else:
                index.append([member, 1])
        spans = " ".join(f"{first} {count}" for first, count in index)
        previous = f"/Prev {self.previous} " if self.previous is not None else ""
        self.out += indirect(number, stream(
            data, f"/Type /XRef /Size {self.size} /W [1 3 2] /Index [{spans}] "
                  f"/Root {CATALOG} 0 R /Info {INFO} 0 R {previous}"))
        self.out += b"startxref\n%d\n%%%%EOF\n" % start
        self.previous = start


def page_text(number, revision, shapes, colour):
    """What a page shows: its number, the revision that wrote it and that many shapes."""
    canvas = Canvas().fill(*PAPER).rectangle(0, 0, WIDTH, HEIGHT).op("f").draw("Frame")
    canvas.stroke(*INK).width(4, cap=1, join=1)
    letters.write(canvas, f"PAGE {number}", 40, 218, 34)
    canvas.width(1.6)
    letters.write(canvas, f"WRITTEN IN REVISION {revision}", 40, 190, 12)
    canvas.fill(*colour)
    for i in range(revision):
        shapes(canvas, 82 + 92 * i, 104)
    return canvas.text()


def disc(canvas, x, y):
    canvas.circle(x, y, 36).op("f")


def hexagon(canvas, x, y):
    canvas.polygon(ring(6, 40, 90, x, y)).op("f")


def spark(canvas, x, y):
    canvas.polygon(star(8, 42, 22, 90, x, y)).op("f")


def frame_form(colour, width):
    canvas = Canvas().stroke(*colour).width(width, join=1).rectangle(18, 18, WIDTH - 36, HEIGHT - 36).op("S")
    return stream(canvas.text(), f"/Type /XObject /Subtype /Form /BBox [0 0 {WIDTH} {HEIGHT}] ")


def page_body(page, extra=""):
    return (f"<< /Type /Page /Parent {PAGES} 0 R /Contents {content_object(page)} 0 R "
            f"/Resources {RESOURCES} 0 R {extra}>>")


def tree(pages):
    kids = " ".join(f"{page_object(page)} 0 R" for page in pages)
    return f"<< /Type /Pages /Kids [{kids}] /Count {len(pages)} /MediaBox [0 0 {WIDTH} {HEIGHT}] >>"


def make():
    file = Revisions()
    # Three pages, the last of which will go, and a note that nobody needs.
    first = {
        CATALOG: f"<< /Type /Catalog /Pages {PAGES} 0 R >>",
        PAGES: tree((1, 2, 3)),
        FRAME: frame_form(GREY, 2),
        NOTE: stream("For the second revision to drop."),
        RESOURCES: f"<< /XObject << /Frame {FRAME} 0 R >> >>",
        INFO: "<< /Title (First revision) /Producer (make-samples) >>",
    }
    for page in (1, 2, 3):
        first[page_object(page)] = page_body(page)
        first[content_object(page)] = stream(page_text(page, 1, disc, BLUE))
    # An object whose number will serve again lies outside the object stream, where generations are 0.
    first[page_object(3)] = first[page_object(3)].encode()
    file.append(first)

    file.append({
        PAGES: tree((1, 2, 4)),
        INFO: "<< /Title (Second revision) /Producer (make-samples) >>",
        content_object(2): stream(page_text(2, 2, hexagon, GREEN)),
        page_object(4): page_body(4, f"/CropBox [9 9 {WIDTH - 9} {HEIGHT - 9}] "),
        content_object(4): stream(page_text(4, 2, hexagon, RED)),
    }, freed=((NOTE, 1), (page_object(3), 1), (content_object(3), 1)))

    # The number of page 3 serves again, a generation later.
    file.append({
        PAGES: tree((1, 2, 4)).replace(f"{page_object(4)} 0 R", f"{page_object(4)} 0 R {page_object(3)} 1 R")
                              .replace("/Count 3", "/Count 4"),
        INFO: "<< /Title (Third revision) /Producer (make-samples) >>",
        FRAME: frame_form(RED, 5),
        page_object(3): f"<< /Type /Page /Parent {PAGES} 0 R /Contents {content_object(3)} 1 R "
                        f"/Resources {RESOURCES} 0 R /Rotate 180 >>",
        content_object(3): stream(page_text(5, 3, spark, RED)),
    }, generations={page_object(3): 1, content_object(3): 1})
    return bytes(file.out)
