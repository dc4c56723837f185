#include "host/odbc/connection_lost.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace zuvi::host {
namespace {

struct Explanation {
  Engine engine;
  std::int32_t code;
  std::string_view text;
};

constexpr std::string_view kBusy = "Otro programa tiene ocupado lo que se quería cambiar; no se hizo";
constexpr std::string_view kReadOnly = "La conexión o la base es de solo lectura; no se cambió nada";
constexpr std::string_view kDamaged = "El archivo de la base de datos está dañado o no es una base de datos";

constexpr std::array kExplanations{
    Explanation{Engine::MariaDb, 1205, kBusy},
    Explanation{Engine::MariaDb, 1792, kReadOnly},
    Explanation{Engine::MariaDb, 1290, kReadOnly},
    Explanation{Engine::MariaDb, 1969,
                "La instrucción tardó más del límite de lectura y el servidor la detuvo"},
    Explanation{Engine::MariaDb, 3024,
                "La instrucción tardó más del límite de lectura y el servidor la detuvo"},
    Explanation{Engine::MariaDb, 1317, "El servidor detuvo la instrucción"},
    Explanation{Engine::MariaDb, 1021, "El disco del servidor está lleno"},
    Explanation{Engine::Sqlite, 5, kBusy},
    Explanation{Engine::Sqlite, 6, kBusy},
    Explanation{Engine::Sqlite, 8, kReadOnly},
    Explanation{Engine::Sqlite, 10, "No se pudo leer o escribir el archivo de la base de datos"},
    Explanation{Engine::Sqlite, 11, kDamaged},
    Explanation{Engine::Sqlite, 13, "El disco está lleno; no se guardó"},
    Explanation{Engine::Sqlite, 14, "No se puede abrir el archivo de la base de datos"},
    Explanation{Engine::Sqlite, 26, kDamaged},
};

}  // namespace

bool IsConnectionLoss(Engine engine, const HostError& error) {
  if (engine != Engine::MariaDb) return false;
  const std::string_view state = error.SqlState();
  if (state.starts_with("08") || state == "HYT00" || state == "HYT01") return true;
  const std::int32_t code = error.NativeCode();
  // All errors of the client library itself: after any of them an answer is missing or half read.
  if ((code >= 2000 && code < 3000) || (code >= 5000 && code < 6000)) return true;
  // Shutdown in progress, connection killed, ended for idling; or a driver that has nothing left to say.
  return code == 1053 || code == 1927 || code == 4031 || (code == 0 && state.empty());
}

HostError Explained(Engine engine, const HostError& error) {
  const auto found = std::ranges::find_if(kExplanations, [&](const Explanation& one) {
    return one.engine == engine && one.code == error.NativeCode();
  });
  if (found == kExplanations.end()) return error;
  return HostError(std::string(found->text) + InParentheses(error), error.Number(), error.NativeCode(),
                   error.SqlState());
}

std::string InParentheses(const HostError& error) { return std::string(" (") + error.what() + ")"; }

}  // namespace zuvi::host
