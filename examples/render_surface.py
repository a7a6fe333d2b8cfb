#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Contour the bundled water density and render the surface with matplotlib.

The same surface as `structmath contour` gives for data/water_density.cube at its default
level: the values are divided by the level, then contoured at 1, so that the contourer's
tolerance for a value lying on the level is relative to it. Faces are shaded by their
angle to a light; the atoms are drawn inside. Runs headless (the Agg backend).

    examples/render_surface.py [--level 0.05] [--tetrahedra] [--output docs/images/surface.png]
"""
import argparse
import os

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402
import numpy as np  # noqa: E402
from mpl_toolkits.mplot3d.art3d import Poly3DCollection  # noqa: E402

import structmath as sm  # noqa: E402

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.join(HERE, os.pardir)
ATOM_COLOURS = {1: "#f2f2f2", 6: "#404040", 7: "#3050f8", 8: "#e02020"}


def main(argv=None):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--cube", default=os.path.join(ROOT, "data", "water_density.cube"))
    parser.add_argument("--level", type=float, default=0.05)
    parser.add_argument("--tetrahedra", action="store_true")
    parser.add_argument("--output", default=os.path.join(ROOT, "docs", "images", "surface.png"))
    args = parser.parse_args(argv)

    cube = sm.read_cube(args.cube)
    cube.values[...] /= abs(args.level)  # a view of the grid itself
    surface = cube.contour(1.0 if args.level > 0 else -1.0,
                           method="tetrahedra" if args.tetrahedra else "cubes")
    vertices, faces, _ = surface

    triangles = vertices[faces]
    normals = np.cross(triangles[:, 1] - triangles[:, 0], triangles[:, 2] - triangles[:, 0])
    normals /= np.linalg.norm(normals, axis=1, keepdims=True)
    light = np.array([0.4, -0.5, 0.77])
    shade = 0.35 + 0.65 * np.clip(normals @ (light / np.linalg.norm(light)), 0.0, 1.0)
    colours = np.outer(shade, [0.30, 0.62, 0.88])

    figure = plt.figure(figsize=(6.4, 6.4), dpi=125)
    axes = figure.add_subplot(projection="3d")
    axes.add_collection3d(Poly3DCollection(triangles, facecolors=colours, edgecolors="none",
                                           alpha=0.55))
    for z, p in zip(cube.atomic_numbers, cube.positions):
        axes.scatter(*p, s=300 if z > 1 else 140, color=ATOM_COLOURS.get(int(z), "#a0a0a0"),
                     edgecolors="black", depthshade=False)
    low, high = vertices.min(axis=0), vertices.max(axis=0)
    middle, half = (low + high) / 2, (high - low).max() / 2
    for set_limits, m in zip((axes.set_xlim, axes.set_ylim, axes.set_zlim), middle):
        set_limits(m - half, m + half)
    axes.set_box_aspect((1, 1, 1))
    axes.view_init(elev=20, azim=-60)
    axes.set_xlabel("x (Å)")
    axes.set_ylabel("y (Å)")
    axes.set_zlabel("z (Å)")
    topology = surface.topology
    axes.set_title(f"water density at {args.level:g} e/bohr³: {len(faces)} triangles,\n"
                   f"area {surface.area:.2f} Å², enclosed volume {surface.enclosed_volume:.2f} Å³, "
                   f"Euler characteristic {topology.euler_characteristic}", fontsize=9)
    os.makedirs(os.path.dirname(os.path.abspath(args.output)), exist_ok=True)
    figure.savefig(args.output)
    print(f"{args.output}: {len(vertices)} vertices, {len(faces)} triangles, "
          f"area {surface.area:.3f}, closed {topology.closed}")


if __name__ == "__main__":
    main()
