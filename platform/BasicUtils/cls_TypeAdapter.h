#pragma once

#include "cls_AbsTypeAdapter.h"

/// Metadata of a concrete persistent class T: adds construction from a reader.
template <class T>
class cls_TypeAdapter : public cls_AbsTypeAdapter<T> {
public:
    cls_TypeAdapter(const cow_String& name, int version, unsigned baseTypeId)
        : cls_AbsTypeAdapter<T>(name, version, baseTypeId) {
        this->SetConcrete(sizeof(T));
    }

    [[nodiscard]] void* Ctor(const cls_ReadVisitor& reader) const override { return new T(reader); }
};
