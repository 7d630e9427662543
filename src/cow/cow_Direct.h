#pragma once

#include <utility>

/// Copy policy of the holders: an object is cloned with its copy constructor and lies within the
/// counted holder. For objects whose class is exactly T.
template <class T>
class cow_Direct {
public:
    /// A clone of \p object on the heap, owned by the caller.
    [[nodiscard]] static T* Copy(const T& object) { return new T(object); }
};
