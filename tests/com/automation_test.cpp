// Our objects as automation clients see them, and foreign ones as we do.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <map>

#include "automation/com_error.h"
#include "automation/com_object.h"
#include "automation/dispatch_object.h"
#include "automation/variants.h"
#include "base/members.h"
#include "tests/com/cliente.h"

namespace zuvi::prueba {
namespace {

/// A record set whose default is its collection of fields, with a default item, a field with a default value.
class Campo final : public Object {
 public:
  Value Valor() const { return valor_; }
  void Pon(const Value& valor) { valor_ = valor; }
  const MemberTable* Members() const override {
    static const MemberTable table =
        MemberTable::Of<Campo>().Property<&Campo::Valor, &Campo::Pon>("Value").AsDefault();
    return &table;
  }

 private:
  Value valor_ = "cien";
};
class Campos final : public Object {
 public:
  ObjectPtr Item(const std::string& nombre) {
    if (nombre != "x") throw HostError("no existe la columna " + nombre, ErrorNumber::SubscriptOutOfRange);
    return campo_;
  }
  const MemberTable* Members() const override {
    static const MemberTable table =
        MemberTable::Of<Campos>().Property<&Campos::Item>("Item", {"Index"}).AsDefault();
    return &table;
  }

 private:
  ObjectPtr campo_ = std::make_shared<Campo>();
};
class Registro final : public Object {
 public:
  ObjectPtr Fields() { return campos_; }
  std::int32_t Intercambia(std::int32_t& a, std::string& b, const Value& sobra) {
    const std::int32_t antes = a;
    a = static_cast<std::int32_t>(b.size());
    b += "+" + Decimal(antes);
    return sobra.IsEmpty() ? -1 : 1;
  }
  void Falla() { throw 5; }
  const MemberTable* Members() const override {
    static const MemberTable table =
        MemberTable::Of<Registro>()
            .Property<&Registro::Fields>("Fields")
            .AsDefault()
            .Method<&Registro::Intercambia>("Intercambia", {"a", "b", "sobra"}, 1)
            .Method<&Registro::Falla>("Falla");
    return &table;
  }

 private:
  ObjectPtr campos_ = std::make_shared<Campos>();
};

class Automatizacion : public testing::Test {
 protected:
  void TearDown() override {
    registro = {};
    EXPECT_TRUE(modulo.Idle());
    EXPECT_EQ(objeto.use_count(), 1);
  }
  ComServer modulo{"prueba", nullptr, 0};
  ObjectPtr objeto = std::make_shared<Registro>();
  ComPtr<IDispatch> registro = Publish(objeto, modulo);
};

TEST_F(Automatizacion, LosValoresVanYVuelvenEnTodosLosTipos) {
  const auto lee = [&](VARIANT v) { return FromVariant(v, modulo); };
  EXPECT_EQ(lee(V(VT_I8, LONGLONG{1} << 40)), Value(std::ldexp(1.0, 40)));
  EXPECT_EQ(lee(V(VT_UI4, 4000000000u)), Value(4e9));
  EXPECT_EQ(lee(V(VT_I1, CHAR{-5})), Value(std::int16_t{-5}));
  EXPECT_EQ(lee(V(VT_CY, LONGLONG{-12345})), Value(-1.2345));
  EXPECT_EQ(lee(V(VT_BOOL, VARIANT_TRUE)), Value(true));
  EXPECT_EQ(lee(V(VT_DATE, 2.5)), Value(Date::FromSerial(2.5)));
  EXPECT_EQ(lee(V(VT_NULL, 0)), Value(Null{}));
  EXPECT_EQ(lee(V(VT_ERROR, SCODE{DISP_E_PARAMNOTFOUND})), Value());
  EXPECT_EQ(lee(V(VT_UNKNOWN, static_cast<IUnknown*>(registro.get()))), Value(objeto));
  DECIMAL decimal{};
  ASSERT_EQ(::VarDecFromR8(-0.1, &decimal), S_OK);
  EXPECT_EQ(lee(V(VT_BYREF | VT_DECIMAL, &decimal)), Value(-0.1));
  VARIANT bucle{};
  bucle = V(VT_BYREF | VT_VARIANT, &bucle);
  for (const VARIANT& mala :
       {bucle, V(VT_ERROR, SCODE{E_FAIL}), V(VT_ARRAY | VT_I4, 0), V(VT_BYREF | VT_I4, nullptr)})
    EXPECT_THROW(lee(mala), HostError) << V_VT(&mala);

  // In a type of somebody else's choice, to the edge of its range and not beyond.
  const auto cabe = [&](double n, VARTYPE type) {
    UniqueVariant v;
    try {
      Coerce(n, type, modulo, v.get());
      return ToNumber(FromVariant(v.get(), modulo)) == std::nearbyint(n);
    } catch (const HostError& error) {
      EXPECT_EQ(error.Number(), ErrorNumber::Overflow);
      return false;
    }
  };
  const std::map<VARTYPE, std::pair<double, double>> rangos = {{VT_I1, {-128, 127}},
                                                               {VT_UI1, {0, 255}},
                                                               {VT_I2, {-32768, 32767}},
                                                               {VT_UI2, {0, 65535}},
                                                               {VT_I4, {-2147483648.0, 2147483647.0}},
                                                               {VT_UI4, {0, 4294967295.0}}};
  for (const auto& [type, rango] : rangos) {
    const auto [desde, hasta] = rango;
    EXPECT_TRUE(cabe(desde, type) && cabe(hasta, type) && cabe(hasta + 0.4, type)) << type;
    EXPECT_FALSE(cabe(desde - 1, type) || cabe(hasta + 1, type)) << type;
    EXPECT_FALSE(cabe(std::numeric_limits<double>::quiet_NaN(), type)) << type;
  }
  EXPECT_TRUE(cabe(-std::ldexp(1.0, 63), VT_I8));
  EXPECT_FALSE(cabe(std::ldexp(1.0, 63), VT_I8) || cabe(std::ldexp(1.0, 64), VT_UI8) || cabe(1e39, VT_R4));
}

TEST_F(Automatizacion, LosArgumentosDeEntradaYSalidaVuelvenEnElTipoDelQueLlama) {
  SHORT a = 7;
  BSTR b = ::SysAllocString(L"abc");
  VARIANT va = V(VT_I2, SHORT{9}), vb{};
  V_VT(&vb) = VT_BSTR;
  V_BSTR(&vb) = ::SysAllocString(L"xy");
  Respuesta r;
  Llama(registro.get(), L"INTERCAMBIA", DISPATCH_METHOD, {V(VT_BYREF | VT_I2, &a), V(VT_BYREF | VT_BSTR, &b)},
        r);
  EXPECT_EQ(r.codigo, S_OK);
  EXPECT_EQ(V_I4(&r.valor.get()), -1);
  EXPECT_EQ(a, 3);
  EXPECT_EQ(std::wstring(b), L"abc+7");
  Llama(registro.get(), L"Intercambia", DISPATCH_METHOD,
        {V(VT_BYREF | VT_VARIANT, &va), V(VT_BYREF | VT_VARIANT, &vb), V(1)}, r);
  EXPECT_EQ(V_I4(&r.valor.get()), 1);
  EXPECT_EQ(V_I4(&va), 2);
  EXPECT_EQ(std::wstring(V_BSTR(&vb)), L"xy+9");
  ::SysFreeString(b);
  ::VariantClear(&vb);
  // By value they are simply not seen again.
  Llama(registro.get(), L"Intercambia", DISPATCH_METHOD, {V(1), V(2)}, r);
  EXPECT_EQ(r.codigo, S_OK);
}

TEST_F(Automatizacion, LosParentesisAlcanzanElMiembroPorOmision) {
  const Texto x(L"x"), y(L"y");
  UniqueVariant r;
  EXCEPINFO exception{};
  const auto invoca = [&](WORD flags, std::vector<VARIANT> reversed) {
    DISPID put = DISPID_PROPERTYPUT;
    const UINT puts = flags == DISPATCH_PROPERTYPUT;
    DISPPARAMS params{reversed.data(), puts ? &put : nullptr, static_cast<UINT>(reversed.size()), puts};
    return registro->Invoke(DISPID_VALUE, IID_NULL, 0, flags, &params, puts ? nullptr : r.put(), &exception,
                            nullptr);
  };
  ASSERT_EQ(invoca(kMetodo, {x}), S_OK);
  EXPECT_EQ(ToText(FromVariant(r.get(), modulo)), "cien");  // the field's own default
  ASSERT_EQ(invoca(DISPATCH_PROPERTYPUT, {V(8), x}), S_OK);
  EXPECT_EQ(ToInt32(FromVariant(r.get(), modulo)), 8);
  EXPECT_EQ(invoca(DISPATCH_PROPERTYPUT, {V(8)}), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(invoca(kMetodo, {V(1), x}), DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(invoca(kMetodo, {y}), DISP_E_EXCEPTION);
  EXPECT_EQ(exception.scode, static_cast<HRESULT>(0x800A0009));
  EXPECT_EQ(Narrow(UniqueBstr(exception.bstrDescription).get()), "no existe la columna y");
  ::SysFreeString(exception.bstrSource);
}

TEST_F(Automatizacion, UnObjetoTieneUnaSolaIdentidad) {
  EXPECT_EQ(Publish(objeto, modulo).get(), registro.get());
  EXPECT_EQ(ObjectOf(registro.get(), modulo), objeto);
  // For another DLL of ours in the same process it is a stranger, and keeps its identity as one.
  ComServer otro{"otro", nullptr, 0};
  ObjectPtr ajeno = ObjectOf(registro.get(), otro);
  EXPECT_NE(ajeno, objeto);
  EXPECT_EQ(Publish(ajeno, otro).get(), registro.get());
  std::array<Value, 1> clave{"x"};
  EXPECT_EQ(ToText(ToObject(ajeno->Call("Fields"))->Call("Item", clave)), "cien");
  std::array<Value, 2> args{4, "ab"};
  EXPECT_EQ(ajeno->Call("Intercambia", args, kAllByRef), Value(-1));
  EXPECT_EQ(args[0], Value(2));
  EXPECT_EQ(args[1], Value("ab+4"));
  EXPECT_FALSE(ajeno->Find("NoExiste"));
  try {
    ajeno->Call("Falla");
    ADD_FAILURE();
  } catch (const HostError& error) {
    EXPECT_EQ(error.NativeCode(), E_FAIL);
    EXPECT_STREQ(error.what(), "Automation error");
  }
  ajeno.reset();
  EXPECT_TRUE(otro.Idle());
  registro = {};
  EXPECT_EQ(objeto->published_as, nullptr);
}

}  // namespace
}  // namespace zuvi::prueba
