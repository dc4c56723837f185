#pragma once

#include <filesystem>
#include <string>

namespace zuvi::host {

/// A file name in UTF-8 as the system's own path, whatever its code page.
inline std::filesystem::path Ruta(const std::string& utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}
/// A path as UTF-8 text.
inline std::string TextoDeRuta(const std::filesystem::path& ruta) {
  const std::u8string utf8 = ruta.u8string();
  return {utf8.begin(), utf8.end()};
}

}  // namespace zuvi::host
