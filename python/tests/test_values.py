# SPDX-License-Identifier: MIT
"""Fractions against Python's own exact rationals; uncertain values, text and propagation."""
import fractions
import math
import pickle
import random

import pytest

import structmath as sm


def as_python(f):
    return fractions.Fraction(*f.as_integer_ratio())


def test_fraction_arithmetic_matches_pythons_rationals():
    rng = random.Random(7)
    for _ in range(500):
        a = (rng.randint(-50, 50), rng.randint(1, 30))
        b = (rng.randint(-50, 50), rng.randint(1, 30))
        x, y = sm.Fraction(*a), sm.Fraction(*b)
        px, py = fractions.Fraction(*a), fractions.Fraction(*b)
        assert as_python(x + y) == px + py
        assert as_python(x - y) == px - py
        assert as_python(x * y) == px * py
        if b[0] != 0:
            assert as_python(x / y) == px / py
        assert as_python(x * 3 - 2) == px * 3 - 2
        assert (x < y) == (px < py) and (x == y) == (px == py)
        assert math.floor(x) == math.floor(px) and math.ceil(x) == math.ceil(px)
        assert round(x) == round(px)  # both round halves to even
        assert float(x) == pytest.approx(float(px), abs=1e-15)


def test_fraction_canonical_mixed_form_and_text():
    f = sm.Fraction(-5, 2)
    assert (f.whole, f.numerator, f.denominator) == (-2, -1, 2)
    assert [str(sm.Fraction(*a)) for a in [(10, 2), (1, 2), (-1, 2), (7, 2), (-7, 2)]] == [
        "5", "1/2", "-1/2", "3+1/2", "-3-1/2"]
    assert eval(repr(f), {"Fraction": sm.Fraction}) == f
    assert sm.Fraction(4) == 4 and hash(sm.Fraction(4)) == hash(4)
    assert len({sm.Fraction(1, 2), sm.Fraction(2, 4), sm.Fraction(3, 4)}) == 2
    assert sm.Fraction(2, 3) ** -2 == sm.Fraction(9, 4)
    assert 1 / sm.Fraction(1, 3) == 3 and sm.Fraction(1, 2) * 0.5 == 0.25


def test_fraction_errors_carry_the_library_messages():
    with pytest.raises(ValueError, match=r"^Fraction: Denominator cannot be zero\.$"):
        sm.Fraction(1, 0)
    with pytest.raises(ValueError, match=r"^Fraction: division by zero\.$"):
        sm.Fraction(1, 2) / sm.Fraction(0, 1)
    big = sm.Fraction(2**31 - 1)
    with pytest.raises(OverflowError, match=r"^Fraction: integer overflow\.$"):
        big + 1
    assert str(big) == str(2**31 - 1)  # left unchanged
    with pytest.raises(TypeError):
        sm.Fraction(2**40)  # not an int of the library


def test_uncertain_value_text_round_trip_and_propagation():
    v = sm.UncertainValue("1.234(5)")
    assert (v.value, v.standard_uncertainty) == (1.234, pytest.approx(0.005))
    assert str(sm.UncertainValue(1.23456, 0.0123)) == "1.235(12)"
    assert str(sm.UncertainValue(12345, 30)) == "12340(30)"
    assert str(sm.UncertainValue(0.123)) == "0.123"
    a, b = sm.UncertainValue(2.0, 0.3), sm.UncertainValue(4.0, 0.4)
    assert (a + b).standard_uncertainty == pytest.approx(0.5)
    assert (a * b).standard_uncertainty == pytest.approx(math.hypot(4 * 0.3, 2 * 0.4))
    q = a / b
    assert q.value == 0.5
    assert q.standard_uncertainty == pytest.approx(math.hypot(0.3 / 4, 2 * 0.4 / 16))
    assert (3 * a).standard_uncertainty == pytest.approx(0.9)
    assert (a - 1.5).value == 0.5 and (1.5 - a).value == -0.5
    assert (a - a).standard_uncertainty == pytest.approx(0.3 * math.sqrt(2))
    assert sm.UncertainValue(str(q)).value == pytest.approx(0.5)


def test_uncertain_value_errors():
    with pytest.raises(ValueError, match=r"^UncertainValue::parse\(\): cannot convert '1\.2\(x\)' "
                                         r"to a value with uncertainty$"):
        sm.UncertainValue("1.2(x)")
    with pytest.raises(ValueError, match=r"^UncertainValue: division by zero$"):
        sm.UncertainValue(1.0, 0.1) / sm.UncertainValue(0.0)
    with pytest.raises(OverflowError, match=r"^UncertainValue: result out of range$"):
        sm.UncertainValue(1e308, 1.0) * 10.0
    with pytest.raises(ValueError, match=r"^UncertainValue: value must be finite$"):
        sm.UncertainValue(math.inf)


@pytest.mark.parametrize("value", [sm.Fraction(-7, 3), sm.Fraction(5), sm.UncertainValue("-2.5e-7(3)")])
def test_values_pickle(value):
    back = pickle.loads(pickle.dumps(value))
    assert type(back) is type(value) and str(back) == str(value) and repr(back) == repr(value)
