#pragma once

#include "CaeUtilsExport.h"
#include "omu_ErrorExceptions.h"

/// Checks numbers against a lower and an upper limit, either of which may be absent.
///
///     omu_RangeChecker().AtLeast(1).AtMost(20).Check("count", count);
///     omu_RangeChecker().Above(0).Check("depth", depth);
class CAE_API omu_RangeChecker {
public:
    /// No limits: every number passes.
    constexpr omu_RangeChecker() noexcept = default;

    constexpr omu_RangeChecker& AtLeast(double limit) noexcept {
        return Set(_lower, limit, omu_LimitQualifierEnm::Inclusive);
    }
    constexpr omu_RangeChecker& Above(double limit) noexcept {
        return Set(_lower, limit, omu_LimitQualifierEnm::Exclusive);
    }
    constexpr omu_RangeChecker& AtMost(double limit) noexcept {
        return Set(_upper, limit, omu_LimitQualifierEnm::Inclusive);
    }
    constexpr omu_RangeChecker& Below(double limit) noexcept {
        return Set(_upper, limit, omu_LimitQualifierEnm::Exclusive);
    }

    /// Whether \p value keeps the limits; a NaN keeps none, but passes where there is none.
    [[nodiscard]] constexpr bool Accepts(double value) const noexcept {
        return (_lower.qualifier == omu_LimitQualifierEnm::None ||
                (_lower.qualifier == omu_LimitQualifierEnm::Inclusive ? value >= _lower.value
                                                                      : value > _lower.value)) &&
               (_upper.qualifier == omu_LimitQualifierEnm::None ||
                (_upper.qualifier == omu_LimitQualifierEnm::Inclusive ? value <= _upper.value
                                                                      : value < _upper.value));
    }

    /// Raises omu_RangeErrorException with \p keyword, the kind of number and the limits unless
    /// \p value keeps them. Limits are shown with 15 significant digits at most.
    void Check(const atr_String& keyword, int value) const;
    void Check(const atr_String& keyword, double value) const;

private:
    struct Limit {
        double value = 0;
        omu_LimitQualifierEnm qualifier = omu_LimitQualifierEnm::None;
    };

    constexpr omu_RangeChecker& Set(Limit& which, double limit,
                                    omu_LimitQualifierEnm qualifier) noexcept {
        which = {limit, qualifier};
        return *this;
    }
    void CheckAs(omu_KeywordTypeEnm type, const atr_String& keyword, double value) const;

    Limit _lower;
    Limit _upper;
};
