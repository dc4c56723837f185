// The stack that the calling thread has left, measured.
#pragma once

#include <pthread.h>

#include <cstddef>

namespace zuvi::pruebas {

inline std::size_t PilaRestante() {
  pthread_attr_t atributos;
  void* fondo = nullptr;
  std::size_t tamano = 0;
  if (pthread_getattr_np(pthread_self(), &atributos) != 0) return 0;
  pthread_attr_getstack(&atributos, &fondo, &tamano);
  pthread_attr_destroy(&atributos);
  return static_cast<std::size_t>(static_cast<char*>(__builtin_frame_address(0)) - static_cast<char*>(fondo));
}

/// Room for one more level of calls, the host's included, and for unwinding.
inline bool PilaCasiAgotada() { return PilaRestante() < 96 * 1024; }

}  // namespace zuvi::pruebas
