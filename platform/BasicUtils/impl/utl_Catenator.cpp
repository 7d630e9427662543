#include "utl_Catenator.h"

#include "atr_String.h"
#include "atr_StringBase.h"

utl_Catenator& utl_Catenator::operator<<(const atr_String& text) { return *this << text.View(); }

utl_Catenator& utl_Catenator::operator<<(int value) {
    return *this << std::string_view(atr_StringBase::FromInt(value));
}

utl_Catenator& utl_Catenator::operator<<(unsigned int value) {
    return *this << std::string_view(atr_StringBase::FromUnsigned(value));
}

utl_Catenator& utl_Catenator::operator<<(double value) {
    char buffer[32];
    return *this << std::string_view(buffer, atr_StringBase::FormatDouble15(value, buffer));
}
