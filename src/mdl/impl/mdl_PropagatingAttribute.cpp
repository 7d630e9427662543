#include "mdl_PropagatingAttribute.h"

#include "nex_TextException.h"
#include "uti_DirectClass.h"

namespace {

constexpr const char* kSource = "generated/include/mdl_PropagatingAttribute";

/// Only the first step can leave a property unset, and only a later one can free it.
void CheckSettable(const cow_String& attributeName, mdl_PropAttributeStateEnm state,
                   bool isFirstStep) {
    if (state != SET && state != UNCHANGED && state != (isFirstStep ? UNSET : FREED)) {
        nex_TextException(
            atr_String::Format("Invalid propagation status for '%s' attribute.", attributeName))
            .Throw(kSource, isFirstStep ? 158 : 170);
    }
}

void CheckStored(const char* className, mdl_PropAttributeStateEnm state) {
    if (state < UNSET || state > COMP_DEFAULT) {
        nex_TextException(atr_String::Format("%s: %d is not the number of an attribute's state",
                                             className, static_cast<int>(state)))
            .Throw(kSource, __LINE__);
    }
}

}  // namespace

template class omu_PrimEnum<mdl_PropAttributeStateEnm, 1>;

template <mdl_PropValue T>
mdl_PropAttr<T>::mdl_PropAttr(const cls_ReadVisitor& visitor) : _value(), _uid(visitor.GetUid()) {
    cls_ReadFields(*this, visitor);
    CheckStored(kClass.storedName, _state);
}

template <mdl_PropValue T>
mdl_PropAttr<T>::~mdl_PropAttr() = default;

template <mdl_PropValue T>
void mdl_PropAttr<T>::DBWrite(const cls_WriteVisitor& visitor) const {
    cls_WriteLevel(*this, _uid, visitor);
}

template <mdl_PropValue T>
void mdl_PropAttr<T>::InitializeMetadata(cls_ClassRegistrar& registrar) {
    uti_RegisterDirect<mdl_PropAttr>(registrar);
}

template <mdl_PropValue T>
void mdl_PropAttr<T>::SetStatus(const cow_String& attributeName,
                                const omu_PrimEnum<mdl_PropAttributeStateEnm, 1>& status,
                                bool isFirstStep) {
    const mdl_PropAttributeStateEnm state = status;
    CheckSettable(attributeName, state, isFirstStep);
    if (state != UNCHANGED) {
        Zero();
        _state = state;
    }
}

template class mdl_PropAttr<cow_String>;
template class mdl_PropAttr<int>;
template class mdl_PropAttr<double>;
template class mdl_PropAttr<bool>;
template class mdl_PropAttr<cls_xpListInt>;
template class mdl_PropAttr<cls_xp1DArrayInt>;
template class mdl_PropAttr<cls_xpListString>;
template class mdl_PropAttr<cls_xp1DArrayListFloat>;
