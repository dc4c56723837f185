// Windows that the host supplies and the module creates per use.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "services/ambiente.h"

namespace zuvi {

/// Progress window.
class VentanaProgreso : public Object {
 public:
  static constexpr const char* kProgId = "ZuviQuery.VentanaProgreso";

  /// Opens with a caption and an animation file (a full path; it need not exist). `total` is the bar's
  /// maximum and above 0.
  virtual void Inicia(std::int32_t total, const std::string& titulo, const std::string& animacion) = 0;
  /// Moves the bar to `paso`, from 1 to the total, and shows two text lines.
  virtual void Avanza(std::int32_t paso, const std::string& texto, const std::string& texto2) = 0;
  /// Closes; allowed without `Inicia`.
  virtual void Cierra() = 0;
};

/// Catalogue lookup: the chosen key is written into the target text box.
class BuscaCatalogo : public Object {
 public:
  static constexpr const char* kProgId = "ZuviQuery.BuscaCatalogo";

  virtual void PonAmbiente(const std::shared_ptr<Ambiente>& ambiente) = 0;
  /// The text box that takes what is chosen or entered; set before `Muestra`.
  virtual void PonDestino(const ObjectPtr& caja) = 0;
  /// Condition on the catalogue's rows, for example "kit <> 0".
  virtual void PonFiltro(const std::string& filtro) = 0;
  /// Shows the lookup of the catalogue with that caption and waits for the choice; without one the box stays
  /// as it was. Throws HostError for an unknown catalogue.
  virtual void Muestra(const std::string& titulo) = 0;
};

/// Numeric pad: the entered number is written into the target text box.
class CapturaNumerica : public Object {
 public:
  static constexpr const char* kProgId = "ZuviQuery.CapturaNumerica";

  virtual void PonAmbiente(const std::shared_ptr<Ambiente>& ambiente) = 0;
  /// The text box that takes what is chosen or entered; set before `Muestra`.
  virtual void PonDestino(const ObjectPtr& caja) = 0;
  /// Shows the pad and waits; without an answer the box stays as it was.
  virtual void Muestra() = 0;
};

}  // namespace zuvi
