#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "base/members.h"
#include "toolkit/events.h"
#include "toolkit/geometry.h"
#include "toolkit/keys.h"
#include "toolkit/peer.h"

namespace zuvi {

class Desktop;
class Form;
class TextMeasure;

/// A control: state, events, and the entry points through which input arrives, from a peer or from a test.
/// Events run handlers that may do anything, closing the window included. A control outlives its window as a
/// lifeless object: its state can be read, but it takes no focus.
class Control : public Object {
 public:
  /// Belongs to no array.
  static constexpr std::int16_t kNoIndex = -1;

  Control(Form& form, std::string name, std::int16_t index);
  ~Control() override;

  const std::string& Name() const { return name_; }
  /// Position in its control array, or kNoIndex.
  std::int16_t Index() const { return index_; }
  /// The window; null once that is gone.
  Form* Window() const { return form_; }
  /// What it sits on: the window or another control.
  ObjectPtr Container() const;
  void SetContainer(const std::shared_ptr<Control>& container) { container_ = container; }

  bool Enabled() const { return enabled_; }
  virtual void SetEnabled(bool enabled);
  bool Visible() const { return visible_; }
  void SetVisible(bool visible);
  const std::string& Tag() const { return tag_; }
  void SetTag(std::string tag) { tag_ = std::move(tag); }
  bool TabStop() const { return tab_stop_; }
  void SetTabStop(bool tab_stop) { tab_stop_ = tab_stop; }
  const std::string& ToolTipText() const { return tool_tip_; }
  void SetToolTipText(std::string text);

  const Rect& Bounds() const { return bounds_; }
  void Move(const Rect& bounds);
  std::int32_t Left() const { return bounds_.left; }
  std::int32_t Top() const { return bounds_.top; }
  std::int32_t Width() const { return bounds_.width; }
  std::int32_t Height() const { return bounds_.height; }
  void SetLeft(std::int32_t v) { Move({v, bounds_.top, bounds_.width, bounds_.height}); }
  void SetTop(std::int32_t v) { Move({bounds_.left, v, bounds_.width, bounds_.height}); }
  void SetWidth(std::int32_t v) { Move({bounds_.left, bounds_.top, v, bounds_.height}); }
  void SetHeight(std::int32_t v) { Move({bounds_.left, bounds_.top, bounds_.width, v}); }
  /// Place in the window as designed, and how it follows the window's size.
  void Design(const Rect& bounds, unsigned anchors = anchor::kTopLeft);
  const Rect& DesignBounds() const { return design_; }
  unsigned Anchors() const { return anchors_; }

  /// Least room for what it shows in a font; 0 where any will do.
  virtual Extent MinimumSize(const TextMeasure& /*texts*/) const { return {}; }
  /// Whether it can be made smaller than its place where the screen has no room for the whole window: what
  /// scrolls can. Others can along an edge that they are anchored across.
  virtual bool Scrolls() const { return false; }
  /// The font of the window's texts is another one.
  virtual void FitTo(const TextMeasure& /*texts*/) {}

  /// Kinds that never take the keyboard (labels, bars, timers) say no.
  virtual bool TakesFocus() const { return true; }
  /// Whether it would take the focus now.
  bool CanFocus() const;
  bool HasFocus() const;
  /// Moves the focus here: LostFocus of the old, then GotFocus. Throws HostError (InvalidCall) when it
  /// cannot.
  void SetFocus();
  /// The name a screen reader gives: its caption, else that of the label before it. Without the mnemonic
  /// mark.
  virtual std::string AccessibleName() const;
  /// Caption with a mnemonic; empty for kinds without one.
  virtual std::string_view Caption() const { return {}; }
  /// What its mnemonic does: the focus, and for buttons a click. Labels pass it on to the next control.
  virtual void Mnemonic();

  // Events.
  std::function<void()> OnGotFocus, OnLostFocus, OnClick, OnDblClick;
  std::function<void(KeyEvent&event)> OnKeyDown, OnKeyUp;
  std::function<void(KeyPressEvent& event)> OnKeyPress;

  // Entry points of input.
  /// A click: takes the focus where it can and raises the event. Nothing while disabled or hidden.
  virtual void Click();
  virtual void DblClick();
  /// What the control itself does with a key that no handler used up, where no native control does it.
  virtual void DefaultKey(std::int16_t /*key*/, std::int16_t /*shift*/) {}
  /// The same for a character. Characters are UTF-16 units.
  virtual void DefaultChar(char16_t /*character*/) {}
  /// Whether it wants this key for itself before it moves the focus or presses a default button (Enter in a
  /// multi-line text, arrows in a grid).
  virtual bool WantsKey(std::int16_t /*key*/) const { return false; }

  /// A page key pressed where the focused control has no use for it: one that is shown but disabled can be
  /// read on by it. True when it was.
  virtual bool PageKey(std::int16_t /*key*/, std::int16_t /*shift*/) { return false; }

  /// The native side; null without one.
  Peer* NativeSide() const { return peer_.get(); }
  void SetPeer(std::unique_ptr<Peer> peer) { peer_ = std::move(peer); }

 protected:
  void Changed(Aspect aspect) {
    if (peer_) peer_->Update(aspect);
  }
  /// The focus comes here as a click brings it. False when the click comes to nothing: the control takes
  /// none, or a handler moved the focus elsewhere or closed the window. The caller keeps the control alive.
  bool TakeClick();
  /// Runs a handler, if there is one, keeping this control and its window alive meanwhile.
  template <class Handler, class... Args>
  void Raise(const Handler& handler, Args&&... args) {
    if (!handler) return;
    const auto self = shared_from_this();
    const Handling handling(*this);
    const Handler copy = handler;  // a handler may replace itself
    copy(std::forward<Args>(args)...);
  }

 private:
  friend class Form;
  /// One event on the stack: its window is kept alive, and is the one that is handling.
  class Handling {
   public:
    explicit Handling(const Control& control);
    Handling(const Handling&) = delete;
    Handling& operator=(const Handling&) = delete;
    ~Handling();

   private:
    const ObjectPtr window_;
    Desktop* desktop_ = nullptr;
    const Form* before_ = nullptr;
  };
  ObjectPtr KeepWindow() const;

  Form* form_;
  std::string name_;
  std::int16_t index_;
  bool enabled_ = true, visible_ = true, tab_stop_ = true;
  std::string tag_, tool_tip_;
  Rect bounds_, design_, laid_out_;
  unsigned anchors_ = anchor::kTopLeft;
  std::weak_ptr<Control> container_;
  std::unique_ptr<Peer> peer_;
};

/// The table of a control's own members, and after them those that every control publishes.
MemberTable WithControlMembers(MemberTable&& own);

}  // namespace zuvi
