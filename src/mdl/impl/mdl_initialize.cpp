#include "mdl_initialize.h"

#include "uti_ClassRow.h"
#include "uti_Module.h"

#include <array>
#include <utility>

namespace {

constexpr unsigned kExtension = 0x000A000D;

// clang-format off
constexpr typ_Entry kTypes[] = {
    {typ_Entry::Unused, 1, nullptr},
    {typ_Entry::Persistent, kExtension, "mdl_Repository"},
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

using Type = cls_AttributeType;

/// The fields of a propagating attribute whose value is plain.
template <Type ValueType>
constexpr uti_FieldRow kPlain[] = {{0, "val", ValueType}, {1, "state", Type::Enum}};

/// The same, with a value that is a list of the class system.
template <unsigned ValueClass>
constexpr uti_FieldRow kList[] = {{0, "val", Type::Object, ValueClass, cls_CollectionType::List},
                                  {1, "state", Type::Enum}};

// The class system's lists.
constexpr unsigned kListInt = 0x00230001;
constexpr unsigned k1DArrayInt = 0x00230002;
constexpr unsigned kListString = 0x00230003;
constexpr unsigned k1DArrayListFloat = 0x00230004;

constexpr uti_FieldRow kPropertyTable[] = {
    {0, "allowEmptyFirstRow", Type::Bool},
    {1, "table", Type::Object, k1DArrayListFloat, cls_CollectionType::List},
};

// In registration order. The stored name of the list of float arrays differs from its name in the
// type table; both are fixed by saved data.
// clang-format off
constexpr uti_ClassRow kRows[] = {
    {"mdl_PropString", 0x000A000E, 203, 1, kPlain<Type::String>},
    {"mdl_PropInt", 0x000A0013, 203, 1, kPlain<Type::Int>},
    {"mdl_PropDouble", 0x000A000F, 203, 1, kPlain<Type::Double>},
    {"mdl_PropBool", 0x000A0010, 203, 1, kPlain<Type::Bool>},
    {"mdl_PropListInt", 0x000A0011, 203, 1, kList<kListInt>},
    {"mdl_Prop1DArrayInt", 0x000A0014, 203, 1, kList<k1DArrayInt>},
    {"mdl_PropListString", 0x000A0015, 203, 1, kList<kListString>},
    {"mdl_PropList1DArrayListFloat", 0x000A0016, 203, 1, kList<k1DArrayListFloat>},
    {"mdl_Extension", kExtension, 401, 1, {}},
    {"mdl_Repository", 0x000A0001, 507, kExtension, {}},
    {"mdl_PropertyTable", 0x000A0012, 453, 1, kPropertyTable},
};
// clang-format on

constexpr unsigned kSelector = 7;

template <std::size_t... Index>
constexpr std::array<uti_Registration, sizeof...(Index)> Registrations(
    std::index_sequence<Index...> /*rows*/) {
    return {{{&uti_DescribeRow<kRows, Index>, kSelector}...}};
}
constexpr auto kClasses = Registrations(std::make_index_sequence<std::size(kRows)>());

constinit uti_Module theModule(10, kTypes, kClasses);

}  // namespace

void mdl_initialize(int& count) { theModule.Initialize(count); }

void mdl_finalize(int& count) { theModule.Finalize(count); }
