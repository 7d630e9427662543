#include "omu_PrimNone.h"

omu_PrimNone::omu_PrimNone(const cls_ReadVisitor& visitor)
    : omu_PrimLevel(visitor), _uid(visitor.GetUid()) {
    cls_ReadFields<omu_PrimNone>(*this, visitor);
}

omu_PrimNone::~omu_PrimNone() = default;

cow_String omu_PrimNone::AsString(int) const { return "None"; }

bool omu_PrimNone::operator==(const omu_Primitive& other) const {
    const auto* none = omu_PrimCast<omu_PrimNone>(other);
    return none != nullptr && _isSet == none->_isSet;
}
