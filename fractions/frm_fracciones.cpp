#include "fractions/frm_fracciones.h"

#include "base/text.h"
#include "toolkit/buttons.h"

namespace zuvi {

frmFracciones::frmFracciones(Modulo& modulo) : VentanaModulo(modulo, "frmFracciones") {
  SetCaption("Captura de fracciones");
  DesignClientSize(Dip(760), Dip(520));

  auto etiqueta = Add<Label>("Label1");
  etiqueta->SetCaption("Código:");
  etiqueta->Design({Dip(16), Dip(19), Dip(64), Dip(20)});
  txtFields = AddArray<TextBox>("txtFields");
  TextBox& campo = AddTo(*txtFields, "txtFields", 0);
  campo.Design({Dip(84), Dip(16), Dip(300), Dip(26)});
  campo.SetToolTipText("Lea o escriba el código y oprima Enter");
  wb = Add<WebBrowser>("wb");
  wb->Design({Dip(16), Dip(58), Dip(728), Dip(446)}, anchor::kAll);
  AutoResizer1 = Add<AutoResizer>("AutoResizer1");

  campo.OnKeyDown = [this](KeyEvent& event) { txtFields_KeyDown(event); };
}

const MemberTable* frmFracciones::Members() const {
  using F = frmFracciones;
  static const MemberTable table =
      WithFormMembers(MemberTable::Of<F>()
                          .Property<&F::TraeAmbiente, &F::PonAmbiente>("Ambiente")
                          .Property<&F::Codigo, &F::PonCodigo>("Codigo")
                          .Property<&F::Estado, &F::PonEstado>("Estado"));
  return &table;
}

void frmFracciones::Form_Load() {
  Trata("Form_Load", [&] {
    estado_ = "ESPERANDO USUARIO";
    IniciaProceso("FRACCIONES001");
  });
}

void frmFracciones::Form_Paint() {
  Trata("Form_Paint", [&] {
    SetState(WindowState::Maximized);
    // Whoever captures never has to look for the field.
    (*txtFields)(0).SetFocus();
  });
}

void frmFracciones::txtFields_KeyDown(const KeyEvent& event) {
  Trata("txtFields_KeyDown", [&] {
    codigo_ = Trim((*txtFields)(0).Text());
    if (event.key == key::kEnter) IniciaProceso("FRACCIONES");
  });
}

}  // namespace zuvi
