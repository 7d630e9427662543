#include "nex_Exception.h"

#include "cls_ReadVisitor.h"
#include "cls_WriteVisitor.h"
#include "nex_AssertException.h"
#include "nex_CommandException.h"
#include "nex_TextException.h"
#include "typ_ArchCompTable.h"

#include <cstdlib>

nex_Exception::~nex_Exception() = default;

atr_String nex_Exception::DeveloperReport() const {
    const typ_Entry* entry = typ_ArchCompTable::Find(DynTypeId());
    const char* className =
        entry != nullptr && entry->name != nullptr ? entry->name : "nex_Exception";
    return atr_String::Format("%s: %s (%s:%d)", className, AsString(), _sourcePath, _sourceLine);
}

atr_String nex_Exception::UserReport() const { return AsString(); }

void nex_Exception::Throw(const char* sourcePath, int line) {
    _sourcePath = sourcePath;
    _sourceLine = line;
    Propagate();
    std::abort();  // not reached; GCC forgets that a virtual function is [[noreturn]]
}

nex_CommandException::nex_CommandException(const cls_ReadVisitor& visitor)
    : _uid(visitor.GetUid()) {}

nex_CommandException::~nex_CommandException() = default;

atr_String nex_CommandException::AsString() const { return JournalMessage(); }

void nex_CommandException::DBWrite(const cls_WriteVisitor& visitor) const {
    // A level without fields: only its identity is stored.
    static_cast<void>(visitor.StartWrite(TypeId(), _uid));
}

nex_TextException::nex_TextException(atr_String message) noexcept : _message(std::move(message)) {}

nex_TextException::~nex_TextException() = default;

void nex_TextException::Propagate() const { throw nex_TextException(*this); }

nex_Exception* nex_TextException::Copy() const { return new nex_TextException(*this); }

void nex_TextException::DBWrite(const cls_WriteVisitor& visitor) const {
    if (visitor.StartWrite(TypeId(), _uid)) {
        visitor.Write("message", _message);
    }
}

nex_AssertException::nex_AssertException(atr_String expression) noexcept
    : _expression(std::move(expression)) {}

nex_AssertException::~nex_AssertException() = default;

void nex_AssertException::Propagate() const { throw nex_AssertException(*this); }

nex_Exception* nex_AssertException::Copy() const { return new nex_AssertException(*this); }

void nex_AssertException::DBWrite(const cls_WriteVisitor& visitor) const {
    if (visitor.StartWrite(TypeId(), _uid)) {
        visitor.Write("expression", _expression);
    }
}
