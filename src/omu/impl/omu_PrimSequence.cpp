#include "omu_PrimSequence.h"

omu_PrimSequence::omu_PrimSequence(const cls_ReadVisitor& visitor)
    : omu_Primitive(*visitor.Base(Base::TypeId())), _uid(visitor.GetUid()) {}

cow_String omu_PrimSequence::TypeString() const { return "PrimSequence"; }

unsigned int omu_PrimSequence::DynTypeId() const { return TypeId(); }

void omu_PrimSequence::DBWrite(const cls_WriteVisitor& visitor) const {
    cls_WriteLevel<omu_PrimSequence>(*this, _uid, visitor);
}

void omu_PrimSequence::InitializeMetadata(cls_ClassRegistrar& registrar) {
    cls_RegisterClass<omu_PrimSequence, omu_PrimHolder>(registrar);
}
