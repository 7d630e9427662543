#include "UTI_BasicUtils.h"
#include "cls_MetadataRegistrar.h"
#include "cow_COW.h"
#include "cow_String.h"
#include "nex_AssertException.h"
#include "nex_TextException.h"
#include "rgx_match.h"
#include "test_Raised.h"
#include "typ_ArchCompTable.h"
#include "utl_Catenator.h"
#include "utl_FilePath.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <stdexcept>
#include <thread>

namespace {

TEST(cow_String, ComparesAndSearchesBytes) {
    EXPECT_LT(cow_String("a").Compare("b"), 0);
    EXPECT_GT(cow_String("\xC3\xA9").Compare("z"), 0);  // bytes are unsigned
    EXPECT_LT(cow_String("ab").Compare("abc"), 0);
    EXPECT_EQ(cow_String(nullptr), "");
    EXPECT_EQ(cow_String("abcabc").Find("c", 3), 5);
    EXPECT_EQ(cow_String("abc").Find("x"), -1);
    EXPECT_EQ(cow_String("abc").Find("a", -7), 0);
    EXPECT_EQ(cow_String("hello").SubString(3, 99), "lo");
    EXPECT_EQ(cow_String("hello").SubString(-3, 2), "he");
    EXPECT_EQ(cow_String("aaa").ReplaceAll("a", "aa"), "aaaaaa");
    EXPECT_EQ(cow_String("aaa").ReplaceAll("", "x"), "aaa");
    EXPECT_EQ(cow_String("ab")[2], '\0');
    EXPECT_THROW(static_cast<void>(cow_String("ab")[3]), std::out_of_range);
    EXPECT_THROW(static_cast<void>(cow_String("ab")[-1]), std::out_of_range);
}

TEST(utl_Catenator, WritesNumbersAsTheCLocale) {
    utl_Catenator text;
    text << "n " << std::numeric_limits<int>::min() << ' ' << 4294967295U << ' ' << 0.1 << ' '
         << 1e20 << cow_String("!") << atr_String("?");
    EXPECT_EQ(text.View(), "n -2147483648 4294967295 0.1 1e+20!?");
    EXPECT_EQ(std::move(text).AsString().Length(), 36);
}

TEST(utl_FilePath, TakesPathsApart) {
    const utl_FilePath path("/a/b/model.v1.cae");
    EXPECT_EQ(path.FileName(), "model.v1.cae");
    EXPECT_EQ(path.Extension(), ".cae");
    EXPECT_EQ(path.Directory(), utl_FilePath("/a/b"));
    EXPECT_TRUE(path.IsAbsolute());
    EXPECT_EQ(utl_FilePath("a").Join(utl_FilePath("b")).AsString(), "a/b");
    EXPECT_EQ(utl_FilePath("a").Join(path), path);
    EXPECT_EQ(utl_FilePath("plain").Directory().AsString(), "");
}

TEST(rgx_match, FindsMatchesFromLeftToRight) {
    std::string found;
    for (rgx_match match("[0-9]+", "a12b3"); !match.AtEnd(); match.Next()) {
        found += std::to_string(match.Position()) + ":" + match.Text().Std() + " ";
    }
    EXPECT_EQ(found, "1:12 4:3 ");
    EXPECT_TRUE(rgx_match("^x", "yx").AtEnd());
    EXPECT_TRUE(test_Message<nex_TextException>([] {
                    rgx_match("(", "x");
                }).starts_with("invalid regular expression '(': "));
}

TEST(nex_Exception, KeepsItsClassThroughCopiesAndTellsWhere) {
    int count = 0;
    UTI_BasicUtils_initialize(count);
    const nex_TextException fault("50% of %s");
    const std::unique_ptr<nex_Exception> copy(fault.Copy());
    EXPECT_THROW(copy->Propagate(), nex_TextException);
    try {
        nex_AssertException("a != 0").Throw("generated/x", 12);
    } catch (const nex_Exception& error) {
        EXPECT_EQ(error.DeveloperReport().View(), "nex_AssertException: a != 0 (generated/x:12)");
        EXPECT_EQ(error.UserReport().View(), "a != 0");
    }
    EXPECT_EQ(copy->AsString().View(), "50% of %s");
    UTI_BasicUtils_finalize(count);
    EXPECT_EQ(count, 0);
}

int called = 0;

void Describe(cls_ClassRegistrar& registrar) {
    ++called;
    registrar.CreateClassMD("thing", 0x630001, 3, nullptr, 1)
        .AddAttribute(cls_FieldHandle(0, "a"), cls_AttributeType::Int, 1,
                      cls_CollectionType::Single)
        .AddAttribute(cls_FieldHandle(1, "b"), cls_AttributeType::Object, 0x630002,
                      cls_CollectionType::List);
}

TEST(cls_MetadataRegistrar, CallsFunctionsWhenAskedAndOnceOnly) {
    cls_MetadataRegistrar registrar;
    registrar.initClassMetadata(&Describe, 7);
    registrar.initClassMetadata(&Describe, 2);
    EXPECT_EQ(called, 0);
    ASSERT_EQ(registrar.Count(), 1);
    EXPECT_EQ(registrar.Entries().front().selector, 2U);
    const cls_ClassMetadata* thing = registrar.Classes().Find(0x630001);
    ASSERT_NE(thing, nullptr);
    EXPECT_EQ(registrar.Classes().Find("thing"), thing);
    EXPECT_EQ(registrar.Classes().Find("nothing"), nullptr);
    EXPECT_EQ(called, 1);
    ASSERT_EQ(thing->Attributes().size(), 2U);
    EXPECT_EQ(thing->Attributes()[1].classId, 0x630002U);

    // A description without an adapter can neither write nor destroy, and says so.
    const auto message = [](auto action) { return test_Message<nex_TextException>(action); };
    int object = 0;
    EXPECT_EQ(message([&] { thing->Destroy(&object); }),
              "objects of class thing cannot be destroyed without a type adapter");
    EXPECT_NO_THROW(thing->Destroy(nullptr));
    EXPECT_NO_THROW(thing->DeleteCow(nullptr));
    cow_COW<int, cow_Direct<int>> holder;
    EXPECT_EQ(message([&] { thing->DeleteCow(&holder); }), "class thing has no holder deleter");
}

TEST(cls_ClassRegistrar, FollowsTheBasesOfTheTypeTables) {
    constexpr typ_Entry table[] = {{0, 1, nullptr},
                                   {7, 1, "root of its own"},
                                   {7, 0x630001, "derived"},
                                   {7, 0x630004, "loop"},
                                   {7, 0x630003, "loop"}};
    typ_ArchCompTable::InsertEntry(99, {table, 5});
    EXPECT_TRUE(cls_ClassRegistrar::Inherits(0x630002, 0x630001));
    EXPECT_TRUE(cls_ClassRegistrar::Inherits(0x630002, 0x630002));
    EXPECT_FALSE(cls_ClassRegistrar::Inherits(0x630001, 0x630002));
    EXPECT_FALSE(cls_ClassRegistrar::Inherits(0x630003, 0x630001));
    EXPECT_FALSE(cls_ClassRegistrar::Inherits(0x639999, 0x630001));
    EXPECT_TRUE(cls_ClassRegistrar::Inherits(0x639999, 0x639999));
    EXPECT_EQ(typ_ArchCompTable::Find(0x630005), nullptr);
    EXPECT_STREQ(typ_ArchCompTable::Find(0x630002)->name, "derived");
    typ_ArchCompTable::Clear();
    EXPECT_EQ(typ_ArchCompTable::Find(0x630002), nullptr);
}

TEST(cls_Uid, IsNeverGivenTwice) {
    EXPECT_TRUE(cls_Uid().IsNone());
    EXPECT_NE(cls_Uid::AllocateUid(), cls_Uid::AllocateUid());
}

TEST(cls_UidScope, NumbersFromTheCallersCounterWhereItStands) {
    std::uint64_t model = 7;
    std::uint64_t draft = 0;
    const cls_Uid before = cls_Uid::AllocateUid();
    {
        const cls_UidScope outer(model);
        EXPECT_EQ(cls_Uid::AllocateUid(), cls_Uid(8));
        {
            const cls_UidScope inner(draft);
            EXPECT_EQ(cls_Uid::AllocateUid(), cls_Uid(1));
        }
        // Other threads go on with the process's.
        std::thread([&] { EXPECT_EQ(cls_Uid::AllocateUid().Value(), before.Value() + 1); }).join();
        EXPECT_EQ(cls_Uid::AllocateUid(), cls_Uid(9));
    }
    EXPECT_EQ(cls_Uid::AllocateUid().Value(), before.Value() + 2);
    EXPECT_EQ(model, 9);
    EXPECT_EQ(draft, 1);
}

}  // namespace
