// Combo boxes.
#include <algorithm>

#include "toolkit/win32/peers.h"

namespace zuvi::native {
namespace {

class ComboPeer final : public NativeControl, private DropDown {
 public:
  ComboPeer(NativeForm& form, ComboBox& combo) : NativeControl(form, combo), combo_(combo) {}
  ~ComboPeer() override {
    if (Parent().Dropped() == this) Parent().SetDropped(nullptr);
  }

  void Create() override {
    const bool typed = combo_.Kind() == ComboBox::Style::DropDown;
    CreateWindowOf(WC_COMBOBOXW, (typed ? CBS_DROPDOWN | CBS_AUTOHSCROLL : CBS_DROPDOWNLIST) | WS_VSCROLL);
    COMBOBOXINFO parts{};
    parts.cbSize = sizeof parts;
    if (::GetComboBoxInfo(Window(), &parts)) {
      if (parts.hwndItem != Window()) Adopt(edit_ = parts.hwndItem);
      // Only counted, so that nobody closes the window under it.
      if (parts.hwndList != Window()) Adopt(list_ = parts.hwndList);
    }
    SetFieldHeight();
    const UpdateGuard echo(*this);
    ShowItems();
    ShowText();
  }

  void Update(Aspect aspect) override {
    const UpdateGuard echo(*this);
    if (aspect == Aspect::Items) ShowItems();
    if (aspect == Aspect::Text || aspect == Aspect::Selection) ShowText();
    NativeControl::Update(aspect);
    if (aspect == Aspect::Bounds) SetFieldHeight();
  }

  /// The window's height includes the list that drops down.
  RECT Place() const override {
    RECT place = NativeControl::Place();
    place.bottom += Parent().Pixels(Dip(200));
    return place;
  }
  void Restyle() override {
    NativeControl::Restyle();
    SetFieldHeight();
  }

  void OnCommand(UINT code) override {
    if (code == CBN_DROPDOWN) Parent().SetDropped(this);
    if (code == CBN_CLOSEUP && Parent().Dropped() == this) Parent().SetDropped(nullptr);
    if (Updating()) return;
    if (code == CBN_SELCHANGE) {
      combo_.UserChose(static_cast<std::int32_t>(Send(CB_GETCURSEL)));
    } else if (code == CBN_EDITCHANGE) {
      combo_.UserTyped(Narrow(TextOf(Window())));
    } else if (code == CBN_DBLCLK) {
      combo_.DblClick();
    }
  }

 protected:
  std::optional<LRESULT> OnMessage(const Message& message) override {
    // A press on the arrow of an open list closes it natively.
    if (message.window == list_ || message.id == WM_LBUTTONDOWN) return std::nullopt;
    return NativeControl::OnMessage(message);
  }
  void OwnChar(const Message& message) override {
    // The field would beep.
    if (message.window == edit_ && (message.w == VK_RETURN || message.w == VK_ESCAPE || message.w == VK_TAB))
      return;
    NativeControl::OwnChar(message);
  }

 private:
  // DropDown: these close the list before they mean anything to the window.
  bool Key(std::int16_t key, std::int16_t) override {
    if (key != key::kEnter && key != key::kEscape) return false;
    Dismiss();
    return true;
  }
  void Dismiss() override { Send(CB_SHOWDROPDOWN, FALSE); }

  void SetFieldHeight() {
    const RECT field = NativeControl::Place();
    const int frame = 2 * (Parent().Metric(SM_CYEDGE) + Parent().Metric(SM_CYBORDER));
    Send(CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), std::max<LPARAM>(1, field.bottom - field.top - frame));
  }
  void ShowItems() {
    Send(WM_SETREDRAW, FALSE);
    Send(CB_RESETCONTENT);
    for (std::int32_t i = 0; i < combo_.ListCount(); ++i)
      Send(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(combo_.List(i)).c_str()));
    Send(WM_SETREDRAW, TRUE);
    ::InvalidateRect(Window(), nullptr, TRUE);
    ShowText();
  }
  void ShowText() {
    const bool chosen = Send(CB_GETCURSEL) == combo_.ListIndex();
    const bool shown = !edit_ || Narrow(TextOf(Window())) == combo_.Text();
    if (chosen && shown) return;
    const LRESULT mark = edit_ ? ::SendMessageW(edit_, EM_GETSEL, 0, 0) : 0;
    if (!chosen) Send(CB_SETCURSEL, static_cast<WPARAM>(combo_.ListIndex()));
    if (!edit_) return;
    if (Narrow(TextOf(Window())) != combo_.Text()) ::SetWindowTextW(Window(), Wide(combo_.Text()).c_str());
    // A chosen row's text comes up marked as a whole, and what somebody goes on typing would replace it.
    ::SendMessageW(edit_, EM_SETSEL, LOWORD(mark), HIWORD(mark));
  }

  ComboBox& combo_;
  HWND edit_ = nullptr, list_ = nullptr;
};

}  // namespace

std::unique_ptr<NativeControl> ComboPeerFor(NativeForm& form, ComboBox& combo) {
  return std::make_unique<ComboPeer>(form, combo);
}

}  // namespace zuvi::native
