#include "host_initialize.h"

#include "UTI_CaeUtils.h"
#include "host_Load.h"
#include "host_Material.h"
#include "host_Model.h"
#include "host_Part.h"
#include "host_Step.h"
#include "uti_Module.h"

namespace {

template <class T>
constexpr typ_Entry Entry() {
    return {typ_Entry::Persistent, T::kClass.baseTypeId, T::kClass.storedName};
}

// The numbers stand in saved models and never change.
constexpr typ_Entry kTypes[] = {
    {typ_Entry::Unused, 1, nullptr},
    Entry<host_Part>(),      // 1
    Entry<host_Material>(),  // 2
    Entry<host_Step>(),      // 3
    Entry<host_Load>(),      // 4
};

constexpr unsigned kSelector = 7;

constexpr uti_Registration kClasses[] = {
    {&host_Part::InitializeMetadata, kSelector},
    {&host_Material::InitializeMetadata, kSelector},
    {&host_Step::InitializeMetadata, kSelector},
    {&host_Load::InitializeMetadata, kSelector},
};

constinit uti_Module theModule(host_Member::kModule, kTypes, kClasses);

}  // namespace

void host_initialize(int& count) {
    UTI_CaeUtils_initialize(count);
    theModule.Initialize(count);
    (void)host_Model::Instance();  // the thread that comes first is the one that may change it
}

void host_finalize(int& count) {
    theModule.Finalize(count);
    UTI_CaeUtils_finalize(count);
}
