#pragma once

#include "omu_PrimDictionary.h"

/// A dictionary of interpreter objects, each as an omu_PyObjectWrapper. It cannot be persisted.
template <class Key>
class CAE_API omu_DictPyObjectWrapper : public omu_PrimDictionary<Key> {
public:
    static constexpr unsigned int TypeId() noexcept {
        return omu_PrimDictionary<Key>::kHasIntKeys ? 0x13002B : 0x13002C;
    }

    explicit omu_DictPyObjectWrapper(char code = omu_PrimDictionaryBase::kCode)
        : omu_PrimDictionary<Key>(code) {}
    ~omu_DictPyObjectWrapper() override;

    [[nodiscard]] omu_Primitive* Copy() const override;
    [[nodiscard]] unsigned int DynTypeId() const override { return TypeId(); }
    void DBWrite(const cls_WriteVisitor& visitor) const override;

    /// Stores \p object, to which the dictionary takes a reference, under \p key.
    void PutObject(const Key& key, void* object);
    /// The interpreter object under \p key; null when there is none.
    [[nodiscard]] void* Object(const Key& key) const;
};

extern template class CAE_API omu_DictPyObjectWrapper<int>;
extern template class CAE_API omu_DictPyObjectWrapper<cow_String>;
