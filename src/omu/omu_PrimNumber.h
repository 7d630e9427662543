#pragma once

#include "omu_PrimLevel.h"

#include <cstddef>

/// An integer (kind 'i') or floating-point number (kind 'f').
///
/// Every number keeps its value as a double; an unsigned one keeps its exact value beside it. The
/// data type says which storage type the number came from or is meant for.
class CAE_API omu_PrimNumber : public omu_PrimLevel<omu_PrimNumber, omu_Primitive> {
public:
    static constexpr cls_ClassInfo kClass{"omu_PrimNumber", 0x130016, 0x130011, 835};

    enum DataTypeEnm : int { SCHAR = 0, SHORT = 1, INT = 2, FLOAT = 3, DOUBLE = 4, UINT = 5 };

    /// Room that FormatDouble needs at most.
    static constexpr std::size_t kTextRoom = 40;

    /// Kind 'i' with the data type of the argument.
    explicit omu_PrimNumber(signed char value) noexcept : omu_PrimNumber('i', value, SCHAR) {}
    explicit omu_PrimNumber(short value) noexcept : omu_PrimNumber('i', value, SHORT) {}
    explicit omu_PrimNumber(int value) noexcept : omu_PrimNumber('i', value, INT) {}
    explicit omu_PrimNumber(unsigned int value) noexcept
        : omu_PrimNumber('i', value, UINT, value) {}
    /// Kind 'f', data type DOUBLE.
    explicit omu_PrimNumber(double value) noexcept : omu_PrimNumber('f', value, DOUBLE) {}
    /// Any combination. \p uvalue is the exact value of an unsigned number, otherwise 0.
    omu_PrimNumber(char kind, double value, DataTypeEnm dataType, unsigned int uvalue = 0) noexcept
        : omu_PrimLevel(kind), _value(value), _uvalue(uvalue), _dataType(dataType) {}
    explicit omu_PrimNumber(const cls_ReadVisitor& visitor);
    ~omu_PrimNumber() override;

    /// "float" for kind 'f', else "int".
    [[nodiscard]] cow_String TypeString() const override;
    [[nodiscard]] cow_String AsString(int depth) const override;
    /// Whether value and unsigned value are equal, whatever kind and data type; false for a value
    /// of another class. A NaN equals nothing, and unsigned 3 differs from int 3.
    bool operator==(const omu_Primitive& other) const override;

    [[nodiscard]] double Value() const noexcept { return _value; }
    [[nodiscard]] unsigned int UValue() const noexcept { return _uvalue; }
    [[nodiscard]] DataTypeEnm DataType() const noexcept { return _dataType; }
    /// The value truncated toward zero, its low 32 bits as a signed int; 0 for NaN and infinity.
    [[nodiscard]] int AsInt() const noexcept;

    /// Writes the text of the number into \p buffer (kTextRoom bytes) and returns its length.
    std::size_t Format(char* buffer) const noexcept;
    /// Writes the text of a float number: fifteen digits at most, with a point or an exponent.
    /// "3.0", "1e+20", "inf.0", "nan.0"; independent of locale and rounding mode.
    static std::size_t FormatDouble(double value, char* buffer) noexcept;

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        return std::tuple{cls_Field{"value", &omu_PrimNumber::_value},
                          cls_Field{"uvalue", &omu_PrimNumber::_uvalue},
                          cls_Field{"dataType", &omu_PrimNumber::_dataType}};
    }

    double _value;
    unsigned int _uvalue;
    DataTypeEnm _dataType;
    cls_Uid _uid;
};
