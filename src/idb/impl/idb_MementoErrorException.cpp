#include "idb_MementoErrorException.h"

idb_MementoErrorException::idb_MementoErrorException(atr_String message,
                                                     std::size_t offset) noexcept
    : nex_TextException(std::move(message)), _offset(offset) {}

idb_MementoErrorException::~idb_MementoErrorException() = default;

void idb_MementoErrorException::Propagate() const { throw idb_MementoErrorException(*this); }

nex_Exception* idb_MementoErrorException::Copy() const {
    return new idb_MementoErrorException(*this);
}
