#pragma once

#include "cow_String.h"

/// The path of a file or folder, as text; '/' separates, and '\\' too where the system does so.
///
/// A value; nothing here touches the file system.
class BASIC_API utl_FilePath {
public:
    utl_FilePath() noexcept = default;
    explicit utl_FilePath(cow_String path) noexcept : _path(std::move(path)) {}

    [[nodiscard]] const cow_String& AsString() const noexcept { return _path; }
    [[nodiscard]] bool IsEmpty() const noexcept { return _path.IsEmpty(); }
    [[nodiscard]] bool IsAbsolute() const;
    /// What follows the last separator: "b.odb" of "a/b.odb".
    [[nodiscard]] cow_String FileName() const;
    /// The file name's ending with its dot, ".odb"; empty where it has none.
    [[nodiscard]] cow_String Extension() const;
    /// What stands before the last separator; empty for a bare file name.
    [[nodiscard]] utl_FilePath Directory() const;
    /// \p name below this folder; an absolute \p name stands for itself.
    [[nodiscard]] utl_FilePath Join(const utl_FilePath& name) const;

    friend bool operator==(const utl_FilePath&, const utl_FilePath&) noexcept = default;

private:
    cow_String _path;
};
