#include "tests/shifts/ventanas.h"

namespace zuvi::host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class EditorTurno : public Ventanas {
 protected:
  std::shared_ptr<frmTurno> Abre(const char* modo, const std::string& turno = "") {
    auto editor = Crea<frmTurno>();
    editor->PonModo(modo);
    editor->PonTurno(turno);
    editor->Show();
    return editor;
  }
  static void Escribe(Form& editor, std::int32_t campo, const std::string& texto) {
    Control<ComboBox>(editor, "cmbFields", campo).UserTyped(texto);
  }
  static void Oprime(Form& editor, std::int32_t boton) {
    Control<Button>(editor, "cmdButton", boton).Click();
  }
  static ListView& Lista(Form& editor, std::int32_t cual) { return Control<ListView>(editor, "lv", cual); }
};
ZUVI_EN_CADA_BASE(EditorTurno);

TEST_P(EditorTurno, AltaConSusMiembros) {
  sentencias.clear();
  auto editor = Abre(kAlta);
  EXPECT_THAT(
      Toma(sentencias),
      ElementsAre("SELECT COUNT( * ) FROM empleados", "SELECT * FROM empleados ORDER BY empleado",
                  "SELECT COUNT( * ) FROM turnoempleado WHERE turno = ''",
                  "SELECT turnoempleado.empleado, empleados.nombre FROM turnoempleado LEFT JOIN empleados "
                  "USING( empleado ) WHERE turno = '' ORDER BY empleado",
                  "SELECT * FROM turnoempleado"));
  // Whoever belongs to a shift is not offered.
  EXPECT_THAT(Renglones(Lista(*editor, 0)), ElementsAre("E05|María José Núñez", "E06|Óscar Villalobos"));
  auto& horas = Control<ComboBox>(*editor, "cmbFields", 1);
  EXPECT_EQ(horas.ListCount(), 48);
  EXPECT_EQ(horas.List(0) + horas.List(47), "01:0024:30");
  EXPECT_EQ(Control<ComboBox>(*editor, "cmbFields", 4).List(6), "Dimingo");

  // Empty fields are asked for one after the other, each with its message and the focus.
  const std::pair<std::int32_t, const char*> campos[] = {{0, "Noche"}, {1, "22:00"}, {2, "01:00"},
                                                         {5, "01:30"}, {3, "24:30"}, {4, "Lunes"}};
  for (const auto& [campo, texto] : campos) {
    mensajes.clear();
    Oprime(*editor, 0);
    EXPECT_EQ(mensajes.size(), 1u) << campo;
    EXPECT_TRUE(Control<ComboBox>(*editor, "cmbFields", campo).HasFocus()) << campo;
    Escribe(*editor, campo, texto);
  }
  Lista(*editor, 0).UserSelected(2);
  Oprime(*editor, 3);
  EXPECT_THAT(Renglones(Lista(*editor, 1)), ElementsAre("E06|Óscar Villalobos"));
  sentencias.clear();
  Oprime(*editor, 0);
  EXPECT_TRUE(editor->Closed());
  EXPECT_THAT(
      Toma(sentencias),
      ElementsAre("SELECT * FROM turnos WHERE turno = ' Noche'", HasSubstr("INSERT INTO turnos"),
                  "DELETE FROM turnoempleado WHERE turno = 'Noche'", HasSubstr("INSERT INTO turnoempleado")));
  EXPECT_THAT(t.Filas("SELECT turno, entrada, comida, salida, descanso, regcomida FROM turnos WHERE turno = "
                      "'Noche'",
                      6),
              ElementsAre("Noche 22:00 01:00 24:30 Lunes 01:30"));
  EXPECT_THAT(t.Filas("SELECT empleado FROM turnoempleado WHERE turno = 'Noche'", 1), ElementsAre("E06"));
}

TEST_P(EditorTurno, ModificaLaClaveYLosMiembros) {
  auto editor = Abre(kModificacion, "Matutino");
  EXPECT_EQ(Control<ComboBox>(*editor, "cmbFields", 0).Text(), "Matutino");
  EXPECT_EQ(Control<ComboBox>(*editor, "cmbFields", 5).Text(), "10:30");
  EXPECT_EQ(Lista(*editor, 1).Items().Count(), 2);
  Oprime(*editor, 5);
  EXPECT_EQ(Lista(*editor, 1).Items().Count(), 0);
  EXPECT_EQ(Lista(*editor, 0).Items().Count(), 4);
  Oprime(*editor, 2);
  EXPECT_EQ(Lista(*editor, 1).Items().Count(), 4);
  Lista(*editor, 1).UserSelected(1);
  Oprime(*editor, 4);
  Escribe(*editor, 0, "Temprano");
  sentencias.clear();
  Oprime(*editor, 0);
  EXPECT_TRUE(editor->Closed());
  EXPECT_THAT(sentencias.at(0), HasSubstr("WHERE turno = 'Matutino'"));
  EXPECT_EQ(sentencias.at(1), "DELETE FROM turnoempleado WHERE turno = 'Temprano'");
  // The members under the old key stay where they are.
  EXPECT_EQ(t.Numero("SELECT COUNT( * ) FROM turnoempleado WHERE turno = 'Temprano'"), 3);
  EXPECT_EQ(t.Numero("SELECT COUNT( * ) FROM turnoempleado WHERE turno = 'Matutino'"), 2);
  EXPECT_EQ(t.Numero("SELECT COUNT( * ) FROM turnos WHERE turno = 'Matutino'"), 0);
}

TEST_P(EditorTurno, UnMiembroSinNombreNoDejaEntrarANadie) {
  t.Base().Ejecuta("INSERT INTO turnoempleado (turno, empleado) VALUES ('Reparto', 'FANTASMA')");
  t.Base().Ejecuta("INSERT INTO turnoempleado (turno, empleado) VALUES ('Inexistente', 'E06')");
  auto editor = Abre(kModificacion, "Reparto");
  EXPECT_THAT(Renglones(Lista(*editor, 0)), ElementsAre("E05|María José Núñez"));
  EXPECT_THAT(Renglones(Lista(*editor, 1)), ElementsAre("E04|Tomás Aguirre Solís", "FANTASMA|"));
  Lista(*editor, 0).UserSelected(1);
  mensajes.clear();
  Oprime(*editor, 3);
  EXPECT_EQ(mensajes.size(), 1u);
  EXPECT_EQ(Lista(*editor, 1).Items().Count(), 2);
  Oprime(*editor, 3 + 1);  // nothing selected on the right
  EXPECT_EQ(mensajes.size(), 1u);
  // A key that is in both lists stops the move where it is; what moved stays moved.
  Lista(*editor, 1).Items().Add("PE05", "E05").SetSubItems(1, "x");
  Oprime(*editor, 2);
  ASSERT_EQ(t.escritorio.Avisos().size(), 1u);
  EXPECT_THAT(t.escritorio.Avisos().at(0),
              HasSubstr("Module: frmTurno\r\nFunction: AgregaTodosLosUsuarios\r\n"));
  EXPECT_EQ(Lista(*editor, 0).Items().Count(), 1);
}

TEST_P(EditorTurno, UnaClaveRepetidaLaRechazaLaBaseDeDatos) {
  auto editor = Abre(kAlta);
  const char* const textos[] = {"Matutino", "06:00", "10:00", "14:00", "Lunes", "10:30"};
  for (std::int32_t i = 0; i < 6; ++i) Escribe(*editor, i, textos[i]);
  Oprime(*editor, 0);
  EXPECT_FALSE(editor->Closed());
  ASSERT_EQ(t.escritorio.Avisos().size(), 1u);
  EXPECT_THAT(t.escritorio.Avisos().at(0), HasSubstr("Module: frmTurno\r\nFunction: SalvaCambios\r\n"));
  EXPECT_EQ(t.Numero("SELECT COUNT( * ) FROM turnoempleado WHERE turno = 'Matutino'"), 2);
  // Only a key that begins with a blank is found by the test for existing ones.
  t.Base().Ejecuta("INSERT INTO turnos (turno) VALUES (' Matutino')");
  mensajes.clear();
  Oprime(*editor, 0);
  EXPECT_EQ(mensajes.size(), 1u);
  EXPECT_TRUE(Control<ComboBox>(*editor, "cmbFields", 0).HasFocus());
  Oprime(*editor, 1);
  EXPECT_TRUE(editor->Closed());
}

}  // namespace
}  // namespace zuvi::host
