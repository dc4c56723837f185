// How much the component and the reference host add to the bare work of an assembly of ten components.
//
// Each engine is measured in one run on two databases of equal content: the component assembles in the first,
// and a loop in plain ODBC issues the very same statements in the second, by turns. The statements were
// recorded before on a third. MariaDB is measured when ZUVI_MARIADB holds a connection string whose user may
// create databases.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "bench/anfitrion_nulo.h"
#include "bench/odbc_desnudo.h"
#include "component/produccion.h"
#include "host/anfitrion.h"
#include "host/interaccion_respuestas.h"
#include "host/odbc_cadena.h"
#include "toolkit/headless_desktop.h"

namespace zuvi::bench {
namespace {

constexpr int kComponentes = 10;
using Sentencias = std::vector<std::string>;

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

/// The component on the reference host, with a kit of ten in its shop.
class Tienda {
 public:
  explicit Tienda(const std::string& base) {
    host::Opciones opciones;
    host::PonBase(opciones, base);
    anfitrion_ =
        std::make_shared<host::Anfitrion>(opciones, std::make_unique<host::RespuestasInteraccion>(""));
    fabrica_ = std::make_unique<host::FabricaAnfitrion>(anfitrion_);
    modulo_ = std::make_unique<Modulo>(*fabrica_, escritorio_, [] { return false; });
    produccion_ = std::make_shared<Produccion>(*modulo_);
  }
  /// Opens the database, makes the kit and assembles once; returns the statements of all this if asked for.
  Sentencias Prepara(bool graba) {
    Sentencias sentencias;
    const auto oyente = graba ? Escucha(sentencias) : 0;
    produccion_->PonAmbiente(fabrica_->Crea(Ambiente::kProgId));
    auto& base = *anfitrion_->Base();
    base.Ejecuta("INSERT INTO componen (articulo, Minimo) VALUES ('KIT-DE-DIEZ', 1)");
    for (int i = 0; i < kComponentes; ++i) {
      const std::string codigo = "'DIEZ-" + std::to_string(i) + "'";
      base.Ejecuta("INSERT INTO prods (articulo, descrip, kit, costo) VALUES (" + codigo +
                   ", 'Parte', 0, 2.5)");
      base.Ejecuta(
          "INSERT INTO comppart (articulo, renglon, Componente, Cantidad, Almacen) VALUES "
          "('KIT-DE-DIEZ', " +
          std::to_string(i + 1) + ", " + codigo + ", 2, 1)");
    }
    Ensambla();
    if (graba) anfitrion_->TraeTraza().Deja(oyente);
    return sentencias;
  }
  Sentencias Graba() {
    Sentencias sentencias;
    const auto oyente = Escucha(sentencias);
    Ensambla();
    anfitrion_->TraeTraza().Deja(oyente);
    return sentencias;
  }
  void Ensambla() {
    produccion_->Ensamble("KIT-DE-DIEZ", 1, 1, 0);
    if (!escritorio_.Avisos().empty()) throw std::runtime_error(escritorio_.Avisos().front());
  }

 private:
  std::size_t Escucha(Sentencias& sentencias) {
    return anfitrion_->TraeTraza().Escucha([&sentencias](host::Suceso suceso, const std::string& texto) {
      if (suceso == host::Suceso::Sentencia) sentencias.push_back(texto);
    });
  }
  std::shared_ptr<host::Anfitrion> anfitrion_;
  std::unique_ptr<host::FabricaAnfitrion> fabrica_;
  HeadlessDesktop escritorio_;
  std::unique_ptr<Modulo> modulo_;
  std::shared_ptr<Produccion> produccion_;
};

double Segundos(auto&& trabajo) {
  const auto antes = std::chrono::steady_clock::now();
  trabajo();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - antes).count();
}

/// The middle time: a disk that somebody else keeps busy gives a few very long ones.
double Mediana(std::vector<double>& tiempos) {
  const auto medio = tiempos.begin() + static_cast<std::ptrdiff_t>(tiempos.size() / 2);
  std::nth_element(tiempos.begin(), medio, tiempos.end());
  return *medio;
}

/// Connection strings of the three databases, and what a session has to set to be like the host's.
struct Bases {
  std::string grabada, componente, desnuda;
  Sentencias ajustes;
};

void Compara(benchmark::State& state, const Bases& bases) {
  const auto vueltas = static_cast<std::size_t>(state.max_iterations);
  std::vector<Sentencias> grabadas;
  Tienda tienda(bases.componente);
  OdbcDesnudo desnudo(bases.desnuda);
  {
    Tienda grabadora(bases.grabada);
    for (const auto& sql : bases.ajustes) desnudo.Corre(sql);
    for (const auto& sql : grabadora.Prepara(true)) desnudo.Corre(sql);
    for (std::size_t i = 0; i < vueltas; ++i) grabadas.push_back(grabadora.Graba());
  }
  tienda.Prepara(false);
  std::vector<double> del_componente, del_desnudo;
  std::size_t vuelta = 0;
  for (auto _ : state) {
    const auto ensambla = [&] { tienda.Ensambla(); };
    const auto repite = [&] {
      for (const auto& sql : grabadas[vuelta]) desnudo.Corre(sql);
    };
    double tiempo = 0;
    // Who goes first alternates: the second finds the caches of the processor warm.
    if (vuelta % 2 == 0) tiempo = Segundos(ensambla);
    del_desnudo.push_back(Segundos(repite));
    if (vuelta % 2 != 0) tiempo = Segundos(ensambla);
    del_componente.push_back(tiempo);
    state.SetIterationTime(tiempo);
    ++vuelta;
  }
  const double componente = Mediana(del_componente), piso = Mediana(del_desnudo);
  state.counters["componente/s"] = 1 / componente;
  state.counters["desnudo/s"] = 1 / piso;
  state.counters["razon"] = piso / componente;
}

std::string Sqlite(const std::string& archivo) { return "DRIVER={SQLite3};Database=" + archivo; }

void SqliteEnMemoria(benchmark::State& state) {
  const std::string base = Sqlite(":memory:");
  Compara(state, {base, base, base, {"PRAGMA foreign_keys=ON"}});
}
BENCHMARK(SqliteEnMemoria)->UseManualTime()->Iterations(1000)->Unit(benchmark::kMicrosecond);

/// A folder of its own, removed with all it holds.
class Carpeta {
 public:
  Carpeta() {
    std::string plantilla = (std::filesystem::temp_directory_path() / "zuvi-bench-XXXXXX").string();
    if (!mkdtemp(plantilla.data())) throw std::runtime_error("no folder for the databases");
    ruta_ = plantilla;
  }
  Carpeta(const Carpeta&) = delete;
  Carpeta& operator=(const Carpeta&) = delete;
  ~Carpeta() {
    std::error_code ignorado;
    std::filesystem::remove_all(ruta_, ignorado);
  }
  std::string Archivo(const char* nombre) const { return (ruta_ / nombre).string(); }

 private:
  std::filesystem::path ruta_;
};

void SqliteEnArchivo(benchmark::State& state) {
  const Carpeta carpeta;
  Compara(state, {Sqlite(carpeta.Archivo("grabada.db")),
                  Sqlite(carpeta.Archivo("componente.db")),
                  Sqlite(carpeta.Archivo("desnuda.db")),
                  {"PRAGMA foreign_keys=ON", "PRAGMA journal_mode=WAL", "PRAGMA synchronous=FULL"}});
}
BENCHMARK(SqliteEnArchivo)->UseManualTime()->Iterations(100)->Unit(benchmark::kMicrosecond);

void MariaDb(benchmark::State& state) {
  const char* dada = std::getenv("ZUVI_MARIADB");
  if (!dada || !*dada) {
    state.SkipWithError("ZUVI_MARIADB holds no connection string");
    return;
  }
  host::CadenaOdbc cadena{std::string_view(dada)};
  cadena.Quita("DATABASE");
  cadena.Pon("OPTION", "2");
  cadena.Pon("CHARSET", "utf8mb4");
  OdbcDesnudo servidor(cadena.Texto());
  const auto nueva = [&](const std::string& nombre) {
    servidor.Corre("DROP DATABASE IF EXISTS " + nombre);
    servidor.Corre("CREATE DATABASE " + nombre + " CHARACTER SET utf8mb4");
    cadena.Pon("DATABASE", nombre);
    return cadena.Texto();
  };
  Compara(state,
          {nueva("zuvi_bench_grabada"),
           nueva("zuvi_bench_componente"),
           nueva("zuvi_bench_desnuda"),
           {"SET SESSION sql_mode='STRICT_TRANS_TABLES,ERROR_FOR_DIVISION_BY_ZERO,NO_ENGINE_SUBSTITUTION'"}});
  for (const char* nombre : {"zuvi_bench_grabada", "zuvi_bench_componente", "zuvi_bench_desnuda"})
    servidor.Corre(std::string("DROP DATABASE ") + nombre);
}
BENCHMARK(MariaDb)->UseManualTime()->Iterations(100)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zuvi::bench

BENCHMARK_MAIN();
