#pragma once

/// Copy policy of the holders: an object is cloned with its own virtual `T* Copy() const` and stays
/// where it was made. For objects of classes derived from T.
template <class T>
class cow_Virtual {
public:
    /// A clone of \p object on the heap, of the same class, owned by the caller.
    [[nodiscard]] static T* Copy(const T& object) { return object.Copy(); }
};
