// Date field and month calendar.
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
  LRESULT OnNotify(const NMHDR& notification) override {
    if (notification.code == static_cast<UINT>(MCN_SELECT) && !Updating()) {
      const auto& change = reinterpret_cast<const NMSELCHANGE&>(notification);
      month_.UserClicked(DayOf(change.stSelStart));
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

 private:
  void ShowValue() {
    const Echo echo(*this);
    SYSTEMTIME time = SystemTime(month_.Value());
    SendPtr(MCM_SETCURSEL, 0, &time);
  }

  MonthView& month_;
};

}  // namespace

std::unique_ptr<NativeControl> DatePickerPeerFor(NativeForm& form, DatePicker& picker) {
  return std::make_unique<DatePickerPeer>(form, picker);
}
std::unique_ptr<NativeControl> MonthPeerFor(NativeForm& form, MonthView& month) {
  return std::make_unique<MonthPeer>(form, month);
}

}  // namespace zuvi::native
