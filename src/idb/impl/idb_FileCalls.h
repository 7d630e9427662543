#pragma once

#include "idb_FileSystem.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

/// Makes \p call, again and again while signals interrupt it.
template <class Call>
std::int64_t idb_Uninterrupted(Call call) {
    std::int64_t result;
    do {
        result = call();
    } while (result == -EINTR);
    return result;
}

/// As many of \p bytes as one call takes: some systems refuse more.
template <class Byte>
std::span<Byte> idb_OneCall(std::span<Byte> bytes) {
    constexpr std::size_t kMost = std::size_t{1} << 30U;
    return bytes.first(std::min(bytes.size(), kMost));
}

/// An open file or folder, closed in the end.
class idb_OpenFile {
public:
    explicit idb_OpenFile(idb_FileSystem& fileSystem) noexcept : _fileSystem(fileSystem) {}
    ~idb_OpenFile() { static_cast<void>(Close()); }
    idb_OpenFile(const idb_OpenFile&) = delete;
    idb_OpenFile& operator=(const idb_OpenFile&) = delete;

    /// Takes what an opening call gives; returns it.
    template <class Call>
    std::int64_t Open(Call call) {
        static_cast<void>(Close());
        const std::int64_t result = idb_Uninterrupted(call);
        if (result >= 0) {
            _file = static_cast<int>(result);
        }
        return result;
    }

    /// Interrupted or not, the file is closed afterwards: to try again might close another file
    /// that has got the same number.
    std::int64_t Close() {
        if (_file < 0) {
            return 0;
        }
        const std::int64_t result = _fileSystem.Close(std::exchange(_file, -1));
        return result == -EINTR || result == -EINPROGRESS ? 0 : result;
    }

    [[nodiscard]] int operator*() const noexcept { return _file; }

private:
    idb_FileSystem& _fileSystem;
    int _file = -1;
};
