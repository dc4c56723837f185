#include "base/clock.h"

#include <algorithm>
#include <ctime>

namespace zuvi {

CivilDate Ahora() {
  const std::time_t segundos = std::time(nullptr);
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &segundos);
#else
  localtime_r(&segundos, &local);
#endif
  // A leap second would name no time of day.
  return {.anio = local.tm_year + 1900,
          .mes = local.tm_mon + 1,
          .dia = local.tm_mday,
          .hora = local.tm_hour,
          .minuto = local.tm_min,
          .segundo = std::min(local.tm_sec, 59)};
}

}  // namespace zuvi
