#pragma once

#include "cls_ClassRegistrar.h"
#include "omi_Singleton.h"

#include <vector>

/// Collects the metadata functions of all modules and calls them when metadata is first asked for.
///
/// A process singleton: omi_Singleton<cls_MetadataRegistrar>::Instance(). Registering costs one
/// entry in a list, so that starting the library does not build descriptions nobody reads.
class BASIC_API cls_MetadataRegistrar {
public:
    using MetadataFunction = void (*)(cls_ClassRegistrar&);

    /// Notes \p function, to be called with the class registrar before the next look-up.
    /// \param selector  the group of classes it belongs to, kept for reports. Registering a
    /// function again only renews its selector.
    void initClassMetadata(MetadataFunction function, unsigned selector);

    /// The classes, all noted functions called. The class system's own lists are always among them.
    [[nodiscard]] cls_ClassRegistrar& Classes();
    /// Number of noted functions.
    [[nodiscard]] int Count() const noexcept { return static_cast<int>(_functions.size()); }
    /// Number of noted functions that were called already.
    [[nodiscard]] int Called() const noexcept { return static_cast<int>(_called); }

    /// A noted function with its selector, in registration order.
    struct Entry {
        MetadataFunction function;
        unsigned selector;
    };
    [[nodiscard]] const std::vector<Entry>& Entries() const noexcept { return _functions; }

private:
    std::vector<Entry> _functions;
    std::size_t _called = 0;
    bool _hasLists = false;  // the class system's own lists are entered
    cls_ClassRegistrar _classes;
};
