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
  // A window as large as its texts want it, and on the screens people have: what a frame and the bar of the
  // system take does not count.
  const auto revisa = [](Form& v) {
    for (const int dpi : {192, 96, 120, 144})
      for (const int puntos : {13, 9, 11}) {
        const auto letra = std::make_shared<pruebas::Letra>(puntos, dpi);
        SCOPED_TRACE(v.Name() + " " + std::to_string(puntos) + " pt " + std::to_string(dpi) + " dpi");
        v.FitTo(letra);
        pruebas::SeLeeTodo(v, *letra);
        const bool chica = dpi == 96 && puntos == 9;
        if (dpi > 144) continue;
        v.Resized(std::min(letra->Twips((chica ? 1366 : 1920) - letra->Puntos(16)), v.DesignWidth()),
                  std::min(letra->Twips((chica ? 768 : 1080) - letra->Puntos(79)), v.DesignHeight()));
        pruebas::SeLeeTodo(v, *letra);
        v.Resized(v.DesignWidth(), v.DesignHeight());
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
  // Of a big catalogue a part is shown, with the key that the box holds to begin at.
  for (int i = 0; i < 600; ++i) Prod("Z" + std::to_string(1000 + i), 1);
  EXPECT_EQ(muestra([](Form& v) {
              EXPECT_EQ(Control<ListView>(v, "lv").SelectedItem()->Text(), "NUEZ");
              EXPECT_THAT(Rotulo(v, "lblNota"), HasSubstr("primeros 500"));
              v.Type("chocolate");
              EXPECT_THAT(Columna(v, 1), AllOf(Not(IsEmpty()), testing::Each(HasSubstr("hocolate"))));
              v.Press(key::kDown);
              EXPECT_EQ(v.ActiveControl()->Name(), "txtBuscar");
              EXPECT_EQ(Control<ListView>(v, "lv").SelectedItem()->Index(), 2);
              Control<TextBox>(v, "txtBuscar").SetText("z1599");
              EXPECT_EQ(Rotulo(v, "lblNota"), "1 renglón");
              v.Press(key::kEnter);
              EXPECT_TRUE(v.Closed());
            }),
            "Z1599");
  // Only what meets the filter; typing in the list searches too; Escape leaves the box as it is.
  busca->PonFiltro("kit <> 0");
  EXPECT_EQ(muestra([](Form& v) {
              EXPECT_THAT(Columna(v, 0), AllOf(Contains("CAN-GOURMET"), Not(Contains("HARINA"))));
              Control<ListView>(v, "lv").SetFocus();
              v.Type("gourmetx");
              EXPECT_FALSE(Control<Button>(v, "cmdAceptar").Enabled());
              v.Press(key::kEnter);
              EXPECT_FALSE(v.Closed());
              v.Press(key::kEscape);
            }),
            "Z1599");
}

TEST_F(Mostrador, TeclasYTecladoDanElNumero) {
  using Caso = std::tuple<const char*, std::string, const char*, std::int16_t, const char*>;
  for (const auto& [etiqueta, botones, tecleado, fin, queda] :
       {Caso{"SN", "12.50-", "", key::kEnter, "-12.5"}, Caso{"N", "-30<", "", key::kEnter, "3"},
        Caso{"N", "", "4x,5", key::kEnter, "4.5"}, Caso{"N", "", "9", key::kEscape, "7"},
        Caso{"N", "C", "", key::kEnter, "7"}}) {
    SCOPED_TRACE(queda);
    const Destino destino(escritorio, "7", etiqueta);
    const auto teclado = ventanas.Nuevo<CapturaNumerica>();
    teclado->PonDestino(destino.caja);
    escritorio.OnModal([&](Form& v) {
      for (const char tecla : botones)
        Control<ControlArray<Button>>(v, "cmdTecla").ForEach([&](std::int16_t, Button& boton) {
          const std::string rotulo = tecla == '-' ? "±" : tecla == '<' ? "←" : std::string(1, tecla);
          if (boton.CaptionText() == rotulo) boton.Click();
        });
      v.Type(tecleado);
      v.Press(fin);
      EXPECT_EQ(v.Closed(), botones != "C") << "a number is asked for until there is one";
    });
    teclado->Muestra();
    EXPECT_EQ(destino.caja->Text(), queda);
  }
}

TEST_F(Mostrador, LaVentanaPrincipalListaFiltraYConservaLaOrdenElegida) {
  Form& v = Abre();
  Abre();
  EXPECT_EQ(escritorio.Forms().size(), 1u);
  EXPECT_EQ(Columna(v, 0).front(), "110");
  EXPECT_THAT(Columna(v, 1), AllOf(Contains("Pendiente"), Contains("Confirmada, cerrada")));
  EXPECT_THAT(Rotulo(v, "lblCuenta"), HasSubstr("1 ocupada"));

  for (int i = 0; i < 3; ++i) v.Press(key::kDown);
  EXPECT_EQ(ToInt32(v.Call("Orden")), 107);
  v.Type("pendiente");  // in the list: it searches
  EXPECT_THAT(Columna(v, 1), testing::Each("Pendiente"));
  v.Type("zzz");
  EXPECT_EQ(ToInt32(v.Call("Orden")), 0);
  v.Press(key::kF6);
  EXPECT_THAT(Rotulo(v, "lblEstado"), HasSubstr("Elija antes"));
  Control<TextBox>(v, "txtBuscar").SetText("");
  Control<CheckBox>(v, "chkPendientes").Click();
  Base().Ejecuta("DELETE FROM op WHERE op = 108");
  Elige(v, "104");
  v.Press(key::kF5);
  EXPECT_EQ(ToInt32(v.Call("Orden")), 104);
  EXPECT_THAT(Columna(v, 0), Not(Contains("108")));
  v.Unload();
  EXPECT_FALSE(ToBool(ventanas.Crea(Principal::kProgId)->Call("Abierta")));
}

TEST_F(Mostrador, OperacionesPorTecla) {
  Form& v = Abre();
  // Each is asked about first.
  Responde("no,si,no,si,no,si");
  const auto pulsa = [&](const char* op, std::int16_t tecla) {
    Elige(v, op);
    v.Press(tecla);
    return Rotulo(v, "lblEstado");
  };
  const auto entregadas = [&] {
    return Numero("SELECT COUNT( * ) FROM oppart WHERE op = 105 AND terminado = cantidad");
  };
  pulsa("105", key::kF6);
  EXPECT_EQ(entregadas(), 0);
  EXPECT_THAT(pulsa("105", key::kF6), AllOf(HasSubstr("105 se entregó"), HasSubstr("movimientos")));
  EXPECT_EQ(entregadas(), 3);
  EXPECT_THAT(pulsa("104", key::kDelete), HasSubstr("no se canceló"));
  EXPECT_EQ(pulsa("104", key::kDelete), "La orden 104 se canceló.");

  // A stale busy mark: told with its holder, logged.
  anfitrion->TomaRegistro();
  for (const double ocupada : {1, 0}) {
    pulsa("106", key::kF11);
    EXPECT_EQ(Numero("SELECT ocupado FROM op WHERE op = 106"), ocupada);
  }
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
    Control<TextBox>(kit, "txtAlmacen").SetText("3");
    EXPECT_EQ(Rotulo(kit, "lblAlmacen"), "Taller de repostería");
    EXPECT_THAT(Rotulo(kit, "lblResultado"), HasSubstr("Existencia en el almacén: 33.6 kg"));
    EXPECT_THAT(dice("txtCantidad", "1.5", key::kF7), HasSubstr("kits enteros"));
    EXPECT_THAT(dice("txtCantidad", "2", key::kF7),
                AllOf(HasSubstr("Ensamblado: 2 de MASA-GALLETA"), HasSubstr(": 35.6 kg")));
    EXPECT_THAT(dice("txtCantidad", "0.5", key::kF8), HasSubstr(": 35.1 kg"));
    kit.Press(key::kEscape);
  });
  v.Press(key::kF7);
  EXPECT_TRUE(v.Enabled());
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
  EXPECT_EQ(ToInt32(v.Call("Orden")), 111);

  // A confirmed order opens for viewing; leaving closes what is open, by its own rules.
  Edita(v, "101");
  v.Press(key::kInsert);
  Responde("no,si");
  EXPECT_FALSE(v.Unload(UnloadMode::TitleBar));
  EXPECT_TRUE(v.Unload(UnloadMode::TitleBar));
  EXPECT_THAT(escritorio.Forms(), IsEmpty());
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
  EXPECT_THAT(escritorio.Avisos(), IsEmpty());
  EXPECT_THROW(Barras("a"), HostError);
}

}  // namespace
}  // namespace zuvi::host
