#pragma once

#include <string>

#include "host/base_datos.h"
#include "host/odbc_api.h"

namespace zuvi::host {

/// A connection to the database, made ready: engine and form of texts found out, session settings done.
/// Disconnected by the destructor.
class EnlaceOdbc {
 public:
  /// Throws HostError when the database cannot be reached or is none of the engines.
  explicit EnlaceOdbc(const std::string& cadena);
  EnlaceOdbc(const EnlaceOdbc&) = delete;
  EnlaceOdbc& operator=(const EnlaceOdbc&) = delete;
  ~EnlaceOdbc();

  SQLHANDLE Get() const { return enlace_.Get(); }
  Motor TraeMotor() const { return motor_; }
  Forma TraeForma() const { return forma_; }

 private:
  void Abre(const std::string& cadena);
  static Forma FormaInicial(const std::string& cadena);
  void Conecta(const std::string& cadena);
  Motor PreguntaMotor() const;
  /// True when a text with more than one byte a character arrives whole in that form.
  bool Conserva(Forma forma) const;
  /// False when the form has to be another one, which takes connecting anew.
  bool EligeForma();
  void PreparaSesion();

  Entorno entorno_;
  Enlace enlace_;
  Motor motor_ = Motor::Sqlite;
  Forma forma_ = Forma::Utf16;
};

}  // namespace zuvi::host
