#pragma once

#include "CaeUtilsExport.h"
#include "cls_Fields.h"
#include "cow_1DArrayList.h"
#include "omu_PrimTuple.h"

#include <initializer_list>
#include <variant>
#include <vector>

/// The type of a table's column. The numbers are those of the alternatives of mdl_PropertyColumn.
enum class mdl_ColumnType : int { Integer = 0, Float = 1, String = 2 };

/// A column: its name and its cells, one a row, whose type is the column's.
struct CAE_API mdl_PropertyColumn {
    using Cells =
        std::variant<cow_1DArrayList<int>, cow_1DArrayList<double>, cow_1DArrayList<cow_String>>;

    mdl_PropertyColumn(cow_String columnName, mdl_ColumnType type);

    [[nodiscard]] mdl_ColumnType Type() const noexcept {
        return static_cast<mdl_ColumnType>(cells.index());
    }
    bool operator==(const mdl_PropertyColumn&) const = default;

    cow_String name;
    Cells cells;
};

/// A table of a property: typed columns, and rows of one value a column, such as stiffness by
/// temperature.
///
/// Rows are complete, but where the table allows it the first one may be empty: it stands for "as
/// without the table" and stays the first through sorting. Script errors (a row of the wrong length
/// or type, an empty row out of place) are raised as such, wrong indices as std::out_of_range, a
/// cell asked for as another type as nex_TextException; nothing has changed then. Copies share
/// columns until one is written to, and stay in one thread with the table.
class CAE_API mdl_PropertyTable : public mem_AllocationOperators {
public:
    static constexpr cls_ClassInfo kClass{"mdl_PropertyTable", 0x0A0012, 1, 453};
    static constexpr unsigned TypeId() noexcept { return kClass.typeId; }

    /// How rows are sorted by one column; a NaN counts as larger than every number.
    struct SortKey {
        int column;
        bool isDescending = false;
    };

    /// Columns like the given ones, without rows. They may not have equal names:
    /// omu_ValueErrorException.
    explicit mdl_PropertyTable(const std::vector<mdl_PropertyColumn>& columns = {},
                               bool allowEmptyFirstRow = false);
    /// Raises nex_TextException where what is stored is not a table.
    explicit mdl_PropertyTable(const cls_ReadVisitor& visitor);
    mdl_PropertyTable(const mdl_PropertyTable&) = default;
    mdl_PropertyTable& operator=(const mdl_PropertyTable&) = default;
    virtual ~mdl_PropertyTable();

    [[nodiscard]] virtual unsigned DynTypeId() const { return TypeId(); }
    virtual void DBWrite(const cls_WriteVisitor& visitor) const;
    /// Gives the table a fresh persistent identity, which copies keep.
    virtual void NewUid() { _uid = cls_Uid::AllocateUid(); }
    static void InitializeMetadata(cls_ClassRegistrar& registrar);
    [[nodiscard]] const cls_Uid& GetUid() const noexcept { return _uid; }

    [[nodiscard]] int Rows() const noexcept { return _table.rows; }
    [[nodiscard]] int Columns() const noexcept { return static_cast<int>(_table.columns.size()); }
    [[nodiscard]] const mdl_PropertyColumn& Column(int column) const;
    /// Index of the column of that name, or -1.
    [[nodiscard]] int FindColumn(const cow_String& name) const;
    /// The cell, T being int, double or cow_String as its column is. An empty row has none:
    /// omu_ValueErrorException.
    template <class T>
    [[nodiscard]] const T& ConstGet(int row, int column) const;
    template <class T>
    void Set(int row, int column, const T& value);
    /// The values of a row; empty for the empty one.
    [[nodiscard]] omu_PrimTuple Row(int row) const;

    /// Adds a row behind the last one.
    void AddRow(const omu_PrimTuple& values) { InsertRow(Rows(), values); }
    /// Adds a row before row \p row in [0, Rows()]. Before an empty row there is no place:
    /// omu_ValueErrorException. Integers are taken for floats as well.
    void InsertRow(int row, const omu_PrimTuple& values);
    /// Replaces a row; the empty one then is like any other.
    void SetRow(int row, const omu_PrimTuple& values);
    /// Adds the empty row before the first one; omu_ValueErrorException unless the table allows it
    /// and has none yet.
    void AddEmptyFirstRow();
    void RemoveRow(int row);
    void RemoveAllRows() noexcept;
    /// Sorts by the first key, rows equal there by the next; rows equal in all keep their order.
    /// Text sorts by its bytes.
    void Sort(const std::vector<SortKey>& keys);

    [[nodiscard]] bool AllowsEmptyFirstRow() const noexcept { return _allowEmptyFirstRow; }
    /// Forbidding it while there is one raises omu_ValueErrorException.
    void AllowEmptyFirstRow(bool isAllowed);
    [[nodiscard]] bool HasEmptyFirstRow() const noexcept { return _table.hasEmptyFirstRow; }

    /// Same columns, same rows; whether an empty row is allowed counts too, the identity does not.
    bool operator==(const mdl_PropertyTable& other) const {
        return _allowEmptyFirstRow == other._allowEmptyFirstRow && _table == other._table;
    }

private:
    friend struct cls_Access;

    /// What is stored as one object: a tuple of a Boolean, whether the first row is empty, and of
    /// one tuple a column, its name and its cells (an array of numbers, or a tuple of strings).
    struct Content {
        std::vector<mdl_PropertyColumn> columns;
        int rows = 0;
        bool hasEmptyFirstRow = false;  // each column holds a zero there

        bool operator==(const Content&) const = default;
    };
    struct CAE_API TableField {
        static constexpr cls_AttributeType kType = cls_AttributeType::Object;
        static constexpr unsigned kClassId = omu_PrimTuple::TypeId();
        static constexpr cls_CollectionType kCollection = cls_CollectionType::Single;

        static void Write(const cls_WriteVisitor& visitor, const char* name, const Content& table);
        static void Read(const cls_ReadVisitor& visitor, const char* name, Content& table);
    };
    static constexpr auto Fields() {
        using Self = mdl_PropertyTable;
        return std::tuple(cls_Field("allowEmptyFirstRow", &Self::_allowEmptyFirstRow),
                          cls_Field<Self, Content, TableField>("table", &Self::_table));
    }

    void CheckRow(int row, int end) const;
    void CheckHasColumns() const;
    void CheckCell(int row, int column) const;
    [[nodiscard]] std::vector<mdl_PropertyColumn> Converted(const omu_PrimTuple& values) const;

    bool _allowEmptyFirstRow = false;
    Content _table;
    cls_Uid _uid;
};

extern template CAE_API const int& mdl_PropertyTable::ConstGet(int, int) const;
extern template CAE_API const double& mdl_PropertyTable::ConstGet(int, int) const;
extern template CAE_API const cow_String& mdl_PropertyTable::ConstGet(int, int) const;
extern template CAE_API void mdl_PropertyTable::Set(int, int, const int&);
extern template CAE_API void mdl_PropertyTable::Set(int, int, const double&);
extern template CAE_API void mdl_PropertyTable::Set(int, int, const cow_String&);
