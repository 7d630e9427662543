#pragma once

#include "omu_PrimEnum.h"

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

/// What the values of a field belong to.
enum class host_FieldPosition { Nodes, Cells };

/// The scalar that is shown of a field: of a field with one component, always that.
enum class host_Component { Magnitude, X, Y, Z };

template <>
struct omu_EnumTable<host_FieldPosition, 1> {
    static constexpr omu_EnumEntry<host_FieldPosition> kEntries[] = {
        {"NODES", host_FieldPosition::Nodes},
        {"CELLS", host_FieldPosition::Cells},
        {nullptr, host_FieldPosition::Nodes}};
};

template <>
struct omu_EnumTable<host_Component, 1> {
    static constexpr omu_EnumEntry<host_Component> kEntries[] = {
        {"MAGNITUDE", host_Component::Magnitude},
        {"COMPONENT_X", host_Component::X},
        {"COMPONENT_Y", host_Component::Y},
        {"COMPONENT_Z", host_Component::Z},
        {nullptr, host_Component::Magnitude}};
};

/// Values at the points or cells of a mesh, NaN and infinities among them.
struct host_Field {
    host_FieldPosition position = host_FieldPosition::Nodes;
    std::size_t components = 1;  ///< 1 or 3
    std::vector<double> values;  ///< point by point or cell by cell

    [[nodiscard]] std::size_t Count() const noexcept { return values.size() / components; }
    /// The scalar at place \p index.
    [[nodiscard]] double Scalar(std::size_t index, host_Component component) const;
    /// Its least and greatest finite value; where there is none, (0, 0).
    [[nodiscard]] std::pair<double, double> Range(host_Component component) const;
    /// The vector at place \p index of a field of three components.
    [[nodiscard]] std::array<double, 3> Vector(std::size_t index) const {
        return {values[3 * index], values[3 * index + 1], values[3 * index + 2]};
    }
};
