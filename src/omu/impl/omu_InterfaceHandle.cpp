#include "omu_InterfaceHandle.h"

#include "omu_ErrorExceptions.h"
#include "omu_InterfaceObj.h"

#include <cstdio>
#include <cstdlib>

namespace {

/// Traces how handles find their objects; asked of the environment once, at load.
const bool tracesHandles = std::getenv("TVX_DBG_OMUPATHSTRING") != nullptr;

void Trace(const char* what, const cow_String& name) {
    if (tracesHandles) {
        std::fprintf(stderr, "omu_InterfaceHandle: %s %s\n", what, name.AsCharPtr());
        std::fflush(stderr);
    }
}

}  // namespace

omu_InterfaceHandle::omu_InterfaceHandle(omu_InterfaceObj* object) {
    if (object == nullptr) {
        return;
    }
    _cell = object->_cell;
    if (_cell->name.IsEmpty()) {
        // Asked now: once the object is gone there is nobody to ask.
        _cell->name = object->AsString(0);
        Trace("first handle of", _cell->name);
    }
}

omu_InterfaceObj& omu_InterfaceHandle::Require() const {
    omu_InterfaceObj* object = Get();
    if (object == nullptr) {
        const cow_String name = _cell == nullptr ? cow_String("Object") : _cell->name;
        Trace("stale handle of", name);
        omu_AccessErrorException(name).Throw("generated/omu/impl/omu_InterfaceHandle", __LINE__);
    }
    return *object;
}
