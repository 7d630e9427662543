#pragma once

#include <cstddef>
#include <cstdint>

/// The CRC-32C (Castagnoli) of \p size bytes: reflected polynomial 0x82F63B78, start and final
/// inversion all ones. That of "123456789" is 0xE3069283.
[[nodiscard]] std::uint32_t idb_Crc32c(const void* bytes, std::size_t size) noexcept;

/// The same by tables alone, as where the processor has no instruction for it.
[[nodiscard]] std::uint32_t idb_Crc32cByTables(const void* bytes, std::size_t size) noexcept;
