#pragma once

#include "omu_PrimEnum.h"

#include <array>

/// What has become of an object in a step. The numbers stand in saved data and never change.
enum mdl_PropagationStatusEnm : int {
    NOT_YET_ACTIVE = 0,
    CREATED = 1,
    PROPAGATED = 2,
    MODIFIED = 3,
    DEACTIVATED = 4,
    NO_LONGER_ACTIVE = 5,
    TYPE_NOT_APPLICABLE = 6,
    INSTANCE_NOT_APPLICABLE = 7,
    BUILT_INTO_BASE_STATE = 8,
    PROPAGATED_FROM_BASE_STATE = 9,
    MODIFIED_FROM_BASE_STATE = 10,
    DEACTIVATED_FROM_BASE_STATE = 11,
    BUILT_INTO_MODES = 12,
    COMPUTED = 13,
    PROPAGATED_FROM_COMPUTED = 14,
    RESET_TO_INITIAL = 15,
};

/// What the library knows of one status: the word for it and the groups that it is in.
struct mdl_PropagationStatusRow {
    const char* name;
    bool isActive;
    bool isDeactivated;
    bool isGeneral;
};

/// All statuses; the index is the value. What was computed, or was reset, counts as neither active
/// nor deactivated.
inline constexpr mdl_PropagationStatusRow mdl_propagationStatuses[] = {
    // name                      active deactivated general
    {"NOT_YET_ACTIVE", false, false, true},
    {"CREATED", true, false, true},
    {"PROPAGATED", true, false, true},
    {"MODIFIED", true, false, true},
    {"DEACTIVATED", false, true, true},
    {"NO_LONGER_ACTIVE", false, true, true},
    {"TYPE_NOT_APPLICABLE", false, false, false},
    {"INSTANCE_NOT_APPLICABLE", false, false, false},
    {"BUILT_INTO_BASE_STATE", true, false, false},
    {"PROPAGATED_FROM_BASE_STATE", true, false, false},
    {"MODIFIED_FROM_BASE_STATE", true, false, false},
    {"DEACTIVATED_FROM_BASE_STATE", false, true, false},
    {"BUILT_INTO_MODES", true, false, false},
    {"COMPUTED", false, false, false},
    {"PROPAGATED_FROM_COMPUTED", false, false, false},
    {"RESET_TO_INITIAL", false, false, false},
};
static_assert(std::size(mdl_propagationStatuses) == RESET_TO_INITIAL + 1);

/// Whether an object of this status acts in the step.
[[nodiscard]] CAE_API bool mdl_activePropagationStatus(mdl_PropagationStatusEnm status) noexcept;
/// Whether an object of this status was switched off, in this step or before.
[[nodiscard]] CAE_API bool mdl_deactivatedPropagationStatus(
    mdl_PropagationStatusEnm status) noexcept;
/// Whether the status occurs in general analysis steps, as opposed to perturbations about them.
[[nodiscard]] CAE_API bool mdl_generalAnalysisStatus(mdl_PropagationStatusEnm status) noexcept;

/// The names are those of the status rows.
template <>
struct omu_EnumTable<mdl_PropagationStatusEnm, 1> {
    using Entry = omu_EnumEntry<mdl_PropagationStatusEnm>;
    static constexpr auto kNamed = [] {
        std::array<Entry, std::size(mdl_propagationStatuses) + 1> entries{};
        for (int value = 0; const mdl_PropagationStatusRow& row : mdl_propagationStatuses) {
            entries[static_cast<std::size_t>(value)] = {
                row.name, static_cast<mdl_PropagationStatusEnm>(value)};
            ++value;
        }
        return entries;
    }();
    static constexpr const Entry* kEntries = kNamed.data();
};

extern template class CAE_API omu_PrimEnum<mdl_PropagationStatusEnm, 1>;
