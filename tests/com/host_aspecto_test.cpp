// What of the host is seen: the progress window in whatever program.
#include <algorithm>

#include "tests/com/host_dll.h"

// After the system's headers.
#include "ZuviQuery.h"

namespace zuvi::prueba {
namespace {

struct Parte {
  std::wstring clase, texto;
  RECT lugar;
};

std::vector<Parte> PartesDe(HWND ventana) {
  std::vector<Parte> partes;
  for (HWND hijo = ::GetWindow(ventana, GW_CHILD); hijo; hijo = ::GetWindow(hijo, GW_HWNDNEXT)) {
    wchar_t clase[64] = L"", texto[64] = L"";
    RECT lugar;
    ::GetClassNameW(hijo, clase, 64);
    ::GetWindowTextW(hijo, texto, 64);
    ::GetWindowRect(hijo, &lugar);
    ::MapWindowPoints(nullptr, ventana, reinterpret_cast<POINT*>(&lugar), 2);
    partes.push_back({clase, texto, lugar});
  }
  return partes;
}

// This program asks for no look of its own, as many hosts do.
TEST_F(ConHost, LaVentanaDeAvanceTieneSuAspectoYCabeEnCadaEscala) {
  const auto progreso = Crea(__uuidof(::VentanaProgreso));
  wchar_t ruta[MAX_PATH];
  ::GetModuleFileNameW(::GetModuleHandleW(L"ZuviHost.dll"), ruta, MAX_PATH);
  *wcsrchr(ruta, L'\\') = 0;
  const Texto animacion((std::wstring(ruta) + L"\\Images\\Gears.Avi").c_str());
  ASSERT_EQ(Hace(progreso.get(), L"Inicia", kMetodo, {V(0), Texto(L"Ensamble"), animacion}), S_OK);
  ASSERT_EQ(Hace(progreso.get(), L"Avanza", kMetodo, {V(1), Texto(L"Partida 1"), Texto(L"Jabón & ñandú")}),
            S_OK);
  const HWND ventana = ::FindWindowW(L"ZuviVentanaTrabajo", L"Ensamble");
  ASSERT_TRUE(ventana);
  for (const wchar_t* clase : {L"msctls_progress32", L"Button", L"Static"}) {
    HMODULE controles = nullptr;
    wchar_t de[MAX_PATH] = L"";
    ::GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCWSTR>(
            ::GetClassLongPtrW(::FindWindowExW(ventana, nullptr, clase, nullptr), GCLP_WNDPROC)),
        &controles);
    ::GetModuleFileNameW(controles, de, MAX_PATH);
    EXPECT_NE(std::wstring_view(de).find(L"common-controls_"), std::wstring_view::npos) << Narrow(de);
  }
  LONG antes = 0;
  for (const WORD escala : {WORD{96}, WORD{144}, WORD{192}}) {
    SCOPED_TRACE(escala);
    const RECT lugar{40, 30, 50, 40};
    ::SendMessageW(ventana, /*WM_DPICHANGED*/ 0x02E0, MAKEWPARAM(escala, escala),
                   reinterpret_cast<LPARAM>(&lugar));
    RECT dentro;
    ::GetClientRect(ventana, &dentro);
    EXPECT_GE(dentro.right, ::MulDiv(420, escala, 96));
    EXPECT_GT(dentro.right, antes);
    antes = dentro.right;
    const auto fuente =
        reinterpret_cast<HFONT>(::SendMessageW(::GetDlgItem(ventana, IDCANCEL), WM_GETFONT, 0, 0));
    const HDC dc = ::GetDC(ventana);
    const HGDIOBJ otra = ::SelectObject(dc, fuente);
    const auto partes = PartesDe(ventana);
    EXPECT_GE(partes.size(), 4u);
    for (const Parte& parte : partes) {
      SCOPED_TRACE(Narrow(parte.clase.c_str()) + " " + Narrow(parte.texto.c_str()));
      SIZE texto{};
      ::GetTextExtentPoint32W(dc, parte.texto.c_str(), static_cast<int>(parte.texto.size()), &texto);
      EXPECT_LE(texto.cx, parte.lugar.right - parte.lugar.left);
      EXPECT_LE(texto.cy, parte.lugar.bottom - parte.lugar.top);
      RECT comun;
      EXPECT_TRUE(::IntersectRect(&comun, &parte.lugar, &dentro) && ::EqualRect(&comun, &parte.lugar));
      EXPECT_EQ(std::ranges::count_if(
                    partes, [&](const Parte& o) { return ::IntersectRect(&comun, &parte.lugar, &o.lugar); }),
                1);
    }
    ::SelectObject(dc, otra);
    ::ReleaseDC(ventana, dc);
  }
  EXPECT_EQ(Hace(progreso.get(), L"Cierra", kMetodo, {}), S_OK);
}

}  // namespace
}  // namespace zuvi::prueba
