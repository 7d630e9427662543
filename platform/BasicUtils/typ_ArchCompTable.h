#pragma once

#include "typ_ArchCompEntry.h"

/// The type tables of all modules: class names and bases by type identity.
///
/// Process-wide; module start and stop change it, one thread at a time.
class BASIC_API typ_ArchCompTable {
public:
    /// Enters a module's table; a table the module entered earlier is replaced.
    static void InsertEntry(unsigned short module, typ_ArchCompEntry entry);
    /// The entry of a type identity (module number x 65536 + index), or null.
    [[nodiscard]] static const typ_Entry* Find(unsigned typeId);
    /// The table of a module; an empty one where it has entered none.
    [[nodiscard]] static typ_ArchCompEntry Module(unsigned short module);
    /// Drops all tables.
    static void Clear() noexcept;
};
