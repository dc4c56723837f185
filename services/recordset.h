#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "base/object.h"

namespace zuvi {

/// An open ADO connection. The module only hands it on to host operations.
class Conexion : public Object {};

/// An ADO record set, positioned on its first row when it is opened. Fields are found without regard to case.
class Recordset : public Object {
 public:
  static constexpr const char* kProgId = "ADODB.Recordset";

  /// True past the last row.
  virtual bool Eof() = 0;
  /// Goes to the next row. Throws past the end.
  virtual void MoveNext() = 0;
  /// Value of a field of the current row. Throws for an unknown field or without a current row.
  virtual Value Campo(FixedText nombre) = 0;
  virtual Value Campo(std::int32_t ordinal) = 0;

  /// Cursor and lock type in ADO's numbers (1 keyset, 3 optimistic), to be set before `Open`.
  virtual void PonCursorType(std::int32_t tipo) = 0;
  virtual void PonLockType(std::int32_t tipo) = 0;
  /// Opens on a source; -1 for cursor or lock type means "as set before", options 1 is command text.
  virtual void Open(const std::string& fuente, const std::shared_ptr<Conexion>& conexion, std::int32_t cursor,
                    std::int32_t bloqueo, std::int32_t opciones) = 0;
};

}  // namespace zuvi
