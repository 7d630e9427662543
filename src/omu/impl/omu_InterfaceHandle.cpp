#include "omu_InterfaceHandle.h"

#include "omu_ErrorExceptions.h"
#include "omu_InterfaceObj.h"

omu_InterfaceHandle::omu_InterfaceHandle(omu_InterfaceObj* object) {
    if (object == nullptr) {
        return;
    }
    _cell = object->_cell;
    if (_cell->name.IsEmpty()) {
        // Asked now: once the object is gone there is nobody to ask.
        _cell->name = object->AsString(0);
    }
}

omu_InterfaceObj& omu_InterfaceHandle::Require() const {
    omu_InterfaceObj* object = Get();
    if (object == nullptr) {
        omu_AccessErrorException(_cell == nullptr ? cow_String("Object") : _cell->name)
            .Throw("generated/omu/impl/omu_InterfaceHandle", __LINE__);
    }
    return *object;
}
