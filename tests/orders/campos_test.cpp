// The fields and the window under the keyboard: where Enter, Tab and the function keys lead, what is looked
// up, what is filtered and formatted.
#include "tests/orders/editor.h"

namespace zuvi::pruebas {
namespace {

using testing::ElementsAre;

class Campos : public Editor {
 protected:
  /// An editor in which every field can take the focus.
  void AbreTodo() {
    Nuevo();
    C<ControlArray<TextBox>>("txtFields").ForEach([](std::int16_t, TextBox& caja) {
      caja.SetVisible(true);
      caja.SetEnabled(true);
    });
  }
};

TEST_F(Campos, EnterTabYF8LlevanAlCampoSiguiente) {
  const std::map<int, int> con_enter{{0, 14}, {4, 5}, {5, 4}, {14, 4}, {15, 16}, {28, 29}, {29, 6}};
  const std::map<int, int> con_f8{{4, 24}, {5, 24}, {6, 24}, {7, 24}, {24, 28}, {28, 29}, {29, 6}};
  AbreTodo();
  for (const std::int16_t tecla : {key::kEnter, key::kTab, key::kF8}) {
    for (const int desde : {0, 1, 4, 5, 6, 7, 14, 15, 24, 25, 28, 29}) {
      SCOPED_TRACE(Campo(desde) + " tecla " + Decimal(tecla));
      const auto& lleva = tecla == key::kF8 ? con_f8 : con_enter;
      const auto paso = lleva.find(desde);
      if (paso == lleva.end() && tecla == key::kTab) continue;
      const int hasta = paso == lleva.end() ? desde : paso->second;
      F(desde).SetFocus();
      v->Press(tecla);
      EXPECT_EQ(Foco(), Campo(hasta));
      if (hasta == desde) continue;
      // A disabled one leaves the focus where it is, Tab included.
      F(hasta).SetEnabled(false);
      F(desde).SetFocus();
      v->Press(tecla);
      EXPECT_EQ(Foco(), Campo(desde == 15 ? 4 : desde));
      F(hasta).SetEnabled(true);
    }
  }
  // Shift+Tab goes back like everywhere, above all from the quantity: it adds no line.
  F(5).SetFocus();
  t.mundo.bitacora.clear();
  v->Press(key::kTab, shift::kShift);
  EXPECT_NE(Foco(), Campo(5));
  EXPECT_EQ(Veces("Mensaje"), 0u);
}

TEST_F(Campos, F2YElDobleClicBuscanElCampoEnQueSePulsan) {
  AbreTodo();
  F(22).SetTag("N");
  t.mundo.eleccion = "12";
  for (const auto& [i, ventana] :
       {std::pair(0, "Busca.Muestra(Conceptos de Op al inventario)\n"),
        std::pair(4, "Busca.Muestra(Articulos)\n"), std::pair(8, "Busca.Muestra(Impuestos por porcentaje)\n"),
        std::pair(14, "Busca.Muestra(Almacenes)\n"), std::pair(5, ""), std::pair(15, ""),
        std::pair(22, "Captura.Muestra()\n")}) {
    F(i).SetFocus();
    Hecho();
    v->Press(key::kF2);
    EXPECT_EQ(Foco(), Campo(4));
    const std::string con_f2 = Hecho();
    F(i).SetFocus();
    Hecho();
    F(i).DblClick();
    EXPECT_EQ(Foco(), Campo(i));
    const std::string hecho = Hecho();
    EXPECT_TRUE(con_f2.ends_with(hecho)) << con_f2;
    EXPECT_TRUE(hecho.starts_with("\nBusca.PonAmbiente(Ambiente)\nBusca.PonDestino(" + Campo(i) + ")\n"));
    EXPECT_TRUE(hecho.ends_with(*ventana ? ventana : ".PonDestino(" + Campo(i) + ")\n")) << hecho;
  }
  EXPECT_EQ(F(22).Text(), "12");
}

TEST_F(Campos, LaFlechaAbajoBuscaKitsYAbreListas) {
  Nuevo();
  // A choice that fills the field moves on; the lookup of kits comes back to it.
  t.mundo.eleccion = "MESA";
  F(4).SetMaxLength(4);
  F(4).SetFocus();
  v->Press(key::kDown);
  EXPECT_EQ(Veces("Busca.PonFiltro(kit <> 0)") + Veces("Busca.Muestra(Articulos)"), 2u);
  EXPECT_EQ(F(4).Text(), "MESA");
  EXPECT_EQ(Foco(), Campo(4));
  // In any other field the key drops down the list of the lookup around it, where there is one.
  F(14).SetFocus();
  v->Press(key::kDown);
  EXPECT_THAT(Avisos(), testing::IsEmpty());
  F(14).Container()->Put("RowSource", "SELECT almacen FROM almacen");
  v->Press(key::kDown);
  EXPECT_THAT(Avisos(), ElementsAre(testing::StartsWith(Informe("txtFields_KeyUp"))));
}

TEST_F(Campos, UnCampoLlenoAvanzaSolo) {
  Nuevo();
  F(4).SetMaxLength(4);
  F(4).SetFocus();
  v->Type("mes");
  EXPECT_EQ(Foco(), Campo(4));
  v->Type("a");
  EXPECT_EQ(Foco(), Campo(5));
  // Formatting what was typed is not typing: a full quantity adds its line once.
  t.mundo.formato = [](const std::string& etiqueta, const std::string& texto) {
    return texto == "15" ? "99" : "<" + etiqueta + texto + ">";
  };
  F(5).SetMaxLength(2);
  v->Type("15");
  EXPECT_EQ(Veces("Ejecuta"), 1u);
  EXPECT_EQ(Celda(1, 1) + Celda(2, 1), "15");
  // A field is selected when it is entered, and formatted when it is left.
  F(6).SetText("año 3");
  F(6).SetFocus();
  EXPECT_EQ(std::pair(F(6).SelStart(), F(6).SelLength()), std::pair(0, 5));
  F(0).SetFocus();
  EXPECT_EQ(F(6).Text(), "<SDaño 3>");
  // A full text set while the window loads is formatted and goes nowhere.
  v->Hide();
  F(5).SetText("15");
  EXPECT_EQ(F(5).Text(), "99");
  EXPECT_EQ(Veces("Mensaje"), 0u);
}

TEST_F(Campos, LaEtiquetaEligeElFiltro) {
  Nuevo();
  for (const std::string etiqueta : {"U", "N", "D", "SD", "SN", "u", "N ", ""}) {
    F(6).SetTag(etiqueta);
    F(6).SetText("");
    F(6).SetFocus();
    v->Type("a1");
    const bool filtra = etiqueta == "N" || etiqueta == "D" || etiqueta == "SD" || etiqueta == "SN";
    EXPECT_EQ(F(6).Text(), etiqueta == "U" ? "A1" : filtra ? "1" : "a1") << etiqueta;
  }
}

TEST_F(Campos, ElCodigoOLaClaveTraenElArticulo) {
  PonClave("K1", "MESA");
  PonClave("K2", "NADA");
  using Caso = std::tuple<int, const char*, const char*, std::size_t>;
  for (const auto& [campo, escrito, quedan, consultas] :
       {Caso{4, "MESA", "MESA|Mesa de pino|PZA||previo|previo|previo|previo|", 1},
        Caso{4, "K1", "MESA|Mesa de pino|PZA|K1|Caja||Caja|PZA|", 3},
        // A key whose article is gone, and a code that is neither.
        Caso{4, "K2", "NADA|antes||K2|Caja||Caja||", 3},
        Caso{4, "K3", "K3|antes|||previo|previo|previo|previo|", 2},
        Caso{24, "K1", "MESA|Mesa de pino|PZA|K1|previo|previo|previo|previo|", 3},
        Caso{24, "", "ANTES|antes|||||||", 0}, Caso{24, "K'3", "ANTES|antes||K'3|||||", 1},
        Caso{24, "K2", "ANTES|antes||K2|previo|previo|previo|previo|", 2}}) {
    SCOPED_TRACE(Campo(campo) + " " + escrito);
    Nuevo();
    F(4).SetText("ANTES");
    F(1).SetText("antes");
    for (const int i : {25, 26, 28, 29}) F(i).SetText("previo");
    F(campo).SetFocus();
    F(campo).SetText(escrito);
    Hecho();
    v->Press(campo == 4 ? key::kEnter : key::kF8);
    EXPECT_EQ(Foco(), Campo(campo == 4 ? 5 : 28));
    std::string campos;
    for (const int i : {4, 1, 27, 24, 25, 26, 28, 29}) campos += F(i).Text() + "|";
    EXPECT_EQ(campos, quedan);
    EXPECT_EQ(Veces("Consulta"), consultas);
  }
  // The last one's article is gone.
  EXPECT_THAT(Avisos(), ElementsAre(testing::StartsWith(Informe("TraeSegundaClave"))));
}

TEST_F(Campos, TipoDeCambioYVendedor) {
  auto& tablas = t.mundo.tablas;
  tablas["SELECT * FROM monedas WHERE moneda = 'USD'"] = {{{"Tc", 17.25}, {"Base", std::int16_t{0}}}};
  tablas["SELECT * FROM monedas WHERE moneda = 'MXN'"] = {{{"Tc", 1.0}, {"Base", std::int16_t{1}}}};
  tablas["SELECT * FROM vends WHERE vend = 'V1'"] = {{{"Nombre", "Ana"}}};
  AbreTodo();
  F(1).SetText("V1");
  // A salesperson is looked up only with a number in field 0.
  for (const auto& [moneda, tc, concepto, nombre] :
       {std::tuple("USD", "17.25", "", ""), std::tuple("?", "", "1", "Ana"),
        std::tuple("MXN", "1", " ", "")}) {
    F(15).SetText(moneda);
    F(0).SetText(concepto);
    v->Call("PonTC");
    EXPECT_EQ(F(16).Text(), tc);
    EXPECT_EQ(F(16).Enabled(), moneda != std::string("MXN"));
    EXPECT_EQ(ToText(v->Call("TraeVends")), nombre);
  }
}

}  // namespace
}  // namespace zuvi::pruebas
