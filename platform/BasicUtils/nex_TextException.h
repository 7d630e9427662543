#pragma once

#include "nex_Exception.h"

/// An internal fault, told by a plain message.
class BASIC_API nex_TextException : public nex_Exception {
public:
    static constexpr unsigned TypeId() noexcept { return 0x1F0002; }

    explicit nex_TextException(atr_String message) noexcept;
    ~nex_TextException() override;

    [[nodiscard]] atr_String AsString() const override { return _message; }
    [[noreturn]] void Propagate() const override;
    [[nodiscard]] nex_Exception* Copy() const override;
    [[nodiscard]] unsigned DynTypeId() const override { return TypeId(); }
    void DBWrite(const cls_WriteVisitor& visitor) const override;

private:
    atr_String _message;
    cls_Uid _uid;
};
