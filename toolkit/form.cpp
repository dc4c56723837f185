#include "toolkit/form.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "toolkit/buttons.h"

namespace zuvi {
namespace {

/// Ids of controls by name start here, well above those of any table of members.
constexpr MemberId kFirstControl = 1 << 20;

}  // namespace

Form::Form(Desktop& desktop, std::string name, std::shared_ptr<void> keeps)
    : keeps_(std::move(keeps)), desktop_(desktop), name_(std::move(name)) {}

Form::~Form() {
  for (const auto& control : controls_) {
    control->peer_.reset();
    control->form_ = nullptr;
  }
}

void Form::Publish(const std::string& name, ObjectPtr object) {
  names_.emplace(ToLower(name), published_.size());
  published_.push_back(std::move(object));
}

void Form::Load() {
  if (loaded_) return;
  if (closed_) throw HostError(ErrorNumber::InvalidCall);
  loaded_ = loading_ = true;
  desktop_.Opened(Keep());
  try {
    Form_Load();
  } catch (...) {
    loading_ = false;
    Dismantle();
    throw;
  }
  loading_ = false;
  if (!shown_early_ || closed_) return;
  SetEnabled(true);
  if (peer_) peer_->TakeFocus();
  if (visible_ && !active_) FocusNext();
}

void Form::ShowWhileLoading() {
  if (!loading_ || visible_ || closed_) return;
  shown_early_ = true;
  if (waiting_) waiting_->SetEnabled(false);
  SetEnabled(false);
  Show();
}

void Form::Show() {
  const auto keep = Keep();
  Load();
  if (closed_ || visible_) return;
  visible_ = true;
  try {
    if (!peer_)
      desktop_.Attach(*this);
    else
      peer_->Update(Aspect::Visible);
  } catch (...) {
    // It cannot be shown: it goes as any window does, but nobody can keep it open.
    Unload();
    if (!closed_) Dismantle();
    throw;
  }
  if (closed_) return;
  Paint();
  if (visible_ && !active_) FocusNext();
}

void Form::ShowModal(Form* owner, std::function<void()> then) {
  const auto keep = Keep();
  const auto keep_owner = owner ? owner->Keep() : nullptr;
  waiting_ = owner && owner->Enabled() ? owner : nullptr;
  const auto wait_is_over = [&] {
    if (Form* const waited = std::exchange(waiting_, nullptr); waited && shown_early_)
      waited->SetEnabled(true);
  };
  try {
    Show();
  } catch (...) {
    wait_is_over();
    throw;
  }
  wait_is_over();
  after_modal_ = std::move(then);
  if (visible_) desktop_.RunModal(*this, owner);
  EndModal();
}

void Form::EndModal() {
  if (const auto then = std::exchange(after_modal_, nullptr)) then();
}

void Form::Hide() {
  if (!visible_) return;
  visible_ = false;
  if (peer_) peer_->Update(Aspect::Visible);
  desktop_.Gone(*this);
}

bool Form::Unload(UnloadMode mode) {
  if (closed_) return true;
  // Closing from within a handler of the closing itself changes nothing.
  if (!loaded_ || unloading_) return false;
  const auto keep = Keep();
  CommitInput();
  if (closed_ || unloading_) return closed_;
  unloading_ = true;
  CancelEvent event;
  try {
    Form_QueryUnload(event, mode);
    if (!event.cancel) Form_Unload(event);
  } catch (...) {
    unloading_ = false;
    throw;
  }
  unloading_ = false;
  if (event.cancel) return false;
  Dismantle();
  return true;
}

void Form::Dismantle() {
  const auto keep = Keep();
  closed_ = true;
  loaded_ = visible_ = false;
  active_ = told_ = nullptr;
  for (const auto& control : controls_) control->peer_.reset();
  peer_.reset();
  desktop_.Closed(*this);
  desktop_.Gone(*this);
}

void Form::SetCaption(std::string caption) {
  caption_ = std::move(caption);
  if (peer_) peer_->Update(Aspect::Text);
}

void Form::SetEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  if (peer_) peer_->Update(Aspect::Enabled);
}

void Form::SetState(WindowState state) {
  if (state == state_) return;
  state_ = state;
  if (peer_) peer_->Update(Aspect::State);
}

void Form::SetWindowStateNumber(std::int16_t state) {
  if (state < 0 || state > 2) throw HostError(ErrorNumber::InvalidCall);
  SetState(static_cast<WindowState>(state));
}

void Form::Paint() {
  const auto keep = Keep();
  if (visible_) Form_Paint();
}

void Form::CommitInput() {
  if (active_ && active_->peer_) active_->peer_->Commit();
}

void Form::FocusMoved(Control* control) {
  if (control == active_ || closed_) return;
  const auto keep = Keep();
  const auto moves = focus_moves_;
  CommitInput();
  // Where a handler moved it on, that stands.
  if (closed_ || moves != focus_moves_) return;
  active_ = control;
  ++focus_moves_;
  // Handlers may move the focus on, or close the window. Only a control that heard of getting the focus hears
  // of losing it; it is alive as long as the window is, which is as long as this call.
  if (Control* const old = std::exchange(told_, nullptr)) old->Raise(old->OnLostFocus);
  if (!control || active_ != control || told_ == control || closed_) return;
  told_ = control;
  control->Raise(control->OnGotFocus);
}

void Form::FocusNext(bool backwards) {
  if (controls_.empty()) return;
  const auto count = static_cast<std::ptrdiff_t>(controls_.size());
  const auto at = std::ranges::find_if(
      controls_, [this](const std::shared_ptr<Control>& control) { return control.get() == active_; });
  std::ptrdiff_t i = at == controls_.end() ? (backwards ? 0 : -1) : at - controls_.begin();
  for (std::ptrdiff_t tried = 0; tried < count; ++tried) {
    i = (i + (backwards ? count - 1 : 1)) % count;
    Control& next = *controls_[static_cast<std::size_t>(i)];
    if (&next == active_ || !next.TabStop() || !next.CanFocus()) continue;
    next.SetFocus();
    return;
  }
  // Nobody else takes it; a control that no longer can does not keep it.
  if (active_ && !active_->CanFocus()) FocusMoved(nullptr);
}

bool Form::KeyDown(Control& target, std::int16_t key, std::int16_t shift) {
  const auto keep = Keep();
  if (closed_ || !enabled_) return true;
  KeyEvent event{key, shift};
  if (key_preview_) Form_KeyDown(event);
  if (closed_ || event.key == 0) return true;
  // Preview may have moved the focus; the key still belongs to where it was pressed.
  target.Raise(target.OnKeyDown, event);
  if (closed_ || event.key == 0 || active_ != &target) return true;

  if (shift & shift::kAlt) return false;
  if (key == key::kTab && !(shift & shift::kCtrl)) {
    FocusNext((shift & shift::kShift) != 0);
    return true;
  }
  if (target.WantsKey(key)) return false;
  // Buttons have no pages of their own to turn.
  if (dynamic_cast<const Captioned*>(&target))
    for (const auto& control : controls_)
      if (control->PageKey(key, shift)) return true;
  Control* button = nullptr;
  if (key == key::kEnter && !dynamic_cast<const Button*>(&target)) button = default_button_;
  if (key == key::kEscape) button = cancel_button_;
  if (!button) return false;
  button->Click();
  return true;
}

char16_t Form::KeyPress(Control& target, char16_t character) {
  const auto keep = Keep();
  if (closed_ || !enabled_) return 0;
  KeyPressEvent event{static_cast<std::int16_t>(character)};
  target.Raise(target.OnKeyPress, event);
  if (closed_) return 0;
  return static_cast<char16_t>(static_cast<std::uint16_t>(event.character));
}

void Form::KeyUp(Control& target, std::int16_t key, std::int16_t shift) {
  if (closed_ || !enabled_) return;
  KeyEvent event{key, shift};
  target.Raise(target.OnKeyUp, event);
}

bool Form::Mnemonic(char16_t letter) {
  const auto keep = Keep();
  CommitInput();
  if (closed_ || !enabled_) return false;
  const char16_t upper = UpperLetter(letter);
  for (const auto& control : std::vector(controls_)) {
    if (!control->Visible() || !control->Enabled() || control->Caption().empty()) continue;
    if (MnemonicOf(control->Caption()) != upper) continue;
    control->Mnemonic();
    return true;
  }
  return false;
}

void Form::Press(std::int16_t key, std::int16_t shift) {
  const auto keep = Keep();
  // A control that was hidden has left the keyboard to nobody.
  if (!active_ && visible_) FocusNext();
  if (!active_ || closed_) return;
  Control& target = *active_;
  if (!KeyDown(target, key, shift)) {
    const bool letter = (key >= 'A' && key <= 'Z') || (key >= '0' && key <= '9');
    const bool mnemonic = (shift & shift::kAlt) && letter && Mnemonic(static_cast<char16_t>(key));
    if (!mnemonic) target.DefaultKey(key, shift);
    // Keys that also are characters. A control that lost its focus or its window gets none.
    const bool is_character =
        key == key::kEnter || key == key::kEscape || key == key::kBack || key == key::kSpace;
    if (is_character && !closed_ && active_ == &target) {
      const char16_t character = KeyPress(target, static_cast<char16_t>(key));
      if (character && !closed_ && active_ == &target) target.DefaultChar(character);
    }
  }
  if (!closed_ && active_) KeyUp(*active_, key, shift);
}

void Form::Type(std::string_view text) {
  const auto keep = Keep();
  for (const char16_t character : Utf16(text)) {
    if (!active_ && visible_) FocusNext();
    if (!active_ || closed_) return;
    Control& target = *active_;
    const bool letter = character >= 'a' && character <= 'z';
    const bool digit_or_capital =
        (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z');
    const auto key = static_cast<std::int16_t>(letter ? character - 32 : digit_or_capital ? character : 0);
    // Characters without a key of their own here come as the layout's packet key.
    constexpr std::int16_t kPacket = 231;
    if (!KeyDown(target, key ? key : kPacket, shift::kNone)) {
      const char16_t kept = KeyPress(target, character);
      // The handler may have moved the focus: what is typed then belongs to nobody.
      if (kept && !closed_ && active_ == &target) target.DefaultChar(kept);
    }
    if (!closed_ && active_) KeyUp(*active_, key ? key : kPacket, shift::kNone);
  }
}

void Form::SetFocus() {
  if (!visible_ || closed_) throw HostError(ErrorNumber::InvalidCall);
  if (peer_) peer_->TakeFocus();
}

ObjectPtr Form::ActiveControlObject() const { return active_ ? active_->shared_from_this() : nullptr; }

std::int32_t Form::HandleNumber() const { return peer_ ? static_cast<std::int32_t>(peer_->Handle()) : 0; }

std::optional<MemberId> Form::Find(std::string_view name) {
  if (const auto own = Object::Find(name)) return own;
  const auto found = names_.find(ToLower(name));
  if (found == names_.end()) return std::nullopt;
  return kFirstControl + static_cast<MemberId>(found->second);
}

const Member* Form::MemberById(MemberId id) const {
  // A control is read like a property without arguments.
  static const Member control = [] {
    Member member;
    member.property = true;
    return member;
  }();
  if (id < kFirstControl) return Object::MemberById(id);
  return static_cast<std::size_t>(id - kFirstControl) < published_.size() ? &control : nullptr;
}

Value Form::Read(MemberId id, std::span<Value> args, ByRef by_ref) {
  if (id < kFirstControl) return Object::Read(id, args, by_ref);
  const auto keep = Keep();
  const auto place = static_cast<std::size_t>(id - kFirstControl);
  if (place >= published_.size()) throw HostError(ErrorNumber::NoSuchMember);
  // Those of an array share its name. Whoever looks at another control is not to disturb the typing.
  const auto typed_in = active_ ? names_.find(ToLower(active_->Name())) : names_.end();
  if (typed_in != names_.end() && typed_in->second == place) CommitInput();
  const ObjectPtr& object = published_[place];
  // `ventana.lv(0)` asks the array in the same call.
  return args.empty() ? Value(object) : object->Read(kDefaultMember, args, by_ref);
}

MemberTable WithFormMembers(MemberTable&& own) {
  return MemberTableBuilder<Form>(std::move(own))
      .Property<&Form::Name>("Name")
      .Property<&Form::Caption, &Form::SetCaption>("Caption")
      .Property<&Form::Visible>("Visible")
      .Property<&Form::Enabled, &Form::SetEnabled>("Enabled")
      .Property<&Form::WindowStateNumber, &Form::SetWindowStateNumber>("WindowState")
      .Property<&Form::ClientWidth>("ScaleWidth")
      .Property<&Form::ClientHeight>("ScaleHeight")
      .Property<&Form::ActiveControlObject>("ActiveControl")
      .Property<&Form::HandleNumber>("hWnd")
      .Property<&Form::Handling>("Handling")
      .Method<&Form::SetFocus>("SetFocus")
      .Method<&Form::Show>("Show")
      .Method<&Form::Hide>("Hide")
      .Method<&Form::UnloadByName>("Unload");
}

}  // namespace zuvi
