# SPDX-License-Identifier: MIT
"""The package as users meet it: the README's tour runs, and the stubs describe the module."""
import ast
import inspect
import os
import pathlib
import re
import subprocess
import sys

import structmath as sm
from structmath import _structmath


def test_readme_tour_runs(root):
    readme = (root / "README.md").read_text()
    section = readme[readme.index("## A short tour in Python"):]
    code = re.search(r"```python\n(.*?)```", section, re.S).group(1)
    package_parent = str(pathlib.Path(sm.__file__).resolve().parents[1])
    path = os.pathsep.join([package_parent, os.environ.get("PYTHONPATH", "")])
    done = subprocess.run([sys.executable, "-c", code], cwd=root, capture_output=True, text=True,
                          env=dict(os.environ, PYTHONPATH=path), timeout=300)
    assert done.returncode == 0, done.stderr
    assert "caffeine" in done.stdout


def test_stubs_cover_every_public_name_with_its_parameters():
    stub = pathlib.Path(_structmath.__file__).with_name("_structmath.pyi")
    tree = ast.parse(stub.read_text())
    stubbed = {}
    for node in tree.body:
        if isinstance(node, (ast.FunctionDef, ast.ClassDef)):
            stubbed[node.name] = node
    public = [name for name in sm.__all__ if not name.startswith("_")]
    assert sorted(set(public) - set(stubbed)) == []
    for name in public:
        obj = getattr(sm, name)
        node = stubbed[name]
        if isinstance(node, ast.FunctionDef) and callable(obj) and not inspect.isclass(obj):
            # pybind11 writes the signature as the first docstring line.
            signature = obj.__doc__.splitlines()[0]
            for arg in node.args.args:
                assert f"{arg.arg}:" in signature, (name, arg.arg, signature)
        if isinstance(node, ast.ClassDef) and not issubclass(obj, BaseException):
            members = {n.name for n in node.body if isinstance(n, ast.FunctionDef)}
            members |= {t.target.id for t in node.body if isinstance(t, ast.AnnAssign)}
            missing = {m for m in dir(obj) if not m.startswith("_")} - members
            assert missing == set(), (name, missing)


def test_docstrings_everywhere():
    for name in sm.__all__:
        obj = getattr(sm, name)
        if name != "ParseError":
            assert obj.__doc__ and len(obj.__doc__.strip()) > 20, name
