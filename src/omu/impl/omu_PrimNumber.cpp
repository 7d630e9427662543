#include "omu_PrimNumber.h"

#include "atr_StringBase.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>

omu_PrimNumber::omu_PrimNumber(const cls_ReadVisitor& visitor)
    : omu_PrimLevel(visitor), _value(0.0), _uvalue(0), _dataType(INT), _uid(visitor.GetUid()) {
    cls_ReadFields<omu_PrimNumber>(*this, visitor);
}

omu_PrimNumber::~omu_PrimNumber() = default;

cow_String omu_PrimNumber::TypeString() const { return IsType('f') ? "float" : "int"; }

int omu_PrimNumber::AsInt() const noexcept {
    constexpr double two32 = 4294967296.0;
    if (!std::isfinite(_value)) {
        return 0;
    }
    // Exact: the remainder of a division of doubles is representable.
    const double low = std::fmod(std::trunc(_value), two32);
    return static_cast<int>(static_cast<std::uint32_t>(static_cast<std::int64_t>(low)));
}

std::size_t omu_PrimNumber::FormatDouble(double value, char* buffer) noexcept {
    char* start = buffer;
    if (std::isnan(value) && std::signbit(value)) {
        *start++ = '-';
    }
    std::size_t length = atr_StringBase::FormatDouble15(value, start);
    if (std::string_view(start, length).find_first_of(".e") == std::string_view::npos) {
        start[length++] = '.';
        start[length++] = '0';
    }
    // No exponent here has a leading zero among three digits: the text is the C locale's.
    return static_cast<std::size_t>(start - buffer) + length;
}

std::size_t omu_PrimNumber::Format(char* buffer) const noexcept {
    if (!IsType('i')) {
        return FormatDouble(_value, buffer);
    }
    const auto written = _dataType == UINT ? std::to_chars(buffer, buffer + kTextRoom, _uvalue)
                                           : std::to_chars(buffer, buffer + kTextRoom, AsInt());
    return static_cast<std::size_t>(written.ptr - buffer);
}

cow_String omu_PrimNumber::AsString(int) const {
    char buffer[kTextRoom];
    return std::string_view(buffer, Format(buffer));
}

bool omu_PrimNumber::operator==(const omu_Primitive& other) const {
    const auto* number = omu_PrimCast<omu_PrimNumber>(other);
    return number != nullptr && _value == number->_value && _uvalue == number->_uvalue;
}
