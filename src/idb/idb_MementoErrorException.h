#pragma once

#include "CaeUtilsExport.h"
#include "nex_TextException.h"

#include <cstddef>

/// A memento that cannot be written or read. The text names, as far as they apply, the class, its
/// field, the versions and the byte where the trouble is.
class CAE_API idb_MementoErrorException : public nex_TextException {
public:
    /// Where there is no byte to name.
    static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

    explicit idb_MementoErrorException(atr_String message, std::size_t offset = kNowhere) noexcept;
    ~idb_MementoErrorException() override;

    /// Byte of the memento, from its start; kNowhere for faults of writing.
    [[nodiscard]] std::size_t Offset() const noexcept { return _offset; }

    [[noreturn]] void Propagate() const override;
    [[nodiscard]] nex_Exception* Copy() const override;

private:
    std::size_t _offset;
};
