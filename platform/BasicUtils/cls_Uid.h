#pragma once

#include "BasicUtilsExport.h"

#include <compare>
#include <cstdint>

/// The identity a persistent object keeps while it is copied, written and read.
///
/// A default-constructed identity is none; AllocateUid gives a fresh one, unique in the process
/// unless a cls_UidScope numbers.
class BASIC_API cls_Uid {
public:
    constexpr cls_Uid() noexcept = default;
    constexpr explicit cls_Uid(std::uint64_t value) noexcept : _value(value) {}

    /// A fresh identity. Any thread; never twice the same in one process, except from the counter
    /// of a cls_UidScope.
    [[nodiscard]] static cls_Uid AllocateUid() noexcept;

    [[nodiscard]] constexpr bool IsNone() const noexcept { return _value == 0; }
    [[nodiscard]] constexpr std::uint64_t Value() const noexcept { return _value; }

    friend constexpr auto operator<=>(const cls_Uid&, const cls_Uid&) noexcept = default;

private:
    std::uint64_t _value = 0;
};

/// While it lives, AllocateUid of the thread that made it counts up \p last, the caller's last
/// identity given. So a host can number a model's objects alike on every run.
///
/// Scopes nest: the innermost numbers. Ended in the reverse order, in the same thread.
class BASIC_API cls_UidScope {
public:
    explicit cls_UidScope(std::uint64_t& last) noexcept;
    ~cls_UidScope();
    cls_UidScope(const cls_UidScope&) = delete;
    cls_UidScope& operator=(const cls_UidScope&) = delete;

private:
    std::uint64_t* _outer;
};
