#pragma once

#include "cow_Direct.h"
#include "cow_Support.h"
#include "mem_AllocationOperatorsTiny.h"

#include <memory>
#include <type_traits>
#include <utility>

/// The reference count of a counted holder: a plain integer, for one thread at a time.
///
/// A class that is mostly kept in holders may derive from it; its objects then carry their own
/// count and need no body beside them.
class cow_HolderCount : public mem_AllocationOperatorsTiny {
public:
    [[nodiscard]] int HolderCount() const noexcept { return _count; }
    void AddHolder() noexcept { ++_count; }
    /// True when the last holder is gone.
    [[nodiscard]] bool RemoveHolder() noexcept { return --_count == 0; }

protected:
    cow_HolderCount() noexcept = default;
    // A copy is another object, in no holder yet; an object assigned to stays in those it is in.
    cow_HolderCount(const cow_HolderCount&) noexcept {}
    cow_HolderCount& operator=(const cow_HolderCount&) noexcept { return *this; }
    ~cow_HolderCount() = default;

private:
    int _count = 1;
};

/// The body that the copies of a cow_COW share: a count and one object. In general the object lies
/// elsewhere, owned through a pointer, since its class may be any that derives from T.
template <class T, class Policy>
class cow_CountedHld : public cow_HolderCount {
public:
    /// Takes \p owned over, also when this raises.
    [[nodiscard]] static cow_CountedHld* Adopt(T* owned) {
        std::unique_ptr<T> guard(owned);
        return new cow_CountedHld(std::move(guard));
    }
    /// A new holder, count 1, of a clone of \p object.
    [[nodiscard]] static cow_CountedHld* Clone(const T& object) {
        return Adopt(Policy::Copy(object));
    }

    [[nodiscard]] const T& Object() const noexcept { return *_object; }
    [[nodiscard]] T& Object() noexcept { return *_object; }

private:
    explicit cow_CountedHld(std::unique_ptr<T> object) noexcept : _object(std::move(object)) {}

    std::unique_ptr<T> _object;
};

/// With direct copying the object lies within the holder: one allocation for both.
template <class T>
class cow_CountedHld<T, cow_Direct<T>> : public cow_HolderCount {
public:
    template <class... Arguments>
    explicit cow_CountedHld(std::in_place_t /*tag*/, Arguments&&... arguments)
        : _object(std::forward<Arguments>(arguments)...) {}
    /// Moves the object of \p owned into the holder and deletes the rest, also when this raises.
    [[nodiscard]] static cow_CountedHld* Adopt(T* owned) {
        const std::unique_ptr<T> guard(owned);
        return new cow_CountedHld(std::in_place, std::move(*guard));
    }
    [[nodiscard]] static cow_CountedHld* Clone(const T& object) {
        return new cow_CountedHld(std::in_place, object);
    }

    [[nodiscard]] const T& Object() const noexcept { return _object; }
    [[nodiscard]] T& Object() noexcept { return _object; }

private:
    T _object;
};
