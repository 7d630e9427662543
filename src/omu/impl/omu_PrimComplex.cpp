#include "omu_PrimComplex.h"

#include "utl_Catenator.h"

omu_PrimComplex::omu_PrimComplex(const cls_ReadVisitor& visitor)
    : omu_PrimLevel(visitor), _uid(visitor.GetUid()) {
    cls_ReadFields<omu_PrimComplex>(*this, visitor);
}

omu_PrimComplex::~omu_PrimComplex() = default;

cow_String omu_PrimComplex::AsString(int) const {
    const double real = _value.IsConverted() ? _value.ConvertedReal() : _value.Real();
    const double imag = _value.IsConverted() ? _value.ConvertedImag() : _value.Imag();
    utl_Catenator text;
    text << real;
    // "Not less": an imaginary part that is NaN or negative zero gets the sign as well.
    if (!(imag < 0.0)) {
        text << '+';
    }
    text << imag << 'j';
    return std::move(text).AsString();
}

bool omu_PrimComplex::operator==(const omu_Primitive& other) const {
    const auto* complex = omu_PrimCast<omu_PrimComplex>(other);
    return complex != nullptr && _value == complex->_value;
}
