#include "host/win32/ventanas_interaccion.h"

#include <windows.h>
// Only after the system's own types.
#include <shellapi.h>

#include "base/text.h"
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

void VentanasInteraccion::MuestraDocumento(const std::string& archivo) {
  if (impresion_ == Impresion::No) return;
  const std::u16string ancho = Utf16(archivo);
  const auto abre = [&ancho](const wchar_t* verbo) {
    const HINSTANCE codigo = ShellExecuteW(GetActiveWindow(), verbo, reinterpret_cast<LPCWSTR>(ancho.c_str()),
                                           nullptr, nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(codigo) > 32;  // so it tells success
  };
  // A station whose programs cannot print such a page shows it.
  if (impresion_ == Impresion::Imprime && abre(L"print")) return;
  if (!abre(L"open")) Mensaje("El documento quedó en " + archivo, EstiloMensaje::Informacion);
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
