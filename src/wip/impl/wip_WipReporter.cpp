#include "wip_WipReporter.h"

#include "wip_WIP.h"

wip_WipReporter::~wip_WipReporter() {
    try {
        wip_WIP& front = thr_ThreadSingleton<wip_WIP>::Instance();
        if (front.GetWipReporter() == this) {
            front.SetWipReporter(nullptr);
        }
    } catch (...) {
        // No front could be made, so there was none that this reporter is attached to.
    }
}

void wip_WipReporter::FacilityMessage(const atr_String& message, int kind, int /*first*/,
                                      int /*second*/, omu_PrimTuple& /*arguments*/) {
    switch (static_cast<unsigned>(kind)) {
        case 0:
        case 1:
        case 2:
        case 3:
            Warning(message);
            break;
        case 4:
            Milestone(message);
            break;
        case 7:
            Landmark(message);
            break;
        case 8:
            Verbose(message);
            break;
        default:
            break;
    }
}
