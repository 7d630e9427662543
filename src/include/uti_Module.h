#pragma once

#include "cls_MetadataRegistrar.h"
#include "omi_Singleton.h"
#include "typ_ArchCompTable.h"

#include <span>

/// One persistent class of a module, as its initialiser hands it to the metadata registrar.
struct uti_Registration {
    cls_MetadataRegistrar::MetadataFunction describe;
    unsigned selector;  ///< the registrar's grouping number, passed on unchanged
};

/// Start and stop of one module, or of the library: counts the calls and works on the outermost.
///
/// The counter is a plain unsigned: one thread at a time starts and stops. A stop too many wraps
/// it to all ones, after which starts only count until it is back; nothing detects that.
class uti_Module {
public:
    /// A module without persistent classes.
    constexpr uti_Module() noexcept = default;
    /// \param types  the type table by index; \param classes  in registration order. Neither is
    /// copied.
    constexpr uti_Module(unsigned short number, std::span<const typ_Entry> types,
                         std::span<const uti_Registration> classes) noexcept
        : _number(number), _types(types), _classes(classes) {}

    /// Counts one start. The first enters types and classes and adds 1 to \p count; only then it
    /// returns true and the caller does the module's further work. When registering raises, the
    /// start stays counted.
    bool Initialize(int& count) {
        if (_counter++ != 0) {
            return false;
        }
        ++count;
        if (!_types.empty()) {
            typ_ArchCompTable::InsertEntry(_number,
                                           {_types.data(), static_cast<unsigned>(_types.size())});
        }
        for (const uti_Registration& entry : _classes) {
            omi_Singleton<cls_MetadataRegistrar>::Instance().initClassMetadata(entry.describe,
                                                                               entry.selector);
        }
        return true;
    }

    /// Counts one stop. The last subtracts 1 from \p count and returns true: the caller tears
    /// down. Types and classes stay entered until BasicUtils drops them.
    bool Finalize(int& count) noexcept {
        if (--_counter != 0) {
            return false;
        }
        --count;
        return true;
    }

private:
    unsigned _counter = 0;
    unsigned short _number = 0;
    std::span<const typ_Entry> _types;
    std::span<const uti_Registration> _classes;
};
