// Whether the shift windows stay linear: each work is done on a number of rows and on twice as many, by
// turns, and `al_doble` is the quotient of the middle times. The windows have no screen.
#include "bench/medida.h"
#include "shifts/frm_turno.h"
#include "shifts/frm_turnos.h"

namespace zuvi::bench {
namespace {

/// `n` numbers from 1.
std::string Numeros(std::int64_t n) {
  return "(WITH RECURSIVE serie(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM serie WHERE n < " +
         std::to_string(n) + ") SELECT n FROM serie)";
}

/// Time of the processor: what others do on this machine at the same moment does not count.
double Ocupado(auto&& trabajo) {
  const auto ahora = [] {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
  };
  const double antes = ahora();
  trabajo();
  return ahora() - antes;
}

/// A shop with that many rows, and what is done in it.
class Turnos : public Banco {
 public:
  Turnos() : Banco(Sqlite(":memory:")) {
    Abre();
    for (const char* tabla : {"turnos", "turnoempleado", "empleados", "horarios"})
      Base().Ejecuta(std::string("DELETE FROM ") + tabla);
  }

 protected:
  template <class Ventana>
  std::shared_ptr<Ventana> Nueva() {
    auto ventana = std::make_shared<Ventana>(ElModulo());
    ventana->PonAmbiente(NuevoAmbiente());
    return ventana;
  }
  template <class T>
  static T& Control(Form& ventana, const char* nombre, std::int32_t indice) {
    Value i = indice;
    return dynamic_cast<T&>(*AObjeto(ventana.Call(nombre, std::span(&i, 1))));
  }
  static void Exige(ListView& lista, std::int64_t cuantos) {
    if (lista.Items().Count() != cuantos) throw std::runtime_error("rows are missing");
  }
  void Cierra(Form& ventana) {
    ventana.Unload();
    ExigeSinAvisos();
  }
};

class Lista final : public Turnos {
 public:
  explicit Lista(std::int64_t n) : n_(n) {
    Base().Ejecuta(
        "INSERT INTO turnos (turno, entrada, comida, salida, descanso, regcomida) SELECT 'T' || n, '06:00', "
        "'10:00', '14:00', 'Lunes', '10:30' FROM " +
        Numeros(n));
  }
  double Corre() {
    const auto ventana = Nueva<frmTurnos>();
    const double tiempo = Ocupado([&] { ventana->Show(); });
    Exige(Control<ListView>(*ventana, "lv", 0), n_);
    Cierra(*ventana);
    return tiempo;
  }

 private:
  std::int64_t n_;
};

/// The editor of a shift: half of the employees belong to some shift.
class Empleados : public Turnos {
 public:
  explicit Empleados(std::int64_t n) : n_(n) {
    Base().Ejecuta("INSERT INTO empleados (empleado, nombre) SELECT 'E' || n, 'Empleado ' || n FROM " +
                   Numeros(n));
  }

 protected:
  std::shared_ptr<frmTurno> Editor() {
    auto editor = Nueva<frmTurno>();
    editor->PonModo(kAlta);
    return editor;
  }
  std::int64_t n_;
};

class LlenaEmpleados final : public Empleados {
 public:
  using Empleados::Empleados;
  double Corre() {
    const auto editor = Editor();
    const double tiempo = Ocupado([&] { editor->Show(); });
    Exige(Control<ListView>(*editor, "lv", 0), n_);
    Cierra(*editor);
    return tiempo;
  }
};

class LlenaYRemueve final : public Empleados {
 public:
  explicit LlenaYRemueve(std::int64_t n) : Empleados(n) {
    Base().Ejecuta(
        "INSERT INTO turnoempleado (turno, empleado) SELECT 'T', empleado FROM empleados WHERE "
        "CAST(SUBSTR(empleado, 2) AS INTEGER) % 2 = 0");
  }
  double Corre() {
    const auto editor = Editor();
    const double tiempo = Ocupado([&] { editor->Show(); });
    Exige(Control<ListView>(*editor, "lv", 0), n_ - n_ / 2);
    Cierra(*editor);
    return tiempo;
  }
};

class MueveTodos final : public Empleados {
 public:
  using Empleados::Empleados;
  double Corre() {
    const auto editor = Editor();
    editor->Show();
    const double tiempo = Ocupado([&] {
      Control<Button>(*editor, "cmdButton", 2).Click();
      Exige(Control<ListView>(*editor, "lv", 1), n_);
      Control<Button>(*editor, "cmdButton", 5).Click();
    });
    Exige(Control<ListView>(*editor, "lv", 0), n_);
    Cierra(*editor);
    return tiempo;
  }
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
BENCHMARK(AlDoble<Lista>)->Name("LlenaTurnos")->Arg(10'000)->Apply(Veces);
BENCHMARK(AlDoble<LlenaEmpleados>)->Name("LlenaEmpleados")->Arg(50'000)->Apply(Veces);
BENCHMARK(AlDoble<LlenaYRemueve>)->Name("LlenaEmpleadosYRemueve")->Arg(50'000)->Apply(Veces);
BENCHMARK(AlDoble<MueveTodos>)->Name("MueveTodosIdaYVuelta")->Arg(50'000)->Apply(Veces);

}  // namespace
}  // namespace zuvi::bench

BENCHMARK_MAIN();
