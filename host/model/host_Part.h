#pragma once

#include "host_Field.h"
#include "host_Member.h"
#include "host_Mesh.h"
#include "host_StoredFields.h"

#include <memory>

/// What a part consists of. Meshes, groups and fields are shared with earlier steps and never
/// written to.
struct host_PartContent {
    using Numbers = std::shared_ptr<const std::vector<int>>;
    using Field = std::shared_ptr<const host_Field>;

    std::shared_ptr<const host_Mesh> mesh;
    std::map<cow_String, Numbers> groups;    ///< cell numbers, ascending, each once
    std::map<cow_String, Numbers> nodeSets;  ///< point numbers, likewise
    std::map<cow_String, Field> fields;
    /// Materials of groups of cells, in the order in which they were assigned: the last one that
    /// has a cell wins. The group "" is the whole part.
    std::vector<std::array<cow_String, 2>> materials;

    struct MeshField;
    struct FieldField;
    struct MaterialsField;
    static constexpr auto Fields();
};

/// A part of the model: a mesh under a name, named groups of its cells and nodes, and fields.
class host_Part final : public host_MemberOf<host_Part, host_PartContent> {
public:
    static constexpr host_MemberKind kKind = host_MemberKind::Part;
    static constexpr cls_ClassInfo kClass{"host_Part", TypeIdOf(kKind), mdl_Extension::TypeId(), 1};

    host_Part(cow_String name, host_Mesh mesh);
    /// Raises omu_ValueErrorException or the memento's error where what is stored is no part.
    explicit host_Part(const cls_ReadVisitor& visitor);

    static const omu_InterfaceType& StaticType();

    [[nodiscard]] const host_Mesh& Mesh() const noexcept { return *Get().mesh; }
    /// The cells of a group; of the name "", all cells. An unknown group: omu_KeyErrorException.
    [[nodiscard]] std::vector<int> Cells(const cow_String& group) const;
    /// The nodes of a set; of an unknown name: omu_KeyErrorException.
    [[nodiscard]] const std::vector<int>& Nodes(const cow_String& set) const;
    /// A field; of an unknown name: omu_KeyErrorException.
    [[nodiscard]] const std::shared_ptr<const host_Field>& Field(const cow_String& field) const;

    /// A number of its own for each part of the process; a part that replaces another of its name
    /// takes over that one's lineage.
    [[nodiscard]] unsigned long long Serial() const noexcept { return _serial; }
    [[nodiscard]] unsigned long long Lineage() const noexcept { return _lineage; }
    void Inherit(const host_Part& replaced) noexcept { _lineage = replaced._lineage; }

private:
    void Check() const;
    [[nodiscard]] int PointCount() const { return static_cast<int>(Mesh().Points().size()); }
    [[nodiscard]] int CellCount() const { return Mesh().CellCount(); }
    [[nodiscard]] cow_List<cow_String> GroupNames() const;
    [[nodiscard]] cow_List<cow_String> NodeSetNames() const;
    [[nodiscard]] cow_List<cow_String> FieldNames() const;
    [[nodiscard]] omu_PrimTuple Materials() const;

    static unsigned long long NextSerial() noexcept;

    unsigned long long _serial = NextSerial();
    unsigned long long _lineage = _serial;
};

extern template class host_MemberOf<host_Part, host_PartContent>;

/// Points, then the types and the nodes of all cells, as three blocks.
struct host_PartContent::MeshField : host_RecordField {
    using Mesh = std::shared_ptr<const host_Mesh>;
    static void Write(const cls_WriteVisitor& visitor, const char* name, const Mesh& mesh);
    static void Read(const cls_ReadVisitor& visitor, const char* name, Mesh& mesh);
};
/// Position, number of components, values.
struct host_PartContent::FieldField : host_RecordField {
    static void Write(const cls_WriteVisitor& visitor, const char* name, const Field& field);
    static void Read(const cls_ReadVisitor& visitor, const char* name, Field& field);
};
/// Group, material, group, material.
struct host_PartContent::MaterialsField : host_RecordField {
    using Materials = std::vector<std::array<cow_String, 2>>;
    static void Write(const cls_WriteVisitor& visitor, const char* name, const Materials& assigned);
    static void Read(const cls_ReadVisitor& visitor, const char* name, Materials& assigned);
};

constexpr auto host_PartContent::Fields() {
    using P = host_PartContent;
    using NumbersField = host_NamedField<Numbers, host_SharedField<std::vector<int>>>;
    using Named = std::map<cow_String, Numbers>;
    return std::tuple(
        cls_Field<P, decltype(P::mesh), MeshField>("mesh", &P::mesh),
        cls_Field<P, Named, NumbersField>("groups", &P::groups),
        cls_Field<P, Named, NumbersField>("nodeSets", &P::nodeSets),
        cls_Field<P, decltype(P::fields), host_NamedField<Field, FieldField>>("fields", &P::fields),
        cls_Field<P, decltype(P::materials), MaterialsField>("materials", &P::materials));
}
