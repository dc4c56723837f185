// Date field and month calendar.
#include <algorithm>
#include <optional>
#include <utility>

#include "toolkit/win32/peers.h"

namespace zuvi::native {
namespace {

SYSTEMTIME SystemTime(const Date& date) {
  const CivilDate civil = date.Civil();
  SYSTEMTIME time{};
  time.wYear = static_cast<WORD>(civil.anio);
  time.wMonth = static_cast<WORD>(civil.mes);
  time.wDay = static_cast<WORD>(civil.dia);
  return time;
}

Date DayOf(const SYSTEMTIME& time) {
  CivilDate civil;
  civil.anio = time.wYear;
  civil.mes = time.wMonth;
  civil.dia = time.wDay;
  return Date::FromCivil(civil);
}

/// A key with which one goes on entering a date; all others end that.
bool StaysInDate(const Message& key, std::int16_t shift) {
  switch (key.w) {
    case VK_SHIFT:
    case VK_CONTROL:
    case VK_MENU:
    case VK_LEFT:
    case VK_RIGHT:
    case VK_UP:
    case VK_DOWN:
    case VK_HOME:
    case VK_END:
    case VK_INSERT:
    case VK_DELETE:
    case VK_NUMLOCK:
    case VK_CAPITAL:
    case VK_SCROLL:
    case VK_PACKET:
    case VK_PROCESSKEY:
      return (shift & shift::kAlt) == 0;
    default:
      break;
  }
  const bool command = ((shift & shift::kAlt) != 0) != ((shift & shift::kCtrl) != 0);
  const UINT character = ::MapVirtualKeyW(static_cast<UINT>(key.w), MAPVK_VK_TO_CHAR) & 0x7FFFFFFFu;
  return !command && (character >= L' ' || key.w == VK_BACK);
}

class DatePickerPeer final : public NativeControl {
 public:
  DatePickerPeer(NativeForm& form, DatePicker& picker) : NativeControl(form, picker), picker_(picker) {}
  void Create() override {
    CreateWindowOf(DATETIMEPICK_CLASSW, DTS_SHORTDATECENTURYFORMAT);
    Restyle();
    ShowValue();
  }
  void Restyle() override {
    NativeControl::Restyle();
    Send(DTM_SETMCFONT, reinterpret_cast<WPARAM>(Parent().Font()), FALSE);
  }
  void Update(Aspect aspect) override {
    if (aspect == Aspect::Value) ShowValue();
    NativeControl::Update(aspect);
  }
  LRESULT OnNotify(const NMHDR& notification) override {
    // The calendar that dropped down is still at work: the model hears of the day when that has ended.
    if (notification.code == static_cast<UINT>(DTN_DATETIMECHANGE) && !Updating())
      ::PostMessageW(Window(), kPicked, 0, 0);
    return 0;
  }
  /// The control takes typed digits for entered when their part of the date is full, when another part is
  /// gone to, and when it loses the keyboard; nothing else it documents makes it. So it loses the keyboard.
  void Commit() override {
    if (committing_ || !Window() || Parent().Life()->going) return;
    const Life alive = Alive();
    if (std::exchange(typed_, false) && ::GetFocus() == Window()) {
      committing_ = true;
      ::SetFocus(Parent().Window());  // which gives it back
      if (!alive) return;
      if (::GetFocus() != Window() && picker_.HasFocus() && picker_.CanFocus()) ::SetFocus(Window());
      if (!alive) return;
      committing_ = false;
    }
    ReadBack();
  }

 protected:
  void BeforeKey(const Message& message, std::int16_t shift) override {
    if (!StaysInDate(message, shift)) Commit();
  }
  void OwnChar(const Message& message) override {
    typed_ = true;
    NativeControl::OwnChar(message);
  }
  std::optional<LRESULT> OnMessage(const Message& message) override {
    switch (message.id) {
      case WM_KILLFOCUS:
        // The model reads it when it hears where the keyboard went, or, where that is another window, later.
        typed_ = false;
        if (!committing_) ::PostMessageW(Window(), kPicked, 0, 0);
        return NativeControl::OnMessage(message);
      case WM_SETFOCUS:
        return ::GetKeyState(VK_LBUTTON) >= 0 ? FocusByKey(message) : NativeControl::OnMessage(message);
      case kPicked:
        ReadBack();
        return 0;
      default:
        return NativeControl::OnMessage(message);
    }
  }

 private:
  static constexpr UINT kPicked = WM_APP + 1;

  /// Not every version of the control has a part of the date selected when it gets the focus; a click on the
  /// first does that in all of them.
  std::optional<LRESULT> FocusByKey(const Message& message) {
    const Life alive = Alive();
    const auto result = NativeControl::OnMessage(message);
    if (!alive || ::GetFocus() != Window()) return result;
    RECT client;
    ::GetClientRect(Window(), &client);
    const LPARAM first = MAKELPARAM(Parent().Pixels(Dip(6)), client.bottom / 2);
    CallNative({Window(), WM_LBUTTONDOWN, MK_LBUTTON, first});
    CallNative({Window(), WM_LBUTTONUP, 0, first});
    return result;
  }

  std::optional<Date> Shown() const {
    SYSTEMTIME time{};
    if (SendPtr(DTM_GETSYSTEMTIME, 0, &time) != GDT_VALID) return std::nullopt;
    return DayOf(time);
  }
  /// What the control shows is the user's only where it is not what it made of the model's date.
  void ReadBack() {
    const auto day = Shown();
    if (!day || day == shown_) return;
    shown_ = day;
    if (*day != picker_.Value().DayOnly()) picker_.UserPicked(*day);
  }
  void ShowValue() {
    const UpdateGuard echo(*this);
    SYSTEMTIME time = SystemTime(picker_.Value());
    SendPtr(DTM_SETSYSTEMTIME, GDT_VALID, &time);
    shown_ = Shown();
    typed_ = false;
  }

  DatePicker& picker_;
  std::optional<Date> shown_;  // what the control made of the model's date
  bool typed_ = false;         // digits that it may not have taken for entered yet
  bool committing_ = false;
};

class MonthPeer final : public NativeControl {
 public:
  MonthPeer(NativeForm& form, MonthView& month) : NativeControl(form, month), month_(month) {}
  void Create() override {
    CreateWindowOf(MONTHCAL_CLASSW, 0, WS_EX_CLIENTEDGE, Wide(month_.AccessibleName()));
    ShowValue();
  }
  void Update(Aspect aspect) override {
    if (aspect == Aspect::Value) ShowValue();
    NativeControl::Update(aspect);
  }
  /// A whole month and the day of today, as this version of the control draws them.
  Extent MinimumSize() const override {
    RECT least{};
    if (!SendPtr(MCM_GETMINREQRECT, 0, &least)) return {};
    const int today = static_cast<int>(Send(MCM_GETMAXTODAYWIDTH));
    return {Parent().Twips(std::max<int>(least.right - least.left, today) + 2 * Parent().Metric(SM_CXEDGE)),
            Parent().Twips(least.bottom - least.top + 2 * Parent().Metric(SM_CYEDGE))};
  }
  LRESULT OnNotify(const NMHDR& notification) override {
    if (Updating()) return 0;
    if (notification.code == static_cast<UINT>(MCN_SELCHANGE)) Follow();
    if (notification.code == static_cast<UINT>(MCN_SELECT)) {
      moved_ = false;
      month_.UserClicked(Marked());
    }
    return 0;
  }
  void Commit() override {
    if (!pressed_ && std::exchange(moved_, false)) month_.UserClicked(month_.Value());
  }

 protected:
  void OwnKey(const Message& message, std::int16_t shift) override {
    // The same on every version of the control: the model moves by days and weeks.
    const auto key = static_cast<std::int16_t>(message.w);
    if (month_.WantsKey(key))
      month_.DefaultKey(key, shift);
    else
      NativeControl::OwnKey(message, shift);
  }
  std::optional<LRESULT> OnMessage(const Message& message) override {
    if (message.id == WM_LBUTTONDOWN) pressed_ = true;
    if (message.id == WM_LBUTTONUP) {
      const Life alive = Alive();
      const LRESULT result = CallNative(message);
      if (!alive) return result;
      pressed_ = false;
      PickLater();
      return result;
    }
    // Let go of somewhere else.
    if (message.id == WM_MOUSEMOVE && !(message.w & MK_LBUTTON)) PickLater();
    if (message.id != kMoved) return NativeControl::OnMessage(message);
    if (pressed_ && ::GetKeyState(VK_LBUTTON) < 0) return 0;
    if (std::exchange(moved_, false)) month_.UserClicked(month_.Value());
    return 0;
  }

 private:
  static constexpr UINT kMoved = WM_APP + 1;

  /// The mark moves without a day being clicked where the user turns to another month. The value goes along
  /// at once; that a day was picked is told when the control has finished and the button is up.
  void Follow() {
    const Date day = Marked();
    if (day == month_.Value().DayOnly()) return;
    month_.SetValue(day);
    moved_ = true;
    PickLater();
  }
  void PickLater() {
    if (moved_) ::PostMessageW(Window(), kMoved, 0, 0);
  }
  Date Marked() {
    SYSTEMTIME time{};
    return SendPtr(MCM_GETCURSEL, 0, &time) ? DayOf(time) : month_.Value().DayOnly();
  }
  void ShowValue() {
    if (Marked() == month_.Value().DayOnly()) return;
    const UpdateGuard echo(*this);
    SYSTEMTIME time = SystemTime(month_.Value());
    SendPtr(MCM_SETCURSEL, 0, &time);
  }

  MonthView& month_;
  bool moved_ = false;    // and nobody was told of it
  bool pressed_ = false;  // the button went down here, and has not come up
};

}  // namespace

std::unique_ptr<NativeControl> DatePickerPeerFor(NativeForm& form, DatePicker& picker) {
  return std::make_unique<DatePickerPeer>(form, picker);
}
std::unique_ptr<NativeControl> MonthPeerFor(NativeForm& form, MonthView& month) {
  return std::make_unique<MonthPeer>(form, month);
}

}  // namespace zuvi::native
