# SPDX-License-Identifier: MIT
"""Vectorised measures against NumPy formulas; the plane against an SVD fit; array checks."""
import numpy as np
import pytest

import structmath as sm


@pytest.fixture
def points():
    return np.random.default_rng(3).normal(size=(40, 3)) * 2.0


def numpy_torsion(p0, p1, p2, p3):
    """IUPAC torsion: positive when, looking from b to c, d is turned clockwise from a."""
    b1 = (p2 - p1) / np.linalg.norm(p2 - p1)
    v = (p0 - p1) - np.dot(p0 - p1, b1) * b1
    w = (p3 - p2) - np.dot(p3 - p2, b1) * b1
    return np.arctan2(np.dot(np.cross(b1, v), w), np.dot(v, w))


def test_distances_angles_torsions_match_numpy(points):
    rng = np.random.default_rng(4)
    quads = np.array([rng.choice(len(points), 4, replace=False) for _ in range(200)])
    d = sm.distances(points, quads[:, :2])
    assert np.allclose(d, np.linalg.norm(points[quads[:, 0]] - points[quads[:, 1]], axis=1))
    a = sm.angles(points, quads[:, :3])
    u = points[quads[:, 0]] - points[quads[:, 1]]
    v = points[quads[:, 2]] - points[quads[:, 1]]
    cos = np.einsum("ij,ij->i", u, v) / np.linalg.norm(u, axis=1) / np.linalg.norm(v, axis=1)
    assert np.allclose(a, np.arccos(cos))
    t = sm.torsions(points, quads)
    assert np.allclose(t, [numpy_torsion(*points[q]) for q in quads])


def test_torsion_of_a_known_staggered_chain():
    chain = np.array([[1.0, 0, 0], [0, 0, 0], [0, 0, 1], [np.cos(2.0), np.sin(2.0), 1]])
    assert sm.torsions(chain, [[0, 1, 2, 3]])[0] == pytest.approx(2.0)
    assert sm.torsions(chain[::-1], [[0, 1, 2, 3]])[0] == pytest.approx(2.0)  # reversed: same
    with pytest.raises(RuntimeError, match="^Cannot normalize a zero length Vector$"):
        sm.torsions(np.array([[0.0, 0, 0], [1, 0, 0], [2, 0, 0], [2, 1, 0]]), [[0, 1, 2, 3]])


def test_point_set_measures(points):
    assert np.allclose(sm.centroid(points), points.mean(axis=0))
    moved = points + np.random.default_rng(5).normal(scale=0.1, size=points.shape)
    gaps = np.linalg.norm(points - moved, axis=1)
    assert sm.rms_deviation(points, moved) == pytest.approx(np.sqrt((gaps**2).mean()))
    w = np.linspace(0.5, 2.0, len(points))
    assert sm.rms_deviation(points, moved, w) == pytest.approx(np.sqrt((w * gaps**2).mean()))
    assert sm.max_deviation(points, moved) == pytest.approx(gaps.max())
    assert np.allclose(sm.inertia_tensor(points, w), (points.T * w) @ points)
    with pytest.raises(ValueError, match="same number of points"):
        sm.rms_deviation(points, moved[:-1])


def test_least_squares_plane_matches_svd(points):
    flat = points * [3.0, 2.0, 0.05] + [1.0, -2.0, 0.5]
    plane = sm.fit_plane(flat)
    centred = flat - flat.mean(axis=0)
    normal = np.linalg.svd(centred)[2][2]
    assert abs(np.dot(plane.normal, normal)) == pytest.approx(1.0, abs=1e-12)
    assert plane.distance == pytest.approx(np.dot(plane.normal, flat.mean(axis=0)))
    assert np.allclose(plane.signed_distances(flat), plane.distance - flat @ plane.normal)
    frame = np.array([plane.v1, plane.v2, plane.normal])
    assert np.allclose(frame @ frame.T, np.eye(3)) and np.linalg.det(frame) == pytest.approx(1.0)
    assert np.allclose(plane.signed_distances(plane.project(flat)), 0.0, atol=1e-12)
    with pytest.raises(ValueError, match=r"^Cannot construct a Plane from less than three points$"):
        sm.fit_plane(flat[:2])
    with pytest.raises(ValueError, match=r"^Cannot construct a Plane from collinear points$"):
        sm.fit_plane(np.outer(np.arange(5.0), [1.0, 2.0, 3.0]))


def test_strided_and_converted_inputs_give_the_same_answers(points):
    expected = sm.centroid(points)
    fortran = np.asfortranarray(points)
    wide = np.zeros((len(points), 7))
    wide[:, 2:5] = points
    every_other = np.repeat(points, 2, axis=0)[::2]
    for view in (fortran, wide[:, 2:5], every_other, points.tolist()):
        assert np.allclose(sm.centroid(view), expected)
    ints = np.arange(12).reshape(4, 3)
    assert np.allclose(sm.centroid(ints), ints.mean(axis=0))
    assert np.allclose(sm.centroid(points.astype(np.float32)), expected, atol=1e-6)
    big_endian = points.astype(">f8")
    assert np.allclose(sm.centroid(big_endian), expected)


@pytest.mark.parametrize("bad, error, message", [
    (np.zeros((4, 2)), ValueError, r"must be an \(N, 3\) array, got shape \(4, 2\)"),
    (np.zeros(3), ValueError, r"must be a 2-dimensional array, got shape \(3,\)"),
    (np.zeros((2, 3, 3)), ValueError, "must be a 2-dimensional array"),
    (np.zeros((4, 3), dtype=complex), TypeError, "must be an array of real numbers, got dtype complex128"),
    (np.array([["a", "b", "c"]]), TypeError, "must be an array of real numbers"),
    ([[1, 2, 3], [4, 5]], (ValueError, TypeError), ""),
])
def test_wrong_arrays_are_refused_with_clear_errors(bad, error, message):
    with pytest.raises(error, match=message):
        sm.centroid(bad)


def test_index_tuples_are_checked(points):
    with pytest.raises(IndexError, match="index 40 out of range for 40 points"):
        sm.distances(points, [[0, 40]])
    with pytest.raises(IndexError):
        sm.distances(points, [[-1, 0]])
    with pytest.raises(TypeError, match="must be integer indices"):
        sm.distances(points, [[0.0, 1.0]])
    with pytest.raises(ValueError, match=r"must be an \(N, 3\) array of indices"):
        sm.angles(points, [[0, 1]])
    assert sm.distances(points, np.zeros((0, 2), dtype=int)).shape == (0,)
