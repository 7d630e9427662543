#include "omu_PrimException.h"

#include "cls_Shared.h"
#include "nex_TextException.h"

#include <utility>

omu_PrimException::omu_PrimException(const nex_Exception& exception, cow_String message)
    : omu_PrimLevel('E'), _exception(exception.Copy()), _message(std::move(message)) {}

omu_PrimException::omu_PrimException(const cls_ReadVisitor& visitor)
    : omu_PrimLevel(visitor), _uid(visitor.GetUid()) {
    cls_ReadFields<omu_PrimException>(*this, visitor);
}

omu_PrimException::~omu_PrimException() = default;

cow_String omu_PrimException::AsString(int) const { return "omu_PrimException object"; }

bool omu_PrimException::operator==(const omu_Primitive& other) const {
    const auto* carrier = omu_PrimCast<omu_PrimException>(other);
    if (carrier == nullptr || _message != carrier->_message) {
        return false;
    }
    const nex_Exception* mine = Exception();
    const nex_Exception* theirs = carrier->Exception();
    if (mine == nullptr || theirs == nullptr) {
        return mine == theirs;
    }
    return mine->DynTypeId() == theirs->DynTypeId() && mine->AsString() == theirs->AsString();
}

void omu_PrimException::Propagate() const {
    if (const nex_Exception* exception = Exception()) {
        exception->Propagate();
    }
    nex_TextException(atr_String(_message.View()))
        .Throw("generated/omu/impl/omu_PrimException", __LINE__);
}

const nex_Exception* omu_PrimException::Exception() const noexcept {
    return _exception.IsNull() ? nullptr : &*_exception;
}

void omu_PrimException::ExceptionField::Write(const cls_WriteVisitor& visitor, const char* name,
                                              const Holder& held) {
    cls_WriteShared(visitor, name, held);
}

void omu_PrimException::ExceptionField::Read(const cls_ReadVisitor& visitor, const char* name,
                                             Holder& held) {
    cls_ReadShared(visitor, name, nex_Exception::TypeId(), held);
}
