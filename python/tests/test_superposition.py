# SPDX-License-Identifier: MIT
"""Overlay against an SVD fit computed with NumPy, mirror images, weights, errors."""
import pickle

import numpy as np
import pytest

import structmath as sm


def svd_fit(target, moving, allow_mirror=False):
    """Rotation R and translation t minimising |target - (moving R^T + t)|, by SVD."""
    ct, cm = target.mean(axis=0), moving.mean(axis=0)
    u, _, vt = np.linalg.svd((target - ct).T @ (moving - cm))
    d = np.eye(3)
    if not allow_mirror and np.linalg.det(u @ vt) < 0:
        d[2, 2] = -1.0
    r = u @ d @ vt
    return r, ct - r @ cm


def random_rotation(rng):
    q, _ = np.linalg.qr(rng.normal(size=(3, 3)))
    return q * np.sign(np.linalg.det(q))


@pytest.mark.parametrize("n", [4, 25, 1000])
def test_overlay_matches_an_svd_fit(n):
    rng = np.random.default_rng(n)
    target = rng.uniform(-10, 10, size=(n, 3))
    moving = target @ random_rotation(rng).T + [3.0, -4.0, 5.0] + rng.normal(scale=0.2, size=(n, 3))
    fit = sm.overlay(target, moving)
    r, t = svd_fit(target, moving)
    assert np.allclose(fit.rotation, r, atol=1e-9) and np.allclose(fit.translation, t, atol=1e-8)
    fitted = moving @ r.T + t
    assert fit.rms == pytest.approx(np.sqrt(((fitted - target) ** 2).sum(axis=1).mean()), rel=1e-9)
    assert fit.max_deviation == pytest.approx(np.linalg.norm(fitted - target, axis=1).max())
    assert np.allclose(fit.transform(moving), fitted)
    assert np.linalg.det(fit.rotation) == pytest.approx(1.0)


@pytest.mark.parametrize("shape", ["general", "planar", "linear", "mirror"])
def test_rmsd_is_the_deviation_of_the_best_proper_fit(shape):
    rng = np.random.default_rng(len(shape))
    target = rng.uniform(-5, 5, size=(200, 3))
    if shape == "planar":
        target[:, 2] = 0.3 * target[:, 0] - 0.2 * target[:, 1]
    if shape == "linear":
        target = np.outer(rng.uniform(-5, 5, 200), [0.48, 0.6, 0.64])
    moving = target @ random_rotation(rng).T + [1.0, 2.0, -3.0] + rng.normal(scale=0.1, size=(200, 3))
    if shape == "mirror":
        moving = moving * [1.0, 1.0, -1.0]
    r, t = svd_fit(target, moving)
    expected = np.sqrt(((moving @ r.T + t - target) ** 2).sum(axis=1).mean())
    assert sm.rmsd(target, moving) == pytest.approx(expected, abs=1e-7)
    weights = rng.uniform(0.5, 2.0, 200)
    assert sm.rmsd(target, moving, np.ones(200)) == pytest.approx(sm.rmsd(target, moving), abs=1e-12)
    assert sm.rmsd(target, moving, weights) > 0.0
    with pytest.raises(ValueError, match="differ in size"):
        sm.rmsd(target, moving[:-1])


def test_mirror_images_fit_only_when_allowed():
    rng = np.random.default_rng(11)
    target = rng.normal(size=(12, 3))
    mirrored = target * [1.0, 1.0, -1.0]
    assert sm.overlay(target, mirrored).rms > 0.1
    fit = sm.overlay(target, mirrored, allow_mirror=True)
    assert fit.rms < 1e-12 and np.linalg.det(fit.rotation) == pytest.approx(-1.0)


def test_weighted_fits_and_a_reused_target():
    rng = np.random.default_rng(12)
    target = rng.normal(size=(30, 3))
    moving = target @ random_rotation(rng).T
    moving[0] += 5.0  # one outlier
    weights = np.ones(30)
    weights[0] = 1e-9
    fit = sm.overlay(target, moving, weights=weights)
    # With the outlier weighted out, the other points fit almost exactly.
    assert np.linalg.norm(fit.transform(moving)[1:] - target[1:], axis=1).max() < 0.5
    o = sm.Overlay(target)
    assert np.allclose(o.target_centroid, target.mean(axis=0))
    assert o.fit(moving).rms == sm.overlay(target, moving).rms
    assert o.fit(np.vstack([moving, moving])).rms == pytest.approx(sm.overlay(target, moving).rms)


def test_overlay_errors_and_pickling():
    with pytest.raises(ValueError, match=r"^No points to overlay in OverlayPoints::OverlayPoints$"):
        sm.Overlay(np.zeros((0, 3)))
    with pytest.raises(ValueError, match=r"^Cannot overlay fewer\(2\) points than are in the "
                                         r"target\(3\) OverlayPoints::check_input_size$"):
        sm.Overlay(np.eye(3)).fit(np.eye(3)[:2])
    with pytest.raises(ValueError, match="moving must have as many points as target"):
        sm.overlay(np.eye(3), np.eye(3)[:2])
    with pytest.raises(ValueError, match="weights must have 3 entries, got 2"):
        sm.overlay(np.eye(3), np.eye(3), weights=[1.0, 1.0])
    fit = sm.overlay(np.eye(3), np.eye(3)[::-1])
    back = pickle.loads(pickle.dumps(fit))
    assert back.rms == fit.rms and np.array_equal(back.rotation, fit.rotation)
    assert np.array_equal(back.translation, fit.translation)
