#include "g3d_initialize.h"

#include "g3d_ColorErrorException.h"
#include "g3d_ColorMap.h"
#include "g3d_Point.h"
#include "uti_Module.h"

namespace {

constexpr typ_Entry kTypes[] = {
    {typ_Entry::Unused, 1, nullptr},
    {typ_Entry::Persistent, 1, "g3d_Vector"},
    {typ_Entry::Persistent, 1, "g3d_Point"},
    {typ_Entry::Exception, nex_CommandException::TypeId(), "g3d_ColorErrorException"},
};
static_assert(g3d_Vector::TypeId() == 0x00240001);
static_assert(g3d_Point::TypeId() == 0x00240002);
static_assert(g3d_ColorErrorException::TypeId() == 0x00240003);

constexpr uti_Registration kClasses[] = {
    {&g3d_ColorErrorException::InitializeMetadata, 2},
    {&g3d_Point::InitializeMetadata, 4},
    {&g3d_Vector::InitializeMetadata, 4},
};

constinit uti_Module theModule(36, kTypes, kClasses);

}  // namespace

void g3d_initialize(int& count) {
    if (theModule.Initialize(count)) {
        // It exists before anybody asks for it: nothing guards its making.
        static_cast<void>(omi_Singleton<g3d_ColorMap>::Instance());
    }
}

void g3d_finalize(int& count) {
    if (theModule.Finalize(count)) {
        omi_SingletonBase<g3d_ColorMap>::Finalize();
    }
}
