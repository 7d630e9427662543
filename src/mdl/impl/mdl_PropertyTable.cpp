#include "mdl_PropertyTable.h"

#include "cow_COW.h"
#include "cow_Direct.h"
#include "nex_TextException.h"
#include "omu_ErrorExceptions.h"
#include "omu_StandardTraits.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

constexpr const char* kSource = "generated/mdl/impl/mdl_PropertyTable";

using Cells = mdl_PropertyColumn::Cells;
template <class Array>
using ElementOf = typename std::remove_cvref_t<Array>::value_type;

Cells EmptyCells(mdl_ColumnType type) {
    switch (type) {
        case mdl_ColumnType::Integer:
            return cow_1DArrayList<int>();
        case mdl_ColumnType::Float:
            return cow_1DArrayList<double>();
        case mdl_ColumnType::String:
            return cow_1DArrayList<cow_String>();
    }
    nex_TextException("A column is of integers, floats or strings.").Throw(kSource, __LINE__);
}

template <class T>
int Compared(const T& a, const T& b) {
    if constexpr (std::is_same_v<T, double>) {
        if (std::isnan(a) || std::isnan(b)) {
            return static_cast<int>(std::isnan(a)) - static_cast<int>(std::isnan(b));
        }
    }
    return cow_Compare(a, b);
}

}  // namespace

mdl_PropertyColumn::mdl_PropertyColumn(cow_String columnName, mdl_ColumnType type)
    : name(std::move(columnName)), cells(EmptyCells(type)) {}

mdl_PropertyTable::mdl_PropertyTable(const std::vector<mdl_PropertyColumn>& columns,
                                     bool allowEmptyFirstRow)
    : _allowEmptyFirstRow(allowEmptyFirstRow), _uid(cls_Uid::AllocateUid()) {
    for (const mdl_PropertyColumn& column : columns) {
        if (FindColumn(column.name) >= 0) {
            omu_ValueErrorException(
                atr_String::Format("The table has two columns '%s'.", column.name))
                .Throw(kSource, __LINE__);
        }
        _table.columns.emplace_back(column.name, column.Type());
    }
}

mdl_PropertyTable::mdl_PropertyTable(const cls_ReadVisitor& visitor) : _uid(visitor.GetUid()) {
    cls_ReadFields(*this, visitor);
    if (_table.hasEmptyFirstRow && !_allowEmptyFirstRow) {
        nex_TextException("mdl_PropertyTable: the first row is empty, which is not allowed")
            .Throw(kSource, __LINE__);
    }
}

mdl_PropertyTable::~mdl_PropertyTable() = default;

void mdl_PropertyTable::DBWrite(const cls_WriteVisitor& visitor) const {
    cls_WriteLevel(*this, _uid, visitor);
}

void mdl_PropertyTable::InitializeMetadata(cls_ClassRegistrar& registrar) {
    cls_RegisterClass<mdl_PropertyTable, cow_COW<mdl_PropertyTable, cow_Direct<mdl_PropertyTable>>>(
        registrar);
}

// Cells.

const mdl_PropertyColumn& mdl_PropertyTable::Column(int column) const {
    if (column < 0 || column >= Columns()) {
        cow_ThrowIndex(column, Columns());
    }
    return _table.columns[static_cast<std::size_t>(column)];
}

int mdl_PropertyTable::FindColumn(const cow_String& name) const {
    const auto found = std::ranges::find(_table.columns, name, &mdl_PropertyColumn::name);
    return found == _table.columns.end() ? -1 : static_cast<int>(found - _table.columns.begin());
}

void mdl_PropertyTable::CheckRow(int row, int end) const {
    if (row < 0 || row >= end) {
        cow_ThrowIndex(row, end);
    }
}

void mdl_PropertyTable::CheckHasColumns() const {
    if (Columns() == 0) {
        omu_ValueErrorException("The table has no columns.").Throw(kSource, __LINE__);
    }
}

void mdl_PropertyTable::CheckCell(int row, int column) const {
    CheckRow(row, Rows());
    static_cast<void>(Column(column));
    if (row == 0 && HasEmptyFirstRow()) {
        omu_ValueErrorException("The first row is empty.").Throw(kSource, __LINE__);
    }
}

template <class T>
const T& mdl_PropertyTable::ConstGet(int row, int column) const {
    CheckCell(row, column);
    const auto* cells = std::get_if<cow_1DArrayList<T>>(&Column(column).cells);
    if (cells == nullptr) {
        nex_TextException(
            atr_String::Format("Column '%s' is of another type.", Column(column).name))
            .Throw(kSource, __LINE__);
    }
    return cells->ConstGet(row);
}

template <class T>
void mdl_PropertyTable::Set(int row, int column, const T& value) {
    static_cast<void>(ConstGet<T>(row, column));
    T kept(value);  // it may be a cell of this table
    auto& cells = _table.columns[static_cast<std::size_t>(column)].cells;
    std::get<cow_1DArrayList<T>>(cells).Get(row) = std::move(kept);
}

template const int& mdl_PropertyTable::ConstGet(int, int) const;
template const double& mdl_PropertyTable::ConstGet(int, int) const;
template const cow_String& mdl_PropertyTable::ConstGet(int, int) const;
template void mdl_PropertyTable::Set(int, int, const int&);
template void mdl_PropertyTable::Set(int, int, const double&);
template void mdl_PropertyTable::Set(int, int, const cow_String&);

// Rows.

omu_PrimTuple mdl_PropertyTable::Row(int row) const {
    CheckRow(row, Rows());
    const bool isEmpty = row == 0 && HasEmptyFirstRow();
    omu_PrimTuple values(isEmpty ? 0 : Columns(), omu_PrimSequence::kCode);
    for (int column = 0; column < values.Length(); ++column) {
        std::visit([&](const auto& cells) { values.Put(cells.ConstGet(row)); },
                   Column(column).cells);
    }
    return values;
}

/// Columns of one row each, the values as each column takes them.
std::vector<mdl_PropertyColumn> mdl_PropertyTable::Converted(const omu_PrimTuple& values) const {
    std::vector<mdl_PropertyColumn> row;
    row.reserve(_table.columns.size());
    omu_PrimTuple reader(values);
    reader.Begin();
    for (const mdl_PropertyColumn& column : _table.columns) {
        std::visit(
            [&](auto& cells) {
                ElementOf<decltype(cells)> value{};
                reader.Get(value);
                cells.Append(std::move(value));
            },
            row.emplace_back(column.name, column.Type()).cells);
    }
    reader.End();
    return row;
}

void mdl_PropertyTable::InsertRow(int row, const omu_PrimTuple& values) {
    CheckRow(row, Rows() + 1);
    CheckHasColumns();
    if (row == 0 && HasEmptyFirstRow()) {
        omu_ValueErrorException("Only the first row can be empty.").Throw(kSource, __LINE__);
    }
    const std::vector<mdl_PropertyColumn> added = Converted(values);
    std::size_t done = 0;
    try {
        for (; done < added.size(); ++done) {
            std::visit(
                [&](auto& cells) {
                    const auto& source =
                        std::get<std::remove_cvref_t<decltype(cells)>>(added[done].cells);
                    cells.InsertAfter(row - 1, source.ConstGet(0));
                },
                _table.columns[done].cells);
        }
    } catch (...) {  // out of memory: the columns stay of one length
        while (done-- > 0) {
            std::visit([&](auto& cells) { cells.RemoveIndex(row); }, _table.columns[done].cells);
        }
        throw;
    }
    ++_table.rows;
}

void mdl_PropertyTable::SetRow(int row, const omu_PrimTuple& values) {
    CheckRow(row, Rows());
    std::vector<mdl_PropertyColumn> given = Converted(values);
    // Whatever is shared is detached before anything changes.
    for (mdl_PropertyColumn& column : _table.columns) {
        std::visit([row](auto& cells) { static_cast<void>(cells.Get(row)); }, column.cells);
    }
    for (std::size_t column = 0; column < given.size(); ++column) {
        std::visit(
            [&](auto& cells) {
                auto& source = std::get<std::remove_cvref_t<decltype(cells)>>(given[column].cells);
                cells.Get(row) = std::move(source.Get(0));
            },
            _table.columns[column].cells);
    }
    _table.hasEmptyFirstRow = _table.hasEmptyFirstRow && row != 0;
}

void mdl_PropertyTable::AddEmptyFirstRow() {
    CheckHasColumns();
    if (!AllowsEmptyFirstRow() || HasEmptyFirstRow()) {
        omu_ValueErrorException(AllowsEmptyFirstRow() ? "The first row is empty already."
                                                      : "The table allows no empty row.")
            .Throw(kSource, __LINE__);
    }
    Content changed(_table);
    for (mdl_PropertyColumn& column : changed.columns) {
        std::visit([](auto& cells) { cells.InsertAfter(-1, {}); }, column.cells);
    }
    ++changed.rows;
    changed.hasEmptyFirstRow = true;
    _table = std::move(changed);
}

void mdl_PropertyTable::RemoveRow(int row) {
    CheckRow(row, Rows());
    Content changed(_table);
    for (mdl_PropertyColumn& column : changed.columns) {
        std::visit([row](auto& cells) { cells.RemoveIndex(row); }, column.cells);
    }
    --changed.rows;
    changed.hasEmptyFirstRow = changed.hasEmptyFirstRow && row != 0;
    _table = std::move(changed);
}

void mdl_PropertyTable::RemoveAllRows() noexcept {
    for (mdl_PropertyColumn& column : _table.columns) {
        std::visit([](auto& cells) { cells.Clear(); }, column.cells);
    }
    _table.rows = 0;
    _table.hasEmptyFirstRow = false;
}

void mdl_PropertyTable::Sort(const std::vector<SortKey>& keys) {
    for (const SortKey& key : keys) {
        static_cast<void>(Column(key.column));
    }
    std::vector<int> order(static_cast<std::size_t>(Rows()));
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin() + (HasEmptyFirstRow() ? 1 : 0), order.end(), [&](int a, int b) {
        for (const SortKey& key : keys) {
            const int compared =
                std::visit([=](const auto& cells) { return Compared(cells[a], cells[b]); },
                           Column(key.column).cells);
            if (compared != 0) {
                return key.isDescending ? compared > 0 : compared < 0;
            }
        }
        return false;
    });
    Content sorted(_table);
    for (mdl_PropertyColumn& column : sorted.columns) {
        std::visit(
            [&](auto& cells) {
                std::vector<ElementOf<decltype(cells)>> values;
                values.reserve(order.size());
                for (const int row : order) {
                    values.push_back(cells.ConstGet(row));
                }
                cells = std::remove_cvref_t<decltype(cells)>(std::span(std::as_const(values)));
            },
            column.cells);
    }
    _table = std::move(sorted);
}

void mdl_PropertyTable::AllowEmptyFirstRow(bool isAllowed) {
    if (!isAllowed && HasEmptyFirstRow()) {
        omu_ValueErrorException("The first row is empty.").Throw(kSource, __LINE__);
    }
    _allowEmptyFirstRow = isAllowed;
}

// Persistence.

namespace {

[[noreturn]] void RaiseNoTable(const char* why) {
    nex_TextException(atr_String::Format("mdl_PropertyTable: what is stored is no table: %s", why))
        .Throw(kSource, __LINE__);
}

omu_Primitive* StoredCells(const Cells& cells) {
    return std::visit(
        []<class T>(const cow_1DArrayList<T>& values) -> omu_Primitive* {
            if constexpr (std::is_arithmetic_v<T>) {
                return new omu_PrimArray(values.Values());
            } else {
                return omu_ValueTraits<cow_1DArrayList<T>>::Make(values);
            }
        },
        cells);
}

/// The value at \p index where it is there, and of class T.
template <class T>
const T* ValueAt(const omu_PrimTuple& tuple, int index) {
    const omu_Primitive* value = index < tuple.Length() ? tuple.Index(index) : nullptr;
    return value == nullptr ? nullptr : omu_PrimCast<T>(*value);
}

Cells ReadCells(const omu_PrimTuple& column) {
    if (const auto* numbers = ValueAt<omu_PrimArray>(column, 1)) {
        switch (numbers->ElementType()) {
            case omu_PrimNumber::INT:
                return cow_1DArrayList<int>(numbers->Ints());
            case omu_PrimNumber::DOUBLE:
                return cow_1DArrayList<double>(numbers->Doubles());
            default:
                RaiseNoTable("numbers of another kind than integers and doubles");
        }
    }
    cow_1DArrayList<cow_String> texts;
    const omu_Primitive* stored = column.Index(1);
    if (stored == nullptr ||
        !omu_ValueTraits<cow_1DArrayList<cow_String>>::Convert(*stored, texts)) {
        RaiseNoTable("cells that are neither numbers nor strings");
    }
    return texts;
}

}  // namespace

void mdl_PropertyTable::TableField::Write(const cls_WriteVisitor& visitor, const char* name,
                                          const Content& table) {
    omu_PrimTuple stored(1 + static_cast<int>(table.columns.size()), omu_PrimSequence::kCode);
    stored.Put(table.hasEmptyFirstRow);
    for (const mdl_PropertyColumn& column : table.columns) {
        omu_PrimTuple pair(2, omu_PrimSequence::kCode);
        pair.Put(column.name);
        pair.Put(StoredCells(column.cells));
        stored.Put(pair);
    }
    visitor.WriteObject(name, cls_ObjectRef::Of(&stored));
}

void mdl_PropertyTable::TableField::Read(const cls_ReadVisitor& visitor, const char* name,
                                         Content& table) {
    const std::unique_ptr<omu_Primitive> object(
        static_cast<omu_Primitive*>(visitor.ReadObject(name, omu_PrimTuple::TypeId())));
    const omu_PrimTuple* stored =
        object == nullptr ? nullptr : omu_PrimCast<omu_PrimTuple>(*object);
    const auto* isEmpty = stored == nullptr ? nullptr : ValueAt<omu_PrimBoolean>(*stored, 0);
    if (isEmpty == nullptr) {
        RaiseNoTable("not a tuple that begins with a Boolean");
    }
    Content read;
    for (int i = 1; i < stored->Length(); ++i) {
        const auto* pair = ValueAt<omu_PrimTuple>(*stored, i);
        const auto* columnName =
            pair == nullptr || pair->Length() != 2 ? nullptr : ValueAt<omu_PrimString>(*pair, 0);
        if (columnName == nullptr) {
            RaiseNoTable("a column that is not a name with cells");
        }
        mdl_PropertyColumn column(columnName->Text(), mdl_ColumnType::Float);
        column.cells = ReadCells(*pair);
        const int rows = std::visit([](const auto& cells) { return cells.Length(); }, column.cells);
        if (i > 1 && rows != read.rows) {
            RaiseNoTable("columns of different lengths");
        }
        if (std::ranges::find(read.columns, column.name, &mdl_PropertyColumn::name) !=
            read.columns.end()) {
            RaiseNoTable("two columns of one name");
        }
        read.rows = rows;
        read.columns.push_back(std::move(column));
    }
    read.hasEmptyFirstRow = isEmpty->Value();
    if (read.hasEmptyFirstRow && read.rows == 0) {
        RaiseNoTable("an empty first row that is not there");
    }
    table = std::move(read);
}
