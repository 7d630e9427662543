#pragma once

#include "CaeUtilsExport.h"
#include "nex_TextException.h"

#include <string>

/// A file could not be saved or loaded. The message names the path and the cause, in the same
/// words under every locale: "Cannot save a.cae: no space left on the device (ENOSPC) while
/// writing".
class CAE_API idb_FileErrorException : public nex_TextException {
public:
    /// \param path  as the caller gave it.
    /// \param cause  an errno, 0 where no system call failed.
    idb_FileErrorException(atr_String message, std::string path, int cause) noexcept;
    ~idb_FileErrorException() override;

    [[nodiscard]] const std::string& Path() const noexcept { return _path; }
    [[nodiscard]] int Cause() const noexcept { return _cause; }

    /// "no space left on the device (ENOSPC)"; "error 1234" for an errno not expected of files.
    [[nodiscard]] static std::string CauseText(int cause);

    [[noreturn]] void Propagate() const override;
    [[nodiscard]] nex_Exception* Copy() const override;

private:
    std::string _path;
    int _cause;
};
