#include "mdl_Extension.h"

#include "cow_COW.h"
#include "cow_Virtual.h"

mdl_Extension::mdl_Extension(cow_String name)
    : _name(std::move(name)), _uid(cls_Uid::AllocateUid()) {}

mdl_Extension::mdl_Extension(const cls_ReadVisitor& visitor) : _uid(visitor.GetUid()) {}

mdl_Extension::~mdl_Extension() = default;

void mdl_Extension::DBWrite(const cls_WriteVisitor& visitor) const {
    cls_WriteLevel(*this, _uid, visitor);
}

void mdl_Extension::NewUid() { _uid = cls_Uid::AllocateUid(); }

void mdl_Extension::InitializeMetadata(cls_ClassRegistrar& registrar) {
    cls_RegisterClass<mdl_Extension, cow_COW<mdl_Extension, cow_Virtual<mdl_Extension>>>(registrar);
}
