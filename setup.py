# SPDX-License-Identifier: MIT
"""Builds the extension of the structmath package with CMake (metadata in pyproject.toml).

The core and io libraries are built static and position-independent, so the installed
extension needs no shared library of the project beside it.
"""
import os
import pathlib
import shutil
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext


class CMakeBuild(build_ext):
    def build_extension(self, ext):
        source = pathlib.Path(__file__).parent.resolve()
        build = pathlib.Path(self.build_temp).resolve() / "cmake"
        configure = [
            "cmake", "-S", str(source), "-B", str(build),
            f"-DPython3_EXECUTABLE={sys.executable}",
            "-DCMAKE_BUILD_TYPE=Release",
            "-DBUILD_SHARED_LIBS=OFF",
            "-DCMAKE_POSITION_INDEPENDENT_CODE=ON",
            "-DSTRUCTMATH_BUILD_PYTHON=ON",
            "-DSTRUCTMATH_BUILD_IO=ON",
            "-DSTRUCTMATH_BUILD_TOOLS=OFF",
            "-DSTRUCTMATH_BUILD_TESTS=OFF",
            "-DSTRUCTMATH_BUILD_BENCHMARKS=OFF",
            "-DSTRUCTMATH_INSTALL=OFF",
        ]
        if shutil.which("ninja") and not (build / "CMakeCache.txt").exists():
            configure += ["-G", "Ninja"]
        subprocess.run(configure, check=True)
        jobs = os.environ.get("CMAKE_BUILD_PARALLEL_LEVEL", str(os.cpu_count() or 1))
        subprocess.run(["cmake", "--build", str(build), "--target", "structmath_python",
                        "--parallel", jobs], check=True)
        built = sorted((build / "python" / "structmath").glob("_structmath*"))
        if not built:
            sys.exit("CMake did not build the extension: see the 'structmath: Python module "
                     "not built' line of its output")
        target = pathlib.Path(self.get_ext_fullpath(ext.name))
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(built[0], target)


setup(ext_modules=[Extension("structmath._structmath", sources=[])],
      cmdclass={"build_ext": CMakeBuild})
