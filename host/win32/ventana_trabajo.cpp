#include "host/win32/ventana_trabajo.h"

#include <algorithm>
#include <utility>

#include "toolkit/win32/drawing.h"
#include "toolkit/win32/message_loop.h"
#include "toolkit/win32/window_factory.h"
#include "win32/image.h"

#ifndef WM_DPICHANGED
#define WM_DPICHANGED 0x02E0
#endif

namespace zuvi::host {
namespace {

using native::WindowFactory;

constexpr wchar_t kClaseDeVentana[] = L"ZuviVentanaTrabajo";
constexpr DWORD kEstilo = WS_POPUP | WS_CAPTION | WS_SYSMENU, kEstiloAmpliado = WS_EX_DLGMODALFRAME;
// Pixels of a screen of 96 dots per inch; what holds text grows with its font besides.
constexpr int kAncho = 420, kLetras = 60, kMargen = 14, kEntreTextos = 6, kBarra = 18, kBotonAncho = 96,
              kBotonRelleno = 6;
constexpr int kTeclaCancela = 1;
/// Milliseconds after which a click can have been meant for this window.
constexpr DWORD kSinEfecto = 700;

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

}  // namespace

struct VentanaTrabajo::Partes {
  native::VisualStyles estilos{ThisImage()};
  native::UniqueGdi<HFONT> fuente;
  UINT dpi = 96;
  HWND ventana = nullptr;
  HWND animacion = nullptr;
  HWND texto = nullptr;
  HWND texto2 = nullptr;
  HWND barra = nullptr;
  HWND boton = nullptr;
  HWND tecla = nullptr;
  DWORD aparecio = 0;
  bool cancelado = false;

  Partes() = default;
  Partes(const Partes&) = delete;
  Partes& operator=(const Partes&) = delete;
  ~Partes() {
    if (!ventana) return;
    SetWindowLongPtrW(ventana, GWLP_USERDATA, 0);
    UnregisterHotKey(ventana, kTeclaCancela);
    DestroyWindow(ventana);
  }

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
      case WM_DPICHANGED:
        if (partes) partes->Reescala(HIWORD(w), reinterpret_cast<const RECT*>(l));
        return 0;
      case WM_SETTINGCHANGE:
        if (partes && w == SPI_SETNONCLIENTMETRICS) partes->Reescala(partes->dpi, nullptr);
        return 0;
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

  void Crea(const OpcionesTrabajo& opciones);
  HWND Hijo(const wchar_t* clase, const wchar_t* letrero, DWORD estilo, int id = 0) const {
    return CreateWindowExW(0, clase, letrero, WS_CHILD | WS_VISIBLE | estilo, 0, 0, 0, 0, ventana,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ThisImage(), nullptr);
  }
  int Px(int puntos) const { return MulDiv(puntos, static_cast<int>(dpi), 96); }
  void Reescala(UINT nueva, const RECT* lugar);
  /// Lays everything out for the present scale and font; returns the size of the whole.
  SIZE Acomoda() const;
};

void VentanaTrabajo::Partes::Crea(const OpcionesTrabajo& opciones) {
  const HWND duenia = GetActiveWindow();
  const RECT area = WindowFactory::WorkArea(duenia ? duenia : GetForegroundWindow());
  // Made on the screen where it will be: that one's scale counts.
  ventana = CreateWindowExW(kEstiloAmpliado, kClaseDeVentana, Wide(opciones.titulo).c_str(), kEstilo,
                            area.left, area.top, 0, 0, duenia, nullptr, ThisImage(), nullptr);
  if (!ventana) return;  // no desktop to show it on: the work goes on without
  SetWindowLongPtrW(ventana, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  if (!opciones.animacion.empty()) {
    const std::wstring archivo = Wide(opciones.animacion);
    UniqueWindow hijo(Hijo(ANIMATE_CLASSW, L"", ACS_TRANSPARENT | ACS_AUTOPLAY));
    if (hijo && SendMessageW(hijo.get(), ACM_OPENW, 0, reinterpret_cast<LPARAM>(archivo.c_str())))
      animacion = hijo.detach();
  }
  texto = Hijo(L"STATIC", L"", SS_LEFT | SS_ENDELLIPSIS | SS_NOPREFIX);
  texto2 = Hijo(L"STATIC", L"", SS_LEFT | SS_ENDELLIPSIS | SS_NOPREFIX);
  barra = Hijo(PROGRESS_CLASSW, L"", opciones.total > 0 ? 0 : PBS_MARQUEE);
  SendMessageW(barra, PBM_SETRANGE32, 0, opciones.total);
  if (opciones.total <= 0) SendMessageW(barra, PBM_SETMARQUEE, TRUE, 40);
  boton = Hijo(L"BUTTON", L"&Cancelar", BS_PUSHBUTTON, IDCANCEL);
  // While another program has taken that key only the mouse cancels.
  if (RegisterHotKey(ventana, kTeclaCancela, MOD_SHIFT, VK_ESCAPE))
    tecla = Hijo(L"STATIC", L"o Mayús+Esc", SS_RIGHT | SS_CENTERIMAGE);
  dpi = WindowFactory::DpiOf(ventana);
  const RECT aqui{area.left, area.top, area.left, area.top};
  Reescala(dpi, &aqui);
  RECT marco;
  GetWindowRect(ventana, &marco);
  SetWindowPos(ventana, nullptr, (area.left + area.right - marco.right + marco.left) / 2,
               (area.top + area.bottom - marco.bottom + marco.top) / 2, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void VentanaTrabajo::Partes::Reescala(UINT nueva, const RECT* lugar) {
  dpi = nueva;
  const LOGFONTW letra = WindowFactory::MessageFont(dpi);
  // The controls hold the old one until they have the new.
  const auto vieja = std::exchange(fuente, native::UniqueGdi<HFONT>(CreateFontIndirectW(&letra)));
  for (const HWND hijo : {texto, texto2, boton, tecla})
    if (hijo) SendMessageW(hijo, WM_SETFONT, reinterpret_cast<WPARAM>(fuente.get()), TRUE);
  const SIZE todo = Acomoda();
  RECT marco{0, 0, todo.cx, todo.cy};
  WindowFactory::AddFrame(marco, kEstilo, kEstiloAmpliado, dpi);
  SetWindowPos(ventana, nullptr, lugar ? lugar->left : 0, lugar ? lugar->top : 0, marco.right - marco.left,
               marco.bottom - marco.top, (lugar ? 0u : SWP_NOMOVE) | SWP_NOZORDER | SWP_NOACTIVATE);
  InvalidateRect(ventana, nullptr, TRUE);
}

SIZE VentanaTrabajo::Partes::Acomoda() const {
  TEXTMETRICW medidas{};
  SIZE letrero{};
  {
    const native::WindowDc dc(ventana);
    const native::Selected letra(dc.get(), fuente.get());
    GetTextMetricsW(dc.get(), &medidas);
    constexpr std::wstring_view kLetrero = L"Cancelar";
    GetTextExtentPoint32W(dc.get(), kLetrero.data(), static_cast<int>(kLetrero.size()), &letrero);
  }

  const auto pon = [](HWND hijo, LONG x, LONG y, LONG ancho, LONG alto) {
    if (hijo) SetWindowPos(hijo, nullptr, x, y, ancho, alto, SWP_NOZORDER | SWP_NOACTIVATE);
  };
  const LONG margen = Px(kMargen), renglon = medidas.tmHeight;
  const LONG ancho = std::max<LONG>(Px(kAncho), kLetras * medidas.tmAveCharWidth);
  LONG izquierda = margen, abajo = margen + 2 * renglon + Px(kEntreTextos);
  if (animacion) {
    // Its size is that of its pictures.
    RECT cuadro;
    GetWindowRect(animacion, &cuadro);
    pon(animacion, margen, margen, cuadro.right - cuadro.left, cuadro.bottom - cuadro.top);
    izquierda += cuadro.right - cuadro.left + margen;
    abajo = std::max(abajo, margen + cuadro.bottom - cuadro.top);
  }
  pon(texto, izquierda, margen, ancho - izquierda - margen, renglon);
  pon(texto2, izquierda, margen + renglon + Px(kEntreTextos), ancho - izquierda - margen, renglon);
  abajo += margen;
  pon(barra, margen, abajo, ancho - 2 * margen, Px(kBarra));
  abajo += Px(kBarra) + margen;
  const LONG boton_ancho = std::max<LONG>(Px(kBotonAncho), letrero.cx + 2 * margen);
  const LONG boton_alto = renglon + 2 * Px(kBotonRelleno);
  pon(boton, ancho - margen - boton_ancho, abajo, boton_ancho, boton_alto);
  pon(tecla, margen, abajo, ancho - 3 * margen - boton_ancho, boton_alto);
  return {ancho, abajo + boton_alto + margen};
}

VentanaTrabajo::VentanaTrabajo(const OpcionesTrabajo& opciones) : partes_(std::make_unique<Partes>()) {
  PinImage();
  Partes& p = *partes_;
  const native::VisualStyles::Scope aspecto(p.estilos);
  const INITCOMMONCONTROLSEX clases{sizeof(INITCOMMONCONTROLSEX),
                                    ICC_STANDARD_CLASSES | ICC_PROGRESS_CLASS | ICC_ANIMATE_CLASS};
  InitCommonControlsEx(&clases);
  WNDCLASSW clase{};
  clase.lpfnWndProc = &Partes::Procedimiento;
  clase.hInstance = ThisImage();
  clase.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_APPSTARTING));
  clase.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_BTNFACE + 1));
  clase.lpszClassName = kClaseDeVentana;
  RegisterClassW(&clase);  // a second registration fails and does no harm
  p.Crea(opciones);
  if (!p.ventana) return;
  p.aparecio = GetTickCount();
  ShowWindow(p.ventana, SW_SHOWNOACTIVATE);
  UpdateWindow(p.ventana);
}

VentanaTrabajo::~VentanaTrabajo() = default;

void VentanaTrabajo::Avanza(std::int32_t paso, const std::string& texto, const std::string& texto2) {
  if (!partes_->ventana) return;
  SendMessageW(partes_->barra, PBM_SETPOS, static_cast<WPARAM>(paso), 0);
  SetWindowTextW(partes_->texto, Wide(texto).c_str());
  if (!partes_->cancelado) SetWindowTextW(partes_->texto2, Wide(texto2).c_str());
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
