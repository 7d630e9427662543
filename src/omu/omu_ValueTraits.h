#pragma once

#include "cow_String.h"

#include <concepts>

class omu_Primitive;

/// Where a getter finds its value: the words for what it expects differ in places.
enum class omu_GetterKind { Positional, Keyword };

/// How one C++ type crosses into and out of the command language; specialised once per type.
///
///     static omu_Primitive* Make(const T&);                  // a new value, the caller owns it
///     static bool Convert(const omu_Primitive&, T& target);  // false: not accepted, target kept
///     static cow_String Expected(const T& target, omu_GetterKind);  // what a getter expects
///
/// Every Put, getter, keyword getter, dictionary getter and container conversion forwards to it.
/// A type that only enters the language offers Make alone.
template <class T>
struct omu_ValueTraits;

/// A type that can be put into the command language.
template <class T>
concept omu_Puttable = requires(const T& value) {
    { omu_ValueTraits<T>::Make(value) } -> std::same_as<omu_Primitive*>;
};

/// A type that can be read from the command language.
template <class T>
concept omu_Gettable = requires(const omu_Primitive& value, T& target, omu_GetterKind kind) {
    { omu_ValueTraits<T>::Convert(value, target) } -> std::same_as<bool>;
    { omu_ValueTraits<T>::Expected(target, kind) } -> std::same_as<cow_String>;
};
