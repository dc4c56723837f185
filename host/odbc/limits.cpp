#include "host/odbc/limits.h"

#include <cstdlib>
#include <string>

#include "base/error.h"

namespace zuvi::host {
namespace {

int FromEnvironment(const char* name, int fallback) {
  constexpr int kMax = 3600;
  const char* text = std::getenv(name);
  if (!text || !*text) return fallback;
  char* end = nullptr;
  const long seconds = std::strtol(text, &end, 10);
  if (*end || seconds < 1 || seconds > kMax)
    throw HostError(std::string(name) + " debe ser un número entero de segundos, de 1 a 3600, no \"" + text +
                    "\"");
  return static_cast<int>(seconds);
}

}  // namespace

Limits LimitsFromEnvironment() {
  const Limits defaults;
  return {.connect = FromEnvironment("ZUVI_LIMITE_CONEXION", defaults.connect),
          .read = FromEnvironment("ZUVI_LIMITE_LECTURA", defaults.read),
          .write = FromEnvironment("ZUVI_LIMITE_ESCRITURA", defaults.write),
          .lock = FromEnvironment("ZUVI_LIMITE_CANDADO", defaults.lock)};
}

}  // namespace zuvi::host
