#include "uti_RegistrationCheck.h"

#include "cls_MetadataRegistrar.h"
#include "nex_Exception.h"
#include "omi_Singleton.h"
#include "typ_ArchCompTable.h"
#include "utl_Catenator.h"

#include <algorithm>
#include <array>
#include <set>
#include <string>

namespace {

using Module = uti_RegistrationCheck::Module;

struct Difference {
    unsigned typeId;
    const char* storedName;  // null: no class is registered
    const char* reason;
};

// What differs from the type tables on purpose.
constexpr Difference kDifferences[] = {
    {0x000A0016, "mdl_PropList1DArrayListFloat", "saved data has the longer name"},
    {0x0013001B, "omu_PrimEnum", "saved data has the name without Base"},
    {0x000A0017, nullptr, "reserved: keeps the numbering in place"},
    {0x000A0018, nullptr, "reserved: keeps the numbering in place"},
    {0x00130026, nullptr, "stored as plain constants, omu_PrimEnum"},
    {0x00130027, nullptr, "stored as plain constants, omu_PrimEnum"},
    {0x00130029, nullptr, "interpreter objects are not stored"},
    {0x0013002A, nullptr, "interpreter objects are not stored"},
    {0x0013002B, nullptr, "interpreter objects are not stored"},
    {0x0013002C, nullptr, "interpreter objects are not stored"},
    {0x0013002D, nullptr, "the common class of dictionaries, stored as one of its kinds"},
    {0x0013002E, nullptr, "interpreter objects are not stored"},
};

const Difference* FindDifference(unsigned typeId) {
    const auto found = std::ranges::find(kDifferences, typeId, &Difference::typeId);
    return found == std::end(kDifferences) ? nullptr : found;
}

/// "19.17"
std::string Shown(unsigned typeId) {
    return std::to_string(typeId >> 16) + "." + std::to_string(typeId & 0xFFFFU);
}

class Report {
public:
    Report(std::span<const cls_ClassMetadata* const> classes, std::span<const Module> modules)
        : _modules(modules) {
        for (const cls_ClassMetadata* metadata : classes) {
            CheckClass(*metadata);
            CheckFields(*metadata);
        }
        for (const Module& module : modules) {
            CheckTable(module, classes);
        }
    }

    [[nodiscard]] std::vector<cow_String> Take() { return std::move(_faults); }

private:
    /// The table entry of an identity: of the modules under test, else of the process.
    [[nodiscard]] const typ_Entry* Find(unsigned typeId) const {
        const auto module = std::ranges::find(_modules, typeId >> 16, &Module::number);
        return module == _modules.end() ? typ_ArchCompTable::Find(typeId)
                                        : module->types.At(typeId & 0xFFFFU);
    }

    /// Whether the bases of an identity lead to the root of exceptions.
    [[nodiscard]] bool IsException(unsigned typeId) const {
        for (int steps = 0; steps < 100 && typeId != 1; ++steps) {
            if (typeId == nex_Exception::TypeId()) {
                return true;
            }
            const typ_Entry* entry = Find(typeId);
            typeId = entry == nullptr ? 1 : entry->base;
        }
        return false;
    }

    void CheckClass(const cls_ClassMetadata& metadata) {
        const typ_Entry* entry = Find(metadata.TypeId());
        if (entry == nullptr || entry->name == nullptr) {
            Add(metadata, "the type table has no such class");
            return;
        }
        const Difference* difference = FindDifference(metadata.TypeId());
        const char* expected = entry->name;
        if (difference != nullptr) {
            expected = difference->storedName;
        }
        if (expected == nullptr) {
            Add(metadata, std::string("is registered though ") + difference->reason);
        } else if (metadata.Name() != expected) {
            Add(metadata, std::string("its stored name should be ") + expected);
        }
        if (metadata.BaseTypeId() != entry->base) {
            Add(metadata, "base " + Shown(metadata.BaseTypeId()) + ", in the type table " +
                              Shown(entry->base));
        }
        const auto kind =
            IsException(metadata.TypeId()) ? typ_Entry::Exception : typ_Entry::Persistent;
        if (entry->kind != kind) {
            Add(metadata, "kind " + std::to_string(entry->kind) + " in the type table");
        }
        if (const typ_Entry* base = Find(metadata.BaseTypeId());
            metadata.BaseTypeId() != 1 && (base == nullptr || base->name == nullptr)) {
            Add(metadata, "its base " + Shown(metadata.BaseTypeId()) + " is in no type table");
        }
    }

    /// Field numbers count from 0 in the order of the fields, and names are unique.
    void CheckFields(const cls_ClassMetadata& metadata) {
        std::set<cow_String> names;
        for (int number = 0; const cls_Attribute& field : metadata.Attributes()) {
            if (field.handle.Number() != number++) {
                Add(metadata, "field " + field.handle.Name().Std() + " has number " +
                                  std::to_string(field.handle.Number()));
            }
            if (!names.insert(field.handle.Name()).second) {
                Add(metadata, "two fields are named " + field.handle.Name().Std());
            }
        }
    }

    /// Every named entry is registered or meant not to be.
    void CheckTable(const Module& module, std::span<const cls_ClassMetadata* const> classes) {
        for (unsigned index = 0; index < module.types.Count(); ++index) {
            const typ_Entry& entry = *module.types.At(index);
            const unsigned typeId = module.number * 65536U + index;
            const Difference* difference = FindDifference(typeId);
            const bool isMissing = std::ranges::none_of(
                classes, [=](const auto* metadata) { return metadata->TypeId() == typeId; });
            const bool mayMiss = difference != nullptr && difference->storedName == nullptr;
            if (entry.name != nullptr && isMissing && !mayMiss) {
                _faults.push_back(std::string(entry.name) + " (" + Shown(typeId) +
                                  "): in the type table, but not registered");
            }
        }
    }

    void Add(const cls_ClassMetadata& metadata, const std::string& fault) {
        _faults.push_back(metadata.Name().Std() + " (" + Shown(metadata.TypeId()) + "): " + fault);
    }

    std::span<const Module> _modules;
    std::vector<cow_String> _faults;
};

}  // namespace

std::vector<cow_String> uti_RegistrationCheck::Faults(
    std::span<const cls_ClassMetadata* const> classes, std::span<const Module> modules) {
    return Report(classes, modules).Take();
}

std::vector<cow_String> uti_RegistrationCheck::Faults() {
    constexpr std::array<unsigned short, 3> numbers = {10, 19, 36};
    std::vector<Module> modules;
    modules.reserve(numbers.size());
    for (const unsigned short number : numbers) {
        modules.push_back({number, typ_ArchCompTable::Module(number)});
    }
    const auto all = omi_Singleton<cls_MetadataRegistrar>::Instance().Classes().All();
    return Faults(all, modules);
}
