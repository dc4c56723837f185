#pragma once

#include "base/error.h"

namespace zuvi::host {

/// How often a transaction may run that failed so. It has been undone whole: as the victim of a deadlock,
/// which two stations at one article can be many times in a row, or beaten to inserting the same key, which
/// only a real duplicate is again and again. Once, when others were not in its way; a lost connection counts
/// as that, for nobody knows what became of it.
inline int AttemptsAfter(const HostError& error) {
  if (error.SqlState() == "40001") return 50;
  return error.SqlState() == "23000" ? 8 : 1;
}

/// Runs a whole transaction, again a few times if others were in its way.
template <class Body>
auto WithRetry(Body&& body) {
  for (int attempt = 1;; ++attempt) {
    try {
      return body();
    } catch (const HostError& error) {
      if (attempt >= AttemptsAfter(error)) throw;
    }
  }
}

}  // namespace zuvi::host
