#pragma once

#include "cow_Map.h"
#include "omu_PrimLevel.h"

/// A symbolic constant: one of a fixed set of names.
///
/// This class holds the name; omu_PrimEnum binds it to a native enumeration and checks it. Two
/// constants of different enumerations with the same name are equal.
class CAE_API omu_PrimEnumBase : public omu_PrimLevel<omu_PrimEnumBase, omu_Primitive> {
public:
    static constexpr cls_ClassInfo kClass{"omu_PrimEnum", 0x13001B, 0x130011, 514};

    omu_PrimEnumBase() noexcept : omu_PrimLevel('c') {}
    /// A constant of any name, bound to no enumeration.
    explicit omu_PrimEnumBase(cow_String name) noexcept
        : omu_PrimLevel('c'), _stringValue(std::move(name)) {}
    explicit omu_PrimEnumBase(const cls_ReadVisitor& visitor);
    omu_PrimEnumBase(const omu_PrimEnumBase&) = default;
    omu_PrimEnumBase& operator=(const omu_PrimEnumBase&) = default;
    ~omu_PrimEnumBase() override;

    /// The permissible names in key order: "A, B or C".
    [[nodiscard]] cow_String TypeString() const override;
    /// The name, unquoted.
    [[nodiscard]] cow_String AsString(int depth) const override;
    /// Whether the other is a constant of the same name.
    bool operator==(const omu_Primitive& other) const override;

    /// Takes the name; false, and nothing changed, where the enumeration does not have it.
    virtual bool SetValue(const char* name);
    /// The enumeration's names and values; empty for a constant bound to none.
    [[nodiscard]] virtual cow_Map<cow_String, unsigned int> PermissibleValues() const;

    /// "{A: 0, B: 1}" in key order.
    [[nodiscard]] cow_String PermissibleValuesAsString() const;
    /// The name's characters; empty when unset.
    [[nodiscard]] const cow_String& Name() const noexcept { return _stringValue; }
    [[nodiscard]] const char* GetString() const noexcept { return _stringValue.AsCharPtr(); }

protected:
    void StoreName(cow_String name) { _stringValue = std::move(name); }

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        return std::tuple{cls_Field{"stringValue", &omu_PrimEnumBase::_stringValue}};
    }

    cow_String _stringValue;
    cls_Uid _uid;
};

/// The constant that \p value is, of whatever enumeration, or null.
[[nodiscard]] CAE_API const omu_PrimEnumBase* omu_AsConstant(const omu_Primitive& value);
