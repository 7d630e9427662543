#include "omu_PrimDictionaryBase.h"

omu_PrimDictionaryBase::omu_PrimDictionaryBase(const cls_ReadVisitor& visitor)
    : omu_Primitive(*visitor.Base(Base::TypeId())), _represents(Kind()), _uid(visitor.GetUid()) {
    cls_ReadFields<omu_PrimDictionaryBase>(*this, visitor);
}

omu_PrimDictionaryBase::~omu_PrimDictionaryBase() = default;

void omu_PrimDictionaryBase::DBWrite(const cls_WriteVisitor& visitor) const {
    cls_WriteLevel<omu_PrimDictionaryBase>(*this, _uid, visitor);
}

void omu_PrimDictionaryBase::InitializeMetadata(cls_ClassRegistrar& registrar) {
    cls_RegisterClass<omu_PrimDictionaryBase, omu_PrimHolder>(registrar);
}
