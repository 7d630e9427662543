#include "omu_PrimDictionary.h"

#include "UTI_CaeUtils.h"
#include "cls_MemoryStore.h"
#include "omu_DictPyObjectWrapper.h"
#include "omu_PrimWrapper.h"
#include "omu_StandardTraits.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>

namespace {

using IntDict = omu_PrimDictionary<int>;
using StrDict = omu_PrimDictionary<cow_String>;

std::string Text(const omu_Primitive& value) { return value.AsString(0).Std(); }

TEST(omu_PrimDictionary, PrintsAsTheCommandLanguageWritesIt) {
    IntDict numbers;
    EXPECT_EQ(Text(numbers), "{}");
    numbers.Put(2, 2.0);
    numbers.Put(1, "a");
    numbers.Put(-3, true);
    EXPECT_EQ(Text(numbers), "{-3: True, 1: 'a', 2: 2.0}");

    StrDict outer;
    outer.Put("it's", numbers);
    outer.Put("b\\n\n", omu_PrimHolder(new omu_PrimNumber(4000000000U)));
    outer.Put("a", static_cast<omu_Primitive*>(nullptr));
    EXPECT_EQ(Text(outer),
              "{'a': None, 'b\\\\n\\n': 4000000000, \"it's\": {-3: True, 1: 'a', 2: 2.0}}");
    EXPECT_EQ(outer.AsRepr(), outer.AsString(0));
    EXPECT_EQ(numbers.TypeString(), "dictionary with integer keys");
    EXPECT_EQ(outer.TypeString(), "dictionary with string keys");
}

TEST(omu_PrimDictionary, UsesTheRepresentationsOfItsValues) {
    /// A value whose two texts differ.
    class Value : public omu_PrimNone {
    public:
        [[nodiscard]] cow_String AsString(int) const override { return "plain"; }
        [[nodiscard]] cow_String AsRepr() const override { return "typed"; }
    };
    IntDict dict;
    dict.Put(1, new Value);
    EXPECT_EQ(dict.AsString(0), "{1: plain}");
    EXPECT_EQ(dict.AsRepr(), "{1: typed}");
}

TEST(omu_PrimDictionary, AgreesWithAMapUnderRandomChanges) {
    std::mt19937 random(20240611);
    std::map<int, int> oracle;
    IntDict dict;
    IntDict old;
    std::map<int, int> oldOracle;
    for (int step = 0; step < 4000; ++step) {
        const int key = static_cast<int>(random() % 200) - 100;
        if (random() % 3 == 0) {
            ASSERT_EQ(dict.Remove(key), oracle.erase(key) == 1) << "step " << step;
        } else {
            dict.Put(key, step);
            oracle[key] = step;
        }
        ASSERT_EQ(dict.Length(), static_cast<int>(oracle.size())) << "step " << step;
        if (step == 2000) {
            old = dict;
            oldOracle = oracle;
        }
    }
    const auto agrees = [](const IntDict& mine, const std::map<int, int>& expected) {
        auto entry = expected.begin();
        for (const int key : mine.Keys()) {
            int value = -1;
            EXPECT_EQ(key, entry->first);
            EXPECT_TRUE(mine.Get(key, value));
            EXPECT_EQ(value, (entry++)->second);
        }
        EXPECT_EQ(entry, expected.end());
    };
    agrees(dict, oracle);
    agrees(old, oldOracle);  // the copy kept its entries
    dict.Clear();
    EXPECT_EQ(Text(dict), "{}");
    EXPECT_EQ(dict.Length(), 0);
    agrees(old, oldOracle);
}

TEST(omu_PrimDictionary, GetConvertsOrKeepsTheTarget) {
    StrDict dict;
    dict.Put("count", 3);
    dict.Put("name", "beam");
    double number = 1.5;
    EXPECT_TRUE(dict.Get("count", number));
    EXPECT_EQ(number, 3.0);
    int count = 7;
    EXPECT_FALSE(dict.Get("name", count));
    EXPECT_FALSE(dict.Get("missing", count));
    EXPECT_EQ(count, 7);
    cow_String name;
    EXPECT_TRUE(dict.Get("name", name));
    EXPECT_EQ(name, "beam");
    EXPECT_TRUE(dict.Has("name"));
    EXPECT_FALSE(dict.Has("Name"));
}

TEST(omu_PrimDictionary, ReadingNeverClones) {
    StrDict dict;
    for (const char* key : {"a", "b", "c", "d"}) {
        dict.Put(key, 1);
    }
    const StrDict copy(dict);
    const auto detaches = cow_detachCount;
    int value = 0;
    EXPECT_TRUE(dict.Get("d", value));
    EXPECT_EQ(dict.Find("missing"), nullptr);
    EXPECT_EQ(dict.Find("a"), copy.Find("a"));  // the very same value
    EXPECT_EQ(Text(dict), Text(copy));
    EXPECT_EQ(cow_detachCount, detaches);
}

TEST(omu_PrimDictionary, TakesItselfAsAValue) {
    IntDict dict;
    dict.Put(1, "one");
    dict.Put(2, dict);
    EXPECT_EQ(Text(dict), "{1: 'one', 2: {1: 'one'}}");
    dict.Put(1, dict.Find(2)->Copy());
    EXPECT_EQ(Text(dict), "{1: {1: 'one'}, 2: {1: 'one'}}");
}

TEST(omu_PrimDictionary, EqualsDictionariesOfEqualEntries) {
    IntDict a;
    IntDict b;
    a.Put(1, 1);
    a.Put(2, "x");
    b.Put(2, "x");
    b.Put(1, 1.0);
    EXPECT_TRUE(a == b);  // whatever the order of filling; 1 equals 1.0
    b.Put(3, true);
    EXPECT_FALSE(a == b);
    EXPECT_FALSE(IntDict() == StrDict());
    EXPECT_FALSE(a == omu_PrimNumber('{', 1.0, omu_PrimNumber::INT));  // only the kind code fits

    omu_DictPyObjectWrapper<int> objects;
    EXPECT_TRUE(objects == IntDict());
    IntDict wrapped;
    wrapped.Put(1, new omu_PrimWrapper);
    EXPECT_FALSE(wrapped == wrapped);  // a wrapper equals nothing
}

TEST(omu_PrimDictionary, SurvivesTheStore) {
    int count = 0;
    UTI_CaeUtils_initialize(count);
    {
        IntDict inner;
        inner.Put(-5, 0.1);
        StrDict dict;
        dict.Put("inner", inner);
        dict.Put("", static_cast<omu_Primitive*>(nullptr));
        dict.Put("text", "a\nb");

        cls_MemoryStore store;
        store.Write(dict);
        const std::unique_ptr<omu_Primitive> read(static_cast<omu_Primitive*>(store.Construct()));
        const auto* same = omu_PrimCast<StrDict>(*read);
        ASSERT_NE(same, nullptr);
        EXPECT_EQ(Text(*same), Text(dict));
        EXPECT_EQ(same->Length(), 3);
        EXPECT_TRUE(*same == dict);
        EXPECT_EQ(same->Represents(), '{');
    }
    UTI_CaeUtils_finalize(count);
}

}  // namespace
