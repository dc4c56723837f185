// ADO's view of the columns: the collection `Fields` and its live fields, which read the current row.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "host/odbc/memory_recordset.h"

namespace zuvi::host {

/// One column, as a field that follows the record set's current row.
class LiveField final : public Object {
 public:
  LiveField(std::shared_ptr<MemoryRecordset> recordset, std::size_t column)
      : recordset_(std::move(recordset)), column_(column) {}
  std::string Name() { return Definition().name; }
  zuvi::Value Value() { return recordset_->Current(Column()); }
  /// ADO's number of the data type.
  std::int32_t Type();
  const MemberTable* Members() const override;

 private:
  /// Its number, checked: the record set may have been opened anew, with fewer columns.
  std::size_t Column() { return recordset_->Ordinal(zuvi::Value(static_cast<std::int32_t>(column_))); }
  const host::Column& Definition() { return recordset_->GetColumns()[Column()]; }

  std::shared_ptr<MemoryRecordset> recordset_;
  std::size_t column_;
};

/// All columns of a record set.
class FieldCollection final : public Object {
 public:
  explicit FieldCollection(std::shared_ptr<MemoryRecordset> recordset) : recordset_(std::move(recordset)) {}
  /// A field by name or by number from 0.
  ObjectPtr Item(const Value& index);
  std::int32_t Count() { return static_cast<std::int32_t>(recordset_->GetColumns().size()); }
  const MemberTable* Members() const override;

 private:
  std::shared_ptr<MemoryRecordset> recordset_;
};

}  // namespace zuvi::host
