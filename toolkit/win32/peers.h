// Which native control stands for which control of the model.
#pragma once

#include <memory>

#include "toolkit/buttons.h"
#include "toolkit/combo_box.h"
#include "toolkit/dates.h"
#include "toolkit/flex_grid.h"
#include "toolkit/indicators.h"
#include "toolkit/list_view.h"
#include "toolkit/multi_combo.h"
#include "toolkit/text_box.h"
#include "toolkit/win32/native_control.h"

namespace zuvi::native {

/// Null for kinds that show nothing.
std::unique_ptr<NativeControl> PeerFor(NativeForm& form, Control& control);

// One file per family; each gives a peer that still has to be created.
std::unique_ptr<NativeControl> TextPeerFor(NativeForm& form, TextBox& box);
std::unique_ptr<NativeControl> LabelPeerFor(NativeForm& form, Label& label);
std::unique_ptr<NativeControl> ButtonPeerFor(NativeForm& form, Button& button);
std::unique_ptr<NativeControl> CheckBoxPeerFor(NativeForm& form, CheckBox& box);
std::unique_ptr<NativeControl> ComboPeerFor(NativeForm& form, ComboBox& combo);
std::unique_ptr<NativeControl> MultiComboPeerFor(NativeForm& form, MultiCombo& combo);
std::unique_ptr<NativeControl> DatePickerPeerFor(NativeForm& form, DatePicker& picker);
std::unique_ptr<NativeControl> MonthPeerFor(NativeForm& form, MonthView& month);
std::unique_ptr<NativeControl> ListPeerFor(NativeForm& form, ListView& list);
std::unique_ptr<NativeControl> GridPeerFor(NativeForm& form, FlexGrid& grid);
std::unique_ptr<NativeControl> ProgressPeerFor(NativeForm& form, ProgressBar& bar);
std::unique_ptr<NativeControl> TimerPeerFor(NativeForm& form, Timer& timer);
std::unique_ptr<NativeControl> PagePeerFor(NativeForm& form, WebBrowser& page);

}  // namespace zuvi::native
