// The header fields under the keyboard: where Enter, Tab and the function keys lead, what is looked up, what
// is filtered and formatted.
#include "tests/orders/captura.h"

namespace zuvi::pruebas {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Campos : public Captura {
 protected:
  /// An editor in which every field can take the focus.
  void AbreTodo() {
    AbreCaptura();
    C<ControlArray<TextBox>>("txtFields").ForEach([](std::int16_t, TextBox& caja) {
      caja.SetVisible(true);
      caja.SetEnabled(true);
    });
  }
  static std::string Nombre(int indice) { return "txtFields(" + Decimal(indice) + ")"; }
};
ZUVI_AMBOS_ANFITRIONES(Campos);

TEST_P(Campos, EnterTabYF8LlevanAlCampoSiguiente) {
  struct Caso {
    int desde;
    std::int16_t tecla;
    int hasta;  // the same one for nowhere
  };
  std::vector<Caso> casos{
      {0, key::kEnter, 14}, {4, key::kEnter, 5},   {13, key::kEnter, 17}, {14, key::kEnter, 4},
      {16, key::kEnter, 4}, {15, key::kEnter, 16}, {18, key::kEnter, 19}, {28, key::kEnter, 29},
      {29, key::kEnter, 6}, {24, key::kF8, 28},    {28, key::kF8, 29},    {29, key::kF8, 6},
  };
  for (const int desde : {1, 6, 7, 8, 11, 17, 19, 22, 23, 24, 25, 26, 27})
    casos.push_back({desde, key::kEnter, desde});
  for (const int desde : {0, 1, 11, 13, 14, 15, 16, 17, 18, 19, 25, 26, 27})
    casos.push_back({desde, key::kF8, desde});
  for (const int desde : {4, 5, 6, 7, 8, 22, 23}) casos.push_back({desde, key::kF8, 24});
  const std::size_t solos = casos.size();
  for (std::size_t i = 0; i < solos; ++i)
    if (casos[i].tecla == key::kEnter && casos[i].hasta != casos[i].desde)
      casos.push_back({casos[i].desde, key::kTab, casos[i].hasta});

  AbreTodo();
  for (const Caso& caso : casos) {
    SCOPED_TRACE(Nombre(caso.desde) + " tecla " + Decimal(caso.tecla));
    F(caso.desde).SetFocus();
    v->Press(caso.tecla);
    EXPECT_EQ(Foco(), Nombre(caso.hasta));
    if (caso.hasta == caso.desde) continue;
    // A disabled one leaves the focus where it is, Tab included.
    F(caso.hasta).SetEnabled(false);
    F(caso.desde).SetFocus();
    v->Press(caso.tecla);
    EXPECT_EQ(Foco(), caso.desde == 15 ? Nombre(4) : Nombre(caso.desde));
    F(caso.hasta).SetEnabled(true);
  }
  EXPECT_THAT(Avisos(), IsEmpty());

  // Shift+Tab goes back like everywhere, above all from the quantity: it adds no line.
  F(5).SetFocus();
  t.mundo.bitacora.clear();
  v->Press(key::kTab, shift::kShift);
  EXPECT_NE(Foco(), Nombre(5));
  EXPECT_EQ(Veces("Mensaje"), 0u);
  F(5).SetFocus();
  v->Press(key::kTab);
  EXPECT_EQ(Veces("Mensaje"), 1u);
  EXPECT_EQ(Foco(), Nombre(4));
  // F8 in the observations.
  C<RichTextBox>("RichTextBox2").SetFocus();
  v->Press(key::kF8);
  EXPECT_EQ(Foco(), Nombre(4));
  F(4).SetEnabled(false);
  C<RichTextBox>("RichTextBox2").SetFocus();
  v->Press(key::kF8);
  EXPECT_EQ(Foco(), "RichTextBox2");
  EXPECT_THAT(Avisos(), IsEmpty());
}

TEST_P(Campos, F2YElDobleClicBuscanElCampoEnQueSePulsan) {
  const std::map<int, std::string> titulos{{0, "Conceptos de Op al inventario"},
                                           {4, "Articulos"},
                                           {8, "Impuestos por porcentaje"},
                                           {14, "Almacenes"}};
  AbreTodo();
  std::vector<int> indices;
  C<ControlArray<TextBox>>("txtFields").ForEach([&](std::int16_t i, TextBox&) { indices.push_back(i); });
  F(22).SetTag("N");
  for (const int i : indices) {
    const std::string caja = Nombre(i);
    std::string esperado = "\nBusca.PonAmbiente(Ambiente)\nBusca.PonDestino(" + caja + ")\n";
    if (titulos.contains(i)) esperado += "Busca.Muestra(" + titulos.at(i) + ")\n";
    if (i == 22)
      esperado += "Captura.PonAmbiente(Ambiente)\nCaptura.PonDestino(" + caja + ")\nCaptura.Muestra()\n";
    F(i).SetFocus();
    Hecho();
    v->Press(key::kF2);
    const std::string hecho = Hecho();
    EXPECT_TRUE(hecho.ends_with(esperado.substr(1))) << caja << hecho;
    EXPECT_EQ(hecho.find("Muestra") != std::string::npos, i == 22 || titulos.contains(i)) << caja;
    EXPECT_EQ(Foco(), Nombre(4));
    F(i).SetFocus();
    Hecho();
    F(i).DblClick();
    EXPECT_EQ(Hecho(), esperado);
    EXPECT_EQ(Foco(), caja);
  }
  t.mundo.eleccion = "12";
  F(22).DblClick();
  EXPECT_EQ(F(22).Text(), "12");
  EXPECT_THAT(Avisos(), IsEmpty());
}

TEST_P(Campos, LaFlechaAbajoBuscaKitsYAbreListas) {
  AbreCaptura();
  t.mundo.eleccion = "MESA";
  F(4).SetFocus();
  Hecho();
  v->Press(key::kDown);
  EXPECT_EQ(Hecho(),
            "\nBusca.PonAmbiente(Ambiente)\nBusca.PonDestino(txtFields(4))\nBusca.PonFiltro(kit <> "
            "0)\nBusca.Muestra(Articulos)\n");
  EXPECT_EQ(F(4).Text(), "MESA");
  EXPECT_EQ(Foco(), "txtFields(4)");
  EXPECT_EQ(F(4).SelStart(), 0);
  // A choice that fills the field moves on; the lookup of kits comes back to it.
  F(4).SetMaxLength(4);
  F(4).SetText("");
  v->Press(key::kDown);
  EXPECT_EQ(F(4).Text(), "MESA");
  EXPECT_EQ(Foco(), "txtFields(4)");
  Hecho();
  // In any other field the key drops down the list of the lookup around it, where there is one.
  F(14).SetFocus();
  F(14).SetSelStart(1);
  v->Press(key::kDown);
  EXPECT_EQ(F(14).SelStart(), 0);
  EXPECT_EQ(Veces("Busca"), 0u);
  EXPECT_THAT(Avisos(), IsEmpty());
  F(14).Container()->Put("RowSource", "SELECT almacen FROM almacen");
  v->Press(key::kDown);
  EXPECT_THAT(Avisos(), ElementsAre(testing::StartsWith(Informe("txtFields_KeyUp", ""))));
}

TEST_P(Campos, UnCampoLlenoAvanzaSolo) {
  AbreCaptura();
  F(4).SetMaxLength(4);
  F(4).SetFocus();
  v->Type("mes");
  EXPECT_EQ(Foco(), "txtFields(4)");
  v->Type("a");
  EXPECT_EQ(Foco(), "txtFields(5)");
  EXPECT_EQ(F(4).Text(), "MESA");
  F(4).SetFocus();
  F(4).UserEdited("MES", 3, 0);
  EXPECT_EQ(Foco(), "txtFields(4)");
  F(4).UserEdited("SILL", 4, 0);
  EXPECT_EQ(Foco(), "txtFields(5)");

  // Formatting what was typed is not typing: a full quantity adds its line once.
  t.mundo.formato = [](const std::string&, const std::string& texto) { return texto == "15" ? "99" : texto; };
  F(4).SetText("MESA");
  F(5).SetMaxLength(2);
  F(5).SetFocus();
  Hecho();
  v->Type("15");
  EXPECT_EQ(Veces("Ejecuta"), 1u);
  EXPECT_EQ(Veces("Mensaje"), 0u);
  EXPECT_EQ(Celda(1, 1), "15");
  EXPECT_EQ(Celda(2, 1), "");

  // A full text set while the window loads is formatted and goes nowhere.
  v->Hide();
  F(5).SetText("15");
  EXPECT_EQ(F(5).Text(), "99");
  EXPECT_EQ(Veces("Mensaje"), 0u);
  EXPECT_THAT(Avisos(), IsEmpty());
}

TEST_P(Campos, AlEntrarSeSeleccionaYAlSalirSeFormatea) {
  AbreCaptura();
  t.mundo.formato = [](const std::string& etiqueta, const std::string& texto) {
    return "<" + etiqueta + texto + ">";
  };
  F(6).SetText("año 3");
  F(6).SetFocus();
  EXPECT_EQ(F(6).SelStart(), 0);
  EXPECT_EQ(F(6).SelLength(), 5);
  F(0).SetFocus();
  EXPECT_EQ(F(6).Text(), "<" + F(6).Tag() + "año 3>");
  EXPECT_THAT(Avisos(), IsEmpty());
}

TEST_P(Campos, LaEtiquetaEligeElFiltro) {
  AbreCaptura();
  for (const auto& [etiqueta, filtro] :
       {std::pair("U", "FiltroMayusculas"), std::pair("N", "FiltroTecla"), std::pair("D", "FiltroTecla"),
        std::pair("SD", "FiltroTecla"), std::pair("SN", "FiltroTecla"), std::pair("u", ""),
        std::pair("n", ""), std::pair("Sd", ""), std::pair("", ""), std::pair("N ", "")}) {
    F(6).SetTag(etiqueta);
    F(6).SetText("");
    F(6).SetFocus();
    Hecho();
    v->Type("a1");
    const std::string linea = std::string(filtro) + "(txtFields(6), ";
    EXPECT_EQ(Hecho(), *filtro ? "\n" + linea + "97)\n" + linea + "49)\n" : "\n") << etiqueta;
    EXPECT_EQ(F(6).Text(), *filtro == 0 ? "a1" : std::string(etiqueta) == "U" ? "A1" : "1") << etiqueta;
  }
}

TEST_P(Campos, LaClaveSecundariaTraeSuArticulo) {
  PonClave("K1", "MESA");
  PonClave("K2", "NADA");
  struct Caso {
    const char *clave, *articulo, *detalle;
  };
  for (const Caso& caso : {Caso{"K1", "MESA", "previo"}, Caso{"", "ANTES", ""}, Caso{"K'3", "ANTES", ""}}) {
    for (const bool habilitado : {true, false}) {
      AbreCaptura();
      F(4).SetText("ANTES");
      F(1).SetText("antes");
      for (const int i : {25, 26, 28, 29}) F(i).SetText("previo");
      F(24).SetText(caso.clave);
      F(24).SetFocus();
      F(28).SetEnabled(habilitado);
      Hecho();
      v->Press(key::kF8);
      EXPECT_EQ(Foco(), habilitado ? "txtFields(28)" : "txtFields(24)");
      EXPECT_EQ(F(4).Text(), caso.articulo);
      EXPECT_EQ(F(1).Text(), std::string(caso.articulo) == "MESA" ? "Mesa de pino" : "antes");
      for (const int i : {25, 26, 28, 29}) EXPECT_EQ(F(i).Text(), caso.detalle);
      EXPECT_EQ(Veces("Consulta") == 0, *caso.clave == 0);
      EXPECT_THAT(Avisos(), IsEmpty());
    }
  }
  EXPECT_THAT(t.Lineas("Consulta"), ElementsAre("Consulta(SELECT * FROM clavesadd WHERE clave = 'K'3')"));
  // A key whose article is gone.
  AbreCaptura();
  F(4).SetText("ANTES");
  F(24).SetText("K2");
  F(24).SetFocus();
  v->Press(key::kF8);
  EXPECT_THAT(Avisos(), ElementsAre(testing::StartsWith(Informe("TraeSegundaClave", ""))));
  EXPECT_EQ(F(4).Text(), "ANTES");
}

}  // namespace
}  // namespace zuvi::pruebas
