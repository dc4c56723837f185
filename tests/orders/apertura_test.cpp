// Opening and closing: who gets an editor, in which mode, what it shows, and what closing gives back.
#include <set>

#include "tests/orders/editor.h"

namespace zuvi::pruebas {
namespace {

class Apertura : public Editor {};

TEST_F(Apertura, ElEstadoYLaMarcaDecidenElModo) {
  struct Caso {
    const char* nombre;
    Fila cambios;
    const char *mensaje, *modo;
    const char* metodo = "ModificaOp";
  };
  const std::int16_t si = 1;
  const Caso casos[] = {
      {"sin marca", {{"ocupado", Null{}}, {"estado", Null{}}, {"almacen", Null{}}}, "", "MODIFICACION"},
      {"confirmada y ocupada", {{"estado", "CO"}, {"ocupado", si}}, "mensaje 753", "CONSULTA"},
      {"minúsculas", {{"estado", "co"}}, "", "MODIFICACION"},
      {"con blanco", {{"estado", "CO "}}, "", "MODIFICACION"},
      {"propia", {{"usuario", "ADMIN"}, {"ocupado", si}}, "mensaje 755", ""},
      {"con blancos", {{"usuario", "ADMIN "}, {"ocupado", -1}}, "mensaje 756 ADMIN mensaje 76", ""},
      {"ajena", {{"usuario", "  ANA  "}, {"ocupado", 2.0}}, "mensaje 756 ANA mensaje 76", ""},
      {"de nadie", {{"usuario", Null{}}, {"ocupado", true}}, "mensaje 756  mensaje 76", ""},
      {"ver", {{"estado", "CO"}, {"ocupado", si}}, "", "CONSULTA", "ConsultaOp"},
  };
  for (const auto& caso : casos) {
    SCOPED_TRACE(caso.nombre);
    t.mundo.bitacora.clear();
    PonOrden(caso.cambios);
    ASSERT_EQ(Abre(caso.metodo), *caso.modo != 0);
    EXPECT_THAT(t.Lineas("Mensaje("),
                *caso.mensaje ? std::vector{"Mensaje(" + std::string(caso.mensaje) + ", 64, Ambiente)"}
                              : std::vector<std::string>());
    if (!v) continue;
    EXPECT_EQ(v->Modo(), caso.modo);
    EXPECT_EQ(v->Caption(), "Orden de fabricación: 120");
    EXPECT_TRUE(v->Visible() && v->Unload());
  }
  Hecho();
  for (const auto& [metodo, mensaje] : {std::pair("ModificaOp", "754"), std::pair("ConsultaOp", "72")}) {
    EXPECT_FALSE(Abre(metodo, -7));
    EXPECT_EQ(Hecho(), "\nConsulta(SELECT * FROM op WHERE op = -7)\nMensaje(mensaje " + std::string(mensaje) +
                           ", 16, Ambiente)\n");
  }
  t.prod->PonAmbiente(nullptr);
  for (const char* metodo : {"NuevaOp", "ModificaOp", "ConsultaOp"}) EXPECT_FALSE(Abre(metodo));
}

TEST_F(Apertura, CadaModoCargaHabilitaYSueltaLoSuyo) {
  const auto padre = NuevoPadre(t.mundo);
  t.prod->PonParent(padre);
  t.mundo.con_rutas = true;
  const std::string abre =
      "NuevoConstructorSql()\nPonConexion(Conexion)\nContenedorRutas()\nPonRutas(Rutas)\n";
  const std::string lee = "\nConsulta(SELECT * FROM op WHERE op = 120)\n" + abre;
  const std::string lineas = "Consulta(SELECT * FROM oppart WHERE Op = (120))\n";
  const std::string fecha = "DatoFechaA()\nDatoFechaB()\nComponeFecha(45, 931)\n";
  const std::tuple<const char*, std::string, std::string> casos[] = {
      {"NuevaOp",
       "\nConsulta(SELECT * FROM op WHERE op = 0)\n" + abre + fecha + fecha + "ParametrosEstacion()\n", ""},
      {"ModificaOp",
       lee +
           "Limpia()\nTipo(UPDATE)\nAgregaCampo(Op, ocupado, i2 1)\nCondicion(Op = 120)\nGenera(Op)\n"
           "Ejecuta()\n" +
           lineas,
       kSuelta + "120)\n"},
      {"ConsultaOp", lee + lineas, ""}};
  const std::set<std::string> siempre_cerrados = {
      "Timer1",        "txtFields(7)",  "txtFields(8)",  "txtFields(11)", "txtFields(13)",
      "txtFields(15)", "txtFields(16)", "txtFields(17)", "txtFields(18)", "txtFields(19)",
      "txtFields(22)", "txtFields(23)", "txtFields(25)", "txtFields(26)", "txtFields(27)"};
  for (const auto& [metodo, carga, suelta] : casos) {
    SCOPED_TRACE(metodo);
    ASSERT_TRUE(Abre(metodo));
    EXPECT_EQ(Hecho(),
              carga + "ParametrosEstacion()\n" + Proceso("Op001") + "PreparaVentana(frmOp, Ambiente)\n");
    const bool consulta = v->Modo() == "CONSULTA";
    for (const auto& control : v->Controls()) {
      const std::string nombre = Mundo::Texto(ObjectPtr(control));
      const bool rotulo = dynamic_cast<const Label*>(control.get()) != nullptr;
      EXPECT_EQ(control->Enabled(),
                consulta ? rotulo || nombre == "Command1" || nombre == "Command2" || nombre == "AutoResizer1"
                         : nombre != "Command1" && !siempre_cerrados.contains(nombre))
          << nombre;
      if (const auto* combo = dynamic_cast<const MultiCombo*>(control.get())) {
        EXPECT_EQ(Mundo::Texto(combo->Connection()), "Conexion");
      }
    }
    // The user starts at the first field, or at the one button that does something for a viewed order.
    EXPECT_EQ(Foco(), consulta ? "Command1" : "txtFields(0)");
    EXPECT_EQ(v->Call("Parent"), Value(padre));
    // A viewed order that a host lets finish is closed and no more.
    Boton("Command5").SetEnabled(true);
    Boton(consulta ? "Command5" : "Command2").Click();
    EXPECT_TRUE(v->Closed());
    EXPECT_EQ(Hecho(), (consulta ? "\nExisteClave(9, almacen, almacen, Conexion)\n" : "\n") +
                           Proceso("Op006") + suelta + "Padre.SetFocus()\n" + kLibera);
  }
}

TEST_F(Apertura, ElEncabezadoYLasLineasSeMuestran) {
  const auto encabezado = [this] {
    return C<DatePicker>("DTPicker1").Value().Texto() + " " + C<DatePicker>("DTPicker2").Value().Texto() +
           " " + F(14).Text() + " " + C<RichTextBox>("RichTextBox2").Text() + " " +
           Decimal(Casilla("Check1").Value()) + Decimal(Casilla("Check4").Value());
  };
  const auto renglon = [this](std::int32_t fila) {
    std::string texto;
    for (std::int32_t c = 0; c < Rejilla().Cols(); ++c) texto += Celda(fila, c) + "|";
    return texto;
  };
  t.mundo.parametros = {{"Almacen", std::int32_t{2}}, {"Lector", true}};
  Filas lineas{Linea(31), Linea(32, Null{})};
  PonOrden({}, lineas);
  ASSERT_TRUE(Abre("ModificaOp"));
  EXPECT_EQ(encabezado(), "2026-03-01 2026-03-20 9 urge 11");
  EXPECT_EQ(renglon(0), "Artículo|QTY|Precio|Importe|Descripción|No de Op|Presentación|Pr. QTY|");
  EXPECT_EQ(renglon(1), "ART31|2.5|10|| obs|31|||");
  EXPECT_EQ(renglon(2), "ART32|2.5|10|| |32|||");
  EXPECT_EQ(renglon(3), "||||||||");
  EXPECT_EQ(Rejilla().Rows(), 101);
  EXPECT_EQ(std::pair(Rejilla().Row(), Rejilla().Col()), std::pair(1, 0));
  EXPECT_TRUE(Rejilla().Redraw());

  // What is missing, and more lines than the grid has rows.
  t.mundo.parametros = {{"Almacen", std::int32_t{2}}, {"Lector", Null{}}};
  lineas.resize(230, Linea(33));
  PonOrden({{"fechaEntrega", Null{}}, {"automatico", Null{}}, {"observ", Null{}}}, lineas);
  ASSERT_TRUE(Abre("ConsultaOp"));
  EXPECT_EQ(encabezado(), "2026-03-01 2026-03-05 9  00");
  EXPECT_EQ(Rejilla().Rows(), 231);
  EXPECT_EQ(renglon(230), "ART33|2.5|10|| obs|33|||");
  ASSERT_TRUE(Abre("NuevaOp"));
  EXPECT_EQ(encabezado(), "2025-10-01 2025-10-01 2  00");
}

TEST_F(Apertura, CadaControlTieneSuLugarYNombreParaElLectorDePantalla) {
  ASSERT_TRUE(Abre("NuevaOp"));
  for (const std::int32_t mas : {0, Dip(300)}) {
    v->SetClientSize(v->DesignWidth() + mas, v->DesignHeight() + mas);
    std::set<std::string> nombres;
    std::vector<Rect> puestos;
    for (const auto& control : v->Controls()) {
      const Rect& r = control->Bounds();
      if (!control->Visible() || dynamic_cast<const MultiCombo*>(control.get()) || r == Rect{}) continue;
      SCOPED_TRACE(Mundo::Texto(ObjectPtr(control)));
      if (control->TakesFocus()) {
        EXPECT_FALSE(control->AccessibleName().empty());
        EXPECT_TRUE(nombres.insert(control->AccessibleName()).second);
      }
      EXPECT_TRUE(r.left >= 0 && r.top >= 0 && r.width > 0 && r.height > 0 &&
                  r.left + r.width <= v->ClientWidth() && r.top + r.height <= v->ClientHeight());
      for (const Rect& o : puestos)
        EXPECT_FALSE(r.left < o.left + o.width && o.left < r.left + r.width && r.top < o.top + o.height &&
                     o.top < r.top + r.height);
      puestos.push_back(r);
    }
    EXPECT_TRUE(nombres.contains("Dejar como movimiento pendiente"));
  }
}

TEST_F(Apertura, ElRechazoDeLaCargaImpideElPrimerCierre) {
  ASSERT_TRUE(Abre("NuevaOp"));
  const auto otra = v;
  t.mundo.bitacora.clear();
  t.mundo.proceso = [](PeticionProceso& p) {
    // What comes back in the argument does not count, only the member.
    p.bandera = true;
    if (p.clave == "Op001") p.objeto->Put("Rechazado", true);
  };
  ASSERT_TRUE(Abre("ModificaOp"));
  EXPECT_EQ(Veces("PreparaVentana"), 0u);
  // Nor do the windows need who opened them.
  t.prod.reset();
  t.ambiente.reset();
  // The title bar tries once a click, when the click is done with; the timer does not go on by itself.
  EXPECT_FALSE(v->Unload(UnloadMode::TitleBar));
  t.escritorio.Advance(100);
  EXPECT_EQ(Veces("IniciaProceso(Op006"), 1u);
  EXPECT_EQ(Veces(kSuelta), 0u);
  EXPECT_TRUE(v->Visible() && !v->Rechazado());
  EXPECT_FALSE(v->Unload(UnloadMode::TitleBar));
  t.escritorio.Advance(9);
  EXPECT_FALSE(v->Closed());
  t.escritorio.Advance(1);
  EXPECT_TRUE(v->Closed());
  EXPECT_EQ(otra->Call("modo"), Value("ALTA"));
  EXPECT_EQ(Mundo::Texto(otra->Call("RegistroOp")), "Recordset");
  EXPECT_THROW(otra->Put("Costo", 1.0), HostError);
}

}  // namespace
}  // namespace zuvi::pruebas
