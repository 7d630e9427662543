#include "idb_ReadClasses.h"

#include "omi_Singleton.h"
#include "typ_ArchCompTable.h"

#include <algorithm>
#include <limits>

using namespace idb_cbor;

namespace {

constexpr std::size_t kMostFields = 1000;  // of one class level

/// What an object of unknown size is taken for, and what lies about each object in memory.
constexpr std::size_t kUnknownSize = 64;
constexpr std::size_t kAroundObject = 24;

idb_Head Expect(idb_Cursor& cursor, Major major, const char* what) {
    const idb_Head head = cursor.Head();
    if (!head.Is(major)) {
        idb_RaiseAt(head.at, std::string("table of classes: ") + what + " is " + head.Name());
    }
    return head;
}

}  // namespace

void idb_Charge(idb_Budget& budget, std::uint64_t bytes, std::size_t at) {
    if (bytes > budget.memory) {
        idb_RaiseAt(at, "its objects need more memory than a memento of its size may");
    }
    budget.memory -= bytes;
}

std::string idb_ReadClass::Described() const {
    return "class " + name + " (stored version " + std::to_string(version) +
           (metadata == nullptr ? std::string()
                                : ", known version " + std::to_string(metadata->Version())) +
           ")";
}

const idb_ReadClasses::Known& idb_ReadClasses::Find(const std::string& name) {
    const auto [entry, isNew] = _known.try_emplace(name);
    Known& known = entry->second;
    if (!isNew) {
        return known;
    }
    const auto& registrar = omi_Singleton<cls_MetadataRegistrar>::Instance().Classes();
    known.metadata = registrar.Find(cow_String(name));
    if (known.metadata != nullptr) {
        known.typeId = known.metadata->TypeId();
        return known;
    }
    // A base level may belong to a class that is in the type table alone.
    for (const cls_ClassMetadata* metadata : registrar.All()) {
        const unsigned base = metadata->BaseTypeId();
        const typ_Entry* type = base == 1 ? nullptr : typ_ArchCompTable::Find(base);
        if (type != nullptr && type->name != nullptr && name == type->name) {
            known.typeId = base;
            break;
        }
    }
    return known;
}

void idb_ReadClasses::Read(idb_Cursor& cursor, idb_Budget& budget) {
    const idb_Head table = Expect(cursor, kArray, "the table");
    for (std::uint64_t left = table.value; left > 0; --left) {
        idb_Charge(budget, sizeof(idb_ReadClass) + 2 * sizeof(void*), cursor.At());
        _classes.push_back(ReadEntry(cursor, budget));
    }
}

std::unique_ptr<idb_ReadClass> idb_ReadClasses::ReadEntry(idb_Cursor& cursor, idb_Budget& budget) {
    const idb_Head head = Expect(cursor, kArray, "an entry");
    if (head.value != 4) {
        idb_RaiseAt(head.at, "table of classes: an entry of " + std::to_string(head.value) +
                                 " items, not 4");
    }
    auto entry = std::make_unique<idb_ReadClass>();
    entry->name = cursor.Text(Expect(cursor, kText, "a name"));
    const idb_Head version = Expect(cursor, kUnsigned, "a version");
    if (version.value > static_cast<std::uint64_t>(std::numeric_limits<int>::max())) {
        idb_RaiseAt(version.at, "class " + entry->name + ": version " +
                                    std::to_string(version.value) + " is out of range");
    }
    entry->version = static_cast<int>(version.value);
    const Known& known = Find(entry->name);
    if (known.typeId == 0) {
        idb_RaiseAt(head.at, "class " + entry->name + " (stored version " +
                                 std::to_string(entry->version) + ") is unknown");
    }
    entry->typeId = known.typeId;
    entry->metadata = known.metadata;
    if (entry->metadata != nullptr && entry->version > entry->metadata->Version()) {
        idb_RaiseAt(version.at, entry->Described() + " is newer than this program");
    }

    const idb_Head base = cursor.Head();
    if (base.Is(kUnsigned)) {
        if (base.value >= _classes.size()) {
            idb_RaiseAt(base.at, entry->Described() + ": base " + std::to_string(base.value) +
                                     " is not among the entries before it");
        }
        entry->base = _classes[static_cast<std::size_t>(base.value)].get();
        entry->levels = entry->base->levels + 1;
        entry->firstField = entry->base->FieldCount();
    } else if (base.first != kNull) {
        idb_RaiseAt(base.at, entry->Described() + ": its base is " + base.Name());
    }
    const unsigned baseId = entry->base == nullptr ? 1 : entry->base->typeId;
    const unsigned right = entry->metadata == nullptr ? 1 : entry->metadata->BaseTypeId();
    if (baseId != right) {
        idb_RaiseAt(base.at, entry->Described() + " is stored with the wrong base" +
                                 (entry->base == nullptr ? "" : ", " + entry->base->Described()));
    }
    ReadFields(*entry, cursor, budget);

    const std::size_t size = entry->metadata == nullptr ? 0 : entry->metadata->ObjectSize();
    entry->charge = (size == 0 ? kUnknownSize : size) + kAroundObject;
    return entry;
}

void idb_ReadClasses::ReadFields(idb_ReadClass& entry, idb_Cursor& cursor, idb_Budget& budget) {
    const idb_Head fields = Expect(cursor, kArray, "a list of fields");
    if (fields.value > kMostFields) {
        idb_RaiseAt(fields.at,
                    entry.Described() + ": more than " + std::to_string(kMostFields) + " fields");
    }
    idb_Charge(budget, fields.value * sizeof(idb_ReadClass::Field), fields.at);
    entry.own.reserve(static_cast<std::size_t>(fields.value));
    for (std::uint64_t left = fields.value; left > 0; --left) {
        const idb_Head head = Expect(cursor, kText, "a field's name");
        const std::string_view name = cursor.Text(head);
        for (const idb_ReadClass::Field& other : entry.own) {
            if (other.name == name) {
                idb_RaiseAt(head.at,
                            entry.Described() + ": two fields are named " + std::string(name));
            }
        }
        idb_Charge(budget, name.size(), head.at);
        idb_ReadClass::Field& field = entry.own.emplace_back();
        field.name = name;
        if (entry.metadata != nullptr) {
            const auto& attributes = entry.metadata->Attributes();
            const auto found = std::find_if(
                attributes.begin(), attributes.end(),
                [&](const cls_Attribute& known) { return known.handle.Name() == field.name; });
            field.attribute = found == attributes.end() ? nullptr : &*found;
        }
    }
}
