// The module's windows as a host meets them: reached by name wherever they are handed over, and alive exactly
// as long as somebody needs them.
#include <regex>
#include <sstream>

#include "tests/com/caso.h"

namespace zuvi::prueba {
namespace {

LONG kOrden = 12;

class Ventanas : public ConTienda {
 protected:
  /// What a script's `objeto.a(1).b` does; with a value, what `objeto.a(1).b = valor` does.
  void Sigue(ComPtr<IDispatch> objeto, const std::string& camino, Respuesta& r,
             const VARIANT* valor = nullptr) {
    std::istringstream pasos(camino);
    for (std::string paso; std::getline(pasos, paso, '.');) {
      std::istringstream partes(std::regex_replace(paso, std::regex("[(),]"), " "));
      std::string nombre;
      partes >> nombre;
      std::vector<VARIANT> argumentos;
      for (int n; partes >> n;) argumentos.push_back(V(n));
      const bool pone = valor && pasos.eof();
      if (pone) argumentos.push_back(*valor);
      Llama(objeto.get(), std::wstring(nombre.begin(), nombre.end()).c_str(),
            pone ? WORD{DISPATCH_PROPERTYPUT} : kMetodo, argumentos, r);
      if (FAILED(r.codigo) || pasos.eof()) return;
      ASSERT_EQ(V_VT(&r.valor.get()), VT_DISPATCH) << camino;
      objeto = ComPtr<IDispatch>(V_DISPATCH(&r.valor.get()));
      ASSERT_TRUE(objeto) << camino;
    }
  }
  std::string Lee(const ComPtr<IDispatch>& objeto, const std::string& camino) {
    Respuesta r;
    Sigue(objeto, camino, r);
    if (FAILED(r.codigo)) return "error: " + r.texto;
    const Value valor = FromVariant(r.valor.get(), tienda->Modulo());
    return valor.IsObject() && !ToObject(valor) ? "nada" : ToText(valor);
  }
  HRESULT Codigo(const ComPtr<IDispatch>& objeto, const std::string& camino, const VARIANT* valor = nullptr) {
    Respuesta r;
    Sigue(objeto, camino, r, valor);
    return r.codigo;
  }
  HRESULT Pon(const ComPtr<IDispatch>& objeto, const std::string& camino, const VARIANT& valor) {
    return Codigo(objeto, camino, &valor);
  }
  /// The window that a method of the component opens, as the host is handed it.
  ComPtr<IDispatch> VentanaDe(const std::function<HRESULT()>& metodo) {
    ComPtr<IDispatch> recibida;
    tienda->con_ventana = [&](const std::string& momento, const ComPtr<IDispatch>& ventana) {
      if (momento == "PreparaVentana") recibida = ventana;
    };
    EXPECT_EQ(metodo(), S_OK);
    tienda->con_ventana = nullptr;
    return recibida;
  }
  struct Cuenta {
    bool solo_visibles;
    int ventanas = 0;
  };
  static BOOL CALLBACK Suma(HWND ventana, LPARAM donde) {
    auto& cuenta = *reinterpret_cast<Cuenta*>(donde);
    cuenta.ventanas += !cuenta.solo_visibles || ::IsWindowVisible(ventana);
    return TRUE;
  }
  /// Windows of this thread, all of them or what the user sees.
  static int Cuantas(bool visibles) {
    Cuenta cuenta{visibles};
    ::EnumThreadWindows(::GetCurrentThreadId(), &Suma, reinterpret_cast<LPARAM>(&cuenta));
    return cuenta.ventanas;
  }
  const std::function<HRESULT()> modifica = [this] { return produccion->ModificaOp(&kOrden); };
  const std::function<HRESULT()> consulta = [this] { return produccion->ConsultaOp(&kOrden); };
  const std::function<HRESULT()> nueva = [this] { return produccion->NuevaOp(); };
  const std::function<HRESULT()> turnos = [this] { return produccion->MuestraTurnos(); };
};

TEST_F(Ventanas, SeLeenYSeCambianPorNombreDondeElAnfitrionLasRecibe) {
  for (const Estilo estilo : {Estilo::Simple, Estilo::ConTipos, Estilo::SoloEx}) {
    Abre(estilo);
    std::string momentos;
    ComPtr<IDispatch> guardada;
    tienda->con_ventana = [&](const std::string& momento, const ComPtr<IDispatch>& ventana) {
      momentos += momento + " ";
      if (momento == "Op001") guardada = ventana;
      if (momento != "PreparaVentana") return;
      // The very object that came before.
      EXPECT_EQ(ventana.As<IUnknown>(IID_IUnknown).get(), guardada.As<IUnknown>(IID_IUnknown).get());
      EXPECT_EQ(Lee(ventana, "Modo") + Lee(ventana, "op") + Lee(ventana, "RECHAZADO"), "MODIFICACION12False");
      EXPECT_EQ(Lee(ventana, "txtFields(14).Text") + Lee(ventana, "fg2.TextMatrix(1,0)"), "1K");
      EXPECT_EQ(Pon(ventana, "txtFields(4).Text", Texto(L"piñón")), S_OK);
      EXPECT_EQ(Pon(ventana, "Rechazado", V(VT_BOOL, VARIANT_TRUE)), S_OK);
    };
    ASSERT_EQ(modifica(), S_OK);
    ASSERT_TRUE(guardada);
    EXPECT_EQ(momentos, "Op001 PreparaVentana ");
    EXPECT_EQ(Lee(guardada, "txtFields(4).Text"), "piñón");
    EXPECT_EQ(Lee(guardada, "Rechazado"), "False");  // the load clears it
    // What is not there, not to be written, or not of the type.
    EXPECT_EQ(Codigo(guardada, "NoExiste"), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(Codigo(guardada, "txtFields(4).NoExiste"), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(Codigo(guardada, "txtFields(99)"), DISP_E_EXCEPTION);
    EXPECT_EQ(Codigo(guardada, "txtFields(1,2)"), DISP_E_BADPARAMCOUNT);
    for (const char* de_lectura : {"Visible", "Costo", "txtFields"})
      EXPECT_EQ(Pon(guardada, de_lectura, V(5)), DISP_E_MEMBERNOTFOUND) << de_lectura;
    EXPECT_EQ(Pon(guardada, "Op", Texto(L"doce")), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(Lee(guardada, "Op"), "12");

    EXPECT_EQ(Codigo(guardada, "Unload"), S_OK);
    EXPECT_EQ(Lee(guardada, "Visible"), "False");
    tienda->con_ventana = nullptr;
  }
}

TEST_F(Ventanas, VivenSinQuienLasAbrioYNoDejanNada) {
  int ventanas = 0;
  for (int vuelta = 0; vuelta < 4; ++vuelta)
    for (const auto& metodo : {modifica, consulta, nueva, turnos}) {
      Abre();
      auto ventana = VentanaDe(metodo);
      ASSERT_TRUE(ventana);
      const auto nativa = reinterpret_cast<HWND>(static_cast<std::intptr_t>(std::stol(Lee(ventana, "hWnd"))));
      produccion = {};
      EXPECT_EQ(Lee(ventana, "Visible"), "True");
      ventana = {};
      EXPECT_TRUE(::IsWindowVisible(nativa));
      EXPECT_EQ(dll.PuedeDescargarse(), S_FALSE);
      // As the user closes it: the editor goes a moment later.
      ::PostMessageW(nativa, WM_SYSCOMMAND, SC_CLOSE, 0);
      for (int i = 0; i < 100 && ::IsWindow(nativa); ++i) Atiende(20);
      EXPECT_FALSE(::IsWindow(nativa));
      EXPECT_EQ(dll.PuedeDescargarse(), S_OK);
      if (ventanas == 0) ventanas = Cuantas(false);
      EXPECT_EQ(Cuantas(false), ventanas);
    }
}

TEST_F(Ventanas, PuedenCerrarseDentroDeCualquierLlamadaAlAnfitrion) {
  const std::map<std::string, std::vector<std::function<HRESULT()>>> casos = {
      {"Op001", {modifica, consulta, nueva}},
      {"PreparaVentana", {modifica, consulta, nueva, turnos}},
      {"Op006", {modifica, nueva}},
      {"LiberaVentana", {modifica, consulta, nueva, turnos}}};
  for (const auto& caso : casos)
    for (const auto& metodo : caso.second) {
      SCOPED_TRACE(caso.first);
      Abre();
      ComPtr<IDispatch> guardada;
      int veces = 0;
      tienda->con_ventana = [&](const std::string& momento, const ComPtr<IDispatch>& ventana) {
        guardada = ventana;
        if (momento != caso.first) return;
        ++veces;
        EXPECT_EQ(Codigo(ventana, "Unload"), S_OK);
      };
      EXPECT_EQ(metodo(), S_OK);
      ASSERT_TRUE(guardada);
      if (veces == 0) {
        EXPECT_EQ(Codigo(guardada, "Unload"), S_OK);
      }
      EXPECT_EQ(veces, 1);
      EXPECT_EQ(Lee(guardada, "Visible"), "False");
      tienda->con_ventana = nullptr;
      guardada = {};
      produccion = {};
      EXPECT_EQ(dll.PuedeDescargarse(), S_OK);
      EXPECT_EQ(Cuantas(true), 0);
    }
}

}  // namespace
}  // namespace zuvi::prueba
