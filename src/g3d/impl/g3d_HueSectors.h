#pragma once

/// Red, green and blue in double, on the way from hue, saturation and value.
struct g3d_Shades {
    double red;
    double green;
    double blue;
};

/// \param sixths  the hue in sixths of the circle, above -1 and below 6; cut toward zero it is the
///                number of its sector.
/// Looks the roles of the channels up rather than branching on the sector, which no processor
/// foresees for the colors of a picture.
inline g3d_Shades g3d_ShadesOf(double sixths, double saturation, double value) noexcept {
    enum : unsigned char { V, P, Q, T };
    static constexpr unsigned char kRoles[6][3] = {{V, T, P}, {Q, V, P}, {P, V, T},
                                                   {P, Q, V}, {T, P, V}, {V, P, Q}};
    const int sector = static_cast<int>(sixths);
    const double f = sixths - sector;
    const double shades[] = {value, value * (1 - saturation), value * (1 - saturation * f),
                             value * (1 - saturation * (1 - f))};
    const unsigned char* roles = kRoles[sector];
    return {shades[roles[0]], shades[roles[1]], shades[roles[2]]};
}
