// Date field and month calendar.
#include <algorithm>
#include <utility>

#include "toolkit/win32/peers.h"

namespace zuvi::native {
namespace {

SYSTEMTIME SystemTime(const Fecha& date) {
  const FechaCivil civil = date.Civil();
  SYSTEMTIME time{};
  time.wYear = static_cast<WORD>(civil.anio);
  time.wMonth = static_cast<WORD>(civil.mes);
  time.wDay = static_cast<WORD>(civil.dia);
  return time;
}

Fecha DayOf(const SYSTEMTIME& time) {
  FechaCivil civil;
  civil.anio = time.wYear;
  civil.mes = time.wMonth;
  civil.dia = time.wDay;
  return Fecha::DesdeCivil(civil);
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

 protected:
  std::optional<LRESULT> OnMessage(const Message& message) override {
    if (message.id == WM_SETFOCUS && ::GetKeyState(VK_LBUTTON) >= 0) return FocusByKey(message);
    if (message.id != kPicked) return NativeControl::OnMessage(message);
    SYSTEMTIME time{};
    if (SendPtr(DTM_GETSYSTEMTIME, 0, &time) == GDT_VALID)
      if (const Fecha day = DayOf(time); day != picker_.Value().SoloDia()) picker_.UserPicked(day);
    return 0;
  }

 private:
  static constexpr UINT kPicked = WM_APP + 1;

  /// Not every version of the control has a part of the date selected when it gets the focus; a click on the
  /// first does that in all of them.
  std::optional<LRESULT> FocusByKey(const Message& message) {
    const Life alive = Alive();
    const auto result = NativeControl::OnMessage(message);
    if (!alive || ::GetFocus() != Window()) return result;
    RECT inside;
    ::GetClientRect(Window(), &inside);
    const LPARAM first = MAKELPARAM(Parent().Pixels(Dip(6)), inside.bottom / 2);
    Native({Window(), WM_LBUTTONDOWN, MK_LBUTTON, first});
    Native({Window(), WM_LBUTTONUP, 0, first});
    return result;
  }

  void ShowValue() {
    const Echo echo(*this);
    SYSTEMTIME time = SystemTime(picker_.Value());
    SendPtr(DTM_SETSYSTEMTIME, GDT_VALID, &time);
  }

  DatePicker& picker_;
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
  Extent Needs() const override {
    RECT least{};
    if (!SendPtr(MCM_GETMINREQRECT, 0, &least)) return {};
    const int today = static_cast<int>(Send(MCM_GETMAXTODAYWIDTH));
    return {Parent().Twips(std::max<int>(least.right, today) + 2 * ::GetSystemMetrics(SM_CXEDGE)),
            Parent().Twips(least.bottom + 2 * ::GetSystemMetrics(SM_CYEDGE))};
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
      const LRESULT result = Native(message);
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
    const Fecha day = Marked();
    if (day == month_.Value().SoloDia()) return;
    month_.SetValue(day);
    moved_ = true;
    PickLater();
  }
  void PickLater() {
    if (moved_) ::PostMessageW(Window(), kMoved, 0, 0);
  }
  Fecha Marked() {
    SYSTEMTIME time{};
    return SendPtr(MCM_GETCURSEL, 0, &time) ? DayOf(time) : month_.Value().SoloDia();
  }
  void ShowValue() {
    if (Marked() == month_.Value().SoloDia()) return;
    const Echo echo(*this);
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
