#include "g3d_XFormKernels.h"

#include <cstring>

#ifdef __SSE2__
#include <immintrin.h>
#endif

#ifdef __GNUC__
#define G3D_INLINE [[gnu::always_inline]] inline
#else
#define G3D_INLINE inline
#endif

// An instruction set is a namespace with two types of four lanes, Float4 and Quad (doubles), and
// these operations: + - * of Quads; Pick, lanes by number, those of the second operand from 4 on;
// Of, Spread and First; Widen and Narrow, between the two; Load, LoadFloats and StoreFloats, at
// any alignment. The loops are the same text for all of them.

namespace {

#ifdef __GNUC__

// The compiler's own vectors: right on every processor, one instruction an operation where there
// is one. Conversions go by intrinsics where there are any: the compiler's own go by detours.
using Float2 = float __attribute__((vector_size(8)));
using Float4 = float __attribute__((vector_size(16)));
using Double2 = double __attribute__((vector_size(16)));

template <int A, int B, int C, int D>
G3D_INLINE Float4 Pick(Float4 a, Float4 b) {
    return __builtin_shufflevector(a, b, A, B, C, D);
}

template <class Lanes>
G3D_INLINE Lanes LoadAs(const float* from) {
    Lanes lanes;
    std::memcpy(&lanes, from, sizeof lanes);
    return lanes;
}
G3D_INLINE Float4 LoadFloats(const float* from) { return LoadAs<Float4>(from); }
G3D_INLINE void StoreFloats(float* to, Float4 floats) { std::memcpy(to, &floats, sizeof floats); }

namespace baseline {

using ::Pick;

/// Two pairs: the widest that every processor of the x86-64 family has.
struct Quad {
    Double2 low;
    Double2 high;

    G3D_INLINE friend Quad operator*(const Quad& a, const Quad& b) {
        return {a.low * b.low, a.high * b.high};
    }
    G3D_INLINE friend Quad operator+(const Quad& a, const Quad& b) {
        return {a.low + b.low, a.high + b.high};
    }
    G3D_INLINE friend Quad operator-(const Quad& a, const Quad& b) {
        return {a.low - b.low, a.high - b.high};
    }
};

G3D_INLINE Quad Of(double a, double b, double c, double d) {
    return {Double2{a, b}, Double2{c, d}};
}
G3D_INLINE double First(const Quad& quad) { return quad.low[0]; }

template <int A, int B>
G3D_INLINE Double2 PickPair(const Quad& a, const Quad& b) {
    const auto half = [&](int lane) {
        const Quad& quad = lane < 4 ? a : b;
        return lane % 4 < 2 ? quad.low : quad.high;
    };
    return __builtin_shufflevector(half(A), half(B), A % 2, 2 + B % 2);
}
template <int A, int B, int C, int D>
G3D_INLINE Quad Pick(const Quad& a, const Quad& b) {
    return {PickPair<A, B>(a, b), PickPair<C, D>(a, b)};
}

#ifdef __SSE2__
G3D_INLINE Quad Widen(Float4 floats) {
    return {_mm_cvtps_pd(floats), _mm_cvtps_pd(_mm_movehl_ps(floats, floats))};
}
G3D_INLINE Float4 Narrow(const Quad& quad) {
    return _mm_movelh_ps(_mm_cvtpd_ps(quad.low), _mm_cvtpd_ps(quad.high));
}
G3D_INLINE Double2 LoadPair(const float* from) {
    return _mm_cvtps_pd(_mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(from))));
}
#else
G3D_INLINE Quad Widen(Float4 floats) {
    return {__builtin_convertvector(__builtin_shufflevector(floats, floats, 0, 1), Double2),
            __builtin_convertvector(__builtin_shufflevector(floats, floats, 2, 3), Double2)};
}
G3D_INLINE Float4 Narrow(const Quad& quad) {
    return __builtin_shufflevector(__builtin_convertvector(quad.low, Float2),
                                   __builtin_convertvector(quad.high, Float2), 0, 1, 2, 3);
}
G3D_INLINE Double2 LoadPair(const float* from) {
    return __builtin_convertvector(LoadAs<Float2>(from), Double2);
}
#endif
G3D_INLINE Quad Load(const float* from) { return {LoadPair(from), LoadPair(from + 2)}; }

#include "g3d_XFormKernelsBody.h"

}  // namespace baseline

#ifdef __x86_64__
#define G3D_HAVE_AVX2

// Compiles the functions up to G3D_TARGET_END for processors that have more than the baseline.
#define G3D_PRAGMA(text) _Pragma(#text)
#ifdef __clang__
#define G3D_TARGET_BEGIN(set) \
    G3D_PRAGMA(clang attribute push(__attribute__((target(set))), apply_to = function))
#define G3D_TARGET_END G3D_PRAGMA(clang attribute pop)
#else
#define G3D_TARGET_BEGIN(set) G3D_PRAGMA(GCC push_options) G3D_PRAGMA(GCC target(set))
#define G3D_TARGET_END G3D_PRAGMA(GCC pop_options)
#endif

G3D_TARGET_BEGIN("avx2")

namespace avx2 {

using ::Pick;
using Double4 = double __attribute__((vector_size(32)));

struct Quad {
    Double4 lanes;

    G3D_INLINE friend Quad operator*(const Quad& a, const Quad& b) { return {a.lanes * b.lanes}; }
    G3D_INLINE friend Quad operator+(const Quad& a, const Quad& b) { return {a.lanes + b.lanes}; }
    G3D_INLINE friend Quad operator-(const Quad& a, const Quad& b) { return {a.lanes - b.lanes}; }
};

G3D_INLINE Quad Of(double a, double b, double c, double d) { return {Double4{a, b, c, d}}; }
G3D_INLINE double First(const Quad& quad) { return quad.lanes[0]; }
template <int A, int B, int C, int D>
G3D_INLINE Quad Pick(const Quad& a, const Quad& b) {
    return {__builtin_shufflevector(a.lanes, b.lanes, A, B, C, D)};
}
G3D_INLINE Quad Widen(Float4 floats) { return {_mm256_cvtps_pd(floats)}; }
G3D_INLINE Float4 Narrow(const Quad& quad) { return _mm256_cvtpd_ps(quad.lanes); }
G3D_INLINE Quad Load(const float* from) { return Widen(LoadFloats(from)); }

#include "g3d_XFormKernelsBody.h"

}  // namespace avx2

G3D_TARGET_END
G3D_TARGET_BEGIN("avx512f,avx2")

// Two points at a time; the other loops have nothing to gain. This set fuses products and sums
// unless the compiler is told not to, as it is for this library.
namespace avx512 {

using Float8 = float __attribute__((vector_size(32)));
using Double8 = double __attribute__((vector_size(64)));

G3D_INLINE Double8 Twice(const avx2::Quad& quad) {
    return __builtin_shufflevector(quad.lanes, quad.lanes, 0, 1, 2, 3, 0, 1, 2, 3);
}
template <int Lane>
G3D_INLINE Double8 Spread(const Double8& pair) {
    constexpr int kOther = Lane + 4;
    return __builtin_shufflevector(pair, pair, Lane, Lane, Lane, Lane, kOther, kOther, kOther,
                                   kOther);
}
G3D_INLINE void CarryTwo(const Double8 (&columns)[4], float* pts) {
    Float8 floats;
    std::memcpy(&floats, pts, sizeof floats);
    // All lanes of a mask: the unmasked forms make GCC 12 warn of its own header.
    const Double8 p = _mm512_maskz_cvtps_pd(0xFF, floats);
    const Double8 sum = columns[0] * Spread<0>(p) + columns[1] * Spread<1>(p) +
                        columns[2] * Spread<2>(p) + columns[3] * Spread<3>(p);
    floats = _mm512_maskz_cvtpd_ps(0xFF, sum);
    std::memcpy(pts, &floats, sizeof floats);
}

inline void Points(const float* m, float* pts, int n) {
    avx2::Quad quads[4];
    avx2::LoadColumns(m, quads);
    const Double8 columns[4] = {Twice(quads[0]), Twice(quads[1]), Twice(quads[2]), Twice(quads[3])};
    for (; n >= 4; n -= 4, pts += 16) {
        CarryTwo(columns, pts);
        CarryTwo(columns, pts + 8);
    }
    avx2::Points(m, pts, n);
}

constexpr g3d_XFormKernels kKernels{&avx2::Multiply, &avx2::Determinant, &avx2::Invert, &Points,
                                    &avx2::Vectors};

}  // namespace avx512

G3D_TARGET_END
#endif

#else  // another compiler: plain loops over the lanes

namespace baseline {

template <class T>
struct Lanes {
    T lane[4];

    friend Lanes operator*(const Lanes& a, const Lanes& b) {
        return {a.lane[0] * b.lane[0], a.lane[1] * b.lane[1], a.lane[2] * b.lane[2],
                a.lane[3] * b.lane[3]};
    }
    friend Lanes operator+(const Lanes& a, const Lanes& b) {
        return {a.lane[0] + b.lane[0], a.lane[1] + b.lane[1], a.lane[2] + b.lane[2],
                a.lane[3] + b.lane[3]};
    }
    friend Lanes operator-(const Lanes& a, const Lanes& b) {
        return {a.lane[0] - b.lane[0], a.lane[1] - b.lane[1], a.lane[2] - b.lane[2],
                a.lane[3] - b.lane[3]};
    }
};
using Float4 = Lanes<float>;
using Quad = Lanes<double>;

template <int A, int B, int C, int D, class T>
Lanes<T> Pick(const Lanes<T>& a, const Lanes<T>& b) {
    const auto lane = [&](int i) { return i < 4 ? a.lane[i] : b.lane[i - 4]; };
    return {lane(A), lane(B), lane(C), lane(D)};
}
inline Quad Of(double a, double b, double c, double d) { return {a, b, c, d}; }
inline double First(const Quad& quad) { return quad.lane[0]; }
inline Quad Widen(const Float4& floats) {
    return {floats.lane[0], floats.lane[1], floats.lane[2], floats.lane[3]};
}
inline Float4 Narrow(const Quad& quad) {
    return {static_cast<float>(quad.lane[0]), static_cast<float>(quad.lane[1]),
            static_cast<float>(quad.lane[2]), static_cast<float>(quad.lane[3])};
}
inline Float4 LoadFloats(const float* from) { return {from[0], from[1], from[2], from[3]}; }
inline void StoreFloats(float* to, const Float4& floats) {
    std::memcpy(to, floats.lane, sizeof floats.lane);
}
inline Quad Load(const float* from) { return Widen(LoadFloats(from)); }

#include "g3d_XFormKernelsBody.h"

}  // namespace baseline

#endif

}  // namespace

const g3d_XFormKernels& g3d_XFormKernels::Baseline() noexcept { return baseline::kKernels; }

const g3d_XFormKernels& g3d_XFormKernels::Best() noexcept {
#ifdef G3D_HAVE_AVX2
    static const g3d_XFormKernels& best = __builtin_cpu_supports("avx512f") ? avx512::kKernels
                                          : __builtin_cpu_supports("avx2")  ? avx2::kKernels
                                                                            : baseline::kKernels;
    return best;
#else
    return Baseline();
#endif
}
