#include "host/odbc/base_datos.h"

#include <chrono>
#include <optional>

#include "base/members.h"
#include "host/odbc/connection_lost.h"
#include "host/odbc/memory_recordset.h"
#include "host/odbc/odbc_attributes.h"
#include "host/odbc/odbc_connection.h"
#include "host/odbc/odbc_statement.h"
#include "host/odbc/statement_gate.h"

namespace zuvi::host {
namespace {

using Clock = std::chrono::steady_clock;

/// A connection that nobody used for so long is tried before something is written by it: servers and
/// networks cut idle ones.
constexpr auto kIdle = std::chrono::seconds(5);
/// A loss noticed within this time is a cut, not a server that does not answer.
constexpr auto kCutWithin = std::chrono::seconds(1);

/// What is open while the connection is: the statement goes before its connection does.
struct Session {
  explicit Session(const std::string& connection_string)
      : connection(connection_string, LimitsFromEnvironment()),
        statement(connection.Get(), connection.GetEngine(), connection.TextEncoding()) {}
  /// Forgets both without touching them again.
  void Abandon() {
    statement.Abandon();
    connection.Abandon();
  }
  OdbcConnection connection;
  Statement statement;
};

class OdbcDatabase final : public BaseDatos {
 public:
  OdbcDatabase(const std::string& connection_string, const Traza& trace)
      : connection_string_(connection_string),
        trace_(trace),
        session_(std::in_place, connection_string),
        engine_(session_->connection.GetEngine()) {}

  Engine GetEngine() const override { return engine_; }
  std::string Archivo() const override { return session_ ? session_->connection.File() : std::string(); }
  std::shared_ptr<Recordset> Consulta(const std::string& sql) override {
    return RowsOf(sql, Run(sql, Checked(sql), [&](Statement& s) { return s.Query(sql); }));
  }
  std::int64_t Ejecuta(const std::string& sql) override {
    return Run(sql, Checked(sql), [&](Statement& s) { return s.Run(sql); });
  }
  void EjecutaEsquema(const std::string& sql) override {
    Run(sql, StatementKind::Write, [&](Statement& s) { return s.Run(sql); });
  }
  void Cierra() override {
    closed_ = true;
    session_.reset();
  }
  void SoloLectura() override {
    read_only_ = true;
    if (session_) session_->connection.SetReadOnly();
  }
  void AlReabrir(std::function<void()> check) override { check_ = std::move(check); }
  bool SePerdio() const override { return was_lost_; }
  void OlvidaPerdida() override;

  // As automation clients see it.
  ObjectPtr Execute(const std::string& sql, Value& touched, const Value& options);
  std::int32_t State() { return closed_ ? 0 : 1; }
  std::string ConnectionString();
  std::int32_t BeginTrans() {
    Ejecuta("BEGIN");
    return 1;
  }
  void CommitTrans() { Ejecuta("COMMIT"); }
  void RollbackTrans() { Ejecuta("ROLLBACK"); }
  const MemberTable* Members() const override;

 private:
  /// Of a transaction that was begun by this connection.
  enum class TransactionState { None, Active, Lost };

  StatementKind Checked(const std::string& sql) const {
    if (read_only_) RequireReading(sql);
    return CheckStatement(engine_, sql);
  }
  /// Runs `body` on the one statement handle, with all that a lost connection asks for.
  template <class Body>
  auto Run(const std::string& sql, StatementKind kind, Body body)
      -> decltype(body(std::declval<Statement&>()));
  void Announce(const std::string& sql) const;
  /// The handle for a statement, of a connection that is opened again when it was lost.
  Statement& Ready(StatementKind kind);
  void Reopen();
  /// Finds out that the database is gone while nothing has been written yet.
  void BeforeWriting();
  void NoteEnd(StatementKind kind);
  /// Lets go of a lost connection.
  void Abandon();
  /// After the failure of a statement that ran since `start`: returns when the statement may run again,
  /// throws else.
  void HandleFailure(const HostError& error, StatementKind kind, Clock::time_point start, bool repeated);
  std::shared_ptr<Recordset> RowsOf(const std::string& sql, ResultSet result);

  std::string connection_string_;
  const Traza& trace_;
  std::optional<Session> session_;
  Engine engine_;
  bool closed_ = false;
  bool read_only_ = false;
  bool was_lost_ = false;
  bool reopening_ = false;
  TransactionState transaction_ = TransactionState::None;
  Clock::time_point last_use_ = Clock::now();
  /// Until then a failed attempt to connect is not made again, but answered by `failure_`: an attempt that
  /// took long must not be waited for by every statement of a long operation.
  Clock::time_point next_attempt_{};
  std::string failure_;
  std::function<void()> check_;
};

template <class Body>
auto OdbcDatabase::Run(const std::string& sql, StatementKind kind, Body body)
    -> decltype(body(std::declval<Statement&>())) {
  Announce(sql);
  if (!session_ && kind == StatementKind::Rollback) {
    // The server has undone it when the connection went.
    transaction_ = TransactionState::None;
    return {};
  }
  for (bool repeated = false;; repeated = true) {
    Statement& statement = Ready(kind);
    const auto start = Clock::now();
    try {
      auto result = body(statement);
      NoteEnd(kind);
      return result;
    } catch (const HostError& error) {
      HandleFailure(error, kind, start, repeated);
    }
  }
}

void OdbcDatabase::Announce(const std::string& sql) const {
  if (closed_)
    throw HostError("Operation is not allowed when the object is closed.", ErrorNumber::AutomationFailure,
                    3704);
  if (sql.empty()) throw HostError("La instrucción está vacía.");
  if (trace_.Activa()) trace_.Anota(Suceso::Sentencia, sql);
}

Statement& OdbcDatabase::Ready(StatementKind kind) {
  if (transaction_ == TransactionState::Lost) {
    if (kind == StatementKind::Commit) transaction_ = TransactionState::None;
    throw ConnectionLost(
        "La transacción se perdió con la conexión y se deshizo entera; no se guardó nada de ella.");
  }
  if (!session_ && kind == StatementKind::Commit)
    throw ConnectionLost("No hay transacción que confirmar: se perdió con la conexión.");
  if (!session_)
    Reopen();
  else if (transaction_ == TransactionState::None &&
           (kind == StatementKind::Write || kind == StatementKind::Begin))
    BeforeWriting();
  return session_->statement;
}

void OdbcDatabase::BeforeWriting() {
  if (engine_ == Engine::Sqlite) return session_->connection.RequireFile();
  if (Clock::now() - last_use_ <= kIdle) return;
  try {
    session_->statement.Run("SET @vive = 1");
  } catch (const HostError& error) {
    if (!IsConnectionLoss(engine_, error)) throw;
    Abandon();
    Reopen();
  }
}

void OdbcDatabase::Reopen() {
  const auto start = Clock::now();
  if (reopening_ || start < next_attempt_) throw ConnectionLost(failure_);
  const std::shared_ptr<void> on_exit(nullptr, [this](void*) { reopening_ = false; });
  reopening_ = true;
  try {
    session_.emplace(connection_string_);
    if (read_only_) session_->connection.SetReadOnly();
    if (check_) check_();
    failure_.clear();
  } catch (const HostError& error) {
    if (session_ && IsConnectionLoss(engine_, error)) session_->Abandon();
    session_.reset();
    was_lost_ = true;
    failure_ = error.what();
    next_attempt_ = Clock::now() + (Clock::now() - start);
    throw ConnectionLost(failure_, error.NativeCode());
  }
}

void OdbcDatabase::NoteEnd(StatementKind kind) {
  if (engine_ == Engine::MariaDb) last_use_ = Clock::now();
  if (kind == StatementKind::Begin)
    transaction_ = TransactionState::Active;
  else if (kind == StatementKind::Commit || kind == StatementKind::Rollback)
    transaction_ = TransactionState::None;
}

void OdbcDatabase::Abandon() {
  session_->Abandon();
  session_.reset();
}

void OdbcDatabase::HandleFailure(const HostError& error, StatementKind kind, Clock::time_point start,
                                 bool repeated) {
  if (!IsConnectionLoss(engine_, error)) throw Explained(engine_, error);
  // Within the check after a reopening it has been let go of already.
  if (session_) Abandon();
  const auto took = Clock::now() - start;
  const bool in_transaction = transaction_ == TransactionState::Active;
  if (!in_transaction && !repeated && !reopening_ && took < kCutWithin &&
      (kind == StatementKind::Read || kind == StatementKind::Begin))
    return;

  std::string text = took < kCutWithin ? "Se perdió la conexión con el servidor de la base de datos."
                                       : "El servidor de la base de datos dejó de responder.";
  bool in_doubt = false;
  // What was healed unnoticed does not count: the work goes on.
  was_lost_ = true;
  transaction_ = TransactionState::None;
  if (kind == StatementKind::Commit) {
    in_doubt = true;
    text += " No se sabe si lo último quedó guardado; revíselo antes de repetirlo.";
  } else if (in_transaction && kind != StatementKind::Rollback) {
    transaction_ = TransactionState::Lost;
    text += " Lo que se estaba guardando se deshizo entero.";
  } else if (kind == StatementKind::Write) {
    in_doubt = true;
    text += " No se sabe si la última instrucción quedó hecha; revíselo antes de repetirla.";
  } else {
    text += " La consulta no terminó.";
  }
  throw ConnectionLost(
      text + " La conexión se abre de nuevo con lo siguiente que haga." + InParentheses(error),
      error.NativeCode(), in_doubt);
}

void OdbcDatabase::OlvidaPerdida() {
  was_lost_ = false;
  next_attempt_ = {};
}

std::shared_ptr<Recordset> OdbcDatabase::RowsOf(const std::string& sql, ResultSet result) {
  auto rows = std::make_shared<MemoryRecordset>(std::move(result));
  rows->SetOrigin(sql, std::static_pointer_cast<BaseDatos>(shared_from_this()));
  return rows;
}

ObjectPtr OdbcDatabase::Execute(const std::string& sql, Value& touched, const Value& /*options*/) {
  std::int64_t rows = 0;
  ResultSet result = Run(sql, Checked(sql), [&](Statement& s) { return s.Query(sql, &rows); });
  touched = static_cast<std::int32_t>(rows);
  return RowsOf(sql, std::move(result));
}

std::string OdbcDatabase::ConnectionString() { return WithoutPassword(connection_string_); }

const MemberTable* OdbcDatabase::Members() const {
  using B = OdbcDatabase;
  static const MemberTable table =
      MemberTable::Of<B>()
          .Property<&B::ConnectionString>("ConnectionString")
          .AsDefault()
          .Method<&B::Execute>("Execute", {"CommandText", "RecordsAffected", "Options"}, 2)
          .Method<&B::Cierra>("Close")
          .Property<&B::State>("State")
          .Method<&B::BeginTrans>("BeginTrans")
          .Method<&B::CommitTrans>("CommitTrans")
          .Method<&B::RollbackTrans>("RollbackTrans");
  return &table;
}

}  // namespace

std::shared_ptr<BaseDatos> BaseDatos::Abre(const std::string& connection_string, const Traza& trace) {
  return std::make_shared<OdbcDatabase>(connection_string, trace);
}

Transaccion::~Transaccion() {
  if (!abierta_) return;
  try {
    base_.Ejecuta("ROLLBACK");
  } catch (const std::exception&) {
    // The connection is lost or the engine has already undone it: there is nothing left to undo.
  }
}

void Transaccion::Confirma() {
  // An unanswered one leaves nothing to undo; a refused one does.
  base_.Ejecuta("COMMIT");
  abierta_ = false;
}

}  // namespace zuvi::host
