#include "host/anfitrion/consola.h"

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

/// How many bytes the character takes that begins with this one; 0 for a byte that begins none.
std::size_t LargoDe(unsigned char inicio) {
  if (inicio < 0x80) return 1;
  if (inicio >= 0xC2 && inicio <= 0xDF) return 2;
  if (inicio >= 0xE0 && inicio <= 0xEF) return 3;
  return inicio >= 0xF0 && inicio <= 0xF4 ? 4 : 0;
}

/// How many bytes at the beginning of the text belong together: a whole character, or what there is of one.
std::size_t Juntos(std::string_view texto) {
  const std::size_t largo = LargoDe(Byte(texto[0]));
  std::size_t hay = 1;
  while (hay < largo && hay < texto.size() && (Byte(texto[hay]) & 0xC0) == 0x80) ++hay;
  return hay;
}

std::uint32_t Codigo(std::string_view caracter) {
  const std::size_t largo = caracter.size();
  std::uint32_t codigo = Byte(caracter[0]);
  if (largo > 1) codigo &= 0x7Fu >> largo;
  for (std::size_t i = 1; i < largo; ++i) codigo = codigo << 6 | (Byte(caracter[i]) & 0x3Fu);
  return codigo;
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
  while (!texto.empty()) {
    const std::string_view caracter = texto.substr(0, Juntos(texto));
    texto.remove_prefix(caracter.size());
    if (caracter.size() != LargoDe(Byte(caracter[0]))) {
      for (const char c : caracter) visible += "\\x" + Hex(Byte(c), 2);
    } else if (con_lineas && (caracter == "\n" || caracter == "\t")) {
      visible += caracter;
    } else if (const std::uint32_t codigo = Codigo(caracter); EsMando(codigo)) {
      visible += codigo < 0x80 ? "\\x" + Hex(codigo, 2) : "\\u" + Hex(codigo, 4);
    } else {
      visible += caracter;
    }
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
  // The last character may go on in the next call.
  std::size_t ultimo = pendiente_.size();
  for (std::size_t i = 0; i < pendiente_.size(); i += Juntos(std::string_view(pendiente_).substr(i)))
    ultimo = i;
  const bool completo =
      ultimo == pendiente_.size() ||
      pendiente_.size() - ultimo >= std::max<std::size_t>(LargoDe(Byte(pendiente_[ultimo])), 1);
  const std::size_t hasta = completo ? pendiente_.size() : ultimo;
  const std::string visible = Visible(std::string_view(pendiente_).substr(0, hasta), true);
  pendiente_.erase(0, hasta);
  const auto bytes = static_cast<std::streamsize>(visible.size());
  return destino_.sputn(visible.data(), bytes) == bytes ? largo : 0;
}

}  // namespace zuvi::host
