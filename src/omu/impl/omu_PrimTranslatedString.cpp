#include "omu_PrimTranslatedString.h"

#include "omu_QuotedText.h"

omu_PrimTranslatedString::omu_PrimTranslatedString(const cls_ReadVisitor& visitor)
    : omu_PrimLevel(visitor), _uid(visitor.GetUid()) {
    cls_ReadFields<omu_PrimTranslatedString>(*this, visitor);
}

omu_PrimTranslatedString::~omu_PrimTranslatedString() = default;

cow_String omu_PrimTranslatedString::AsString(int) const { return omu_QuotedText(_text.View()); }

bool omu_PrimTranslatedString::operator==(const omu_Primitive& other) const {
    const auto* string = omu_PrimCast<omu_PrimTranslatedString>(other);
    return string != nullptr && _text == string->_text;
}
