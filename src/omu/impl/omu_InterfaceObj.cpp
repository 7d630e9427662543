#include "omu_InterfaceObj.h"

#include "omi_Singleton.h"
#include "omu_ErrorExceptions.h"
#include "omu_TextRepr.h"

namespace {

constexpr const char* kSource = "generated/omu/impl/omu_InterfaceObj";

}  // namespace

omu_InterfaceObj::omu_InterfaceObj()
    : _cell(std::make_shared<omu_InterfaceCell>(omu_InterfaceCell{this, {}})) {}

omu_InterfaceObj::omu_InterfaceObj(const omu_InterfaceObj&) : omu_InterfaceObj() {}

omu_InterfaceObj::~omu_InterfaceObj() { _cell->object = nullptr; }

void omu_InterfaceObj::Withdraw() {
    if (!_cell->name.IsEmpty()) {
        _cell->name = AsString(0);  // as it is called by now
    }
    _cell->object = nullptr;
}

void omu_InterfaceObj::Restore() noexcept { _cell->object = this; }

const omu_InterfaceType& omu_InterfaceObj::StaticType() {
    static const omu_InterfaceType type("");
    return type;
}

const omu_InterfaceType& omu_InterfaceObj::Type() const { return StaticType(); }

const char* omu_InterfaceObj::ExposedTypeName() const { return Type().Name().c_str(); }

bool omu_InterfaceObj::IsA(const char* typeName) const {
    return typeName != nullptr && Type().IsA(typeName);
}

cow_List<cow_String> omu_InterfaceObj::AttributeNames() const { return Type().AttributeNames(); }

omu_Primitive* omu_InterfaceObj::GetAttribute(const cow_String& name) const {
    const auto* attribute = Type().FindAttribute(name);
    if (attribute == nullptr) {
        RaiseUnknown(name);
    }
    return attribute->get(*this);
}

void omu_InterfaceObj::SetAttribute(const cow_String& name, const omu_Primitive& value) {
    const auto* attribute = Type().FindAttribute(name);
    if (attribute == nullptr) {
        RaiseUnknown(name);
    }
    if (!attribute->set) {
        omu_AttributeErrorException(omu_AttributeErrorEnm::ReadOnly, name).Throw(kSource, __LINE__);
    }
    attribute->set(*this, value);
}

cow_List<cow_String> omu_InterfaceObj::MethodNames() const { return Type().MethodNames(); }

omu_Primitive* omu_InterfaceObj::CallMethod(const cow_String& name, omu_Arguments& args) {
    const auto* method = Type().FindMethod(name);
    if (method == nullptr) {
        RaiseUnknown(name);
    }
    return method->call(*this, args);
}

cow_String omu_InterfaceObj::AsString(int depth) const {
    const omu_TextRepr& settings = omi_Singleton<omu_TextRepr>::Instance();
    if (depth > settings.GetMaxRecursion()) {
        return settings.GetMaxRecursionString(this);
    }
    return cow_String(ExposedTypeName()) + " object";
}

void omu_InterfaceObj::RaiseUnknown(const cow_String& name) const {
    omu_AttributeErrorException(
        omu_AttributeErrorEnm::FreeText,
        atr_String::Format("'%s' object has no attribute '%s'", ExposedTypeName(), name))
        .Throw(kSource, __LINE__);
}
