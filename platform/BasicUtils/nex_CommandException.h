#pragma once

#include "cow_String.h"
#include "nex_Exception.h"

/// Base of the errors that a script sees: the interpreter bridge raises the command-language
/// exception PythonType() with the message JournalMessage().
class BASIC_API nex_CommandException : public nex_Exception {
public:
    static constexpr unsigned TypeId() noexcept { return 0x1F0003; }

    nex_CommandException() noexcept = default;
    explicit nex_CommandException(const cls_ReadVisitor& visitor);
    nex_CommandException(const nex_CommandException&) = default;
    nex_CommandException& operator=(const nex_CommandException&) = default;
    ~nex_CommandException() override;

    /// The journal message.
    [[nodiscard]] atr_String AsString() const override;
    [[nodiscard]] unsigned DynTypeId() const override { return TypeId(); }
    void DBWrite(const cls_WriteVisitor& visitor) const override;
    /// The message text.
    [[nodiscard]] virtual atr_String JournalMessage() const = 0;
    /// Name of the exception type in the command language.
    [[nodiscard]] virtual cow_String PythonType() const = 0;

private:
    cls_Uid _uid;
};
