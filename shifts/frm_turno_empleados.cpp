#include "base/text.h"
#include "shifts/columnas.h"
#include "shifts/frm_turno.h"
#include "windows/sentencia.h"

namespace zuvi {
namespace {

/// An employee that is not listed needs no removing.
void Quita(ListView& lista, const std::string& clave) {
  if (lista.Items().ByKey(clave)) lista.Items().Remove(clave);
}

}  // namespace

void frmTurno::LlenaEmpleadosEn(ListView& lista, const std::string& cuenta, const std::string& filas) {
  PonColumnas(lista, {{"Empleado", "Empleado", Dip(90)}, {"Nombre", "Nombre"}});
  LlenaLista(lista, *ProgressBar1, cuenta, filas, [](ListItems& items, Recordset& fila) {
    const std::string empleado = Campo(fila, "Empleado");
    items.Add(ClaveDeItem(empleado), empleado).SetSubItems(1, Campo(fila, "Nombre"));
  });
}

void frmTurno::LLenaEmpleados() {
  Trata("LLenaEmpleados", [&] {
    LlenaEmpleadosEn((*lv)(0), "SELECT COUNT( * ) FROM empleados",
                     "SELECT * FROM empleados ORDER BY empleado");
  });
}

void frmTurno::LLenaEmpleadosTurno() {
  Trata("LLenaEmpleadosTurno", [&] {
    const std::string turno = (*cmbFields)(0).Text();
    LlenaEmpleadosEn((*lv)(1), EntreApostrofos("SELECT COUNT( * ) FROM turnoempleado WHERE turno = '", turno),
                     "SELECT turnoempleado.empleado, empleados.nombre FROM turnoempleado "
                     "LEFT JOIN empleados USING( empleado ) WHERE turno = '" +
                         turno + "' ORDER BY empleado");
  });
}

void frmTurno::RemueveEnTurno() {
  Trata("RemueveEnTurno", [&] {
    for (const auto asignado = Consulta("SELECT * FROM turnoempleado"); !asignado->Eof();
         asignado->MoveNext())
      Remueve(ClaveDeItem(Campo(*asignado, "empleado")));
  });
}

void frmTurno::Remueve(const std::string& cKey) {
  Trata("Remueve", [&] { Quita((*lv)(0), cKey); });
}

void frmTurno::Remueve2(const std::string& cKey) {
  Trata("Remueve2", [&] { Quita((*lv)(1), cKey); });
}

std::string frmTurno::MueveSeleccionado(ListView& de, ListView& a) {
  const ListItem* elegido = de.SelectedItem();
  if (!elegido) return {};
  for (std::int32_t i = 1; i <= a.Items().Count(); ++i) {
    if (!a.Items()(i).SubItems(1).empty()) continue;
    Mensaje(839);
    return {};
  }
  const std::string clave = elegido->Key();
  a.Items().Add(clave, elegido->Text()).SetSubItems(1, elegido->SubItems(1));
  return clave;
}

void frmTurno::MueveTodos(ListView& de, ListView& a) {
  if (a.Items().TakeAll(de.Items())) return;
  for (std::int32_t i = 1; i <= de.Items().Count(); ++i) {
    const ListItem& item = de.Items()(i);
    a.Items().Add(item.Key(), item.Text()).SetSubItems(1, item.SubItems(1));
  }
  de.Items().Clear();
}

void frmTurno::AgregaUsuario() {
  Trata("AgregaUsuario", [&] {
    const std::string clave = MueveSeleccionado((*lv)(0), (*lv)(1));
    if (!clave.empty()) Remueve(clave);
  });
}

void frmTurno::QuitarUsuario() {
  Trata("QuitarUsuario", [&] {
    const std::string clave = MueveSeleccionado((*lv)(1), (*lv)(0));
    if (!clave.empty()) Remueve2(clave);
  });
}

void frmTurno::AgregaTodosLosUsuarios() {
  Trata("AgregaTodosLosUsuarios", [&] { MueveTodos((*lv)(0), (*lv)(1)); });
}

void frmTurno::QuitaTodosLosUsuarios() {
  Trata("QuitaTodosLosUsuarios", [&] { MueveTodos((*lv)(1), (*lv)(0)); });
}

}  // namespace zuvi
