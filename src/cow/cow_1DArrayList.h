#pragma once

#include "cow_COW.h"
#include "cow_Direct.h"
#include "cow_Support.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <initializer_list>
#include <span>
#include <utility>

/// Growable array on one shared body (a standard sequence; contiguous unless T is bool).
///
/// Copies share the body; the first write to a shared body copies it whole. Reading never detaches.
/// An array and its copies stay in one thread; DeepCopy() gives one to hand to another. Indices
/// outside raise std::out_of_range. Arguments may be own elements.
template <class T>
class cow_1DArrayList {
    using Body = cow_VectorOf<T>;

public:
    using value_type = T;
    using const_iterator = typename Body::const_iterator;
    using iterator = const_iterator;

    /// Empty; nothing is allocated.
    cow_1DArrayList() noexcept = default;
    /// \p length zero elements.
    explicit cow_1DArrayList(int length) { Grow(length); }
    cow_1DArrayList(std::initializer_list<T> values)
        : cow_1DArrayList(std::span<const T>(values.begin(), values.size())) {}
    /// Copies of \p values.
    explicit cow_1DArrayList(std::span<const T> values) {
        if (values.size() > INT_MAX) cow_ThrowLength(static_cast<long long>(values.size()));
        if (!values.empty()) _body = Holder::Make(values.begin(), values.end());
    }

    [[nodiscard]] int Length() const noexcept {
        return _body.IsNull() ? 0 : static_cast<int>(_body->size());
    }
    [[nodiscard]] bool IsEmpty() const noexcept { return Length() == 0; }

    /// Element \p index in [0, Length()) for reading; never detaches.
    [[nodiscard]] const T& ConstGet(int index) const {
        CheckIndex(index);
        return (*_body)[static_cast<std::size_t>(index)];
    }
    [[nodiscard]] const T& operator[](int index) const { return ConstGet(index); }
    /// Element \p index for writing; detaches. Behind the end it extends the array to index + 1
    /// elements, zero in between.
    T& Get(int index) {
        if (index >= Length() && index < INT_MAX) [[unlikely]]
            Grow(index + 1);
        CheckIndex(index);
        return _body.Get()[static_cast<std::size_t>(index)];
    }
    /// All elements for reading, contiguous (not for bool).
    [[nodiscard]] std::span<const T> Values() const noexcept {
        return _body.IsNull() ? std::span<const T>() : std::span<const T>(*_body);
    }

    /// Adds an element behind the last one. When this raises, nothing has changed.
    void Append(T value) {
        if (Length() == INT_MAX) [[unlikely]]
            cow_ThrowLength(1LL + INT_MAX);
        OwnBody().push_back(std::move(value));
    }
    /// Adds the elements of \p other, which may be this array. When this raises, nothing has
    /// changed.
    void Append(const cow_1DArrayList& other) {
        const cow_1DArrayList added(other);
        if (added.Length() > INT_MAX - Length()) cow_ThrowLength(1LL * Length() + added.Length());
        if (added.IsEmpty()) return;
        Body& body = OwnBody();
        const auto before = static_cast<std::ptrdiff_t>(body.size());
        try {
            for (const T& value : added)
                body.push_back(value);
        } catch (...) {
            body.erase(body.begin() + before, body.end());
            throw;
        }
    }
    /// Sets the length; new elements are zero. Returns true.
    bool Grow(int length) {
        if (length < 0) cow_ThrowLength(length);
        if (length != Length()) OwnBody().resize(static_cast<std::size_t>(length));
        return true;
    }
    /// Adds an element behind element \p index in [-1, Length()); -1 is before the first.
    void InsertAfter(int index, T value) {
        if (index < -1 || index >= Length()) cow_ThrowIndex(index, Length());
        Body& body = OwnBody();
        body.insert(body.begin() + (index + 1), std::move(value));
    }
    /// Removes element \p index in [0, Length()).
    void RemoveIndex(int index) {
        CheckIndex(index);
        Body& body = OwnBody();
        body.erase(body.begin() + index);
    }
    void RemoveLast() { RemoveIndex(Length() - 1); }
    void Clear() noexcept { _body.Reset(); }

    /// Index of the first element equal to \p value, or -1.
    [[nodiscard]] int IndexOf(const T& value) const {
        const auto found = std::find(begin(), end(), value);
        return found == end() ? -1 : static_cast<int>(found - begin());
    }
    [[nodiscard]] bool IsMember(const T& value) const { return IndexOf(value) >= 0; }

    [[nodiscard]] const_iterator begin() const noexcept {
        return _body.IsNull() ? const_iterator() : _body->begin();
    }
    [[nodiscard]] const_iterator end() const noexcept {
        return _body.IsNull() ? const_iterator() : _body->end();
    }

    void Swap(cow_1DArrayList& other) noexcept { _body.Swap(other._body); }
    friend void swap(cow_1DArrayList& a, cow_1DArrayList& b) noexcept { a.Swap(b); }
    friend bool operator==(const cow_1DArrayList& a, const cow_1DArrayList& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end());
    }
    /// An equal array that shares nothing with this one.
    [[nodiscard]] cow_1DArrayList DeepCopy() const {
        cow_1DArrayList copy;
        for (const T& value : *this)
            copy.Append(cow_DeepCopyOf(value));
        return copy;
    }
    /// Number of arrays that share the body; 0 while there is none.
    [[nodiscard]] int BodyCount() const noexcept { return _body.Count(); }

private:
    using Holder = cow_COW<Body, cow_Direct<Body>>;

    void CheckIndex(int index) const {
        if (static_cast<unsigned>(index) >= static_cast<unsigned>(Length())) [[unlikely]] {
            cow_ThrowIndex(index, Length());
        }
    }
    [[nodiscard]] Body& OwnBody() {
        if (_body.IsNull()) [[unlikely]]
            _body = Holder::Make();
        return _body.Get();
    }

    Holder _body;  // null while empty from the start
};
