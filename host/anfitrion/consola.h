// Texts on a terminal. What comes out of the database may hold characters that a terminal obeys: they are
// shown there, not done. Output that goes into a file or a pipe stays as it is.
#pragma once

#include <cstdio>
#include <streambuf>
#include <string>
#include <string_view>

namespace zuvi::host {

/// Whether a stream of the C library ends at a terminal.
bool EsTerminal(std::FILE* archivo);

/// The text with control characters, marks that turn the direction of writing and broken bytes as "\x1B" or
/// "\u202E". Line ends and tabs stay when `con_lineas`.
std::string Visible(std::string_view texto, bool con_lineas);

/// Between a stream and its terminal: lets everything through as `Visible` shows it. Broken off characters
/// wait for their rest.
class SalidaVisible final : public std::streambuf {
 public:
  explicit SalidaVisible(std::streambuf& destino) : destino_(destino) {}

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* texto, std::streamsize largo) override;
  int sync() override { return destino_.pubsync(); }

 private:
  std::streambuf& destino_;
  std::string pendiente_;
};

}  // namespace zuvi::host
