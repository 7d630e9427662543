#include "UTI_CaeUtils.h"
#include "cls_MemoryStore.h"
#include "mdl_PropAttributeGet.h"
#include "mdl_PropagationStatusEnm.h"
#include "nex_TextException.h"
#include "omu_ErrorExceptions.h"
#include "test_Raised.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <map>

namespace {

using State = omu_PrimEnum<mdl_PropAttributeStateEnm, 1>;
using Status = omu_PrimEnum<mdl_PropagationStatusEnm, 1>;

/// Two values other than zero, and how an attribute that is SET to the first is stored.
template <class T>
struct Sample;
// clang-format off
template <> struct Sample<cow_String> { static inline const cow_String a = "steel", b = "brass"; static constexpr auto stored = "10.14{val='steel' state=1}"; };
template <> struct Sample<int> { static constexpr int a = 7, b = -2; static constexpr auto stored = "10.19{val=7 state=1}"; };
template <> struct Sample<double> { static constexpr double a = 0.25, b = 1e300; static constexpr auto stored = "10.15{val=0.25 state=1}"; };
template <> struct Sample<bool> { static constexpr bool a = true, b = true; static constexpr auto stored = "10.16{val=true state=1}"; };
template <> struct Sample<cls_xpListInt> { static inline const cls_xpListInt a{1, -2}, b{3}; static constexpr auto stored = "10.17{val=35.1{values=<1,-2>} state=1}"; };
template <> struct Sample<cls_xp1DArrayInt> { static inline const cls_xp1DArrayInt a{4, 5}, b{6}; static constexpr auto stored = "10.20{val=35.2{values=<4,5>} state=1}"; };
template <> struct Sample<cls_xpListString> { static inline const cls_xpListString a{"x", ""}, b{"y"}; static constexpr auto stored = "10.21{val=35.3{values=['x' '']} state=1}"; };
template <> struct Sample<cls_xp1DArrayListFloat> { static inline const cls_xp1DArrayListFloat a{0.5F, 2.0F}, b{8.0F}; static constexpr auto stored = "10.22{val=35.4{values=<0.5,2>} state=1}"; };
// clang-format on

template <class T>
class mdl_PropAttrOf : public testing::Test {
protected:
    void SetUp() override { UTI_CaeUtils_initialize(_count); }
    void TearDown() override { UTI_CaeUtils_finalize(_count); }

    const T a = Sample<T>::a;
    const T b = Sample<T>::b;
    int _count = 0;
};
using Types = testing::Types<cow_String, int, double, bool, cls_xpListInt, cls_xp1DArrayInt,
                             cls_xpListString, cls_xp1DArrayListFloat>;
TYPED_TEST_SUITE(mdl_PropAttrOf, Types);

// In the order of the enumeration: unset, set, unchanged (=), freed, and the four that are stored.
constexpr std::string_view kStates = "us=fniac";

TYPED_TEST(mdl_PropAttrOf, OperationsMoveStateAndValueAsTheTableSays) {
    using Attr = mdl_PropAttr<TypeParam>;
    Attr other(this->b);
    const auto step = [&](Attr& attr, const char* name, bool first) {
        attr.SetStatus("a", State(name), first);
    };
    enum Value { Kept, Zero, Other };
    const struct {
        const char* what;
        std::function<void(Attr&)> apply;
        std::string_view states;  // afterwards, for each state before
        Value value;
    } rows[] = {
        {"= value", [&](Attr& x) { x = this->b; }, "ssssssss", Other},
        {"= own value", [](Attr& x) { x = x.ConstGet(); }, "ssssssss", Kept},
        {"= UNSET", [](Attr& x) { x = UNSET; }, "uuuuuuuu", Zero},
        {"= SET", [](Attr& x) { x = SET; }, "ssssssss", Kept},
        {"= UNCHANGED", [](Attr& x) { x = UNCHANGED; }, "========", Kept},
        {"= FREED", [](Attr& x) { x = FREED; }, "ffffffff", Zero},
        {"= INVALID", [](Attr& x) { x = INVALID; }, "iiiiiiii", Kept},
        {"ForceState(UNSET)", [](Attr& x) { x.ForceState(UNSET); }, "uuuuuuuu", Kept},
        {"ForceState(FREED)", [](Attr& x) { x.ForceState(FREED); }, "ffffffff", Kept},
        {"Get", [](Attr& x) { static_cast<void>(x.Get()); }, "ssssssss", Kept},
        {"ConstGet", [](Attr& x) { static_cast<void>(x.ConstGet()); }, kStates, Kept},
        {"Zero", [](Attr& x) { x.Zero(); }, kStates, Zero},
        {"Propagate", [](Attr& x) { x.Propagate(); }, "u==uniac", Kept},
        {"SET, first", [&](Attr& x) { step(x, "SET", true); }, "ssssssss", Zero},
        {"SET, later", [&](Attr& x) { step(x, "SET", false); }, "ssssssss", Zero},
        {"UNSET, first", [&](Attr& x) { step(x, "UNSET", true); }, "uuuuuuuu", Zero},
        {"FREED, later", [&](Attr& x) { step(x, "FREED", false); }, "ffffffff", Zero},
        {"UNCHANGED, first", [&](Attr& x) { step(x, "UNCHANGED", true); }, kStates, Kept},
        {"UNCHANGED, later", [&](Attr& x) { step(x, "UNCHANGED", false); }, kStates, Kept},
        {"Modify by unset", [&](Attr& x) { x.Modify(other); }, kStates, Kept},
        {"Modify by set", [&](Attr& x) { other.ForceState(SET), x.Modify(other); }, "ssssssss",
         Other},
        {"Modify by freed", [&](Attr& x) { other.ForceState(FREED), x.Modify(other); }, "ffffffff",
         Other},
    };
    const TypeParam values[] = {this->a, TypeParam(), this->b};
    for (const auto& row : rows) {
        for (int state = UNSET; state <= COMP_DEFAULT; ++state) {
            SCOPED_TRACE(std::string(row.what) + " from " + std::to_string(state));
            other.ForceState(UNSET);
            Attr attr(this->a);
            const cls_Uid uid = attr.GetUid();
            attr.ForceState(static_cast<mdl_PropAttributeStateEnm>(state));
            row.apply(attr);
            EXPECT_EQ(kStates[static_cast<std::size_t>(attr.State())],
                      row.states[static_cast<std::size_t>(state)]);
            EXPECT_TRUE(attr == values[row.value]);
            EXPECT_EQ(attr.GetUid(), uid);
        }
    }
}

TYPED_TEST(mdl_PropAttrOf, ComparesValueOrStateOrBoth) {
    mdl_PropAttr<TypeParam> attr(this->a);
    EXPECT_TRUE(attr == UNSET && attr.IsFree() && attr == this->a);  // given, but not set
    mdl_PropAttr<TypeParam> copy(attr);
    EXPECT_TRUE(copy == attr && copy.GetUid() == attr.GetUid());
    copy.NewUid();
    EXPECT_TRUE(copy == attr && copy.GetUid() != attr.GetUid());
    static_cast<void>(copy.Get());
    EXPECT_TRUE(copy != attr && copy == attr.ConstGet() && copy != UNSET);

    const mdl_PropAttr<TypeParam> zero;
    EXPECT_TRUE(zero == TypeParam() && zero == UNSET && !zero.GetUid().IsNone());
    copy = zero;
    EXPECT_TRUE(copy == zero && copy.GetUid() == zero.GetUid());
    EXPECT_TRUE(attr.DeepCopy() == attr);
}

TYPED_TEST(mdl_PropAttrOf, IsStoredAndBuiltByItsMetadata) {
    using Attr = mdl_PropAttr<TypeParam>;
    Attr attr;
    attr = this->a;
    cls_MemoryStore store;
    store.Write(attr);
    const std::unique_ptr<Attr> read(static_cast<Attr*>(store.Construct()));
    EXPECT_TRUE(*read == attr && read->GetUid() == attr.GetUid());
    EXPECT_EQ(store.Text(), Sample<TypeParam>::stored);
    store.Root().fields[1].second = 8;
    EXPECT_EQ(
        test_Message<nex_TextException>([&] { Attr wrong(store.Reader()); }),
        Attr::kClass.storedName + std::string(": 8 is not the number of an attribute's state"));
}

TYPED_TEST(mdl_PropAttrOf, GettersSetOnlyWhatIsGiven) {
    const cow_String key("key");
    omu_Arguments call;
    call.Put(this->a);
    call.Put(this->a, key);
    call.Put(omu_PrimNone(), "wrong");
    call.Put(this->a, cow_String("late"));
    std::map<std::string, mdl_PropAttr<TypeParam>> got;
    call.Begin();
    for (const char* name : {"positional", "key", "absent", "wrong", "late"}) {
        mdl_PropAttributeGet<TypeParam>::Get(call, got[name], name);
        if (name == key) {
            call.Optional();
        }
    }
    EXPECT_THROW(call.End(), omu_KeywordTypeErrorException);

    omu_PrimTuple tuple(2, '(');
    tuple.Put(this->a);
    tuple.Put(omu_PrimNone());
    tuple.Begin();
    tuple.Optional();
    for (const char* name : {"first", "second", "third"}) {
        mdl_PropAttributeGetFromTuple<TypeParam>::Get(tuple, got[name]);
    }
    EXPECT_THROW(tuple.End(), omu_ArgTypeErrorException);

    for (const auto& [name, attr] : got) {
        const bool isGiven = name == "positional" || name == "key" || name == "first";
        EXPECT_TRUE(attr == (isGiven ? SET : UNSET)) << name;
        EXPECT_TRUE(attr == (isGiven ? this->a : TypeParam())) << name;
    }
}

TEST(mdl_PropAttr, AnswersAndRefusesByState) {
    mdl_PropAttr<int> attr(3);
    for (int state = UNSET; state <= COMP_DEFAULT; ++state) {
        for (const bool first : {true, false}) {
            if (state == SET || state == UNCHANGED || state == (first ? UNSET : FREED)) {
                continue;
            }
            attr.ForceState(ABS_DEFAULT);
            const State given(static_cast<mdl_PropAttributeStateEnm>(state));
            EXPECT_EQ(
                test_Raised<nex_TextException>([&] { attr.SetStatus("u%s", given, first); }),
                "generated/include/mdl_PropagatingAttribute:" + std::string(first ? "158" : "170") +
                    ": Invalid propagation status for 'u%s' attribute.");
            EXPECT_TRUE(attr == 3 && attr == ABS_DEFAULT);
        }
        attr.ForceState(static_cast<mdl_PropAttributeStateEnm>(state));
        EXPECT_EQ(attr.IsModified(), state == 1 || state == 3);
        EXPECT_EQ(attr.IsConditionModified(), state == 3);
        EXPECT_EQ(attr.IsActive(), state == 1 || state == 2);
        EXPECT_EQ(attr.IsFree(), state == 0 || state == 3);
    }
    const mdl_PropAttr<double> none(std::numeric_limits<double>::quiet_NaN());
    EXPECT_FALSE(none == none.ConstGet() || none == mdl_PropAttr<double>(none));
}

TEST(mdl_PropAttr, WritesDetachListsFromTheirCopies) {
    mdl_PropAttr<cls_xpListInt> attr(cls_xpListInt{1, 2});
    const mdl_PropAttr<cls_xpListInt> copy(attr);
    attr.Get().Append(3);
    EXPECT_EQ(copy.ConstGet(), (cls_xpListInt{1, 2}));
    EXPECT_EQ(copy.DeepCopy().ConstGet().Storage().TableCount(), 1);
}

TEST(mdl_PropagationStatusEnm, AnswersAsTheTableSays) {
    // One letter a status: active, deactivated, neither; capital in general analysis.
    const std::string_view groups = "NAAADDnnaaadannn";
    for (int value = -1; value <= 16; ++value) {
        const auto status = static_cast<mdl_PropagationStatusEnm>(value);
        const char group = value < 0 || value > 15 ? 'n' : groups[static_cast<std::size_t>(value)];
        EXPECT_EQ(mdl_activePropagationStatus(status), group == 'a' || group == 'A') << value;
        EXPECT_EQ(mdl_deactivatedPropagationStatus(status), group == 'd' || group == 'D') << value;
        EXPECT_EQ(mdl_generalAnalysisStatus(status), group < 'a') << value;
    }
    EXPECT_EQ(Status(DEACTIVATED_FROM_BASE_STATE).AsString(0), "DEACTIVATED_FROM_BASE_STATE");
    EXPECT_EQ(Status("RESET_TO_INITIAL"), RESET_TO_INITIAL);
    EXPECT_THROW(Status("COMPUTE"), omu_ValueErrorException);
    // Listed in the order of keys, not of the table.
    EXPECT_EQ(State(SET).TypeString(),
              "ABS_DEFAULT, COMP_DEFAULT, FREED, INVALID, NOT_APPLICABLE, SET, UNCHANGED or UNSET");
}

}  // namespace
