#pragma once

#include "typ_Entry.h"

/// A module's type table as it is handed over: entries [0, count). Does not own them.
class typ_ArchCompEntry {
public:
    constexpr typ_ArchCompEntry() noexcept = default;
    constexpr typ_ArchCompEntry(const typ_Entry* entries, unsigned count) noexcept
        : _entries(entries), _count(count) {}

    [[nodiscard]] constexpr unsigned Count() const noexcept { return _count; }
    /// The entry at \p index, or null from Count() on.
    [[nodiscard]] constexpr const typ_Entry* At(unsigned index) const noexcept {
        return index < _count ? _entries + index : nullptr;
    }

private:
    const typ_Entry* _entries = nullptr;
    unsigned _count = 0;
};
