#include "omu_PrimWrapper.h"

#include "omu_InterfaceObj.h"

#include <utility>

omu_PrimWrapper::omu_PrimWrapper(omu_InterfaceObj* object)
    : omu_PrimLevel('w'),
      _objType(object != nullptr ? object->ExposedTypeName() : ""),
      _object(omu_InterfaceHandle(object)) {}

omu_PrimWrapper::omu_PrimWrapper(std::shared_ptr<void> payload, cow_String typeName)
    : omu_PrimLevel('w'), _objType(std::move(typeName)), _object(std::move(payload)) {}

omu_PrimWrapper::omu_PrimWrapper(const cls_ReadVisitor& visitor)
    : omu_PrimLevel(visitor), _uid(visitor.GetUid()) {
    cls_ReadFields<omu_PrimWrapper>(*this, visitor);
}

omu_PrimWrapper::~omu_PrimWrapper() = default;

cow_String omu_PrimWrapper::AsString(int) const { return "Wrapper"; }

bool omu_PrimWrapper::operator==(const omu_Primitive&) const { return false; }

omu_InterfaceObj* omu_PrimWrapper::Object() const noexcept {
    const auto* handle = std::get_if<omu_InterfaceHandle>(&_object);
    return handle != nullptr ? handle->Get() : nullptr;
}

omu_InterfaceHandle omu_PrimWrapper::Handle() const {
    const auto* handle = std::get_if<omu_InterfaceHandle>(&_object);
    return handle != nullptr ? *handle : omu_InterfaceHandle();
}

std::shared_ptr<void> omu_PrimWrapper::Payload() const {
    const auto* payload = std::get_if<std::shared_ptr<void>>(&_object);
    return payload != nullptr ? *payload : nullptr;
}

void omu_PrimWrapper::ObjectField::Write(const cls_WriteVisitor& visitor, const char* name,
                                         const Wrapped&) {
    visitor.WriteObject(name, {});
}

void omu_PrimWrapper::ObjectField::Read(const cls_ReadVisitor&, const char*, Wrapped&) {
    // Nothing is stored.
}

void omu_PrimWrapper::MembersField::Write(const cls_WriteVisitor& visitor, const char* name,
                                          const MemberDict& dict) {
    visitor.WriteObject(name, cls_ObjectRef::Of(&dict));
}

void omu_PrimWrapper::MembersField::Read(const cls_ReadVisitor& visitor, const char* name,
                                         MemberDict& dict) {
    const std::unique_ptr<MemberDict> read(
        static_cast<MemberDict*>(visitor.ReadObject(name, MemberDict::TypeId())));
    if (read != nullptr) {
        dict = *read;
    }
}
