// A window with a control of each kind that writes down what happens to it, and can be told to act on it: for
// the model alone and for the tests of the native peers.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/controles.h"
#include "tests/support/errores.h"
#include "tests/support/headless_desktop.h"
#include "toolkit/buttons.h"
#include "toolkit/combo_box.h"
#include "toolkit/dates.h"
#include "toolkit/flex_grid.h"
#include "toolkit/form.h"
#include "toolkit/indicators.h"
#include "toolkit/list_view.h"
#include "toolkit/multi_combo.h"
#include "toolkit/text_box.h"

namespace zuvi::pruebas {

/// What happened, and what is done about it; outlives the windows.
struct Diario {
  std::vector<std::string> sucesos;
  /// Runs with each event, under its name without its values.
  std::function<void(const std::string& suceso)> al_suceder;
  /// Changes a key or character on its way.
  std::function<void(const std::string& suceso, std::int16_t& codigo)> filtro;

  void Anota(const std::string& suceso, const std::string& valor = {}) {
    sucesos.push_back(valor.empty() ? suceso : suceso + " " + valor);
    if (const auto accion = al_suceder) accion(suceso);
  }
  void AnotaCodigo(const std::string& suceso, std::int16_t& codigo) {
    Anota(suceso, std::to_string(codigo));
    if (const auto cambia = filtro) cambia(suceso, codigo);
  }
};

class Ventana : public Form {
 public:
  Ventana(Desktop& desktop, Diario& diario) : Form(desktop, "ventana", nullptr), diario_(&diario) {
    SetKeyPreview(true);
    DesignClientSize(Dip(800), Dip(600));
    etiqueta = Add<Label>("etiqueta");
    etiqueta->SetCaption("&Primero:");
    a = Pon<TextBox>("a");
    b = Pon<TextBox>("b");
    boton = Pon<Button>("boton");
    boton->SetCaption("&Hacer && ya");
    casilla = Pon<CheckBox>("casilla");
    casilla->SetCaption("&Ñandú");
    combo = Pon<ComboBox>("combo");
    fecha = Pon<DatePicker>("fecha");
    mes = Pon<MonthView>("mes");
    lista = Pon<ListView>("lista");
    rejilla = Pon<FlexGrid>("rejilla");
    reloj = Add<Timer>("reloj");
    multi = Add<MultiCombo>("multi");
    std::int32_t arriba = 10;
    const std::initializer_list<zuvi::Control*> columna = {
        etiqueta.get(), a.get(), b.get(), boton.get(), casilla.get(), combo.get(), fecha.get()};
    for (auto* const control : columna) {
      control->Design({Dip(420), Dip(arriba), Dip(180), Dip(22)});
      arriba += 26;
    }
    multi->Design(b->DesignBounds());
    mes->Design({Dip(420), Dip(200), Dip(228), Dip(168)}, anchor::kTop | anchor::kRight);
    rejilla->Design({0, 0, Dip(400), Dip(220)});
    lista->Design({0, Dip(230), Dip(360), Dip(130)}, anchor::kLeft | anchor::kBottom);

    Diario* const d = diario_;
    a->OnChange = [d, caja = a.get()] { d->Anota("a.Change", caja->Text()); };
    combo->OnChange = [d] { d->Anota("combo.Change"); };
    fecha->OnChange = [d] { d->Anota("fecha.Change"); };
    mes->OnDateClick = [d](const Date& dia) { d->Anota("mes.DateClick", dia.Texto()); };
    lista->OnItemClick = [d](ListItem& item) { d->Anota("lista.ItemClick", item.Key()); };
    rejilla->OnLeaveCell = [this, d] { d->Anota("rejilla.LeaveCell", Celda()); };
    rejilla->OnRowColChange = [this, d] { d->Anota("rejilla.RowColChange", Celda()); };
    rejilla->OnScroll = [d] { d->Anota("rejilla.Scroll"); };
    reloj->OnTimer = [d] { d->Anota("reloj.Timer"); };
    etiqueta->OnClick = [d] { d->Anota("etiqueta.Click"); };
    etiqueta->OnDblClick = [d] { d->Anota("etiqueta.DblClick"); };
    combo->AddItem("Día");
    combo->AddItem("Semana");
    for (const char* clave : {"x", "y", "z"}) lista->Items().Add(clave, clave);
    rejilla->SetRows(100);
    rejilla->SetCols(4);
    mes->SetValue(Date::FromText("2024-01-31"));
    fecha->SetValue(Date::FromText("2024-01-31 10:30:00"));
    diario_->sucesos.clear();
  }

  std::string Celda() const { return std::to_string(rejilla->Row()) + "," + std::to_string(rejilla->Col()); }

  void Form_Load() override { diario_->Anota("Load"); }
  void Form_QueryUnload(CancelEvent& event, UnloadMode mode) override {
    diario_->Anota("QueryUnload", std::to_string(static_cast<int>(mode)));
    event.cancel = cancela;
  }
  void Form_Unload(CancelEvent&) override { diario_->Anota("Unload"); }
  void Form_KeyDown(KeyEvent& event) override { diario_->AnotaCodigo("KeyDown", event.key); }
  void Form_Paint() override { diario_->Anota("Paint"); }
  void Form_Resize() override { diario_->Anota("Resize"); }

  std::shared_ptr<Label> etiqueta;
  std::shared_ptr<TextBox> a, b;
  std::shared_ptr<Button> boton;
  std::shared_ptr<CheckBox> casilla;
  std::shared_ptr<ComboBox> combo;
  std::shared_ptr<DatePicker> fecha;
  std::shared_ptr<MonthView> mes;
  std::shared_ptr<ListView> lista;
  std::shared_ptr<FlexGrid> rejilla;
  std::shared_ptr<Timer> reloj;
  std::shared_ptr<MultiCombo> multi;
  bool cancela = false;

 protected:
  /// A control that is listened to.
  template <class T>
  std::shared_ptr<T> Pon(const std::string& nombre) {
    auto control = Add<T>(nombre);
    Diario* const d = diario_;
    control->OnGotFocus = [d, nombre] { d->Anota(nombre + ".GotFocus"); };
    control->OnLostFocus = [d, nombre] { d->Anota(nombre + ".LostFocus"); };
    control->OnClick = [d, nombre] { d->Anota(nombre + ".Click"); };
    control->OnDblClick = [d, nombre] { d->Anota(nombre + ".DblClick"); };
    control->OnKeyDown = [d, nombre](KeyEvent& event) { d->AnotaCodigo(nombre + ".KeyDown", event.key); };
    control->OnKeyUp = [d, nombre](KeyEvent& event) { d->AnotaCodigo(nombre + ".KeyUp", event.key); };
    control->OnKeyPress = [d, nombre](KeyPressEvent& event) {
      d->AnotaCodigo(nombre + ".KeyPress", event.character);
    };
    return control;
  }

 private:
  Diario* diario_;
};

using Sucesos = std::vector<std::string>;

/// A connection that gives rows of a code and a name that may be Null to whoever selects, and writes it down;
/// record set, fields and field in one.
class Conexion final : public Object {
 public:
  Conexion(Diario& diario, std::int32_t filas) : diario_(diario), filas_(filas) {}
  std::optional<MemberId> Find(std::string_view nombre) override {
    nombres_.emplace_back(nombre);
    return static_cast<MemberId>(nombres_.size());
  }
  Value Read(MemberId id, std::span<Value> args, ByRef) override {
    const std::string nombre = nombres_.at(static_cast<std::size_t>(id) - 1);
    if (nombre == "Execute") {
      diario_.Anota(nombre);
      if (!ToText(args[0]).starts_with("SELECT")) throw HostError("no se puede leer");
      fila_ = 0;
    }
    if (nombre == "Item") codigo_ = ToInt32(args[0]) == 0;
    if (nombre == "Count") return 2;
    if (nombre == "Name") return codigo_ ? "articulo" : "descrip";
    if (nombre == "Value") return codigo_ ? Value("A" + Decimal(fila_)) : Value(Null{});
    if (nombre == "EOF") return fila_ == filas_;
    fila_ += nombre == "MoveNext";
    return shared_from_this();
  }

 private:
  Diario& diario_;
  std::vector<std::string> nombres_;
  std::int32_t filas_, fila_ = 0;
  bool codigo_ = true;
};

/// The window shown, and what happens in it.
class ConVentana : public testing::Test {
 protected:
  ConVentana() {
    ventana->Show();
    diario.sucesos.clear();
  }
  Sucesos Toma() { return std::exchange(diario.sucesos, {}); }
  /// What `action` makes happen.
  template <class Action>
  Sucesos Al(Action&& action) {
    diario.sucesos.clear();
    action();
    return Toma();
  }
  Sucesos Tecla(std::int16_t tecla, std::int16_t con = shift::kNone) {
    return Al([&] { ventana->Press(tecla, con); });
  }

  HeadlessDesktop escritorio;
  Diario diario;
  std::shared_ptr<Ventana> ventana = std::make_shared<Ventana>(escritorio, diario);
};

}  // namespace zuvi::pruebas
