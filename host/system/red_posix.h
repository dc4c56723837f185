#pragma once

#include <istream>
#include <string>

namespace zuvi::host {

/// Whether the mount of a device, "major:minor", is one of a file system that several machines share.
/// `montajes` is Linux's list of a process's mounts, /proc/self/mountinfo.
bool EsMontajeDeRed(std::istream& montajes, const std::string& dispositivo);

}  // namespace zuvi::host
