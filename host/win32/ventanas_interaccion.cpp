#include "host/win32/ventanas_interaccion.h"

#include <windows.h>

#include "host/win32/documento.h"
#include "host/win32/ventana_trabajo.h"

namespace zuvi::host {
namespace {

constexpr auto kPacienciaSinVentana = std::chrono::seconds(3);
/// The box after so many of one job asks whether to go on.
constexpr int kCajasSeguidas = 2;

}  // namespace

/// Progress shown in a window that the interaction also watches for "Cancelar".
class ProgresoEnVentana final : public Progreso {
 public:
  ProgresoEnVentana(std::shared_ptr<VentanaTrabajo> ventana) : ventana_(std::move(ventana)) {}
  void Avanza(std::int32_t paso, const std::string& texto, const std::string& texto2) override {
    ventana_->Avanza(paso, texto, texto2);
  }

 private:
  std::shared_ptr<VentanaTrabajo> ventana_;
};

VentanasInteraccion::VentanasInteraccion(Impresion impresion, Win32Desktop& escritorio)
    : impresion_(impresion), escritorio_(escritorio) {}
VentanasInteraccion::~VentanasInteraccion() = default;

int VentanasInteraccion::Caja(const std::string& texto, unsigned estilo) {
  return escritorio_.Box(texto, L"Zuvi", estilo | MB_SETFOREGROUND);
}

void VentanasInteraccion::Mensaje(const std::string& texto, EstiloMensaje estilo) {
  Caja(texto, estilo == EstiloMensaje::Error ? MB_OK | MB_ICONERROR : MB_OK | MB_ICONINFORMATION);
}

bool VentanasInteraccion::Pregunta(const std::string& texto) {
  return Caja(texto, MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES;
}

std::unique_ptr<Progreso> VentanasInteraccion::AbreProgreso(std::int32_t total, const std::string& titulo,
                                                            const std::string& animacion) {
  espera_.reset();
  auto ventana = std::make_shared<VentanaTrabajo>(
      OpcionesTrabajo{.titulo = titulo, .total = total, .animacion = animacion});
  progreso_ = ventana;
  return std::make_unique<ProgresoEnVentana>(std::move(ventana));
}

void VentanasInteraccion::MuestraDocumento(const std::string& archivo,
                                           const std::function<void(const std::string&)>& dice) {
  if (impresion_ == Impresion::No) return;
  if (impresion_ == Impresion::Imprime) {
    const std::error_code fallo = ImprimeDocumento(archivo);
    if (!fallo || fallo.value() == ERROR_CANCELLED) return;
    // Before the page comes up in front of it, and once: from then on the page speaks for itself.
    if (!std::exchange(dicho_que_no_imprime_, true))
      dice("La página no se puede mandar sola a la impresora: " + MotivoDeDocumento(fallo) +
           ".\nSe abre, y así se abrirán las siguientes, para imprimirla desde ahí (Ctrl+P).");
  }
  if (const std::error_code fallo = AbreDocumento(archivo))
    dice("El documento quedó en " + archivo + " y no se pudo abrir: " + MotivoDeDocumento(fallo));
}

bool VentanasInteraccion::Cancelado() {
  const auto lleva = vigia_.Llamada();
  if (cancelado_) return true;
  if (const auto abierta = progreso_.lock())
    cancelado_ = abierta->Atiende();
  else
    cancelado_ = AtiendeEspera(lleva);
  if (!cancelado_ && vigia_.Cajas() >= kCajasSeguidas) cancelado_ = PreguntaSiTermina();
  if (cancelado_) espera_.reset();
  return cancelado_;
}

bool VentanasInteraccion::AtiendeEspera(std::chrono::milliseconds lleva) {
  if (!espera_ && lleva > kPacienciaSinVentana) {
    espera_ = std::make_shared<VentanaTrabajo>(OpcionesTrabajo{.titulo = "Operación en curso"});
    espera_->Avanza(0, "El trabajo sigue.", "");
  }
  // A message of its own may end the job it belongs to.
  const auto abierta = espera_;
  return abierta && abierta->Atiende();
}

bool VentanasInteraccion::PreguntaSiTermina() {
  const bool termina = Pregunta(
      "El trabajo en curso ha mostrado ya varios avisos y puede que siga mostrándolos.\n\n"
      "¿Terminarlo aquí? Lo que ya hizo se queda.");
  vigia_.OlvidaCajas();
  return termina;
}

void VentanasInteraccion::AlTerminarTrabajo() {
  espera_.reset();
  // A progress display keeps its answer as long as it is open.
  if (progreso_.expired()) cancelado_ = false;
}

bool VentanasInteraccion::AtiendeVentanas() {
  escritorio_.PumpEvents();
  // The loop that runs the program is to see its end, and soon.
  MSG fin;
  return !PeekMessageW(&fin, nullptr, WM_QUIT, WM_QUIT, PM_NOREMOVE);
}

}  // namespace zuvi::host
