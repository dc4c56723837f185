// windows/: what the windows of the module have in common: the state of the module, the report of errors, the
// literals of statements, and VentanaModulo, from which each window derives. Knows the contract and the
// toolkit.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "toolkit/form.h"
#include "toolkit/indicators.h"
#include "toolkit/list_view.h"
#include "windows/modulo.h"
#include "windows/reporta_error.h"

namespace zuvi {

inline constexpr const char* kAlta = "ALTA";
inline constexpr const char* kModificacion = "MODIFICACION";
inline constexpr const char* kConsulta = "CONSULTA";

/// What the module's windows have in common: the environment they work in, the shared host objects, and the
/// one way of trapping errors, telling, asking and starting host processes.
class VentanaModulo : public Form {
 public:
  /// `nombre` is the window's name, under which its errors are reported.
  VentanaModulo(Modulo& modulo, const char* nombre);

  /// The environment as its opener gave it; null before. Any object passes here, what is none of ours fails
  /// where it is used.
  const ObjectPtr& TraeAmbiente() const { return ambiente_; }
  void PonAmbiente(ObjectPtr ambiente);

 protected:
  Modulo& ElModulo() const { return modulo_; }
  /// As `Modulo::Datos`.
  AccesoDatos& Datos() const { return modulo_.Datos(); }
  /// The environment through its contract. Throws HostError (ObjectNotSet) before it was set.
  const std::shared_ptr<Ambiente>& Entorno() const;
  /// The environment's connection; asks the host each time.
  std::shared_ptr<Conexion> TraeConexion() const { return Entorno()->TraeConexion(); }

  /// Runs the body of a procedure; an error is reported under this window's name and ends it. True when it
  /// ran to its end.
  template <class Body>
  bool Trata(const char* procedimiento, Body&& body) {
    const auto yo = Keep();
    return ConReporte(Screen(), Name().c_str(), procedimiento, std::forward<Body>(body));
  }
  /// A SELECT on the environment's connection.
  std::shared_ptr<Recordset> Consulta(const std::string& sql) const;
  /// Shows a message of the host's catalogue as information.
  void Mensaje(NumeroMensaje numero) const;
  /// Asks a question of the host's catalogue; `modo` is 2 for orders, 1 for shifts.
  bool Pregunta(NumeroMensaje numero, std::int16_t modo) const;
  /// Starts a host process on behalf of this window; the flag of the answer is still set when the host did
  /// not let the window's own action go ahead.
  PeticionProceso IniciaProceso(const char* clave);
  /// Hands this window to the host: at the end of its load, and when it unloads.
  void Prepara();
  void Libera();
  /// One fill of a list: the count becomes the bar's maximum, then `agrega` adds the record set's rows one by
  /// one, and pending events run in between. It ends early when the window was closed meanwhile, or when a
  /// newer fill of the same list has begun.
  void LlenaLista(ListView& lista, ProgressBar& barra, const std::string& cuenta, const std::string& filas,
                  const std::function<void(ListItems& items, Recordset& fila)>& agrega);
  /// Text of a field without the blanks around it; "" for Null.
  static std::string Campo(Recordset& fila, FixedText nombre);
  /// Today, and the time as "hh:mm:ss", by this station's clock.
  Date Hoy() const { return Screen().Now().DayOnly(); }
  std::string Hora() const { return Screen().Now().Formatea("hh:mm:ss"); }

 private:
  Modulo& modulo_;
  ObjectPtr ambiente_;
  std::shared_ptr<Ambiente> entorno_;
  std::map<const ListView*, int> llenados_;  // number of the newest fill of each list
};

/// Gives a control the focus when it is enabled; otherwise the focus stays where it is.
void EnfocaSiHabilitado(Control& control);

}  // namespace zuvi
