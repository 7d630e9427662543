"""The demo's elasticity: exact where linear tetrahedra are, in equilibrium everywhere."""

import pathlib
import sys
import unittest

import numpy as np

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "examples" / "demo"))
import elasticity  # noqa: E402

YOUNG, POISSON = 200_000.0, 0.25
LENGTH, WIDTH = 4.0, 1.0


def bar():
    """A bar of 4 x 2 x 2 boxes of six tetrahedra each, its inner points moved off the grid."""
    x, y, z = np.meshgrid(np.linspace(0, LENGTH, 5), np.linspace(0, WIDTH, 3),
                          np.linspace(0, WIDTH, 3), indexing="ij")
    points = np.column_stack([x.ravel(), y.ravel(), z.ravel()])
    number = np.arange(len(points)).reshape(x.shape)
    cells = []
    for i, j, k in np.ndindex(4, 2, 2):
        box = number[i:i + 2, j:j + 2, k:k + 2]
        for a, b in ((0, 1), (1, 2), (2, 0), (1, 0), (2, 1), (0, 2)):  # ways along the axes
            way = np.zeros((4, 3), int)
            way[1:, a] += 1
            way[2:, b] += 1
            way[3] = 1
            way = way if (b - a) % 3 == 1 else way[[0, 2, 1, 3]]  # or it is inside out
            cells.append([box[tuple(step)] for step in way])
    inside = (points > 0).all(axis=1) & (points < [LENGTH, WIDTH, WIDTH]).all(axis=1)
    points[inside] += np.random.default_rng(1).uniform(-.1, .1, (inside.sum(), 3))
    return points, np.array(cells)


class Elasticity(unittest.TestCase):
    def test_tension_of_a_bar_is_exact(self):
        points, cells = bar()
        body = elasticity.Body(points, cells, YOUNG, POISSON)
        self.assertAlmostEqual(body.volumes.sum(), LENGTH * WIDTH**2)
        fixed = points == 0  # three planes of symmetry
        prescribed = np.zeros_like(points)
        at_end = points[:, 0] == LENGTH
        fixed[at_end, 0], prescribed[at_end, 0] = True, 0.01
        found = body.solve(fixed, np.zeros_like(points), prescribed, tolerance=1e-13)
        # Hooke: strain 0.01 / 4 along the bar, -1/4 of it across; stress 200,000 * 0.0025 = 500.
        np.testing.assert_allclose(found, points * [0.0025, -0.000625, -0.000625], atol=1e-12)
        stress = body.stress(found)
        np.testing.assert_allclose(stress, np.tile([500.0, 0, 0, 0, 0, 0], (len(cells), 1)),
                                   atol=1e-6)
        np.testing.assert_allclose(body.at_points(elasticity.von_mises(stress)), 500)
        force = body.forces(found)[at_end].sum(axis=0)  # 500 on an area of 1
        np.testing.assert_allclose(force, [500, 0, 0], atol=1e-6)

    def test_von_mises_of_known_states(self):
        for stress, expected in (([0, 0, 0, 0, 0, 7], 7 * 3**0.5), ([5, 5, 5, 0, 0, 0], 0),
                                 ([-3, 0, 0, 0, 0, 0], 3), ([4, -4, 0, 0, 0, 0], 4 * 3**0.5)):
            self.assertAlmostEqual(elasticity.von_mises([stress])[0], expected)

    def test_what_has_no_solution_is_refused(self):
        points, cells = bar()
        body = elasticity.Body(points, cells, YOUNG, POISSON)
        pull = np.ones_like(points)
        with self.assertRaisesRegex(ArithmeticError, "is the body held"):
            body.solve(np.zeros_like(points, bool), pull, most=300)
        for bad_cells, poisson, message in ((cells[:, [1, 0, 2, 3]], 0.3, "positive volume"),
                                            (cells[:0], 0.3, "positive volume"),
                                            (cells, 0.5, "no elastic material")):
            with self.assertRaisesRegex(ValueError, message):
                elasticity.Body(points, bad_cells, YOUNG, poisson)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
