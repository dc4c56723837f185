#include "host/win32/ventana_trabajo.h"

#include <windows.h>

#include <commctrl.h>

#include <utility>

#include "base/text.h"
#include "toolkit/win32/message_loop.h"

namespace zuvi::host {
namespace {

constexpr wchar_t kClase[] = L"ZuviVentanaTrabajo";
constexpr int kAncho = 420;
constexpr int kAlto = 150;
constexpr int kMargen = 14;
constexpr int kAnimacion = 48;
constexpr int kTeclaCancela = 1;
/// Milliseconds after which a click can have been meant for this window.
constexpr DWORD kSinEfecto = 700;

const wchar_t* Ancho(const std::u16string& texto) { return reinterpret_cast<const wchar_t*>(texto.c_str()); }

struct FuenteSistema {
  FuenteSistema() {
    NONCLIENTMETRICSW metricas{};
    metricas.cbSize = sizeof metricas;
    if (SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metricas, &metricas, 0))
      fuente = CreateFontIndirectW(&metricas.lfMessageFont);
  }
  ~FuenteSistema() {
    if (fuente) DeleteObject(fuente);
  }
  FuenteSistema(const FuenteSistema&) = delete;
  FuenteSistema& operator=(const FuenteSistema&) = delete;
  HFONT fuente = nullptr;
};

bool EsDeEsteProceso(HWND ventana) {
  DWORD proceso = 0;
  // The desktop in front, or nobody, is no other program.
  return !ventana || ventana == GetDesktopWindow() ||
         (GetWindowThreadProcessId(ventana, &proceso) && proceso == GetCurrentProcessId());
}

bool EsPulsacion(UINT mensaje) {
  return mensaje == WM_LBUTTONDOWN || mensaje == WM_LBUTTONUP || mensaje == WM_LBUTTONDBLCLK ||
         mensaje == WM_NCLBUTTONDOWN;
}

HINSTANCE Modulo() {
  HMODULE modulo = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&Modulo), &modulo);
  return modulo;
}

}  // namespace

struct VentanaTrabajo::Partes {
  FuenteSistema fuente;
  HWND ventana = nullptr;
  HWND texto = nullptr;
  HWND texto2 = nullptr;
  HWND barra = nullptr;
  DWORD aparecio = 0;
  bool cancelado = false;

  static LRESULT CALLBACK Procedimiento(HWND ventana, UINT mensaje, WPARAM w, LPARAM l) {
    auto* partes = reinterpret_cast<Partes*>(GetWindowLongPtrW(ventana, GWLP_USERDATA));
    switch (mensaje) {
      case WM_MOUSEACTIVATE:
        return MA_NOACTIVATE;
      case WM_NCLBUTTONDOWN:
        // The rest of the frame would run a loop of the system's, and the whole program in it.
        if (w == HTCLOSE) PostMessageW(ventana, WM_CLOSE, 0, 0);
        return 0;
      case WM_NCLBUTTONDBLCLK:
      case WM_NCRBUTTONDOWN:
      case WM_NCRBUTTONUP:
      case WM_CONTEXTMENU:
        return 0;
      case WM_SYSCOMMAND:
        if ((w & 0xFFF0) != SC_CLOSE) return 0;
        break;
      default:
        break;
    }
    // The key is the system's: pressed in another program it means that one.
    const bool tecla = mensaje == WM_HOTKEY && EsDeEsteProceso(GetForegroundWindow());
    const bool cancela = mensaje == WM_CLOSE || tecla || (mensaje == WM_COMMAND && LOWORD(w) == IDCANCEL);
    if (partes && cancela) {
      partes->cancelado = true;
      SetWindowTextW(partes->texto2, L"Cancelando…");
      return 0;
    }
    return DefWindowProcW(ventana, mensaje, w, l);
  }

  HWND Hijo(const wchar_t* clase, const wchar_t* caption, DWORD estilo, RECT r, int id = 0) {
    HWND hijo = CreateWindowExW(0, clase, caption, WS_CHILD | WS_VISIBLE | estilo, r.left, r.top,
                                r.right - r.left, r.bottom - r.top, ventana,
                                reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), Modulo(), nullptr);
    if (hijo && fuente.fuente) SendMessageW(hijo, WM_SETFONT, reinterpret_cast<WPARAM>(fuente.fuente), TRUE);
    return hijo;
  }
};

VentanaTrabajo::VentanaTrabajo(const OpcionesTrabajo& opciones) : partes_(std::make_unique<Partes>()) {
  const INITCOMMONCONTROLSEX clases{sizeof(INITCOMMONCONTROLSEX), ICC_PROGRESS_CLASS | ICC_ANIMATE_CLASS};
  InitCommonControlsEx(&clases);
  WNDCLASSW clase{};
  clase.lpfnWndProc = &Partes::Procedimiento;
  clase.hInstance = Modulo();
  clase.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_APPSTARTING));
  clase.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_BTNFACE + 1));
  clase.lpszClassName = kClase;
  RegisterClassW(&clase);  // a second registration fails and does no harm

  RECT marco{0, 0, kAncho, kAlto};
  constexpr DWORD kEstilo = WS_POPUP | WS_CAPTION | WS_SYSMENU;
  AdjustWindowRectEx(&marco, kEstilo, FALSE, WS_EX_DLGMODALFRAME);
  const int ancho = marco.right - marco.left;
  const int alto = marco.bottom - marco.top;
  Partes& p = *partes_;
  p.ventana =
      CreateWindowExW(WS_EX_DLGMODALFRAME, kClase, Ancho(Utf16(opciones.titulo)), kEstilo,
                      (GetSystemMetrics(SM_CXSCREEN) - ancho) / 2, (GetSystemMetrics(SM_CYSCREEN) - alto) / 2,
                      ancho, alto, GetActiveWindow(), nullptr, Modulo(), nullptr);
  if (!p.ventana) return;  // no desktop to show it on: the work goes on without
  SetWindowLongPtrW(p.ventana, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&p));

  int izquierda = kMargen;
  if (!opciones.animacion.empty()) {
    HWND animacion = p.Hijo(ANIMATE_CLASSW, L"", ACS_TRANSPARENT | ACS_AUTOPLAY,
                            {kMargen, kMargen, kMargen + kAnimacion, kMargen + kAnimacion});
    const std::u16string archivo = Utf16(opciones.animacion);
    if (animacion && SendMessageW(animacion, ACM_OPENW, 0, reinterpret_cast<LPARAM>(archivo.c_str()))) {
      izquierda += kAnimacion + kMargen;
    } else if (animacion) {
      DestroyWindow(animacion);
    }
  }
  p.texto = p.Hijo(L"STATIC", L"", SS_LEFT | SS_ENDELLIPSIS, {izquierda, 16, kAncho - kMargen, 36});
  p.texto2 = p.Hijo(L"STATIC", L"", SS_LEFT | SS_ENDELLIPSIS, {izquierda, 40, kAncho - kMargen, 60});
  p.barra =
      p.Hijo(PROGRESS_CLASSW, L"", opciones.total > 0 ? 0 : PBS_MARQUEE, {kMargen, 72, kAncho - kMargen, 90});
  SendMessageW(p.barra, PBM_SETRANGE32, 0, opciones.total);
  if (opciones.total <= 0) SendMessageW(p.barra, PBM_SETMARQUEE, TRUE, 40);
  p.Hijo(L"BUTTON", L"&Cancelar", BS_PUSHBUTTON, {kAncho - kMargen - 96, 108, kAncho - kMargen, 136},
         IDCANCEL);
  // While another program has taken that key only the mouse cancels.
  const bool tecla = RegisterHotKey(p.ventana, kTeclaCancela, MOD_SHIFT, VK_ESCAPE) != 0;
  if (tecla) p.Hijo(L"STATIC", L"o Mayús+Esc", SS_RIGHT, {kMargen, 114, kAncho - kMargen - 104, 134});
  p.aparecio = GetTickCount();
  ShowWindow(p.ventana, SW_SHOWNOACTIVATE);
  UpdateWindow(p.ventana);
}

VentanaTrabajo::~VentanaTrabajo() {
  if (!partes_->ventana) return;
  SetWindowLongPtrW(partes_->ventana, GWLP_USERDATA, 0);
  UnregisterHotKey(partes_->ventana, kTeclaCancela);
  DestroyWindow(partes_->ventana);
  // The class must not outlive the DLL; another window of it keeps it.
  UnregisterClassW(kClase, Modulo());
}

void VentanaTrabajo::Avanza(std::int32_t paso, const std::string& texto, const std::string& texto2) {
  if (!partes_->ventana) return;
  SendMessageW(partes_->barra, PBM_SETPOS, static_cast<WPARAM>(paso), 0);
  SetWindowTextW(partes_->texto, Ancho(Utf16(texto)));
  if (!partes_->cancelado) SetWindowTextW(partes_->texto2, Ancho(Utf16(texto2)));
  Atiende();
}

bool VentanaTrabajo::Atiende() {
  MSG mensaje;
  while (partes_->ventana && PeekMessageW(&mensaje, partes_->ventana, 0, 0, PM_REMOVE)) {
    if (mensaje.message == WM_QUIT) {
      // It comes whatever was asked for; the loop that runs the program is to see it.
      PostQuitMessage(static_cast<int>(mensaje.wParam));
      break;
    }
    // Pressed before anybody could have seen this window, however late it is handled.
    if (EsPulsacion(mensaje.message) && mensaje.time - partes_->aparecio < kSinEfecto) continue;
    native::Serve(mensaje);
  }
  return partes_->cancelado;
}

}  // namespace zuvi::host
