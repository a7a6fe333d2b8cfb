# SPDX-License-Identifier: MIT
"""The examples run as a user runs them: the Dask screen on a local cluster of two workers,
checked against a sequential loop, and the surface picture, rendered headless."""
import json
import os
import subprocess
import sys

import numpy as np
import pytest

import structmath as sm


def run_example(root, name, *args, timeout=600):
    env = dict(os.environ, MPLBACKEND="Agg")
    return subprocess.run([sys.executable, str(root / "examples" / name), *map(str, args)],
                          env=env, capture_output=True, text=True, timeout=timeout)


def make_library(path, data, count, bad):
    """count records cycling through the sample molecules, coordinates jittered, with
    malformed records at the positions in `bad`."""
    rng = np.random.default_rng(1)
    samples = [sm.read_sdf(str(data / n))[0] for n in ("caffeine.sdf", "theobromine.sdf", "benzene.sdf")]
    with open(path, "w") as out:
        for n in range(count):
            if n in bad:
                out.write(f"broken {n}\n\n\n  3  2  0  0  0  0  0  0  0  0999 V2000\nM  END\n$$$$\n")
                continue
            m = samples[n % 3]
            moved = sm.Molecule(m.labels, m.coordinates + rng.normal(scale=0.05, size=m.coordinates.shape),
                                bonds=m.bonds, bond_orders=m.bond_orders, title=f"mol {n}")
            sm.write_sdf(str(path) + ".one", [moved])
            out.write(open(str(path) + ".one").read())


def heavy_atoms(m):
    """The molecule's graph without hydrogens: elements and bond orders as labels."""
    heavy = m.atomic_numbers != 1
    orders = np.zeros((len(m), len(m)), dtype=int)
    orders[m.bonds[:, 0], m.bonds[:, 1]] = orders[m.bonds[:, 1], m.bonds[:, 0]] = m.bond_orders
    sub = orders[np.ix_(heavy, heavy)]
    return sm.Graph(sub != 0, node_labels=m.atomic_numbers[heavy], edge_labels=sub)


def test_dask_screen_agrees_with_a_sequential_loop(tmp_path, data, root):
    pytest.importorskip("dask.bag")
    pytest.importorskip("distributed")
    library = tmp_path / "library.sdf"
    make_library(library, data, 2000, bad={5, 1234})
    output = tmp_path / "screen.jsonl"
    done = run_example(root, "screen.py", library, "--workers", 2, "--density", 2,
                       "--chunk-bytes", 60000, "--output", output)
    assert done.returncode == 1, done.stderr  # the two malformed records
    assert "2000 records" in done.stderr and "2 failed" in done.stderr
    lines = [json.loads(line) for line in open(output)]

    # The same work in one loop over the whole file.
    pattern = heavy_atoms(sm.read_molfile(str(data / "imidazole_ring.sdf")))
    expected, records = [], sm.iter_sdf(str(library))
    while True:
        try:
            m = next(records).molecule
        except StopIteration:
            break
        except sm.ParseError:
            expected.append(None)
            continue
        graph = heavy_atoms(m)
        volume = sm.sphere_union_volume(m.coordinates, sm.van_der_waals_radii(m.elements),
                                        density=2, seeds=(1802, 9373))
        expected.append((m.title, bool(sm.subgraph_embeddings(pattern, graph)), volume.volume))
    assert len(lines) == len(expected) == 2000
    for number, (line, want) in enumerate(zip(lines, expected), start=1):
        assert line["record"] == number
        if want is None:
            assert "error" in line and "broken" not in line.get("title", "")
        else:
            assert (line["title"], line["hit"], line["volume"]) == want
    # The imidazole ring is in caffeine and theobromine, not in benzene.
    assert sum(line.get("hit", False) for line in lines) == sum(1 for n in range(2000)
                                                                 if n % 3 != 2 and n not in (5, 1234))


def test_render_surface_writes_a_picture(tmp_path, root):
    pytest.importorskip("matplotlib")
    image = tmp_path / "surface.png"
    done = run_example(root, "render_surface.py", "--output", image)
    assert done.returncode == 0, done.stderr
    import matplotlib.image
    pixels = matplotlib.image.imread(str(image))
    assert pixels.shape[0] >= 300 and pixels.shape[1] >= 300
    rgb = pixels[..., :3].reshape(-1, 3)
    # Not blank: many distinct colours, and a good share of pixels away from the background.
    assert len(np.unique((rgb * 255).astype(int), axis=0)) > 50
    assert (np.abs(rgb - rgb[0]).sum(axis=1) > 0.1).mean() > 0.05
