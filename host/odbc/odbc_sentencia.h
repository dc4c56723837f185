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

#include "host/odbc/odbc_api.h"
#include "host/odbc/recordset_memoria.h"

namespace zuvi::host {

/// The one statement handle of a connection. Every cell is fetched as text, into buffers that stay bound
/// from one statement to the next, and made a value by the kind of its column: SQLite keeps
/// any value in any column.
class Sentencia {
 public:
  Sentencia(SQLHANDLE enlace, Motor motor, Forma forma);
  Sentencia(const Sentencia&) = delete;
  Sentencia& operator=(const Sentencia&) = delete;
  ~Sentencia();
  /// Its connection is lost: the handle is not used again, not even to free it.
  void Abandona() { perdida_ = true; }

  /// Runs a statement and drops its rows, if it gives any; returns the number of rows it touched.
  std::int64_t Corre(std::string_view sql);
  /// Runs a statement and reads its rows; without columns when the statement gives none. `tocadas` is set to
  /// the rows touched.
  Resultado Lee(std::string_view sql, std::int64_t* tocadas = nullptr);

 private:
  class Cierre;
  /// Where the driver leaves one cell; a longer text is fetched apart.
  struct Bufer {
    alignas(char16_t) std::array<char, 512> bytes;
    SQLLEN largo = 0;
    SQLSMALLINT tipo = 0;  // as it is bound
  };
  /// Passes good results; an error that means a lost connection is remembered.
  void Exige(SQLRETURN resultado) const {
    if (!SQL_SUCCEEDED(resultado) && resultado != SQL_NO_DATA) Falla();
  }
  [[noreturn]] void Falla() const;
  /// False when no row was touched or found. `por_partes` prepares the text before it runs it.
  bool Ejecuta(std::string_view sql, bool por_partes);
  std::int64_t Tocadas() const;
  std::shared_ptr<const Columnas> Describe(std::size_t cuantas);
  Clase ClaseDe(SQLUSMALLINT columna, SQLSMALLINT tipo) const;
  void Liga(const Columnas& columnas);
  SQLSMALLINT TipoC(Clase clase) const;
  Value Celda(std::size_t columna, Clase clase);
  Value CeldaLarga(std::size_t columna, Clase clase);
  std::string_view EnUtf8(SQLSMALLINT tipo, std::string_view bytes);

  OdbcHandle<SQL_HANDLE_STMT> handle_;
  Motor motor_;
  Forma forma_;
  mutable bool perdida_ = false;
  std::deque<Bufer> ligadas_;
  std::string texto_;  // the cell being read, in UTF-8
  std::string figura_;
  // Shapes seen before: types and names as the driver gave them.
  std::unordered_map<std::string, std::shared_ptr<const Columnas>> figuras_;
};

}  // namespace zuvi::host
