#include "host/odbc/memory_recordset.h"

#include "base/text.h"
#include "host/odbc/recordset_fields.h"
#include "services/by_name.h"

namespace zuvi::host {
namespace {

// ADO's own codes and texts, which scripts look at.
constexpr std::int32_t kNoRow = 3021;
constexpr std::int32_t kUnknownField = 3265;
constexpr std::int32_t kClosed = 3704;
constexpr std::int32_t kOpen = 3705;

[[noreturn]] void Fail(std::int32_t code, const char* text) {
  throw HostError(text, ErrorNumber::AutomationFailure, code);
}

[[noreturn]] void FailWithoutRow() {
  Fail(kNoRow,
       "Either BOF or EOF is True, or the current record has been deleted. Requested operation requires a "
       "current record.");
}

}  // namespace

void MemoryRecordset::Fill(ResultSet result) {
  columns_ = std::move(result.columns);
  cells_ = std::move(result.cells);
  const std::size_t width = columns_ ? columns_->size() : 0;
  row_count_ = width == 0 ? 0 : static_cast<std::ptrdiff_t>(cells_.size() / width);
  row_ = 0;
}

void MemoryRecordset::RequireOpen() const {
  if (!columns_) Fail(kClosed, "Operation is not allowed when the object is closed.");
}

void MemoryRecordset::RequireRow() const {
  RequireOpen();
  if (row_ < 0 || row_ >= row_count_) FailWithoutRow();
}

bool MemoryRecordset::Eof() {
  RequireOpen();
  return row_ >= row_count_;
}

bool MemoryRecordset::Bof() {
  RequireOpen();
  return row_ < 0 || row_count_ == 0;
}

void MemoryRecordset::MoveNext() {
  if (Eof()) FailWithoutRow();
  ++row_;
}

void MemoryRecordset::MovePrevious() {
  if (Bof()) FailWithoutRow();
  --row_;
}

void MemoryRecordset::MoveFirst() {
  RequireOpen();
  if (row_count_ == 0) FailWithoutRow();
  row_ = 0;
}

void MemoryRecordset::MoveLast() {
  RequireOpen();
  if (row_count_ == 0) FailWithoutRow();
  row_ = row_count_ - 1;
}

std::int32_t MemoryRecordset::RecordCount() {
  RequireOpen();
  return static_cast<std::int32_t>(row_count_);
}

Value MemoryRecordset::Campo(std::int32_t ordinal) { return Current(Ordinal(Value(ordinal))); }

const Value& MemoryRecordset::Current(std::size_t column) {
  RequireRow();
  return cells_[static_cast<std::size_t>(row_) * columns_->size() + column];
}

std::size_t MemoryRecordset::Ordinal(std::string_view name) {
  const Columns& columns = GetColumns();
  for (std::size_t i = 0; i < columns.size(); ++i)
    if (EqualsIgnoringCase(columns[i].name, name)) return i;
  Fail(kUnknownField,
       "Item cannot be found in the collection corresponding to the requested name or ordinal.");
}

std::size_t MemoryRecordset::Ordinal(const Value& index) {
  if (const auto* name = std::get_if<std::string>(&index.Get())) return Ordinal(std::string_view(*name));
  const std::int32_t number = ToInt32(index);
  const std::size_t count = GetColumns().size();
  if (number < 0 || static_cast<std::size_t>(number) >= count) return Ordinal(std::string_view());
  return static_cast<std::size_t>(number);
}

const Columns& MemoryRecordset::GetColumns() {
  RequireOpen();
  return *columns_;
}

ObjectPtr MemoryRecordset::Fields(const Value& index) {
  auto self = std::static_pointer_cast<MemoryRecordset>(shared_from_this());
  if (index.IsEmpty()) return std::make_shared<FieldCollection>(std::move(self));
  const std::size_t column = Ordinal(index);
  return std::make_shared<LiveField>(std::move(self), column);
}

void MemoryRecordset::Open(const std::string& source, const std::shared_ptr<Conexion>& connection,
                           std::int32_t cursor_type, std::int32_t lock_type, std::int32_t /*options*/) {
  if (columns_) Fail(kOpen, "Operation is not allowed when the object is open.");
  if (!connection) throw HostError(ErrorNumber::ObjectNotSet);
  auto database = std::dynamic_pointer_cast<BaseDatos>(connection);
  if (!database) throw HostError(ErrorNumber::TypeMismatch);
  if (cursor_type >= 0) cursor_type_ = cursor_type;
  if (lock_type >= 0) lock_type_ = lock_type;
  const auto opened = std::static_pointer_cast<MemoryRecordset>(database->Consulta(source));
  Fill({opened->columns_, std::move(opened->cells_)});
  SetOrigin(source, std::move(database));
}

void MemoryRecordset::OpenByName(const Value& source, const Value& connection, const Value& cursor_type,
                                 const Value& lock_type, const Value& options) {
  const auto number = [](const Value& v) { return v.IsEmpty() ? -1 : ToInt32(v); };
  Open(source.IsEmpty() ? source_ : ToText(source),
       connection.IsEmpty() ? connection_ : ComoOpcional<Conexion>(ToObject(connection)), number(cursor_type),
       number(lock_type), number(options));
}

void MemoryRecordset::Close() {
  RequireOpen();
  Fill({});
}

void MemoryRecordset::PonActiveConnection(const ObjectPtr& connection) {
  auto database = std::dynamic_pointer_cast<BaseDatos>(connection);
  if (connection && !database) throw HostError(ErrorNumber::TypeMismatch);
  connection_ = std::move(database);
}

void MemoryRecordset::SetOrigin(std::string source, std::shared_ptr<BaseDatos> connection) {
  source_ = std::move(source);
  connection_ = std::move(connection);
}

const MemberTable* MemoryRecordset::Members() const {
  using R = MemoryRecordset;
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
          .Method<&R::OpenByName>("Open", {"Source", "ActiveConnection", "CursorType", "LockType", "Options"},
                                  5)
          .Method<&R::Close>("Close")
          .Property<&R::State>("State")
          .Property<&R::Source, &R::PonSource>("Source")
          .Property<&R::ActiveConnection, &R::PonActiveConnection>("ActiveConnection");
  return &table;
}

std::shared_ptr<Recordset> NuevoRecordset() { return std::make_shared<MemoryRecordset>(); }

}  // namespace zuvi::host
