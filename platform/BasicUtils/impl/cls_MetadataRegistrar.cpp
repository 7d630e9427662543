#include "cls_MetadataRegistrar.h"

#include <algorithm>

void cls_MetadataRegistrar::initClassMetadata(MetadataFunction function, unsigned selector) {
    const auto known = std::find_if(_functions.begin(), _functions.end(),
                                    [=](const Entry& entry) { return entry.function == function; });
    if (known != _functions.end()) {
        known->selector = selector;
    } else {
        _functions.push_back({function, selector});
    }
}

cls_ClassRegistrar& cls_MetadataRegistrar::Classes() {
    while (_called < _functions.size()) {
        _functions[_called].function(_classes);
        ++_called;
    }
    return _classes;
}
