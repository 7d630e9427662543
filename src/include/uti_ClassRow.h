#pragma once

#include "cls_ClassRegistrar.h"

#include <span>

/// A persisted field of a class that is described by a table row.
struct uti_FieldRow {
    int number;
    const char* name;
    cls_AttributeType type;
    unsigned classId = 1;  ///< type identity of an object-valued field's class
    cls_CollectionType collection = cls_CollectionType::Single;
};

/// A persistent class that is described by a table row, not by code of its own.
struct uti_ClassRow {
    const char* storedName;
    unsigned typeId;
    int version;
    unsigned baseTypeId;
    std::span<const uti_FieldRow> fields;
};

/// The metadata function of the class in row \p Index of \p Rows: enters the row's description.
/// Objects of such a class can be neither built nor written through their metadata.
template <const auto& Rows, std::size_t Index>
void uti_DescribeRow(cls_ClassRegistrar& registrar) {
    const uti_ClassRow& row = Rows[Index];
    cls_ClassMetadata& metadata =
        registrar.CreateClassMD(row.storedName, row.typeId, row.version, nullptr, row.baseTypeId);
    for (const uti_FieldRow& field : row.fields) {
        metadata.AddAttribute(cls_FieldHandle(field.number, field.name), field.type, field.classId,
                              field.collection);
    }
}
