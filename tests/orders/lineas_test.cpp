// Lines: their entry, what the grid shows of them, and editing and deleting them there.
#include "tests/orders/editor.h"

namespace zuvi::pruebas {
namespace {

using testing::ElementsAre;

class Lineas : public Editor {
 protected:
  TextBox& CajaDeCelda() { return C<TextBox>("txtEdit"); }
  /// Three lines, the focus in a cell of the grid.
  void AbreEn(std::int32_t fila, std::int32_t col) {
    Nuevo("ModificaOp", 3);
    Rejilla().MoveTo(fila, col);
    Rejilla().SetFocus();
  }
  /// What saving a cell does to its line, with the column that it sets.
  static std::string Guarda(std::int32_t entrada, const std::string& columna) {
    return "\nLimpia()\nTipo(UPDATE)\nCondicion(id_entrada = " + Decimal(entrada) + ")\n" +
           (columna.empty() ? "" : "AgregaCampo(oppart, " + columna + ")\n") + "Genera(oppart)\nEjecuta()\n";
  }
};

TEST_F(Lineas, LaCapturaIncompletaSeRechazaYElFocoVaAlCampo) {
  t.mundo.claves.insert("prods.articulo=PROHIBIDO");
  t.mundo.restringidos = {"PROHIBIDO"};
  t.mundo.tablas["SELECT ubicacion FROM prods WHERE articulo = 'PROHIBIDO'"] = {{{"ubicacion", Null{}}}};
  for (const auto& [articulo, cantidad, almacen, respuesta, foco] :
       {std::tuple(" ", "1", "9", "234", "txtFields(4)"),
        std::tuple("SILLA", "1", "9", "235", "txtFields(4)"),
        std::tuple("MESA", "", "9", "236", "txtFields(5)"),
        std::tuple("MESA", "-1", "9", "236", "txtFields(5)"),
        std::tuple("PROHIBIDO", "1", "9", "703", "txtFields(4)"),
        std::tuple("MESA", "1", "", "Type mismatch", "Command6"),
        std::tuple("MESA", "1", "40000", "Overflow", "Command6"),
        std::tuple("MESA", "uno", "9", "Type mismatch", "Command6")}) {
    SCOPED_TRACE(std::string(articulo) + " " + cantidad + " " + almacen);
    Nuevo();
    F(14).SetText(almacen);
    Agrega(articulo, cantidad);
    const bool error = foco == std::string("Command6");
    EXPECT_EQ(Veces("Mensaje(mensaje " + std::string(respuesta) + ", 64, Ambiente)"), error ? 0u : 1u);
    EXPECT_EQ(Avisos(), std::vector(error ? 1 : 0, Informe("LlenaPartida", respuesta)));
    EXPECT_EQ(Foco(), foco);
    EXPECT_EQ(F(4).Text() + F(1).Text(), std::string(articulo) + "nota");
    EXPECT_EQ(Veces("Limpia"), 0u);
  }
}

TEST_F(Lineas, UnaLineaSeGuardaYSeMuestra) {
  t.mundo.claves.insert("prods.articulo=MESA ");
  Nuevo("ModificaOp", 1);
  Agrega("MESA ", "1200");
  EXPECT_EQ(Hecho(), R"(
ExisteClave(MESA , prods, articulo, Conexion)
Consulta(SELECT ubicacion FROM prods WHERE articulo = 'MESA')
UbicacionRestringida(MESA, 9, Conexion)
IniciaProceso(Op005, frmOp, Ambiente, , Nothing, True, 0, , Null, , Nothing)
Consulta(SELECT * FROM op WHERE (((op) = 120)))
Limpia()
Tipo(INSERT)
SiguienteFolio(oppart, Conexion, 0, Nothing)
AgregaCampo(oppart, id_entrada, i4 501)
AgregaCampo(oppart, op, i4 120)
AgregaCampo(oppart, tipo_doc, txt OP)
AgregaCampo(oppart, no_referen, txt 120)
AgregaCampo(oppart, articulo, txt MESA )
AgregaCampo(oppart, cantidad, r8 1200)
AgregaCampo(oppart, precio, r8 2.5)
AgregaCampo(oppart, observ, txt nota)
AgregaCampo(oppart, partida, i2 0)
UsuarioActual()
AgregaCampo(oppart, usuario, txt ADMIN)
AgregaCampo(oppart, usufecha, fecha 2026-03-05)
AgregaCampo(oppart, usuhora, txt 14:07:09)
Genera(oppart)
Ejecuta()
)");
  std::string celdas;
  for (std::int32_t col = 0; col < 8; ++col) celdas += Celda(2, col) + "|";
  EXPECT_EQ(celdas, "MESA |1200||3,000.00|nota|501|||");
  EXPECT_EQ(Rejilla().Row(), 2);
  EXPECT_EQ(Foco(), Campo(4));
  EXPECT_EQ(F(1).Text() + F(4).Text() + F(5).Text() + F(6).Text(), "");
  // In a full grid it is saved without being shown.
  Nuevo("ModificaOp", 100);
  Agrega("MESA", "1");
  EXPECT_EQ(Veces("Ejecuta"), 1u);
  EXPECT_EQ(Rejilla().Rows(), 101);
  EXPECT_EQ(F(4).Text(), "");
}

TEST_F(Lineas, UnRechazoDelHostDetieneUnaSolaLinea) {
  Nuevo();
  for (const bool por_bandera : {true, false}) {
    t.mundo.proceso = [por_bandera](PeticionProceso& p) {
      p.bandera = por_bandera;
      if (!por_bandera) p.objeto->Put("Rechazado", true);
    };
    Agrega("MESA", "1");
    EXPECT_EQ(Veces("SiguienteFolio"), 0u);
    t.mundo.proceso = [](PeticionProceso& p) { p.bandera = false; };
    Agrega("MESA", "1");
    EXPECT_EQ(Celda(por_bandera ? 1 : 2, 0), "MESA");
  }
}

TEST_F(Lineas, LaQueNoSePudoGuardarSigueEnSusCampos) {
  // Before a number is taken, when the order cannot be created, and when the line cannot be stored.
  for (const auto& [orden_compra, precio, fallan, procedimiento] :
       {std::tuple("COP", "2.5", "", "NuevaPartida"), std::tuple("", "1.2.3", "", "NuevaPartida"),
        std::tuple("1-2", "2.5", "", "CreaOp"), std::tuple("", "1.234.567", "", "NuevaPartida"),
        std::tuple("", "2.5", "Genera(oppart)", "NuevaPartida")}) {
    SCOPED_TRACE(std::string(orden_compra) + " " + precio);
    Nuevo("NuevaOp");
    F(0).SetText(orden_compra);
    F(4).SetText("MESA"), F(5).SetText("3"), F(6).SetText(precio), F(1).SetText("nota");
    Boton("Command6").SetFocus();
    Hecho();
    t.mundo.gancho = [&](const std::string& llamada) {
      if (*fallan && llamada == fallan) throw HostError("Type mismatch");
    };
    Boton("Command6").Click();
    t.mundo.gancho = nullptr;
    EXPECT_THAT(Avisos(), ElementsAre(testing::StartsWith(Informe(procedimiento))));
    const bool a_tiempo = orden_compra == std::string("COP") || precio == std::string("1.2.3");
    EXPECT_EQ(Veces("SiguienteFolio(Op"), a_tiempo ? 0u : 1u);
    EXPECT_EQ(F(4).Text() + F(5).Text() + F(6).Text() + F(1).Text(), "MESA3" + std::string(precio) + "nota");
    EXPECT_EQ(Foco() + Decimal(F(4).SelLength()), Campo(4) + "4");
    // Mended, it goes in.
    F(0).SetText("7"), F(6).SetText("2");
    v->Press(key::kF9);
    EXPECT_EQ(Celda(1, 0) + F(4).Text() + F(5).Text(), "MESA");
  }
}

TEST_F(Lineas, ConElLectorCadaCodigoAgregaUnaPieza) {
  PonClave("K1", "MESA");
  Nuevo();
  F(4).SetMaxLength(4);  // also the length of the code that the key turns into
  v->Press(key::kF3);
  v->Type("mesa");
  v->Type("K1");
  v->Press(key::kEnter);
  EXPECT_EQ(Foco(), Campo(4));
  // A quantity that was there before is the one that counts, also where it is out of reach.
  F(5).SetText("6");
  F(5).SetEnabled(false);
  v->Type("MESA");
  std::string cantidades;
  for (std::int32_t fila = 1; Celda(fila, 0) == "MESA"; ++fila) cantidades += Celda(fila, 1) + " ";
  EXPECT_EQ(cantidades, "1 1 6 ");
  EXPECT_EQ(Veces("Mensaje"), 0u);
}

TEST_F(Lineas, LaTeclaSuprimirBorraLaLineaActual) {
  // In an order that is only viewed neither a deletion nor an edit begins.
  Nuevo("ConsultaOp", 3);
  KeyEvent suprimir{key::kDelete, shift::kNone};
  KeyPressEvent digito{'7'};
  Rejilla().OnKeyDown(suprimir);
  Rejilla().OnKeyPress(digito);
  EXPECT_EQ(Veces("EjecutaSQL"), 0u);
  EXPECT_FALSE(CajaDeCelda().Visible());
  AbreEn(4, 0);
  v->Press(key::kDelete);
  Rejilla().MoveTo(2, 0);
  v->Press(key::kBack);
  EXPECT_EQ(Hecho(), "\n");
  v->Press(key::kDelete);
  EXPECT_EQ(Hecho(), "\nEjecutaSQL(DELETE FROM oppart WHERE id_entrada = 72)\n");
  EXPECT_EQ(Celda(2, 0) + Celda(3, 0), "ART73");
}

TEST_F(Lineas, SoloSeEditanCantidadYPrecioDeUnaLinea) {
  constexpr std::int16_t kDobleClic = 0;  // in place of a character
  using Caso = std::tuple<int, int, std::int16_t, const char*, bool>;
  for (const auto& [fila, col, pulsado, texto, abre] :
       {Caso{1, 1, '7', "7", true}, Caso{1, 2, '7', "7", true}, Caso{1, 0, '7', "7", false},
        Caso{1, 3, '7', "7", false},
        // A character that the filter drops counts in the column of texts only.
        Caso{1, 1, 'x', "", false}, Caso{1, 6, 'x', "x", false}, Caso{1, 1, -4000, "", false},
        // A row without a line, whatever is pressed there.
        Caso{4, 1, '7', "", false}, Caso{4, 1, kDobleClic, "", false}, Caso{4, 1, key::kEnter, "", false},
        Caso{4, 1, key::kSpace, "", false},
        // Control characters and the blank bring up what the cell holds.
        Caso{1, 1, key::kSpace, "2.5", true}, Caso{1, 1, key::kEnter, "2.5", true},
        Caso{1, 1, kDobleClic, "2.5", true}, Caso{1, 4, kDobleClic, " obs", false}}) {
    SCOPED_TRACE(Decimal(fila) + " " + Decimal(col) + " " + Decimal(pulsado));
    AbreEn(fila, col);
    TextBox& editor = CajaDeCelda();
    editor.SetText(fila == 4 ? "" : ".");  // left of an edit that was given up
    KeyPressEvent tecleado{pulsado};
    if (pulsado == kDobleClic)
      Rejilla().DblClick();
    else
      Rejilla().OnKeyPress(tecleado);
    EXPECT_EQ(editor.Text(), texto);
    EXPECT_EQ(std::pair(editor.Visible(), editor.HasFocus()), std::pair(abre, abre));
    if (!abre) continue;
    EXPECT_EQ(editor.SelStart(), editor.Length());
    const Rect celda = Rejilla().CellBounds();
    EXPECT_EQ(editor.Bounds(),
              (Rect{celda.left + Rejilla().Left(), celda.top + Rejilla().Top(), celda.width, celda.height}));
  }
}

TEST_F(Lineas, LasTeclasDelEditorEscribenODescartan) {
  // The row, the key, and the row after it.
  for (const auto& [fila, tecla, queda] :
       {std::tuple(2, key::kEnter, 2), std::tuple(2, key::kEscape, 2), std::tuple(2, key::kUp, 1),
        std::tuple(1, key::kUp, 1), std::tuple(2, key::kDown, 3), std::tuple(100, key::kDown, 100)}) {
    SCOPED_TRACE(Decimal(fila) + " tecla " + Decimal(tecla));
    AbreEn(fila, 1);
    Rejilla().SetTextMatrix(fila, 0, "MESA");
    Rejilla().SetTextMatrix(fila, 1, "2.5");
    Rejilla().SetTextMatrix(fila, 5, Decimal(70 + fila));
    v->Type("8a.5");
    EXPECT_EQ(CajaDeCelda().Text(), "8.5");
    Hecho();
    const bool escribe = tecla != key::kEscape;
    v->Press(tecla);
    EXPECT_EQ(Celda(fila, 1), escribe ? "8.5" : "2.5");
    EXPECT_EQ(Hecho(), escribe ? Guarda(70 + fila, "cantidad, r8 8.5") : "\n");
    EXPECT_FALSE(CajaDeCelda().Visible());
    EXPECT_EQ(std::pair(Rejilla().Row(), Rejilla().Col()), std::pair(queda, 1));
    EXPECT_EQ(Foco(), "fg2");
  }
}

TEST_F(Lineas, UnaEdicionAbiertaTieneUnaSolaSuerteAlDejarla) {
  // How the cell is left, where the focus is then, and whether that closes the window.
  struct Salida {
    std::function<void()> sale;
    const char* foco;
    bool cierra = false;
  };
  const std::vector<Salida> salidas = {
      {[this] { v->Press(key::kTab); }, "Check1"},
      {[this] { v->Press(key::kTab, shift::kShift); }, "fg2"},
      {[this] { Boton("Command6").SetFocus(); }, "Command6"},
      {[this] { v->Press('C', shift::kAlt); }, "", true},
      {[this] { Boton("Command2").Click(); }, "", true},
      {[this] { v->Unload(UnloadMode::TitleBar), t.escritorio.Advance(10); }, "", true},
      {[this] { v->Call("Unload"); }, "", true},
      // Another program in front when the host closes its windows.
      {[this] { v->FocusMoved(nullptr), v->Unload(); }, "", true},
      {[this] { v->Unload(UnloadMode::System); }, "", true},
  };
  for (std::size_t i = 0; i < salidas.size(); ++i) {
    SCOPED_TRACE(i);
    const auto& [sale, foco, cierra] = salidas[i];
    AbreEn(1, 1);
    v->Type("8");
    sale();
    EXPECT_EQ(Celda(1, 1), "8");
    EXPECT_EQ(Veces("Condicion(id_entrada = 71)"), 1u);
    EXPECT_FALSE(CajaDeCelda().Visible());
    EXPECT_EQ(v->Closed(), cierra);
    if (!cierra) {
      EXPECT_EQ(Foco(), foco);
    }
    // What cannot be written is reported, nothing is sent, and the cell shows what is stored.
    AbreEn(1, 1);
    v->Type("1");
    CajaDeCelda().SetText("1.2.3");
    sale();
    EXPECT_EQ(Avisos(), std::vector{Informe("SalvaCambios", "Type mismatch")});
    EXPECT_EQ(Celda(1, 1), "2.5");
    EXPECT_EQ(Veces("Ejecuta()"), 0u);
    // It keeps the window open, the cell at hand; only the end of the session does not wait.
    const bool sesion = i + 1 == salidas.size();
    EXPECT_EQ(v->Closed(), sesion);
    if (sesion) continue;
    EXPECT_EQ(std::pair(Rejilla().Row(), Rejilla().Col()), std::pair(1, 1));
    v->Press(key::kHome);
    EXPECT_EQ(Rejilla().Col(), 0) << Foco();
    sale();
    EXPECT_EQ(v->Closed(), cierra);
  }
  // By the move of the current cell: a click, and a new line's row.
  for (const bool clic : {true, false}) {
    AbreEn(1, 1);
    v->Type("8");
    if (clic) {
      Rejilla().UserClicked(2, 1);
    } else {
      F(4).SetText("MESA");
      F(5).SetText("1");
      v->Press(key::kF9);
    }
    EXPECT_EQ(Celda(1, 1), "8");
    EXPECT_EQ(Veces("Condicion(id_entrada = 71)"), 1u);
  }
  // Another program in front ends nothing. Where the window grows smaller the row comes back into view, the
  // editor with it, which follows the wheel too.
  AbreEn(1, 1);
  v->Resized(v->DesignWidth(), v->DesignHeight() + Dip(100));
  const std::int32_t fila = Rejilla().VisibleRows();
  Rejilla().SetTextMatrix(fila, 0, "MESA");
  Rejilla().SetRow(fila);
  v->Type("8");
  v->FocusMoved(nullptr);
  EXPECT_TRUE(CajaDeCelda().Visible());
  v->Resized(v->DesignWidth(), v->DesignHeight());
  EXPECT_LT(Rejilla().VisibleRows(), fila);
  EXPECT_LE(CajaDeCelda().Top() + CajaDeCelda().Height(), Rejilla().Top() + Rejilla().Height());
  Rejilla().SetTopRow(40);
  EXPECT_EQ(CajaDeCelda().Top(), Rejilla().CellBounds().top + Rejilla().Top());
}

TEST_F(Lineas, UnaCeldaEditadaEscribeSuColumna) {
  // The editor is opened by code, as no user can in most columns. Column 5 holds the key itself: the new text
  // is the key by then.
  for (const auto& [col, entrada, columna] :
       {std::tuple(0, 72, ""), std::tuple(1, 72, "cantidad, r8 7.5"), std::tuple(2, 72, "cantidad, r8 7.5"),
        std::tuple(4, 72, ""), std::tuple(6, 72, "observ, txt 7.5"), std::tuple(5, 16, "impuesto, r8 16")}) {
    AbreEn(2, col);
    CajaDeCelda().SetVisible(true);
    CajaDeCelda().SetText(col == 5 ? "16" : "7.5");
    Rejilla().MoveTo(1, col);
    EXPECT_EQ(Hecho(), Guarda(entrada, columna)) << col;
  }
  // A row without its key sends nothing, neither when it is edited nor when it is deleted.
  AbreEn(5, 1);
  Rejilla().SetTextMatrix(5, 0, "MESA");
  v->Type("7");
  v->Press(key::kEnter);
  v->Press(key::kDelete);
  EXPECT_EQ(Veces("Limpia") + Veces("EjecutaSQL"), 0u);
}

}  // namespace
}  // namespace zuvi::pruebas
