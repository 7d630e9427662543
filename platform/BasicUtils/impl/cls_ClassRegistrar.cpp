#include "cls_ClassRegistrar.h"

#include "typ_ArchCompTable.h"

cls_ClassMetadata& cls_ClassRegistrar::CreateClassMD(const cow_String& name, unsigned typeId,
                                                     int version, Construct construct,
                                                     unsigned baseTypeId) {
    return AddClassMD(new cls_ClassMetadata(name, typeId, version, construct, baseTypeId));
}

cls_ClassMetadata& cls_ClassRegistrar::AddClassMD(cls_ClassMetadata* metadata) {
    std::unique_ptr<cls_ClassMetadata> owned(metadata);
    return *(_classes[owned->TypeId()] = std::move(owned));
}

const cls_ClassMetadata* cls_ClassRegistrar::Find(unsigned typeId) const {
    const auto found = _classes.find(typeId);
    return found == _classes.end() ? nullptr : found->second.get();
}

const cls_ClassMetadata* cls_ClassRegistrar::Find(const cow_String& name) const {
    for (const auto& [typeId, metadata] : _classes) {
        if (metadata->Name() == name) {
            return metadata.get();
        }
    }
    return nullptr;
}

std::vector<const cls_ClassMetadata*> cls_ClassRegistrar::All() const {
    std::vector<const cls_ClassMetadata*> all;
    for (const auto& [typeId, metadata] : _classes) {
        all.push_back(metadata.get());
    }
    return all;
}

bool cls_ClassRegistrar::Inherits(unsigned typeId, unsigned baseTypeId) {
    // A chain longer than all tables together is a loop in a wrong table.
    for (unsigned steps = 0; steps < 0x10000; ++steps) {
        if (typeId == baseTypeId) {
            return true;
        }
        const typ_Entry* entry = typ_ArchCompTable::Find(typeId);
        if (entry == nullptr || entry->name == nullptr) {
            return false;
        }
        typeId = entry->base;
    }
    return false;
}
