// Starts the library, makes a value, prints it as the command language writes it, stops.

#include "UTI_CaeUtils.h"
#include "omu_PrimTuple.h"

#include <cstdio>
#include <cstring>

int main() {
    int modules = 0;
    UTI_CaeUtils_initialize(modules);
    int failed = 0;
    {
        omu_PrimTuple tuple(2, omu_PrimTuple::kCode);
        tuple.Put(7);
        tuple.Put(0.5);
        const cow_String text = tuple.AsRepr();
        std::printf("%d modules are up; a tuple reads %s\n", modules, text.AsCharPtr());
        failed = std::strcmp(text.AsCharPtr(), "(7, 0.5)");
    }
    UTI_CaeUtils_finalize(modules);
    return failed == 0 && modules == 0 ? 0 : 1;
}
