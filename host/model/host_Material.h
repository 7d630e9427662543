#pragma once

#include "host_MaterialProperty.h"
#include "host_Member.h"

#include <utility>

/// What a material consists of. Tables are values of their own, never shared, so that equal models
/// are stored alike whatever was copied or undone before.
struct host_MaterialContent {
    using Tables = std::array<std::optional<mdl_PropertyTable>, host_kMaterialPropertyCount>;

    cow_String description;
    Tables tables;  ///< by the properties' places; none where a property is not given

    template <std::size_t I>
    struct TableField;
    static constexpr auto Fields();
};

/// A material of the model: properties that may depend on the temperature, under a name.
class host_Material final : public host_MemberOf<host_Material, host_MaterialContent> {
public:
    static constexpr host_MemberKind kKind = host_MemberKind::Material;
    static constexpr cls_ClassInfo kClass{"host_Material", TypeIdOf(kKind), mdl_Extension::TypeId(),
                                          1};

    using host_MemberOf::host_MemberOf;
    /// Raises omu_ValueErrorException or the memento's error where what is stored is no material.
    explicit host_Material(const cls_ReadVisitor& visitor);

    static const omu_InterfaceType& StaticType();

    /// The table of a property; null where it is not given.
    [[nodiscard]] const mdl_PropertyTable* Table(std::size_t property) const {
        const auto& table = Get().tables[property];
        return table ? &*table : nullptr;
    }
    /// The rows of a property, each a tuple, as a new tuple; () where it is not given.
    [[nodiscard]] omu_PrimTuple* RowTuples(std::size_t property) const;
    /// The density, at the lowest temperature where it depends on that; nothing without one.
    [[nodiscard]] std::optional<double> Density() const;

private:
    [[nodiscard]] cow_String Description() const { return Get().description; }
    void SetDescription(const cow_String& text) { Edit().description = text; }
    template <std::size_t I>
    [[nodiscard]] omu_PrimHolder Rows() const;
    template <std::size_t I>
    void SetRows(const omu_PrimHolder& rows);
    template <std::size_t I>
    [[nodiscard]] static omu_InterfaceType WithProperties(omu_InterfaceType type);
};

/// The table of a property, or null.
template <std::size_t I>
struct host_MaterialContent::TableField {
    static constexpr cls_AttributeType kType = cls_AttributeType::Object;
    static constexpr unsigned kClassId = mdl_PropertyTable::TypeId();
    static constexpr cls_CollectionType kCollection = cls_CollectionType::Single;

    static void Write(const cls_WriteVisitor& visitor, const char* name, const Tables& tables) {
        visitor.WriteObject(name, tables[I] ? cls_ObjectRef::Of(&*tables[I]) : cls_ObjectRef());
    }
    static void Read(const cls_ReadVisitor& visitor, const char* name, Tables& tables) {
        const std::unique_ptr<mdl_PropertyTable> table(
            static_cast<mdl_PropertyTable*>(visitor.ReadObject(name, mdl_PropertyTable::TypeId())));
        if (table != nullptr) {
            tables[I] = *table;
        }
    }
};

constexpr auto host_MaterialContent::Fields() {
    using M = host_MaterialContent;
    return []<std::size_t... I>(std::index_sequence<I...>) {
        return std::tuple(
            cls_Field("description", &M::description),
            cls_Field<M, Tables, TableField<I>>(host_kMaterialProperties[I].name, &M::tables)...);
    }
    (std::make_index_sequence<host_kMaterialPropertyCount>());
}

extern template class host_MemberOf<host_Material, host_MaterialContent>;
