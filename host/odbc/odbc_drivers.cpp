#include "host/odbc/odbc_drivers.h"

#include <algorithm>
#include <array>

#include "base/text.h"
#include "host/odbc/connection_lost.h"
#include "host/odbc/limits.h"
#include "host/odbc/odbc_api.h"
#include "host/odbc/odbc_connection.h"

namespace zuvi::host {
namespace {

struct EngineInfo {
  Engine engine;
  const char* part;  // of a driver's name, in lower case
  const char* name;
  const char* to_install;
  const char* to_omit_it;
};
constexpr std::array kEngines{
    EngineInfo{Engine::Sqlite, "sqlite", "SQLite 3",
               "en Windows, «SQLite3 ODBC Driver»; en Debian, el paquete libsqliteodbc",
               "indique sólo el nombre del archivo"},
    EngineInfo{Engine::MariaDb, "mariadb", "MariaDB",
               "en Windows, «MariaDB Connector/ODBC»; en Debian, el paquete odbc-mariadb",
               "quite DRIVER=… y deje Server=…"},
};

constexpr std::size_t kMaxLength = 256;

std::string Bitness() { return Decimal(static_cast<std::int32_t>(sizeof(void*) * 8)) + " bits"; }

bool Contains(std::string_view name, const char* part) {
  return ToLower(name).find(part) != std::string::npos;
}

/// False after the last one.
bool NextDriver(SQLHANDLE environment, SQLUSMALLINT which, std::string& name) {
  SQLSMALLINT length = 0;
  SQLRETURN result;
  if constexpr (kPlainTextIntact) {
    std::array<SQLCHAR, kMaxLength> text{};
    result = SQLDrivers(environment, which, text.data(), text.size(), &length, nullptr, 0, nullptr);
    name = reinterpret_cast<const char*>(text.data());
  } else {
    std::array<char16_t, kMaxLength> text{};
    result = SQLDriversW(environment, which, reinterpret_cast<SQLWCHAR*>(text.data()), text.size(), &length,
                         nullptr, 0, nullptr);
    name = Utf8(text.data());
  }
  Check(result, SQL_HANDLE_ENV, environment, kPlainTextIntact ? Encoding::Utf8 : Encoding::Utf16);
  return SQL_SUCCEEDED(result);
}

/// The smaller, the surer that our attributes are its own. There are others for SQLite that take other ones,
/// and its maker installs those for version 2 beside the one for version 3.
int Rank(const std::string& name) {
  if (EqualsIgnoringCase(name, "SQLite3 ODBC Driver") || EqualsIgnoringCase(name, "SQLite3")) return 0;
  return Contains(name, "sqlite3") || Contains(name, "sqlite 3") ? 1 : 2;
}

bool OpensVersion3(const std::string& driver) {
  try {
    // What makes a connection ready is not understood by version 2.
    const OdbcConnection trial("DRIVER={" + driver + "};Database=:memory:", LimitsFromEnvironment());
    return true;
  } catch (const HostError&) {
    return false;
  }
}

const std::string& SqliteDriver(std::vector<std::string>& names) {
  std::ranges::stable_sort(names, {}, Rank);
  if (names.size() == 1 || Rank(names.front()) == 0) return names.front();
  const auto found = std::ranges::find_if(names, OpensVersion3);
  // The error of the likeliest tells more than that there is none.
  return found == names.end() ? names.front() : *found;
}

std::string InstalledText(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text.empty() ? "No hay ninguno instalado." : "Instalados: " + text + ".";
}

std::string WhatToInstall(const EngineInfo& engine) {
  return "Instale el de " + Bitness() + " (" + engine.to_install + "). ";
}

bool IsDriverOf(const EngineInfo& engine, const std::string& name) { return Contains(name, engine.part); }

HostError NotInstalled(const std::string& driver, const std::vector<std::string>& installed,
                       const HostError& error) {
  std::string text = "El controlador ODBC «" + driver +
                     "» que nombra la cadena de conexión no está instalado para programas de " + Bitness() +
                     " como este. ";
  const auto engine =
      std::ranges::find_if(kEngines, [&](const EngineInfo& m) { return IsDriverOf(m, driver); });
  if (engine != kEngines.end()) {
    const bool has_other =
        std::ranges::any_of(installed, [&](const auto& other) { return IsDriverOf(*engine, other); });
    text += has_other ? std::string("Nombre el que hay, o ") + engine->to_omit_it + " para que se tome. "
                      : WhatToInstall(*engine);
  }
  return HostError(text + InstalledText(installed), error.Number(), error.NativeCode(), error.SqlState());
}

}  // namespace

std::vector<std::string> InstalledDrivers() {
  const EnvironmentHandle environment = NewEnvironment();
  std::vector<std::string> names;
  std::string name;
  for (SQLUSMALLINT which = SQL_FETCH_FIRST; NextDriver(environment.Get(), which, name);
       which = SQL_FETCH_NEXT)
    names.push_back(name);
  return names;
}

bool IsSqlite(std::string_view name) { return Contains(name, kEngines[0].part); }

std::string DriverFor(Engine engine) {
  const EngineInfo& wanted = *std::ranges::find(kEngines, engine, &EngineInfo::engine);
  const std::vector<std::string> installed = InstalledDrivers();
  std::vector<std::string> names;
  std::ranges::copy_if(installed, std::back_inserter(names),
                       [&](const std::string& name) { return IsDriverOf(wanted, name); });
  if (names.empty())
    throw HostError(std::string("No hay un controlador ODBC de ") + wanted.name +
                    " instalado para programas de " + Bitness() + " como este. " + WhatToInstall(wanted) +
                    InstalledText(installed));
  return engine == Engine::Sqlite ? SqliteDriver(names) : names.front();
}

HostError ExplainMissingDriver(const std::string& driver, const std::string& data_source,
                               const HostError& error) {
  // The first is how some driver managers tell that they found no library under the driver's name.
  constexpr std::array kDriverStates{"01000", "IM002", "IM003", "IM004", "IM005", "IM014"};
  if (std::ranges::find(kDriverStates, error.SqlState()) == kDriverStates.end()) return error;
  const auto with = [&](const std::string& text) {
    return HostError(text + InParentheses(error), error.Number(), error.NativeCode(), error.SqlState());
  };
  if (driver.empty() && !data_source.empty())
    return with("No se pudo abrir el origen de datos «" + data_source + "»: no existe para programas de " +
                Bitness() + " como este, o falta su controlador ODBC de " + Bitness());
  const std::string reinstall = "; reinstale el de " + Bitness();
  if (driver.empty()) return with("No se pudo cargar el controlador ODBC" + reinstall);
  std::vector<std::string> installed;
  try {
    installed = InstalledDrivers();
  } catch (const HostError&) {
    return error;
  }
  const bool present =
      std::ranges::any_of(installed, [&](const auto& one) { return EqualsIgnoringCase(one, driver); });
  if (!present) return NotInstalled(driver, installed, error);
  return with("No se pudo cargar el controlador ODBC «" + driver + "»" + reinstall);
}

}  // namespace zuvi::host
