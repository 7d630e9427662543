#include "cls_ClassMetadata.h"

#include "cls_Shared.h"
#include "nex_TextException.h"

namespace {

constexpr const char* kSource = "generated/platform/BasicUtils/impl/cls_ClassMetadata";

[[noreturn]] void RaiseMissing(const char* format, const cow_String& name, int line) {
    nex_TextException(atr_String::Format(format, name)).Throw(kSource, line);
}

}  // namespace

cls_ReadVisitor::~cls_ReadVisitor() = default;
cls_WriteVisitor::~cls_WriteVisitor() = default;

void cls_ReadVisitor::ReadShared(const char* name, unsigned baseTypeId, const cls_HolderOps& ops,
                                 void* holder) const {
    ops.adopt(holder, ReadObject(name, baseTypeId));
}

void* cls_ReadVisitor::ReadOwned(const char* name, unsigned baseTypeId) const {
    return ReadObject(name, baseTypeId);
}

void cls_ReadVisitor::ReadReference(const char* name, unsigned, void*,
                                    void (*)(void*, void*)) const {
    RaiseMissing("this store keeps no references, such as field %s", name, __LINE__);
}

void cls_WriteVisitor::WriteShared(const char* name, const cls_ObjectRef& object,
                                   const cls_HolderRef&) const {
    WriteObject(name, object);
}

void cls_WriteVisitor::WriteOwned(const char* name, const cls_ObjectRef& object) const {
    WriteObject(name, object);
}

void cls_WriteVisitor::WriteReference(const char* name, const cls_ObjectRef&) const {
    RaiseMissing("this store keeps no references, such as field %s", name, __LINE__);
}

cls_ClassMetadata::cls_ClassMetadata(cow_String name, unsigned typeId, int version,
                                     Construct construct, unsigned baseTypeId)
    : _name(std::move(name)),
      _typeId(typeId),
      _version(version),
      _construct(construct),
      _baseTypeId(baseTypeId),
      _isConcrete(construct != nullptr) {}

cls_ClassMetadata::~cls_ClassMetadata() = default;

void cls_ClassMetadata::DBWrite(const void*, const cls_WriteVisitor&) const {
    RaiseMissing("objects of class %s cannot be written without a type adapter", _name, __LINE__);
}

void cls_ClassMetadata::Destroy(void* object) const {
    if (object != nullptr) {
        RaiseMissing("objects of class %s cannot be destroyed without a type adapter", _name,
                     __LINE__);
    }
}

void cls_ClassMetadata::DeleteCow(cow_COW<int, cow_Direct<int>>* holder) const {
    if (holder == nullptr) {
        return;
    }
    if (_deleter == nullptr) {
        RaiseMissing("class %s has no holder deleter", _name, __LINE__);
    }
    _deleter(holder);
}

void* cls_ClassMetadata::Ctor(const cls_ReadVisitor& reader) const {
    if (_construct == nullptr) {
        RaiseMissing("objects of class %s cannot be constructed", _name, __LINE__);
    }
    // The registered function takes a plain reference; every operation of a reader is const.
    return _construct(const_cast<cls_ReadVisitor&>(reader));
}

cls_ClassMetadata& cls_ClassMetadata::AddDtor(cls_CowDeleter deleter) noexcept {
    _deleter = deleter;
    return *this;
}

cls_ClassMetadata& cls_ClassMetadata::SetObjectSize(std::size_t bytes) noexcept {
    _objectSize = bytes;
    return *this;
}

void cls_ClassMetadata::SetConcrete(std::size_t objectSize) noexcept {
    _isConcrete = true;
    _objectSize = objectSize;
}

cls_ClassMetadata& cls_ClassMetadata::AddAttribute(const cls_FieldHandle& handle,
                                                   cls_AttributeType type, unsigned classId,
                                                   cls_CollectionType collection) {
    _attributes.push_back({handle, type, classId, collection});
    return *this;
}
