#include "idb_FileSave.h"

#include "idb_FileCalls.h"

#include <utility>

namespace {

/// ".<name>.saving~", cut where the system allows no name so long. Two names that differ only
/// behind the cut share it; the lock keeps their saves apart.
std::string TemporaryName(const std::string& name) {
    static constexpr char kEnding[] = ".saving~";
    constexpr std::size_t kMost = 255 - sizeof kEnding;
    std::size_t length = name.size();
    if (length > kMost) {
        length = kMost;
        while (length > 0 && (static_cast<unsigned char>(name[length]) & 0xC0U) == 0x80U) {
            --length;  // not within a UTF-8 character
        }
    }
    return "." + name.substr(0, length) + kEnding;
}

/// One save. Only the save that holds the lock of a temporary file removes or renames it; so two
/// saves of the same file never mix, and what nobody has locked is a left-over.
class Save {
public:
    Save(const std::string& path, idb_FileSystem& fileSystem)
        : _path(path), _fileSystem(fileSystem), _folder(fileSystem), _temporaryFile(fileSystem) {}
    Save(const Save&) = delete;
    Save& operator=(const Save&) = delete;

    ~Save() {
        if (_hasTemporary) {
            static_cast<void>(RemoveTemporary());  // else the next save does it
        }
    }

    void Run(const idb_FileChunks& chunks) {
        FindTarget();
        CreateTemporary();
        Write(chunks);
        if (_isReplaced) {
            KeepPermissions();
        }
        Check(idb_Uninterrupted([&] { return _fileSystem.Sync(*_temporaryFile); }),
              "flushing to the disk");
        CheckClosing();
        Check(idb_Uninterrupted([&] { return _fileSystem.Rename(*_folder, _temporary, _name); }),
              "renaming the temporary file");
        _hasTemporary = false;
        FlushFolder();
    }

private:
    [[noreturn]] void Fail(const atr_String& message, int cause) const {
        idb_FileErrorException(message, _path, cause)
            .Throw("generated/idb/impl/idb_FileSave", __LINE__);
    }
    [[noreturn]] void Fail(int cause, const char* step) const {
        Fail(atr_String::Format("Cannot save %s: %s while %s", _path,
                                idb_FileErrorException::CauseText(cause), step),
             cause);
    }

    std::int64_t Check(std::int64_t result, const char* step) const {
        if (result < 0) {
            Fail(static_cast<int>(-result), step);
        }
        return result;
    }

    /// Opens the folder behind all links and looks at what has the name there.
    void FindTarget() {
        constexpr const char* kStep = "finding the file";
        constexpr int kMostLinks = 40;
        if (_path.find('\0') != std::string::npos) {
            Fail(EINVAL, kStep);  // the system would take what stands before it for the path
        }
        std::string target = _path;
        std::string folder = FolderOf(target);
        std::string link;
        for (int links = 0;; ++links) {
            const std::int64_t result =
                idb_Uninterrupted([&] { return _fileSystem.ReadLink(target, link); });
            if (result == -EINVAL || result == -ENOENT) {
                break;  // no link; nothing there yet
            }
            Check(result, kStep);
            if (links == kMostLinks) {
                Fail(ELOOP, kStep);
            }
            target = link.starts_with('/') ? link : folder + link;
            folder = FolderOf(target);
        }
        _name = target.substr(target.rfind('/') + 1);
        if (_name.empty()) {
            Fail(target.empty() ? ENOENT : EISDIR, kStep);
        }
        _temporary = TemporaryName(_name);

        Check(_folder.Open([&] { return _fileSystem.OpenFolder(folder.empty() ? "." : folder); }),
              "opening the folder");
        const std::int64_t result =
            idb_Uninterrupted([&] { return _fileSystem.StatusAt(*_folder, _name, _old); });
        if (result == -ENOENT) {
            return;
        }
        Check(result, kStep);
        _isReplaced = true;
        if (_old.kind == idb_FileStatus::Kind::kFolder) {
            Fail(EISDIR, kStep);
        }
        if (_old.kind != idb_FileStatus::Kind::kFile) {
            Fail(atr_String::Format("Cannot save %s: it is not a regular file", _path), 0);
        }
        Check(idb_Uninterrupted([&] { return _fileSystem.CheckWritable(*_folder, _name); }), kStep);
    }

    static std::string FolderOf(const std::string& path) {
        return path.substr(0, path.rfind('/') + 1);
    }

    void CreateTemporary() {
        constexpr const char* kStep = "creating the temporary file";
        constexpr int kMostTries = 100;
        for (int i = 0; i < kMostTries; ++i) {
            // Nobody reads in the temporary what the old file would not show.
            const unsigned permissions = _isReplaced ? 0600 : 0666;
            const std::int64_t result = _temporaryFile.Open(
                [&] { return _fileSystem.Create(*_folder, _temporary, permissions); });
            if (result == -EEXIST) {
                RemoveLeftOver();
                continue;
            }
            Check(result, kStep);
            if (!Lock(_temporaryFile)) {
                Fail(EBUSY, kStep);  // it takes ours for a left-over
            }
            _hasTemporary = true;
            _hasTemporary = HasTheName(_temporaryFile, _new, kStep);
            if (_hasTemporary) {
                return;
            }
        }
        Fail(EBUSY, kStep);
    }

    void RemoveLeftOver() {
        constexpr const char* kStep = "removing the left-over of an earlier save";
        idb_OpenFile leftOver(_fileSystem);
        const std::int64_t result =
            leftOver.Open([&] { return _fileSystem.OpenToLock(*_folder, _temporary); });
        if (result == -ENOENT) {
            return;  // it was another save's, which is through
        }
        Check(result, kStep);
        if (!Lock(leftOver)) {
            Fail(EBUSY, kStep);
        }
        idb_FileStatus status;
        if (!HasTheName(leftOver, status, kStep)) {
            return;
        }
        if (status.kind != idb_FileStatus::Kind::kFile) {
            Fail(EEXIST, kStep);
        }
        Check(RemoveTemporary(), kStep);
    }

    std::int64_t RemoveTemporary() {
        return idb_Uninterrupted([&] { return _fileSystem.Remove(*_folder, _temporary); });
    }

    /// False where another save holds the lock. A file system without locks saves all the same.
    bool Lock(const idb_OpenFile& file) {
        return idb_Uninterrupted([&] { return _fileSystem.Lock(*file); }) != -EWOULDBLOCK;
    }

    /// Whether \p file still has the temporary's name, which it may lose before it is locked.
    bool HasTheName(const idb_OpenFile& file, idb_FileStatus& status, const char* step) {
        Check(idb_Uninterrupted([&] { return _fileSystem.Status(*file, status); }), step);
        idb_FileStatus named;
        const std::int64_t result =
            idb_Uninterrupted([&] { return _fileSystem.StatusAt(*_folder, _temporary, named); });
        if (result == -ENOENT) {
            return false;
        }
        Check(result, step);
        return named.IsSameFile(status);
    }

    void Write(const idb_FileChunks& chunks) {
        constexpr const char* kStep = "writing";
        for (auto left = chunks(); !left.empty(); left = chunks()) {
            while (!left.empty()) {
                const std::int64_t count =
                    Check(idb_Uninterrupted([&] {
                              return _fileSystem.Write(*_temporaryFile, idb_OneCall(left));
                          }),
                          kStep);
                if (count == 0) {
                    Fail(EIO, kStep);  // it would go on for ever
                }
                left = left.subspan(static_cast<std::size_t>(count));
            }
        }
    }

    void KeepPermissions() {
        unsigned permissions = _old.permissions;
        const bool isOwned = (_new.owner == _old.owner && _new.group == _old.group) ||
                             ChangeOwner(_old.owner, _old.group) || _new.group == _old.group ||
                             ChangeOwner(idb_FileSystem::kKeep, _old.group);
        if (!isOwned) {
            // What the old group might do is not for another one, beyond what is for everybody.
            permissions &= ~070U | (permissions << 3U);
        }
        // Some file systems have the same permissions everywhere and refuse to change them.
        if (permissions != _new.permissions) {
            Check(idb_Uninterrupted(
                      [&] { return _fileSystem.ChangePermissions(*_temporaryFile, permissions); }),
                  "keeping the permissions");
        }
    }

    bool ChangeOwner(unsigned owner, unsigned group) {
        return idb_Uninterrupted(
                   [&] { return _fileSystem.ChangeOwner(*_temporaryFile, owner, group); }) >= 0;
    }

    /// Network file systems may tell of a failed write only here. The file itself stays open,
    /// which keeps it locked until it has its name.
    void CheckClosing() {
        constexpr const char* kStep = "closing";
        idb_OpenFile duplicate(_fileSystem);
        Check(duplicate.Open([&] { return _fileSystem.Duplicate(*_temporaryFile); }), kStep);
        Check(duplicate.Close(), kStep);
    }

    void FlushFolder() {
        const std::int64_t result = idb_Uninterrupted([&] { return _fileSystem.Sync(*_folder); });
        // The former two: the file system flushes no folders.
        if (result < 0 && result != -EINVAL && result != -ENOTSUP) {
            const int cause = static_cast<int>(-result);
            Fail(atr_String::Format("Saved %s, but a crash of the machine may undo it: %s while "
                                    "flushing the folder to the disk",
                                    _path, idb_FileErrorException::CauseText(cause)),
                 cause);
        }
    }

    const std::string& _path;
    idb_FileSystem& _fileSystem;
    std::string _name;       // in the folder, behind links
    std::string _temporary;  // likewise
    idb_OpenFile _folder;
    idb_OpenFile _temporaryFile;  // open and locked from its creation to the end
    idb_FileStatus _old;          // where one is replaced
    idb_FileStatus _new;          // as created
    bool _isReplaced = false;
    bool _hasTemporary = false;
};

}  // namespace

void idb_FileSave(const std::string& path, const idb_FileChunks& chunks,
                  idb_FileSystem& fileSystem) {
    Save(path, fileSystem).Run(chunks);
}

void idb_FileSave(const std::string& path, std::span<const std::byte> bytes,
                  idb_FileSystem& fileSystem) {
    idb_FileSave(
        path, [left = bytes]() mutable { return std::exchange(left, {}); }, fileSystem);
}
