#include "omu_TextRepr.h"

#include "omu_InterfaceObj.h"

#include <string>
#include <string_view>

cow_String omu_TextRepr::GetMaxRecursionString(const omu_InterfaceObj* object) const {
    if (object == nullptr) {
        return _maxRecursionString;
    }
    const std::string_view format = _maxRecursionString.View();
    std::string text = "'";
    for (std::size_t i = 0; i < format.size(); ++i) {
        const std::string_view two = format.substr(i, 2);
        if (two == "%s") {
            text += object->ExposedTypeName();
            ++i;
        } else {
            text += format[i];
            i += static_cast<std::size_t>(two == "%%");
        }
    }
    return text + '\'';
}
