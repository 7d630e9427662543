#include "idb_ReadMapInt2Obj.h"

#include "idb_MementoErrorException.h"

#include <string>

namespace {

[[noreturn]] void Raise(const char* name, const std::string& key) {
    idb_MementoErrorException(
        atr_String("Memento, map " + std::string(name) + ": its keys do not ascend at " + key))
        .Throw("generated/idb/impl/idb_ReadMapInt2Obj", __LINE__);
}

}  // namespace

void idb_RaiseMapOrder(const char* name, int key) { Raise(name, std::to_string(key)); }

void idb_RaiseMapOrder(const char* name, const cow_String& key) { Raise(name, key.Std()); }
