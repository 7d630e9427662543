#pragma once

#include "CaeUtilsExport.h"
#include "idb_FileErrorException.h"
#include "idb_FileSystem.h"

#include <cstddef>
#include <functional>
#include <span>
#include <string>

/// Gives the next bytes of a file, valid until the next call; none at the end.
using idb_FileChunks = std::function<std::span<const std::byte>()>;

/// Makes \p bytes the content of the file \p path, new or old, in one step and for good: whatever
/// fails, and whenever the process or the machine stops, the file has its old content whole or the
/// new one whole. On return the disk has it.
///
/// The bytes are written to a temporary file beside it, ".<name>.saving~", which then takes the
/// name. What an interrupted save left there, the next one removes; while another save of the same
/// file is under way (known by a lock, where the file system has locks), this one raises. A
/// symbolic link stays, and the file behind it is replaced. Other hard links keep the old content.
///
/// The old file's permissions (rwx bits) are kept, its owner and group where the process may set
/// them; a group that cannot be kept leaves the new one no more than others have. Access lists
/// are not kept. A new file gets what the process's mask leaves of rw-rw-rw-. A file without
/// permission to write is not replaced; nor is anything but a regular file.
///
/// \throws idb_FileErrorException  with the old file whole and the temporary removed, save where
/// only the last flush of the folder failed: the message then says that the new file stands.
CAE_API void idb_FileSave(const std::string& path, std::span<const std::byte> bytes,
                          idb_FileSystem& fileSystem = idb_FileSystem::System());

/// The same for content in chunks. What \p chunks throws passes through, with the old file whole.
CAE_API void idb_FileSave(const std::string& path, const idb_FileChunks& chunks,
                          idb_FileSystem& fileSystem = idb_FileSystem::System());
