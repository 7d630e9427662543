#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// The CRC-32C of \p bytes bit by bit, as its definition reads.
inline std::uint32_t idb_PlainCrc32c(std::span<const std::byte> bytes) {
    std::uint32_t crc = ~0U;
    for (const std::byte byte : bytes) {
        crc ^= static_cast<std::uint32_t>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0x82F63B78U : 0);
        }
    }
    return ~crc;
}

/// \p bytes with the checksum of a memento behind them.
inline std::vector<std::byte> idb_Sealed(std::vector<std::byte> bytes) {
    const std::uint32_t crc = idb_PlainCrc32c(bytes);
    bytes.push_back(std::byte{0x44});
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<std::byte>(crc >> shift));
    }
    return bytes;
}
