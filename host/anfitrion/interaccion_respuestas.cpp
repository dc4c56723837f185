#include "host/anfitrion/interaccion_respuestas.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace zuvi::host {

bool EsSi(std::string_view palabra) {
  constexpr std::array<std::string_view, 6> kSi{"si", "sí", "s", "yes", "y", "sÍ"};
  const std::string minusculas = ToLower(Trim(palabra));
  return std::ranges::find(kSi, minusculas) != kSi.end();
}

RespuestasInteraccion::RespuestasInteraccion(std::string_view respuestas) {
  while (!Trim(respuestas).empty()) {
    const auto coma = respuestas.find(',');
    respuestas_.push_back(EsSi(respuestas.substr(0, coma)));
    respuestas.remove_prefix(coma == std::string_view::npos ? respuestas.size() : coma + 1);
  }
}

bool RespuestasInteraccion::Pregunta(const std::string& /*texto*/) {
  if (respuestas_.empty()) return false;
  const bool respuesta = respuestas_.front();
  respuestas_.pop_front();
  return respuesta;
}

}  // namespace zuvi::host
