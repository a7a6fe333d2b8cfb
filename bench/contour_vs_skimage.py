#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""MarchingContourer::surface against scikit-image's marching_cubes on the same grids.

Runs the C++ benchmark, which writes its grids as .npy files, then times
skimage.measure.marching_cubes (the Lewiner method) on each, interleaving the two sides
repetition by repetition; prints CPU-time medians of seven repetitions and the ratio.

    bench/contour_vs_skimage.py build/release/bench/structmath_grid_bench
"""
import json
import os
import statistics
import subprocess
import sys
import tempfile
import time

import numpy as np
from skimage import measure

# (benchmark name, grid file stem, level, side length, node counts)
CASES = [("BM_ContourSphere", "sphere", 1.0, 2.6, (64, 128)),
         ("BM_ContourGyroid", "gyroid", 0.0, 4.0 * np.pi, (64, 128))]
REPETITIONS = 7


def cpp_time(binary, name, n, grids):
    """CPU milliseconds per surface() call from one run of the benchmark (cubes)."""
    out = subprocess.run(
        [binary, f"--benchmark_filter=^{name}/{n}/0$", "--benchmark_format=json",
         "--benchmark_min_time=0.2"],
        env=dict(os.environ, STRUCTMATH_BENCH_GRIDS=grids), check=True,
        capture_output=True, text=True).stdout
    run = json.loads(out)["benchmarks"][0]
    scale = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}[run["time_unit"]]
    return run["cpu_time"] * scale, int(run["triangles"])


def skimage_time(volume, level, spacing):
    """CPU milliseconds of one marching_cubes call, and its triangle count."""
    start = time.process_time()
    _, faces, _, _ = measure.marching_cubes(volume, level=level, spacing=spacing)
    return (time.process_time() - start) * 1e3, len(faces)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    binary = sys.argv[1]
    with tempfile.TemporaryDirectory() as grids:
        print(f"{'grid':>12} {'structmath ms':>14} {'skimage ms':>11} {'ratio':>6}"
              f" {'triangles (ours, skimage)':>27}")
        for name, stem, level, side, sizes in CASES:
            for n in sizes:
                ours, theirs = [], []
                for _ in range(REPETITIONS):
                    t, ours_triangles = cpp_time(binary, name, n, grids)
                    ours.append(t)
                    volume = np.load(os.path.join(grids, f"{stem}_{n}.npy"))
                    step = side / (n - 1)
                    t, their_triangles = skimage_time(volume, level, (step, step, step))
                    theirs.append(t)
                a, b = statistics.median(ours), statistics.median(theirs)
                print(f"{stem + ' ' + str(n) + '^3':>12} {a:14.2f} {b:11.2f} {a / b:6.2f}"
                      f" {ours_triangles:>13} {their_triangles:>13}")


if __name__ == "__main__":
    main()
