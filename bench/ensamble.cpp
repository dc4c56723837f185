// How much the component and the reference host add to the bare work of an assembly of ten components.
//
// Each engine is measured in one run on two databases of equal content: the component assembles in the first,
// and a loop in plain ODBC issues the very same statements in the second, by turns. The statements were
// recorded before on a third. The controls measure the bare loop against itself: how far they are from 1 is
// how little the other ratios mean. MariaDB is measured when ZUVI_MARIADB holds a connection string whose
// user may create databases; bench/mariadb.sh starts a server and keeps it and this program on one processor,
// without which the scheduler decides over the ratio (controls of 0.84 to 1.27 were seen).
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "bench/anfitrion_nulo.h"
#include "bench/medida.h"
#include "host/odbc/odbc_attributes.h"

namespace zuvi::bench {
namespace {

constexpr int kComponentes = 10;

/// The component's own time per movement, with a host that does nothing.
void AnfitrionNulo(benchmark::State& state) {
  FabricaNula fabrica(kComponentes);
  HeadlessDesktop escritorio;
  Modulo modulo(fabrica, escritorio, [] { return false; });
  const auto produccion = std::make_shared<Produccion>(modulo);
  produccion->PonAmbiente(std::make_shared<AmbienteNulo>());
  for (auto _ : state) produccion->Ensamble("KIT-DE-DIEZ", 1, 1, 0);
  if (fabrica.movimientos != state.iterations() * (kComponentes + 1))
    state.SkipWithError("movements are missing");
  state.counters["por_movimiento"] = benchmark::Counter(
      static_cast<double>(fabrica.movimientos), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(AnfitrionNulo);

/// An assembly with a kit of ten in the shop.
class DeDiez final : public BancoOculto {
 public:
  using BancoOculto::BancoOculto;
  /// Opens the database, makes the kit and assembles once.
  void Prepara() {
    Abre();
    Base().Ejecuta("INSERT INTO componen (articulo, Minimo) VALUES ('KIT-DE-DIEZ', 1)");
    for (int i = 0; i < kComponentes; ++i) {
      const std::string codigo = "'DIEZ-" + std::to_string(i) + "'";
      Base().Ejecuta("INSERT INTO prods (articulo, descrip, kit, costo) VALUES (" + codigo +
                     ", 'Parte', 0, 2.5)");
      Base().Ejecuta(
          "INSERT INTO comppart (articulo, renglon, Componente, Cantidad, Almacen) VALUES "
          "('KIT-DE-DIEZ', " +
          std::to_string(i + 1) + ", " + codigo + ", 2, 1)");
    }
    Corre();
  }
  void Corre() {
    ElComponente().Ensamble("KIT-DE-DIEZ", 1, 1, 0);
    ExigeSinAvisos();
  }
  void Repone() {}
};
void Vueltas(benchmark::internal::Benchmark* medida) {
  medida->UseManualTime()->Iterations(300)->Unit(benchmark::kMicrosecond);
}

BENCHMARK(EnMemoria<DeDiez>)->Name("SqliteEnMemoria")->Apply(Vueltas)->Iterations(1000);
BENCHMARK(EnMemoria<DeDiez, Lado::Control>)->Name("ControlEnMemoria")->Apply(Vueltas)->Iterations(1000);
BENCHMARK(EnArchivo<DeDiez>)->Name("SqliteEnArchivo")->Apply(Vueltas);
BENCHMARK(EnArchivo<DeDiez, Lado::Control>)->Name("ControlEnArchivo")->Apply(Vueltas);

template <Lado lado>
void MariaDb(benchmark::State& state) {
  const char* dada = std::getenv("ZUVI_MARIADB");
  if (!dada || !*dada) {
    state.SkipWithError("ZUVI_MARIADB holds no connection string");
    return;
  }
  host::OdbcAttributes cadena{std::string_view(dada)};
  cadena.Remove("DATABASE");
  cadena.Set("OPTION", "2");
  cadena.Set("CHARSET", "utf8mb4");
  OdbcDesnudo servidor(cadena.Text());
  const auto nueva = [&](const std::string& nombre) {
    servidor.Corre("DROP DATABASE IF EXISTS " + nombre);
    servidor.Corre("CREATE DATABASE " + nombre + " CHARACTER SET utf8mb4");
    cadena.Set("DATABASE", nombre);
    return cadena.Text();
  };
  Compara<DeDiez, lado>(
      state,
      {nueva("zuvi_bench_grabada"),
       nueva("zuvi_bench_componente"),
       nueva("zuvi_bench_desnuda"),
       {"SET SESSION sql_mode='STRICT_TRANS_TABLES,ERROR_FOR_DIVISION_BY_ZERO,NO_ENGINE_SUBSTITUTION'"}});
  for (const char* nombre : {"zuvi_bench_grabada", "zuvi_bench_componente", "zuvi_bench_desnuda"})
    servidor.Corre(std::string("DROP DATABASE ") + nombre);
}
BENCHMARK(MariaDb<Lado::Componente>)->Name("MariaDb")->Apply(Vueltas);
BENCHMARK(MariaDb<Lado::Control>)->Name("ControlMariaDb")->Apply(Vueltas);

}  // namespace
}  // namespace zuvi::bench

BENCHMARK_MAIN();
