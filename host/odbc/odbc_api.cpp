#include "host/odbc/odbc_api.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "base/text.h"

namespace zuvi::host {
namespace {

struct Registro {
  std::string estado;
  std::int32_t codigo = 0;
  std::string texto;
};

/// One record as `Get` (SQLGetDiagRec in either form) gives it.
template <class Unidad, class Get>
std::basic_string<Unidad> TextoDe(Get get) {
  std::basic_string<Unidad> texto(SQL_MAX_MESSAGE_LENGTH, Unidad{});
  SQLSMALLINT largo = 0;
  SQLRETURN resultado = get(texto.data(), static_cast<SQLSMALLINT>(texto.size()), &largo);
  if (resultado == SQL_SUCCESS_WITH_INFO && largo >= static_cast<SQLSMALLINT>(texto.size())) {
    texto.resize(static_cast<std::size_t>(largo) + 1);
    resultado = get(texto.data(), static_cast<SQLSMALLINT>(texto.size()), &largo);
  }
  texto.resize(SQL_SUCCEEDED(resultado) && largo > 0 ? static_cast<std::size_t>(largo) : 0);
  return texto;
}

Registro Lee(SQLSMALLINT tipo, SQLHANDLE handle, Forma forma) {
  Registro diagnostico;
  SQLINTEGER codigo = 0;
  if (forma == Forma::Utf16) {
    std::array<SQLWCHAR, 6> estado{};
    const auto texto = TextoDe<char16_t>([&](char16_t* a, SQLSMALLINT n, SQLSMALLINT* largo) {
      return SQLGetDiagRecW(tipo, handle, 1, estado.data(), &codigo, reinterpret_cast<SQLWCHAR*>(a), n,
                            largo);
    });
    diagnostico.texto = Utf8(texto);
    for (std::size_t i = 0; i < 5 && estado[i] != 0; ++i) diagnostico.estado += static_cast<char>(estado[i]);
  } else {
    std::array<SQLCHAR, 6> estado{};
    diagnostico.texto = TextoDe<char>([&](char* a, SQLSMALLINT n, SQLSMALLINT* largo) {
      return SQLGetDiagRec(tipo, handle, 1, estado.data(), &codigo, reinterpret_cast<SQLCHAR*>(a), n, largo);
    });
    for (std::size_t i = 0; i < 5 && estado[i] != 0; ++i) diagnostico.estado += static_cast<char>(estado[i]);
  }
  diagnostico.codigo = codigo;
  return diagnostico;
}

/// Without the names of driver manager, driver and server in front, which tell a user nothing.
std::string_view SinPrefijos(std::string_view texto) {
  while (texto.starts_with('[')) {
    const std::size_t fin = texto.find(']');
    if (fin == std::string_view::npos || fin + 1 == texto.size()) break;
    texto.remove_prefix(fin + 1);
  }
  return Recorta(texto);
}

}  // namespace

Entorno NuevoEntorno() {
  Entorno entorno;
  Exige(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, entorno.Out()), SQL_HANDLE_ENV, nullptr,
        Forma::Utf16);
  // The version is handed over in the pointer itself.
  Exige(SQLSetEnvAttr(entorno.Get(), SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0),
        SQL_HANDLE_ENV, entorno.Get(), Forma::Utf16);
  return entorno;
}

HostError Diagnostico(SQLSMALLINT tipo, SQLHANDLE handle, Forma forma) {
  const Registro diagnostico = Lee(tipo, handle, forma);
  const std::string_view texto = SinPrefijos(diagnostico.texto);
  return HostError(
      texto.empty() ? std::string("La base de datos falló sin dar explicación.") : std::string(texto),
      ErrorNumber::AutomationFailure, diagnostico.codigo, diagnostico.estado);
}

void LanzaDiagnostico(SQLSMALLINT tipo, SQLHANDLE handle, Forma forma) {
  throw Diagnostico(tipo, handle, forma);
}

bool EsAscii(std::string_view texto) {
  // Eight at a time: every statement passes here.
  std::uint64_t bits = 0;
  for (; texto.size() >= sizeof bits; texto.remove_prefix(sizeof bits)) {
    std::uint64_t ocho;
    std::memcpy(&ocho, texto.data(), sizeof ocho);
    bits |= ocho;
  }
  for (const char c : texto) bits |= static_cast<unsigned char>(c);
  return (bits & 0x8080808080808080u) == 0;
}

SQLWCHAR* Ancho(const std::u16string& texto) {
  static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));
  return const_cast<SQLWCHAR*>(reinterpret_cast<const SQLWCHAR*>(texto.c_str()));
}

SQLCHAR* Angosto(std::string_view texto) {
  return const_cast<SQLCHAR*>(reinterpret_cast<const SQLCHAR*>(texto.data()));
}

}  // namespace zuvi::host
