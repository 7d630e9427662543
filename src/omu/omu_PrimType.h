#pragma once

#include "omu_PrimLevel.h"

class omu_InterfaceObj;

/// The kinds of displayable object.
enum omu_ObjectToDisplayTypeEnm {
    omu_DISPLAY_NONE = 0,
    omu_DISPLAY_PART = 1,
    omu_DISPLAY_ASSEMBLY = 2,
    omu_DISPLAY_SKETCH = 3,
    omu_DISPLAY_ODB = 4,
    omu_DISPLAY_XYPLOT = 5,
    omu_DISPLAY_STUB = 6,
    omu_DISPLAY_DETAILPLOT = 7,
    omu_DISPLAY_UNKNOWN = 8  ///< what an unknown text converts to
};

/// The name of an object type.
class CAE_API omu_PrimType : public omu_PrimLevel<omu_PrimType, omu_Primitive> {
public:
    static constexpr cls_ClassInfo kClass{"omu_PrimType", 0x13001F, 0x130011, 800};

    omu_PrimType() noexcept : omu_PrimLevel('t') {}
    /// The object's exposed type name.
    explicit omu_PrimType(const omu_InterfaceObj& object);
    explicit omu_PrimType(const cls_ReadVisitor& visitor);
    ~omu_PrimType() override;

    /// The held name and "Type"; "type" when the name is empty.
    [[nodiscard]] cow_String TypeString() const override;
    /// The held name and "Type", also for an empty name.
    [[nodiscard]] cow_String AsString(int depth) const override;
    /// Whether the other is a type of the same name.
    bool operator==(const omu_Primitive& other) const override;

    /// The held name.
    [[nodiscard]] const cow_String& Name() const noexcept { return _typeName; }

    /// The text of a display type; empty for any value beyond omu_DISPLAY_DETAILPLOT.
    [[nodiscard]] static cow_String ConverTypeToString(const omu_ObjectToDisplayTypeEnm& type);
    /// The first display type of exactly this text, else omu_DISPLAY_UNKNOWN.
    [[nodiscard]] static omu_ObjectToDisplayTypeEnm ConverStringToType(const cow_String& text);

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        return std::tuple{cls_Field{"typeString", &omu_PrimType::_typeName}};
    }

    cow_String _typeName;
    cls_Uid _uid;
};
