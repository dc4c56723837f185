// Several programs on one database, and the command line as its users run it.
#include <unistd.h>

#include <array>
#include <cstdio>
#include <set>

#include "host/services/fabrica_anfitrion.h"
#include "host/shop/folios.h"
#include "host/shop/revision.h"
#include "services/documento_inventario.h"
#include "tests/host/procesos.h"
#include "tests/host/tienda.h"
#include "tests/host/zuvi.h"

namespace zuvi::host {
namespace {

using testing::AllOf;
using testing::HasSubstr;

/// Two processes draw 1,000 numbers of one key each, at the same time and from a key that does not exist yet.
void FoliosDeDosProcesos(const std::string& base) {
  constexpr std::int32_t kCuantos = 1000;
  std::array<int, 2> tubo{};
  ASSERT_EQ(pipe(tubo.data()), 0);
  std::array<pid_t, 2> hijos{};
  for (pid_t& hijo : hijos)
    hijo = Hijo([&] {
      const auto anfitrion = AnfitrionEn(base);
      for (std::int32_t n = 0; n < kCuantos; ++n) {
        const std::int32_t folio = TomaFolios(*anfitrion->Base(), "PRUEBA");
        if (write(tubo[1], &folio, sizeof folio) != sizeof folio) return 1;
      }
      return 0;
    });
  close(tubo[1]);
  std::set<std::int32_t> folios;
  for (std::int32_t folio = 0; read(tubo[0], &folio, sizeof folio) == sizeof folio;) folios.insert(folio);
  close(tubo[0]);
  for (const pid_t hijo : hijos) EXPECT_EQ(Espera(hijo), 0);
  EXPECT_EQ(folios.size(), 2 * kCuantos);
  EXPECT_EQ(*folios.rbegin(), 2 * kCuantos);
}

TEST(DosProcesos, CreanUnaSolaTiendaYNuncaTomanElMismoFolio) {
  const Archivo archivo("zuvi_dos_procesos.db");
  std::array<pid_t, 3> hijos{};
  for (pid_t& hijo : hijos)
    hijo = Hijo(
        [&] { return AnfitrionEn(archivo.Texto())->Base()->Consulta("SELECT * FROM op")->Eof() ? 1 : 0; });
  for (const pid_t hijo : hijos) EXPECT_EQ(Espera(hijo), 0);
  {
    const Tienda tienda(AnfitrionEn(archivo.Texto()));
    EXPECT_FALSE(tienda.anfitrion->RecienCreada());
    EXPECT_EQ(tienda.anfitrion->Base()->Consulta("SELECT COUNT( * ) FROM prods")->Campo(0), Value(42));
  }
  FoliosDeDosProcesos(archivo.Texto());
}

TEST(DosProcesos, TampocoEnElServidor) {
  const char* servidor = std::getenv("ZUVI_MARIADB");
  if (!servidor || !*servidor) GTEST_SKIP() << "ZUVI_MARIADB is not set";
  Preparado(AnfitrionEn(servidor));
  FoliosDeDosProcesos(servidor);
  // Movements of one article in two warehouses wait for one another in the cost; none may be lost.
  std::array<pid_t, 2> hijos{};
  for (std::size_t i = 0; i < hijos.size(); ++i)
    hijos[i] = Hijo([&] {
      FabricaAnfitrion fabrica(AnfitrionEn(servidor));
      const auto documento = fabrica.Nuevo<DocumentoInventario>();
      documento->PonTipo("E");
      documento->PonArticulo("TRUFAS");
      documento->PonAlmacen(static_cast<double>(2 + i));
      documento->PonCantidad(1);
      for (int n = 1; n <= 200; ++n) {
        documento->PonCosto(n);
        std::int32_t numero = 0;
        documento->AplicaMovimiento(numero);
      }
      return 0;
    });
  for (const pid_t hijo : hijos) EXPECT_EQ(Espera(hijo), 0);
  Tienda tienda(AnfitrionEn(servidor));
  EXPECT_EQ(tienda.Numero("SELECT SUM(cantidad) FROM existencias WHERE articulo = 'TRUFAS' AND almacen > 1"),
            400);
  // No movement was explained by the cost before it: the last one left the average of them all.
  EXPECT_TRUE(ExistenciasSinMovimientos(tienda.Base())->Eof());
  EXPECT_DOUBLE_EQ(tienda.Numero("SELECT costo FROM prods WHERE articulo = 'TRUFAS'"),
                   tienda.Numero("SELECT SUM(valor) / SUM(cantidad) / 100 FROM existencias WHERE articulo = "
                                 "'TRUFAS'"));
}

TEST(LineaDeOrdenes, AyudaYMalUso) {
  const Corrida ayuda = Zuvi("--help");
  EXPECT_EQ(ayuda.codigo, 0);
  EXPECT_THAT(ayuda.texto,
              AllOf(HasSubstr("desensambla ARTICULO CANTIDAD ALMACEN [OP]"), HasSubstr("Códigos de salida")));
  EXPECT_THAT(Zuvi("--version").texto, HasSubstr("zuvi 1."));
  for (const char* mal :
       {"", "nada", "ensambla A 1", "ensambla A 1 2.5", "desensambla A 1,5 1", "orden x", "--base",
        "--rara ordenes", "--si=1 ordenes", "--vacia ordenes", "ensambla A 1 0", "ensambla A 1 -2",
        "desensambla A nan 1", "desensambla A inf 1", "desensambla A 1e400 1", "desensambla A 1e-9 1",
        "desensambla A 0 1", "--idioma fr ordenes", "ordenes 1"}) {
    const Corrida corrida = Zuvi(mal);
    EXPECT_EQ(corrida.codigo, 2) << mal << "\n" << corrida.texto;
    EXPECT_THAT(corrida.texto, HasSubstr("zuvi --help")) << mal;
  }
  const Corrida sin_base = Zuvi("--base no_hay/nada.db ordenes");
  EXPECT_EQ(sin_base.codigo, 3);
  EXPECT_THAT(sin_base.texto, HasSubstr("zuvi crea"));
}

TEST(LineaDeOrdenes, UnDiaDeTrabajo) {
  const Archivo archivo("zuvi_linea.db");
  const struct {
    const char* argumentos;
    int codigo;
    const char* dice;
  } pasos[] = {{"crea --si", 0, ""},
               {"crea", 1, "No se tocó nada"},
               {"ensambla MASA-GALLETA 3 1", 0, "6 movimientos"},
               {"existencias HARINA", 0, "2765.75"},
               {"ensambla HARINA 1 1", 1, "No se hizo nada"},
               {"desensambla NADIE 1 1", 1, "NADIE no existe"},
               {"ordenes >/dev/full", 1, ""},
               {"--traza /dev/full ordenes", 1, "No se pudo escribir la traza"},
               {"--traza /no/hay/traza ensambla MASA-GALLETA 3 1", 1, "No se puede escribir la traza"},
               {"ensambla \"x'y\" 1 1", 1, "x'y no existe"},
               {"entrega 105", 0, "3/3"},
               {"entrega 105", 1, "ya está entregada"},
               {"entrega 107", 1, "no tiene partidas"},
               {"entrega 999", 1, "no existe"},
               {"orden 105", 0, "3.5"},
               {"--si cancela 103", 0, "103 cerrada"},
               {"cancela 108 --si --idioma en", 0, "Do you want"},
               {"orden 108", 1, "no existe"},
               {"ordenes", 0, "PE ocupada"},
               {"libera 106 --usuario RAUL", 0, "liberada"},
               {"libera 106", 1, "no está ocupada"},
               {"ocupadas", 0, "No hay"},
               {"kit CAN-GOURMET", 0, "rinde 4"},
               {"consulta 'SELECT 1.5 AS uno, NULL AS dos'", 0, "1.5"},
               {"consulta 'SELECT nada'", 1, "nada"},
               {"consulta 'DELETE FROM op'", 1, "solo lectura"},
               {"consulta 'WITH x AS (SELECT 1) DELETE FROM op'", 1, "solo lectura"},
               {"ordenes", 0, "103"}};
  const auto zuvi = [&](const std::string& argumentos) {
    return Zuvi("--base " + archivo.Texto() + " " + argumentos);
  };
  for (const auto& paso : pasos) {
    const Corrida corrida = zuvi(paso.argumentos);
    EXPECT_EQ(corrida.codigo, paso.codigo) << paso.argumentos << "\n" << corrida.texto;
    EXPECT_THAT(corrida.texto, HasSubstr(paso.dice)) << paso.argumentos;
  }
  // A delivery that breaks off says what is missing.
  AnfitrionEn(archivo.Texto())->Base()->Ejecuta("UPDATE op SET almacen = 'x' WHERE op = 104");
  const Corrida rota = zuvi("entrega 104");
  EXPECT_EQ(rota.codigo, 1);
  EXPECT_THAT(rota.texto, AllOf(HasSubstr("CAN-DESAYUNO: 0 de 4"), HasSubstr("Movimientos aplicados: 0")));
  // What was tried and refused is not counted as done.
  AnfitrionEn(archivo.Texto())
      ->Base()
      ->Ejecuta("CREATE UNIQUE INDEX niega ON movimientos (articulo) WHERE concepto = 'DE'");
  const Corrida negada = zuvi("ensambla MASA-GALLETA 3 1");
  EXPECT_EQ(negada.codigo, 1);
  EXPECT_THAT(negada.texto, HasSubstr("movimientos aplicados: 5"));
}

}  // namespace
}  // namespace zuvi::host
