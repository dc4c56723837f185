#include "host/win32/ventanas_interaccion.h"

#include <windows.h>
// Only after the system's own types.
#include <shellapi.h>

#include "base/text.h"
#include "host/win32/ventana_trabajo.h"

namespace zuvi::host {
namespace {

constexpr auto kPacienciaSinVentana = std::chrono::seconds(3);
constexpr auto kPausaEntreTrabajos = std::chrono::milliseconds(800);

int Caja(const std::string& texto, UINT estilo) {
  const std::u16string ancho = Utf16(texto);
  return MessageBoxW(GetActiveWindow(), reinterpret_cast<const wchar_t*>(ancho.c_str()), L"Zuvi",
                     estilo | MB_SETFOREGROUND);
}

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

VentanasInteraccion::VentanasInteraccion(Impresion impresion) : impresion_(impresion) {}
VentanasInteraccion::~VentanasInteraccion() = default;

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
  if (cancelado_) return true;
  if (const auto abierta = progreso_.lock()) {
    cancelado_ = abierta->Atiende();
    return cancelado_;
  }
  const auto ahora = Reloj::now();
  if (ahora - ultima_ > kPausaEntreTrabajos) {
    inicio_ = ahora;
    espera_.reset();
  }
  if (!espera_ && ahora - inicio_ > kPacienciaSinVentana)
    espera_ = std::make_unique<VentanaTrabajo>(
        OpcionesTrabajo{.titulo = "Operación en curso", .se_oculta_sola = true});
  if (espera_) {
    // The timer of the window is renewed now and then, not for every statement.
    if (ahora - mostrada_ > kPausaEntreTrabajos / 2) {
      espera_->Avanza(0, "El trabajo sigue; puede terminarlo con Cancelar.", "");
      mostrada_ = ahora;
    }
    cancelado_ = espera_->Atiende();
    if (cancelado_) espera_.reset();
  }
  ultima_ = Reloj::now();
  return cancelado_;
}

bool VentanasInteraccion::AtiendeVentanas() {
  constexpr ULONGLONG kMilisegundos = 100;  // timers could keep the queue from ever being empty
  const ULONGLONG inicio = GetTickCount64();
  MSG mensaje;
  while (PeekMessageW(&mensaje, nullptr, 0, 0, PM_REMOVE)) {
    if (mensaje.message == WM_QUIT) {
      // The loop that runs the program is to see it.
      PostQuitMessage(static_cast<int>(mensaje.wParam));
      return false;
    }
    TranslateMessage(&mensaje);
    DispatchMessageW(&mensaje);
    if (GetTickCount64() - inicio > kMilisegundos) break;
  }
  return true;
}

}  // namespace zuvi::host
