#include "idb_Cbor.h"

#include <algorithm>

namespace idb_cbor {

bool IsUtf8(std::string_view text) noexcept {
    const char* at = text.data();
    std::size_t left = text.size();
    for (;;) {
        while (left >= 8) {
            std::uint64_t eight = 0;
            std::memcpy(&eight, at, 8);
            if ((eight & 0x8080808080808080U) != 0) {
                break;
            }
            at += 8;
            left -= 8;
        }
        if (left == 0) {
            return true;
        }
        const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(at[i]); };
        const unsigned char first = byte(0);
        if (first < 0x80) {
            ++at;
            --left;
            continue;
        }
        const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
        if (first < 0xC2 || first > 0xF4 || left < length) {
            return false;
        }
        for (std::size_t i = 1; i < length; ++i) {
            if ((byte(i) & 0xC0) != 0x80) {
                return false;
            }
        }
        // Longer than need be, a surrogate, or beyond the last character.
        const unsigned char second = byte(1);
        if ((first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
            (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F)) {
            return false;
        }
        at += length;
        left -= length;
    }
}

void Encoder::Grow(std::size_t count) {
    const std::size_t capacity = std::max(_size + count, _capacity * 2 + 256);
    auto* const data = static_cast<std::uint8_t*>(mem_Realloc(_data, capacity));
    if (data == nullptr) {
        _isBroken = true;
        mem_ThrowExhausted(capacity);
    }
    _data = data;
    _capacity = capacity;
}

}  // namespace idb_cbor
