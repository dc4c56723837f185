#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "services/acceso_datos.h"

namespace zuvi::host {

/// A progress display; closed by its destructor at the latest.
class Progreso {
 public:
  virtual ~Progreso() = default;
  /// Shows that so many steps of the total are done, and two lines of what is being done.
  virtual void Avanza(std::int32_t paso, const std::string& texto, const std::string& texto2) = 0;
};

/// How the host talks to its user: console (`zuvi`), windows (ZuviHost.dll, Zuvi.exe) or answers given
/// beforehand.
class Interaccion {
 public:
  virtual ~Interaccion() = default;
  /// Shows a text until the user has seen it, as the station does that.
  virtual void Mensaje(const std::string& texto, EstiloMensaje estilo) = 0;
  /// True when the user confirms. Without anybody to ask the answer is no.
  virtual bool Pregunta(const std::string& texto) = 0;
  /// Opens a progress display of `total` steps; `animacion` names a film beside the program that may be
  /// shown.
  virtual std::unique_ptr<Progreso> AbreProgreso(std::int32_t total, const std::string& titulo,
                                                 const std::string& animacion) = 0;
  /// A page was written that the user asked for: shows it, or makes of it what can be printed. A station
  /// where nobody looks leaves it at the file. What goes another way than asked for is told through `dice`.
  virtual void MuestraDocumento(const std::string& /*archivo*/,
                                const std::function<void(const std::string&)>& /*dice*/) {}
  /// True once the user wants running work to end; the next statement then fails. Reading it clears nothing:
  /// the calls that are still open have to end as well.
  virtual bool Cancelado() = 0;
  /// Lets the user's windows answer between two pieces of long work: what is pending runs, whatever it does.
  /// No transaction may be open. False when the program is ending, and the work should.
  virtual bool AtiendeVentanas() { return true; }
  /// A method of the module has begun (it reads the connection first of all): an earlier cancellation is
  /// settled.
  virtual void NuevaOperacion() {}
};

}  // namespace zuvi::host
