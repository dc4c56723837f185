// host/system/: files, disks and stacks as the system has them, for the rest of the host. Here: files that it
// writes, under names of any length. The system's part is in *_posix.cpp and in host/win32.
#pragma once

#include <filesystem>
#include <string>
#include <system_error>

namespace zuvi::host {

/// A path in full. One of another machine stays there: the standard library takes it for one of this disk.
/// Itself where that fails.
std::filesystem::path Completa(const std::filesystem::path& ruta);
/// The name under which the system opens a file however long it is. Errors and users see the other one.
std::filesystem::path ParaAbrir(const std::filesystem::path& ruta);
/// Makes a folder and those above it; one that is there already is no failure.
std::error_code CreaCarpetas(const std::filesystem::path& carpeta);
/// Writes a file that was not there, to the disk: what has its name already, a link too, is left alone.
std::error_code EscribeNuevo(const std::filesystem::path& ruta, const std::string& texto);
/// Gives a file another name in the same folder. What has that name is replaced, not written through.
std::error_code Reemplaza(const std::filesystem::path& origen, const std::filesystem::path& destino);
/// Takes a file away; one that stays is no failure.
void Borra(const std::filesystem::path& ruta);

/// Why something failed, for its user: Spanish where it is one of the usual reasons, else the system's text.
std::string Motivo(const std::error_code& fallo);
/// The system's own text of an error, in UTF-8.
std::string TextoDelSistema(const std::error_code& fallo);

}  // namespace zuvi::host
