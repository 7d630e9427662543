#include "idb_FileLoad.h"

#include "idb_FileCalls.h"

namespace {

[[noreturn]] void Fail(int line, const std::string& path, const std::string& why, int cause = 0) {
    idb_FileErrorException(atr_String::Format("Cannot read %s: %s", path, why), path, cause)
        .Throw("generated/idb/impl/idb_FileLoad", line);
}

}  // namespace

std::vector<std::byte> idb_FileLoad(const std::string& path, std::uint64_t limit,
                                    idb_FileSystem& fileSystem) {
    const auto check = [&path](std::int64_t result) {
        if (result < 0) {
            const int cause = static_cast<int>(-result);
            Fail(__LINE__, path, idb_FileErrorException::CauseText(cause), cause);
        }
        return static_cast<std::size_t>(result);
    };

    if (path.find('\0') != std::string::npos) {
        check(-EINVAL);  // the system would take what stands before it for the path
    }
    idb_OpenFile file(fileSystem);
    check(file.Open([&] { return fileSystem.OpenToRead(path); }));
    idb_FileStatus status;
    check(idb_Uninterrupted([&] { return fileSystem.Status(*file, status); }));
    if (status.kind == idb_FileStatus::Kind::kFolder) {
        check(-EISDIR);
    }
    if (status.kind != idb_FileStatus::Kind::kFile) {
        Fail(__LINE__, path, "it is not a regular file");
    }
    std::vector<std::byte> bytes;
    if (status.size > std::min<std::uint64_t>(limit, bytes.max_size())) {
        Fail(__LINE__, path,
             "it has " + std::to_string(status.size) + " bytes, more than the limit of " +
                 std::to_string(limit));
    }

    bytes.resize(static_cast<std::size_t>(status.size));
    std::span<std::byte> left(bytes);
    const auto read = [&](std::span<std::byte> room) {
        return check(idb_Uninterrupted([&] { return fileSystem.Read(*file, idb_OneCall(room)); }));
    };
    while (!left.empty()) {
        const std::size_t count = read(left);
        if (count == 0) {
            Fail(__LINE__, path, "it became shorter while it was read");
        }
        left = left.subspan(count);
    }
    std::byte more{};
    if (read({&more, 1}) != 0) {
        Fail(__LINE__, path, "it became longer while it was read");
    }
    return bytes;
}
