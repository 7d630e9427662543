#include "UTI_CaeUtils.h"
#include "cls_MemoryStore.h"
#include "omu_PrimBool.h"
#include "omu_PrimBoolean.h"
#include "omu_PrimComplex.h"
#include "omu_PrimException.h"
#include "omu_PrimExpr.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_PrimPath.h"
#include "omu_PrimString.h"
#include "omu_PrimTranslatedString.h"
#include "omu_PrimTuple.h"
#include "omu_PrimType.h"
#include "omu_PrimVisitor.h"
#include "omu_PrimWrapper.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <vector>

namespace {

using Number = omu_PrimNumber;
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

std::string Text(const omu_Primitive& value) { return value.AsString(3).Std(); }

/// What the C locale's printf makes of a float, by the rules of the command language.
std::string PrintedFloat(double value) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.15g", value);
    std::string text = buffer;
    return text.find_first_of(".e") == std::string::npos ? text + ".0" : text;
}

TEST(omu_PrimNumber, PrintsIntegersByKindAndDataType) {
    const std::vector<std::pair<Number, std::string>> cases = {
        {Number(7), "7"},
        {Number(short{-5}), "-5"},
        {Number(std::numeric_limits<int>::min()), "-2147483648"},
        {Number(4294967295U), "4294967295"},
        {Number('i', 3.9, Number::INT), "3"},
        {Number('i', -3.9, Number::INT), "-3"},
        {Number('i', 4294967297.9, Number::INT), "1"},
        {Number('i', 2147483648.0, Number::INT), "-2147483648"},
        {Number('i', -4294967297.0, Number::INT), "-1"},
        {Number('i', std::ldexp(3.0, 70), Number::INT), "0"},
        {Number('i', kNan, Number::INT), "0"},
        {Number('i', -kInf, Number::INT), "0"},
        {Number('i', 9.0, Number::UINT, 12), "12"},
        {Number('f', 9.0, Number::UINT, 12), "9.0"},  // the kind beats the data type
        {Number('x', 2.5, Number::INT), "2.5"},       // only kind 'i' prints as an integer
    };
    for (const auto& [number, text] : cases) {
        EXPECT_EQ(Text(number), text);
    }
}

TEST(omu_PrimNumber, PrintsFloats) {
    const std::vector<std::pair<double, std::string>> cases = {
        {7.0, "7.0"},
        {0.1, "0.1"},
        {1e100, "1e+100"},
        {1e20, "1e+20"},
        {1.5e-7, "1.5e-07"},
        {-0.0, "-0.0"},
        {kInf, "inf.0"},
        {-kInf, "-inf.0"},
        {kNan, "nan.0"},
        {1.0 / 3.0, "0.333333333333333"},
        {999999999999999.5, "1e+15"},
        {2147483648.0, "2147483648.0"},
        {123456789012345.0, "123456789012345.0"},
    };
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(Text(Number(value)), text);
        EXPECT_EQ(omu_PrimString(value).Text(), text.c_str());
    }
}

TEST(omu_PrimNumber, PrintsAsTheCLocaleWhateverLocaleAndRounding) {
    const char* german = std::setlocale(LC_ALL, "de_DE.UTF-8");
    std::mt19937_64 random(20261121);
    for (int i = 0; i < 20000; ++i) {
        double value = 0.0;
        const std::uint64_t bits = random();
        std::memcpy(&value, &bits, sizeof value);
        if (i % 2 == 0) {
            value = static_cast<double>(static_cast<std::int64_t>(bits) >> (i % 50)) / 1000.0;
        }
        std::setlocale(LC_ALL, "C");
        const std::string expected = PrintedFloat(value);
        if (german != nullptr) {
            std::setlocale(LC_ALL, "de_DE.UTF-8");
        }
        for (const int mode : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
            std::fesetround(mode);
            const cow_String text = Number(value).AsString(0);
            std::fesetround(FE_TONEAREST);
            ASSERT_EQ(text.Std(), expected) << "bits " << bits << ", rounding " << mode;
        }
    }
    std::setlocale(LC_ALL, "C");
}

TEST(omu_PrimComplex, PrintsASignForAnImaginaryPartNotBelowZero) {
    EXPECT_EQ(Text(omu_PrimComplex({1.0, 2.0})), "1+2j");
    EXPECT_EQ(Text(omu_PrimComplex({0.5, -2.5})), "0.5-2.5j");
    EXPECT_EQ(Text(omu_PrimComplex({1.0, -0.0})), "1+-0j");
    EXPECT_EQ(Text(omu_PrimComplex({1.0, kNan})), "1+nanj");
    EXPECT_EQ(Text(omu_PrimComplex(omi_complex::FromPolar(2.0, 0.0))), "2+0j");
}

TEST(omu_PrimString, QuotesAsTheCommandLanguageReads) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"", "''"},
        {"abc", "'abc'"},
        {"it's", "\"it's\""},
        {"it's \"x\"", "'it\\'s \"x\"'"},
        {"say \"x\"", "'say \"x\"'"},
        {"a\\b\nc", "'a\\\\b\\nc'"},
        {"\\'", "\"\\\\'\""},
        {"tab\tcr\r", "'tab\tcr\r'"},
    };
    for (const auto& [text, quoted] : cases) {
        EXPECT_EQ(Text(omu_PrimString(cow_String(text))), quoted);
        EXPECT_EQ(Text(omu_PrimTranslatedString(atr_String(text))), quoted);
        EXPECT_EQ(omu_PrimString(cow_String(text)).AsRepr().Std(), quoted);
    }
    omu_PrimString joined("a");
    joined.Concat(omu_PrimString(-12));
    EXPECT_EQ(joined.Text(), "a-12");
    EXPECT_EQ(joined[1], '-');
    EXPECT_EQ(omu_PrimString(4000000000U).Text(), "4000000000");
    EXPECT_EQ(omu_PrimString(omu_PrimBool<2>(true)).Text(), "ON");
}

TEST(omu_PrimPath, TrimsEveryTrailingDot) {
    EXPECT_EQ(Text(omu_PrimPath({"a", "b"})), "'a.b'");
    EXPECT_EQ(Text(omu_PrimPath()), "''");
    EXPECT_EQ(Text(omu_PrimPath({"a", "b.."})), "'a.b'");
    EXPECT_EQ(Text(omu_PrimPath({".", "."})), "''");
}

TEST(omu_Primitives, NameTheirTypesAndPlainTexts) {
    EXPECT_EQ(Text(omu_PrimNone()), "None");
    EXPECT_EQ(Text(omu_PrimBoolean(true)), "True");
    EXPECT_EQ(Text(omu_PrimExpr("2*x")), "2*x");
    EXPECT_EQ(Text(omu_PrimType()), "Type");
    EXPECT_EQ(omu_PrimType().TypeString(), "type");
    EXPECT_EQ(omu_PrimNumber(1).TypeString(), "int");
    EXPECT_EQ(omu_PrimNumber(1.0).TypeString(), "float");
    EXPECT_EQ(omu_PrimTranslatedString().TypeString(), "tran_string");
    EXPECT_EQ(omu_PrimType::ConverStringToType("part"), omu_DISPLAY_UNKNOWN);
    EXPECT_EQ(omu_PrimType::ConverStringToType("DetailPlot"), omu_DISPLAY_DETAILPLOT);
    EXPECT_EQ(omu_PrimType::ConverTypeToString(omu_DISPLAY_XYPLOT), "XYPlot");
    EXPECT_EQ(omu_PrimType::ConverTypeToString(omu_DISPLAY_UNKNOWN), "");
}

/// One value of every concrete class, several of some.
std::vector<std::unique_ptr<omu_Primitive>> Samples() {
    std::vector<std::unique_ptr<omu_Primitive>> values;
    const auto add = [&](omu_Primitive* value) { values.emplace_back(value); };
    add(new omu_PrimNone);
    add(new omu_PrimBoolean(true));
    add(new omu_PrimNumber(3));
    add(new omu_PrimNumber(2.5));
    add(new omu_PrimNumber(4000000000U));
    add(new omu_PrimComplex({1.0, -2.0}));
    add(new omu_PrimString("text"));
    add(new omu_PrimTranslatedString("text"));
    add(new omu_PrimPath({"a", "b"}));
    add(new omu_PrimExpr("text"));
    add(new omu_PrimType);
    add(new omu_PrimEnumBase("text"));
    add(new omu_PrimBool<2>(false));
    add(new omu_PrimPath({"a", "b"}, 'n'));  // kind codes are no promise of a class
    add(new omu_PrimTuple(0, 'b'));
    return values;
}

TEST(omu_Primitives, EqualOnlyWhatTheirRulesSay) {
    const auto values = Samples();
    for (std::size_t i = 0; i < values.size(); ++i) {
        for (std::size_t j = 0; j < values.size(); ++j) {
            const bool equal = *values[i] == *values[j];
            const bool misfit = values[i]->IsType('n') && i != 0;  // a path of another kind code
            EXPECT_EQ(equal, i == j && !misfit) << i << " and " << j;
            EXPECT_EQ(*values[i] != *values[j], !equal);
        }
    }
    EXPECT_EQ(Number(3), Number(3.0));
    EXPECT_NE(Number(3), Number(3U));
    EXPECT_NE(Number(kNan), Number(kNan));
    EXPECT_EQ(omu_PrimBool<2>(true), omu_PrimEnumBase("ON"));
    EXPECT_NE(omu_PrimWrapper(), omu_PrimWrapper());
    const omu_PrimWrapper wrapper;
    EXPECT_NE(wrapper, wrapper);

    omu_PrimNone set;
    set.SetIsSet(true);
    const std::unique_ptr<omu_Primitive> copy(set.Copy());
    EXPECT_NE(set, *copy);  // the flag does not travel
}

TEST(omu_Primitives, CopyShareAndDetachAsTheirOwnClass) {
    for (auto& sample : Samples()) {
        const unsigned typeId = sample->DynTypeId();
        const omu_PrimHolder first(sample.release());
        omu_PrimHolder second = first;
        EXPECT_EQ(&first.ConstGet(), &second.ConstGet());
        EXPECT_NE(&second.Get(), &first.ConstGet());
        EXPECT_EQ(second.ConstGet().DynTypeId(), typeId);
        EXPECT_EQ(second.ConstGet().Kind(), first.ConstGet().Kind());
    }
}

std::unique_ptr<omu_Primitive> RoundTrip(const omu_Primitive& value) {
    cls_MemoryStore store;
    store.Write(value);
    return std::unique_ptr<omu_Primitive>(static_cast<omu_Primitive*>(store.Construct()));
}

TEST(omu_Primitives, SurviveTheStore) {
    int count = 0;
    UTI_CaeUtils_initialize(count);
    for (const auto& sample : Samples()) {
        const auto read = RoundTrip(*sample);
        ASSERT_NE(read, nullptr);
        EXPECT_EQ(read->DynTypeId(), sample->DynTypeId());
        EXPECT_EQ(read->Kind(), sample->Kind());
        EXPECT_EQ(Text(*read), Text(*sample));
        EXPECT_TRUE(sample->IsA(omu_Primitive::TypeId()));
        EXPECT_TRUE(sample->IsA(sample->DynTypeId()));
    }
    omu_PrimNone set;
    set.SetIsSet(true);
    EXPECT_EQ(*RoundTrip(set), set);
    EXPECT_TRUE(omu_PrimBool<2>(true).IsA(omu_PrimEnumBase::TypeId()));
    EXPECT_FALSE(omu_PrimNumber(1).IsA(omu_PrimEnumBase::TypeId()));
    EXPECT_FALSE(omu_PrimNumber(1).IsA(0x130099));
    UTI_CaeUtils_finalize(count);
}

TEST(omu_PrimVisitor, DispatchesAndFallsBackOnTheMoreGeneralOperation) {
    struct Recorder : omu_PrimVisitor {
        using omu_PrimVisitor::Visit;
        void Visit(const omu_PrimNumber&) override { seen += 'i'; }
        void Visit(const omu_PrimEnumBase&) override { seen += 'c'; }
        void VisitOther(const omu_Primitive& value) override { seen += value.Kind(); }
        std::string seen;
    } recorder;
    for (const auto& sample : Samples()) {
        sample->Accept(&recorder);
    }
    EXPECT_EQ(recorder.seen, "nbiiixslpetccnb");
}

TEST(omu_PrimException, RaisesTheCarriedExceptionAsItsOwnClass) {
    const omu_PrimException carried(omu_KeyErrorException("k%d"), "while reading");
    EXPECT_EQ(Text(carried), "omu_PrimException object");
    const std::unique_ptr<omu_Primitive> copy(carried.Copy());
    EXPECT_THROW(static_cast<omu_PrimException&>(*copy).Propagate(), omu_KeyErrorException);
}

}  // namespace
