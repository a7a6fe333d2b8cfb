#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What a call through the Python module costs over the same call in C++.

The C++ side is bench/pipeline_bench.cpp (Google Benchmark), whose benchmarks make the
whole calls the module makes: a 1000-point overlay (one-shot, and a refit onto a kept
target) and a 128^3 sphere contour, tidied and measured. The Python side times the same
calls on the same data through the module built in the same (release) tree. Both sides
count the process's own CPU time, so that other work on a shared machine counts little,
and take the median of seven repetitions, interleaved so that a busy machine slows both
alike. The contour is also timed with scikit-image's marching_cubes from Python.

    bench/python_overhead.py build/release
"""
import json
import os
import statistics
import subprocess
import sys
import time

import numpy as np

REPETITIONS = 7


def cpp_times(build, names):
    """CPU milliseconds per call of each named C++ benchmark."""
    out = subprocess.run(
        [os.path.join(build, "bench", "structmath_pipeline_bench"),
         "--benchmark_filter=^(" + "|".join(names) + ")$", "--benchmark_format=json",
         "--benchmark_min_time=0.2"], check=True, capture_output=True, text=True).stdout
    scale = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}
    return {run["name"]: run["cpu_time"] * scale[run["time_unit"]]
            for run in json.loads(out)["benchmarks"]}


def python_time(call, seconds=0.2):
    """CPU milliseconds per call, from a loop of calls taking at least `seconds` (the clock
    is read around the loop only: reading it costs about as much as a small call)."""
    call()
    count = 1
    while True:
        start = time.process_time()
        for _ in range(count):
            call()
        elapsed = time.process_time() - start
        if elapsed >= seconds:
            return elapsed / count * 1e3
        count *= 2


def point_sets(n):
    """The point sets of the C++ benchmark, by the same formula."""
    t = np.arange(n, dtype=np.float64)
    target = np.column_stack([10 * np.sin(1.1 * t), 10 * np.cos(2.3 * t), 10 * np.sin(0.7 * t + 1.0)])
    e = 0.01 * np.sin(3.7 * t)
    moving = np.column_stack([target[:, 1] + 3.0 + e, target[:, 2] - 4.0 - e, target[:, 0] + 5.0 + e])
    return target, moving


def sphere_grid(n):
    """|x| over an n^3 grid on [-1.3, 1.3]^3, as the C++ benchmark builds it."""
    x = np.linspace(-1.3, 1.3, n)
    X, Y, Z = np.meshgrid(x, x, x, indexing="ij")
    return np.sqrt(X**2 + Y**2 + Z**2), 2.6 / (n - 1)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    build = os.path.abspath(sys.argv[1])
    sys.path.insert(0, os.path.join(build, "python"))
    import structmath as sm

    target, moving = point_sets(1000)
    kept = sm.Overlay(target)
    values, step = sphere_grid(128)
    cases = [
        ("overlay(target, moving), 1000 points", "BM_OverlayOneShot/1000",
         lambda: sm.overlay(target, moving)),
        ("Overlay.fit(moving), 1000 points", "BM_OverlayRefit/1000", lambda: kept.fit(moving)),
        ("marching_cubes, 128^3 sphere, cubes", "BM_ContourTidyMeasure/128/0",
         lambda: sm.marching_cubes(values, 1.0, spacing=(step,) * 3, origin=(-1.3,) * 3)),
        ("marching_cubes, 128^3 sphere, tetrahedra", "BM_ContourTidyMeasure/128/1",
         lambda: sm.marching_cubes(values, 1.0, spacing=(step,) * 3, origin=(-1.3,) * 3,
                                   method="tetrahedra")),
    ]
    try:
        from skimage import measure
    except ImportError:
        measure = None

    cpp = {name: [] for _, name, _ in cases}
    py = {name: [] for _, name, _ in cases}
    theirs = []
    for _ in range(REPETITIONS):
        for name, t in cpp_times(build, list(cpp)).items():
            cpp[name].append(t)
        for _, name, call in cases:
            py[name].append(python_time(call))
        if measure is not None:
            theirs.append(python_time(lambda: measure.marching_cubes(values, 1.0,
                                                                      spacing=(step,) * 3)))

    print(f"{'call':<42} {'C++ ms':>9} {'Python ms':>10} {'overhead':>9}")
    for label, name, _ in cases:
        c, p = statistics.median(cpp[name]), statistics.median(py[name])
        print(f"{label:<42} {c:9.4f} {p:10.4f} {100 * (p / c - 1):8.1f}%")
    if theirs:
        ours = statistics.median(py["BM_ContourTidyMeasure/128/0"])
        skimage = statistics.median(theirs)
        print(f"\n128^3 sphere from Python: structmath.marching_cubes {ours:.1f} ms, "
              f"skimage.measure.marching_cubes {skimage:.1f} ms (ratio {ours / skimage:.2f})")


if __name__ == "__main__":
    main()
