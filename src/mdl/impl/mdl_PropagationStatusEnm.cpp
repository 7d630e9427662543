#include "mdl_PropagationStatusEnm.h"

namespace {

bool IsMarked(mdl_PropagationStatusEnm status, bool mdl_PropagationStatusRow::*group) noexcept {
    const auto index = static_cast<unsigned>(status);
    return index < std::size(mdl_propagationStatuses) && mdl_propagationStatuses[index].*group;
}

}  // namespace

template class omu_PrimEnum<mdl_PropagationStatusEnm, 1>;

bool mdl_activePropagationStatus(mdl_PropagationStatusEnm status) noexcept {
    return IsMarked(status, &mdl_PropagationStatusRow::isActive);
}

bool mdl_deactivatedPropagationStatus(mdl_PropagationStatusEnm status) noexcept {
    return IsMarked(status, &mdl_PropagationStatusRow::isDeactivated);
}

bool mdl_generalAnalysisStatus(mdl_PropagationStatusEnm status) noexcept {
    return IsMarked(status, &mdl_PropagationStatusRow::isGeneral);
}
