#pragma once

#include "g3d_Point.h"
#include "mem_AllocationOperators.h"

class g3d_Sphere;

/// The vertices of a hull around a model; by default the corners of the cube [-1, 1]^3.
///
/// Eight vertices fit without an allocation. Copies are deep. When a call raises, the volume is as
/// it was before. The vertices are contiguous; whatever changes them invalidates Vertexes().
class CAE_API g3d_BoundingVolume : public mem_AllocationOperators {
public:
    /// The default cube.
    g3d_BoundingVolume() noexcept;
    /// Copies of \p count vertices.
    /// \throws mem_ExhaustedException  as does all that allocates below.
    g3d_BoundingVolume(const g3d_Point* vertexes, unsigned count);
    g3d_BoundingVolume(const g3d_BoundingVolume& other);
    /// Takes the vertices over and leaves \p other as the default cube.
    g3d_BoundingVolume(g3d_BoundingVolume&& other) noexcept;
    g3d_BoundingVolume& operator=(const g3d_BoundingVolume& other);
    g3d_BoundingVolume& operator=(g3d_BoundingVolume&& other) noexcept;
    ~g3d_BoundingVolume();

    /// Frees the heap storage and takes the default cube again.
    void Reset() noexcept;
    /// Forgets the vertices, but keeps the storage.
    void Clear() noexcept { _count = 0; }
    /// Whether these are the corners of the default cube, in order, and in the inline storage.
    [[nodiscard]] bool IsDefault() const noexcept;

    /// Eight corners of the box between any two opposite ones, in the order of the default cube:
    /// z runs fastest, from low to high. A coordinate that is NaN in one is taken from the other.
    void SetToRectangleBox(const g3d_Point& a, const g3d_Point& b) noexcept;
    /// Moves the vertices to heap storage with room for at least \p capacity; never shrinks.
    void AllocateVertexes(unsigned capacity);
    /// Adds copies of \p count vertices, which may be own ones. Amortised linear time.
    void AppendVertexes(const g3d_Point* vertexes, unsigned count);

    [[nodiscard]] unsigned VertexCount() const noexcept { return _count; }
    /// Number of vertices that the storage has room for.
    [[nodiscard]] unsigned Capacity() const noexcept { return _capacity; }
    [[nodiscard]] const g3d_Point* Vertexes() const noexcept { return _vertexes; }

    /// Sets \p sphere to the smallest one around the vertices, within 1e-5 of its radius but for
    /// the rounding of the centre to float; every vertex is in it. Vertices that are not finite
    /// take no part; without others it is empty. About ten passes over the vertices, no storage.
    void GetExtent(g3d_Sphere& sphere) const noexcept;

    /// Exact comparison of the vertices, whatever holds them.
    [[nodiscard]] bool operator==(const g3d_BoundingVolume& other) const noexcept;

private:
    static constexpr unsigned kInlineCapacity = 8;

    [[nodiscard]] bool IsInline() const noexcept { return _vertexes == _inline; }
    void Release() noexcept;
    void TakeOver(g3d_BoundingVolume& other) noexcept;

    g3d_Point _inline[kInlineCapacity];
    g3d_Point* _vertexes = _inline;  // _inline, or a block of the library's allocator
    unsigned _capacity = kInlineCapacity;
    unsigned _count = 0;
};
