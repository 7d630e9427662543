#pragma once

#include "cls_xpLists.h"
#include "cow_1DArray.h"
#include "cow_1DArrayList.h"
#include "cow_2DArray.h"
#include "cow_List.h"
#include "cow_Map.h"
#include "omi_complex.h"
#include "omu_PrimArray.h"
#include "omu_PrimBoolean.h"
#include "omu_PrimComplex.h"
#include "omu_PrimDictionary.h"
#include "omu_PrimEnumBase.h"
#include "omu_PrimExpr.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_PrimPath.h"
#include "omu_PrimString.h"
#include "omu_PrimTranslatedString.h"
#include "omu_PrimTuple.h"
#include "omu_PrimType.h"
#include "omu_PyObjectWrapper.h"
#include "omu_TarvexName.h"
#include "omu_ValueTraits.h"
#include "utl_FilePath.h"

#include <memory>
#include <type_traits>

/// \file
/// The traits of all types that cross into and out of the command language. To let a type of your
/// own cross, specialise omu_ValueTraits for it; its lists and arrays then cross as well.

/// An integer type: a number of kind 'i' with exactly its data type.
template <class T, omu_PrimNumber::DataTypeEnm DataType>
struct omu_IntegerTraits {
    static omu_Primitive* Make(const T& value) { return new omu_PrimNumber(value); }
    static bool Convert(const omu_Primitive& value, T& target) {
        const auto* number = omu_PrimCast<omu_PrimNumber>(value);
        if (number == nullptr || !number->IsType('i') || number->DataType() != DataType) {
            return false;
        }
        if constexpr (std::is_unsigned_v<T>) {
            target = static_cast<T>(number->UValue());
        } else {
            target = static_cast<T>(number->AsInt());
        }
        return true;
    }
    static cow_String Expected(const T&, omu_GetterKind) { return "int"; }
};

/// A floating-point type: any number.
template <class T>
struct omu_FloatTraits {
    static omu_Primitive* Make(const T& value) {
        return new omu_PrimNumber(static_cast<double>(value));
    }
    static bool Convert(const omu_Primitive& value, T& target) {
        const auto* number = omu_PrimCast<omu_PrimNumber>(value);
        if (number == nullptr || !(number->IsType('f') || number->IsType('i'))) {
            return false;
        }
        target = static_cast<T>(number->Value());
        return true;
    }
    static cow_String Expected(const T&, omu_GetterKind) { return "float"; }
};

/// A class of values: taken as a copy, given back as a copy.
template <class Prim>
struct omu_CopyTraits {
    static omu_Primitive* Make(const Prim& value) { return value.Copy(); }
    static bool Convert(const omu_Primitive& value, Prim& target) {
        const auto* own = dynamic_cast<const Prim*>(&value);
        if (own == nullptr) {
            return false;
        }
        target = *own;
        return true;
    }
    static cow_String Expected(const Prim& target, omu_GetterKind) { return target.TypeString(); }
};

// clang-format off
template <> struct omu_ValueTraits<signed char> : omu_IntegerTraits<signed char, omu_PrimNumber::SCHAR> {};
template <> struct omu_ValueTraits<short> : omu_IntegerTraits<short, omu_PrimNumber::SHORT> {};
template <> struct omu_ValueTraits<int> : omu_IntegerTraits<int, omu_PrimNumber::INT> {};
template <> struct omu_ValueTraits<unsigned int> : omu_IntegerTraits<unsigned int, omu_PrimNumber::UINT> {};
template <> struct omu_ValueTraits<float> : omu_FloatTraits<float> {};
template <> struct omu_ValueTraits<double> : omu_FloatTraits<double> {};
template <> struct omu_ValueTraits<omu_PrimExpr> : omu_CopyTraits<omu_PrimExpr> {};
template <> struct omu_ValueTraits<omu_PrimPath> : omu_CopyTraits<omu_PrimPath> {};
template <> struct omu_ValueTraits<omu_PrimArray> : omu_CopyTraits<omu_PrimArray> {};
template <> struct omu_ValueTraits<omu_PrimDictionary<int>> : omu_CopyTraits<omu_PrimDictionary<int>> {};
template <> struct omu_ValueTraits<omu_PrimDictionary<cow_String>> : omu_CopyTraits<omu_PrimDictionary<cow_String>> {};
template <> struct omu_ValueTraits<omu_PrimNone> : omu_CopyTraits<omu_PrimNone> {};
template <> struct omu_ValueTraits<omu_PrimType> : omu_CopyTraits<omu_PrimType> {};
// clang-format on

/// A bool: a Boolean; failing that the integers 0 and 1 and the constants of the switch words (ON,
/// OFF, TRUE, FALSE, YES, NO).
template <>
struct CAE_API omu_ValueTraits<bool> {
    static omu_Primitive* Make(bool value) { return new omu_PrimBoolean(value); }
    static bool Convert(const omu_Primitive& value, bool& target);
    static cow_String Expected(bool target, omu_GetterKind kind);
};

/// A type held as text: accepts strings.
template <class T>
struct CAE_API omu_TextTraits {
    static omu_Primitive* Make(const T& value);
    static bool Convert(const omu_Primitive& value, T& target);
    static cow_String Expected(const T&, omu_GetterKind) { return "string"; }
};

template <>
struct omu_ValueTraits<cow_String> : omu_TextTraits<cow_String> {};
template <>
struct omu_ValueTraits<utl_FilePath> : omu_TextTraits<utl_FilePath> {};
/// A name read from a string is checked as a plain name and raises the name error at once.
template <>
struct omu_ValueTraits<omu_TarvexName> : omu_TextTraits<omu_TarvexName> {};

template <>
struct omu_ValueTraits<const char*> {
    static omu_Primitive* Make(const char* value) { return new omu_PrimString(value); }
};

template <>
struct CAE_API omu_ValueTraits<atr_String> {
    static omu_Primitive* Make(const atr_String& value);
    static bool Convert(const omu_Primitive& value, atr_String& target);
    static cow_String Expected(const atr_String&, omu_GetterKind) { return "tran_string"; }
};

template <>
struct CAE_API omu_ValueTraits<omi_complex> {
    static omu_Primitive* Make(const omi_complex& value) { return new omu_PrimComplex(value); }
    static bool Convert(const omu_Primitive& value, omi_complex& target);
    static cow_String Expected(const omi_complex&, omu_GetterKind) { return "complex"; }
};

/// A constant; the target's own enumeration decides which names it takes.
template <>
struct CAE_API omu_ValueTraits<omu_PrimEnumBase> {
    static omu_Primitive* Make(const omu_PrimEnumBase& value) { return value.Copy(); }
    static bool Convert(const omu_Primitive& value, omu_PrimEnumBase& target);
    static cow_String Expected(const omu_PrimEnumBase& target, omu_GetterKind) {
        return target.TypeString();
    }
};

/// Any tuple or list; of an array, the tuple of its elements.
template <>
struct CAE_API omu_ValueTraits<omu_PrimTuple> {
    static omu_Primitive* Make(const omu_PrimTuple& value) { return value.Copy(); }
    static bool Convert(const omu_Primitive& value, omu_PrimTuple& target);
    static cow_String Expected(const omu_PrimTuple& target, omu_GetterKind) {
        return target.TypeString();
    }
};

/// Any value, as a copy.
template <>
struct CAE_API omu_ValueTraits<omu_PrimHolder> {
    static omu_Primitive* Make(const omu_PrimHolder& value) { return value.ConstGet().Copy(); }
    static bool Convert(const omu_Primitive& value, omu_PrimHolder& target);
    static cow_String Expected(const omu_PrimHolder&, omu_GetterKind) { return "value"; }
};

/// An owned value; the tuple or dictionary takes it over. Null counts as None.
template <>
struct CAE_API omu_ValueTraits<omu_Primitive*> {
    static omu_Primitive* Make(omu_Primitive* value) {
        return value != nullptr ? value : new omu_PrimNone;
    }
};

/// An object of the application, kept by handle in a wrapper. Null counts as None.
template <>
struct CAE_API omu_ValueTraits<omu_InterfaceObj*> {
    static omu_Primitive* Make(omu_InterfaceObj* value);
    /// The object that \p value is a handle of, when it is of the type \p typeName; else null.
    static const omu_InterfaceObj* Find(const omu_Primitive& value, const char* typeName);
};

/// A wrapped interpreter object; the wrapper is copied. Null counts as None.
template <>
struct CAE_API omu_ValueTraits<omu_PyObjectWrapper*> {
    static omu_Primitive* Make(const omu_PyObjectWrapper* value);
};

/// Expected words of a sequence target.
struct omu_SequenceWords {
    const char* positional;
    const char* keyword;

    [[nodiscard]] cow_String For(omu_GetterKind kind) const {
        return kind == omu_GetterKind::Keyword ? keyword : positional;
    }
};

/// The words of a list or array of T; specialised below for the element types of the interface.
template <class Container>
inline constexpr omu_SequenceWords omu_kWords{"sequence", "sequence"};
// clang-format off
template <> inline constexpr omu_SequenceWords omu_kWords<cow_List<int>>{"sequence of Integers", "sequence of Integers"};
template <> inline constexpr omu_SequenceWords omu_kWords<cow_List<bool>>{"sequence of Bool", "sequence of Bool"};
template <> inline constexpr omu_SequenceWords omu_kWords<cow_List<float>>{"sequence of Floats", "sequence of Floats"};
template <> inline constexpr omu_SequenceWords omu_kWords<cow_List<cow_String>>{"sequence of Strings", "sequence of Strings"};
template <> inline constexpr omu_SequenceWords omu_kWords<cow_List<atr_String>>{"sequence of translated Strings", "sequence of Translated Strings"};
template <> inline constexpr omu_SequenceWords omu_kWords<cow_1DArrayList<float>>{"sequence of Floats", "sequence of Floats"};
template <> inline constexpr omu_SequenceWords omu_kWords<cow_1DArrayList<double>>{"sequence of Doubles", "sequence of Floats"};
template <> inline constexpr omu_SequenceWords omu_kWords<cow_1DArrayList<int>>{"sequence of Ints", "sequence of Integers"};
template <> inline constexpr omu_SequenceWords omu_kWords<cow_1DArrayList<cow_String>>{"sequence of Strings", "sequence of Strings"};
template <> inline constexpr omu_SequenceWords omu_kWords<cow_1DArray<int>>{"sequence of Ints", "sequence of Integers"};
template <> inline constexpr omu_SequenceWords omu_kWords<cow_2DArray<double>>{"2D sequence of Doubles", "2D sequence of Floats"};
template <> inline constexpr omu_SequenceWords omu_kWords<cow_2DArray<cow_String>>{"2D sequence of Strings", "2D sequence of Strings"};
template <> inline constexpr omu_SequenceWords omu_kWords<cow_Map<cow_String, float>>{"Map of string to float", "Map of string to float"};
// clang-format on

/// A sequence value read element by element, whatever its class.
class CAE_API omu_SequenceView {
public:
    /// Views \p value when it is a sequence: kind '(' and a class of sequences.
    explicit omu_SequenceView(const omu_Primitive& value);

    [[nodiscard]] explicit operator bool() const noexcept { return _sequence != nullptr; }
    [[nodiscard]] int Length() const { return _sequence->Length(); }
    /// Element \p index; None for an empty slot.
    [[nodiscard]] const omu_Primitive& operator[](int index) const;

    /// The array behind the view when it is one-dimensional, else null.
    [[nodiscard]] const omu_PrimArray* AsFlatArray() const noexcept;

private:
    const omu_PrimSequence* _sequence = nullptr;
};

/// Converts the elements of \p value in order with \p take(index, element), which answers false
/// for an element it does not accept.
template <class Take>
[[nodiscard]] bool omu_ForEachElement(const omu_SequenceView& view, Take take) {
    const int length = view.Length();
    for (int i = 0; i < length; ++i) {
        if (!take(i, view[i])) {
            return false;
        }
    }
    return true;
}

/// A tuple, its \p count elements made by \p make(index).
template <class MakeElement>
[[nodiscard]] omu_PrimTuple* omu_MakeTuple(int count, MakeElement make) {
    auto tuple = std::make_unique<omu_PrimTuple>(count, omu_PrimSequence::kCode);
    for (int i = 0; i < count; ++i) {
        tuple->Put(static_cast<omu_Primitive*>(make(i)));
    }
    return tuple.release();
}

/// A list or array: a sequence whose elements all convert.
template <class Container, class T>
struct omu_SequenceTraits {
    static omu_Primitive* Make(const Container& values) {
        return omu_MakeTuple(values.Length(),
                             [&](int i) { return omu_ValueTraits<T>::Make(values.ConstGet(i)); });
    }
    static bool Convert(const omu_Primitive& value, Container& target) {
        const omu_SequenceView view(value);
        if (!view) {
            return false;
        }
        Container taken;
        if constexpr (std::is_same_v<T, double>) {
            if (const omu_PrimArray* array = view.AsFlatArray()) {
                const std::vector<double> doubles = array->AsDoubles();
                target = Container(std::span<const double>(doubles));
                return true;
            }
        }
        if constexpr (requires { taken.Grow(1); }) {
            taken.Grow(view.Length());
        }
        const bool converted = omu_ForEachElement(view, [&](int i, const omu_Primitive& element) {
            if constexpr (requires { taken.Grow(1); }) {
                return omu_ValueTraits<T>::Convert(element, taken.Get(i));
            } else {
                T next{};
                if (!omu_ValueTraits<T>::Convert(element, next)) {
                    return false;
                }
                taken.Append(std::move(next));
                return true;
            }
        });
        if (converted) {
            target = std::move(taken);
        }
        return converted;
    }
    static cow_String Expected(const Container&, omu_GetterKind kind) {
        return omu_kWords<Container>.For(kind);
    }
};

template <class T>
struct omu_ValueTraits<cow_List<T>> : omu_SequenceTraits<cow_List<T>, T> {};
template <class T>
struct omu_ValueTraits<cow_1DArrayList<T>> : omu_SequenceTraits<cow_1DArrayList<T>, T> {};
template <class T>
struct omu_ValueTraits<cow_1DArray<T>> : omu_SequenceTraits<cow_1DArray<T>, T> {};
/// A persistent list crosses as the container that it is.
template <class Container>
struct omu_ValueTraits<cls_xpList<Container>> : omu_ValueTraits<Container> {};

/// A two-dimensional array: a sequence of rows of equal length.
template <class T>
struct omu_ValueTraits<cow_2DArray<T>> {
    using Container = cow_2DArray<T>;

    static omu_Primitive* Make(const Container& values) {
        return omu_MakeTuple(values.Rows(), [&](int row) {
            return omu_MakeTuple(values.Columns(), [&, row](int column) {
                return omu_ValueTraits<T>::Make(values.ConstGet(row, column));
            });
        });
    }
    static bool Convert(const omu_Primitive& value, Container& target) {
        const omu_SequenceView rows(value);
        if (!rows) {
            return false;
        }
        Container taken;
        const bool converted = omu_ForEachElement(rows, [&](int i, const omu_Primitive& row) {
            const omu_SequenceView cells(row);
            if (!cells) {
                return false;
            }
            if (i == 0) {
                taken.Resize(rows.Length(), cells.Length());
            }
            return cells.Length() == taken.Columns() &&
                   omu_ForEachElement(cells, [&](int j, const omu_Primitive& cell) {
                       return omu_ValueTraits<T>::Convert(cell, taken.Get(i, j));
                   });
        });
        if (converted) {
            target = std::move(taken);
        }
        return converted;
    }
    static cow_String Expected(const Container&, omu_GetterKind kind) {
        return omu_kWords<Container>.For(kind);
    }
};

/// A map: a sequence of (key, value) pairs; of equal keys the last one stands.
template <class Key, class T>
struct omu_ValueTraits<cow_Map<Key, T>> {
    using Container = cow_Map<Key, T>;

    static omu_Primitive* Make(const Container& values) {
        auto entry = values.begin();
        return omu_MakeTuple(values.Length(), [&](int) {
            const auto& [key, value] = *entry;
            auto pair = std::make_unique<omu_PrimTuple>(2, omu_PrimSequence::kCode);
            pair->Put(omu_ValueTraits<Key>::Make(key));
            pair->Put(omu_ValueTraits<T>::Make(value));
            ++entry;
            return pair.release();
        });
    }
    static bool Convert(const omu_Primitive& value, Container& target) {
        const omu_SequenceView pairs(value);
        if (!pairs) {
            return false;
        }
        Container taken;
        const bool converted = omu_ForEachElement(pairs, [&](int, const omu_Primitive& element) {
            const omu_SequenceView pair(element);
            Key key{};
            T mapped{};
            if (!pair || pair.Length() != 2 || !omu_ValueTraits<Key>::Convert(pair[0], key) ||
                !omu_ValueTraits<T>::Convert(pair[1], mapped)) {
                return false;
            }
            taken.Put(key, mapped);
            return true;
        });
        if (converted) {
            target = std::move(taken);
        }
        return converted;
    }
    static cow_String Expected(const Container&, omu_GetterKind kind) {
        return omu_kWords<Container>.For(kind);
    }
};
