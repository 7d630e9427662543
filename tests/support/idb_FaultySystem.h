#pragma once

#include "idb_FileSystem.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// The system, with a fault at its n-th call. It writes and reads at most five bytes a call.
class idb_FaultySystem : public idb_FileSystem {
public:
    std::vector<std::string> calls;
    std::size_t first = ~std::size_t{0};  // call with the fault
    int error = 0;                        // the fault: this errno...
    bool isLasting = false;               // ...from then on, or once
    std::string always;                   // calls that fail each time, whatever their number
    std::function<void()> before;         // or something that happens before the call,
    std::function<void()> after;          // or behind it
    unsigned otherOwner = 1;              // 1: new files seem to be another user's
    std::uint64_t extraSize = 0;

    std::int64_t ReadLink(const std::string& path, std::string& target) override {
        return At("readlink", [&] { return System().ReadLink(path, target); });
    }
    std::int64_t OpenFolder(const std::string& path) override {
        return At("folder", [&] { return System().OpenFolder(path); });
    }
    std::int64_t OpenToRead(const std::string& path) override {
        return At("open", [&] { return System().OpenToRead(path); });
    }
    std::int64_t OpenToLock(int folder, const std::string& name) override {
        return At("open", [&] { return System().OpenToLock(folder, name); });
    }
    std::int64_t Create(int folder, const std::string& name, unsigned mode) override {
        return At("create", [&] { return System().Create(folder, name, mode); });
    }
    std::int64_t Duplicate(int file) override {
        return At("dup", [&] { return System().Duplicate(file); });
    }
    std::int64_t Close(int file) override {
        return At("close", [&] { return System().Close(file); });
    }
    std::int64_t Status(int file, idb_FileStatus& status) override {
        return At("fstat", [&] {
            const std::int64_t result = System().Status(file, status);
            status.owner += otherOwner;
            status.group += otherOwner;
            status.size += extraSize;
            return result;
        });
    }
    std::int64_t StatusAt(int folder, const std::string& name, idb_FileStatus& status) override {
        return At("stat", [&] { return System().StatusAt(folder, name, status); });
    }
    std::int64_t CheckWritable(int folder, const std::string& name) override {
        return At("access", [&] { return System().CheckWritable(folder, name); });
    }
    std::int64_t ChangeOwner(int file, unsigned owner, unsigned group) override {
        return At("chown", [&] { return System().ChangeOwner(file, owner, group); });
    }
    std::int64_t ChangePermissions(int file, unsigned permissions) override {
        return At("chmod", [&] { return System().ChangePermissions(file, permissions); });
    }
    std::int64_t Lock(int file) override {
        return At("lock", [&] { return System().Lock(file); });
    }
    std::int64_t Read(int file, std::span<std::byte> bytes) override {
        return At("read", [&] { return System().Read(file, Few(bytes)); });
    }
    std::int64_t Write(int file, std::span<const std::byte> bytes) override {
        return At("write", [&] { return System().Write(file, Few(bytes)); });
    }
    /// Counts, but saves the time: the tests do it a thousand times.
    std::int64_t Sync(int fileOrFolder) override {
        idb_FileStatus status;
        static_cast<void>(System().Status(fileOrFolder, status));
        const bool isFolder = status.kind == idb_FileStatus::Kind::kFolder;
        return At(isFolder ? "sync folder" : "sync", [] { return 0; });
    }
    std::int64_t Rename(int folder, const std::string& from, const std::string& to) override {
        return At("rename", [&] { return System().Rename(folder, from, to); });
    }
    std::int64_t Remove(int folder, const std::string& name) override {
        return At("remove", [&] { return System().Remove(folder, name); });
    }

private:
    template <class Byte>
    static std::span<Byte> Few(std::span<Byte> bytes) {
        return bytes.first(std::min<std::size_t>(bytes.size(), 5));
    }

    template <class Call>
    std::int64_t At(const char* name, Call call) {
        const std::size_t number = calls.size();
        calls.emplace_back(name);
        if (number == first && before) {
            before();
        }
        const bool fails =
            always == name || (error != 0 && (number == first || (isLasting && number > first)));
        if (fails && calls.back() != "close") {  // a close that fails has closed
            return -error;
        }
        const std::int64_t result = call();
        if (number == first && after) {
            after();
        }
        return fails ? -error : result;
    }
};
