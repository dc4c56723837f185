// The shift windows on a real shop: what they show, and what they do to the tables.
#include <algorithm>

#include "host/processes/genera_horarios.h"
#include "host/shop/mensajes.h"
#include "shifts/frm_turno.h"
#include "shifts/frm_turnos.h"
#include "tests/host/tienda.h"

namespace zuvi::host {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Turnos : public testing::TestWithParam<std::string> {
 protected:
  Turnos() {
    t.escritorio.SetNow(Date::FromCivil({2026, 11, 16, 9, 30, 0}));  // a Monday
    t.Base().Ejecuta("DELETE FROM horarios");
    t.anfitrion->TraeTraza().Escucha([this](Suceso suceso, const std::string& texto) {
      if (suceso == Suceso::Sentencia) sentencias.push_back(texto);
      if (suceso == Suceso::Mensaje || suceso == Suceso::Pregunta) mensajes.push_back(texto);
    });
  }
  // An open window is known to the host, which it knows itself.
  ~Turnos() override {
    for (const auto& ventana : std::vector(t.escritorio.Forms())) ventana->Unload();
  }

  template <class Ventana>
  std::shared_ptr<Ventana> Crea() {
    auto ventana = std::make_shared<Ventana>(t.modulo);
    ventana->PonAmbiente(t.fabrica.Crea(Ambiente::kProgId));
    return ventana;
  }
  std::shared_ptr<frmTurnos> Abre() {
    auto ventana = Crea<frmTurnos>();
    ventana->Show();
    return ventana;
  }
  std::shared_ptr<frmTurno> Edita(const char* modo, const std::string& turno = "") {
    auto editor = Crea<frmTurno>();
    editor->PonModo(modo);
    editor->PonTurno(turno);
    editor->Show();
    return editor;
  }
  static ListView& Lista(Form& ventana, std::int32_t cual) { return Control<ListView>(ventana, "lv", cual); }
  static ComboBox& Campo(Form& editor, std::int32_t cual) {
    return Control<ComboBox>(editor, "cmbFields", cual);
  }
  enum Boton { kAceptar, kCancelar, kAgregaTodos, kAgrega, kQuita, kQuitaTodos };
  static void Oprime(Form& editor, Boton boton) { Control<Button>(editor, "cmdButton", boton).Click(); }
  /// Rows of a list, columns separated by bars.
  static std::vector<std::string> Renglones(const ListView& lista) {
    std::vector<std::string> renglones;
    for (std::int32_t i = 1; i <= lista.Items().Count(); ++i) {
      std::string renglon;
      for (std::size_t c = 0; c < lista.Columns().All().size(); ++c)
        renglon += (c ? "|" : "") + lista.Cell(i, c);
      renglones.push_back(renglon);
    }
    return renglones;
  }
  double Cuenta(const std::string& desde) { return t.Numero("SELECT COUNT( * ) FROM " + desde); }

  std::vector<std::string> sentencias, mensajes;
  Tienda t{GetParam(), "si,si,si,si"};
};
ZUVI_EN_CADA_BASE(Turnos);

TEST_P(Turnos, ListaLosTurnosYElHorarioDelSeleccionado) {
  t.Base().Ejecuta("INSERT INTO turnos (turno, entrada, salida) VALUES (' Noche ', ' 9:00', NULL)");
  const Date dia = Date::FromCivil({2026, 11, 17});
  InsertaFilas(t.Base(), "horarios", "(id, turno, fecha, Empleado, HoraEntrada, comida, HoraSalida)",
               {{90, "Matutino", dia, "E01", " 6:00", Null{}, "14:00"},
                {91, "Matutino", dia, "25", "06:00", "10:00", "14:00"}});
  const auto ventana = Abre();
  // Without a selection there is no schedule to ask for, and nothing to change.
  sentencias.clear();
  Control<Button>(*ventana, "cmdEliminar").Click();
  Control<Button>(*ventana, "cmdModificar").Click();
  auto& mes = Control<MonthView>(*ventana, "MonthView1");
  EXPECT_EQ(mes.Value().Texto(), "2026-11-16");
  mes.UserClicked(dia);
  EXPECT_THAT(sentencias, IsEmpty());
  EXPECT_THAT(mensajes, IsEmpty());
  ListView &turnos = Lista(*ventana, 0), &horarios = Lista(*ventana, 1);
  EXPECT_THAT(Renglones(turnos),
              ElementsAre(" Noche |9:00|||", "Matutino|06:00|10:00|10:30|14:00",
                          "Reparto|09:00|14:00|15:00|18:00", "Vespertino|14:00|18:00|18:30|22:00"));
  EXPECT_EQ(turnos.Items()(1).Key(), "P Noche ");
  std::string columnas;
  for (const auto* lista : {&turnos, &horarios})
    for (const auto& columna : lista->Columns().All()) columnas += columna.key + ":" + columna.caption + " ";
  EXPECT_EQ(columnas,
            "Turno:Turno Entrada:Entrada Comida:Comida RegComida:Regreso de Comida Salida:Salida id:id "
            "Empleado:Empleado Fecha:Fecha HoraEntrada:Hora Entrada Comida:Comnida HoraSalida:Hora Salida ");

  turnos.UserSelected(2);
  mes.UserClicked(dia);
  // An employee's key goes through the date format as well.
  EXPECT_THAT(Renglones(horarios),
              ElementsAre("90|E01|2026-11-17|6:00||14:00", "91|24-01-1900|2026-11-17|06:00|10:00|14:00"));
  EXPECT_EQ(Control<ProgressBar>(*ventana, "ProgressBar1").Value(), 0);
  // A key with a quote breaks the statement and is reported; the list keeps what it had.
  turnos.Items().Add("PD'Or", "D'Or");
  turnos.UserSelected(5);
  mes.UserClicked(dia);
  EXPECT_THAT(t.escritorio.Avisos(),
              ElementsAre(HasSubstr("Module: frmTurnos\r\nFunction: LLenaHorarios\r\n")));
  EXPECT_EQ(horarios.Items().Count(), 2);
}

TEST_P(Turnos, LaPreguntaDeEliminarNombraElTurnoDeLaVentanaQuePregunta) {
  const auto una = Abre(), otra = Abre();
  Lista(*una, 0).UserSelected(1);
  Lista(*otra, 0).UserSelected(2);
  // The other one's question comes up while the first is still filling its list again.
  t.escritorio.Post([&] { Control<Button>(*otra, "cmdEliminar").Click(); });
  Control<Button>(*una, "cmdEliminar").Click();
  const auto pregunta = [](const std::string& turno) {
    return TextoMensaje(1, "es", [&](std::string_view) { return turno; }) + " -> si";
  };
  EXPECT_THAT(mensajes, ElementsAre(pregunta("Matutino"), pregunta("Reparto")));
  EXPECT_THAT(pregunta("Matutino"), HasSubstr("el turno \"Matutino\""));
  EXPECT_EQ(Cuenta("turnos"), 1);
  // Asked for by nobody's window it names none.
  EXPECT_THAT(t.Nuevo<AccesoDatos>()->TraeMensaje(1, nullptr), HasSubstr("el turno, con"));
}

TEST_P(Turnos, GeneraHorariosParaDiaSemanaYMes) {
  const auto ventana = Abre();
  auto& generar = Control<Button>(*ventana, "Command1");
  auto& periodo = Control<ComboBox>(*ventana, "Combo1");
  generar.Click();  // no period chosen
  EXPECT_EQ(Cuenta("horarios"), 0);
  Lista(*ventana, 0).UserSelected(1);  // Matutino: E01 and E03, rests on Sundays
  // What exists is not doubled, the Sundays are left out; the month goes from 16-11 to 15-12.
  for (const auto& [cual, filas] : {std::pair(0, 2), {1, 12}, {2, 52}}) {
    periodo.UserChose(cual);
    generar.Click();
    EXPECT_EQ(Cuenta("horarios"), filas);
  }
  EXPECT_EQ(t.Numero("SELECT COUNT(DISTINCT id) FROM horarios"), 52);
  EXPECT_EQ(Cuenta("horarios WHERE fecha = '2026-11-22'"), 0);
  EXPECT_THAT(t.Filas("SELECT turno, Empleado, HoraEntrada, comida, HoraSalida FROM horarios WHERE fecha = "
                      "'2026-12-15' ORDER BY id",
                      5),
              ElementsAre("Matutino E01 06:00 10:00 14:00", "Matutino E03 06:00 10:00 14:00"));
  EXPECT_THAT(t.escritorio.Avisos(), IsEmpty());
  // A month that has no such day ends with its last one.
  EXPECT_EQ(PeriodoDe("Mes", Date::FromCivil({2027, 1, 31})).dias, 28);
  // Without a selection every shift is meant, which is asked before.
  const auto otra = Abre();
  Control<MonthView>(*otra, "MonthView1").UserClicked(Date::FromCivil({2027, 1, 4}));
  Control<ComboBox>(*otra, "Combo1").UserChose(0);
  for (const auto& [respuesta, filas] : {std::pair("no", 0), {"si", 3}}) {
    t.anfitrion->PonInteraccion(std::make_unique<RespuestasInteraccion>(respuesta));
    Control<Button>(*otra, "Command1").Click();
    EXPECT_EQ(Cuenta("horarios WHERE fecha = '2027-01-04'"), filas);
  }
  EXPECT_THAT(mensajes, Contains(AllOf(HasSubstr("todos los turnos, del 04-01-2027"), HasSubstr("-> si"))));
}

TEST_P(Turnos, MientrasGeneraLasVentanasContestan) {
  const auto ventana = Abre();
  auto& generar = Control<Button>(*ventana, "Command1");
  Lista(*ventana, 0).UserSelected(1);
  Control<ComboBox>(*ventana, "Combo1").UserChose(1);
  int vez = 0;
  t.anfitrion->PonInteraccion(std::make_unique<Manos>([&] {
    // The same again is refused, the connection is free for others, and on the fourth day he has enough.
    if (++vez == 2) generar.Click();
    Transaccion(t.Base()).Confirma();
    return vez != 4;
  }));
  generar.Click();
  ASSERT_EQ(mensajes.size(), 2u);
  EXPECT_THAT(mensajes[0], HasSubstr("Ya se están generando"));
  EXPECT_THAT(mensajes[1], HasSubstr("del 16-11-2026 al 18-11-2026, con horarios nuevos 6."));
  EXPECT_EQ(Cuenta("horarios"), 6);
  // The rest comes with the next time; numbers follow each other.
  t.anfitrion->PonInteraccion(std::make_unique<Manos>([] { return true; }));
  generar.Click();
  EXPECT_EQ(Cuenta("horarios"), 12);
  const std::string ultimo = "SELECT ultimo FROM folios WHERE clave = 'horarios'";
  const double folio = t.Numero(ultimo);
  EXPECT_EQ(t.Numero("SELECT MAX(id) - MIN(id) + 1 FROM horarios"), 12);
  EXPECT_EQ(t.Numero("SELECT MAX(id) FROM horarios"), folio);
  // What is complete costs no number.
  const Generados otra_vez = GeneraHorarios(*t.anfitrion, "Matutino", {Date::FromCivil({2026, 11, 16}), 7});
  EXPECT_EQ(otra_vez.renglones, 0);
  EXPECT_EQ(otra_vez.dias, 7);
  EXPECT_EQ(t.Numero(ultimo), folio);
  // Somebody joins while it runs: from the next day on there is one more, and the numbers still fit.
  int dias = 0;
  GeneraHorarios(*t.anfitrion, "Matutino", {Date::FromCivil({2026, 12, 14}), 3}, [&] {
    if (++dias == 2)
      t.Base().Ejecuta("INSERT INTO turnoempleado (turno, empleado) VALUES ('Matutino', 'E99')");
    return true;
  });
  EXPECT_EQ(t.Numero("SELECT COUNT( * ) FROM horarios WHERE Empleado = 'E99'"), 2);
  EXPECT_EQ(t.Numero("SELECT MAX(id) FROM horarios"), t.Numero(ultimo));
  // Closing the window ends it.
  t.anfitrion->PonInteraccion(std::make_unique<Manos>([&] { return ventana->Unload(); }));
  generar.Click();
  EXPECT_TRUE(ventana->Closed());
  EXPECT_THAT(mensajes.back(), HasSubstr("no se generó ningún horario"));
  EXPECT_THAT(t.escritorio.Avisos(), IsEmpty());
}

TEST_P(Turnos, DosVentanasSonIndependientesYSeCierranEnPlenoLlenado) {
  const auto una = Abre(), otra = Abre();
  Lista(*una, 0).UserSelected(1);
  EXPECT_EQ(Lista(*otra, 0).SelectedItem(), nullptr);
  const auto tercera = Crea<frmTurnos>();
  t.escritorio.Post([&] { tercera->Unload(UnloadMode::TitleBar); });
  tercera->Show();
  EXPECT_TRUE(tercera->Closed());
  EXPECT_EQ(t.escritorio.Forms().size(), 2u);
  // A newer fill of the same list takes over from the one it interrupted.
  t.escritorio.Post([&] {
    t.Base().Ejecuta("DELETE FROM turnos WHERE turno = 'Reparto'");
    Lista(*otra, 0).UserSelected(1);
    Control<Button>(*otra, "cmdEliminar").Click();
  });
  t.escritorio.OnModal([](Form& editor) { editor.Unload(); });
  Control<Button>(*otra, "cmdTurnos").Click();
  EXPECT_EQ(Lista(*otra, 0).Items().Count(), 1);
  EXPECT_THAT(t.escritorio.Avisos(), IsEmpty());
}

TEST_P(Turnos, UnaListaSeRellenaAlCerrarseSuPropioEditor) {
  const auto una = Abre(), otra = Abre();
  const auto agrega = [&](const char* turno) { InsertaFilas(t.Base(), "turnos", "(turno)", {{turno}}); };
  Form* primero = nullptr;
  t.escritorio.OnModal([&](Form& editor) {
    primero = &editor;
    Control<Button>(*otra, "cmdTurnos").Click();
    // The other window's editor, opened later, kept this one from returning.
    EXPECT_EQ(Lista(*una, 0).Items().Count(), 4);
  });
  t.escritorio.OnModal([&](Form& segundo) {
    agrega("Noche");
    Control<Button>(*primero, "cmdButton", kCancelar).Click();
    EXPECT_EQ(Lista(*una, 0).Items().Count(), 4);
    EXPECT_TRUE(una->Enabled() && !otra->Enabled());
    EXPECT_EQ(Lista(*otra, 0).Items().Count(), 3);
    agrega("Tarde");
    sentencias.clear();
    EXPECT_TRUE(segundo.Visible());
  });
  Control<Button>(*una, "cmdTurnos").Click();
  EXPECT_EQ(Lista(*otra, 0).Items().Count(), 5);
  // Each list was read once for its editor, with the one count before.
  EXPECT_EQ(sentencias.size(), 2u);
  EXPECT_TRUE(una->Enabled() && otra->Enabled());
}

TEST_P(Turnos, ElAltaPideCadaCampoYUnaClaveNueva) {
  const auto editor = Edita(kAlta);
  std::string nombres;
  for (const auto& control : editor->Controls())
    if (control->TakesFocus()) nombres += control->AccessibleName() + ", ";
  EXPECT_EQ(
      nombres,
      "Turno:, Día de descanso, Hora de entrada, Hora de salida, Hora de comida, Regreso de comida, "
      "Empleado, Agrega todos los empleados al turno, Agrega el empleado al turno, Quita el empleado del "
      "turno, Quita todos los empleados del turno, Empleados dentro del turno, Aceptar, Cancelar, ");
  EXPECT_EQ(Control<ProgressBar>(*editor, "ProgressBar1").Value(), 0);
  // Whoever belongs to a shift is not offered.
  EXPECT_THAT(Renglones(Lista(*editor, 0)), ElementsAre("E05|María José Núñez", "E06|Óscar Villalobos"));
  EXPECT_EQ(Campo(*editor, 1).ListCount(), 48);
  EXPECT_EQ(Campo(*editor, 1).List(0) + Campo(*editor, 1).List(47), "01:0024:30");
  EXPECT_EQ(Campo(*editor, 4).List(6), "Dimingo");
  // Empty fields are asked for one after the other, each with its message and the focus.
  const struct {
    std::int32_t campo, mensaje;
    const char* texto;
  } faltan[] = {{0, 833, "Matutino"}, {1, 834, "22:00"}, {2, 835, "01:00"},
                {5, 836, "01:30"},    {3, 837, "24:30"}, {4, 838, "Lunes"}};
  const auto acepta = [&](std::int32_t campo, std::int32_t mensaje) {
    mensajes.clear();
    Oprime(*editor, kAceptar);
    EXPECT_THAT(mensajes, ElementsAre(TextoMensaje(mensaje, "es")));
    EXPECT_TRUE(Campo(*editor, campo).HasFocus()) << campo;
  };
  for (const auto& falta : faltan) {
    acepta(falta.campo, falta.mensaje);
    Campo(*editor, falta.campo).UserTyped(falta.texto);
  }
  // A key that exists is refused by the database alone: only one that begins with a blank is found before.
  Oprime(*editor, kAceptar);
  EXPECT_THAT(t.escritorio.Avisos(),
              ElementsAre(HasSubstr("Module: frmTurno\r\nFunction: SalvaCambios\r\n")));
  EXPECT_EQ(Cuenta("turnoempleado WHERE turno = 'Matutino'"), 2);
  t.Base().Ejecuta("INSERT INTO turnos (turno) VALUES (' Matutino')");
  acepta(0, 832);
  Campo(*editor, 0).UserTyped("Noche");
  Lista(*editor, 0).UserSelected(2);
  Oprime(*editor, kAgrega);
  EXPECT_THAT(Renglones(Lista(*editor, 1)), ElementsAre("E06|Óscar Villalobos"));
  Oprime(*editor, kAceptar);
  EXPECT_TRUE(editor->Closed());
  EXPECT_THAT(t.Filas("SELECT turno, entrada, comida, salida, descanso, regcomida, empleado FROM turnos "
                      "INNER JOIN turnoempleado USING(turno) WHERE turno = 'Noche'",
                      7),
              ElementsAre("Noche 22:00 01:00 24:30 Lunes 01:30 E06"));
}

TEST_P(Turnos, AlModificarLaClaveLosMiembrosDeLaAnteriorQuedan) {
  // Whoever stood under the new key goes.
  t.Base().Ejecuta("INSERT INTO turnoempleado (turno, empleado) VALUES ('Temprano', 'E99')");
  const auto editor = Edita(kModificacion, "Matutino");
  EXPECT_EQ(Campo(*editor, 0).Text() + Campo(*editor, 5).Text(), "Matutino10:30");
  EXPECT_EQ(Lista(*editor, 1).Items().Count(), 2);
  Oprime(*editor, kQuitaTodos);
  EXPECT_EQ(Lista(*editor, 1).Items().Count(), 0);
  Oprime(*editor, kAgregaTodos);
  EXPECT_EQ(Lista(*editor, 1).Items().Count(), 4);
  Lista(*editor, 1).UserSelected(1);
  Oprime(*editor, kQuita);
  Campo(*editor, 0).UserTyped("Temprano");
  Oprime(*editor, kAceptar);
  EXPECT_TRUE(editor->Closed());
  EXPECT_EQ(Cuenta("turnoempleado WHERE turno = 'Temprano'"), 3);
  EXPECT_EQ(Cuenta("turnoempleado WHERE turno = 'Matutino'"), 2);
  EXPECT_EQ(Cuenta("turnos WHERE turno = 'Matutino'"), 0);
}

TEST_P(Turnos, UnMiembroSinNombreNoDejaEntrarANadie) {
  t.Base().Ejecuta("INSERT INTO turnoempleado (turno, empleado) VALUES ('Reparto', 'FANTASMA')");
  t.Base().Ejecuta("INSERT INTO turnoempleado (turno, empleado) VALUES ('Inexistente', 'E06')");
  const auto editor = Edita(kModificacion, "Reparto");
  EXPECT_THAT(Renglones(Lista(*editor, 0)), ElementsAre("E05|María José Núñez"));
  EXPECT_THAT(Renglones(Lista(*editor, 1)), ElementsAre("E04|Tomás Aguirre Solís", "FANTASMA|"));
  Lista(*editor, 0).UserSelected(1);
  Oprime(*editor, kAgrega);
  Oprime(*editor, kQuita);  // nothing selected on the right
  EXPECT_THAT(mensajes, ElementsAre(TextoMensaje(839, "es")));
  EXPECT_EQ(Lista(*editor, 1).Items().Count(), 2);
  // A key that is in both lists stops the move where it is; what moved stays moved.
  Lista(*editor, 1).Items().Add("PE05", "E05").SetSubItems(1, "x");
  Oprime(*editor, kAgregaTodos);
  EXPECT_THAT(t.escritorio.Avisos(),
              ElementsAre(HasSubstr("Module: frmTurno\r\nFunction: AgregaTodosLosUsuarios\r\n")));
  EXPECT_EQ(Lista(*editor, 0).Items().Count(), 1);
  Oprime(*editor, kCancelar);
  EXPECT_TRUE(editor->Closed());
}

/// With many rows the work per row does not grow with their number. Counted, not timed.
class Muchos : public Turnos {};
INSTANTIATE_TEST_SUITE_P(SoloSqlite, Muchos, testing::Values(":memory:"));

TEST_P(Muchos, LasListasSeLlenanYSeMuevenEnUnaPasada) {
  constexpr int kCuantos = 50'000;
  const std::string numeros =
      " FROM (WITH RECURSIVE serie(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM serie WHERE n < 50000) SELECT "
      "n "
      "FROM serie) AS numeros";
  for (const std::string tabla : {"turnos (turno, entrada)", "empleados (empleado, nombre)"}) {
    t.Base().Ejecuta("DELETE FROM " + tabla.substr(0, tabla.find(' ')));
    t.Base().Ejecuta("INSERT INTO " + tabla + " SELECT 'E' || n, '06:00'" + numeros);
  }
  const auto turnos = Crea<frmTurnos>();
  const auto editor = Crea<frmTurno>();
  editor->PonModo(kAlta);
  // What the lists and the bars tell the screen, and the statements.
  for (const auto& [ventana, por_fila, cuantas] :
       {std::tuple<Form*, int, std::size_t>(turnos.get(), 7, 2), {editor.get(), 10, 5}}) {
    std::int64_t avisos = 0;
    for (const auto& control : ventana->Controls())
      if (dynamic_cast<ListView*>(control.get()) || dynamic_cast<ProgressBar*>(control.get()))
        control->SetPeer(std::make_unique<pruebas::Contador>(avisos));
    sentencias.clear();
    ventana->Show();
    EXPECT_EQ(Lista(*ventana, 0).Items().Count(), kCuantos);
    if (ventana == editor.get())
      for (const Boton boton : {kAgregaTodos, kQuitaTodos}) Oprime(*editor, boton);
    EXPECT_EQ(Lista(*ventana, 0).Items().Count(), kCuantos);
    EXPECT_LE(avisos, por_fila * kCuantos);
    EXPECT_LE(Lista(*ventana, 0).Items().Visited() + Lista(*ventana, 1).Items().Visited(),
              std::size_t{3 * kCuantos});
    EXPECT_EQ(sentencias.size(), cuantas);
  }
}

}  // namespace
}  // namespace zuvi::host
