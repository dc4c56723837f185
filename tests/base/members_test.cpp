#include "base/members.h"

#include <gtest/gtest.h>

#include "tests/support/errores.h"

namespace zuvi {
namespace {

class Cuenta final : public Object {
 public:
  double Saldo() const { return saldo_; }
  void PonSaldo(double saldo) { saldo_ = saldo; }
  Value Elemento(std::int32_t i) const { return i * 10; }
  bool Divide(std::int32_t divisor, double& cociente, std::string& texto) {
    cociente = saldo_ / divisor;
    texto += "!";
    if (divisor == 0) throw HostError(ErrorNumber::DivisionByZero);
    return true;
  }
  std::string Une(const std::string& a, bool con_b, const ObjectPtr& b) const {
    return a + (con_b ? "+" : "-") + (b ? "objeto" : "nada");
  }
  void PonElemento(std::int32_t i, const Value& v) { saldo_ = i + ToNumber(v); }
  const MemberTable* Members() const override {
    static const MemberTable table =
        MemberTable::Of<Cuenta>()
            .Property<&Cuenta::Saldo, &Cuenta::PonSaldo>("Saldo")
            .AsDefault()
            .Property<&Cuenta::Elemento>("Fijo", {"i"})
            .Method<&Cuenta::Divide>("Divide", {"divisor", "cociente", "texto"})
            .Method<&Cuenta::Une>("Une", {"a", "conB", "b"}, 2)
            .Property<&Cuenta::Elemento, &Cuenta::PonElemento>("Elemento", {"i"});
    return &table;
  }

 private:
  double saldo_ = 10;
};

class Miembros : public testing::Test {
 protected:
  Value Llama(const char* name, std::vector<Value> args) { return cuenta->Call(name, args); }
  void EsperaError(const char* name, std::vector<Value> args, ErrorNumber number) {
    SCOPED_TRACE(name);
    pruebas::EsperaError(number, [&] { cuenta->Call(name, args); });
  }
  std::shared_ptr<Cuenta> cuenta = std::make_shared<Cuenta>();
};

TEST_F(Miembros, PropertiesAreFoundInAnyCaseAndConvertTheirValue) {
  EXPECT_EQ(cuenta->Find("SALDO"), kDefaultMember);
  EXPECT_EQ(cuenta->Find("dIVIDE"), 3);
  EXPECT_EQ(cuenta->Find(""), std::nullopt);
  EXPECT_EQ(std::make_shared<Object>()->Find("Saldo"), std::nullopt);
  cuenta->Put("saldo", "2.5");
  EXPECT_EQ(cuenta->Call("Saldo"), Value(2.5));
  EXPECT_EQ(ToText(Value(cuenta)), "2.5");
  EXPECT_EQ(Llama("Elemento", {"3"}), Value(30));
  std::vector<Value> escrito{3, "4"};
  cuenta->Write(*cuenta->Find("Elemento"), escrito);
  EXPECT_EQ(cuenta->Saldo(), 7);
  EXPECT_THROW(cuenta->Put("Saldo", "abc"), HostError);
  EXPECT_THROW(cuenta->Put("Fijo", 1), HostError);
  EXPECT_THROW(cuenta->Put("Divide", 1), HostError);
  EXPECT_THROW(cuenta->Write(*cuenta->Find("Elemento"), std::span(escrito).first(1)), HostError);
  for (const MemberId id : {-1, 1, 99, INT32_MAX, INT32_MIN})
    EXPECT_THROW(cuenta->Read(id, {}), HostError) << id;
}

TEST_F(Miembros, ArgumentsAreConvertedAndOnlyOptionalOnesMayBeLeftOut) {
  std::vector<Value> args{"4", Empty{}, 5};
  EXPECT_EQ(cuenta->Call("Divide", args, kAllByRef), Value(true));
  EXPECT_EQ(args, (std::vector<Value>{"4", 2.5, "5!"}));
  EXPECT_EQ(cuenta->Members()->ByName("Divide")->in_out, 0b110u);
  // After an error the caller's values stay as they were.
  const std::vector<Value> antes = args = {0, 1.0, "x"};
  EXPECT_THROW(cuenta->Call("Divide", args, kAllByRef), HostError);
  EXPECT_EQ(args, antes);

  EXPECT_EQ(Llama("Une", {"a"}), Value("a-nada"));
  EXPECT_EQ(Llama("Une", {"a", "True", Value(cuenta)}), Value("a+objeto"));
  EXPECT_EQ(Llama("Une", {"a", Empty{}, ObjectPtr()}), Value("a-nada"));
  EsperaError("Une", {}, ErrorNumber::WrongArgumentCount);
  EsperaError("Une", {"a", true, Value(cuenta), 1}, ErrorNumber::WrongArgumentCount);
  EsperaError("Une", {"a", true, 5}, ErrorNumber::TypeMismatch);
  EsperaError("Une", {Null{}}, ErrorNumber::InvalidUseOfNull);
  EsperaError("Divide", {1e10, 0, ""}, ErrorNumber::Overflow);
  EsperaError("NoHay", {}, ErrorNumber::NoSuchMember);
}

}  // namespace
}  // namespace zuvi
