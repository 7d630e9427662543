#include "cls_xpLists.h"

#include "cow_COW.h"

template <class Container>
cls_xpList<Container>::cls_xpList(const cls_ReadVisitor& visitor) {
    cls_Access::ForEachField<cls_xpList>([&]<class Field>(const Field& field) {
        if (visitor.Has(field.name)) {
            Field::Traits::Read(visitor, field.name, *this);
        }
    });
}

template <class Container>
void cls_xpList<Container>::DBWrite(const cls_WriteVisitor& visitor) const {
    if (visitor.StartWrite(TypeId(), cls_Uid())) {
        cls_Access::ForEachField<cls_xpList>([&]<class Field>(const Field& field) {
            Field::Traits::Write(visitor, field.name, *this);
        });
    }
}

template <class Container>
void cls_xpList<Container>::InitializeMetadata(cls_ClassRegistrar& registrar) {
    cls_RegisterClass<cls_xpList, cow_COW<cls_xpList, cow_Direct<cls_xpList>>>(registrar);
}

template class cls_xpList<cow_List<int>>;
template class cls_xpList<cow_1DArray<int>>;
template class cls_xpList<cow_List<cow_String>>;
template class cls_xpList<cow_1DArrayList<float>>;
