#include "omu_QueryPathMsg.h"

#include "cow_COW.h"

omu_QueryPathMsg::omu_QueryPathMsg(cow_List<cow_String> path, omu_PrimHolder value,
                                   bool valueIsDelta)
    : _path(std::move(path)), _value(std::move(value)), _valueIsDelta(valueIsDelta) {}

omu_QueryPathMsg::omu_QueryPathMsg(const cls_ReadVisitor& visitor) : _uid(visitor.GetUid()) {
    cls_ReadFields(*this, visitor);
}

omu_QueryPathMsg::~omu_QueryPathMsg() = default;

void omu_QueryPathMsg::DBWrite(const cls_WriteVisitor& visitor) const {
    cls_WriteLevel(*this, _uid, visitor);
}

void omu_QueryPathMsg::InitializeMetadata(cls_ClassRegistrar& registrar) {
    cls_RegisterClass<omu_QueryPathMsg, cow_COW<omu_QueryPathMsg, cow_Direct<omu_QueryPathMsg>>>(
        registrar);
}
