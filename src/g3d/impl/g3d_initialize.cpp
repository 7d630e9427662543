#include "g3d_initialize.h"

#include "g3d_ColorErrorException.h"
#include "g3d_ColorMap.h"
#include "uti_ClassRow.h"
#include "uti_Module.h"

namespace {

constexpr unsigned kVector = 0x00240001;
constexpr unsigned kPoint = 0x00240002;

constexpr typ_Entry kTypes[] = {
    {typ_Entry::Unused, 1, nullptr},
    {typ_Entry::Persistent, 1, "g3d_Vector"},
    {typ_Entry::Persistent, 1, "g3d_Point"},
    {typ_Entry::Exception, nex_CommandException::TypeId(), "g3d_ColorErrorException"},
};
static_assert(g3d_ColorErrorException::TypeId() == 0x00240003);

using Type = cls_AttributeType;

constexpr uti_FieldRow kCoordinates[] = {
    {0, "x", Type::Float}, {1, "y", Type::Float}, {2, "z", Type::Float}, {3, "w", Type::Float}};

constexpr uti_ClassRow kRows[] = {
    {"g3d_Point", kPoint, 203, 1, kCoordinates},
    {"g3d_Vector", kVector, 203, 1, std::span(kCoordinates).first<3>()},
};

constexpr uti_Registration kClasses[] = {
    {&g3d_ColorErrorException::InitializeMetadata, 2},
    {&uti_DescribeRow<kRows, 0>, 4},
    {&uti_DescribeRow<kRows, 1>, 4},
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
