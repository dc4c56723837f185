#include "host/win32/vigia_trabajo.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace zuvi::host {
namespace {

constexpr auto kPausaSinCiclo = std::chrono::seconds(5);

std::wstring ClaseDeVentana(HWND ventana) {
  wchar_t clase[16] = L"";
  GetClassNameW(ventana, clase, static_cast<int>(std::size(clase)));
  return clase;
}

BOOL CALLBACK EsDeCaja(HWND hijo, LPARAM solo_eso) {
  const std::wstring clase = ClaseDeVentana(hijo);
  if (clase != L"Button" && clase != L"Static") *reinterpret_cast<bool*>(solo_eso) = false;
  return TRUE;
}

/// Whether a window is a message box: a dialog of a text, buttons and nothing else, with its owner blocked.
/// A program's own dialogs, which may stand as long as it runs, are none.
bool EsCaja(HWND ventana) {
  constexpr int kTexto = 0xFFFF;
  if (!IsWindowVisible(ventana) || ClaseDeVentana(ventana) != L"#32770" || !GetDlgItem(ventana, kTexto))
    return false;
  const HWND duenio = GetWindow(ventana, GW_OWNER);
  if (duenio && IsWindowEnabled(duenio)) return false;
  bool solo_eso = true;
  EnumChildWindows(ventana, &EsDeCaja, reinterpret_cast<LPARAM>(&solo_eso));
  return solo_eso;
}

BOOL CALLBACK JuntaCaja(HWND ventana, LPARAM lista) {
  if (EsCaja(ventana)) reinterpret_cast<std::vector<HWND>*>(lista)->push_back(ventana);
  return TRUE;
}

/// The message boxes that stand on this thread.
std::vector<HWND> CajasAbiertas() {
  std::vector<HWND> cajas;
  EnumThreadWindows(GetCurrentThreadId(), &JuntaCaja, reinterpret_cast<LPARAM>(&cajas));
  return cajas;
}

}  // namespace

std::chrono::milliseconds VigiaTrabajo::Llamada() {
  const auto ahora = Reloj::now();
  if (en_curso_ && !hay_ciclo_ && ahora - ultima_ > kPausaSinCiclo) Termina();
  ultima_ = ahora;
  ajena_ = en_curso_ && contada_ && IsWindowVisible(contada_);
  if (ajena_) return {};
  contada_ = nullptr;
  if (!en_curso_) {
    en_curso_ = true;
    cajas_ = 0;
    inicio_ = ahora;
    de_antes_ = CajasAbiertas();
    if (!reposo_.Start(USER_TIMER_MINIMUM)) hay_ciclo_ = false;
  }
  return std::chrono::duration_cast<std::chrono::milliseconds>(ahora - inicio_);
}

void VigiaTrabajo::AlReposo() {
  hay_ciclo_ = true;
  const auto abiertas = CajasAbiertas();
  const auto nueva = std::ranges::find_if(
      abiertas, [&](HWND caja) { return std::ranges::find(de_antes_, caja) == de_antes_.end(); });
  if (nueva == abiertas.end()) return Termina();
  if (std::exchange(contada_, *nueva) != *nueva) ++cajas_;
}

void VigiaTrabajo::Termina() {
  en_curso_ = false;
  contada_ = nullptr;
  reposo_.Stop();
  al_terminar_();
}

}  // namespace zuvi::host
