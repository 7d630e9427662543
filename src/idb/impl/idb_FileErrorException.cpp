#include "idb_FileErrorException.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <utility>

namespace {

struct CauseRow {
    int number;
    const char* name;
    const char* text;
};

// Words of our own: the system's speak the language of the locale.
constexpr CauseRow kCauses[] = {
    {EACCES, "EACCES", "permission denied"},
    {EBADF, "EBADF", "the file is not open"},
    {EBUSY, "EBUSY", "it is in use, perhaps by another save"},
    {EDQUOT, "EDQUOT", "the disk quota is used up"},
    {EEXIST, "EEXIST", "something else has the name"},
    {EFBIG, "EFBIG", "the file would be larger than the system allows"},
    {EINVAL, "EINVAL", "the system does not take the request"},
    {EIO, "EIO", "the disk reports an error"},
    {EISDIR, "EISDIR", "it is a folder"},
    {ELOOP, "ELOOP", "too many symbolic links"},
    {EMFILE, "EMFILE", "too many open files in this process"},
    {ENAMETOOLONG, "ENAMETOOLONG", "the name is too long"},
    {ENFILE, "ENFILE", "too many open files in the system"},
    {ENODEV, "ENODEV", "there is no such device"},
    {ENOENT, "ENOENT", "no such file or folder"},
    {ENOLCK, "ENOLCK", "no locks are left"},
    {ENOMEM, "ENOMEM", "the system is short of memory"},
    {ENOSPC, "ENOSPC", "no space left on the device"},
    {ENOSYS, "ENOSYS", "this system has no such operation"},
    {ENOTDIR, "ENOTDIR", "a part of the path is not a folder"},
    {ENXIO, "ENXIO", "there is no such device"},
    {EPERM, "EPERM", "the operation is not permitted"},
    {EROFS, "EROFS", "the file system is read-only"},
    {ESTALE, "ESTALE", "the file server no longer knows the file"},
    {ETIMEDOUT, "ETIMEDOUT", "the file server does not answer"},
    {ETXTBSY, "ETXTBSY", "it is a running program"},
};

}  // namespace

idb_FileErrorException::idb_FileErrorException(atr_String message, std::string path,
                                               int cause) noexcept
    : nex_TextException(std::move(message)), _path(std::move(path)), _cause(cause) {}

idb_FileErrorException::~idb_FileErrorException() = default;

std::string idb_FileErrorException::CauseText(int cause) {
    const CauseRow* const known =
        std::find_if(std::begin(kCauses), std::end(kCauses),
                     [&](const CauseRow& row) { return row.number == cause; });
    if (known == std::end(kCauses)) {
        return "error " + atr_StringBase::FromInt(cause);
    }
    return std::string(known->text) + " (" + known->name + ")";
}

void idb_FileErrorException::Propagate() const { throw idb_FileErrorException(*this); }

nex_Exception* idb_FileErrorException::Copy() const { return new idb_FileErrorException(*this); }
