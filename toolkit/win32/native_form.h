#pragma once

#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "toolkit/form.h"
#include "toolkit/win32/form_scroll.h"
#include "toolkit/win32/native_texts.h"
#include "toolkit/win32/window_life.h"

namespace zuvi::native {

class NativeControl;

/// A list that has dropped down from a control and has the keys first.
class DropDown {
 public:
  virtual ~DropDown() = default;
  /// True when the key was for the list.
  virtual bool Key(std::int16_t key, std::int16_t shift) = 0;
  virtual void Dismiss() = 0;
};

/// What a modal window keeps from taking input, until it is told to let go.
class ModalBlock {
 public:
  ModalBlock(std::shared_ptr<Form> owner, HWND foreign);
  ModalBlock(const ModalBlock&) = delete;
  ModalBlock& operator=(const ModalBlock&) = delete;
  ~ModalBlock() { Release(); }
  void Release();

 private:
  std::shared_ptr<Form> owner_;
  HWND foreign_;
};

/// Native side of a window.
class NativeForm final : public Peer {
 public:
  NativeForm(std::shared_ptr<WindowFactory> factory, Form& form);
  NativeForm(const NativeForm&) = delete;
  NativeForm& operator=(const NativeForm&) = delete;
  ~NativeForm() override;

  /// Creates the window and its controls' peers, hidden. `nth` places it beside others of its kind.
  void Create(int nth);
  void ShowNow();
  void Update(Aspect aspect) override;
  void TakeFocus() override;
  std::intptr_t Handle() const override { return reinterpret_cast<std::intptr_t>(Window()); }

  Form& Model() const { return form_; }
  HWND Window() const { return life_->window; }
  WindowFactory& Factory() const { return *life_->factory; }
  const std::shared_ptr<WindowLife>& Life() const { return life_; }
  UINT Dpi() const { return dpi_; }
  int Pixels(std::int32_t twips) const { return ::MulDiv(twips, static_cast<int>(dpi_), 1440); }
  std::int32_t Twips(int pixels) const { return ::MulDiv(pixels, 1440, static_cast<int>(dpi_)); }
  /// A measure of the system's (SM_…) in pixels of this window's screen.
  int Metric(int which) const { return WindowFactory::Metric(which, dpi_); }
  HFONT Font(bool bold = false) const { return texts_->Font(bold); }
  /// Whether a control's native focus would be the keyboard's.
  bool Active() const;

  /// The part that is in view, where the screen has no room for all of it.
  FormScroll& Scroll() { return scroll_; }
  const FormScroll& Scroll() const { return scroll_; }
  /// A control's place changed.
  void Place(NativeControl& control);
  /// Tool tip of a window; empty for none.
  void SetToolTip(HWND tool, const std::wstring& text);
  /// Runs `tick` every so many milliseconds; 0 stops it. `id` names the timer.
  void SetTimer(const void* id, std::int32_t milliseconds, std::function<void()> tick);
  /// The list that is dropped down; null for none.
  DropDown* Dropped() const { return dropped_; }
  void SetDropped(DropDown* list) { dropped_ = list; }
  void Dismiss();
  /// `block` is released as soon as the window goes; `opener`, if it is one of ours, is told then.
  void SetModal(std::shared_ptr<ModalBlock> block, HWND owner, Form* opener);

  static LRESULT CALLBACK Procedure(HWND window, UINT id, WPARAM w, LPARAM l);

 private:
  /// From its controls and timers; what is for neither goes on to the next.
  std::optional<LRESULT> Handle(const Message& message);
  /// Keyboard, mouse and bars.
  std::optional<LRESULT> HandleInput(const Message& message);
  /// Size, painting, closing, and what changes on the system.
  std::optional<LRESULT> HandleState(const Message& message);
  /// False when the timer is none of ours.
  bool OnTimer(WPARAM id);
  void ScaleToolTips();
  void MakeFonts();
  RECT FrameOf(int width, int height) const;
  RECT FirstPlace(int nth) const;
  void GiveFocus();
  void OnSize(WPARAM kind, int width, int height);
  /// Lays the controls out in the client area that the window has.
  void LayOut();
  /// The same, and shows the bars that are needed then.
  void LayOutWithBars();
  void OnPaint(HWND window);
  void OnWheel(const Message& message);
  void OnModalEnded();
  void OnNewScale(UINT dpi, const RECT& place);
  void Rescale();
  /// Brings the window to the size of its client area, no larger than its screen and nowhere outside of it.
  void PutOnScreen();
  /// What the controls' native sides ask for beyond what the model knows of.
  void FitNative();
  void SmallestSize(MINMAXINFO& info) const;
  void ShowState();
  void Hide();
  /// The peer behind a control's window; null for others.
  NativeControl* PeerOf(HWND window) const;
  bool IgnoresKey(const Message& message);

  Form& form_;
  std::shared_ptr<WindowLife> life_;
  DWORD style_ = 0, extended_ = 0;
  UINT dpi_ = 96;
  std::shared_ptr<const NativeTexts> texts_;
  FormScroll scroll_{*this};
  HWND tips_ = nullptr;
  bool showing_ = true, painting_ = false, sizing_ = false, wheeling_ = false;
  std::vector<NativeControl*> moved_;
  struct NativeTimer {
    std::function<void()> tick;
    bool ticking = false;
  };
  std::map<const void*, std::shared_ptr<NativeTimer>> timers_;
  DropDown* dropped_ = nullptr;
  std::shared_ptr<ModalBlock> modal_;
};

}  // namespace zuvi::native
