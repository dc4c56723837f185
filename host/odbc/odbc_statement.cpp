#include "host/odbc/odbc_statement.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <limits>
#include <optional>

#include "base/text.h"
#include "host/odbc/connection_lost.h"

namespace zuvi::host {
namespace {

/// Bytes of the mark that ends a text in a buffer.
std::size_t TerminatorSize(SQLSMALLINT type) {
  if (type == SQL_C_BINARY) return 0;
  return type == SQL_C_WCHAR ? sizeof(char16_t) : 1;
}

template <class T>
std::optional<T> ParsedNumber(std::string_view text) {
  T number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

template <class Integer>
bool Fits(std::int64_t number) {
  return number >= std::numeric_limits<Integer>::min() && number <= std::numeric_limits<Integer>::max();
}

/// The smallest kind that holds it, but no smaller than the column's.
Value IntegerValue(std::int64_t number, ColumnKind kind) {
  if (kind == ColumnKind::SmallInteger && Fits<std::int16_t>(number))
    return static_cast<std::int16_t>(number);
  if (Fits<std::int32_t>(number)) return static_cast<std::int32_t>(number);
  return static_cast<double>(number);
}

/// What cannot be read as the column's kind stays text, as the database holds it.
Value ValueOf(std::string_view text, ColumnKind kind) {
  switch (kind) {
    case ColumnKind::Integer:
    case ColumnKind::SmallInteger:
      if (const auto integer = ParsedNumber<std::int64_t>(text)) return IntegerValue(*integer, kind);
      // A bit field comes as the byte itself.
      if (text.size() == 1 && text[0] >= 0 && text[0] <= 1) return static_cast<std::int16_t>(text[0]);
      [[fallthrough]];
    case ColumnKind::Real:
      if (const auto real = ParsedNumber<double>(text)) return *real;
      return text;
    case ColumnKind::Date:
      try {
        return Date::FromText(text);
      } catch (const HostError&) {
        return text;
      }
    case ColumnKind::Text:
    case ColumnKind::LongText:
      break;
  }
  return text;
}

/// The columns that a shape names: of each its kind, the length of its name in bytes, and the name as the
/// driver gave it.
Columns ColumnsOf(std::string_view shape, bool wide) {
  Columns columns;
  while (!shape.empty()) {
    Column column;
    column.kind = static_cast<ColumnKind>(shape[0] - '0');
    std::size_t bytes = 0;
    std::memcpy(&bytes, shape.data() + 1, sizeof bytes);
    const std::string_view name = shape.substr(1 + sizeof bytes, bytes);
    if (wide) {
      std::u16string copy(bytes / sizeof(char16_t), u' ');
      std::memcpy(copy.data(), name.data(), bytes);
      column.name = Utf8(copy);
    } else {
      column.name = name;
    }
    columns.push_back(std::move(column));
    shape.remove_prefix(1 + sizeof bytes + bytes);
  }
  return columns;
}

}  // namespace

/// Closes the cursor whichever way a statement ends, but for a lost connection; the bound columns stay.
class Statement::CursorGuard {
 public:
  explicit CursorGuard(Statement& statement) : statement_(statement) {}
  CursorGuard(const CursorGuard&) = delete;
  CursorGuard& operator=(const CursorGuard&) = delete;
  ~CursorGuard() {
    if (!statement_.lost_) SQLFreeStmt(statement_.handle_.Get(), SQL_CLOSE);
  }

 private:
  Statement& statement_;
};

Statement::Statement(SQLHANDLE connection, Engine engine, Encoding encoding)
    : engine_(engine), encoding_(encoding) {
  host::Check(SQLAllocHandle(SQL_HANDLE_STMT, connection, handle_.Out()), SQL_HANDLE_DBC, connection,
              encoding);
}

Statement::~Statement() {
  if (lost_) handle_.Abandon();
}

void Statement::Fail() const {
  HostError error = Diagnostics(SQL_HANDLE_STMT, handle_.Get(), encoding_);
  lost_ = IsConnectionLoss(engine_, error);
  throw error;
}

std::int64_t Statement::Run(std::string_view sql) {
  const CursorGuard guard(*this);
  return Execute(sql, false) ? RowsTouched() : 0;
}

ResultSet Statement::Query(std::string_view sql, std::int64_t* touched) {
  const CursorGuard guard(*this);
  const bool any = Execute(sql, engine_ == Engine::MariaDb);
  SQLSMALLINT count = 0;
  Check(SQLNumResultCols(handle_.Get(), &count));
  if (touched) *touched = any && count == 0 ? RowsTouched() : 0;
  ResultSet result;
  if (count == 0) return result;

  result.columns = Describe(static_cast<std::size_t>(count));
  const Columns& columns = *result.columns;
  Bind(columns);
  result.cells.reserve(columns.size());
  for (;;) {
    const SQLRETURN r = SQLFetch(handle_.Get());
    Check(r);
    if (r == SQL_NO_DATA) return result;
    for (std::size_t i = 0; i < columns.size(); ++i) result.cells.push_back(Cell(i, columns[i].kind));
  }
}

bool Statement::Execute(std::string_view sql, bool prepare) {
  // Sent in one go, a query whose reply breaks off within the description of its columns makes MariaDB's
  // driver crash, and the program with it; prepared first, it is an error like others. The price is a round
  // trip.
  constexpr std::int32_t kCannotPrepare = 1295;
  SQLRETURN result;
  if (encoding_ == Encoding::Utf16) {
    const std::u16string wide = Utf16(sql);
    const auto length = static_cast<SQLINTEGER>(wide.size());
    result = prepare ? SQLPrepareW(handle_.Get(), Wide(wide), length)
                     : SQLExecDirectW(handle_.Get(), Wide(wide), length);
  } else {
    // What is broken in the text becomes U+FFFD in this form as well.
    const std::string clean = IsAscii(sql) ? std::string() : Utf8(Utf16(sql));
    const std::string_view text = clean.empty() ? sql : std::string_view(clean);
    const auto length = static_cast<SQLINTEGER>(text.size());
    result = prepare ? SQLPrepare(handle_.Get(), Narrow(text), length)
                     : SQLExecDirect(handle_.Get(), Narrow(text), length);
  }
  if (prepare) {
    if (!SQL_SUCCEEDED(result)) {
      const HostError error = Diagnostics(SQL_HANDLE_STMT, handle_.Get(), encoding_);
      // Nothing was run by that.
      if (error.NativeCode() == kCannotPrepare) return Execute(sql, false);
      Fail();
    }
    result = SQLExecute(handle_.Get());
  }
  Check(result);
  return result != SQL_NO_DATA;
}

std::int64_t Statement::RowsTouched() const {
  SQLLEN rows = 0;
  Check(SQLRowCount(handle_.Get(), &rows));
  return std::max<std::int64_t>(rows, 0);
}

std::shared_ptr<const Columns> Statement::Describe(std::size_t count) {
  std::array<char, 512> name{};
  const bool wide = encoding_ == Encoding::Utf16;
  shape_.clear();
  for (std::size_t i = 0; i < count; ++i) {
    const auto number = static_cast<SQLUSMALLINT>(i + 1);
    SQLSMALLINT length = 0, type = 0, decimals = 0, nullable = 0;
    SQLULEN size = 0;
    if (wide) {
      Check(SQLDescribeColW(handle_.Get(), number, reinterpret_cast<SQLWCHAR*>(name.data()),
                            static_cast<SQLSMALLINT>(name.size() / sizeof(char16_t)), &length, &type, &size,
                            &decimals, &nullable));
      length = static_cast<SQLSMALLINT>(length * SQLSMALLINT{sizeof(char16_t)});
    } else {
      Check(SQLDescribeCol(handle_.Get(), number, reinterpret_cast<SQLCHAR*>(name.data()),
                           static_cast<SQLSMALLINT>(name.size()), &length, &type, &size, &decimals,
                           &nullable));
    }
    const std::size_t bytes = std::min(static_cast<std::size_t>(std::max<SQLSMALLINT>(length, 0)),
                                       name.size() - (wide ? sizeof(char16_t) : 1));
    shape_ += static_cast<char>('0' + static_cast<int>(KindOf(number, type)));
    shape_.append(reinterpret_cast<const char*>(&bytes), sizeof bytes);
    shape_.append(name.data(), bytes);
  }
  const auto known = shapes_.find(shape_);
  if (known != shapes_.end()) return known->second;

  auto columns = std::make_shared<Columns>(ColumnsOf(shape_, wide));
  if (shapes_.size() >= 256) shapes_.clear();
  shapes_.emplace(shape_, columns);
  return columns;
}

ColumnKind Statement::KindOf(SQLUSMALLINT column, SQLSMALLINT type) const {
  switch (type) {
    case SQL_BIT:
    case SQL_TINYINT:
    case SQL_SMALLINT:
      return ColumnKind::SmallInteger;
    case SQL_INTEGER:
    case SQL_BIGINT:
      return ColumnKind::Integer;
    case SQL_DECIMAL:
    case SQL_NUMERIC:
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return ColumnKind::Real;
    case SQL_TYPE_DATE:
    case SQL_TYPE_TIMESTAMP:
      return ColumnKind::Date;
    case SQL_LONGVARCHAR:
    case SQL_WLONGVARCHAR:
      return ColumnKind::LongText;
    default:
      break;
  }
  if (engine_ == Engine::Sqlite) {
    // Its driver takes DECIMAL for a text.
    std::array<SQLCHAR, 16> declared{};
    SQLSMALLINT bytes = 0;
    Check(SQLColAttribute(handle_.Get(), column, SQL_DESC_TYPE_NAME, declared.data(),
                          static_cast<SQLSMALLINT>(declared.size()), &bytes, nullptr));
    if (EqualsIgnoringCase(std::string_view(reinterpret_cast<const char*>(declared.data())).substr(0, 3),
                           "dec"))
      return ColumnKind::Real;
  }
  return ColumnKind::Text;
}

void Statement::Bind(const Columns& columns) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (i == bound_.size()) bound_.emplace_back();
    Buffer& buffer = bound_[i];
    const SQLSMALLINT type = CType(columns[i].kind);
    if (buffer.type == type) continue;
    buffer.type = 0;
    Check(SQLBindCol(handle_.Get(), static_cast<SQLUSMALLINT>(i + 1), type, buffer.bytes.data(),
                     static_cast<SQLLEN>(buffer.bytes.size()), &buffer.length));
    buffer.type = type;
  }
}

SQLSMALLINT Statement::CType(ColumnKind kind) const {
  // Of MariaDB's texts the bytes are taken as they come, which are UTF-8: as UTF-16 its driver converts them
  // slowly, and fails on a text that is cut between surrogates.
  if (engine_ == Engine::MariaDb)
    return kind == ColumnKind::Text || kind == ColumnKind::LongText ? SQL_C_BINARY : SQL_C_CHAR;
  return encoding_ == Encoding::Utf16 ? SQL_C_WCHAR : SQL_C_CHAR;
}

Value Statement::Cell(std::size_t column, ColumnKind kind) {
  const Buffer& buffer = bound_[column];
  if (buffer.length == SQL_NULL_DATA) return Null{};
  const auto count = static_cast<std::size_t>(buffer.length);
  if (buffer.length < 0 || count > buffer.bytes.size() - TerminatorSize(buffer.type))
    return LongCell(column, kind);
  return ValueOf(AsUtf8(buffer.type, {buffer.bytes.data(), count}), kind);
}

Value Statement::LongCell(std::size_t column, ColumnKind kind) {
  const SQLSMALLINT type = bound_[column].type;
  std::string chunk(std::size_t{64} * 1024, '\0');
  std::string whole;
  for (;;) {
    SQLLEN length = 0;
    const SQLRETURN r = SQLGetData(handle_.Get(), static_cast<SQLUSMALLINT>(column + 1), type, chunk.data(),
                                   static_cast<SQLLEN>(chunk.size()), &length);
    Check(r);
    if (r == SQL_NO_DATA) break;
    const std::size_t full = chunk.size() - TerminatorSize(type);
    whole.append(chunk, 0, length < 0 ? full : std::min(static_cast<std::size_t>(length), full));
    if (r == SQL_SUCCESS) break;
  }
  return ValueOf(AsUtf8(type, whole), kind);
}

std::string_view Statement::AsUtf8(SQLSMALLINT type, std::string_view bytes) {
  if (type != SQL_C_WCHAR) return bytes;
  return text_ = Utf8({reinterpret_cast<const char16_t*>(bytes.data()), bytes.size() / sizeof(char16_t)});
}

}  // namespace zuvi::host
