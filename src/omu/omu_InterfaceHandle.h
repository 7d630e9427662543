#pragma once

#include "CaeUtilsExport.h"
#include "cow_String.h"

#include <memory>

class omu_InterfaceObj;

/// What an application object and the handles of it share.
struct omu_InterfaceCell {
    omu_InterfaceObj* object;  ///< null once the object is deleted
    cow_String name;           ///< what errors call it; set by the first handle
};

/// A weak reference to an application object: null once the application has deleted the object.
///
/// Copies cost one atomic count and may be dropped in any thread. An object and those who ask its
/// handles stay in one thread. It must not be asked while the object's destructor runs.
class CAE_API omu_InterfaceHandle {
public:
    /// No object.
    omu_InterfaceHandle() noexcept = default;
    /// Refers to \p object, which may be null; the application goes on owning it.
    explicit omu_InterfaceHandle(omu_InterfaceObj* object);

    /// The object, or null.
    [[nodiscard]] omu_InterfaceObj* Get() const noexcept {
        return _cell == nullptr ? nullptr : _cell->object;
    }
    /// The object; omu_AccessErrorException with its name when it is gone or there never was one.
    [[nodiscard]] omu_InterfaceObj& Require() const;
    [[nodiscard]] explicit operator bool() const noexcept { return Get() != nullptr; }

    /// Whether both refer to one object, also after its deletion, or both never had one.
    friend bool operator==(const omu_InterfaceHandle&,
                           const omu_InterfaceHandle&) noexcept = default;

private:
    std::shared_ptr<omu_InterfaceCell> _cell;
};
