#include "mdl_initialize.h"

#include "mdl_PropagatingAttribute.h"
#include "mdl_PropertyTable.h"
#include "mdl_Repository.h"
#include "uti_Module.h"

namespace {

// clang-format off
constexpr typ_Entry kTypes[] = {
    {typ_Entry::Unused, 1, nullptr},
    {typ_Entry::Persistent, mdl_Extension::TypeId(), "mdl_Repository"},
    {typ_Entry::Unused, 0, nullptr},
    {typ_Entry::Unused, 0, nullptr},
    {typ_Entry::Unused, 0, nullptr},
    {typ_Entry::Unused, 0, nullptr},
    {typ_Entry::Unused, 0, nullptr},
    {typ_Entry::Unused, 0, nullptr},
    {typ_Entry::Unused, 0, nullptr},
    {typ_Entry::Unused, 0, nullptr},
    {typ_Entry::Unused, 0, nullptr},
    {typ_Entry::Unused, 0, nullptr},
    {typ_Entry::Unused, 0, nullptr},
    {typ_Entry::Persistent, 1, "mdl_Extension"},  // 13
    {typ_Entry::Persistent, 1, "mdl_PropString"},
    {typ_Entry::Persistent, 1, "mdl_PropDouble"},
    {typ_Entry::Persistent, 1, "mdl_PropBool"},
    {typ_Entry::Persistent, 1, "mdl_PropListInt"},
    {typ_Entry::Persistent, 1, "mdl_PropertyTable"},  // 18
    {typ_Entry::Persistent, 1, "mdl_PropInt"},
    {typ_Entry::Persistent, 1, "mdl_Prop1DArrayInt"},
    {typ_Entry::Persistent, 1, "mdl_PropListString"},
    {typ_Entry::Persistent, 1, "mdl_Prop1DArrayListFloat"},
    // Reserved: no class is registered under these, but the numbers after them must not move.
    {typ_Entry::Persistent, 1, "mdl_PropBoolArray"},  // 23
    {typ_Entry::Persistent, 1, "mdl_PropStringArray"},
};
// clang-format on
static_assert(std::size(kTypes) == 25);

constexpr unsigned kSelector = 7;

constexpr uti_Registration kClasses[] = {
    {&mdl_PropAttr<cow_String>::InitializeMetadata, kSelector},
    {&mdl_PropAttr<int>::InitializeMetadata, kSelector},
    {&mdl_PropAttr<double>::InitializeMetadata, kSelector},
    {&mdl_PropAttr<bool>::InitializeMetadata, kSelector},
    {&mdl_PropAttr<cls_xpListInt>::InitializeMetadata, kSelector},
    {&mdl_PropAttr<cls_xp1DArrayInt>::InitializeMetadata, kSelector},
    {&mdl_PropAttr<cls_xpListString>::InitializeMetadata, kSelector},
    {&mdl_PropAttr<cls_xp1DArrayListFloat>::InitializeMetadata, kSelector},
    {&mdl_Extension::InitializeMetadata, kSelector},
    {&mdl_Repository::InitializeMetadata, kSelector},
    {&mdl_PropertyTable::InitializeMetadata, kSelector},
};

constinit uti_Module theModule(10, kTypes, kClasses);

}  // namespace

void mdl_initialize(int& count) { theModule.Initialize(count); }

void mdl_finalize(int& count) { theModule.Finalize(count); }
