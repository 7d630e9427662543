#include "cow_1DArray.h"
#include "cow_1DArrayList.h"
#include "cow_List.h"
#include "test_Faults.h"
#include "test_Tracked.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

/// \file
/// Behaviour that the block array, the list and the growable array have in common, over several
/// element types: random operations beside std::vector, with and without injected faults.

namespace {

template <class T>
T Make(int n) {
    if constexpr (std::is_same_v<T, std::string>) {
        return n == 0 ? std::string()
                      : "a text too long for the string itself " + std::to_string(n);
    } else if constexpr (std::is_same_v<T, bool>) {
        return n % 2 != 0;
    } else {
        return T(n);
    }
}

template <class Container>
class CowSequence : public testing::Test {
protected:
    using T = typename Container::value_type;

    // A container and what it should hold; elements are numbered, 0 is the zero element.
    struct Pair {
        Container actual;
        std::vector<int> expected;
    };

    static constexpr bool kMovesRaise = std::is_same_v<T, test_CopyOnly>;

    static bool Holds(const Container& actual, const std::vector<int>& expected) {
        int at = 0;
        for (const T& element : actual) {
            if (at == actual.Length() || !(element == actual.ConstGet(at))) return false;
            ++at;
        }
        return at == actual.Length() &&
               std::equal(actual.begin(), actual.end(), expected.begin(), expected.end(),
                          [](const T& element, int n) { return element == Make<T>(n); });
    }

    int Random(int below) { return std::uniform_int_distribution<>(0, below - 1)(_random); }

    // One random change of a pair, described by what it does to the expected elements.
    void Change(Pair& pair, const Pair& other) {
        Container& actual = pair.actual;
        std::vector<int> expected = pair.expected;
        const int n = actual.Length();
        const int i = n == 0 ? 0 : Random(n);
        const int x = Random(1000);
        const T value = Make<T>(x);
        const auto apply = [&](auto&& change, bool mayChangeOnFault = false) {
            const bool raised = [&] {
                const int copy = _faulty && Random(3) == 0 ? 1 + Random(20) : 0;
                const int allocation = _faulty && copy == 0 ? Random(4) : 0;
                const test_Faults faults(copy, allocation);
                return test_Faults::Raises(change);
            }();
            if (!raised) {
                pair.expected = expected;
            } else if (mayChangeOnFault) {
                // Any state will do, but it must stay as it is.
                const Container kept = actual;
                pair = {kept, Numbers(kept)};
            }
        };
        switch (Random(14)) {
            case 0:
            case 1:
            case 2:
                expected.push_back(x);
                return apply([&] { actual.Append(value); });
            case 3:
                if (n == 0) return;
                expected[static_cast<std::size_t>(i)] = x;
                return apply([&] { actual.Get(i) = value; });
            case 4:
                if (n == 0) return;
                expected.push_back(expected[static_cast<std::size_t>(i)]);
                return apply([&] { actual.Append(actual.ConstGet(i)); });
            case 5:
                expected = other.expected;
                return apply([&] { actual = other.actual; });
            case 6: {
                pair.actual = std::move(actual);  // onto itself
                Container moved(std::move(actual));
                EXPECT_TRUE(actual.IsEmpty());
                actual = std::move(moved);
                return;
            }
            case 7:
                return apply([&] { actual = actual.DeepCopy(); });
            case 8:
                if (Random(10) != 0) return;
                expected.clear();
                return apply([&] { actual.Clear(); });
            case 9:
                if constexpr (requires { actual.RemoveFirst(); }) {
                    if (n == 0) return;
                    expected.erase(expected.begin());
                    return apply([&] { actual.RemoveFirst(); });
                }
                [[fallthrough]];
            case 10:
                if constexpr (requires { actual.Grow(1); }) {
                    const int length = Random(80);
                    expected.resize(static_cast<std::size_t>(length));
                    return apply([&] { actual.Grow(length); });
                }
                [[fallthrough]];
            case 11:
                if constexpr (requires { actual.RemoveIndex(0); }) {
                    if (n == 0) return;
                    expected.erase(expected.begin() + i);
                    return apply([&] { actual.RemoveIndex(i); }, kMovesRaise);
                }
                [[fallthrough]];
            case 12:
                if constexpr (requires { actual.InsertAfter(0, value); }) {
                    if (n == 0) return;
                    expected.insert(expected.begin() + i + 1, expected[0]);
                    return apply([&] { actual.InsertAfter(i, actual.ConstGet(0)); }, kMovesRaise);
                }
                [[fallthrough]];
            default:
                if constexpr (requires { actual.Append(actual); }) {
                    if (n > 40) return;
                    expected.insert(expected.end(), pair.expected.begin(), pair.expected.end());
                    return apply([&] { actual.Append(actual); }, kMovesRaise);
                }
        }
    }

    void Run(unsigned seed, bool faulty) {
        _random.seed(seed);
        _faulty = faulty;
        std::array<Pair, 4> pairs;
        for (int step = 0; step < 3000; ++step) {
            Change(pairs[static_cast<std::size_t>(Random(4))],
                   pairs[static_cast<std::size_t>(Random(4))]);
            for (const Pair& pair : pairs) {
                ASSERT_TRUE(Holds(pair.actual, pair.expected))
                    << "seed " << seed << " step " << step;
            }
        }
    }

private:
    static std::vector<int> Numbers(const Container& container) {
        std::vector<int> numbers;
        for (const T& element : container) {
            int n = 0;
            while (!(element == Make<T>(n)))
                ++n;
            numbers.push_back(n);
        }
        return numbers;
    }

    std::mt19937 _random;
    bool _faulty = false;
};

using Containers =
    testing::Types<cow_1DArray<int>, cow_1DArray<bool>, cow_1DArray<std::string>,
                   cow_1DArray<test_Movable>, cow_1DArray<test_CopyOnly>, cow_List<double>,
                   cow_List<test_Movable>, cow_List<test_CopyOnly>, cow_1DArrayList<bool>,
                   cow_1DArrayList<std::string>, cow_1DArrayList<test_Movable>>;
TYPED_TEST_SUITE(CowSequence, Containers);

TYPED_TEST(CowSequence, DoesWhatAVectorDoes) {
    for (unsigned seed = 1; seed <= 3; ++seed)
        this->Run(seed, false);
    EXPECT_EQ(test_Movable::live, 0);
    EXPECT_EQ(test_CopyOnly::live, 0);
}

TYPED_TEST(CowSequence, SurvivesFailingCopiesAndAllocations) {
    for (unsigned seed = 1; seed <= 3; ++seed)
        this->Run(seed, true);
    EXPECT_EQ(test_Movable::live, 0);
    EXPECT_EQ(test_CopyOnly::live, 0);
}

TYPED_TEST(CowSequence, RaisesOutOfRangeOutside) {
    TypeParam container;
    const auto text = [](auto&& action) -> std::string {
        try {
            action();
            return "nothing raised";
        } catch (const std::out_of_range& error) {
            return error.what();
        }
    };
    EXPECT_EQ(text([&] { (void)container.ConstGet(0); }), "index 0 is outside [0, 0)");
    container.Append(typename TypeParam::value_type());
    EXPECT_EQ(text([&] { (void)container.ConstGet(1); }), "index 1 is outside [0, 1)");
    EXPECT_EQ(text([&] { (void)container[-1]; }), "index -1 is outside [0, 1)");
    EXPECT_EQ(text([&] { container.Get(-1); }), "index -1 is outside [0, 1)");
    EXPECT_EQ(container.Length(), 1);
    if constexpr (requires { container.Grow(1); }) {
        EXPECT_EQ(text([&] { container.Grow(-1); }), "length -1 is outside [0, 2147483647]");
    }
    if constexpr (requires { container.RemoveFirst(); }) {
        container.RemoveFirst();
        EXPECT_EQ(text([&] { container.RemoveFirst(); }), "index 0 is outside [0, 0)");
    }
}

TYPED_TEST(CowSequence, MovesNeitherCopyNorAllocate) {
    static_assert(std::is_nothrow_move_constructible_v<TypeParam>);
    static_assert(std::is_nothrow_move_assignable_v<TypeParam>);
    using Element = typename TypeParam::value_type;
    TypeParam source{Make<Element>(1), Make<Element>(2)};
    const test_Faults faults(1, 1);
    TypeParam target(std::move(source));
    source = std::move(target);
    swap(source, target);
    TypeParam empty;
    EXPECT_TRUE(source.IsEmpty());
    EXPECT_EQ(target.Length(), 2);
}

}  // namespace
