#pragma once

#include "CaeUtilsExport.h"
#include "cls_Fields.h"
#include "cow_COW.h"
#include "cow_Virtual.h"
#include "nex_CommandException.h"

#include <concepts>
#include <string_view>

/// A text argument of an error: taken from any of the string types. Null counts as empty.
struct uti_ErrorText {
    explicit(false) uti_ErrorText(atr_String given) noexcept : text(std::move(given)) {}
    explicit(false) uti_ErrorText(const char* given) : text(given) {}
    template <std::convertible_to<std::string_view> Text>
    explicit(false) uti_ErrorText(const Text& given) : text(std::string_view(given)) {}

    atr_String text;
};

/// What every persistent command error has in common: \p Class derives from it and gives
/// `static constexpr cls_ClassInfo kClass` and `static constexpr const char* kPythonType`; its
/// fields, if any, stand in a private `static constexpr auto Fields()` (befriend cls_Access).
///
/// The virtual operations keep the order of nex_Exception and nex_CommandException; none is added.
template <class Class, class BaseClass = nex_CommandException>
class CAE_API uti_CommandException : public BaseClass {
public:
    static constexpr unsigned TypeId() noexcept { return Class::kClass.typeId; }

    [[nodiscard]] unsigned DynTypeId() const override { return TypeId(); }
    void DBWrite(const cls_WriteVisitor& visitor) const override {
        cls_WriteLevel(static_cast<const Class&>(*this), _uid, visitor);
    }
    [[nodiscard]] cow_String PythonType() const override { return Class::kPythonType; }

    /// The identity under which the error is stored; none until it was read or NewUid was called.
    [[nodiscard]] const cls_Uid& Uid() const noexcept { return _uid; }
    void NewUid() noexcept { _uid = cls_Uid::AllocateUid(); }

    /// Called by the metadata registrar.
    static void InitializeMetadata(cls_ClassRegistrar& registrar) {
        // Every error of the family can sit in a holder of the root of exceptions, whose clone and
        // destructor are virtual.
        cls_RegisterClass<Class, cow_COW<nex_Exception, cow_Virtual<nex_Exception>>>(registrar);
    }

protected:
    uti_CommandException() = default;
    /// Reads the base level; the class that has the fields then calls ReadLevel.
    explicit uti_CommandException(const cls_ReadVisitor& visitor)
        : BaseClass(*visitor.Base(BaseClass::TypeId())) {}
    uti_CommandException(const uti_CommandException&) = default;
    uti_CommandException& operator=(const uti_CommandException&) = default;

    /// Reads the fields of \p self (this object, as the class that lists them), then the identity.
    template <class Self>
    void ReadLevel(Self& self, const cls_ReadVisitor& visitor) {
        cls_ReadFields(self, visitor);
        _uid = visitor.GetUid();
    }

private:
    friend struct cls_Access;

    using Base = BaseClass;
    static constexpr auto Fields() { return std::tuple(); }

    cls_Uid _uid;
};

/// A command error that can be raised: adds raising and copying as \p Class itself.
template <class Class, class BaseClass = nex_CommandException>
class CAE_API uti_RaisableException : public uti_CommandException<Class, BaseClass> {
public:
    [[noreturn]] void Propagate() const override { throw static_cast<const Class&>(*this); }
    [[nodiscard]] nex_Exception* Copy() const override {
        return new Class(static_cast<const Class&>(*this));
    }

protected:
    using uti_CommandException<Class, BaseClass>::uti_CommandException;
};

/// What tells the errors that carry one text apart.
struct uti_ValueErrorInfo {
    unsigned typeId;
    const char* storedName;
    const char* pythonType;
    const char* message = nullptr;  ///< with %s for the text; null where the text is the message
};

/// A command error that carries one text. \p Class derives from it and gives
/// `static constexpr uti_ValueErrorInfo kError`.
template <class Class>
class CAE_API uti_ValueException : public uti_RaisableException<Class> {
public:
    static constexpr cls_ClassInfo kClass{Class::kError.storedName, Class::kError.typeId,
                                          nex_CommandException::TypeId(), 800};
    static constexpr const char* kPythonType = Class::kError.pythonType;

    explicit uti_ValueException(uti_ErrorText value) noexcept : _value(std::move(value.text)) {}
    explicit uti_ValueException(const cls_ReadVisitor& visitor)
        : uti_RaisableException<Class>(visitor) {
        this->ReadLevel(*this, visitor);
    }

    [[nodiscard]] const atr_String& Value() const noexcept { return _value; }
    [[nodiscard]] atr_String JournalMessage() const override {
        if constexpr (Class::kError.message == nullptr) {
            return _value;
        } else {
            return atr_String::Format(Class::kError.message, _value);
        }
    }

private:
    friend struct cls_Access;

    static constexpr auto Fields() {
        return std::tuple(cls_StringField("m_Value", &uti_ValueException::_value));
    }

    atr_String _value;
};
