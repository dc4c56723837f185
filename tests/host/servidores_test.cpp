// Servers that die, freeze, cut and come back, under the command line and under an open editor. MinimumSize
// ZUVI_MARIADB, in front of which a doorkeeper stands. Every place of every operation takes some minutes:
// with ZUVI_BARRIDO set all are tried, else one in a few.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>

#include "host/odbc/connection_lost.h"
#include "host/odbc/odbc_attributes.h"
#include "host/ventanas/fabrica_ventanas.h"
#include "tests/host/portero.h"
#include "tests/host/procesos.h"
#include "tests/host/tienda.h"
#include "tests/host/zuvi.h"

namespace zuvi::host {
namespace {

using testing::AnyOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::IsEmpty;
using Reloj = std::chrono::steady_clock;

// Cancelling an order, and a delivery before its first line, end without a word by contract: the program can
// say only that it was not done.
constexpr const char* kSeDice =
    "Se perdió la conexión|dejó de responder|No se pudo conectar|se perdió con la conexión|no se canceló|no "
    "terminó";

struct Trabajo {
  const char *argumentos, *prepara;
  /// A figure whose change tells how much was done.
  const char* mide;
};

constexpr const char* kMovimientos = "SELECT COUNT( * ) FROM movimientos";
constexpr std::array kTrabajos{
    Trabajo{"ensambla MASA-GALLETA 3 1", "", kMovimientos},
    Trabajo{"desensambla MASA-GALLETA 1 3", "", kMovimientos},
    Trabajo{
        "--si entrega 105", "UPDATE oppart SET terminado = 0 WHERE op = 105",
        "SELECT COUNT( * ) + 1000 * (SELECT COUNT( * ) FROM oppart WHERE op = 105 AND terminado >= cantidad) "
        "FROM movimientos"},
    Trabajo{"--si cancela 990", "REPLACE INTO op (op, estado) VALUES (990, 'PE')",
            "SELECT COUNT( * ) FROM op WHERE op = 990"},
    Trabajo{"folio PRUEBA", "", "SELECT COALESCE(MAX(ultimo), 0) FROM folios WHERE clave = 'PRUEBA'"}};

struct Clase {
  Averia averia;
  const char* nombre;
  /// How many places are tried where not all are.
  int muestras;
};
constexpr std::array kClases{Clase{Averia::Corte, "corte", 8}, Clase{Averia::Mitad, "mitad", 4},
                             Clase{Averia::Muerte, "muerte", 4}, Clase{Averia::Silencio, "silencio", 1},
                             Clase{Averia::Pasmo, "pasmo", 1}};

/// A run that ends if it hangs, by a code that is none of the program's, and how long it took.
Corrida Zuvi(const std::string& base, const std::string& argumentos, double& segundos) {
  const auto inicio = Reloj::now();
  const Corrida corrida = host::Zuvi("--base '" + base + "' " + argumentos,
                                     "ZUVI_LIMITE_CONEXION=1 ZUVI_LIMITE_LECTURA=1 ZUVI_LIMITE_ESCRITURA=1 "
                                     "ZUVI_LIMITE_CANDADO=1 timeout -s KILL 40 ");
  segundos = std::chrono::duration<double>(Reloj::now() - inicio).count();
  return corrida;
}

class Servidores : public testing::Test {
 protected:
  void SetUp() override {
    const std::string servidor = Servidor();
    if (servidor.empty()) GTEST_SKIP() << "ZUVI_MARIADB is not set";
    const Tienda de_nuevo{servidor};
    OdbcAttributes cadena(servidor);
    portero = std::make_unique<Portero>(static_cast<std::uint16_t>(std::stoi(cadena.Get("PORT"))));
    cadena.Remove("SOCKET");
    cadena.Set("PORT", std::to_string(portero->Puerto()));
    base = cadena.Text();
    directa = BaseDatos::Abre(servidor, traza_);
  }
  double Numero(const std::string& sql) { return ToNumber(directa->Consulta(sql)->Campo(0)); }
  /// What stock holds beyond what movements brought: no failure may change it.
  std::pair<double, double> Desvio() {
    const std::string signo = "CASE tipo WHEN 'E' THEN 1 ELSE -1 END";
    return {
        Numero("SELECT (SELECT SUM(valor) FROM existencias) - (SELECT COALESCE(SUM(" + signo +
               " * importe), 0) FROM movimientos)"),
        std::round(1000 * Numero("SELECT (SELECT SUM(cantidad) FROM existencias) - (SELECT COALESCE(SUM(" +
                                 signo + " * cantidad), 0) FROM movimientos)"))};
  }

  std::unique_ptr<Portero> portero;
  std::string base;
  std::shared_ptr<BaseDatos> directa;

 private:
  Traza traza_;
};

TEST_F(Servidores, NingunaFallaTumbaCuelgaNiDaPorHechoLoQueNoSeHizo) {
  const char* barrido = std::getenv("ZUVI_BARRIDO");
  const bool todo = barrido != nullptr;
  const auto desvio = Desvio();
  int corridas = 0;
  double segundos = 0;
  for (const Trabajo& trabajo : kTrabajos) {
    SCOPED_TRACE(trabajo.argumentos);
    // How the run ends and how much it did.
    const auto corre = [&](Averia averia, int trozo) {
      if (*trabajo.prepara) directa->Ejecuta(trabajo.prepara);
      const double antes = Numero(trabajo.mide);
      portero->Prepara(averia, trozo);
      const Corrida corrida = Zuvi(base, trabajo.argumentos, segundos);
      const int trozos = portero->Trozos();
      // What the broken run left open on the server is undone before anything is measured.
      portero->Repara();
      return std::tuple(corrida, Numero(trabajo.mide) - antes, trozos);
    };
    const auto [sana, entero, trozos] = corre(Averia::Ninguna, 0);
    ASSERT_EQ(sana.codigo, 0) << sana.texto;
    ASSERT_NE(entero, 0);
    for (const Clase& clase : kClases) {
      if (todo && std::string(barrido).find(clase.nombre) == std::string::npos) continue;
      const int paso = todo ? 1 : std::max(1, trozos / clase.muestras);
      // Not the same place each time, where only a few are tried.
      for (int trozo = todo ? 1 : 1 + (corridas * 7) % paso; trozo <= trozos; trozo += paso) {
        SCOPED_TRACE(std::string(clase.nombre) + " en el trozo " + std::to_string(trozo) + " de " +
                     std::to_string(trozos));
        const auto [corrida, hecho, pasaron] = corre(clase.averia, trozo);
        ++corridas;
        EXPECT_THAT(corrida.codigo, AnyOf(0, 1, 3)) << corrida.texto;
        EXPECT_LT(segundos, 15);
        if (corrida.codigo == 0)
          EXPECT_EQ(hecho, entero) << corrida.texto;
        else
          EXPECT_THAT(corrida.texto, ContainsRegex(kSeDice));
        EXPECT_EQ(Desvio(), desvio) << corrida.texto;
      }
    }
  }
  RecordProperty("corridas", corridas);
}

/// Waits are short for the host in this process.
class Plazos {
 public:
  Plazos() { Pon("1"); }
  ~Plazos() { Pon(nullptr); }
  Plazos(const Plazos&) = delete;
  Plazos& operator=(const Plazos&) = delete;

 private:
  static void Pon(const char* valor) {
    for (const char* nombre :
         {"ZUVI_LIMITE_CONEXION", "ZUVI_LIMITE_LECTURA", "ZUVI_LIMITE_ESCRITURA", "ZUVI_LIMITE_CANDADO"})
      valor ? setenv(nombre, valor, 1) : unsetenv(nombre);
  }
};

TEST_F(Servidores, ElEditorConservaLoEscritoYTerminaSuOrden) {
  const Plazos plazos;
  Tienda tienda(AnfitrionEn(base, "ADMIN", "si,si,si,si,si"));
  const auto& avisos = tienda.escritorio.Avisos();
  tienda.produccion->NuevaOp();
  ASSERT_FALSE(tienda.escritorio.Forms().empty());
  const auto ventana = tienda.escritorio.Forms().back();
  Form& editor = *ventana;
  const auto caja = [&](std::int32_t i) -> TextBox& { return Control<TextBox>(editor, "txtFields", i); };
  const auto agrega = [&](const char* articulo, const char* cantidad) {
    caja(4).SetText(articulo);
    caja(5).SetText(cantidad);
    caja(5).SetFocus();
    editor.Press(key::kEnter);
  };
  caja(14).SetText("1");
  agrega("HARINA", "2");

  // Each time the same line, until the server takes it.
  double lineas = 1;
  for (const Averia averia : {Averia::Corte, Averia::Muerte, Averia::Pasmo}) {
    SCOPED_TRACE(static_cast<int>(averia));
    portero->Rompe(averia);
    agrega("NUEZ", "3");
    if (averia != Averia::Corte) {
      // The first key found out; what was typed is still there, and what happened was said in Spanish.
      ASSERT_FALSE(avisos.empty());
      EXPECT_THAT(avisos.back(), ContainsRegex(kSeDice));
      EXPECT_EQ(caja(4).Text(), "NUEZ");
      EXPECT_EQ(caja(5).Text(), "3");
      tienda.escritorio.Olvida();
      // F5 while the server is away leaves the order open for the next try.
      editor.Press(key::kF5);
      EXPECT_FALSE(avisos.empty() || editor.Closed());
      portero->Repara();
      std::this_thread::sleep_for(std::chrono::milliseconds(1100));
      tienda.escritorio.Olvida();
      caja(5).SetFocus();
      editor.Press(key::kEnter);
    }
    EXPECT_THAT(avisos, IsEmpty());
    EXPECT_EQ(caja(4).Text(), "");
    ++lineas;
    EXPECT_EQ(Numero("SELECT COUNT( * ) FROM oppart WHERE op = (SELECT MAX(op) FROM op)"), lineas);
  }
  portero->Rompe(Averia::Corte);
  editor.Press(key::kF5);
  EXPECT_THAT(avisos, IsEmpty());
  EXPECT_TRUE(editor.Closed());
  EXPECT_EQ(Numero("SELECT ocupado FROM op ORDER BY op DESC LIMIT 1"), 0);
  tienda.modulo.Suelta();
}

TEST_F(Servidores, UnaTransaccionNoSigueEnOtraConexionNiSeRepite) {
  const Plazos plazos;
  const auto anfitrion = AnfitrionEn(base);
  BaseDatos& b = *anfitrion->Base();
  const auto cuenta = [&] { return Numero("SELECT COUNT( * ) FROM bitacora"); };
  const auto anota = [&](int id) {
    return "INSERT INTO bitacora (id, suceso) VALUES (" + std::to_string(id) + ", 'x')";
  };
  const double antes = cuenta();
  {
    Transaccion transaccion(b);
    b.Ejecuta(anota(901));
    portero->Rompe(Averia::Corte);
    EXPECT_THAT(ErrorDe([&] { b.Ejecuta(anota(902)); }).what(), HasSubstr("se deshizo entero"));
    EXPECT_THAT(ErrorDe([&] { b.Ejecuta(anota(903)); }).what(), HasSubstr("La transacción se perdió"));
    EXPECT_THROW(b.Consulta("SELECT 1"), ConnectionLost);
    EXPECT_TRUE(anfitrion->SePerdioConexion());
  }
  EXPECT_EQ(cuenta(), antes);
  anfitrion->NuevaOperacion();
  EXPECT_FALSE(anfitrion->SePerdioConexion());
  EXPECT_EQ(b.Consulta("SELECT 7")->Campo(0), Value(7));

  // A cut that a query healed does not end the work that is going on.
  portero->Rompe(Averia::Corte);
  EXPECT_EQ(b.Consulta("SELECT 6")->Campo(0), Value(6));
  EXPECT_FALSE(anfitrion->SePerdioConexion());
  // A transaction of a script's is lost until it ends it, whatever begins meanwhile.
  b.Ejecuta("BEGIN");
  portero->Rompe(Averia::Corte);
  EXPECT_THROW(b.Ejecuta(anota(906)), ConnectionLost);
  anfitrion->NuevaOperacion();
  EXPECT_THROW(b.Ejecuta(anota(907)), ConnectionLost);
  b.Ejecuta("ROLLBACK");
  EXPECT_EQ(cuenta(), antes);

  // The answer to a COMMIT, or to a statement alone, gets lost: it is done, once, and nobody claims to know.
  const struct {
    std::vector<std::string> textos;
    int trozo;
  } casos[] = {{{"BEGIN", anota(904), "COMMIT"}, 6}, {{anota(905)}, 2}};
  for (const auto& caso : casos) {
    const double al_empezar = cuenta();
    // Not a query: the driver would close it in a piece of its own, which may come any time.
    b.Ejecuta("SET @algo = 1");
    portero->Prepara(Averia::Corte, caso.trozo);
    try {
      for (const auto& texto : caso.textos) b.Ejecuta(texto);
      ADD_FAILURE();
    } catch (const ConnectionLost& error) {
      EXPECT_TRUE(error.InDoubt());
      EXPECT_THAT(error.what(), HasSubstr("No se sabe si"));
    }
    EXPECT_EQ(cuenta(), al_empezar + 1);
  }
  // A server that is gone is not waited for by every statement.
  portero->Rompe(Averia::Pasmo);
  const auto inicio = Reloj::now();
  for (int i = 0; i < 200; ++i) EXPECT_THROW(b.Consulta("SELECT 1"), ConnectionLost);
  EXPECT_LT(Reloj::now() - inicio, std::chrono::seconds(8));
  portero->Repara();
  anfitrion->NuevaOperacion();
  EXPECT_EQ(b.Consulta("SELECT 8")->Campo(0), Value(8));

  // An endless statement costs itself, not the connection; and the way back leads to our own database only.
  EXPECT_THAT(ErrorDe([&] { b.Consulta("SELECT SLEEP(20)"); }).what(), HasSubstr("límite"));
  EXPECT_FALSE(anfitrion->SePerdioConexion());
  directa->Ejecuta("UPDATE esquema SET version = version + 9");
  portero->Rompe(Averia::Corte);
  EXPECT_THAT(ErrorDe([&] { b.Consulta("SELECT 1"); }).what(), HasSubstr("ya no es la de este programa"));
  directa->Ejecuta("UPDATE esquema SET version = version - 9");
}

TEST(Candado, SqliteEsperaLoQueDiceElLimite) {
  const Archivo archivo("zuvi_candado.db");
  const Plazos plazos;
  const Traza traza;
  const std::string cadena = "DRIVER={SQLite3};Database=" + archivo.Texto();
  const auto una = BaseDatos::Abre(cadena, traza), otra = BaseDatos::Abre(cadena, traza);
  una->Ejecuta("CREATE TABLE t (n INTEGER)");
  una->Ejecuta("BEGIN IMMEDIATE");
  EXPECT_THAT(ErrorDe([&] { otra->Ejecuta("INSERT INTO t VALUES (1)"); }).what(), HasSubstr("Otro programa"));
  setenv("ZUVI_LIMITE_CANDADO", "60", 1);
  const auto paciente = BaseDatos::Abre(cadena, traza);
  std::thread suelta([&] { una->Ejecuta("COMMIT"); });
  EXPECT_EQ(paciente->Ejecuta("INSERT INTO t VALUES (1)"), 1);
  suelta.join();
}

TEST(ArchivoSqlite, UnoDanadoOLlenoSeDiceYNoPierdeLoGuardado) {
  const Archivo archivo("zuvi_danado.db");
  const Traza traza;
  const std::string cadena = "DRIVER={SQLite3};Database=" + archivo.Texto();
  const auto llena = [](BaseDatos& base, int hasta) {
    for (int n = 0; n < hasta; ++n)
      base.Ejecuta("INSERT INTO t VALUES (" + std::to_string(n) + ", '" + std::string(1000, 'x') + "')");
  };
  {
    const auto base = BaseDatos::Abre(cadena, traza);
    base->Ejecuta("CREATE TABLE t (n INTEGER, x TEXT)");
    llena(*base, 40);
    base->Consulta("PRAGMA max_page_count = 20");
    EXPECT_THAT(ErrorDe([&] { llena(*base, 200); }).what(), HasSubstr("El disco está lleno"));
    EXPECT_GE(ToInt32(base->Consulta("SELECT COUNT( * ) FROM t")->Campo(0)), 40);
  }
  {
    // Away while it is open, and back.
    const auto base = BaseDatos::Abre(cadena, traza);
    std::filesystem::rename(archivo.Texto(), archivo.Texto() + "-otro");
    EXPECT_THAT(ErrorDe([&] { llena(*base, 1); }).what(), HasSubstr("ya no está en su lugar"));
    std::filesystem::rename(archivo.Texto() + "-otro", archivo.Texto());
    llena(*base, 1);
  }
  {
    std::fstream fichero(archivo.Texto(), std::ios::in | std::ios::out | std::ios::binary);
    fichero.seekp(4096);
    fichero << std::string(40000, '\x7f');
  }
  const auto base = BaseDatos::Abre(cadena, traza);
  EXPECT_THAT(ErrorDe([&] { base->Consulta("SELECT COUNT( * ), MAX(x) FROM t"); }).what(),
              HasSubstr("dañado"));
}

}  // namespace
}  // namespace zuvi::host
