# SPDX-License-Identifier: MIT
"""Shared fixtures of the Python tests: the bundled sample data and the repository root."""
import pathlib

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]


@pytest.fixture
def data():
    return ROOT / "data"


@pytest.fixture
def root():
    return ROOT
