#include <pthread.h>

#include <cstddef>
#include <cstdint>

#include "host/pila.h"

namespace zuvi::host {
namespace {

/// Room for what a level does between two tests: drivers of databases use large buffers on the stack.
constexpr std::uintptr_t kReserva = 256 * 1024;

/// The lowest address that this thread's stack may reach, or 0 when the system does not tell.
std::uintptr_t FondoDeLaPila() {
  pthread_attr_t atributos;
  if (pthread_getattr_np(pthread_self(), &atributos) != 0) return 0;
  void* inicio = nullptr;
  std::size_t tamano = 0;
  const bool sabido = pthread_attr_getstack(&atributos, &inicio, &tamano) == 0;
  pthread_attr_destroy(&atributos);
  return sabido ? reinterpret_cast<std::uintptr_t>(inicio) : 0;
}

}  // namespace

bool PilaCasiAgotada() {
  // Asked once a thread: for the main thread the system reads it out of a table of its own.
  thread_local const std::uintptr_t fondo = FondoDeLaPila();
  return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)) < fondo + kReserva;
}

}  // namespace zuvi::host
