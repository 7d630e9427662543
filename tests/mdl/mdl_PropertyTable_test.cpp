#include "mdl_PropertyTable.h"

#include "UTI_CaeUtils.h"
#include "cls_MemoryStore.h"
#include "nex_TextException.h"
#include "omu_ErrorExceptions.h"
#include "omu_PrimArray.h"
#include "test_Raised.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

namespace {

using Key = mdl_PropertyTable::SortKey;

omu_PrimTuple RowOf(const auto&... values) {
    omu_PrimTuple row(sizeof...(values), '(');
    (row.Put(values), ...);
    return row;
}

std::string Shown(const mdl_PropertyTable& table) {
    std::string text;
    for (int row = 0; row < table.Rows(); ++row) {
        text += table.Row(row).AsString(0).Std();
    }
    return text;
}

class mdl_PropertyTableTest : public testing::Test {
protected:
    void SetUp() override {
        UTI_CaeUtils_initialize(_count);
        table.AddRow(RowOf(300.0, 2, "b"));
        table.AddRow(RowOf(20, 1, "a"));  // an integer for a float
    }
    void TearDown() override { UTI_CaeUtils_finalize(_count); }

    mdl_PropertyTable table{{{"temperature", mdl_ColumnType::Float},
                             {"id", mdl_ColumnType::Integer},
                             {"note", mdl_ColumnType::String}}};

private:
    int _count = 0;
};

TEST_F(mdl_PropertyTableTest, RowsComeAndGo) {
    EXPECT_EQ(Shown(table), "(300.0, 2, 'b')(20.0, 1, 'a')");
    const mdl_PropertyTable before(table);
    table.InsertRow(1, RowOf(0.5, -1, "c"));
    table.SetRow(0, RowOf(1.0, 9, ""));
    table.Set(2, 2, cow_String("z"));
    table.Set(2, 0, table.ConstGet<double>(1, 0));
    EXPECT_EQ(Shown(table), "(1.0, 9, '')(0.5, -1, 'c')(0.5, 1, 'z')");
    table.RemoveRow(0);
    EXPECT_EQ(Shown(table), "(0.5, -1, 'c')(0.5, 1, 'z')");
    EXPECT_EQ(Shown(before), "(300.0, 2, 'b')(20.0, 1, 'a')");
    EXPECT_EQ(table.FindColumn("id"), 1);
    EXPECT_EQ(table.FindColumn("ID"), -1);
    table.RemoveAllRows();
    EXPECT_EQ(table.Rows(), 0);
}

TEST_F(mdl_PropertyTableTest, RefusesAndLeavesAllAsItWas) {
    EXPECT_EQ(test_Message<omu_ArgTypeErrorException>([&] { table.AddRow(RowOf(1.0, "x", "y")); }),
              "arg2; found string, expecting int");
    EXPECT_THROW(table.AddRow(RowOf(1.0, 2)), omu_ArgNumberErrorException);
    EXPECT_THROW(table.SetRow(0, RowOf(1.0, 2, "x", 4)), omu_ArgNumberErrorException);
    EXPECT_THROW(table.InsertRow(3, RowOf(1.0, 2, "x")), std::out_of_range);
    EXPECT_THROW(table.RemoveRow(2), std::out_of_range);
    EXPECT_THROW(table.Sort({{3}}), std::out_of_range);
    EXPECT_THROW(static_cast<void>(table.ConstGet<int>(0, 0)), nex_TextException);
    EXPECT_THROW(table.Set(0, 1, 0.5), nex_TextException);
    EXPECT_EQ(test_Message<omu_ValueErrorException>([&] { table.AddEmptyFirstRow(); }),
              "The table allows no empty row.");
    EXPECT_EQ(Shown(table), "(300.0, 2, 'b')(20.0, 1, 'a')");

    const mdl_PropertyColumn twice("x", mdl_ColumnType::Float);
    EXPECT_THROW(mdl_PropertyTable({twice, twice}), omu_ValueErrorException);
    EXPECT_THROW(mdl_PropertyTable().AddRow(RowOf()), omu_ValueErrorException);
}

TEST_F(mdl_PropertyTableTest, TheFirstRowMayBeEmptyWhereAllowed) {
    table.AllowEmptyFirstRow(true);
    table.AddEmptyFirstRow();
    EXPECT_EQ(Shown(table), "()(300.0, 2, 'b')(20.0, 1, 'a')");
    for (const auto& refused : std::initializer_list<std::function<void()>>{
             [&] { table.AddEmptyFirstRow(); }, [&] { table.AllowEmptyFirstRow(false); },
             [&] { table.InsertRow(0, RowOf(1.0, 1, "x")); }, [&] { table.Set(0, 1, 5); },
             [&] { static_cast<void>(table.ConstGet<int>(0, 1)); }}) {
        EXPECT_THROW(refused(), omu_ValueErrorException);
    }
    table.Sort({{0}});
    EXPECT_EQ(Shown(table), "()(20.0, 1, 'a')(300.0, 2, 'b')");
    table.SetRow(0, RowOf(1.0, 1, "x"));
    EXPECT_FALSE(table.HasEmptyFirstRow());
    table.AddEmptyFirstRow();
    table.RemoveRow(0);
    EXPECT_EQ(Shown(table), "(1.0, 1, 'x')(20.0, 1, 'a')(300.0, 2, 'b')");
}

TEST_F(mdl_PropertyTableTest, SortsByKeysAndKeepsTheOrderOfEquals) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    table.RemoveAllRows();
    int id = 0;
    for (const double temperature : {2.0, nan, 1.0, 2.0, -3.0, nan, 1.0}) {
        ++id;
        table.AddRow(RowOf(temperature, id, id % 2 == 0 ? "even" : "odd"));
    }
    const auto ids = [&](const std::vector<Key>& keys) {
        mdl_PropertyTable sorted(table);
        sorted.Sort(keys);
        std::string text;
        for (int row = 0; row < sorted.Rows(); ++row) {
            text += std::to_string(sorted.ConstGet<int>(row, 1));
        }
        return text;
    };
    EXPECT_EQ(ids({{0}}), "5371426");
    EXPECT_EQ(ids({{0, true}}), "2614375");
    EXPECT_EQ(ids({{2}, {0}}), "4265371");
    EXPECT_EQ(ids({{2, true}, {1, true}}), "7531642");
    EXPECT_EQ(ids({}), "1234567");
}

TEST_F(mdl_PropertyTableTest, IsStoredAsOneTuple) {
    table.AllowEmptyFirstRow(true);
    table.AddEmptyFirstRow();
    for (const mdl_PropertyTable& written : {table, mdl_PropertyTable()}) {
        cls_MemoryStore store;
        store.Write(written);
        const std::unique_ptr<mdl_PropertyTable> read(
            static_cast<mdl_PropertyTable*>(store.Construct()));
        EXPECT_TRUE(*read == written);
        EXPECT_EQ(read->GetUid(), written.GetUid());
    }
    cls_MemoryStore store;
    store.Write(table);
    store.Root().fields[0].second = false;  // the empty row it forbids
    EXPECT_THROW(mdl_PropertyTable(store.Reader()), nex_TextException);

    const auto column = [](const char* name, const auto& cells) {
        return RowOf(name, omu_PrimArray(cells));
    };
    const std::vector<double> one{1.0};
    omu_Primitive* const null = nullptr;
    const std::pair<omu_PrimTuple, const char*> faults[] = {
        {RowOf(), "not a tuple that begins with a Boolean"},
        {RowOf(1), "not a tuple that begins with a Boolean"},
        {RowOf(null), "not a tuple that begins with a Boolean"},
        {RowOf(true), "an empty first row that is not there"},
        {RowOf(false, 1), "a column that is not a name with cells"},
        {RowOf(false, RowOf("a")), "a column that is not a name with cells"},
        {RowOf(false, null), "a column that is not a name with cells"},
        {RowOf(false, RowOf(null, null)), "a column that is not a name with cells"},
        {RowOf(false, RowOf("a", null)), "cells that are neither numbers nor strings"},
        {RowOf(false, RowOf("a", RowOf(null))), "cells that are neither numbers nor strings"},
        {RowOf(false, RowOf("a", 1)), "cells that are neither numbers nor strings"},
        {RowOf(false, column("a", std::vector<float>{1})),
         "numbers of another kind than integers and doubles"},
        {RowOf(false, column("a", one), column("a", one)), "two columns of one name"},
        {RowOf(false, column("a", one), column("b", std::vector<int>())),
         "columns of different lengths"},
    };
    for (const auto& [stored, fault] : faults) {
        const auto node = std::make_shared<cls_MemoryNode>();
        stored.DBWrite(cls_MemoryWriter(node));
        store.Root().fields[1].second = node;
        EXPECT_EQ(test_Message<nex_TextException>([&] { mdl_PropertyTable(store.Reader()); }),
                  std::string("mdl_PropertyTable: what is stored is no table: ") + fault);
    }
}

}  // namespace
