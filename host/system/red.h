#pragma once

#include <string>

namespace zuvi::host {

/// Whether a file, given by its full name, lies on a file system that this machine reaches through the
/// network; of one that is not there, whether its folder does.
bool EstaEnRed(const std::string& archivo);

}  // namespace zuvi::host
