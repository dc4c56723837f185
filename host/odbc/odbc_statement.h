#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/odbc/memory_recordset.h"
#include "host/odbc/odbc_api.h"

namespace zuvi::host {

/// The one statement handle of a connection. Every cell is fetched as text, into buffers that stay bound
/// from one statement to the next, and made a value by the kind of its column: SQLite keeps
/// any value in any column.
class Statement {
 public:
  Statement(SQLHANDLE connection, Engine engine, Encoding encoding);
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement();
  /// Its connection is lost: the handle is not used again, not even to free it.
  void Abandon() { lost_ = true; }

  /// Runs a statement and drops its rows, if it gives any; returns the number of rows it touched.
  std::int64_t Run(std::string_view sql);
  /// Runs a statement and reads its rows; without columns when the statement gives none. `touched` is set to
  /// the rows touched.
  ResultSet Query(std::string_view sql, std::int64_t* touched = nullptr);

 private:
  class CursorGuard;
  /// Where the driver leaves one cell; a longer text is fetched apart.
  struct Buffer {
    alignas(char16_t) std::array<char, 512> bytes;
    SQLLEN length = 0;
    SQLSMALLINT type = 0;  // as it is bound
  };
  /// Passes good results; an error that means a lost connection is remembered.
  void Check(SQLRETURN result) const {
    if (!SQL_SUCCEEDED(result) && result != SQL_NO_DATA) Fail();
  }
  [[noreturn]] void Fail() const;
  /// False when no row was touched or found. `prepare` prepares the text before it runs it.
  bool Execute(std::string_view sql, bool prepare);
  std::int64_t RowsTouched() const;
  std::shared_ptr<const Columns> Describe(std::size_t count);
  ColumnKind KindOf(SQLUSMALLINT column, SQLSMALLINT type) const;
  void Bind(const Columns& columns);
  SQLSMALLINT CType(ColumnKind kind) const;
  Value Cell(std::size_t column, ColumnKind kind);
  Value LongCell(std::size_t column, ColumnKind kind);
  std::string_view AsUtf8(SQLSMALLINT type, std::string_view bytes);

  OdbcHandle<SQL_HANDLE_STMT> handle_;
  Engine engine_;
  Encoding encoding_;
  mutable bool lost_ = false;
  std::deque<Buffer> bound_;
  std::string text_;  // the cell being read, in UTF-8
  std::string shape_;
  // Shapes seen before: types and names as the driver gave them.
  std::unordered_map<std::string, std::shared_ptr<const Columns>> shapes_;
};

}  // namespace zuvi::host
