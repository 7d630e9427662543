// The loops of g3d_XFormKernels over four lanes. Included once for each instruction set, inside
// the namespace that defines its Float4 and Quad: hence no #pragma once.

template <int Lane>
G3D_INLINE Quad Spread(const Quad& quad) {
    return Pick<Lane, Lane, Lane, Lane>(quad, quad);
}
G3D_INLINE Quad SpreadOut(double value) { return Of(value, value, value, value); }
G3D_INLINE void Store(float* to, const Quad& quad) { StoreFloats(to, Narrow(quad)); }

/// The sum of \p vectors, each times a lane of \p factors.
G3D_INLINE Quad Combine(const Quad (&vectors)[4], const Quad& factors) {
    return vectors[0] * Spread<0>(factors) + vectors[1] * Spread<1>(factors) +
           vectors[2] * Spread<2>(factors) + vectors[3] * Spread<3>(factors);
}

inline void Multiply(const float* a, const float* b, float* out) {
    // All of b is read before anything is written, and a row of a before that row of the result.
    const Quad rows[4] = {Load(b), Load(b + 4), Load(b + 8), Load(b + 12)};
    for (int i = 0; i < 16; i += 4) {
        Store(out + i, Combine(rows, Load(a + i)));
    }
}

// (a0, b0, a1, b1) and (a2, b2, a3, b3)
G3D_INLINE Float4 ZipLow(const Float4& a, const Float4& b) { return Pick<0, 4, 1, 5>(a, b); }
G3D_INLINE Float4 ZipHigh(const Float4& a, const Float4& b) { return Pick<2, 6, 3, 7>(a, b); }

/// The matrix of cofactors, transposed, its rows without their signs (+, -, +, -) and, in odd rows,
/// the opposite. Returns the determinant, expanded along row 0.
///
/// A cofactor of the upper two rows takes the 2x2 minors of the lower two, and the reverse: both
/// are computed side by side.
G3D_INLINE double Adjugate(const float* m, Quad (&adjugate)[4]) {
    const Float4 r0 = LoadFloats(m);
    const Float4 r1 = LoadFloats(m + 4);
    const Float4 r2 = LoadFloats(m + 8);
    const Float4 r3 = LoadFloats(m + 12);

    // Of column j: p[j] = (row 1, row 0, row 3, row 2).
    const Float4 low10 = ZipLow(r1, r0);
    const Float4 high10 = ZipHigh(r1, r0);
    const Float4 low32 = ZipLow(r3, r2);
    const Float4 high32 = ZipHigh(r3, r2);
    const Quad p[4] = {Widen(Pick<0, 1, 4, 5>(low10, low32)), Widen(Pick<2, 3, 6, 7>(low10, low32)),
                       Widen(Pick<0, 1, 4, 5>(high10, high32)),
                       Widen(Pick<2, 3, 6, 7>(high10, high32))};

    // Of columns 0 and 1, and 2 and 3: rows 2 and 0, rows 3 and 1.
    const Quad upper01 = Widen(ZipLow(r2, r0));
    const Quad upper23 = Widen(ZipHigh(r2, r0));
    const Quad lower01 = Widen(ZipLow(r3, r1));
    const Quad lower23 = Widen(ZipHigh(r3, r1));
    const auto even = [](const Quad& a, const Quad& b) { return Pick<0, 1, 4, 5>(a, b); };
    const auto odd = [](const Quad& a, const Quad& b) { return Pick<2, 3, 6, 7>(a, b); };
    const auto swapped = [](const Quad& a) { return Pick<2, 3, 0, 1>(a, a); };
    // Minors by their two columns: of rows 2 and 3, then of rows 0 and 1.
    const Quad m02m13 = upper01 * lower23 - lower01 * upper23;
    const Quad m03m12 = upper01 * swapped(lower23) - lower01 * swapped(upper23);
    const Quad m01m23 = even(upper01, upper23) * odd(lower01, lower23) -
                        even(lower01, lower23) * odd(upper01, upper23);
    const auto first = [](const Quad& pair) { return Pick<0, 0, 1, 1>(pair, pair); };
    const auto second = [](const Quad& pair) { return Pick<2, 2, 3, 3>(pair, pair); };
    const Quad m01 = first(m01m23);
    const Quad m02 = first(m02m13);
    const Quad m03 = first(m03m12);
    const Quad m12 = second(m03m12);
    const Quad m13 = second(m02m13);
    const Quad m23 = second(m01m23);

    adjugate[0] = p[1] * m23 - p[2] * m13 + p[3] * m12;
    adjugate[1] = p[0] * m23 - p[2] * m03 + p[3] * m02;
    adjugate[2] = p[0] * m13 - p[1] * m03 + p[3] * m01;
    adjugate[3] = p[0] * m12 - p[1] * m02 + p[2] * m01;
    return m[0] * First(adjugate[0]) - m[1] * First(adjugate[1]) + m[2] * First(adjugate[2]) -
           m[3] * First(adjugate[3]);
}

inline double Determinant(const float* m) {
    Quad adjugate[4];
    return Adjugate(m, adjugate);
}

inline bool Invert(const float* m, float* out) {
    Quad adjugate[4];
    const double determinant = Adjugate(m, adjugate);
    if (determinant == 0) {
        return false;
    }
    const double inverse = 1 / determinant;
    const Quad even = Of(inverse, -inverse, inverse, -inverse);
    const Quad odd = Of(-inverse, inverse, -inverse, inverse);
    Store(out, adjugate[0] * even);
    Store(out + 4, adjugate[1] * odd);
    Store(out + 8, adjugate[2] * even);
    Store(out + 12, adjugate[3] * odd);
    return true;
}

G3D_INLINE void LoadColumns(const float* m, Quad (&columns)[4]) {
    const Float4 low01 = ZipLow(LoadFloats(m), LoadFloats(m + 4));
    const Float4 high01 = ZipHigh(LoadFloats(m), LoadFloats(m + 4));
    const Float4 low23 = ZipLow(LoadFloats(m + 8), LoadFloats(m + 12));
    const Float4 high23 = ZipHigh(LoadFloats(m + 8), LoadFloats(m + 12));
    columns[0] = Widen(Pick<0, 1, 4, 5>(low01, low23));
    columns[1] = Widen(Pick<2, 3, 6, 7>(low01, low23));
    columns[2] = Widen(Pick<0, 1, 4, 5>(high01, high23));
    columns[3] = Widen(Pick<2, 3, 6, 7>(high01, high23));
}

inline void Points(const float* m, float* pts, int n) {
    Quad columns[4];
    LoadColumns(m, columns);
    for (; n >= 4; n -= 4, pts += 16) {
        Store(pts, Combine(columns, Load(pts)));
        Store(pts + 4, Combine(columns, Load(pts + 4)));
        Store(pts + 8, Combine(columns, Load(pts + 8)));
        Store(pts + 12, Combine(columns, Load(pts + 12)));
    }
    for (; n > 0; --n, pts += 4) {
        Store(pts, Combine(columns, Load(pts)));
    }
}

inline void Vectors(const float* m, float* vs, int n) {
    // One by one: an array of them would not stay in registers.
    const Quad m00 = SpreadOut(m[0]);
    const Quad m01 = SpreadOut(m[1]);
    const Quad m02 = SpreadOut(m[2]);
    const Quad m10 = SpreadOut(m[4]);
    const Quad m11 = SpreadOut(m[5]);
    const Quad m12 = SpreadOut(m[6]);
    const Quad m20 = SpreadOut(m[8]);
    const Quad m21 = SpreadOut(m[9]);
    const Quad m22 = SpreadOut(m[10]);
    for (; n >= 4; n -= 4, vs += 12) {
        // Four vectors: x0 y0 z0 x1, y1 z1 x2 y2, z2 x3 y3 z3, and one component of all.
        const Float4 a = LoadFloats(vs);
        const Float4 b = LoadFloats(vs + 4);
        const Float4 c = LoadFloats(vs + 8);
        const Float4 xy23 = Pick<2, 3, 5, 6>(b, c);
        const Float4 yz01 = Pick<1, 2, 4, 5>(a, b);
        const Quad x = Widen(Pick<0, 3, 4, 6>(a, xy23));
        const Quad y = Widen(Pick<0, 2, 5, 7>(yz01, xy23));
        const Quad z = Widen(Pick<1, 3, 4, 7>(yz01, c));
        const Float4 rx = Narrow(m00 * x + m01 * y + m02 * z);
        const Float4 ry = Narrow(m10 * x + m11 * y + m12 * z);
        const Float4 rz = Narrow(m20 * x + m21 * y + m22 * z);
        const Float4 xy02 = Pick<0, 2, 4, 6>(rx, ry);
        const Float4 yz13 = Pick<1, 3, 5, 7>(ry, rz);
        const Float4 zx = Pick<0, 2, 5, 7>(rz, rx);
        StoreFloats(vs, Pick<0, 2, 4, 6>(xy02, zx));
        StoreFloats(vs + 4, Pick<0, 2, 5, 7>(yz13, xy02));
        StoreFloats(vs + 8, Pick<1, 3, 5, 7>(zx, yz13));
    }
    for (; n > 0; --n, vs += 3) {
        const double x = vs[0];
        const double y = vs[1];
        const double z = vs[2];
        for (int i = 0; i < 3; ++i) {
            const float* row = m + i * 4;
            vs[i] = static_cast<float>(row[0] * x + row[1] * y + row[2] * z);
        }
    }
}

// NOLINTNEXTLINE(misc-definitions-in-headers): included in one source, once a namespace
constexpr g3d_XFormKernels kKernels{&Multiply, &Determinant, &Invert, &Points, &Vectors};
