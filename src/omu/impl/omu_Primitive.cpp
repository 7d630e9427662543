#include "omu_Primitive.h"

omu_Primitive::~omu_Primitive() = default;

omu_Primitive::omu_Primitive(const cls_ReadVisitor& visitor) : _kind('\0'), _uid(visitor.GetUid()) {
    cls_ReadFields<omu_Primitive>(*this, visitor);
}

cow_String omu_Primitive::TypeString() const { return "primitive"; }

cow_String omu_Primitive::AsRepr() const { return AsString(0); }

unsigned int omu_Primitive::DynTypeId() const { return TypeId(); }

bool omu_Primitive::IsA(unsigned int typeId) const {
    return cls_ClassRegistrar::Inherits(DynTypeId(), typeId);
}

void omu_Primitive::DBWrite(const cls_WriteVisitor& visitor) const {
    cls_WriteLevel<omu_Primitive>(*this, _uid, visitor);
}

void omu_Primitive::InitializeMetadata(cls_ClassRegistrar& registrar) {
    cls_RegisterClass<omu_Primitive, omu_PrimHolder>(registrar);
}
