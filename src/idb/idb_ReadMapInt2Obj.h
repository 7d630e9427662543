#pragma once

#include "cow_String.h"
#include "idb_ReadListObj.h"

#include <map>

/// \file
/// Maps of objects with integer keys; entries as those of idb_ReadListObj. A map is stored as the
/// list of key, object, key, object..., keys ascending.

/// Raises idb_MementoErrorException: the keys of map \p name do not ascend at \p key.
[[noreturn]] CAE_API void idb_RaiseMapOrder(const char* name, int key);
[[noreturn]] CAE_API void idb_RaiseMapOrder(const char* name, const cow_String& key);

/// Reads a map with keys of type Key, int or cow_String.
template <class Key, class T>
[[nodiscard]] auto idb_ReadMap2Obj(const cls_ReadVisitor& visitor, const char* name) {
    constexpr bool kIsHolder = requires(const T& holder) { holder.IsNull(); };
    using Entry = std::conditional_t<kIsHolder, T, std::unique_ptr<T>>;
    const auto list = visitor.List(name);
    std::map<Key, Entry> read;
    for (int left = list->Count(); left > 0; left -= 2) {
        Key key{};
        list->Read("", key);
        // An entry that were dropped for another of the same key would be lost, and missing to
        // those who refer to it.
        if (!read.empty() && !(std::prev(read.end())->first < key)) {
            idb_RaiseMapOrder(name, key);
        }
        read.emplace_hint(read.end(), std::move(key), idb_ObjectEntry<Entry>::Read(*list));
    }
    return read;
}

/// Writes \p entries, a map in ascending order of its keys, as the collection \p name.
template <class Map>
void idb_WriteMap2Obj(const cls_WriteVisitor& visitor, const char* name, const Map& entries) {
    const auto list = visitor.List(name, static_cast<int>(2 * entries.size()));
    for (const auto& [key, entry] : entries) {
        list->Write("", key);
        idb_ObjectEntry<std::remove_cvref_t<decltype(entry)>>::Write(*list, entry);
    }
}

/// Reads the map \p name: std::map<int, std::unique_ptr<T>>, or with a holder for T a map of
/// holders. Raises the store's error where the field holds something else.
template <class T>
[[nodiscard]] auto idb_ReadMapInt2Obj(const cls_ReadVisitor& visitor, const char* name) {
    return idb_ReadMap2Obj<int, T>(visitor, name);
}

/// Writes a map from int to objects as the collection \p name.
template <class Map>
requires std::same_as<typename Map::key_type, int>
void idb_WriteMapInt2Obj(const cls_WriteVisitor& visitor, const char* name, const Map& entries) {
    idb_WriteMap2Obj(visitor, name, entries);
}
