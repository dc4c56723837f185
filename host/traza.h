#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zuvi::host {

/// What a trace line is about.
enum class Suceso { Sentencia, Llamada, Mensaje, Pregunta, Bitacora };

/// The host's trace: every statement, host call and message, told to whoever listens. Off costs one test.
class Traza {
 public:
  using Oyente = std::function<void(Suceso, const std::string& texto)>;
  void Escucha(Oyente oyente) { oyentes_.push_back(std::move(oyente)); }
  bool Activa() const { return !oyentes_.empty(); }
  void Anota(Suceso suceso, const std::string& texto) const {
    for (const auto& oyente : oyentes_) oyente(suceso, texto);
  }

 private:
  std::vector<Oyente> oyentes_;
};

}  // namespace zuvi::host
