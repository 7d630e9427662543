#include "UTI_BasicUtils.h"

#include "cls_MetadataRegistrar.h"
#include "cls_xpLists.h"
#include "nex_AssertException.h"
#include "nex_CommandException.h"
#include "nex_TextException.h"
#include "omi_Singleton.h"
#include "typ_ArchCompTable.h"

#include <iterator>

namespace {

constexpr typ_Entry kRootTypes[] = {
    {typ_Entry::Unused, 1, nullptr},
    {typ_Entry::Persistent, 0, "root"},
};

constexpr typ_Entry kExceptionTypes[] = {
    {typ_Entry::Unused, 1, nullptr},
    {typ_Entry::Exception, 1, "nex_Exception"},
    {typ_Entry::Exception, nex_Exception::TypeId(), "nex_TextException"},
    {typ_Entry::Exception, nex_Exception::TypeId(), "nex_CommandException"},
    {typ_Entry::Exception, nex_Exception::TypeId(), "nex_AssertException"},
};
static_assert(nex_TextException::TypeId() == 0x1F0002);
static_assert(nex_CommandException::TypeId() == 0x1F0003);
static_assert(nex_AssertException::TypeId() == 0x1F0004);

constexpr typ_Entry kListTypes[] = {
    {typ_Entry::Unused, 1, nullptr},
    {typ_Entry::Persistent, 1, cls_xpListInt::kClass.storedName},
    {typ_Entry::Persistent, 1, cls_xp1DArrayInt::kClass.storedName},
    {typ_Entry::Persistent, 1, cls_xpListString::kClass.storedName},
    {typ_Entry::Persistent, 1, cls_xp1DArrayListFloat::kClass.storedName},
};
static_assert(cls_xpListInt::TypeId() == 0x230001);
static_assert(cls_xp1DArrayInt::TypeId() == 0x230002);
static_assert(cls_xpListString::TypeId() == 0x230003);
static_assert(cls_xp1DArrayListFloat::TypeId() == 0x230004);

unsigned theCounter = 0;

}  // namespace

void UTI_BasicUtils_initialize(int& count) {
    if (theCounter++ != 0) {
        return;
    }
    ++count;
    typ_ArchCompTable::InsertEntry(0, {kRootTypes, std::size(kRootTypes)});
    typ_ArchCompTable::InsertEntry(31, {kExceptionTypes, std::size(kExceptionTypes)});
    typ_ArchCompTable::InsertEntry(35, {kListTypes, std::size(kListTypes)});
}

void UTI_BasicUtils_finalize(int& count) {
    if (--theCounter != 0) {
        return;
    }
    --count;
    typ_ArchCompTable::Clear();
    omi_Singleton<cls_MetadataRegistrar>::Finalize();
}
