#include "base/members.h"

#include <gtest/gtest.h>

#include "tests/support/errores.h"

namespace zuvi {
namespace {

class Cuenta final : public Object {
 public:
  double Saldo() const { return saldo_; }
  void PonSaldo(double saldo) { saldo_ = saldo; }
  std::int32_t Numero() const { return 7; }
  bool Divide(std::int32_t divisor, double& cociente, std::string& texto) {
    cociente = saldo_ / divisor;
    texto += "!";
    return divisor != 0;
  }
  std::string Une(const std::string& a, bool con_b, const ObjectPtr& b) const {
    return a + (con_b ? "+" : "-") + (b ? "objeto" : "nada");
  }
  void Falla(double& cambiado) {
    cambiado = 99;
    throw HostError("no se puede");
  }
  Value Elemento(std::int32_t i) const { return i * 10; }
  void PonElemento(std::int32_t i, const Value& v) { saldo_ = i + ANumero(v); }
  const MemberTable* Members() const override {
    static const MemberTable table =
        MemberTable::Of<Cuenta>()
            .Property<&Cuenta::Saldo, &Cuenta::PonSaldo>("Saldo")
            .AsDefault()
            .Property<&Cuenta::Numero>("Numero")
            .Method<&Cuenta::Divide>("Divide", {"divisor", "cociente", "texto"})
            .Method<&Cuenta::Une>("Une", {"a", "conB", "b"}, 2)
            .Method<&Cuenta::Falla>("Falla", {"cambiado"})
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

TEST_F(Miembros, AreFoundWithoutRegardToCase) {
  EXPECT_EQ(cuenta->Find("SALDO"), kDefaultMember);
  EXPECT_EQ(cuenta->Find("numero"), 2);
  EXPECT_EQ(cuenta->Find("dIVIDE"), 3);
  EXPECT_EQ(cuenta->Find("Salдо"), std::nullopt);
  EXPECT_EQ(cuenta->Find(""), std::nullopt);
  EXPECT_EQ(std::make_shared<Object>()->Find("Saldo"), std::nullopt);
}

TEST_F(Miembros, PropertiesConvertTheirValue) {
  cuenta->Put("saldo", "2.5");
  EXPECT_EQ(cuenta->Call("Saldo"), Value(2.5));
  EXPECT_EQ(cuenta->Default(), Value(2.5));
  EXPECT_EQ(ATexto(Value(cuenta)), "2.5");
  EXPECT_EQ(Llama("Elemento", {"3"}), Value(30));
  std::vector<Value> escrito{3, "4"};
  cuenta->Write(*cuenta->Find("Elemento"), escrito);
  EXPECT_EQ(cuenta->Saldo(), 7);
  EXPECT_THROW(cuenta->Put("Saldo", "abc"), HostError);
  EXPECT_THROW(cuenta->Put("Saldo", Null{}), HostError);
  EXPECT_THROW(cuenta->Put("Numero", 1), HostError);
  EXPECT_THROW(cuenta->Put("Divide", 1), HostError);
  EXPECT_THROW(cuenta->Write(*cuenta->Find("Elemento"), std::span(escrito).first(1)), HostError);
}

TEST_F(Miembros, InOutArgumentsComeBackInTheTypeOfTheMember) {
  std::vector<Value> args{"4", Empty{}, 5};
  EXPECT_EQ(cuenta->Call("Divide", args, kAllByRef), Value(true));
  EXPECT_EQ(args, (std::vector<Value>{"4", 2.5, "5!"}));
  const Member* divide = cuenta->Members()->ByName("Divide");
  EXPECT_EQ(divide->in_out, 0b110u);
  EXPECT_EQ(divide->params.size(), 3u);
  // After an error the caller's values stay as they were.
  std::vector<Value> intacto{1.0};
  EXPECT_THROW(cuenta->Call("Falla", intacto, kAllByRef), HostError);
  EXPECT_EQ(intacto[0], Value(1.0));
}

TEST_F(Miembros, OptionalArgumentsMayBeLeftOutAndOthersMayNot) {
  EXPECT_EQ(Llama("Une", {"a"}), Value("a-nada"));
  EXPECT_EQ(Llama("Une", {"a", true}), Value("a+nada"));
  EXPECT_EQ(Llama("Une", {"a", "True", Value(cuenta)}), Value("a+objeto"));
  EXPECT_EQ(Llama("Une", {"a", Empty{}, ObjectPtr()}), Value("a-nada"));
  EsperaError("Une", {}, ErrorNumber::WrongArgumentCount);
  EsperaError("Une", {"a", true, Value(cuenta), 1}, ErrorNumber::WrongArgumentCount);
  EsperaError("Une", {"a", true, 5}, ErrorNumber::TypeMismatch);
  EsperaError("Une", {Null{}}, ErrorNumber::InvalidUseOfNull);
  EsperaError("Divide", {1e10, 0, ""}, ErrorNumber::Overflow);
  EsperaError("NoHay", {}, ErrorNumber::NoSuchMember);
  for (const MemberId id : {-1, 1, 99, INT32_MAX, INT32_MIN})
    EXPECT_THROW(cuenta->Read(id, {}), HostError) << id;
}

}  // namespace
}  // namespace zuvi
