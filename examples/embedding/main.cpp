// The smallest application on the library: starts it, calls a command of its own with arguments as
// they would come from a script, shows the result and an error, and stops it.

#include "UTI_CaeUtils.h"
#include "nex_CommandException.h"
#include "omu_Get.h"

#include <cstdio>
#include <memory>

/// scale(values, factor=2.0)
static omu_Primitive* Scale(omu_Arguments& args) {
    cow_1DArrayList<double> values;
    double factor = 2;
    args.Begin();
    args.Get(values, "values");
    args.Optional();
    args.Get(factor, "factor");
    args.End();

    for (int i = 0; i < values.Length(); ++i) {
        values.Get(i) *= factor;
    }
    return omu_ReturnPrim(values);
}

static void Call(omu_Arguments args) {
    try {
        const std::unique_ptr<omu_Primitive> result(Scale(args));
        std::printf("scale%s gives %s\n", args.AsRepr().AsCharPtr(), result->AsRepr().AsCharPtr());
    } catch (const nex_CommandException& error) {
        std::printf("scale%s raises %s: %s\n", args.AsRepr().AsCharPtr(),
                    error.PythonType().AsCharPtr(), error.JournalMessage().AsCharPtr());
    }
}

int main() {
    int modules = 0;
    UTI_CaeUtils_initialize(modules);

    omu_Arguments args;
    args.Put(cow_List<int>{1, 2, 3});
    args.Put(0.5, "factor");
    Call(args);

    args.Put("twice", "factor");
    Call(args);

    UTI_CaeUtils_finalize(modules);
    return modules;
}
