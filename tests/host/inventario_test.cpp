// Inventory through the component: what movements are posted, what they cost, and that no centavo is lost.
#include <map>
#include <random>

#include "host/documento_inventario_host.h"
#include "host/valuacion.h"
#include "tests/host/tienda.h"

namespace zuvi::host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Inventario : public testing::TestWithParam<std::string> {
 protected:
  Tienda tienda{GetParam()};
};
ZUVI_EN_CADA_BASE(Inventario);

TEST_P(Inventario, ElValorSeConservaHastaElUltimoCentavoEnKitsAlAzar) {
  const int kits = GetParam() == ":memory:" ? 1000 : 60;
  std::mt19937 azar(20240229);
  const auto entre = [&](int a, int b) { return std::uniform_int_distribution<int>(a, b)(azar); };
  std::vector<std::string> articulos;
  std::map<std::string, int> nivel;  // how deep kits stand in kits
  std::vector<std::vector<Value>> existencias;
  for (int i = 0; i < 40; ++i) {
    articulos.push_back("M" + std::to_string(i));
    const double costo = entre(1, 5'000'000) / 10'000.0;
    tienda.Prod(articulos.back(), costo);
    const double cantidad = entre(0, 900'000'000) / 1e6;
    existencias.push_back(
        {articulos.back(), entre(1, 3), cantidad, static_cast<double>(ACentavos(cantidad * costo)), 0});
  }
  InsertaFilas(tienda.Base(), "existencias", "(articulo, almacen, cantidad, valor, movimiento)", existencias);

  const double total = tienda.ValorTotal();
  for (int i = 0; i < kits; ++i) {
    const std::string kit = "K" + std::to_string(i);
    std::vector<Parte> partes;
    std::string lista = "'" + kit + "'";
    for (int n = entre(1, 6); n > 0; --n) {
      // Later kits are made of earlier ones; half of the quantities have all six decimals.
      std::string parte;
      do {
        parte = articulos[static_cast<std::size_t>(entre(0, static_cast<int>(articulos.size()) - 1))];
      } while (nivel[parte] == 4);
      nivel[kit] = std::max(nivel[kit], nivel[parte] + 1);
      partes.push_back({parte, entre(0, 1) ? entre(1, 9'999'999) / 1e6 : entre(1, 40) / 4.0, entre(1, 3)});
      lista += ",'" + parte + "'";
    }
    constexpr std::array kMinimos{1.0, 2.0, 3.0, 4.0, 7.0, 12.0, 0.5, 1.25};
    tienda.Prod(kit, 0);
    tienda.Kit(kit, kMinimos[static_cast<std::size_t>(entre(0, 7))], partes);
    articulos.push_back(kit);

    const auto estado = [&] {
      return tienda.Filas(
          "SELECT existencias.articulo, almacen, cantidad, valor, costo FROM existencias INNER JOIN prods "
          "USING(articulo) WHERE (cantidad <> 0 OR valor <> 0) AND articulo IN (" +
              lista + ") ORDER BY existencias.articulo, almacen",
          5);
    };
    const std::int32_t almacen = entre(1, 3), cantidad = entre(1, 9), orden = entre(0, 1) * (5000 + i);
    const auto antes = estado();
    tienda.produccion->Ensamble(kit, almacen, cantidad, orden);
    ASSERT_EQ(tienda.ValorTotal(), total) << kit;
    ASSERT_NE(estado(), antes) << kit;
    tienda.produccion->Desensamble(kit, cantidad, almacen, orden);
    ASSERT_EQ(estado(), antes) << kit;
    ASSERT_EQ(tienda.ValorTotal(), total) << kit;
    tienda.produccion->Ensamble(kit, almacen, cantidad, orden);
    ASSERT_THAT(tienda.escritorio.Avisos(), IsEmpty());
  }
}

TEST_P(Inventario, ElCostoPromedioSigueALasEntradasYNoAlRedondeo) {
  tienda.Prod("P", 0);
  const auto documento = tienda.Nuevo<DocumentoInventario>();
  const auto mueve = [&](const char* tipo, double almacen, double cantidad, double costo) {
    documento->PonTipo(tipo);
    documento->PonConcepto("AJ");
    documento->PonArticulo("P");
    documento->PonAlmacen(almacen);
    documento->PonCantidad(cantidad);
    documento->PonCosto(costo);
    std::int32_t numero = 0;
    const double importe = documento->AplicaMovimiento(numero);
    EXPECT_EQ(tienda.Numero("SELECT MAX(id) FROM movimientos"), numero);
    return importe;
  };
  const auto costo = [&] { return tienda.Numero("SELECT costo FROM prods WHERE articulo = 'P'"); };
  EXPECT_EQ(mueve("E", 1, 3, 10), 30);
  EXPECT_EQ(costo(), 10);
  EXPECT_EQ(mueve("E", 2, 1, 20), 20) << "another warehouse counts too";
  EXPECT_EQ(costo(), 12.5);
  // What is left is so little that its value is all rounding.
  EXPECT_EQ(mueve("S", 1, 2.999999, costo()), 37.5);
  EXPECT_EQ(mueve("S", 2, 1, costo()), 12.5);
  EXPECT_EQ(costo(), 12.5);
  EXPECT_EQ(mueve("S", 1, 5, costo()), 62.5) << "stock may become negative";
  EXPECT_EQ(costo(), 12.5) << "and then keeps its last cost";
  EXPECT_EQ(mueve("E", 1, 0, 0), 0) << "nothing moved is a movement too";
  EXPECT_EQ(mueve("E", 1, 14.999999, 13.5), 202.5);
  EXPECT_EQ(tienda.Numero("SELECT SUM(valor) FROM existencias WHERE articulo = 'P'"), 14000);
  EXPECT_EQ(costo(), 14);
}

TEST_P(Inventario, UnMovimientoEsTodoONada) {
  const double desde = tienda.UltimoMovimiento();
  tienda.Base().EjecutaEsquema("ALTER TABLE existencias RENAME TO guardadas");
  tienda.produccion->Ensamble("MASA-GALLETA", 1, 6, 0);
  EXPECT_EQ(tienda.UltimoMovimiento(), desde);
  EXPECT_EQ(tienda.escritorio.Avisos().size(), 1u);
  tienda.Base().EjecutaEsquema("ALTER TABLE guardadas RENAME TO existencias");
  tienda.produccion->Ensamble("MASA-GALLETA", 1, 6, 0);
  EXPECT_GT(tienda.UltimoMovimiento(), desde) << "no transaction was left open";
}

TEST_P(Inventario, LasClavesRarasLleganEnterasOFallanConElErrorDeLaBase) {
  // The component escapes nothing, and the server takes a backslash as its escape.
  const std::string clave =
      tienda.Base().TraeMotor() == Motor::MariaDb ? "Ñandú \"á\" % _ 🎁" : "Ñandú \"á\" \\ 🎁";
  tienda.Prod(clave, 2);
  tienda.Prod("K-" + clave, 0, 1);
  tienda.Kit("K-" + clave, 1, {{clave, 1, 1}});
  tienda.produccion->Ensamble("K-" + clave, 1, 3, 0);
  EXPECT_THAT(tienda.escritorio.Avisos(), IsEmpty());
  EXPECT_EQ(
      tienda.Numero("SELECT cantidad FROM existencias WHERE articulo = " + tienda.Literal("K-" + clave)), 3);

  const double filas = tienda.Numero("SELECT COUNT( * ) FROM movimientos");
  tienda.produccion->Ensamble("x'; DELETE FROM movimientos; --", 1, 1, 0);
  tienda.produccion->Ensamble("O'Higgins", 1, 1, 0);
  EXPECT_EQ(tienda.escritorio.Avisos().size(), 2u);
  tienda.produccion->Ensamble(std::string(10'000, 'x'), 1, 1, 0);
  EXPECT_EQ(tienda.escritorio.Avisos().size(), 2u) << "a long key is just not found";
  EXPECT_EQ(tienda.Numero("SELECT COUNT( * ) FROM movimientos"), filas);
}

TEST(Valuacion, RedondeaAlParTambienLoQueCasiEsLaMitad) {
  EXPECT_EQ(ACentavos(0.125), 12);
  EXPECT_EQ(ACentavos(0.135), 14) << "0.135 is a little less in binary";
  EXPECT_EQ(ACentavos(-0.125), -12);
  EXPECT_EQ(ACentavos(98'765'432'109.26), 9'876'543'210'926);
  EXPECT_EQ(RedondeaCantidad(0.0078125), 0.007812);
  EXPECT_EQ(TextoImporte(-5), "-0.05");
  EXPECT_THROW(ACentavos(1e300), HostError);
  EXPECT_THROW(RedondeaCantidad(std::nan("")), HostError);
}

}  // namespace
}  // namespace zuvi::host
