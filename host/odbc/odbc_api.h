// The ODBC C API with handles that close themselves and one function that every call's result passes.
#pragma once

#ifdef _WIN32
#include <windows.h>
#endif
// Both forms of the functions are called by name: which one a driver can be trusted with is found at run
// time.
#define SQL_NOUNICODEMAP
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <string>
#include <string_view>
#include <utility>

#include "base/error.h"

namespace zuvi::host {

/// In which form texts go through ODBC: UTF-16 by the W functions, or UTF-8 by the plain ones where that is
/// faster or a driver manager would squeeze UTF-16 into the driver's 8 bits.
enum class Encoding { Utf16, Utf8 };

/// Whether the plain functions hand their texts to the driver as they are. Windows takes them to be in the
/// ANSI code page, messages included.
#ifdef _WIN32
inline constexpr bool kPlainTextIntact = false;
#else
inline constexpr bool kPlainTextIntact = true;
#endif

/// A handle of one kind (SQL_HANDLE_ENV, SQL_HANDLE_DBC, SQL_HANDLE_STMT); freed by the destructor.
template <SQLSMALLINT kind>
class OdbcHandle {
 public:
  OdbcHandle() = default;
  OdbcHandle(OdbcHandle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  OdbcHandle& operator=(OdbcHandle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~OdbcHandle() {
    if (handle_) SQLFreeHandle(kind, handle_);
  }
  SQLHANDLE Get() const { return handle_; }
  /// Where a call leaves a new handle.
  SQLHANDLE* Out() { return &handle_; }
  /// Forgets the handle without freeing it. For those of a lost connection: drivers have been seen to crash
  /// when one of them is used again, be it to free it. The few kilobytes stay behind.
  void Abandon() { handle_ = nullptr; }

 private:
  SQLHANDLE handle_ = nullptr;
};

using EnvironmentHandle = OdbcHandle<SQL_HANDLE_ENV>;
using ConnectionHandle = OdbcHandle<SQL_HANDLE_DBC>;

/// An environment of version 3 of the API. Throws HostError.
EnvironmentHandle NewEnvironment();

/// The first record of what the handle has to say.
HostError Diagnostics(SQLSMALLINT type, SQLHANDLE handle, Encoding encoding);
/// Throws it.
[[noreturn]] void ThrowDiagnostics(SQLSMALLINT type, SQLHANDLE handle, Encoding encoding);
/// Lets good results pass (SQL_NO_DATA among them); throws HostError with the diagnostics of the handle else.
inline void Check(SQLRETURN result, SQLSMALLINT type, SQLHANDLE handle, Encoding encoding) {
  if (!SQL_SUCCEEDED(result) && result != SQL_NO_DATA) ThrowDiagnostics(type, handle, encoding);
}

bool IsAscii(std::string_view text);

/// UTF-16 as the API takes it. The API declares its input texts as not const.
SQLWCHAR* Wide(const std::u16string& text);
SQLCHAR* Narrow(std::string_view text);

}  // namespace zuvi::host
