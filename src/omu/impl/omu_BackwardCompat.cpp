#include "omu_BackwardCompat.h"

#include <cstdlib>
#include <string_view>

omu_BackwardCompat::omu_BackwardCompat()
    : _acceptDeprecated(std::getenv("TARVEX_DEVL_MODE") == nullptr) {
    const char* deprecated = std::getenv("TARVEX_DEPRECATED");
    if (deprecated == nullptr) {
        return;
    }
    if (deprecated == std::string_view("ON")) {
        _acceptDeprecated = true;
    } else if (deprecated == std::string_view("OFF")) {
        _acceptDeprecated = false;
    }
}
