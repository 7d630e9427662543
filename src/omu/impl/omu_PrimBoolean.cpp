#include "omu_PrimBoolean.h"

omu_PrimBoolean::omu_PrimBoolean(const cls_ReadVisitor& visitor)
    : omu_PrimLevel(visitor), _value(false), _uid(visitor.GetUid()) {
    cls_ReadFields<omu_PrimBoolean>(*this, visitor);
}

omu_PrimBoolean::~omu_PrimBoolean() = default;

cow_String omu_PrimBoolean::AsString(int) const { return _value ? "True" : "False"; }

bool omu_PrimBoolean::operator==(const omu_Primitive& other) const {
    const auto* boolean = omu_PrimCast<omu_PrimBoolean>(other);
    return boolean != nullptr && _value == boolean->_value;
}
