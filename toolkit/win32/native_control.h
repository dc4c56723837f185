#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "toolkit/control.h"
#include "toolkit/win32/native_form.h"
#include "toolkit/win32/window_life.h"

namespace zuvi::native {

/// Native side of a control. Its window, and inner ones such as the edit field of a combo box, are
/// subclassed, so that keys and characters pass through the model whatever the message loop of the host does.
///
/// A call into the model may destroy the peer: whoever goes on afterwards holds `Alive()` and asks it.
class NativeControl : public Peer {
 public:
  NativeControl(NativeForm& form, Control& control);
  NativeControl(const NativeControl&) = delete;
  NativeControl& operator=(const NativeControl&) = delete;
  ~NativeControl() override;

  /// Makes the native control in the state of the model.
  virtual void Create() = 0;
  void Update(Aspect aspect) override;
  void TakeFocus() override;
  std::intptr_t Handle() const override { return reinterpret_cast<std::intptr_t>(window_); }
  HWND Window() const { return window_; }
  Control& Model() const { return control_; }
  /// Place in the window, in pixels.
  virtual RECT Place() const;
  /// The fonts have changed, or the scale.
  virtual void Restyle();
  /// Disabled, but still to be scrolled.
  bool OnlyReads() const { return NativeEnabled() && !control_.Enabled(); }
  /// Brings changes into the native control that were put off.
  virtual void Flush() {}

  // Notifications of its window to the parent.
  virtual void OnCommand(UINT /*code*/) {}
  virtual LRESULT OnNotify(const NMHDR& /*notification*/) { return 0; }
  virtual void OnDraw(const DRAWITEMSTRUCT& /*item*/) {}

 protected:
  struct Link;
  /// A window whose messages come here first, and the procedure that they are for. A property of the window
  /// tells it.
  struct Subclassed {
    Link& link;
    WNDPROC native;
  };
  struct Link : std::enable_shared_from_this<Link> {
    NativeControl* peer = nullptr;
    std::shared_ptr<WindowLife> life;
    std::vector<std::unique_ptr<Subclassed>> windows;
    std::shared_ptr<Link> while_native;
    int natives = 0;  // native procedures on the stack
  };
  /// Whether a peer still lives.
  class Life {
   public:
    explicit Life(std::shared_ptr<Link> link) : link_(std::move(link)) {}
    explicit operator bool() const { return link_->peer != nullptr; }

   private:
    std::shared_ptr<Link> link_;
  };
  Life Alive() const { return Life(link_); }
  /// Sets a flag while the model is being mirrored, so that what the native control tells meanwhile is no
  /// user's doing.
  class UpdateGuard {
   public:
    explicit UpdateGuard(NativeControl& peer) : flag_(peer.updating_), before_(flag_) { flag_ = true; }
    UpdateGuard(const UpdateGuard&) = delete;
    UpdateGuard& operator=(const UpdateGuard&) = delete;
    ~UpdateGuard() { flag_ = before_; }

   private:
    bool& flag_;
    bool before_;
  };
  bool Updating() const { return updating_; }

  NativeForm& Parent() const { return form_; }
  /// Creates and subclasses the window.
  void CreateWindowOf(const wchar_t* window_class, DWORD style, DWORD extended = 0,
                      const std::wstring& text = {});
  /// Subclasses an inner window. Its keys go the same way.
  void Adopt(HWND inner);
  LRESULT Send(UINT message, WPARAM w = 0, LPARAM l = 0) const {
    return ::SendMessageW(window_, message, w, l);
  }
  template <class T>
  LRESULT SendPtr(UINT message, WPARAM w, T* argument) const {
    return Send(message, w, reinterpret_cast<LPARAM>(argument));
  }
  /// Puts `Flush` off until the window's queue is idle, or the next key or press. Never does it answer a
  /// message that the native control itself is at work on, or comes while that holds the mouse.
  void FlushLater();
  /// Does what was put off, unless the native control is at work.
  void FlushNow();
  bool Dirty() const { return dirty_; }
  /// The native procedure of the control is on the stack.
  bool InNative() const { return link_->natives > 0; }
  /// The native control is in the middle of something that goes on between its messages.
  virtual bool Busy() const { return false; }
  /// Whether painting shows what was put off.
  virtual bool FlushesToPaint() const { return false; }
  /// The native control has finished with a message: now the model hears what it told meanwhile.
  virtual void AfterMessage() {}
  /// Whether the native window takes input. One that shows more than fits does so even where its control is
  /// disabled, for its scroll bars: the control itself takes neither keyboard nor clicks then.
  virtual bool NativeEnabled() const { return control_.Enabled(); }
  /// Tool tip as the model has it.
  void ShowToolTip();

  /// A message before the native procedure has it; a result keeps it from there.
  virtual std::optional<LRESULT> OnMessage(const Message& message);
  /// A key before anybody hears of it; handlers may run.
  virtual void BeforeKey(const Message& /*message*/, std::int16_t /*shift*/) {}
  /// What the control does with a key that nobody used up. By default the native control does it.
  virtual void OwnKey(const Message& message, std::int16_t shift);
  /// The same for a character.
  virtual void OwnChar(const Message& message);
  /// Window that the keyboard goes to.
  virtual HWND FocusTarget() const { return window_; }
  /// Whether a key's own action waits for its character (and with it for KeyPress).
  virtual bool ActsOnChar(WPARAM /*key*/) const { return false; }

  /// What the native control makes of a message.
  static LRESULT CallNative(const Message& message);

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT id, WPARAM w, LPARAM l);
  static Subclassed* SubclassedIn(HWND window);
  bool FlushesBefore(const Message& message) const;
  static LRESULT Destroyed(Subclassed& subclassed, const Message& message);
  LRESULT KeyUp(const Message& message);
  void KeyDown(const Message& message);
  void Character(const Message& message);
  LRESULT GainedFocus(const Message& message);
  /// False keeps a press of the left button from the native control.
  bool Pressed();

  NativeForm& form_;
  Control& control_;
  std::shared_ptr<Link> link_;
  HWND window_ = nullptr;
  bool updating_ = false, dirty_ = false;
  UINT paint_cost_ = 0;    // milliseconds, of the last painting
  WPARAM listed_key_ = 0;  // went to a dropped down list; its release is nobody's
};

/// State of Shift, Ctrl and Alt at the message being handled.
std::int16_t ShiftState();

}  // namespace zuvi::native
