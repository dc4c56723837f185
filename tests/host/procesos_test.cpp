// Several programs on one database, and the command line as its users run it.
#include <unistd.h>

#include <array>
#include <cstdio>
#include <set>

#include "component/services/documento_inventario.h"
#include "host/folios.h"
#include "tests/host/procesos.h"
#include "tests/host/tienda.h"

namespace zuvi::host {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// Two processes draw 1,000 numbers of one key each, at the same time and from a key that does not exist yet.
void FoliosDeDosProcesos(const std::string& base) {
  constexpr std::int32_t kCuantos = 1000;
  std::array<std::array<int, 2>, 2> tubos{};
  std::array<pid_t, 2> hijos{};
  for (std::size_t i = 0; i < hijos.size(); ++i) {
    ASSERT_EQ(pipe(tubos[i].data()), 0);
    hijos[i] = Hijo([&] {
      const auto anfitrion = AnfitrionEn(base);
      for (std::int32_t n = 0; n < kCuantos; ++n) {
        const std::int32_t folio = TomaFolios(*anfitrion->Base(), "PRUEBA");
        if (write(tubos[i][1], &folio, sizeof folio) != sizeof folio) return 1;
      }
      return 0;
    });
    close(tubos[i][1]);
  }
  std::set<std::int32_t> folios;
  for (const auto& tubo : tubos) {
    std::int32_t folio = 0;
    while (read(tubo[0], &folio, sizeof folio) == sizeof folio) folios.insert(folio);
    close(tubo[0]);
  }
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
    const auto anfitrion = AnfitrionEn(archivo.Texto());
    EXPECT_EQ(ANumero(anfitrion->Base()->Consulta("SELECT COUNT( * ) FROM prods")->Campo(0)), 42);
    EXPECT_FALSE(anfitrion->RecienCreada());
  }
  FoliosDeDosProcesos(archivo.Texto());
}

TEST(DosProcesos, TampocoEnElServidor) {
  const char* servidor = std::getenv("ZUVI_MARIADB");
  if (!servidor || !*servidor) GTEST_SKIP() << "ZUVI_MARIADB is not set";
  AnfitrionEn(servidor)->RehaceTienda();
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
  EXPECT_EQ(ANumero(AnfitrionEn(servidor)
                        ->Base()
                        ->Consulta(
                            "SELECT SUM(cantidad) FROM existencias WHERE articulo = 'TRUFAS' AND almacen > 1")
                        ->Campo(0)),
            400);
}

TEST(DosProcesos, UnaBaseAjenaNoSeToca) {
  const Archivo archivo("zuvi_ajena.db");
  const Traza traza;
  BaseDatos::Abre("DRIVER={SQLite3};Database=" + archivo.Texto(), traza)
      ->Ejecuta("CREATE TABLE op (op INTEGER)");
  EXPECT_THROW(AnfitrionEn(archivo.Texto())->Base(), HostError);
}

struct Corrida {
  int codigo = -1;
  std::string texto;  // both outputs, in the order of writing
};

Corrida Zuvi(const std::string& argumentos, const std::string& entorno = "") {
  const std::string orden = entorno + " '" ZUVI_PROGRAMA "' " + argumentos + " 2>&1 </dev/null";
  Corrida corrida;
  std::FILE* tubo = popen(orden.c_str(), "r");
  if (!tubo) return corrida;
  std::array<char, 4096> bloque{};
  for (std::size_t n; (n = fread(bloque.data(), 1, bloque.size(), tubo)) > 0;)
    corrida.texto.append(bloque.data(), n);
  const int estado = pclose(tubo);
  corrida.codigo = WIFEXITED(estado) ? WEXITSTATUS(estado) : -1;
  return corrida;
}

TEST(LineaDeOrdenes, AyudaYMalUso) {
  EXPECT_EQ(Zuvi("--help").codigo, 0);
  EXPECT_THAT(Zuvi("--help").texto,
              AllOf(HasSubstr("desensambla ARTICULO CANTIDAD ALMACEN [OP]"), HasSubstr("Códigos de salida")));
  EXPECT_THAT(Zuvi("--version").texto, HasSubstr("zuvi 1."));
  for (const char* mal : {"", "nada", "ensambla", "ensambla A 1", "ensambla A 1 2.5", "ensambla A 1 dos",
                          "desensambla A 1,5 1", "orden x", "folio", "--base", "--rara ordenes",
                          "--si=1 ordenes", "--idioma fr ordenes", "ordenes 1"}) {
    const Corrida corrida = Zuvi(mal);
    EXPECT_EQ(corrida.codigo, 2) << mal << "\n" << corrida.texto;
    EXPECT_THAT(corrida.texto, HasSubstr("zuvi --help")) << mal;
  }
  const Corrida sin_base = Zuvi("--base no_hay/nada.db ordenes");
  EXPECT_EQ(sin_base.codigo, 3);
  EXPECT_THAT(sin_base.texto, HasSubstr("zuvi crea"));
  EXPECT_EQ(Zuvi("--base 'DRIVER={No hay};x=1' ordenes").codigo, 3);
}

TEST(LineaDeOrdenes, UnDiaDeTrabajoConCualquierConfiguracionRegional) {
  const Archivo archivo("zuvi_linea.db");
  const std::string base = "--base " + archivo.Texto() + " ";
  for (const std::string region : {"LC_ALL=C", "LC_ALL=es_ES.UTF-8", "LC_ALL=tr_TR.UTF-8"}) {
    SCOPED_TRACE(region);
    const auto zuvi = [&](const std::string& argumentos, int codigo) {
      const Corrida corrida = Zuvi(base + argumentos, region);
      EXPECT_EQ(corrida.codigo, codigo) << argumentos << "\n" << corrida.texto;
      return corrida.texto;
    };
    zuvi("crea --si", 0);
    EXPECT_THAT(zuvi("crea", 1), HasSubstr("No se tocó nada"));
    EXPECT_THAT(zuvi("ensambla MASA-GALLETA 3 1", 0), HasSubstr("6 movimientos"));
    EXPECT_THAT(zuvi("existencias HARINA", 0), AllOf(HasSubstr("149.5"), HasSubstr("2765.75")));
    EXPECT_THAT(zuvi("desensambla TRUFAS 1.5 1", 0), HasSubstr("6 movimientos"));
    EXPECT_THAT(zuvi("existencias TRUFAS", 0), HasSubstr("16.5"));
    EXPECT_THAT(zuvi("ensambla HARINA 1 1", 1), HasSubstr("No se hizo nada"));
    EXPECT_THAT(zuvi("ensambla \"x'y\" 1 1", 1), HasSubstr("Error occured:"));
    EXPECT_THAT(zuvi("entrega 105", 0), AllOf(HasSubstr("3/3"), HasSubstr("entregada")));
    EXPECT_THAT(zuvi("entrega 105", 1), HasSubstr("ya está entregada"));
    EXPECT_THAT(zuvi("entrega 107", 1), HasSubstr("no tiene partidas"));
    EXPECT_THAT(zuvi("entrega 999", 1), HasSubstr("no existe"));
    EXPECT_THAT(zuvi("orden 105", 0), HasSubstr("3.5"));
    EXPECT_THAT(zuvi("cancela 103 --no", 1), HasSubstr("no se canceló"));
    EXPECT_THAT(zuvi("--si cancela 103", 0), HasSubstr("103 cerrada"));
    EXPECT_THAT(zuvi("cancela 108 --si --idioma en", 0),
                AllOf(HasSubstr("Do you want"), HasSubstr("108 cancelada")));
    EXPECT_THAT(zuvi("ordenes", 0), AllOf(HasSubstr("PE ocupada"), Not(HasSubstr("  108  "))));
    EXPECT_THAT(zuvi("libera 106 --usuario RAUL", 0), HasSubstr("liberada"));
    EXPECT_THAT(zuvi("ocupadas", 0), HasSubstr("No hay"));
    EXPECT_EQ(zuvi("folio NUEVO", 0), "1\n");
    EXPECT_EQ(zuvi("folio NUEVO", 0), "2\n");
    EXPECT_THAT(zuvi("kit CAN-GOURMET", 0), HasSubstr("rinde 4"));
    EXPECT_THAT(zuvi("consulta 'SELECT 1.5 AS uno, NULL AS dos'", 0),
                AllOf(HasSubstr("uno"), HasSubstr("1.5")));
    EXPECT_EQ(zuvi("consulta 'SELECT nada'", 1).empty(), false);
  }
}

TEST(LineaDeOrdenes, LaEntregaQueSeRompeDiceQueFalta) {
  const Archivo archivo("zuvi_rota.db");
  const std::string base = "--base " + archivo.Texto() + " ";
  ASSERT_EQ(Zuvi(base + "crea").codigo, 0);
  AnfitrionEn(archivo.Texto())->Base()->Ejecuta("UPDATE op SET almacen = 'x' WHERE op = 104");
  const Corrida corrida = Zuvi(base + "entrega 104");
  EXPECT_EQ(corrida.codigo, 1);
  EXPECT_THAT(corrida.texto, AllOf(HasSubstr("CAN-DESAYUNO: 0 de 4"), HasSubstr("Movimientos aplicados: 0")));
}

}  // namespace
}  // namespace zuvi::host
