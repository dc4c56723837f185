// Whether the shift windows stay linear: each work is done on a number of rows and on twice as many, by
// turns, and `al_doble` is the quotient of the middle times. The windows have no screen.
#include <benchmark/benchmark.h>
#include <time.h>

#include "bench/turnos_trabajos.h"

namespace zuvi::bench {
namespace {

/// Without a screen, by the time of the processor: what others do on this machine at the same moment does not
/// count.
class Oculto : public BancoOculto {
 public:
  using BancoOculto::BancoOculto;

 protected:
  static double Ahora() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
  }
  static double Listadas() { return Ahora(); }
  static void Pinta(const Control&) {}
};

template <class Trabajo>
void AlDoble(benchmark::State& state) {
  const std::int64_t n = state.range(0);
  Trabajo mitad(n / 2), entero(n);
  mitad.Corre();
  entero.Corre();
  std::vector<double> de_la_mitad, del_entero;
  for (auto _ : state) {
    de_la_mitad.push_back(mitad.Corre());
    del_entero.push_back(entero.Corre());
    state.SetIterationTime(del_entero.back());
  }
  const double tiempo = Mediana(std::move(del_entero));
  state.counters["filas/s"] = static_cast<double>(n) / tiempo;
  state.counters["al_doble"] = tiempo / Mediana(std::move(de_la_mitad));
}

void Veces(benchmark::internal::Benchmark* medida) {
  medida->UseManualTime()->Iterations(15)->Unit(benchmark::kMillisecond);
}
BENCHMARK(AlDoble<Lista<Oculto>>)->Name("LlenaTurnos")->Arg(10'000)->Apply(Veces);
BENCHMARK(AlDoble<LlenaEmpleados<Oculto>>)->Name("LlenaEmpleados")->Arg(50'000)->Apply(Veces);
BENCHMARK(AlDoble<LlenaYRemueve<Oculto>>)->Name("LlenaEmpleadosYRemueve")->Arg(50'000)->Apply(Veces);
BENCHMARK(AlDoble<MueveTodos<Oculto>>)->Name("MueveTodosIdaYVuelta")->Arg(50'000)->Apply(Veces);

}  // namespace
}  // namespace zuvi::bench

BENCHMARK_MAIN();
