// Texts that are SQL, through every field and key, on every engine: none becomes a second statement, none
// reaches a file or loads code. What they are after lies in one folder, and the kernel tells whoever touches
// it, the server included.
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <functional>

#include "fractions/frm_fracciones.h"
#include "host/shop/catalogos.h"
#include "services/documento_inventario.h"
#include "tests/host/tienda.h"

namespace zuvi::host {
namespace {

/// The folder that nobody may open, read or write while it is watched.
class Cebo {
 public:
  Cebo() : carpeta_(testing::TempDir() + "zuvi_cebo_" + std::to_string(getpid())) {
    std::filesystem::remove_all(carpeta_);
    std::filesystem::create_directory(carpeta_);
    std::filesystem::copy_file(ZUVI_EXTENSION, carpeta_ + "/lib.so");
    std::ofstream(carpeta_ + "/secreto") << "secreto\n";
    // A server of another account has to be able to reach it, or this would prove nothing.
    chmod(carpeta_.c_str(), 0777);
    chmod((carpeta_ + "/secreto").c_str(), 0666);
    setenv("ZUVI_HOSTIL_MARCA", (carpeta_ + "/marca").c_str(), 1);
    aviso_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    inotify_add_watch(aviso_, carpeta_.c_str(), IN_OPEN | IN_CREATE | IN_ACCESS | IN_MODIFY | IN_DELETE);
  }
  Cebo(const Cebo&) = delete;
  Cebo& operator=(const Cebo&) = delete;
  ~Cebo() {
    close(aviso_);
    std::filesystem::remove_all(carpeta_);
  }
  const std::string& Carpeta() const { return carpeta_; }
  /// Whether somebody touched it since the last time this was asked.
  bool Tocado() const {
    std::array<char, 8192> sucesos;
    bool alguno = false;
    while (read(aviso_, sucesos.data(), sucesos.size()) > 0) alguno = true;
    return alguno;
  }

 private:
  std::string carpeta_;
  int aviso_ = -1;
};

/// 500 texts: a way out of the quotes, something to do there, a way to silence the rest.
std::vector<std::string> Textos(const std::string& carpeta) {
  constexpr std::array salidas{"",
                               "x'",
                               "x\"",
                               "x`",
                               "x')",
                               "x\\'",
                               "x''",
                               "x' /*",
                               "x' /*!",
                               "x'--\n",
                               "x\xC3'",
                               "[x'",
                               "x' /*!999999 ' */"};
  const std::string a = "'" + carpeta + "/";
  const std::vector<std::string> cargas{
      " OR load_extension(" + a + "lib.so')",
      " OR \"load_extension\" (" + a + "lib.so')",
      " OR [Load_Extension]/**/(" + a + "lib.so','sqlite3_extension_init')",
      " UNION SELECT `LOAD_EXTENSION` --\n(" + a + "lib.so')",
      " OR blob_export('z'," + a + "nuevo')",
      " UNION SELECT blob_import(" + a + "secreto')",
      " OR writefile(" + a + "nuevo','z')",
      " OR fts3_tokenizer('simple', x'4141414141414141')",
      " OR \xEF\xBB\xBFload_extension(" + a + "lib.so')",
      " OR $b(')load_extension(" + a + "lib.so') --",
      " OR LOAD_FILE(" + a + "secreto') IS NOT NULL",
      " OR 0 --\xC3\xA9, LOAD_FILE(" + a + "secreto') IS NOT NULL",
      " OR `load_file`/* */ (" + a + "secreto') IS NOT NULL",
      " OR LOAD_FILE #\n(" + a + "secreto') = 'z",
      " UNION SELECT 'z' INTO OUTFILE " + a + "salida'",
      " INTO/**/DUMPFILE " + a + "salida'",
      " UNION SELECT /*!50000 LOAD_FILE(" + a + "secreto')*/",
      "; DELETE FROM canario",
      ";/* */DROP TABLE canario",
      "; ATTACH DATABASE " + a + "otra.db' AS otra",
      "; VACUUM INTO " + a + "copia.db'",
      "; LOAD DATA LOCAL INFILE " + a + "secreto' INTO TABLE canario",
      "\n;\nUPDATE canario SET n = 0",
      " UNION SELECT * FROM pragma_optimize",
      " OR (SELECT MAX(n) FROM canario) = 7",
      " \\' ; DELETE FROM canario",
  };
  const std::vector<std::string> finales{"", " -- ", " --", " #", " /*", "'", " OR '1'='2", ";", "; --"};
  std::vector<std::string> textos;
  for (std::size_t i = 0; textos.size() < 500; ++i)
    textos.push_back(salidas[i % salidas.size()] + cargas[(i / 3) % cargas.size()] +
                     finales[(i * 5) % finales.size()]);
  return textos;
}

class Hostiles : public testing::TestWithParam<std::string> {
 protected:
  Hostiles() {
    t.Base().Ejecuta("DROP TABLE IF EXISTS canario");
    t.Base().Ejecuta("CREATE TABLE canario (n INTEGER, t TEXT)");
    t.Base().Ejecuta("INSERT INTO canario (n) VALUES (1)");
    t.produccion->NuevaOp();
    editor = t.escritorio.Forms().back();
    fracciones->PonAmbiente(t.fabrica.Crea(Ambiente::kProgId));
    fracciones->Show();
    cebo.Tocado();
  }
  ~Hostiles() override {
    t.Base().Ejecuta("DROP TABLE IF EXISTS canario");
    // Windows close by their own rules, which may take two tries.
    t.anfitrion->PonInteraccion(std::make_unique<RespuestasInteraccion>("si,si,si,si"));
    editor.reset();
    while (!t.escritorio.Forms().empty() && t.escritorio.Forms().back()->Unload()) continue;
    t.modulo.Suelta();
  }

  TextBox& Campo(std::int32_t i) { return Control<TextBox>(*editor, "txtFields", i); }
  /// The key of the database itself: what stands in a table hits as hard as what is typed.
  void Receta(const std::string& texto) {
    t.Base().Ejecuta("DELETE FROM comppart WHERE articulo = 'HOSTIL'");
    t.Base().Ejecuta(
        "INSERT INTO comppart (articulo, renglon, Componente, Cantidad, Almacen) VALUES ('HOSTIL', 1, " +
        t.Literal(texto.substr(0, 60)) + ", 1, 1)");
  }

  const Cebo cebo;
  Tienda t{GetParam()};
  std::shared_ptr<Form> editor;
  std::shared_ptr<frmFracciones> fracciones = std::make_shared<frmFracciones>(t.modulo);
};
ZUVI_EN_CADA_BASE(Hostiles);

TEST_P(Hostiles, QuinientosTextosPorCadaCampoYClave) {
  const bool sqlite = t.Base().TraeMotor() == Motor::Sqlite;
  // The bait works: what passes by the gate reaches it.
  const std::string c = cebo.Carpeta();
  if (sqlite) {
    t.Base().EjecutaEsquema("SELECT blob_export('z', '" + c + "/nuevo'), load_extension('" + c + "/lib.so')");
    EXPECT_TRUE(std::filesystem::remove(c + "/nuevo") && std::filesystem::remove(c + "/marca"));
    EXPECT_TRUE(cebo.Tocado());
  } else {
    t.Base().EjecutaEsquema("LOAD DATA LOCAL INFILE '" + c + "/secreto' INTO TABLE canario (t)");
    t.Base().Ejecuta("DELETE FROM canario WHERE n IS NULL");
    EXPECT_TRUE(cebo.Tocado());
  }

  const auto datos = t.Nuevo<AccesoDatos>();
  const auto ambiente = std::dynamic_pointer_cast<Ambiente>(t.fabrica.Crea(Ambiente::kProgId));
  const auto documento = t.Nuevo<DocumentoInventario>();
  t.Base().Ejecuta("INSERT INTO componen (articulo, Minimo) VALUES ('HOSTIL', 1)");
  t.Prod("HOSTIL", 1, 1);
  std::int32_t numero = 0;
  const std::vector<std::pair<const char*, std::function<void(const std::string&)>>> caminos{
      {"ensambla", [&](const std::string& s) { t.produccion->Ensamble(s, 1, 1, 0); }},
      {"desensambla", [&](const std::string& s) { t.produccion->Desensamble(s, 1, 1, 0); }},
      {"receta",
       [&](const std::string& s) {
         Receta(s);
         t.produccion->Ensamble("HOSTIL", 1, 1, 0);
         t.produccion->Desensamble("HOSTIL", 1, 1, 0);
       }},
      {"editor",
       [&](const std::string& s) {
         for (const std::int32_t campo : {0, 1, 14, 15, 24, 5, 4}) Campo(campo).SetText(s);
         Campo(5).SetText("1");
         Campo(4).SetFocus();
         editor->Press(key::kEnter);
         editor->Press(key::kEnter);
         Campo(24).SetFocus();
         editor->Press(key::kF8);
       }},
      {"fracciones",
       [&](const std::string& s) {
         fracciones->Type(s);
         fracciones->Press(key::kEnter);
       }},
      {"turnos",
       [&](const std::string& s) { ambiente->EjecutaSQL("DELETE FROM horarios WHERE turno = '" + s + "'"); }},
      {"turno",
       [&](const std::string& s) {
         datos->Consulta("SELECT * FROM turnos WHERE turno = ' " + s + "'", nullptr);
       }},
      {"condición",
       [&](const std::string& s) {
         const auto constructor = datos->NuevoConstructorSql();
         constructor->Limpia();
         constructor->Tipo("UPDATE");
         constructor->AgregaCampo("turnos", "entrada", s.substr(0, 5));
         constructor->Condicion("turno = '" + s + "'");
         constructor->Genera("turnos");
         constructor->Ejecuta();
       }},
      {"folio",
       [&](const std::string& s) { datos->SiguienteFolio(s.substr(0, 40), nullptr, numero, nullptr); }},
      {"clave", [&](const std::string& s) { datos->ExisteClave(s, "prods", "articulo", nullptr); }},
      {"tabla",
       [&](const std::string& s) { datos->ExisteClave("1", "prods", "articulo = 1 OR '" + s, nullptr); }},
      {"ubicación", [&](const std::string& s) { datos->UbicacionRestringida(s, 1, nullptr); }},
      {"catálogo",
       [&](const std::string& s) { BuscaEnCatalogo(t.Base(), CatalogoDe("Articulos"), "", s, 500); }},
      {"movimiento",
       [&](const std::string& s) {
         documento->PonTipo("E");
         documento->PonArticulo(s.substr(0, 60));
         documento->PonDatoDocumento(s.substr(0, 40));
         documento->PonFolio(s.substr(0, 20));
         documento->AplicaMovimiento(numero);
       }},
  };
  int pasaron = 0;
  for (const std::string& texto : Textos(c)) {
    for (const auto& [nombre, camino] : caminos) {
      try {
        camino(texto);
        ++pasaron;
      } catch (const HostError&) {
        // Refused by the gate or by the engine.
      }
      ASSERT_FALSE(cebo.Tocado()) << nombre << ": " << texto;
    }
    t.escritorio.Olvida();
    ASSERT_EQ(t.Numero("SELECT SUM(n) FROM canario"), 1) << texto;
    // As a value every one of them is welcome, and comes back as it is but for broken bytes.
    t.Base().Ejecuta("UPDATE canario SET t = " + t.Literal(texto));
    if (texto.find('\xC3') == std::string::npos) {
      ASSERT_EQ(t.Filas("SELECT t FROM canario", 1), std::vector{texto});
    }
  }
  EXPECT_GT(pasaron, 500);
  EXPECT_THAT(std::filesystem::exists(c + "/marca"), false);
}

}  // namespace
}  // namespace zuvi::host
