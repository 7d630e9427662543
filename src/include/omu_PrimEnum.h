#pragma once

#include "omu_ErrorExceptions.h"
#include "omu_PrimEnumBase.h"
#include "omu_PrimNumber.h"

#include <string_view>

/// One permissible constant of an enumeration.
template <class E>
struct omu_EnumEntry {
    const char* name;  ///< null ends a table
    E value;
};

/// The names of enumeration E; specialise it with `static constexpr omu_EnumEntry<E> kEntries[]`,
/// ended by an entry with a null name. N tells several sets of names for one type apart.
template <class E, int N>
struct omu_EnumTable;

/// A symbolic constant bound to a value of the native enumeration E.
///
/// Name and value always agree: both come from one entry of the table. Every constructor but the
/// copy checks its argument and raises omu_ValueErrorException where the table does not have it.
template <class E, int N>
class CAE_API omu_PrimEnum : public omu_PrimEnumBase {
public:
    using Base = omu_PrimEnumBase;

    explicit omu_PrimEnum(const E& value) : _value() {
        Check(SetValue(value), "omu_PrimEnum(Enum) - Enum value not allowed: %d  Permissible: %s",
              54, static_cast<int>(value), *this);
    }
    explicit omu_PrimEnum(const omu_PrimEnumBase& constant) : _value() {
        // Of the four messages this alone does not list what is permissible.
        Check(TakeName(constant.Name()),
              "omu_PrimEnum(const omu_PrimEnumBase&) - str not allowed: %s", 67,
              constant.GetString(), *this);
    }
    explicit omu_PrimEnum(const cow_String& name) : _value() {
        Check(TakeName(name),
              "omu_PrimEnum(const cow_String&) - str not allowed: %s  Permissible: %s", 81, name,
              *this);
    }
    explicit omu_PrimEnum(const char* name) : omu_PrimEnum(cow_String(name)) {}
    explicit omu_PrimEnum(const cls_ReadVisitor& visitor) : omu_PrimEnumBase(visitor), _value() {
        const cow_String name = Name();
        Check(TakeName(name),
              "omu_PrimEnum(const cls_ReadVisitor&) - str not allowed: %s  Permissible: %s", 95,
              name, *this);
    }
    omu_PrimEnum(const omu_PrimEnum&) = default;
    omu_PrimEnum& operator=(const omu_PrimEnum&) = default;
    ~omu_PrimEnum() override = default;

    [[nodiscard]] omu_Primitive* Copy() const override { return new omu_PrimEnum(*this); }

    bool SetValue(const char* name) override { return name != nullptr && TakeName(name); }
    /// Takes the first constant of that value; false, and nothing changed, where there is none.
    bool SetValue(const E& value) {
        return Take([value](const Entry& entry) { return entry.value == value; });
    }
    [[nodiscard]] cow_Map<cow_String, unsigned int> PermissibleValues() const override {
        cow_Map<cow_String, unsigned int> values;
        for (const Entry* entry = kEntries; entry->name != nullptr; ++entry) {
            values.InsertUnlessMember(entry->name, static_cast<unsigned int>(entry->value));
        }
        return values;
    }

    operator E() const noexcept { return _value; }

private:
    using Entry = omu_EnumEntry<E>;
    static constexpr const Entry* kEntries = omu_EnumTable<E, N>::kEntries;

    bool TakeName(std::string_view name) {
        return Take([name](const Entry& entry) { return entry.name == name; });
    }
    template <class Matches>
    bool Take(Matches matches) {
        for (const Entry* entry = kEntries; entry->name != nullptr; ++entry) {
            if (matches(*entry)) {
                StoreName(entry->name);
                _value = entry->value;
                return true;
            }
        }
        return false;
    }

    template <class Given>
    static void Check(bool allowed, const char* message, int line, const Given& given,
                      const omu_PrimEnum& self) {
        if (!allowed) {
            omu_ValueErrorException(
                atr_String::Format(message, given, self.PermissibleValuesAsString()))
                .Throw("generated/include/omu_PrimEnum", line);
        }
    }

    E _value;
};

/// Which pair of words a Boolean setting is shown with.
enum omu_BoolSelectEnum { omu_BOOL_ON_OFF = 0, omu_BOOL_TRUE_FALSE = 1 };

template <>
struct omu_EnumTable<bool, 2> {
    static constexpr omu_EnumEntry<bool> kEntries[] = {
        {"ON", true}, {"OFF", false}, {nullptr, false}};
};

template <>
struct omu_EnumTable<omu_BoolSelectEnum, 1> {
    static constexpr omu_EnumEntry<omu_BoolSelectEnum> kEntries[] = {
        {"ON_OFF", omu_BOOL_ON_OFF},
        {"TRUE_FALSE", omu_BOOL_TRUE_FALSE},
        {nullptr, omu_BOOL_ON_OFF}};
};

template <>
struct omu_EnumTable<omu_PrimNumber::DataTypeEnm, 1> {
    static constexpr omu_EnumEntry<omu_PrimNumber::DataTypeEnm> kEntries[] = {
        {"SCHAR", omu_PrimNumber::SCHAR},   {"SHORT", omu_PrimNumber::SHORT},
        {"INT", omu_PrimNumber::INT},       {"FLOAT", omu_PrimNumber::FLOAT},
        {"DOUBLE", omu_PrimNumber::DOUBLE}, {"UINT", omu_PrimNumber::UINT},
        {nullptr, omu_PrimNumber::SCHAR}};
};

extern template class CAE_API omu_PrimEnum<bool, 2>;
extern template class CAE_API omu_PrimEnum<omu_BoolSelectEnum, 1>;
extern template class CAE_API omu_PrimEnum<omu_PrimNumber::DataTypeEnm, 1>;
