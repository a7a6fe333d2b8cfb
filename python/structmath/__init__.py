# SPDX-License-Identifier: MIT
"""structmath: mathematics for three-dimensional structures made of points.

Coordinates are (N, 3) float64 NumPy arrays; results come back as arrays. Library errors
arrive as ValueError, RuntimeError or OverflowError (ParseError, a RuntimeError, for
malformed files) with the library's own messages. Long calls (volumes, contouring, graph
searches, file reading) release the GIL, so threads run them in parallel, and every
object a call takes or returns can be pickled, so they travel to Dask workers.
"""

from ._structmath import (
    Cube,
    CommonSubgraph,
    ContourResult,
    Embeddings,
    Fraction,
    Graph,
    MinimiseResult,
    Molecule,
    Overlay,
    OverlayResult,
    ParseError,
    Plane,
    SdfIterator,
    SdfRecord,
    SurfaceTopology,
    UncertainValue,
    VolumeResult,
    angles,
    centroid,
    distances,
    fit_plane,
    inertia_tensor,
    iter_sdf,
    marching_cubes,
    max_deviation,
    maximum_common_subgraph,
    minimise,
    overlay,
    read_cube,
    read_molfile,
    read_sdf,
    read_xyz,
    rms_deviation,
    rmsd,
    sdf_chunks,
    sphere_union_volume,
    subgraph_embeddings,
    torsions,
    van_der_waals_radii,
    write_sdf,
    write_xyz,
)

__version__ = "0.1.0"

__all__ = [name for name in dir() if not name.startswith("_")]
