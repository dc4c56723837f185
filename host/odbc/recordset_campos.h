// ADO's view of the columns: the collection `Fields` and its live fields, which read the current row.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "host/odbc/recordset_memoria.h"

namespace zuvi::host {

/// One column, as a field that follows the record set's current row.
class CampoVivo final : public Object {
 public:
  CampoVivo(std::shared_ptr<RecordsetMemoria> filas, std::size_t columna)
      : filas_(std::move(filas)), columna_(columna) {}
  std::string Name() { return Definicion().nombre; }
  zuvi::Value Value() { return filas_->Actual(Columna()); }
  /// ADO's number of the data type.
  std::int32_t Type();
  const MemberTable* Members() const override;

 private:
  /// Its number, checked: the record set may have been opened anew, with fewer columns.
  std::size_t Columna() { return filas_->Ordinal(zuvi::Value(static_cast<std::int32_t>(columna_))); }
  const host::Columna& Definicion() { return filas_->TraeColumnas()[Columna()]; }

  std::shared_ptr<RecordsetMemoria> filas_;
  std::size_t columna_;
};

/// All columns of a record set.
class Campos final : public Object {
 public:
  explicit Campos(std::shared_ptr<RecordsetMemoria> filas) : filas_(std::move(filas)) {}
  /// A field by name or by number from 0.
  ObjectPtr Item(const Value& indice);
  std::int32_t Count() { return static_cast<std::int32_t>(filas_->TraeColumnas().size()); }
  const MemberTable* Members() const override;

 private:
  std::shared_ptr<RecordsetMemoria> filas_;
};

}  // namespace zuvi::host
