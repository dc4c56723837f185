// The comparison of the component's work with the bare statements, by turns in one run.
#pragma once

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "bench/banco.h"
#include "bench/odbc_desnudo.h"

namespace zuvi::bench {

/// Connection strings of the three databases, and what a session has to set to be like the host's.
struct Bases {
  std::string grabada, componente, desnuda;
  Sentencias ajustes;
};

/// Who works on the left side of a comparison: the component, or, as a control of the measuring itself, the
/// same bare loop as on the right.
enum class Lado { Componente, Control };

/// Measures `Trabajo`, a kind of Banco: `Prepara` opens the database and sets the stage, `Corre` is what is
/// measured, `Repone` makes another round possible. Its statements are recorded on the first database; then
/// it works on the second, and a loop in plain ODBC issues the very same statements in the third, by turns.
template <class Trabajo, Lado lado = Lado::Componente>
void Compara(benchmark::State& state, const Bases& bases) {
  struct Vuelta {
    Sentencias medidas, demas;
  };
  const auto repite = [](OdbcDesnudo& base, const Sentencias& sentencias) {
    for (const auto& sql : sentencias) base.Corre(sql);
  };
  std::vector<Vuelta> grabadas;
  Trabajo trabajo(bases.componente);
  OdbcDesnudo desnudo(bases.desnuda);
  std::optional<OdbcDesnudo> control;
  {
    Trabajo grabadora(bases.grabada);
    Sentencias preparacion = grabadora.Graba([&] { grabadora.Prepara(); });
    preparacion.insert(preparacion.begin(), bases.ajustes.begin(), bases.ajustes.end());
    repite(desnudo, preparacion);
    if constexpr (lado == Lado::Control) repite(control.emplace(bases.componente), preparacion);
    for (benchmark::IterationCount i = 0; i < state.max_iterations; ++i) {
      Sentencias medidas = grabadora.Graba([&] { grabadora.Corre(); });
      grabadas.push_back({std::move(medidas), grabadora.Graba([&] { grabadora.Repone(); })});
    }
  }
  if constexpr (lado == Lado::Componente) trabajo.Prepara();
  std::vector<double> del_componente, del_desnudo;
  std::size_t vuelta = 0;
  for (auto _ : state) {
    const Vuelta& esta = grabadas[vuelta];
    double tiempo = 0;
    const auto corre = [&] {
      if constexpr (lado == Lado::Control) {
        tiempo = Segundos([&] { repite(*control, esta.medidas); });
        repite(*control, esta.demas);
      } else {
        tiempo = Segundos([&] { trabajo.Corre(); });
        trabajo.Repone();
      }
    };
    // Who goes first alternates: the second finds the caches of the processor warm.
    if (vuelta % 2 == 0) corre();
    del_desnudo.push_back(Segundos([&] { repite(desnudo, esta.medidas); }));
    repite(desnudo, esta.demas);
    if (vuelta % 2 != 0) corre();
    del_componente.push_back(tiempo);
    state.SetIterationTime(tiempo);
    ++vuelta;
  }
  const double componente = Mediana(std::move(del_componente)), piso = Mediana(std::move(del_desnudo));
  state.counters["componente/s"] = 1 / componente;
  state.counters["desnudo/s"] = 1 / piso;
  state.counters["razon"] = piso / componente;
}

template <class Trabajo, Lado lado = Lado::Componente>
void EnMemoria(benchmark::State& state) {
  const std::string base = Sqlite(":memory:");
  Compara<Trabajo, lado>(state, {base, base, base, {"PRAGMA foreign_keys=ON"}});
}

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

template <class Trabajo, Lado lado = Lado::Componente>
void EnArchivo(benchmark::State& state) {
  const Carpeta carpeta;
  Compara<Trabajo, lado>(state,
                         {Sqlite(carpeta.Archivo("grabada.db")),
                          Sqlite(carpeta.Archivo("componente.db")),
                          Sqlite(carpeta.Archivo("desnuda.db")),
                          {"PRAGMA foreign_keys=ON", "PRAGMA journal_mode=WAL", "PRAGMA synchronous=FULL"}});
}

}  // namespace zuvi::bench
