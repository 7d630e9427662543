#pragma once

#include "cls_ClassMetadata.h"

/// Metadata of an abstract persistent class T: writes and destroys through T's virtual operations.
template <class T>
class cls_AbsTypeAdapter : public cls_ClassMetadata {
public:
    cls_AbsTypeAdapter(const cow_String& name, int version, unsigned baseTypeId)
        : cls_ClassMetadata(name, T::TypeId(), version, nullptr, baseTypeId) {}

    void DBWrite(const void* object, const cls_WriteVisitor& writer) const override {
        static_cast<const T*>(object)->DBWrite(writer);
    }

    void Destroy(void* object) const override { delete static_cast<T*>(object); }
};
