// Editing in the grid: when the cell editor opens, what it takes, and when the cell is written back.
#include "tests/orders/captura.h"

namespace zuvi::pruebas {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What saving the cell does to line 71, with the column it sets.
std::string Guarda(std::int32_t entrada, const std::string& columna = "") {
  return "\nLimpia()\nTipo(UPDATE)\nCondicion(id_entrada = " + Decimal(entrada) + ")\n" +
         (columna.empty() ? "" : "AgregaCampo(oppart, " + columna + ")\n") + "Genera(oppart)\nEjecuta()\n";
}

class RejillaDeLineas : public Captura {
 protected:
  /// Three lines, the focus in a cell of the grid.
  void AbreEn(std::int32_t fila, std::int32_t col, const char* metodo = "ModificaOp") {
    AbreCaptura(metodo, 3);
    Rejilla().MoveTo(fila, col);
    if (Rejilla().Enabled()) Rejilla().SetFocus();
    Hecho();
  }
};
ZUVI_AMBOS_ANFITRIONES(RejillaDeLineas);

TEST_P(RejillaDeLineas, SoloSeEditanCantidadYPrecioDeUnaLinea) {
  constexpr std::int16_t kDobleClic = 0;  // in place of a character
  struct Caso {
    const char* metodo;
    std::int32_t fila, col;
    std::int16_t caracter;
    bool abre;
    const char* texto;
  };
  for (const Caso& caso : {
           Caso{"ModificaOp", 1, 1, '7', true, "7"},
           Caso{"ModificaOp", 1, 2, '7', true, "7"},
           Caso{"ModificaOp", 1, 0, '7', false, "7"},
           Caso{"ModificaOp", 1, 3, '7', false, "7"},
           Caso{"ModificaOp", 1, 7, '7', false, "7"},
           // A character that the filter drops counts in the column of texts only.
           Caso{"ModificaOp", 1, 1, 'x', false, ""},
           Caso{"ModificaOp", 1, 6, 'x', false, "x"},
           Caso{"ModificaOp", 1, 1, -4000, false, ""},
           // A line without an article.
           Caso{"ModificaOp", 4, 1, '7', false, ""},
           // Control characters and the blank bring up what the cell holds.
           Caso{"ModificaOp", 1, 1, key::kSpace, true, "2.5"},
           Caso{"ModificaOp", 1, 1, key::kEnter, true, "2.5"},
           Caso{"ModificaOp", 1, 4, key::kSpace, false, " obs"},
           Caso{"ModificaOp", 1, 1, kDobleClic, true, "2.5"},
           Caso{"ModificaOp", 1, 0, kDobleClic, false, "ART71"},
           Caso{"ModificaOp", 1, 4, kDobleClic, false, " obs"},
           Caso{"ModificaOp", 4, 1, kDobleClic, false, ""},
           Caso{"ConsultaOp", 1, 1, '7', false, "7"},
           Caso{"ConsultaOp", 1, 1, key::kSpace, false, "2.5"},
       }) {
    SCOPED_TRACE(Decimal(caso.fila) + " " + Decimal(caso.col) + " " + Decimal(caso.caracter));
    AbreEn(caso.fila, caso.col, caso.metodo);
    TextBox& editor = CajaDeCelda();
    editor.SetText(caso.fila == 4 ? "" : ".");  // left of an edit that was given up
    std::int16_t caracter = caso.caracter;
    if (caracter == kDobleClic)
      Rejilla().DblClick();
    else
      Rejilla().OnKeyPress(caracter);
    EXPECT_EQ(editor.Visible(), caso.abre);
    EXPECT_EQ(editor.Text(), caso.texto);
    EXPECT_EQ(editor.HasFocus(), caso.abre);
    const bool filtra = caso.fila == 1 && (caso.caracter > ' ' || caso.caracter < 0);
    EXPECT_EQ(Veces("FiltroTecla(txtEdit, "), filtra ? 1u : 0u);
    if (caso.abre) {
      EXPECT_EQ(editor.SelStart(), editor.Length());
      const Rect celda = Rejilla().CellBounds();
      EXPECT_EQ(editor.Bounds(), (Rect{celda.left + Rejilla().Left(), celda.top + Rejilla().Top(),
                                       celda.width, celda.height}));
    }
    EXPECT_THAT(Avisos(), IsEmpty());
  }
}

TEST_P(RejillaDeLineas, LasTeclasDelEditorEscribenODescartan) {
  struct Caso {
    std::int32_t fila;
    std::int16_t tecla;
    std::int32_t queda;
    bool escribe;
  };
  for (const Caso& caso : {
           Caso{2, key::kEnter, 2, true},
           Caso{2, key::kEscape, 2, false},
           Caso{2, key::kUp, 1, true},
           Caso{1, key::kUp, 1, true},
           Caso{2, key::kDown, 3, true},
           Caso{100, key::kDown, 100, true},
       }) {
    SCOPED_TRACE(Decimal(caso.fila) + " tecla " + Decimal(caso.tecla));
    AbreEn(caso.fila, 1);
    if (caso.fila == 100) {
      Rejilla().SetTextMatrix(100, 0, "MESA");
      Rejilla().SetTextMatrix(100, 1, "2.5");
      Rejilla().SetTextMatrix(100, 5, "170");
    }
    v->Type("8a.5");
    EXPECT_EQ(CajaDeCelda().Text(), "8.5");
    EXPECT_EQ(Veces("Ejecuta"), 0u);
    Hecho();
    std::int16_t retorno = key::kEnter;
    CajaDeCelda().OnKeyPress(retorno);
    EXPECT_EQ(retorno, 0);
    v->Press(caso.tecla);
    EXPECT_EQ(Celda(caso.fila, 1), caso.escribe ? "8.5" : "2.5");
    EXPECT_EQ(Hecho(), caso.escribe ? Guarda(70 + caso.fila, "cantidad, r8 8.5") : "\n");
    EXPECT_FALSE(CajaDeCelda().Visible());
    EXPECT_EQ(Rejilla().Row(), caso.queda);
    EXPECT_EQ(Rejilla().Col(), 1);
    EXPECT_EQ(Foco(), "fg2");
    EXPECT_THAT(Avisos(), IsEmpty());
  }
}

TEST_P(RejillaDeLineas, UnaEdicionAbiertaSeEscribeAlDejarla) {
  const std::function<void()> salidas[] = {
      [this] { Rejilla().UserClicked(2, 1); },
      [this] { Rejilla().Click(); },
      [this] { C<Button>("Command6").SetFocus(); },
      // The new line's row becomes the current one.
      [this] {
        F(4).SetText("MESA");
        F(5).SetText("1");
        F(14).SetText("9");
        v->Press(key::kF9);
      },
  };
  for (const auto& salida : salidas) {
    AbreEn(1, 1);
    v->Type("8");
    salida();
    EXPECT_EQ(Celda(1, 1), "8");
    EXPECT_EQ(Veces("Condicion(id_entrada = 71)"), 1u);
    EXPECT_FALSE(CajaDeCelda().Visible());
    EXPECT_EQ(CajaDeCelda().Text(), "");
    EXPECT_THAT(Avisos(), IsEmpty());
  }
  // Another program in front ends nothing.
  AbreEn(1, 1);
  v->Type("8");
  v->FocusMoved(nullptr);
  EXPECT_TRUE(CajaDeCelda().Visible());
  EXPECT_EQ(Celda(1, 1), "2.5");
}

TEST_P(RejillaDeLineas, ElEditorSigueASuCelda) {
  AbreEn(1, 0);
  Rejilla().SetFocusRect(1);
  Rejilla().MoveTo(1, 1);
  EXPECT_EQ(Rejilla().FocusRect(), 3);
  v->Type("8");
  const Rect antes = CajaDeCelda().Bounds();
  v->Resized(v->InsideWidth() + Dip(200), v->InsideHeight() + Dip(100));
  EXPECT_EQ(CajaDeCelda().Bounds(), antes);
  Rejilla().SetTopRow(40);
  EXPECT_EQ(CajaDeCelda().Bounds(), antes);
  EXPECT_EQ(Rejilla().TopRow(), 1);
  // Where the window grows smaller the row comes back into view, the editor with it.
  v->Press(key::kEscape);
  const std::int32_t fila = Rejilla().VisibleRows();
  Rejilla().SetTextMatrix(fila, 0, "MESA");
  Rejilla().SetRow(fila);
  v->Type("8");
  v->Resized(v->DesignWidth(), v->DesignHeight());
  EXPECT_LT(Rejilla().VisibleRows(), fila);
  EXPECT_LE(CajaDeCelda().Top() + CajaDeCelda().Height(), Rejilla().Top() + Rejilla().Height());
}

TEST_P(RejillaDeLineas, LasTeclasDeTodaLaVentana) {
  AbreCaptura();
  auto& lector = C<CheckBox>("Check4");
  C<RichTextBox>("RichTextBox2").SetFocus();
  v->Press(key::kF3);
  EXPECT_EQ(lector.Value(), 1);
  EXPECT_EQ(Foco(), "txtFields(4)");
  F(6).SetFocus();
  v->Press(key::kF3);
  EXPECT_EQ(lector.Value(), 0);
  EXPECT_EQ(Foco(), "txtFields(6)");
  F(4).SetEnabled(false);
  v->Press(key::kF3);
  EXPECT_EQ(lector.Value(), 1);
  EXPECT_EQ(Foco(), "txtFields(6)");
  Hecho();
  v->Press(key::kF6);
  EXPECT_EQ(Hecho(), Proceso("OP007").insert(0, "\n"));
  F(4).SetEnabled(true);
  v->Press(key::kF9);
  EXPECT_THAT(t.Lineas("Mensaje"), ElementsAre("Mensaje(mensaje 234, 64, Ambiente)"));
  EXPECT_EQ(Foco(), "txtFields(4)");
  EXPECT_THAT(Avisos(), IsEmpty());
  // In an order that is only viewed nothing can be typed, so nothing is added.
  AbreCaptura("ConsultaOp");
  v->Press(key::kF9);
  EXPECT_THAT(t.Lineas("Mensaje"), ElementsAre("Mensaje(mensaje 234, 64, Ambiente)"));
  EXPECT_EQ(Veces("Limpia"), 0u);
  EXPECT_THAT(Avisos(), IsEmpty());
}

}  // namespace
}  // namespace zuvi::pruebas
