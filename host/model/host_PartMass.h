#pragma once

#include "host_Material.h"
#include "host_Part.h"

#include <optional>

/// For each cell of a part the material that was assigned last to a group that has it, or null.
[[nodiscard]] std::vector<const host_Material*> host_MaterialsOfCells(const host_Part& part);

/// Whether there are cells, and all of them surface cells, which have no volume.
[[nodiscard]] bool host_AreSurface(const host_Mesh& mesh, const std::vector<int>& cells);

/// The mass of a part and how it is spread. Surface cells count nothing.
class host_PartMass {
public:
    /// Of cells of one density, above 0. Without it each cell has the density of its material;
    /// where no cell's material has one, all have the density 1.
    explicit host_PartMass(const host_Part& part, std::optional<double> density = {});

    /// Whether it has surface cells alone, and so neither volume nor mass.
    [[nodiscard]] bool IsSurface() const noexcept { return _isSurface; }
    /// Number of solid cells without a density beside others that have one: where it is not 0, the
    /// part's mass is not known, and the three below are of the others alone.
    [[nodiscard]] int WithoutDensity() const noexcept { return _withoutDensity; }
    [[nodiscard]] double Mass() const noexcept { return _mass; }
    [[nodiscard]] const host_Point& Centre() const noexcept { return _centre; }
    /// Tensor of inertia about \p point: its elements, as of host_Moments::Inertia.
    [[nodiscard]] host_Symmetric Inertia(const host_Point& point) const;
    /// Of all cells.
    [[nodiscard]] double Volume() const noexcept { return _volume; }

private:
    struct Share {
        double density;
        host_Moments moments;
    };
    std::vector<Share> _shares;  // by ascending density
    bool _isSurface = false;
    int _withoutDensity = 0;
    double _volume = 0;
    double _mass = 0;
    host_Point _centre{};
};
