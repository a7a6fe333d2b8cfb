# SPDX-License-Identifier: MIT
"""marching_cubes against scikit-image on the same grids; tetrahedra; layout; errors; threads."""
import concurrent.futures
import pickle

import numpy as np
import pytest

import structmath as sm


def blob(n=40):
    """A wavy closed surface around the middle of an anisotropic grid, and its spacing."""
    x = np.linspace(-1.3, 1.3, n)
    X, Y, Z = np.meshgrid(x, 1.1 * x, 0.9 * x, indexing="ij")
    step = x[1] - x[0]
    return np.sqrt(X**2 + Y**2 + Z**2) + 0.1 * np.sin(3 * X), (step, 1.1 * step, 0.9 * step)


def area_and_volume(vertices, faces):
    t = vertices[faces]
    area = 0.5 * np.linalg.norm(np.cross(t[:, 1] - t[:, 0], t[:, 2] - t[:, 0]), axis=1).sum()
    volume = np.einsum("ij,ij->i", t[:, 0], np.cross(t[:, 1], t[:, 2])).sum() / 6.0
    return area, volume


def octahedron():
    """|x| + |y| + |z| on a grid with a node plane through 0 along each axis: every cell lies
    in one octant, where the field is linear, so every cut polygon is planar and any
    triangulation of it has the same area and volume. Contoured at 1.0137 (no node value near it),
    the surface is the octahedron itself: area 4 sqrt(3) c^2, volume 4/3 c^3."""
    axes = [np.arange(-m, m + 1) * h for m, h in ((12, 0.1), (10, 0.125), (14, 0.09))]
    X, Y, Z = np.meshgrid(*axes, indexing="ij")
    spacing = (0.1, 0.125, 0.09)
    origin = tuple(a[0] for a in axes)
    return np.abs(X) + np.abs(Y) + np.abs(Z), spacing, origin


def skimage_surface(values, level, spacing, origin, method, ours):
    """skimage's triangles as indices into our vertices, matched by position (skimage keeps
    vertices in float32, so their positions agree with ours only to float32 precision)."""
    skimage = pytest.importorskip("skimage.measure")
    tree = pytest.importorskip("scipy.spatial").cKDTree(ours.vertices)
    verts, faces, _, _ = skimage.marching_cubes(values, level, spacing=spacing, method=method)
    gap, index = tree.query(verts.astype(np.float64) + origin)
    assert gap.max() < 1e-5 * np.abs(ours.vertices).max()
    assert len(set(index)) == len(index) == len(ours.vertices)  # the same vertices
    return index[faces]


@pytest.mark.parametrize("method", ["lorensen", "lewiner"])
def test_cubes_give_skimages_area_and_volume(method):
    values, spacing, origin = octahedron()
    ours = sm.marching_cubes(values, 1.0137, spacing=spacing, origin=origin)
    faces = skimage_surface(values, 1.0137, spacing, origin, method, ours)
    area, volume = area_and_volume(ours.vertices, faces)
    assert ours.area == pytest.approx(area, rel=1e-9)
    assert ours.enclosed_volume == pytest.approx(abs(volume), rel=1e-9)
    assert ours.area == pytest.approx(4 * np.sqrt(3) * 1.0137**2, rel=1e-9)
    assert ours.enclosed_volume == pytest.approx(4 / 3 * 1.0137**3, rel=1e-9)
    assert ours.topology.closed and ours.topology.euler_characteristic == 2


@pytest.mark.parametrize("method", ["lorensen", "lewiner"])
def test_cubes_differ_from_skimage_only_in_quad_diagonals(method):
    # On a curved surface the classical table and skimage's split some four-sided cuts
    # along the other diagonal: same vertices, same number of triangles, the differing
    # triangles covering the same vertices, and area and volume equal to a few 1e-7.
    values, spacing = blob()
    origin = (-1.3, -1.43, -1.17)
    ours = sm.marching_cubes(values, 1.0, spacing=spacing, origin=origin)
    faces = skimage_surface(values, 1.0, spacing, origin, method, ours)
    assert len(faces) == len(ours.faces)
    theirs = {tuple(sorted(t)) for t in faces}
    mine = {tuple(sorted(t)) for t in ours.faces}
    assert len(theirs - mine) == len(mine - theirs) < len(mine) // 4
    assert {v for t in theirs - mine for v in t} == {v for t in mine - theirs for v in t}
    area, volume = area_and_volume(ours.vertices, faces)
    assert ours.area == pytest.approx(area, rel=1e-6)
    assert ours.enclosed_volume == pytest.approx(abs(volume), rel=1e-5)


def test_tetrahedra_and_cubes_approach_a_sphere():
    n = 64
    x = np.linspace(-1.3, 1.3, n)
    X, Y, Z = np.meshgrid(x, x, x, indexing="ij")
    r = np.sqrt(X**2 + Y**2 + Z**2)
    step = x[1] - x[0]
    for method in ("cubes", "tetrahedra"):
        s = sm.marching_cubes(r, 1.0, spacing=(step,) * 3, origin=(-1.3,) * 3, method=method)
        assert s.area == pytest.approx(4 * np.pi, rel=5e-3)
        assert s.enclosed_volume == pytest.approx(4 / 3 * np.pi, rel=5e-3)
        assert np.allclose(np.linalg.norm(s.vertices, axis=1), 1.0, atol=2e-3)
        # Unit normals, pointing outwards on the sphere.
        assert np.allclose(np.linalg.norm(s.normals, axis=1), 1.0)
        assert (np.einsum("ij,ij->i", s.normals, s.vertices) > 0.9).all()
        assert s.topology.closed and s.topology.consistently_oriented
        assert s.vertices.dtype == np.float64 and s.faces.dtype == np.int32
        assert s.faces.min() >= 0 and s.faces.max() < len(s.vertices)


def test_a_torus_is_one_closed_piece_of_genus_one_and_slabs_are_open():
    x = np.linspace(-2, 2, 48)
    X, Y, Z = np.meshgrid(x, x, x, indexing="ij")
    torus = (np.sqrt(X**2 + Y**2) - 1.2) ** 2 + Z**2
    t = sm.marching_cubes(torus, 0.16).topology
    assert (t.closed, t.components, t.euler_characteristic) == (True, 1, 0)
    half = sm.marching_cubes(X, 0.01)
    assert not half.topology.closed and half.enclosed_volume is None
    assert half.topology.boundary_edges > 0
    empty = sm.marching_cubes(X, 10.0)
    assert empty.vertices.shape == (0, 3) and empty.faces.shape == (0, 3) and empty.area == 0.0


def test_layout_follows_the_array_axes_and_spacing():
    values = np.zeros((5, 6, 7))
    values[2:, :, :] = 1.0  # a plane across axis 0, between i = 1 and 2
    s = sm.marching_cubes(values, 0.5, spacing=(2.0, 1.0, 0.5), origin=(10.0, 0.0, 0.0))
    assert np.allclose(s.vertices[:, 0], 13.0)
    assert s.vertices[:, 1].max() == pytest.approx(5.0) and s.vertices[:, 2].max() == pytest.approx(3.0)
    verts, faces, normals = s  # unpacks like skimage's first three arrays
    assert verts is s.vertices and normals.shape == verts.shape
    assert not verts.flags.writeable
    # A strided (non-contiguous) view gives the same surface as its copy.
    big = np.zeros((10, 6, 14))
    big[::2, :, ::2] = values
    view = big[::2, :, ::2]
    assert np.array_equal(sm.marching_cubes(view, 0.5).vertices,
                          sm.marching_cubes(np.ascontiguousarray(view), 0.5).vertices)


def test_bad_calls_are_refused():
    with pytest.raises(ValueError, match="method must be 'cubes' or 'tetrahedra', got 'squares'"):
        sm.marching_cubes(np.zeros((3, 3, 3)), 0.5, method="squares")
    with pytest.raises(ValueError, match="must be a 3-dimensional array"):
        sm.marching_cubes(np.zeros((3, 3)), 0.5)
    with pytest.raises(ValueError, match="at least 2 points along each axis"):
        sm.marching_cubes(np.zeros((3, 1, 3)), 0.5)
    with pytest.raises(ValueError, match="spacing must have 3 entries"):
        sm.marching_cubes(np.zeros((3, 3, 3)), 0.5, spacing=(1.0, 1.0))
    with pytest.raises(TypeError, match="real numbers"):
        sm.marching_cubes(np.zeros((3, 3, 3), dtype=complex), 0.5)


def test_results_pickle_and_threads_contour_in_parallel():
    values, spacing = blob(32)
    s = sm.marching_cubes(values, 1.0, spacing=spacing)
    back = pickle.loads(pickle.dumps(s))
    assert np.array_equal(back.vertices, s.vertices) and np.array_equal(back.faces, s.faces)
    assert back.area == s.area and back.enclosed_volume == s.enclosed_volume
    assert back.topology.euler_characteristic == 2 and back.method == "cubes"
    with concurrent.futures.ThreadPoolExecutor(4) as pool:
        areas = list(pool.map(lambda level: sm.marching_cubes(values, level).area,
                              [0.8, 0.9, 1.0, 1.1] * 2))
    assert areas == [sm.marching_cubes(values, level).area for level in [0.8, 0.9, 1.0, 1.1] * 2]


def test_cube_files_contour_in_place(data):
    cube = sm.read_cube(str(data / "water_density.cube"))
    axes = cube.axes
    assert np.allclose(axes, np.diag(np.diag(axes)))  # this sample's axes are orthogonal
    direct = cube.contour(0.05)
    copied = sm.marching_cubes(cube.values, 0.05, spacing=np.diag(axes), origin=cube.origin)
    assert np.allclose(direct.vertices, copied.vertices, atol=1e-12)
    assert direct.area == pytest.approx(copied.area, rel=1e-12)
    assert direct.topology.closed
