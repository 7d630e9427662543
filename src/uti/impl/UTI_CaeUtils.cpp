#include "UTI_CaeUtils.h"

#include "UTI_BasicUtils.h"
#include "UTI_CoreUtils.h"
#include "g3d_initialize.h"
#include "idb_initialize.h"
#include "mdl_initialize.h"
#include "omu_initialize.h"
#include "uti_Module.h"
#include "wip_initialize.h"

#include <algorithm>
#include <iterator>

namespace {

struct StartStop {
    void (*initialize)(int&);
    void (*finalize)(int&);
};

// In the order of starting; stopping goes backwards.
constexpr StartStop kParts[] = {
    {&UTI_CoreUtils_initialize, &UTI_CoreUtils_finalize},
    {&UTI_BasicUtils_initialize, &UTI_BasicUtils_finalize},
    {&wip_initialize, &wip_finalize},
    {&idb_initialize, &idb_finalize},
    {&g3d_initialize, &g3d_finalize},
    {&omu_initialize, &omu_finalize},
    {&mdl_initialize, &mdl_finalize},
};

constinit uti_Module theLibrary;

}  // namespace

void UTI_CaeUtils_initialize(int& count) {
    if (theLibrary.Initialize(count)) {
        for (const StartStop& part : kParts) {
            part.initialize(count);
        }
    }
}

void UTI_CaeUtils_finalize(int& count) {
    if (theLibrary.Finalize(count)) {
        std::for_each(std::rbegin(kParts), std::rend(kParts),
                      [&](const StartStop& part) { part.finalize(count); });
    }
}
