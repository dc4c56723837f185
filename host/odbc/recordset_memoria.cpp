#include "host/odbc/recordset_memoria.h"

#include "base/text.h"
#include "host/odbc/recordset_campos.h"
#include "services/by_name.h"

namespace zuvi::host {
namespace {

// ADO's own codes and texts, which scripts look at.
constexpr std::int32_t kSinFila = 3021;
constexpr std::int32_t kCampoDesconocido = 3265;
constexpr std::int32_t kCerrado = 3704;
constexpr std::int32_t kAbierto = 3705;

[[noreturn]] void Falla(std::int32_t codigo, const char* texto) {
  throw HostError(texto, ErrorNumber::AutomationFailure, codigo);
}

[[noreturn]] void FallaSinFila() {
  Falla(kSinFila,
        "Either BOF or EOF is True, or the current record has been deleted. Requested operation requires a "
        "current record.");
}

}  // namespace

void RecordsetMemoria::Llena(Resultado resultado) {
  columnas_ = std::move(resultado.columnas);
  celdas_ = std::move(resultado.celdas);
  const std::size_t ancho = columnas_ ? columnas_->size() : 0;
  filas_ = ancho == 0 ? 0 : static_cast<std::ptrdiff_t>(celdas_.size() / ancho);
  fila_ = 0;
}

void RecordsetMemoria::ExigeAbierto() const {
  if (!columnas_) Falla(kCerrado, "Operation is not allowed when the object is closed.");
}

void RecordsetMemoria::ExigeFila() const {
  ExigeAbierto();
  if (fila_ < 0 || fila_ >= filas_) FallaSinFila();
}

bool RecordsetMemoria::Eof() {
  ExigeAbierto();
  return fila_ >= filas_;
}

bool RecordsetMemoria::Bof() {
  ExigeAbierto();
  return fila_ < 0 || filas_ == 0;
}

void RecordsetMemoria::MoveNext() {
  if (Eof()) FallaSinFila();
  ++fila_;
}

void RecordsetMemoria::MovePrevious() {
  if (Bof()) FallaSinFila();
  --fila_;
}

void RecordsetMemoria::MoveFirst() {
  ExigeAbierto();
  if (filas_ == 0) FallaSinFila();
  fila_ = 0;
}

void RecordsetMemoria::MoveLast() {
  ExigeAbierto();
  if (filas_ == 0) FallaSinFila();
  fila_ = filas_ - 1;
}

std::int32_t RecordsetMemoria::RecordCount() {
  ExigeAbierto();
  return static_cast<std::int32_t>(filas_);
}

Value RecordsetMemoria::Campo(std::int32_t ordinal) { return Actual(Ordinal(Value(ordinal))); }

const Value& RecordsetMemoria::Actual(std::size_t columna) {
  ExigeFila();
  return celdas_[static_cast<std::size_t>(fila_) * columnas_->size() + columna];
}

std::size_t RecordsetMemoria::Ordinal(std::string_view nombre) {
  const Columnas& columnas = TraeColumnas();
  for (std::size_t i = 0; i < columnas.size(); ++i)
    if (IgualSinCaso(columnas[i].nombre, nombre)) return i;
  Falla(kCampoDesconocido,
        "Item cannot be found in the collection corresponding to the requested name or ordinal.");
}

std::size_t RecordsetMemoria::Ordinal(const Value& indice) {
  if (const auto* nombre = std::get_if<std::string>(&indice.Get())) return Ordinal(std::string_view(*nombre));
  const std::int32_t numero = AEntero32(indice);
  const std::size_t cuantas = TraeColumnas().size();
  if (numero < 0 || static_cast<std::size_t>(numero) >= cuantas) return Ordinal(std::string_view());
  return static_cast<std::size_t>(numero);
}

const Columnas& RecordsetMemoria::TraeColumnas() {
  ExigeAbierto();
  return *columnas_;
}

ObjectPtr RecordsetMemoria::Fields(const Value& indice) {
  auto yo = std::static_pointer_cast<RecordsetMemoria>(shared_from_this());
  if (indice.IsEmpty()) return std::make_shared<Campos>(std::move(yo));
  const std::size_t columna = Ordinal(indice);
  return std::make_shared<CampoVivo>(std::move(yo), columna);
}

void RecordsetMemoria::Open(const std::string& fuente, const std::shared_ptr<Conexion>& conexion,
                            std::int32_t cursor, std::int32_t bloqueo, std::int32_t /*opciones*/) {
  if (columnas_) Falla(kAbierto, "Operation is not allowed when the object is open.");
  if (!conexion) throw HostError(ErrorNumber::ObjectNotSet);
  auto base = std::dynamic_pointer_cast<BaseDatos>(conexion);
  if (!base) throw HostError(ErrorNumber::TypeMismatch);
  if (cursor >= 0) cursor_ = cursor;
  if (bloqueo >= 0) bloqueo_ = bloqueo;
  const auto leido = std::static_pointer_cast<RecordsetMemoria>(base->Consulta(fuente));
  Llena({leido->columnas_, std::move(leido->celdas_)});
  PonOrigen(fuente, std::move(base));
}

void RecordsetMemoria::AbrePorNombre(const Value& fuente, const Value& conexion, const Value& cursor,
                                     const Value& bloqueo, const Value& opciones) {
  const auto numero = [](const Value& v) { return v.IsEmpty() ? -1 : AEntero32(v); };
  Open(fuente.IsEmpty() ? fuente_ : ATexto(fuente),
       conexion.IsEmpty() ? conexion_ : ComoOpcional<Conexion>(AObjeto(conexion)), numero(cursor),
       numero(bloqueo), numero(opciones));
}

void RecordsetMemoria::Close() {
  ExigeAbierto();
  Llena({});
}

void RecordsetMemoria::PonActiveConnection(const ObjectPtr& conexion) {
  auto base = std::dynamic_pointer_cast<BaseDatos>(conexion);
  if (conexion && !base) throw HostError(ErrorNumber::TypeMismatch);
  conexion_ = std::move(base);
}

void RecordsetMemoria::PonOrigen(std::string fuente, std::shared_ptr<BaseDatos> conexion) {
  fuente_ = std::move(fuente);
  conexion_ = std::move(conexion);
}

const MemberTable* RecordsetMemoria::Members() const {
  using R = RecordsetMemoria;
  static const MemberTable table =
      MemberTable::Of<R>()
          .Method<&R::Fields>("Fields", {"Index"}, 1)
          .AsDefault()
          .Property<&R::Eof>("EOF")
          .Property<&R::Bof>("BOF")
          .Method<&R::MoveNext>("MoveNext")
          .Method<&R::MovePrevious>("MovePrevious")
          .Method<&R::MoveFirst>("MoveFirst")
          .Method<&R::MoveLast>("MoveLast")
          .Property<&R::RecordCount>("RecordCount")
          .Property<&R::CursorType, &R::PonCursorType>("CursorType")
          .Property<&R::LockType, &R::PonLockType>("LockType")
          .Property<&R::CursorLocation, &R::PonCursorLocation>("CursorLocation")
          .Method<&R::AbrePorNombre>("Open",
                                     {"Source", "ActiveConnection", "CursorType", "LockType", "Options"}, 5)
          .Method<&R::Close>("Close")
          .Property<&R::State>("State")
          .Property<&R::Source, &R::PonSource>("Source")
          .Property<&R::ActiveConnection, &R::PonActiveConnection>("ActiveConnection");
  return &table;
}

std::shared_ptr<Recordset> NuevoRecordset() { return std::make_shared<RecordsetMemoria>(); }

}  // namespace zuvi::host
