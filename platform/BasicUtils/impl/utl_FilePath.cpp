#include "utl_FilePath.h"

#include <filesystem>

namespace {

std::filesystem::path AsPath(const utl_FilePath& path) {
    return std::filesystem::path(path.AsString().Std());
}

}  // namespace

bool utl_FilePath::IsAbsolute() const { return AsPath(*this).is_absolute(); }

cow_String utl_FilePath::FileName() const { return AsPath(*this).filename().string(); }

cow_String utl_FilePath::Extension() const { return AsPath(*this).extension().string(); }

utl_FilePath utl_FilePath::Directory() const {
    return utl_FilePath(AsPath(*this).parent_path().string());
}

utl_FilePath utl_FilePath::Join(const utl_FilePath& name) const {
    return utl_FilePath((AsPath(*this) / AsPath(name)).string());
}
