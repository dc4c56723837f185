#include <pthread.h>

#include <cstddef>
#include <cstdint>

#include "base/stack.h"
#include "host/system/pila.h"

namespace zuvi::host {
namespace {

StackBounds PilaDelHilo() {
  pthread_attr_t atributos;
  if (pthread_getattr_np(pthread_self(), &atributos) != 0) return {};
  void* inicio = nullptr;
  std::size_t tamano = 0;
  const bool sabido = pthread_attr_getstack(&atributos, &inicio, &tamano) == 0;
  pthread_attr_destroy(&atributos);
  const auto fondo = reinterpret_cast<std::uintptr_t>(inicio);
  return sabido ? StackBounds{fondo, fondo + tamano} : StackBounds{};
}

}  // namespace

bool PilaCasiAgotada() {
  // Asked once a thread: for the main thread the system reads it out of a table of its own.
  thread_local const StackBounds pila = PilaDelHilo();
  return StackNearlySpent(pila, reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)));
}

}  // namespace zuvi::host
