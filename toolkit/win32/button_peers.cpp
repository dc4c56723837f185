// Labels, buttons and check boxes.
#include <algorithm>
#include <vector>

#include "toolkit/win32/drawing.h"
#include "toolkit/win32/peers.h"

namespace zuvi::native {
namespace {

/// Common part: the caption is the window's text.
class CaptionedPeer : public NativeControl {
 public:
  CaptionedPeer(NativeForm& form, Captioned& control) : NativeControl(form, control), captioned_(control) {}
  void Update(Aspect aspect) override {
    if (aspect == Aspect::Text) {
      const std::wstring caption = NativeCaption();
      if (TextOf(Window()) != caption) ::SetWindowTextW(Window(), caption.c_str());
    }
    NativeControl::Update(aspect);
  }

 protected:
  virtual std::wstring NativeCaption() const { return Wide(captioned_.CaptionText()); }
  /// Enter presses what has the focus, as Space does.
  void OwnKey(const Message& message, std::int16_t shift) override {
    if (message.w == VK_RETURN)
      Model().DefaultKey(key::kEnter, shift);
    else
      NativeControl::OwnKey(message, shift);
  }

 private:
  Captioned& captioned_;
};

class LabelPeer final : public CaptionedPeer {
 public:
  LabelPeer(NativeForm& form, Label& label) : CaptionedPeer(form, label), label_(label) {}
  void Create() override {
    CreateWindowOf(L"STATIC", SS_NOTIFY | (label_.RightAligned() ? SS_RIGHT : SS_LEFT), 0, NativeCaption());
    if (label_.Heading()) Restyle();
  }
  void Restyle() override {
    NativeControl::Restyle();
    if (label_.Heading()) Send(WM_SETFONT, reinterpret_cast<WPARAM>(Parent().Font(true)), TRUE);
  }
  void OnCommand(UINT code) override {
    if (code == STN_CLICKED) {
      Parent().Dismiss();
      label_.Click();
    } else if (code == STN_DBLCLK) {
      label_.DblClick();
    }
  }

 private:
  Label& label_;
};

using Points = std::vector<POINT>;

/// The triangles of a glyph in a square of `size` pixels, pointing where what is chosen goes.
std::vector<Points> TrianglesOf(Glyph glyph, int size) {
  const int third = size / 3, half = size / 2;
  const auto triangle = [&](int tip_x, int base_x) {
    return Points{{tip_x, half}, {base_x, half - third - 1}, {base_x, half + third + 1}};
  };
  switch (glyph) {
    case Glyph::Right:
      return {triangle(half + third, third)};
    case Glyph::Left:
      return {triangle(half - third, size - third)};
    case Glyph::AllRight:
      return {triangle(half + 1, 0), triangle(size, half)};
    case Glyph::AllLeft:
      return {triangle(half, size), triangle(0, half)};
    case Glyph::Down:
      return {{{half, half + third}, {third - 2, third}, {size - third + 2, third}}};
    case Glyph::None:
      break;
  }
  return {};
}

UniqueIcon DrawGlyph(Glyph glyph, int size) {
  const WindowDc screen(nullptr);
  const UniqueGdi<HBITMAP> colour(::CreateCompatibleBitmap(screen.get(), size, size));
  const UniqueGdi<HBITMAP> mask(::CreateBitmap(size, size, 1, 1, nullptr));
  const MemoryDc canvas(::CreateCompatibleDC(screen.get()));
  const auto draw = [&](HBITMAP bitmap, COLORREF paper, COLORREF ink) {
    const UniqueGdi<HBRUSH> background(::CreateSolidBrush(paper)), brush(::CreateSolidBrush(ink));
    const Selected on(canvas.get(), bitmap), filled(canvas.get(), brush.get()),
        without_edge(canvas.get(), ::GetStockObject(NULL_PEN));
    const RECT all{0, 0, size, size};
    ::FillRect(canvas.get(), &all, background.get());
    for (const Points& points : TrianglesOf(glyph, size))
      ::Polygon(canvas.get(), points.data(), static_cast<int>(points.size()));
  };
  // Transparent where the mask is white; the colour must be black there.
  draw(mask.get(), RGB(255, 255, 255), RGB(0, 0, 0));
  draw(colour.get(), RGB(0, 0, 0), ::GetSysColor(COLOR_BTNTEXT));
  ICONINFO info{TRUE, 0, 0, mask.get(), colour.get()};
  return UniqueIcon(::CreateIconIndirect(&info));
}

class ButtonPeer final : public CaptionedPeer {
 public:
  ButtonPeer(NativeForm& form, Button& button) : CaptionedPeer(form, button), button_(button) {}
  void Create() override {
    const bool pictured = button_.Picture() != Glyph::None;
    const bool standard = Parent().Model().DefaultButton() == &button_;
    CreateWindowOf(L"BUTTON", (standard ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON) | (pictured ? BS_ICON : 0), 0,
                   NativeCaption());
    ShowPicture();
  }
  void Restyle() override {
    NativeControl::Restyle();
    ShowPicture();
  }
  void OnCommand(UINT code) override {
    if (code == BN_CLICKED) button_.Click();
  }

 protected:
  std::wstring NativeCaption() const override {
    return Wide(button_.Picture() == Glyph::None ? button_.CaptionText() : button_.AccessibleName());
  }
  std::optional<LRESULT> OnMessage(const Message& message) override {
    if (message.id == WM_SYSCOLORCHANGE) ShowPicture();
    return CaptionedPeer::OnMessage(message);
  }

 private:
  void ShowPicture() {
    if (button_.Picture() == Glyph::None) return;
    UniqueIcon icon = DrawGlyph(button_.Picture(), Parent().Pixels(Dip(12)));
    Send(BM_SETIMAGE, IMAGE_ICON, reinterpret_cast<LPARAM>(icon.get()));
    icon_ = std::move(icon);
  }

  Button& button_;
  UniqueIcon icon_;
};

class CheckBoxPeer final : public CaptionedPeer {
 public:
  CheckBoxPeer(NativeForm& form, CheckBox& box) : CaptionedPeer(form, box), box_(box) {}
  void Create() override {
    CreateWindowOf(L"BUTTON", BS_3STATE, 0, NativeCaption());
    ShowTick();
  }
  void Update(Aspect aspect) override {
    if (aspect == Aspect::Value) ShowTick();
    CaptionedPeer::Update(aspect);
  }
  void OnCommand(UINT code) override {
    if (code == BN_CLICKED) box_.Click();
  }
  /// Without a caption just the box: its text is for screen readers and lies outside.
  RECT Place() const override {
    RECT place = NativeControl::Place();
    if (box_.CaptionText().empty())
      place.right = std::min<LONG>(place.right, place.left + Parent().Pixels(Dip(16)));
    return place;
  }

 protected:
  std::wstring NativeCaption() const override {
    return box_.CaptionText().empty() ? Wide(box_.AccessibleName()) : CaptionedPeer::NativeCaption();
  }

 private:
  void ShowTick() { Send(BM_SETCHECK, static_cast<WPARAM>(box_.Value())); }

  CheckBox& box_;
};

}  // namespace

std::unique_ptr<NativeControl> LabelPeerFor(NativeForm& form, Label& label) {
  return std::make_unique<LabelPeer>(form, label);
}
std::unique_ptr<NativeControl> ButtonPeerFor(NativeForm& form, Button& button) {
  return std::make_unique<ButtonPeer>(form, button);
}
std::unique_ptr<NativeControl> CheckBoxPeerFor(NativeForm& form, CheckBox& box) {
  return std::make_unique<CheckBoxPeer>(form, box);
}

}  // namespace zuvi::native
