# SPDX-License-Identifier: MIT
"""Monte Carlo sphere-union volumes against closed forms, reproducibility, errors, threads."""
import concurrent.futures
import math
import pickle

import numpy as np
import pytest

import structmath as sm


def lens_union(r, d):
    """Volume of two spheres of radius r whose centres are d apart (d < 2r)."""
    return 2 * 4 / 3 * math.pi * r**3 - math.pi * (4 * r + d) * (2 * r - d) ** 2 / 12


@pytest.mark.parametrize("centres, radii, expected", [
    ([[0.0, 0.0, 0.0]], 1.5, 4 / 3 * math.pi * 1.5**3),
    ([[0.0, 0.0, 0.0], [1.0, 0.0, 0.0]], [1.0, 1.0], lens_union(1.0, 1.0)),
    ([[0.0, 0.0, 0.0], [5.0, 0.0, 0.0]], [1.0, 2.0], 4 / 3 * math.pi * (1 + 8)),
    ([[0.0, 0.0, 0.0], [0.2, 0.0, 0.0]], [2.0, 0.5], 4 / 3 * math.pi * 8),  # one inside the other
])
def test_volume_within_four_standard_errors_of_the_closed_form(centres, radii, expected):
    v = sm.sphere_union_volume(np.array(centres), radii, density=20000, seeds=(11, 23))
    assert abs(v.volume - expected) < 4 * v.standard_error
    p = v.hits / v.samples
    assert v.standard_error == pytest.approx(v.box_volume * math.sqrt(p * (1 - p) / v.samples))
    assert v.volume == pytest.approx(v.hits * v.box_volume / v.samples)


def test_same_seeds_same_volume_and_threads_run_in_parallel():
    rng = np.random.default_rng(2)
    centres, radii = rng.uniform(-3, 3, size=(20, 3)), rng.uniform(1.2, 1.9, size=20)
    seeds = [(s, 100 + s) for s in range(6)]
    sequential = [sm.sphere_union_volume(centres, radii, 100, seeds=s).volume for s in seeds]
    with concurrent.futures.ThreadPoolExecutor(3) as pool:
        threaded = list(pool.map(lambda s: sm.sphere_union_volume(centres, radii, 100, seeds=s).volume,
                                 seeds))
    assert threaded == sequential and len(set(sequential)) > 1
    v = sm.sphere_union_volume(centres, radii, 100, seeds=(1, 2))
    back = pickle.loads(pickle.dumps(v))
    assert (back.volume, back.standard_error, back.samples, back.hits, back.box_volume) == (
        v.volume, v.standard_error, v.samples, v.hits, v.box_volume)


def test_bad_input_is_refused_with_the_library_messages():
    one = np.zeros((1, 3))
    with pytest.raises(ValueError, match=r"^StochasticVolumeCalculator Implementation: sample "
                                         r"density must be > 0$"):
        sm.sphere_union_volume(one, 1.0, density=0)
    with pytest.raises(ValueError, match=r"^Error in seeds\. First seed must be in the range 0 - 31328$"):
        sm.sphere_union_volume(one, 1.0, seeds=(40000, 1))
    with pytest.raises(ValueError, match="radii must be positive"):
        sm.sphere_union_volume(one, -1.0)
    with pytest.raises(ValueError, match="radii must have 1 entries, got 2"):
        sm.sphere_union_volume(one, [1.0, 2.0])
    with pytest.raises(ValueError, match="no spheres"):
        sm.sphere_union_volume(np.zeros((0, 3)), 1.0)
    with pytest.raises(TypeError):
        sm.sphere_union_volume(one, 1.0, density=-5)


def test_van_der_waals_radii():
    assert np.allclose(sm.van_der_waals_radii(["C", "h", "O", "Cl"]), [1.70, 1.20, 1.52, 1.75])
    with pytest.raises(ValueError, match="no van der Waals radius for element 'Fe'"):
        sm.van_der_waals_radii(["Fe"])
