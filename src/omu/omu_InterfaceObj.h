#pragma once

#include "CaeUtilsExport.h"
#include "cow_List.h"
#include "cow_String.h"
#include "omu_InterfaceHandle.h"
#include "omu_InterfaceType.h"

#include <memory>

/// Base of the application's objects that scripts see: by type name, attributes and methods.
///
/// A class declares them in one table and names that table:
///
///     class Part : public omu_InterfaceObj {
///     public:
///         static const omu_InterfaceType& StaticType()
///         {
///             static const omu_InterfaceType type =
///                 omu_InterfaceType("Part", &omu_InterfaceObj::StaticType())
///                     .Attribute("name", &Part::Name)                              // read-only
///                     .Attribute("thickness", &Part::Thickness, &Part::SetThickness)
///                     .Method("area", &Part::Area);      // omu_Primitive* Area(omu_Arguments&)
///             return type;
///         }
///         const omu_InterfaceType& Type() const override { return StaticType(); }
///
/// Objects whose attributes are only known at run time override the operations instead. The
/// application owns the objects; the library refers to them by omu_InterfaceHandle.
class CAE_API omu_InterfaceObj {
public:
    virtual ~omu_InterfaceObj();

    /// The type without a name, attributes or methods, which all others are based on.
    [[nodiscard]] static const omu_InterfaceType& StaticType();
    [[nodiscard]] virtual const omu_InterfaceType& Type() const;

    /// The type name that scripts see; never null.
    [[nodiscard]] virtual const char* ExposedTypeName() const;
    /// Whether \p typeName is the exposed type name or that of a base. Null is none.
    [[nodiscard]] virtual bool IsA(const char* typeName) const;

    [[nodiscard]] virtual cow_List<cow_String> AttributeNames() const;
    /// The attribute's value, owned by the caller. omu_AttributeErrorException when there is none.
    [[nodiscard]] virtual omu_Primitive* GetAttribute(const cow_String& name) const;
    /// omu_AttributeErrorException when there is no such attribute or it is read-only,
    /// omu_KeywordTypeErrorException when it does not take the value.
    virtual void SetAttribute(const cow_String& name, const omu_Primitive& value);

    [[nodiscard]] virtual cow_List<cow_String> MethodNames() const;
    /// Calls a method; the result is owned by the caller, null stands for None.
    /// omu_AttributeErrorException when there is none of that name.
    [[nodiscard]] virtual omu_Primitive* CallMethod(const cow_String& name, omu_Arguments& args);

    /// "Part object"; deeper than omu_TextRepr's MaxRecursion, its MaxRecursionString.
    [[nodiscard]] virtual cow_String AsString(int depth) const;

    /// Takes the object away from its handles, as if it were deleted: an application that can
    /// undo a deletion keeps the object meanwhile. Restore gives it back to them.
    void Withdraw();
    void Restore() noexcept;

protected:
    omu_InterfaceObj();
    /// A copy is an object of its own: handles go on referring to the original.
    omu_InterfaceObj(const omu_InterfaceObj&);
    // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): nothing is assigned
    omu_InterfaceObj& operator=(const omu_InterfaceObj&) noexcept { return *this; }

    /// Raises the error of a name that is neither attribute nor method.
    [[noreturn]] void RaiseUnknown(const cow_String& name) const;

private:
    friend class omu_InterfaceHandle;

    std::shared_ptr<omu_InterfaceCell> _cell;
};
