// Texts that are SQL, through every field and key, on every engine: none becomes a second statement, none
// reaches a file or loads code. What they are after lies in one folder, and the kernel tells whoever touches
// it, the server included.
#include <sys/inotify.h>
#include <sys/stat.h>

#include "fractions/frm_fracciones.h"
#include "host/shop/catalogos.h"
#include "services/documento_inventario.h"
#include "tests/host/carpeta.h"
#include "tests/host/tienda.h"

namespace zuvi::host {
namespace {

/// The folder that nobody may open, read or write while it is watched.
class Cebo : public Carpeta {
 public:
  Cebo() : Carpeta("zuvi_cebo") {
    std::filesystem::copy_file(ZUVI_EXTENSION, En("lib.so"));
    std::ofstream(En("secreto")) << "secreto\n";
    // A server of another account has to be able to reach it, or this would prove nothing.
    chmod(En("").c_str(), 0777);
    chmod(En("secreto").c_str(), 0666);
    setenv("ZUVI_HOSTIL_MARCA", En("marca").c_str(), 1);
    inotify_add_watch(aviso_, En("").c_str(), IN_OPEN | IN_CREATE | IN_ACCESS | IN_MODIFY | IN_DELETE);
  }
  ~Cebo() { close(aviso_); }
  /// Whether somebody touched it since the last time this was asked.
  bool Tocado() const {
    char sucesos[8192];
    bool alguno = false;
    while (read(aviso_, sucesos, sizeof sucesos) > 0) alguno = true;
    return alguno;
  }

 private:
  int aviso_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
};

/// A way out of the quotes, something to do there, a way to silence the rest.
std::vector<std::string> Textos(const std::string& carpeta) {
  const std::vector<std::string> salidas{"",
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
  // The dollar stands for the folder, between its quotes.
  const std::vector<std::string> cargas{" OR load_extension($lib.so')",
                                        " OR [Load_Extension]/**/($lib.so','sqlite3_extension_init')",
                                        " UNION SELECT `LOAD_EXTENSION` --\n($lib.so')",
                                        " OR blob_export('z',$nuevo')",
                                        " UNION SELECT blob_import($secreto')",
                                        " OR writefile($nuevo','z')",
                                        " OR \xEF\xBB\xBFload_extension($lib.so')",
                                        " OR #b(')load_extension($lib.so') --",
                                        " OR 0 --\xC3\xA9, LOAD_FILE($secreto') IS NOT NULL",
                                        " OR `load_file`/* */ ($secreto') IS NOT NULL",
                                        " OR LOAD_FILE #\n($secreto') = 'z",
                                        " INTO/**/DUMPFILE $salida'",
                                        " UNION SELECT /*!50000 LOAD_FILE($secreto')*/",
                                        ";/* */DROP TABLE canario",
                                        "; ATTACH DATABASE $otra.db' AS otra",
                                        "; VACUUM INTO $copia.db'",
                                        "; LOAD DATA LOCAL INFILE $secreto' INTO TABLE canario",
                                        "\n;\nUPDATE canario SET n = 0",
                                        " \\' ; DELETE FROM canario"};
  const std::vector<std::string> finales{"", " -- ", " --", " #", " /*", "'", " OR '1'='2", ";", "; --"};
  std::vector<std::string> textos;
  for (std::size_t i = 0; textos.size() < 500; ++i) {
    std::string carga = cargas[(i / 3) % cargas.size()];
    if (const auto lugar = carga.find('$'); lugar != carga.npos) carga.replace(lugar, 1, "'" + carpeta);
    if (const auto lugar = carga.find('#'); lugar == 4) carga[lugar] = '$';
    textos.push_back(salidas[i % salidas.size()] + carga + finales[(i * 5) % finales.size()]);
  }
  return textos;
}

class Hostiles : public ConTienda {};
ZUVI_EN_CADA_BASE(Hostiles);

TEST_P(Hostiles, QuinientosTextosPorCadaCampoYClave) {
  const Cebo cebo;
  BaseDatos& base = tienda.Base();
  for (const char* sql :
       {"DROP TABLE IF EXISTS canario", "CREATE TABLE canario (n INTEGER, t TEXT)",
        "INSERT INTO canario (n) VALUES (1)", "INSERT INTO componen (articulo, Minimo) VALUES ('HOSTIL', 1)"})
    base.Ejecuta(sql);
  // The bait works: what passes by the gate reaches it.
  if (base.GetEngine() == Engine::Sqlite) {
    base.EjecutaEsquema("SELECT blob_export('z', '" + cebo.En("nuevo") + "'), load_extension('" +
                        cebo.En("lib.so") + "')");
    EXPECT_TRUE(std::filesystem::remove(cebo.En("nuevo")) && std::filesystem::remove(cebo.En("marca")));
  } else {
    base.EjecutaEsquema("LOAD DATA LOCAL INFILE '" + cebo.En("secreto") + "' INTO TABLE canario (t)");
    base.Ejecuta("DELETE FROM canario WHERE n IS NULL");
  }
  EXPECT_TRUE(cebo.Tocado());

  tienda.Prod("HOSTIL", 1, 1);
  const auto datos = tienda.Nuevo<AccesoDatos>();
  const auto documento = tienda.Nuevo<DocumentoInventario>();
  tienda.produccion->NuevaOp();
  const auto editor = tienda.escritorio.Forms().back();
  const auto campo = [&](std::int32_t i) -> TextBox& { return Control<TextBox>(*editor, "txtFields", i); };
  const auto fracciones = std::make_shared<frmFracciones>(tienda.modulo);
  fracciones->PonAmbiente(tienda.fabrica.Crea(Ambiente::kProgId));
  fracciones->Show();
  std::int32_t numero = 0;
  using Camino = std::function<void(const std::string&)>;
  const std::vector<std::pair<const char*, Camino>> caminos{
      {"ensambla", [&](const std::string& s) { tienda.produccion->Ensamble(s, 1, 1, 0); }},
      // The key of the database itself: what stands in a table hits as hard as what is typed.
      {"receta",
       [&](const std::string& s) {
         base.Ejecuta("DELETE FROM comppart WHERE articulo = 'HOSTIL'");
         InsertaFilas(base, "comppart", "(articulo, renglon, Componente, Cantidad, Almacen)",
                      {{"HOSTIL", 1, s.substr(0, 60), 1, 1}});
         tienda.produccion->Ensamble("HOSTIL", 1, 1, 0);
         tienda.produccion->Desensamble("HOSTIL", 1, 1, 0);
       }},
      {"editor",
       [&](const std::string& s) {
         for (const std::int32_t i : {0, 1, 14, 15, 24, 5, 4}) campo(i).SetText(s);
         campo(5).SetText("1");
         campo(4).SetFocus();
         editor->Press(key::kEnter);
         editor->Press(key::kEnter);
         campo(24).SetFocus();
         editor->Press(key::kF8);
       }},
      {"fracciones", [&](const std::string& s) { fracciones->Type(s), fracciones->Press(key::kEnter); }},
      {"condición",
       [&](const std::string& s) {
         const auto constructor = datos->NuevoConstructorSql();
         constructor->Tipo("UPDATE");
         constructor->AgregaCampo("turnos", "entrada", s.substr(0, 5));
         constructor->Condicion("turno = '" + s + "'");
         constructor->Genera("turnos");
         constructor->Ejecuta();
       }},
      {"folio",
       [&](const std::string& s) { datos->SiguienteFolio(s.substr(0, 40), nullptr, numero, nullptr); }},
      {"clave", [&](const std::string& s) { datos->ExisteClave(s, "prods", "articulo", nullptr); }},
      {"ubicación", [&](const std::string& s) { datos->UbicacionRestringida(s, 1, nullptr); }},
      {"catálogo", [&](const std::string& s) { BuscaEnCatalogo(base, CatalogoDe("Articulos"), "", s, 500); }},
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
  for (const std::string& texto : Textos(cebo.En(""))) {
    for (const auto& [nombre, camino] : caminos) {
      try {
        camino(texto);
        ++pasaron;
      } catch (const HostError&) {
        // Refused by the gate or by the engine.
      }
      ASSERT_FALSE(cebo.Tocado()) << nombre << ": " << texto;
    }
    tienda.escritorio.Olvida();
    ASSERT_EQ(tienda.Numero("SELECT SUM(n) FROM canario"), 1) << texto;
    // As a value every one of them is welcome, and comes back as it is but for broken bytes.
    base.Ejecuta("UPDATE canario SET t = " + tienda.Literal(texto));
    if (texto.find('\xC3') == std::string::npos) {
      ASSERT_EQ(tienda.Filas("SELECT t FROM canario", 1), std::vector{texto});
    }
  }
  EXPECT_GT(pasaron, 500);
  EXPECT_FALSE(std::filesystem::exists(cebo.En("marca")));
  base.Ejecuta("DROP TABLE canario");
  // Windows close by their own rules, which may take two tries.
  tienda.anfitrion->PonInteraccion(std::make_unique<RespuestasInteraccion>("si,si,si,si"));
  while (!tienda.escritorio.Forms().empty() && tienda.escritorio.Forms().back()->Unload()) continue;
  tienda.modulo.Suelta();
}

}  // namespace
}  // namespace zuvi::host
