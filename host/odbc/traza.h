#pragma once

#include <cstddef>
#include <fstream>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zuvi::host {

/// What a trace line is about.
enum class Suceso { Sentencia, Llamada, Mensaje, Pregunta, Bitacora };

/// The host's trace: every statement, host call and message, told to whoever listens. Off costs one test.
class Traza {
 public:
  using Oyente = std::function<void(Suceso, const std::string& texto)>;
  /// Adds a listener; the result names it for `Deja`.
  std::size_t Escucha(Oyente oyente) {
    oyentes_.emplace_back(++ultimo_, std::move(oyente));
    return ultimo_;
  }
  /// Removes a listener. Not from within a listener.
  void Deja(std::size_t cual) {
    std::erase_if(oyentes_, [cual](const auto& oyente) { return oyente.first == cual; });
  }
  bool Activa() const { return !oyentes_.empty(); }
  /// Tells all listeners of an event.
  void Anota(Suceso suceso, const std::string& texto) const {
    for (const auto& [cual, oyente] : oyentes_) oyente(suceso, texto);
  }

 private:
  std::size_t ultimo_ = 0;
  std::vector<std::pair<std::size_t, Oyente>> oyentes_;
};

/// The word that stands for a kind of event in a trace file, for example "sentencia".
const char* NombreDe(Suceso suceso);
/// A trace file: appends "kind<TAB>text" lines. A line that cannot be written fails nothing of the work; it
/// is remembered.
class ArchivoDeTraza {
 public:
  /// Throws HostError when the file cannot be opened.
  explicit ArchivoDeTraza(const std::string& ruta);
  void Escribe(Suceso suceso, const std::string& texto);
  bool Entera() const { return archivo_.good(); }

 private:
  std::ofstream archivo_;
};

}  // namespace zuvi::host
