#include "host/odbc/odbc_connection.h"

#include <array>
#include <charconv>
#include <filesystem>

#include "base/text.h"
#include "host/odbc/connection_lost.h"
#include "host/odbc/odbc_attributes.h"
#include "host/odbc/odbc_drivers.h"
#include "host/odbc/odbc_statement.h"
#include "host/system/rutas.h"

namespace zuvi::host {
namespace {

// Bits of the MariaDB driver's OPTION: rows found rather than rows changed, as SQLite counts them; and
// several statements in one text, which we never allow.
constexpr unsigned kFoundRows = 2;
constexpr unsigned kMultiStatements = 1u << 26;
// Its own reconnection would go on in the middle of a transaction, without our settings.
constexpr unsigned kReconnect = 1u << 22;

/// Adds an attribute that the user may have set otherwise.
void SetIfMissing(OdbcAttributes& attributes, std::string_view name, int value) {
  if (attributes.Get(name).empty()) attributes.Set(name, std::to_string(value));
}

/// The string with what our statements rely on, whatever the user wrote, and the limits where he did not
/// write any. A string that names no driver may mean either engine; each ignores what is the other's.
std::string WithSettings(const std::string& connection_string, const Limits& limits) {
  OdbcAttributes attributes(connection_string);
  // In milliseconds; SQLite's driver waits so long twice, once inside the engine and once around it.
  SetIfMissing(attributes, "Timeout", limits.lock * 1000 / 2);
  if (IsSqlite(attributes.Get("DRIVER"))) return attributes.Text();
  SetIfMissing(attributes, "CONN_TIMEOUT", limits.connect);
  SetIfMissing(attributes, "READ_TIMEOUT", limits.read);
  SetIfMissing(attributes, "WRITE_TIMEOUT", limits.write);
  const std::string given = attributes.Get("OPTION");
  unsigned options = 0;
  std::from_chars(given.data(), given.data() + given.size(), options);
  attributes.Set("OPTION", std::to_string((options | kFoundRows) & ~(kMultiStatements | kReconnect)));
  attributes.Remove("AUTO_RECONNECT");
  attributes.Set("CHARSET", "utf8mb4");
  return attributes.Text();
}

/// The limit of reading that the string names, else that of the settings.
int ReadLimitOf(const std::string& connection_string, const Limits& limits) {
  const std::string given = OdbcAttributes(connection_string).Get("READ_TIMEOUT");
  int seconds = limits.read;
  std::from_chars(given.data(), given.data() + given.size(), seconds);
  return seconds;
}

ConnectionLost CannotConnect(const HostError& error) {
  return ConnectionLost("No se pudo conectar con el servidor de la base de datos" + InParentheses(error),
                        error.NativeCode());
}

}  // namespace

OdbcConnection::OdbcConnection(const std::string& connection_string, const Limits& limits)
    : limits_(limits), environment_(NewEnvironment()) {
  Check(SQLAllocHandle(SQL_HANDLE_DBC, environment_.Get(), connection_.Out()), SQL_HANDLE_ENV,
        environment_.Get(), encoding_);
  limits_.read = ReadLimitOf(connection_string, limits_);
  encoding_ = InitialEncoding(connection_string);
  Open(WithSettings(connection_string, limits_));
}

OdbcConnection::~OdbcConnection() {
  if (connection_.Get()) SQLDisconnect(connection_.Get());
}

void OdbcConnection::Abandon() {
  connection_.Abandon();
  environment_.Abandon();
}

/// The form to connect in, which a driver manager may hold on to for all that follows.
Encoding OdbcConnection::InitialEncoding(const std::string& connection_string) const {
  const std::string driver = OdbcAttributes(connection_string).Get("DRIVER");
  if (IsAscii(connection_string))
    return IsSqlite(driver) || !kPlainTextIntact ? Encoding::Utf16 : Encoding::Utf8;
  if (!IsAscii(driver)) return kPlainTextIntact ? Encoding::Utf8 : Encoding::Utf16;
  // The file's name has to go in the form the driver understands, which only a connection can tell.
  return IsSqlite(driver) ? OdbcConnection("DRIVER={" + driver + "};Database=:memory:", limits_).encoding_
                          : Encoding::Utf16;
}

void OdbcConnection::Open(const std::string& connection_string) {
  for (bool ready = false; !ready;) {
    Connect(connection_string);
    try {
      engine_ = AskEngine();
      ready = ChooseEncoding();
      if (ready) PrepareSession();
    } catch (const HostError& error) {
      if (!IsConnectionLoss(engine_, error)) {
        SQLDisconnect(connection_.Get());
        throw;
      }
      Abandon();
      throw CannotConnect(error);
    }
    if (!ready) SQLDisconnect(connection_.Get());
  }
}

void OdbcConnection::Connect(const std::string& connection_string) {
  SQLSMALLINT length = 0;
  SQLRETURN result;
  if (encoding_ == Encoding::Utf16) {
    const std::u16string wide = Utf16(connection_string);
    result = SQLDriverConnectW(connection_.Get(), nullptr, Wide(wide), static_cast<SQLSMALLINT>(wide.size()),
                               nullptr, 0, &length, SQL_DRIVER_NOPROMPT);
  } else {
    result = SQLDriverConnect(connection_.Get(), nullptr, Narrow(connection_string),
                              static_cast<SQLSMALLINT>(connection_string.size()), nullptr, 0, &length,
                              SQL_DRIVER_NOPROMPT);
  }
  if (SQL_SUCCEEDED(result)) return;
  const HostError error = Diagnostics(SQL_HANDLE_DBC, connection_.Get(), encoding_);
  // What is not a file of SQLite's is a server's.
  if (IsSqlite(OdbcAttributes(connection_string).Get("DRIVER"))) throw Explained(Engine::Sqlite, error);
  if (!IsConnectionLoss(Engine::MariaDb, error)) throw error;
  throw CannotConnect(error);
}

Engine OdbcConnection::AskEngine() const {
  std::array<char16_t, 128> name{};
  SQLSMALLINT bytes = 0;
  Check(SQLGetInfoW(connection_.Get(), SQL_DBMS_NAME, name.data(), sizeof name, &bytes), SQL_HANDLE_DBC,
        connection_.Get(), Encoding::Utf16);
  const std::string engine = Utf8(name.data());
  if (IsSqlite(engine)) return Engine::Sqlite;
  if (EqualsIgnoringCase(engine, "MariaDB") || EqualsIgnoringCase(engine, "MySQL")) return Engine::MariaDb;
  throw HostError("El motor de base de datos \"" + engine + "\" no está admitido: use SQLite o MariaDB.");
}

bool OdbcConnection::Preserves(Encoding encoding) const {
  try {
    Statement statement(connection_.Get(), engine_, encoding);
    // The last one takes two UTF-16 units: under some locales only those are lost on the way.
    if (engine_ == Engine::MariaDb) {
      // Fails unless whole. A SET is how everything starts that makes a session ready, so that the work of
      // the application can be told from it in the server's log.
      statement.Run("SET @forma = IF(hex('é€🎂') = 'C3A9E282ACF09F8E82', 1, (SELECT 1 UNION SELECT 2))");
      return true;
    }
    const ResultSet echoed = statement.Query("SELECT hex('é€🎂')");
    return echoed.cells.size() == 1 && ToText(echoed.cells[0]) == "C3A9E282ACF09F8E82";
  } catch (const HostError& error) {
    if (IsConnectionLoss(engine_, error)) throw;
    return false;
  }
}

bool OdbcConnection::ChooseEncoding() {
  if (engine_ == Engine::MariaDb) {
    // Its driver converts every UTF-16 text at a cost near that of the statement itself.
    if (encoding_ == Encoding::Utf16 || Preserves(Encoding::Utf8)) return true;
    encoding_ = Encoding::Utf16;
    return false;
  }
  // SQLite's driver comes with and without the W functions.
  for (const Encoding encoding : {Encoding::Utf16, Encoding::Utf8}) {
    if (!Preserves(encoding)) continue;
    encoding_ = encoding;
    return true;
  }
  throw HostError("El controlador ODBC de SQLite no conserva los acentos.");
}

void OdbcConnection::SetReadOnly() {
  Statement statement(connection_.Get(), engine_, encoding_);
  statement.Run(engine_ == Engine::MariaDb ? "SET SESSION TRANSACTION READ ONLY" : "PRAGMA query_only=ON");
}

void OdbcConnection::RequireFile() const {
  std::error_code failure;
  if (!file_.empty() && !std::filesystem::exists(Ruta(file_), failure))
    throw HostError("El archivo de la base de datos ya no está en su lugar (" + file_ +
                    "); no se guardó nada.");
}

void OdbcConnection::PrepareSession() {
  Statement statement(connection_.Get(), engine_, encoding_);
  if (engine_ == Engine::MariaDb) {
    // How texts are quoted must not depend on the server's settings.
    statement.Run(
        "SET SESSION sql_mode='STRICT_TRANS_TABLES,ERROR_FOR_DIVISION_BY_ZERO,NO_ENGINE_SUBSTITUTION'");
    // The server gives up before we do: that costs a statement, where our own limit costs the connection.
    const std::string lock = std::to_string(limits_.lock);
    statement.Run("SET SESSION innodb_lock_wait_timeout=" + lock + ", lock_wait_timeout=" + lock +
                  " /*M!100101 , max_statement_time=" + std::to_string(limits_.read * 9 / 10) + "." +
                  std::to_string(limits_.read * 9 % 10) + " */");
    return;
  }
  statement.Run("PRAGMA foreign_keys=ON");
  const ResultSet files = statement.Query("PRAGMA database_list");
  if (files.cells.size() >= 3) file_ = ToText(files.cells[2]);
  if (file_.empty()) return;  // in memory
  // For this connection; how the file keeps its journal is left as whoever made it has it.
  statement.Run("PRAGMA synchronous=FULL");
}

}  // namespace zuvi::host
