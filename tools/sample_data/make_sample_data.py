#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Writes the bundled sample data in data/: small molecules built from standard bond
# lengths and angles, and a cube file of a model electron density of water.
#
# Geometries are idealised, not experimental: rings are regular polygons with a side
# of 1.39 A, exocyclic bonds take typical lengths (C=O 1.22, N-C 1.47, C-H 1.09,
# N-H 1.01, C-C 1.53 A), methyl groups are tetrahedral. Run from the repository root:
#   python3 tools/sample_data/make_sample_data.py
import math
import os

OUT = os.path.join(os.path.dirname(__file__), "..", "..", "data")


def add(a, b): return tuple(x + y for x, y in zip(a, b))
def sub(a, b): return tuple(x - y for x, y in zip(a, b))
def scale(a, f): return tuple(x * f for x in a)
def dot(a, b): return sum(x * y for x, y in zip(a, b))
def cross(a, b): return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])
def unit(a): return scale(a, 1.0 / math.sqrt(dot(a, a)))


def place(a, b, c, length, angle_deg, torsion_deg):
    """The atom d with |cd| = length, angle bcd and torsion abcd as given."""
    bc = unit(sub(c, b))
    n = unit(cross(sub(b, a), bc))
    m = cross(n, bc)
    ang, tor = math.radians(angle_deg), math.radians(torsion_deg)
    d2 = (-length * math.cos(ang), length * math.sin(ang) * math.cos(tor), length * math.sin(ang) * math.sin(tor))
    return add(c, add(scale(bc, d2[0]), add(scale(m, d2[1]), scale(n, d2[2]))))


class Mol:
    def __init__(self, title):
        self.title, self.atoms, self.bonds = title, [], []

    def atom(self, element, pos):
        self.atoms.append((element, tuple(pos)))
        return len(self.atoms)  # 1-based index

    def bond(self, i, j, order=1):
        self.bonds.append((i, j, order))

    def methyl(self, anchor_idx, carbon_idx, reference_idx):
        a = self.atoms[reference_idx - 1][1]
        b = self.atoms[anchor_idx - 1][1]
        c = self.atoms[carbon_idx - 1][1]
        for t in (180.0, 60.0, -60.0):
            h = self.atom("H", place(a, b, c, 1.09, 109.47, t))
            self.bond(carbon_idx, h)


def ring_point(centre, radius, angle_deg):
    a = math.radians(angle_deg)
    return (centre[0] + radius * math.cos(a), centre[1] + radius * math.sin(a), 0.0)


def outward(centre, atom_pos, length):
    return add(atom_pos, scale(unit(sub(atom_pos, centre)), length))


def xanthine(title, methyl_on_n1):
    s = 1.39
    rh = s  # hexagon circumradius equals its side
    hc = (0.0, 0.0, 0.0)
    rp = s / (2 * math.sin(math.radians(36)))
    pc = (rh * math.cos(math.radians(30)) + s / (2 * math.tan(math.radians(36))), 0.0, 0.0)
    m = Mol(title)
    n1 = m.atom("N", ring_point(hc, rh, 150))
    c2 = m.atom("C", ring_point(hc, rh, 210))
    n3 = m.atom("N", ring_point(hc, rh, 270))
    c4 = m.atom("C", ring_point(hc, rh, 330))
    c5 = m.atom("C", ring_point(hc, rh, 30))
    c6 = m.atom("C", ring_point(hc, rh, 90))
    n7 = m.atom("N", ring_point(pc, rp, 72))
    c8 = m.atom("C", ring_point(pc, rp, 0))
    n9 = m.atom("N", ring_point(pc, rp, 288))
    pos = lambda i: m.atoms[i - 1][1]
    o2 = m.atom("O", outward(hc, pos(c2), 1.22))
    o6 = m.atom("O", outward(hc, pos(c6), 1.22))
    for a, b, o in ((n1, c2, 1), (c2, n3, 1), (n3, c4, 1), (c4, c5, 2), (c5, c6, 1), (c6, n1, 1),
                    (c5, n7, 1), (n7, c8, 1), (c8, n9, 2), (n9, c4, 1), (c2, o2, 2), (c6, o6, 2)):
        m.bond(a, b, o)
    methyls = []
    if methyl_on_n1:
        methyls.append((n1, hc, c2))
    methyls += [(n3, hc, c2), (n7, pc, c8)]
    carbons = []
    for n, centre, ref in methyls:
        c = m.atom("C", outward(centre, pos(n), 1.47))
        m.bond(n, c)
        carbons.append((n, c, ref))
    h8 = m.atom("H", outward(pc, pos(c8), 1.08))
    m.bond(c8, h8)
    if not methyl_on_n1:
        h1 = m.atom("H", outward(hc, pos(n1), 1.01))
        m.bond(n1, h1)
    for n, c, ref in carbons:
        m.methyl(n, c, ref)
    return m


def imidazole_ring(source):
    """The five-membered ring of a xanthine (atoms N7, C8, N9, C4, C5), heavy atoms only."""
    keep = [4, 5, 7, 8, 9]  # C4, C5, N7, C8, N9 (1-based indices in xanthine())
    m = Mol("imidazole ring of the xanthines (substructure pattern)")
    new_index = {}
    for old in keep:
        new_index[old] = m.atom(*source.atoms[old - 1])
    for a, b, o in source.bonds:
        if a in new_index and b in new_index:
            m.bond(new_index[a], new_index[b], o)
    return m


def benzene():
    m = Mol("benzene")
    c = [m.atom("C", ring_point((0, 0, 0), 1.39, 60 * i)) for i in range(6)]
    for i in range(6):
        m.bond(c[i], c[(i + 1) % 6], 2 if i % 2 == 0 else 1)
    for i in range(6):
        h = m.atom("H", ring_point((0, 0, 0), 1.39 + 1.09, 60 * i))
        m.bond(c[i], h)
    return m


def butane(torsion, title):
    m = Mol(title)
    c1 = m.atom("C", (0.0, 0.0, 0.0))
    c2 = m.atom("C", (1.53, 0.0, 0.0))
    p = lambda i: m.atoms[i - 1][1]
    c3 = m.atom("C", place((0.0, 1.0, 0.0), p(c1), p(c2), 1.53, 112.0, 180.0))
    c4 = m.atom("C", place(p(c1), p(c2), p(c3), 1.53, 112.0, torsion))
    m.bond(c1, c2)
    m.bond(c2, c3)
    m.bond(c3, c4)
    for t in (180.0, 60.0, -60.0):
        m.bond(c1, m.atom("H", place(p(c3), p(c2), p(c1), 1.09, 109.47, t)))
    for t in (120.0, -120.0):
        m.bond(c2, m.atom("H", place(p(c4), p(c3), p(c2), 1.09, 109.47, torsion + t)))
        m.bond(c3, m.atom("H", place(p(c1), p(c2), p(c3), 1.09, 109.47, torsion + t)))
    for t in (180.0, 60.0, -60.0):
        m.bond(c4, m.atom("H", place(p(c2), p(c3), p(c4), 1.09, 109.47, t)))
    return m


def write_xyz(path, mols):
    with open(path, "w") as f:
        for m in mols:
            f.write(f"{len(m.atoms)}\n{m.title}\n")
            for el, (x, y, z) in m.atoms:
                f.write(f"{el:<3}{x:12.6f} {y:12.6f} {z:12.6f}\n")


def write_sdf(path, mols):
    with open(path, "w") as f:
        for m in mols:
            f.write(f"{m.title}\n  structmath sample data\n\n")
            f.write(f"{len(m.atoms):3d}{len(m.bonds):3d}  0  0  0  0  0  0  0  0999 V2000\n")
            for el, (x, y, z) in m.atoms:
                f.write(f"{x:10.4f}{y:10.4f}{z:10.4f} {el:<3} 0  0  0  0  0  0  0  0  0  0  0  0\n")
            for a, b, o in m.bonds:
                f.write(f"{a:3d}{b:3d}{o:3d}  0\n")
            f.write("M  END\n$$$$\n")


def write_water_cube(path):
    bohr = 1.0 / 0.52917721092  # angstrom to bohr
    # Water with O-H 0.9572 A and H-O-H 104.52 degrees.
    half = math.radians(104.52 / 2)
    atoms = [(8, (0.0, 0.0, 0.0)),
             (1, (0.9572 * math.sin(half), 0.0, 0.9572 * math.cos(half))),
             (1, (-0.9572 * math.sin(half), 0.0, 0.9572 * math.cos(half)))]
    atoms = [(z, scale(p, bohr)) for z, p in atoms]
    # A promolecular model density: one normalised Slater-type shell per atom.
    zeta = {8: 3.2, 1: 2.0}
    n, step = 25, 0.35
    origin = (-(n - 1) * step / 2, -(n - 1) * step / 2, -(n - 1) * step / 2 + 0.6)
    with open(path, "w") as f:
        f.write("Model electron density of water (sum of atomic Slater densities)\n")
        f.write("Written by tools/sample_data/make_sample_data.py; units bohr, e/bohr^3\n")
        f.write(f"{len(atoms):5d}{origin[0]:12.6f}{origin[1]:12.6f}{origin[2]:12.6f}\n")
        for axis in range(3):
            v = [0.0, 0.0, 0.0]
            v[axis] = step
            f.write(f"{n:5d}{v[0]:12.6f}{v[1]:12.6f}{v[2]:12.6f}\n")
        for z, p in atoms:
            f.write(f"{z:5d}{float(z):12.6f}{p[0]:12.6f}{p[1]:12.6f}{p[2]:12.6f}\n")
        for i in range(n):
            for j in range(n):
                values = []
                for k in range(n):
                    r = (origin[0] + i * step, origin[1] + j * step, origin[2] + k * step)
                    rho = 0.0
                    for z, p in atoms:
                        d = math.sqrt(dot(sub(r, p), sub(r, p)))
                        rho += z * zeta[z] ** 3 / (8 * math.pi) * math.exp(-zeta[z] * d)
                    values.append(rho)
                for start in range(0, n, 6):
                    f.write("".join(f"{v:13.5E}" for v in values[start:start + 6]) + "\n")


def main():
    caffeine = xanthine("caffeine", True)
    theobromine = xanthine("theobromine", False)
    write_xyz(os.path.join(OUT, "caffeine.xyz"), [caffeine])
    write_sdf(os.path.join(OUT, "caffeine.sdf"), [caffeine])
    write_sdf(os.path.join(OUT, "theobromine.sdf"), [theobromine])
    write_sdf(os.path.join(OUT, "imidazole_ring.sdf"), [imidazole_ring(caffeine)])
    write_xyz(os.path.join(OUT, "benzene.xyz"), [benzene()])
    write_sdf(os.path.join(OUT, "benzene.sdf"), [benzene()])
    write_xyz(os.path.join(OUT, "butane_conformers.xyz"),
              [butane(180.0, "n-butane anti"), butane(60.0, "n-butane gauche")])
    write_water_cube(os.path.join(OUT, "water_density.cube"))


if __name__ == "__main__":
    main()
