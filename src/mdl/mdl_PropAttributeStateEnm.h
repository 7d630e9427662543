#pragma once

#include "omu_PrimEnum.h"

/// Where the value of a propagating attribute comes from in a step. The numbers stand in saved
/// data and never change; the states from NOT_APPLICABLE on are stored but mean nothing here.
enum mdl_PropAttributeStateEnm : int {
    UNSET = 0,      ///< there is no value in this step; it is zero
    SET = 1,        ///< set in this step
    UNCHANGED = 2,  ///< carried over from the step before
    FREED = 3,      ///< removed in this step; it is zero
    NOT_APPLICABLE = 4,
    INVALID = 5,
    ABS_DEFAULT = 6,
    COMP_DEFAULT = 7,
};

template <>
struct omu_EnumTable<mdl_PropAttributeStateEnm, 1> {
    static constexpr omu_EnumEntry<mdl_PropAttributeStateEnm> kEntries[] = {
        {"UNSET", UNSET},
        {"SET", SET},
        {"UNCHANGED", UNCHANGED},
        {"FREED", FREED},
        {"NOT_APPLICABLE", NOT_APPLICABLE},
        {"INVALID", INVALID},
        {"ABS_DEFAULT", ABS_DEFAULT},
        {"COMP_DEFAULT", COMP_DEFAULT},
        {nullptr, UNSET}};
};

extern template class CAE_API omu_PrimEnum<mdl_PropAttributeStateEnm, 1>;
