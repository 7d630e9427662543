#include "typ_ArchCompTable.h"

#include <map>

namespace {

std::map<unsigned short, typ_ArchCompEntry>& Tables() {
    static std::map<unsigned short, typ_ArchCompEntry> tables;
    return tables;
}

}  // namespace

void typ_ArchCompTable::InsertEntry(unsigned short module, typ_ArchCompEntry entry) {
    Tables()[module] = entry;
}

typ_ArchCompEntry typ_ArchCompTable::Module(unsigned short module) {
    const auto found = Tables().find(module);
    return found == Tables().end() ? typ_ArchCompEntry() : found->second;
}

const typ_Entry* typ_ArchCompTable::Find(unsigned typeId) {
    return Module(static_cast<unsigned short>(typeId >> 16)).At(typeId & 0xFFFFU);
}

void typ_ArchCompTable::Clear() noexcept { Tables().clear(); }
