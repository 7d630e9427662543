#include "omu_PrimEnum.h"

#include "cls_MemoryStore.h"
#include "omu_PrimBool.h"
#include "test_Raised.h"

#include <gtest/gtest.h>

namespace {

using OnOff = omu_PrimEnum<bool, 2>;
using DataType = omu_PrimEnum<omu_PrimNumber::DataTypeEnm, 1>;

enum class Percent { Low = 1, High = 2 };

}  // namespace

/// Names that would be formats, and out of key order.
template <>
struct omu_EnumTable<Percent, 1> {
    static constexpr omu_EnumEntry<Percent> kEntries[] = {
        {"B%s", Percent::Low}, {"A%d", Percent::High}, {"C", Percent::High}, {nullptr, {}}};
};

namespace {

TEST(omu_PrimEnum, NamesAndValuesAgree) {
    OnOff value(true);
    EXPECT_STREQ(value.GetString(), "ON");
    EXPECT_TRUE(value);
    EXPECT_TRUE(value.SetValue("OFF"));
    EXPECT_FALSE(value);
    EXPECT_FALSE(value.SetValue("XYZ"));
    EXPECT_STREQ(value.GetString(), "OFF");
    EXPECT_FALSE(value.SetValue(nullptr));
    EXPECT_EQ(OnOff(omu_PrimEnumBase("ON")).AsString(9), "ON");
    EXPECT_FALSE(OnOff("OFF"));  // a literal is a name, not a truth value
    EXPECT_FALSE(omu_PrimBool<2>("OFF"));
    EXPECT_THROW(OnOff(cow_String(std::string("ON\0x", 4))), omu_ValueErrorException);

    using Strange = omu_PrimEnum<Percent, 1>;
    Strange first(Percent::High);  // of equal values the first entry stands
    EXPECT_STREQ(first.GetString(), "A%d");
    EXPECT_FALSE(first.SetValue(static_cast<Percent>(7)));
}

TEST(omu_PrimEnum, ListsWhatIsPermissibleInKeyOrder) {
    using Strange = omu_PrimEnum<Percent, 1>;
    EXPECT_EQ(OnOff(true).TypeString(), "OFF or ON");
    EXPECT_EQ(Strange(Percent::Low).TypeString(), "A%d, B%s or C");
    EXPECT_EQ(OnOff(true).PermissibleValuesAsString(), "{OFF: 0, ON: 1}");
    EXPECT_EQ(Strange(Percent::Low).PermissibleValuesAsString(), "{A%d: 2, B%s: 1, C: 2}");
    EXPECT_EQ(omu_PrimEnumBase("X").PermissibleValuesAsString(), "{}");
    EXPECT_EQ(omu_PrimEnumBase("X").TypeString(), "");
}

TEST(omu_PrimEnum, RefusesWhatTheTableLacks) {
    const std::string source = "generated/include/omu_PrimEnum:";
    EXPECT_EQ(test_Raised<omu_ValueErrorException>(
                  [] { DataType(static_cast<omu_PrimNumber::DataTypeEnm>(6)); }),
              source +
                  "54: omu_PrimEnum(Enum) - Enum value not allowed: 6  Permissible: {DOUBLE: 4, "
                  "FLOAT: 3, INT: 2, SCHAR: 0, SHORT: 1, UINT: 5}");
    EXPECT_EQ(test_Raised<omu_ValueErrorException>([] { OnOff(omu_PrimEnumBase("on")); }),
              source + "67: omu_PrimEnum(const omu_PrimEnumBase&) - str not allowed: on");
    EXPECT_EQ(test_Raised<omu_ValueErrorException>([] { OnOff(cow_String("on%s")); }),
              source +
                  "81: omu_PrimEnum(const cow_String&) - str not allowed: on%s  Permissible: "
                  "{OFF: 0, ON: 1}");
    cls_MemoryStore stored;
    stored.Write(omu_PrimEnumBase("maybe"));
    EXPECT_EQ(test_Raised<omu_ValueErrorException>([&] { OnOff{stored.Reader()}; }),
              source +
                  "95: omu_PrimEnum(const cls_ReadVisitor&) - str not allowed: maybe  "
                  "Permissible: {OFF: 0, ON: 1}");
}

TEST(omu_PrimEnum, ReportsTheBaseClassButOnOffItsOwn) {
    EXPECT_EQ(OnOff(true).DynTypeId(), 1245211U);
    EXPECT_EQ(omu_PrimBool<2>(true).DynTypeId(), 1245221U);
    const std::unique_ptr<omu_Primitive> copy(OnOff(true).Copy());
    EXPECT_NE(dynamic_cast<OnOff*>(copy.get()), nullptr);
}

}  // namespace
