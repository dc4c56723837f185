// A host for the tests: every object of the contract is a bare IDispatch, so that calls arrive as a stranger
// would see them. Each call can be made to fail, once or from then on, in the ways real hosts fail.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "automation/com_server.h"
#include "automation/variants.h"
#include "base/value.h"

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

class Tienda;

/// One late-bound call as the host sees it; arguments in declaration order.
class Llamada {
 public:
  Llamada(DISPPARAMS* params, ComModule& module) : params_(params), module_(module) {}
  std::size_t Cuantos() const { return params_->cArgs; }
  VARIANT& Crudo(std::size_t i) const { return params_->rgvarg[params_->cArgs - 1 - i]; }
  Value Arg(std::size_t i) const { return ValueDe(Crudo(i), module_); }
  std::string Texto(std::size_t i) const { return ATexto(Arg(i)); }
  void Deja(std::size_t i, const Value& value) const { WriteBack(value, Crudo(i), module_); }

 private:
  DISPPARAMS* params_;
  ComModule& module_;
};

/// What an object answers to any name it is called by.
using Respuestas = std::function<Value(const std::string& nombre, Llamada& llamada)>;

/// The whole shop: one order with two lines, kit K of two components, and what the module did with them.
class Tienda {
 public:
  explicit Tienda(Estilo estilo = Estilo::Simple);
  ~Tienda();
  Tienda(const Tienda&) = delete;
  Tienda& operator=(const Tienda&) = delete;

  /// Registers the host's classes for this process; the programmatic names must lead to `ClaseDe`.
  static CLSID ClaseDe(std::size_t clase);
  static constexpr const wchar_t* kClases[] = {L"ZuviQuery.AccesoDatos", L"ZuviQuery.ControlProcesos",
                                               L"ZuviQuery.VentanaProgreso",
                                               L"ZuviQuery.DocumentoInventario"};
  ComPtr<IDispatch> Ambiente();
  ComPtr<IDispatch> Crea(std::size_t clase);
  ComModule& Modulo() { return modulo_; }
  /// Makes the `nth` call fail (from 1), and all after it when `siempre`.
  void Rompe(int nth, Modo modo, bool siempre) { nth_ = nth, modo_ = modo, siempre_ = siempre; }
  std::optional<Modo> Toca();
  /// Living objects of this shop.
  static long Vivos();

  bool veta = false;
  /// The kit contains itself, as many levels deep.
  int kits_dentro = 0;
  bool confirma = true;
  std::string estado = "PE";
  int llamadas = 0;
  /// No run needs more; past it every call fails, so that a lying host cannot keep the module busy for ever.
  int limite = 3000;
  std::vector<std::string> hechos;  // statements and movements
  std::vector<VARTYPE> tipos;       // of the arguments of IniciaProceso or EjecutaSQL, whichever was last
  IUnknown* de_parte_de = nullptr;  // its second argument, not held
  std::function<void()> durante_consulta;  // what the host does while the module waits
  /// What it does with a window it is handed: "PreparaVentana", "LiberaVentana", or the key of a process.
  std::function<void(const std::string& momento, const ComPtr<IDispatch>& ventana)> con_ventana;

 private:
  Value Objeto(Respuestas responde, const IID* tipo = nullptr);
  Value Consulta(const std::string& sql);
  /// Columns and their values in turn.
  using Renglon = std::vector<Value>;
  Value Filas(std::vector<Renglon> filas);
  Value Nada(const std::string& nombre, Llamada& llamada);
  Value AccesoDatos(const std::string& nombre, Llamada& llamada);
  Value Procesos(const std::string& nombre, Llamada& llamada);
  Value Documento(const std::string& nombre, Llamada& llamada);
  void Ejecuta(Llamada& llamada);
  void Recibe(const std::string& momento, const Value& ventana);

  ComModule modulo_{"prueba", nullptr, 0};
  Estilo estilo_;
  std::vector<DWORD> registradas_;
  int nth_ = 0;
  Modo modo_ = Modo::ConTexto;
  bool siempre_ = false;
  std::map<std::string, std::string> documento_;
};

}  // namespace zuvi::prueba
