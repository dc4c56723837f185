// A record set that was read whole: statements may run while it is walked.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/members.h"
#include "host/odbc/base_datos.h"

namespace zuvi::host {

/// What the values of a column are made of.
enum class ColumnKind { Integer, SmallInteger, Real, Text, LongText, Date };

/// One column of a result.
struct Column {
  std::string name;
  ColumnKind kind = ColumnKind::Text;
};

/// Names and kinds of the columns of a result; shared by all results of one shape.
using Columns = std::vector<Column>;

/// A result: values row by row, as many as there are columns. No columns: the statement gives no rows.
struct ResultSet {
  std::shared_ptr<const Columns> columns;
  std::vector<Value> cells;
};

/// Rows read whole, with a current one, shaped as ADO's record set. Members that need an open record set or a
/// current row throw HostError without one, with ADO's own code and text.
class MemoryRecordset final : public Recordset {
 public:
  MemoryRecordset() = default;
  explicit MemoryRecordset(ResultSet result) { Fill(std::move(result)); }

  bool Eof() override;
  bool Bof();
  void MoveNext() override;
  void MovePrevious();
  void MoveFirst();
  void MoveLast();
  std::int32_t RecordCount();

  Value Campo(FixedText name) override { return Current(Ordinal(std::string_view(name.text))); }
  Value Campo(std::int32_t ordinal) override;
  /// Value of a column in the current row; by a number that `Ordinal` gave.
  const Value& Current(std::size_t column);
  /// Number of a column by name or number. Throws for an unknown one.
  std::size_t Ordinal(std::string_view name);
  std::size_t Ordinal(const Value& index);
  const Columns& GetColumns();
  /// The collection of fields, or with an index one field of it.
  ObjectPtr Fields(const Value& index);

  std::int32_t CursorType() { return cursor_type_; }
  void PonCursorType(std::int32_t type) override { cursor_type_ = type; }
  std::int32_t LockType() { return lock_type_; }
  void PonLockType(std::int32_t type) override { lock_type_ = type; }
  /// Where ADO would keep the rows; ours are always read whole.
  std::int32_t CursorLocation() { return location_; }
  void PonCursorLocation(std::int32_t location) { location_ = location; }
  void Open(const std::string& source, const std::shared_ptr<Conexion>& connection, std::int32_t cursor_type,
            std::int32_t lock_type, std::int32_t options) override;
  void Close();
  /// 0 closed, 1 open.
  std::int32_t State() { return columns_ ? 1 : 0; }
  std::string Source() { return source_; }
  void PonSource(const std::string& source) { source_ = source; }
  ObjectPtr ActiveConnection() { return connection_; }
  void PonActiveConnection(const ObjectPtr& connection);
  /// Remembers where the rows came from.
  void SetOrigin(std::string source, std::shared_ptr<BaseDatos> connection);

  const MemberTable* Members() const override;

 private:
  void Fill(ResultSet result);
  void RequireOpen() const;
  void RequireRow() const;
  /// `Open` with arguments left out: source and connection as set before.
  void OpenByName(const Value& source, const Value& connection, const Value& cursor_type,
                  const Value& lock_type, const Value& options);

  std::shared_ptr<const Columns> columns_;
  std::vector<Value> cells_;
  std::ptrdiff_t row_count_ = 0;
  std::ptrdiff_t row_ = 0;  // -1 before the first row, filas_ past the last
  std::int32_t cursor_type_ = 0;
  std::int32_t lock_type_ = 1;
  std::int32_t location_ = 2;
  std::string source_;
  std::shared_ptr<BaseDatos> connection_;
};

}  // namespace zuvi::host
