// Databases of every kind under the commands of `zuvi`: what is somebody else's, newer, broken or only to be
// read is as before after every one of them; and what the schema may and may not do on a server.
#include <array>
#include <set>

#include "host/anfitrion/consola.h"
#include "host/odbc/odbc_attributes.h"
#include "host/processes/paginas.h"
#include "host/services/fabrica_anfitrion.h"
#include "host/shop/revision.h"
#include "host/ventanas/pregunta_base.h"
#include "tests/host/procesos.h"
#include "tests/host/tienda.h"
#include "tests/host/zuvi.h"

namespace zuvi::host {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr std::array kLeen{"ordenes",  "existencias", "orden 101", "kit CAN-GOURMET",
                           "ocupadas", "imprime 101", "revisa",    "consulta 'SELECT * FROM op'"};
constexpr std::array kCambian{"ensambla MASA-GALLETA 3 1", "folio Op", "libera 106", "entrega 103",
                              "actualiza"};

void Escribe(const std::string& archivo, const std::string& texto) {
  std::ofstream(archivo, std::ios::binary) << texto;
}
std::shared_ptr<BaseDatos> Suelta(const std::string& cadena) {
  static const Traza traza;
  return BaseDatos::Abre(cadena, traza);
}
std::shared_ptr<BaseDatos> Archivada(const std::string& archivo) {
  return Suelta("DRIVER={SQLite3};Database=" + archivo);
}
std::shared_ptr<BaseDatos> EnTienda(const std::string& archivo) { return AnfitrionEn(archivo)->Base(); }

struct Caso {
  const char* nombre;
  std::function<void(const std::string&)> prepara;
  const char* dice;
  bool se_crea;  // by `zuvi crea`
};

TEST(Bases, LoAjenoLoNuevoYLoRotoQuedanComoEstaban) {
  // Statements on a file of somebody else, and on a shop of ours; and what is no database.
  const auto sql = [](std::vector<const char*> textos) {
    return [textos](const std::string& a) {
      for (const char* texto : textos)
        if (std::string_view(texto).starts_with("PRAGMA"))
          Archivada(a)->Consulta(texto);
        else
          Archivada(a)->EjecutaEsquema(texto);
    };
  };
  const auto tienda = [](auto&& despues) {
    return [despues](const std::string& a) {
      EnTienda(a);
      despues(a);
    };
  };
  const auto texto = [](std::string bytes) {
    return [bytes](const std::string& a) { std::ofstream(a, std::ios::binary) << bytes; };
  };
  // Of somebody else, whose program died; the file with this ending tells of it.
  const auto muere = [](void (*hace)(BaseDatos&), const char* cola) {
    return [=](const std::string& a) {
      Espera(Hijo([&] {
        const auto base = Archivada(a);
        hace(*base);
        _exit(0);
        return 0;
      }));
      EXPECT_GT(std::filesystem::file_size(a + cola), 0u);
    };
  };
  static const char* const wal = "PRAGMA journal_mode=WAL";
  const Caso casos[] = {
      {"vacía", texto(""), "zuvi crea", true},
      {"de otro", sql({"CREATE TABLE clientes (n INTEGER)"}), "zuvi crea", true},
      {"con empleados", sql({"CREATE TABLE Empleados (n INTEGER)"}), "Empleados", false},
      {"otro esquema",
       sql({"CREATE TABLE esquema (version TEXT, nota TEXT)", "INSERT INTO esquema VALUES ('x', 'y')"}),
       "esquema", false},
      {"de otro, en WAL", sql({wal, "CREATE TABLE oppart (n INTEGER)"}), "oppart", false},
      {"de otro, que murió escribiendo",
       muere(
           [](BaseDatos& base) {
             base.Consulta(wal);
             base.Ejecuta("CREATE TABLE oppart (n INTEGER)");
           },
           "-wal"),
       "oppart", false},
      {"de otro, con journal por deshacer",
       muere(
           [](BaseDatos& base) {
             base.Ejecuta("CREATE TABLE empleados (n BLOB)");
             base.Consulta("PRAGMA cache_size=1");
             base.Ejecuta("BEGIN");
             for (int i = 0; i < 50; ++i) base.Ejecuta("INSERT INTO empleados VALUES (zeroblob(9000))");
           },
           "-journal"),
       "empleados", false},
      {"nueva", tienda(sql({"UPDATE esquema SET version = 5"})), "más nueva", false},
      {"antigua", tienda(sql({"UPDATE esquema SET version = 1", "DROP TABLE codigos"})), "zuvi actualiza",
       false},
      {"texto", texto("Estimado cliente:\n"), "no es una base", false},
      {"cabeza sin cuerpo", texto(std::string("SQLite format 3\0", 16) + "basura"), "dañada", false},
      {"dañada", tienda([](const std::string& a) { std::filesystem::resize_file(a, 5000); }), "dañada",
       false},
      {"carpeta", [](const std::string& a) { std::filesystem::create_directory(a); }, "es una carpeta",
       false},
  };
  for (const Caso& caso : casos) {
    SCOPED_TRACE(caso.nombre);
    const Carpeta carpeta("zuvi_bases");
    const std::string archivo = carpeta.En("b.db");
    caso.prepara(archivo);
    const auto antes = carpeta.Contenido();
    std::vector<std::string> ordenes(kLeen.begin(), kLeen.end());
    for (const char* cambia : kCambian) ordenes.emplace_back(cambia);
    if (!caso.se_crea) ordenes.emplace_back("crea --si");
    if (caso.nombre == std::string("antigua")) ordenes.resize(ordenes.size() - 2);
    for (const std::string& orden : ordenes) {
      const Corrida corrida = Zuvi("--base '" + archivo + "' " + orden);
      EXPECT_EQ(corrida.codigo, 3) << orden << "\n" << corrida.texto;
      EXPECT_THAT(corrida.texto, HasSubstr(caso.dice)) << orden;
      ASSERT_TRUE(carpeta.Contenido() == antes) << orden;
    }
    if (caso.se_crea) {
      EXPECT_EQ(Zuvi("--base '" + archivo + "' crea --vacia").codigo, 0);
      EXPECT_EQ(Zuvi("--base '" + archivo + "' ordenes").codigo, 0);
    }
  }
}

TEST(Bases, UnaPropiaSeLeeSinCambiarlaYDondeNoSePuedeEscribir) {
  const Carpeta carpeta("zuvi_lectura");
  const std::string archivo = carpeta.En("b.db");
  AnfitrionEn(archivo)->Base();
  const auto antes = carpeta.Contenido();
  for (const char* orden : kLeen) {
    EXPECT_EQ(Zuvi("--base '" + archivo + "' " + orden).codigo, 0) << orden;
    EXPECT_TRUE(carpeta.Contenido() == antes) << orden;
  }
  const auto lee = [&] {
    if (geteuid() == 0 && seteuid(65534) != 0) return 2;
    Opciones opciones;
    PonBase(opciones, archivo);
    opciones.solo_lee = true;
    Anfitrion anfitrion(opciones, std::make_unique<RespuestasInteraccion>(""));
    if (anfitrion.Base()->Consulta("SELECT op FROM op")->Eof()) return 3;
    try {
      anfitrion.Base()->Ejecuta("DELETE FROM op");
      return 4;
    } catch (const HostError&) {
      return 0;
    }
  };
  for (const auto& [permiso, el_de_carpeta] : {std::pair(0444, 0555), std::pair(0666, 0555)}) {
    SCOPED_TRACE(permiso);
    std::filesystem::permissions(archivo, std::filesystem::perms(permiso));
    std::filesystem::permissions(carpeta.En(""), std::filesystem::perms(el_de_carpeta));
    EXPECT_EQ(Espera(Hijo(lee)), 0);
    std::filesystem::permissions(carpeta.En(""), std::filesystem::perms(0755));
    EXPECT_TRUE(carpeta.Contenido() == antes);
  }
}

TEST(Bases, UnaAnteriorSeActualizaCuandoSePideYNadaSePierde) {
  const Archivo archivo("zuvi_anterior.db");
  {
    const auto antes = EnTienda(archivo.Texto());
    antes->EjecutaEsquema("DROP TABLE codigos");
    antes->EjecutaEsquema(
        "CREATE TRIGGER existencias_cambio AFTER UPDATE ON existencias FOR EACH ROW BEGIN UPDATE prods SET "
        "costo "
        "= 99; END");
    antes->Ejecuta("UPDATE esquema SET version = 1");
    antes->Ejecuta("DELETE FROM op WHERE op = 108");
  }
  EXPECT_THAT(ErrorDe([&] { AnfitrionEn(archivo.Texto())->Base(); }).what(), HasSubstr("versión 1"));
  const Corrida corrida = Zuvi("--base " + archivo.Texto() + " actualiza");
  EXPECT_EQ(corrida.codigo, 0);
  EXPECT_THAT(corrida.texto, HasSubstr("era de la versión 1 y quedó en la 4"));
  const auto ahora = EnTienda(archivo.Texto());
  EXPECT_TRUE(ahora->Consulta("SELECT * FROM codigos")->Eof());
  EXPECT_TRUE(ahora->Consulta("SELECT op FROM op WHERE op = 108")->Eof());
  ahora->Ejecuta("UPDATE existencias SET cantidad = cantidad");
  EXPECT_TRUE(ahora->Consulta("SELECT articulo FROM prods WHERE costo = 99")->Eof())
      << "the triggers are gone";
}

TEST(Bases, LaVentanaPreguntaAntesDeCrearODeActualizar) {
  const Archivo archivo("zuvi_pregunta.db");
  const auto responde = [&](const std::string& respuestas) {
    const auto anfitrion = AnfitrionEn(archivo.Texto(), "ADMIN", respuestas);
    const bool sigue = AseguraBase(*anfitrion);
    return std::pair(sigue, anfitrion);
  };
  EXPECT_FALSE(responde("no").first);
  EXPECT_FALSE(std::filesystem::exists(archivo.Texto()));
  const auto [sigue, vacia] = responde("si,no");
  ASSERT_TRUE(sigue);
  EXPECT_TRUE(vacia->Base()->Consulta("SELECT op FROM op")->Eof());
  EXPECT_EQ(responde("").second->TomaRegistro(), "") << "what is ready is not asked about";
  vacia->Base()->Ejecuta("UPDATE esquema SET version = 2");
  EXPECT_FALSE(responde("no").first);
  EXPECT_THAT(responde("si").second->TomaRegistro(), HasSubstr("era de la versión 2 y quedó en la 4"));
  vacia->Base()->Ejecuta("UPDATE esquema SET version = 5");
  EXPECT_THAT(ErrorDe([&] { responde("si").second->Base(); }).what(), HasSubstr("más nueva"));
}

TEST(Bases, EnElServidorTampocoYConCuentasCorrientes) {
  const std::string cadena = Servidor();
  if (cadena.empty()) GTEST_SKIP() << "ZUVI_MARIADB is not set";
  const auto zuvi = [&](const std::string& orden) { return Zuvi("--base '" + cadena + "' " + orden); };
  const auto base = Suelta(cadena);
  // All that there is, views and tables; the server tells `op` and `Op` apart, but not in its order.
  const auto hay = [&] {
    std::multiset<std::string> nombres;
    for (const auto filas = base->Consulta(
             "SELECT CONCAT(LEFT(table_type, 4), ' `', table_name, '`') FROM information_schema.tables WHERE "
             "table_schema = DATABASE()");
         !filas->Eof(); filas->MoveNext())
      nombres.insert(ToText(filas->Campo(0)));
    return nombres;
  };
  using Caso = std::tuple<const char*, const char*, int>;
  for (const auto& [sql, dice, al_crear] :
       {Caso{"CREATE TABLE EMPLEADOS (n INTEGER)", "EMPLEADOS", 3},
        Caso{"CREATE TABLE esquema (version INTEGER NOT NULL PRIMARY KEY)", "a medio crear", 0}}) {
    for (const auto& cual : hay())
      base->Ejecuta((cual.starts_with("VIEW") ? "DROP " : "DROP TABLE ") +
                    cual.substr(cual.starts_with("VIEW") ? 0 : 5));
    base->Ejecuta(sql);
    for (const char* orden : kLeen) {
      const Corrida corrida = zuvi(orden);
      EXPECT_EQ(corrida.codigo, 3) << orden;
      EXPECT_THAT(corrida.texto, HasSubstr(dice)) << orden;
    }
    EXPECT_EQ(hay().size(), 1u);
    EXPECT_EQ(zuvi("crea").codigo, al_crear);
    EXPECT_EQ(hay().size() == 1, al_crear != 0);
  }
  // The shop that the last case made, for one who may only work in it.
  OdbcAttributes taller(cadena);
  taller.Set("User", "taller");
  taller.Set("Password", "{p;{a}}b}");
  const auto del_taller = [&](const std::string& orden) {
    return Zuvi("--base '" + taller.Text() + "' " + orden);
  };
  for (const char* orden : {"ensambla CAN-GOURMET 1 4", "desensambla CAN-GOURMET 1 1", "entrega 103",
                            "folio NUEVA", "libera 106", "cancela 108 --si", "revisa"})
    EXPECT_EQ(del_taller(orden).codigo, 0) << orden;
  base->Ejecuta("UPDATE esquema SET version = 2");
  base->Ejecuta("DROP TABLE fracciones");
  const Corrida sin_derecho = del_taller("actualiza");
  EXPECT_EQ(sin_derecho.codigo, 1) << "it was opened, and the work failed";
  EXPECT_THAT(sin_derecho.texto,
              AllOf(HasSubstr("versión 2"), HasSubstr("dueño"), Not(HasSubstr("No se pudo abrir"))));
  EXPECT_EQ(zuvi("actualiza").codigo, 0);
  EXPECT_EQ(del_taller("ordenes").codigo, 0);
}

class Revision : public ConTienda {};
ZUVI_EN_CADA_BASE(Revision);

TEST_P(Revision, HallaLoQueOtroProgramaEscribioPorFuera) {
  BaseDatos& base = tienda.Base();
  const auto filas = [](const std::shared_ptr<Recordset>& rs) { return ToInt32(rs->Call("RecordCount")); };
  tienda.produccion->Ensamble("CAN-GOURMET", 1, 7, 0);
  tienda.produccion->Desensamble("TRUFAS", 1.5, 1, 0);
  EXPECT_EQ(filas(ExistenciasSinMovimientos(base)), 0);
  EXPECT_EQ(filas(CostosSinExplicar(base)), 0);
  base.Ejecuta("UPDATE existencias SET cantidad = cantidad + 0.5 WHERE articulo = 'HARINA' AND almacen = 2");
  base.Ejecuta("UPDATE existencias SET valor = valor - 1 WHERE articulo = 'NUEZ'");
  base.Ejecuta("DELETE FROM existencias WHERE articulo = 'ATE'");
  base.Ejecuta("INSERT INTO existencias (articulo, almacen, cantidad, valor) VALUES ('ATE', 3, 25, 0)");
  EXPECT_EQ(filas(ExistenciasSinMovimientos(base)), 4);
  base.Ejecuta("UPDATE prods SET costo = costo * 1.01 WHERE articulo = 'SIDRA'");
  const auto costos = CostosSinExplicar(base);
  std::vector<std::string> articulos;
  for (; !costos->Eof(); costos->MoveNext()) articulos.push_back(ToText(costos->Campo(0)));
  EXPECT_THAT(articulos, testing::IsSupersetOf({"HARINA", "SIDRA"}));
}

TEST(Cadenas, UnArchivoEsUnArchivoYUnaCadenaSeLeeComoOdbc) {
  const Carpeta carpeta("zuvi_cadenas");
  const std::string fea = carpeta.En(" a;DRIVER=x;PWD={b} %41#?.db ");
  EnTienda(fea);
  EXPECT_EQ(carpeta.Contenido().size(), 1u) << "under exactly that name";
  const struct {
    std::string base;
    const char* dice;  // nothing: it opens
  } casos[] = {
      {fea, nullptr},
      {"Database = {" + carpeta.En(" a;DRIVER=x;PWD={b}} %41#?.db ") + "} ; dRiVeR = {SQLite3};;", nullptr},
      {"DRIVER={SQLite3};database=" + carpeta.En("no.db"), "No existe"},
      {"file:" + fea, "No existe"},
      {"DRIVER={SQLite3};Timeout=1", "falta el archivo"},
      {"UID=u;Database=x;PWD=secreto", "falta Server"},
      {"Port=1;PWD=secreto;Server=127.0.0.1", "No se pudo conectar con el servidor"},
      {"DRIVER={SQLite3;Database=x;PWD=secreto", "llaves"},
      {"mariadb://zuvi:secreto@x/zuvi", "mariadb://…"}};
  for (const auto& caso : casos) {
    SCOPED_TRACE(caso.base);
    Opciones opciones;
    PonBase(opciones, caso.base);
    const auto anfitrion = std::make_shared<Anfitrion>(opciones, std::make_unique<RespuestasInteraccion>(""));
    if (!caso.dice) {
      EXPECT_FALSE(anfitrion->Base()->Consulta("SELECT op FROM op")->Eof());
      continue;
    }
    EXPECT_THAT(ErrorDe([&] { anfitrion->Base(); }).what(),
                AllOf(HasSubstr(caso.dice), Not(HasSubstr("secreto"))));
  }
  const auto ambiente = FabricaAnfitrion(AnfitrionEn("DRIVER={MariaDB Unicode};Server=x;PWD={s;}}ecreto}"))
                            .Crea(Ambiente::kProgId);
  const std::string visible = ToText(ambiente->Call("CadenaConexion"));
  EXPECT_THAT(visible, AllOf(HasSubstr("Server=x"), Not(HasSubstr("ecreto"))));
}

TEST(Salidas, UnaTerminalNoObedeceALosDatos) {
  EXPECT_EQ(Visible("a\x1B[2J\x7F\xC2\x9B\xE2\x80\xAE\x9B ñ€🎂\t\n", true),
            "a\\x1B[2J\\x7F\\u009B\\u202E\\x9B ñ€🎂\t\n");
  EXPECT_EQ(Visible("\n\xE2\x82", false), "\\x0A\\xE2\\x82");
  std::stringbuf destino;
  SalidaVisible visible(destino);
  std::ostream salida(&visible);
  for (const char c : std::string("ñ\x1B€\xC2\x9B\xFF🎂")) salida << c << std::flush;
  EXPECT_EQ(destino.str(), "ñ\\x1B€\\u009B\\xFF🎂") << "byte by byte as well";
}

/// The place that `zuvi imprime` tells.
std::string PaginaDe(const std::string& base, const std::string& entorno, const std::string& opcion = "") {
  const std::string texto = Zuvi("--base '" + base + "' " + opcion + " imprime 101", entorno).texto;
  const auto inicio = texto.rfind("Reporte escrito en ");
  return inicio == std::string::npos ? texto
                                     : texto.substr(inicio + 19, texto.find('\n', inicio) - inicio - 19);
}

TEST(Salidas, UnaPaginaNoSeSigueNiSePierdeYDiceDondeQuedo) {
  const Carpeta carpeta("zuvi_paginas");
  const std::string ajeno = carpeta.En("ajeno.txt"), reportes = carpeta.En("Año/Ñandú"),
                    pagina = reportes + "/P.html", segunda = reportes + "/P (2).html";
  const auto lee = [](const std::string& archivo) {
    std::ostringstream texto;
    texto << std::ifstream(archivo).rdbuf();
    return texto.str();
  };
  Escribe(ajeno, "no se toca");
  std::filesystem::create_directories(reportes);
  std::filesystem::create_symlink(ajeno, pagina);
  EXPECT_EQ(EscribePagina("P.html", "<p>", {reportes}), pagina);
  EXPECT_FALSE(std::filesystem::is_symlink(pagina));
  EXPECT_EQ(carpeta.Contenido()["ajeno.txt"], "no se toca");
  std::filesystem::remove(pagina);
  std::filesystem::create_directory(pagina);
  EXPECT_EQ(EscribePagina("P.html", "<b>", {reportes}), segunda) << "what stands in its place stays";
  EXPECT_EQ(lee(segunda), "<b>");

  const std::string otra = carpeta.En("otra");
  EXPECT_EQ(EscribePagina("P.html", "<i>", {ajeno + "/dentro", otra}), otra + "/P.html");
  EXPECT_THAT(ErrorDe([&] {
                EscribePagina("P.html", "<p>", {ajeno, "/proc/zuvi"});
              }).what(),
              AllOf(HasSubstr("P.html"), HasSubstr(ajeno + ": no es una carpeta"),
                    HasSubstr("\n/proc/zuvi: "), HasSubstr("ZUVI_REPORTES")));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(reportes), {}), 2)
      << "no attempt is left behind";
}

TEST(Salidas, LasPaginasVanALaCarpetaDelUsuario) {
  const Carpeta carpeta("zuvi_carpetas");
  const std::string base = carpeta.En("b.db"), casa = carpeta.En("casa de Íñigo");
  ASSERT_EQ(Zuvi("--base '" + base + "' crea").codigo, 0);
  const std::string limpio = "env -u ZUVI_REPORTES -u XDG_CONFIG_HOME -u XDG_DATA_HOME HOME='" + casa + "' ";
  const std::string pagina = "/Zuvi/Reportes/ORDENP-101.html";
  std::filesystem::create_directories(casa + "/.config");
  Escribe(
      casa + "/.config/user-dirs.dirs",
      "# XDG_DOCUMENTS_DIR=\"/no\"\nXDG_DESKTOP_DIR=\"/no\"\nXDG_DOCUMENTS_DIR=\"$HOME/Mis \\\"papeles\"\n");
  EXPECT_EQ(PaginaDe(base, limpio), casa + "/Mis \"papeles" + pagina);
  // Documents that cannot be written: the page is kept all the same.
  Escribe(casa + "/.config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"/proc/zuvi/\"\n");
  EXPECT_EQ(PaginaDe(base, limpio), casa + "/.local/share" + pagina);
  EXPECT_EQ(PaginaDe(base, "ZUVI_REPORTES='" + casa + "/otra' "), casa + "/otra/ORDENP-101.html");
  const Corrida fallida = Zuvi("--base '" + base + "' imprime 101", "ZUVI_REPORTES=/proc/zuvi ");
  EXPECT_EQ(fallida.codigo, 1);
  EXPECT_THAT(fallida.texto, HasSubstr("/proc/zuvi: "));
  EXPECT_FALSE(std::filesystem::exists(carpeta.En("Reportes"))) << "none beside the database";
}

}  // namespace
}  // namespace zuvi::host
