#pragma once

#include "BasicUtilsExport.h"

#include <compare>
#include <cstdint>

/// The identity a persistent object keeps while it is copied, written and read.
///
/// A default-constructed identity is none; AllocateUid gives a fresh one, unique in the process.
class BASIC_API cls_Uid {
public:
    constexpr cls_Uid() noexcept = default;
    constexpr explicit cls_Uid(std::uint64_t value) noexcept : _value(value) {}

    /// A fresh identity. Any thread; never twice the same in one process.
    [[nodiscard]] static cls_Uid AllocateUid() noexcept;

    [[nodiscard]] constexpr bool IsNone() const noexcept { return _value == 0; }
    [[nodiscard]] constexpr std::uint64_t Value() const noexcept { return _value; }

    friend constexpr auto operator<=>(const cls_Uid&, const cls_Uid&) noexcept = default;

private:
    std::uint64_t _value = 0;
};
