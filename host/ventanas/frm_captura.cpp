#include "host/ventanas/frm_captura.h"

#include "base/text.h"
#include "host/shop/numero_escrito.h"

namespace zuvi::host {
namespace {

constexpr std::int32_t kMargen = 12, kTecla = 56, kPaso = kTecla + 8, kArriba = 56;

}  // namespace

frmCaptura::frmCaptura(const Escena& escena, const std::string& etiqueta, const std::string& actual)
    : VentanaHost(escena, "frmCaptura"), cmdTecla(AddArray<Button>("cmdTecla")) {
  SetCaption("Captura numérica");
  SetSizable(false);
  constexpr std::int32_t kAncho = 2 * kMargen + 4 * kTecla + 3 * (kPaso - kTecla);
  DesignClientSize(Dip(kAncho), Dip(kArriba + 4 * kPaso + 44));

  // With room for larger letters: what it needed more would make the keys below it uneven.
  constexpr std::int32_t kRotulo = 88;
  Rotulo("&Número:", EnDips(kMargen, 20, kRotulo - 4, 20));
  txtNumero = CajaTexto("txtNumero", EnDips(kMargen + kRotulo, 14, kAncho - 2 * kMargen - kRotulo, 30));
  txtNumero->SetRightAligned(true);
  txtNumero->SetTag(etiqueta);
  txtNumero->SetText(actual);
  FiltraPorEtiqueta(*txtNumero);

  for (std::int32_t n = 1; n <= 9; ++n)
    Tecla(Decimal(n).c_str(), (n - 1) % 3, 2 - (n - 1) / 3, "",
          [this, n] { Teclea(static_cast<char16_t>(u'0' + n)); });
  Tecla("0", 0, 3, "", [this] { Teclea(u'0'); });
  Tecla(".", 1, 3, "Punto decimal", [this] { Teclea(u'.'); });
  Tecla("±", 2, 3, "Cambia el signo", [this] { CambiaSigno(); });
  // A box for numbers without sign has no use for it.
  (*cmdTecla)(static_cast<std::int16_t>(cmdTecla->UBound())).SetEnabled(etiqueta == "SN");
  Tecla("←", 3, 0, "Borra el último", [this] { Teclea(key::kBack); });
  Tecla("C", 3, 1, "Borra todo", [this] { txtNumero->SetText(""); });

  constexpr std::int32_t kBoton = 2 * kTecla + 8, kPie = kArriba + 4 * kPaso + 4;
  cmdAceptar = Boton("cmdAceptar", "&Aceptar", EnDips(kMargen, kPie, kBoton, 28), anchor::kTopLeft,
                     [this] { Acepta(); });
  cmdCancelar = Boton("cmdCancelar", "&Cancelar", EnDips(kMargen + kBoton + 8, kPie, kBoton, 28),
                      anchor::kTopLeft, [this] { Unload(); });
  SetDefaultButton(cmdAceptar.get());
  SetCancelButton(cmdCancelar.get());
}

void frmCaptura::Tecla(const char* caption, std::int32_t columna, std::int32_t renglon, const char* ayuda,
                       std::function<void()> hace) {
  Button& tecla = AddTo(*cmdTecla, "cmdTecla", cmdTecla->Count());
  tecla.SetCaption(caption);
  tecla.SetToolTipText(ayuda);
  // Tab goes from the number straight to the buttons below.
  tecla.SetTabStop(false);
  tecla.Design(EnDips(kMargen + columna * kPaso, kArriba + renglon * kPaso, kTecla, kTecla));
  tecla.OnClick = [this, hace = std::move(hace)] {
    Trata([&] {
      // What is typed next on the keyboard goes into the number.
      txtNumero->SetFocus();
      hace();
    });
  };
}

void frmCaptura::Form_Load() {
  txtNumero->SetSelStart(0);
  txtNumero->SetSelLength(txtNumero->Length());
}

void frmCaptura::Teclea(char16_t tecla) {
  if (const char16_t queda = KeyPress(*txtNumero, tecla)) txtNumero->DefaultChar(queda);
}

void frmCaptura::CambiaSigno() {
  const std::string& texto = txtNumero->Text();
  txtNumero->SetText(texto.starts_with('-') ? texto.substr(1) : "-" + texto);
  txtNumero->SetSelStart(txtNumero->Length());
}

void frmCaptura::Acepta() {
  try {
    numero_ = NumeroEscrito(txtNumero->Text());
  } catch (const HostError& error) {
    ElAnfitrion().Mensaje(
        Trim(txtNumero->Text()).empty() ? "Escriba un número." : std::string(error.what()) + ".",
        EstiloMensaje::Error);
    txtNumero->SetFocus();
    return;
  }
  Unload();
}

}  // namespace zuvi::host
