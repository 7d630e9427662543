#include "cls_MetadataRegistrar.h"

#include "cls_xpLists.h"

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
    if (!_hasLists) {
        _hasLists = true;
        cls_xpListInt::InitializeMetadata(_classes);
        cls_xp1DArrayInt::InitializeMetadata(_classes);
        cls_xpListString::InitializeMetadata(_classes);
        cls_xp1DArrayListFloat::InitializeMetadata(_classes);
    }
    while (_called < _functions.size()) {
        _functions[_called].function(_classes);
        ++_called;
    }
    return _classes;
}
