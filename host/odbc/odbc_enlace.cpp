#include "host/odbc/odbc_enlace.h"

#include <array>
#include <charconv>
#include <filesystem>

#include "base/text.h"
#include "host/odbc/odbc_cadena.h"
#include "host/odbc/odbc_sentencia.h"
#include "host/odbc/perdida.h"
#include "host/system/rutas.h"

namespace zuvi::host {
namespace {

// Bits of the MariaDB driver's OPTION: rows found rather than rows changed, as SQLite counts them; and
// several statements in one text, which we never allow.
constexpr unsigned kFilasHalladas = 2;
constexpr unsigned kVariasSentencias = 1u << 26;
// Its own reconnection would go on in the middle of a transaction, without our settings.
constexpr unsigned kReconecta = 1u << 22;

bool EsSqlite(std::string_view nombre) { return Minusculas(nombre).find("sqlite") != std::string::npos; }

/// Adds an attribute that the user may have set otherwise.
void PonSiFalta(CadenaOdbc& atributos, std::string_view nombre, int valor) {
  if (atributos.Trae(nombre).empty()) atributos.Pon(nombre, std::to_string(valor));
}

/// The string with what our statements rely on, whatever the user wrote, and the limits where he did not
/// write any. A string that names no driver may mean either engine; each ignores what is the other's.
std::string ConAjustes(const std::string& cadena, const Limites& limites) {
  CadenaOdbc atributos(cadena);
  // In milliseconds; SQLite's driver waits so long twice, once inside the engine and once around it.
  PonSiFalta(atributos, "Timeout", limites.candado * 1000 / 2);
  if (EsSqlite(atributos.Trae("DRIVER"))) return atributos.Texto();
  PonSiFalta(atributos, "CONN_TIMEOUT", limites.conexion);
  PonSiFalta(atributos, "READ_TIMEOUT", limites.lectura);
  PonSiFalta(atributos, "WRITE_TIMEOUT", limites.escritura);
  const std::string dada = atributos.Trae("OPTION");
  unsigned opciones = 0;
  std::from_chars(dada.data(), dada.data() + dada.size(), opciones);
  atributos.Pon("OPTION", std::to_string((opciones | kFilasHalladas) & ~(kVariasSentencias | kReconecta)));
  atributos.Quita("AUTO_RECONNECT");
  atributos.Pon("CHARSET", "utf8mb4");
  return atributos.Texto();
}

/// The limit of reading that the string names, else that of the settings.
int LecturaDe(const std::string& cadena, const Limites& limites) {
  const std::string dada = CadenaOdbc(cadena).Trae("READ_TIMEOUT");
  int segundos = limites.lectura;
  std::from_chars(dada.data(), dada.data() + dada.size(), segundos);
  return segundos;
}

ConexionPerdida NoConecta(const HostError& error) {
  return ConexionPerdida("No se pudo conectar con el servidor de la base de datos" + EntreParentesis(error),
                         error.NativeCode());
}

}  // namespace

EnlaceOdbc::EnlaceOdbc(const std::string& cadena, const Limites& limites)
    : limites_(limites), entorno_(NuevoEntorno()) {
  Exige(SQLAllocHandle(SQL_HANDLE_DBC, entorno_.Get(), enlace_.Out()), SQL_HANDLE_ENV, entorno_.Get(),
        forma_);
  limites_.lectura = LecturaDe(cadena, limites_);
  forma_ = FormaInicial(cadena);
  Abre(ConAjustes(cadena, limites_));
}

EnlaceOdbc::~EnlaceOdbc() {
  if (enlace_.Get()) SQLDisconnect(enlace_.Get());
}

void EnlaceOdbc::Abandona() {
  enlace_.Abandona();
  entorno_.Abandona();
}

/// The form to connect in, which a driver manager may hold on to for all that follows.
Forma EnlaceOdbc::FormaInicial(const std::string& cadena) const {
  const std::string driver = CadenaOdbc(cadena).Trae("DRIVER");
  if (EsAscii(cadena)) return EsSqlite(driver) || !kAngostosIntactos ? Forma::Utf16 : Forma::Utf8;
  if (!EsAscii(driver)) return kAngostosIntactos ? Forma::Utf8 : Forma::Utf16;
  // The file's name has to go in the form the driver understands, which only a connection can tell.
  return EsSqlite(driver) ? EnlaceOdbc("DRIVER={" + driver + "};Database=:memory:", limites_).forma_
                          : Forma::Utf16;
}

void EnlaceOdbc::Abre(const std::string& cadena) {
  for (bool lista = false; !lista;) {
    Conecta(cadena);
    try {
      motor_ = PreguntaMotor();
      lista = EligeForma();
      if (lista) PreparaSesion();
    } catch (const HostError& error) {
      if (!EsPerdida(motor_, error)) {
        SQLDisconnect(enlace_.Get());
        throw;
      }
      Abandona();
      throw NoConecta(error);
    }
    if (!lista) SQLDisconnect(enlace_.Get());
  }
}

void EnlaceOdbc::Conecta(const std::string& cadena) {
  SQLSMALLINT largo = 0;
  SQLRETURN resultado;
  if (forma_ == Forma::Utf16) {
    const std::u16string ancha = Utf16(cadena);
    resultado =
        SQLDriverConnectW(enlace_.Get(), nullptr, Ancho(ancha), static_cast<SQLSMALLINT>(ancha.size()),
                          nullptr, 0, &largo, SQL_DRIVER_NOPROMPT);
  } else {
    resultado =
        SQLDriverConnect(enlace_.Get(), nullptr, Angosto(cadena), static_cast<SQLSMALLINT>(cadena.size()),
                         nullptr, 0, &largo, SQL_DRIVER_NOPROMPT);
  }
  if (SQL_SUCCEEDED(resultado)) return;
  const HostError error = Diagnostico(SQL_HANDLE_DBC, enlace_.Get(), forma_);
  // What is not a file of SQLite's is a server's.
  if (EsSqlite(CadenaOdbc(cadena).Trae("DRIVER"))) throw Explicado(Motor::Sqlite, error);
  if (!EsPerdida(Motor::MariaDb, error)) throw error;
  throw NoConecta(error);
}

Motor EnlaceOdbc::PreguntaMotor() const {
  std::array<char16_t, 128> nombre{};
  SQLSMALLINT bytes = 0;
  Exige(SQLGetInfoW(enlace_.Get(), SQL_DBMS_NAME, nombre.data(), sizeof nombre, &bytes), SQL_HANDLE_DBC,
        enlace_.Get(), Forma::Utf16);
  const std::string motor = Utf8(nombre.data());
  if (EsSqlite(motor)) return Motor::Sqlite;
  if (IgualSinCaso(motor, "MariaDB") || IgualSinCaso(motor, "MySQL")) return Motor::MariaDb;
  throw HostError("El motor de base de datos \"" + motor + "\" no está admitido: use SQLite o MariaDB.");
}

bool EnlaceOdbc::Conserva(Forma forma) const {
  try {
    Sentencia sentencia(enlace_.Get(), motor_, forma);
    // The last one takes two UTF-16 units: under some locales only those are lost on the way.
    if (motor_ == Motor::MariaDb) {
      // Fails unless whole. A SET is how everything starts that makes a session ready, so that the work of
      // the application can be told from it in the server's log.
      sentencia.Corre("SET @forma = IF(hex('é€🎂') = 'C3A9E282ACF09F8E82', 1, (SELECT 1 UNION SELECT 2))");
      return true;
    }
    const Resultado leido = sentencia.Lee("SELECT hex('é€🎂')");
    return leido.celdas.size() == 1 && ATexto(leido.celdas[0]) == "C3A9E282ACF09F8E82";
  } catch (const HostError& error) {
    if (EsPerdida(motor_, error)) throw;
    return false;
  }
}

bool EnlaceOdbc::EligeForma() {
  if (motor_ == Motor::MariaDb) {
    // Its driver converts every UTF-16 text at a cost near that of the statement itself.
    if (forma_ == Forma::Utf16 || Conserva(Forma::Utf8)) return true;
    forma_ = Forma::Utf16;
    return false;
  }
  // SQLite's driver comes with and without the W functions.
  for (const Forma forma : {Forma::Utf16, Forma::Utf8}) {
    if (!Conserva(forma)) continue;
    forma_ = forma;
    return true;
  }
  throw HostError("El controlador ODBC de SQLite no conserva los acentos.");
}

void EnlaceOdbc::SoloLectura() {
  Sentencia sentencia(enlace_.Get(), motor_, forma_);
  sentencia.Corre(motor_ == Motor::MariaDb ? "SET SESSION TRANSACTION READ ONLY" : "PRAGMA query_only=ON");
}

void EnlaceOdbc::ExigeArchivo() const {
  std::error_code fallo;
  if (!archivo_.empty() && !std::filesystem::exists(Ruta(archivo_), fallo))
    throw HostError("El archivo de la base de datos ya no está en su lugar (" + archivo_ +
                    "); no se guardó nada.");
}

void EnlaceOdbc::PreparaSesion() {
  Sentencia sentencia(enlace_.Get(), motor_, forma_);
  if (motor_ == Motor::MariaDb) {
    // How texts are quoted must not depend on the server's settings.
    sentencia.Corre(
        "SET SESSION sql_mode='STRICT_TRANS_TABLES,ERROR_FOR_DIVISION_BY_ZERO,NO_ENGINE_SUBSTITUTION'");
    // The server gives up before we do: that costs a statement, where our own limit costs the connection.
    const std::string candado = std::to_string(limites_.candado);
    sentencia.Corre("SET SESSION innodb_lock_wait_timeout=" + candado + ", lock_wait_timeout=" + candado +
                    " /*M!100101 , max_statement_time=" + std::to_string(limites_.lectura * 9 / 10) + "." +
                    std::to_string(limites_.lectura * 9 % 10) + " */");
    return;
  }
  sentencia.Corre("PRAGMA foreign_keys=ON");
  const Resultado archivos = sentencia.Lee("PRAGMA database_list");
  if (archivos.celdas.size() >= 3) archivo_ = ATexto(archivos.celdas[2]);
  if (archivo_.empty()) return;  // in memory
  // For this connection; how the file keeps its journal is left as whoever made it has it.
  sentencia.Corre("PRAGMA synchronous=FULL");
}

}  // namespace zuvi::host
