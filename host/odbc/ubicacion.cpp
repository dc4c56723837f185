#include "host/odbc/ubicacion.h"

#include <array>
#include <fstream>
#include <random>

#ifndef _WIN32
#include <fcntl.h>
#include <unistd.h>
#endif

#include "base/text.h"
#include "host/odbc/odbc_attributes.h"
#include "host/odbc/odbc_drivers.h"
#include "host/odbc/opciones.h"
#include "host/system/archivos.h"
#include "host/system/rutas.h"

namespace zuvi::host {
namespace {

constexpr const char* kMemoria = ":memory:";

/// SQLite also takes a file's name as an address; that is how a name gets through to it in which the driver
/// would see the end of the attribute.
std::string Direccion(const std::string& archivo) {
  constexpr char kHex[] = "0123456789ABCDEF";
  std::string direccion = "file:";
  for (const char c : archivo) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte > ' ' && byte != 127 && c != ';' && c != '%' && c != '?' && c != '#' && c != '{' && c != '}') {
      direccion += c;
    } else {
      direccion += '%';
      direccion += kHex[byte >> 4];
      direccion += kHex[byte & 15];
    }
  }
  return direccion;
}

/// On Windows the driver takes what stands between two percent signs for a variable.
bool PasaTalCual(const std::string& archivo) {
  return archivo.find_first_of(";%") == std::string::npos && Trim(archivo).size() == archivo.size();
}

}  // namespace

void PonBase(Opciones& opciones, const std::string& base) {
  const bool cadena = LooksLikeConnectionString(base);
  opciones.cadena = cadena ? base : "";
  opciones.archivo = cadena ? "" : base;
  opciones.archivo_por_omision = false;
}

Ubicacion::Ubicacion(const Opciones& opciones)
    : del_sistema_(opciones.nombre_del_sistema),
      del_controlador_(opciones.nombre_para_controlador),
      esta_en_red_(opciones.esta_en_red) {
  if (!opciones.cadena.empty())
    LeeCadena(opciones.cadena);
  else if (opciones.archivo.empty())
    throw HostError("No se ha indicado la base de datos");
  else {
    se_busca_ = Engine::Sqlite;
    PonArchivo(opciones.archivo);
  }
}

void Ubicacion::LeeCadena(const std::string& texto) {
  OdbcAttributes cadena(texto);
  const auto no_se_entiende = [&](const std::string& por_que) {
    throw HostError("No se entiende la cadena de conexión \"" + WithoutPassword(texto) + "\": " + por_que);
  };
  if (!cadena.Defect().empty()) no_se_entiende(cadena.Defect());
  controlador_ = cadena.Get("DRIVER");
  origen_ = cadena.Get(cadena.Get("DSN").empty() ? "FILEDSN" : "DSN");
  if (controlador_.empty() && origen_.empty()) {
    // Whoever names a server means the one engine that has any.
    if (cadena.Get("Server").empty() && cadena.Get("Socket").empty())
      no_se_entiende("falta Server=…, DRIVER=… o DSN=…");
    se_busca_ = Engine::MariaDb;
    cadena.Remove("DRIVER");
  }
  if (!IsSqlite(controlador_)) {
    // A data source may turn out to be a file: it is not made by opening it.
    if (!origen_.empty() && controlador_.empty()) cadena.Set("NoCreat", "1");
    resto_ = cadena.Text();
    return;
  }
  const std::string archivo = cadena.Get("Database");
  if (archivo.empty()) no_se_entiende("falta el archivo, Database=…");
  for (const char* nombre : {"DRIVER", "Database", "NoCreat"}) cadena.Remove(nombre);
  resto_ = cadena.Text();
  PonArchivo(archivo);
}

void Ubicacion::PonArchivo(const std::string& archivo) {
  en_memoria_ = archivo == kMemoria;
  if (en_memoria_) return;
  if (archivo.find("://") != std::string::npos)
    throw HostError("No se entiende la base de datos \"" + WithoutPassword("=" + archivo).substr(1) +
                    "\": se indica un archivo o una cadena de conexión ODBC");
  if (archivo.find('\0') != std::string::npos) throw HostError("El nombre de la base tiene un carácter nulo");
  archivo_ = TextoDeRuta(Completa(Ruta(del_sistema_ ? del_sistema_(archivo) : archivo)));
  para_controlador_ = del_controlador_ ? del_controlador_(archivo_) : archivo_;
}

bool Ubicacion::Falta() const {
  std::error_code fallo;
  return EsArchivo() && !std::filesystem::exists(Ruta(archivo_), fallo) && !fallo;
}

bool Ubicacion::TieneWal() const {
  std::error_code fallo;
  return EsArchivo() && std::filesystem::exists(Ruta(archivo_ + "-wal"), fallo);
}

bool Ubicacion::TieneJournal() const {
  std::error_code fallo;
  const auto bytes = std::filesystem::file_size(Ruta(archivo_ + "-journal"), fallo);
  return EsArchivo() && !fallo && bytes > 0;
}

bool Ubicacion::EsDeSoloLectura() const {
#ifdef _WIN32
  return false;
#else
  const auto negada = [](const std::string& ruta) {
    return faccessat(AT_FDCWD, ruta.c_str(), W_OK, AT_EACCESS) != 0;
  };
  return EsArchivo() && (negada(archivo_) || negada(TextoDeRuta(Ruta(archivo_).parent_path())));
#endif
}

void Ubicacion::ExigeBase() const {
  if (!EsArchivo()) return;
  const auto ruta = Ruta(archivo_);
  std::error_code fallo;
  const auto estado = std::filesystem::status(ruta, fallo);
  if (!std::filesystem::exists(estado))
    throw HostError(fallo && fallo != std::errc::no_such_file_or_directory
                        ? "No se puede leer " + archivo_ + ": falta permiso"
                        : "No existe la base de datos " + archivo_ +
                              "; se crea con zuvi crea o con Zuvi.exe");
  if (std::filesystem::is_directory(estado))
    throw HostError(archivo_ + " es una carpeta, no una base de datos");
  if (!std::filesystem::is_regular_file(estado)) throw HostError(archivo_ + " no es un archivo");
  std::ifstream archivo(ruta, std::ios::binary);
  if (!archivo) throw HostError("No se puede leer " + archivo_ + ": falta permiso");
  constexpr std::string_view kMarca("SQLite format 3\0", 16);
  std::array<char, kMarca.size()> inicio{};
  archivo.read(inicio.data(), inicio.size());
  const auto leidos = static_cast<std::size_t>(archivo.gcount());
  if (leidos > 0 && std::string_view(inicio.data(), leidos) != kMarca)
    throw HostError(archivo_ + " no es una base de datos SQLite, o está dañada");
}

std::string Ubicacion::ConControlador() const {
  return "DRIVER={" + (se_busca_ ? DriverFor(*se_busca_) : controlador_) + "};";
}

std::string Ubicacion::Cadena(Modo modo) const {
  if (en_memoria_) return ConControlador() + "Database=:memory:;" + resto_;
  if (!EsArchivo()) return se_busca_ ? ConControlador() + resto_ : resto_;
  std::string base = para_controlador_;
  if ((modo != Modo::Existente && modo != Modo::Nueva) || !PasaTalCual(base)) {
    base = Direccion(base);
    if (modo == Modo::Lectura) base += "?mode=ro";
    if (modo == Modo::Intacta) base += "?mode=ro&readonly_shm=1";
    if (modo == Modo::Congelada) base += "?immutable=1";
  }
  return ConControlador() + "Database=" + base + ";NoCreat=" + (modo == Modo::Nueva ? "0" : "1") + ";" +
         resto_;
}

HostError Ubicacion::Explica(const HostError& dado) const {
  HostError error = ExplainMissingDriver(controlador_, origen_, dado);
  const auto dice = [&](const std::string& texto) {
    return HostError(texto + " (" + error.what() + ")", error.Number(), error.NativeCode(), error.SqlState());
  };
  const bool sin_conectar = error.what() == std::string_view("connect failed");
  if (!EsArchivo())
    return sin_conectar
               ? dice(
                     "No se pudo abrir el origen de datos; si es un archivo SQLite que no existe, se crea "
                     "nombrando el archivo")
               : error;
  constexpr std::int32_t kSoloLectura = 8, kDanio = 11, kNoSeAbre = 14, kNoEsBase = 26;
  switch (error.NativeCode()) {
    case kSoloLectura:
      return dice("No se puede escribir en " + archivo_ + " o en su carpeta");
    case kDanio:
    case kNoEsBase:
      return dice(archivo_ + " está dañada; restaure un respaldo");
    case kNoSeAbre:
      return dice("No se puede abrir " + archivo_);
    default:
      if (!sin_conectar) return error;
      return dice(Falta() ? "No se puede crear " + archivo_ + ": la carpeta no existe o falta permiso"
                          : "No se puede abrir " + archivo_);
  }
}

Ubicacion Ubicacion::Con(const std::string& archivo) const {
  Ubicacion otra = *this;
  otra.PonArchivo(archivo);
  return otra;
}

ArchivoAparte::ArchivoAparte(const Ubicacion& lugar)
    : aparte_(lugar.Con(lugar.Archivo() + ".nueva-" + std::to_string(std::random_device{}()))),
      destino_(lugar.Archivo()) {}

ArchivoAparte::~ArchivoAparte() {
  for (const char* cola : {"", "-journal", "-wal", "-shm"}) {
    std::error_code fallo;
    std::filesystem::remove(Ruta(aparte_.Archivo() + cola), fallo);
  }
}

bool ArchivoAparte::Publica() const {
  const auto origen = Ruta(aparte_.Archivo()), destino = Ruta(destino_);
  std::error_code fallo;
  // A second name for the file, which is not given where the name is taken.
  std::filesystem::create_hard_link(origen, destino, fallo);
  if (!fallo) return true;
  if (std::filesystem::exists(std::filesystem::symlink_status(destino))) return false;
  std::filesystem::rename(origen, destino, fallo);  // a disk without second names
  if (fallo) throw HostError("No se puede crear " + destino_ + ": " + fallo.message());
  return true;
}

}  // namespace zuvi::host
