#include "host/odbc/perdida.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace zuvi::host {
namespace {

struct Explicacion {
  Motor motor;
  std::int32_t codigo;
  std::string_view texto;
};

constexpr std::string_view kOcupada = "Otro programa tiene ocupado lo que se quería cambiar; no se hizo";
constexpr std::string_view kSoloLectura = "La conexión o la base es de solo lectura; no se cambió nada";
constexpr std::string_view kDanada = "El archivo de la base de datos está dañado o no es una base de datos";

constexpr std::array kExplicaciones{
    Explicacion{Motor::MariaDb, 1205, kOcupada},
    Explicacion{Motor::MariaDb, 1792, kSoloLectura},
    Explicacion{Motor::MariaDb, 1290, kSoloLectura},
    Explicacion{Motor::MariaDb, 1969,
                "La instrucción tardó más del límite de lectura y el servidor la detuvo"},
    Explicacion{Motor::MariaDb, 3024,
                "La instrucción tardó más del límite de lectura y el servidor la detuvo"},
    Explicacion{Motor::MariaDb, 1317, "El servidor detuvo la instrucción"},
    Explicacion{Motor::MariaDb, 1021, "El disco del servidor está lleno"},
    Explicacion{Motor::Sqlite, 5, kOcupada},
    Explicacion{Motor::Sqlite, 6, kOcupada},
    Explicacion{Motor::Sqlite, 8, kSoloLectura},
    Explicacion{Motor::Sqlite, 10, "No se pudo leer o escribir el archivo de la base de datos"},
    Explicacion{Motor::Sqlite, 11, kDanada},
    Explicacion{Motor::Sqlite, 13, "El disco está lleno; no se guardó"},
    Explicacion{Motor::Sqlite, 14, "No se puede abrir el archivo de la base de datos"},
    Explicacion{Motor::Sqlite, 26, kDanada},
};

}  // namespace

bool EsPerdida(Motor motor, const HostError& error) {
  if (motor != Motor::MariaDb) return false;
  const std::string_view estado = error.SqlState();
  if (estado.starts_with("08") || estado == "HYT00" || estado == "HYT01") return true;
  const std::int32_t codigo = error.NativeCode();
  // All errors of the client library itself: after any of them an answer is missing or half read.
  if ((codigo >= 2000 && codigo < 3000) || (codigo >= 5000 && codigo < 6000)) return true;
  // Shutdown in progress, connection killed, ended for idling; or a driver that has nothing left to say.
  return codigo == 1053 || codigo == 1927 || codigo == 4031 || (codigo == 0 && estado.empty());
}

HostError Explicado(Motor motor, const HostError& error) {
  const auto hallada = std::ranges::find_if(kExplicaciones, [&](const Explicacion& una) {
    return una.motor == motor && una.codigo == error.NativeCode();
  });
  if (hallada == kExplicaciones.end()) return error;
  return HostError(std::string(hallada->texto) + EntreParentesis(error), error.Number(), error.NativeCode(),
                   error.SqlState());
}

std::string EntreParentesis(const HostError& error) { return std::string(" (") + error.what() + ")"; }

}  // namespace zuvi::host
