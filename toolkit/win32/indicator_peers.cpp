// Progress bars and timers, and which peer serves which control.
#include <algorithm>

#include "toolkit/win32/peers.h"

namespace zuvi::native {
namespace {

class ProgressPeer final : public NativeControl {
 public:
  static constexpr int kSteps = 10'000;
  static constexpr DWORD kBetween = 40;  // milliseconds between two values shown

  ProgressPeer(NativeForm& form, ProgressBar& bar) : NativeControl(form, bar), bar_(bar) {}
  void Create() override {
    CreateWindowOf(PROGRESS_CLASSW, PBS_SMOOTH);
    Send(PBM_SETRANGE32, 0, kSteps);
    ShowValue();
  }
  void Update(Aspect aspect) override {
    // Work that pumps no events shows its progress too.
    if ((aspect == Aspect::Value || aspect == Aspect::State) && ShowValue()) ::UpdateWindow(Window());
    NativeControl::Update(aspect);
  }

 private:
  /// False when the value shows later: thousands of steps a second cost more than the work they tell of.
  bool ShowValue() {
    const double span = bar_.Max() - bar_.Min();
    const double part = span > 0 ? std::clamp((bar_.Value() - bar_.Min()) / span, 0.0, 1.0) : 0;
    const DWORD now = ::GetTickCount();
    if (part > 0 && part < 1 && now - shown_ < kBetween) return false;
    shown_ = now;
    Send(PBM_SETPOS, static_cast<WPARAM>(part * kSteps));
    return true;
  }

  ProgressBar& bar_;
  DWORD shown_ = 0;  // milliseconds of the system
};

class TimerPeer final : public NativeControl {
 public:
  TimerPeer(NativeForm& form, Timer& timer) : NativeControl(form, timer), timer_(timer) {}
  void Create() override { Run(); }
  void Update(Aspect aspect) override {
    if (aspect == Aspect::State || aspect == Aspect::Enabled) Run();
  }

 private:
  void Run() {
    Timer& timer = timer_;
    Parent().SetTimer(this, timer.Running() ? timer.Interval() : 0, [&timer] { timer.Tick(); });
  }

  Timer& timer_;
};

}  // namespace

std::unique_ptr<NativeControl> ProgressPeerFor(NativeForm& form, ProgressBar& bar) {
  return std::make_unique<ProgressPeer>(form, bar);
}
std::unique_ptr<NativeControl> TimerPeerFor(NativeForm& form, Timer& timer) {
  return std::make_unique<TimerPeer>(form, timer);
}

std::unique_ptr<NativeControl> PeerFor(NativeForm& form, Control& control) {
  if (auto* box = dynamic_cast<TextBox*>(&control)) return TextPeerFor(form, *box);
  if (auto* label = dynamic_cast<Label*>(&control)) return LabelPeerFor(form, *label);
  if (auto* button = dynamic_cast<Button*>(&control)) return ButtonPeerFor(form, *button);
  if (auto* check = dynamic_cast<CheckBox*>(&control)) return CheckBoxPeerFor(form, *check);
  if (auto* grid = dynamic_cast<FlexGrid*>(&control)) return GridPeerFor(form, *grid);
  if (auto* picker = dynamic_cast<DatePicker*>(&control)) return DatePickerPeerFor(form, *picker);
  if (auto* month = dynamic_cast<MonthView*>(&control)) return MonthPeerFor(form, *month);
  if (auto* list = dynamic_cast<ListView*>(&control)) return ListPeerFor(form, *list);
  if (auto* combo = dynamic_cast<ComboBox*>(&control)) return ComboPeerFor(form, *combo);
  if (auto* combo = dynamic_cast<MultiCombo*>(&control)) return MultiComboPeerFor(form, *combo);
  if (auto* bar = dynamic_cast<ProgressBar*>(&control)) return ProgressPeerFor(form, *bar);
  if (auto* timer = dynamic_cast<Timer*>(&control)) return TimerPeerFor(form, *timer);
  if (auto* page = dynamic_cast<WebBrowser*>(&control)) return PagePeerFor(form, *page);
  return nullptr;
}

}  // namespace zuvi::native
