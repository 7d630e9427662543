#pragma once

#include "mdl_PropagatingAttribute.h"
#include "omu_Arguments.h"

/// Reads a parameter of a command, given by position or keyword, into an attribute.
///
/// The value is assigned, so that the attribute is SET. A parameter that is not given, a value of
/// the wrong type and a parameter after an error leave the attribute untouched; \p arguments
/// records the error as for every getter. Of type T are taken: what T's own getter takes.
template <mdl_PropValue T>
class mdl_PropAttributeGet {
public:
    static void Get(omu_Arguments& arguments, mdl_PropAttr<T>& attribute,
                    const cow_String& keyword) {
        T value{};
        arguments.Get(value, keyword);
        if (!arguments.HasFailed() && !arguments.ErrorOnPrevious()) {
            attribute = value;
        }
    }
};

/// Reads the next element of a tuple into an attribute, in the same way; where the tuple has ended
/// the attribute stays untouched.
template <mdl_PropValue T>
class mdl_PropAttributeGetFromTuple {
public:
    static void Get(omu_PrimTuple& tuple, mdl_PropAttr<T>& attribute) {
        const bool isGiven = tuple.Cursor() < tuple.Length();
        T value{};
        tuple.Get(value);
        if (isGiven && !tuple.HasFailed()) {
            attribute = value;
        }
    }
};
