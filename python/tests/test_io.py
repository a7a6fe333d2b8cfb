# SPDX-License-Identifier: MIT
"""Reading molecules and grids; SD files record by record and in byte-range chunks."""
import concurrent.futures
import pickle

import numpy as np
import pytest

import structmath as sm


def test_molecules_from_the_sample_files(data):
    caffeine = sm.read_sdf(str(data / "caffeine.sdf"))[0]
    same = sm.read_xyz(str(data / "caffeine.xyz"))[0]
    assert len(caffeine) == len(same) == 24 and caffeine.title == "caffeine"
    assert list(caffeine.elements) == list(same.elements)
    assert np.allclose(caffeine.coordinates, same.coordinates, atol=1e-4)
    assert caffeine.coordinates.shape == (24, 3) and caffeine.bonds.shape == (25, 2)
    assert caffeine.bonds.max() < 24 and set(caffeine.bond_orders) <= {1, 2}
    assert sorted(set(caffeine.atomic_numbers)) == [1, 6, 7, 8]
    assert sm.read_molfile(str(data / "caffeine.sdf")).title == "caffeine"
    frames = sm.read_xyz(str(data / "butane_conformers.xyz"))
    assert len(frames) > 1 and all(len(f) == len(frames[0]) for f in frames)


def test_molecules_built_in_python_round_trip_through_files_and_pickle(tmp_path):
    m = sm.Molecule(["C", "o", "D"], [[0, 0, 0], [1.2, 0, 0], [-0.6, 0.9, 0]], bonds=[[0, 1], [0, 2]],
                    bond_orders=[2, 1], title="formyl", charges=[0, -1, 0])
    assert list(m.elements) == ["C", "O", "H"] and m.labels == ["C", "o", "D"]
    path = str(tmp_path / "m.sdf")
    sm.write_sdf(path, [m, m])
    back = sm.read_sdf(path)
    assert len(back) == 2 and back[1].title == "formyl"
    assert np.allclose(back[0].coordinates, m.coordinates) and list(back[0].charges) == [0, -1, 0]
    assert back[0].bond_orders.tolist() == [2, 1]
    copy = pickle.loads(pickle.dumps(m))
    assert copy.labels == m.labels and np.array_equal(copy.coordinates, m.coordinates)
    assert np.array_equal(copy.bonds, m.bonds) and list(copy.charges) == [0, -1, 0]
    with pytest.raises(ValueError, match="unknown element 'Xx'"):
        sm.Molecule(["Xx"], [[0, 0, 0]])
    with pytest.raises(ValueError, match="one row per element"):
        sm.Molecule(["C", "C"], [[0, 0, 0]])
    with pytest.raises(IndexError):
        sm.Molecule(["C"], [[0, 0, 0]], bonds=[[0, 1]])


def library(tmp_path, data, copies=30, bad=(7,)):
    """An SD file of numbered copies of the sample records, with malformed records at `bad`."""
    records = []
    for name in ("caffeine.sdf", "theobromine.sdf", "benzene.sdf"):
        text = (data / name).read_text()
        records.append(text[: text.index("$$$$")])
    parts = []
    for n in range(copies):
        body = records[n % 3].split("\n", 1)[1]
        if n in bad:
            body = body.replace("V2000", "V9999", 1) if "V2000" in body else "broken\n"
        parts.append(f"record {n}\n{body}> <ID>\n{n}\n\n$$$$\n")
    path = tmp_path / "library.sdf"
    path.write_text("".join(parts))
    return str(path)


def test_iterating_goes_on_after_a_bad_record(tmp_path, data):
    path = library(tmp_path, data, bad=(7,))
    it = sm.iter_sdf(path)
    titles, errors = [], []
    while True:
        try:
            record = next(it)
        except StopIteration:
            break
        except sm.ParseError as e:
            errors.append(e)
            continue
        titles.append(record.molecule.title)
        assert record.data == {"ID": record.molecule.title.split()[1]}
    assert titles == [f"record {n}" for n in range(30) if n != 7] and it.records == 30
    (error,) = errors
    assert isinstance(error, RuntimeError) and error.file == path and error.line > 0
    assert str(error) == f"{path}:{error.line}: {error.problem}"


@pytest.mark.parametrize("chunk_bytes", [1, 700, 5000, 10**9])
def test_chunks_are_record_aligned_and_cover_the_file(tmp_path, data, chunk_bytes):
    path = library(tmp_path, data, copies=40, bad=())
    chunks = sm.sdf_chunks(path, chunk_bytes)
    size = len(open(path, "rb").read())
    assert chunks[0][0] == 0 and chunks[-1][1] == size
    assert all(a[1] == b[0] for a, b in zip(chunks, chunks[1:]))
    titles = [r.molecule.title for start, end in chunks for r in sm.iter_sdf(path, start, end)]
    assert titles == [f"record {n}" for n in range(40)]
    if chunk_bytes == 1:
        assert len(chunks) == 40  # one record each
    with pytest.raises(ValueError, match="chunk_bytes must be at least 1"):
        sm.sdf_chunks(path, 0)


def test_read_errors_name_file_and_line(tmp_path):
    bad = tmp_path / "bad.xyz"
    bad.write_text("2\ncomment\nC 0 0 0\nC l.23 0 0\n")
    with pytest.raises(sm.ParseError) as raised:
        sm.read_xyz(str(bad))
    assert raised.value.line == 4 and raised.value.file == str(bad)
    assert str(raised.value).startswith(f"{bad}:4: ")
    with pytest.raises(sm.ParseError, match="cannot open"):
        sm.read_sdf(str(tmp_path / "missing.sdf"))
    with pytest.raises(ValueError, match="not within the file"):
        sm.iter_sdf(str(bad), 10, 5)


def test_cube_grid_values_view_and_pickle(data):
    cube = sm.read_cube(str(data / "water_density.cube"))
    values = cube.values
    assert values.shape == (25, 25, 25) and values.dtype == np.float64
    assert np.allclose(cube.axes, np.diag([0.18521202] * 3))
    assert list(cube.atomic_numbers) == [8, 1, 1] and cube.positions.shape == (3, 3)
    copy = pickle.loads(pickle.dumps(cube))
    assert np.array_equal(copy.values, values) and np.allclose(copy.axes, cube.axes)
    assert np.array_equal(copy.origin, cube.origin) and copy.comment1 == cube.comment1
    assert copy.contour(0.05).area == pytest.approx(cube.contour(0.05).area, rel=1e-12)
    values *= 2.0  # the view writes the grid itself
    assert cube.contour(0.1).area == pytest.approx(copy.contour(0.05).area, rel=1e-9)
    made = sm.Cube(np.arange(8.0).reshape(2, 2, 2), origin=(1, 2, 3), axes=np.eye(3) * 0.5)
    assert np.allclose(made.origin, [1, 2, 3]) and np.allclose(made.axes, np.eye(3) * 0.5)


def test_files_are_read_in_parallel_threads(tmp_path, data):
    path = library(tmp_path, data, copies=60, bad=())
    chunks = sm.sdf_chunks(path, 2000)
    with concurrent.futures.ThreadPoolExecutor(4) as pool:
        parts = list(pool.map(lambda c: [r.molecule.title for r in sm.iter_sdf(path, *c)], chunks))
    assert sum(parts, []) == [f"record {n}" for n in range(60)]
    record = next(sm.iter_sdf(path))
    copy = pickle.loads(pickle.dumps(record))
    assert (copy.number, copy.first_line, copy.data) == (1, 1, {"ID": "0"})
    assert copy.molecule.title == "record 0"
