#include "omu_PrimPath.h"

#include <string>

omu_PrimPath::omu_PrimPath(const cls_ReadVisitor& visitor)
    : omu_PrimLevel(visitor), _contextType(Kind()), _uid(visitor.GetUid()) {
    cls_ReadFields<omu_PrimPath>(*this, visitor);
}

omu_PrimPath::~omu_PrimPath() = default;

cow_String omu_PrimPath::AsString(int) const {
    std::string text = "'";
    for (const cow_String& component : _components) {
        text.append(component.View()) += '.';
    }
    text.erase(text.find_last_not_of('.') + 1);
    return text + '\'';
}

bool omu_PrimPath::operator==(const omu_Primitive& other) const {
    const auto* path = omu_PrimCast<omu_PrimPath>(other);
    return path != nullptr && IsType('p') && path->IsType('p') && _components == path->_components;
}
