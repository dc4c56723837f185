#pragma once

#include <string>

#include "base/error.h"
#include "host/odbc/base_datos.h"

namespace zuvi::host {

/// The connection to the server was lost under a statement, or could not be opened again. SQLSTATE 08S01,
/// the native code is the driver's: no retry of a transaction takes it for a conflict.
class ConnectionLost final : public HostError {
 public:
  explicit ConnectionLost(const std::string& text, std::int32_t code = 0, bool in_doubt = false)
      : HostError(text, ErrorNumber::AutomationFailure, code, "08S01"), in_doubt_(in_doubt) {}
  /// Whether the statement may have been done all the same.
  bool InDoubt() const { return in_doubt_; }

 private:
  bool in_doubt_;
};

/// Whether an error of the driver means that the connection is of no use any more.
bool IsConnectionLoss(Engine engine, const HostError& error);

/// The error with what it means to the user in front of the engine's own English, where that is known: a
/// lock, a limit of time, a full or damaged file. Codes stay.
HostError Explained(Engine engine, const HostError& error);

/// How a text of the engine or driver stands behind ours.
std::string InParentheses(const HostError& error);

}  // namespace zuvi::host
