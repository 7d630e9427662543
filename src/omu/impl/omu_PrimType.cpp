#include "omu_PrimType.h"

#include "omu_InterfaceObj.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr const char* kDisplayTypes[] = {"None", "Part",   "Assembly", "Sketch",
                                         "Odb",  "XYPlot", "Stub",     "DetailPlot"};
static_assert(std::size(kDisplayTypes) == omu_DISPLAY_UNKNOWN);

}  // namespace

omu_PrimType::omu_PrimType(const omu_InterfaceObj& object)
    : omu_PrimLevel('t'), _typeName(object.ExposedTypeName()) {}

omu_PrimType::omu_PrimType(const cls_ReadVisitor& visitor)
    : omu_PrimLevel(visitor), _uid(visitor.GetUid()) {
    cls_ReadFields<omu_PrimType>(*this, visitor);
}

omu_PrimType::~omu_PrimType() = default;

cow_String omu_PrimType::TypeString() const {
    return _typeName.IsEmpty() ? cow_String("type") : AsString(0);
}

cow_String omu_PrimType::AsString(int) const { return _typeName + "Type"; }

bool omu_PrimType::operator==(const omu_Primitive& other) const {
    const auto* type = omu_PrimCast<omu_PrimType>(other);
    return type != nullptr && _typeName == type->_typeName;
}

cow_String omu_PrimType::ConverTypeToString(const omu_ObjectToDisplayTypeEnm& type) {
    const auto index = static_cast<unsigned>(type);
    return index < std::size(kDisplayTypes) ? cow_String(kDisplayTypes[index]) : cow_String();
}

omu_ObjectToDisplayTypeEnm omu_PrimType::ConverStringToType(const cow_String& text) {
    const auto* found = std::find(std::begin(kDisplayTypes), std::end(kDisplayTypes), text.View());
    return static_cast<omu_ObjectToDisplayTypeEnm>(found - std::begin(kDisplayTypes));
}
