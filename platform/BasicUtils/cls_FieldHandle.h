#pragma once

#include "cls_AttributeType.h"
#include "cls_CollectionType.h"
#include "cow_String.h"

/// Names one persisted field of a class: its number and its stored name.
class cls_FieldHandle {
public:
    cls_FieldHandle(int number, cow_String name) : _number(number), _name(std::move(name)) {}

    [[nodiscard]] int Number() const noexcept { return _number; }
    [[nodiscard]] const cow_String& Name() const noexcept { return _name; }

private:
    int _number;
    cow_String _name;
};

/// One persisted field as a class's metadata describes it.
struct cls_Attribute {
    cls_FieldHandle handle;
    cls_AttributeType type;
    unsigned classId;  ///< type identity of the field's class; 1 for plain values
    cls_CollectionType collection;
};
