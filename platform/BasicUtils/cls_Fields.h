#pragma once

#include "cls_ClassRegistrar.h"
#include "cls_TypeAdapter.h"

#include <tuple>
#include <type_traits>

/// What a persistent class says of itself once, as `static constexpr cls_ClassInfo kClass`.
struct cls_ClassInfo {
    const char* storedName;
    unsigned typeId;
    unsigned baseTypeId;  ///< 1 for classes without a persistent base
    int version;
};

template <class M>
struct cls_FieldTraits;

/// One entry of a class's field list: stored name and member.
template <class Class, class Member, class FieldTraits = cls_FieldTraits<Member>>
struct cls_Field {
    using Traits = FieldTraits;

    constexpr cls_Field(const char* storedName, Member Class::*fieldMember) noexcept
        : name(storedName), member(fieldMember) {}

    const char* name;
    Member Class::*member;
};

template <class Class, class Member>
cls_Field(const char*, Member Class::*) -> cls_Field<Class, Member>;

/// How members of type M are described, written and read. Specialise it, with the same members,
/// for types beyond the plain ones below.
template <class M>
struct cls_FieldTraits;

/// The common part of field types that a visitor knows directly.
template <class M, cls_AttributeType Type>
struct cls_PlainFieldTraits {
    static constexpr cls_AttributeType kType = Type;
    static constexpr unsigned kClassId = 1;
    static constexpr cls_CollectionType kCollection = cls_CollectionType::Single;

    static void Write(const cls_WriteVisitor& visitor, const char* name, const M& value) {
        visitor.Write(name, value);
    }
    static void Read(const cls_ReadVisitor& visitor, const char* name, M& value) {
        visitor.Read(name, value);
    }
};

// clang-format off
template <> struct cls_FieldTraits<char> : cls_PlainFieldTraits<char, cls_AttributeType::Tag> {};
template <> struct cls_FieldTraits<int> : cls_PlainFieldTraits<int, cls_AttributeType::Int> {};
template <> struct cls_FieldTraits<unsigned int> : cls_PlainFieldTraits<unsigned int, cls_AttributeType::UnsignedInt> {};
template <> struct cls_FieldTraits<float> : cls_PlainFieldTraits<float, cls_AttributeType::Float> {};
template <> struct cls_FieldTraits<double> : cls_PlainFieldTraits<double, cls_AttributeType::Double> {};
template <> struct cls_FieldTraits<bool> : cls_PlainFieldTraits<bool, cls_AttributeType::Bool> {};
template <> struct cls_FieldTraits<cow_String> : cls_PlainFieldTraits<cow_String, cls_AttributeType::String> {};
template <> struct cls_FieldTraits<atr_String> : cls_PlainFieldTraits<atr_String, cls_AttributeType::TranslatedString> {};
// clang-format on

/// Enumerations are stored as their integer.
template <class E>
requires std::is_enum_v<E>
struct cls_FieldTraits<E> {
    static constexpr cls_AttributeType kType = cls_AttributeType::Enum;
    static constexpr unsigned kClassId = 1;
    static constexpr cls_CollectionType kCollection = cls_CollectionType::Single;

    static void Write(const cls_WriteVisitor& visitor, const char* name, const E& value) {
        visitor.Write(name, static_cast<int>(value));
    }
    static void Read(const cls_ReadVisitor& visitor, const char* name, E& value) {
        int stored = 0;
        visitor.Read(name, stored);
        value = static_cast<E>(stored);
    }
};

/// Translatable text stored as its plain characters.
struct cls_TextAsString {
    static constexpr cls_AttributeType kType = cls_AttributeType::String;
    static constexpr unsigned kClassId = 1;
    static constexpr cls_CollectionType kCollection = cls_CollectionType::Single;

    static void Write(const cls_WriteVisitor& visitor, const char* name, const atr_String& value) {
        visitor.Write(name, cow_String(value));
    }
    static void Read(const cls_ReadVisitor& visitor, const char* name, atr_String& value) {
        cow_String stored;
        visitor.Read(name, stored);
        value = atr_String(stored.View());
    }
};

/// A field list entry for translatable text that is stored as its plain characters.
template <class Class>
constexpr cls_Field<Class, atr_String, cls_TextAsString> cls_StringField(
    const char* name, atr_String Class::*member) {
    return {name, member};
}

/// Vectors of numbers are stored as one block.
template <class N>
requires std::is_arithmetic_v<N>
struct cls_FieldTraits<std::vector<N>> {
    static constexpr cls_AttributeType kType = cls_FieldTraits<N>::kType;
    static constexpr unsigned kClassId = 1;
    static constexpr cls_CollectionType kCollection = cls_CollectionType::List;

    static void Write(const cls_WriteVisitor& visitor, const char* name,
                      const std::vector<N>& values) {
        visitor.Write(name, std::span<const N>(values));
    }
    static void Read(const cls_ReadVisitor& visitor, const char* name, std::vector<N>& values) {
        visitor.Read(name, values);
    }
};

/// Reaches the private field lists of persistent classes, which befriend it.
///
/// A persistent class T offers `static constexpr cls_ClassInfo kClass`, a private
/// `static constexpr auto Fields()` that returns std::tuple of cls_Field, and, where it has a
/// persistent base, `using Base`. That one list drives registration, writing and reading.
struct cls_Access {
    template <class T, class Visit>
    static constexpr void ForEachField(Visit&& visit) {
        std::apply([&](const auto&... field) { (visit(field), ...); }, T::Fields());
    }

    template <class T>
    using BaseOf = typename T::Base;

    template <class T>
    static cls_Uid& UidOf(T& object) {
        return object._uid;
    }
    template <class T>
    static const cls_Uid& UidOf(const T& object) {
        return object._uid;
    }
};

template <class T>
concept cls_HasPersistentBase = requires {
    typename cls_Access::BaseOf<T>;
};

/// Writes the class level T of \p object: opens it, then the base level, then T's fields.
template <class T>
void cls_WriteLevel(const T& object, const cls_Uid& uid, const cls_WriteVisitor& visitor) {
    if (!visitor.StartWrite(T::TypeId(), uid)) {
        return;
    }
    if constexpr (cls_HasPersistentBase<T>) {
        using BaseLevel = cls_Access::BaseOf<T>;
        const auto base = visitor.Base(BaseLevel::TypeId());
        static_cast<const BaseLevel&>(object).BaseLevel::DBWrite(*base);
    }
    cls_Access::ForEachField<T>([&]<class Field>(const Field& field) {
        Field::Traits::Write(visitor, field.name, object.*field.member);
    });
}

/// Reads T's own fields into \p object. A field the stored level lacks keeps its default.
template <class T>
void cls_ReadFields(T& object, const cls_ReadVisitor& visitor) {
    cls_Access::ForEachField<T>([&]<class Field>(const Field& field) {
        if (visitor.Has(field.name)) {
            Field::Traits::Read(visitor, field.name, object.*field.member);
        }
    });
}

/// Destroys and frees the holder of type Holder behind the erased pointer.
template <class Holder>
void cls_DeleteHolder(cow_COW<int, cow_Direct<int>>* erased) {
    auto* holder = reinterpret_cast<Holder*>(erased);
    holder->~Holder();
    mem_Free(holder);
}

/// Registers T with its adapter (abstract where T is), its holder's deleter and its fields.
template <class T, class Holder>
void cls_RegisterClass(cls_ClassRegistrar& registrar) {
    using Adapter =
        std::conditional_t<std::is_abstract_v<T>, cls_AbsTypeAdapter<T>, cls_TypeAdapter<T>>;
    cls_ClassMetadata& metadata = registrar.AddClassMD(
        new Adapter(T::kClass.storedName, T::kClass.version, T::kClass.baseTypeId));
    metadata.AddDtor(&cls_DeleteHolder<Holder>);
    int number = 0;
    cls_Access::ForEachField<T>([&]<class Field>(const Field& field) {
        using Traits = typename Field::Traits;
        metadata.AddAttribute(cls_FieldHandle(number++, field.name), Traits::kType,
                              Traits::kClassId, Traits::kCollection);
    });
}
