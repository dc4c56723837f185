#include "base/value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "base/members.h"
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

TEST(Rounding, GoesToTheEvenNeighbourAndStopsAtTheEdges) {
  const std::pair<double, std::int32_t> cases[] = {{0.5, 0},
                                                   {1.5, 2},
                                                   {2.5, 2},
                                                   {-2.5, -2},
                                                   {2.4999999999, 2},
                                                   {2147483647.49, 2147483647},
                                                   {-2147483648.5, INT32_MIN}};
  for (const auto& [number, expected] : cases) EXPECT_EQ(RedondeaA32(number), expected) << number;
  for (const double number : {2147483647.5, -2147483649.0, kInf, -kInf, kNaN})
    EsperaError(ErrorNumber::Overflow, [&] { RedondeaA32(number); });
  EXPECT_EQ(RedondeaA16(32767.4), 32767);
  EXPECT_EQ(RedondeaA16(-32768.5), INT16_MIN);
  for (const double number : {32767.5, -32769.0, kNaN})
    EsperaError(ErrorNumber::Overflow, [&] { RedondeaA16(number); });
}

TEST(NumberFromText, TakesADecimalPointUnderEveryLocaleAndNothingElse) {
  const std::pair<std::string_view, double> good[] = {
      {"  12  ", 12},     {"+3.5", 3.5},  {"-.5", -0.5},
      {"1.", 1},          {"1E-2", 0.01}, {"2147483648", 2147483648.0},
      {"5e-324", 5e-324}, {"-1e-400", 0}, {"1.7976931348623157e308", 1.7976931348623157e308}};
  for (const auto& [text, expected] : good) EXPECT_EQ(NumeroDeTexto(text), expected) << text;
  for (const std::string_view text :
       {"", " ", "abc", "1,5", "1 5", "0x10", "1e", "--1", "+-1", "+", "1.5.2", "inf", "nan", "5\n", "٣"}) {
    SCOPED_TRACE(text);
    EsperaError(ErrorNumber::TypeMismatch, [&] { NumeroDeTexto(text); });
  }
  EsperaError(ErrorNumber::TypeMismatch, [] { NumeroDeTexto(std::string_view("1\0", 2)); });
  for (const std::string_view text : {"1e309", "-1e400"})
    EsperaError(ErrorNumber::Overflow, [&] { NumeroDeTexto(text); });
}

TEST(TextFromNumber, HasFifteenDigitsAndAPoint) {
  const std::pair<double, const char*> cases[] = {{-0.0, "0"},
                                                  {-2.5, "-2.5"},
                                                  {0.1 + 0.2, "0.3"},
                                                  {1.0 / 3, "0.333333333333333"},
                                                  {0.000001, "1E-06"},
                                                  {1e15, "1E+15"},
                                                  {123456789012345, "123456789012345"},
                                                  {kInf, "Inf"},
                                                  {kNaN, "NaN"}};
  for (const auto& [number, expected] : cases) EXPECT_EQ(TextoDeNumero(number), expected);
  // What is written can be read again.
  for (const double number : {0.1, -2.5e-9, 1e22, 5e-324})
    EXPECT_NEAR(NumeroDeTexto(TextoDeNumero(number)) / number, 1, 1e-14) << number;
  EXPECT_EQ(Decimal(INT32_MIN), "-2147483648");
}

TEST(TextFromNumber, AmountsHaveThousandsAndTwoDecimals) {
  const std::pair<double, const char*> cases[] = {{0, "0.00"},
                                                  {-0.004, "0.00"},
                                                  {0.005, "0.01"},
                                                  {1.005, "1.01"},
                                                  {9.995, "10.00"},
                                                  {-1234.5, "-1,234.50"},
                                                  {999999999.999, "1,000,000,000.00"},
                                                  {1e-300, "0.00"},
                                                  {1e18, "1,000,000,000,000,000,000.00"},
                                                  {kInf, "Inf"}};
  for (const auto& [number, expected] : cases) EXPECT_EQ(TextoConMiles(number), expected);
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
  EXPECT_EQ(AFecha("2025-10-01"), Fecha::DesdeSerie(45931));
  EXPECT_EQ(AFecha(45931), Fecha::DesdeSerie(45931));

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
    EsperaError(c.number, [&] { ANumero(c.value); });
    EsperaError(c.number, [&] { AEntero16(c.value); });
    EsperaError(c.number, [&] { ABooleano(c.value); });
    EsperaError(c.number, [&] { AFecha(c.value); });
    if (c.value != Value("abc")) EsperaError(c.number, [&] { ATexto(c.value); });
  }
  EsperaError(ErrorNumber::Overflow, [] { AEntero16(40000); });
  // An object is a reference or nothing; as an argument that is left out it is nothing too.
  EXPECT_EQ(AObjeto(ObjectPtr()), nullptr);
  for (const Value& value : {Value(), Value(Null{}), Value(0), Value("")})
    EsperaError(ErrorNumber::TypeMismatch, [&] { AObjeto(value); });
  EXPECT_EQ(Conversion<ObjectPtr>::From(Value()), nullptr);
}

}  // namespace
}  // namespace zuvi
