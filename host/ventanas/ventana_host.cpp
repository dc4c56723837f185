#include "host/ventanas/ventana_host.h"

#include "base/text.h"
#include "host/shop/filtros.h"

namespace zuvi::host {

VentanaHost::VentanaHost(const Escena& escena, const char* nombre)
    : Form(escena.escritorio, nombre, escena.retiene ? escena.retiene() : nullptr),
      escena_(escena),
      Rotulos(AddArray<Label>("Rotulos")) {}

const MemberTable* VentanaHost::Members() const {
  static const MemberTable table = WithFormMembers({});
  return &table;
}

void VentanaHost::MuestraError(const std::string& descripcion) noexcept {
  try {
    escena_.anfitrion->Mensaje(descripcion, EstiloMensaje::Error);
  } catch (...) {
    Screen().ShowMessage(descripcion);
  }
}

Label& VentanaHost::Rotulo(std::string caption, const Rect& lugar, unsigned anclas) {
  Label& rotulo = AddTo(*Rotulos, "Rotulos", Rotulos->Count());
  rotulo.SetCaption(std::move(caption));
  rotulo.Design(lugar, anclas);
  return rotulo;
}

std::shared_ptr<Button> VentanaHost::Boton(const char* nombre, std::string caption, const Rect& lugar,
                                           unsigned anclas, std::function<void()> hace) {
  auto boton = Add<Button>(nombre);
  boton->SetCaption(std::move(caption));
  boton->Design(lugar, anclas);
  boton->OnClick = [this, hace = std::move(hace)] { Trata(hace); };
  return boton;
}

std::shared_ptr<TextBox> VentanaHost::CajaTexto(const char* nombre, const Rect& lugar, unsigned anclas) {
  auto caja = Add<TextBox>(nombre);
  caja->Design(lugar, anclas);
  return caja;
}

void EnlazaBusqueda(TextBox& caja, ListView& lista) {
  caja.OnKeyDown = [&lista](KeyEvent& event) {
    const bool mueve = event.key == key::kUp || event.key == key::kDown || event.key == key::kPageUp ||
                       event.key == key::kPageDown;
    if (event.shift != shift::kNone || !mueve) return;
    lista.DefaultKey(event.key, event.shift);
    event.Use();
  };
  lista.OnKeyPress = [&caja](KeyPressEvent& event) {
    const auto unidad = static_cast<char16_t>(event.character);
    if (unidad <= u' ') return;
    event.Drop();
    caja.SetFocus();
    caja.SetText(caja.Text() + Utf8(std::u16string_view(&unidad, 1)));
    caja.SetSelStart(caja.Length());
  };
}

void FiltraPorEtiqueta(TextBox& caja) {
  caja.OnKeyPress = [&caja](KeyPressEvent& event) {
    event.character = Filtra(CajaDe(caja.shared_from_this()), event.character);
  };
}

}  // namespace zuvi::host
