#pragma once

#include "cls_Fields.h"
#include "cow_1DArray.h"
#include "cow_1DArrayList.h"
#include "cow_List.h"

/// The common part of fields that are copy-on-write sequences of plain elements: numbers are stored
/// as one block, everything else element by element.
template <class Container>
struct cls_SequenceFieldTraits {
    using Element = typename Container::value_type;

    static constexpr cls_AttributeType kType = cls_FieldTraits<Element>::kType;
    static constexpr unsigned kClassId = cls_FieldTraits<Element>::kClassId;
    static constexpr cls_CollectionType kCollection = cls_CollectionType::List;

    static void Write(const cls_WriteVisitor& visitor, const char* name, const Container& values) {
        if constexpr (requires { values.Values(); } && kIsNumber) {
            visitor.Write(name, values.Values());
        } else if constexpr (kIsNumber) {
            std::vector<Element> block;
            block.reserve(static_cast<std::size_t>(values.Length()));
            values.ForEachBlock([&](std::span<const Element> run) {
                block.insert(block.end(), run.begin(), run.end());
            });
            visitor.Write(name, std::span<const Element>(block));
        } else {
            const auto list = visitor.List(name, values.Length());
            for (const Element& value : values) {
                cls_FieldTraits<Element>::Write(*list, "", value);
            }
        }
    }
    static void Read(const cls_ReadVisitor& visitor, const char* name, Container& values) {
        std::vector<Element> read;
        if constexpr (kIsNumber) {
            visitor.Read(name, read);
        } else {
            const auto list = visitor.List(name);
            for (int left = list->Count(); left > 0; --left) {
                cls_FieldTraits<Element>::Read(*list, "", read.emplace_back());
            }
        }
        values = read.empty() ? Container() : Container(std::span<const Element>(read));
    }

private:
    static constexpr bool kIsNumber = std::is_same_v<Element, int> ||
                                      std::is_same_v<Element, float> ||
                                      std::is_same_v<Element, double>;
};

// clang-format off
template <class T> requires std::is_arithmetic_v<T> || std::is_same_v<T, cow_String>
struct cls_FieldTraits<cow_List<T>> : cls_SequenceFieldTraits<cow_List<T>> {};
template <class T> requires std::is_arithmetic_v<T> || std::is_same_v<T, cow_String>
struct cls_FieldTraits<cow_1DArray<T>> : cls_SequenceFieldTraits<cow_1DArray<T>> {};
template <class T> requires std::is_arithmetic_v<T> || std::is_same_v<T, cow_String>
struct cls_FieldTraits<cow_1DArrayList<T>> : cls_SequenceFieldTraits<cow_1DArrayList<T>> {};
// clang-format on
