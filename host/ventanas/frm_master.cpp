#include "host/ventanas/frm_master.h"

#include <algorithm>

#include "base/text.h"
#include "host/shop/celdas.h"
#include "host/shop/ordenes.h"
#include "host/shop/valuacion.h"

namespace zuvi::host {

std::span<const frmMaster::Accion> frmMaster::Acciones() {
  static constexpr Accion kAcciones[] = {
      {"&Nueva (Ins)", key::kInsert, false, false, &frmMaster::Nueva},
      {"&Modificar (Entrar)", 0, true, false, &frmMaster::Modifica},
      {"C&onsultar (F3)", key::kF3, true, false, &frmMaster::Consulta},
      {"&Imprimir (F4)", key::kF4, true, false, &frmMaster::Imprime},
      {"&Entregar producto terminado (F6)", key::kF6, true, true, &frmMaster::Entrega},
      {"&Cancelar orden (Supr)", key::kDelete, true, false, &frmMaster::Cancela},
      {"&Liberar marca de ocupada (F11)", key::kF11, true, false, &frmMaster::Libera},
      {"Ensamblar y desensamblar &kit (F7)", key::kF7, false, true, &frmMaster::Kits},
      {"&Fracciones (F8)", key::kF8, false, false, &frmMaster::Fracciones},
      {"&Turnos (F9)", key::kF9, false, false, &frmMaster::Turnos},
      {"&Actualizar la lista (F5)", key::kF5, false, true, &frmMaster::Refresca},
      {"&Salir", 0, false, false, &frmMaster::Sale},
  };
  return kAcciones;
}

frmMaster::frmMaster(const Escena& escena)
    : VentanaHost(escena, "frmMaster"), cmdAccion(AddArray<Button>("cmdAccion")) {
  CreaControles();
  EnlazaBusqueda(*txtBuscar, *lv);
  txtBuscar->OnChange = [this] { Trata([this] { Muestra(); }); };
  chkPendientes->OnClick = [this] { Trata([this] { Muestra(); }); };
  lv->OnDblClick = [this] { Trata([this] { Modifica(); }); };
  lv->OnItemClick = [this](ListItem&) { Trata([this] { HabilitaAcciones(); }); };
  Timer1->OnTimer = [this] {
    Timer1->SetInterval(0);
    Trata([this] { Lee(); });
  };
  SetDefaultButton(&(*cmdAccion)(1));
}

const MemberTable* frmMaster::Members() const {
  static const MemberTable table = MemberTableBuilder<frmMaster>(WithFormMembers({}))
                                       .Property<&frmMaster::Orden>("Orden")
                                       .Method<&frmMaster::Actualiza>("Actualiza");
  return &table;
}

void frmMaster::Form_Load() {
  const Opciones& opciones = ElAnfitrion().TraeOpciones();
  SetCaption("Zuvi: órdenes de producción (" + opciones.usuario + ")");
  Lee();
  Dice(ElAnfitrion().RecienCreada() ? "La base es nueva: se crearon sus tablas." : "");
  ElAnfitrion().PonVentanaPrincipal(shared_from_this());
  lv->SetFocus();
}

void frmMaster::Form_QueryUnload(CancelEvent& event, UnloadMode mode) {
  const bool sin_pregunta = mode == UnloadMode::System;
  const bool cerrado = Trata([&] {
    const auto abiertas = ElAnfitrion().Ventanas();
    if (abiertas.empty()) return;
    const std::string cuantas = std::to_string(abiertas.size());
    if (!sin_pregunta &&
        !ElAnfitrion().Pregunta(abiertas.size() == 1
                                    ? "Hay una ventana de producción abierta. ¿Cerrarla y salir?"
                                    : "Hay " + cuantas +
                                          " ventanas de producción abiertas. ¿Cerrarlas y salir?")) {
      event.cancel = true;
      return;
    }
    // Each closes by its own rules, so that no order stays marked as busy.
    for (const ObjectPtr& ventana : abiertas) ventana->Call("Unload");
    if (ElAnfitrion().Ventanas().empty()) return;
    event.cancel = true;
    Dice("Una ventana no se dejó cerrar; ciérrela antes de salir.");
  });
  if (!cerrado && !sin_pregunta) event.cancel = true;
}

void frmMaster::Form_Unload(CancelEvent&) {
  ElAnfitrion().PonVentanaPrincipal(nullptr);
  // The component knows this window as its caller; neither may keep the other alive.
  componente_.reset();
}

void frmMaster::Form_KeyDown(KeyEvent& event) {
  if (event.shift != shift::kNone || event.key == 0) return;
  // In the search box the key deletes text.
  if (event.key == key::kDelete && ActiveControl() != lv.get()) return;
  for (const Accion& accion : Acciones()) {
    if (accion.tecla != event.key) continue;
    event.Use();
    Haz(accion);
    return;
  }
}

void frmMaster::Haz(const Accion& accion) {
  Trata([&] {
    if (accion.orden && Orden() == 0) return Dice("Elija antes una orden de la lista.");
    Dice("");
    nueva_tras_ = 0;
    // Whatever the operation opens, one comes back to the list.
    lv->SetFocus();
    (this->*accion.hace)();
  });
}

void frmMaster::Dice(const std::string& texto) { lblEstado->SetCaption(texto); }

std::int32_t frmMaster::Orden() const { return lv->SelectedItem() ? ToInt32(lv->SelectedItem()->Text()) : 0; }

void frmMaster::Actualiza() { Timer1->SetInterval(30); }

void frmMaster::Lee() {
  renglones_.clear();
  const auto filas = ResumenDeOrdenes(Base());
  for (; !filas->Eof(); filas->MoveNext()) {
    Renglon r;
    r.op = ToInt32(filas->Campo("op"));
    const std::string estado = EstadoEnPalabras(*filas);
    r.pendiente = estado == "Pendiente";
    r.ocupada = NumeroDe(filas->Campo("ocupado")) != 0;
    std::string almacen = TextOrNothing(filas->Campo("almacen"));
    if (const std::string nombre = TextOrNothing(filas->Campo("nombre")); !nombre.empty())
      almacen += " " + nombre;
    std::string ocupante = TextOrNothing(filas->Campo("usuario"));
    if (ocupante.empty()) ocupante = "(sin nombre)";
    r.columnas = {estado,
                  DiaDe(filas->Campo("f_emision")),
                  DiaDe(filas->Campo("fechaEntrega")),
                  almacen,
                  TextOrNothing(filas->Campo("partidas")),
                  NumberText(NumeroDe(filas->Campo("cantidad"))),
                  NumberText(NumeroDe(filas->Campo("terminado"))),
                  TextoImporte(ACentavos(NumeroDe(filas->Campo("importe")))),
                  r.ocupada ? ocupante : std::string()};
    r.texto = Decimal(r.op);
    for (const std::string& columna : r.columnas) r.texto += "\n" + ToLower(columna);
    renglones_.push_back(std::move(r));
  }
  // The newest orders are what one works on.
  std::ranges::reverse(renglones_);
  Muestra();
  if (nueva_tras_ == 0 || renglones_.empty() || renglones_.front().op <= nueva_tras_) return;
  nueva_tras_ = 0;
  if (ListItem* nueva = lv->Items().ByKey(Decimal(renglones_.front().op))) lv->Select(nueva);
}

void frmMaster::Muestra() {
  const std::int32_t elegida = Orden();
  const std::string busqueda = ToLower(Trim(txtBuscar->Text()));
  const bool solo_pendientes = chkPendientes->Value() == 1;
  ListItems& lista = lv->Items();
  lista.Clear();
  std::size_t ocupadas = 0;
  for (const Renglon& r : renglones_) {
    if (solo_pendientes && !r.pendiente) continue;
    if (r.texto.find(busqueda) == std::string::npos) continue;
    ocupadas += r.ocupada ? 1 : 0;
    ListItem& renglon = lista.Add(Decimal(r.op), Decimal(r.op));
    for (std::size_t i = 0; i < r.columnas.size(); ++i)
      renglon.SetSubItems(static_cast<std::int32_t>(i) + 1, r.columnas[i]);
  }
  ListItem* elegido = lista.ByKey(Decimal(elegida));
  if (!elegido && lista.Count() > 0) elegido = &lista(1);
  lv->Select(elegido);
  std::string cuenta = Decimal(lista.Count()) + (lista.Count() == 1 ? " orden" : " órdenes");
  if (ocupadas > 0) cuenta += ", " + std::to_string(ocupadas) + (ocupadas == 1 ? " ocupada" : " ocupadas");
  lblCuenta->SetCaption(cuenta);
  HabilitaAcciones();
}

void frmMaster::HabilitaAcciones() {
  const bool hay_orden = Orden() != 0;
  std::int16_t i = 0;
  for (const Accion& accion : Acciones()) {
    if (accion.orden) (*cmdAccion)(i).SetEnabled(hay_orden);
    ++i;
  }
}

}  // namespace zuvi::host
