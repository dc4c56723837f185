#pragma once

#include <optional>

#include "host/anfitrion/interaccion.h"

namespace zuvi::host {

/// The user at a console: messages and progress on standard error, questions on standard input when it is a
/// terminal. Ctrl-C asks running work to end; a second one ends the program.
class ConsolaInteraccion final : public Interaccion {
 public:
  /// `respuesta` answers every question beforehand.
  explicit ConsolaInteraccion(std::optional<bool> respuesta = std::nullopt);

  void Mensaje(const std::string& texto, EstiloMensaje estilo) override;
  bool Pregunta(const std::string& texto) override;
  std::unique_ptr<Progreso> AbreProgreso(std::int32_t total, const std::string& titulo,
                                         const std::string& animacion) override;
  /// Makes a PDF beside the page where the system has a tool for that.
  void MuestraDocumento(const std::string& archivo,
                        const std::function<void(const std::string&)>& dice) override;
  bool Cancelado() override;

 private:
  std::optional<bool> respuesta_;
};

}  // namespace zuvi::host
