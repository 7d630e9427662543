#include "omu_SymbolicConstantData.h"

#include "omi_Singleton.h"
#include "omu_SymbolicConstantTable.h"

#include <cstdio>

namespace {

omu_SymbolicConstantTable& Table() { return omi_Singleton<omu_SymbolicConstantTable>::Instance(); }

}  // namespace

omu_SymbolicConstantData::omu_SymbolicConstantData(unsigned int id) : _id(id) {
    if (id >= Table().Size()) {
        std::fprintf(stderr, "omu_SymbolicConstantData(%u) id > Size (%u)\n", id, Table().Size());
        std::fflush(stderr);
    }
}

omu_SymbolicConstantData::omu_SymbolicConstantData(const cow_String& name, unsigned int id) {
    const bool exists = Table().Has(name);
    _id = Table().AddOrFind(name);
    if (id == _id) {
        return;
    }
    if (_id == omu_SymbolicConstantTable::kUnspecifiedId) {
        std::fprintf(stderr, "omu_SymbolicConstantData(%s, %u) _id is not 0\n", name.AsCharPtr(),
                     id);
    } else {
        std::fprintf(stderr, "omu_SymbolicConstantData(%s, %u) id (%u) != idSCD (%u)\n",
                     name.AsCharPtr(), id, id, _id);
    }
    if (exists) {
        std::fprintf(stderr, "omu_SymbolicConstantData(%s, %u) existing sc is type %s\n",
                     name.AsCharPtr(), id, kTypeWord);
    }
    std::fflush(stderr);
}

cow_String omu_SymbolicConstantData::getText() const {
    const cow_String& text = Table().GetString(_id);
    if (text.IsEmpty()) {
        std::fprintf(stderr, "omu_SymbolicConstantData::getText() text is EMPTY\n");
        std::fflush(stderr);
    }
    return text;
}
