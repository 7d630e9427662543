#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// \file
/// Leading 64 bits of the powers of ten that scale a double to 15 or 16 digits before the point,
/// computed by the compiler.

/// 10^k is significand * 2^exponent, rounded down: significand has its top bit set and is less than
/// one unit below the true value.
struct atr_PowerOfTen {
    std::uint64_t significand;
    int exponent;
};

namespace atr_Powers {

inline constexpr int kLowest = -295;
inline constexpr int kHighest = 338;

// A running power with 192 bits, lowest word first, normalised: the top bit is set.
struct Wide {
    std::array<std::uint32_t, 6> words{0, 0, 0, 0, 0, 0x80000000u};
    int exponent = -191;

    constexpr void TimesTen() {
        std::uint64_t carry = 0;
        for (std::uint32_t& word : words) {
            carry += std::uint64_t{word} * 10;
            word = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
        while (carry != 0) {
            for (std::size_t i = 0; i < words.size(); ++i) {
                const std::uint64_t above = i + 1 < words.size() ? words[i + 1] : carry;
                words[i] = static_cast<std::uint32_t>((above << 32 | words[i]) >> 1);
            }
            carry >>= 1;
            ++exponent;
        }
    }

    constexpr void OverTen() {
        std::uint64_t rest = 0;
        for (std::size_t i = words.size(); i-- > 0;) {
            rest = rest << 32 | words[i];
            words[i] = static_cast<std::uint32_t>(rest / 10);
            rest %= 10;
        }
        while ((words.back() & 0x80000000u) == 0) {
            // Brings in the next bit of the quotient, so that the error stays below one unit.
            rest *= 2;
            std::uint32_t carry = rest >= 10 ? 1 : 0;
            rest %= 10;
            for (std::uint32_t& word : words) {
                const std::uint32_t out = word >> 31;
                word = word << 1 | carry;
                carry = out;
            }
            --exponent;
        }
    }

    /// The leading 64 bits; stops the compilation where the errors of the steps before (below 1024
    /// units of the last word) could have reached them.
    constexpr atr_PowerOfTen Leading() const {
        if (words[3] == 0xffffffffu && words[2] == 0xffffffffu && words[1] == 0xffffffffu) {
            throw "the leading bits are not certain";
        }
        return {std::uint64_t{words[5]} << 32 | words[4], exponent + 128};
    }
};

inline constexpr auto kTable = [] {
    std::array<atr_PowerOfTen, kHighest - kLowest + 1> table{};
    Wide up;
    for (int k = 0; k <= kHighest; ++k, up.TimesTen()) {
        table[static_cast<std::size_t>(k - kLowest)] = up.Leading();
    }
    Wide down;
    for (int k = 0; k >= kLowest; --k, down.OverTen()) {
        table[static_cast<std::size_t>(k - kLowest)] = down.Leading();
    }
    return table;
}();

}  // namespace atr_Powers
