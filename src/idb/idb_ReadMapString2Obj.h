#pragma once

#include "idb_ReadMapInt2Obj.h"

/// Reads the map \p name: std::map<cow_String, std::unique_ptr<T>>, or with a holder for T a map of
/// holders; as idb_ReadMapInt2Obj. Keys ascend by their bytes.
template <class T>
[[nodiscard]] auto idb_ReadMapString2Obj(const cls_ReadVisitor& visitor, const char* name) {
    return idb_ReadMap2Obj<cow_String, T>(visitor, name);
}

/// Writes a map from cow_String to objects as the collection \p name.
template <class Map>
requires std::same_as<typename Map::key_type, cow_String>
void idb_WriteMapString2Obj(const cls_WriteVisitor& visitor, const char* name, const Map& entries) {
    idb_WriteMap2Obj(visitor, name, entries);
}
