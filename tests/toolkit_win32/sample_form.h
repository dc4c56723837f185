// A window with every kind of control, for looking at and for the tests of the native peers.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "toolkit/buttons.h"
#include "toolkit/combo_box.h"
#include "toolkit/dates.h"
#include "toolkit/flex_grid.h"
#include "toolkit/form.h"
#include "toolkit/indicators.h"
#include "toolkit/list_view.h"
#include "toolkit/multi_combo.h"
#include "toolkit/text_box.h"

namespace zuvi::sample {

/// A text with a number after it.
inline std::string Numbered(std::string text, std::int32_t number) {
  return text.append(std::to_string(number));
}

/// Keeps the events it hears in `log`, in words such as "nombre+" (got the focus) or "nombre 'a'".
class SampleForm : public Form {
 public:
  explicit SampleForm(Desktop& desktop);

  void Form_Load() override { Heard("load"); }
  void Form_QueryUnload(std::int16_t& cancel, std::int16_t mode) override;
  void Form_Unload(std::int16_t&) override { Heard("unload"); }
  void Form_KeyDown(std::int16_t& key, std::int16_t shift) override;
  void Form_Paint() override { ++paintings; }
  void Form_Resize() override { ++resizes; }

  std::vector<std::string> log;
  int paintings = 0, resizes = 0;
  bool refuses = false;

  std::shared_ptr<TextBox> nombre, importe, bloqueada, articulo, editor;
  std::shared_ptr<RichTextBox> notas;
  std::shared_ptr<CheckBox> activo;
  std::shared_ptr<ComboBox> turno, unidad;
  std::shared_ptr<MultiCombo> articulos;
  std::shared_ptr<DatePicker> fecha;
  std::shared_ptr<MonthView> mes;
  std::shared_ptr<ListView> lista;
  std::shared_ptr<FlexGrid> rejilla;
  std::shared_ptr<Button> aceptar, cancelar, siguiente;
  std::shared_ptr<Label> titulo;
  std::shared_ptr<ProgressBar> avance;
  std::shared_ptr<Timer> reloj;
  std::shared_ptr<WebBrowser> pagina;
  std::shared_ptr<AutoResizer> ajuste;

 private:
  void Heard(std::string event) { log.push_back(std::move(event)); }
  void Listen(const std::shared_ptr<Control>& control);
  std::shared_ptr<Label> Caption(const char* text, std::int32_t left, std::int32_t top, std::int32_t width);
  void MakeFields();
  void MakeLists();
};

}  // namespace zuvi::sample
