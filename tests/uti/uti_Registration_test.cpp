#include "UTI_CaeUtils.h"
#include "cls_MemoryStore.h"
#include "cls_MetadataRegistrar.h"
#include "cow_COW.h"
#include "cow_Virtual.h"
#include "nex_Exception.h"
#include "nex_TextException.h"
#include "omi_Singleton.h"
#include "omu_PrimNumber.h"
#include "omu_QueryPathMsg.h"
#include "typ_ArchCompTable.h"
#include "uti_RegistrationCheck.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace {

/// The library, up for one test.
class Registration : public testing::Test {
protected:
    void SetUp() override { UTI_CaeUtils_initialize(_count); }
    void TearDown() override { UTI_CaeUtils_finalize(_count); }

    static const cls_ClassMetadata& Metadata(const char* name) {
        return *omi_Singleton<cls_MetadataRegistrar>::Instance().Classes().Find(cow_String(name));
    }

private:
    int _count = 0;
};

std::string Golden(const char* name) {
    std::ifstream file(std::string(TEST_DATA_DIR) + "/" + name);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string Shown(unsigned typeId) {
    return std::to_string(typeId >> 16) + "." + std::to_string(typeId & 0xFFFFU);
}

std::string Described(const cls_ClassMetadata& metadata) {
    std::ostringstream text;
    text << metadata.Name().Std() << ' ' << Shown(metadata.TypeId()) << " version "
         << metadata.Version() << " base " << Shown(metadata.BaseTypeId()) << ':';
    for (const char* comma = " "; const cls_Attribute& field : metadata.Attributes()) {
        text << comma << field.handle.Number() << ' ' << field.handle.Name().Std() << ' '
             << static_cast<int>(field.type);
        if (field.classId != 1) {
            text << " class " << Shown(field.classId);
        }
        if (field.collection != cls_CollectionType::Single) {
            text << " collection " << static_cast<int>(field.collection);
        }
        comma = ", ";
    }
    return text.str();
}

TEST_F(Registration, TypeTablesAreTheFixedOnes) {
    std::ostringstream text;
    for (const unsigned module : {10U, 19U, 36U}) {
        const typ_ArchCompEntry table =
            typ_ArchCompTable::Module(static_cast<unsigned short>(module));
        for (unsigned index = 0; index < table.Count(); ++index) {
            const typ_Entry& entry = *table.At(index);
            text << module << '.' << index << " kind " << entry.kind << " base "
                 << Shown(entry.base) << ' ' << (entry.name == nullptr ? "-" : entry.name) << '\n';
        }
    }
    EXPECT_EQ(text.str(), Golden("type_tables.txt"));
}

TEST_F(Registration, ClassesAreRegisteredInTheFixedOrderWithTheFixedFields) {
    std::ostringstream text;
    unsigned module = 0;
    for (const auto& entry : omi_Singleton<cls_MetadataRegistrar>::Instance().Entries()) {
        cls_ClassRegistrar one;
        entry.function(one);
        ASSERT_EQ(one.All().size(), 1U);
        const cls_ClassMetadata& metadata = *one.All()[0];
        if (module != metadata.TypeId() >> 16) {
            module = metadata.TypeId() >> 16;
            text << "module " << module << '\n';
        }
        text << entry.selector << ' ' << Described(metadata) << '\n';
    }
    EXPECT_EQ(text.str(), Golden("registrations.txt"));
}

TEST_F(Registration, MetadataAndTypeTablesAgree) {
    EXPECT_EQ(uti_RegistrationCheck::Faults(), std::vector<cow_String>());
}

TEST_F(Registration, CheckFindsEveryKindOfDrift) {
    const typ_Entry types[] = {
        {typ_Entry::Unused, 1, nullptr},
        {typ_Entry::Persistent, 1, "g3d_Vector"},
        {typ_Entry::Persistent, 1, "g3d_Point"},
        {typ_Entry::Persistent, 0x1F0003, "g3d_ColorErrorException"},
        {typ_Entry::Persistent, 1, "g3d_Light"},
    };
    const uti_RegistrationCheck::Module module{36, {types, 5}};

    cls_ClassMetadata vector("g3d_Vektor", 0x240001, 203, nullptr, 1);
    cls_ClassMetadata point("g3d_Point", 0x240002, 203, nullptr, 0x240009);
    point.AddAttribute({0, "x"}, cls_AttributeType::Float, 1, cls_CollectionType::Single);
    point.AddAttribute({2, "x"}, cls_AttributeType::Float, 1, cls_CollectionType::Single);
    cls_ClassMetadata error("g3d_ColorErrorException", 0x240003, 800, nullptr, 0x1F0003);
    cls_ClassMetadata plane("g3d_Plane", 0x240005, 203, nullptr, 1);
    cls_ClassMetadata reserved("mdl_PropBoolArray", 0x0A0017, 203, nullptr, 1);
    const cls_ClassMetadata* const classes[] = {&vector, &point, &error, &plane, &reserved};

    EXPECT_EQ(uti_RegistrationCheck::Faults(classes, std::span(&module, 1)),
              (std::vector<cow_String>{
                  "g3d_Vektor (36.1): its stored name should be g3d_Vector",
                  "g3d_Point (36.2): base 36.9, in the type table 0.1",
                  "g3d_Point (36.2): its base 36.9 is in no type table",
                  "g3d_Point (36.2): field x has number 2",
                  "g3d_Point (36.2): two fields are named x",
                  "g3d_ColorErrorException (36.3): kind 7 in the type table",
                  "g3d_Plane (36.5): the type table has no such class",
                  "mdl_PropBoolArray (10.23): is registered though reserved: keeps the numbering "
                  "in place",
                  "g3d_Light (36.4): in the type table, but not registered",
              }));
}

TEST_F(Registration, AbstractClassesCannotBeConstructed) {
    const cls_MemoryStore empty;
    for (const char* name : {"omu_TypeErrorException", "omu_Primitive", "omu_PrimSequence",
                             "omu_PrimDictionaryBase", "mdl_Extension"}) {
        EXPECT_THROW(static_cast<void>(Metadata(name).Ctor(empty.Reader())), nex_TextException)
            << name;
    }
}

/// Notes its end; stands for any error in a holder.
class Noted : public nex_Exception {
public:
    explicit Noted(int& ends) : _ends(&ends) {}
    Noted(const Noted&) = default;
    Noted& operator=(const Noted&) = default;
    ~Noted() override { ++*_ends; }

    atr_String AsString() const override { return "noted"; }
    [[noreturn]] void Propagate() const override { throw Noted(*this); }
    nex_Exception* Copy() const override { return new Noted(*this); }
    unsigned DynTypeId() const override { return TypeId(); }
    void DBWrite(const cls_WriteVisitor& /*visitor*/) const override {}

private:
    int* _ends;
};

TEST_F(Registration, DeleterOfErrorsDestroysTheHeldObject) {
    using Holder = cow_COW<nex_Exception, cow_Virtual<nex_Exception>>;
    int ends = 0;
    const Holder shared(new Noted(ends));
    auto* holder = new Holder(shared);
    auto* last = new Holder(new Noted(ends));

    const cls_ClassMetadata& metadata = Metadata("omu_KeyErrorException");
    metadata.DeleteCow(reinterpret_cast<cow_COW<int, cow_Direct<int>>*>(holder));
    EXPECT_EQ(ends, 0);
    EXPECT_EQ(shared.Count(), 1);
    metadata.DeleteCow(reinterpret_cast<cow_COW<int, cow_Direct<int>>*>(last));
    EXPECT_EQ(ends, 1);
}

TEST_F(Registration, QueryMessagesAreStoredWithTheirValueOrNone) {
    const omu_QueryPathMsg messages[] = {
        {{"mdb", "models"}, omu_PrimHolder(new omu_PrimNumber(7)), true}, {}};
    const char* const stored[] = {
        "19.28{path=['mdb' 'models'] value=19.22{19.17{type=`i`} value=7 uvalue=0u dataType=2}"
        " valueIsDelta=true}",
        "19.28{path=[] value=null valueIsDelta=false}"};
    for (std::size_t i = 0; i < std::size(messages); ++i) {
        cls_MemoryStore store;
        store.Write(messages[i]);
        const std::unique_ptr<omu_QueryPathMsg> read(
            static_cast<omu_QueryPathMsg*>(store.Construct()));
        store.Write(*read);
        EXPECT_EQ(store.Text(), stored[i]);
    }
}

}  // namespace
