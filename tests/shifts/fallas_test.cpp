// The shift and fraction windows with every host call being once the one that fails: reported under the
// window's name, nothing done beyond what a clean run does, and the window closes with nothing left behind.
#include "tests/support/fallas.h"

#include <gmock/gmock.h>

#include <set>

#include "tests/support/controles.h"
#include "tests/support/taller.h"
#include "toolkit/buttons.h"
#include "toolkit/combo_box.h"
#include "toolkit/dates.h"
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
                     "USING( empleado ) WHERE turno = 'Matutino' ORDER BY empleado",
                     {{{"Empleado", "E2"}, {"Nombre", "Eva"}}}},
                    {"SELECT * FROM turnoempleado", {{{"turno", "Matutino"}, {"empleado", "E2"}}}}};
}

Form& Ventana(Taller& t) { return *t.escritorio.Forms().at(0); }
void Oprime(Form& ventana, const char* boton) { Control<Button>(ventana, boton).Click(); }

void TrabajaTurnos(Taller& t) {
  t.prod->MuestraTurnos();
  Form& turnos = Ventana(t);
  Control<ListView>(turnos, "lv", 0).UserSelected(1);
  Control<MonthView>(turnos, "MonthView1").UserClicked(Date::FromText("2026-11-21"));
  Control<ComboBox>(turnos, "Combo1").SetListIndex(0);
  Oprime(turnos, "Command1");
  // The user adds the employee on the left and saves; whatever does not save is cancelled.
  t.escritorio.OnModal([](Form& editor) {
    Control<ListView>(editor, "lv", 0).UserSelected(1);
    for (const std::int32_t agrega_salva : {3, 0}) Control<Button>(editor, "cmdButton", agrega_salva).Click();
    if (!editor.Closed()) Control<Button>(editor, "cmdButton", 1).Click();
  });
  Oprime(turnos, "cmdModificar");
  Oprime(turnos, "cmdEliminar");
}

void CapturaFraccion(Taller& t) {
  t.prod->MuestraCapturaDeFracciones();
  Ventana(t).Type("A1");
  Ventana(t).Press(key::kEnter);
}

/// What is done, steps that a clean run begins with and gets to, and the procedures that report a failure.
struct Escena {
  void (*corre)(Taller&);
  const char *primero, *logro;
  std::set<std::string> procedimientos;
};

TEST(FallasDeTurnos, SeInformanYNadaQueda) {
  for (const auto& [corre, primero, logro, procedimientos] :
       {Escena{&TrabajaTurnos,
               "Consulta(SELECT COUNT( * ) FROM turnos)",
               "EjecutaSQL(DELETE FROM horarios WHERE turno = 'Matutino')",
               {"frmTurno.AgregaUsuario", "frmTurno.Form_Load", "frmTurno.Form_Unload",
                "frmTurno.LLenaEmpleados", "frmTurno.LLenaEmpleadosTurno", "frmTurno.RemueveEnTurno",
                "frmTurno.SalvaCambios", "frmTurnos.Command1_Click", "frmTurnos.Form_Load",
                "frmTurnos.Form_Unload", "frmTurnos.LLenaHorarios", "frmTurnos.LLenaTurnos",
                "frmTurnos.cmdEliminar_Click"}},
        Escena{&CapturaFraccion,
               "IniciaProceso(FRACCIONES001, frmFracciones",
               "IniciaProceso(FRACCIONES, frmFracciones",
               {"frmFracciones.Form_Load", "frmFracciones.txtFields_KeyDown"}}}) {
    SCOPED_TRACE(logro);
    Pasos limpio;
    std::set<std::string> informaron;
    EnCadaLlamada([&](const Modo& modo, int n) {
      Taller t;
      t.escritorio.SetNow(Date::FromText("2026-11-21"));
      PonTurnos(t);
      t.mundo.respuestas = {true, true};
      t.mundo.falla = {n, modo.persistente, modo.clase};
      corre(t);
      Ventana(t).Unload();
      const int fallas = t.mundo.fallas_dadas;
      t.mundo.falla = {};
      const Pasos hecho =
          PasosDe(t.mundo.bitacora, {"Consulta(", "EjecutaSQL(", "Ejecuta()", "IniciaProceso("});
      const auto avisos = t.Avisos();
      if (n == 0) {
        limpio = hecho;
        EXPECT_THAT(hecho, testing::Contains(testing::StartsWith(logro)));
        EXPECT_THAT(avisos, testing::IsEmpty());
        EXPECT_THAT(hecho, testing::Contains(testing::StartsWith(primero)));
      } else if (fallas > 0 && modo.EsError()) {
        EXPECT_FALSE(avisos.empty());
        // Procedures that run one after the other each have their own trap: the failed one is left out.
        EXPECT_TRUE(EsParteDe(hecho, limpio)) << testing::PrintToString(hecho);
      }
      for (const auto& aviso : avisos) informaron.insert(LugarDe(aviso));
      EXPECT_TRUE(t.escritorio.Forms().empty());
      EXPECT_EQ(t.Despide(), 0);
      return fallas;
    });
    EXPECT_EQ(informaron, procedimientos);
  }
}

}  // namespace
}  // namespace zuvi::pruebas
