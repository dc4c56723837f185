#include "host/odbc/odbc_controladores.h"

#include <algorithm>
#include <array>

#include "base/text.h"
#include "host/odbc/limites.h"
#include "host/odbc/odbc_api.h"
#include "host/odbc/odbc_enlace.h"
#include "host/odbc/perdida.h"

namespace zuvi::host {
namespace {

struct DeMotor {
  Motor motor;
  const char* parte;  // of a driver's name, in lower case
  const char* nombre;
  const char* se_instala;
  const char* sin_nombrarlo;
};
constexpr std::array kMotores{
    DeMotor{Motor::Sqlite, "sqlite", "SQLite 3",
            "en Windows, «SQLite3 ODBC Driver»; en Debian, el paquete libsqliteodbc",
            "indique sólo el nombre del archivo"},
    DeMotor{Motor::MariaDb, "mariadb", "MariaDB",
            "en Windows, «MariaDB Connector/ODBC»; en Debian, el paquete odbc-mariadb",
            "quite DRIVER=… y deje Server=…"},
};

constexpr std::size_t kLargoMaximo = 256;

std::string Bits() { return Decimal(static_cast<std::int32_t>(sizeof(void*) * 8)) + " bits"; }

bool Contiene(const std::string& nombre, const char* parte) {
  return Minusculas(nombre).find(parte) != std::string::npos;
}

/// False after the last one.
bool Siguiente(SQLHANDLE entorno, SQLUSMALLINT cual, std::string& nombre) {
  SQLSMALLINT largo = 0;
  SQLRETURN resultado;
  if constexpr (kAngostosIntactos) {
    std::array<SQLCHAR, kLargoMaximo> texto{};
    resultado = SQLDrivers(entorno, cual, texto.data(), texto.size(), &largo, nullptr, 0, nullptr);
    nombre = reinterpret_cast<const char*>(texto.data());
  } else {
    std::array<char16_t, kLargoMaximo> texto{};
    resultado = SQLDriversW(entorno, cual, reinterpret_cast<SQLWCHAR*>(texto.data()), texto.size(), &largo,
                            nullptr, 0, nullptr);
    nombre = Utf8(texto.data());
  }
  Exige(resultado, SQL_HANDLE_ENV, entorno, kAngostosIntactos ? Forma::Utf8 : Forma::Utf16);
  return SQL_SUCCEEDED(resultado);
}

/// The smaller, the surer that our attributes are its own. There are others for SQLite that take other ones,
/// and its maker installs those for version 2 beside the one for version 3.
int Rango(const std::string& nombre) {
  if (IgualSinCaso(nombre, "SQLite3 ODBC Driver") || IgualSinCaso(nombre, "SQLite3")) return 0;
  return Contiene(nombre, "sqlite3") || Contiene(nombre, "sqlite 3") ? 1 : 2;
}

bool AbreVersion3(const std::string& controlador) {
  try {
    // What makes a connection ready is not understood by version 2.
    const EnlaceOdbc prueba("DRIVER={" + controlador + "};Database=:memory:", LimitesDelEntorno());
    return true;
  } catch (const HostError&) {
    return false;
  }
}

const std::string& ElDeSqlite(std::vector<std::string>& nombres) {
  std::ranges::stable_sort(nombres, {}, Rango);
  if (nombres.size() == 1 || Rango(nombres.front()) == 0) return nombres.front();
  const auto hallado = std::ranges::find_if(nombres, AbreVersion3);
  // The error of the likeliest tells more than that there is none.
  return hallado == nombres.end() ? nombres.front() : *hallado;
}

std::string Lista(const std::vector<std::string>& nombres) {
  std::string texto;
  for (const std::string& nombre : nombres) texto += (texto.empty() ? "" : ", ") + nombre;
  return texto.empty() ? "No hay ninguno instalado." : "Instalados: " + texto + ".";
}

std::string QueInstalar(const DeMotor& motor) {
  return "Instale el de " + Bits() + " (" + motor.se_instala + "). ";
}

bool EsDe(const DeMotor& motor, const std::string& nombre) { return Contiene(nombre, motor.parte); }

HostError NoInstalado(const std::string& controlador, const std::vector<std::string>& instalados,
                      const HostError& error) {
  std::string texto = "El controlador ODBC «" + controlador +
                      "» que nombra la cadena de conexión no está instalado para programas de " + Bits() +
                      " como este. ";
  const auto motor = std::ranges::find_if(kMotores, [&](const DeMotor& m) { return EsDe(m, controlador); });
  if (motor != kMotores.end()) {
    const bool hay_otro =
        std::ranges::any_of(instalados, [&](const auto& otro) { return EsDe(*motor, otro); });
    texto += hay_otro ? std::string("Nombre el que hay, o ") + motor->sin_nombrarlo + " para que se tome. "
                      : QueInstalar(*motor);
  }
  return HostError(texto + Lista(instalados), error.Number(), error.NativeCode(), error.SqlState());
}

}  // namespace

std::vector<std::string> ControladoresInstalados() {
  const Entorno entorno = NuevoEntorno();
  std::vector<std::string> nombres;
  std::string nombre;
  for (SQLUSMALLINT cual = SQL_FETCH_FIRST; Siguiente(entorno.Get(), cual, nombre); cual = SQL_FETCH_NEXT)
    nombres.push_back(nombre);
  return nombres;
}

std::string ControladorDe(Motor motor) {
  const DeMotor& buscado = *std::ranges::find(kMotores, motor, &DeMotor::motor);
  const std::vector<std::string> instalados = ControladoresInstalados();
  std::vector<std::string> nombres;
  std::ranges::copy_if(instalados, std::back_inserter(nombres),
                       [&](const std::string& nombre) { return EsDe(buscado, nombre); });
  if (nombres.empty())
    throw HostError(std::string("No hay un controlador ODBC de ") + buscado.nombre +
                    " instalado para programas de " + Bits() + " como este. " + QueInstalar(buscado) +
                    Lista(instalados));
  return motor == Motor::Sqlite ? ElDeSqlite(nombres) : nombres.front();
}

HostError SinControlador(const std::string& controlador, const std::string& origen, const HostError& error) {
  // The first is how some driver managers tell that they found no library under the driver's name.
  constexpr std::array kEstados{"01000", "IM002", "IM003", "IM004", "IM005", "IM014"};
  if (std::ranges::find(kEstados, error.SqlState()) == kEstados.end()) return error;
  const auto con = [&](const std::string& texto) {
    return HostError(texto + EntreParentesis(error), error.Number(), error.NativeCode(), error.SqlState());
  };
  if (controlador.empty() && !origen.empty())
    return con("No se pudo abrir el origen de datos «" + origen + "»: no existe para programas de " + Bits() +
               " como este, o falta su controlador ODBC de " + Bits());
  const std::string reinstale = "; reinstale el de " + Bits();
  if (controlador.empty()) return con("No se pudo cargar el controlador ODBC" + reinstale);
  std::vector<std::string> instalados;
  try {
    instalados = ControladoresInstalados();
  } catch (const HostError&) {
    return error;
  }
  const bool esta =
      std::ranges::any_of(instalados, [&](const auto& uno) { return IgualSinCaso(uno, controlador); });
  if (!esta) return NoInstalado(controlador, instalados, error);
  return con("No se pudo cargar el controlador ODBC «" + controlador + "»" + reinstale);
}

}  // namespace zuvi::host
