// The shift and fraction windows with every host call being once the one that fails: reported under the
// window's name, nothing done beyond what a clean run does, and the window closes with nothing left behind.
#include "tests/support/fallas.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/controles.h"
#include "tests/support/taller.h"
#include "toolkit/buttons.h"
#include "toolkit/combo_box.h"
#include "toolkit/dates.h"
#include "toolkit/form.h"
#include "toolkit/list_view.h"

namespace zuvi::pruebas {
namespace {

void PonTurnos(Taller& t) {
  const Fila turno{{"Turno", "Matutino"}, {"Entrada", "06:00"},    {"comida", "10:00"},
                   {"Salida", "14:00"},   {"Descanso", "Dimingo"}, {"regcomida", "10:30"}};
  const Filas uno{{{"n", 1.0}}};
  const std::string horarios = " FROM horarios WHERE fecha = '2026-11-21' AND turno = 'Matutino'";
  const Fila horario{
      {"Id", 7.0},        {"Empleado", "E2"},     {"Fecha", "2026-11-21"}, {"HoraEntrada", "06:00"},
      {"comida", Null{}}, {"HoraSalida", "14:00"}};
  t.mundo.tablas = {{"SELECT COUNT( * )" + horarios, uno},
                    {"SELECT *" + horarios, {horario}},
                    {"SELECT COUNT( * ) FROM turnos", uno},
                    {"SELECT * FROM turnos ORDER BY turno", {turno}},
                    {"SELECT * FROM turnos WHERE turno = 'Matutino'", {turno}},
                    {"SELECT COUNT( * ) FROM empleados", uno},
                    {"SELECT * FROM empleados ORDER BY empleado", {{{"Empleado", "E1"}, {"Nombre", "Ana"}}}},
                    {"SELECT COUNT( * ) FROM turnoempleado WHERE turno = 'Matutino'", uno},
                    {"SELECT turnoempleado.empleado, empleados.nombre FROM turnoempleado LEFT JOIN empleados "
                     "USING( empleado "
                     ") WHERE turno = 'Matutino' ORDER BY empleado",
                     {{{"Empleado", "E2"}, {"Nombre", "Eva"}}}},
                    {"SELECT * FROM turnoempleado", {{{"turno", "Matutino"}, {"empleado", "E2"}}}}};
}

Form& Ventana(Taller& t) { return *t.escritorio.Forms().at(0); }
void Oprime(Form& ventana, const char* boton) { Control<Button>(ventana, boton).Click(); }

struct Escena {
  const char* nombre;
  const char* ultimo;  // without failures it gets there
  void (*corre)(Taller&);
};
const Escena kEscenas[] = {
    {"Turnos", "EjecutaSQL(DELETE FROM horarios WHERE turno = 'Matutino')",
     [](Taller& t) {
       t.prod->MuestraTurnos();
       Form& turnos = Ventana(t);
       Control<ListView>(turnos, "lv", 0).UserSelected(1);
       Control<MonthView>(turnos, "MonthView1").UserClicked(Fecha::DesdeTexto("2026-11-21"));
       Oprime(turnos, "Command1");
       // The user adds the employee on the left and saves; whatever does not save is cancelled.
       t.escritorio.OnModal([](Form& editor) {
         Control<ListView>(editor, "lv", 0).UserSelected(1);
         for (const std::int32_t agrega_salva : {3, 0})
           Control<Button>(editor, "cmdButton", agrega_salva).Click();
         if (!editor.Closed()) Control<Button>(editor, "cmdButton", 1).Click();
       });
       Oprime(turnos, "cmdModificar");
       Oprime(turnos, "cmdEliminar");
     }},
    {"Captura", "IniciaProceso(FRACCIONES, frmFracciones",
     [](Taller& t) {
       t.prod->MuestraCapturaDeFracciones();
       Ventana(t).Type("A1");
       Ventana(t).Press(key::kEnter);
     }},
};

/// Statements and processes, in their order.
Pasos PasosDe(const Taller& t) {
  Pasos pasos;
  for (const auto& linea : t.mundo.bitacora)
    for (const char* paso : {"Consulta(", "EjecutaSQL(", "Ejecuta()", "IniciaProceso("})
      if (linea.starts_with(paso)) pasos.push_back(linea);
  return pasos;
}

/// Whether `menos` is what is left of `todo` when some steps are left out.
bool EsParteDe(const Pasos& menos, const Pasos& todo) {
  auto at = todo.begin();
  return std::ranges::all_of(menos, [&](const std::string& paso) {
    at = std::find(at, todo.end(), paso);
    return at != todo.end() && (++at, true);
  });
}

using Parametros = std::tuple<Escena, Modo>;
class FallasDeTurnos : public testing::TestWithParam<Parametros> {};

TEST_P(FallasDeTurnos, SeInformanYNadaQueda) {
  const auto& [escena, modo] = GetParam();
  const auto& [clase, persistente] = modo;
  Pasos limpio;
  for (int n = 0, fallas = 1; fallas > 0; ++n) {
    SCOPED_TRACE(n);
    Taller t;
    t.escritorio.SetNow(Fecha::DesdeTexto("2026-11-21"));
    PonTurnos(t);
    t.mundo.respuestas = {true, true};
    t.mundo.falla = {n, persistente, clase};
    escena.corre(t);
    ASSERT_EQ(t.escritorio.Forms().size(), 1u);
    fallas = n == 0 ? 1 : t.mundo.fallas_dadas;
    if (n == 0) {
      limpio = PasosDe(t);
      EXPECT_THAT(limpio, testing::Contains(testing::StartsWith(escena.ultimo)));
      EXPECT_THAT(t.escritorio.Avisos(), testing::IsEmpty());
    } else if (fallas > 0 && clase <= Clase::SinMiembro) {
      EXPECT_FALSE(t.escritorio.Avisos().empty());
      // Procedures that run one after the other each have their own trap: a failed one is left out.
      EXPECT_TRUE(EsParteDe(PasosDe(t), limpio)) << testing::PrintToString(PasosDe(t));
    }
    for (const auto& aviso : t.escritorio.Avisos())
      EXPECT_TRUE(aviso.starts_with("Error occured:\r\nModule: frm") &&
                  aviso.find("\r\nFunction: ") != std::string::npos)
          << aviso;
    t.mundo.falla = {};
    EXPECT_TRUE(Ventana(t).Unload());
    EXPECT_TRUE(t.escritorio.Forms().empty());
    EXPECT_EQ(t.Despide(), 0);
  }
}

INSTANTIATE_TEST_SUITE_P(Modos, FallasDeTurnos,
                         testing::Combine(testing::ValuesIn(kEscenas), testing::ValuesIn(Modos())),
                         &NombreDeCaso<Parametros>);

}  // namespace
}  // namespace zuvi::pruebas
