"""What the samples are written with: a file of objects, and a page's content."""

import math
import zlib


def number(value):
    """As short as it gets at a thousandth of a unit."""
    text = f"{value:.3f}".rstrip("0").rstrip(".")
    return "0" if text == "-0" else text


def numbers(*values):
    return " ".join(number(value) for value in values)


def stream(data, entries="", is_packed=True):
    if isinstance(data, str):
        data = data.encode("latin-1")
    if is_packed:
        data = zlib.compress(data, 9)
        entries = "/Filter /FlateDecode " + entries
    return f"<< {entries}/Length {len(data)} >>\nstream\n".encode("latin-1") + data + b"\nendstream"


class File:
    """Objects in order of their numbers; a body is text, or bytes for a stream."""

    def __init__(self, version="1.7"):
        self.version = version
        self.bodies = {}

    def reserve(self):
        self.bodies[len(self.bodies) + 1] = None
        return len(self.bodies)

    def add(self, body):
        number_ = self.reserve()
        self.bodies[number_] = body
        return number_

    def set(self, number_, body):
        self.bodies[number_] = body

    def header(self):
        return b"%%PDF-%s\n%%\xe2\xe3\xcf\xd3\n" % self.version.encode()

    def classic(self, trailer):
        """The whole file, with a cross-reference table."""
        out = bytearray(self.header())
        offsets = {}
        for number_, body in self.bodies.items():
            offsets[number_] = len(out)
            out += indirect(number_, body)
        start = len(out)
        out += b"xref\n0 %d\n0000000000 65535 f \n" % (len(offsets) + 1)
        for offset in offsets.values():
            out += b"%010d 00000 n \n" % offset
        out += f"trailer\n<< /Size {len(offsets) + 1} {trailer} >>\nstartxref\n{start}\n%%EOF\n".encode()
        return bytes(out)


def indirect(number_, body, generation=0):
    if isinstance(body, str):
        body = body.encode("latin-1")
    return b"%d %d obj\n%s\nendobj\n" % (number_, generation, body)


class Canvas:
    """Content operators, one a line. Paths are left open for the caller to paint."""

    # Of a radius, for a quarter of a circle.
    KAPPA = 4 / 3 * (math.sqrt(2) - 1)

    def __init__(self):
        self.lines = []

    def text(self):
        return "\n".join(self.lines) + "\n"

    def op(self, name, *operands):
        self.lines.append(" ".join([numbers(*operands), name]) if operands else name)
        return self

    def raw(self, line):
        self.lines.append(line)
        return self

    # State

    def save(self):
        return self.op("q")

    def restore(self):
        return self.op("Q")

    def transform(self, a, b, c, d, e, f):
        return self.op("cm", a, b, c, d, e, f)

    def move(self, x, y):
        return self.transform(1, 0, 0, 1, x, y)

    def turn(self, degrees, x=0, y=0):
        """Moves the origin to (x, y) and turns there, anticlockwise."""
        cos, sin = math.cos(math.radians(degrees)), math.sin(math.radians(degrees))
        # Six digits: a turn of a large thing shows at three.
        self.lines.append(f"{cos:.6f} {sin:.6f} {-sin:.6f} {cos:.6f} {numbers(x, y)} cm")
        return self

    def fill(self, *colour):
        return self.op({1: "g", 3: "rg", 4: "k"}[len(colour)], *colour)

    def stroke(self, *colour):
        return self.op({1: "G", 3: "RG", 4: "K"}[len(colour)], *colour)

    def width(self, width, cap=0, join=0):
        return self.op("w", width).op("J", cap).op("j", join)

    def dash(self, *lengths, phase=0):
        return self.raw(f"[{numbers(*lengths)}] {number(phase)} d")

    def draw(self, form):
        return self.raw(f"/{form} Do")

    def begin_layer(self, name):
        return self.raw(f"/OC /{name} BDC")

    def end_layer(self):
        return self.op("EMC")

    def clip(self, rule="W"):
        return self.op(rule).op("n")

    # Paths

    def start(self, x, y):
        return self.op("m", x, y)

    def line(self, x, y):
        return self.op("l", x, y)

    def curve(self, *points):
        return self.op("c", *points)

    def close(self):
        return self.op("h")

    def rectangle(self, x, y, width, height):
        return self.op("re", x, y, width, height)

    def polygon(self, points, is_closed=True):
        self.start(*points[0])
        for point in points[1:]:
            self.line(*point)
        return self.close() if is_closed else self

    def ellipse(self, x, y, rx, ry, is_clockwise=False):
        ry = -ry if is_clockwise else ry
        kx, ky = rx * self.KAPPA, ry * self.KAPPA
        self.start(x + rx, y)
        self.curve(x + rx, y + ky, x + kx, y + ry, x, y + ry)
        self.curve(x - kx, y + ry, x - rx, y + ky, x - rx, y)
        self.curve(x - rx, y - ky, x - kx, y - ry, x, y - ry)
        self.curve(x + kx, y - ry, x + rx, y - ky, x + rx, y)
        return self.close()

    def circle(self, x, y, radius, is_clockwise=False):
        return self.ellipse(x, y, radius, radius, is_clockwise)

    def arc(self, x, y, radius, first, last, is_new=True):
        """From angle to angle in degrees, in pieces of at most a quarter; joined to what is there unless new."""
        pieces = max(1, math.ceil(abs(last - first) / 90))
        step = math.radians((last - first) / pieces)
        k = 4 / 3 * math.tan(step / 4) * radius
        angle = math.radians(first)
        here = (x + radius * math.cos(angle), y + radius * math.sin(angle))
        self.start(*here) if is_new else self.line(*here)
        for _ in range(pieces):
            then = angle + step
            there = (x + radius * math.cos(then), y + radius * math.sin(then))
            self.curve(here[0] - k * math.sin(angle), here[1] + k * math.cos(angle),
                       there[0] + k * math.sin(then), there[1] - k * math.cos(then), *there)
            angle, here = then, there
        return self


def ring(count, radius, turn=90.0, x=0.0, y=0.0):
    """The corners of a regular polygon."""
    return [(x + radius * math.cos(math.radians(turn + 360 * i / count)),
             y + radius * math.sin(math.radians(turn + 360 * i / count))) for i in range(count)]


def star(count, outer, inner, turn=90.0, x=0.0, y=0.0):
    tips, notches = ring(count, outer, turn, x, y), ring(count, inner, turn + 180 / count, x, y)
    return [point for pair in zip(tips, notches) for point in pair]
