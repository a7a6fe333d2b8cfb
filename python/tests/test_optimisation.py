# SPDX-License-Identifier: MIT
"""The simplex minimiser driving Python callables: optima, fixed dimensions, exceptions."""
import pickle
import threading

import numpy as np
import pytest

import structmath as sm


def rosenbrock(x):
    return (1 - x[0]) ** 2 + 100 * (x[1] - x[0] ** 2) ** 2


def test_rosenbrock_converges_to_its_minimum():
    calls = []

    def f(x):
        calls.append(x.copy())
        return rosenbrock(x)

    r = sm.minimise(f, [-1.2, 1.0], perturbations=0.5, tolerance=1e-14, max_iterations=5000)
    assert r.converged and np.allclose(r.x, [1.0, 1.0], atol=1e-4)
    assert r.value == pytest.approx(rosenbrock(r.x), abs=1e-15) and r.value < 1e-8
    assert r.evaluations == len(calls) and r.iterations > 0
    assert all(c.dtype == np.float64 and c.shape == (2,) for c in calls)


def test_fixed_dimensions_keep_their_start():
    seen = set()

    def bowl(x):
        seen.add(float(x[1]))
        return float(((x - [3.0, -1.0, 2.0]) ** 2).sum())

    r = sm.minimise(bowl, [0.0, 7.0, 0.0], perturbations=[1.0, 1.0, 0.5], fixed=[1])
    assert r.converged and seen == {7.0}
    assert r.x[1] == 7.0 and np.allclose(r.x[[0, 2]], [3.0, 2.0], atol=1e-3)


def test_exceptions_from_the_callable_propagate():
    class Stop(Exception):
        pass

    def failing(x):
        if x[0] > 0.5:
            raise Stop("stopped at %g" % x[0])
        return -x[0]

    with pytest.raises(Stop, match="stopped at"):
        sm.minimise(failing, [0.0])
    with pytest.raises(TypeError):
        sm.minimise(lambda x: "not a number", [0.0])


def test_bad_arguments_and_pickling():
    with pytest.raises(ValueError, match="perturbations must have 2 entries, got 3"):
        sm.minimise(rosenbrock, [0.0, 0.0], perturbations=[1, 1, 1])
    with pytest.raises(IndexError, match="fixed: dimension 2 out of range for 2 dimensions"):
        sm.minimise(rosenbrock, [0.0, 0.0], fixed=[2])
    with pytest.raises(ValueError, match="at least one dimension"):
        sm.minimise(rosenbrock, [])
    # Every dimension fixed leaves nothing to minimise: the library's own error.
    with pytest.raises(RuntimeError):
        sm.minimise(rosenbrock, [0.0, 0.0], fixed=[0, 1])
    r = sm.minimise(lambda x: float((x**2).sum()), [1.0, 2.0])
    back = pickle.loads(pickle.dumps(r))
    assert np.array_equal(back.x, r.x) and (back.value, back.converged, back.evaluations) == (
        r.value, r.converged, r.evaluations)


def test_minimisations_in_threads_take_turns_with_the_gil():
    results = {}

    def run(k):
        results[k] = sm.minimise(lambda x: float(((x - k) ** 2).sum()), [0.0, 0.0]).x

    threads = [threading.Thread(target=run, args=(k,)) for k in range(4)]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    assert all(np.allclose(results[k], [k, k], atol=1e-3) for k in range(4))
