#pragma once

#include "cls_Shared.h"
#include "omu_Primitive.h"

/// One value that may be absent is stored as an object or null.
template <>
struct cls_FieldTraits<omu_PrimHolder> {
    static constexpr cls_AttributeType kType = cls_AttributeType::Object;
    static constexpr unsigned kClassId = omu_Primitive::TypeId();
    static constexpr cls_CollectionType kCollection = cls_CollectionType::Single;

    static void Write(const cls_WriteVisitor& visitor, const char* name,
                      const omu_PrimHolder& value) {
        cls_WriteShared(visitor, name, value);
    }
    static void Read(const cls_ReadVisitor& visitor, const char* name, omu_PrimHolder& value) {
        cls_ReadShared(visitor, name, omu_Primitive::TypeId(), value);
    }
};
