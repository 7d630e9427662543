#pragma once

#include "CaeUtilsExport.h"
#include "idb_FileErrorException.h"
#include "idb_FileSystem.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// The content of the regular file \p path, behind symbolic links.
///
/// \param limit  the most bytes the file may have; no memory is taken for a longer one.
/// \throws idb_FileErrorException  also for a file whose length changes while it is read;
/// mem_ExhaustedException or std::bad_alloc where memory is short.
[[nodiscard]] CAE_API std::vector<std::byte> idb_FileLoad(
    const std::string& path, std::uint64_t limit,
    idb_FileSystem& fileSystem = idb_FileSystem::System());
