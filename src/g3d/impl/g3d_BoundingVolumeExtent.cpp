// The smallest sphere around a set of points, after B. Gaertner, Fast and Robust Smallest
// Enclosing Balls, ESA 1999 (LNCS 1643), section 3: the point farthest from the sphere so far
// joins the few that support it, and the smallest sphere around those is the next one. Each is a
// lower bound of the result, which tells when to stop. With at most five points at a time, the
// inner step tries all the subsets that can support a sphere instead of moving to the front.

#include "g3d_BoundingVolume.h"
#include "g3d_Sphere.h"
#include "g3d_Triple.h"

#include <bit>
#include <cmath>
#include <limits>
#include <span>

namespace {

constexpr double kTolerance = 2e-5;  // of the squared radius
constexpr int kMaxPasses = 1000;     // ten do, as a rule; rounding must not make it endless

struct Ball {
    g3d_Triple center;
    double squared = std::numeric_limits<double>::infinity();  // of the radius
};

struct Farthest {
    g3d_Triple vertex;
    double squared = -1;  // of the distance; -1: there is no finite vertex
};

Farthest FindFarthest(std::span<const g3d_Point> vertexes, const g3d_Triple& from) noexcept {
    Farthest found;
    for (const g3d_Point& point : vertexes) {
        const g3d_Triple vertex(point);
        const double squared = (vertex - from).Squared();
        if (squared > found.squared && vertex.IsFinite()) {
            found = {vertex, squared};
        }
    }
    return found;
}

// Points that lie on the current sphere, at most four.
class Support {
public:
    // The smallest sphere around these points and one outside the sphere so far; keeps those that
    // it needs. A sphere through too few or nearly dependent points does not cover the others, or
    // only when it is large, so that the smallest that covers all is also a sound one.
    Ball Extend(const g3d_Triple& outer) noexcept {
        Ball best;
        unsigned bestSubset = 0;
        for (unsigned subset = 0; subset < (1U << _count); ++subset) {
            if (std::popcount(subset) > 3) {
                continue;
            }
            const g3d_Triple center = outer + Circumcenter(subset, outer);
            double squared = (outer - center).Squared();
            for (unsigned i = 0; i < _count; ++i) {
                squared = std::fmax(squared, (_points[i] - center).Squared());
            }
            if (squared < best.squared) {
                best = {center, squared};
                bestSubset = subset;
            }
        }
        unsigned kept = 0;
        for (unsigned i = 0; i < _count; ++i) {
            if ((bestSubset & (1U << i)) != 0) {
                _points[kept++] = _points[i];
            }
        }
        _points[kept++] = outer;
        _count = kept;
        return best;
    }

private:
    // Relative to outer: the point of their line, plane or space that is as far from all of the
    // subset as from outer. Not finite when they are dependent.
    [[nodiscard]] g3d_Triple Circumcenter(unsigned subset, const g3d_Triple& outer) const noexcept {
        g3d_Triple v[3];
        int count = 0;
        for (unsigned i = 0; i < _count; ++i) {
            if ((subset & (1U << i)) != 0) {
                v[count++] = _points[i] - outer;
            }
        }
        switch (count) {
            case 0:
                return {};
            case 1:
                return v[0] * 0.5;
            case 2: {
                const g3d_Triple normal = v[0].Cross(v[1]);
                return (v[1] * v[0].Squared() - v[0] * v[1].Squared()).Cross(normal) *
                       (0.5 / normal.Squared());
            }
            default: {
                const g3d_Triple normal = v[1].Cross(v[2]);
                return (normal * v[0].Squared() + v[2].Cross(v[0]) * v[1].Squared() +
                        v[0].Cross(v[1]) * v[2].Squared()) *
                       (0.5 / v[0].Dot(normal));
            }
        }
    }

    g3d_Triple _points[4];
    unsigned _count = 0;
};

// The least float whose square is not below squared, a sum of three squares.
float RadiusAtLeast(double squared) noexcept {
    const double safe = squared * (1 + 4 * std::numeric_limits<double>::epsilon());
    auto radius = static_cast<float>(std::sqrt(squared));
    while (static_cast<double>(radius) * radius < safe) {
        radius = std::nextafter(radius, std::numeric_limits<float>::infinity());
    }
    return radius;
}

}  // namespace

void g3d_BoundingVolume::GetExtent(g3d_Sphere& sphere) const noexcept {
    const std::span vertexes(_vertexes, _count);
    const Farthest first = FindFarthest(vertexes, {});
    if (first.squared < 0) {
        sphere = g3d_Sphere();
        return;
    }
    Support support;
    Ball lower = support.Extend(first.vertex);
    Ball best;
    for (int pass = 0; pass < kMaxPasses; ++pass) {
        const Farthest next = FindFarthest(vertexes, lower.center);
        if (next.squared < best.squared) {
            best = {lower.center, next.squared};
        }
        if (best.squared <= lower.squared * (1 + kTolerance)) {
            break;
        }
        const Ball grown = support.Extend(next.vertex);
        if (!(grown.squared > lower.squared)) {
            break;  // only rounding is left
        }
        lower = grown;
    }
    const g3d_Point center = best.center.ToPoint();
    sphere.Set(center, RadiusAtLeast(FindFarthest(vertexes, g3d_Triple(center)).squared));
}
