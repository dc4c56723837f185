#include "tests/toolkit_win32/sample_form.h"

namespace zuvi::sample {
namespace {

Rect Dips(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
  return {Dip(left), Dip(top), Dip(width), Dip(height)};
}

/// What a connection's `Execute` gives: two columns and as many rows as asked for.
class Field final : public Object {
 public:
  Field(std::string name, std::string value) : name_(std::move(name)), value_(std::move(value)) {}
  std::string Name() const { return name_; }
  std::string Value() const { return value_; }
  const MemberTable* Members() const override {
    static const MemberTable table =
        MemberTable::Of<Field>().Property<&Field::Name>("Name").Property<&Field::Value>("Value");
    return &table;
  }

 private:
  std::string name_, value_;
};

class Rows final : public Object {
 public:
  explicit Rows(std::int32_t count) : count_(count) {}
  ObjectPtr Fields() { return shared_from_this(); }
  std::int32_t Count() const { return 2; }
  ObjectPtr Item(std::int32_t column) const {
    const std::string row = std::to_string(at_ + 1);
    return column == 0 ? std::make_shared<Field>("articulo", "ART-" + row)
                       : std::make_shared<Field>("descrip", "Artículo número " + row);
  }
  bool Eof() const { return at_ >= count_; }
  void MoveNext() { ++at_; }
  const MemberTable* Members() const override {
    static const MemberTable table = MemberTable::Of<Rows>()
                                         .Property<&Rows::Fields>("Fields")
                                         .Property<&Rows::Count>("Count")
                                         .Method<&Rows::Item>("Item", {"index"})
                                         .Property<&Rows::Eof>("EOF")
                                         .Method<&Rows::MoveNext>("MoveNext");
    return &table;
  }

 private:
  std::int32_t count_, at_ = 0;
};

class Connection final : public Object {
 public:
  ObjectPtr Execute(const std::string&) { return std::make_shared<Rows>(40); }
  const MemberTable* Members() const override {
    static const MemberTable table =
        MemberTable::Of<Connection>().Method<&Connection::Execute>("Execute", {"sql"});
    return &table;
  }
};

}  // namespace

SampleForm::SampleForm(Desktop& desktop) : Form(desktop, "Muestra", nullptr) {
  SetCaption("Muestra de controles");
  DesignInside(Dip(760), Dip(560));
  SetKeyPreview(true);
  MakeFields();
  MakeLists();
  for (const auto& control : Controls())
    if (control->TakesFocus()) Listen(control);
}

std::shared_ptr<Label> SampleForm::Caption(const char* text, std::int32_t left, std::int32_t top,
                                           std::int32_t width) {
  const auto label = Add<Label>(Numbered("etiqueta", static_cast<std::int32_t>(Controls().size())));
  label->SetCaption(text);
  label->Design(Dips(left, top + 3, width, 17));
  return label;
}

void SampleForm::MakeFields() {
  titulo = Caption("Orden de producción", 12, 8, 300);
  titulo->SetHeading(true);
  Caption("&Nombre:", 12, 36, 80);
  nombre = Add<TextBox>("nombre");
  nombre->Design(Dips(96, 36, 180, 22));
  nombre->SetMaxLength(10);
  nombre->SetToolTipText("Hasta diez letras");
  Caption("&Importe:", 12, 64, 80);
  importe = Add<TextBox>("importe");
  importe->SetRightAligned(true);
  importe->Design(Dips(96, 64, 180, 22));
  Caption("Folio:", 12, 92, 80);
  bloqueada = Add<TextBox>("bloqueada");
  bloqueada->SetLocked(true);
  bloqueada->SetTabStop(false);
  bloqueada->SetText("000123");
  bloqueada->Design(Dips(96, 92, 180, 22));
  Caption("Artíc&ulo:", 12, 120, 80);
  articulo = Add<TextBox>("articulo");
  articulo->Design(Dips(96, 120, 180, 22));
  articulos = Add<MultiCombo>("articulos");
  articulos->Design(Dips(96, 120, 180, 22));
  articulos->SetBox(articulo);
  articulos->SetConnection(std::make_shared<Connection>());
  articulos->SetRowSource("SELECT articulo, descrip FROM prods ORDER BY articulo");
  activo = Add<CheckBox>("activo");
  activo->SetCaption("En &proceso");
  activo->Design(Dips(96, 148, 120, 20));
  Caption("&Turno:", 300, 36, 60);
  turno = Add<ComboBox>("turno");
  turno->SetKind(ComboBox::Style::DropDownList);
  for (const char* name : {"Matutino", "Vespertino", "Nocturno"}) turno->AddItem(name);
  turno->Design(Dips(364, 36, 146, 22));
  Caption("Uni&dad:", 300, 64, 60);
  unidad = Add<ComboBox>("unidad");
  for (const char* name : {"PZA", "CAJA", "KG"}) unidad->AddItem(name);
  unidad->Design(Dips(364, 64, 146, 22));
  Caption("&Fecha:", 300, 92, 60);
  fecha = Add<DatePicker>("fecha");
  fecha->SetValue(Fecha::DesdeTexto("2024-05-17"));
  fecha->Design(Dips(364, 92, 146, 22));
  Caption("N&otas:", 300, 120, 60);
  notas = Add<RichTextBox>("notas");
  notas->Design(Dips(364, 120, 146, 56));
  mes = Add<MonthView>("mes");
  mes->SetValue(Fecha::DesdeTexto("2024-05-17"));
  mes->Design(Dips(520, 8, 228, 168), anchor::kTop | anchor::kRight);
}

void SampleForm::MakeLists() {
  rejilla = Add<FlexGrid>("rejilla");
  rejilla->SetRows(41);
  rejilla->SetCols(5);
  const char* headings[] = {"Artículo", "Descripción", "Cantidad", "Costo", "Oculta"};
  for (std::int32_t col = 0; col < 5; ++col) rejilla->SetTextMatrix(0, col, headings[col]);
  for (std::int32_t row = 1; row < 13; ++row) {
    rejilla->SetTextMatrix(row, 0, Numbered("ART-", row));
    rejilla->SetTextMatrix(row, 1, Numbered("Descripción del artículo ", row));
    rejilla->SetTextMatrix(row, 2, std::to_string(row * 12));
    rejilla->SetTextMatrix(row, 3, std::to_string(row) + ".50");
  }
  rejilla->SetColWidth(0, Dip(90));
  rejilla->SetColWidth(4, 0);
  rejilla->SetStretchCol(1);
  for (const std::int32_t col : {2, 3}) rejilla->SetRightAligned(col, true);
  rejilla->SetFocusRect(2);
  rejilla->Design(Dips(12, 188, 736, 160), anchor::kAll);
  editor = Add<TextBox>("editor");
  editor->SetVisible(false);
  editor->SetTabStop(false);
  lista = Add<ListView>("lista");
  lista->Columns().Add("", "Clave", Dip(80));
  lista->Columns().Add("", "Nombre");
  for (int i = 1; i <= 30; ++i)
    lista->Items().Add(Numbered("k", i), Numbered("C", i)).SetSubItems(1, Numbered("Renglón ", i));
  lista->Design(Dips(12, 360, 360, 130), anchor::kLeft | anchor::kBottom);
  pagina = Add<WebBrowser>("pagina");
  pagina->SetHtml("<h1>Ayuda</h1><p>Una p&aacute;gina con <b>texto</b>.</p>");
  pagina->Design(Dips(384, 360, 364, 130), anchor::kLeft | anchor::kRight | anchor::kBottom);
  avance = Add<ProgressBar>("avance");
  avance->SetValue(40);
  avance->Design(Dips(12, 500, 360, 16), anchor::kLeft | anchor::kBottom);
  siguiente = Add<Button>("siguiente");
  siguiente->SetPicture(Glyph::AllRight);
  siguiente->SetToolTipText("Pasa todos");
  siguiente->Design(Dips(384, 524, 40, 26), anchor::kLeft | anchor::kBottom);
  aceptar = Add<Button>("aceptar");
  aceptar->SetCaption("&Aceptar");
  aceptar->Design(Dips(560, 524, 90, 26), anchor::kRight | anchor::kBottom);
  cancelar = Add<Button>("cancelar");
  cancelar->SetCaption("&Cancelar");
  cancelar->Design(Dips(658, 524, 90, 26), anchor::kRight | anchor::kBottom);
  SetDefaultButton(aceptar.get());
  SetCancelButton(cancelar.get());
  reloj = Add<Timer>("reloj");
  reloj->OnTimer = [this] { Heard("reloj"); };
  ajuste = Add<AutoResizer>("ajuste");

  nombre->OnChange = [this] { Heard("nombre=" + nombre->Text()); };
  notas->OnChange = [this] { Heard("notas=" + notas->Text()); };
  unidad->OnChange = [this] { Heard("unidad=" + unidad->Text()); };
  fecha->OnChange = [this] { Heard("fecha=" + fecha->Value().Texto()); };
  mes->OnDateClick = [this](const Fecha& day) { Heard("mes=" + day.Texto()); };
  lista->OnItemClick = [this](ListItem& item) { Heard("lista=" + item.Key()); };
  rejilla->OnRowColChange = [this] {
    Heard("celda " + std::to_string(rejilla->Row()) + "," + std::to_string(rejilla->Col()));
  };
}

void SampleForm::Listen(const std::shared_ptr<Control>& control) {
  Control& c = *control;
  const std::string& name = c.Name();
  c.OnGotFocus = [this, &name] { Heard(name + "+"); };
  c.OnLostFocus = [this, &name] { Heard(name + "-"); };
  c.OnClick = [this, &name] { Heard(name + " clic"); };
  c.OnDblClick = [this, &name] { Heard(name + " doble"); };
  c.OnKeyDown = [this, &name](std::int16_t& key, std::int16_t) { Heard(name + " " + std::to_string(key)); };
  c.OnKeyUp = [this, &name](std::int16_t& key, std::int16_t) { Heard(name + " ^" + std::to_string(key)); };
  c.OnKeyPress = [this, &name](std::int16_t& character) {
    std::string event = name + " '";
    event.push_back(static_cast<char>(character));
    event.push_back('\'');
    Heard(std::move(event));
  };
}

void SampleForm::Form_QueryUnload(std::int16_t& cancel, std::int16_t mode) {
  Heard("query " + std::to_string(mode));
  if (refuses) cancel = 1;
}

void SampleForm::Form_KeyDown(std::int16_t& key, std::int16_t shift) {
  if (key == key::kF2) {
    Heard("F2");
    key = 0;
  }
  if (key == key::kF4 && shift == shift::kCtrl) Unload();
}

}  // namespace zuvi::sample
