// Opening an order: who gets an editor, in which mode, and what it shows.
#include "tests/orders/editor.h"

namespace zuvi::pruebas {
namespace {

class Apertura : public Editor {};
ZUVI_AMBOS_ANFITRIONES(Apertura);

TEST_P(Apertura, ElEstadoYLaMarcaDecidenElModo) {
  struct Caso {
    const char* nombre;
    Fila cambios;
    const char *mensaje, *modo;
    const char* metodo = "ModificaOp";
  };
  const std::int16_t si = 1;
  const Caso casos[] = {
      {"libre", {}, "", "MODIFICACION"},
      {"sin marca", {{"ocupado", Null{}}, {"estado", Null{}}}, "", "MODIFICACION"},
      {"sin datos", {{"f_emision", Null{}}, {"almacen", Null{}}}, "", "MODIFICACION"},
      {"confirmada", {{"estado", "CO"}}, "mensaje 753, 64", "CONSULTA"},
      {"confirmada y ocupada", {{"estado", "CO"}, {"ocupado", si}}, "mensaje 753, 64", "CONSULTA"},
      {"minúsculas", {{"estado", "co"}}, "", "MODIFICACION"},
      {"con blanco", {{"estado", "CO "}}, "", "MODIFICACION"},
      {"propia", {{"usuario", "ADMIN"}, {"ocupado", si}}, "mensaje 755, 64", ""},
      {"con blancos", {{"usuario", "ADMIN "}, {"ocupado", -1}}, "mensaje 756 ADMIN mensaje 76, 64", ""},
      {"ajena", {{"usuario", "  ANA  "}, {"ocupado", 2.0}}, "mensaje 756 ANA mensaje 76, 64", ""},
      {"de nadie", {{"usuario", Null{}}, {"ocupado", true}}, "mensaje 756  mensaje 76, 64", ""},
      {"ver", {{"estado", "CO"}}, "", "CONSULTA", "ConsultaOp"},
      {"ver ocupada", {{"ocupado", si}}, "", "CONSULTA", "ConsultaOp"},
  };
  for (const auto& caso : casos) {
    SCOPED_TRACE(caso.nombre);
    PonOrden(caso.cambios);
    const auto ventana = Abre(caso.metodo);
    const auto mensajes = t.Lineas("Mensaje(");
    EXPECT_EQ(mensajes, *caso.mensaje ? std::vector{"Mensaje(" + std::string(caso.mensaje) + ", Ambiente)"}
                                      : std::vector<std::string>());
    t.mundo.bitacora.clear();
    ASSERT_EQ(ventana != nullptr, *caso.modo != 0);
    if (!ventana) continue;
    EXPECT_TRUE(ventana->Visible());
    EXPECT_EQ(ventana->Modo(), caso.modo);
    EXPECT_EQ(ventana->Op(), 120);
    EXPECT_EQ(ventana->Caption(), "Orden de fabricación: 120");
    EXPECT_TRUE(ventana->Unload());
    t.mundo.bitacora.clear();
  }
  EXPECT_TRUE(t.escritorio.Avisos().empty());
}

TEST_P(Apertura, LoQueNoExisteSeDiceYNoSeAbre) {
  EXPECT_EQ(Abre("ModificaOp", 7), nullptr);
  EXPECT_EQ(Hecho(), "\nConsulta(SELECT * FROM op WHERE op = 7)\nMensaje(mensaje 754, 16, Ambiente)\n");
  EXPECT_EQ(Abre("ConsultaOp", -7), nullptr);
  EXPECT_EQ(Hecho(), "\nConsulta(SELECT * FROM op WHERE op = -7)\nMensaje(mensaje 72, 16, Ambiente)\n");
  t.prod->PonAmbiente(nullptr);
  for (const char* metodo : {"NuevaOp", "ModificaOp", "ConsultaOp"}) EXPECT_EQ(Abre(metodo), nullptr);
  EXPECT_TRUE(Avisos().empty());
}

TEST_P(Apertura, CadaModoCargaConSusLlamadasEnOrden) {
  const std::string abre = "NuevoConstructorSql()\nPonConexion(Conexion)\nContenedorRutas()\n";
  const std::string lee = "\nConsulta(SELECT * FROM op WHERE op = 120)\n";
  const std::string lineas = "Consulta(SELECT * FROM oppart WHERE Op = (120))\n";
  const std::string marca =
      "Limpia()\nTipo(UPDATE)\nAgregaCampo(Op, ocupado, i2 1)\nCondicion(Op = 120)\nGenera(Op)\nEjecuta()\n";
  const std::string fecha = "DatoFechaA()\nDatoFechaB()\nComponeFecha(45, 931)\n";
  const std::string termina =
      "ParametrosEstacion()\n" + Proceso("Op001") + "PreparaVentana(frmOp, Ambiente)\n";
  PonOrden();
  const auto alta = Abre("NuevaOp");
  EXPECT_EQ(Hecho(), "\nConsulta(SELECT * FROM op WHERE op = 0)\n" + abre + fecha + fecha +
                         "ParametrosEstacion()\n" + termina);
  const auto modificacion = Abre("ModificaOp");
  EXPECT_EQ(Hecho(), lee + abre + marca + lineas + termina);
  t.mundo.con_rutas = true;
  const auto consulta = Abre("ConsultaOp");
  EXPECT_EQ(Hecho(), lee + abre + "PonRutas(Rutas)\n" + lineas + termina);

  ASSERT_EQ(t.escritorio.Forms().size(), 3u);
  EXPECT_EQ(Control<DatePicker>(*alta, "DTPicker1").Value(), Fecha::DesdeSerie(45931));
  EXPECT_EQ(Control<DatePicker>(*alta, "DTPicker2").Value(), Fecha::DesdeSerie(45931));
  EXPECT_EQ(Campo(*alta, 14).Text(), "2");
}

TEST_P(Apertura, ElEncabezadoYLasLineasSeMuestran) {
  t.mundo.parametros = {{"Almacen", std::int32_t{2}}, {"Lector", true}};
  PonOrden({}, {Linea(31), Linea(32, Null{})});
  const auto ventana = Abre("ModificaOp");
  EXPECT_EQ(Campo(*ventana, 14).Text(), "9");
  EXPECT_EQ(Control<DatePicker>(*ventana, "DTPicker1").Value().Texto(), "2026-03-01");
  EXPECT_EQ(Control<DatePicker>(*ventana, "DTPicker2").Value().Texto(), "2026-03-20");
  EXPECT_EQ(Control<RichTextBox>(*ventana, "RichTextBox2").Text(), "urge");
  EXPECT_EQ(Control<CheckBox>(*ventana, "Check1").Value(), 1);
  EXPECT_EQ(Control<CheckBox>(*ventana, "Check4").Value(), 1);

  const auto& rejilla = Control<FlexGrid>(*ventana, "fg2");
  const auto renglon = [&](std::int32_t fila) {
    std::string texto;
    for (std::int32_t c = 0; c < rejilla.Cols(); ++c) texto += rejilla.TextMatrix(fila, c) + "|";
    return texto;
  };
  EXPECT_EQ(renglon(0), "Artículo|QTY|Precio|Importe|Descripción|No de Op|Presentación|Pr. QTY|");
  EXPECT_EQ(renglon(1), "ART31|2.5|10|| obs|31|||");
  EXPECT_EQ(renglon(2), "ART32|2.5|10|| |32|||");
  EXPECT_EQ(renglon(3), "||||||||");
  EXPECT_EQ(rejilla.Rows(), 101);
  EXPECT_EQ(rejilla.FixedRows(), 1);
  EXPECT_EQ(rejilla.FixedCols(), 0);
  EXPECT_EQ(std::pair(rejilla.Row(), rejilla.Col()), std::pair(1, 0));
  EXPECT_TRUE(rejilla.Redraw());
  const std::int32_t anchos[] = {1800, 1800, 0, 0, 6000, 0, 0, 0};
  for (std::int32_t c = 0; c < 8; ++c) EXPECT_EQ(rejilla.ColWidth(c), anchos[c]) << c;

  PonOrden({{"fechaEntrega", Null{}}, {"automatico", Null{}}, {"observ", Null{}}});
  t.mundo.parametros = {{"Almacen", std::int32_t{2}}, {"Lector", Null{}}};
  const auto vacia = Abre("ConsultaOp");
  EXPECT_EQ(Control<DatePicker>(*vacia, "DTPicker2").Value().Texto(), "2026-03-05");
  EXPECT_EQ(Control<CheckBox>(*vacia, "Check1").Value(), 0);
  EXPECT_EQ(Control<CheckBox>(*vacia, "Check4").Value(), 0);
  EXPECT_EQ(Control<RichTextBox>(*vacia, "RichTextBox2").Text(), "");
}

TEST_P(Apertura, UnaOrdenLargaHaceCrecerLaRejilla) {
  for (const std::int32_t cuantas : {0, 100, 101, 230}) {
    Filas lineas;
    for (std::int32_t i = 1; i <= cuantas; ++i) lineas.push_back(Linea(i));
    PonOrden({}, lineas);
    const auto ventana = Abre("ConsultaOp");
    ASSERT_TRUE(ventana);
    const auto& rejilla = Control<FlexGrid>(*ventana, "fg2");
    EXPECT_EQ(rejilla.Rows(), std::max(101, cuantas + 1));
    EXPECT_EQ(rejilla.TextMatrix(cuantas, 5), cuantas ? Decimal(cuantas) : "No de Op");
    EXPECT_EQ(rejilla.Row(), 1);
  }
}

TEST_P(Apertura, CadaModoHabilitaLoSuyo) {
  PonOrden();
  const std::set<std::string> siempre_cerrados = {
      "Timer1",        "txtFields(7)",  "txtFields(8)",  "txtFields(11)", "txtFields(13)",
      "txtFields(15)", "txtFields(16)", "txtFields(17)", "txtFields(18)", "txtFields(19)",
      "txtFields(22)", "txtFields(23)", "txtFields(25)", "txtFields(26)", "txtFields(27)"};
  for (const char* metodo : {"NuevaOp", "ModificaOp", "ConsultaOp"}) {
    SCOPED_TRACE(metodo);
    const auto ventana = Abre(metodo);
    const bool consulta = ventana->Modo() == "CONSULTA";
    for (const auto& control : ventana->Controls()) {
      const std::string nombre = Mundo::Texto(ObjectPtr(control));
      const bool rotulo = dynamic_cast<const Label*>(control.get()) != nullptr;
      const bool esperado =
          consulta ? rotulo || nombre == "Command1" || nombre == "Command2" || nombre == "AutoResizer1"
                   : nombre != "Command1" && !siempre_cerrados.contains(nombre);
      EXPECT_EQ(control->Enabled(), esperado) << nombre;
      if (const auto* combo = dynamic_cast<const MultiCombo*>(control.get())) {
        EXPECT_EQ(Mundo::Texto(combo->Connection()), "Conexion");
        EXPECT_EQ(combo->Box()->Container().get(), combo);
      }
    }
    // The user starts at the first field, or at the one button that does something for a viewed order.
    ASSERT_TRUE(ventana->ActiveControl());
    EXPECT_EQ(Mundo::Texto(ventana->ActiveControlObject()), consulta ? "Command1" : "txtFields(0)");
  }
}

TEST_P(Apertura, CadaControlTieneSuLugarYNombreParaElLectorDePantalla) {
  t.mundo.proceso = [](PeticionProceso& p) {
    Value articulo = std::int32_t{4};
    const ObjectPtr caja = AObjeto(p.objeto->Call("txtFields", std::span(&articulo, 1)));
    AObjeto(caja->Call("Container"))->Put("RowSource", "SELECT articulo FROM prods");
  };
  const auto ventana = Abre("NuevaOp");
  for (const std::int32_t ancho : {ventana->DesignWidth(), ventana->DesignWidth() + Dip(300)}) {
    ventana->SetInside(ancho, ventana->DesignHeight() + Dip(200));
    std::set<std::string> nombres;
    std::vector<zuvi::Control*> puestos;
    for (const auto& control : ventana->Controls()) {
      const Rect& r = control->Bounds();
      const auto* combo = dynamic_cast<const MultiCombo*>(control.get());
      if (!control->Visible() || (combo && combo->RowSource().empty()) || r == Rect{}) continue;
      const std::string nombre = Mundo::Texto(ObjectPtr(control));
      if (control->TakesFocus()) {
        EXPECT_FALSE(control->AccessibleName().empty()) << nombre;
        EXPECT_TRUE(nombres.insert(control->AccessibleName()).second) << nombre;
      }
      EXPECT_TRUE(r.left >= 0 && r.top >= 0 && r.width > 0 && r.height > 0 &&
                  r.left + r.width <= ventana->InsideWidth() && r.top + r.height <= ventana->InsideHeight())
          << nombre;
      for (zuvi::Control* otro : puestos) {
        const Rect& o = otro->Bounds();
        // Of a lookup only the arrow is there.
        const std::int32_t izquierda = combo ? r.left + r.width - MultiCombo::kArrowWidth : r.left;
        const auto* otro_combo = dynamic_cast<const MultiCombo*>(otro);
        const std::int32_t otra = otro_combo ? o.left + o.width - MultiCombo::kArrowWidth : o.left;
        EXPECT_FALSE(izquierda < o.left + o.width && otra < r.left + r.width && r.top < o.top + o.height &&
                     o.top < r.top + r.height)
            << nombre << " sobre " << Mundo::Texto(otro->shared_from_this());
      }
      puestos.push_back(control.get());
    }
  }
  EXPECT_EQ(Control<CheckBox>(*ventana, "Check3").AccessibleName(), "Dejar como movimiento pendiente");
  EXPECT_EQ(Control<CheckBox>(*ventana, "Check2").AccessibleName(), "Imprimir movimiento.");
}

TEST_P(Apertura, VariosEditoresVivenSinElComponente) {
  PonOrden();
  const auto uno = Abre("NuevaOp");
  const auto otro = Abre("ModificaOp");
  t.prod.reset();
  t.ambiente.reset();
  EXPECT_EQ(uno->Call("modo"), Value("ALTA"));
  EXPECT_EQ(otro->Call("OP"), Value(std::int32_t{120}));
  EXPECT_EQ(otro->Call("Costo"), Value(0.0));
  EXPECT_EQ(Mundo::Texto(otro->Call("RegistroOp")), "Recordset");
  otro->Put("Modo", "CONSULTA");
  EXPECT_EQ(otro->Modo(), "CONSULTA");
  EXPECT_THROW(otro->Put("Costo", 1.0), HostError);
  EXPECT_THROW(otro->Call("NoExiste"), HostError);
  EXPECT_TRUE(uno->Unload());
  EXPECT_TRUE(otro->Unload());
  EXPECT_TRUE(t.escritorio.Forms().empty());
}

}  // namespace
}  // namespace zuvi::pruebas
