#include "g3d_BoundingVolume.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>

namespace {

// Corners between low and high in the order of the default cube: x slowest, z fastest.
void MakeBox(g3d_Point* corners, const g3d_Point& low, const g3d_Point& high) noexcept {
    for (int i = 0; i < 8; ++i) {
        corners[i] = {(i & 4) != 0 ? high.x : low.x, (i & 2) != 0 ? high.y : low.y,
                      (i & 1) != 0 ? high.z : low.z};
    }
}

void MakeDefault(g3d_Point* corners) noexcept { MakeBox(corners, {-1, -1, -1}, {1, 1, 1}); }

g3d_Point* NewBlock(std::size_t capacity) {
    return static_cast<g3d_Point*>(mem_OperatorNewThrow(capacity * sizeof(g3d_Point)));
}

}  // namespace

g3d_BoundingVolume::g3d_BoundingVolume() noexcept { Reset(); }

g3d_BoundingVolume::g3d_BoundingVolume(const g3d_Point* vertexes, unsigned count) {
    AppendVertexes(vertexes, count);
}

g3d_BoundingVolume::g3d_BoundingVolume(const g3d_BoundingVolume& other) {
    // A copy is inline exactly when the original is, so that both are default or neither is.
    if (!other.IsInline()) {
        AllocateVertexes(other._count);
    }
    AppendVertexes(other._vertexes, other._count);
}

g3d_BoundingVolume::g3d_BoundingVolume(g3d_BoundingVolume&& other) noexcept { TakeOver(other); }

g3d_BoundingVolume& g3d_BoundingVolume::operator=(const g3d_BoundingVolume& other) {
    if (this != &other) {
        *this = g3d_BoundingVolume(other);
    }
    return *this;
}

g3d_BoundingVolume& g3d_BoundingVolume::operator=(g3d_BoundingVolume&& other) noexcept {
    if (this != &other) {
        Release();
        TakeOver(other);
    }
    return *this;
}

g3d_BoundingVolume::~g3d_BoundingVolume() { Release(); }

void g3d_BoundingVolume::Release() noexcept {
    if (!IsInline()) {
        mem_Free(_vertexes);
        _vertexes = _inline;
        _capacity = kInlineCapacity;
    }
}

void g3d_BoundingVolume::TakeOver(g3d_BoundingVolume& other) noexcept {
    if (other.IsInline()) {
        std::copy_n(other._inline, other._count, _inline);
    } else {
        _vertexes = other._vertexes;
        _capacity = other._capacity;
        other._vertexes = other._inline;
        other._capacity = kInlineCapacity;
    }
    _count = other._count;
    other.Reset();
}

void g3d_BoundingVolume::Reset() noexcept {
    Release();
    MakeDefault(_inline);
    _count = kInlineCapacity;
}

bool g3d_BoundingVolume::IsDefault() const noexcept {
    g3d_Point corners[kInlineCapacity];
    MakeDefault(corners);
    return IsInline() && std::equal(_inline, _inline + _count, corners, corners + kInlineCapacity);
}

void g3d_BoundingVolume::SetToRectangleBox(const g3d_Point& a, const g3d_Point& b) noexcept {
    const g3d_Point p = a.Cartesian();
    const g3d_Point q = b.Cartesian();
    // fmin and fmax pass over a NaN.
    const g3d_Point low(std::fmin(p.x, q.x), std::fmin(p.y, q.y), std::fmin(p.z, q.z));
    const g3d_Point high(std::fmax(p.x, q.x), std::fmax(p.y, q.y), std::fmax(p.z, q.z));
    MakeBox(_vertexes, low, high);  // there is always room for eight
    _count = kInlineCapacity;
}

void g3d_BoundingVolume::AllocateVertexes(unsigned capacity) {
    if (!IsInline() && capacity <= _capacity) {
        return;
    }
    capacity = std::max({capacity, _count, kInlineCapacity});
    g3d_Point* const block = NewBlock(capacity);
    std::uninitialized_copy_n(_vertexes, _count, block);
    Release();
    _vertexes = block;
    _capacity = capacity;
}

void g3d_BoundingVolume::AppendVertexes(const g3d_Point* vertexes, unsigned count) {
    constexpr std::uint64_t kMost = std::numeric_limits<unsigned>::max();
    const std::uint64_t needed = std::uint64_t{_count} + count;
    if (needed > kMost) {
        mem_ThrowExhausted(needed * sizeof(g3d_Point));
    }
    if (needed <= _capacity) {
        std::copy_n(vertexes, count, _vertexes + _count);
        _count += count;
        return;
    }
    // The old block goes last: the vertices to append may lie in it.
    const auto capacity =
        static_cast<unsigned>(std::min(std::max(needed, std::uint64_t{_capacity} * 2), kMost));
    g3d_Point* const block = NewBlock(capacity);
    std::uninitialized_copy_n(_vertexes, _count, block);
    std::uninitialized_copy_n(vertexes, count, block + _count);
    Release();
    _vertexes = block;
    _capacity = capacity;
    _count += count;
}

bool g3d_BoundingVolume::operator==(const g3d_BoundingVolume& other) const noexcept {
    return std::equal(_vertexes, _vertexes + _count, other._vertexes,
                      other._vertexes + other._count);
}
