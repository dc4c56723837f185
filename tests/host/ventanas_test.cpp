// The host's own windows without a screen, and the component's editor as the main window opens it.
#include <filesystem>
#include <fstream>
#include <sstream>

#include "host/codigos.h"
#include "host/rutas.h"
#include "host/ventanas/fabrica_ventanas.h"
#include "tests/host/tienda.h"
#include "toolkit/flex_grid.h"
#include "toolkit/multi_combo.h"

namespace zuvi::host {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// A shop with windows: the host's own, and the component on top of them.
class Mostrador : public Tienda {
 public:
  explicit Mostrador(const std::string& respuestas = "") : Tienda(":memory:", respuestas) {
    componentes_.modulo = &modulo_;
  }
  ~Mostrador() {
    anfitrion->PonInteraccion(std::make_unique<RespuestasInteraccion>("si"));
    while (!escritorio.Forms().empty() && escritorio.Forms().back()->Unload()) continue;
    modulo_.Suelta();
  }

  /// The main window, opened.
  Form& Abre() {
    ventanas.Crea(Principal::kProgId)->Call("Abre");
    return Ventana("frmMaster");
  }
  Form& Ventana(const std::string& nombre) {
    for (const auto& ventana : escritorio.Forms())
      if (ventana->Name() == nombre) return *ventana;
    throw HostError("no está abierta " + nombre);
  }
  std::vector<std::string> Abiertas() {
    std::vector<std::string> nombres;
    for (const auto& ventana : escritorio.Forms()) nombres.push_back(ventana->Name());
    return nombres;
  }
  void Responde(const std::string& respuestas) {
    anfitrion->PonInteraccion(std::make_unique<RespuestasInteraccion>(respuestas));
  }

 private:
  struct Componentes final : FabricaServicios {
    ObjectPtr Crea(std::string_view) override { return std::make_shared<Produccion>(*modulo); }
    Modulo* modulo = nullptr;
  } componentes_;

 public:
  FabricaVentanas ventanas{anfitrion, escritorio, componentes_};

 private:
  Modulo modulo_{ventanas, escritorio, PilaCasiAgotada};
};

/// Selects an order in the main window.
void Elige(Form& principal, const char* op) {
  auto& lista = Control<ListView>(principal, "lv");
  lista.Select(&lista.Items()(op));
}
std::string Rotulo(Form& ventana, const char* nombre) {
  return Control<Label>(ventana, nombre).CaptionText();
}
/// One column of a list, all rows.
std::vector<std::string> Columna(Form& ventana, std::size_t columna) {
  const auto& lista = Control<ListView>(ventana, "lv");
  std::vector<std::string> celdas;
  for (std::int32_t i = 1; i <= lista.Items().Count(); ++i) celdas.push_back(lista.Cell(i, columna));
  return celdas;
}
TEST(BuscaCatalogo, BuscaAlTeclearYEscribeLaClaveElegida) {
  Mostrador m;
  const Destino destino(m.escritorio, "NUEZ");
  const auto busca = m.ventanas.Nuevo<BuscaCatalogo>();
  busca->PonDestino(destino.caja);
  m.escritorio.OnModal([](Form& v) {
    EXPECT_EQ(v.Caption(), "Articulos");
    // It begins at the key that the box holds, with everything to be seen.
    EXPECT_EQ(Control<ListView>(v, "lv").SelectedItem()->Text(), "NUEZ");
    EXPECT_EQ(Rotulo(v, "lblNota"), "42 renglones");
    v.Type("chocolate");
    const auto hallados = Columna(v, 1);
    EXPECT_THAT(hallados, AllOf(Not(IsEmpty()), testing::Each(HasSubstr("hocolate"))));
    EXPECT_EQ(v.ActiveControl()->Name(), "txtBuscar");
    v.Press(key::kDown);
    EXPECT_EQ(v.ActiveControl()->Name(), "txtBuscar");
    EXPECT_EQ(Control<ListView>(v, "lv").SelectedItem()->Index(), 2);
    v.Press(key::kUp);
    v.Press(key::kEnter);
    EXPECT_TRUE(v.Closed());
  });
  busca->Muestra("Articulos");
  EXPECT_THAT(destino.caja->Text(), Not(testing::AnyOf("NUEZ", "")));

  // Only what meets the filter; typing in the list searches too; Escape leaves the box as it is.
  destino.caja->SetText("HARINA");
  busca->PonFiltro("kit <> 0");
  m.escritorio.OnModal([](Form& v) {
    EXPECT_THAT(Columna(v, 0), AllOf(Contains("CAN-GOURMET"), Not(Contains("HARINA"))));
    Control<ListView>(v, "lv").SetFocus();
    v.Type("gourmet");
    EXPECT_THAT(Columna(v, 0), ElementsAre("CAN-GOURMET"));
    v.Type("x");
    EXPECT_THAT(Columna(v, 0), IsEmpty());
    EXPECT_FALSE(Control<Button>(v, "cmdAceptar").Enabled());
    v.Press(key::kEnter);
    EXPECT_FALSE(v.Closed());
    v.Press(key::kEscape);
    EXPECT_TRUE(v.Closed());
  });
  busca->Muestra("Articulos");
  EXPECT_EQ(destino.caja->Text(), "HARINA");
  EXPECT_THROW(busca->Muestra("Nada"), HostError);
}

TEST(BuscaCatalogo, DeUnCatalogoGrandeMuestraUnaParte) {
  Mostrador m;
  for (int i = 0; i < 600; ++i) m.Prod("Z" + std::to_string(1000 + i), 1);
  const Destino destino(m.escritorio);
  const auto busca = m.ventanas.Nuevo<BuscaCatalogo>();
  busca->PonDestino(destino.caja);
  m.escritorio.OnModal([](Form& v) {
    EXPECT_EQ(Columna(v, 0).size(), 500u);
    EXPECT_THAT(Rotulo(v, "lblNota"), HasSubstr("primeros 500"));
    v.Type("z1599");
    EXPECT_EQ(Rotulo(v, "lblNota"), "1 renglón");
    Control<ListView>(v, "lv").DblClick();
  });
  busca->Muestra("Articulos");
  EXPECT_EQ(destino.caja->Text(), "Z1599");
}

TEST(CapturaNumerica, TeclasYTecladoDanElNumero) {
  struct Caso {
    const char* etiqueta;
    const char* antes;
    std::function<void(Form&)> usuario;
    const char* despues;
  };
  const auto pulsa = [](Form& v, std::initializer_list<const char*> teclas) {
    for (const char* tecla : teclas)
      Control<ControlArray<Button>>(v, "cmdTecla").ForEach([&](std::int16_t, Button& boton) {
        if (boton.CaptionText() == tecla) boton.Click();
      });
  };
  const Caso casos[] = {
      {"SN", "7",
       [&](Form& v) {
         pulsa(v, {"1", "2", ".", "5", "0", "±"}), v.Press(key::kEnter);
       },
       "-12.5"},
      {"N", "7",
       [&](Form& v) {
         pulsa(v, {"±", "3", "0", "←"}), v.Press(key::kEnter);
       },
       "3"},
      {"N", "7", [&](Form& v) { v.Type("4x,5"), Control<Button>(v, "cmdAceptar").Click(); }, "4.5"},
      {"", "7", [&](Form& v) { pulsa(v, {"C"}), v.Type("-8"), v.Press(key::kEnter); }, "-8"},
      {"N", "7", [&](Form& v) { v.Type("9"), v.Press(key::kEscape); }, "7"},
      {"N", "7",
       [&](Form& v) {
         pulsa(v, {"C"});
         v.Press(key::kEnter);
         EXPECT_FALSE(v.Closed());
         EXPECT_EQ(v.ActiveControl()->Name(), "txtNumero");
       },
       "7"},
  };
  for (const Caso& caso : casos) {
    SCOPED_TRACE(std::string(caso.etiqueta) + " " + caso.despues);
    Mostrador m;
    const Destino destino(m.escritorio, caso.antes, caso.etiqueta);
    const auto teclado = m.ventanas.Nuevo<CapturaNumerica>();
    teclado->PonDestino(destino.caja);
    m.escritorio.OnModal(caso.usuario);
    teclado->Muestra();
    EXPECT_EQ(destino.caja->Text(), caso.despues);
  }
}

TEST(Principal, ListaFiltraYConservaLaOrdenElegida) {
  Mostrador m;
  Form& v = m.Abre();
  m.Abre();
  EXPECT_THAT(m.Abiertas(), ElementsAre("frmMaster"));
  const auto todas = Columna(v, 0);
  EXPECT_EQ(todas.size(), static_cast<std::size_t>(m.Numero("SELECT COUNT( * ) FROM op")));
  EXPECT_EQ(todas.front(), "110");
  EXPECT_THAT(Columna(v, 1), AllOf(Contains("Pendiente"), Contains("Confirmada, cerrada")));
  EXPECT_THAT(Columna(v, 4), Contains("1 Tienda"));
  EXPECT_THAT(Rotulo(v, "lblCuenta"), HasSubstr("1 ocupada"));

  for (int i = 0; i < 3; ++i) v.Press(key::kDown);
  EXPECT_EQ(AEntero32(v.Call("Orden")), 107);
  v.Type("pendiente");  // in the list: it searches
  EXPECT_THAT(Columna(v, 1), testing::Each("Pendiente"));
  v.Type("zzz");
  EXPECT_EQ(AEntero32(v.Call("Orden")), 0);
  v.Press(key::kF6);
  EXPECT_THAT(Rotulo(v, "lblEstado"), HasSubstr("Elija antes"));
  Control<TextBox>(v, "txtBuscar").SetText("");
  Control<CheckBox>(v, "chkPendientes").Click();
  EXPECT_THAT(Columna(v, 1), testing::Each("Pendiente"));
  Control<CheckBox>(v, "chkPendientes").Click();

  m.Base().Ejecuta("DELETE FROM op WHERE op = 108");
  Elige(v, "104");
  v.Press(key::kF5);
  EXPECT_EQ(AEntero32(v.Call("Orden")), 104);
  EXPECT_EQ(Columna(v, 0).size() + 1, todas.size());
  v.Unload();
  EXPECT_FALSE(ABooleano(m.ventanas.Crea(Principal::kProgId)->Call("Abierta")));
}

TEST(Principal, OperacionesPorTecla) {
  Mostrador m;
  Form& v = m.Abre();
  Elige(v, "105");
  m.Responde("no,si");
  v.Press(key::kF6);
  EXPECT_EQ(m.Numero("SELECT SUM(terminado) FROM oppart WHERE op = 105"), 0);
  v.Press(key::kF6);
  EXPECT_EQ(m.Numero("SELECT COUNT( * ) FROM oppart WHERE op = 105 AND terminado <> cantidad"), 0);
  EXPECT_THAT(Rotulo(v, "lblEstado"), AllOf(HasSubstr("105 se entregó"), HasSubstr("movimientos")));

  Elige(v, "107");
  v.Press(key::kF6);
  EXPECT_THAT(m.anfitrion->TomaRegistro(), HasSubstr("no tiene partidas"));

  Elige(v, "104");
  m.Responde("no,si");
  v.Press(key::kDelete);
  EXPECT_THAT(Rotulo(v, "lblEstado"), HasSubstr("no se canceló"));
  v.Press(key::kDelete);
  EXPECT_EQ(Rotulo(v, "lblEstado"), "La orden 104 se canceló.");
  EXPECT_THAT(Columna(v, 0), Not(Contains("104")));
  Control<TextBox>(v, "txtBuscar").SetFocus();
  v.Press(key::kDelete);
  EXPECT_NE(AEntero32(v.Call("Orden")), 0);

  // A stale busy mark: told with its holder, asked, logged.
  m.anfitrion->TomaRegistro();
  Elige(v, "106");
  m.Responde("no,si");
  v.Press(key::kF11);
  EXPECT_EQ(m.Numero("SELECT ocupado FROM op WHERE op = 106"), 1);
  v.Press(key::kF11);
  EXPECT_EQ(m.Numero("SELECT ocupado FROM op WHERE op = 106"), 0);
  EXPECT_THAT(m.anfitrion->TomaRegistro(), AllOf(HasSubstr("ocupada"), HasSubstr("10:20:00")));
  EXPECT_EQ(m.Numero("SELECT COUNT( * ) FROM bitacora WHERE suceso LIKE '%106%'"), 1);
  v.Press(key::kF11);
  EXPECT_EQ(Rotulo(v, "lblEstado"), "La orden 106 no está ocupada.");

  m.escritorio.OnModal([&](Form& kit) {
    EXPECT_FALSE(v.Enabled());
    const auto escribe = [&](const char* caja, const char* texto) {
      Control<TextBox>(kit, caja).SetText(texto);
    };
    escribe("txtArticulo", "HARINA");
    kit.Press(key::kF7);
    EXPECT_THAT(m.anfitrion->TomaRegistro(), HasSubstr("no tiene componentes"));
    escribe("txtArticulo", "");
    kit.Type("masa-galleta");
    escribe("txtAlmacen", "9");
    kit.Press(key::kF7);
    EXPECT_THAT(m.anfitrion->TomaRegistro(), HasSubstr("No hay un almacén"));
    escribe("txtAlmacen", "3");
    EXPECT_EQ(Rotulo(kit, "lblAlmacen"), "Taller de repostería");
    EXPECT_THAT(Rotulo(kit, "lblResultado"), HasSubstr("Existencia en el almacén: 33.6 kg"));
    escribe("txtCantidad", "1.5");
    kit.Press(key::kF7);
    EXPECT_THAT(m.anfitrion->TomaRegistro(), HasSubstr("kits enteros"));
    escribe("txtCantidad", "2");
    kit.Press(key::kF7);
    EXPECT_THAT(Rotulo(kit, "lblResultado"),
                AllOf(HasSubstr("Ensamblado: 2 de MASA-GALLETA"), HasSubstr(": 35.6 kg")));
    escribe("txtCantidad", "0.5");
    kit.Press(key::kF8);
    EXPECT_THAT(Rotulo(kit, "lblResultado"), HasSubstr(": 35.1 kg"));
    m.escritorio.OnModal([](Form& busca) {
      EXPECT_EQ(busca.Name(), "frmBusca");
      busca.Type("gourmet");
      busca.Press(key::kEnter);
    });
    kit.Press(key::kF2);
    EXPECT_EQ(Control<TextBox>(kit, "txtArticulo").Text(), "CAN-GOURMET");
    kit.Press(key::kEscape);
  });
  v.Press(key::kF7);
  EXPECT_TRUE(v.Enabled());
  EXPECT_THAT(m.Abiertas(), ElementsAre("frmMaster"));
}

/// Opens an order from the main window.
Form& Edita(Mostrador& m, Form& principal, const char* op) {
  Elige(principal, op);
  principal.Press(key::kEnter);
  return m.Ventana("frmOp");
}

TEST(Principal, ElEditorAbreCierraYRefrescaLaLista) {
  Mostrador m;
  Form& v = m.Abre();
  Form& editor = Edita(m, v, "104");
  EXPECT_EQ(editor.Caption(), "Orden de fabricación: 104");
  // Its fields have lists to choose from.
  auto& combo = dynamic_cast<MultiCombo&>(*Control<TextBox>(editor, "txtFields", 14).Container());
  combo.ShowData();
  EXPECT_THAT(combo.Rows(), Contains(ElementsAre("3", "Taller de repostería")));
  v.Press(key::kF5);
  EXPECT_THAT(Rotulo(v, "lblCuenta"), HasSubstr("2 ocupadas"));
  editor.Unload();
  m.escritorio.Advance(100);
  EXPECT_THAT(Rotulo(v, "lblCuenta"), HasSubstr("1 ocupada"));
  // After a new order the list stands at it.
  v.Press(key::kInsert);
  m.Base().Ejecuta("INSERT INTO op (op, estado) VALUES (111, 'PE')");
  m.Ventana("frmOp").Unload();
  m.escritorio.Advance(100);
  EXPECT_EQ(AEntero32(v.Call("Orden")), 111);

  // A confirmed order opens for viewing; leaving closes what is open, by its own rules.
  Edita(m, v, "101");
  v.Press(key::kInsert);
  EXPECT_THAT(m.Abiertas(), ElementsAre("frmMaster", "frmOp", "frmOp"));
  m.Responde("no,si");
  EXPECT_FALSE(v.Unload(UnloadMode::TitleBar));
  EXPECT_TRUE(v.Unload(UnloadMode::TitleBar));
  EXPECT_THAT(m.Abiertas(), IsEmpty());

  // An editor that does not come up is told.
  Form& otra = m.Abre();
  m.Base().Ejecuta("ALTER TABLE oppart RENAME TO aparte");
  Elige(otra, "104");
  otra.Press(key::kEnter);
  EXPECT_THAT(Rotulo(otra, "lblEstado"), HasSubstr("no se pudo abrir"));
}

TEST(Procesos, UnVetoRechazaEnLaVentana) {
  Mostrador m;
  std::vector<std::string> vetadas{"Op001"};
  const auto veta = [&](PeticionProceso& peticion) {
    peticion.bandera = std::erase(vetadas, peticion.clave) > 0;
  };
  for (const char* clave : {"Op001", "Op006"}) m.anfitrion->PonGancho(clave, veta);
  Form& v = m.Abre();
  Form& editor = Edita(m, v, "104");
  EXPECT_TRUE(ABooleano(editor.Call("Rechazado")));
  EXPECT_FALSE(editor.Unload());
  EXPECT_FALSE(ABooleano(editor.Call("Rechazado")));
  vetadas = {"Op006"};
  EXPECT_FALSE(editor.Unload());
  EXPECT_TRUE(editor.Unload());
  EXPECT_EQ(m.Numero("SELECT ocupado FROM op WHERE op = 104"), 0);
}

TEST(Procesos, LosCodigosDeUnaOrdenSeDanUnaVez) {
  Mostrador m;
  Form& editor = Edita(m, m.Abre(), "101");
  const auto codigos = [&] {
    return m.Filas("SELECT codigo, articulo FROM codigos WHERE op = 101 ORDER BY consecutivo", 2);
  };
  auto& genera = Control<Button>(editor, "Command1");
  genera.Click();
  const auto primeros = codigos();
  ASSERT_FALSE(primeros.empty());
  EXPECT_THAT(primeros.front(), testing::StartsWith("000101-001 "));
  genera.Click();
  EXPECT_EQ(codigos(), primeros);

  // A further line gets the next number; a line with another article a new code, as the old label lies.
  m.Base().Ejecuta(
      "UPDATE oppart SET articulo = 'TURRON' WHERE id_entrada = (SELECT MIN(id_entrada) FROM "
      "oppart WHERE op = 101)");
  genera.Click();
  EXPECT_EQ(codigos().size(), primeros.size() + 1);
  EXPECT_THAT(codigos().back(), HasSubstr("TURRON"));
  std::ifstream pagina(Ruta(m.anfitrion->TraeOpciones().ruta) / "Reportes" / "CODIGOS-101.html");
  std::ostringstream texto;
  texto << pagina.rdbuf();
  EXPECT_THAT(texto.str(), AllOf(HasSubstr("<svg"), HasSubstr("TURRON"), Not(HasSubstr("000101-001"))));
  EXPECT_THAT(m.escritorio.Avisos(), IsEmpty());
  // Five bars a character, the asterisks at both ends among them.
  const std::string barras = Barras("01-9");
  int rectangulos = 0;
  for (auto i = barras.find("<rect"); i != std::string::npos; i = barras.find("<rect", i + 1)) ++rectangulos;
  EXPECT_EQ(rectangulos, 6 * 5);
  EXPECT_THROW(Barras("a"), HostError);
}

TEST(Esquema, UnaBaseAnteriorRecibeLoQueLeFalta) {
  const auto archivo = std::filesystem::temp_directory_path() / "zuvi_anterior.db";
  std::filesystem::remove(archivo);
  const auto abre = [&] { return AnfitrionEn(archivo.string()); };
  {
    const auto antes = abre();
    antes->Base()->EjecutaEsquema("DROP TABLE codigos");
    antes->Base()->Ejecuta("UPDATE esquema SET version = 1");
    antes->Base()->Ejecuta("DELETE FROM op WHERE op = 108");
  }
  const auto ahora = abre();
  EXPECT_TRUE(ahora->Base()->Consulta("SELECT * FROM codigos")->Eof());
  EXPECT_FALSE(ahora->RecienCreada());
  EXPECT_TRUE(ahora->Base()->Consulta("SELECT op FROM op WHERE op = 108")->Eof());
  ahora->Base()->Cierra();
  std::filesystem::remove(archivo);
}

}  // namespace
}  // namespace zuvi::host
