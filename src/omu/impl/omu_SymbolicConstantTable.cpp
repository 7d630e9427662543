#include "omu_SymbolicConstantTable.h"

#if defined(_WIN32)
#include <process.h>
#else
#include <unistd.h>
#endif

#include <cstdio>

namespace {

unsigned int ProcessId() {
#if defined(_WIN32)
    return static_cast<unsigned int>(_getpid());
#else
    return static_cast<unsigned int>(getpid());
#endif
}

}  // namespace

omu_SymbolicConstantTable::omu_SymbolicConstantTable() { Enter(kUnspecified); }

const unsigned int* omu_SymbolicConstantTable::Find(const cow_String& name) const {
    const auto found = _ids.find(name.View());
    return found != _ids.end() ? &found->second : nullptr;
}

unsigned int omu_SymbolicConstantTable::Enter(const cow_String& name) {
    const unsigned int id = Size();
    _ids.emplace(_names.emplace_back(name).View(), id);
    return id;
}

unsigned int omu_SymbolicConstantTable::AddOrFind(const cow_String& name) {
    if (name.IsEmpty()) {
        std::fprintf(stderr, "omu_SymbolicConstantTable::AddString(%s) key is EMPTY pid=%X\n",
                     name.AsCharPtr(), ProcessId());
        std::fflush(stderr);
        return kUnspecifiedId;
    }
    const unsigned int* id = Find(name);
    return id != nullptr ? *id : Enter(name);
}

unsigned int omu_SymbolicConstantTable::AddString(const cow_String& name) {
    const unsigned int size = Size();
    const unsigned int id = AddOrFind(name);
    if (!name.IsEmpty() && id < size) {
        std::fprintf(stderr,
                     "omu_SymbolicConstantTable::AddString(%s) name already in table: %u/%u "
                     "pid=%X\n",
                     name.AsCharPtr(), id, size, ProcessId());
        std::fflush(stderr);
    }
    return id;
}

const cow_String& omu_SymbolicConstantTable::GetString(unsigned int id) const {
    static const cow_String empty;
    if (id < Size()) {
        return _names[id];
    }
    std::fprintf(stderr, "omu_SymbolicConstantTable::GetString(%u) id>Size (%u) %X\n", id, Size(),
                 ProcessId());
    std::fflush(stderr);
    return empty;
}

void omu_SymbolicConstantTable::Dump() const {
    std::fprintf(stderr, "CONTENTS of omu_SymbolicConstantTable pid:Ox%X\n", ProcessId());
    for (unsigned int id = 0; id < Size(); ++id) {
        std::fprintf(stderr, "%u: %s\n", id, _names[id].AsCharPtr());
    }
    std::fflush(stderr);
}
