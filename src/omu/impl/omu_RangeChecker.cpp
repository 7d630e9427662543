#include "omu_RangeChecker.h"

void omu_RangeChecker::Check(const atr_String& keyword, int value) const {
    CheckAs(omu_KeywordTypeEnm::Integer, keyword, value);
}

void omu_RangeChecker::Check(const atr_String& keyword, double value) const {
    CheckAs(omu_KeywordTypeEnm::Float, keyword, value);
}

void omu_RangeChecker::CheckAs(omu_KeywordTypeEnm type, const atr_String& keyword,
                               double value) const {
    if (Accepts(value)) {
        return;
    }
    const auto text = [](const Limit& limit) {
        return limit.qualifier == omu_LimitQualifierEnm::None
                   ? atr_String()
                   : atr_String(atr_StringBase::FromDouble(limit.value));
    };
    omu_RangeErrorException(keyword, type, text(_lower), _lower.qualifier, text(_upper),
                            _upper.qualifier)
        .Throw("generated/omu/impl/omu_RangeChecker", __LINE__);
}
