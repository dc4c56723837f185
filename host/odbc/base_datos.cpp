#include "host/odbc/base_datos.h"

#include <chrono>
#include <optional>

#include "base/members.h"
#include "host/odbc/compuerta.h"
#include "host/odbc/odbc_cadena.h"
#include "host/odbc/odbc_enlace.h"
#include "host/odbc/odbc_sentencia.h"
#include "host/odbc/perdida.h"
#include "host/odbc/recordset_memoria.h"

namespace zuvi::host {
namespace {

using Reloj = std::chrono::steady_clock;

/// A connection that nobody used for so long is tried before something is written by it: servers and
/// networks cut idle ones.
constexpr auto kOciosa = std::chrono::seconds(5);
/// A loss noticed within this time is a cut, not a server that does not answer.
constexpr auto kCorte = std::chrono::seconds(1);

/// What is open while the connection is: the statement goes before its connection does.
struct Sesion {
  explicit Sesion(const std::string& cadena)
      : enlace(cadena, LimitesDelEntorno()),
        sentencia(enlace.Get(), enlace.TraeMotor(), enlace.TraeForma()) {}
  /// Forgets both without touching them again.
  void Abandona() {
    sentencia.Abandona();
    enlace.Abandona();
  }
  EnlaceOdbc enlace;
  Sentencia sentencia;
};

class BaseDatosOdbc final : public BaseDatos {
 public:
  BaseDatosOdbc(const std::string& cadena, const Traza& traza)
      : cadena_(cadena), traza_(traza), sesion_(std::in_place, cadena), motor_(sesion_->enlace.TraeMotor()) {}

  Motor TraeMotor() const override { return motor_; }
  std::string Archivo() const override { return sesion_ ? sesion_->enlace.Archivo() : std::string(); }
  std::shared_ptr<Recordset> Consulta(const std::string& sql) override {
    return Abre(sql, Corre(sql, Revisada(sql), [&](Sentencia& s) { return s.Lee(sql); }));
  }
  std::int64_t Ejecuta(const std::string& sql) override {
    return Corre(sql, Revisada(sql), [&](Sentencia& s) { return s.Corre(sql); });
  }
  void EjecutaEsquema(const std::string& sql) override {
    Corre(sql, Genero::Escritura, [&](Sentencia& s) { return s.Corre(sql); });
  }
  void Cierra() override {
    cerrada_ = true;
    sesion_.reset();
  }
  void SoloLectura() override {
    solo_lectura_ = true;
    if (sesion_) sesion_->enlace.SoloLectura();
  }
  void AlReabrir(std::function<void()> comprobacion) override { comprobacion_ = std::move(comprobacion); }
  bool SePerdio() const override { return se_perdio_; }
  void OlvidaPerdida() override;

  // As automation clients see it.
  ObjectPtr Execute(const std::string& sql, Value& tocadas, const Value& opciones);
  std::int32_t State() { return cerrada_ ? 0 : 1; }
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
  enum class Estado { Ninguna, Abierta, Perdida };

  Genero Revisada(const std::string& sql) const {
    if (solo_lectura_) ExigeSoloLee(sql);
    return Revisa(motor_, sql);
  }
  /// Runs `cuerpo` on the one statement handle, with all that a lost connection asks for.
  template <class Cuerpo>
  auto Corre(const std::string& sql, Genero genero, Cuerpo cuerpo)
      -> decltype(cuerpo(std::declval<Sentencia&>()));
  void Anuncia(const std::string& sql) const;
  /// The handle for a statement, of a connection that is opened again when it was lost.
  Sentencia& Lista(Genero genero);
  void Reabre();
  /// Finds out that the database is gone while nothing has been written yet.
  void AntesDeEscribir();
  void AnotaFin(Genero genero);
  /// Lets go of a lost connection.
  void Abandona();
  /// After the failure of a statement that ran since `inicio`: returns when the statement may run again,
  /// throws else.
  void Atiende(const HostError& error, Genero genero, Reloj::time_point inicio, bool repetida);
  std::shared_ptr<Recordset> Abre(const std::string& sql, Resultado resultado);

  std::string cadena_;
  const Traza& traza_;
  std::optional<Sesion> sesion_;
  Motor motor_;
  bool cerrada_ = false;
  bool solo_lectura_ = false;
  bool se_perdio_ = false;
  bool reabriendo_ = false;
  Estado transaccion_ = Estado::Ninguna;
  Reloj::time_point ultimo_uso_ = Reloj::now();
  /// Until then a failed attempt to connect is not made again, but answered by `fallo_`: an attempt that took
  /// long must not be waited for by every statement of a long operation.
  Reloj::time_point siguiente_intento_{};
  std::string fallo_;
  std::function<void()> comprobacion_;
};

template <class Cuerpo>
auto BaseDatosOdbc::Corre(const std::string& sql, Genero genero, Cuerpo cuerpo)
    -> decltype(cuerpo(std::declval<Sentencia&>())) {
  Anuncia(sql);
  if (!sesion_ && genero == Genero::Reversion) {
    // The server has undone it when the connection went.
    transaccion_ = Estado::Ninguna;
    return {};
  }
  for (bool repetida = false;; repetida = true) {
    Sentencia& sentencia = Lista(genero);
    const auto inicio = Reloj::now();
    try {
      auto resultado = cuerpo(sentencia);
      AnotaFin(genero);
      return resultado;
    } catch (const HostError& error) {
      Atiende(error, genero, inicio, repetida);
    }
  }
}

void BaseDatosOdbc::Anuncia(const std::string& sql) const {
  if (cerrada_)
    throw HostError("Operation is not allowed when the object is closed.", ErrorNumber::AutomationFailure,
                    3704);
  if (sql.empty()) throw HostError("La instrucción está vacía.");
  if (traza_.Activa()) traza_.Anota(Suceso::Sentencia, sql);
}

Sentencia& BaseDatosOdbc::Lista(Genero genero) {
  if (transaccion_ == Estado::Perdida) {
    if (genero == Genero::Confirmacion) transaccion_ = Estado::Ninguna;
    throw ConexionPerdida(
        "La transacción se perdió con la conexión y se deshizo entera; no se guardó nada de ella.");
  }
  if (!sesion_ && genero == Genero::Confirmacion)
    throw ConexionPerdida("No hay transacción que confirmar: se perdió con la conexión.");
  if (!sesion_)
    Reabre();
  else if (transaccion_ == Estado::Ninguna && (genero == Genero::Escritura || genero == Genero::Inicio))
    AntesDeEscribir();
  return sesion_->sentencia;
}

void BaseDatosOdbc::AntesDeEscribir() {
  if (motor_ == Motor::Sqlite) return sesion_->enlace.ExigeArchivo();
  if (Reloj::now() - ultimo_uso_ <= kOciosa) return;
  try {
    sesion_->sentencia.Corre("SET @vive = 1");
  } catch (const HostError& error) {
    if (!EsPerdida(motor_, error)) throw;
    Abandona();
    Reabre();
  }
}

void BaseDatosOdbc::Reabre() {
  const auto inicio = Reloj::now();
  if (reabriendo_ || inicio < siguiente_intento_) throw ConexionPerdida(fallo_);
  const std::shared_ptr<void> al_salir(nullptr, [this](void*) { reabriendo_ = false; });
  reabriendo_ = true;
  try {
    sesion_.emplace(cadena_);
    if (solo_lectura_) sesion_->enlace.SoloLectura();
    if (comprobacion_) comprobacion_();
    fallo_.clear();
  } catch (const HostError& error) {
    if (sesion_ && EsPerdida(motor_, error)) sesion_->Abandona();
    sesion_.reset();
    se_perdio_ = true;
    fallo_ = error.what();
    siguiente_intento_ = Reloj::now() + (Reloj::now() - inicio);
    throw ConexionPerdida(fallo_, error.NativeCode());
  }
}

void BaseDatosOdbc::AnotaFin(Genero genero) {
  if (motor_ == Motor::MariaDb) ultimo_uso_ = Reloj::now();
  if (genero == Genero::Inicio)
    transaccion_ = Estado::Abierta;
  else if (genero == Genero::Confirmacion || genero == Genero::Reversion)
    transaccion_ = Estado::Ninguna;
}

void BaseDatosOdbc::Abandona() {
  sesion_->Abandona();
  sesion_.reset();
}

void BaseDatosOdbc::Atiende(const HostError& error, Genero genero, Reloj::time_point inicio, bool repetida) {
  if (!EsPerdida(motor_, error)) throw Explicado(motor_, error);
  // Within the check after a reopening it has been let go of already.
  if (sesion_) Abandona();
  const auto tardo = Reloj::now() - inicio;
  const bool dentro = transaccion_ == Estado::Abierta;
  if (!dentro && !repetida && !reabriendo_ && tardo < kCorte &&
      (genero == Genero::Lectura || genero == Genero::Inicio))
    return;

  std::string texto = tardo < kCorte ? "Se perdió la conexión con el servidor de la base de datos."
                                     : "El servidor de la base de datos dejó de responder.";
  bool en_duda = false;
  // What was healed unnoticed does not count: the work goes on.
  se_perdio_ = true;
  transaccion_ = Estado::Ninguna;
  if (genero == Genero::Confirmacion) {
    en_duda = true;
    texto += " No se sabe si lo último quedó guardado; revíselo antes de repetirlo.";
  } else if (dentro && genero != Genero::Reversion) {
    transaccion_ = Estado::Perdida;
    texto += " Lo que se estaba guardando se deshizo entero.";
  } else if (genero == Genero::Escritura) {
    en_duda = true;
    texto += " No se sabe si la última instrucción quedó hecha; revíselo antes de repetirla.";
  } else {
    texto += " La consulta no terminó.";
  }
  throw ConexionPerdida(
      texto + " La conexión se abre de nuevo con lo siguiente que haga." + EntreParentesis(error),
      error.NativeCode(), en_duda);
}

void BaseDatosOdbc::OlvidaPerdida() {
  se_perdio_ = false;
  siguiente_intento_ = {};
}

std::shared_ptr<Recordset> BaseDatosOdbc::Abre(const std::string& sql, Resultado resultado) {
  auto filas = std::make_shared<RecordsetMemoria>(std::move(resultado));
  filas->PonOrigen(sql, std::static_pointer_cast<BaseDatos>(shared_from_this()));
  return filas;
}

ObjectPtr BaseDatosOdbc::Execute(const std::string& sql, Value& tocadas, const Value& /*opciones*/) {
  std::int64_t filas = 0;
  Resultado resultado = Corre(sql, Revisada(sql), [&](Sentencia& s) { return s.Lee(sql, &filas); });
  tocadas = static_cast<std::int32_t>(filas);
  return Abre(sql, std::move(resultado));
}

std::string BaseDatosOdbc::ConnectionString() { return SinClave(cadena_); }

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
  // An unanswered one leaves nothing to undo; a refused one does.
  base_.Ejecuta("COMMIT");
  abierta_ = false;
}

}  // namespace zuvi::host
