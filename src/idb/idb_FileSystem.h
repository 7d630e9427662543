#pragma once

#include "CaeUtilsExport.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

/// What the system knows of a file.
struct idb_FileStatus {
    enum class Kind { kFile, kFolder, kOther };

    Kind kind = Kind::kOther;
    std::uint64_t size = 0;    // [byte]
    unsigned permissions = 0;  // the nine bits rwxrwxrwx
    unsigned owner = 0;
    unsigned group = 0;
    std::uint64_t device = 0;  // with index: which file it is, whatever its names
    std::uint64_t index = 0;

    [[nodiscard]] bool IsSameFile(const idb_FileStatus& other) const noexcept {
        return device == other.device && index == other.index;
    }
};

/// The system calls below saving and loading, one operation each, so that tests can make every one
/// of them fail. This class makes the calls themselves; it has no state, threads may share it.
///
/// Each operation returns what the call gives, 0 or above, or the negative errno of its failure;
/// none repeats an interrupted call. On systems without POSIX calls all of them give -ENOSYS.
/// Files and folders are the system's descriptors, closed in programs that this one starts.
/// A `name` stands below its open folder, and a symbolic link there is not followed.
class CAE_API idb_FileSystem {
public:
    /// The one that saving and loading use unless told otherwise.
    [[nodiscard]] static idb_FileSystem& System() noexcept;

    virtual ~idb_FileSystem();

    /// \p target becomes what a symbolic link says; -EINVAL for anything but a link.
    virtual std::int64_t ReadLink(const std::string& path, std::string& target);
    virtual std::int64_t OpenFolder(const std::string& path);
    /// Follows links; does not wait for the other end of a pipe.
    virtual std::int64_t OpenToRead(const std::string& path);
    /// Opens what stands there already, as far as it lets itself be opened.
    virtual std::int64_t OpenToLock(int folder, const std::string& name);
    /// A new file to write to; -EEXIST where something has the name. The process's mask of
    /// permissions is taken off.
    virtual std::int64_t Create(int folder, const std::string& name, unsigned permissions);
    virtual std::int64_t Duplicate(int file);
    virtual std::int64_t Close(int file);

    virtual std::int64_t Status(int file, idb_FileStatus& status);
    virtual std::int64_t StatusAt(int folder, const std::string& name, idb_FileStatus& status);
    /// 0 where the process may write to the file.
    virtual std::int64_t CheckWritable(int folder, const std::string& name);
    /// \p owner and \p group: kKeep leaves it.
    virtual std::int64_t ChangeOwner(int file, unsigned owner, unsigned group);
    virtual std::int64_t ChangePermissions(int file, unsigned permissions);
    /// Locks against other openers that ask, until the last duplicate is closed or the process
    /// ends; -EWOULDBLOCK where another holds the lock.
    virtual std::int64_t Lock(int file);

    /// Bytes taken from the file, 0 at its end.
    virtual std::int64_t Read(int file, std::span<std::byte> bytes);
    /// Bytes written, perhaps fewer than given.
    virtual std::int64_t Write(int file, std::span<const std::byte> bytes);
    /// Returns when the disk itself has all of a file, or the names in a folder.
    virtual std::int64_t Sync(int fileOrFolder);
    /// Replaces what has the name \p to, in one step.
    virtual std::int64_t Rename(int folder, const std::string& from, const std::string& to);
    virtual std::int64_t Remove(int folder, const std::string& name);

    static constexpr unsigned kKeep = ~0U;
};
