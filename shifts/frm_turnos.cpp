#include "shifts/frm_turnos.h"

#include "base/format.h"
#include "base/text.h"
#include "shifts/columnas.h"
#include "shifts/frm_turno.h"
#include "windows/sentencia.h"

namespace zuvi {

frmTurnos::frmTurnos(Modulo& modulo) : VentanaModulo(modulo, "frmTurnos") {
  CreaControles();
  cmdTurnos->OnClick = [this] { cmdTurnos_Click(); };
  cmdModificar->OnClick = [this] { cmdModificar_Click(); };
  cmdEliminar->OnClick = [this] { cmdEliminar_Click(); };
  Command1->OnClick = [this] { Command1_Click(); };
  MonthView1->OnDateClick = [this](const Date&) { MonthView1_DateClick(); };
}

void frmTurnos::CreaControles() {
  SetCaption("Turnos");
  DesignClientSize(Dip(860), Dip(600));

  lv = AddArray<ListView>("lv");
  AddTo(*lv, "lv", 0).Design({Dip(16), Dip(16), Dip(680), Dip(262)}, anchor::kAcross);
  const auto boton = [this](const char* nombre, const char* titulo, std::int32_t arriba) {
    auto control = Add<Button>(nombre);
    control->SetCaption(titulo);
    control->Design({Dip(708), arriba, Dip(136), Dip(30)}, anchor::kTop | anchor::kRight);
    return control;
  };
  cmdTurnos = boton("cmdTurnos", "&Nuevo turno", Dip(16));
  cmdModificar = boton("cmdModificar", "&Modifica turno", Dip(54));
  cmdEliminar = boton("cmdEliminar", "&Eliminar turno", Dip(92));

  MonthView1 = Add<MonthView>("MonthView1");
  MonthView1->Design({Dip(16), Dip(290), Dip(236), Dip(180)});
  Label1 = Add<Label>("Label1");
  Label1->SetCaption("Para el siguiente");
  Label1->Design({Dip(16), Dip(485), Dip(104), Dip(20)});
  Combo1 = Add<ComboBox>("Combo1");
  Combo1->SetKind(ComboBox::Style::DropDownList);
  Combo1->Design({Dip(124), Dip(482), Dip(128), Dip(24)});
  Command1 = Add<Button>("Command1");
  Command1->SetCaption("&Generar horarios");
  Command1->Design({Dip(16), Dip(516), Dip(236), Dip(30)});
  AddTo(*lv, "lv", 1).Design({Dip(264), Dip(290), Dip(580), Dip(262)}, anchor::kAll);
  ProgressBar1 = Add<ProgressBar>("ProgressBar1");
  ProgressBar1->Design({Dip(16), Dip(566), Dip(828), Dip(18)},
                       anchor::kLeft | anchor::kRight | anchor::kBottom);
  AutoResizer1 = Add<AutoResizer>("AutoResizer1");
}

const MemberTable* frmTurnos::Members() const {
  using F = frmTurnos;
  static const MemberTable table =
      WithFormMembers(MemberTable::Of<F>().Property<&F::TraeAmbiente, &F::PonAmbiente>("Ambiente"));
  return &table;
}

void frmTurnos::Form_Load() {
  Trata("Form_Load", [&] {
    for (const char* periodo : {"Día", "Semana", "Mes"}) Combo1->AddItem(periodo);
    MonthView1->SetValue(Hoy());
    LLenaTurnos();
    LLenaHorarios();
    Prepara();
  });
}

void frmTurnos::Form_Unload(CancelEvent&) {
  Trata("Form_Unload", [&] { Libera(); });
}

void frmTurnos::LLenaTurnos() {
  Trata("LLenaTurnos", [&] {
    ListView& turnos = Turnos();
    PonColumnas(turnos, {{"Turno", "Turno", Dip(180)},
                         {"Entrada", "Entrada"},
                         {"Comida", "Comida"},
                         {"Regreso de Comida", "RegComida"},
                         {"Salida", "Salida"}});
    const std::string elegido = turnos.SelectedItem() ? turnos.SelectedItem()->Key() : std::string();
    LlenaLista(turnos, *ProgressBar1, "SELECT COUNT( * ) FROM turnos", "SELECT * FROM turnos ORDER BY turno",
               [](ListItems& items, Recordset& fila) {
                 const std::string turno = ToText(fila.Campo("Turno"));
                 ListItem& item = items.Add(ClaveDeItem(turno), turno);
                 item.SetSubItems(1, Campo(fila, "Entrada"));
                 item.SetSubItems(2, Campo(fila, "comida"));
                 item.SetSubItems(3, Campo(fila, "regcomida"));
                 item.SetSubItems(4, Campo(fila, "Salida"));
               });
    // Whoever has just modified a shift goes on with it.
    if (!turnos.SelectedItem() && !elegido.empty()) turnos.Select(turnos.Items().ByKey(elegido));
  });
}

void frmTurnos::LLenaHorarios() {
  Trata("LLenaHorarios", [&] {
    const Date fecha = MonthView1->Value();
    ListView& horarios = Horarios();
    PonColumnas(horarios, {{"id", "id", Dip(70)},
                           {"Empleado", "Empleado"},
                           {"Fecha", "Fecha"},
                           {"Hora Entrada", "HoraEntrada"},
                           {"Comnida", "Comida"},
                           {"Hora Salida", "HoraSalida"}});
    if (!Turnos().SelectedItem()) return;
    const std::string condicion = " FROM horarios WHERE fecha = " + Datos().FechaSQL(TraeConexion(), fecha) +
                                  " AND turno = '" + TurnoSeleccionado() + "'";
    LlenaLista(horarios, *ProgressBar1, "SELECT COUNT( * )" + condicion, "SELECT *" + condicion,
               [](ListItems& items, Recordset& fila) {
                 const std::string id = ToText(fila.Campo("Id"));
                 ListItem& item = items.Add(ClaveDeItem(id), id);
                 // The date format goes over the employee's key: what is no number or date stays as it is.
                 item.SetSubItems(1, std::string(Trim(FormatAsDate(fila.Campo("Empleado"), "dd-MM-yyyy"))));
                 item.SetSubItems(2, Campo(fila, "Fecha"));
                 item.SetSubItems(3, Campo(fila, "HoraEntrada"));
                 item.SetSubItems(4, Campo(fila, "comida"));
                 item.SetSubItems(5, Campo(fila, "HoraSalida"));
               });
  });
}

std::string frmTurnos::TurnoSeleccionado() const { return Turnos().SelectedItem()->Key().substr(1); }

void frmTurnos::EditaTurno(const char* modo, const std::string& turno) {
  auto editor = std::make_shared<frmTurno>(ElModulo());
  editor->PonAmbiente(TraeAmbiente());
  editor->PonModo(modo);
  editor->PonTurno(turno);
  editor->ShowModal(this, [this] {
    if (Closed()) return;
    LLenaTurnos();
    LLenaHorarios();
  });
}

void frmTurnos::cmdTurnos_Click() {
  Trata("cmdTurnos_Click", [&] { EditaTurno(kAlta, ""); });
}

void frmTurnos::cmdModificar_Click() {
  Trata("cmdModificar_Click", [&] {
    if (!Turnos().SelectedItem()) return;
    EditaTurno(kModificacion, TurnoSeleccionado());
  });
}

void frmTurnos::cmdEliminar_Click() {
  Trata("cmdEliminar_Click", [&] {
    if (!Turnos().SelectedItem()) return;
    // The one that is asked for, whatever happens to the list meanwhile. Unlike for a modification, trimmed.
    const std::string turno(Trim(TurnoSeleccionado()));
    constexpr std::int16_t kModo = 1;
    if (!Pregunta(1, kModo)) return;
    for (const char* sql : {"DELETE FROM turnos WHERE turno = '", "DELETE FROM turnoempleado WHERE turno = '",
                            "DELETE FROM horarios WHERE turno = '"})
      Entorno()->EjecutaSQL(EntreApostrofos(sql, turno));
    LLenaTurnos();
    LLenaHorarios();
  });
}

void frmTurnos::Command1_Click() {
  Trata("Command1_Click", [&] { IniciaProceso("TURNOS003"); });
}

void frmTurnos::MonthView1_DateClick() {
  Trata("MonthView1_DateClick", [&] { LLenaHorarios(); });
}

}  // namespace zuvi
