// Places of the main window's controls: the search on top, the list in the middle, the operations at the
// right, the state at the bottom.
#include "host/ventanas/frm_master.h"

namespace zuvi::host {
namespace {

constexpr std::int32_t kAncho = 1120, kAlto = 640, kMargen = 12;
constexpr std::int32_t kAnchoBoton = 208, kAltoBoton = 30, kPasoBoton = 34, kHueco = 16;
constexpr std::int32_t kIzquierdaBotones = kAncho - kMargen - kAnchoBoton;
constexpr std::int32_t kAnchoLista = kIzquierdaBotones - 2 * kMargen, kArribaLista = 48;
constexpr std::int32_t kPie = kAlto - 32;

struct ColumnaDeLista {
  const char* clave;
  const char* caption;
  std::int32_t ancho;  // 0 shares out what is left
  bool numero = false;
};
constexpr ColumnaDeLista kColumnas[] = {
    {"op", "Orden", 52},
    {"estado", "Estado", 128},
    {"emision", "Documento", 80},
    {"entrega", "Entrega", 80},
    {"almacen", "Almacén", 0},
    {"partidas", "Partidas", 64, true},
    {"cantidad", "Cantidad", 64, true},
    {"terminado", "Terminado", 78, true},
    {"importe", "Importe", 80, true},
    {"ocupada", "Ocupada por", 88},
};

}  // namespace

void frmMaster::CreaControles() {
  SetCaption("Zuvi: órdenes de producción");
  SetKeyPreview(true);
  DesignClientSize(Dip(kAncho), Dip(kAlto));
  constexpr unsigned kDerecha = anchor::kTop | anchor::kRight, kAbajo = anchor::kLeft | anchor::kBottom;

  Rotulo("&Buscar:", EnDips(kMargen, 16, 56, 20));
  txtBuscar = CajaTexto("txtBuscar", EnDips(kMargen + 60, 12, 340, 24));
  chkPendientes = Add<CheckBox>("chkPendientes");
  chkPendientes->SetCaption("Sólo &pendientes");
  chkPendientes->Design(EnDips(kMargen + 416, 14, 160, 20));

  lv = Add<ListView>("lv");
  lv->Design(EnDips(kMargen, kArribaLista, kAnchoLista, kPie - 8 - kArribaLista), anchor::kAll);
  for (const ColumnaDeLista& columna : kColumnas)
    lv->Columns().Add(columna.clave, columna.caption, Dip(columna.ancho), columna.numero);

  std::int32_t y = kArribaLista;
  for (const Accion& accion : Acciones()) {
    if (accion.hueco) y += kHueco;
    Button& boton = AddTo(*cmdAccion, "cmdAccion", cmdAccion->Count());
    boton.SetCaption(accion.caption);
    boton.Design(EnDips(kIzquierdaBotones, y, kAnchoBoton, kAltoBoton), kDerecha);
    boton.OnClick = [this, &accion] { Haz(accion); };
    y += kPasoBoton;
  }

  lblEstado = Add<Label>("lblEstado");
  lblEstado->SetLongest("La orden no se pudo abrir. Actualice la lista y vea si la base responde.");
  lblEstado->Design(EnDips(kMargen, kPie + 4, kAnchoLista, 20), kAbajo | anchor::kRight);
  lblCuenta = Add<Label>("lblCuenta");
  lblCuenta->SetRightAligned(true);
  lblCuenta->SetLongest("9999 órdenes, 99 ocupadas");
  lblCuenta->Design(EnDips(kIzquierdaBotones, kPie + 4, kAnchoBoton, 20), anchor::kRight | anchor::kBottom);
  Timer1 = Add<Timer>("Timer1");
  Add<AutoResizer>("AutoResizer1");
}

}  // namespace zuvi::host
