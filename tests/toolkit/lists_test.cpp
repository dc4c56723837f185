#include <gmock/gmock.h>

#include "tests/toolkit/ventana.h"

namespace zuvi::pruebas {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Listas : public ConVentana {
 protected:
  Listas() { Filas().Clear(); }
  ListView& Lista() { return *ventana->lista; }
  ListItems& Filas() { return ventana->lista->Items(); }
  void Llena(int cuantas) {
    for (int i = 1; i <= cuantas; ++i) Filas().Add("k" + std::to_string(i), std::to_string(i));
  }
  std::string Textos() {
    std::string todos;
    for (std::int32_t i = 1; i <= Filas().Count(); ++i) {
      EXPECT_EQ(Filas()(i).Index(), i);
      todos += Filas()(i).Text() + " ";
    }
    return todos;
  }
};

TEST_F(Listas, RowsKeepTheirOrderAndKeys) {
  Llena(6);
  Filas().Add("", "sin clave");
  Filas().Add("", "otra");
  Filas().Remove("k2");
  Filas().Remove(4);  // k5
  Filas().Add("k2", "2b");
  Filas().Insert(1, "k0", "0");
  Filas().Insert(4, "", "medio");
  EXPECT_EQ(Textos(), "0 1 3 medio 4 6 sin clave otra 2b ");
  EXPECT_EQ(Filas()("k2").Index(), 9);
  EXPECT_EQ(Filas().ByKey("k5"), nullptr);
  EXPECT_EQ(Filas().ByKey(""), nullptr);
  EXPECT_STREQ(ErrorDe([&] { Filas().Add("k3", "repetida"); }).what(), "Key is not unique in collection");
  for (const std::int32_t fuera : {0, -1, 10}) EXPECT_THROW(Filas()(fuera), HostError) << fuera;
  EXPECT_THROW(Filas().Remove("k5"), HostError);
  EXPECT_THROW(Filas().Insert(11, "n", "n"), HostError);
  EXPECT_EQ(Filas().Count(), 9);
}

TEST_F(Listas, LoopsOverManyRowsStayLinear) {
  constexpr int kFilas = 3000;
  Llena(kFilas);
  // Forward, taking out every third and asking for each position, with rows added on the way.
  int nuevas = 0;
  for (std::int32_t i = 1; i <= Filas().Count();) {
    const std::int32_t numero = std::stoi(Filas()(i).Text());
    EXPECT_EQ(Filas()(i).Index(), i);
    if (numero % 3 == 0) {
      Filas().Remove(i);
      if (numero % 9 == 0) Filas().Add("", std::to_string(3 * kFilas + 1 + ++nuevas % 2));
    } else {
      ++i;
    }
  }
  // Out of the middle until none is left.
  while (Filas().Count() > 0) Filas().Remove((Filas().Count() + 1) / 2);
  EXPECT_EQ(Filas().ByKey("k2"), nullptr);
  EXPECT_LT(Filas().Visited(), std::size_t{12 * kFilas});
}

TEST_F(Listas, TheSelectedRowGoesWithItsRow) {
  Llena(30);
  for (const std::int32_t fila : {1, 30, 30}) Lista().UserSelected(fila);
  EXPECT_THAT(Toma(), ElementsAre("lista.ItemClick k1", "lista.ItemClick k30"));
  Lista().Move({0, 0, Dip(200), 11 * ListView::kRowHeight});
  for (const std::int16_t tecla : {key::kHome, key::kPageDown, key::kEnd, key::kPageUp, key::kUp})
    Lista().DefaultKey(tecla, 0);
  EXPECT_EQ(Lista().SelectedItem()->Index(), 19);
  EXPECT_EQ(Al([&] { Filas()(5).SetSelected(true); }), Sucesos());  // code tells nobody
  Filas().Remove(1);
  EXPECT_EQ(Lista().SelectedItem()->Key(), "k5");
  Filas().Remove("k5");
  EXPECT_EQ(Lista().SelectedItem(), nullptr);
}

TEST_F(Listas, AllRowsGoOverOrNone) {
  Llena(3);
  Filas().Remove("k2");
  const auto otra = ventana->Add<ListView>("otra");
  ListItems& destino = otra->Items();
  destino.Add("k3", "mismo");
  EXPECT_FALSE(destino.TakeAll(Filas()));  // a key that is there already
  destino.Remove("k3");
  EXPECT_EQ(Textos(), "1 3 ");
  for (const char* suya : {"", "k9"}) {
    if (*suya) destino.Add(suya, suya);
    Lista().Select(Filas().ByKey("k3"));
    ASSERT_TRUE(destino.TakeAll(Filas()));
    EXPECT_EQ(Filas().Count(), 0);
    EXPECT_EQ(Filas().ByKey("k1"), nullptr);
    EXPECT_EQ(Lista().SelectedItem(), nullptr);
    EXPECT_EQ(destino("k3").Index(), destino.Count());
    // The rows belong to their new list.
    destino("k3").SetSelected(true);
    EXPECT_EQ(otra->SelectedItem(), destino.ByKey("k3"));
    for (const char* clave : {"k1", "k3"}) {
      destino.Remove(clave);
      Filas().Add(clave, clave);
    }
  }
  EXPECT_EQ(destino.Count(), 1);
}

TEST_F(Listas, IsUsedByName) {
  const auto lee = [](const ObjectPtr& objeto, const char* nombre, std::vector<Value> args = {}) {
    return objeto->Call(nombre, args);
  };
  const ObjectPtr filas = AObjeto(lee(ventana->lista, "ListItems"));
  const ObjectPtr columnas = AObjeto(lee(ventana->lista, "ColumnHeaders"));
  lee(columnas, "Add", {Empty{}, "c", "Clave", 1000});
  lee(columnas, "Add", {1, "n", "Nombre"});
  EXPECT_EQ(Lista().Columns().All().front().caption, "Nombre");
  const ObjectPtr fila = AObjeto(lee(filas, "Add", {Empty{}, "7", "Pan"}));
  lee(filas, "Add", {1, "8", "Agua"});
  lee(filas, "Add");
  EXPECT_EQ(AEntero32(lee(filas, "Count")), 3);
  // A text is a key, a number a position.
  EXPECT_EQ(AObjeto(lee(filas, "Item", {"7"})), fila);
  std::vector<Value> primera{1}, valor{2, "harina"};
  EXPECT_EQ(ATexto(filas->Read(kDefaultMember, primera)), "Agua");
  fila->Write(*fila->Find("SubItems"), valor);
  EXPECT_EQ(lee(fila, "SubItems", {2}), Value("harina"));
  EXPECT_EQ(lee(fila, "SubItems", {1}), Value(""));
  EXPECT_EQ(Lista().Cell(2, 2), "harina");
  EXPECT_THROW(lee(fila, "SubItems", {0}), HostError);
  EXPECT_THROW(fila->Put("Key", "9"), HostError);
  ventana->lista->Put("SelectedItem", fila);
  EXPECT_EQ(AObjeto(lee(ventana->lista, "SelectedItem")), fila);
  // Kept by a host longer than the window.
  const ObjectPtr resto = AObjeto(lee(filas, "Item", {1}));
  ventana->Unload();
  ventana.reset();
  EXPECT_EQ(ATexto(lee(resto, "Text")), "Agua");
  EXPECT_EQ(AEntero32(lee(resto, "Index")), 0);
  EXPECT_THROW(lee(filas, "Add"), HostError);
}

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
  // The cell is gone when LeaveCell ends.
  diario.al_suceder = [&](const std::string& suceso) {
    if (suceso == "rejilla.LeaveCell") Rejilla().SetRows(3);
  };
  Rejilla().MoveTo(50, 0);
  EXPECT_EQ(ventana->Celda(), "2,0");
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
  EsperaError(ErrorNumber::InvalidCall, [&] { Rejilla().SetCols(0); });
  EsperaError(ErrorNumber::InvalidCall, [&] { Rejilla().SetFixedRows(4); });
  // Columns taken away take their texts along.
  Rejilla().SetCols(2);
  Rejilla().SetCols(4);
  EXPECT_EQ(Rejilla().TextMatrix(2, 3), "");
  // By name.
  std::vector<Value> escrito{6, 1, 2.5};
  Rejilla().Write(*Rejilla().Find("TextMatrix"), escrito);
  EXPECT_EQ(Rejilla().Rows(), 7);
  Rejilla().MoveTo(6, 1);
  EXPECT_EQ(ATexto(Value(ObjectPtr(ventana->rejilla))), "2.5");
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
  EXPECT_EQ(tras(key::kEnd, shift::kCtrl), 61 - pagina);  // the last row that holds something
  EXPECT_EQ(tras(key::kHome, shift::kCtrl), 1);
  ventana->lista->SetFocus();  // has pages of its own
  EXPECT_EQ(tras(key::kPageDown), 1);
  EXPECT_EQ(ventana->Celda(), "1,0");
}

}  // namespace
}  // namespace zuvi::pruebas
