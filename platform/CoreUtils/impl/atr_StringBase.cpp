#include "atr_StringBase.h"

#include <charconv>

namespace {

template <class Integer>
std::string DecimalText(Integer value) {
    char digits[12];
    return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}

}  // namespace

std::string atr_StringBase::FromInt(int value) { return DecimalText(value); }

std::string atr_StringBase::FromUnsigned(unsigned value) { return DecimalText(value); }

std::string atr_StringBase::FromDouble(double value) {
    char text[kDoubleRoom];
    return {text, FormatDouble15(value, text)};
}
