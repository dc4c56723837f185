// ZuviProduccion.dll as a compiled host meets it.
#include <gtest/gtest.h>

#include <functional>
#include <thread>

#include "tests/com/caso.h"

namespace zuvi::prueba {
namespace {

const std::vector<std::string> kEnsambleSinOrden = {
    "Consulta(SELECT * FROM comppart WHERE articulo =  'K')",
    "Consulta(SELECT * FROM componen WHERE articulo =  'K')",
    "Consulta(SELECT kit, costo FROM prods WHERE articulo = 'C1')",
    "C1 3 2.5",
    "Consulta(SELECT kit, costo FROM prods WHERE articulo = 'C2')",
    "C2 1.5 2.5",
    "K 6 11.25"};

class Produccion : public ConTienda {
 protected:
  HRESULT Ensambla(LONG cantidad = 6) {
    BSTR texto = kit.get();
    LONG almacen = 2;
    return produccion->Ensamble(&texto, &almacen, &cantidad, nullptr);
  }
  HRESULT Desensambla(double cantidad) {
    BSTR texto = kit.get();
    LONG almacen = 2, op = 0;
    return produccion->Desensamble(&texto, &cantidad, &almacen, &op);
  }
  const Texto kit{L"K"};
};

TEST_F(Produccion, PorNombreYPorVtableHacenLoMismoConCualquierFormaDeArgumento) {
  for (const Estilo estilo : {Estilo::Simple, Estilo::ConTipos, Estilo::SoloEx}) {
    Abre(estilo);
    ASSERT_EQ(Ensambla(), S_OK);
    EXPECT_EQ(tienda->Hechos(), kEnsambleSinOrden);
  }
  const Texto seis(L" 6 "), seis_y_pico(L"6.2");
  BSTR kit_ref = kit.get();
  SHORT corto = 6;
  VARIANT variable = V(VT_I2, corto), doble = V(VT_BYREF | VT_VARIANT, &variable), decimal{};
  ASSERT_EQ(::VarDecFromI4(6, &V_DECIMAL(&decimal)), S_OK);
  V_VT(&decimal) = VT_DECIMAL;
  // Half goes to even.
  for (const VARIANT& forma : std::initializer_list<VARIANT>{
           V(6), V(VT_UI1, BYTE{6}), V(VT_UI2, USHORT{6}), V(VT_INT, INT{6}), V(6.4), V(5.5), V(VT_R4, 6.0f),
           V(VT_DATE, 6.0), decimal, seis, seis_y_pico, V(VT_BYREF | VT_I2, &corto),
           V(VT_BYREF | VT_VARIANT, &doble)}) {
    Abre();
    Respuesta r;
    Llama(produccion.get(), L"ensamble", DISPATCH_METHOD, {V(VT_BYREF | VT_BSTR, &kit_ref), V(2), forma}, r);
    EXPECT_EQ(r.codigo, S_OK) << V_VT(&forma);
    EXPECT_EQ(tienda->Hechos(), kEnsambleSinOrden) << V_VT(&forma);
  }
  EXPECT_EQ(V_VT(&variable), VT_I2);
}

TEST_F(Produccion, LoQueNoEsUnaLlamadaSeRechazaSinHacerNada) {
  Abre();
  const VARIANT k = kit, falta = V(VT_ERROR, SCODE{DISP_E_PARAMNOTFOUND});
  const struct {
    std::vector<VARIANT> args;
    HRESULT codigo;
    UINT argumento;
  } rechazadas[] = {{{k, V(2)}, DISP_E_BADPARAMCOUNT, 99},
                    {{k, V(2), V(6), V(0), V(0)}, DISP_E_BADPARAMCOUNT, 99},
                    {{falta, V(2), V(6)}, DISP_E_PARAMNOTOPTIONAL, 99},
                    {{k, k, V(6)}, DISP_E_TYPEMISMATCH, 1},
                    {{k, V(2), V(3e9)}, DISP_E_OVERFLOW, 0},
                    {{k, V(VT_NULL, 0), V(6)}, DISP_E_TYPEMISMATCH, 1}};
  Respuesta r;
  for (const auto& [args, codigo, argumento] : rechazadas) {
    r.argumento = 99;
    Llama(produccion.get(), L"Ensamble", DISPATCH_METHOD, args, r);
    EXPECT_EQ(r.codigo, codigo) << args.size();
    if (argumento != 99) {
      EXPECT_EQ(r.argumento, argumento);
    }
  }
  Llama(produccion.get(), L"Ensambla", DISPATCH_METHOD, {}, r);
  EXPECT_EQ(r.codigo, DISP_E_UNKNOWNNAME);
  Llama(produccion.get(), L"CancelaOp", DISPATCH_PROPERTYPUT, {V(1)}, r);
  EXPECT_EQ(r.codigo, DISP_E_MEMBERNOTFOUND);
  const auto invoca = [&](DISPID id, REFIID iid, DISPPARAMS* params) {
    return produccion->Invoke(id, iid, 0, DISPATCH_METHOD, params, nullptr, nullptr, nullptr);
  };
  EXPECT_EQ(invoca(9, IID_IUnknown, nullptr), DISP_E_UNKNOWNINTERFACE);
  EXPECT_EQ(invoca(77, IID_NULL, nullptr), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(produccion->ModificaOp(nullptr), E_POINTER);
  EXPECT_EQ(produccion->get_Parent(nullptr), E_POINTER);
  EXPECT_EQ(tienda->llamadas, 0);
  Llama(produccion.get(), L"Ensamble", DISPATCH_METHOD, {k, V(2), V(6), falta}, r);
  EXPECT_EQ(tienda->Hechos(), kEnsambleSinOrden);
  tienda->mundo.bitacora.clear();

  // Named arguments, out of order.
  wchar_t nombres[5][12] = {L"Ensamble", L"nCantidad", L"articulo", L"NALMACEN", L"nada"};
  LPOLESTR punteros[] = {nombres[0], nombres[1], nombres[2], nombres[3], nombres[4]};
  DISPID ids[5];
  EXPECT_EQ(produccion->GetIDsOfNames(IID_NULL, punteros, 5, 0, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[4], DISPID_UNKNOWN);
  VARIANT args[] = {V(6), k, V(2)};
  DISPPARAMS params{args, ids + 1, 3, 3};
  EXPECT_EQ(invoca(ids[0], IID_NULL, &params), S_OK);
  EXPECT_EQ(tienda->Hechos(), kEnsambleSinOrden);
}

TEST_F(Produccion, LasPropiedadesAceptanLetYSetYConservanLaIdentidad) {
  Abre();
  const auto ambiente = tienda->Ambiente();
  for (const wchar_t* nombre : {L"Ambiente", L"Parent"})
    for (const WORD flags : {WORD{DISPATCH_PROPERTYPUT}, WORD{DISPATCH_PROPERTYPUTREF}}) {
      Respuesta r;
      Llama(produccion.get(), nombre, flags, {V(static_cast<IDispatch*>(nullptr))}, r);
      EXPECT_EQ(r.codigo, S_OK);
      Llama(produccion.get(), nombre, kMetodo, {}, r);
      EXPECT_EQ(V_VT(&r.valor.get()), VT_DISPATCH);
      EXPECT_EQ(V_DISPATCH(&r.valor.get()), nullptr);
      Llama(produccion.get(), nombre, flags, {V(ambiente.get())}, r);
      EXPECT_EQ(r.codigo, S_OK);
      Llama(produccion.get(), nombre, kMetodo, {}, r);
      EXPECT_EQ(V_DISPATCH(&r.valor.get()), ambiente.get());
      Llama(produccion.get(), nombre, flags, {V(5)}, r);
      EXPECT_EQ(r.codigo, DISP_E_TYPEMISMATCH);
    }
  // On whose behalf a disassembly runs is the very object the host holds.
  ASSERT_EQ(Desensambla(6), S_OK);
  EXPECT_EQ(tienda->de_parte_de, produccion.As<IUnknown>(IID_IUnknown).get());
  EXPECT_FALSE(produccion.As<IUnknown>(__uuidof(IPersist)));
  const auto errores = produccion.As<ISupportErrorInfo>(IID_ISupportErrorInfo);
  EXPECT_EQ(errores->InterfaceSupportsErrorInfo(__uuidof(::_Produccion)), S_OK);
  EXPECT_EQ(errores->InterfaceSupportsErrorInfo(IID_IDispatch), S_FALSE);
}

TEST_F(Produccion, LosArgumentosPorReferenciaVanEnLaFormaQueElAnfitrionDeclara) {
  const auto ref = [](int type) { return static_cast<VARTYPE>(VT_BYREF | type); };
  Abre(Estilo::ConTipos);
  Ensambla();
  EXPECT_EQ(tienda->tipos,
            (std::vector<VARTYPE>{ref(VT_BSTR), ref(VT_DISPATCH), ref(VT_DISPATCH), ref(VT_VARIANT),
                                  ref(VT_DISPATCH), ref(VT_BOOL), ref(VT_I4), ref(VT_BSTR), ref(VT_VARIANT),
                                  ref(VT_BSTR), ref(VT_DISPATCH)}));
  for (const Estilo estilo : {Estilo::ConTipos, Estilo::Simple}) {
    Abre(estilo);
    tienda->mundo.proceso = nullptr;  // nobody takes the refusal back
    tienda->mundo.vetos = {"OPAUTO002"};
    Ensambla();
    EXPECT_EQ(tienda->Hechos().back(), "CierraProceso(0)");
  }
  EXPECT_EQ(tienda->tipos, std::vector<VARTYPE>(11, ref(VT_VARIANT)));
  // The answer of a statement, which nobody reads, is asked for only where it is declared.
  for (const Estilo estilo : {Estilo::ConTipos, Estilo::Simple}) {
    Abre(estilo);
    tienda->mundo.respuestas = {true};
    LONG op = 12;
    VARIANT_BOOL cancelada = VARIANT_FALSE;
    EXPECT_EQ(produccion->CancelaOp(&op, &cancelada), S_OK);
    EXPECT_EQ(cancelada, VARIANT_TRUE);
    EXPECT_TRUE(tienda->Hechos().back().starts_with("EjecutaSQL(DELETE FROM oppart WHERE op = 12"));
    std::vector<VARTYPE> tipos{VT_BSTR};
    if (estilo == Estilo::ConTipos) tipos.push_back(ref(VT_VARIANT));
    EXPECT_EQ(tienda->tipos, tipos);
  }
}

TEST_F(Produccion, UnFinEnSilencioNoDejaErrorPegado) {
  Abre();
  tienda->Rompe(1, Modo::ConTexto, true);
  LONG op = 1;
  VARIANT_BOOL hecho = VARIANT_TRUE;
  const std::function<HRESULT()> silenciosos[] = {
      [&] { return produccion->NuevaOp(); }, [&] { return produccion->ModificaOp(&op); },
      [&] { return produccion->ConsultaOp(&op); }, [&] { return produccion->CancelaOp(&op, &hecho); }};
  ComPtr<ICreateErrorInfo> viejo;
  ASSERT_EQ(::CreateErrorInfo(viejo.put()), S_OK);
  for (const auto& metodo : silenciosos) {
    ComPtr<IErrorInfo> info;
    ::SetErrorInfo(0, viejo.As<IErrorInfo>(IID_IErrorInfo).get());
    EXPECT_EQ(metodo(), S_OK);
    EXPECT_EQ(::GetErrorInfo(0, info.put()), S_FALSE);
  }
  EXPECT_EQ(hecho, VARIANT_FALSE);
}

/// What the report says of each way to fail.
const std::map<Modo, std::string> kDescripciones = {
    {Modo::ConTexto, "se perdió la conexión\r\nseñal ñ"},
    {Modo::Diferido, "se perdió la conexión\r\nseñal ñ"},
    {Modo::SinTexto, "Automation error (0x80004005)"},
    {Modo::SinMiembro, "Object doesn't support this property or method"},
    {Modo::TipoErroneo, "Type mismatch"},
    {Modo::SinMemoria, "Out of memory"},
    {Modo::Desconectado, "Automation error (0x80010108)"}};

std::string Informe(const std::string& funcion, const std::string& descripcion) {
  return "Error occured:\r\nModule: Produccion\r\nFunction: " + funcion + "\r\nDescription: " + descripcion;
}

/// Each call of an operation, in each of the ways by turns; what becomes of every call in every way is shown
/// where the host is not behind COM.
TEST_F(Produccion, CadaLlamadaAlAnfitrionPuedeFallar) {
  const std::pair<std::string, std::function<HRESULT()>> operaciones[] = {
      {"Ensamble", [&] { return Ensambla(); }}, {"Desensamble", [&] { return Desensambla(6); }}};
  std::size_t vez = 0;
  for (const auto& [nombre, corre] : operaciones) {
    Abre();
    corre();
    const auto limpia = tienda->Hechos();
    const int llamadas = tienda->llamadas;
    ASSERT_GT(llamadas, 20);
    for (int nth = 1; nth <= llamadas; ++nth, ++vez) {
      const Modo modo = kModos[vez % std::size(kModos)];
      SCOPED_TRACE(nombre + " modo " + std::to_string(static_cast<int>(modo)) + " " + std::to_string(nth));
      Abre();
      tienda->limite = 3 * llamadas;
      tienda->Rompe(nth, modo, nth % 2);
      EXPECT_EQ(corre(), S_OK);
      const auto textos = cajas.Toma(), hechos = tienda->Hechos();
      EXPECT_LE(textos.size(), 1u);
      for (const auto& texto : textos) EXPECT_TRUE(texto.starts_with(Informe(nombre, ""))) << texto;
      if (modo >= Modo::Vacio) continue;  // what a lying host makes of it is its own affair
      EXPECT_LT(hechos.size(), limpia.size());
      EXPECT_TRUE(std::equal(hechos.begin(), hechos.end(), limpia.begin()));
      EXPECT_EQ(textos, std::vector<std::string>{Informe(nombre, kDescripciones.at(modo))});
      produccion = {};
      tienda.reset();
      ASSERT_EQ(Tienda::Vivos(), 0);
      ASSERT_EQ(dll.PuedeDescargarse(), S_OK);
    }
  }
}

TEST_F(Produccion, ElAnfitrionPuedeSoltarloTodoDuranteUnaLlamada) {
  Abre();
  tienda->mundo.gancho = [&](const std::string& linea) {
    if (!produccion || !linea.starts_with("Consulta(")) return;
    produccion->putref_Ambiente(nullptr);
    produccion = {};
    EXPECT_EQ(dll.PuedeDescargarse(), S_FALSE);
  };
  EXPECT_EQ(Ensambla(), S_OK);
  EXPECT_EQ(tienda->Hechos(), kEnsambleSinOrden);
}

/// Runs with that much stack in all, as threads of some hosts have it. Wine gives no thread less than a
/// megabyte: the rest of this one's is taken up and set apart.
[[gnu::noinline]] void ConPilaDe(std::size_t bytes, const std::function<void()>& trabajo) {
  constexpr std::size_t kPagina = 4096;
  MEMORY_BASIC_INFORMATION pila{};
  ASSERT_NE(::VirtualQuery(&pila, &pila, sizeof pila), 0u);
  const auto queda = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)) -
                     reinterpret_cast<std::uintptr_t>(pila.AllocationBase);
  ASSERT_GT(queda, bytes + 4 * kPagina);
  auto* const ocupado = static_cast<char*>(__builtin_alloca(queda - bytes));
  auto* const aparte =
      reinterpret_cast<char*>((reinterpret_cast<std::uintptr_t>(ocupado) + 2 * kPagina) / kPagina * kPagina);
  DWORD antes = 0;
  ASSERT_TRUE(::VirtualProtect(aparte, kPagina, PAGE_READONLY, &antes));
  trabajo();
  ::VirtualProtect(aparte, kPagina, antes, &antes);
}

TEST_F(Produccion, UnKitQueSeContieneTerminaEnUnInformeEnCualquierPila) {
  constexpr int kSinFin = 1 << 30;
  int quedan = 0;
  const auto desarma = [&](int kits) {
    Abre();
    quedan = kits;
    tienda->limite = kSinFin;
    tienda->mundo.tablas["SELECT * FROM comppart WHERE articulo =  'K'"] = {
        {{"Componente", "K"}, {"Cantidad", 1.0}, {"Almacen", 1}}};
    tienda->mundo.gancho = [&](const std::string& linea) {
      if (!linea.starts_with("Consulta(SELECT articulo, kit")) return;
      quedan -= quedan > 0;
      tienda->PonCosto("K", quedan > 0);
    };
    EXPECT_EQ(Desensambla(1), S_OK);
    return cajas.Toma();
  };
  for (const int kilobytes : {192, 256, 1024})
    ConPilaDe(static_cast<std::size_t>(kilobytes) * 1024, [&] {
      SCOPED_TRACE(kilobytes);
      // What people make is a few levels deep.
      ASSERT_EQ(desarma(40), std::vector<std::string>());
      EXPECT_TRUE(tienda->Hechos().back().starts_with("K "));
      EXPECT_EQ(desarma(kSinFin), std::vector<std::string>{Informe("Desensamble", "Out of stack space")});
      std::printf("%d KiB of stack: %d levels\n", kilobytes, kSinFin - quedan);
    });
}

TEST_F(Produccion, TextosRotosLleganConElSignoDeReemplazo) {
  Abre();
  const wchar_t roto[] = {L'A', 0xD800, L'\0', 0xDC00, 0xD83D, 0xDE00, L'ñ'};
  const UniqueBstr articulo(::SysAllocStringLen(roto, 7));
  BSTR texto = articulo.get();
  LONG almacen = 1, cantidad = 1;
  EXPECT_EQ(produccion->Ensamble(&texto, &almacen, &cantidad, nullptr), S_OK);
  EXPECT_EQ(tienda->Hechos()[0],
            std::string("Consulta(SELECT * FROM comppart WHERE articulo =  'A\xEF\xBF\xBD") + '\0' +
                "\xEF\xBF\xBD\xF0\x9F\x98\x80\xC3\xB1')");
  texto = nullptr;
  EXPECT_EQ(produccion->Ensamble(&texto, &almacen, &cantidad, nullptr), S_OK);
}

/// A client without a message loop of its own: the object lives in an apartment that the system pumps for it.
TEST_F(Produccion, UnClienteMultihiloPasaPorLosIntermediariosRegistrados) {
  ASSERT_EQ(dll.Entrada<HRESULT(WINAPI*)()>("DllRegisterServer")(), S_OK);
  std::thread([] {
    ::CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    ComPtr<::_Produccion> p;
    EXPECT_EQ(::CoCreateInstance(__uuidof(::Produccion), nullptr, CLSCTX_INPROC_SERVER,
                                 __uuidof(::_Produccion), p.put_void()),
              S_OK);
    if (p) {
      LONG op = 4;
      VARIANT_BOOL cancelada = VARIANT_TRUE;
      EXPECT_EQ(p->CancelaOp(&op, &cancelada), S_OK);
      EXPECT_EQ(cancelada, VARIANT_FALSE);
      EXPECT_EQ(p->ModificaOp(&op), S_OK);
      Respuesta r;
      Llama(p.get(), L"CancelaOp", DISPATCH_METHOD, {V(VT_BYREF | VT_I4, &op)}, r);
      EXPECT_EQ(r.codigo, S_OK);
      Llama(p.get(), L"CancelaOp", DISPATCH_METHOD, {}, r);
      EXPECT_EQ(r.codigo, DISP_E_BADPARAMCOUNT);
    }
    p = {};
    ::CoUninitialize();
  }).join();
  EXPECT_EQ(dll.Entrada<HRESULT(WINAPI*)()>("DllUnregisterServer")(), S_OK);
  EXPECT_EQ(dll.Entrada<HRESULT(WINAPI*)()>("DllUnregisterServer")(), S_OK);
  // The apartment lets go on its own thread, a moment later. Wine never gives back the factory that it
  // fetched for such a client, so there (and only there) the module stays; hence also this test's place at
  // the end.
  se_queda = ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
  for (int i = 0; i < 500 && !se_queda && dll.PuedeDescargarse() != S_OK; ++i) ::Sleep(10);
}

}  // namespace
}  // namespace zuvi::prueba

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  int result = 0;
  {
    const zuvi::prueba::NombresDePrueba nombres;
    const zuvi::prueba::BibliotecaDelEntorno biblioteca;
    result = RUN_ALL_TESTS();
  }
  ::CoUninitialize();
  return result;
}
