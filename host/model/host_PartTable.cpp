#include "host_PartTable.h"

#include "omu_ErrorExceptions.h"

#include <numeric>

namespace {

constexpr const char* kSource = "host/model/host_PartTable";

}  // namespace

std::vector<int> host_Part::Cells(const cow_String& group) const {
    if (group.IsEmpty()) {
        std::vector<int> all(static_cast<std::size_t>(mesh.CellCount()));
        std::iota(all.begin(), all.end(), 0);
        return all;
    }
    const auto found = groups.find(group);
    if (found == groups.end()) {
        omu_KeyErrorException(atr_String(group.View())).Throw(kSource, __LINE__);
    }
    return found->second;
}

const std::shared_ptr<const host_Field>& host_Part::Field(const cow_String& field) const {
    const auto found = fields.find(field);
    if (found == fields.end()) {
        omu_KeyErrorException(atr_String(field.View())).Throw(kSource, __LINE__);
    }
    return found->second;
}

host_PartTable& host_PartTable::Instance() {
    static host_PartTable table;
    return table;
}

void host_PartTable::Add(host_Part part) {
    const cow_String name = part.name;
    const host_Part* replaced = Look(name);
    part.serial = ++_added;
    part.lineage = replaced != nullptr ? replaced->lineage : part.serial;
    _removed.erase(name);
    _parts.insert_or_assign(name, std::move(part));
}

host_Part& host_PartTable::Find(const cow_String& name) {
    const auto found = _parts.find(name);
    if (found == _parts.end()) {
        const atr_String text(name.View());
        if (_removed.count(name) != 0) {
            omu_AccessErrorException(text).Throw(kSource, __LINE__);
        }
        omu_KeyErrorException(text).Throw(kSource, __LINE__);
    }
    return found->second;
}

const host_Part* host_PartTable::Look(const cow_String& name) const {
    const auto found = _parts.find(name);
    return found != _parts.end() ? &found->second : nullptr;
}

void host_PartTable::Remove(cow_String name) {
    _parts.erase(Find(name).name);
    _removed.insert(std::move(name));
}
