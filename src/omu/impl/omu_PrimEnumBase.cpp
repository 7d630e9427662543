#include "omu_PrimEnumBase.h"

#include "cow_MapUtils.h"
#include "omu_PrimBool.h"
#include "utl_Catenator.h"

#include <string_view>

omu_PrimEnumBase::omu_PrimEnumBase(const cls_ReadVisitor& visitor)
    : omu_PrimLevel(visitor), _uid(visitor.GetUid()) {
    cls_ReadFields<omu_PrimEnumBase>(*this, visitor);
}

omu_PrimEnumBase::~omu_PrimEnumBase() = default;

cow_String omu_PrimEnumBase::TypeString() const {
    const cow_List<cow_String> names = cow_MapUtils::cow_Keys(PermissibleValues());
    utl_Catenator text;
    for (int i = 0; i < names.Length(); ++i) {
        const bool last = i == names.Length() - 1;
        text << (i == 0 ? "" : last ? " or " : ", ") << names.ConstGet(i);
    }
    return std::move(text).AsString();
}

cow_String omu_PrimEnumBase::AsString(int) const { return _stringValue; }

bool omu_PrimEnumBase::operator==(const omu_Primitive& other) const {
    const auto* constant = omu_AsConstant(other);
    return constant != nullptr && _stringValue == constant->_stringValue;
}

bool omu_PrimEnumBase::SetValue(const char* name) {
    _stringValue = name;
    return true;
}

cow_Map<cow_String, unsigned int> omu_PrimEnumBase::PermissibleValues() const { return {}; }

cow_String omu_PrimEnumBase::PermissibleValuesAsString() const {
    const cow_Map<cow_String, unsigned int> values = PermissibleValues();
    utl_Catenator text;
    std::string_view separator = "{";
    for (const auto& [name, value] : values) {
        text << separator << name << ": " << value;
        separator = ", ";
    }
    if (values.Length() == 0) {
        text << separator;
    }
    text << "}";
    return std::move(text).AsString();
}

const omu_PrimEnumBase* omu_AsConstant(const omu_Primitive& value) {
    const unsigned typeId = value.DynTypeId();
    if (typeId != omu_PrimEnumBase::TypeId() && typeId != omu_PrimBool<2>::TypeId()) {
        return nullptr;
    }
    return static_cast<const omu_PrimEnumBase*>(&value);
}
