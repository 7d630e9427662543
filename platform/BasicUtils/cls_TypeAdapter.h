#pragma once

#include "cls_AbsTypeAdapter.h"

/// Metadata of a concrete persistent class T: adds construction from a reader.
template <class T>
class cls_TypeAdapter : public cls_AbsTypeAdapter<T> {
public:
    using cls_AbsTypeAdapter<T>::cls_AbsTypeAdapter;

    [[nodiscard]] void* Ctor(const cls_ReadVisitor& reader) const override { return new T(reader); }
};
