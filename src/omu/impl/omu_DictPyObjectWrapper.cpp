#include "omu_DictPyObjectWrapper.h"

#include "omu_PyObjectWrapper.h"

template <class Key>
omu_DictPyObjectWrapper<Key>::~omu_DictPyObjectWrapper() = default;

template <class Key>
omu_Primitive* omu_DictPyObjectWrapper<Key>::Copy() const {
    return new omu_DictPyObjectWrapper(*this);
}

template <class Key>
void omu_DictPyObjectWrapper<Key>::DBWrite(const cls_WriteVisitor&) const {
    omu_PyObjectWrapper::RaiseNotPersistent(this->TypeString());
}

template <class Key>
void omu_DictPyObjectWrapper<Key>::PutObject(const Key& key, void* object) {
    this->Put(key, new omu_PyObjectWrapper(object));
}

template <class Key>
void* omu_DictPyObjectWrapper<Key>::Object(const Key& key) const {
    const omu_Primitive* value = this->Find(key);
    const auto* wrapper = value != nullptr ? omu_PrimCast<omu_PyObjectWrapper>(*value) : nullptr;
    return wrapper != nullptr ? wrapper->Object() : nullptr;
}

template class omu_DictPyObjectWrapper<int>;
template class omu_DictPyObjectWrapper<cow_String>;
