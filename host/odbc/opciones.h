#pragma once

#include <cstdint>
#include <string>

namespace zuvi::host {

/// Settings of one running host.
struct Opciones {
  /// ODBC connection string; empty means the SQLite file `archivo`.
  std::string cadena;
  /// SQLite file; ":memory:" is allowed, and begins as the example shop.
  std::string archivo;
  /// A SQLite file that is not there is made, with the example shop.
  bool crea_archivo = false;
  /// The file is the one that is used when none is named.
  bool archivo_por_omision = false;
  /// Nothing will be written: what this account may only read is enough.
  bool solo_lee = false;
  /// What this system calls a file, and how the driver calls it, where the two part ways (a driver of another
  /// system under an emulation).
  std::string (*nombre_del_sistema)(const std::string&) = nullptr;
  std::string (*nombre_para_controlador)(const std::string&) = nullptr;
  /// Whether a file lies on another machine's disk; without it none does.
  bool (*esta_en_red)(const std::string&) = nullptr;
  std::string usuario = "ADMIN";
  /// Folder of the application, without trailing separator.
  std::string ruta;
  /// Folders for printable pages; the first that can be written takes them.
  std::vector<std::string> reportes;
  /// Language of the message catalogue, "es" or "en".
  std::string idioma = "es";
  /// Number of this station; its settings are the row of `parametros` with this key.
  std::int32_t estacion = 1;
};

/// Sets the database of `opciones` from one text: an ODBC connection string, or the name of a SQLite file.
/// What is wrong with it is told when it is opened.
void PonBase(Opciones& opciones, const std::string& base);

}  // namespace zuvi::host
