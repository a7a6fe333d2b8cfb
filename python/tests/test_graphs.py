# SPDX-License-Identifier: MIT
"""Common subgraphs and embeddings against networkx on small graphs; labels, budgets, errors."""
import itertools
import pickle

import numpy as np
import pytest

import structmath as sm

nx = pytest.importorskip("networkx")
iso = pytest.importorskip("networkx.algorithms.isomorphism")


def random_graph(rng, n, p):
    a = np.triu(rng.random((n, n)) < p, 1)
    return a | a.T


def to_nx(adjacency, labels=None):
    g = nx.from_numpy_array(adjacency.astype(int))
    if labels is not None:
        nx.set_node_attributes(g, {i: int(l) for i, l in enumerate(labels)}, "label")
    return g


def is_common_induced(a, b, pairs, la=None, lb=None):
    i, j = pairs[:, 0], pairs[:, 1]
    same_labels = la is None or np.array_equal(np.asarray(la)[i], np.asarray(lb)[j])
    return (len(set(i)) == len(i) and len(set(j)) == len(j) and same_labels
            and np.array_equal(a[np.ix_(i, i)], b[np.ix_(j, j)]))


def brute_force_mcs(a, b, la=None, lb=None):
    """Largest k with an induced common subgraph, by trying node subsets of a against b."""
    na, nb = len(a), len(b)
    for k in range(min(na, nb), 0, -1):
        for sa in itertools.combinations(range(na), k):
            ga = to_nx(a[np.ix_(sa, sa)], None if la is None else np.asarray(la)[list(sa)])
            gb = to_nx(b, lb)
            matcher = iso.GraphMatcher(gb, ga, node_match=(None if la is None else
                                                           lambda x, y: x["label"] == y["label"]))
            if matcher.subgraph_is_isomorphic():  # networkx: node-induced
                return k
    return 0


def test_maximum_common_subgraph_size_matches_brute_force():
    rng = np.random.default_rng(5)
    for trial in range(12):
        a, b = random_graph(rng, 6, 0.45), random_graph(rng, 6, 0.45)
        labels = None if trial % 2 else (rng.integers(0, 2, 6), rng.integers(0, 2, 6))
        ga = sm.Graph(a, node_labels=None if labels is None else labels[0])
        gb = sm.Graph(b, node_labels=None if labels is None else labels[1])
        r = sm.maximum_common_subgraph(ga, gb, max_matches=5)
        expected = brute_force_mcs(a, b, *(labels or (None, None)))
        assert r.size == expected and r.proven_optimal
        assert 1 <= len(r.matches) <= 5
        for pairs in r.matches:
            assert pairs.shape == (expected, 2)
            assert is_common_induced(a, b, pairs, *(labels or (None, None)))
            assert list(pairs[:, 0]) == sorted(pairs[:, 0])


def test_connected_common_subgraphs_are_connected():
    rng = np.random.default_rng(6)
    for _ in range(6):
        a, b = random_graph(rng, 7, 0.35), random_graph(rng, 7, 0.35)
        loose = sm.maximum_common_subgraph(a, b)
        tight = sm.maximum_common_subgraph(a, b, connected=True)
        assert tight.size <= loose.size
        pairs = tight.matches[0]
        assert nx.is_connected(to_nx(a[np.ix_(pairs[:, 0], pairs[:, 0])]))


def test_edge_labels_pair_only_equal_bonds():
    path = np.array([[0, 1, 0], [1, 0, 1], [0, 1, 0]])
    single = sm.Graph.from_edges(3, [[0, 1], [1, 2]], node_labels=[6, 6, 8], edge_labels=[1, 1])
    double = sm.Graph.from_edges(3, [[0, 1], [1, 2]], node_labels=[6, 6, 8], edge_labels=[1, 2])
    assert sm.maximum_common_subgraph(single, single).size == 3
    assert sm.maximum_common_subgraph(single, double).size == 2
    assert np.array_equal(single.adjacency, path.astype(bool))
    assert sm.subgraph_embeddings(double, double)
    assert not sm.subgraph_embeddings(single, double)


def test_embeddings_match_networkx_monomorphisms():
    rng = np.random.default_rng(8)
    for trial in range(10):
        target = random_graph(rng, 8, 0.4)
        pattern = random_graph(rng, 4, 0.5)
        tl, pl = rng.integers(0, 2, 8), rng.integers(0, 2, 4)
        labelled = trial % 2 == 0
        found = sm.subgraph_embeddings(sm.Graph(pattern, pl if labelled else None),
                                       sm.Graph(target, tl if labelled else None),
                                       max_matches=None)
        matcher = iso.GraphMatcher(to_nx(target, tl if labelled else None),
                                   to_nx(pattern, pl if labelled else None),
                                   node_match=(lambda x, y: x["label"] == y["label"]) if labelled else None)
        expected = {tuple(sorted(m, key=m.get)) for m in matcher.subgraph_monomorphisms_iter()}
        assert {tuple(m) for m in found.matches} == expected
        assert len(found.matches) == len(expected) and found.complete
        assert bool(found) == bool(expected)


def test_budgets_stop_searches_and_say_so():
    rng = np.random.default_rng(9)
    a, b = random_graph(rng, 24, 0.5), random_graph(rng, 24, 0.5)
    r = sm.maximum_common_subgraph(a, b, max_steps=20)
    assert not r.proven_optimal and r.steps <= 21 and r.size >= 1
    e = sm.subgraph_embeddings(random_graph(rng, 10, 0.2), random_graph(rng, 30, 0.3),
                               max_matches=None, max_steps=5)
    assert not e.complete


def test_bad_graphs_are_refused():
    with pytest.raises(ValueError, match="square"):
        sm.Graph(np.zeros((2, 3), dtype=bool))
    with pytest.raises(ValueError, match="symmetric"):
        sm.Graph(np.array([[0, 1], [0, 0]]))
    with pytest.raises(ValueError, match="node_labels must be a 1-dimensional array of 2 integers"):
        sm.Graph(np.zeros((2, 2), dtype=bool), node_labels=[1, 2, 3])
    with pytest.raises(TypeError, match="booleans or integers"):
        sm.maximum_common_subgraph(np.zeros((2, 2)), np.zeros((2, 2), dtype=bool))
    with pytest.raises(IndexError):
        sm.Graph.from_edges(3, [[0, 3]])
    with pytest.raises(ValueError, match="max_matches must be at least 1"):
        sm.subgraph_embeddings(np.eye(2, dtype=bool), np.eye(2, dtype=bool), max_matches=0)


def test_graph_results_pickle():
    g = sm.Graph.from_edges(4, [[0, 1], [1, 2], [2, 3]], node_labels=[1, 2, 2, 1], edge_labels=[1, 2, 1])
    back = pickle.loads(pickle.dumps(g))
    assert np.array_equal(back.adjacency, g.adjacency) and np.array_equal(back.edge_labels, g.edge_labels)
    assert np.array_equal(back.node_labels, g.node_labels)
    for result in (sm.maximum_common_subgraph(g, g, max_matches=3), sm.subgraph_embeddings(g, g, max_matches=None)):
        copy = pickle.loads(pickle.dumps(result))
        assert [m.tolist() for m in copy.matches] == [m.tolist() for m in result.matches]
