#include "host_LoadKind.h"

int host_LoadKindRow::FindComponent(std::string_view name) const noexcept {
    int place = 0;
    for (const char* const component : Components()) {
        if (component == name) {
            return place;
        }
        ++place;
    }
    return -1;
}

std::string host_LoadKindRow::ComponentNames() const {
    std::string all;
    for (const char* const component : Components()) {
        all += (all.empty() ? "" : ", ") + std::string(component);
    }
    return all;
}
