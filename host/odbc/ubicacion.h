#pragma once

#include <optional>
#include <string>

#include "base/error.h"
#include "host/odbc/base_datos.h"

namespace zuvi::host {

struct Opciones;

/// Where the data of a host are: a SQLite file, a database in memory, or what an ODBC connection string
/// names. The connection strings it makes are spelled as the drivers read them: in one order, without braces
/// where a driver knows none, a file under its full name; with the installed driver where none was named.
class Ubicacion {
 public:
  /// How a file is opened. `Nueva` may create it; `Lectura` only reads, but may make the file that those
  /// who have it open share; `Intacta` leaves beside it what is there, and fails where that is not enough;
  /// `Congelada` reads a file that nobody can be writing, without the files that go with one being written.
  enum class Modo { Existente, Nueva, Lectura, Intacta, Congelada };

  /// Throws HostError for settings that name no database, without showing a password.
  explicit Ubicacion(const Opciones& opciones);

  bool EsArchivo() const { return !archivo_.empty(); }
  bool EnMemoria() const { return en_memoria_; }
  /// Name of the file, in full; empty when it is none.
  const std::string& Archivo() const { return archivo_; }
  /// A file that is not there.
  bool Falta() const;
  /// Whether a program that has the file open, or had it open when it died, left changes beside it.
  bool TieneCambiosAlLado() const { return TieneWal() || TieneJournal(); }
  /// Those of a file in WAL mode. Who has it open may have written nothing yet: it counts when it is empty.
  bool TieneWal() const;
  /// Whether this account may not write the file, or not beside it.
  bool EsDeSoloLectura() const;
  /// Whether it is a file on another machine's disk, as `Opciones::esta_en_red` tells.
  bool EstaEnRed() const { return EsArchivo() && esta_en_red_ && esta_en_red_(archivo_); }
  /// Throws HostError when what is there is no SQLite database: a folder, a text, something unreadable.
  void ExigeBase() const;
  /// Throws HostError where a driver is to be found and none is installed.
  std::string Cadena(Modo modo) const;
  /// Another file, opened the same way.
  Ubicacion Con(const std::string& archivo) const;
  /// The error with which opening or making the database failed, in the words of its user where the engine's
  /// tell too little.
  HostError Explica(const HostError& error) const;

 private:
  bool TieneJournal() const;
  void LeeCadena(const std::string& texto);
  void PonArchivo(const std::string& archivo);

  /// Begins a connection string with the driver.
  std::string ConControlador() const;

  std::string controlador_, origen_;  // as a connection string names them
  std::optional<Engine> se_busca_;    // the engine whose driver is to be found, where none is named
  std::string resto_;                 // attributes besides driver and file, or the whole string
  std::string archivo_;
  std::string para_controlador_;  // the file as the driver calls it
  bool en_memoria_ = false;
  std::string (*del_sistema_)(const std::string&) = nullptr;
  std::string (*del_controlador_)(const std::string&) = nullptr;
  bool (*esta_en_red_)(const std::string&) = nullptr;
};

/// A file in the making, beside the place where it will be. Gone with this object.
class ArchivoAparte {
 public:
  explicit ArchivoAparte(const Ubicacion& lugar);
  ArchivoAparte(const ArchivoAparte&) = delete;
  ArchivoAparte& operator=(const ArchivoAparte&) = delete;
  ~ArchivoAparte();
  /// Where it is being made.
  const Ubicacion& Lugar() const { return aparte_; }
  /// Puts the closed file in its place. False when there is one by now, which stays. Throws HostError.
  bool Publica() const;

 private:
  Ubicacion aparte_;
  std::string destino_;
};

}  // namespace zuvi::host
