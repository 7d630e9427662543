#pragma once

#include "CoreUtilsExport.h"

#include <cstddef>
#include <string>

/// Number texts, and the base of atr_String. A text is the same under every locale and every
/// rounding mode of the processor.
class CORE_API atr_StringBase {
public:
    /// Room that FormatDouble15 needs at most.
    static constexpr std::size_t kDoubleRoom = 32;

    /// Plain decimal digits.
    [[nodiscard]] static std::string FromInt(int value);

    /// Plain decimal digits.
    [[nodiscard]] static std::string FromUnsigned(unsigned value);

    /// The text of printf's "%.15g" in the C locale ("1", "0.1", "1e+20", "-0", "inf"); "nan" for
    /// every NaN.
    [[nodiscard]] static std::string FromDouble(double value);

    /// Writes that text to \p buffer (room for kDoubleRoom characters; no terminator is written)
    /// and returns its length. Never allocates.
    static std::size_t FormatDouble15(double value, char* buffer) noexcept;

protected:
    atr_StringBase() = default;
    ~atr_StringBase() = default;
    atr_StringBase(const atr_StringBase&) = default;
    atr_StringBase& operator=(const atr_StringBase&) = default;
};
