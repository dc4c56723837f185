// The connection and its record sets, the same cases on every engine: SQLite in memory and in a file always,
// MariaDB when the environment variable ZUVI_MARIADB holds a connection string.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "host/odbc/base_datos.h"
#include "host/odbc/odbc_attributes.h"
#include "host/odbc/statement_gate.h"
#include "tests/support/errores.h"

namespace zuvi::host {
namespace {

using pruebas::ErrorDe;
using testing::ElementsAre;
using testing::HasSubstr;

const std::filesystem::path& Archivo() {
  static const auto archivo = std::filesystem::temp_directory_path() / "zuvi_odbc_ñandú €.db";
  return archivo;
}

std::vector<std::string> Cadenas() {
  std::vector<std::string> cadenas{"DRIVER={SQLite3};Database=:memory:",
                                   "DRIVER={SQLite3};Database=" + Archivo().string()};
  if (const char* servidor = std::getenv("ZUVI_MARIADB"); servidor && *servidor) {
    cadenas.emplace_back(servidor);
    // Accents in the string itself make it connect in UTF-16.
    cadenas.push_back(servidor + std::string(";Description=ñandú"));
  }
  return cadenas;
}

class Odbc : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    traza_.Escucha([this](Suceso, const std::string& texto) { dicho_.push_back(texto); });
    base_ = BaseDatos::Abre(GetParam(), traza_);
    base_->Ejecuta("DROP TABLE IF EXISTS odbc_t");
    base_->Ejecuta(
        "CREATE TABLE odbc_t (n INTEGER, g BIGINT, c SMALLINT, b BOOLEAN, d DOUBLE, e DECIMAL(12,4), t "
        "VARCHAR(200), "
        "x TEXT, f DATE, m DATETIME)");
  }
  void TearDown() override {
    base_->Ejecuta("DROP TABLE IF EXISTS odbc_t");
    base_.reset();
    for (const char* resto : {"", "-wal", "-shm"}) std::filesystem::remove(Archivo().string() + resto);
  }

  void Agrega(int n, const std::string& texto = "") {
    base_->Ejecuta("INSERT INTO odbc_t (n, t) VALUES (" + std::to_string(n) + ", " + Cita(texto) + ")");
  }
  std::string Cita(const Value& valor) { return Literal(base_->GetEngine(), valor); }
  Value Uno(const std::string& sql) { return base_->Consulta(sql)->Campo(0); }
  int Filas() { return ToInt32(Uno("SELECT COUNT( * ) FROM odbc_t")); }

  Traza traza_;
  std::vector<std::string> dicho_;
  std::shared_ptr<BaseDatos> base_;
};

TEST_P(Odbc, CadaTipoVuelveComoSeGuardo) {
  const Date dia = Date::FromText("2024-02-29");
  const Date momento = Date::FromText("2024-02-29 23:59:58");
  base_->Ejecuta("INSERT INTO odbc_t VALUES (" + Cita(-7) + ", 5000000000, 300, " + Cita(true) + ", " +
                 Cita(0.1) + ", " + Cita(1234.5) + ", " + Cita("a") + ", " + Cita(Null{}) + ", " +
                 LiteralFecha(base_->GetEngine(), dia) + ", " + Cita(momento) + ")");
  base_->Ejecuta("INSERT INTO odbc_t (n) VALUES (2147483647)");
  const auto filas = base_->Consulta("SELECT * FROM odbc_t ORDER BY n");
  std::vector<Value> leido;
  for (int i = 0; i < 10; ++i) leido.push_back(filas->Campo(i));
  EXPECT_EQ(leido, (std::vector<Value>{-7, 5e9, std::int16_t{300}, std::int16_t{-1}, 0.1, 1234.5, "a", Null{},
                                       dia, momento}));
  filas->MoveNext();
  EXPECT_EQ(filas->Campo("n"), Value(2147483647));
  for (int i = 1; i < 10; ++i) EXPECT_TRUE(filas->Campo(i).IsNull()) << i;
}

TEST_P(Odbc, TextosVuelvenEnterosYSinCambio) {
  for (const std::string texto :
       {"¿Ñandú? ¡º«€» 中", "pastel 🎂😀", "", "O'Brien \"x\" `y` \\' \\ % _ ? {d '1'} /* -- ;"}) {
    SCOPED_TRACE(texto);
    Agrega(1, texto);
    EXPECT_EQ(Uno("SELECT t FROM odbc_t WHERE t = " + Cita(texto)), Value(texto));
    base_->Ejecuta("DELETE FROM odbc_t");
  }
  EXPECT_EQ(Uno("SELECT HEX(" + Cita("é€😀") + ")"), Value("C3A9E282ACF09F9880"));
  EXPECT_EQ(base_->Consulta("SELECT 7 AS `ñ€`")->Campo("ñ€"), Value(7));
  // What is no text reaches the table as the replacement character, not as broken bytes.
  EXPECT_EQ(Uno("SELECT HEX('a\xF0\x9F\xC3')"), Value("61EFBFBDEFBFBDEFBFBD"));

  // Around the size of the bound cell and of one piece of a long text.
  for (const std::size_t largo : {255u, 256u, 511u, 512u, 513u, 65000u}) {
    const std::string texto = std::string(largo - 3, 'x') + "fin";
    EXPECT_EQ(Uno("SELECT " + Cita(texto)), Value(texto)) << largo;
  }
  for (const int cuantas : {127, 128, 256, 40000}) {
    std::string emojis;
    for (int i = 0; i < cuantas; ++i) emojis += "😀";
    for (const std::string& texto : {emojis, "a" + emojis})
      EXPECT_EQ(Uno("SELECT " + Cita(texto)), Value(texto)) << cuantas;
  }
}

TEST_P(Odbc, UnaSolaSentenciaPorLlamada) {
  Agrega(1);
  const std::string clave = "x'; DELETE FROM odbc_t; -- ";
  for (const std::string& sql : {"SELECT * FROM odbc_t WHERE t = '" + clave + "'",
                                 std::string("SELECT 'a;' ; /* a */\nDELETE FROM odbc_t")}) {
    EXPECT_THAT(ErrorDe([&] { base_->Consulta(sql); }).what(), HasSubstr("más de una instrucción")) << sql;
    EXPECT_THAT(ErrorDe([&] { base_->Ejecuta(sql); }).what(), HasSubstr("más de una instrucción")) << sql;
  }
  using namespace std::string_literals;
  EXPECT_THAT(ErrorDe([&] { base_->Ejecuta("DELETE FROM odbc_t\0 WHERE 1 = 0"s); }).what(),
              HasSubstr("nulo"));
  EXPECT_EQ(Filas(), 1);
}

TEST_P(Odbc, SoloLecturaLaImponeElMotor) {
  Agrega(1);
  base_->SoloLectura();
  for (const char* sql :
       {"DELETE FROM odbc_t", "UPDATE odbc_t SET n = 2", "DROP TABLE odbc_t", "COMMIT",
        "PRAGMA query_only = 0", "PRAGMA journal_mode(delete)", "PRAGMA journal_mode(DELETE) -- table_info",
        "/* SELECT */ DELETE FROM odbc_t", "SET SESSION TRANSACTION READ WRITE", "BEGIN", "VACUUM"})
    EXPECT_THAT(ErrorDe([&] { base_->Ejecuta(sql); }).what(), HasSubstr("solo lectura")) << sql;
  // These look like queries; the engine refuses them.
  for (const char* sql : {"WITH x AS (SELECT 1 AS n) DELETE FROM odbc_t",
                          "WITH x AS (SELECT 1 AS n) INSERT INTO odbc_t (n) SELECT n FROM x"})
    EXPECT_THROW(base_->Ejecuta(sql), HostError) << sql;
  EXPECT_EQ(Filas(), 1);
  EXPECT_EQ(base_->Consulta("WITH x AS (SELECT 3 AS n) SELECT n FROM x")->Campo(0), Value(3));
  base_ = BaseDatos::Abre(GetParam(), traza_);
}

TEST(Compuerta, CadaMotorConSusComillasYComentariosYSinAlcanzarArchivos) {
  const auto pasa = [](Engine motor, std::string_view sql) {
    try {
      CheckStatement(motor, sql);
      return true;
    } catch (const HostError&) {
      return false;
    }
  };
  const struct {
    const char* sql;
    bool sqlite, mariadb;
  } casos[] = {{"DELETE FROM t;;  -- fin\n /* ; */ ;", true, true},
               {R"(SELECT '\'; DELETE FROM t; -- ')", false, true},
               {R"(SELECT '\\'; DELETE FROM t; -- ')", false, false},
               {"SELECT 'a'';b', \"c;d\", `e;f`", true, true},
               {"SELECT `a\\`; DELETE FROM t", false, false},
               {"SELECT [a;b] FROM t", true, false},
               {"SELECT 1 --; DELETE", true, false},
               {"SELECT 1 --1; DELETE FROM t", true, false},
               {"SELECT 1 # ; DELETE", false, true},
               {"SELECT 1 /*! ; DELETE FROM t */", true, false},
               {"SELECT 1 /* abierto ; ", true, true},
               {"SELECT 'abierto ; ", true, true},
               // What reaches files, and what only names it.
               {"SELECT 'load_extension(1)', \"blob_export\" FROM t", true, true},
               {"SELECT load_extension, load_file FROM t", true, true},
               {"SELECT descarga_file (1), mi_load_file(1), profile(1) FROM t", true, true},
               {"SELECT 1 /* load_file(1) */", true, true},
               {"SELECT LOAD_file\n(1)", false, false},
               {"SELECT \"load_extension\"(1)", false, true},
               {"SELECT [blob_import] (1)", false, true},
               {"SELECT 1 INTO OUTFILE 'x'", false, false},
               {"SELECT outfile FROM t", true, true},
               {"/* */ ATTACH 'x' AS y", false, false},
               {"VACUUM INTO 'x'", false, false},
               {"VACUUM", true, true},
               {"LOAD DATA LOCAL INFILE 'x' INTO TABLE t", false, false},
               {"EXECUTE IMMEDIATE 'SELECT 1'", false, false},
               {"SELECT /*!50000 1 */", true, false}};
  for (const auto& caso : casos) {
    EXPECT_EQ(pasa(Engine::Sqlite, caso.sql), caso.sqlite) << caso.sql;
    EXPECT_EQ(pasa(Engine::MariaDb, caso.sql), caso.mariadb) << caso.sql;
  }
}

TEST_P(Odbc, ElErrorEsElDeLaBase) {
  const bool maria = base_->GetEngine() == Engine::MariaDb;
  const HostError error = ErrorDe([&] { base_->Consulta("SELECT * FROM odbc_no_existe"); });
  EXPECT_THAT(error.what(), testing::AllOf(HasSubstr("odbc_no_existe"), testing::Not(HasSubstr("["))));
  EXPECT_EQ(error.NativeCode(), maria ? 1146 : 1);
  EXPECT_EQ(error.SqlState(), maria ? "42S02" : "HY000");
  EXPECT_THAT(dicho_, testing::Contains("SELECT * FROM odbc_no_existe"));
  base_->Cierra();
  EXPECT_EQ(ErrorDe([&] { Filas(); }).NativeCode(), 3704);
  base_ = BaseDatos::Abre(GetParam(), traza_);
  EXPECT_THROW(BaseDatos::Abre("DRIVER={Ninguno}", traza_), HostError);
}

TEST_P(Odbc, RecordsetPorNombre) {
  for (int i = 1; i <= 3; ++i) Agrega(i, "t" + std::to_string(i));
  const auto filas = NuevoRecordset();
  const auto nativo = [](auto&& accion) { return ErrorDe(accion).NativeCode(); };
  EXPECT_EQ(filas->Call("State"), Value(0));
  EXPECT_EQ(nativo([&] { filas->Call("EOF"); }), 3704);
  filas->Put("CursorType", 1);
  std::array<Value, 5> args{"SELECT n, t FROM odbc_t ORDER BY n", base_, -1, Value(), 1};
  filas->Call("open", args);
  EXPECT_EQ(filas->Call("CursorType"), Value(1)) << "-1 keeps what was set";
  EXPECT_EQ(filas->Call("RecordCount"), Value(3));
  EXPECT_EQ(nativo([&] { filas->Call("Open", args); }), 3705);

  // rs("T") is a live field, rs.Fields.Item(0).Value reads the same row.
  std::array<Value, 1> nombre{"T"}, cero{0};
  const ObjectPtr campo = ToObject(filas->Read(kDefaultMember, nombre));
  const ObjectPtr campos = ToObject(filas->Call("Fields"));
  EXPECT_EQ(campos->Call("Count"), Value(2));
  std::vector<std::string> visto;
  for (; !ToBool(filas->Call("eof")); filas->Call("MoveNext"))
    visto.push_back(ToText(Value(ToObject(campos->Call("Item", cero)))) + ToText(campo->Call("Value")));
  EXPECT_THAT(visto, ElementsAre("1t1", "2t2", "3t3"));
  EXPECT_EQ(campo->Call("Name"), Value("t"));
  EXPECT_EQ(campo->Call("Type"), Value(202));
  // Past the end there is no row, and never a column that the result does not have.
  EXPECT_STREQ(
      ErrorDe([&] { campo->Default(); }).what(),
      "Either BOF or EOF is True, or the current record has been deleted. Requested operation requires a "
      "current record.");
  EXPECT_EQ(nativo([&] { filas->MoveNext(); }), 3021);
  filas->Call("MovePrevious");
  EXPECT_EQ(campo->Default(), Value("t3"));
  for (const HostError& error : {ErrorDe([&] { filas->Campo("nada"); }), ErrorDe([&] { filas->Campo(2); }),
                                 ErrorDe([&] { filas->Campo(-1); })}) {
    EXPECT_STREQ(error.what(),
                 "Item cannot be found in the collection corresponding to the requested name or ordinal.");
    EXPECT_EQ(error.NativeCode(), 3265);
  }
  filas->Call("MoveFirst");
  filas->Call("MovePrevious");
  EXPECT_EQ(filas->Call("BOF"), Value(true));
  filas->Call("Close");
  filas->Open("SELECT n FROM odbc_t WHERE n = 9", base_, 0, 1, 1);
  EXPECT_EQ(filas->Call("BOF"), Value(true));
}

TEST_P(Odbc, ConexionPorNombreYTransacciones) {
  std::array<Value, 2> args{"INSERT INTO odbc_t (n) VALUES (1)", Value()};
  EXPECT_EQ(ToObject(base_->Call("Execute", args))->Call("State"), Value(0));
  EXPECT_EQ(args[1], Value(1));
  for (const char* fin : {"RollbackTrans", "CommitTrans"}) {
    base_->Call("BeginTrans");
    Agrega(2);
    base_->Call(fin);
  }
  EXPECT_EQ(base_->Ejecuta("UPDATE odbc_t SET n = n"), 2) << "rows found count, also when nothing changes";
  for (const bool confirma : {false, true}) {
    Transaccion transaccion(*base_);
    Agrega(3);
    EXPECT_EQ(Filas(), 3);
    if (confirma) transaccion.Confirma();
  }
  EXPECT_EQ(Filas(), 3);
  // The end of a transaction on a closed connection is no second error.
  EXPECT_NO_THROW({
    Transaccion perdida(*base_);
    base_->Cierra();
  });
  EXPECT_EQ(base_->Call("State"), Value(0));
  base_ = BaseDatos::Abre(GetParam(), traza_);
}

TEST_P(Odbc, UnaTransaccionAbiertaNoSeVeDesdeOtraConexion) {
  if (GetParam().find(":memory:") != std::string::npos) GTEST_SKIP() << "la memoria es de una sola conexión";
  const auto otra = BaseDatos::Abre(GetParam(), traza_);
  Agrega(1);
  Transaccion abierta(*base_);
  EXPECT_EQ(base_->Ejecuta("DELETE FROM odbc_t"), 1);
  EXPECT_EQ(otra->Consulta("SELECT COUNT( * ) FROM odbc_t")->Campo(0), Value(1));
  if (base_->GetEngine() != Engine::Sqlite) return;
  EXPECT_EQ(ToText(Uno("PRAGMA synchronous")), "2");
}

INSTANTIATE_TEST_SUITE_P(Motores, Odbc, testing::ValuesIn(Cadenas()), [](const auto& caso) {
  if (caso.param.find(":memory:") != std::string::npos) return std::string("SqliteMemoria");
  if (caso.param.find("SQLite") != std::string::npos) return std::string("SqliteArchivo");
  return std::string(caso.param.find("ñandú") != std::string::npos ? "MariaDbAncha" : "MariaDb");
});

TEST(OdbcAttributes, LlavesYCambios) {
  OdbcAttributes cadena("driver={A;B=}}C} ; Server = x;;PWD={p;{w}};suelto;Charset=latin1");
  EXPECT_EQ(cadena.Get("DRIVER"), "A;B=}C");
  EXPECT_EQ(cadena.Get("server"), "x");
  EXPECT_EQ(cadena.Get("nada"), "");
  cadena.Set("CHARSET", "utf8mb4");
  cadena.Remove("pwd");
  EXPECT_EQ(cadena.Text(), "driver={A;B=}}C};Server=x;CHARSET=utf8mb4;");
}

}  // namespace
}  // namespace zuvi::host
