#include "base/text.h"
#include "shifts/columnas.h"
#include "shifts/frm_turno.h"
#include "windows/sentencia.h"

namespace zuvi {
namespace {

constexpr std::int32_t kNombre = 1;  // column of the lists

/// An employee that is not listed needs no removing.
void Quita(ListView& lista, const std::string& clave) {
  if (lista.Items().ByKey(clave)) lista.Items().Remove(clave);
}

}  // namespace

void frmTurno::LlenaEmpleadosEn(ListView& lista, const std::string& cuenta, const std::string& filas) {
  PonColumnas(lista, {{"Empleado", "Empleado", Dip(90)}, {"Nombre", "Nombre"}});
  LlenaLista(lista, *ProgressBar1, cuenta, filas, [](ListItems& items, Recordset& fila) {
    const std::string empleado = Campo(fila, "Empleado");
    items.Add(ClaveDeItem(empleado), empleado).SetSubItems(kNombre, Campo(fila, "Nombre"));
  });
}

void frmTurno::LLenaEmpleados() {
  Trata("LLenaEmpleados", [&] {
    LlenaEmpleadosEn(Disponibles(), "SELECT COUNT( * ) FROM empleados",
                     "SELECT * FROM empleados ORDER BY empleado");
  });
}

void frmTurno::LLenaEmpleadosTurno() {
  Trata("LLenaEmpleadosTurno", [&] {
    const std::string turno = Texto(kTurno);
    LlenaEmpleadosEn(Miembros(),
                     EntreApostrofos("SELECT COUNT( * ) FROM turnoempleado WHERE turno = '", turno),
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
  Trata("Remueve", [&] { Quita(Disponibles(), cKey); });
}

void frmTurno::Remueve2(const std::string& cKey) {
  Trata("Remueve2", [&] { Quita(Miembros(), cKey); });
}

std::string frmTurno::MueveSeleccionado(ListView& de, ListView& a) {
  const ListItem* elegido = de.SelectedItem();
  if (!elegido) return {};
  for (std::int32_t i = 1; i <= a.Items().Count(); ++i) {
    if (!a.Items()(i).SubItems(kNombre).empty()) continue;
    Mensaje(839);
    return {};
  }
  std::string clave = elegido->Key();
  a.Items().Add(clave, elegido->Text()).SetSubItems(kNombre, elegido->SubItems(kNombre));
  return clave;
}

void frmTurno::MueveTodos(ListView& de, ListView& a) {
  if (a.Items().TakeAll(de.Items())) return;
  for (std::int32_t i = 1; i <= de.Items().Count(); ++i) {
    const ListItem& item = de.Items()(i);
    a.Items().Add(item.Key(), item.Text()).SetSubItems(kNombre, item.SubItems(kNombre));
  }
  de.Items().Clear();
}

void frmTurno::AgregaUsuario() {
  Trata("AgregaUsuario", [&] {
    const std::string clave = MueveSeleccionado(Disponibles(), Miembros());
    if (!clave.empty()) Remueve(clave);
  });
}

void frmTurno::QuitarUsuario() {
  Trata("QuitarUsuario", [&] {
    const std::string clave = MueveSeleccionado(Miembros(), Disponibles());
    if (!clave.empty()) Remueve2(clave);
  });
}

void frmTurno::AgregaTodosLosUsuarios() {
  Trata("AgregaTodosLosUsuarios", [&] { MueveTodos(Disponibles(), Miembros()); });
}

void frmTurno::QuitaTodosLosUsuarios() {
  Trata("QuitaTodosLosUsuarios", [&] { MueveTodos(Miembros(), Disponibles()); });
}

}  // namespace zuvi
