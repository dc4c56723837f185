// Through which driver a database is opened, on machines that have others by other names; and on which disks
// a file may lie.
#include <cstdlib>

#include "host/system/red_posix.h"
#include "tests/host/carpeta.h"
#include "tests/host/tienda.h"
#include "tests/host/zuvi.h"

namespace zuvi::host {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kSqlite = "libsqlite3odbc.so";
constexpr const char* kMariaDb = "libmaodbc.so";
constexpr const char* kNoHay = "libzuvi_no_hay.so";

TEST(Controladores, SeTomaElInstaladoYElQueFaltaSeDiceConQueInstalar) {
  const Carpeta carpeta("zuvi_controladores");
  const std::string archivo = carpeta.En("%HOME%.db");
  AnfitrionEn(archivo)->Base();
  using Lista = std::vector<std::pair<const char*, const char*>>;
  const std::string servidor = "Server=127.0.0.1;Port=1;Database=zuvi;PWD=secreto";
  const struct {
    Lista instalados;
    std::string base;
    std::vector<const char*> dice;  // nothing: it opens
  } casos[] = {
      {{{"SQLite3 ODBC Driver", kSqlite}}, archivo, {}},
      // As one installer leaves them, the one for version 2 first; and among others that do not work.
      {{{"SQLite ODBC Driver", kNoHay}, {"Otro", kMariaDb}, {"SQLITE3 odbc driver", kSqlite}}, archivo, {}},
      {{{"A SQLite", kNoHay}, {"Contrôleur SQLite3", kNoHay}, {"Ñ SQLite 3", kSqlite}}, archivo, {}},
      {{{"Ninguno", kSqlite}}, "DRIVER={Ninguno};Database=" + archivo, {}},
      {{}, archivo, {"SQLite 3", "64 bits", "libsqliteodbc", "«SQLite3 ODBC Driver»", "ninguno instalado"}},
      {{{"SQLite3 ODBC Driver", kSqlite}},
       "DRIVER={SQLite3};Database=" + archivo,
       {"«SQLite3»", "64 bits", "sólo el nombre del archivo", "Instalados: SQLite3 ODBC Driver."}},
      {{{"SQLite3", kNoHay}}, archivo, {"No se pudo cargar", "64 bits", kNoHay}},
      {{{"x MARIADB odbc 9 Driver", kMariaDb}, {"MariaDB", kNoHay}},
       servidor,
       {"No se pudo conectar con el"}},
      {{{"SQLite3", kSqlite}}, servidor, {"de MariaDB", "64 bits", "odbc-mariadb", "Instalados: SQLite3."}},
      {{{"MariaDB ODBC 3.2 Driver", kMariaDb}},
       "DRIVER={MariaDB ODBC 3.1 Driver};" + servidor,
       {"«MariaDB ODBC 3.1 Driver»", "quite DRIVER=", "Instalados: MariaDB ODBC 3.2 Driver."}},
      {{{"SQLite3", kSqlite}}, "DSN=no_hay;PWD=secreto", {"«no_hay»", "64 bits"}}};
  for (const auto& caso : casos) {
    std::ofstream lista(carpeta.En("odbcinst.ini"));
    for (const auto& [nombre, biblioteca] : caso.instalados)
      lista << '[' << nombre << "]\nDriver=" << biblioteca << '\n';
    lista.close();
    SCOPED_TRACE(caso.base);
    const std::string entorno = "HOME=/ ODBCINI=/ ODBCSYSINI='" + carpeta.En("") + "' ";
    const Corrida corrida = Zuvi("--base '" + caso.base + "' ordenes", entorno);
    EXPECT_EQ(corrida.codigo, caso.dice.empty() ? 0 : 3) << corrida.texto;
    for (const char* dice : caso.dice)
      EXPECT_THAT(corrida.texto, AllOf(HasSubstr(dice), Not(HasSubstr("secreto"))));
  }
}

/// As if the folder were another machine's.
std::shared_ptr<Anfitrion> EnRed(const std::string& base, bool solo_lee) {
  Opciones opciones = AnfitrionEn(base)->TraeOpciones();
  opciones.solo_lee = solo_lee;
  opciones.esta_en_red = [](const std::string& archivo) {
    return archivo.find("zuvi_en_red") != std::string::npos;
  };
  return std::make_shared<Anfitrion>(opciones, std::make_unique<RespuestasInteraccion>("si"));
}

TEST(Lugares, EnElDiscoDeOtraMaquinaSoloSeLeeLoQueNadieTieneAbierto) {
  const Carpeta carpeta("zuvi_en_red");
  const std::string archivo = carpeta.En("b.db");
  const auto rechaza = [&](const std::string& base, bool solo_lee) {
    SCOPED_TRACE(base);
    const auto antes = carpeta.Contenido();
    for (const auto& abre : std::vector<std::function<void(Anfitrion&)>>{
             [](Anfitrion& a) { a.Base(); }, [](Anfitrion& a) { a.ExaminaBase(); },
             [](Anfitrion& a) { a.CreaBase(Contenido::Vacio); }, [](Anfitrion& a) { a.ActualizaBase(); }})
      EXPECT_THAT(ErrorDe([&] { abre(*EnRed(base, solo_lee)); }).what(),
                  AllOf(HasSubstr("b.db está en el disco de otra máquina"), HasSubstr("servidor MariaDB")));
    EXPECT_TRUE(carpeta.Contenido() == antes);
  };
  rechaza(archivo, false);
  const auto abierta = AnfitrionEn(archivo);
  abierta->Base()->Ejecuta("DELETE FROM op WHERE op = 108");
  rechaza(archivo, false);
  rechaza(archivo, true);
  abierta->Base()->Cierra();
  const auto antes = carpeta.Contenido();
  EXPECT_EQ(antes.size(), 1u);
  const auto leida = EnRed(archivo, true);
  EXPECT_FALSE(leida->Base()->Consulta("SELECT op FROM op")->Eof());
  EXPECT_THROW(leida->Base()->Ejecuta("DELETE FROM op"), HostError);
  EXPECT_TRUE(carpeta.Contenido() == antes);

  // What a data source leads to is known once it is open.
  const Carpeta origenes("zuvi_origenes");
  std::ofstream(origenes.En("odbc.ini")) << "[Compartida]\nDriver=SQLite3\nDatabase=" << archivo << '\n';
  setenv("ODBCINI", origenes.En("odbc.ini").c_str(), 1);
  rechaza("DSN=Compartida", false);
  rechaza("DSN=Compartida", true);
  unsetenv("ODBCINI");
}

TEST(Lugares, ElTipoDeMontajeDiceSiEsDeRed) {
  const std::string montajes =
      "21 1 254:0 / / rw,relatime shared:1 - ext4 /dev/vda rw\n"
      "22 21 0:40 / /mnt/nfs\\040uno rw - nfs4 servidor:/datos rw\n"
      "23 21 0:41 /x /mnt/smb rw shared:7 master:3 - cifs //servidor/datos rw\n"
      "24 21 0:42 / /home/ana/remota rw shared:9 - fuse.sshfs ana@servidor: rw\n"
      "25 21 0:43 / /media/usb rw - fuseblk /dev/sdb1 rw\n"
      "27 21 0:4 / /tmp rw - tmpfs nfs4 rw\n";
  const std::pair<const char*, bool> casos[] = {{"254:0", false}, {"0:40", true},  {"0:41", true},
                                                {"0:42", true},   {"0:43", false}, {"0:4", false},
                                                {"9:9", false}};
  for (const auto& [dispositivo, remoto] : casos) {
    std::istringstream lista(montajes);
    EXPECT_EQ(EsMontajeDeRed(lista, dispositivo), remoto) << dispositivo;
  }
}

}  // namespace
}  // namespace zuvi::host
