#pragma once

#include "cls_Fields.h"
#include "cow_List.h"

/// Lists of strings are stored as a collection of texts.
template <>
struct cls_FieldTraits<cow_List<cow_String>> {
    static constexpr cls_AttributeType kType = cls_AttributeType::String;
    static constexpr unsigned kClassId = 1;
    static constexpr cls_CollectionType kCollection = cls_CollectionType::List;

    static void Write(const cls_WriteVisitor& visitor, const char* name,
                      const cow_List<cow_String>& texts) {
        const auto list = visitor.List(name, texts.Length());
        for (const cow_String& text : texts) {
            list->Write("", text);
        }
    }
    static void Read(const cls_ReadVisitor& visitor, const char* name,
                     cow_List<cow_String>& texts) {
        cow_List<cow_String> read;
        const auto list = visitor.List(name);
        for (int left = list->Count(); left > 0; --left) {
            cow_String text;
            list->Read("", text);
            read.Append(text);
        }
        texts = std::move(read);
    }
};
