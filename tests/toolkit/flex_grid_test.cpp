#include <gmock/gmock.h>

#include "tests/toolkit/ventana.h"

namespace zuvi::pruebas {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Rejillas : public ConVentana {
 protected:
  Rejillas() {
    Rejilla().SetFocus();
    diario.sucesos.clear();
  }
  FlexGrid& Rejilla() { return *ventana->rejilla; }
  std::string Tras(std::int16_t tecla, std::int16_t con = shift::kNone) {
    ventana->Press(tecla, con);
    return ventana->Celda();
  }
};

TEST_F(Rejillas, MovingTellsTheOldCellThenTheNew) {
  Rejilla().MoveTo(3, 2);
  EXPECT_THAT(Toma(), ElementsAre("rejilla.LeaveCell 1,0", "rejilla.RowColChange 3,2"));
  Rejilla().SetRow(3);
  Rejilla().UserClicked(0, 1);  // headings, and nowhere
  Rejilla().UserClicked(100, 0);
  EsperaError(ErrorNumber::SubscriptOutOfRange, [&] { Rejilla().SetRow(100); });
  EsperaError(ErrorNumber::SubscriptOutOfRange, [&] { Rejilla().SetCol(-1); });
  EXPECT_THAT(Toma(), IsEmpty());
  Rejilla().SetRow(0);  // code may go into the headings
  EXPECT_EQ(ventana->Celda(), "0,2");
  Rejilla().MoveTo(1, 0);
  Toma();
  // A handler may move on. From LeaveCell: it leaves once, and the move that was under way ends where it was
  // going to.
  diario.al_suceder = [&](const std::string& suceso) {
    if (suceso == "rejilla.LeaveCell") Rejilla().MoveTo(7, 0);
  };
  Rejilla().MoveTo(2, 0);
  EXPECT_THAT(Toma(),
              ElementsAre("rejilla.LeaveCell 1,0", "rejilla.RowColChange 7,0", "rejilla.RowColChange 2,0"));
  // From RowColChange, as when a row skips to the next.
  diario.al_suceder = [&](const std::string& suceso) {
    if (suceso == "rejilla.RowColChange" && Rejilla().Col() == 1) Rejilla().SetCol(2);
  };
  EXPECT_EQ(Tras(key::kRight), "2,2");
  // The cell is gone when LeaveCell ends.
  diario.al_suceder = [&](const std::string& suceso) {
    if (suceso == "rejilla.LeaveCell") Rejilla().SetRows(3);
  };
  Rejilla().MoveTo(50, 0);
  EXPECT_EQ(ventana->Celda(), "2,2");
}

TEST_F(Rejillas, KeysPassByHeadingsAndHiddenColumns) {
  Rejilla().SetCols(6);
  Rejilla().SetFixedCols(1);
  for (const std::int32_t oculta : {1, 3, 5}) Rejilla().SetColWidth(oculta, 0);
  Rejilla().MoveTo(1, 2);
  // Ten rows fit, one of them the headings.
  std::string celdas;
  for (const std::int16_t tecla : {key::kLeft, key::kRight, key::kRight, key::kHome, key::kEnd, key::kUp,
                                   key::kDown, key::kPageDown, key::kPageUp, key::kEnter, key::kEscape})
    celdas += Tras(tecla) + " ";
  EXPECT_EQ(celdas, "1,2 1,4 1,4 1,2 1,4 1,4 2,4 11,4 2,4 2,4 2,4 ");
  EXPECT_EQ(Tras(key::kEnd, shift::kCtrl), "99,4");
  EXPECT_EQ(Tras(key::kHome, shift::kCtrl), "1,2");
}

TEST_F(Rejillas, TheCurrentCellIsScrolledIntoView) {
  Rejilla().SetRows(2);
  for (std::int32_t fila = 1; fila < 10'000; ++fila) Rejilla().SetTextMatrix(fila, 0, std::to_string(fila));
  EXPECT_EQ(Rejilla().Rows(), 10'000);
  Rejilla().MoveTo(10, 0);
  EXPECT_EQ(Rejilla().TopRow(), 2);
  EXPECT_THAT(Toma(), ElementsAre("rejilla.LeaveCell 1,0", "rejilla.Scroll", "rejilla.RowColChange 10,0"));
  Tras(key::kEnd, shift::kCtrl);
  EXPECT_EQ(Rejilla().TopRow(), 9991);
  Rejilla().SetTopRow(99'999);
  EXPECT_EQ(Rejilla().TopRow(), 9991);  // no empty room below
  Rejilla().SetTopRow(5000);
  EXPECT_EQ(Rejilla().CellTop(), 9 * FlexGrid::kRowHeight);  // asked for its place it comes back
  Rejilla().SetRows(20);
  EXPECT_EQ(ventana->Celda(), "19,3");
  EXPECT_EQ(Rejilla().TopRow(), 11);

  // Sideways: room for 6000, the fixed column first.
  Rejilla().SetCols(9);
  Rejilla().SetFixedCols(1);
  for (std::int32_t columna = 0; columna < 9; ++columna) Rejilla().SetColWidth(columna, 1000);
  Rejilla().SetColWidth(3, 0);
  EXPECT_EQ(Rejilla().LeftCol(), 1);
  Rejilla().SetCol(7);
  EXPECT_EQ(Rejilla().LeftCol(), 2);
  EXPECT_EQ(Rejilla().CellBounds(), (Rect{5000, 9 * FlexGrid::kRowHeight, 1000, FlexGrid::kRowHeight}));
  Rejilla().SetColWidth(8, 9000);
  Rejilla().SetCol(8);  // wider than all the room
  EXPECT_EQ(Rejilla().CellBounds().left, 1000);
  EXPECT_EQ(Rejilla().CellWidth(), 5000);
  Rejilla().SetCol(1);
  EXPECT_EQ(Rejilla().LeftCol(), 1);
}

TEST_F(Rejillas, OneColumnTakesTheRoomThatIsLeft) {
  Rejilla().SetStretchCol(2);
  Rejilla().SetChrome(200, 300);
  EXPECT_EQ(Rejilla().ShownWidth(2), Dip(400) - 200 - 3 * FlexGrid::kDefaultWidth);
  Rejilla().SetColWidth(0, 5000);
  EXPECT_EQ(Rejilla().ShownWidth(2), FlexGrid::kDefaultWidth);  // never less than its own
  Rejilla().SetColWidth(2, 0);
  EXPECT_EQ(Rejilla().ShownWidth(2), 0);
}

TEST_F(Rejillas, CellsAndRows) {
  Rejilla().SetRows(4);
  for (std::int32_t fila = 0; fila < 4; ++fila) Rejilla().SetTextMatrix(fila, 3, std::to_string(fila));
  Rejilla().RemoveItem(2);
  EXPECT_EQ(Rejilla().Rows(), 4);
  EXPECT_EQ(Rejilla().TextMatrix(2, 3) + "." + Rejilla().TextMatrix(3, 3), "3.");
  for (const std::int32_t fila : {0, 4, -1})
    EsperaError(ErrorNumber::SubscriptOutOfRange, [&] { Rejilla().RemoveItem(fila); });
  EsperaError(ErrorNumber::SubscriptOutOfRange, [&] { Rejilla().TextMatrix(4, 0); });
  EsperaError(ErrorNumber::SubscriptOutOfRange, [&] { Rejilla().SetTextMatrix(5, 4, "x"); });
  EXPECT_EQ(Rejilla().Rows(), 4);
  EsperaError(ErrorNumber::InvalidCall, [&] { Rejilla().SetRows(1); });
  EsperaError(ErrorNumber::InvalidCall, [&] { Rejilla().SetRows(2'000'000'000); });
  EsperaError(ErrorNumber::InvalidCall, [&] { Rejilla().SetCols(0); });
  EsperaError(ErrorNumber::InvalidCall, [&] { Rejilla().SetFixedRows(4); });
  // Columns taken away take their texts along.
  Rejilla().SetCols(2);
  Rejilla().SetCols(4);
  EXPECT_EQ(Rejilla().TextMatrix(2, 3), "");
  // By name.
  std::vector<Value> escrito{6, 1, 2.5}, ancho{1, 333}, celda{6, 1}, columna{1};
  Rejilla().Write(*Rejilla().Find("TextMatrix"), escrito);
  EXPECT_EQ(Rejilla().Rows(), 7);
  EXPECT_EQ(Rejilla().Call("TextMatrix", celda), Value("2.5"));
  Rejilla().Write(*Rejilla().Find("ColWidth"), ancho);
  EXPECT_EQ(ToInt32(Rejilla().Call("ColWidth", columna)), 333);
  Rejilla().MoveTo(6, 1);
  EXPECT_EQ(ToText(Value(ObjectPtr(ventana->rejilla))), "2.5");
}

TEST_F(Rejillas, WithoutRedrawNothingShowsUntilTheEnd) {
  std::int64_t avisos = 0;
  Rejilla().SetPeer(std::make_unique<Contador>(avisos));
  Rejilla().SetRedraw(false);
  for (std::int32_t fila = 1; fila < 50; ++fila) Rejilla().SetTextMatrix(fila, 1, "x");
  Rejilla().MoveTo(40, 1);
  Rejilla().SetColWidth(1, 10);
  EXPECT_EQ(avisos, 0);
  Rejilla().SetRedraw(true);
  EXPECT_GT(avisos, 0);
}

TEST_F(Rejillas, DisabledItIsStillReadFromAButton) {
  for (std::int32_t fila = 1; fila <= 60; ++fila) Rejilla().SetTextMatrix(fila, 0, "x");
  const std::int32_t pagina = Rejilla().VisibleRows();
  const auto tras = [&](std::int16_t tecla, std::int16_t con = shift::kNone) {
    ventana->Press(tecla, con);
    return Rejilla().TopRow();
  };
  ventana->boton->SetFocus();
  EXPECT_EQ(tras(key::kPageDown), 1);  // enabled, it has keys of its own
  Rejilla().SetEnabled(false);
  EXPECT_EQ(tras(key::kPageDown), 1 + pagina);
  EXPECT_EQ(tras(key::kPageDown), 1 + 2 * pagina);
  EXPECT_EQ(tras(key::kPageUp), 1 + pagina);
  EXPECT_EQ(tras(key::kEnd, shift::kCtrl), 61 - pagina);  // the last row that holds something
  EXPECT_EQ(tras(key::kEnd), 61 - pagina);
  EXPECT_EQ(tras(key::kHome, shift::kCtrl), 1);
  ventana->lista->SetFocus();  // has pages of its own
  EXPECT_EQ(tras(key::kPageDown), 1);
  EXPECT_EQ(ventana->Celda(), "1,0");
}

}  // namespace
}  // namespace zuvi::pruebas
