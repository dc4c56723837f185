// What opening an order of a hundred lines in the editor costs above its bare statements. The window has no
// screen: what its native side adds is measured where there is one.
#include "bench/medida.h"
#include "toolkit/form.h"

namespace zuvi::bench {
namespace {

constexpr std::int32_t kOrden = 900000, kPartidas = 100;

template <void (Produccion::*kMetodo)(std::int32_t) noexcept>
class OrdenDeCien final : public BancoOculto {
 public:
  using BancoOculto::BancoOculto;
  void Prepara() {
    Abre();
    const std::string orden = std::to_string(kOrden);
    Base().Ejecuta(
        "INSERT INTO op (op, estado, ocupado, usuario, usufecha, usuhora, f_emision, fechaEntrega, almacen, "
        "observ, automatico, Tipo_doc) VALUES (" +
        orden +
        ", 'PE', 0, 'ADMIN', '2026-03-01', '10:00:00', '2026-03-01', '2026-03-20', '1', 'Para el pasillo', "
        "1, 'OP')");
    for (std::int32_t i = 1; i <= kPartidas; ++i)
      Base().Ejecuta(
          "INSERT INTO oppart (id_entrada, op, tipo_doc, no_referen, articulo, cantidad, precio, observ, "
          "usuario, usufecha, usuhora) VALUES (" +
          std::to_string(kOrden + i) + ", " + orden + ", 'OP', " + orden + ", 'ARTICULO-" +
          std::to_string(i) + "', 12.5, 99.9, 'Un artículo de la lista', 'ADMIN', '2026-03-01', '10:00:00')");
    Corre();
    Repone();
  }
  void Corre() {
    (ElComponente().*kMetodo)(kOrden);
    if (Escritorio().Forms().size() != 1) throw std::runtime_error("the order was not opened");
  }
  void Repone() {
    Escritorio().Forms().front()->Unload();
    ExigeSinAvisos();
  }
};

using Consulta = OrdenDeCien<&Produccion::ConsultaOp>;
using Modifica = OrdenDeCien<&Produccion::ModificaOp>;

void Veces(benchmark::internal::Benchmark* medida) {
  medida->UseManualTime()->Iterations(500)->Unit(benchmark::kMicrosecond);
}
BENCHMARK(EnMemoria<Consulta>)->Name("ConsultaEnMemoria")->Apply(Veces);
BENCHMARK(EnMemoria<Modifica>)->Name("ModificaEnMemoria")->Apply(Veces);
BENCHMARK(EnArchivo<Consulta>)->Name("ConsultaEnArchivo")->Apply(Veces);
BENCHMARK(EnArchivo<Modifica>)->Name("ModificaEnArchivo")->Apply(Veces);

}  // namespace
}  // namespace zuvi::bench

BENCHMARK_MAIN();
