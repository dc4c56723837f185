#pragma once

#include <string>

#include "base/error.h"
#include "host/odbc/base_datos.h"

namespace zuvi::host {

/// The connection to the server was lost under a statement, or could not be opened again. SQLSTATE 08S01,
/// the native code is the driver's: no retry of a transaction takes it for a conflict.
class ConexionPerdida final : public HostError {
 public:
  explicit ConexionPerdida(const std::string& texto, std::int32_t codigo = 0, bool en_duda = false)
      : HostError(texto, ErrorNumber::AutomationFailure, codigo, "08S01"), en_duda_(en_duda) {}
  /// Whether the statement may have been done all the same.
  bool EnDuda() const { return en_duda_; }

 private:
  bool en_duda_;
};

/// Whether an error of the driver means that the connection is of no use any more.
bool EsPerdida(Motor motor, const HostError& error);

/// The error with what it means to the user in front of the engine's own English, where that is known: a
/// lock, a limit of time, a full or damaged file. Codes stay.
HostError Explicado(Motor motor, const HostError& error);

/// How a text of the engine or driver stands behind ours.
std::string EntreParentesis(const HostError& error);

}  // namespace zuvi::host
