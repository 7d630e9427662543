#include "omu_PrimBool.h"

template class omu_PrimEnum<bool, 2>;
template class omu_PrimEnum<omu_BoolSelectEnum, 1>;
template class omu_PrimEnum<omu_PrimNumber::DataTypeEnm, 1>;

omu_PrimBool<2>::omu_PrimBool(const cls_ReadVisitor& visitor)
    : omu_PrimEnum(*visitor.Base(omu_PrimEnumBase::TypeId())), _uid(visitor.GetUid()) {}

omu_PrimBool<2>::~omu_PrimBool() = default;

void omu_PrimBool<2>::Accept(omu_PrimVisitor* visitor) const { visitor->Visit(*this); }

omu_Primitive* omu_PrimBool<2>::Copy() const { return new omu_PrimBool(*this); }

void omu_PrimBool<2>::DBWrite(const cls_WriteVisitor& visitor) const {
    cls_WriteLevel<omu_PrimBool>(*this, _uid, visitor);
}

void omu_PrimBool<2>::InitializeMetadata(cls_ClassRegistrar& registrar) {
    cls_RegisterClass<omu_PrimBool, omu_PrimHolder>(registrar);
}
