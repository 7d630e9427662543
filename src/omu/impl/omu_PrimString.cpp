#include "omu_PrimString.h"

#include "omu_PrimEnumBase.h"
#include "omu_PrimNumber.h"
#include "omu_QuotedText.h"

omu_PrimString::omu_PrimString(const omu_PrimEnumBase& constant)
    : omu_PrimString(constant.Name()) {}

omu_PrimString::omu_PrimString(int value) : omu_PrimString(omu_PrimNumber(value).AsString(0)) {}

omu_PrimString::omu_PrimString(unsigned int value)
    : omu_PrimString(omu_PrimNumber(value).AsString(0)) {}

omu_PrimString::omu_PrimString(double value) : omu_PrimString(omu_PrimNumber(value).AsString(0)) {}

omu_PrimString::omu_PrimString(const cls_ReadVisitor& visitor)
    : omu_PrimLevel(visitor), _uid(visitor.GetUid()) {
    cls_ReadFields<omu_PrimString>(*this, visitor);
}

omu_PrimString::~omu_PrimString() = default;

cow_String omu_PrimString::AsString(int) const { return omu_QuotedText(_text); }

bool omu_PrimString::operator==(const omu_Primitive& other) const {
    const auto* string = omu_PrimCast<omu_PrimString>(other);
    return string != nullptr && _text == string->_text;
}
