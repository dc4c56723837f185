#pragma once

#include "base/error.h"

namespace zuvi::host {

/// Whether a transaction failed only because another one was in its way: chosen as victim of a deadlock, or
/// beaten to inserting the same key. It has been undone whole and may be run again.
inline bool EsChoque(const HostError& error) {
  return error.SqlState() == "40001" || error.SqlState() == "23000";
}

/// Runs a whole transaction, again a few times if others were in its way.
template <class Cuerpo>
auto ConReintento(Cuerpo&& cuerpo) {
  constexpr int kIntentos = 8;
  for (int intento = 1;; ++intento) {
    try {
      return cuerpo();
    } catch (const HostError& error) {
      if (intento == kIntentos || !EsChoque(error)) throw;
    }
  }
}

}  // namespace zuvi::host
