#pragma once

#include <concepts>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "toolkit/control.h"
#include "toolkit/control_array.h"
#include "toolkit/desktop.h"
#include "toolkit/layout.h"
#include "toolkit/text_measure.h"

namespace zuvi {

/// Why a window is being closed, as `Form_QueryUnload` hears it.
enum class UnloadMode : std::int16_t { TitleBar = 0, Code = 1, System = 2 };

enum class WindowState : std::int16_t { Normal = 0, Minimized = 1, Maximized = 2 };

/// A window: its controls, the focus among them, and the life from load to unload. Written once against the
/// model; a desktop with a screen gives it and its controls peers when it is first shown.
///
/// By name it publishes its own members, then its controls and control arrays: `ventana.txtFields(4).Text`.
class Form : public Object {
 public:
  /// `keeps` is held until the window object is gone: whatever the window needs to go on working after its
  /// opener has been released.
  Form(Desktop& desktop, std::string name, std::shared_ptr<void> keeps);
  ~Form() override;

  const std::string& Name() const { return name_; }
  Desktop& Screen() const { return desktop_; }

  // Life.
  /// Loads the window if it was not and shows it; returns at once. Throws what `Form_Load` throws: then the
  /// window is not shown.
  void Show();
  /// The same, and returns when the window is closed or hidden. `owner`, when given, is blocked meanwhile.
  /// `then` runs as soon as the window has gone. That is before this returns, and may be long before: other
  /// modal windows that were opened meanwhile, from elsewhere, keep it from returning. Not when it throws.
  void ShowModal(Form* owner, std::function<void()> then = {});
  /// Runs what waits for the end of this modal window, once. For desktops, which know when that is.
  void EndModal();
  /// Brings a window that is still loading onto the screen, for a load that takes long. Until it is loaded it
  /// shows what it does but takes no input, and a window that waits for it takes none either.
  void ShowWhileLoading();
  void Hide();
  /// Closes: QueryUnload, then Unload, each of which may cancel. True when the window is gone.
  bool Unload(UnloadMode mode = UnloadMode::Code);
  bool Loaded() const { return loaded_; }
  bool Visible() const { return visible_; }
  /// Once it was loaded and then unloaded.
  bool Closed() const { return closed_; }

  // State.
  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string caption);
  bool Enabled() const { return enabled_; }
  void SetEnabled(bool enabled);
  WindowState State() const { return state_; }
  void SetState(WindowState state);
  /// Size of the client area, in twips; controls follow by their anchors where an AutoResizer is present.
  std::int32_t ClientWidth() const { return client_width_; }
  std::int32_t ClientHeight() const { return client_height_; }
  void SetClientSize(std::int32_t width, std::int32_t height);
  /// Size as designed, which is also the smallest one.
  void DesignClientSize(std::int32_t width, std::int32_t height);
  /// The design, grown to what its texts need; as designed until a font is known.
  std::int32_t DesignWidth() const { return across_.Length(); }
  std::int32_t DesignHeight() const { return down_.Length(); }
  /// Gives every control the room that it needs in the font its texts are shown in; the window grows with
  /// them. For the native side, when it makes the window and when font or scale change.
  void FitTo(std::shared_ptr<const TextMeasure> texts);
  /// What the controls take in all, laid out for the client area there is: more than that on a screen that is
  /// too small even for what has been squeezed.
  const Extent& Content() const { return content_; }
  /// The same again, with the font it has: the native side has learnt what its controls need.
  void Fit();
  /// A control's design has changed: all find their places anew in the client area there is.
  void Redesign();
  /// The font of its texts; null until it is known.
  const TextMeasure* Texts() const { return texts_.get(); }
  /// Whether the user can change the size.
  bool Sizable() const { return sizable_; }
  void SetSizable(bool sizable) { sizable_ = sizable; }
  bool KeyPreview() const { return key_preview_; }
  void SetKeyPreview(bool preview) { key_preview_ = preview; }
  /// Controls in the order they were made, which is the tab order.
  const std::vector<std::shared_ptr<Control>>& Controls() const { return controls_; }
  /// The control with the focus; null when none has it.
  Control* ActiveControl() const { return active_; }
  /// Control that Enter, or Escape, clicks wherever the focus is; null for none.
  void SetDefaultButton(Control* button) { default_button_ = button; }
  Control* DefaultButton() const { return default_button_; }
  void SetCancelButton(Control* button) { cancel_button_ = button; }

  // Making controls; to be done while the window is built.
  template <std::derived_from<Control> T>
  std::shared_ptr<T> Add(const std::string& name) {
    auto control = std::make_shared<T>(*this, name, Control::kNoIndex);
    controls_.push_back(control);
    Publish(name, control);
    return control;
  }
  template <std::derived_from<Control> T>
  std::shared_ptr<ControlArray<T>> AddArray(const std::string& name) {
    auto array = std::make_shared<ControlArray<T>>();
    Publish(name, array);
    return array;
  }
  /// One more control of an array. `name` is the array's.
  template <std::derived_from<Control> T>
  T& AddTo(ControlArray<T>& array, const std::string& name, std::int16_t index) {
    auto control = std::make_shared<T>(*this, name, index);
    controls_.push_back(control);
    array.items_[index] = control;
    return *control;
  }

  // Input; from peers and from tests.
  /// The keyboard as a user has it: the key goes through preview, the focused control's KeyDown and KeyPress,
  /// then to dialog keys or the control itself, then KeyUp. For use without native controls.
  void Press(std::int16_t key, std::int16_t shift = shift::kNone);
  /// Types a text, one character after the other. UTF-8.
  void Type(std::string_view text);
  /// First half of a key: preview, KeyDown of `target`, and what dialog keys do. True when it is used up: the
  /// control must not act on it, and the character that follows it must be dropped.
  bool KeyDown(Control& target, std::int16_t key, std::int16_t shift);
  /// A character on its way to `target`: the one to use instead, 0 for none.
  char16_t KeyPress(Control& target, char16_t character);
  void KeyUp(Control& target, std::int16_t key, std::int16_t shift);
  /// Alt and a letter. True when some caption had that letter.
  bool Mnemonic(char16_t letter);
  /// Moves the focus by tab order.
  void FocusNext(bool backwards = false);
  /// The focus has come to a control (null: it left them all). Raises LostFocus of the old and GotFocus of
  /// the new. Called by peers, and by `Control::SetFocus` where there are none.
  void FocusMoved(Control* control);
  /// What the user typed is in the model before any command runs: before the keyboard moves on, keys and
  /// captions' letters do something, controls are clicked, the one being typed in is read by name and the
  /// window closes. Handlers run.
  void CommitInput();
  /// The client area has a new size.
  void Resized(std::int32_t width, std::int32_t height);
  /// The window is being painted.
  void Paint();

  // What a window does at these moments; by default nothing.
  virtual void Form_Load() {}
  virtual void Form_QueryUnload(CancelEvent& /*event*/, UnloadMode /*mode*/) {}
  virtual void Form_Unload(CancelEvent& /*event*/) {}
  virtual void Form_KeyDown(KeyEvent& /*event*/) {}
  virtual void Form_Paint() {}
  virtual void Form_Resize() {}

  // By name. The parameterless forms of the entry points above.
  std::int16_t WindowStateNumber() const { return static_cast<std::int16_t>(state_); }
  void SetWindowStateNumber(std::int16_t state);
  /// Gives the window the keyboard.
  void SetFocus();
  void UnloadByName() { Unload(); }
  ObjectPtr ActiveControlObject() const;
  std::int32_t HandleNumber() const;
  /// Whether the newest event being handled is one of this window's: it is the one that asks its host now.
  bool Handling() const { return desktop_.Handling() == this; }
  std::optional<MemberId> Find(std::string_view name) override;
  Value Read(MemberId id, std::span<Value> args, ByRef by_ref = 0) override;
  const Member* MemberById(MemberId id) const override;

  Peer* NativeSide() const { return peer_.get(); }
  void SetPeer(std::unique_ptr<Peer> peer) { peer_ = std::move(peer); }
  std::shared_ptr<Form> Keep() { return std::static_pointer_cast<Form>(shared_from_this()); }

 private:
  friend class Control;
  void Publish(const std::string& name, ObjectPtr object);
  void Load();
  void LayOut();
  bool FollowsItsSize() const;
  /// Where the controls' edges come to lie by what they need.
  void Measure();
  void Dismantle();

  std::shared_ptr<void> keeps_;  // first, so that it goes last
  Desktop& desktop_;
  std::string name_, caption_;
  std::vector<std::shared_ptr<Control>> controls_;
  std::vector<ObjectPtr> published_;
  std::unordered_map<std::string, std::size_t> names_;
  Control* active_ = nullptr;
  Control* told_ = nullptr;  // whose GotFocus was raised last, until its LostFocus is
  std::uint32_t focus_moves_ = 0;
  Control* default_button_ = nullptr;
  Control* cancel_button_ = nullptr;
  bool loaded_ = false, visible_ = false, closed_ = false, unloading_ = false, enabled_ = true;
  bool loading_ = false, shown_early_ = false;
  Form* waiting_ = nullptr;  // the owner of a modal window, until that is loaded
  std::function<void()> after_modal_;
  bool key_preview_ = false, sizable_ = true;
  WindowState state_ = WindowState::Normal;
  std::int32_t design_width_ = Dip(640), design_height_ = Dip(480);
  std::shared_ptr<const TextMeasure> texts_;
  Axis across_{design_width_}, down_{design_height_};
  Extent content_{design_width_, design_height_};
  std::int32_t client_width_ = Dip(640), client_height_ = Dip(480);
  std::unique_ptr<Peer> peer_;
};

/// The table of a window's own members, and after them those that every window publishes.
MemberTable WithFormMembers(MemberTable&& own);

}  // namespace zuvi
