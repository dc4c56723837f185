// What happens once in the life of a process: how a DLL goes out of memory, and what the program had loaded
// before it. Each test has a process of its own (run.sh).
#include <cstdlib>

#include "tests/com/caso.h"

// After the system's headers.
#include "ZuviQuery.h"

namespace zuvi::prueba {
namespace {

constexpr wchar_t kModulo[] = L"ZuviProduccion.dll", kAnfitrion[] = L"ZuviHost.dll";

bool EnMemoria(const wchar_t* dll) { return ::GetModuleHandleW(dll) != nullptr; }

/// A shop and the component that works for it.
struct Taller {
  explicit Taller(ComPtr<::_Produccion> suya) : produccion(std::move(suya)) {
    if (produccion) produccion->putref_Ambiente(reinterpret_cast<::Ambiente*>(tienda.Ambiente().get()));
  }
  Tienda tienda;
  ComPtr<::_Produccion> produccion;
};

class ProcesoPropio : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(Tienda::Vivos(), 0); }
};

TEST_F(ProcesoPropio, SinVentanasLaDllSeVaCuandoNadieLaUsa) {
  {
    const SinRegistro manifiesto;
    Taller taller(manifiesto.Crea());
    ASSERT_TRUE(taller.produccion);
    ::CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_TRUE(EnMemoria(kModulo));
    const Texto kit(L"K");
    BSTR texto = kit.get();
    LONG almacen = 2, cantidad = 6;
    EXPECT_EQ(taller.produccion->Ensamble(&texto, &almacen, &cantidad, nullptr), S_OK);
    EXPECT_EQ(taller.tienda.Hechos().back(), "K 6 11.25");
  }
  // Once marks it, once more takes it away.
  for (int vez = 0; vez < 2; ++vez) ::CoFreeUnusedLibrariesEx(0, 0);
  EXPECT_FALSE(EnMemoria(kModulo));
}

// The end of a thread's use of COM takes a DLL away whatever the DLL answers: one FreeLibrary more than there
// should be.

TEST_F(ProcesoPropio, ConUnaVentanaAbiertaElModuloSeQueda) {
  Dll dll;
  Taller taller(dll.Crea());
  ASSERT_EQ(taller.produccion->NuevaOp(), S_OK);
  const HWND ventana = ::FindWindowW(L"ZuviVentana", nullptr);
  ASSERT_TRUE(::IsWindowVisible(ventana));
  taller.produccion = {};
  ::FreeLibrary(::GetModuleHandleW(kModulo));
  EXPECT_TRUE(EnMemoria(kModulo));
  ::PostMessageW(ventana, WM_SYSCOMMAND, SC_CLOSE, 0);
  for (int i = 0; i < 200 && ::IsWindow(ventana); ++i) Atiende(20);
  EXPECT_FALSE(::IsWindow(ventana));
  EXPECT_EQ(dll.PuedeDescargarse(), S_OK);
}

TEST_F(ProcesoPropio, ConUnTrabajoEnCursoElAnfitrionSeQueda) {
  Dll dll(kAnfitrion);
  {
    // A job lasts until the message loop rests, which a timer tells.
    const auto progreso = dll.Crea(__uuidof(::VentanaProgreso)).As<IDispatch>(IID_IDispatch);
    ASSERT_TRUE(progreso);
    Respuesta r;
    for (const auto& [miembro, numero] : {std::pair{L"Inicia", 2}, {L"Avanza", 1}}) {
      Llama(progreso.get(), miembro, kMetodo, {V(numero), Texto(L"Prueba")}, r);
      EXPECT_EQ(r.codigo, S_OK) << r.texto;
    }
  }
  ::FreeLibrary(::GetModuleHandleW(kAnfitrion));
  EXPECT_TRUE(EnMemoria(kAnfitrion));
  Atiende(200);
  EXPECT_EQ(dll.PuedeDescargarse(), S_OK);
}

#ifdef __i386__
/// Programs of the same compiler come with its runtime as a library, which is theirs alone.
TEST_F(ProcesoPropio, LasExcepcionesNoDependenDeLoQueElProgramaHayaCargado) {
  const wchar_t* const archivo = ::_wgetenv(L"ZUVI_OTRO_RUNTIME");
  ASSERT_NE(archivo, nullptr);
  ASSERT_NE(::LoadLibraryW(archivo), nullptr);
  ASSERT_TRUE(EnMemoria(L"libgcc_s_dw2-1.dll"));
  const Texto texto(L"no es un número");
  const auto rechaza = [&](Dll& dll, REFCLSID clase, const wchar_t* miembro) {
    Respuesta r;
    const auto objeto = dll.Crea(clase).As<IDispatch>(IID_IDispatch);
    ASSERT_TRUE(objeto);
    Llama(objeto.get(), miembro, kMetodo, {texto, texto, V(1)}, r);
    EXPECT_EQ(r.codigo, DISP_E_TYPEMISMATCH) << Narrow(miembro);
  };
  // Loaded anew, too: at other addresses, or at those that another file has had.
  for (int vez = 0; vez < 3; ++vez) {
    {
      Dll modulo, anfitrion(kAnfitrion);
      rechaza(modulo, __uuidof(::Produccion), L"Ensamble");
      rechaza(anfitrion, __uuidof(::VentanaProgreso), L"Inicia");
      EXPECT_EQ(anfitrion.PuedeDescargarse(), S_OK);
    }
    EXPECT_FALSE(EnMemoria(kModulo));
  }
}
#endif

}  // namespace
}  // namespace zuvi::prueba
