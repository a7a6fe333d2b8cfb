#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Screen every record of an SD file for a substructure and compute its volume, with Dask.

The file is cut into record-aligned byte ranges (structmath.sdf_chunks); each range is one
partition of a dask.bag, read and screened on whichever worker gets it, so the file is
never read whole by one process. For each record: whether the pattern's heavy-atom graph
embeds in the record's (atoms matched by element, bonds by order), and the van der Waals
volume of all its atoms by Monte Carlo. One JSON line per record goes to standard output
(or --output), in file order: {"record", "title", "hit", "volume", "standard_error"}, or
{"record", "error"} for a record that cannot be read.

    examples/screen.py LIBRARY.sdf                      # a local cluster
    examples/screen.py LIBRARY.sdf --scheduler tcp://host:8786
"""
import argparse
import json
import os
import sys

import dask.bag as db
import structmath as sm

HERE = os.path.dirname(os.path.abspath(__file__))
DEFAULT_PATTERN = os.path.join(HERE, os.pardir, "data", "imidazole_ring.sdf")


def heavy_atom_graph(molecule):
    """The bond graph of the non-hydrogen atoms, elements as node and orders as edge labels."""
    z = molecule.atomic_numbers
    keep = [i for i in range(len(z)) if z[i] != 1]
    index = {atom: node for node, atom in enumerate(keep)}
    edges, orders = [], []
    for (a, b), order in zip(molecule.bonds, molecule.bond_orders):
        if a in index and b in index:
            edges.append((index[a], index[b]))
            orders.append(order)
    return sm.Graph.from_edges(len(keep), edges, node_labels=z[keep], edge_labels=orders)


def screen_record(molecule, pattern, density, seeds):
    hit = bool(sm.subgraph_embeddings(pattern, heavy_atom_graph(molecule)))
    volume = sm.sphere_union_volume(molecule.coordinates,
                                    sm.van_der_waals_radii(molecule.elements),
                                    density=density, seeds=seeds)
    return {"title": molecule.title, "hit": hit, "volume": volume.volume,
            "standard_error": volume.standard_error}


def screen_chunk(chunk, path, pattern, density, seeds):
    """Every record of one byte range; a record that cannot be read is reported, not fatal."""
    start, end = chunk
    records = sm.iter_sdf(path, start, end)
    results = []
    while True:
        try:
            record = next(records)
        except StopIteration:
            return results
        except sm.ParseError as error:
            results.append({"error": str(error)})
            continue
        try:
            results.append(screen_record(record.molecule, pattern, density, seeds))
        except (ValueError, RuntimeError) as error:
            results.append({"title": record.molecule.title, "error": str(error)})


def screen(path, pattern, client, chunk_bytes, density, seeds):
    """The results of every record in file order, computed by the client's workers."""
    chunks = sm.sdf_chunks(path, chunk_bytes)
    bag = db.from_sequence(chunks, npartitions=len(chunks))
    results = bag.map(screen_chunk, path, pattern, density, seeds).flatten()
    return client.compute(results, sync=True)


def main(argv=None):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("library", help="SD file to screen")
    parser.add_argument("--pattern", default=DEFAULT_PATTERN,
                        help="molfile or SD file whose first record is the substructure "
                             "(default: the bundled imidazole ring)")
    parser.add_argument("--scheduler", help="address of a Dask scheduler (default: a local cluster)")
    parser.add_argument("--workers", type=int, default=2, help="local cluster workers (default 2)")
    parser.add_argument("--chunk-bytes", type=int, default=1 << 20,
                        help="bytes of the file per task (default 1 MiB)")
    parser.add_argument("--density", type=int, default=100,
                        help="Monte Carlo samples per cubic angstrom (default 100)")
    parser.add_argument("--seeds", type=int, nargs=2, default=(1802, 9373))
    parser.add_argument("--output", help="JSON Lines file (default: standard output)")
    args = parser.parse_args(argv)

    from dask.distributed import Client, LocalCluster

    pattern = heavy_atom_graph(sm.read_molfile(args.pattern))
    library = os.path.abspath(args.library)
    cluster = None
    if not args.scheduler:
        cluster = LocalCluster(n_workers=args.workers, threads_per_worker=1, processes=True,
                               dashboard_address=None)
    client = Client(args.scheduler or cluster)
    try:
        results = screen(library, pattern, client, args.chunk_bytes, args.density,
                         tuple(args.seeds))
    finally:
        client.close()  # before its cluster, which it would otherwise try to reach again
        if cluster is not None:
            cluster.close()
    out = open(args.output, "w") if args.output else sys.stdout
    failed = 0
    for number, result in enumerate(results, start=1):
        failed += "error" in result
        out.write(json.dumps({"record": number, **result}) + "\n")
    if out is not sys.stdout:
        out.close()
    hits = sum(bool(r.get("hit")) for r in results)
    print(f"{len(results)} records, {hits} hits, {failed} failed", file=sys.stderr)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
