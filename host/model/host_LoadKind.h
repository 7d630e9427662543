#pragma once

#include "g3d_MarkerEnum.h"
#include "omu_PrimEnum.h"

#include <array>
#include <span>
#include <string>

/// What acts on a part: loads and supports alike. The numbers stand in saved models.
enum class host_LoadKind : int {
    Force = 0,
    Pressure = 1,
    Support = 2,
    Gravity = 3,
    Temperature = 4
};

template <>
struct omu_EnumTable<host_LoadKind, 1> {
    static constexpr omu_EnumEntry<host_LoadKind> kEntries[] = {
        {"FORCE", host_LoadKind::Force},
        {"PRESSURE", host_LoadKind::Pressure},
        {"SUPPORT", host_LoadKind::Support},
        {"GRAVITY", host_LoadKind::Gravity},
        {"TEMPERATURE", host_LoadKind::Temperature},
        {nullptr, host_LoadKind::Force}};
};

/// What of a part a kind of loads acts on.
enum class host_LoadRegion { NodeSet, Group, Part, NodeSetOrPart };

/// What there is to know of a kind of loads; all that commands, tables and pictures do with kinds
/// follows from this.
struct host_LoadKindRow {
    const char* command;  ///< that makes one
    const char* what;     ///< what it makes, after "Makes "
    const char* details;  ///< lines of help
    host_LoadRegion region;
    std::array<const char*, 3> names;  ///< of the components; null ends them before the last
    const char* meaning;               ///< of a component, before its direction
    g3d_MarkerEnum marker;
    const char* color;  ///< of the marker

    [[nodiscard]] constexpr std::span<const char* const> Components() const noexcept {
        return {names.data(), names[1] == nullptr ? std::size_t{1} : names.size()};
    }
    /// The place of a component, or -1.
    [[nodiscard]] int FindComponent(std::string_view name) const noexcept;
    /// "x, y, z".
    [[nodiscard]] std::string ComponentNames() const;
};

/// In the order of host_LoadKind.
inline constexpr host_LoadKindRow host_kLoadKinds[] = {
    {"force",
     "a force at the nodes of a set",
     "Each node of the set gets it whole.",
     host_LoadRegion::NodeSet,
     {"x", "y", "z"},
     "force at a node",
     g3d_MARKER_FILLED_DIAMOND,
     "#E02020"},
    {"pressure",
     "a pressure on the faces of a group of cells",
     "It presses against the surface cells of the group and the faces of its solids that belong\n"
     "to no other solid of the part; a negative one pulls.",
     host_LoadRegion::Group,
     {"magnitude", nullptr, nullptr},
     "force on one unit of area",
     g3d_MARKER_FILLED_SQUARE,
     "#D030D0"},
    {"support",
     "a support: displacements prescribed at the nodes of a set",
     "A component that is not prescribed is free; setStatus(load, step, component, FREED) frees\n"
     "one from a later step on.",
     host_LoadRegion::NodeSet,
     {"x", "y", "z"},
     "displacement",
     g3d_MARKER_FILLED_TRIANGLE,
     "#2080FF"},
    {"gravity",
     "an acceleration of a whole part",
     "It acts on the mass of the part, by the densities of its materials.",
     host_LoadRegion::Part,
     {"x", "y", "z"},
     "acceleration",
     g3d_MARKER_TARGET,
     "#20A040"},
    {"temperature",
     "a temperature at the nodes of a set, or of a whole part",
     "It prescribes what the nodes have, as SUPPORT does for displacements.",
     host_LoadRegion::NodeSetOrPart,
     {"magnitude", nullptr, nullptr},
     "temperature",
     g3d_MARKER_FILLED_CIRCLE,
     "#E07000"},
};

[[nodiscard]] constexpr const host_LoadKindRow& host_RowOf(host_LoadKind kind) {
    return host_kLoadKinds[static_cast<std::size_t>(kind)];
}
static_assert(std::size(omu_EnumTable<host_LoadKind, 1>::kEntries) ==
              std::size(host_kLoadKinds) + 1);
