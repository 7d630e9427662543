#include "strnatcmp.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

TEST(NaturalOrder, Table) {
    const struct {
        const char* a;
        const char* b;
        int order;
    } cases[] = {{"", "", 0},
                 {"", "a", -1},
                 {"Step-9", "Step-10", -1},
                 {"Step-10", "Step-10a", -1},
                 {"a1b10", "a1b9", 1},
                 {"7", "07", -1},
                 {"07", "8", -1},
                 {"a07b", "a7c", -1},  // zeros only break ties
                 {"0", "00", -1},
                 {"1", "a", -1},
                 {"1", "/", 1},
                 {"99999999999999999998", "99999999999999999999", -1},
                 {"100000000000000000000", "99999999999999999999", 1},
                 {"1.5", "1.10", -1},
                 {"a-1", "a1", -1},      // a hyphen is a byte, not a sign
                 {"z", "\xc3\xa9", -1},  // bytes are unsigned
                 {"B", "a", -1}};
    for (const auto& [a, b, order] : cases) {
        EXPECT_EQ(strnatcmp(a, b), order) << a << " and " << b;
        EXPECT_EQ(strnatcmp(b, a), -order) << b << " and " << a;
    }
    EXPECT_EQ(strnatcasecmp("B", "a"), 1);
    EXPECT_EQ(strnatcasecmp("PART-02", "part-02"), 0);
    EXPECT_EQ(strnatcasecmp("PART-2", "part-10"), -1);
    EXPECT_EQ(strnatcasecmp("\xc3\x89", "\xc3\xa9"), -1);  // only ASCII folds
}

TEST(NaturalOrder, IsTotal) {
    std::mt19937 random(5);
    std::vector<std::string> texts;
    for (int i = 0; i < 120; ++i) {
        std::string text;
        for (auto length = random() % 6; length > 0; --length) {
            text += "0019a/"[random() % 6];
        }
        texts.push_back(text);
    }
    for (const std::string& a : texts) {
        for (const std::string& b : texts) {
            const int ab = strnatcmp(a.c_str(), b.c_str());
            ASSERT_EQ(ab, -strnatcmp(b.c_str(), a.c_str())) << a << " and " << b;
            ASSERT_EQ(ab == 0, a == b) << a << " and " << b;
            for (const std::string& c : texts) {
                if (ab < 0 && strnatcmp(b.c_str(), c.c_str()) < 0) {
                    ASSERT_LT(strnatcmp(a.c_str(), c.c_str()), 0) << a << ", " << b << ", " << c;
                }
            }
        }
    }
}

}  // namespace
