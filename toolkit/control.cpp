#include "toolkit/control.h"

#include <utility>

#include "toolkit/buttons.h"
#include "toolkit/form.h"

namespace zuvi {

Control::Control(Form& form, std::string name, std::int16_t index)
    : form_(&form), name_(std::move(name)), index_(index) {}

Control::~Control() = default;

ObjectPtr Control::Container() const {
  if (auto container = container_.lock()) return container;
  return form_ ? ObjectPtr(form_->Keep()) : nullptr;
}

Control::Handling::Handling(const Control& control) : window_(control.KeepWindow()) {
  if (!window_) return;
  desktop_ = &control.form_->Screen();
  before_ = std::exchange(desktop_->handling_, control.form_);
}

Control::Handling::~Handling() {
  if (desktop_) desktop_->handling_ = before_;
}

// A window that is still being built has no owner yet, and needs none.
ObjectPtr Control::KeepWindow() const { return form_ ? ObjectPtr(form_->weak_from_this().lock()) : nullptr; }

void Control::SetEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  Changed(Aspect::Enabled);
  if (!enabled && HasFocus()) form_->FocusNext();
}

void Control::SetVisible(bool visible) {
  if (visible == visible_) return;
  visible_ = visible;
  const auto self = shared_from_this();
  // Nobody has the keyboard then, until somebody takes it or the next key goes to the next control.
  if (!visible && HasFocus()) form_->FocusMoved(nullptr);
  Changed(Aspect::Visible);
}

void Control::SetToolTipText(std::string text) {
  tool_tip_ = std::move(text);
  Changed(Aspect::State);
}

void Control::Move(const Rect& bounds) {
  if (bounds == bounds_) return;
  bounds_ = bounds;
  Changed(Aspect::Bounds);
}

void Control::Design(const Rect& bounds, unsigned anchors) {
  design_ = bounds;
  anchors_ = anchors;
  if (form_ && form_->Texts()) {
    laid_out_ = bounds_;
    form_->Redesign();
    return;
  }
  laid_out_ = bounds;
  Move(bounds);
}

bool Control::CanFocus() const {
  return form_ && TakesFocus() && enabled_ && visible_ && form_->Enabled() && !form_->Closed();
}

bool Control::HasFocus() const { return form_ && form_->ActiveControl() == this; }

void Control::SetFocus() {
  if (!CanFocus()) throw HostError(ErrorNumber::InvalidCall);
  if (HasFocus()) return;
  const auto self = shared_from_this();
  const auto window = KeepWindow();
  const auto moves = form_->focus_moves_;
  if (peer_) peer_->TakeFocus();
  // A window that is not in front gets no native focus; the model's focus waits there for it. Where the
  // native side did move it, handlers had their say, and what they decided stands.
  if (form_ && form_->focus_moves_ == moves && CanFocus()) form_->FocusMoved(this);
}

std::string Control::AccessibleName() const {
  if (!form_) return {};
  const Control* before = nullptr;
  for (const auto& control : form_->Controls()) {
    if (control.get() == this) break;
    before = control.get();
  }
  const auto* label = dynamic_cast<const Label*>(before);
  return label ? WithoutMnemonic(label->Caption()) : std::string();
}

void Control::Mnemonic() {
  if (CanFocus()) SetFocus();
}

bool Control::TakeClick() {
  if (!enabled_ || !visible_ || !form_ || form_->Closed() || !form_->Enabled()) return false;
  const auto window = KeepWindow();
  form_->CommitInput();
  if (form_->Closed()) return false;
  if (CanFocus()) {
    SetFocus();
    if (!HasFocus()) return false;
  }
  return enabled_ && visible_ && !form_->Closed();
}

void Control::Click() {
  const auto self = shared_from_this();
  if (TakeClick()) Raise(OnClick);
}

void Control::DblClick() {
  const auto self = shared_from_this();
  if (TakeClick()) Raise(OnDblClick);
}

MemberTable WithControlMembers(MemberTable&& own) {
  return MemberTableBuilder<Control>(std::move(own))
      .Property<&Control::Name>("Name")
      .Property<&Control::Index>("Index")
      .Property<&Control::Enabled, &Control::SetEnabled>("Enabled")
      .Property<&Control::Visible, &Control::SetVisible>("Visible")
      .Property<&Control::Tag, &Control::SetTag>("Tag")
      .Property<&Control::TabStop, &Control::SetTabStop>("TabStop")
      .Property<&Control::ToolTipText, &Control::SetToolTipText>("ToolTipText")
      .Property<&Control::Left, &Control::SetLeft>("Left")
      .Property<&Control::Top, &Control::SetTop>("Top")
      .Property<&Control::Width, &Control::SetWidth>("Width")
      .Property<&Control::Height, &Control::SetHeight>("Height")
      .Property<&Control::Container>("Container")
      .Method<&Control::SetFocus>("SetFocus");
}

}  // namespace zuvi
