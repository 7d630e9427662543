#include "idb_FileSystem.h"

#include <cerrno>

#if defined(__unix__) || defined(__APPLE__)
#include <climits>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

constinit idb_FileSystem theSystem;

}  // namespace

idb_FileSystem& idb_FileSystem::System() noexcept { return theSystem; }

idb_FileSystem::~idb_FileSystem() = default;

#if defined(__unix__) || defined(__APPLE__)

namespace {

std::int64_t Result(std::int64_t result) { return result < 0 ? -errno : result; }

std::int64_t Translate(int result, const struct stat& from, idb_FileStatus& to) {
    if (result < 0) {
        return -errno;
    }
    using Kind = idb_FileStatus::Kind;
    to.kind = S_ISREG(from.st_mode)   ? Kind::kFile
              : S_ISDIR(from.st_mode) ? Kind::kFolder
                                      : Kind::kOther;
    to.size = static_cast<std::uint64_t>(from.st_size);
    to.permissions = from.st_mode & 0777U;
    to.owner = from.st_uid;
    to.group = from.st_gid;
    to.device = static_cast<std::uint64_t>(from.st_dev);
    to.index = static_cast<std::uint64_t>(from.st_ino);
    return 0;
}

}  // namespace

std::int64_t idb_FileSystem::ReadLink(const std::string& path, std::string& target) {
    char text[PATH_MAX];
    const ssize_t length = ::readlink(path.c_str(), text, sizeof text);
    if (length < 0) {
        return -errno;
    }
    if (static_cast<std::size_t>(length) == sizeof text) {
        return -ENAMETOOLONG;  // perhaps cut off
    }
    target.assign(text, static_cast<std::size_t>(length));
    return 0;
}

std::int64_t idb_FileSystem::OpenFolder(const std::string& path) {
    return Result(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

std::int64_t idb_FileSystem::OpenToRead(const std::string& path) {
    return Result(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

std::int64_t idb_FileSystem::OpenToLock(int folder, const std::string& name) {
    constexpr int kFlags = O_NONBLOCK | O_NOCTTY | O_NOFOLLOW | O_CLOEXEC;
    // Network file systems lock only what is open for writing.
    const int file = ::openat(folder, name.c_str(), O_RDWR | kFlags);
    return file >= 0 || errno != EACCES ? Result(file)
                                        : Result(::openat(folder, name.c_str(), O_RDONLY | kFlags));
}

std::int64_t idb_FileSystem::Create(int folder, const std::string& name, unsigned permissions) {
    return Result(::openat(folder, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                           static_cast<mode_t>(permissions)));
}

std::int64_t idb_FileSystem::Duplicate(int file) {
    return Result(::fcntl(file, F_DUPFD_CLOEXEC, 0));
}

std::int64_t idb_FileSystem::Close(int file) { return Result(::close(file)); }

std::int64_t idb_FileSystem::Status(int file, idb_FileStatus& status) {
    struct stat system {};
    return Translate(::fstat(file, &system), system, status);
}

std::int64_t idb_FileSystem::StatusAt(int folder, const std::string& name, idb_FileStatus& status) {
    struct stat system {};
    return Translate(::fstatat(folder, name.c_str(), &system, AT_SYMLINK_NOFOLLOW), system, status);
}

std::int64_t idb_FileSystem::CheckWritable(int folder, const std::string& name) {
    return Result(::faccessat(folder, name.c_str(), W_OK, AT_EACCESS));
}

std::int64_t idb_FileSystem::ChangeOwner(int file, unsigned owner, unsigned group) {
    static_assert(static_cast<uid_t>(kKeep) == static_cast<uid_t>(-1));
    return Result(::fchown(file, owner, group));
}

std::int64_t idb_FileSystem::ChangePermissions(int file, unsigned permissions) {
    return Result(::fchmod(file, static_cast<mode_t>(permissions)));
}

std::int64_t idb_FileSystem::Lock(int file) { return Result(::flock(file, LOCK_EX | LOCK_NB)); }

std::int64_t idb_FileSystem::Read(int file, std::span<std::byte> bytes) {
    return Result(::read(file, bytes.data(), bytes.size()));
}

std::int64_t idb_FileSystem::Write(int file, std::span<const std::byte> bytes) {
    return Result(::write(file, bytes.data(), bytes.size()));
}

std::int64_t idb_FileSystem::Sync(int fileOrFolder) {
#if defined(F_FULLFSYNC)
    // There fsync leaves the bytes in the disk's own memory.
    if (::fcntl(fileOrFolder, F_FULLFSYNC) == 0) {
        return 0;
    }
#endif
    return Result(::fsync(fileOrFolder));
}

std::int64_t idb_FileSystem::Rename(int folder, const std::string& from, const std::string& to) {
    return Result(::renameat(folder, from.c_str(), folder, to.c_str()));
}

std::int64_t idb_FileSystem::Remove(int folder, const std::string& name) {
    return Result(::unlinkat(folder, name.c_str(), 0));
}

#else

using Bytes = std::span<std::byte>;
using ConstBytes = std::span<const std::byte>;
using Text = const std::string&;

std::int64_t idb_FileSystem::ReadLink(Text, std::string&) { return -ENOSYS; }
std::int64_t idb_FileSystem::OpenFolder(Text) { return -ENOSYS; }
std::int64_t idb_FileSystem::OpenToRead(Text) { return -ENOSYS; }
std::int64_t idb_FileSystem::OpenToLock(int, Text) { return -ENOSYS; }
std::int64_t idb_FileSystem::Create(int, Text, unsigned) { return -ENOSYS; }
std::int64_t idb_FileSystem::Duplicate(int) { return -ENOSYS; }
std::int64_t idb_FileSystem::Close(int) { return -ENOSYS; }
std::int64_t idb_FileSystem::Status(int, idb_FileStatus&) { return -ENOSYS; }
std::int64_t idb_FileSystem::StatusAt(int, Text, idb_FileStatus&) { return -ENOSYS; }
std::int64_t idb_FileSystem::CheckWritable(int, Text) { return -ENOSYS; }
std::int64_t idb_FileSystem::ChangeOwner(int, unsigned, unsigned) { return -ENOSYS; }
std::int64_t idb_FileSystem::ChangePermissions(int, unsigned) { return -ENOSYS; }
std::int64_t idb_FileSystem::Lock(int) { return -ENOSYS; }
std::int64_t idb_FileSystem::Read(int, Bytes) { return -ENOSYS; }
std::int64_t idb_FileSystem::Write(int, ConstBytes) { return -ENOSYS; }
std::int64_t idb_FileSystem::Sync(int) { return -ENOSYS; }
std::int64_t idb_FileSystem::Rename(int, Text, Text) { return -ENOSYS; }
std::int64_t idb_FileSystem::Remove(int, Text) { return -ENOSYS; }

#endif
