// The host's DLL among others: beside an ADO of the system's, in several apartments, asked to go by any
// thread.
#include <array>
#include <atomic>
#include <thread>

#include "tests/com/host_dll.h"

#include <dispex.h>

namespace zuvi::prueba {
namespace {

TEST_F(ConHost, EnNuestraConexionNuncaSePreguntaAAdo) {
  const auto recordset = Recordset();
  // All names before it is known whose it is.
  DISPID abre = 0, fin = 0, sigue = 0;
  for (const auto& [texto, id] : {std::pair{L"open", &abre}, {L"EOF", &fin}, {L"MoveNext", &sigue}}) {
    auto* nombre = const_cast<LPOLESTR>(texto);
    ASSERT_EQ(recordset->GetIDsOfNames(IID_NULL, &nombre, 1, 0, id), S_OK);
  }
  EXPECT_EQ(Numero(recordset.get(), L"State"), 0);
  for (const auto& [nombre, valor] : {std::pair{L"CursorType", 1}, {L"LockType", 3}, {L"CursorLocation", 3}})
    EXPECT_EQ(Hace(recordset.get(), nombre, kPon, {V(valor)}), S_OK);
  EXPECT_EQ(Numero(recordset.get(), L"CursorType"), 1);
  // The connection by name, in a variant of a variant.
  const Texto sql(L"SELECT 42 AS uno");
  VARIANT objeto = V(Conexion());
  std::array<VARIANT, 2> args{V(VT_BYREF | VT_VARIANT, &objeto), sql};
  DISPID conexion_por_nombre = 1;
  DISPPARAMS dados{args.data(), &conexion_por_nombre, 2, 1}, ninguno{};
  ASSERT_EQ(recordset->Invoke(abre, IID_NULL, 0, kMetodo, &dados, nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(Campo(recordset), 42);
  EXPECT_EQ(Numero(recordset.get(), L"CursorType") * 100 + Numero(recordset.get(), L"LockType") * 10 +
                Numero(recordset.get(), L"CursorLocation"),
            133);
  UniqueVariant valor;
  ASSERT_EQ(recordset->Invoke(sigue, IID_NULL, 0, kMetodo, &ninguno, nullptr, nullptr, nullptr), S_OK);
  ASSERT_EQ(recordset->Invoke(fin, IID_NULL, 0, kMetodo, &ninguno, &valor.get(), nullptr, nullptr), S_OK);
  EXPECT_EQ(V_BOOL(&valor.get()), VARIANT_TRUE);
  // Opened by the property, too.
  EXPECT_EQ(Hace(recordset.get(), L"Close", kMetodo, {}), S_OK);
  const auto otro = Recordset();
  EXPECT_EQ(Hace(otro.get(), L"ActiveConnection", DISPATCH_PROPERTYPUTREF, {V(Conexion())}), S_OK);
  EXPECT_EQ(Hace(otro.get(), L"Open", kMetodo, {sql}), S_OK);
  EXPECT_EQ(Campo(otro), 42);
  EXPECT_EQ(ado.Visto().creados, 0);
}

// Programs that were compiled against ADO call by its numbers, whoever answers.
TEST_F(ConHost, LosNumerosDeLosMiembrosSonLosDeAdo) {
  ComPtr<ITypeLib> biblioteca;
  ComPtr<ITypeInfo> tipo;
  ASSERT_EQ(::LoadTypeLibEx(ado.Verdadero(), REGKIND_NONE, biblioteca.put()), S_OK);
  ASSERT_EQ(biblioteca->GetTypeInfoOfGuid(kInterfazAdo, tipo.put()), S_OK);
  const auto recordset = Recordset();
  for (const wchar_t* texto : {L"Fields", L"ActiveConnection", L"BOF", L"CursorType", L"EOF", L"LockType",
                               L"RecordCount", L"Source", L"Close", L"MoveNext", L"MovePrevious",
                               L"MoveFirst", L"MoveLast", L"Open", L"CursorLocation", L"State"}) {
    auto* nombre = const_cast<LPOLESTR>(texto);
    DISPID suyo = DISPID_UNKNOWN, nuestro = DISPID_UNKNOWN;
    EXPECT_EQ(tipo->GetIDsOfNames(&nombre, 1, &suyo), S_OK) << Narrow(texto);
    EXPECT_EQ(recordset->GetIDsOfNames(IID_NULL, &nombre, 1, 0, &nuestro), S_OK);
    EXPECT_EQ(nuestro, suyo) << Narrow(texto);
  }
}

TEST_F(ConHost, LoQueNoEsNuestroEsDelSistema) {
  constexpr WORD kPonRef = DISPATCH_PROPERTYPUTREF;
  const struct {
    const wchar_t* nombre;
    WORD modo;
    std::vector<VARIANT> args;
    const char* visto;
  } casos[] = {{L"Open", kMetodo, {V(7), V(8)}, "Open/2 "},
               {L"Open", kMetodo, {}, "Open/0 "},
               {L"ActiveConnection", kPonRef, {V(nullptr)}, "ActiveConnection=? "},
               {L"ActiveConnection", kPonRef, {V(ambiente.get())}, "ActiveConnection=? "},
               {L"Fields", kMetodo, {}, "Fields/0 "},
               {L"Supports", kMetodo, {V(1)}, "Supports/1 "},
               {L"CursorType", kPon, {V(99)}, "CursorType=99 "}};
  for (const auto& [nombre, modo, args, visto] : casos) {
    SCOPED_TRACE(visto);
    const auto recordset = Recordset();
    EXPECT_EQ(Hace(recordset.get(), L"LockType", kPon, {V(3)}), S_OK);
    EXPECT_EQ(Hace(recordset.get(), L"CursorType", kPon, {V(1)}), S_OK);
    EXPECT_EQ(Hace(recordset.get(), L"CursorLocation", kPon, {V(VT_I2, short{3})}), S_OK);
    EXPECT_EQ(ado.Toma(), "");
    Respuesta r;
    Llama(recordset.get(), nombre, modo, args, r);
    EXPECT_EQ(r.codigo, S_OK);
    EXPECT_EQ(ado.Toma(), std::string("CursorLocation=3 CursorType=1 LockType=3 ") + visto);
    // Nothing of what was set is put twice.
    EXPECT_EQ(Numero(recordset.get(), L"EOF"), 4711);
    EXPECT_EQ(ado.Toma(), "EOF/0 ");
  }
}

TEST_F(ConHost, ElObjetoDelSistemaRecibeCadaLlamadaComoVino) {
  const auto recordset = Recordset();
  EXPECT_EQ(Numero(recordset.get(), L"EOF"), 4711);
  VARIANT arreglo[3] = {V(1), V(VT_ERROR, DISP_E_PARAMNOTFOUND), V(VT_BYREF | VT_VARIANT, &arreglo[0])};
  DISPID nombres[] = {5, 2};
  DISPPARAMS dados{arreglo, nombres, 3, 2};
  UniqueVariant resultado;
  EXCEPINFO excepcion{};
  UINT malo = 0;
  const AdoVisto& visto = ado.Visto();
  constexpr auto kFalla = static_cast<HRESULT>(0x80040E14);
  ado.Visto().al_llamar = kFalla;
  EXPECT_EQ(
      recordset->Invoke(0x40C, IID_NULL, 0x80A, DISPATCH_METHOD, &dados, &resultado.get(), &excepcion, &malo),
      kFalla);
  EXPECT_TRUE(visto.argumentos == &dados && visto.resultado == &resultado.get());
  EXPECT_TRUE(visto.excepcion == &excepcion && visto.malo == &malo);
  EXPECT_EQ(visto.region, 0x80Au);
  EXPECT_EQ(visto.modo, DISPATCH_METHOD);
  UINT tipos = 0;
  EXPECT_EQ(recordset->GetTypeInfoCount(&tipos), S_OK);
  EXPECT_EQ(tipos, 7u);
  // Early-bound and aggregating programs never see ours.
  LONG creados = visto.creados;
  Recordset(kInterfazAdo);
  EXPECT_EQ(visto.creados, ++creados);
  ComPtr<IUnknown> agregado;
  EXPECT_EQ(
      ::CoCreateInstance(kClaseAdo, ambiente.get(), CLSCTX_INPROC_SERVER, IID_IUnknown, agregado.put_void()),
      CLASS_E_NOAGGREGATION);
  EXPECT_EQ(visto.exterior, ambiente.get());
  // One asked for its own interface stays the system's; what everybody is asked for is no such question.
  const auto usado = Recordset();
  ado.Toma();
  for (const IID& iid : {IID_IMarshal, __uuidof(IDispatchEx), IID_IProvideClassInfo, IID_IRunnableObject,
                         IID_IPersistStreamInit, IID_ISupportErrorInfo})
    EXPECT_FALSE(usado.As<IUnknown>(iid));
  EXPECT_EQ(visto.creados, creados);
  EXPECT_TRUE(usado.As<IUnknown>(kInterfazAdo));
  EXPECT_EQ(visto.creados, creados + 1);
  AbreConsulta(usado);
  EXPECT_EQ(ado.Toma(), "Open/5 ");
  // The class is still published after all that.
  const auto nuestro = Recordset();
  EXPECT_EQ(AbreConsulta(nuestro), S_OK);
  EXPECT_EQ(Campo(nuestro), 42);
}

TEST_F(ConHost, CadaAperturaDecideDeQuienEs) {
  const auto recordset = Recordset();
  EXPECT_EQ(Hace(recordset.get(), L"LockType", kPon, {V(2)}), S_OK);
  EXPECT_EQ(AbreConsulta(recordset), S_OK);
  // An open one refuses, whoever has it.
  EXPECT_NE(AbreConsulta(recordset), S_OK);
  EXPECT_NE(Hace(recordset.get(), L"Open", kMetodo, {V(7), V(8)}), S_OK);
  EXPECT_EQ(ado.Visto().creados, 0);
  EXPECT_EQ(Hace(recordset.get(), L"Close", kMetodo, {}), S_OK);
  EXPECT_EQ(Hace(recordset.get(), L"CursorType", kPon, {V(3)}), S_OK);
  EXPECT_EQ(Hace(recordset.get(), L"Open", kMetodo, {V(7), V(8)}), S_OK);
  EXPECT_EQ(ado.Toma(), "CursorType=3 LockType=2 Open/2 ");
  EXPECT_EQ(AbreConsulta(recordset), S_OK);  // the stand-in takes anything
  EXPECT_EQ(ado.Toma(), "State/0 Open/5 ");
  EXPECT_EQ(Hace(recordset.get(), L"Close", kMetodo, {}), S_OK);
  EXPECT_EQ(AbreConsulta(recordset), S_OK);
  EXPECT_EQ(Campo(recordset), 42);
  EXPECT_EQ(Numero(recordset.get(), L"CursorType"), 3);
}

TEST_F(ConHost, SinAdoElErrorEsDelSistema) {
  ado.Visto().al_crear = REGDB_E_CLASSNOTREG;
  const auto recordset = Recordset();
  EXPECT_EQ(Hace(recordset.get(), L"Open", kMetodo, {V(7), V(8)}), REGDB_E_CLASSNOTREG);
  EXPECT_EQ(Hace(recordset.get(), L"AddNew", kMetodo, {}), REGDB_E_CLASSNOTREG);
  Recordset(kInterfazAdo, REGDB_E_CLASSNOTREG);
  EXPECT_EQ(AbreConsulta(recordset), S_OK);
  EXPECT_EQ(Campo(recordset), 42);
}

TEST_F(ConHost, ElCodigoDeLoQueGuardaSeQueda) {
  EXPECT_EQ(Hace(Recordset().get(), L"Close", kMetodo, {}), S_OK);
  // The end of a thread's use of COM takes every DLL away that COM had loaded for it.
  for (int i = 0; i < 4; ++i) ::FreeLibrary(::GetModuleHandleW(kAdoFalso));
  ASSERT_NE(::GetModuleHandleW(kAdoFalso), nullptr);
}

TEST_F(ConHost, CadaDepartamentoTieneElSuyo) {
  Conexion();
  std::thread([&] {
    const Departamento departamento;
    const auto del_sistema = [&] {
      const LONG antes = ado.Visto().creados;
      return Recordset(), ado.Visto().creados - antes;
    };
    EXPECT_EQ(del_sistema(), 1);
    {
      const auto suyo = Ambiente(), suya = ConexionDe(suyo.get()), recordset = Recordset();
      EXPECT_NE(suya.get(), conexion.get());
      EXPECT_EQ(AbreConsulta(recordset.get(), suya.get()), S_OK);
      EXPECT_EQ(Campo(recordset), 42);
      EXPECT_EQ(PuedeDescargarse(), S_FALSE);
      EXPECT_EQ(del_sistema(), 0);
    }
    // Its host goes on its own thread, and with it what it publishes.
    EXPECT_EQ(PuedeDescargarse(), S_FALSE);
    EXPECT_EQ(del_sistema(), 1);
    Ambiente();
  }).join();  // this time the end of the apartment takes it away
  EXPECT_EQ(AbreConsulta(Recordset()), S_OK);
}

TEST_F(ConHost, OtroHiloNoSeLlevaNada) {
  const auto pregunta = [&] {
    HRESULT dice = E_FAIL;
    std::thread([&] { dice = PuedeDescargarse(); }).join();
    return dice;
  };
  Conexion();
  EXPECT_EQ(pregunta(), S_FALSE);
  conexion = {};
  ambiente = {};
  // Nothing is in use any more, but what there is belongs to this thread.
  EXPECT_EQ(pregunta(), S_FALSE);
  EXPECT_EQ(Hace(Recordset().get(), L"LockType", kPon, {V(3)}), S_OK);
  EXPECT_EQ(ado.Visto().creados, 0);
}

TEST_F(ConHost, HilosQueVienenYVanMientrasOtrosPreguntanNoSonPeligro) {
  std::atomic<int> hechas{0};
  std::array<std::thread, 3> hilos;
  for (auto& hilo : hilos)
    hilo = std::thread([&] {
      for (int i = 0; i < 8; ++i) {
        const Departamento departamento;
        auto suyo = Ambiente(), suya = ConexionDe(suyo.get());
        if (suya) ++hechas;
        if (i % 2) {
          suya = suyo = {};
          PuedeDescargarse();
        }
      }
    });
  while (hechas < 24 && PuedeDescargarse() == S_FALSE) ::Sleep(1);
  for (auto& hilo : hilos) hilo.join();
  EXPECT_EQ(hechas, 24);
}

}  // namespace
}  // namespace zuvi::prueba

int main(int argc, char** argv) {
  wchar_t carpeta[MAX_PATH], base[MAX_PATH];
  ::GetTempPathW(MAX_PATH, carpeta);
  ::GetTempFileNameW(carpeta, L"zuv", 0, base);
  ::DeleteFileW(base);
  ::SetEnvironmentVariableW(L"ZUVI_BASE", base);
  testing::InitGoogleTest(&argc, argv);
  const zuvi::prueba::Departamento departamento;
  const int resultado = RUN_ALL_TESTS();
  ::DeleteFileW(base);
  return resultado;
}
