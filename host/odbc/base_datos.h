// host/odbc/: the connection of the host: drivers, statements and the gate that they pass, record sets,
// connecting anew, limits of time. Knows nothing of what the shop keeps in its tables.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "host/odbc/traza.h"
#include "services/recordset.h"

namespace zuvi::host {

/// The engines that the host works with.
enum class Engine { Sqlite, MariaDb };

/// One open ODBC connection, shaped as an ADO connection for automation clients (members `Execute`, `Close`,
/// `State`, `ConnectionString`, `BeginTrans`, `CommitTrans`, `RollbackTrans`). Every statement of the host
/// passes `Consulta` or `Ejecuta`: they are the one funnel that the trace listens to. One call runs one
/// statement: a text that holds a second one is refused, as is one that reaches files or native code.
/// Failures are HostError with the database's own description, native code and SQLSTATE.
///
/// Every wait for the database has a limit (host/odbc/limits.h). Once the connection to a server is lost,
/// the statement fails with ConnectionLost and none of its handles is used again; the next statement opens a
/// new one. Within a transaction nothing is opened: it is lost as a whole, and until its end every statement
/// fails. Only what changes nothing, a query or a BEGIN, is repeated by itself, and only where the connection
/// was found cut rather than silent.
class BaseDatos : public Conexion {
 public:
  /// Opens by ODBC connection string ("DRIVER={…};Database=…" or "DRIVER={…};Server=…;…").
  static std::shared_ptr<BaseDatos> Abre(const std::string& cadena, const Traza& traza);

  /// The engine behind the connection, asked once when it is opened.
  virtual Engine GetEngine() const = 0;
  /// File of a SQLite database by the name that its driver has for it; empty for any other, and while the
  /// connection is lost.
  virtual std::string Archivo() const = 0;
  /// Runs a SELECT and reads it whole, so that further statements may run while it is walked.
  virtual std::shared_ptr<Recordset> Consulta(const std::string& sql) = 0;
  /// Runs an action statement; returns the number of rows it touched.
  virtual std::int64_t Ejecuta(const std::string& sql) = 0;
  /// Runs one schema statement of the host's own as it stands: the body of a trigger holds semicolons, so it
  /// is not looked through for a second statement. Traced like the others.
  virtual void EjecutaEsquema(const std::string& sql) = 0;
  /// Ends the connection for good: every further statement throws.
  virtual void Cierra() = 0;

  /// From now on the engine refuses every change by this connection, and texts that are no queries are not
  /// sent at all.
  virtual void SoloLectura() = 0;
  /// Runs after each reopening, before the statement that caused it; what it throws, that statement throws,
  /// and the connection is not open then.
  virtual void AlReabrir(std::function<void()> comprobacion) = 0;
  /// Whether the connection was lost, or could not be opened again, since `OlvidaPerdida`.
  virtual bool SePerdio() const = 0;
  /// A new piece of work begins: what was lost before does not concern it, and the next statement tries to
  /// connect at once.
  virtual void OlvidaPerdida() = 0;
};

/// A transaction that will write: undone by the destructor unless confirmed. One at a time on a connection.
/// SQLite's takes its lock at once, for two that read first and write later would be in each other's way.
class Transaccion {
 public:
  explicit Transaccion(BaseDatos& base) : base_(base) {
    base_.Ejecuta(base.GetEngine() == Engine::Sqlite ? "BEGIN IMMEDIATE" : "BEGIN");
  }
  Transaccion(const Transaccion&) = delete;
  Transaccion& operator=(const Transaccion&) = delete;
  ~Transaccion();
  /// Makes it last. Throws HostError; nothing of it is left then, or, by ConnectionLost, nobody knows.
  void Confirma();
  BaseDatos& Base() const { return base_; }

 private:
  BaseDatos& base_;
  bool abierta_ = true;
};

/// A new record set that is not open yet, as `ADODB.Recordset` creates it.
std::shared_ptr<Recordset> NuevoRecordset();

// The one dialect table: everything that differs between the engines.

/// A date as literal: 'yyyy-mm-dd', with the time of day when there is one.
std::string LiteralFecha(Engine motor, const Date& fecha);
/// A value as literal: text quoted with the quotes in it doubled (and whatever else the engine needs), NULL
/// for Null.
std::string Literal(Engine motor, const Value& valor);
std::string Literal(Engine motor, const std::string& texto);

}  // namespace zuvi::host
