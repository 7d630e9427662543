#pragma once

#include "nex_Exception.h"

/// A failed internal check, told by the expression that should have held.
class BASIC_API nex_AssertException : public nex_Exception {
public:
    static constexpr unsigned TypeId() noexcept { return 0x1F0004; }

    explicit nex_AssertException(atr_String expression) noexcept;
    ~nex_AssertException() override;

    /// The expression as it stood in the source.
    [[nodiscard]] atr_String AsString() const override { return _expression; }
    [[noreturn]] void Propagate() const override;
    [[nodiscard]] nex_Exception* Copy() const override;
    [[nodiscard]] unsigned DynTypeId() const override { return TypeId(); }
    void DBWrite(const cls_WriteVisitor& visitor) const override;

private:
    atr_String _expression;
    cls_Uid _uid;
};
