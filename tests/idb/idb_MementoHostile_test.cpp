#include "UTI_CaeUtils.h"
#include "idb_MementoErrorException.h"
#include "idb_ReadListObj.h"
#include "idb_Samples.h"
#include "idb_Sealed.h"
#include "mem_Allocation.h"
#include "test_Raised.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

// Memory is watched at both ways to it: the global operators by what is live, the library's
// allocator, which does not tell of blocks given back, by all that was asked for for objects.
std::size_t theLive = 0;
std::size_t thePeak = 0;
std::size_t theAsked = 0;

void* Watched(std::size_t size) {
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    theLive += malloc_usable_size(block);
    thePeak = std::max(thePeak, theLive);
    return block;
}

void Unwatched(void* block) noexcept {
    if (block != nullptr) {
        theLive -= malloc_usable_size(block);
        std::free(block);
    }
}

}  // namespace

void* operator new(std::size_t size) { return Watched(size); }
void* operator new[](std::size_t size) { return Watched(size); }
void operator delete(void* block) noexcept { Unwatched(block); }
void operator delete[](void* block) noexcept { Unwatched(block); }
void operator delete(void* block, std::size_t /*size*/) noexcept { Unwatched(block); }
void operator delete[](void* block, std::size_t /*size*/) noexcept { Unwatched(block); }

namespace {

using Bytes = std::vector<std::byte>;

/// The library, up for one test.
class HostileMemento : public testing::Test {
protected:
    void SetUp() override { UTI_CaeUtils_initialize(_count); }
    void TearDown() override { UTI_CaeUtils_finalize(_count); }

private:
    int _count = 0;
};

void Append(Bytes& bytes, const std::string& text) {
    const auto* first = reinterpret_cast<const std::byte*>(text.data());
    bytes.insert(bytes.end(), first, first + text.size());
}

// Items by hand.

std::string Head(int major, std::uint64_t value, int size = -1) {
    std::string text;
    if (size < 0) {
        size = value < 24 ? 0 : value < 256 ? 1 : value < 65536 ? 2 : value >> 32 == 0 ? 4 : 8;
    }
    const int info = size == 0 ? static_cast<int>(value)
                               : 24 + (size == 1   ? 0
                                       : size == 2 ? 1
                                       : size == 4 ? 2
                                                   : 3);
    text += static_cast<char>(major << 5 | info);
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8) {
        text += static_cast<char>(value >> shift);
    }
    return text;
}
std::string Text(const std::string& text) { return Head(3, text.size()) + text; }
std::string Array(std::uint64_t count) { return Head(4, count); }
std::string Number(std::uint64_t value) { return Head(0, value); }
std::string Tag(std::uint64_t tag) { return Head(6, tag); }
const std::string kNull = "\xF6";

std::string Times(std::size_t count, const std::string& text) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

/// An entry of the table of classes.
std::string Class(const char* name, int version, int base,
                  std::initializer_list<const char*> fields = {}) {
    std::string entry = Array(4) + Text(name) + Number(static_cast<unsigned>(version)) +
                        (base < 0 ? kNull : Number(static_cast<unsigned>(base))) +
                        Array(fields.size());
    for (const char* field : fields) {
        entry += Text(field);
    }
    return entry;
}

/// A memento of these classes with the one root "sample".
Bytes File(const std::vector<std::string>& classes, const std::string& sample,
           const char* format = "CaeUtils memento", unsigned version = 1) {
    Bytes bytes;
    Append(bytes, Tag(55799) + Head(5, 2) + Text("format") + Text(format) + Text("version") +
                      Number(version) + Array(classes.size()));
    for (const std::string& entry : classes) {
        Append(bytes, entry);
    }
    Append(bytes, Head(5, 1) + Text("sample") + sample);
    return idb_Sealed(bytes);
}

const std::string kPrimitive = Class("omu_Primitive", 514, -1, {"type"});
const std::string kNone = Class("omu_PrimNone", 800, 0, {"isSet"});
const std::string kNoneObject = Array(5) + Number(1) + Number(0) + Number(0) + Text("n") + "\xF4";

/// Empty when \p read succeeds or raises the memento's error, and takes no more memory than it may.
template <class Read>
std::string Fault(const Bytes& bytes, Read read) {
    theAsked = 0;
    thePeak = theLive;
    const std::size_t before = theLive;
    mem_SetFaultHook([](std::size_t size) {
        // A visitor of a base level or list is given back before the next value is read.
        theAsked += size == sizeof(idb_MementoRead) ? 0 : size;
        return false;
    });
    std::string fault;
    try {
        read(bytes);
    } catch (const idb_MementoErrorException&) {
    } catch (const nex_Exception& error) {
        fault = "another error: " + std::string(error.AsString().View());
    } catch (const std::exception& error) {
        fault = std::string("another error: ") + error.what();
    }
    mem_SetFaultHook(nullptr);
    const std::size_t taken = thePeak - before + theAsked;
    if (taken > 16 * bytes.size() + (1U << 20)) {
        fault += "took " + std::to_string(taken) + " bytes for " + std::to_string(bytes.size());
    }
    return fault;
}

void ReadAny(const Bytes& bytes) {
    const idb_MementoRead memento(bytes);
    omu_PrimHolder read;
    cls_ReadShared(memento, "sample", omu_Primitive::TypeId(), read);
    memento.Finish();
}

std::string Message(const Bytes& bytes) {
    return test_Message<idb_MementoErrorException>([&] { ReadAny(bytes); });
}

TEST_F(HostileMemento, NoFlippedBitAndNoCutGetsPastTheChecks) {
    for (const idb_Sample& sample : idb_Samples()) {
        const Bytes good = sample.write();
        const auto read = [&](const Bytes& bytes) {
            // What is loaded is a value like any other: it can be written, too.
            static_cast<void>(sample.rewrite(bytes));
        };
        ASSERT_EQ(Fault(good, read), "") << sample.name;
        for (std::size_t bit = 0; bit < 8 * good.size(); ++bit) {
            Bytes bytes = good;
            bytes[bit / 8] ^= std::byte{1} << (bit % 8);
            EXPECT_THROW(read(bytes), idb_MementoErrorException) << sample.name << " bit " << bit;
            const Bytes repaired = idb_Sealed(Bytes(bytes.begin(), bytes.end() - 5));
            ASSERT_EQ(Fault(repaired, read), "") << sample.name << ", bit " << bit;
        }
        for (std::size_t size = 0; size < good.size(); ++size) {
            Bytes bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size));
            EXPECT_THROW(read(bytes), idb_MementoErrorException) << sample.name << " cut " << size;
            ASSERT_EQ(Fault(idb_Sealed(bytes), read), "") << sample.name << ", cut at " << size;
        }
    }
}

TEST_F(HostileMemento, FaultsAreNamedWithTheirPlace) {
    const std::vector<std::string> none{kPrimitive, kNone};
    const auto object = [](const std::string& type, const std::string& isSet) {
        return Array(5) + Number(1) + Number(0) + Number(0) + type + isSet;
    };
    struct Case {
        Bytes bytes;
        const char* message;
    };
    const Case cases[] = {
        {File(none, kNoneObject), "nothing was raised"},
        {File(none, kNoneObject, "other"), "Memento, byte 0: this is not a memento"},
        {File(none, kNoneObject, "CaeUtils memento", 2),
         "Memento, byte 36: format version 2 is newer than this program's, 1"},
        {File({kPrimitive, Class("omu_PrimNope", 1, 0)}, kNoneObject),
         "Memento, byte 63: class omu_PrimNope (stored version 1) is unknown"},
        {File({kPrimitive, Class("omu_PrimNone", 801, 0)}, kNoneObject),
         "Memento, byte 77: class omu_PrimNone (stored version 801, known version 800) is newer "
         "than this program"},
        {File({kPrimitive, Class("omu_PrimNone", 800, -1)}, kNoneObject),
         "Memento, byte 80: class omu_PrimNone (stored version 800, known version 800) is stored "
         "with the wrong base"},
        {File({kPrimitive, kNone, Class("omu_PrimNumber", 835, 1)}, kNoneObject),
         "Memento, byte 107: class omu_PrimNumber (stored version 835, known version 835) is "
         "stored "
         "with the wrong base, class omu_PrimNone (stored version 800, known version 800)"},
        {File({Class("omu_Primitive", 514, -1, {"type", "type"})}, kNull),
         "Memento, byte 63: class omu_Primitive (stored version 514, known version 514): two "
         "fields "
         "are named type"},
        {File(none, Array(3) + Number(0) + Number(0) + Text("n")),
         "Memento, byte 97: root sample: an object of the abstract class omu_Primitive (stored "
         "version 514, known version 514)"},
        {File(none, Array(2) + Number(7) + Number(0)),
         "Memento, byte 97: root sample: an object of class 7, which is not in the table of "
         "classes"},
        {File(none, Array(4) + Number(1) + Number(0) + Number(0) + Text("n")),
         "Memento, byte 96: root sample: an object of class omu_PrimNone (stored version 800, "
         "known "
         "version 800) has 4 items, not 5"},
        {File(none, object(Text("n"), Number(1))),
         "Memento, byte 102: class omu_PrimNone (stored version 800, known version 800), field "
         "isSet: an integer where a truth value is expected"},
        {File(none, object(Text("nn"), "\xF4")),
         "Memento, byte 100: class omu_PrimNone (stored version 800, known version 800), field "
         "type: "
         "a text of 2 bytes where a character is expected"},
        {File(none, Tag(29) + Number(0)),
         "Memento, byte 96: root sample: object 0 is shared before it is there"},
        {File(none, Tag(39) + Number(0)),
         "Memento, byte 96: a reference to object 0, which is not there"},
        {File(none, Number(3)),
         "Memento, byte 96: root sample: an integer where an object is "
         "expected"},
        {File(none, Array(0)),
         "Memento, byte 96: root sample: an empty array is neither object nor list"},
        {File(none, "\x9F\xFF"),
         "Memento, byte 96: items of unknown length and reserved heads are not used"},
        {File(none, Head(3, 1ULL << 40)),
         "Memento, byte 96: a text of 1099511627776 bytes, where only 5 are left"},
        {File(none, Head(4, 1ULL << 63)),
         "Memento, byte 96: 9223372036854775808 items, where only 5 bytes are left"},
        {File(none, kNoneObject + kNull), "Memento, byte 103: it goes on behind its roots"},
        {File({Class("g3d_Point", 203, -1)}, Array(2) + Number(0) + Number(0)),
         "Memento, byte 62: an object of class g3d_Point (stored version 203, known version 203) "
         "where class omu_Primitive is expected"},
    };
    for (const Case& expected : cases) {
        EXPECT_EQ(Message(expected.bytes), expected.message);
    }
}

TEST_F(HostileMemento, LoopsOfSharedObjectsAndWrongUsesOfThemAreRefused) {
    const std::vector<std::string> classes{kPrimitive, Class("omu_PrimDictionaryBase", 800, 0),
                                           Class("omu_PrimIntDictionary", 800, 1, {"dict"}),
                                           Class("omu_PrimNone", 800, 0)};
    const auto dictionary = [](const std::string& entries, unsigned count) {
        return Array(6) + Number(2) + Number(0) + Number(0) + Number(0) + Text("{") +
               Array(1 + 2 * count) + kNull + entries;
    };
    const std::string none = Array(4) + Number(3) + Number(0) + Number(0) + Text("n");
    // Holds itself; directly, and by way of another.
    EXPECT_NE(Message(File(classes, Tag(28) + dictionary(Number(1) + Tag(29) + Number(0), 1)))
                  .find("object 0 contains itself"),
              std::string::npos);
    EXPECT_NE(Message(File(classes,
                           Tag(28) + dictionary(Number(1) + Tag(28) +
                                                    dictionary(Number(1) + Tag(29) + Number(0), 1),
                                                1)))
                  .find("object 0 contains itself"),
              std::string::npos);
    EXPECT_EQ(
        Message(File(classes,
                     dictionary(Number(1) + Tag(28) + none + Number(2) + Tag(29) + Number(0), 2))),
        "nothing was raised");
    // A reference where a shared value belongs.
    EXPECT_NE(
        Message(File(classes,
                     dictionary(Number(1) + Tag(28) + none + Number(2) + Tag(39) + Number(0), 2)))
            .find("a reference where an object is expected"),
        std::string::npos);
}

TEST_F(HostileMemento, BombsTakeNoMoreThanTheyMay) {
    const std::vector<std::string> tuple{kPrimitive,
                                         Class("omu_PrimSequence", 800, 0),
                                         Class("omu_PrimTuple", 800, 1, {"primVector"}),
                                         Class("omu_PrimNone", 800, 0),
                                         Class("omu_PrimPath", 800, 0, {"context"}),
                                         Class("omu_PrimTuple", 1, 1, {"unknown", "primVector"})};
    const std::string open = Array(6) + Number(2) + Times(3, Number(0)) + Text("s");
    const auto list = [&](std::size_t count, const std::string& elements) {
        return open + Array(count + 1) + kNull + elements;
    };
    const std::string none = Array(4) + Number(3) + Number(0) + Number(0) + Text("n");
    constexpr std::size_t kMany = 100000;
    struct Bomb {
        const char* name;
        Bytes bytes;
    };
    std::vector<Bomb> bombs;
    bombs.push_back({"nested tuples", File(tuple, Times(kMany, open + Array(2) + kNull))});
    bombs.push_back({"nested lists", File(tuple, Times(kMany, Array(2) + kNull))});
    bombs.push_back({"nested tags", File(tuple, Times(kMany, Tag(28)))});
    bombs.push_back({"empty slots", File(tuple, list(kMany, Times(kMany, kNull)))});
    bombs.push_back({"values", File(tuple, list(kMany, Times(kMany, none)))});
    bombs.push_back({"tuples of old versions without fields",
                     File(tuple, list(kMany, Times(kMany, Array(5) + Number(1) +
                                                              Times(3, Number(0)) + Text("s"))))});
    bombs.push_back(
        {"bare tuples",
         File({kPrimitive, Class("omu_PrimSequence", 1, 0), Class("omu_PrimTuple", 1, 1),
               Class("omu_PrimTuple", 800, 1, {"primVector"})},
              Array(6) + Number(3) + Times(3, Number(0)) + Text("s") + Array(kMany + 1) + kNull +
                  Times(kMany, Array(5) + Number(2) + Times(3, Number(0)) + Text("s")))});
    bombs.push_back(
        {"empty texts", File(tuple, Array(5) + Number(4) + Times(2, Number(0)) + Text("p") +
                                        Array(kMany + 1) + kNull + Times(kMany, Text("")))});
    bombs.push_back({"shareable values", File(tuple, list(kMany, Times(kMany, Tag(28) + none)))});
    bombs.push_back(
        {"references",
         File(tuple, list(kMany, Tag(28) + none + Times(kMany - 1, Tag(39) + Number(0))))});
    bombs.push_back({"classes", File(std::vector<std::string>(kMany, kPrimitive), kNull)});
    bombs.push_back({"fields", File({Array(4) + Text("g3d_Point") + Number(1) + kNull +
                                     Array(kMany) + Times(kMany, Text("a"))},
                                    kNull)});
    bombs.push_back(
        {"halves", File(tuple, Times(2000, open + Array(3) + kNull + none) + Times(2000, none))});
    // A chain of shared tuples, each built within the one before by the time it is asked for.
    std::string chain = Tag(28) + list(0, "");
    for (unsigned i = 0; i < 20000; ++i) {
        chain += Tag(28) + list(1, Tag(29) + Number(i));
    }
    bombs.push_back({"chain of shared values", File(tuple, list(20001, chain))});
    for (const Bomb& bomb : bombs) {
        EXPECT_EQ(Fault(bomb.bytes, ReadAny), "") << bomb.name;
    }
}

/// As small as a repository's members can be.
class Member : public mdl_Extension {
public:
    static constexpr cls_ClassInfo kClass{"test_Small", 0x5D0001, mdl_Extension::TypeId(), 1};
    static constexpr unsigned TypeId() noexcept { return kClass.typeId; }
    explicit Member(const cls_ReadVisitor& visitor)
        : mdl_Extension(*visitor.Base(mdl_Extension::TypeId())) {
        cls_ReadFields(*this, visitor);
    }
    [[nodiscard]] unsigned DynTypeId() const override { return TypeId(); }
    [[nodiscard]] mdl_Extension* Copy() const override { return nullptr; }

private:
    friend struct ::cls_Access;
    using Base = mdl_Extension;
    static constexpr auto Fields() { return std::tuple(NameField()); }
};

TEST_F(HostileMemento, MembersOfRepositoriesTakeNoMoreThanTheyMay) {
    static constexpr typ_Entry kTypes[] = {
        {typ_Entry::Unused, 1, nullptr},
        {typ_Entry::Persistent, mdl_Extension::TypeId(), "test_Small"}};
    typ_ArchCompTable::InsertEntry(0x5D, {kTypes, std::size(kTypes)});
    cls_RegisterClass<Member, cow_COW<mdl_Extension, cow_Virtual<mdl_Extension>>>(
        omi_Singleton<cls_MetadataRegistrar>::Instance().Classes());
    constexpr std::size_t kMany = (1U << 17) + 1;  // just beyond what a vector has room for
    const std::string digits = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    std::string list = Array(kMany + 1) + kNull;
    for (std::size_t i = 0; i < kMany; ++i) {
        // The shortest names there are so many of, beginning with a letter.
        const std::string name{digits[i % 52], digits[i / 52 % 62], digits[i / 52 / 62]};
        list += Array(4) + Number(1) + Number(0) + Number(0) + Text(name);
    }
    const Bytes bytes =
        File({Class("mdl_Extension", 401, -1), Class("test_Small", 1, 0, {"name"})}, list);
    int read = 0;
    EXPECT_EQ(Fault(bytes,
                    [&](const Bytes& from) {
                        mdl_Repository members;
                        const idb_MementoRead memento(from);
                        cls_FieldTraits<mdl_Repository>::Read(memento, "sample", members);
                        read = members.Length();
                    }),
              "");
    EXPECT_EQ(read, static_cast<int>(kMany));
}

TEST_F(HostileMemento, WhatIsBuiltOnDemandIsBoundedToo) {
    // The tuples lie in a field that is not read any more, and are reached from the last.
    const std::vector<std::string> classes{kPrimitive, Class("omu_PrimSequence", 800, 0),
                                           Class("omu_PrimTuple", 800, 1, {"gone", "primVector"})};
    const auto tuple = [](const std::string& gone, std::size_t count, const std::string& elements) {
        return Array(7) + Number(2) + Times(3, Number(0)) + Text("s") + gone + Array(count + 1) +
               kNull + elements;
    };
    for (const unsigned length : {10U, 500U, 2000U}) {
        std::string chain = Array(length + 2) + kNull + Tag(28) + tuple(kNull, 0, "");
        for (unsigned i = 0; i < length; ++i) {
            chain += Tag(28) + tuple(kNull, 1, Tag(29) + Number(i));
        }
        const Bytes bytes = File(classes, tuple(chain, 1, Tag(29) + Number(length)));
        EXPECT_EQ(Fault(bytes, ReadAny), "");
        EXPECT_EQ(Message(bytes) == "nothing was raised", length <= 500) << length;
    }
}

}  // namespace
