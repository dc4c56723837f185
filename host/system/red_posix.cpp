#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>

#include "host/system/red.h"
#include "host/system/red_posix.h"
#include "host/system/rutas.h"

namespace zuvi::host {
namespace {

/// Those of the FUSE family are told by their second name: most others of it keep a local disk. What a
/// virtual machine shares with its host counts where a program can hardly have its own disk on it.
constexpr std::array<std::string_view, 34> kDeRed{
    "nfs",           "nfs4",
    "cifs",          "smb3",
    "smbfs",         "ncpfs",
    "afs",           "coda",
    "ceph",          "lustre",
    "gpfs",          "beegfs",
    "glusterfs",     "ocfs2",
    "gfs2",          "davfs",
    "vboxsf",        "vmhgfs",
    "prl_fs",        "fuse.sshfs",
    "fuse.rclone",   "fuse.glusterfs",
    "fuse.ceph",     "fuse.ceph-fuse",
    "fuse.s3fs",     "fuse.gcsfuse",
    "fuse.davfs2",   "fuse.curlftpfs",
    "fuse.smbnetfs", "fuse.gvfsd-fuse",
    "fuse.juicefs",  "fuse.mfs",
    "fuse.kio-fuse", "fuse.vmhgfs-fuse",
};

}  // namespace

bool EsMontajeDeRed(std::istream& montajes, const std::string& dispositivo) {
  for (std::string linea; std::getline(montajes, linea);) {
    std::istringstream campos(linea);
    std::string numero, padre, suyo, tipo;
    campos >> numero >> padre >> suyo;
    if (suyo != dispositivo) continue;
    // The optional fields before the type end in a dash; names have their blanks written otherwise.
    while (campos >> tipo && tipo != "-") {
    }
    campos >> tipo;
    return std::ranges::find(kDeRed, tipo) != kDeRed.end();
  }
  return false;
}

bool EstaEnRed(const std::string& archivo) {
  struct stat datos {};
  if (stat(archivo.c_str(), &datos) != 0 &&
      stat(TextoDeRuta(Ruta(archivo).parent_path()).c_str(), &datos) != 0)
    return false;
  std::ifstream montajes("/proc/self/mountinfo");
  return EsMontajeDeRed(montajes,
                        std::to_string(major(datos.st_dev)) + ":" + std::to_string(minor(datos.st_dev)));
}

}  // namespace zuvi::host
