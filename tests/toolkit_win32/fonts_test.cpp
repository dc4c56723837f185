// What windows show is read in full, whatever font and scale their user has, on a screen of any size.
#include <gtest/gtest.h>

#include "tests/toolkit_win32/pantalla.h"

namespace zuvi::pruebas {
namespace {

/// The user's font for texts of windows; put back at the end.
class MessageFont {
 public:
  MessageFont() {
    before_.cbSize = sizeof before_;
    ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof before_, &before_, 0);
  }
  MessageFont(const MessageFont&) = delete;
  MessageFont& operator=(const MessageFont&) = delete;
  ~MessageFont() { Apply(before_); }
  void Be(const wchar_t* face, int points) const {
    NONCLIENTMETRICSW metrics = before_;
    ::lstrcpynW(metrics.lfMessageFont.lfFaceName, face, LF_FACESIZE);
    metrics.lfMessageFont.lfHeight = -::MulDiv(points, 96, 72);
    Apply(metrics);
  }
  void BeAsBefore() const { Apply(before_); }

 private:
  static void Apply(NONCLIENTMETRICSW metrics) {
    ::SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  }
  NONCLIENTMETRICSW before_{};
};

/// The window with long captions, in which nothing gives way to a small screen.
class Letras : public EnPantalla {
 protected:
  Letras() {
    Control<AutoResizer>(*form, "ajuste").SetEnabled(false);
    form->etiqueta->SetCaption("&Observaciones a la orden de producción");
    form->boton->SetCaption("&Generar códigos de las partidas");
    form->casilla->SetCaption("&Dejar como movimiento pendiente");
    for (int i = 1; i <= 3; ++i) form->lista->Columns().Add("", "Regreso de comida " + Decimal(i));
  }
  /// Room that a text takes in the font that a window really has.
  static SIZE RoomFor(const std::wstring& text, HWND window) {
    const HDC canvas = ::GetDC(window);
    const HGDIOBJ before =
        ::SelectObject(canvas, reinterpret_cast<HGDIOBJ>(::SendMessageW(window, WM_GETFONT, 0, 0)));
    RECT room{};
    ::DrawTextW(canvas, text.c_str(), -1, &room, DT_CALCRECT | DT_SINGLELINE);
    ::SelectObject(canvas, before);
    ::ReleaseDC(window, canvas);
    return {room.right, room.bottom};
  }
  void CaptionFits(const zuvi::Control& control, int beside, int above) {
    const HWND native = screen.HandleOf(control);
    const SIZE text = RoomFor(native::TextOf(native), native);
    const RECT place = screen.PlaceOf(native);
    EXPECT_LE(text.cx + beside, place.right - place.left) << control.Name();
    EXPECT_LE(text.cy + above, place.bottom - place.top) << control.Name();
  }
  void HeadingsFit() {
    const HWND header = reinterpret_cast<HWND>(screen.Ask(*form->lista, LVM_GETHEADER));
    const LONG text = RoomFor(L"Regreso de comida 1", header).cx;
    for (WPARAM i = 0; i < 3; ++i) EXPECT_LE(text + 12, screen.Ask(*form->lista, LVM_GETCOLUMNWIDTH, i));
  }
  /// Where the screen has no room for the whole window, what has the keyboard comes into view.
  void KeyboardIsInView() {
    RECT inside;
    ::GetClientRect(window, &inside);
    EXPECT_NEAR(form->ClientWidth() * dpi / 1440, inside.right, 1);
    ::MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&inside), 2);
    for (zuvi::Control* control :
         std::initializer_list<zuvi::Control*>{form->cancelar.get(), form->a.get()}) {
      control->SetFocus();
      screen.Settle();
      const RECT place = screen.PlaceOf(*control);
      EXPECT_TRUE(place.left >= inside.left && place.top >= inside.top && place.right <= inside.right &&
                  place.bottom <= inside.bottom)
          << control->Name();
    }
  }
  void AllFit() {
    CaptionFits(*form->etiqueta, 0, 0);
    CaptionFits(*form->boton, 8, 6);
    CaptionFits(*form->casilla, 18, 0);
    HeadingsFit();
    KeyboardIsInView();
  }

  const HWND window = screen.HandleOf(*form);
  LONG dpi = 96;
};

TEST_F(Letras, CaptionsAreReadInFullInTheUsersFontAndScale) {
  const RECT first = screen.PlaceOf(window), box = screen.PlaceOf(*form->a);
  const MessageFont font;
  for (const int points : {13, 9, 11}) {
    SCOPED_TRACE(points);
    // Wider than what users of today's systems have.
    font.Be(L"DejaVu Sans", points);
    ::SendMessageW(window, WM_SETTINGCHANGE, 0, reinterpret_cast<LPARAM>(L"WindowMetrics"));
    screen.Settle();
    dpi = 96;
    AllFit();
    for (LONG before = 96; const LONG next : {192, 120, 144, 96}) {
      SCOPED_TRACE(next);
      RECT place = screen.PlaceOf(window);
      place.right = place.left + (place.right - place.left) * next / before;
      place.bottom = place.top + (place.bottom - place.top) * next / before;
      before = dpi = next;
      screen.Rescale(*form, next, &place);
      AllFit();
    }
  }
  form->etiqueta->SetCaption("Uno");
  form->boton->SetCaption("Dos");
  form->casilla->SetCaption("Tres");
  form->lista->Columns().Clear();
  font.BeAsBefore();
  ::SendMessageW(window, WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS, 0);
  screen.Settle();
  const RECT last = screen.PlaceOf(window), box_now = screen.PlaceOf(*form->a);
  EXPECT_EQ(last.right - last.left, first.right - first.left);
  EXPECT_EQ(box_now.bottom - box_now.top, box.bottom - box.top);
}

}  // namespace
}  // namespace zuvi::pruebas
