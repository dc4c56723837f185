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
enum class Clase { Entero, EnteroCorto, Real, Texto, TextoLargo, Fecha };

struct Columna {
  std::string nombre;
  Clase clase = Clase::Texto;
};

/// Names and kinds of the columns of a result; shared by all results of one shape.
using Columnas = std::vector<Columna>;

/// A result: values row by row.
struct Resultado {
  std::shared_ptr<const Columnas> columnas;
  std::vector<Value> celdas;
};

class RecordsetMemoria final : public Recordset {
 public:
  RecordsetMemoria() = default;
  explicit RecordsetMemoria(Resultado resultado) { Llena(std::move(resultado)); }

  bool Eof() override;
  bool Bof();
  void MoveNext() override;
  void MovePrevious();
  void MoveFirst();
  void MoveLast();
  std::int32_t RecordCount();

  Value Campo(FixedText nombre) override { return Actual(Ordinal(std::string_view(nombre.text))); }
  Value Campo(std::int32_t ordinal) override;
  /// Value of a column in the current row; by a number that `Ordinal` gave.
  const Value& Actual(std::size_t columna);
  /// Number of a column by name or number. Throws for an unknown one.
  std::size_t Ordinal(std::string_view nombre);
  std::size_t Ordinal(const Value& indice);
  const Columnas& TraeColumnas();
  /// The collection of fields, or with an index one field of it.
  ObjectPtr Fields(const Value& indice);

  std::int32_t CursorType() { return cursor_; }
  void PonCursorType(std::int32_t tipo) override { cursor_ = tipo; }
  std::int32_t LockType() { return bloqueo_; }
  void PonLockType(std::int32_t tipo) override { bloqueo_ = tipo; }
  /// Where ADO would keep the rows; ours are always read whole.
  std::int32_t CursorLocation() { return lugar_; }
  void PonCursorLocation(std::int32_t lugar) { lugar_ = lugar; }
  void Open(const std::string& fuente, const std::shared_ptr<Conexion>& conexion, std::int32_t cursor,
            std::int32_t bloqueo, std::int32_t opciones) override;
  void Close();
  /// 0 closed, 1 open.
  std::int32_t State() { return columnas_ ? 1 : 0; }
  std::string Source() { return fuente_; }
  void PonSource(const std::string& fuente) { fuente_ = fuente; }
  ObjectPtr ActiveConnection() { return conexion_; }
  void PonActiveConnection(const ObjectPtr& conexion);
  /// Remembers where the rows came from.
  void PonOrigen(std::string fuente, std::shared_ptr<BaseDatos> conexion);

  const MemberTable* Members() const override;

 private:
  void Llena(Resultado resultado);
  void ExigeAbierto() const;
  void ExigeFila() const;
  /// `Open` with arguments left out: source and connection as set before.
  void AbrePorNombre(const Value& fuente, const Value& conexion, const Value& cursor, const Value& bloqueo,
                     const Value& opciones);

  std::shared_ptr<const Columnas> columnas_;
  std::vector<Value> celdas_;
  std::ptrdiff_t filas_ = 0;
  std::ptrdiff_t fila_ = 0;  // -1 before the first row, filas_ past the last
  std::int32_t cursor_ = 0;
  std::int32_t bloqueo_ = 1;
  std::int32_t lugar_ = 2;
  std::string fuente_;
  std::shared_ptr<BaseDatos> conexion_;
};

}  // namespace zuvi::host
