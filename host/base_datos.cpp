#include "host/base_datos.h"

#include <optional>

#include "base/members.h"
#include "host/odbc_cadena.h"
#include "host/odbc_enlace.h"
#include "host/odbc_sentencia.h"
#include "host/recordset_memoria.h"
#include "host/unica_sentencia.h"

namespace zuvi::host {
namespace {

/// What is open while the connection is: the statement goes before its connection does.
struct Sesion {
  explicit Sesion(const std::string& cadena)
      : enlace(cadena), sentencia(enlace.Get(), enlace.TraeMotor(), enlace.TraeForma()) {}
  EnlaceOdbc enlace;
  Sentencia sentencia;
};

class BaseDatosOdbc final : public BaseDatos {
 public:
  BaseDatosOdbc(const std::string& cadena, const Traza& traza)
      : cadena_(cadena), traza_(traza), sesion_(std::in_place, cadena), motor_(sesion_->enlace.TraeMotor()) {}

  Motor TraeMotor() const override { return motor_; }
  std::shared_ptr<Recordset> Consulta(const std::string& sql) override {
    return Abre(sql, Prepara(sql).Lee(sql));
  }
  std::int64_t Ejecuta(const std::string& sql) override { return Prepara(sql).Corre(sql); }
  void EjecutaEsquema(const std::string& sql) override { Anunciada(sql).Corre(sql); }
  void Cierra() override { sesion_.reset(); }

  // As automation clients see it.
  ObjectPtr Execute(const std::string& sql, Value& tocadas, const Value& opciones);
  std::int32_t State() { return sesion_ ? 1 : 0; }
  std::string ConnectionString();
  std::int32_t BeginTrans() {
    Ejecuta("BEGIN");
    return 1;
  }
  void CommitTrans() { Ejecuta("COMMIT"); }
  void RollbackTrans() { Ejecuta("ROLLBACK"); }
  const MemberTable* Members() const override;

 private:
  /// What every statement goes through before it runs.
  Sentencia& Anunciada(const std::string& sql);
  /// The same, for a text that has to be one statement.
  Sentencia& Prepara(const std::string& sql) {
    ExigeUnaSentencia(motor_, sql);
    return Anunciada(sql);
  }
  std::shared_ptr<Recordset> Abre(const std::string& sql, Resultado resultado);

  std::string cadena_;
  const Traza& traza_;
  std::optional<Sesion> sesion_;
  Motor motor_;
};

Sentencia& BaseDatosOdbc::Anunciada(const std::string& sql) {
  if (!sesion_)
    throw HostError("Operation is not allowed when the object is closed.", ErrorNumber::AutomationFailure,
                    3704);
  if (sql.empty()) throw HostError("La instrucción está vacía.");
  if (traza_.Activa()) traza_.Anota(Suceso::Sentencia, sql);
  return sesion_->sentencia;
}

std::shared_ptr<Recordset> BaseDatosOdbc::Abre(const std::string& sql, Resultado resultado) {
  auto filas = std::make_shared<RecordsetMemoria>(std::move(resultado));
  filas->PonOrigen(sql, std::static_pointer_cast<BaseDatos>(shared_from_this()));
  return filas;
}

ObjectPtr BaseDatosOdbc::Execute(const std::string& sql, Value& tocadas, const Value& /*opciones*/) {
  std::int64_t filas = 0;
  Resultado resultado = Prepara(sql).Lee(sql, &filas);
  tocadas = static_cast<std::int32_t>(filas);
  return Abre(sql, std::move(resultado));
}

std::string BaseDatosOdbc::ConnectionString() {
  CadenaOdbc visible(cadena_);
  visible.Quita("PWD");
  visible.Quita("PASSWORD");
  return visible.Texto();
}

const MemberTable* BaseDatosOdbc::Members() const {
  using B = BaseDatosOdbc;
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

std::shared_ptr<BaseDatos> BaseDatos::Abre(const std::string& cadena, const Traza& traza) {
  return std::make_shared<BaseDatosOdbc>(cadena, traza);
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
  base_.Ejecuta("COMMIT");
  abierta_ = false;
}

}  // namespace zuvi::host
