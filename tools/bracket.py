"""Writes a CalculiX deck of a bolted bracket to standard output: millimeters, tons and seconds.

A plate of two legs with four holes each, bent by a right angle, with three solid elements over its thickness; a rib of
shells that stiffens the bend, and eight bolts as beams. `python3 tools/bracket.py 2` doubles the divisions of everything.
"""

import math
import sys

FINENESS = int(sys.argv[1]) if len(sys.argv) > 1 else 1

WIDTH, LEG, RADIUS, THICKNESS = 80.0, 80.0, 12.0, 6.0  # of the plate; the radius is that of the inner side of the bend
HOLE = 8.0  # radius
PATCH = 40.0  # side of the square around a hole
SIDE = 8 * FINENESS  # divisions of a patch's side, even
RINGS = 5 * FINENESS  # between a hole and the border of its patch
BEND = 10 * FINENESS
LAYERS = 3 * FINENESS
ARC = (RADIUS + THICKNESS / 2) * math.pi / 2


class Deck:
    """Nodes by their place, so that neighbours share them, and lines of elements."""

    def __init__(self):
        self.nodes, self.elements = {}, []

    def node(self, point):
        return self.nodes.setdefault(tuple(round(value, 6) + 0.0 for value in point), len(self.nodes) + 1)

    def add(self, corners):
        self.elements.append([self.node(corner) for corner in corners])
        return len(self.elements)


def bent(u, v, w):
    """The place of a point of the flat strip: u along it, v across, w out of it. The leg that stands up is at x = 0."""
    outside = RADIUS + THICKNESS
    radius = outside - w
    if u <= LEG:
        return LEG + outside - u, WIDTH - v, w
    if u >= LEG + ARC:
        return w, WIDTH - v, u - LEG - ARC + outside
    angle = (u - LEG) / ARC * math.pi / 2
    return outside - radius * math.sin(angle), WIDTH - v, outside - radius * math.cos(angle)


def patch_with_hole(u, v):
    """The quadrangles of a square around a hole, by their corners in the flat strip."""
    half, count = PATCH / 2, 4 * SIDE
    border = []
    for i in range(SIDE):
        along = -half + PATCH * i / SIDE
        border.append((along, -half))
    for quarter in range(3):
        border += [(-b, a) for a, b in border[quarter * SIDE:(quarter + 1) * SIDE]]
    spokes = []
    for a, b in border:
        length = math.hypot(a, b)
        inner = a * HOLE / length, b * HOLE / length
        spokes.append([(u + half + inner[0] + (a - inner[0]) * ring / RINGS,
                        v + half + inner[1] + (b - inner[1]) * ring / RINGS) for ring in range(RINGS + 1)])
    for i in range(count):
        here, there = spokes[i], spokes[(i + 1) % count]
        for ring in range(RINGS):
            yield here[ring], here[ring + 1], there[ring + 1], there[ring]


def bend_grid():
    us = [LEG + ARC * i / BEND for i in range(BEND + 1)]
    vs = [WIDTH * i / (2 * SIDE) for i in range(2 * SIDE + 1)]
    for i in range(BEND):
        for j in range(2 * SIDE):
            yield (us[i], vs[j]), (us[i + 1], vs[j]), (us[i + 1], vs[j + 1]), (us[i], vs[j + 1])


def solids(deck, quadrangles):
    first = len(deck.elements) + 1
    for quadrangle in quadrangles:
        for layer in range(LAYERS):
            low, high = THICKNESS * layer / LAYERS, THICKNESS * (layer + 1) / LAYERS
            deck.add([bent(*corner, low) for corner in quadrangle] + [bent(*corner, high) for corner in quadrangle])
    return first, len(deck.elements)


def rib(deck):
    """Shells in the middle of the width, from the inner side of the bend to a slant between the legs."""
    first = len(deck.elements) + 1
    across, steps, height = WIDTH / 2, 2 * BEND, 4 * FINENESS
    ends = (LEG - PATCH / 2, LEG + ARC + PATCH / 2)
    start, end = (bent(u, across, THICKNESS) for u in ends)

    def at(i, j):
        inner = bent(ends[0] + (ends[1] - ends[0]) * i / steps, across, THICKNESS)
        outer = [a + (b - a) * i / steps for a, b in zip(start, end)]
        return [a + (b - a) * j / height for a, b in zip(inner, outer)]

    for i in range(steps):
        for j in range(height):
            corners = [at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1)]
            places = {deck.node(corner) for corner in corners}
            if len(places) == 4:
                deck.add(corners)
    return first, len(deck.elements)


def bolts(deck):
    first = len(deck.elements) + 1
    ends = []
    for leg in (0.0, LEG + ARC):
        for u in (leg + PATCH / 2, leg + PATCH * 3 / 2):
            for v in (PATCH / 2, PATCH * 3 / 2):
                heights = [-14.0 + 30.0 * i / (4 * FINENESS) for i in range(4 * FINENESS + 1)]
                for low, high in zip(heights, heights[1:]):
                    deck.add([bent(u, v, low), bent(u, v, high)])
                ends.append((leg, deck.node(bent(u, v, heights[0]))))
    return first, len(deck.elements), [node for leg, node in ends if leg == 0.0], [node for leg, node in ends if leg > 0.0]


def lines(ids):
    for start in range(0, len(ids), 12):
        yield ", ".join(str(number) for number in ids[start:start + 12])


def main():
    deck = Deck()
    legs = [[quadrangle for u in (0.0, PATCH) for v in (0.0, PATCH) for quadrangle in patch_with_hole(leg + u, v)]
            for leg in (0.0, LEG + ARC)]
    parts = {"BASE": solids(deck, legs[0]), "BEND": solids(deck, bend_grid()), "WALL": solids(deck, legs[1])}
    last_solid = len(deck.elements)
    ribs = rib(deck)
    first_bolt, last_bolt, fixed, loaded = bolts(deck)

    out = ["*HEADING", "Bolted bracket with a rib", "** written by tools/bracket.py: mm, ton, s", "*NODE, NSET=ALL"]
    out += [f"{number}, {x:g}, {y:g}, {z:g}" for (x, y, z), number in deck.nodes.items()]
    for kind, name, first, last in (("C3D8", "PLATE", 1, last_solid), ("S4", "RIB", *ribs), ("B31", "BOLTS", first_bolt, last_bolt)):
        out.append(f"*ELEMENT, TYPE={kind}, ELSET={name}")
        out += [f"{number}, " + ", ".join(map(str, deck.elements[number - 1])) for number in range(first, last + 1)]
    for name, (first, last) in parts.items():
        out += [f"*ELSET, ELSET={name}, GENERATE", f"{first}, {last}"]
    out += ["*ELSET, ELSET=METAL", "PLATE, RIB"]
    for name, ids in (("FIXED", fixed), ("LOADED", loaded)):
        out += [f"*NSET, NSET={name}", *lines(ids)]
    out += ["*MATERIAL, NAME=ALUMINIUM", "*ELASTIC", "70000., 0.33", "*DENSITY", "2.7d-9", "*EXPANSION", "2.35e-5",
            "*MATERIAL, NAME=STEEL", "*ELASTIC", "210000., 0.3", "*DENSITY", "7.85e-9", "*EXPANSION", "1.2e-5",
            "*SOLID SECTION, ELSET=PLATE, MATERIAL=ALUMINIUM",
            "*SHELL SECTION, ELSET=RIB, MATERIAL=ALUMINIUM", "4.",
            "*BEAM SECTION, ELSET=BOLTS, MATERIAL=STEEL, SECTION=CIRC", "7.", "1., 0., 0.",
            "*BOUNDARY", "FIXED, 1, 6", "*STEP", "*STATIC", "*CLOAD", "LOADED, 3, -250.", "*END STEP"]
    print("\n".join(out))


main()
