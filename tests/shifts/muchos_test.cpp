// The shift windows with many rows: the work per row does not grow with their number. Counted, not timed.
#include <algorithm>

#include "tests/shifts/ventanas.h"

namespace zuvi::host {
namespace {

struct Esfuerzo {
  std::size_t visitados = 0;  // rows looked at to keep positions
  std::int64_t avisos = 0;
  std::size_t sentencias = 0;
};

class Muchos : public Ventanas {
 protected:
  void SetUp() override {
    for (const char* tabla : {"turnos", "empleados", "turnoempleado"})
      t.Base().Ejecuta(std::string("DELETE FROM ") + tabla);
  }
  static std::string Numeros(int n) {
    return "(WITH RECURSIVE serie(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM serie WHERE n < " +
           std::to_string(n) + ") SELECT n FROM serie) AS numeros";
  }
  void Vigila(Form& ventana) {
    for (const auto& control : ventana.Controls())
      if (dynamic_cast<ListView*>(control.get()) || dynamic_cast<ProgressBar*>(control.get()))
        control->SetPeer(std::make_unique<pruebas::Contador>(esfuerzo.avisos));
    sentencias.clear();
    esfuerzo = {};
  }
  Esfuerzo Toma(Form& ventana, int listas) {
    for (int i = 0; i < listas; ++i)
      esfuerzo.visitados += Control<ListView>(ventana, "lv", i).Items().Visited();
    esfuerzo.sentencias = sentencias.size();
    return esfuerzo;
  }

  Esfuerzo esfuerzo;
};
INSTANTIATE_TEST_SUITE_P(SoloSqlite, Muchos, testing::Values(":memory:"));

TEST_P(Muchos, DiezMilTurnosSeListanEnUnaPasada) {
  t.Base().Ejecuta("INSERT INTO turnos (turno, entrada, salida) SELECT 'T' || n, '06:00', '14:00' FROM " +
                   Numeros(10'000));
  const auto ventana = Crea<frmTurnos>();
  Vigila(*ventana);
  ventana->Show();
  EXPECT_EQ(Control<ListView>(*ventana, "lv", 0).Items().Count(), 10'000);
  const Esfuerzo todo = Toma(*ventana, 2);
  EXPECT_LE(todo.avisos, 7 * 10'000);
  EXPECT_LE(todo.visitados, 10'000u);
  EXPECT_THAT(sentencias, testing::SizeIs(2));  // none per row
}

TEST_P(Muchos, CincuentaMilEmpleadosSeLlenanSeMuevenYSeRemuevenEnTiempoLineal) {
  constexpr int kCuantos = 50'000;
  t.Base().Ejecuta("INSERT INTO empleados (empleado, nombre) SELECT 'E' || n, 'Empleado' FROM " +
                   Numeros(kCuantos));
  t.Base().Ejecuta(
      "INSERT INTO turnoempleado (turno, empleado) SELECT 'T', empleado FROM empleados WHERE "
      "empleado LIKE '%5'");
  const auto editor = Crea<frmTurno>();
  editor->PonModo(kAlta);
  Vigila(*editor);
  editor->Show();
  ListView& libres = Control<ListView>(*editor, "lv", 0);
  ListView& miembros = Control<ListView>(*editor, "lv", 1);
  EXPECT_EQ(libres.Items().Count(), kCuantos - kCuantos / 10);
  Control<Button>(*editor, "cmdButton", 2).Click();
  EXPECT_EQ(miembros.Items().Count(), kCuantos - kCuantos / 10);
  EXPECT_EQ(miembros.Cell(kCuantos - kCuantos / 10, 0), libres.Items().Count() == 0 ? "E9999" : "");
  Control<Button>(*editor, "cmdButton", 5).Click();
  EXPECT_EQ(libres.Items().Count(), kCuantos - kCuantos / 10);
  const Esfuerzo todo = Toma(*editor, 2);
  EXPECT_LE(todo.avisos, 10 * kCuantos);
  EXPECT_LE(todo.visitados, 3u * kCuantos);
  EXPECT_THAT(sentencias, testing::SizeIs(5));
}

}  // namespace
}  // namespace zuvi::host
