#include "omu_InterfaceType.h"

#include "omu_ErrorExceptions.h"

#include <algorithm>

namespace {

template <class Entry>
const Entry* FindIn(const std::vector<Entry>& entries, std::string_view name) noexcept {
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [name](const Entry& entry) { return entry.name == name; });
    return found != entries.end() ? &*found : nullptr;
}

template <class Entry>
cow_List<cow_String> Names(cow_List<cow_String> names, const std::vector<Entry>& entries) {
    for (const Entry& entry : entries) {
        if (!names.IsMember(entry.name)) {
            names.Append(entry.name);
        }
    }
    return names;
}

}  // namespace

omu_InterfaceType::omu_InterfaceType(std::string name, const omu_InterfaceType* base)
    : _name(std::move(name)), _base(base) {}

omu_InterfaceType::~omu_InterfaceType() = default;
omu_InterfaceType::omu_InterfaceType(omu_InterfaceType&&) noexcept = default;

omu_InterfaceType omu_InterfaceType::Add(AttributeEntry entry) && {
    _attributes.push_back(std::move(entry));
    _isMethodLast = false;
    return std::move(*this);
}

omu_InterfaceType omu_InterfaceType::Add(MethodEntry entry) && {
    _methods.push_back(std::move(entry));
    _isMethodLast = true;
    return std::move(*this);
}

omu_InterfaceType omu_InterfaceType::Help(std::string text) && {
    std::string& help = _isMethodLast          ? _methods.back().help
                        : !_attributes.empty() ? _attributes.back().help
                                               : _help;
    help = std::move(text);
    return std::move(*this);
}

bool omu_InterfaceType::IsA(std::string_view typeName) const noexcept {
    return _name == typeName || (_base != nullptr && _base->IsA(typeName));
}

const omu_InterfaceType::AttributeEntry* omu_InterfaceType::FindAttribute(
    std::string_view name) const noexcept {
    const AttributeEntry* entry = FindIn(_attributes, name);
    return entry != nullptr || _base == nullptr ? entry : _base->FindAttribute(name);
}

const omu_InterfaceType::MethodEntry* omu_InterfaceType::FindMethod(
    std::string_view name) const noexcept {
    const MethodEntry* entry = FindIn(_methods, name);
    return entry != nullptr || _base == nullptr ? entry : _base->FindMethod(name);
}

cow_List<cow_String> omu_InterfaceType::AttributeNames() const {
    return Names(_base != nullptr ? _base->AttributeNames() : cow_List<cow_String>(), _attributes);
}

cow_List<cow_String> omu_InterfaceType::MethodNames() const {
    return Names(_base != nullptr ? _base->MethodNames() : cow_List<cow_String>(), _methods);
}

void omu_InterfaceType::RaiseWrongType(const std::string& name, const cow_String& expected,
                                       const omu_Primitive& given) {
    omu_KeywordTypeErrorException(name, expected, given.TypeString(), "")
        .Throw("generated/omu/impl/omu_InterfaceType", __LINE__);
}
