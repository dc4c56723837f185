#include "host/odbc/odbc_api.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "base/text.h"

namespace zuvi::host {
namespace {

struct DiagnosticRecord {
  std::string state;
  std::int32_t code = 0;
  std::string text;
};

/// One record as `Get` (SQLGetDiagRec in either form) gives it.
template <class Unit, class Get>
std::basic_string<Unit> DiagnosticText(Get get) {
  std::basic_string<Unit> text(SQL_MAX_MESSAGE_LENGTH, Unit{});
  SQLSMALLINT length = 0;
  SQLRETURN result = get(text.data(), static_cast<SQLSMALLINT>(text.size()), &length);
  if (result == SQL_SUCCESS_WITH_INFO && length >= static_cast<SQLSMALLINT>(text.size())) {
    text.resize(static_cast<std::size_t>(length) + 1);
    result = get(text.data(), static_cast<SQLSMALLINT>(text.size()), &length);
  }
  text.resize(SQL_SUCCEEDED(result) && length > 0 ? static_cast<std::size_t>(length) : 0);
  return text;
}

DiagnosticRecord ReadRecord(SQLSMALLINT type, SQLHANDLE handle, Encoding encoding) {
  DiagnosticRecord record;
  SQLINTEGER code = 0;
  if (encoding == Encoding::Utf16) {
    std::array<SQLWCHAR, 6> state{};
    const auto text = DiagnosticText<char16_t>([&](char16_t* a, SQLSMALLINT n, SQLSMALLINT* length) {
      return SQLGetDiagRecW(type, handle, 1, state.data(), &code, reinterpret_cast<SQLWCHAR*>(a), n, length);
    });
    record.text = Utf8(text);
    for (std::size_t i = 0; i < 5 && state[i] != 0; ++i) record.state += static_cast<char>(state[i]);
  } else {
    std::array<SQLCHAR, 6> state{};
    record.text = DiagnosticText<char>([&](char* a, SQLSMALLINT n, SQLSMALLINT* length) {
      return SQLGetDiagRec(type, handle, 1, state.data(), &code, reinterpret_cast<SQLCHAR*>(a), n, length);
    });
    for (std::size_t i = 0; i < 5 && state[i] != 0; ++i) record.state += static_cast<char>(state[i]);
  }
  record.code = code;
  return record;
}

/// Without the names of driver manager, driver and server in front, which tell a user nothing.
std::string_view WithoutPrefixes(std::string_view text) {
  while (text.starts_with('[')) {
    const std::size_t end = text.find(']');
    if (end == std::string_view::npos || end + 1 == text.size()) break;
    text.remove_prefix(end + 1);
  }
  return Trim(text);
}

}  // namespace

EnvironmentHandle NewEnvironment() {
  EnvironmentHandle environment;
  Check(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, environment.Out()), SQL_HANDLE_ENV, nullptr,
        Encoding::Utf16);
  // The version is handed over in the pointer itself.
  Check(
      SQLSetEnvAttr(environment.Get(), SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0),
      SQL_HANDLE_ENV, environment.Get(), Encoding::Utf16);
  return environment;
}

HostError Diagnostics(SQLSMALLINT type, SQLHANDLE handle, Encoding encoding) {
  const DiagnosticRecord record = ReadRecord(type, handle, encoding);
  const std::string_view text = WithoutPrefixes(record.text);
  return HostError(
      text.empty() ? std::string("La base de datos falló sin dar explicación.") : std::string(text),
      ErrorNumber::AutomationFailure, record.code, record.state);
}

void ThrowDiagnostics(SQLSMALLINT type, SQLHANDLE handle, Encoding encoding) {
  throw Diagnostics(type, handle, encoding);
}

bool IsAscii(std::string_view text) {
  // Eight at a time: every statement passes here.
  std::uint64_t bits = 0;
  for (; text.size() >= sizeof bits; text.remove_prefix(sizeof bits)) {
    std::uint64_t eight;
    std::memcpy(&eight, text.data(), sizeof eight);
    bits |= eight;
  }
  for (const char c : text) bits |= static_cast<unsigned char>(c);
  return (bits & 0x8080808080808080u) == 0;
}

SQLWCHAR* Wide(const std::u16string& text) {
  static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));
  return const_cast<SQLWCHAR*>(reinterpret_cast<const SQLWCHAR*>(text.c_str()));
}

SQLCHAR* Narrow(std::string_view text) {
  return const_cast<SQLCHAR*>(reinterpret_cast<const SQLCHAR*>(text.data()));
}

}  // namespace zuvi::host
