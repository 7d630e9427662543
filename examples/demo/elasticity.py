"""Linear elasticity on a mesh of linear tetrahedra, with NumPy alone.

    body = Body(points, cells, young=210_000, poisson=0.3)
    displacement = body.solve(fixed, forces)   # (n, 3)
    stress = body.stress(displacement)         # (m, 6), constant in each cell
    body.at_points(von_mises(stress))          # (n,)

Any consistent units: with mm, N and MPa = N/mm^2 everything fits together. Sources: Hughes, The
Finite Element Method (Dover, 2000), sections 2.7 to 2.9 (elastostatics, stiffness of an element);
Saad, Iterative Methods for Sparse Linear Systems, 2nd edition, algorithm 9.1 (conjugate gradients).
"""

import numpy as np

# Order of the components of strain and stress; strain has the angles, twice the tensor's shears.
COMPONENTS = ("xx", "yy", "zz", "yz", "xz", "xy")


class Body:
    """An elastic body: points (n, 3), cells (m, 4) of positive volume.

    Its stiffness is kept cell by cell, 12 x 12 numbers each; no matrix of the whole is made.
    """

    def __init__(self, points, cells, young, poisson):
        self.points, self.cells = np.asarray(points, np.float64), np.asarray(cells)
        corners = self.points[self.cells]
        edges = corners[:, 1:] - corners[:, :1]
        volumes = np.linalg.det(edges) / 6
        if len(volumes) == 0 or not volumes.min() > 0:
            raise ValueError("cells of positive volume were expected; the least is "
                             f"{min(volumes, default=0):g}")
        # Gradients of the four shape functions, constant in a cell: of the last three, the rows of
        # the inverse of the edges; all four sum up to 0.
        gradients = np.empty_like(corners)
        gradients[:, 1:] = np.linalg.inv(edges).transpose(0, 2, 1)
        gradients[:, 0] = -gradients[:, 1:].sum(axis=1)

        x, y, z = (gradients[:, :, i] for i in range(3))
        strain = np.zeros((len(volumes), 6, 4, 3))  # of a displacement of each node along each axis
        for row, column, values in ((0, 0, x), (1, 1, y), (2, 2, z), (3, 1, z), (3, 2, y),
                                    (4, 0, z), (4, 2, x), (5, 0, y), (5, 1, x)):
            strain[:, row, :, column] = values
        self._strain = strain.reshape(-1, 6, 12)
        self._material = _material(young, poisson)
        self._stiffness = np.einsum("m,mki,kl,mlj->mij", volumes, self._strain, self._material,
                                    self._strain, optimize=True)
        self._rows = (3 * self.cells[:, :, None] + np.arange(3)).reshape(-1, 12)
        self.volumes = volumes

    def forces(self, displacement):
        """Forces at the nodes (n, 3) that hold the body in that displacement."""
        return self._apply(np.asarray(displacement, np.float64).ravel()).reshape(-1, 3)

    def _apply(self, values):
        per_cell = np.einsum("mij,mj->mi", self._stiffness, values[self._rows])
        return np.bincount(self._rows.ravel(), per_cell.ravel(), len(values))

    def solve(self, fixed, forces, prescribed=None, tolerance=1e-8, most=5000):
        """Displacements (n, 3) under forces (n, 3).

        `fixed` (n, 3) of bool says which components are held, at 0 or at those of `prescribed`.
        The residual's norm falls to `tolerance` of the load's; ArithmeticError where it does not
        within `most` steps, as it cannot when nothing holds the body.
        """
        free = ~np.asarray(fixed, bool).ravel()
        x = np.zeros(len(free))
        if prescribed is not None:
            x[~free] = np.asarray(prescribed, np.float64).ravel()[~free]
        diagonal = np.bincount(self._rows.ravel(),
                               np.einsum("mii->mi", self._stiffness).ravel(), len(x))
        # Jacobi's preconditioner; points that no cell uses stay where they are.
        scale = np.divide(free, diagonal, out=np.zeros_like(x), where=diagonal > 0)
        residual = (np.asarray(forces, np.float64).ravel() - self._apply(x)) * free
        limit = tolerance * np.linalg.norm(residual)
        direction = scaled = scale * residual
        product = residual @ scaled
        for _ in range(most):
            if np.linalg.norm(residual) <= limit:
                return x.reshape(-1, 3)
            applied = self._apply(direction) * free
            step = product / (direction @ applied)
            x += step * direction
            residual -= step * applied
            scaled = scale * residual
            before, product = product, residual @ scaled
            direction = scaled + product / before * direction
        raise ArithmeticError(f"no equilibrium found in {most} steps; is the body held?")

    def stress(self, displacement):
        """Stresses (m, 6) of the cells, in the order of COMPONENTS."""
        at_nodes = np.asarray(displacement, np.float64).ravel()[self._rows]
        return np.einsum("kl,mlj,mj->mk", self._material, self._strain, at_nodes, optimize=True)

    def at_points(self, values):
        """Means (n,) of values of cells (m,) over the cells at each point, weighed by volume."""
        nodes, count = self.cells.ravel(), len(self.points)
        weights = np.repeat(self.volumes, 4)
        total = np.bincount(nodes, weights, count)
        return np.bincount(nodes, weights * np.repeat(values, 4), count) / np.where(total, total, 1)


def von_mises(stress):
    """Von Mises' equivalent (m,) of stresses (m, 6)."""
    xx, yy, zz, yz, xz, xy = np.asarray(stress).T
    return np.sqrt(((xx - yy)**2 + (yy - zz)**2 + (zz - xx)**2) / 2
                   + 3 * (yz**2 + xz**2 + xy**2))


def _material(young, poisson):
    """Stress of strain in an isotropic material (6, 6)."""
    if not (young > 0 and -1 < poisson < 0.5):
        raise ValueError(f"no elastic material: Young's modulus {young}, Poisson's ratio {poisson}")
    shear = young / (2 * (1 + poisson))
    matrix = np.diag([2.0 * shear] * 3 + [shear] * 3)
    matrix[:3, :3] += young * poisson / ((1 + poisson) * (1 - 2 * poisson))
    return matrix
