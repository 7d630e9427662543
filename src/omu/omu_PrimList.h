#pragma once

#include "omu_PrimTuple.h"

/// The command language's list: a tuple that can grow. It prints with the tuple's round brackets.
class CAE_API omu_PrimList : public omu_PrimLevel<omu_PrimList, omu_PrimTuple> {
public:
    static constexpr cls_ClassInfo kClass{"omu_PrimList", 0x130015, 0x130019, 800};

    /// \p size empty slots.
    omu_PrimList(int size, char code) : omu_PrimList(size, size, code) {}
    /// \p rows empty slots, made to hold \p maxSize; Append goes beyond it all the same.
    omu_PrimList(int rows, int maxSize, char code) : omu_PrimLevel(rows, code), _maxSize(maxSize) {}
    explicit omu_PrimList(const cls_ReadVisitor& visitor);
    omu_PrimList(const omu_PrimList&) = default;
    omu_PrimList& operator=(const omu_PrimList& other) { return *this = omu_PrimList(other); }
    omu_PrimList(omu_PrimList&&) noexcept = default;
    omu_PrimList& operator=(omu_PrimList&&) noexcept = default;
    ~omu_PrimList() override;

    [[nodiscard]] cow_String TypeString() const override { return "list"; }
    // All three return lists.
    [[nodiscard]] omu_PrimSequence* Slice(int begin, int end) const override;
    [[nodiscard]] omu_PrimSequence* Repeat(int count) const override;
    [[nodiscard]] omu_PrimSequence* Concat(omu_PrimSequence* other) const override;

    /// Adds a slot holding \p value, which is taken over, behind the last one.
    void Append(omu_Primitive* value);
    [[nodiscard]] int MaxSize() const noexcept { return _maxSize; }

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        return std::tuple{cls_Field{"maxSize", &omu_PrimList::_maxSize}};
    }

    int _maxSize;
    cls_Uid _uid;
};
