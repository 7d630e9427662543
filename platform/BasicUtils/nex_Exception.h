#pragma once

#include "BasicUtilsExport.h"
#include "atr_String.h"
#include "cls_Uid.h"
#include "mem_AllocationOperators.h"

class cls_ReadVisitor;
class cls_WriteVisitor;

/// Root of the exceptions this library raises.
///
/// An exception is built, then raised by Throw, which notes where; it can be kept, copied and
/// raised again through this base without losing its class. The virtual operations stand in a
/// fixed order that derived classes extend. It deliberately has no further base: the order of
/// operations is part of the interface, so it is caught as `const nex_Exception&`.
class BASIC_API nex_Exception : public mem_AllocationOperators {
public:
    static constexpr unsigned TypeId() noexcept { return 0x1F0001; }

    virtual ~nex_Exception();
    /// Everything a developer wants: class name, message, source path and line.
    [[nodiscard]] virtual atr_String DeveloperReport() const;
    /// The message as a user should read it.
    [[nodiscard]] virtual atr_String UserReport() const;
    /// The plain message.
    [[nodiscard]] virtual atr_String AsString() const = 0;
    /// Raises a copy of this object as its own class.
    [[noreturn]] virtual void Propagate() const = 0;
    /// A new copy of the same class, owned by the caller.
    [[nodiscard]] virtual nex_Exception* Copy() const = 0;
    [[nodiscard]] virtual unsigned DynTypeId() const = 0;
    virtual void DBWrite(const cls_WriteVisitor& visitor) const = 0;

    /// Notes the raising file and line, then raises a copy of this object as its own class.
    [[noreturn]] void Throw(const char* sourcePath, int line);

    /// Where it was raised; empty and 0 before. For diagnosis only, never persisted.
    [[nodiscard]] const char* SourcePath() const noexcept { return _sourcePath; }
    [[nodiscard]] int SourceLine() const noexcept { return _sourceLine; }

protected:
    nex_Exception() noexcept = default;
    nex_Exception(const nex_Exception&) = default;
    nex_Exception& operator=(const nex_Exception&) = default;

private:
    const char* _sourcePath = "";  // a literal of the raising file
    int _sourceLine = 0;
};
