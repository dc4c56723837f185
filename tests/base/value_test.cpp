#include "base/value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>

#include "base/members.h"

namespace zuvi {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
const double kNaN = std::numeric_limits<double>::quiet_NaN();

/// The number of the error that `call` throws; nothing when it throws none.
template <class Call>
std::optional<ErrorNumber> ErrorOf(Call&& call) {
  try {
    call();
    return std::nullopt;
  } catch (const HostError& e) {
    EXPECT_EQ(e.what(), DescripcionDe(e.Number()));
    return e.Number();
  }
}

/// An object with a default value, which may be itself.
class Caja final : public Object {
 public:
  explicit Caja(Value value) : value_(std::move(value)) {}
  Value Default() override { return value_; }

 private:
  Value value_;
};

TEST(Rounding, GoesToTheEvenNeighbourAndStopsAtTheEdges) {
  const std::pair<double, std::int32_t> cases[] = {{0.5, 0},
                                                   {1.5, 2},
                                                   {2.5, 2},
                                                   {3.5, 4},
                                                   {-0.5, 0},
                                                   {-1.5, -2},
                                                   {-2.5, -2},
                                                   {2.4999999999, 2},
                                                   {1e-320, 0},
                                                   {2147483646.5, 2147483646},
                                                   {2147483647.49, 2147483647},
                                                   {-2147483648.5, INT32_MIN}};
  for (const auto& [number, expected] : cases) EXPECT_EQ(RedondeaA32(number), expected) << number;
  for (const double number : {2147483647.5, -2147483649.0, 1e300, kInf, -kInf, kNaN})
    EXPECT_EQ(ErrorOf([&] { RedondeaA32(number); }), ErrorNumber::Overflow) << number;
  EXPECT_EQ(RedondeaA16(32767.4), 32767);
  EXPECT_EQ(RedondeaA16(-32768.5), INT16_MIN);
  for (const double number : {32767.5, -32769.0, kNaN})
    EXPECT_EQ(ErrorOf([&] { RedondeaA16(number); }), ErrorNumber::Overflow) << number;
}

TEST(NumberFromText, TakesADecimalPointUnderEveryLocaleAndNothingElse) {
  const std::pair<const char*, double> good[] = {{"0", 0},
                                                 {"  12  ", 12},
                                                 {"+3.5", 3.5},
                                                 {"-.5", -0.5},
                                                 {"1.", 1},
                                                 {"1e3", 1000},
                                                 {"1E-2", 0.01},
                                                 {"2147483648", 2147483648.0},
                                                 {"5e-324", 5e-324},
                                                 {"1e-400", 0},
                                                 {"-1e-400", 0},
                                                 {"1.7976931348623157e308", 1.7976931348623157e308},
                                                 {"00000000000000000000000000000000000000012", 12}};
  for (const auto& [text, expected] : good) EXPECT_EQ(NumeroDeTexto(text), expected) << text;
  for (const char* text : {"",  " ",     "abc", "1,5", "1 5",  "0x10", "1e", "--1", "+-1", "++1",
                           "+", "1.5.2", "inf", "nan", "-inf", "1e+",  "5%", "\t5", "5\n", "٣"})
    EXPECT_EQ(ErrorOf([&] { NumeroDeTexto(text); }), ErrorNumber::TypeMismatch) << text;
  for (const char* text : {"1e309", "-1e400"})
    EXPECT_EQ(ErrorOf([&] { NumeroDeTexto(text); }), ErrorNumber::Overflow) << text;
  EXPECT_EQ(ErrorOf([] { NumeroDeTexto(std::string_view("1\0", 2)); }), ErrorNumber::TypeMismatch);
}

TEST(TextFromNumber, HasFifteenDigitsAndAPoint) {
  const std::pair<double, const char*> cases[] = {{0, "0"},
                                                  {-0.0, "0"},
                                                  {2.5, "2.5"},
                                                  {0.1 + 0.2, "0.3"},
                                                  {1.0 / 3, "0.333333333333333"},
                                                  {-1e15, "-1E+15"},
                                                  {1e300, "1E+300"},
                                                  {123456789012345, "123456789012345"},
                                                  {100000, "100000"},
                                                  {kInf, "Inf"},
                                                  {-kInf, "-Inf"},
                                                  {kNaN, "NaN"}};
  for (const auto& [number, expected] : cases) EXPECT_EQ(TextoDeNumero(number), expected);
  EXPECT_EQ(Decimal(INT32_MIN), "-2147483648");
  // What is written can be read again.
  for (const double number : {0.1, -2.5e-9, 1e22, 5e-324})
    EXPECT_NEAR(NumeroDeTexto(TextoDeNumero(number)) / number, 1, 1e-14) << number;
}

TEST(Value, AmountsHaveThousandsAndTwoDecimals) {
  const std::pair<double, const char*> cases[] = {
      {0, "0.00"},
      {-0.0, "0.00"},
      {0.004, "0.00"},
      {-0.004, "0.00"},
      {0.005, "0.01"},
      {-0.005, "-0.01"},
      {1.005, "1.01"},
      {9.995, "10.00"},
      {999.994, "999.99"},
      {999.995, "1,000.00"},
      {-1234.5, "-1,234.50"},
      {999999999.999, "1,000,000,000.00"},
      {1e-300, "0.00"},
      {0.05, "0.05"},
      {123456789012345.0, "123,456,789,012,345.00"},
      {1e18, "1,000,000,000,000,000,000.00"},
  };
  for (const auto& [number, expected] : cases) EXPECT_EQ(TextoConMiles(number), expected);
  EXPECT_EQ(TextoConMiles(std::numeric_limits<double>::max()).size(), 309u + 102u + 3u);
  EXPECT_EQ(TextoConMiles(std::numeric_limits<double>::infinity()), "Inf");
  EXPECT_EQ(TextoConMiles(std::numeric_limits<double>::quiet_NaN()), "NaN");
}

TEST(Conversions, FollowTheRulesOfAutomation) {
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
                    {Fecha::DesdeSerie(45931), 45931, true, "2025-10-01"},
                    {caja(3), 3, true, "3"}};
  for (const auto& c : good) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(ANumero(c.value), c.number);
    EXPECT_EQ(ABooleano(c.value), c.boolean);
    EXPECT_EQ(ATexto(c.value), c.text);
    EXPECT_EQ(AEntero32(c.value), RedondeaA32(c.number));
  }
  EXPECT_EQ(AEntero16("3.5"), 4);
  EXPECT_TRUE(ABooleano("tRUE"));
  EXPECT_FALSE(ABooleano("FALSE"));

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
    EXPECT_EQ(ErrorOf([&] { ANumero(c.value); }), c.number);
    EXPECT_EQ(ErrorOf([&] { AEntero32(c.value); }), c.number);
    EXPECT_EQ(ErrorOf([&] { AEntero16(c.value); }), c.number);
    EXPECT_EQ(ErrorOf([&] { ABooleano(c.value); }), c.number);
    EXPECT_EQ(ErrorOf([&] { AFecha(c.value); }), c.number);
    EXPECT_EQ(ErrorOf([&] { ATexto(c.value); }),
              c.value == Value("abc") ? std::nullopt : std::optional(c.number));
  }
  EXPECT_EQ(ErrorOf([] { AEntero16(40000); }), ErrorNumber::Overflow);
}

TEST(Conversions, ObjectsAreReferencesOrNothing) {
  EXPECT_EQ(AObjeto(ObjectPtr()), nullptr);
  for (const Value& value : {Value(), Value(Null{}), Value(0), Value("")})
    EXPECT_EQ(ErrorOf([&] { AObjeto(value); }), ErrorNumber::TypeMismatch);
  // As an argument, one that is left out is Nothing.
  EXPECT_EQ(Conversion<ObjectPtr>::From(Value()), nullptr);
  EXPECT_EQ(AFecha("2025-10-01"), Fecha::DesdeSerie(45931));
  EXPECT_EQ(AFecha(45931), Fecha::DesdeSerie(45931));
}

}  // namespace
}  // namespace zuvi
