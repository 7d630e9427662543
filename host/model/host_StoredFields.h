#pragma once

#include "cls_Fields.h"

#include <map>
#include <memory>
#include <vector>

/// A field that is a list of values of several kinds.
struct host_RecordField {
    static constexpr cls_AttributeType kType = cls_AttributeType::Object;
    static constexpr unsigned kClassId = 1;
    static constexpr cls_CollectionType kCollection = cls_CollectionType::Single;
};

/// A map by name: a list of name, value, name, value, in the order of the names. What the values
/// are, Value says by Write and Read, as field traits do.
template <class T, class Value = cls_FieldTraits<T>>
struct host_NamedField : host_RecordField {
    static void Write(const cls_WriteVisitor& visitor, const char* name,
                      const std::map<cow_String, T>& entries) {
        const auto list = visitor.List(name, static_cast<int>(2 * entries.size()));
        for (const auto& [key, value] : entries) {
            list->Write("", key);
            Value::Write(*list, "", value);
        }
    }
    static void Read(const cls_ReadVisitor& visitor, const char* name,
                     std::map<cow_String, T>& entries) {
        const auto list = visitor.List(name);
        entries.clear();
        for (int left = list->Count(); left > 0; left -= 2) {
            cow_String key;
            list->Read("", key);
            Value::Read(*list, "", entries[key]);
        }
    }
};

/// A shared constant, stored like what it shares.
template <class T>
struct host_SharedField {
    static void Write(const cls_WriteVisitor& visitor, const char* name,
                      const std::shared_ptr<const T>& value) {
        cls_FieldTraits<T>::Write(visitor, name, *value);
    }
    static void Read(const cls_ReadVisitor& visitor, const char* name,
                     std::shared_ptr<const T>& value) {
        T read{};
        cls_FieldTraits<T>::Read(visitor, name, read);
        value = std::make_shared<const T>(std::move(read));
    }
};
