#pragma once

#include <string>

#include "host/odbc/base_datos.h"
#include "host/odbc/limites.h"
#include "host/odbc/odbc_api.h"

namespace zuvi::host {

/// A connection to the database, made ready: engine and form of texts found out, session settings done.
/// Disconnected by the destructor.
class EnlaceOdbc {
 public:
  /// Throws HostError when the database cannot be reached within its limit or is none of the engines.
  EnlaceOdbc(const std::string& cadena, const Limites& limites);
  EnlaceOdbc(const EnlaceOdbc&) = delete;
  EnlaceOdbc& operator=(const EnlaceOdbc&) = delete;
  ~EnlaceOdbc();

  SQLHANDLE Get() const { return enlace_.Get(); }
  Motor TraeMotor() const { return motor_; }
  Forma TraeForma() const { return forma_; }
  /// File of a SQLite database by the name that its driver has for it; empty when it is kept in none.
  const std::string& Archivo() const { return archivo_; }
  /// From now on nothing changes in the database by this connection: the engine refuses it.
  void SoloLectura();
  /// Throws HostError when the file of a SQLite database is not in its place any more: what is written to it
  /// would be gone with the program.
  void ExigeArchivo() const;
  /// Forgets a lost connection without touching it again.
  void Abandona();

 private:
  void Abre(const std::string& cadena);
  Forma FormaInicial(const std::string& cadena) const;
  void Conecta(const std::string& cadena);
  Motor PreguntaMotor() const;
  /// True when a text with more than one byte a character arrives whole in that form.
  bool Conserva(Forma forma) const;
  /// False when the form has to be another one, which takes connecting anew.
  bool EligeForma();
  void PreparaSesion();

  Limites limites_;
  Entorno entorno_;
  Enlace enlace_;
  std::string archivo_;
  Motor motor_ = Motor::Sqlite;
  Forma forma_ = Forma::Utf16;
};

}  // namespace zuvi::host
