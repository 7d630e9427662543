#include "omi_complex.h"

#include <cmath>

double omi_complex::ConvertedReal() const noexcept {
    return _converted ? _first * std::cos(_second) : _first;
}

double omi_complex::ConvertedImag() const noexcept {
    return _converted ? _first * std::sin(_second) : _second;
}
