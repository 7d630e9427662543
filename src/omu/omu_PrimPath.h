#pragma once

#include "cls_SequenceFields.h"
#include "cow_List.h"
#include "omu_PrimLevel.h"

/// The path of an object: its components from the outermost on.
class CAE_API omu_PrimPath : public omu_PrimLevel<omu_PrimPath, omu_Primitive> {
public:
    static constexpr cls_ClassInfo kClass{"omu_PrimPath", 0x130017, 0x130011, 800};

    explicit omu_PrimPath(cow_List<cow_String> components = {}, char kind = 'p')
        : omu_PrimLevel(kind), _components(std::move(components)), _contextType(kind) {}
    explicit omu_PrimPath(const cls_ReadVisitor& visitor);
    ~omu_PrimPath() override;

    [[nodiscard]] cow_String TypeString() const override { return "path"; }
    /// The components joined by '.' in single quotes; all trailing dots are trimmed, those of the
    /// last component too.
    [[nodiscard]] cow_String AsString(int depth) const override;
    /// Whether both are paths of kind 'p' with equal components. A path of another kind code
    /// equals nothing.
    bool operator==(const omu_Primitive& other) const override;

    [[nodiscard]] const cow_List<cow_String>& Components() const noexcept { return _components; }

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        return std::tuple{cls_Field{"context", &omu_PrimPath::_components},
                          cls_Field{"contextType", &omu_PrimPath::_contextType}};
    }

    cow_List<cow_String> _components;
    char _contextType;  // the kind code, stored with the components
    cls_Uid _uid;
};
