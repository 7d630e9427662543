#pragma once

#include "omu_PrimList.h"

/// A list of interpreter objects, each as an omu_PyObjectWrapper. It cannot be persisted.
class CAE_API omu_ListPyObjectWrapper : public omu_PrimList {
public:
    static constexpr unsigned int TypeId() noexcept { return 0x13002E; }

    explicit omu_ListPyObjectWrapper(char code = omu_PrimSequence::kCode) : omu_PrimList(0, code) {}
    ~omu_ListPyObjectWrapper() override;

    [[nodiscard]] omu_Primitive* Copy() const override;
    [[nodiscard]] unsigned int DynTypeId() const override { return TypeId(); }
    void DBWrite(const cls_WriteVisitor& visitor) const override;

    /// Adds \p object, to which the list takes a reference, behind the last element.
    void AppendObject(void* object);
    /// The interpreter object of element \p index; null when the place or the element has none.
    [[nodiscard]] void* Object(int index) const;
};
