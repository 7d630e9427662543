#pragma once

#include "idb_Cbor.h"
#include "nex_TextException.h"

#include <span>
#include <string>

/// What reading a memento may still use up. One for all reading; nothing is read past it.
struct idb_Budget {
    std::uint64_t bytes = 0;    ///< to look at, read and skipped alike
    std::uint64_t objects = 0;  ///< to build
    std::uint64_t memory = 0;   ///< bytes that the built objects may take
    int depth = 0;              ///< of objects being built within each other
};

/// Raises idb_MementoErrorException: "Memento, byte <at>: <text>".
[[noreturn]] void idb_RaiseAt(std::size_t at, const std::string& text);

/// The first byte of an item and the number that comes with it.
struct idb_Head {
    std::uint64_t value;  ///< number, length, tag, or the bits of a float
    std::size_t at;       ///< byte where the item begins
    std::uint8_t first;

    [[nodiscard]] idb_cbor::Major Major() const noexcept {
        return static_cast<idb_cbor::Major>(first >> 5);
    }
    [[nodiscard]] bool Is(idb_cbor::Major major) const noexcept { return Major() == major; }
    [[nodiscard]] bool IsTag(std::uint64_t tag) const noexcept {
        return Major() == idb_cbor::kTag && value == tag;
    }
    [[nodiscard]] bool IsText() const noexcept {
        return Major() == idb_cbor::kText || Major() == idb_cbor::kBytes;
    }
    /// What the item is, for messages.
    [[nodiscard]] const char* Name() const noexcept;
};

/// Reads items from a memento's bytes, one after another, as far as the budget goes.
class idb_Cursor {
public:
    idb_Cursor(std::span<const std::uint8_t> bytes, std::size_t at, idb_Budget& budget) noexcept
        : _bytes(bytes), _at(at), _budget(&budget) {}

    [[nodiscard]] std::size_t At() const noexcept { return _at; }
    [[nodiscard]] std::size_t Left() const noexcept { return _bytes.size() - _at; }

    /// The next head. Arrays and maps announce no more items than there are bytes left, strings no
    /// more bytes; what CBOR has beside what mementos use is refused.
    [[nodiscard]] idb_Head Head() {
        if (_at < _bytes.size() && (_bytes[_at] & 0x1F) < 24 && _budget->bytes > 0 &&
            _bytes[_at] < 0x40) [[likely]] {
            --_budget->bytes;
            const std::uint8_t first = _bytes[_at];
            return {static_cast<std::uint64_t>(first & 0x1F), _at++, first};
        }
        return LongHead();
    }
    /// The bytes of the string whose head was read.
    [[nodiscard]] std::string_view Text(const idb_Head& head) {
        Spend(head.value);
        const auto* const text = reinterpret_cast<const char*>(_bytes.data() + _at);
        _at += static_cast<std::size_t>(head.value);
        return {text, static_cast<std::size_t>(head.value)};
    }
    /// Passes the next item and all within it; no recursion.
    void Skip();

private:
    [[nodiscard]] idb_Head LongHead();
    void Spend(std::uint64_t count) {
        if (_budget->bytes < count) {
            RaiseSpent();
        }
        _budget->bytes -= count;
    }
    [[noreturn]] void RaiseSpent() const;

    std::span<const std::uint8_t> _bytes;
    std::size_t _at;
    idb_Budget* _budget;
};
