#pragma once

#include <gtest/gtest.h>

#include <stdexcept>

/// Element type for container tests: counts its live objects, throws at the copy that
/// `copiesUntilThrow` counts down to, and notices self-moves. With kCopyOnly it has no moves.
template <bool kCopyOnly>
class test_Tracked {
public:
    static inline int live = 0;
    static inline int copiesUntilThrow = 0;  // 0: never

    test_Tracked() noexcept { ++live; }
    explicit test_Tracked(int value) noexcept : _value(value) { ++live; }
    test_Tracked(const test_Tracked& other) : _value(other.CopiedValue()) { ++live; }
    test_Tracked(test_Tracked&& other) noexcept requires(!kCopyOnly) : _value(other._value) {
        other._value = -1;
        ++live;
    }
    test_Tracked& operator=(const test_Tracked& other) {
        _value = other.CopiedValue();
        return *this;
    }
    test_Tracked& operator=(test_Tracked&& other) noexcept requires(!kCopyOnly) {
        EXPECT_NE(this, &other) << "moved onto itself";
        _value = other._value;
        other._value = -1;
        return *this;
    }
    ~test_Tracked() {
        EXPECT_EQ(_alive, kAlive) << "destroyed twice, or never made";
        _alive = 0;
        --live;
    }

    [[nodiscard]] int Compare(const test_Tracked& other) const { return _value - other._value; }
    friend bool operator==(const test_Tracked& a, const test_Tracked& b) {
        return a._value == b._value;
    }

private:
    static constexpr int kAlive = 0x5AFE;

    [[nodiscard]] int CopiedValue() const {
        if (copiesUntilThrow > 0 && --copiesUntilThrow == 0) throw std::runtime_error("copy");
        return _value;
    }

    int _value = 0;
    int _alive = kAlive;
};

using test_Movable = test_Tracked<false>;
using test_CopyOnly = test_Tracked<true>;
