#pragma once

#include "CaeUtilsExport.h"
#include "cow_String.h"

#include <deque>
#include <string_view>
#include <unordered_map>

/// The names of symbolic constants, by small numbers that are given out in order, for the whole
/// process: omi_Singleton<omu_SymbolicConstantTable>::Instance(). For one thread at a time.
///
/// Nothing here raises for a bad argument: it is reported on standard error, and work goes on.
class CAE_API omu_SymbolicConstantTable {
public:
    /// The entry for "no value", which every table begins with.
    static constexpr unsigned int kUnspecifiedId = 0;
    static constexpr const char* kUnspecified = "_UNSPECIFIED";

    omu_SymbolicConstantTable();

    /// Enters a new name and returns its number. A name that is there already is reported and keeps
    /// its number; an empty one is reported and gives kUnspecifiedId.
    unsigned int AddString(const cow_String& name);
    /// The number of \p name, which is entered when it is new. Empty as for AddString.
    unsigned int AddOrFind(const cow_String& name);
    /// Whether \p name is there.
    [[nodiscard]] bool Has(const cow_String& name) const { return Find(name) != nullptr; }
    /// The name of \p id; an unknown number is reported and gives an empty name. The reference
    /// stays valid as long as the table.
    [[nodiscard]] const cow_String& GetString(unsigned int id) const;
    /// Number of names; the numbers are [0, Size()).
    [[nodiscard]] unsigned int Size() const noexcept {
        return static_cast<unsigned int>(_names.size());
    }
    /// Lists the contents on standard error.
    void Dump() const;

private:
    [[nodiscard]] const unsigned int* Find(const cow_String& name) const;
    unsigned int Enter(const cow_String& name);

    std::deque<cow_String> _names;                            // by number; never moved
    std::unordered_map<std::string_view, unsigned int> _ids;  // views of _names
};
