#include "host/genera_horarios.h"
#include "tests/shifts/ventanas.h"

namespace zuvi::host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Turnos = Ventanas;
ZUVI_EN_CADA_BASE(Turnos);

TEST_P(Turnos, ListaLosTurnosYElHorarioDelSeleccionado) {
  t.Base().Ejecuta("INSERT INTO turnos (turno, entrada, salida) VALUES (' Noche ', ' 9:00', NULL)");
  InsertaFilas(t.Base(), "horarios", "(id, turno, fecha, Empleado, HoraEntrada, comida, HoraSalida)",
               {{90, "Matutino", Fecha::DesdeCivil({2026, 11, 17}), "E01", " 6:00", Null{}, "14:00"},
                {91, "Matutino", Fecha::DesdeCivil({2026, 11, 17}), "25", "06:00", "10:00", "14:00"}});
  auto ventana = Crea<frmTurnos>();
  sentencias.clear();
  ventana->Show();
  // Without a selection there is no schedule to ask for.
  EXPECT_THAT(Toma(sentencias),
              ElementsAre("SELECT COUNT( * ) FROM turnos", "SELECT * FROM turnos ORDER BY turno"));
  auto& turnos = Control<ListView>(*ventana, "lv", 0);
  auto& horarios = Control<ListView>(*ventana, "lv", 1);
  EXPECT_THAT(Renglones(turnos),
              ElementsAre(" Noche |9:00|||", "Matutino|06:00|10:00|10:30|14:00",
                          "Reparto|09:00|14:00|15:00|18:00", "Vespertino|14:00|18:00|18:30|22:00"));
  EXPECT_EQ(turnos.Items()(1).Key(), "P Noche ");
  EXPECT_EQ(horarios.Columns().All()[4].caption, "Comnida");
  EXPECT_EQ(horarios.Columns().All()[4].key, "Comida");

  turnos.UserSelected(2);
  auto& mes = Control<MonthView>(*ventana, "MonthView1");
  EXPECT_EQ(mes.Value().Texto(), "2026-11-16");
  mes.UserClicked(Fecha::DesdeCivil({2026, 11, 17}));
  const std::string donde = " FROM horarios WHERE fecha = '2026-11-17' AND turno = 'Matutino'";
  EXPECT_THAT(Toma(sentencias), ElementsAre("SELECT COUNT( * )" + donde, "SELECT *" + donde));
  // An employee's key goes through the date format as well.
  EXPECT_THAT(Renglones(horarios),
              ElementsAre("90|E01|2026-11-17|6:00||14:00", "91|24-01-1900|2026-11-17|06:00|10:00|14:00"));
  EXPECT_EQ(Control<ProgressBar>(*ventana, "ProgressBar1").Value(), 0);
  // A key with a quote breaks the statement and is reported; the list keeps what it had.
  t.Base().Ejecuta("INSERT INTO turnos (turno) VALUES ('D''Or')");
  turnos.Items().Add("PD'Or", "D'Or");
  turnos.UserSelected(5);
  mes.UserClicked(Fecha::DesdeCivil({2026, 11, 17}));
  EXPECT_EQ(t.escritorio.Avisos().size(), 1u);
  EXPECT_THAT(t.escritorio.Avisos().at(0), HasSubstr("Module: frmTurnos\r\nFunction: LLenaHorarios\r\n"));
  EXPECT_EQ(horarios.Items().Count(), 2);
}

TEST_P(Turnos, EliminaElTurnoConSusMiembrosYSusHorarios) {
  GeneraHorarios(*t.anfitrion, "Matutino", {Fecha::DesdeCivil({2026, 11, 16}), 3});
  auto ventana = Crea<frmTurnos>();
  ventana->Show();
  auto& eliminar = Control<Button>(*ventana, "cmdEliminar");
  auto& modificar = Control<Button>(*ventana, "cmdModificar");
  sentencias.clear();
  eliminar.Click();
  modificar.Click();
  EXPECT_THAT(sentencias, IsEmpty());
  EXPECT_THAT(mensajes, IsEmpty());

  Control<ListView>(*ventana, "lv", 0).UserSelected(1);
  eliminar.Click();
  EXPECT_THAT(Toma(sentencias),
              ElementsAre("DELETE FROM turnos WHERE turno = 'Matutino'",
                          "DELETE FROM turnoempleado WHERE turno = 'Matutino'",
                          "DELETE FROM horarios WHERE turno = 'Matutino'", "SELECT COUNT( * ) FROM turnos",
                          "SELECT * FROM turnos ORDER BY turno"));
  EXPECT_EQ(mensajes.size(), 1u);
  EXPECT_EQ(t.Numero("SELECT COUNT( * ) FROM horarios WHERE turno = 'Matutino'"), 0);
  EXPECT_EQ(t.Numero("SELECT COUNT( * ) FROM turnoempleado WHERE turno = 'Matutino'"), 0);
  EXPECT_TRUE(ventana->Unload());
}

TEST_P(Turnos, GeneraHorariosParaDiaSemanaYMes) {
  auto ventana = Crea<frmTurnos>();
  ventana->Show();
  const auto cuenta = [&] { return t.Numero("SELECT COUNT( * ) FROM horarios"); };
  auto& generar = Control<Button>(*ventana, "Command1");
  auto& periodo = Control<ComboBox>(*ventana, "Combo1");
  generar.Click();  // no period chosen
  EXPECT_EQ(cuenta(), 0);
  Control<ListView>(*ventana, "lv", 0).UserSelected(1);  // Matutino: E01 and E03, rests on Sundays
  periodo.UserChose(0);
  generar.Click();
  EXPECT_EQ(cuenta(), 2);
  periodo.UserChose(1);  // the day that exists is not doubled; the Sunday is left out
  generar.Click();
  EXPECT_EQ(cuenta(), 12);
  periodo.UserChose(2);  // 16-11 to 15-12: 30 days, 4 Sundays
  generar.Click();
  EXPECT_EQ(cuenta(), 52);
  EXPECT_EQ(t.Numero("SELECT COUNT(DISTINCT id) FROM horarios"), 52);
  EXPECT_EQ(t.Filas("SELECT turno, Empleado, HoraEntrada, comida, HoraSalida FROM horarios WHERE fecha = "
                    "'2026-12-15' ORDER BY id",
                    5),
            (std::vector<std::string>{"Matutino E01 06:00 10:00 14:00", "Matutino E03 06:00 10:00 14:00"}));
  EXPECT_EQ(t.Numero("SELECT COUNT( * ) FROM horarios WHERE fecha = '2026-11-22'"), 0);
  EXPECT_TRUE(t.escritorio.Avisos().empty());
  EXPECT_THAT(mensajes.back(), HasSubstr("40"));
  // Without a selection every shift is meant; a month that has no such day ends with its last one.
  EXPECT_EQ(PeriodoDe("Mes", Fecha::DesdeCivil({2027, 1, 31})).dias, 28);
  GeneraHorarios(*t.anfitrion, "", {Fecha::DesdeCivil({2027, 1, 4}), 1});
  EXPECT_EQ(t.Numero("SELECT COUNT( * ) FROM horarios WHERE fecha = '2027-01-04'"), 3);
}

TEST_P(Turnos, DosVentanasSonIndependientesYSeCierranEnPlenoLlenado) {
  auto una = Crea<frmTurnos>();
  auto otra = Crea<frmTurnos>();
  una->Show();
  otra->Show();
  Control<ListView>(*una, "lv", 0).UserSelected(1);
  EXPECT_EQ(Control<ListView>(*otra, "lv", 0).SelectedItem(), nullptr);
  auto tercera = Crea<frmTurnos>();
  t.escritorio.Post([&] { tercera->Unload(UnloadMode::TitleBar); });
  tercera->Show();
  EXPECT_TRUE(tercera->Closed());
  EXPECT_EQ(t.escritorio.Forms().size(), 2u);
  // A newer fill of the same list takes over from the one it interrupted.
  t.escritorio.Post([&] {
    t.Base().Ejecuta("DELETE FROM turnos WHERE turno = 'Reparto'");
    Control<ListView>(*otra, "lv", 0).UserSelected(1);
    Control<Button>(*otra, "cmdEliminar").Click();
  });
  t.escritorio.OnModal([](Form& editor) { editor.Unload(); });
  Control<Button>(*otra, "cmdTurnos").Click();
  EXPECT_EQ(Control<ListView>(*otra, "lv", 0).Items().Count(), 1);
  EXPECT_TRUE(t.escritorio.Avisos().empty());
}

}  // namespace
}  // namespace zuvi::host
