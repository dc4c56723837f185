#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace zuvi::host {

/// What a work window shows when it opens. `total` 0 means a bar without an end.
struct OpcionesTrabajo {
  std::string titulo{};
  std::int32_t total = 0;
  std::string animacion{};
};

/// The progress window: animation, two text lines, bar, "Cancelar". It comes up in the middle of somebody's
/// typing: it does not take the keyboard, and a click that was under way when it appeared does nothing.
/// Shift+Escape cancels from wherever the keyboard is. It never takes part in the host's message loop:
/// `Atiende` handles what is pending for this window alone, so that nothing else of the host runs in the
/// middle of a job.
class VentanaTrabajo {
 public:
  explicit VentanaTrabajo(const OpcionesTrabajo& opciones);
  ~VentanaTrabajo();
  VentanaTrabajo(const VentanaTrabajo&) = delete;
  VentanaTrabajo& operator=(const VentanaTrabajo&) = delete;

  void Avanza(std::int32_t paso, const std::string& texto, const std::string& texto2);
  /// Handles pending input and painting; true once the user has asked to stop.
  bool Atiende();

 private:
  struct Partes;
  std::unique_ptr<Partes> partes_;
};

}  // namespace zuvi::host
