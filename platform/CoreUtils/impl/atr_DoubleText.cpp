#include "atr_PowersOfTen.h"
#include "atr_StringBase.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#if defined(_MSC_VER)
#include <intrin.h>
#endif

// "%.15g" in integer arithmetic: the value is scaled by a power of ten to 15 digits before the
// point with an error of less than two units of a 64-bit product, and rounded from there. Where the
// error could decide the rounding (ties among them: about 1 value in 1,000), std::to_chars decides.

namespace {

constexpr int kDigits = 15;
constexpr std::uint64_t kLimit = 1'000'000'000'000'000;  // 10^15

/// The upper half of the product.
std::uint64_t MultiplyHigh(std::uint64_t a, std::uint64_t b) {
#if defined(_MSC_VER)
    return __umulh(a, b);
#else
    __extension__ using Product = unsigned __int128;
    return static_cast<std::uint64_t>(static_cast<Product>(a) * b >> 64);
#endif
}

/// digits * 10^(exponent - 14), with digits in [10^14, 10^15).
struct Decimal {
    std::uint64_t digits;
    int exponent;
};

/// Rounds significand * 2^binaryExponent (top bit of the significand set) to 15 digits; false when
/// the error of the scaling could matter.
bool Round(std::uint64_t significand, int binaryExponent, Decimal& decimal) {
    // 78913 / 2^18 is log10(2) from below: the estimate is right or one too low.
    int exponent = ((binaryExponent + 63) * 78913) >> 18;
    for (;; ++exponent) {
        const auto& power = atr_Powers::kTable[static_cast<std::size_t>(kDigits - 1 - exponent -
                                                                        atr_Powers::kLowest)];
        const std::uint64_t scaled = MultiplyHigh(significand, power.significand);
        const int shift = -(binaryExponent + power.exponent + 64);
        std::uint64_t digits = scaled >> shift;
        if (digits >= kLimit) {
            continue;
        }
        // The true fraction lies in [fraction, fraction + 2).
        const std::uint64_t fraction = scaled & ((std::uint64_t{1} << shift) - 1);
        const std::uint64_t half = std::uint64_t{1} << (shift - 1);
        if (fraction == half || fraction + 1 == half) {
            return false;
        }
        digits += fraction > half ? 1 : 0;
        if (digits == kLimit) {
            digits = kLimit / 10;
            ++exponent;
        }
        decimal = {digits, exponent};
        return true;
    }
}

constexpr auto kPairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

void WritePair(unsigned value, char* to) { std::memcpy(to, kPairs.data() + 2 * value, 2); }

void WriteEight(unsigned value, char* to) {
    const unsigned high = value / 10000;
    const unsigned low = value % 10000;
    WritePair(high / 100, to);
    WritePair(high % 100, to + 2);
    WritePair(low / 100, to + 4);
    WritePair(low % 100, to + 6);
}

/// Writes digits and exponent as %g does and returns the end.
char* Write(const Decimal& decimal, char* to) {
    char digits[16];  // a zero, then the fifteen
    WriteEight(static_cast<unsigned>(decimal.digits / 100'000'000), digits);
    WriteEight(static_cast<unsigned>(decimal.digits % 100'000'000), digits + 8);
    const char* const first = digits + 1;
    int count = kDigits;
    while (first[count - 1] == '0') {
        --count;
    }
    const int exponent = decimal.exponent;
    if (exponent >= 0 && exponent < kDigits) {
        // All fifteen are copied wherever fewer count: a copy of fixed length is a few moves.
        std::memcpy(to, first, kDigits);
        if (count <= exponent + 1) {
            return to + exponent + 1;  // the digits behind the counted ones are zeros
        }
        to[exponent + 1] = '.';
        std::memcpy(to + exponent + 2, first + exponent + 1,
                    static_cast<std::size_t>(count - exponent - 1));
        return to + count + 1;
    }
    if (exponent < 0 && exponent >= -4) {
        std::memcpy(to, "0.000", 5);
        to += 1 - exponent;
        std::memcpy(to, first, kDigits);
        return to + count;
    }
    *to++ = first[0];
    if (count > 1) {
        *to++ = '.';
        std::memcpy(to, first + 1, kDigits - 1);
        to += count - 1;
    }
    *to++ = 'e';
    *to++ = exponent < 0 ? '-' : '+';
    unsigned size = static_cast<unsigned>(exponent < 0 ? -exponent : exponent);
    if (size >= 100) {
        *to++ = static_cast<char>('0' + size / 100);
        size %= 100;
    }
    WritePair(size, to);
    return to + 2;
}

std::size_t Copy(const char* text, char* to) {
    const std::size_t length = std::strlen(text);
    std::memcpy(to, text, length);
    return length;
}

}  // namespace

std::size_t atr_StringBase::FormatDouble15(double value, char* buffer) noexcept {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const int biased = static_cast<int>(bits >> 52 & 0x7ff);
    std::uint64_t significand = bits & 0xf'ffff'ffff'ffff;
    if (biased == 0x7ff && significand != 0) {
        return Copy("nan", buffer);
    }
    char* to = buffer;
    *to = '-';
    to += bits >> 63;
    const auto before = static_cast<std::size_t>(to - buffer);
    if (biased == 0x7ff) {
        return before + Copy("inf", to);
    }
    if ((bits << 1) == 0) {
        return before + Copy("0", to);
    }
    int binaryExponent = biased - 1075;
    if (biased != 0) {
        significand |= std::uint64_t{1} << 52;
    } else {
        ++binaryExponent;
    }
    const int leading = std::countl_zero(significand);
    Decimal decimal;
    if (Round(significand << leading, binaryExponent - leading, decimal)) {
        to = Write(decimal, to);
    } else {
        to = std::to_chars(to, buffer + kDoubleRoom, std::fabs(value), std::chars_format::general,
                           kDigits)
                 .ptr;
    }
    return static_cast<std::size_t>(to - buffer);
}
