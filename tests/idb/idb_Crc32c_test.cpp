// The library takes one way for all; the other one is hidden in it, and so compiled in here.
#include "impl/idb_Crc32c.cpp"

#include "idb_Sealed.h"

#include <gtest/gtest.h>

namespace {

std::vector<std::byte> Bytes(std::size_t count, auto at) {
    std::vector<std::byte> bytes;
    for (std::size_t i = 0; i < count; ++i) {
        bytes.push_back(static_cast<std::byte>(at(i)));
    }
    return bytes;
}

TEST(idb_Crc32c, IsTheOneOfTheStandardByInstructionAndByTables) {
    const char* const digits = "123456789";
    const struct {
        std::vector<std::byte> bytes;
        std::uint32_t crc;
    } cases[] = {
        {{}, 0},
        {Bytes(9, [&](std::size_t i) { return digits[i]; }), 0xE3069283U},
        // RFC 3720, B.4
        {Bytes(32, [](std::size_t) { return 0; }), 0x8A9136AAU},
        {Bytes(32, [](std::size_t) { return 0xFF; }), 0x62A8AB43U},
        {Bytes(32, [](std::size_t i) { return i; }), 0x46DD794EU},
        {Bytes(32, [](std::size_t i) { return 31 - i; }), 0x113FDB5CU},
    };
    for (const auto& known : cases) {
        const std::size_t size = known.bytes.size();
        EXPECT_EQ(idb_Crc32c(known.bytes.data(), size), known.crc);
        EXPECT_EQ(idb_Crc32cByTables(known.bytes.data(), size), known.crc);
    }
    // Every remainder of the steps of eight, from every alignment.
    const std::vector<std::byte> bytes = Bytes(64, [](std::size_t i) { return i * i + 7; });
    for (std::size_t first = 0; first < 8; ++first) {
        for (std::size_t size = 0; size <= bytes.size() - first; ++size) {
            const std::byte* const from = bytes.data() + first;
            const std::uint32_t crc = idb_PlainCrc32c({from, size});
            ASSERT_EQ(idb_Crc32c(from, size), crc) << first << ", " << size;
            ASSERT_EQ(idb_Crc32cByTables(from, size), crc) << first << ", " << size;
        }
    }
}

}  // namespace
