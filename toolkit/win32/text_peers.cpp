// Text boxes: EDIT, and the rich text control used for plain text in several lines; the page viewer is one
// that is only read.
#include <algorithm>
#include <memory>
#include <vector>

#include "toolkit/win32/drawing.h"
#include "toolkit/win32/peers.h"

#include <richedit.h>

namespace zuvi::native {
namespace {

/// Alt+Down or F4: the usual keys that drop a list down.
bool DropsDown(WPARAM key, std::int16_t shift) {
  return (key == VK_F4 && shift == shift::kNone) || (key == VK_DOWN && shift == shift::kAlt);
}

/// The clipboard, open for a window; false while somebody else has it.
class Clipboard {
 public:
  explicit Clipboard(HWND window) : open_(::OpenClipboard(window)) {}
  Clipboard(const Clipboard&) = delete;
  Clipboard& operator=(const Clipboard&) = delete;
  ~Clipboard() {
    if (open_) ::CloseClipboard();
  }
  explicit operator bool() const { return open_ != FALSE; }

 private:
  BOOL open_;
};

/// The bytes of a movable block of memory; null for none.
class LockedBlock {
 public:
  explicit LockedBlock(HANDLE block) : block_(block), bytes_(block ? ::GlobalLock(block) : nullptr) {}
  LockedBlock(const LockedBlock&) = delete;
  LockedBlock& operator=(const LockedBlock&) = delete;
  ~LockedBlock() {
    if (bytes_) ::GlobalUnlock(block_);
  }
  const void* get() const { return bytes_; }

 private:
  HANDLE block_;
  void* bytes_;
};

class TextPeer : public NativeControl {
 public:
  TextPeer(NativeForm& form, TextBox& box) : NativeControl(form, box), box_(box) {}

  void Create() override {
    const DWORD lines = box_.MultiLine() ? ES_MULTILINE | ES_AUTOVSCROLL | ES_WANTRETURN | WS_VSCROLL
                                         : static_cast<DWORD>(ES_AUTOHSCROLL);
    const DWORD style = lines | (box_.RightAligned() ? ES_RIGHT : 0u) | (ReadOnly() ? ES_READONLY : 0u);
    CreateWindowOf(WindowClass(), style, WS_EX_CLIENTEDGE, FirstText());
    const UpdateGuard echo(*this);
    Prepare();
    if (box_.MultiLine() || box_.MaxLength() > 0) LimitText();
    if (!box_.Text().empty()) ShowSelection();
  }

  void Update(Aspect aspect) override {
    const UpdateGuard echo(*this);
    switch (aspect) {
      case Aspect::Text:
        ShowText();
        break;
      case Aspect::Selection:
        ShowSelection();
        break;
      case Aspect::State:
        Send(EM_SETREADONLY, ReadOnly());
        LimitText();
        Coloured();
        NativeControl::Update(aspect);
        break;
      case Aspect::Enabled:
        NativeControl::Update(aspect);
        Send(EM_SETREADONLY, ReadOnly());
        Coloured();
        break;
      default:
        NativeControl::Update(aspect);
    }
  }

  void Pull() override {
    if (Updating() || !Window()) return;
    const auto [start, end] = Selection();
    box_.NoteSelection(start, end - start);
  }

  void OnCommand(UINT code) override {
    if (code == EN_CHANGE && !Updating()) Edited();
  }

 protected:
  struct Range {
    std::int32_t start, end;
  };
  /// Several lines can be more than the box shows.
  bool NativeEnabled() const override { return box_.MultiLine() || box_.Enabled(); }
  bool ReadOnly() const { return box_.Locked() || (box_.MultiLine() && !box_.Enabled()); }
  virtual const wchar_t* WindowClass() { return L"EDIT"; }
  virtual std::wstring FirstText() const { return Wide(box_.Text()); }
  virtual void Prepare() {}
  virtual void Coloured() {}
  virtual void LimitText() { Send(EM_SETLIMITTEXT, static_cast<WPARAM>(box_.MaxLength())); }
  virtual Range Selection() const {
    DWORD start = 0, end = 0;
    ::SendMessageW(Window(), EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    return {static_cast<std::int32_t>(start), static_cast<std::int32_t>(end)};
  }
  virtual void Select(Range range) {
    Send(EM_SETSEL, static_cast<WPARAM>(range.start), range.end);
    Send(EM_SCROLLCARET);
  }

  void OwnKey(const Message& message, std::int16_t shift) override {
    if (DropsDown(message.w, shift))
      if (const auto combo = std::dynamic_pointer_cast<MultiCombo>(box_.Container())) {
        combo->Click();
        return;
      }
    NativeControl::OwnKey(message, shift);
  }

  void OwnChar(const Message& message) override {
    constexpr WPARAM kCtrlA = 1, kCtrlEnter = 10, kCtrlBackspace = 127;
    switch (message.w) {
      case VK_RETURN:
        if (box_.MultiLine() && !box_.Locked())
          ::SendMessageW(Window(), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"\r\n"));
        return;
      case kCtrlA:
        Send(EM_SETSEL, 0, -1);
        return;
      case VK_TAB:
      case VK_ESCAPE:
      case kCtrlEnter:
      case kCtrlBackspace:
        return;  // the native control would beep, or show a box
      default:
        NativeControl::OwnChar(message);
    }
  }

  std::optional<LRESULT> OnMessage(const Message& message) override {
    const Life alive = Alive();
    if (message.id == WM_LBUTTONDBLCLK || message.id == WM_LBUTTONUP) {
      const LRESULT result = CallNative(message);
      if (alive) message.id == WM_LBUTTONUP ? box_.Click() : box_.DblClick();
      return result;
    }
    if (message.id == WM_PASTE && !box_.MultiLine() && box_.OnKeyPress) {
      // What is dropped of typed characters is not to come in by the clipboard.
      const auto kept = box_.Pasting(Narrow(ClipboardText()));
      if (!alive) return 0;
      if (kept)
        ::SendMessageW(Window(), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(Wide(*kept).c_str()));
      else
        ::MessageBeep(MB_ICONWARNING);
      return 0;
    }
    return NativeControl::OnMessage(message);
  }

 private:
  std::string NativeText() const { return Narrow(TextOf(Window())); }

  std::wstring ClipboardText() const {
    const Clipboard clipboard(Window());
    const HANDLE data = clipboard ? ::GetClipboardData(CF_UNICODETEXT) : nullptr;
    const LockedBlock block(data);
    const auto* const units = static_cast<const wchar_t*>(block.get());
    return units ? std::wstring(units, ::wcsnlen(units, ::GlobalSize(data) / sizeof(wchar_t)))
                 : std::wstring();
  }

  void Edited() {
    std::string text = NativeText();
    if (text == box_.Text()) return;
    const auto [start, end] = Selection();
    box_.UserEdited(std::move(text), start, end - start);
  }
  void ShowText() {
    if (NativeText() != box_.Text()) ::SetWindowTextW(Window(), Wide(box_.Text()).c_str());
    ShowSelection();
  }
  void ShowSelection() {
    const std::int32_t start = box_.SelStart();
    Select({start, start + box_.SelLength()});
  }

  TextBox& box_;
};

/// Counts a line end as two units, as the model does; the native control counts one.
class RichTextPeer final : public TextPeer {
 public:
  RichTextPeer(NativeForm& form, TextBox& box) : TextPeer(form, box) {}

 protected:
  const wchar_t* WindowClass() override { return Parent().Factory().RichTextClass(); }
  std::wstring FirstText() const override { return {}; }
  void Prepare() override {
    // Which can be set only while there is no text.
    Send(EM_SETTEXTMODE, TM_PLAINTEXT);
    Send(EM_SETEVENTMASK, 0, ENM_CHANGE);
    Send(EM_SETREADONLY, ReadOnly());
    Coloured();
    TextPeer::Update(Aspect::Text);
  }
  void Coloured() override {
    const bool writable = Model().Enabled() && !static_cast<TextBox&>(Model()).Locked();
    Send(EM_SETBKGNDCOLOR, 0, static_cast<LPARAM>(::GetSysColor(writable ? COLOR_WINDOW : COLOR_3DFACE)));
  }
  void LimitText() override {
    const std::int32_t limit = static_cast<TextBox&>(Model()).MaxLength();
    Send(EM_EXLIMITTEXT, 0, limit > 0 ? limit : 0x7FFFFFFE);
  }
  Range Selection() const override {
    CHARRANGE range{};
    SendPtr(EM_EXGETSEL, 0, &range);
    const std::wstring text = PlainText();
    const auto widened = [&](LONG to) {
      const auto end =
          text.begin() + std::clamp<std::ptrdiff_t>(to, 0, static_cast<std::ptrdiff_t>(text.size()));
      return static_cast<std::int32_t>(to + std::count(text.begin(), end, L'\r'));
    };
    return {widened(range.cpMin), widened(range.cpMax)};
  }
  void Select(Range range) override {
    const std::wstring text = PlainText();
    const auto narrowed = [&](std::int32_t to) {
      LONG at = 0;
      for (std::int32_t units = 0; units < to && at < static_cast<LONG>(text.size()); ++at)
        units += text[static_cast<std::size_t>(at)] == L'\r' ? 2 : 1;
      return at;
    };
    CHARRANGE native{narrowed(range.start), narrowed(range.end)};
    SendPtr(EM_EXSETSEL, 0, &native);
    Send(EM_SCROLLCARET);
  }
  /// These the native control does at once, without waiting for what KeyPress says.
  bool ActsOnChar(WPARAM key) const override { return key == VK_RETURN || key == VK_BACK; }
  void OwnChar(const Message& message) override {
    if (message.w == VK_BACK) CallNative({message.window, WM_KEYDOWN, VK_BACK, message.l});
    TextPeer::OwnChar(message);
  }
  std::optional<LRESULT> OnMessage(const Message& message) override {
    if (message.id == WM_SYSCOLORCHANGE) Coloured();
    return TextPeer::OnMessage(message);
  }

 private:
  std::wstring PlainText() const {
    GETTEXTLENGTHEX ask{GTL_NUMCHARS | GTL_PRECISE, 1200};
    const auto length = ::SendMessageW(Window(), EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&ask), 0);
    std::wstring text(static_cast<std::size_t>(std::max<LRESULT>(length, 0)), L'\0');
    GETTEXTEX get{};
    get.cb = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
    get.flags = GT_DEFAULT;
    get.codepage = 1200;
    ::SendMessageW(Window(), EM_GETTEXTEX, reinterpret_cast<WPARAM>(&get),
                   reinterpret_cast<LPARAM>(text.data()));
    return text;
  }
};

/// The page as text, where it can be read, searched by a screen reader and copied.
class PagePeer final : public NativeControl {
 public:
  PagePeer(NativeForm& form, WebBrowser& page) : NativeControl(form, page), page_(page) {}
  void Create() override {
    CreateWindowOf(Parent().Factory().RichTextClass(),
                   ES_MULTILINE | ES_READONLY | WS_VSCROLL | ES_AUTOVSCROLL, WS_EX_CLIENTEDGE);
    Send(EM_SETTEXTMODE, TM_PLAINTEXT);
    Update(Aspect::Text);
  }
  void Update(Aspect aspect) override {
    if (aspect == Aspect::Text || aspect == Aspect::State) {
      const std::wstring text = Wide(page_.PlainText());
      ::SetWindowTextW(Window(), text.c_str());
      AlignCells(text);
    }
    NativeControl::Update(aspect);
  }
  void Restyle() override {
    NativeControl::Restyle();
    AlignCells(Wide(page_.PlainText()));
  }

 private:
  /// Cells of a row, which tabs part, stand under those of the row above.
  void AlignCells(std::wstring_view text) {
    const std::vector<int> widths = WidthsOfCells(text);
    PARAFORMAT format{};
    format.cbSize = sizeof format;
    format.dwMask = PFM_TABSTOPS;
    for (LONG stop = 0; const int width : widths) {
      if (format.cTabCount == MAX_TAB_STOPS) break;
      stop += Parent().Twips(width) + Dip(16);
      format.rgxTabs[format.cTabCount++] = stop;
    }
    Send(EM_SETSEL, 0, -1);
    SendPtr(EM_SETPARAFORMAT, 0, &format);
    Send(EM_SETSEL, 0, 0);
  }
  /// The widest of each column in pixels; what is last in its line takes what it needs.
  std::vector<int> WidthsOfCells(std::wstring_view text) const {
    std::vector<int> widths;
    const WindowDc screen(Window());
    const Selected font(screen.get(), reinterpret_cast<HGDIOBJ>(Send(WM_GETFONT)));
    std::size_t column = 0;
    for (std::size_t from = 0, to; (to = text.find_first_of(L"\t\n", from)) != text.npos; from = to + 1) {
      if (text[to] == L'\n') {
        column = 0;
        continue;
      }
      SIZE size{};
      ::GetTextExtentPoint32W(screen.get(), text.data() + from, static_cast<int>(to - from), &size);
      if (column == widths.size()) widths.push_back(0);
      widths[column] = std::max<int>(widths[column], size.cx);
      ++column;
    }
    return widths;
  }

  WebBrowser& page_;
};

}  // namespace

std::unique_ptr<NativeControl> TextPeerFor(NativeForm& form, TextBox& box) {
  // Where the rich text control is missing, the plain one has several lines too.
  const bool rich =
      dynamic_cast<RichTextBox*>(&box) && form.Factory().RichTextClass() != std::wstring_view(L"EDIT");
  if (rich) return std::make_unique<RichTextPeer>(form, box);
  return std::make_unique<TextPeer>(form, box);
}

std::unique_ptr<NativeControl> PagePeerFor(NativeForm& form, WebBrowser& page) {
  return std::make_unique<PagePeer>(form, page);
}

}  // namespace zuvi::native
