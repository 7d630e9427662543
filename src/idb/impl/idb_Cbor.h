#pragma once

#include "mem_Allocation.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// \file
/// The parts of CBOR (RFC 8949) that mementos are made of. docs/memento.md tells the format.

namespace idb_cbor {

enum Major : std::uint8_t {
    kUnsigned = 0,
    kNegative = 1,
    kBytes = 2,
    kText = 3,
    kArray = 4,
    kMap = 5,
    kTag = 6,
    kSimple = 7,
};

inline constexpr std::uint8_t kFalse = 0xF4;
inline constexpr std::uint8_t kTrue = 0xF5;
inline constexpr std::uint8_t kNull = 0xF6;
inline constexpr std::uint8_t kFloat = 0xFA;
inline constexpr std::uint8_t kDouble = 0xFB;

inline constexpr std::uint64_t kTagSelfDescribed = 55799;
inline constexpr std::uint64_t kTagShareable = 28;
inline constexpr std::uint64_t kTagSharedRef = 29;
inline constexpr std::uint64_t kTagIdentifier = 39;
inline constexpr std::uint64_t kTagInts = 78;     // RFC 8746: 32-bit integers, little-endian
inline constexpr std::uint64_t kTagFloats = 85;   // binary32, little-endian
inline constexpr std::uint64_t kTagDoubles = 86;  // binary64, little-endian

inline constexpr std::string_view kFormatName = "CaeUtils memento";
inline constexpr int kFormatVersion = 1;

/// Bytes of the last item: the checksum as a byte string of four.
inline constexpr std::size_t kTrailerSize = 5;

/// How deep objects and lists may lie in each other.
inline constexpr int kMaxDepth = 1024;

/// Whether \p text may stand in a CBOR text string: well-formed UTF-8.
[[nodiscard]] bool IsUtf8(std::string_view text) noexcept;

/// Bytes of a head with argument \p value.
[[nodiscard]] constexpr int HeadSize(std::uint64_t value) noexcept {
    return value < 24 ? 1 : value <= 0xFF ? 2 : value <= 0xFFFF ? 3 : value <= 0xFFFFFFFF ? 5 : 9;
}

/// Stores the low \p count bytes of \p value, the most significant first.
inline void StoreBig(std::uint8_t* to, std::uint64_t value, int count) noexcept {
    for (int i = count - 1; i >= 0; --i) {
        to[i] = static_cast<std::uint8_t>(value);
        value >>= 8;
    }
}

/// Writes a head in its shortest form; returns the place behind it. Needs room for 9 bytes.
inline std::uint8_t* PutHead(std::uint8_t* to, Major major, std::uint64_t value) noexcept {
    const auto top = static_cast<std::uint8_t>(major << 5);
    if (value < 24) {
        *to = static_cast<std::uint8_t>(top | value);
        return to + 1;
    }
    const int size = HeadSize(value);
    *to = static_cast<std::uint8_t>(top | (24 + std::countr_zero(static_cast<unsigned>(size - 1))));
    StoreBig(to + 1, value, size - 1);
    return to + size;
}

/// A growing block of encoded items.
class Encoder {
public:
    Encoder() noexcept = default;
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;
    ~Encoder() { mem_Free(_data); }

    [[nodiscard]] std::size_t Size() const noexcept { return _size; }
    [[nodiscard]] const std::uint8_t* Data() const noexcept { return _data; }
    /// Whether memory ran out while an item was put in: it is not there, or not whole.
    [[nodiscard]] bool IsBroken() const noexcept { return _isBroken; }

    void Head(Major major, std::uint64_t value) {
        std::uint8_t* const to = Room(9);
        _size += static_cast<std::size_t>(PutHead(to, major, value) - to);
    }
    void Int(std::int64_t value) {
        if (value >= 0) {
            Head(kUnsigned, static_cast<std::uint64_t>(value));
        } else {
            Head(kNegative, ~static_cast<std::uint64_t>(value));
        }
    }
    void Byte(std::uint8_t value) {
        *Room(1) = value;
        ++_size;
    }
    void Float(float value) { Real(kFloat, std::bit_cast<std::uint32_t>(value), 4); }
    void Double(double value) { Real(kDouble, std::bit_cast<std::uint64_t>(value), 8); }
    /// A text string; a byte string where the bytes are not UTF-8.
    void Text(std::string_view text) {
        std::uint8_t* to = Room(9 + text.size());
        to = PutHead(to, IsUtf8(text) ? kText : kBytes, text.size());
        if (!text.empty()) {
            std::memcpy(to, text.data(), text.size());
        }
        _size = static_cast<std::size_t>(to - _data) + text.size();
    }
    void Raw(const void* bytes, std::size_t count) {
        if (count != 0) {
            std::memcpy(Room(count), bytes, count);
            _size += count;
        }
    }

private:
    void Real(std::uint8_t first, std::uint64_t bits, int count) {
        std::uint8_t* const to = Room(9);
        *to = first;
        StoreBig(to + 1, bits, count);
        _size += static_cast<std::size_t>(count) + 1;
    }
    [[nodiscard]] std::uint8_t* Room(std::size_t count) {
        if (_capacity - _size < count) [[unlikely]] {
            Grow(count);
        }
        return _data + _size;
    }
    void Grow(std::size_t count);

    std::uint8_t* _data = nullptr;
    std::size_t _size = 0;
    std::size_t _capacity = 0;
    bool _isBroken = false;
};

}  // namespace idb_cbor
