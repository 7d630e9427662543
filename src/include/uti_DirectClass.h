#pragma once

#include "cls_Fields.h"
#include "cow_COW.h"

/// Registers the plain persistent class T without an adapter: its metadata constructs objects of
/// it and destroys copy-on-write holders of one, but neither writes nor deletes an object.
template <class T>
void uti_RegisterDirect(cls_ClassRegistrar& registrar) {
    constexpr cls_ClassInfo info = T::kClass;
    cls_ClassMetadata& metadata = registrar.CreateClassMD(
        info.storedName, info.typeId, info.version,
        [](cls_ReadVisitor& visitor) -> void* { return new T(visitor); }, info.baseTypeId);
    metadata.AddDtor(&cls_DeleteHolder<cow_COW<T, cow_Direct<T>>>).SetObjectSize(sizeof(T));
    int number = 0;
    cls_Access::ForEachField<T>([&]<class Field>(const Field& field) {
        using Traits = typename Field::Traits;
        metadata.AddAttribute(cls_FieldHandle(number++, field.name), Traits::kType,
                              Traits::kClassId, Traits::kCollection);
    });
}
