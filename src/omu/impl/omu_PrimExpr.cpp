#include "omu_PrimExpr.h"

omu_PrimExpr::omu_PrimExpr(const cls_ReadVisitor& visitor)
    : omu_PrimLevel(visitor), _uid(visitor.GetUid()) {
    cls_ReadFields<omu_PrimExpr>(*this, visitor);
}

omu_PrimExpr::~omu_PrimExpr() = default;

cow_String omu_PrimExpr::AsString(int) const { return _text; }

bool omu_PrimExpr::operator==(const omu_Primitive& other) const {
    const auto* expression = omu_PrimCast<omu_PrimExpr>(other);
    return expression != nullptr && _text == expression->_text;
}
