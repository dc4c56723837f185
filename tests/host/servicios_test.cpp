// The host's services one by one, inventory first: what its movements cost, and that no centavo is lost.
#include <cmath>
#include <fstream>
#include <map>
#include <random>
#include <set>
#include <sstream>

#include "base/text.h"
#include "host/processes/reporte_orden.h"
#include "host/services/constructor_sql_host.h"
#include "host/services/ventanas_host.h"
#include "host/shop/filtros.h"
#include "host/shop/mensajes.h"
#include "host/shop/valuacion.h"
#include "host/system/rutas.h"
#include "services/acceso_datos.h"
#include "services/documento_inventario.h"
#include "services/ventanas.h"
#include "tests/host/tienda.h"

namespace zuvi::host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Servicios : public ConTienda {};
ZUVI_EN_CADA_BASE(Servicios);

TEST_P(Servicios, ElValorSeConservaHastaElUltimoCentavoEnKitsAlAzar) {
  const int kits = GetParam() == ":memory:" ? 1000 : 60;
  std::mt19937 azar(20240229);
  const auto entre = [&](int a, int b) { return std::uniform_int_distribution<int>(a, b)(azar); };
  std::vector<std::string> articulos;
  std::map<std::string, int> nivel;  // how deep kits stand in kits
  for (int i = 0; i < 40; ++i) {
    articulos.push_back("M" + std::to_string(i));
    const double costo = entre(1, 5'000'000) / 10'000.0, cantidad = entre(0, 900'000'000) / 1e6;
    tienda.Prod(articulos.back(), costo);
    InsertaFilas(
        tienda.Base(), "existencias", "(articulo, almacen, cantidad, valor, movimiento)",
        {{articulos.back(), entre(1, 3), cantidad, static_cast<double>(ACentavos(cantidad * costo)), 0}});
  }

  const double total = tienda.ValorTotal();
  for (int i = 0; i < kits; ++i) {
    const std::string kit = "K" + std::to_string(i);
    std::vector<Parte> partes;
    for (int n = entre(1, 6); n > 0; --n) {
      // Later kits are made of earlier ones; half of the quantities have all six decimals.
      std::string parte;
      do {
        parte = articulos[static_cast<std::size_t>(entre(0, static_cast<int>(articulos.size()) - 1))];
      } while (nivel[parte] == 4);
      nivel[kit] = std::max(nivel[kit], nivel[parte] + 1);
      partes.push_back({parte, entre(0, 1) ? entre(1, 9'999'999) / 1e6 : entre(1, 40) / 4.0, entre(1, 3)});
    }
    tienda.Prod(kit, 0);
    tienda.Kit(kit, entre(1, 48) / 4.0, partes);
    articulos.push_back(kit);
    const auto estado = [&] {
      return tienda.Filas(
          "SELECT existencias.articulo, almacen, cantidad, valor, costo FROM existencias INNER JOIN prods "
          "USING(articulo) WHERE (cantidad <> 0 OR valor <> 0) AND articulo IN (SELECT Componente FROM "
          "comppart WHERE articulo = '" +
              kit + "' UNION SELECT '" + kit + "') ORDER BY existencias.articulo, almacen",
          5);
    };
    const std::int32_t almacen = entre(1, 3), cantidad = entre(1, 9), orden = entre(0, 1) * (5000 + i);
    const auto antes = estado();
    tienda.produccion->Ensamble(kit, almacen, cantidad, orden);
    ASSERT_EQ(tienda.ValorTotal(), total) << kit;
    ASSERT_NE(estado(), antes) << kit;
    tienda.produccion->Desensamble(kit, cantidad, almacen, orden);
    ASSERT_EQ(estado(), antes) << kit;
    tienda.produccion->Ensamble(kit, almacen, cantidad, orden);
    ASSERT_THAT(tienda.escritorio.Avisos(), IsEmpty());
  }
}

TEST_P(Servicios, ElCostoPromedioSigueALasEntradasYNoAlRedondeo) {
  const std::string articulo = "P";
  tienda.Prod(articulo, 0);
  const auto documento = tienda.Nuevo<DocumentoInventario>();
  const auto mueve = [&](const char* tipo, double almacen, double cantidad, double costo) {
    documento->PonTipo(tipo);
    documento->PonConcepto("AJ");
    documento->PonArticulo(articulo);
    documento->PonAlmacen(almacen);
    documento->PonCantidad(cantidad);
    documento->PonCosto(costo);
    std::int32_t numero = 0;
    const double importe = documento->AplicaMovimiento(numero);
    EXPECT_EQ(tienda.Numero("SELECT MAX(id) FROM movimientos"), numero);
    return importe;
  };
  const auto costo = [&] {
    return tienda.Numero("SELECT costo FROM prods WHERE articulo = '" + articulo + "'");
  };
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
  EXPECT_EQ(mueve("E", 1, 14.999999, 13.5), 202.5);
  EXPECT_EQ(tienda.Numero("SELECT SUM(valor) FROM existencias WHERE articulo = '" + articulo + "'"), 14000);
  EXPECT_EQ(costo(), 14);
}

TEST_P(Servicios, UnMovimientoEsTodoONada) {
  const double desde = tienda.UltimoMovimiento();
  tienda.Base().EjecutaEsquema("ALTER TABLE existencias RENAME TO guardadas");
  tienda.produccion->Ensamble("MASA-GALLETA", 1, 6, 0);
  EXPECT_EQ(tienda.UltimoMovimiento(), desde);
  EXPECT_EQ(tienda.escritorio.Avisos().size(), 1u);
  tienda.Base().EjecutaEsquema("ALTER TABLE guardadas RENAME TO existencias");
  tienda.produccion->Ensamble("MASA-GALLETA", 1, 6, 0);
  EXPECT_GT(tienda.UltimoMovimiento(), desde) << "no transaction was left open";
}

TEST_P(Servicios, LasClavesRarasLleganEnterasOFallanConElErrorDeLaBase) {
  // The component escapes nothing, and the server takes a backslash as its escape.
  const std::string clave =
      tienda.Base().GetEngine() == Engine::MariaDb ? "Ñandú \"á\" % _ 🎁" : "Ñandú \"á\" \\ 🎁";
  tienda.Prod(clave, 2);
  tienda.Prod("K-" + clave, 0, 1);
  tienda.Kit("K-" + clave, 1, {{clave, 1, 1}});
  tienda.produccion->Ensamble("K-" + clave, 1, 3, 0);
  EXPECT_THAT(tienda.escritorio.Avisos(), IsEmpty());
  EXPECT_EQ(
      tienda.Numero("SELECT cantidad FROM existencias WHERE articulo = " + tienda.Literal("K-" + clave)), 3);

  for (const std::string& mala : {std::string("O'Higgins"), std::string(10'000, 'x')})
    tienda.produccion->Ensamble(mala, 1, 1, 0);
  EXPECT_EQ(tienda.escritorio.Avisos().size(), 1u) << "a long key is just not found";
}

TEST_P(Servicios, ElConstructorEscribeLiteralesYExigeElOrden) {
  ConstructorSqlHost sql(tienda.anfitrion);
  sql.PonConexion(tienda.anfitrion->Base());
  const auto falla = [](const char* texto, auto&& accion) {
    EXPECT_THAT(ErrorDe(accion).what(), HasSubstr(texto));
  };
  falla("falta llamar a Genera", [&] { sql.Ejecuta(); });
  falla("Falta el tipo", [&] { sql.Genera("op"); });
  falla("DELETE", [&] { sql.Tipo("DELETE"); });
  sql.Tipo("INSERT");
  falla("al menos una columna", [&] { sql.Genera("op"); });
  sql.AgregaCampo("op", "op", 501);
  sql.AgregaCampo("op", "observ", "O'Brien; \"ñ\"");
  sql.AgregaCampo("op", "importe", 2.5);
  sql.AgregaCampo("op", "f_emision", Date::FromText("2026-02-28"));
  sql.AgregaCampo("op", "usuario", Null{});
  sql.AgregaCampo("op", "ocupado", std::int16_t{1});
  falla("tabla oppart", [&] { sql.AgregaCampo("oppart", "op", 1); });
  falla("oppart", [&] { sql.Genera("oppart"); });
  sql.Genera("op");
  EXPECT_EQ(sql.Sentencia(),
            "INSERT INTO op (op, observ, importe, f_emision, usuario, ocupado) VALUES (501, "
            "'O''Brien; \"ñ\"', 2.5, '2026-02-28', NULL, 1)");
  sql.Ejecuta();

  sql.Limpia();
  sql.Tipo("UPDATE");
  sql.Genera("oppart");
  sql.Ejecuta();
  EXPECT_EQ(sql.Sentencia(), "") << "an UPDATE without columns runs nothing";
  sql.AgregaCampo("op", "importe", 2.5);
  falla("condición", [&] { sql.Genera("op"); });
}

TEST_P(Servicios, UnGanchoYLaTablaDeProcesosVetan) {
  // A station that starts after the key was forbidden.
  tienda.Base().Ejecuta("INSERT INTO procesos (clave, vetado) VALUES ('DESEM007', 1)");
  EXPECT_FALSE(tienda.anfitrion->Vetada("DESEM007"));
  EXPECT_TRUE(GetParam() == ":memory:" || AnfitrionEn(GetParam())->Vetada("DESEM007"));
  const double desde = tienda.UltimoMovimiento();
  bool veta = true;
  tienda.anfitrion->PonGancho("DESEM007", [&](PeticionProceso& peticion) { peticion.bandera = veta; });
  tienda.produccion->Desensamble("TRUFAS", 1, 1, 0);
  EXPECT_EQ(tienda.UltimoMovimiento(), desde);
  veta = false;
  tienda.produccion->Desensamble("TRUFAS", 1, 1, 0);
  EXPECT_EQ(tienda.UltimoMovimiento(), desde + 6);
}

TEST_P(Servicios, CancelarTerminaLaEntregaYElDesensambleQueNoTendriaFin) {
  // A user who cancels at the n-th time the host asks.
  struct Impaciente final : Manos {
    explicit Impaciente(int n) : Manos([] { return true; }), paciencia(n) {}
    bool Cancelado() override { return --paciencia < 0; }
    int paciencia;
  };
  const auto cancelada = HasSubstr("Operación cancelada por el usuario");
  for (const int paciencia : {0, 3, 7, 12, 20, 100}) {
    tienda.escritorio.Olvida();
    tienda.anfitrion->PonInteraccion(std::make_unique<Impaciente>(paciencia));
    tienda.produccion->EntregaProductoTerminado(104);
    EXPECT_LE(tienda.escritorio.Avisos().size(), 1u) << paciencia;
    EXPECT_EQ(tienda.Numero("SELECT SUM(terminado) FROM oppart WHERE op = 104") > 0, paciencia == 100);
  }
  tienda.escritorio.Olvida();
  const double total = tienda.ValorTotal();
  tienda.anfitrion->PonInteraccion(std::make_unique<Impaciente>(100));
  tienda.produccion->Desensamble("PQ-EMPRESA", 1, 1, 0);
  EXPECT_THAT(tienda.escritorio.Avisos(), ElementsAre(cancelada, cancelada));
  EXPECT_EQ(tienda.ValorTotal(), total) << "whole baskets were taken apart, none half";
}

TEST_P(Servicios, LaPaginaDeLaOrdenYLaBusqueda) {
  tienda.Base().Ejecuta("UPDATE oppart SET observ = '<b>&' WHERE op = 105 AND cantidad = 2.5");
  tienda.Nuevo<ControlProcesos>()->ImprimeReporte("ORDENP", 105, nullptr, nullptr);
  std::ifstream archivo(Ruta(tienda.anfitrion->TraeOpciones().reportes.front()) / "ORDENP-105.html");
  std::stringstream texto;
  texto << archivo.rdbuf();
  EXPECT_THAT(texto.str(), testing::AllOf(HasSubstr("Orden de producción 105"), HasSubstr("Galleta de nuez"),
                                          HasSubstr(">2.5<"), HasSubstr("&lt;b&gt;&amp;"),
                                          HasSubstr("Taller de repostería"), HasSubstr(">768.00<")));
  EXPECT_THAT(ErrorDe([&] { PaginaDeOrden(tienda.Base(), 999); }).what(), HasSubstr("999 no existe"));

  BuscaCatalogoHost busca(tienda.anfitrion);
  busca.PonFiltro("kit <> 0");
  EXPECT_EQ(busca.Busca("Articulos", "canasta")->Campo("articulo"), Value("CAN-DESAYUNO"))
      << "not the baskets that are no kits";
  EXPECT_TRUE(busca.Busca("Articulos", "100%")->Eof());
  busca.PonFiltro("");
  // Keys that a column of numbers takes.
  const auto conceptos = busca.Busca("Conceptos de Op al inventario", "");
  EXPECT_FALSE(conceptos->Eof());
  for (; !conceptos->Eof(); conceptos->MoveNext()) EXPECT_GT(ToNumber(conceptos->Campo(0)), 0);
  EXPECT_THAT(ErrorDe([&] { busca.Muestra("Articulos"); }).what(), HasSubstr("no tiene ventanas"));
}

TEST_P(Servicios, ConversionesClavesYFolios) {
  const auto datos = tienda.Nuevo<AccesoDatos>();
  const auto conexion = tienda.anfitrion->Base();
  EXPECT_EQ(datos->ValorNumerico(Null{}), 0);
  EXPECT_EQ(datos->ValorNumerico("  "), 0);
  EXPECT_EQ(datos->ValorNumerico(" 2.5 "), 2.5);
  EXPECT_EQ(datos->ValorNumerico(true), -1);
  // Separators are understood where there is one way to read them.
  for (const auto& [texto, numero] :
       {std::pair("1,690.50", 1690.5), std::pair("12,345,678.9", 12345678.9), std::pair("-1.690,50", -1690.5),
        std::pair("1,690,000", 1690000.0), std::pair("2,5", 2.5), std::pair(",5", 0.5),
        std::pair("1690,125", 1690.125), std::pair("0,125", 0.125), std::pair("1.690", 1.69),
        std::pair("1E+20", 1e20)})
    EXPECT_EQ(datos->ValorNumerico(texto), numero) << texto;
  for (const auto& [texto, dice] :
       {std::pair("1,690", "\"1,690\" se puede leer como 1690 o como 1.690"),
        std::pair("-16,900", "como -16900 o como -16.900"), std::pair("1.2.3,4", "no es un número"),
        std::pair("1.2.3", "no es un número"), std::pair("1,69,0", "no es un número"),
        std::pair("1,6900,0", "no es un número"), std::pair("0,125,000", "no es un número"),
        std::pair("1,690.50.1", "no es un número"), std::pair("1,690.5,0", "no es un número"),
        std::pair("12abc", "\"12abc\" no es un número"), std::pair("nan", "no es un número"),
        std::pair(",", "no es un número"), std::pair("1,5E3", "no es un número"),
        std::pair("1e999", "demasiado grande")})
    EXPECT_THAT(ErrorDe([&] { datos->ValorNumerico(texto); }).what(), HasSubstr(dice));
  EXPECT_EQ(datos->ValorTexto(Null{}), "");
  EXPECT_EQ(datos->TextoConCeros(7, 2) + datos->TextoConCeros(123, 2) + datos->TextoConCeros(-7, 4),
            "07123-007");
  EXPECT_EQ(datos->ComponeFecha(20240229, 86399).Texto(), "2024-02-29 23:59:59");
  EXPECT_THROW(datos->ComponeFecha(20230229, 0), HostError);
  EXPECT_TRUE(datos->ExisteClave("MOÑO", "prods", "articulo", conexion));
  EXPECT_FALSE(datos->ExisteClave("x' OR '1'='1", "prods", "articulo", conexion));
  EXPECT_EQ(datos->TraeMensaje(235, nullptr), "El artículo \"x' OR '1'='1\" no existe en el catálogo.");
  EXPECT_TRUE(datos->UbicacionRestringida("JAMON-SER", 2, conexion));
  EXPECT_FALSE(datos->UbicacionRestringida("JAMON-SER", 1, conexion));
  std::int32_t documento = 0;
  EXPECT_EQ(datos->SiguienteFolio("Op", conexion, documento, nullptr), 111);
  EXPECT_EQ(documento, 111);
  EXPECT_EQ(datos->SiguienteFolio("clave 'nueva'", conexion, documento, nullptr), 1);
  EXPECT_EQ(datos->SiguienteFolio("clave 'nueva'", conexion, documento, nullptr), 2);
}

TEST(Filtros, CadaEtiquetaAdmiteLoSuyoYDaSuForma) {
  HeadlessDesktop escritorio;
  const auto pon = [&](const char* etiqueta, const char* texto) {
    return Destino(escritorio, texto, etiqueta).caja;
  };
  using Caso = std::tuple<const char*, const char*, const char*, const char*>;
  for (const auto& [etiqueta, tecleado, queda, formateado] :
       {Caso{"N", "-12a,5.3", "12,5.3", "12,5.3"}, Caso{"N", "1,690.50", "1,690.50", "1690.5"},
        Caso{"SD", "2.1234567x", "2.123456", "2.123456"}, Caso{"SD", "007", "007", "7.00"},
        Caso{"SN", "-1-2,50", "-12,50", "-12.5"}, Caso{"SN", "-", "-", "-"},
        Caso{"D", "1/2/2026x9999", "1/2/202699", "1/2/202699"}, Caso{"D", "29-2-24", "29-2-24", "29-02-2024"},
        Caso{"D", "2026-03-01", "2026-03-01", "01-03-2026"},
        Caso{"D", "31/02/2026", "31/02/2026", "31/02/2026"}, Caso{"U", "ab1", "AB1", "AB1"},
        Caso{"", "aB-.", "aB-.", "aB-."}}) {
    const auto caja = pon(etiqueta, "");
    for (const char* c = tecleado; *c; ++c)
      if (const auto tecla = Filtra(CajaDe(caja), *c)) {
        caja->SetText(caja->Text() + static_cast<char>(tecla));
        caja->SetSelStart(caja->Length());
      }
    EXPECT_EQ(caja->Text() + " " + Formatea(CajaDe(caja)), queda + (" " + std::string(formateado)));
  }
  EXPECT_EQ(Filtra(CajaDe(pon("SN", "15")), '-'), '-');
  EXPECT_EQ(UpperCase(0xf7), 0xf7) << "the division sign has no upper case";
  EXPECT_EQ(Formatea({.etiqueta = "U", .texto = "ñandú"}), "ÑANDÚ");
}

TEST(Mensajes, ElCatalogoEstaCompletoEnLosDosIdiomas) {
  std::set<std::string> textos;
  for (const auto& mensaje : CatalogoMensajes())
    for (const char* idioma : {"es", "en"}) textos.insert(TextoMensaje(mensaje.numero, idioma));
  EXPECT_THAT(textos, testing::Each(testing::Not(testing::ContainsRegex("[0-9{]"))));
  EXPECT_EQ(textos.size(), CatalogoMensajes().size() * 2) << "no text serves twice";
  EXPECT_THAT(TextoMensaje(9999, "en"), HasSubstr("9999"));
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
