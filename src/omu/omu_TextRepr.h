#pragma once

#include "CaeUtilsExport.h"
#include "cow_String.h"

#include <array>
#include <climits>

class omu_InterfaceObj;

/// How long and how deep text representations may grow, for the whole process:
/// omi_Singleton<omu_TextRepr>::Instance(). Plain settings without checks, for one thread.
class CAE_API omu_TextRepr {
public:
    [[nodiscard]] int GetSimpleStyle() const noexcept { return _simpleStyle; }
    void SetSimpleStyle(int style) noexcept { _simpleStyle = style; }

    /// Objects nested deeper than this show as their MaxRecursionString.
    [[nodiscard]] int GetMaxRecursion() const noexcept { return _maxRecursion; }
    void SetMaxRecursion(int depth) noexcept { _maxRecursion = depth; }

    /// Elements that a sequence shows at most.
    [[nodiscard]] int GetMaxElementsInSequence() const noexcept { return _maxElementsInSequence; }
    void SetMaxElementsInSequence(int count) noexcept { _maxElementsInSequence = count; }

    /// [MB]
    [[nodiscard]] int GetMaxReprStringSizeMB() const noexcept { return _maxReprStringSizeMB; }
    void SetMaxReprStringSizeMB(int size) noexcept { _maxReprStringSizeMB = size; }

    [[nodiscard]] double GetZeroTolerance() const noexcept { return _zeroTolerance; }
    void SetZeroTolerance(double tolerance) noexcept { _zeroTolerance = tolerance; }

    [[nodiscard]] int GetSignificantDigits() const noexcept { return _significantDigits; }
    void SetSignificantDigits(int digits) noexcept { _significantDigits = digits; }

    /// The setting itself for null. For an object the setting with %s replaced by the object's
    /// exposed type name and %% by %, all else as it stands, in single quotes: 'Part object'.
    [[nodiscard]] cow_String GetMaxRecursionString(const omu_InterfaceObj* object) const;
    void SetMaxRecursionString(const cow_String& format) { _maxRecursionString = format; }

    /// Switches without a meaning of their own yet. \p index in [0, 4), else std::out_of_range.
    [[nodiscard]] bool GetFlag(std::size_t index) const { return _flags.at(index); }
    void SetFlag(std::size_t index, bool value) { _flags.at(index) = value; }

private:
    int _simpleStyle = 0;
    int _maxRecursion = 1;
    int _maxElementsInSequence = INT_MAX;
    int _maxReprStringSizeMB = 1;
    double _zeroTolerance = 1e-6;
    int _significantDigits = 3;
    cow_String _maxRecursionString = "%s object";
    std::array<bool, 4> _flags = {false, true, false, false};
};
