#include "wip_initialize.h"

#include "uti_Module.h"
#include "wip_WIP.h"

namespace {

constinit uti_Module theModule;

}  // namespace

void wip_initialize(int& count) { theModule.Initialize(count); }

void wip_finalize(int& count) {
    if (theModule.Finalize(count)) {
        thr_ThreadSingletonBase<wip_WIP>::Destroy();
    }
}
