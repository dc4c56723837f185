// The host in memory as a stranger's: every object is a bare IDispatch. Each call can be made to fail, once
// or from then on, in the ways real hosts fail.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "automation/com_ptr.h"
#include "automation/com_server.h"
#include "tests/support/mundo.h"

namespace zuvi::prueba {

/// How a host call fails. From `Vacio` on the host claims success.
enum class Modo {
  ConTexto,
  Diferido,
  SinTexto,
  SinMiembro,
  TipoErroneo,
  SinMemoria,
  Desconectado,
  Vacio,
  OtroTipo,
  Nada
};
inline constexpr Modo kModos[] = {Modo::ConTexto,    Modo::Diferido,   Modo::SinTexto,     Modo::SinMiembro,
                                  Modo::TipoErroneo, Modo::SinMemoria, Modo::Desconectado, Modo::Vacio,
                                  Modo::OtroTipo,    Modo::Nada};
inline constexpr const wchar_t* kTextoError = L"se perdió la conexión\r\nseñal ñ";

/// What a host object offers to the type information seekers and the name seekers.
enum class Estilo { Simple, ConTipos, SoloEx };

/// The shop of the host in memory, published: an order, kit K of two components, and what the module did.
class Tienda {
 public:
  /// Registers the host's classes for this process; the programmatic names must lead to `ClaseDe`.
  explicit Tienda(Estilo estilo = Estilo::Simple);
  ~Tienda();
  Tienda(const Tienda&) = delete;
  Tienda& operator=(const Tienda&) = delete;

  static CLSID ClaseDe(std::size_t clase);
  static constexpr const wchar_t* kClases[] = {L"ZuviQuery.AccesoDatos", L"ZuviQuery.ControlProcesos",
                                               L"ZuviQuery.VentanaProgreso",
                                               L"ZuviQuery.DocumentoInventario"};
  ComPtr<IDispatch> Ambiente();
  ComServer& Modulo() { return modulo_; }
  /// Makes the `nth` call fail (from 1), and all after it when `siempre`.
  void Rompe(int nth, Modo modo, bool siempre) { nth_ = nth, modo_ = modo, siempre_ = siempre; }
  std::optional<Modo> Toca();
  /// One call as it came, answered by the object in memory.
  Value Atiende(Object& objeto, const std::string& nombre, const DISPPARAMS& params);
  /// An article in the catalogue.
  void PonCosto(const std::string& articulo, std::int16_t es_kit);
  /// Statements, movements and processes closed, as the log has them.
  std::vector<std::string> Hechos() const;
  /// Living objects of this shop.
  static long Vivos();

  pruebas::Mundo mundo;
  int llamadas = 0;
  /// No run needs more; past it every call fails, so that a lying host cannot keep the module busy for ever.
  int limite = 3000;
  std::vector<VARTYPE> tipos;       // of the arguments of IniciaProceso or EjecutaSQL, whichever was last
  IUnknown* de_parte_de = nullptr;  // the second one of IniciaProceso, not held
  /// What it does with a window it is handed: "PreparaVentana", "LiberaVentana", or the key of a process.
  std::function<void(const std::string& momento, const ComPtr<IDispatch>& ventana)> con_ventana;

 private:
  Value Objeto(ObjectPtr objeto, const IID* tipo = nullptr);

  ComServer modulo_{"prueba", nullptr, 0};
  Estilo estilo_;
  std::vector<DWORD> registradas_;
  int nth_ = 0;
  Modo modo_ = Modo::ConTexto;
  bool siempre_ = false;
};

}  // namespace zuvi::prueba
