// The host's own windows without a screen, and the component's editor as the main window opens it.
#include <fstream>
#include <sstream>

#include "host/processes/codigos.h"
#include "host/system/rutas.h"
#include "host/ventanas/fabrica_ventanas.h"
#include "tests/host/procesos.h"
#include "tests/host/tienda.h"
#include "tests/support/letra.h"
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
class Mostrador : public testing::Test, protected Tienda {
 protected:
  Mostrador() : Tienda(":memory:") {}
  ~Mostrador() override {
    Responde("si");
    while (!escritorio.Forms().empty() && escritorio.Forms().back()->Unload()) continue;
    modulo_.Suelta();
  }

  /// The main window, opened.
  Form& Abre() {
    ventanas.Crea(Principal::kProgId)->Call("Abre");
    return Ventana("frmMaster");
  }
  /// An order, opened from the main window.
  Form& Edita(Form& principal, const char* op) {
    Elige(principal, op);
    principal.Press(key::kEnter);
    return Ventana("frmOp");
  }
  /// Selects an order in the main window.
  static void Elige(Form& principal, const char* op) {
    auto& lista = Control<ListView>(principal, "lv");
    lista.Select(&lista.Items()(op));
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
  static std::string Rotulo(Form& ventana, const char* nombre) {
    return Control<Label>(ventana, nombre).CaptionText();
  }
  /// One column of a list, all rows.
  static std::vector<std::string> Columna(Form& ventana, std::size_t columna) {
    const auto& lista = Control<ListView>(ventana, "lv");
    std::vector<std::string> celdas;
    for (std::int32_t i = 1; i <= lista.Items().Count(); ++i) celdas.push_back(lista.Cell(i, columna));
    return celdas;
  }

 private:
  struct Componentes final : FabricaServicios {
    explicit Componentes(Modulo& de) : modulo(de) {}
    ObjectPtr Crea(std::string_view) override { return std::make_shared<Produccion>(modulo); }
    Modulo& modulo;
  } componentes_{modulo_};

 protected:
  FabricaVentanas ventanas{anfitrion, escritorio, componentes_};

 private:
  Modulo modulo_{ventanas, escritorio, PilaCasiAgotada};
};

TEST_F(Mostrador, TodoSeLeeConLaLetraDeWindowsEnCualquierTamano) {
  struct Pantalla {
    int ancho, alto;
  };
  // A window as large as its texts want it, and on the screens people have: what a frame and the bar of the
  // system take does not count.
  const auto revisa = [](Form& v) {
    for (const int dpi : {192, 96, 120, 144})
      for (const int puntos : {13, 9, 11}) {
        const auto letra = std::make_shared<pruebas::Letra>(puntos, dpi);
        SCOPED_TRACE(v.Name() + " " + std::to_string(puntos) + " pt " + std::to_string(dpi) + " dpi");
        v.FitTo(letra);
        pruebas::SeLeeTodo(v, *letra);
        for (const Pantalla pantalla : {Pantalla{1366, 768}, Pantalla{1920, 1080}}) {
          if (dpi > (pantalla.ancho == 1366 ? 96 : 144) || (pantalla.ancho == 1366 && puntos > 9)) continue;
          SCOPED_TRACE(pantalla.ancho);
          const std::int32_t ancho = letra->Twips(pantalla.ancho - letra->Puntos(16)),
                             alto = letra->Twips(pantalla.alto - letra->Puntos(79));
          v.Resized(std::min(ancho, v.DesignWidth()), std::min(alto, v.DesignHeight()));
          pruebas::SeLeeTodo(v, *letra);
          v.Resized(v.DesignWidth(), v.DesignHeight());
        }
      }
  };
  Form& principal = Abre();
  revisa(principal);
  revisa(Edita(principal, "101"));
  principal.Press(key::kF8);
  revisa(Ventana("frmFracciones"));
  principal.Press(key::kF9);
  Form& turnos = Ventana("frmTurnos");
  revisa(turnos);
  escritorio.OnModal(revisa);
  Control<Button>(turnos, "cmdTurnos").Click();
  escritorio.OnModal([&](Form& kit) {
    revisa(kit);
    Control<TextBox>(kit, "txtArticulo").SetText("CAN-GOURMET");
    kit.Press(key::kF7);
    EXPECT_THAT(Rotulo(kit, "lblResultado"), HasSubstr("movimientos"));
    pruebas::SeLeeTodo(kit, pruebas::Letra(11, 144));
    for (const char* caja : {"txtArticulo", "txtCantidad"}) {
      Control<TextBox>(kit, caja).SetFocus();
      escritorio.OnModal([&](Form& busca_o_teclado) {
        revisa(busca_o_teclado);
        if (busca_o_teclado.Name() != "frmBusca") return;
        // What it says when there is nothing, and when there is too much.
        for (const char* texto :
             {"Nada coincide con la búsqueda.", "Se muestran los primeros 500; precise la búsqueda."}) {
          Control<Label>(busca_o_teclado, "lblNota").SetCaption(texto);
          pruebas::SeLeeTodo(busca_o_teclado, pruebas::Letra(11, 144));
        }
      });
      kit.Press(key::kF2);
    }
  });
  principal.Press(key::kF7);
}

TEST_F(Mostrador, ElCatalogoBuscaAlTeclearYEscribeLaClaveElegida) {
  const Destino destino(escritorio, "NUEZ");
  const auto busca = ventanas.Nuevo<BuscaCatalogo>();
  busca->PonDestino(destino.caja);
  const auto muestra = [&](auto usuario) {
    escritorio.OnModal(usuario);
    busca->Muestra("Articulos");
    return destino.caja->Text();
  };
  const auto elegido = muestra([](Form& v) {
    EXPECT_EQ(v.Caption(), "Articulos");
    // It begins at the key that the box holds, with everything to be seen.
    EXPECT_EQ(Control<ListView>(v, "lv").SelectedItem()->Text(), "NUEZ");
    EXPECT_EQ(Rotulo(v, "lblNota"), "42 renglones");
    v.Type("chocolate");
    EXPECT_THAT(Columna(v, 1), AllOf(Not(IsEmpty()), testing::Each(HasSubstr("hocolate"))));
    v.Press(key::kDown);
    EXPECT_EQ(v.ActiveControl()->Name(), "txtBuscar");
    EXPECT_EQ(Control<ListView>(v, "lv").SelectedItem()->Index(), 2);
    v.Press(key::kUp);
    v.Press(key::kEnter);
    EXPECT_TRUE(v.Closed());
  });
  EXPECT_THAT(elegido, Not(testing::AnyOf("NUEZ", "")));
  // Of a big catalogue a part is shown.
  for (int i = 0; i < 600; ++i) Prod("Z" + std::to_string(1000 + i), 1);
  EXPECT_EQ(muestra([](Form& v) {
              EXPECT_EQ(Columna(v, 0).size(), 500u);
              EXPECT_THAT(Rotulo(v, "lblNota"), HasSubstr("primeros 500"));
              v.Type("z1599");
              EXPECT_EQ(Rotulo(v, "lblNota"), "1 renglón");
              Control<ListView>(v, "lv").DblClick();
            }),
            "Z1599");
  // Only what meets the filter; typing in the list searches too; Escape leaves the box as it is.
  busca->PonFiltro("kit <> 0");
  EXPECT_EQ(muestra([](Form& v) {
              EXPECT_THAT(Columna(v, 0), AllOf(Contains("CAN-GOURMET"), Not(Contains("HARINA"))));
              Control<ListView>(v, "lv").SetFocus();
              v.Type("gourmet");
              EXPECT_THAT(Columna(v, 0), ElementsAre("CAN-GOURMET"));
              v.Type("x");
              EXPECT_FALSE(Control<Button>(v, "cmdAceptar").Enabled());
              v.Press(key::kEnter);
              EXPECT_FALSE(v.Closed());
              v.Press(key::kEscape);
              EXPECT_TRUE(v.Closed());
            }),
            "Z1599");
}

TEST_F(Mostrador, TeclasYTecladoDanElNumero) {
  const struct {
    const char* etiqueta;
    std::vector<const char*> botones;
    const char* tecleado;
    std::int16_t fin;
    const char* queda;
  } casos[] = {{"SN", {"1", "2", ".", "5", "0", "±"}, "", key::kEnter, "-12.5"},
               {"N", {"±", "3", "0", "←"}, "", key::kEnter, "3"},
               {"N", {}, "4x,5", key::kEnter, "4.5"},
               {"", {"C"}, "-8", key::kEnter, "-8"},
               {"N", {}, "9", key::kEscape, "7"},
               {"N", {"C"}, "", key::kEnter, "7"}};
  for (const auto& caso : casos) {
    SCOPED_TRACE(std::string(caso.etiqueta) + " " + caso.queda);
    const Destino destino(escritorio, "7", caso.etiqueta);
    const auto teclado = ventanas.Nuevo<CapturaNumerica>();
    teclado->PonDestino(destino.caja);
    escritorio.OnModal([&](Form& v) {
      for (const char* tecla : caso.botones)
        Control<ControlArray<Button>>(v, "cmdTecla").ForEach([&](std::int16_t, Button& boton) {
          if (boton.CaptionText() == tecla) boton.Click();
        });
      v.Type(caso.tecleado);
      v.Press(caso.fin);
      const bool nada = caso.fin == key::kEnter && caso.queda == std::string("7");
      EXPECT_EQ(v.Closed(), !nada) << "a number is asked for until there is one";
    });
    teclado->Muestra();
    EXPECT_EQ(destino.caja->Text(), caso.queda);
  }
}

TEST_F(Mostrador, LaVentanaPrincipalListaFiltraYConservaLaOrdenElegida) {
  Form& v = Abre();
  Abre();
  EXPECT_THAT(Abiertas(), ElementsAre("frmMaster"));
  const auto todas = Columna(v, 0);
  EXPECT_EQ(todas.size(), static_cast<std::size_t>(Numero("SELECT COUNT( * ) FROM op")));
  EXPECT_EQ(todas.front(), "110");
  EXPECT_THAT(Columna(v, 1), AllOf(Contains("Pendiente"), Contains("Confirmada, cerrada")));
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

  Base().Ejecuta("DELETE FROM op WHERE op = 108");
  Elige(v, "104");
  v.Press(key::kF5);
  EXPECT_EQ(AEntero32(v.Call("Orden")), 104);
  EXPECT_THAT(Columna(v, 0), Not(Contains("108")));
  v.Unload();
  EXPECT_FALSE(ABooleano(ventanas.Crea(Principal::kProgId)->Call("Abierta")));
}

TEST_F(Mostrador, OperacionesPorTecla) {
  Form& v = Abre();
  // Each is asked about first.
  Elige(v, "105");
  Responde("no,si,no,si,no,si");
  const auto entregadas = [&] {
    return Numero("SELECT COUNT( * ) FROM oppart WHERE op = 105 AND terminado = cantidad");
  };
  v.Press(key::kF6);
  EXPECT_EQ(entregadas(), 0);
  v.Press(key::kF6);
  EXPECT_EQ(entregadas(), 3);
  EXPECT_THAT(Rotulo(v, "lblEstado"), AllOf(HasSubstr("105 se entregó"), HasSubstr("movimientos")));
  Elige(v, "104");
  v.Press(key::kDelete);
  EXPECT_THAT(Rotulo(v, "lblEstado"), HasSubstr("no se canceló"));
  v.Press(key::kDelete);
  EXPECT_EQ(Rotulo(v, "lblEstado"), "La orden 104 se canceló.");
  EXPECT_THAT(Columna(v, 0), Not(Contains("104")));

  // A stale busy mark: told with its holder, logged.
  anfitrion->TomaRegistro();
  Elige(v, "106");
  const auto ocupada = [&] { return Numero("SELECT ocupado FROM op WHERE op = 106"); };
  v.Press(key::kF11);
  EXPECT_EQ(ocupada(), 1);
  v.Press(key::kF11);
  EXPECT_EQ(ocupada(), 0);
  EXPECT_THAT(anfitrion->TomaRegistro(), AllOf(HasSubstr("ocupada"), HasSubstr("10:20:00")));
  EXPECT_EQ(Numero("SELECT COUNT( * ) FROM bitacora WHERE suceso LIKE '%106%'"), 1);

  escritorio.OnModal([&](Form& kit) {
    EXPECT_FALSE(v.Enabled());
    const auto dice = [&](const char* caja, const char* texto, std::int16_t tecla) {
      Control<TextBox>(kit, caja).SetText(texto);
      kit.Press(tecla);
      return anfitrion->TomaRegistro() + Rotulo(kit, "lblResultado");
    };
    EXPECT_THAT(dice("txtArticulo", "HARINA", key::kF7), HasSubstr("no tiene componentes"));
    Control<TextBox>(kit, "txtArticulo").SetText("");
    kit.Type("masa-galleta");
    EXPECT_THAT(dice("txtAlmacen", "9", key::kF7), HasSubstr("No hay un almacén"));
    Control<TextBox>(kit, "txtAlmacen").SetText("3");
    EXPECT_EQ(Rotulo(kit, "lblAlmacen"), "Taller de repostería");
    EXPECT_THAT(Rotulo(kit, "lblResultado"), HasSubstr("Existencia en el almacén: 33.6 kg"));
    EXPECT_THAT(dice("txtCantidad", "1.5", key::kF7), HasSubstr("kits enteros"));
    EXPECT_THAT(dice("txtCantidad", "2", key::kF7),
                AllOf(HasSubstr("Ensamblado: 2 de MASA-GALLETA"), HasSubstr(": 35.6 kg")));
    EXPECT_THAT(dice("txtCantidad", "0.5", key::kF8), HasSubstr(": 35.1 kg"));
    escritorio.OnModal([](Form& busca) {
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
  EXPECT_THAT(Abiertas(), ElementsAre("frmMaster"));
}

TEST_F(Mostrador, ElEditorAbreCierraYRefrescaLaLista) {
  Form& v = Abre();
  // A veto makes the window refuse its first closing.
  anfitrion->PonGancho("Op001", [](PeticionProceso& peticion) { peticion.bandera = true; });
  Form& vetado = Edita(v, "104");
  EXPECT_FALSE(vetado.Unload());
  EXPECT_TRUE(vetado.Unload());
  anfitrion->QuitaGancho("Op001");

  Form& editor = Edita(v, "104");
  EXPECT_EQ(editor.Caption(), "Orden de fabricación: 104");
  // Its fields have lists to choose from.
  auto& combo = dynamic_cast<MultiCombo&>(*Control<TextBox>(editor, "txtFields", 14).Container());
  combo.ShowData();
  EXPECT_THAT(combo.Rows(), Contains(ElementsAre("3", "Taller de repostería")));
  v.Press(key::kF5);
  EXPECT_THAT(Rotulo(v, "lblCuenta"), HasSubstr("2 ocupadas"));
  editor.Unload();
  escritorio.Advance(100);
  EXPECT_THAT(Rotulo(v, "lblCuenta"), HasSubstr("1 ocupada"));
  // After a new order the list stands at it.
  v.Press(key::kInsert);
  Base().Ejecuta("INSERT INTO op (op, estado) VALUES (111, 'PE')");
  Ventana("frmOp").Unload();
  escritorio.Advance(100);
  EXPECT_EQ(AEntero32(v.Call("Orden")), 111);

  // A confirmed order opens for viewing; leaving closes what is open, by its own rules.
  Edita(v, "101");
  v.Press(key::kInsert);
  EXPECT_THAT(Abiertas(), ElementsAre("frmMaster", "frmOp", "frmOp"));
  Responde("no,si");
  EXPECT_FALSE(v.Unload(UnloadMode::TitleBar));
  EXPECT_TRUE(v.Unload(UnloadMode::TitleBar));
  EXPECT_THAT(Abiertas(), IsEmpty());

  // An editor that does not come up is told.
  Form& otra = Abre();
  Base().Ejecuta("ALTER TABLE oppart RENAME TO aparte");
  Elige(otra, "104");
  otra.Press(key::kEnter);
  EXPECT_THAT(Rotulo(otra, "lblEstado"), HasSubstr("no se pudo abrir"));
}

TEST_F(Mostrador, LosCodigosDeUnaOrdenSeDanUnaVez) {
  Form& editor = Edita(Abre(), "101");
  const auto genera = [&] {
    Control<Button>(editor, "Command1").Click();
    return Filas("SELECT codigo, articulo FROM codigos WHERE op = 101 ORDER BY consecutivo", 2);
  };
  const auto primeros = genera();
  ASSERT_FALSE(primeros.empty());
  EXPECT_THAT(primeros.front(), testing::StartsWith("000101-001 "));
  EXPECT_EQ(genera(), primeros);
  // A line with another article gets a new code, as the old label lies.
  Base().Ejecuta(
      "UPDATE oppart SET articulo = 'TURRON' WHERE id_entrada = (SELECT MIN(id_entrada) FROM "
      "oppart WHERE op = 101)");
  const auto todos = genera();
  EXPECT_EQ(todos.size(), primeros.size() + 1);
  EXPECT_THAT(todos.back(), HasSubstr("TURRON"));
  std::ifstream pagina(Ruta(anfitrion->TraeOpciones().reportes.front()) / "CODIGOS-101.html");
  std::ostringstream texto;
  texto << pagina.rdbuf();
  EXPECT_THAT(texto.str(), AllOf(HasSubstr("<svg"), HasSubstr("TURRON"), Not(HasSubstr("000101-001"))));
  EXPECT_THAT(escritorio.Avisos(), IsEmpty());
  // Five bars a character, the asterisks at both ends among them.
  const std::string barras = Barras("01-9");
  int rectangulos = 0;
  for (auto i = barras.find("<rect"); i != std::string::npos; i = barras.find("<rect", i + 1)) ++rectangulos;
  EXPECT_EQ(rectangulos, 6 * 5);
  EXPECT_THROW(Barras("a"), HostError);
}

}  // namespace
}  // namespace zuvi::host
