#include "omu_PrimList.h"

#include "omu_SequenceCopies.h"

omu_PrimList::omu_PrimList(const cls_ReadVisitor& visitor)
    : omu_PrimLevel(visitor), _maxSize(0), _uid(visitor.GetUid()) {
    cls_ReadFields<omu_PrimList>(*this, visitor);
}

omu_PrimList::~omu_PrimList() = default;

omu_PrimSequence* omu_PrimList::Slice(int begin, int end) const {
    return omu_SequenceCopies<omu_PrimList>::Slice(*this, begin, end);
}

omu_PrimSequence* omu_PrimList::Repeat(int count) const {
    return omu_SequenceCopies<omu_PrimList>::Repeat(*this, count);
}

omu_PrimSequence* omu_PrimList::Concat(omu_PrimSequence* other) const {
    return omu_SequenceCopies<omu_PrimList>::Concat(*this, other);
}

void omu_PrimList::Append(omu_Primitive* value) {
    _cursor = _size;
    AppendOwned(value);
}
