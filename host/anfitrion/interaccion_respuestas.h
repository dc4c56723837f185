#pragma once

#include <deque>
#include <string>
#include <string_view>

#include "host/anfitrion/interaccion.h"

namespace zuvi::host {

/// A display that shows nothing.
class ProgresoMudo final : public Progreso {
 public:
  void Avanza(std::int32_t, const std::string&, const std::string&) override {}
};

/// Answers given beforehand, taken one after the other; when they are used up the answer is no. Messages are
/// not shown: the host's record of them is enough.
class RespuestasInteraccion final : public Interaccion {
 public:
  /// `respuestas` is a list like "si,no,si" ("sí", "s", "yes" and "y" count as yes).
  explicit RespuestasInteraccion(std::string_view respuestas);

  void Mensaje(const std::string&, EstiloMensaje) override {}
  bool Pregunta(const std::string& texto) override;
  std::unique_ptr<Progreso> AbreProgreso(std::int32_t, const std::string&, const std::string&) override {
    return std::make_unique<ProgresoMudo>();
  }
  bool Cancelado() override { return false; }

 private:
  std::deque<bool> respuestas_;
};

/// True for a word that means yes in the host's languages.
bool EsSi(std::string_view palabra);

}  // namespace zuvi::host
