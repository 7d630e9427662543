#pragma once

/// The inner loops of g3d_XForm for one instruction set. Matrices are sixteen floats, row by row.
///
/// Every set computes the same: products and sums in double, one by one from left to right, each
/// element rounded to float once. So the sets agree to the bit; only the sign and the payload of a
/// NaN are left to the processor.
struct g3d_XFormKernels {
    /// \p out = \p a \p b; \p out may be either.
    void (*multiply)(const float* a, const float* b, float* out);
    double (*determinant)(const float* m);
    /// False, and nothing written, where the determinant is exactly 0; \p out may be \p m.
    bool (*invert)(const float* m, float* out);
    /// \p n points of four floats in place.
    void (*points)(const float* m, float* pts, int n);
    /// \p n vectors of three floats in place, by the upper 3x3 block.
    void (*vectors)(const float* m, float* vs, int n);

    /// What every processor of this build's architecture runs.
    [[nodiscard]] static const g3d_XFormKernels& Baseline() noexcept;
    /// The fastest set this processor runs; chosen once.
    [[nodiscard]] static const g3d_XFormKernels& Best() noexcept;
};
