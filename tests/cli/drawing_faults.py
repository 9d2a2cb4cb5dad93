"""Prints the faults of the drawings given: numbers that are none, texts that leave the sheet."""

import cmath
import re
import sys
from xml.etree import ElementTree


def corners(text):
    """Of the least room that a text takes on the paper, as complex numbers."""
    size, length = float(text.get("font-size")), len(text.text)
    start = {"start": 0, "middle": -0.5, "end": -1}[text.get("text-anchor")]
    degrees = float(text.get("transform", "rotate(0 ")[7:].split()[0])
    turn = cmath.rect(1, degrees * cmath.pi / 180)
    for share, up in (start, 0), (start, 0.7), (start + 1, 0), (start + 1, 0.7):
        away = complex(share * 0.5 * size * length, -up * size)
        yield complex(float(text.get("x")), float(text.get("y"))) + turn * away


faults = []
for file in sys.argv[1:]:
    root = ElementTree.parse(file).getroot()
    width, height = (float(side) for side in root.get("viewBox").split()[2:])
    for element in root.iter():
        said = " ".join([element.text or "", *element.attrib.values()])
        is_text = element.tag.endswith("}text")
        if re.search(r"(?<![a-z])-?(nan|inf)(?![a-z])", said) or is_text and not all(
                0 <= at.real <= width and 0 <= at.imag <= height for at in corners(element)):
            faults.append(f"{file}: {said}")
sys.exit("\n".join(faults) or 0)
