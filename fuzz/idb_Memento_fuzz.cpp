// Reads any bytes as a memento: it loads, or raises the memento's error; nothing else happens. What
// loads is written, and must then load again and give the same bytes. The mutator puts the right
// checksum behind what it makes, or no mutation would get past it.

#include "UTI_CaeUtils.h"
#include "cls_Shared.h"
#include "idb_MementoErrorException.h"
#include "idb_MementoRead.h"
#include "idb_MementoWrite.h"
#include "omu_Primitive.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);
extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned seed);

namespace {

constexpr std::size_t kTrailer = 5;

std::uint32_t Crc32c(const std::uint8_t* bytes, std::size_t size) {
    std::uint32_t crc = ~0U;
    for (std::size_t i = 0; i < size; ++i) {
        crc ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0x82F63B78U : 0);
        }
    }
    return ~crc;
}

/// All roots of a memento, as values or as any objects: written again, or only read.
std::vector<std::byte> Rewritten(std::span<const std::byte> bytes) {
    const idb_MementoRead memento(bytes);
    idb_MementoWrite written;
    for (const cow_String& root : memento.Roots()) {
        omu_PrimHolder value;
        cls_ReadShared(memento, root.AsCharPtr(), omu_Primitive::TypeId(), value);
        cls_WriteShared(written, root.AsCharPtr(), value);
    }
    memento.Finish();
    return written.Finish();
}

}  // namespace

int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
    static int count = 0;
    UTI_CaeUtils_initialize(count);
    return 0;
}

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most,
                                    unsigned seed) {
    const std::size_t body = size < kTrailer ? size : size - kTrailer;
    if (most <= kTrailer) {
        return size;
    }
    const std::size_t changed = LLVMFuzzerMutate(data, body, most - kTrailer);
    if (seed % 64 == 0) {
        return changed;
    }
    const std::uint32_t crc = Crc32c(data, changed);
    data[changed] = 0x44;
    for (int i = 0; i < 4; ++i) {
        data[changed + 1 + static_cast<std::size_t>(i)] =
            static_cast<std::uint8_t>(crc >> (24 - 8 * i));
    }
    return changed + kTrailer;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // A copy of exactly this size, so that reading past its end is seen.
    const auto* const first = reinterpret_cast<const std::byte*>(data);
    const std::vector<std::byte> bytes(first, first + size);
    std::vector<std::byte> once;
    try {
        once = Rewritten(bytes);
    } catch (const idb_MementoErrorException&) {
        return 0;
    }
    if (Rewritten(once) != once) {
        std::abort();
    }
    return 0;
}
