#pragma once

#include "cow_List.h"
#include "cow_String.h"
#include "g3d_Color.h"

enum g3d_LineThicknessEnum : int;
enum g3d_MarkerSizeEnum : int;

/// What the graphics classes share: checks, colour ramps, drawing sizes.
///
/// A ramp writes n colours with the given alpha to \p colors, nothing where n < 1.
class CAE_API g3d_Utils {
public:
    g3d_Utils() = delete;

    /// \throws nex_AssertException  with \p expression, where \p condition is false; in every
    /// build.
    static void Assert(bool condition, const char* expression, const char* source, int line);
    /// \throws mem_ExhaustedException  where \p memory is null.
    static void AssertMem(const void* memory);

    /// From blue by green to red; \p reverse: from red to blue. One colour: the first of these.
    static void Rainbow(g3d_Color* colors, int n, bool reverse, float alpha);
    /// From blue to red by dark purple, or \p reverse; squares of the distance to the ends. One
    /// colour: pure blue, or red.
    static void BlueToRed(g3d_Color* colors, int n, bool reverse, float alpha);
    /// Greys from 0.15 to 0.85, or \p reverse. One colour: black, or white.
    static void BlackToWhite(g3d_Color* colors, int n, bool reverse, float alpha);
    /// Once round the circle of hues from hue 0.3, which both ends have. One colour: green.
    static void WrapAround(g3d_Color* colors, int n, float alpha);

    /// From dark violet by green to yellow, or \p reverse, of evenly growing lightness; for ordered
    /// values. One colour: the first of these.
    static void Viridis(g3d_Color* colors, int n, bool reverse, float alpha);
    /// From blue by light grey to red, or \p reverse; for values on both sides of a middle. One
    /// colour: the first of these.
    static void CoolWarm(g3d_Color* colors, int n, bool reverse, float alpha);

    /// Spreads the colours named evenly over \p n colours and interpolates between them, in red,
    /// green, blue and alpha; the first and the last are exact, and the first alone where n is 1.
    /// No names, or n < 1: nothing is written.
    /// \throws g3d_ColorErrorException  for an unknown name; nothing has been written then.
    static void FillInColorsAndInterpolate(const cow_List<cow_String>& names, int n,
                                           g3d_Color* colors);

    /// Drawing units of a thickness; any other value counts as the thinnest.
    [[nodiscard]] static float ConvertLineThickness(g3d_LineThicknessEnum thickness) noexcept;
    /// Drawing units of a size; any other value counts as the smallest.
    [[nodiscard]] static int ConvertMarkerSize(g3d_MarkerSizeEnum size) noexcept;
};
