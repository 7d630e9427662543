#pragma once

#include "cow_String.h"
#include "host_Mesh.h"

#include <map>
#include <set>
#include <vector>

/// A part of the model: a mesh under a name, and named groups of its cells.
struct host_Part {
    cow_String name;
    host_Mesh mesh;
    std::map<cow_String, std::vector<int>> groups;  ///< cell numbers, ascending, each once

    /// The cells of a group; of the name "", all cells. An unknown group: omu_KeyErrorException.
    [[nodiscard]] std::vector<int> Cells(const cow_String& group) const;
};

/// The parts that the commands work on. For the interpreter's thread.
class host_PartTable {
public:
    /// The table of the process.
    static host_PartTable& Instance();

    /// Adds a part; one of the same name is replaced, its groups included.
    void Add(host_Part part);
    /// Raises omu_AccessErrorException for a part that was removed, omu_KeyErrorException for one
    /// that never was. The reference stays valid until the part is replaced or removed.
    [[nodiscard]] host_Part& Find(const cow_String& name);
    /// Removes a part; errors as for Find. \p name may be the part's own.
    void Remove(cow_String name);

private:
    std::map<cow_String, host_Part> _parts;
    std::set<cow_String> _removed;
};
