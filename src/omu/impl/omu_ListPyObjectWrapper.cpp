#include "omu_ListPyObjectWrapper.h"

#include "omu_PyObjectWrapper.h"

omu_ListPyObjectWrapper::~omu_ListPyObjectWrapper() = default;

omu_Primitive* omu_ListPyObjectWrapper::Copy() const { return new omu_ListPyObjectWrapper(*this); }

void omu_ListPyObjectWrapper::DBWrite(const cls_WriteVisitor&) const {
    omu_PyObjectWrapper::RaiseNotPersistent(TypeString());
}

void omu_ListPyObjectWrapper::AppendObject(void* object) {
    Append(new omu_PyObjectWrapper(object));
}

void* omu_ListPyObjectWrapper::Object(int index) const {
    const omu_Primitive* element = Index(index);
    const auto* wrapper =
        element != nullptr ? omu_PrimCast<omu_PyObjectWrapper>(*element) : nullptr;
    return wrapper != nullptr ? wrapper->Object() : nullptr;
}
