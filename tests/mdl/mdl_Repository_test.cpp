#include "mdl_Repository.h"

#include "UTI_CaeUtils.h"
#include "cls_MemoryStore.h"
#include "nex_TextException.h"
#include "omu_ErrorExceptions.h"
#include "test_Raised.h"
#include "typ_ArchCompTable.h"

#include <gtest/gtest.h>

namespace {

/// A member with a content, which counts how many there are.
class Load : public mdl_Extension {
public:
    static constexpr cls_ClassInfo kClass{"test_Load", 0x620001, mdl_Extension::TypeId(), 1};
    static constexpr unsigned TypeId() { return kClass.typeId; }

    Load(const char* name, int size) : mdl_Extension(name), _size(size) { ++count; }
    explicit Load(const cls_ReadVisitor& visitor)
        : mdl_Extension(*visitor.Base(mdl_Extension::TypeId())) {
        ++count;
        cls_ReadFields(*this, visitor);
    }
    Load(const Load& other) : mdl_Extension(other), _size(other._size) { ++count; }
    ~Load() override {
        --count;
        EXPECT_TRUE(Owner() == nullptr || !Owner()->Has(Name()));
    }

    unsigned DynTypeId() const override { return TypeId(); }
    void DBWrite(const cls_WriteVisitor& visitor) const override {
        cls_WriteLevel(*this, GetUid(), visitor);
    }
    mdl_Extension* Copy() const override { return new Load(*this); }
    int Size() const { return _size; }

    static inline int count = 0;

private:
    friend struct ::cls_Access;
    using Base = mdl_Extension;
    static constexpr auto Fields() {
        return std::tuple(NameField(), cls_Field("size", &Load::_size));
    }

    int _size = 0;
};

const Load& AsLoad(const mdl_Extension& member) { return dynamic_cast<const Load&>(member); }

/// "a=1 b=2", in order.
std::string Shown(const mdl_Repository& repository) {
    std::string text;
    for (const auto& member : repository.Members()) {
        EXPECT_EQ(member->Owner(), &repository);
        EXPECT_EQ(repository.Find(member->Name()), member.get());
        text += (text.empty() ? "" : " ") + member->Name().Std() + "=" +
                std::to_string(AsLoad(*member).Size());
    }
    return text;
}

class mdl_RepositoryTest : public testing::Test {
protected:
    void SetUp() override {
        UTI_CaeUtils_initialize(_count);
        loads.Add(std::make_unique<Load>("b", 2));
        loads.Add(std::make_unique<Load>("a", 1));
        loads.Add(std::make_unique<Load>("c", 3));
    }
    void TearDown() override {
        loads.Clear();
        EXPECT_EQ(Load::count, 0);
        UTI_CaeUtils_finalize(_count);
    }

    mdl_Repository loads{"loads"};

private:
    int _count = 0;
};

TEST_F(mdl_RepositoryTest, KeepsTheOrderThroughEveryChange) {
    EXPECT_EQ(Shown(loads), "b=2 a=1 c=3");
    const mdl_Extension* a = loads.Find("a");
    loads.Rename(a->Name(), "first");  // by its own name
    EXPECT_EQ(loads.Find("first"), a);
    loads.Rename("c", "c");
    const Load& copy = AsLoad(loads.CopyMember("b", "b-2"));
    EXPECT_NE(copy.GetUid(), loads.Get("b").GetUid());
    EXPECT_EQ(Shown(loads), "b=2 first=1 c=3 b-2=2");

    const int place = loads.IndexOf("first");
    std::unique_ptr<mdl_Extension> removed = loads.Remove("first");
    EXPECT_EQ(removed->Owner(), nullptr);
    EXPECT_EQ(Shown(loads), "b=2 c=3 b-2=2");
    loads.Insert(place, std::move(removed));
    EXPECT_EQ(loads.Names(), (cow_List<cow_String>{"b", "first", "c", "b-2"}));
}

TEST_F(mdl_RepositoryTest, RefusesAndLeavesAllAsItWas) {
    const auto add = [&](const char* name) { loads.Add(std::make_unique<Load>(name, 0)); };
    using InUse = omu_ValueErrorException;
    EXPECT_EQ(test_Message<InUse>([&] { add("a"); }), "The name 'a' is in use.");
    EXPECT_EQ(test_Message<InUse>([&] { loads.Rename("a", "c"); }), "The name 'c' is in use.");
    EXPECT_THROW(loads.CopyMember("a", "b"), InUse);
    for (const char* name : {"", "1st", "x.y"}) {
        EXPECT_THROW(add(name), omu_TvxNameErrorException) << name;
        EXPECT_THROW(loads.Rename("a", name), omu_TvxNameErrorException) << name;
    }
    EXPECT_THROW(loads.Rename("x", "y"), omu_KeyErrorException);
    EXPECT_THROW(loads.CopyMember("A", "y"), omu_KeyErrorException);
    EXPECT_EQ(test_Message<omu_KeyErrorException>([&] { loads.Remove("x"); }), "x");
    EXPECT_THROW(loads.Add(nullptr), nex_TextException);
    std::unique_ptr<mdl_Extension> own = std::make_unique<Load>("d", 0);
    EXPECT_THROW(loads.Insert(-1, std::move(own)), std::out_of_range);
    EXPECT_NE(own, nullptr);
    EXPECT_EQ(Shown(loads), "b=2 a=1 c=3");

    mdl_Repository jobs("jobs", JOB_NAME);
    EXPECT_THROW(jobs.Add(std::make_unique<Load>("a b", 0)), omu_TvxNameErrorException);
}

TEST_F(mdl_RepositoryTest, CopiesOwnTheirMembers) {
    mdl_Repository copy(loads);
    EXPECT_EQ(copy.Get("a").GetUid(), loads.Get("a").GetUid());
    copy.Remove("a");
    loads.Rename("b", "B");
    EXPECT_EQ(Shown(copy), "b=2 c=3");
    copy = loads;
    EXPECT_EQ(Shown(copy), "B=2 a=1 c=3");

    // A repository hangs in another one.
    mdl_Repository models("models");
    models.Add(std::unique_ptr<mdl_Extension>(loads.Copy()));
    const mdl_Repository all(models);
    EXPECT_EQ(Shown(dynamic_cast<const mdl_Repository&>(all.ConstGet("loads"))), "B=2 a=1 c=3");
}

TEST_F(mdl_RepositoryTest, MembersAreAFieldOfTheOwner) {
    omi_Singleton<cls_MetadataRegistrar>::Instance().initClassMetadata(
        &cls_RegisterClass<Load, cow_COW<mdl_Extension, cow_Virtual<mdl_Extension>>>, 7);
    static constexpr typ_Entry kTypes[] = {{typ_Entry::Unused, 1, nullptr},
                                           {typ_Entry::Persistent, mdl_Extension::TypeId(), "x"}};
    typ_ArchCompTable::InsertEntry(0x62, {kTypes, 2});
    using Field = cls_FieldTraits<mdl_Repository>;

    const auto node = std::make_shared<cls_MemoryNode>();
    Field::Write(cls_MemoryWriter(node), "loads", loads);
    mdl_Repository read;
    read.Add(std::make_unique<Load>("old", 0));
    Field::Read(cls_MemoryReader(node), "loads", read);
    EXPECT_EQ(Shown(read), "b=2 a=1 c=3");
    EXPECT_EQ(read.Get("a").GetUid(), loads.Get("a").GetUid());

    auto& list = *std::get<cls_MemoryNode::List>(node->fields[0].second).elements;
    list.fields.push_back(list.fields[0]);  // a name twice
    EXPECT_THROW(Field::Read(cls_MemoryReader(node), "loads", read), omu_ValueErrorException);
    EXPECT_EQ(Shown(read), "b=2 a=1 c=3");

    // By itself a repository stores its level alone.
    cls_MemoryStore store;
    store.Write(loads);
    const std::unique_ptr<mdl_Repository> empty(static_cast<mdl_Repository*>(store.Construct()));
    EXPECT_EQ(store.Text(), "10.1{10.13{}}");
    EXPECT_EQ(empty->GetUid(), loads.GetUid());
}

}  // namespace
