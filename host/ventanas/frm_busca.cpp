#include "host/ventanas/frm_busca.h"

#include "base/text.h"
#include "host/shop/celdas.h"
#include "toolkit/indicators.h"

namespace zuvi::host {

namespace {

std::string NotaDeMuchos() {
  return "Se muestran los primeros " + Decimal(frmBusca::kMaximo) + "; precise la búsqueda.";
}

}  // namespace

frmBusca::frmBusca(const Escena& escena, const Catalogo& catalogo, std::string filtro, std::string actual)
    : VentanaHost(escena, "frmBusca"),
      catalogo_(catalogo),
      filtro_(std::move(filtro)),
      actual_(std::move(actual)) {
  SetCaption(std::string(catalogo.titulo));
  DesignClientSize(Dip(560), Dip(420));
  constexpr unsigned kAbajo = anchor::kLeft | anchor::kBottom, kEsquina = anchor::kRight | anchor::kBottom;

  Rotulo("&Buscar:", EnDips(12, 16, 56, 20));
  txtBuscar = CajaTexto("txtBuscar", EnDips(72, 12, 476, 24), anchor::kAcross);
  lv = Add<ListView>("lv");
  lv->Design(EnDips(12, 48, 536, 316), anchor::kAll);
  lv->Columns().Add("clave", "Clave", Dip(160));
  lv->Columns().Add("descripcion", "Descripción");
  lblNota = Add<Label>("lblNota");
  lblNota->SetLongest(NotaDeMuchos());
  lblNota->Design(EnDips(12, 386, 320, 20), kAbajo);
  cmdAceptar = Boton("cmdAceptar", "&Aceptar", EnDips(340, 380, 100, 28), kEsquina, [this] { Acepta(); });
  cmdCancelar = Boton("cmdCancelar", "&Cancelar", EnDips(448, 380, 100, 28), kEsquina, [this] { Unload(); });
  Add<AutoResizer>("AutoResizer1");
  SetDefaultButton(cmdAceptar.get());
  SetCancelButton(cmdCancelar.get());

  EnlazaBusqueda(*txtBuscar, *lv);
  txtBuscar->OnChange = [this] { Trata([this] { Busca(txtBuscar->Text()); }); };
  lv->OnDblClick = [this] { Trata([this] { Acepta(); }); };
}

void frmBusca::Form_Load() { Busca(actual_); }

void frmBusca::Busca(const std::string& preferida) {
  // One row more than is shown tells that there are more.
  const auto filas = BuscaEnCatalogo(Base(), catalogo_, filtro_, txtBuscar->Text(), kMaximo + 1);
  ListItems& renglones = lv->Items();
  renglones.Clear();
  ListItem* elegido = nullptr;
  for (; !filas->Eof() && renglones.Count() < kMaximo; filas->MoveNext()) {
    ListItem& renglon = renglones.Add("", TextOrNothing(filas->Campo(0)));
    renglon.SetSubItems(1, TextOrNothing(filas->Campo(1)));
    if (!elegido && EqualsIgnoringCase(renglon.Text(), preferida)) elegido = &renglon;
  }
  if (!elegido && renglones.Count() > 0) elegido = &renglones(1);
  lv->Select(elegido);
  cmdAceptar->SetEnabled(elegido != nullptr);
  lblNota->SetCaption(!filas->Eof() ? NotaDeMuchos()
                      : elegido
                          ? Decimal(renglones.Count()) + (renglones.Count() == 1 ? " renglón" : " renglones")
                          : "Nada coincide con la búsqueda.");
}

void frmBusca::Acepta() {
  if (!lv->SelectedItem()) return;
  elegida_ = lv->SelectedItem()->Text();
  Unload();
}

}  // namespace zuvi::host
