#pragma once

#include "omu_Primitive.h"

/// What the interpreter bridge does for the library with the interpreter's objects, which are
/// opaque here. Any of them may be missing (null); none is called with a null object.
struct omu_PyObjectHooks {
    /// Takes one more reference. Called in a thread that may use the interpreter.
    void (*increment)(void* object) = nullptr;
    /// Gives one reference back. Called in any thread, with or without the interpreter's lock, and
    /// must not raise: take the lock, or queue the object for a thread that has it. Without this
    /// hook, as after the interpreter has ended, the object is left alone.
    void (*decrement)(void* object) noexcept = nullptr;
    cow_String (*text)(void* object) = nullptr;
    cow_String (*repr)(void* object) = nullptr;
    cow_String (*typeName)(void* object) = nullptr;
    bool (*equal)(void* left, void* right) = nullptr;
};

/// An interpreter object as a value. Copies share the object under the interpreter's count.
///
/// Make, copy, print and compare it where the interpreter may be used; it may be dropped anywhere.
/// It cannot be persisted: writing it raises nex_TextException with the type's name.
class CAE_API omu_PyObjectWrapper : public omu_Primitive {
public:
    static constexpr unsigned int TypeId() noexcept { return 0x130029; }
    static constexpr char kCode = 'o';

    /// Takes a reference of its own to \p object, which may be null.
    explicit omu_PyObjectWrapper(void* object);
    omu_PyObjectWrapper(const omu_PyObjectWrapper& other);
    omu_PyObjectWrapper& operator=(const omu_PyObjectWrapper& other);
    ~omu_PyObjectWrapper() override;

    /// Name of the object's type; "object" without the hook.
    [[nodiscard]] cow_String TypeString() const override;
    /// "<object>" without the hook, as AsRepr.
    [[nodiscard]] cow_String AsString(int depth) const override;
    [[nodiscard]] cow_String AsRepr() const override;
    /// Whether the other wraps the same object, or one that the interpreter calls equal.
    bool operator==(const omu_Primitive& other) const override;
    void Accept(omu_PrimVisitor* visitor) const override;
    [[nodiscard]] omu_Primitive* Copy() const override;
    [[nodiscard]] unsigned int DynTypeId() const override { return TypeId(); }
    void DBWrite(const cls_WriteVisitor& visitor) const override;

    /// The interpreter object, on which this wrapper holds one reference.
    [[nodiscard]] void* Object() const noexcept { return _object; }

    /// Installs the hooks and returns those before. Only while no other thread uses wrappers.
    static omu_PyObjectHooks SetHooks(const omu_PyObjectHooks& hooks) noexcept;
    /// Raises the error of a value of the type \p typeName that cannot be persisted.
    [[noreturn]] static void RaiseNotPersistent(const cow_String& typeName);

private:
    void* _object;
};
