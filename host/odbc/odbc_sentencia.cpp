#include "host/odbc/odbc_sentencia.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <optional>

#include "base/text.h"
#include "host/odbc/perdida.h"

namespace zuvi::host {
namespace {

/// Bytes of the mark that ends a text in a buffer.
std::size_t FinDe(SQLSMALLINT tipo) {
  if (tipo == SQL_C_BINARY) return 0;
  return tipo == SQL_C_WCHAR ? sizeof(char16_t) : 1;
}

template <class Numero>
std::optional<Numero> NumeroEntero(std::string_view texto) {
  Numero numero{};
  const auto [fin, error] = std::from_chars(texto.data(), texto.data() + texto.size(), numero);
  if (error != std::errc() || fin != texto.data() + texto.size()) return std::nullopt;
  return numero;
}

template <class Entero>
bool Cabe(std::int64_t numero) {
  return numero >= std::numeric_limits<Entero>::min() && numero <= std::numeric_limits<Entero>::max();
}

/// The smallest kind that holds it, but no smaller than the column's.
Value ValorEntero(std::int64_t numero, Clase clase) {
  if (clase == Clase::EnteroCorto && Cabe<std::int16_t>(numero)) return static_cast<std::int16_t>(numero);
  if (Cabe<std::int32_t>(numero)) return static_cast<std::int32_t>(numero);
  return static_cast<double>(numero);
}

/// What cannot be read as the column's kind stays text, as the database holds it.
Value ValorDe(std::string_view texto, Clase clase) {
  switch (clase) {
    case Clase::Entero:
    case Clase::EnteroCorto:
      if (const auto entero = NumeroEntero<std::int64_t>(texto)) return ValorEntero(*entero, clase);
      // A bit field comes as the byte itself.
      if (texto.size() == 1 && texto[0] >= 0 && texto[0] <= 1) return static_cast<std::int16_t>(texto[0]);
      [[fallthrough]];
    case Clase::Real:
      if (const auto real = NumeroEntero<double>(texto)) return *real;
      return texto;
    case Clase::Fecha:
      try {
        return Fecha::DesdeTexto(texto);
      } catch (const HostError&) {
        return texto;
      }
    case Clase::Texto:
    case Clase::TextoLargo:
      break;
  }
  return texto;
}

}  // namespace

/// Closes the cursor whichever way a statement ends, but for a lost connection; the bound columns stay.
class Sentencia::Cierre {
 public:
  explicit Cierre(Sentencia& sentencia) : sentencia_(sentencia) {}
  Cierre(const Cierre&) = delete;
  Cierre& operator=(const Cierre&) = delete;
  ~Cierre() {
    if (!sentencia_.perdida_) SQLFreeStmt(sentencia_.handle_.Get(), SQL_CLOSE);
  }

 private:
  Sentencia& sentencia_;
};

Sentencia::Sentencia(SQLHANDLE enlace, Motor motor, Forma forma) : motor_(motor), forma_(forma) {
  host::Exige(SQLAllocHandle(SQL_HANDLE_STMT, enlace, handle_.Out()), SQL_HANDLE_DBC, enlace, forma);
}

Sentencia::~Sentencia() {
  if (perdida_) handle_.Abandona();
}

void Sentencia::Falla() const {
  HostError error = Diagnostico(SQL_HANDLE_STMT, handle_.Get(), forma_);
  perdida_ = EsPerdida(motor_, error);
  throw error;
}

std::int64_t Sentencia::Corre(std::string_view sql) {
  const Cierre cierre(*this);
  return Ejecuta(sql, false) ? Tocadas() : 0;
}

Resultado Sentencia::Lee(std::string_view sql, std::int64_t* tocadas) {
  const Cierre cierre(*this);
  const bool alguna = Ejecuta(sql, motor_ == Motor::MariaDb);
  SQLSMALLINT cuantas = 0;
  Exige(SQLNumResultCols(handle_.Get(), &cuantas));
  if (tocadas) *tocadas = alguna && cuantas == 0 ? Tocadas() : 0;
  Resultado resultado;
  if (cuantas == 0) return resultado;

  resultado.columnas = Describe(static_cast<std::size_t>(cuantas));
  const Columnas& columnas = *resultado.columnas;
  Liga(columnas);
  resultado.celdas.reserve(columnas.size());
  for (;;) {
    const SQLRETURN r = SQLFetch(handle_.Get());
    Exige(r);
    if (r == SQL_NO_DATA) return resultado;
    for (std::size_t i = 0; i < columnas.size(); ++i) resultado.celdas.push_back(Celda(i, columnas[i].clase));
  }
}

bool Sentencia::Ejecuta(std::string_view sql, bool por_partes) {
  // Sent in one go, a query whose reply breaks off within the description of its columns makes MariaDB's
  // driver crash, and the program with it; prepared first, it is an error like others. The price is a round
  // trip.
  constexpr std::int32_t kNoSePrepara = 1295;
  SQLRETURN resultado;
  if (forma_ == Forma::Utf16) {
    const std::u16string ancha = Utf16(sql);
    const auto largo = static_cast<SQLINTEGER>(ancha.size());
    resultado = por_partes ? SQLPrepareW(handle_.Get(), Ancho(ancha), largo)
                           : SQLExecDirectW(handle_.Get(), Ancho(ancha), largo);
  } else {
    // What is broken in the text becomes U+FFFD in this form as well.
    const std::string limpia = EsAscii(sql) ? std::string() : Utf8(Utf16(sql));
    const std::string_view texto = limpia.empty() ? sql : std::string_view(limpia);
    const auto largo = static_cast<SQLINTEGER>(texto.size());
    resultado = por_partes ? SQLPrepare(handle_.Get(), Angosto(texto), largo)
                           : SQLExecDirect(handle_.Get(), Angosto(texto), largo);
  }
  if (por_partes) {
    if (!SQL_SUCCEEDED(resultado)) {
      const HostError error = Diagnostico(SQL_HANDLE_STMT, handle_.Get(), forma_);
      // Nothing was run by that.
      if (error.NativeCode() == kNoSePrepara) return Ejecuta(sql, false);
      Falla();
    }
    resultado = SQLExecute(handle_.Get());
  }
  Exige(resultado);
  return resultado != SQL_NO_DATA;
}

std::int64_t Sentencia::Tocadas() const {
  SQLLEN filas = 0;
  Exige(SQLRowCount(handle_.Get(), &filas));
  return std::max<std::int64_t>(filas, 0);
}

std::shared_ptr<const Columnas> Sentencia::Describe(std::size_t cuantas) {
  std::array<char, 512> nombre{};
  const bool ancho = forma_ == Forma::Utf16;
  figura_.clear();
  for (std::size_t i = 0; i < cuantas; ++i) {
    const auto numero = static_cast<SQLUSMALLINT>(i + 1);
    SQLSMALLINT largo = 0, tipo = 0, decimales = 0, nulos = 0;
    SQLULEN medida = 0;
    if (ancho) {
      Exige(SQLDescribeColW(handle_.Get(), numero, reinterpret_cast<SQLWCHAR*>(nombre.data()),
                            static_cast<SQLSMALLINT>(nombre.size() / sizeof(char16_t)), &largo, &tipo,
                            &medida, &decimales, &nulos));
      largo = static_cast<SQLSMALLINT>(largo * SQLSMALLINT{sizeof(char16_t)});
    } else {
      Exige(SQLDescribeCol(handle_.Get(), numero, reinterpret_cast<SQLCHAR*>(nombre.data()),
                           static_cast<SQLSMALLINT>(nombre.size()), &largo, &tipo, &medida, &decimales,
                           &nulos));
    }
    const std::size_t bytes = std::min(static_cast<std::size_t>(std::max<SQLSMALLINT>(largo, 0)),
                                       nombre.size() - (ancho ? sizeof(char16_t) : 1));
    figura_ += static_cast<char>('0' + static_cast<int>(ClaseDe(numero, tipo)));
    figura_.append(reinterpret_cast<const char*>(&bytes), sizeof bytes);
    figura_.append(nombre.data(), bytes);
  }
  const auto conocida = figuras_.find(figura_);
  if (conocida != figuras_.end()) return conocida->second;

  auto columnas = std::make_shared<Columnas>();
  for (std::size_t i = 0; i < figura_.size();) {
    std::size_t bytes = 0;
    Columna columna;
    columna.clase = static_cast<Clase>(figura_[i] - '0');
    std::copy_n(figura_.data() + i + 1, sizeof bytes, reinterpret_cast<char*>(&bytes));
    const char* texto = figura_.data() + i + 1 + sizeof bytes;
    if (ancho) {
      std::u16string copia(bytes / sizeof(char16_t), u' ');
      std::copy_n(texto, bytes, reinterpret_cast<char*>(copia.data()));
      columna.nombre = Utf8(copia);
    } else {
      columna.nombre.assign(texto, bytes);
    }
    columnas->push_back(std::move(columna));
    i += 1 + sizeof bytes + bytes;
  }
  if (figuras_.size() >= 256) figuras_.clear();
  figuras_.emplace(figura_, columnas);
  return columnas;
}

Clase Sentencia::ClaseDe(SQLUSMALLINT columna, SQLSMALLINT tipo) const {
  switch (tipo) {
    case SQL_BIT:
    case SQL_TINYINT:
    case SQL_SMALLINT:
      return Clase::EnteroCorto;
    case SQL_INTEGER:
    case SQL_BIGINT:
      return Clase::Entero;
    case SQL_DECIMAL:
    case SQL_NUMERIC:
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return Clase::Real;
    case SQL_TYPE_DATE:
    case SQL_TYPE_TIMESTAMP:
      return Clase::Fecha;
    case SQL_LONGVARCHAR:
    case SQL_WLONGVARCHAR:
      return Clase::TextoLargo;
    default:
      break;
  }
  if (motor_ == Motor::Sqlite) {
    // Its driver takes DECIMAL for a text.
    std::array<SQLCHAR, 16> declarado{};
    SQLSMALLINT bytes = 0;
    Exige(SQLColAttribute(handle_.Get(), columna, SQL_DESC_TYPE_NAME, declarado.data(),
                          static_cast<SQLSMALLINT>(declarado.size()), &bytes, nullptr));
    if (IgualSinCaso(std::string_view(reinterpret_cast<const char*>(declarado.data())).substr(0, 3), "dec"))
      return Clase::Real;
  }
  return Clase::Texto;
}

void Sentencia::Liga(const Columnas& columnas) {
  for (std::size_t i = 0; i < columnas.size(); ++i) {
    if (i == ligadas_.size()) ligadas_.emplace_back();
    Bufer& bufer = ligadas_[i];
    const SQLSMALLINT tipo = TipoC(columnas[i].clase);
    if (bufer.tipo == tipo) continue;
    bufer.tipo = 0;
    Exige(SQLBindCol(handle_.Get(), static_cast<SQLUSMALLINT>(i + 1), tipo, bufer.bytes.data(),
                     static_cast<SQLLEN>(bufer.bytes.size()), &bufer.largo));
    bufer.tipo = tipo;
  }
}

SQLSMALLINT Sentencia::TipoC(Clase clase) const {
  // Of MariaDB's texts the bytes are taken as they come, which are UTF-8: as UTF-16 its driver converts them
  // slowly, and fails on a text that is cut between surrogates.
  if (motor_ == Motor::MariaDb)
    return clase == Clase::Texto || clase == Clase::TextoLargo ? SQL_C_BINARY : SQL_C_CHAR;
  return forma_ == Forma::Utf16 ? SQL_C_WCHAR : SQL_C_CHAR;
}

Value Sentencia::Celda(std::size_t columna, Clase clase) {
  const Bufer& bufer = ligadas_[columna];
  if (bufer.largo == SQL_NULL_DATA) return Null{};
  const auto cuantos = static_cast<std::size_t>(bufer.largo);
  if (bufer.largo < 0 || cuantos > bufer.bytes.size() - FinDe(bufer.tipo)) return CeldaLarga(columna, clase);
  return ValorDe(EnUtf8(bufer.tipo, {bufer.bytes.data(), cuantos}), clase);
}

Value Sentencia::CeldaLarga(std::size_t columna, Clase clase) {
  const SQLSMALLINT tipo = ligadas_[columna].tipo;
  std::string trozo(64 * 1024, '\0');
  std::string todo;
  for (;;) {
    SQLLEN largo = 0;
    const SQLRETURN r = SQLGetData(handle_.Get(), static_cast<SQLUSMALLINT>(columna + 1), tipo, trozo.data(),
                                   static_cast<SQLLEN>(trozo.size()), &largo);
    Exige(r);
    if (r == SQL_NO_DATA) break;
    const std::size_t lleno = trozo.size() - FinDe(tipo);
    todo.append(trozo, 0, largo < 0 ? lleno : std::min(static_cast<std::size_t>(largo), lleno));
    if (r == SQL_SUCCESS) break;
  }
  return ValorDe(EnUtf8(tipo, todo), clase);
}

std::string_view Sentencia::EnUtf8(SQLSMALLINT tipo, std::string_view bytes) {
  if (tipo != SQL_C_WCHAR) return bytes;
  return texto_ = Utf8({reinterpret_cast<const char16_t*>(bytes.data()), bytes.size() / sizeof(char16_t)});
}

}  // namespace zuvi::host
