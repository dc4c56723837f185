#include <gmock/gmock.h>

#include "tests/toolkit/ventana.h"

namespace zuvi::pruebas {
namespace {

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
  for (int i = 1; i <= kFilas; i += 2) Filas().Remove("k" + std::to_string(i));
  while (Filas().Count() > kFilas / 4) Filas().Remove(1);
  for (std::int32_t i = Filas().Count(); i > kFilas / 8; --i) Filas().Remove(i);
  EXPECT_EQ(Filas().Count(), kFilas / 8);
  Filas().Clear();
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
  EXPECT_EQ(Filas().Count(), kFilas - kFilas / 3 + nuevas);
  EXPECT_EQ(Filas()(2000).Key(), "k2999");
  // Out of the middle until none is left.
  while (Filas().Count() > 0) Filas().Remove((Filas().Count() + 1) / 2);
  EXPECT_EQ(Filas().ByKey("k2"), nullptr);
  EXPECT_LT(Filas().Visited(), std::size_t{12 * kFilas});
}

TEST_F(Listas, TheSelectedRowGoesWithItsRow) {
  Llena(30);
  for (const std::int32_t fila : {1, 30, 30}) Lista().UserSelected(fila);
  EXPECT_THAT(Toma(), testing::ElementsAre("lista.ItemClick k1", "lista.ItemClick k30"));
  Lista().Move({0, 0, Dip(200), 11 * ListView::kRowHeight});
  for (const std::int16_t tecla : {key::kHome, key::kPageDown, key::kEnd, key::kPageUp, key::kUp})
    Lista().DefaultKey(tecla, 0);
  EXPECT_EQ(Lista().SelectedItem()->Index(), 19);
  EXPECT_EQ(Al([&] { Filas()(5).SetSelected(true); }), Sucesos());  // code tells nobody
  Filas().Remove(1);
  EXPECT_EQ(Lista().SelectedItem()->Key(), "k5");
  Filas().Remove("k5");
  EXPECT_EQ(Lista().SelectedItem(), nullptr);
  // The handler takes the row out that it is told of.
  Lista().OnItemClick = [&](ListItem& item) {
    Filas().Clear();
    EXPECT_EQ(item.Key(), "k7");
    EXPECT_EQ(item.Index(), 0);
  };
  Lista().UserSelected(5);
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
    EXPECT_FALSE(ventana->lista->SelectedItem());
    // Back again, one by one.
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
  const ObjectPtr filas = ToObject(lee(ventana->lista, "ListItems"));
  const ObjectPtr columnas = ToObject(lee(ventana->lista, "ColumnHeaders"));
  lee(columnas, "Add", {Empty{}, "c", "Clave", 1000});
  lee(columnas, "Add", {1, "n", "Nombre"});
  EXPECT_EQ(Lista().Columns().All().front().caption, "Nombre");
  const ObjectPtr fila = ToObject(lee(filas, "Add", {Empty{}, "7", "Pan"}));
  lee(filas, "Add", {1, "8", "Agua"});
  lee(filas, "Add");
  EXPECT_EQ(ToInt32(lee(filas, "Count")), 3);
  // A text is a key, a number a position.
  EXPECT_EQ(ToObject(lee(filas, "Item", {"7"})), fila);
  std::vector<Value> primera{1}, valor{2, "harina"};
  EXPECT_EQ(ToText(filas->Read(kDefaultMember, primera)), "Agua");
  fila->Write(*fila->Find("SubItems"), valor);
  EXPECT_EQ(lee(fila, "SubItems", {2}), Value("harina"));
  EXPECT_EQ(lee(fila, "SubItems", {1}), Value(""));
  EXPECT_EQ(Lista().Cell(2, 2), "harina");
  EXPECT_THROW(lee(fila, "SubItems", {0}), HostError);
  EXPECT_THROW(fila->Put("Key", "9"), HostError);
  ventana->lista->Put("SelectedItem", fila);
  EXPECT_EQ(ToObject(lee(ventana->lista, "SelectedItem")), fila);
  lee(filas, "Remove", {2});
  EXPECT_EQ(ToObject(lee(ventana->lista, "SelectedItem")), nullptr);
  EXPECT_THROW(ventana->lista->Put("SelectedItem", fila), HostError);
  // Kept by a host longer than the window.
  const ObjectPtr resto = ToObject(lee(filas, "Item", {1}));
  ventana->Unload();
  ventana.reset();
  EXPECT_EQ(ToText(lee(resto, "Text")), "Agua");
  EXPECT_EQ(ToInt32(lee(resto, "Index")), 0);
  EXPECT_THROW(lee(filas, "Add"), HostError);
}

}  // namespace
}  // namespace zuvi::pruebas
