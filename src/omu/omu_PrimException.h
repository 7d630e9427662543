#pragma once

#include "cow_COW.h"
#include "cow_Virtual.h"
#include "nex_Exception.h"
#include "omu_PrimLevel.h"

/// An error that travels as a value: kept where a value was to be made, raised again where the
/// value is used.
class CAE_API omu_PrimException : public omu_PrimLevel<omu_PrimException, omu_Primitive> {
public:
    static constexpr cls_ClassInfo kClass{"omu_PrimException", 0x13002F, 0x130011, 800};

    /// Carries no exception.
    omu_PrimException() noexcept : omu_PrimLevel('E') {}
    /// Keeps a copy of \p exception.
    explicit omu_PrimException(const nex_Exception& exception, cow_String message = {});
    explicit omu_PrimException(const cls_ReadVisitor& visitor);
    omu_PrimException(const omu_PrimException&) = default;
    omu_PrimException& operator=(const omu_PrimException&) = default;
    ~omu_PrimException() override;

    [[nodiscard]] cow_String TypeString() const override { return "exception"; }
    [[nodiscard]] cow_String AsString(int depth) const override;
    /// Whether the other carries an exception of the same class with the same texts.
    bool operator==(const omu_Primitive& other) const override;

    /// Raises the carried exception as its own class; nex_TextException with the message when there
    /// is none.
    [[noreturn]] void Propagate() const;
    /// The carried exception, owned by this value, or null.
    [[nodiscard]] const nex_Exception* Exception() const noexcept;
    [[nodiscard]] const cow_String& Message() const noexcept { return _message; }

private:
    friend struct cls_Access;

    using Holder = cow_COW<nex_Exception, cow_Virtual<nex_Exception>>;
    struct ExceptionField {
        static constexpr cls_AttributeType kType = cls_AttributeType::Object;
        static constexpr unsigned kClassId = nex_Exception::TypeId();
        static constexpr cls_CollectionType kCollection = cls_CollectionType::Single;

        static void Write(const cls_WriteVisitor& visitor, const char* name, const Holder& held);
        static void Read(const cls_ReadVisitor& visitor, const char* name, Holder& held);
    };
    static constexpr auto Fields() {
        using E = omu_PrimException;
        return std::tuple{cls_Field<E, Holder, ExceptionField>{"m_Exception", &E::_exception},
                          cls_Field{"m_Traceback", &E::_message}};
    }

    Holder _exception;
    cow_String _message;
    cls_Uid _uid;
};
