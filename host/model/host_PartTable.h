#pragma once

#include "cow_String.h"
#include "host_Field.h"
#include "host_Mesh.h"

#include <map>
#include <memory>
#include <set>
#include <vector>

/// A part of the model: a mesh under a name, named groups of its cells, and fields.
struct host_Part {
    cow_String name;
    host_Mesh mesh;
    std::map<cow_String, std::vector<int>> groups;  ///< cell numbers, ascending, each once
    std::map<cow_String, std::shared_ptr<const host_Field>> fields;
    /// Numbers that the table gives: one of its own for each part of the process, and one that a
    /// part takes over from the one that it replaces.
    unsigned long long serial = 0;
    unsigned long long lineage = 0;

    /// The cells of a group; of the name "", all cells. An unknown group: omu_KeyErrorException.
    [[nodiscard]] std::vector<int> Cells(const cow_String& group) const;
    /// A field; of an unknown name: omu_KeyErrorException.
    [[nodiscard]] const std::shared_ptr<const host_Field>& Field(const cow_String& field) const;
};

/// The parts that the commands work on. For the interpreter's thread.
class host_PartTable {
public:
    /// The table of the process.
    static host_PartTable& Instance();

    /// Adds a part; one of the same name is replaced, its groups and fields included.
    void Add(host_Part part);
    /// Raises omu_AccessErrorException for a part that was removed, omu_KeyErrorException for one
    /// that never was. The reference stays valid until the part is replaced or removed.
    [[nodiscard]] host_Part& Find(const cow_String& name);
    /// The part of that name, or null.
    [[nodiscard]] const host_Part* Look(const cow_String& name) const;
    /// Removes a part; errors as for Find. \p name may be the part's own.
    void Remove(cow_String name);

private:
    std::map<cow_String, host_Part> _parts;
    std::set<cow_String> _removed;
    unsigned long long _added = 0;
};
