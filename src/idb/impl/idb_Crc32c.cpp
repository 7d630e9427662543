#include "idb_Crc32c.h"

#include <array>
#include <cstring>

namespace {

constexpr std::uint32_t kPolynomial = 0x82F63B78U;

using Tables = std::array<std::array<std::uint32_t, 256>, 8>;

// Table k tells what a byte contributes that lies k bytes before the last one of eight.
constexpr Tables MakeTables() {
    Tables tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t crc = byte;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? kPolynomial : 0);
        }
        tables[0][byte] = crc;
    }
    for (std::size_t k = 1; k < tables.size(); ++k) {
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint32_t before = tables[k - 1][byte];
            tables[k][byte] = (before >> 8) ^ tables[0][before & 0xFF];
        }
    }
    return tables;
}

constexpr Tables kTables = MakeTables();

std::uint32_t ByTables(std::uint32_t crc, const std::uint8_t* at, std::size_t size) noexcept {
    for (; size >= 8; at += 8, size -= 8) {
        const std::uint32_t low = crc ^ (at[0] | static_cast<std::uint32_t>(at[1]) << 8 |
                                         static_cast<std::uint32_t>(at[2]) << 16 |
                                         static_cast<std::uint32_t>(at[3]) << 24);
        crc = kTables[7][low & 0xFF] ^ kTables[6][low >> 8 & 0xFF] ^ kTables[5][low >> 16 & 0xFF] ^
              kTables[4][low >> 24] ^ kTables[3][at[4]] ^ kTables[2][at[5]] ^ kTables[1][at[6]] ^
              kTables[0][at[7]];
    }
    for (; size > 0; ++at, --size) {
        crc = (crc >> 8) ^ kTables[0][(crc ^ *at) & 0xFF];
    }
    return crc;
}

#if defined(__x86_64__) && defined(__GNUC__)
#define IDB_HAVE_CRC_INSTRUCTION 1

[[gnu::target("sse4.2")]] std::uint32_t ByInstruction(std::uint32_t crc, const std::uint8_t* at,
                                                      std::size_t size) noexcept {
    std::uint64_t wide = crc;
    for (; size >= 8; at += 8, size -= 8) {
        unsigned long long eight = 0;
        std::memcpy(&eight, at, 8);
        wide = __builtin_ia32_crc32di(wide, eight);
    }
    crc = static_cast<std::uint32_t>(wide);
    for (; size > 0; ++at, --size) {
        crc = __builtin_ia32_crc32qi(crc, *at);
    }
    return crc;
}
#endif

}  // namespace

std::uint32_t idb_Crc32cByTables(const void* bytes, std::size_t size) noexcept {
    return ~ByTables(~0U, static_cast<const std::uint8_t*>(bytes), size);
}

std::uint32_t idb_Crc32c(const void* bytes, std::size_t size) noexcept {
#ifdef IDB_HAVE_CRC_INSTRUCTION
    if (__builtin_cpu_supports("sse4.2")) {
        return ~ByInstruction(~0U, static_cast<const std::uint8_t*>(bytes), size);
    }
#endif
    return idb_Crc32cByTables(bytes, size);
}
