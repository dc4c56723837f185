#include "host/win32/vigia_trabajo.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace zuvi::host {
namespace {

constexpr auto kPausaSinCiclo = std::chrono::seconds(5);

BOOL CALLBACK JuntaCaja(HWND ventana, LPARAM lista) {
  wchar_t clase[16] = L"";
  GetClassNameW(ventana, clase, static_cast<int>(std::size(clase)));
  if (IsWindowVisible(ventana) && std::wstring_view(clase) == L"#32770")
    reinterpret_cast<std::vector<HWND>*>(lista)->push_back(ventana);
  return TRUE;
}

/// The message boxes and dialogs that stand on this thread.
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
  llamada_tras_caja_ = true;
  if (!en_curso_) {
    en_curso_ = true;
    cajas_ = 0;
    inicio_ = ahora;
    de_antes_ = CajasAbiertas();
    reposo_.Start(USER_TIMER_MINIMUM);
  }
  return std::chrono::duration_cast<std::chrono::milliseconds>(ahora - inicio_);
}

void VigiaTrabajo::AlReposo() {
  hay_ciclo_ = true;
  const bool en_caja = std::ranges::any_of(
      CajasAbiertas(), [&](HWND caja) { return std::ranges::find(de_antes_, caja) == de_antes_.end(); });
  if (!en_caja)
    Termina();
  else if (std::exchange(llamada_tras_caja_, false))
    ++cajas_;
}

void VigiaTrabajo::Termina() {
  en_curso_ = false;
  reposo_.Stop();
  al_terminar_();
}

}  // namespace zuvi::host
