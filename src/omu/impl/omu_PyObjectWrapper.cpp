#include "omu_PyObjectWrapper.h"

#include "nex_TextException.h"
#include "omu_PrimVisitor.h"

#include <utility>

namespace {

constinit omu_PyObjectHooks hooks;

void* ShareObject(void* object) {
    if (object != nullptr && hooks.increment != nullptr) {
        hooks.increment(object);
    }
    return object;
}

void DropObject(void* object) noexcept {
    if (object != nullptr && hooks.decrement != nullptr) {
        hooks.decrement(object);
    }
}

cow_String TextBy(cow_String (*hook)(void*), void* object, const char* otherwise) {
    return object != nullptr && hook != nullptr ? hook(object) : cow_String(otherwise);
}

}  // namespace

omu_PyObjectWrapper::omu_PyObjectWrapper(void* object)
    : omu_Primitive(kCode), _object(ShareObject(object)) {}

omu_PyObjectWrapper::omu_PyObjectWrapper(const omu_PyObjectWrapper& other)
    : omu_Primitive(other), _object(ShareObject(other._object)) {}

omu_PyObjectWrapper& omu_PyObjectWrapper::operator=(const omu_PyObjectWrapper& other) {
    omu_PyObjectWrapper copy(other);
    omu_Primitive::operator=(copy);
    std::swap(_object, copy._object);
    return *this;
}

omu_PyObjectWrapper::~omu_PyObjectWrapper() { DropObject(_object); }

cow_String omu_PyObjectWrapper::TypeString() const {
    return TextBy(hooks.typeName, _object, "object");
}

cow_String omu_PyObjectWrapper::AsString(int) const {
    return TextBy(hooks.text, _object, "<object>");
}

cow_String omu_PyObjectWrapper::AsRepr() const { return TextBy(hooks.repr, _object, "<object>"); }

bool omu_PyObjectWrapper::operator==(const omu_Primitive& other) const {
    const auto* wrapper = omu_PrimCast<omu_PyObjectWrapper>(other);
    if (wrapper == nullptr || _object == wrapper->_object) {
        return wrapper != nullptr;
    }
    return _object != nullptr && wrapper->_object != nullptr && hooks.equal != nullptr &&
           hooks.equal(_object, wrapper->_object);
}

void omu_PyObjectWrapper::Accept(omu_PrimVisitor* visitor) const { visitor->Visit(*this); }

omu_Primitive* omu_PyObjectWrapper::Copy() const { return new omu_PyObjectWrapper(*this); }

void omu_PyObjectWrapper::DBWrite(const cls_WriteVisitor&) const {
    RaiseNotPersistent(TypeString());
}

omu_PyObjectHooks omu_PyObjectWrapper::SetHooks(const omu_PyObjectHooks& newHooks) noexcept {
    return std::exchange(hooks, newHooks);
}

void omu_PyObjectWrapper::RaiseNotPersistent(const cow_String& typeName) {
    nex_TextException(
        atr_String::Format("An interpreter object of type '%s' cannot be persisted", typeName))
        .Throw("generated/omu/impl/omu_PyObjectWrapper", __LINE__);
}
