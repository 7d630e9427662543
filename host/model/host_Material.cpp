#include "host_Material.h"

#include "omu_StandardTraits.h"

template class host_MemberOf<host_Material, host_MaterialContent>;

host_Material::host_Material(const cls_ReadVisitor& visitor) : host_MemberOf(visitor) {
    for (std::size_t i = 0; i < host_kMaterialPropertyCount; ++i) {
        if (const mdl_PropertyTable* table = Table(i)) {
            const host_MaterialProperty& property = host_kMaterialProperties[i];
            property.Check(*table, "the stored " + Name().Std() + "." + property.name);
        }
    }
}

std::optional<double> host_Material::Density() const {
    static_assert(std::string_view(host_kMaterialProperties[0].name) == "density");
    const mdl_PropertyTable* table = Table(0);
    return table != nullptr ? std::optional(table->ConstGet<double>(0, 0)) : std::nullopt;
}

omu_PrimTuple* host_Material::RowTuples(std::size_t property) const {
    const mdl_PropertyTable* table = Table(property);
    return omu_MakeTuple(table != nullptr ? table->Rows() : 0,
                         [table](int row) { return table->Row(row).Copy(); });
}

// --- Attributes --------------------------------------------------------------------------------

template <std::size_t I>
omu_PrimHolder host_Material::Rows() const {
    return omu_PrimHolder(RowTuples(I));
}

template <std::size_t I>
void host_Material::SetRows(const omu_PrimHolder& rows) {
    auto table = host_kMaterialProperties[I].Read(rows.ConstGet());
    Edit().tables[I] = std::move(table);
}

template <std::size_t I>
omu_InterfaceType host_Material::WithProperties(omu_InterfaceType type) {
    if constexpr (I == host_kMaterialPropertyCount) {
        return type;
    } else {
        const host_MaterialProperty& property = host_kMaterialProperties[I];
        return WithProperties<I + 1>(
            std::move(type)
                .Attribute(property.name, &host_Material::Rows<I>, &host_Material::SetRows<I>)
                .Help(std::string(property.help) + ": rows " + property.ColumnNames()));
    }
}

const omu_InterfaceType& host_Material::StaticType() {
    static const omu_InterfaceType type = WithProperties<0>(
        omu_InterfaceType("Material", &host_Member::StaticType())
            .Help(
                "A material of the model: properties under a name. Commands take it, or its\n"
                "name. Each property is a tuple of rows, sorted by temperature where they have\n"
                "one, () where it is not given. It is set to rows, one row alone or, where a row\n"
                "is one number, a number; () takes it away.")
            .Attribute("description", &host_Material::Description, &host_Material::SetDescription)
            .Help("what the material is"));
    return type;
}
