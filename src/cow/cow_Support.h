#pragma once

#include <concepts>
#include <cstdint>
#include <deque>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

/// \file
/// What the containers share: error raising, comparison of elements, deep copies, and the count
/// of detaches.

/// Raises std::out_of_range: "index 7 is outside [0, 5)".
[[noreturn, gnu::cold, gnu::noinline]] inline void cow_ThrowIndex(long long index,
                                                                  long long length) {
    throw std::out_of_range("index " + std::to_string(index) + " is outside [0, " +
                            std::to_string(length) + ")");
}

/// Raises std::out_of_range: "length -1 is outside [0, 2147483647]".
[[noreturn, gnu::cold, gnu::noinline]] inline void cow_ThrowLength(long long length) {
    throw std::out_of_range("length " + std::to_string(length) + " is outside [0, 2147483647]");
}

/// Raises std::out_of_range with a text that says what is missing.
[[noreturn, gnu::cold, gnu::noinline]] inline void cow_ThrowMissing(const char* what) {
    throw std::out_of_range(what);
}

/// How often this thread has copied shared storage (a block table, a block, a tree node, a body)
/// because somebody wrote to it. One per process and thread, hence the visibility.
#if defined(__GNUC__)
[[gnu::visibility("default")]]
#endif
inline constinit thread_local std::uint64_t cow_detachCount = 0;

/// Three-way comparison: `a.Compare(b)` where T has it, else by operator<.
template <class T>
[[nodiscard]] int cow_Compare(const T& a, const T& b) {
    if constexpr (requires {
                      { a.Compare(b) } -> std::convertible_to<int>;
                  }) {
        return a.Compare(b);
    } else {
        return static_cast<int>(b < a) - static_cast<int>(a < b);
    }
}

/// Orders by cow_Compare: what the standard's ordered containers take.
struct cow_Less {
    template <class T>
    [[nodiscard]] bool operator()(const T& a, const T& b) const {
        return cow_Compare(a, b) < 0;
    }
};

/// A copy of \p value that shares nothing with it: `value.DeepCopy()` where T has it.
template <class T>
[[nodiscard]] T cow_DeepCopyOf(const T& value) {
    if constexpr (requires {
                      { value.DeepCopy() } -> std::same_as<T>;
                  }) {
        return value.DeepCopy();
    } else {
        return value;
    }
}

/// The standard sequence that stores elements of type T as such (std::vector packs bool).
template <class T>
using cow_VectorOf = std::conditional_t<std::is_same_v<T, bool>, std::deque<bool>, std::vector<T>>;
