#pragma once

#include <string>
#include <system_error>

namespace zuvi::host {

/// Hands a file to the program that the user's Windows has for it: to be printed, or else opened. The thread
/// is in a single-threaded apartment.
std::error_code ImprimeDocumento(const std::string& archivo);
std::error_code AbreDocumento(const std::string& archivo);
/// Why that failed, for its user.
std::string MotivoDeDocumento(const std::error_code& fallo);

}  // namespace zuvi::host
