#include "base/value.h"

#include <gtest/gtest.h>

#include <limits>

#include "base/date.h"
#include "base/members.h"
#include "base/stack.h"
#include "base/text.h"
#include "tests/support/errores.h"

namespace zuvi {
namespace {

using pruebas::EsperaError;

constexpr double kInf = std::numeric_limits<double>::infinity();
const double kNaN = std::numeric_limits<double>::quiet_NaN();

/// An object with a default value, which may be itself.
class Caja final : public Object {
 public:
  explicit Caja(Value value) : value_(std::move(value)) {}
  Value Default() override { return value_; }

 private:
  Value value_;
};

TEST(Redondeo, GoesToTheEvenNeighbourAndStopsAtTheEdges) {
  const std::pair<double, std::int32_t> cases[] = {{0.5, 0},
                                                   {1.5, 2},
                                                   {2.5, 2},
                                                   {-2.5, -2},
                                                   {2.4999999999, 2},
                                                   {2147483647.49, 2147483647},
                                                   {-2147483648.5, INT32_MIN}};
  for (const auto& [number, expected] : cases) EXPECT_EQ(RoundToInt32(number), expected) << number;
  for (const double number : {2147483647.5, -2147483649.0, kInf, -kInf, kNaN})
    EsperaError(ErrorNumber::Overflow, [&] { RoundToInt32(number); });
  EXPECT_EQ(RoundToInt16(32767.4), 32767);
  EXPECT_EQ(RoundToInt16(-32768.5), INT16_MIN);
  for (const double number : {32767.5, -32769.0, kNaN})
    EsperaError(ErrorNumber::Overflow, [&] { RoundToInt16(number); });
}

TEST(ParseNumber, TakesADecimalPointUnderEveryLocaleAndNothingElse) {
  const std::pair<std::string_view, double> good[] = {
      {"  12  ", 12},     {"+3.5", 3.5},  {"-.5", -0.5},
      {"1.", 1},          {"1E-2", 0.01}, {"2147483648", 2147483648.0},
      {"5e-324", 5e-324}, {"-1e-400", 0}, {"1.7976931348623157e308", 1.7976931348623157e308}};
  for (const auto& [text, expected] : good) EXPECT_EQ(ParseNumber(text), expected) << text;
  for (const std::string_view text :
       {"", " ", "abc", "1,5", "1 5", "0x10", "1e", "--1", "+-1", "+", "1.5.2", "inf", "nan", "5\n", "٣"}) {
    SCOPED_TRACE(text);
    EsperaError(ErrorNumber::TypeMismatch, [&] { ParseNumber(text); });
  }
  EsperaError(ErrorNumber::TypeMismatch, [] { ParseNumber(std::string_view("1\0", 2)); });
  for (const std::string_view text : {"1e309", "-1e400"})
    EsperaError(ErrorNumber::Overflow, [&] { ParseNumber(text); });
}

TEST(NumberText, HasFifteenDigitsAndAPoint) {
  const std::pair<double, const char*> cases[] = {
      {-0.0, "0"},         {-2.5, "-2.5"},  {0.1 + 0.2, "0.3"},     {1.0 / 3, "0.333333333333333"},
      {0.000001, "1E-06"}, {1e15, "1E+15"}, {1.000001, "1.000001"}, {123456789012345, "123456789012345"},
      {kInf, "Inf"},       {kNaN, "NaN"}};
  for (const auto& [number, expected] : cases) EXPECT_EQ(NumberText(number), expected);
  // What is written can be read again.
  for (const double number : {0.1, -2.5e-9, 1e22, 5e-324})
    EXPECT_NEAR(ParseNumber(NumberText(number)) / number, 1, 1e-14) << number;
  EXPECT_EQ(Decimal(INT32_MIN), "-2147483648");
}

TEST(NumberText, AmountsHaveThousandsAndTwoDecimals) {
  const std::pair<double, const char*> cases[] = {{0, "0.00"},
                                                  {-0.004, "0.00"},
                                                  {0.005, "0.01"},
                                                  {1.005, "1.01"},
                                                  {9.995, "10.00"},
                                                  {-1234.5, "-1,234.50"},
                                                  {-123456, "-123,456.00"},
                                                  {999999999.999, "1,000,000,000.00"},
                                                  {1e-300, "0.00"},
                                                  {1e18, "1,000,000,000,000,000,000.00"},
                                                  {kInf, "Inf"}};
  for (const auto& [number, expected] : cases) EXPECT_EQ(GroupedAmount(number), expected);
}

TEST(Conversiones, FollowTheRulesOfAutomation) {
  const auto caja = [](Value v) { return Value(std::make_shared<Caja>(std::move(v))); };
  struct {
    Value value;
    double number;
    bool boolean;
    std::string text;
  } const good[] = {{Empty{}, 0, false, ""},
                    {std::int16_t{-7}, -7, true, "-7"},
                    {std::int32_t{70000}, 70000, true, "70000"},
                    {2.5, 2.5, true, "2.5"},
                    {true, -1, true, "True"},
                    {false, 0, false, "False"},
                    {"12", 12, true, "12"},
                    {"0", 0, false, "0"},
                    {Date::FromSerial(45931), 45931, true, "2025-10-01"},
                    {caja(3), 3, true, "3"}};
  for (const auto& c : good) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(ToNumber(c.value), c.number);
    EXPECT_EQ(ToBool(c.value), c.boolean);
    EXPECT_EQ(ToText(c.value), c.text);
    EXPECT_EQ(ToInt32(c.value), RoundToInt32(c.number));
  }
  EXPECT_EQ(ToInt16("3.5"), 4);
  EXPECT_TRUE(ToBool("tRUE"));
  EXPECT_FALSE(ToBool("FALSE"));
  EXPECT_EQ(ToDate("2025-10-01"), Date::FromSerial(45931));
  EXPECT_EQ(ToDate(45931), Date::FromSerial(45931));

  struct {
    const char* name;
    Value value;
    ErrorNumber number;
  } const bad[] = {{"null", Null{}, ErrorNumber::InvalidUseOfNull},
                   {"text", "abc", ErrorNumber::TypeMismatch},
                   {"object of null", caja(Null{}), ErrorNumber::InvalidUseOfNull},
                   {"object of object", caja(caja(1)), ErrorNumber::TypeMismatch},
                   {"object without default", std::make_shared<Object>(), ErrorNumber::NoSuchMember},
                   {"nothing", ObjectPtr(), ErrorNumber::ObjectNotSet}};
  for (const auto& c : bad) {
    SCOPED_TRACE(c.name);
    EsperaError(c.number, [&] { ToNumber(c.value); });
    EsperaError(c.number, [&] { ToInt16(c.value); });
    EsperaError(c.number, [&] { ToBool(c.value); });
    EsperaError(c.number, [&] { ToDate(c.value); });
    if (c.value != Value("abc")) EsperaError(c.number, [&] { ToText(c.value); });
  }
  EsperaError(ErrorNumber::Overflow, [] { ToInt16(40000); });
  // An object is a reference or nothing; as an argument that is left out it is nothing too.
  EXPECT_EQ(ToObject(ObjectPtr()), nullptr);
  for (const Value& value : {Value(), Value(Null{}), Value(0), Value("")})
    EsperaError(ErrorNumber::TypeMismatch, [&] { ToObject(value); });
  EXPECT_EQ(Conversion<ObjectPtr>::From(Value()), nullptr);
}

TEST(Fechas, SeriesAndCalendarAgreeInBothDirections) {
  const std::pair<double, const char*> cases[] = {{0, "1899-12-30"},
                                                  {-1.25, "1899-12-29 06:00:00"},
                                                  {60, "1900-02-28"},
                                                  {61, "1900-03-01"},
                                                  {45351.5, "2024-02-29 12:00:00"},
                                                  {2958465, "9999-12-31"},
                                                  {-657434.5, "0100-01-01 12:00:00"}};
  for (const auto& [serie, texto] : cases) {
    EXPECT_EQ(Date::FromSerial(serie).Texto(), texto);
    EXPECT_EQ(Date::FromText(texto).Serial(), serie) << texto;
  }
  EXPECT_EQ(Date::FromText("2024-02-29T23:59").Texto(), "2024-02-29 23:59:00");
  EXPECT_EQ(Date::FromText("2024-02-29 23:59:58.75").Texto(), "2024-02-29 23:59:58");
  EXPECT_EQ(Date::FromSerial(-1.25).DayOnly(), Date::FromSerial(-1));
  // Seconds are rounded and may reach the next day, which the last one does not have.
  EXPECT_EQ(Date::FromSerial(1.9999999).Formatea("dd hh:mm:ss"), "01 00:00:00");
  EXPECT_EQ(Date::FromSerial(-1.9999999).Formatea("dd hh:mm:ss"), "30 00:00:00");
  EXPECT_EQ(Date::FromSerial(2958465.9999999).Texto(), "9999-12-31 23:59:59");
  EXPECT_EQ(Date::FromText("2025-03-04 15:06:07").Formatea("día d, 'dd/MM/yyyy' hh:mm:ss y %s"),
            "día d, '04/03/2025' 15:06:07 y %s");
}

TEST(Fechas, WhatIsNoDateIsRefused) {
  for (const double serie : {2958466.0, -657435.0, kNaN})
    EXPECT_THROW(Date::FromSerial(serie), HostError) << serie;
  for (const char* texto :
       {"", "2023-02-29", "2024-13-01", "20240101ab", "-024-01-01", "0099-12-31", "2024-01-01 24:00",
        "2024-01-01 10:60", "2024-01-01 10", "2024-01-01 10:0", "2024-01-01 10:00:5", "2024-01-01x10:00",
        "2024-01-01 10:00:00.", "2024-01-01 10:00:00.x", "2024-01-01 10:00Z"})
    EXPECT_THROW(Date::FromText(texto), HostError) << texto;
  // Of a month or a day the calendar's own types keep but a byte.
  for (const CivilDate& c : {CivilDate{2024, 257, 1}, {2024, 1, 257}, {67560, 1, 1}, {2024, 1, 1, -1}})
    EXPECT_THROW(Date::FromCivil(c), HostError) << c.anio << "-" << c.mes << "-" << c.dia;
}

TEST(Dates, MonthsEndWhereTheyEnd) {
  const struct {
    const char* from;
    std::int32_t months;
    const char* to;
    const char* end;
  } cases[] = {
      {"2024-01-31", 1, "2024-02-29", "2024-02-29"},   {"2023-03-30", -1, "2023-02-28", "2023-02-28"},
      {"2023-12-15", 1, "2024-01-15", "2024-01-31"},   {"1900-02-28", -2, "1899-12-28", "1899-12-31"},
      {"2000-02-29", -12, "1999-02-28", "1999-02-28"}, {"2024-04-30", 13, "2025-05-30", "2025-05-31"}};
  for (const auto& c : cases) {
    const Date moved = Date::FromText(c.from).PlusMonths(c.months);
    EXPECT_EQ(moved.Texto(), c.to) << c.from;
    EXPECT_EQ(moved.EndOfMonth().Texto(), c.end) << c.from;
  }
  EXPECT_THROW(Date::FromText("9999-12-31").PlusMonths(1), HostError);
  EXPECT_THROW(Date::FromText("0100-01-01").PlusDays(-1), HostError);
}

TEST(Utf, WhatIsValidGoesBothWays) {
  const std::pair<std::string, std::u16string> cases[] = {
      {"", u""},
      {"\xED\x9F\xBF\xEE\x80\x80", u"\xD7FF\xE000"},
      {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", u"\xD800\xDC00\xDBFF\xDFFF"},
      {"\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80", u"\x7F\x80\x7FF\x800"},
      {std::string("a\0ñ", 4), std::u16string(u"a\0ñ", 3)}};
  for (const auto& [utf8, utf16] : cases) {
    EXPECT_EQ(Utf16(utf8), utf16) << utf8;
    EXPECT_EQ(Utf8(utf16), utf8) << utf8;
  }
}

TEST(Utf, WhatIsBrokenBecomesReplacementAndSparesTheRest) {
  const std::u16string r = u"\xFFFD";
  const std::pair<std::string, std::u16string> broken8[] = {
      {"a\x80z", u"a" + r + u"z"}, {"\xC3(", r + u"("},         {"\xC0\xAF", r + r},
      {"\xE0\x80\xAF", r + r + r}, {"\xED\xA0\x80", r + r + r}, {"\xF4\x90\x80\x80", r + r + r + r},
      {"\xF5z", r + u"z"},         {"\xE2\x82", r + r},         {"\xE2\x82ñ", r + r + u"ñ"}};
  for (const auto& [utf8, utf16] : broken8) EXPECT_EQ(Utf16(utf8), utf16);
  const std::pair<std::u16string, std::string> broken16[] = {{u"\xDC00z", "\uFFFDz"},
                                                             {u"\xD800\xD800\xDC00", "\uFFFD\U00010000"},
                                                             {u"\xDC00\xD800", "\uFFFD\uFFFD"},
                                                             {u"\xD83Dñ", "\uFFFDñ"}};
  for (const auto& [utf16, utf8] : broken16) EXPECT_EQ(Utf8(utf16), utf8);
}

TEST(Textos, OnlyBlanksAreTrimmedAndOnlyAsciiFolds) {
  EXPECT_EQ(Trim("   "), "");
  EXPECT_EQ(Trim("\ta\n"), "\ta\n");
  EXPECT_EQ(ToLower("AZ@[Ñ"), "az@[Ñ");
  EXPECT_FALSE(EqualsIgnoringCase("Ñ", "ñ"));
  EXPECT_FALSE(EqualsIgnoringCase("a", "a "));
  EXPECT_FALSE(EqualsIgnoringCase("@", "`"));
}

TEST(Pila, RecursionStopsAtAShareOfWhateverStackThereIs) {
  constexpr std::uintptr_t kLow = 0x10000;
  constexpr std::size_t kKiB = 1024;
  const struct {
    std::size_t size, reserve;
  } stacks[] = {{8192 * kKiB, 256 * kKiB}, {1024 * kKiB, 256 * kKiB}, {1023 * kKiB, 1023 * kKiB / 4},
                {400 * kKiB, 100 * kKiB},  {256 * kKiB, 96 * kKiB},   {64 * kKiB, 96 * kKiB}};
  for (const auto& [size, reserve] : stacks) {
    const StackBounds stack{kLow, kLow + size};
    // What lies below has been set aside by the program: it is spent as well.
    for (const std::uintptr_t here : {kLow - 1, kLow, kLow + reserve - 1})
      EXPECT_TRUE(StackNearlySpent(stack, here)) << size;
    for (const std::uintptr_t here : {kLow + reserve, kLow + size + reserve})
      EXPECT_FALSE(StackNearlySpent(stack, here)) << size;
  }
  EXPECT_FALSE(StackNearlySpent({}, 0) || StackNearlySpent({}, kLow));
  // More set aside than is in use.
  EXPECT_TRUE(StackNearlySpent({kLow + 1, kLow}, kLow));
}

}  // namespace
}  // namespace zuvi
