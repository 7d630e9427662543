#include "omu_ErrorExceptions.h"

#include "UTI_CaeUtils.h"
#include "atr_translate.h"
#include "cls_MemoryStore.h"
#include "g3d_ColorErrorException.h"
#include "omu_QuotedText.h"
#include "omu_RangeChecker.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <typeinfo>

namespace {

using Any = omu_KeywordTypeEnm;
using Limit = omu_LimitQualifierEnm;

struct Case {
    std::shared_ptr<nex_CommandException> error;
    unsigned typeId;
    const char* pythonType;
    const char* message;
    const char* stored;
};

template <class Error, class... Arguments>
std::shared_ptr<nex_CommandException> New(const Arguments&... arguments) {
    return std::shared_ptr<nex_CommandException>(new Error(arguments...));
}

#define BASE "{31.3{}"
#define TYPE_BASE "{19.1{31.3{}}"

const std::vector<Case>& Cases() {
    static const std::vector<Case> cases = {
        {New<omu_ArgNumberErrorException>(2, 2, ""), 0x130004, "TypeError",
         "not all required arguments specified; expected 2, got 2",
         "19.4" TYPE_BASE " m_Expecting=2 m_Found=2 m_NestingStr=''}"},
        {New<omu_ArgNumberErrorException>(2, 3, "arg1[0]"), 0x130004, "TypeError",
         "arg1[0]; too many arguments; expected 2, got 3",
         "19.4" TYPE_BASE " m_Expecting=2 m_Found=3 m_NestingStr='arg1[0]'}"},
        {New<omu_ArgTypeErrorException>(1, "E", "F", ""), 0x130003, "TypeError",
         "arg1; found F, expecting E",
         "19.3" TYPE_BASE " m_ArgNum=1 m_Expecting='E' m_Found='F' m_NestingStr=''}"},
        {New<omu_ArgTypeErrorException>(4, "100%s", "%d%n", "arg1"), 0x130003, "TypeError",
         "arg1[3]; found %d%n, expecting 100%s",
         "19.3" TYPE_BASE " m_ArgNum=4 m_Expecting='100%s' m_Found='%d%n' m_NestingStr='arg1'}"},
        {New<omu_GenericTypeErrorException>(), 0x130024, "TypeError",
         "illegal argument type for built-in operation", "19.36" TYPE_BASE "}"},
        {New<omu_KeywordErrorException>("b", ""), 0x130005, "TypeError", "keyword error on b",
         "19.5" TYPE_BASE " m_Keyword='b' m_NestingStr=''}"},
        {New<omu_KeywordErrorException>("b", "arg1"), 0x130005, "TypeError",
         "arg1keyword error on b", "19.5" TYPE_BASE " m_Keyword='b' m_NestingStr='arg1'}"},
        {New<omu_KeywordTypeErrorException>("it's", "E", "F", ""), 0x130002, "TypeError",
         "it's; found F, expecting E",
         "19.2" TYPE_BASE " m_Keyword='it's' m_Expecting='E' m_Found='F' m_NestingStr=''}"},
        {New<omu_KeywordTypeErrorException>("it's", "E", "F", "arg1"), 0x130002, "TypeError",
         "arg1[\"it's\"]; found F, expecting E",
         "19.2" TYPE_BASE " m_Keyword='it's' m_Expecting='E' m_Found='F' m_NestingStr='arg1'}"},
        {New<omu_AttributeErrorException>(omu_AttributeErrorEnm::AllReadOnly, "a"), 0x130006,
         "AttributeError", "read-only attributes", "19.6" BASE " m_ErrorType=0 m_Attribute='a'}"},
        {New<omu_AttributeErrorException>(omu_AttributeErrorEnm::ReadOnly, "a"), 0x130006,
         "AttributeError", "a is read-only", "19.6" BASE " m_ErrorType=1 m_Attribute='a'}"},
        {New<omu_AttributeErrorException>(omu_AttributeErrorEnm::FreeText, "a"), 0x130006,
         "AttributeError", "a", "19.6" BASE " m_ErrorType=2 m_Attribute='a'}"},
        {New<omu_AttributeErrorException>(omu_AttributeErrorEnm(7), "a"), 0x130006,
         "AttributeError", "Error message not implemented yet",
         "19.6" BASE " m_ErrorType=7 m_Attribute='a'}"},
        {New<omu_IndexErrorException>(-7), 0x130008, "IndexError", "-7",
         "19.8" BASE " m_Value=-7}"},
        {New<omu_TvxNameErrorException>(omu_TvxNameErrorEnm::InvalidName), 0x130023,
         "TarvexNameError", "invalid name", "19.35" BASE " m_Error=0}"},
        {New<omu_TvxNameErrorException>(omu_TvxNameErrorEnm::EmptyName), 0x130023,
         "TarvexNameError", "name is empty", "19.35" BASE " m_Error=1}"},
        {New<omu_TvxNameErrorException>(omu_TvxNameErrorEnm::InvalidJobName), 0x130023,
         "TarvexNameError", "invalid job name", "19.35" BASE " m_Error=2}"},
        {New<omu_TvxNameErrorException>(omu_TvxNameErrorEnm::InvalidModelName), 0x130023,
         "TarvexNameError", "invalid model name", "19.35" BASE " m_Error=3}"},
        {New<omu_TvxNameErrorException>(omu_TvxNameErrorEnm(-1)), 0x130023, "TarvexNameError", "",
         "19.35" BASE " m_Error=-1}"},
        {New<omu_AccessErrorException>("a%s"), 0x130010, "AccessError", "a%s no longer exists",
         "19.16" BASE " m_Value='a%s'}"},
        {New<omu_FontErrorException>("a"), 0x13000F, "FontError", "a is not a valid font.",
         "19.15" BASE " m_Value='a'}"},
        {New<omu_GuiAccessErrorException>("a"), 0x130028, "GuiAccessError", "a",
         "19.40" BASE " m_Value='a'}"},
        {New<omu_KeyErrorException>("%d"), 0x130007, "KeyError", "%d",
         "19.7" BASE " m_Value='%d'}"},
        {New<omu_NameErrorException>("a"), 0x13000C, "NameError", "a",
         "19.12" BASE " m_Value='a'}"},
        {New<omu_OverflowErrorException>("a"), 0x13000B, "OverflowError", "a",
         "19.11" BASE " m_Value='a'}"},
        {New<omu_ValueErrorException>("%s"), 0x13000A, "ValueError", "%s",
         "19.10" BASE " m_Value='%s'}"},
        {New<omu_ZeroDivisionErrorException>("a"), 0x13000D, "ZeroDivisionError", "a",
         "19.13" BASE " m_Value='a'}"},
        {New<g3d_ColorErrorException>("a"), 0x240003, "ColorError", "a is not a valid color name.",
         "36.3" BASE " m_Value='a'}"},
        {New<omu_RangeErrorException>("k", Any::Any, "1", Limit(1), "9", Limit(2)), 0x130009,
         "RangeError", "k must be in the range: 1 <= k < 9",
         "19.9" BASE " m_Keyword='k' m_KeywordType=0 m_LowerLimitAsString='1'"
         " m_LowerLimitQualifier=1 m_HigherLimitAsString='9' m_HigherLimitQualifier=2}"},
    };
    return cases;
}

/// The library, up for one test.
class omu_ErrorExceptions : public testing::Test {
protected:
    void SetUp() override { UTI_CaeUtils_initialize(_count); }
    void TearDown() override { UTI_CaeUtils_finalize(_count); }

private:
    int _count = 0;
};

TEST_F(omu_ErrorExceptions, GiveTypeAndMessage) {
    for (const Case& expected : Cases()) {
        const nex_CommandException& error = *expected.error;
        EXPECT_EQ(error.JournalMessage(), expected.message);
        EXPECT_EQ(error.AsString(), expected.message);
        EXPECT_EQ(error.PythonType(), expected.pythonType);
        EXPECT_EQ(error.DynTypeId(), expected.typeId) << expected.message;
    }
}

TEST_F(omu_ErrorExceptions, AreCopiedAndRaisedAsTheirOwnClass) {
    for (const Case& expected : Cases()) {
        const nex_Exception& error = *expected.error;
        const std::unique_ptr<nex_Exception> copy(error.Copy());
        EXPECT_EQ(typeid(*copy), typeid(error));
        EXPECT_EQ(copy->AsString(), expected.message);
        try {
            copy->Throw("generated/omu/impl/omu_Arguments", 42);
        } catch (const nex_CommandException& caught) {
            EXPECT_EQ(typeid(caught), typeid(error));
            EXPECT_EQ(caught.JournalMessage(), expected.message);
            EXPECT_STREQ(caught.SourcePath(), "generated/omu/impl/omu_Arguments");
            EXPECT_EQ(caught.SourceLine(), 42);
        }
    }
    const omu_KeyErrorException missing("Part-1");
    const nex_Exception& kept = missing;
    EXPECT_THROW(kept.Propagate(), omu_KeyErrorException);
}

TEST_F(omu_ErrorExceptions, AreStoredWithTheirFieldsInOrderAndReadBack) {
    for (const Case& expected : Cases()) {
        cls_MemoryStore store;
        store.Write(*expected.error);
        EXPECT_EQ(store.Text(), expected.stored);

        store.Root().uid = cls_Uid(77);
        const std::unique_ptr<nex_CommandException> read(
            static_cast<nex_CommandException*>(store.Construct()));
        EXPECT_EQ(typeid(*read), typeid(*expected.error));
        EXPECT_EQ(read->JournalMessage(), expected.message);
        cls_MemoryStore again;
        again.Write(*read);
        EXPECT_EQ(again.Text(), expected.stored);
        EXPECT_EQ(again.Root().uid, cls_Uid(77));

        store.Write(*expected.error, true);
        EXPECT_TRUE(store.Root().fields.empty() && store.Root().base == nullptr);
    }
}

TEST_F(omu_ErrorExceptions, RangeMessagesFollowTheQualifiers) {
    struct Range {
        int type;
        int lower;
        int upper;
        const char* message;
    };
    constexpr Range ranges[] = {
        {2, 2, 0, "x must be a Float > 0"},
        {2, 1, 0, "x must be a Float >= 0"},
        {0, 0, 1, "x must be <= 5"},
        {1, 0, 2, "x must be an Integer < 5"},
        {1, 1, 1, "x must be an Integer in the range: 0 <= x <= 5"},
        {3, 2, 2, "x must be in the range: 0 < x < 5"},
        {1, 0, 0, "x must be an Integer "},
        {0, 3, 1, "x must be "},
        {2, 1, -1, "x must be a Float "},
        {-1, 0, 7, "x must be "},
    };
    for (const Range& range : ranges) {
        EXPECT_EQ(omu_RangeErrorException("x", Any(range.type), "0", Limit(range.lower), "5",
                                          Limit(range.upper))
                      .JournalMessage(),
                  range.message);
    }
}

TEST_F(omu_ErrorExceptions, RangeCheckerRaisesWithItsLimits) {
    const auto message = [](const omu_RangeChecker& checker, auto value) -> std::string {
        try {
            checker.Check("x", value);
        } catch (const omu_RangeErrorException& error) {
            return error.JournalMessage().AsCharPtr();
        }
        return "";
    };
    const auto count = omu_RangeChecker().AtLeast(1).AtMost(20);
    EXPECT_EQ(message(count, 1) + message(count, 20), "");
    EXPECT_EQ(message(count, 21), "x must be an Integer in the range: 1 <= x <= 20");
    EXPECT_EQ(message(omu_RangeChecker().Above(0), 0.0), "x must be a Float > 0");
    EXPECT_EQ(message(omu_RangeChecker().Below(0.5), 0.5), "x must be a Float < 0.5");
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(message(omu_RangeChecker().AtMost(1), nan), "x must be a Float <= 1");
    EXPECT_EQ(message(omu_RangeChecker(), nan), "");
}

TEST_F(omu_ErrorExceptions, MessagesAreTranslatedAndTheirFieldsAreNot) {
    const atr_TranslationHook before = atr_SetTranslationHook([](std::string_view text) {
        return std::string(text == "%s no longer exists" ? "%s gibt es nicht mehr" : text);
    });
    EXPECT_EQ(omu_AccessErrorException("%s no longer exists").JournalMessage(),
              "%s no longer exists gibt es nicht mehr");
    atr_SetTranslationHook(before);
}

TEST(omu_QuotedText, EscapesAndChoosesTheQuotes) {
    const std::pair<std::string_view, const char*> texts[] = {
        {"", "''"},
        {"abc", "'abc'"},
        {"it's", "\"it's\""},
        {"it's \"so\"", "'it\\'s \"so\"'"},
        {"a\"b", "'a\"b'"},
        {"a\\'", "\"a\\\\'\""},
        {"a\nb\\n\t\r", "'a\\nb\\\\n\t\r'"},
        {"\\\\", "'\\\\\\\\'"},
    };
    for (const auto& [text, quoted] : texts) {
        EXPECT_EQ(omu_QuotedText(text), quoted);
    }
    EXPECT_EQ(omu_QuotedText(std::string_view("a\0b", 3)).Length(), 5);
}

}  // namespace
