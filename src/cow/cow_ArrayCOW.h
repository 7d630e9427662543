#pragma once

#include "cow_COW.h"
#include "cow_Virtual.h"

/// Copy-on-write holder as an element of containers: a cow_COW built from an object that it takes
/// over, usually of a polymorphic class (cow_ArrayCOW<Shape, cow_Virtual<Shape>>). One pointer
/// wide; sharing and threads as for cow_COW.
template <class T, class Policy>
class cow_ArrayCOW : public cow_COW<T, Policy> {
public:
    using cow_COW<T, Policy>::cow_COW;

    /// A holder of a clone that shares nothing with this one.
    [[nodiscard]] cow_ArrayCOW DeepCopy() const {
        cow_ArrayCOW copy;
        cow_COW<T, Policy>::DeepCopy().Swap(copy);
        return copy;
    }
};
