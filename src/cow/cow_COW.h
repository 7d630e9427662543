#pragma once

#include "cow_CountedHld.h"
#include "cow_Direct.h"
#include "cow_Support.h"
#include "mem_AllocationOperatorsTiny.h"

#include <type_traits>
#include <utility>

/// Copy-on-write holder of one object, or of none (null).
///
/// Copies share the object under a reference count, which lies in the object itself where T derives
/// from cow_HolderCount and beside it otherwise. Reading never copies it; `Get` clones it first
/// when it is shared, as Policy says (cow_Direct, cow_Virtual). The count is a plain integer: a
/// holder and its copies stay in one thread; DeepCopy() gives one to hand to another thread.
template <class T, class Policy>
class cow_COW : public mem_AllocationOperatorsTiny {
public:
    /// Null.
    constexpr cow_COW() noexcept = default;
    /// Takes \p owned over, also when this raises. Null gives a null holder.
    explicit cow_COW(T* owned) : _holder(owned == nullptr ? nullptr : Adopt(owned)) {}
    cow_COW(const cow_COW& other) noexcept : _holder(other._holder) {
        if (_holder != nullptr) _holder->AddHolder();
    }
    cow_COW(cow_COW&& other) noexcept : _holder(std::exchange(other._holder, nullptr)) {}
    // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): the copy swapped in makes it harmless
    cow_COW& operator=(const cow_COW& other) noexcept {
        cow_COW(other).Swap(*this);
        return *this;
    }
    cow_COW& operator=(cow_COW&& other) noexcept {
        cow_COW(std::move(other)).Swap(*this);
        return *this;
    }
    ~cow_COW() {
        if (_holder != nullptr && _holder->RemoveHolder()) Delete(_holder);
    }

    /// A holder of a T built from \p arguments, in one allocation. Direct policy only.
    template <class... Arguments>
    [[nodiscard]] static cow_COW Make(Arguments&&... arguments) {
        static_assert(std::is_same_v<Policy, cow_Direct<T>>,
                      "Only a holder with direct copying builds its object in place.");
        cow_COW made;
        made._holder = Build(std::forward<Arguments>(arguments)...);
        return made;
    }

    [[nodiscard]] bool IsNull() const noexcept { return _holder == nullptr; }
    [[nodiscard]] explicit operator bool() const noexcept { return _holder != nullptr; }
    /// Number of holders that share the object; 0 for a null holder.
    [[nodiscard]] int Count() const noexcept {
        return _holder == nullptr ? 0 : _holder->HolderCount();
    }
    [[nodiscard]] bool SharesWith(const cow_COW& other) const noexcept {
        return _holder != nullptr && _holder == other._holder;
    }

    /// The object for reading; never clones. Null holder: std::out_of_range.
    [[nodiscard]] const T& ConstGet() const {
        if (_holder == nullptr) [[unlikely]]
            cow_ThrowMissing("the holder is null");
        return **this;
    }
    /// The object for writing, cloned first when shared. Null holder: std::out_of_range. When the
    /// clone raises, nothing has changed.
    T& Get() {
        if (_holder == nullptr) [[unlikely]]
            cow_ThrowMissing("the holder is null");
        if (_holder->HolderCount() > 1) [[unlikely]]
            Detach();
        return ObjectOf(_holder);
    }
    /// The object for reading. Null holder: undefined.
    [[nodiscard]] const T& operator*() const noexcept { return ObjectOf(_holder); }
    [[nodiscard]] const T* operator->() const noexcept { return &**this; }

    /// Makes this holder null.
    void Reset() noexcept { cow_COW().Swap(*this); }
    void Swap(cow_COW& other) noexcept { std::swap(_holder, other._holder); }
    friend void swap(cow_COW& a, cow_COW& b) noexcept { a.Swap(b); }

    /// A holder of a clone that shares nothing with this one.
    [[nodiscard]] cow_COW DeepCopy() const {
        cow_COW copy;
        if (_holder != nullptr) {
            if constexpr (std::is_same_v<Policy, cow_Direct<T>>) {
                copy._holder = Build(cow_DeepCopyOf(**this));
            } else {
                copy._holder = Clone(**this);
            }
        }
        return copy;
    }

    /// Both null, or equal objects.
    friend bool operator==(const cow_COW& a, const cow_COW& b) {
        return a.IsNull() || b.IsNull() ? a.IsNull() == b.IsNull() : *a == *b;
    }

private:
    using Holder = cow_CountedHld<T, Policy>;

    // Asked within functions only: a class may hold holders of itself, and is incomplete till then.
    [[nodiscard]] static constexpr bool CountsItself() {
        return std::is_base_of_v<cow_HolderCount, T>;
    }
    [[nodiscard]] static T& ObjectOf(cow_HolderCount* holder) noexcept {
        if constexpr (CountsItself()) {
            return static_cast<T&>(*holder);
        } else {
            return static_cast<Holder*>(holder)->Object();
        }
    }
    static void Delete(cow_HolderCount* holder) noexcept {
        if constexpr (CountsItself()) {
            delete static_cast<T*>(holder);
        } else {
            delete static_cast<Holder*>(holder);
        }
    }
    [[nodiscard]] static cow_HolderCount* Adopt(T* owned) {
        if constexpr (CountsItself()) {
            return owned;
        } else {
            return Holder::Adopt(owned);
        }
    }
    [[nodiscard]] static cow_HolderCount* Clone(const T& object) {
        if constexpr (CountsItself()) {
            return Policy::Copy(object);
        } else {
            return Holder::Clone(object);
        }
    }
    template <class... Arguments>
    [[nodiscard]] static cow_HolderCount* Build(Arguments&&... arguments) {
        if constexpr (CountsItself()) {
            return new T(std::forward<Arguments>(arguments)...);
        } else {
            return new Holder(std::in_place, std::forward<Arguments>(arguments)...);
        }
    }

    [[gnu::noinline]] void Detach() {
        cow_HolderCount* own = Clone(**this);
        static_cast<void>(_holder->RemoveHolder());
        _holder = own;
        ++cow_detachCount;
    }

    cow_HolderCount* _holder = nullptr;
};
