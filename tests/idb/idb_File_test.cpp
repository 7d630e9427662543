#include "idb_FaultySystem.h"
#include "idb_FileLoad.h"
#include "idb_FileSave.h"
#include "test_Raised.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

const std::string kOld = "the old content, which nobody may lose";
const std::string kNew = "new content";
const std::string kLeftOver = ".model.cae.saving~";

class idb_File : public testing::Test {
protected:
    idb_File() { fs::create_directories(_folder); }
    ~idb_File() override {
        fs::remove_all(_folder);
        EXPECT_EQ(NextDescriptor(), _descriptor) << "a file stayed open";
    }

    /// Starts from an empty folder: nothing there, an old file, or an old file behind a link
    /// beside a left-over.
    void SetUpCase(int kind) {
        fs::remove_all(_folder);
        fs::create_directories(_folder);
        if (kind > 0) {
            Put("model.cae", kOld);
            ::chmod(Path("model.cae").c_str(), 0640);
        }
        if (kind == 2) {
            Put(kLeftOver, "left");
            fs::create_symlink("model.cae", Path("link"));
        }
        path = Path(kind == 2 ? "link" : "model.cae");
    }

    [[nodiscard]] std::string Path(const std::string& name) const { return _folder + "/" + name; }
    void Put(const std::string& name, const std::string& text) const {
        std::ofstream(Path(name)) << text;
    }
    /// Content of the file behind the path; empty where there is none.
    [[nodiscard]] std::string Content() const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    [[nodiscard]] std::set<std::string> Names() const {
        std::set<std::string> names;
        for (const fs::directory_entry& entry : fs::directory_iterator(_folder)) {
            names.insert(entry.path().filename());
        }
        return names;
    }
    [[nodiscard]] unsigned Permissions(const std::string& name) const {
        return static_cast<unsigned>(fs::status(Path(name)).permissions());
    }

    void Save(const std::string& text, idb_FileSystem& system = idb_FileSystem::System()) const {
        idb_FileSave(path, std::as_bytes(std::span(text)), system);
    }
    /// The calls of a save without faults.
    [[nodiscard]] std::vector<std::string> Calls(int kind) {
        SetUpCase(kind);
        idb_FaultySystem system;
        Save(kNew, system);
        EXPECT_EQ(Content(), kNew);
        EXPECT_FALSE(Names().contains(kLeftOver));
        return system.calls;
    }
    static std::size_t Last(const std::vector<std::string>& calls, const std::string& name) {
        return static_cast<std::size_t>(calls.rend() -
                                        std::find(calls.rbegin(), calls.rend(), name) - 1);
    }
    /// Runs \p action in a process of its own; what waitpid says of it.
    template <class Action>
    static int InChild(Action action) {
        const pid_t child = ::fork();
        if (child == 0) {
            action();
            ::_exit(0);
        }
        int status = -1;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        return status;
    }
    /// After any mishap: the next save works and leaves nothing behind.
    void ExpectNextSaveCleans() {
        idb_FaultySystem system;
        Save("next", system);
        EXPECT_EQ(Content(), "next");
        EXPECT_FALSE(Names().contains(kLeftOver));
    }

    std::string path;

private:
    static int NextDescriptor() {
        const int next = ::dup(0);
        ::close(next);
        return next;
    }

    const int _descriptor = NextDescriptor();
    const std::string _folder = testing::TempDir() + "idb_File_" + std::to_string(::getpid());
};

TEST_F(idb_File, EverythingIsOnTheDiskBeforeTheNameChanges) {
    const std::vector<std::string> expected{"readlink", "folder", "stat",        "access", "create",
                                            "lock",     "fstat",  "stat",        "write",  "write",
                                            "write",    "chown",  "chmod",       "sync",   "dup",
                                            "close",    "rename", "sync folder", "close",  "close"};
    EXPECT_EQ(Calls(1), expected);
}

TEST_F(idb_File, AnyFailingCallLeavesOneWholeFileAndSaysWhy) {
    struct Fault {
        int error;
        bool isLasting;
    };
    static constexpr Fault kFaults[] = {{ENOSPC, false}, {ENOSPC, true}, {EIO, false},  {EIO, true},
                                        {EDQUOT, false}, {EDQUOT, true}, {EINTR, false}};
    for (const int kind : {0, 1, 2}) {
        const std::vector<std::string> calls = Calls(kind);
        const std::size_t renaming = Last(calls, "rename");
        const auto isHarmless = [&](std::size_t k) {
            return calls[k] == "lock" || calls[k] == "chown" ||
                   (calls[k] == "close" && k + 1 != renaming);
        };
        for (std::size_t k = 0; k < calls.size(); ++k) {
            std::size_t harmful = k;
            while (harmful < calls.size() && isHarmless(harmful)) {
                ++harmful;
            }
            for (const auto& [error, isLasting] : kFaults) {
                SCOPED_TRACE("case " + std::to_string(kind) + ", call " + std::to_string(k) + " " +
                             calls[k] + ", error " + std::to_string(error) +
                             (isLasting ? " from then on" : ""));
                SetUpCase(kind);
                idb_FaultySystem system;
                system.first = k;
                system.error = error;
                system.isLasting = isLasting;
                const std::string message =
                    test_Message<idb_FileErrorException>([&] { Save(kNew, system); });

                const bool fails =
                    error != EINTR && (isLasting ? harmful < calls.size() : harmful == k);
                if (fails) {
                    EXPECT_TRUE(message.starts_with(k > renaming ? "Saved " : "Cannot save "));
                    EXPECT_NE(message.find(path), std::string::npos) << message;
                    EXPECT_NE(message.find(idb_FileErrorException::CauseText(error)),
                              std::string::npos)
                        << message;
                } else {
                    EXPECT_EQ(message, "nothing was raised");
                }
                const bool isNew = !fails || k > renaming;
                EXPECT_EQ(Content(), isNew ? kNew : kind > 0 ? kOld : "");
                if (isNew || (!isLasting && k >= Last(calls, "create"))) {
                    EXPECT_FALSE(Names().contains(kLeftOver));
                }
                ExpectNextSaveCleans();
            }
        }
    }
}

TEST_F(idb_File, AProcessKilledAtAnyCallLeavesOneWholeFile) {
    for (const int kind : {0, 1, 2}) {
        const std::vector<std::string> calls = Calls(kind);
        const std::size_t renaming = Last(calls, "rename");
        for (std::size_t k = 0; k < calls.size(); ++k) {
            for (const bool isBefore : {true, false}) {
                SCOPED_TRACE("case " + std::to_string(kind) + (isBefore ? ", before" : ", after") +
                             " call " + std::to_string(k) + " " + calls[k]);
                SetUpCase(kind);
                const int status = InChild([&] {
                    idb_FaultySystem system;
                    system.first = k;
                    (isBefore ? system.before : system.after) = [] { ::raise(SIGKILL); };
                    Save(kNew, system);
                });
                EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << status;
                const bool isNew = isBefore ? k > renaming : k >= renaming;
                EXPECT_EQ(Content(), isNew ? kNew : kind > 0 ? kOld : "");
                ExpectNextSaveCleans();
            }
        }
    }
}

TEST_F(idb_File, AnotherSaveAtAnyCallMixesNothing) {
    for (const int kind : {0, 1, 2}) {
        const std::size_t count = Calls(kind).size();
        for (std::size_t k = 0; k < count; ++k) {
            SCOPED_TRACE("case " + std::to_string(kind) + ", call " + std::to_string(k));
            SetUpCase(kind);
            std::string other;
            idb_FaultySystem system;
            system.first = k;
            system.before = [&] {
                other = test_Message<idb_FileErrorException>([&] { Save("the other"); });
            };
            const std::string own =
                test_Message<idb_FileErrorException>([&] { Save(kNew, system); });
            const std::string done = "nothing was raised";
            for (const std::string& message : {own, other}) {
                EXPECT_TRUE(message == done || message.find("(EBUSY)") != std::string::npos)
                    << message;
            }
            EXPECT_TRUE(own == done || other == done);
            const bool isOwn = own == done && (other != done || k <= Last(system.calls, "rename"));
            EXPECT_EQ(Content(), isOwn ? kNew : "the other");
            EXPECT_FALSE(Names().contains(kLeftOver));
        }
    }

    // The other save is through and a third has left its temporary, when ours asks for the lock.
    const std::vector<std::string> calls = Calls(1);
    SetUpCase(1);
    idb_FaultySystem system;
    system.first = Last(calls, "lock");
    system.before = [&] {
        Save("the other");
        Put(kLeftOver, "half");
    };
    Save(kNew, system);
    EXPECT_EQ(Content(), kNew);
    EXPECT_FALSE(Names().contains(kLeftOver));
}

TEST_F(idb_File, AFullDiskLeavesTheOldFile) {
    SetUpCase(1);
    const int status = InChild([&] {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{4096, 4096};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const std::string message = test_Message<idb_FileErrorException>(
            [&] { Save(std::string(std::size_t{1} << 16U, 'x')); });
        ::_exit(message == "Cannot save " + path +
                               ": the file would be larger than the system allows (EFBIG) while "
                               "writing"
                    ? 77
                    : 1);
    });
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 77) << status;
    EXPECT_EQ(Content(), kOld);
    EXPECT_EQ(Names(), std::set<std::string>{"model.cae"});
}

TEST_F(idb_File, MessagesInFull) {
    static constexpr struct {
        const char* call;
        int error;
        const char* start;
        const char* end;
    } kCases[] = {
        {"write", 0, "Cannot save ", ": the disk reports an error (EIO) while writing"},
        {"rename", 1234, "Cannot save ", ": error 1234 while renaming the temporary file"},
        {"sync folder", EIO, "Saved ",
         ", but a crash of the machine may undo it: the disk reports an error (EIO) while "
         "flushing the folder to the disk"},
    };
    for (const auto& [call, error, start, end] : kCases) {
        SetUpCase(1);
        idb_FaultySystem system;
        system.always = call;
        system.error = error;
        EXPECT_EQ(test_Message<idb_FileErrorException>([&] { Save(kNew, system); }),
                  start + path + end);
    }
}

TEST_F(idb_File, PermissionsAndLinksStay) {
    const mode_t mask = ::umask(027);
    SetUpCase(0);
    Save(kNew);
    ::umask(mask);
    EXPECT_EQ(Permissions("model.cae"), 0640U);

    ::chmod(path.c_str(), 0674);
    Save(kOld);
    EXPECT_EQ(Permissions("model.cae"), 0674U);
    // Until it is complete, the owner alone sees the new one; a group that cannot be kept then
    // gets no more than others have.
    idb_FaultySystem watched;
    watched.first = 8;
    watched.before = [&] {
        EXPECT_EQ(watched.calls.back(), "write");
        EXPECT_EQ(Permissions(kLeftOver), 0600U);
    };
    Save(kNew, watched);
    EXPECT_EQ(Permissions("model.cae"), 0674U);
    idb_FaultySystem refusing;
    refusing.always = "chown";
    refusing.error = EPERM;
    Save(kNew, refusing);
    EXPECT_EQ(Permissions("model.cae"), 0644U);

    fs::create_directories(Path("sub/deeper"));
    fs::create_symlink("../a", Path("sub/b"));
    fs::create_symlink(Path("sub/b"), Path("c"));
    path = Path("c");
    Save("through links that led nowhere");
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_TRUE(fs::is_regular_file(Path("a")));
    EXPECT_EQ(Content(), "through links that led nowhere");

    std::string longest = "d";
    while (longest.size() < 255) {
        longest += "\xC3\xA4";
    }
    path = Path(longest);
    idb_FaultySystem writing;
    writing.first = 7;
    writing.before = [&] {
        EXPECT_TRUE(Names().contains("." + longest.substr(0, 245) + ".saving~"));
    };
    Save(kNew, writing);
    EXPECT_EQ(Content(), kNew);
}

TEST_F(idb_File, WhatChunksThrowPassesThrough) {
    SetUpCase(1);
    int given = 0;
    const idb_FileChunks chunks = [&] {
        if (++given == 3) {
            throw std::runtime_error("third chunk");
        }
        return std::as_bytes(std::span(kNew));
    };
    EXPECT_THROW(idb_FileSave(path, chunks), std::runtime_error);
    EXPECT_EQ(Content(), kOld);
    EXPECT_EQ(Names(), std::set<std::string>{"model.cae"});
}

TEST_F(idb_File, WhatIsNoFileIsRefused) {
    SetUpCase(1);
    fs::create_directory(Path("folder"));
    fs::create_symlink("loop", Path("loop"));
    ::mkfifo(Path("pipe").c_str(), 0600);
    static constexpr struct {
        const char* name;
        const char* saving;
        const char* reading;
    } kCases[] = {
        {"folder", "it is a folder (EISDIR) while finding the file", "it is a folder (EISDIR)"},
        {"folder/", "it is a folder (EISDIR) while finding the file", "it is a folder (EISDIR)"},
        {"loop", "too many symbolic links (ELOOP) while finding the file",
         "too many symbolic links (ELOOP)"},
        {"pipe", "it is not a regular file", "it is not a regular file"},
        {"none/a", "no such file or folder (ENOENT) while opening the folder",
         "no such file or folder (ENOENT)"},
        {"model.cae/a", "a part of the path is not a folder (ENOTDIR) while finding the file",
         "a part of the path is not a folder (ENOTDIR)"},
    };
    for (const auto& [name, saving, reading] : kCases) {
        path = Path(name);
        EXPECT_EQ(test_Message<idb_FileErrorException>([&] { Save(kNew); }),
                  "Cannot save " + path + ": " + saving);
        EXPECT_EQ(test_Message<idb_FileErrorException>(
                      [&] { static_cast<void>(idb_FileLoad(path, 100)); }),
                  "Cannot read " + path + ": " + reading);
    }
    path = Path("model.cae") + std::string(1, '\0') + "a";
    EXPECT_NE(test_Message<idb_FileErrorException>([&] { Save(kNew); }).find("(EINVAL)"),
              std::string::npos);
    fs::create_directory(Path(kLeftOver));
    path = Path("model.cae");
    EXPECT_EQ(test_Message<idb_FileErrorException>([&] { Save(kNew); }),
              "Cannot save " + path +
                  ": it is a folder (EISDIR) while removing the left-over of an earlier save");
    EXPECT_EQ(Content(), kOld);
}

TEST_F(idb_File, LoadingTakesTheWholeFileOrNothing) {
    SetUpCase(1);
    const auto load = [&](std::uint64_t limit, idb_FileSystem& system) {
        const std::vector<std::byte> bytes = idb_FileLoad(path, limit, system);
        return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    };
    const auto message = [&](std::uint64_t limit, idb_FileSystem& system) {
        return test_Message<idb_FileErrorException>([&] { load(limit, system); });
    };
    const std::string start = "Cannot read " + path + ": ";
    idb_FaultySystem whole;
    EXPECT_EQ(load(kOld.size(), whole), kOld);
    const std::vector<std::string> calls = whole.calls;
    EXPECT_EQ(message(kOld.size() - 1, whole),
              start + "it has 38 bytes, more than the limit of 37");
    for (std::size_t k = 0; k < calls.size(); ++k) {
        idb_FaultySystem broken;
        broken.first = k;
        broken.error = EIO;
        if (calls[k] != "close") {
            EXPECT_EQ(message(100, broken), start + "the disk reports an error (EIO)");
        }
        idb_FaultySystem interrupted;
        interrupted.first = k;
        interrupted.error = EINTR;
        EXPECT_EQ(load(100, interrupted), kOld);
    }
    idb_FaultySystem shorter;
    shorter.extraSize = 1;
    EXPECT_EQ(message(100, shorter), start + "it became shorter while it was read");
    idb_FaultySystem longer;
    longer.extraSize = ~std::uint64_t{0};
    EXPECT_EQ(message(100, longer), start + "it became longer while it was read");
}

}  // namespace
