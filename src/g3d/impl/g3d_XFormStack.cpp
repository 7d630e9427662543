#include "g3d_XFormStack.h"

#include "g3d_Utils.h"
#include "mem_Allocation.h"

#include <memory>
#include <utility>

namespace {

constexpr const char* kSource = "generated/g3d/impl/g3d_XFormStack";

g3d_XForm* NewEntries(int capacity) {
    void* const block = mem_Malloc(static_cast<std::size_t>(capacity) * sizeof(g3d_XForm));
    g3d_Utils::AssertMem(block);
    return static_cast<g3d_XForm*>(block);
}

}  // namespace

g3d_XFormStack::g3d_XFormStack(int capacity) : _entries(nullptr), _capacity(capacity) {
    g3d_Utils::Assert(capacity > 0, "capacity > 0", kSource, __LINE__);
    _entries = NewEntries(capacity);
    std::construct_at(_entries);
}

g3d_XFormStack::g3d_XFormStack(const g3d_XFormStack& other)
    : _entries(NewEntries(other._capacity)), _top(other._top), _capacity(other._capacity) {
    std::uninitialized_copy_n(other._entries, _top + 1, _entries);
}

g3d_XFormStack& g3d_XFormStack::operator=(const g3d_XFormStack& other) {
    g3d_XFormStack copy(other);
    std::swap(_entries, copy._entries);
    std::swap(_top, copy._top);
    std::swap(_capacity, copy._capacity);
    return *this;
}

g3d_XFormStack::~g3d_XFormStack() { mem_Free(_entries); }

void g3d_XFormStack::Push(const g3d_XForm& xform) {
    g3d_Utils::Assert(_top + 1 < _capacity, "_top + 1 < _capacity", kSource, __LINE__);
    std::construct_at(_entries + _top + 1, _entries[_top] * xform);
    ++_top;
}

const g3d_XForm& g3d_XFormStack::Top() const {
    g3d_Utils::Assert(_top >= 0 && _top < _capacity, "_top >= 0 && _top < _capacity", kSource,
                      __LINE__);
    return _entries[_top];
}

void g3d_XFormStack::Reset(const g3d_XForm& xform) {
    _entries[0] = xform;
    _top = 0;
}
