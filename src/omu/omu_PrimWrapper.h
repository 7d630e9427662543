#pragma once

#include "omu_InterfaceHandle.h"
#include "omu_PrimDictionary.h"
#include "omu_PrimLevel.h"

#include <memory>
#include <variant>

/// An application object as a value: an interface object, by handle, or anything opaque, shared;
/// with a dictionary of members beside it.
///
/// A wrapper equals nothing, not even itself: what it wraps has no value. It is persisted without
/// the live object: type name and members come back, the object as none.
class CAE_API omu_PrimWrapper : public omu_PrimLevel<omu_PrimWrapper, omu_Primitive> {
public:
    static constexpr cls_ClassInfo kClass{"omu_PrimWrapper", 0x13001E, 0x130011, 800};

    /// Refers to \p object, which the application owns and may delete; null wraps nothing.
    explicit omu_PrimWrapper(omu_InterfaceObj* object = nullptr);
    /// Keeps \p payload alive; \p typeName says what it is.
    omu_PrimWrapper(std::shared_ptr<void> payload, cow_String typeName);
    explicit omu_PrimWrapper(const cls_ReadVisitor& visitor);
    omu_PrimWrapper(const omu_PrimWrapper&) = default;
    omu_PrimWrapper& operator=(const omu_PrimWrapper&) = default;
    ~omu_PrimWrapper() override;

    [[nodiscard]] cow_String TypeString() const override { return "Wrapper"; }
    [[nodiscard]] cow_String AsString(int depth) const override;
    bool operator==(const omu_Primitive& other) const override;

    /// The interface object; null when it has been deleted or something else is wrapped.
    [[nodiscard]] omu_InterfaceObj* Object() const noexcept;
    /// The handle of the interface object; of none when something else is wrapped.
    [[nodiscard]] omu_InterfaceHandle Handle() const;
    /// The opaque object; null when there is none.
    [[nodiscard]] std::shared_ptr<void> Payload() const;
    /// Type name of what is, or was, wrapped.
    [[nodiscard]] const cow_String& ObjectType() const noexcept { return _objType; }

    [[nodiscard]] const omu_PrimDictionary<cow_String>& Members() const noexcept {
        return _members;
    }
    [[nodiscard]] omu_PrimDictionary<cow_String>& EditMembers() noexcept { return _members; }

private:
    friend struct cls_Access;

    using Wrapped = std::variant<omu_InterfaceHandle, std::shared_ptr<void>>;
    using MemberDict = omu_PrimDictionary<cow_String>;

    template <unsigned ClassId>
    struct SingleObject {
        static constexpr cls_AttributeType kType = cls_AttributeType::Object;
        static constexpr unsigned kClassId = ClassId;
        static constexpr cls_CollectionType kCollection = cls_CollectionType::Single;
    };
    struct ObjectField : SingleObject<1> {  // always a null object: live objects are not stored
        static void Write(const cls_WriteVisitor& visitor, const char* name, const Wrapped& object);
        static void Read(const cls_ReadVisitor& visitor, const char* name, Wrapped& object);
    };
    struct MembersField : SingleObject<MemberDict::kClass.typeId> {
        static void Write(const cls_WriteVisitor& visitor, const char* name,
                          const MemberDict& dict);
        static void Read(const cls_ReadVisitor& visitor, const char* name, MemberDict& dict);
    };
    static constexpr auto Fields() {
        using W = omu_PrimWrapper;
        return std::tuple{cls_Field{"objType", &W::_objType},
                          cls_Field<W, Wrapped, ObjectField>{"objectPtr", &W::_object},
                          cls_Field<W, MemberDict, MembersField>{"memberDict", &W::_members}};
    }

    cow_String _objType;
    Wrapped _object;
    MemberDict _members;
    cls_Uid _uid;
};
