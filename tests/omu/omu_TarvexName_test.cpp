#include "omu_TarvexName.h"

#include "omu_ErrorExceptions.h"
#include "rgx_match.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// The message of the error that building the name raises; empty for a legal name.
template <class Text>
std::string Refusal(const Text& text, int kind) {
    try {
        static_cast<void>(omu_TarvexName(text, omu_TarvexNameEnum(kind)));
    } catch (const omu_TvxNameErrorException& error) {
        EXPECT_STREQ(error.SourcePath(), "generated/omu/impl/omu_TarvexName");
        return error.JournalMessage().AsCharPtr();
    }
    return "";
}

constexpr const char* kRefusals[] = {"invalid name", "invalid job name", "invalid model name"};

const char* RefusalOf(int kind) { return kRefusals[kind % 3]; }

/// The kinds that refuse \p text, of 0 to 6.
std::string RefusingKinds(const cow_String& text) {
    std::string kinds;
    for (int kind = 0; kind <= 6; ++kind) {
        const std::string refusal = Refusal(text, kind);
        if (!refusal.empty()) {
            EXPECT_EQ(refusal, RefusalOf(kind));
            kinds += static_cast<char>('0' + kind);
        }
    }
    return kinds;
}

TEST(omu_TarvexName, EachKindRefusesWhatBreaksItsRules) {
    const std::pair<cow_String, const char*> names[] = {
        {"Part-1", ""},
        {"2abc", "036"},
        {"-abc", "14"},
        {"a-b", ""},
        {"a b", "14"},
        {"a:b", "14"},
        {"a\"b", "0123456"},
        {"a.b", "0123456"},
        {"a\\b", "0123456"},
        {"a$b", "1245"},
        {"_a", "3456"},
        {"a_", "3456"},
        {" a", "13456"},
        {"a ", "13456"},
        {"_", "3456"},
        {"a\tb", "346"},
        {cow_String(std::string("a\0b", 3)), "346"},
        {"a\x1F", "346"},
        {"a\x7F", ""},
        {"T\xC3\xA4st\xC3\xA9", ""},
        {std::string(38, 'a'), ""},
        {std::string(39, 'a'), "3456"},
        {std::string(80, 'a'), "3456"},
        {std::string(81, 'a'), "0123456"},
        {std::string(37, 'a') + "\xC3\xA4", "3456"},
    };
    for (const auto& [name, kinds] : names) {
        EXPECT_EQ(RefusingKinds(name), kinds) << '"' << name.AsCharPtr() << '"';
    }
}

TEST(omu_TarvexName, EmptyNameIsRefusedByEveryKindAndOtherKindsCheckNothing) {
    for (int kind = 0; kind <= 6; ++kind) {
        EXPECT_EQ(Refusal(cow_String(), kind), "name is empty");
        EXPECT_EQ(Refusal("", kind), "name is empty");
    }
    for (const int kind : {-1, 7, 1000}) {
        EXPECT_EQ(Refusal(cow_String(), kind), "");
        EXPECT_EQ(omu_TarvexName(cow_String("1.\""), omu_TarvexNameEnum(kind)).AsString(), "1.\"");
    }
}

TEST(omu_TarvexName, RefusesTheBytesThatItsPatternsName) {
    const omu_TarvexName name(cow_String("a"), GENERAL_NAME);
    const auto matches = [](const atr_String& pattern, const cow_String& text) {
        return !rgx_match(cow_String(pattern), text).AtEnd();
    };
    for (int byte = 0; byte < 256; ++byte) {
        const char character = static_cast<char>(byte);
        const cow_String inside = std::string{'a', character, 'b'};
        const bool isQuote = character == '"';
        EXPECT_EQ(Refusal(inside, JOB_NAME) != "", isQuote || matches(name.JobPattern(), inside))
            << byte;
        EXPECT_EQ(Refusal(inside, MODEL_NAME) != "",
                  isQuote || matches(name.ModelPattern(), inside))
            << byte;
        const cow_String leading = std::string{character, 'b'};
        const bool isForbidden = isQuote || character == '.' || character == '\\';
        EXPECT_EQ(Refusal(leading, GENERAL_NAME) != "",
                  isForbidden || !matches(name.LeadingPattern(), leading))
            << byte;
    }
}

TEST(omu_TarvexName, HoldsItsTextUnlessBuiltFromACharacterPointer) {
    EXPECT_EQ(omu_TarvexName(cow_String("Part-1"), GENERAL_NAME).AsString(), "Part-1");
    const omu_TarvexName checked("Part-1", GENERAL_NAME);
    EXPECT_EQ(checked.AsString(), "");
    EXPECT_TRUE(checked.LeadingPattern().IsEmpty() && checked.JobPattern().IsEmpty());
    EXPECT_EQ(Refusal("2abc", GENERAL_NAME), "invalid name");
    EXPECT_TRUE(omu_TarvexName().ModelPattern().IsEmpty());
}

TEST(omu_TarvexName, IsQuotedForDisplayWhereNeeded) {
    const std::pair<const char*, const char*> texts[] = {
        {"", ""},
        {"Part-1", "Part-1"},
        {"Part 1", "\"Part 1\""},
        {"\"Part 1\"", "\"Part 1\""},
        {"a=b", "\"a=b\""},
        {"a,b", "\"a,b\""},
        {"it's", "\"it's\""},
        {"say \"so\"", "\"say \"so\"\""},
        {"\"\"", "\"\""},
        {"\"=", "\"\"=\""},
    };
    for (const auto& [text, quoted] : texts) {
        EXPECT_EQ(omu_TarvexName::QuoteIfNeeded(text), quoted);
    }
}

TEST(omu_TarvexName, IsRepairedFaultByFault) {
    const std::string a40(40, 'a');
    struct Repair {
        std::string name;
        const char* replacements;
        bool isLegal;
        std::string repaired;
    };
    const Repair repairs[] = {
        {"Part-1", "N'-/xy", true, "Part-1"},
        {"1a\"b.c\\d", "N'-/xy", true, "N1a'b-c/d"},
        {"1a\"b.c\\d", "......", true, "abcd"},
        {"12a", ".'-/xy", true, "a"},
        {"_a ", "N'-/xy", true, "xay"},
        {"__a__", "N'-/..", true, "a"},
        {"_1", "N'-/.y", true, "N1"},  // the deletion uncovers a digit
        {"a", "_'-/xy", true, "a"},
        {"1", "_'-/x.", true, "x1"},  // the prefix is itself mended
        {"", "N'-/xy", false, ""},
        {"___", "N'-/..", false, "___"},
        {std::string(50, '_'), "N'-/..", false, std::string(50, '_')},
        {a40, "N'-/xy", true, std::string(38, 'a')},
        {"1" + a40, "N'-/xy", true, "N1" + std::string(37, 'a')},
        {std::string(37, 'a') + "_b", "N'-/x.", true, std::string(37, 'a')},  // cut, then mended
    };
    for (const Repair& repair : repairs) {
        cow_String name(repair.name);
        EXPECT_EQ(omu_TarvexName::MakeLegalGuiName(name, repair.replacements), repair.isLegal);
        EXPECT_EQ(name.Std(), repair.repaired);
    }
}

}  // namespace
