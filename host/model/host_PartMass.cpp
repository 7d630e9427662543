#include "host_PartMass.h"

#include "host_Model.h"

#include <algorithm>

std::vector<const host_Material*> host_MaterialsOfCells(const host_Part& part) {
    std::vector<const host_Material*> materials(static_cast<std::size_t>(part.Mesh().CellCount()));
    for (const auto& [group, name] : part.Get().materials) {
        const host_Material* material = host_Model::Instance().Look<host_Material>(name);
        for (const int cell : part.Cells(group)) {
            materials[static_cast<std::size_t>(cell)] = material;
        }
    }
    return materials;
}

bool host_AreSurface(const host_Mesh& mesh, const std::vector<int>& cells) {
    return !cells.empty() && std::all_of(cells.begin(), cells.end(), [&mesh](int cell) {
        return host_Mesh::IsSurface(mesh.Type(cell));
    });
}

host_PartMass::host_PartMass(const host_Part& part, std::optional<double> density) {
    const host_Mesh& mesh = part.Mesh();
    const std::vector<int> all = part.Cells({});
    _isSurface = host_AreSurface(mesh, all);

    std::map<double, std::vector<int>> byDensity;
    std::vector<int> none;
    if (density || part.Get().materials.empty()) {
        byDensity[density.value_or(1)] = all;
    } else {
        const std::vector<const host_Material*> materials = host_MaterialsOfCells(part);
        for (const int cell : all) {
            const host_Material* material = materials[static_cast<std::size_t>(cell)];
            if (!host_Mesh::IsSurface(mesh.Type(cell))) {
                const auto own = material != nullptr ? material->Density() : std::nullopt;
                (own ? byDensity[*own] : none).push_back(cell);
            }
        }
        if (byDensity.empty()) {
            byDensity[1].swap(none);
        }
    }
    _withoutDensity = static_cast<int>(none.size());
    _volume = mesh.Moments(none).volume;

    for (const auto& [own, cells] : byDensity) {
        _shares.push_back({own, mesh.Moments(cells)});
        _volume += _shares.back().moments.volume;
        _mass += own * _shares.back().moments.volume;
    }
    // Relative to the first centre, so that one density leaves the centre as it is.
    _centre = _shares.front().moments.centre;
    const host_Point origin = _centre;
    if (_mass == 0) {
        return;
    }
    for (const Share& share : _shares) {
        for (std::size_t k = 0; k < 3; ++k) {
            _centre[k] += share.density * share.moments.volume / _mass *
                          (share.moments.centre[k] - origin[k]);
        }
    }
}

host_Symmetric host_PartMass::Inertia(const host_Point& point) const {
    host_Symmetric sum{};
    for (const Share& share : _shares) {
        const host_Symmetric own = share.moments.Inertia(share.density, point);
        std::transform(sum.begin(), sum.end(), own.begin(), sum.begin(), std::plus<>());
    }
    return sum;
}
