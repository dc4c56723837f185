#pragma once

#include <chrono>
#include <functional>
#include <vector>

#include "toolkit/win32/loop_timer.h"

namespace zuvi::host {

/// Tells where one job of the thread ends and the next begins: a job is a stretch in which the message loop
/// did not come to rest, however many calls of the host it makes. Waiting at a message box is part of it; a
/// thread without a loop ends a job by making no call for some seconds. Belongs to one thread.
class VigiaTrabajo {
 public:
  /// `al_terminar` runs when a job has ended.
  explicit VigiaTrabajo(std::function<void()> al_terminar) : al_terminar_(std::move(al_terminar)) {}

  /// Notes a call of the host; returns how long its job has been going on.
  std::chrono::milliseconds Llamada();
  /// Message boxes that the present job has brought up since it began or since `OlvidaCajas`; none for a call
  /// from behind one of them, which is somebody else's work.
  int Cajas() const { return ajena_ ? 0 : cajas_; }
  void OlvidaCajas() { cajas_ = 0; }

 private:
  using Reloj = std::chrono::steady_clock;

  void AlReposo();
  void Termina();

  std::function<void()> al_terminar_;
  native::LoopTimer reposo_{[this] { AlReposo(); }};
  bool en_curso_ = false;
  bool hay_ciclo_ = false;  // the thread has handled messages while it was watched
  bool ajena_ = false;      // the last call came while a box of the job stands
  int cajas_ = 0;
  HWND contada_ = nullptr;      // the box counted last, while it stands
  std::vector<HWND> de_antes_;  // boxes that stood when the job began
  Reloj::time_point inicio_{}, ultima_{};
};

}  // namespace zuvi::host
