#include "host/anfitrion/consola.h"

#include <utf8.h>

#include <algorithm>
#include <cstdint>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace zuvi::host {
namespace {

unsigned char Byte(char c) { return static_cast<unsigned char>(c); }

/// How much of a text is there whole: a character whose end is still to come is not.
std::size_t Enteros(std::string_view texto) {
  if (utf8::is_valid(texto)) return texto.size();
  const auto cortado = [&](auto inicio) {
    try {
      utf8::next(inicio, texto.end());
    } catch (const utf8::not_enough_room&) {
      return true;
    } catch (const utf8::exception&) {
      // Broken, whatever comes.
    }
    return false;
  };
  constexpr std::size_t kMasLargoCortado = 3;
  for (std::size_t i = texto.size() - std::min(texto.size(), kMasLargoCortado); i < texto.size(); ++i)
    if (cortado(texto.begin() + static_cast<std::ptrdiff_t>(i))) return i;
  return texto.size();
}

bool EsMando(std::uint32_t c) {
  return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x61C || c == 0x200E || c == 0x200F ||
         (c >= 0x2028 && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

std::string Hex(std::uint32_t numero, int cifras) {
  std::string texto;
  for (int i = cifras - 1; i >= 0; --i) texto += "0123456789ABCDEF"[numero >> (4 * i) & 15];
  return texto;
}

}  // namespace

bool EsTerminal(std::FILE* archivo) {
#ifdef _WIN32
  return _isatty(_fileno(archivo)) != 0;
#else
  return isatty(fileno(archivo)) != 0;
#endif
}

std::string Visible(std::string_view texto, bool con_lineas) {
  std::string visible;
  for (auto c = texto.begin(); c != texto.end();) {
    for (const auto roto = utf8::find_invalid(c, texto.end()); c != roto;) {
      const auto inicio = c;
      const std::uint32_t codigo = utf8::unchecked::next(c);
      if (!EsMando(codigo) || (con_lineas && (codigo == '\n' || codigo == '\t')))
        visible.append(inicio, c);
      else
        visible += codigo < 0x80 ? "\\x" + Hex(codigo, 2) : "\\u" + Hex(codigo, 4);
    }
    if (c != texto.end()) visible += "\\x" + Hex(Byte(*c++), 2);
  }
  return visible;
}

SalidaVisible::int_type SalidaVisible::overflow(int_type c) {
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  const char uno = traits_type::to_char_type(c);
  return xsputn(&uno, 1) == 1 ? c : traits_type::eof();
}

std::streamsize SalidaVisible::xsputn(const char* texto, std::streamsize largo) {
  pendiente_.append(texto, static_cast<std::size_t>(largo));
  const std::size_t hasta = Enteros(pendiente_);
  const std::string visible = Visible(std::string_view(pendiente_).substr(0, hasta), true);
  pendiente_.erase(0, hasta);
  const auto bytes = static_cast<std::streamsize>(visible.size());
  return destino_.sputn(visible.data(), bytes) == bytes ? largo : 0;
}

}  // namespace zuvi::host
