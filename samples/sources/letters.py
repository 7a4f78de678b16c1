"""Capitals and figures as pen strokes: lines on a grid of 4 by 6, so that samples can be read without any font."""

STROKES = {
    "A": ["00 26 40", "12 32"],
    "B": ["00 06 36 45 44 33 03", "33 42 41 30 00"],
    "C": ["45 36 16 05 01 10 30 41"],
    "D": ["00 06 26 44 42 20 00"],
    "E": ["46 06 00 40", "03 33"],
    "F": ["46 06 00", "03 33"],
    "G": ["45 36 16 05 01 10 30 41 43 23"],
    "H": ["00 06", "40 46", "03 43"],
    "I": ["20 26"],
    "K": ["00 06", "46 03 40"],
    "L": ["06 00 40"],
    "M": ["00 06 22 46 40"],
    "N": ["00 06 40 46"],
    "O": ["10 01 05 16 36 45 41 30 10"],
    "P": ["00 06 36 45 44 33 03"],
    "R": ["00 06 36 45 44 33 03", "23 40"],
    "S": ["45 36 16 05 04 13 33 42 41 30 10 01"],
    "T": ["20 26", "06 46"],
    "U": ["06 01 10 30 41 46"],
    "V": ["06 20 46"],
    "W": ["06 10 24 30 46"],
    "X": ["00 46", "06 40"],
    "Y": ["06 23 46", "23 20"],
    "0": ["10 01 05 16 36 45 41 30 10"],
    "1": ["14 26 20"],
    "2": ["05 16 36 45 44 00 40"],
    "3": ["05 16 36 45 44 33 42 41 30 10 01", "13 33"],
    "4": ["30 36 02 42"],
    "5": ["46 06 04 34 43 41 30 10 01"],
    "6": ["46 16 05 01 10 30 41 42 33 03"],
    "7": ["06 46 10"],
    "8": ["13 04 05 16 36 45 44 33 13 02 01 10 30 41 42 33"],
    "9": ["00 30 41 45 36 16 05 04 13 43"],
    "-": ["13 33"],
    ".": ["20 20"],
}


def width(text, height, spacing=2.0):
    return height / 6 * (len(text) * 4 + (len(text) - 1) * spacing)


def write(canvas, text, x, y, height, spacing=2.0):
    """Strokes the text from its lower left corner, with the pen that is set."""
    unit = height / 6
    for letter in text:
        for stroke in STROKES.get(letter, []):
            points = [(x + int(p[0]) * unit, y + int(p[1]) * unit) for p in stroke.split()]
            canvas.polygon(points, is_closed=False)
        x += (4 + spacing) * unit
    return canvas.op("S")


def write_centred(canvas, text, x, y, height, spacing=2.0):
    return write(canvas, text, x - width(text, height, spacing) / 2, y, height, spacing)
