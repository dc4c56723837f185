// The kinds with little behaviour of their own.
#include <gmock/gmock.h>

#include <cmath>

#include "tests/toolkit/ventana.h"
#include "toolkit/plain_html.h"

namespace zuvi::pruebas {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Controles = ConVentana;

TEST_F(Controles, ACheckBoxTellsOfEachChangeOnce) {
  CheckBox& casilla = *ventana->casilla;
  casilla.SetFocus();
  EXPECT_THAT(Al([&] {
                casilla.SetValue(2);
                casilla.SetValue(2);
              }),
              ElementsAre("casilla.Click"));
  EXPECT_THAT(Tecla(key::kSpace), testing::Contains("casilla.Click"));
  EXPECT_EQ(casilla.Value(), 0);
  EXPECT_THROW(casilla.SetValue(-1), HostError);
  // Its caption may be a label of its own, before or behind.
  const auto sola = ventana->Add<CheckBox>("sola");
  const auto detras = ventana->Add<Label>("detras");
  detras->SetCaption("&Imprimir");
  const auto otra = ventana->Add<CheckBox>("otra");
  EXPECT_EQ(sola->AccessibleName() + otra->AccessibleName(), "ImprimirImprimir");
  EXPECT_EQ(ventana->a->AccessibleName() + ventana->b->AccessibleName(), "Primero:");
}

TEST_F(Controles, ComboBoxesOfferAndTakeTexts) {
  ComboBox& combo = *ventana->combo;
  combo.SetText("Mes");
  EXPECT_EQ(combo.ListIndex(), -1);
  combo.SetListIndex(1);
  EXPECT_EQ(combo.Text(), "Semana");
  EXPECT_THAT(Toma(), ElementsAre("combo.Change", "combo.Click"));
  EXPECT_THROW(combo.SetListIndex(2), HostError);
  EXPECT_THROW(combo.List(-1), HostError);
  combo.SetFocus();
  ventana->Press(key::kBack);
  ventana->Type("😀");
  ventana->Press(key::kBack);
  EXPECT_EQ(combo.Text(), "Seman");
  EXPECT_EQ(combo.ListIndex(), -1);

  const auto lista = ventana->Add<ComboBox>("soloLista");
  lista->SetKind(ComboBox::Style::DropDownList);
  for (const char* texto : {"Ámbar", "Rojo"}) lista->AddItem(texto);
  EXPECT_THROW(lista->SetText("Verde"), HostError);
  lista->SetText("Rojo");
  lista->UserTyped("Verde");
  for (const std::int16_t tecla : {key::kEnd, key::kDown}) lista->DefaultKey(tecla, 0);
  EXPECT_EQ(lista->ListIndex(), 1);
  for (const std::int16_t tecla : {key::kHome, key::kUp}) lista->DefaultKey(tecla, 0);
  EXPECT_EQ(lista->ListIndex(), 0);
  lista->Clear();
  EXPECT_EQ(lista->Text(), "");
}

TEST_F(Controles, AMultiComboOffersTheRowsOfItsSource) {
  MultiCombo& multi = *ventana->multi;
  multi.SetBox(ventana->b);
  multi.ShowData();  // nothing to show yet
  multi.Put("RowSource", "SELECT");
  EXPECT_THROW(multi.ShowData(), HostError);
  multi.Put("Connection", Value(std::make_shared<Conexion>(diario, 1200)));
  ventana->b->SetEnabled(false);
  multi.ShowData();
  EXPECT_FALSE(multi.DroppedDown());
  ventana->b->SetEnabled(true);
  ToObject(ventana->b->Call("Container"))->Call("ShowData");
  EXPECT_TRUE(multi.DroppedDown());
  EXPECT_THAT(multi.Columns(), ElementsAre("articulo", "descrip"));
  EXPECT_EQ(multi.Rows().size(), 1000u);
  EXPECT_THAT(multi.Rows().back(), ElementsAre("A999", ""));
  multi.Choose(3);
  EXPECT_FALSE(multi.DroppedDown());
  EXPECT_EQ(ventana->b->Text(), "A3");
  EXPECT_TRUE(ventana->b->HasFocus());
  EXPECT_THROW(multi.Choose(1000), HostError);
  // By the user's own click, which closes again, and tells him what went wrong.
  for (const bool abierta : {true, false}) {
    multi.Click();
    EXPECT_EQ(multi.DroppedDown(), abierta);
  }
  multi.SetRowSource("DELETE");
  multi.Click();
  EXPECT_THAT(escritorio.Avisos(), ElementsAre("no se puede leer"));
}

TEST_F(Controles, DatesMoveByTheCalendar) {
  const auto dia = [](const char* texto) { return Date::FromText(texto); };
  DatePicker& fecha = *ventana->fecha;
  fecha.UserPicked(dia("2024-01-31"));
  EXPECT_THAT(Toma(), IsEmpty());
  EXPECT_EQ(fecha.Value().Texto(), "2024-01-31 10:30:00");  // the same day keeps its time
  fecha.DefaultKey(key::kUp, 0);
  EXPECT_EQ(fecha.Value(), dia("2024-02-01"));
  fecha.SetValue(dia("9999-12-31"));
  fecha.DefaultKey(key::kUp, 0);
  EXPECT_EQ(fecha.Value(), dia("9999-12-31"));
  EXPECT_THAT(Toma(), ElementsAre("fecha.Change", "fecha.Change"));

  MonthView& mes = *ventana->mes;
  const std::pair<std::int16_t, const char*> pasos[] = {
      {key::kPageDown, "2024-02-29"}, {key::kLeft, "2024-02-28"},  {key::kDown, "2024-03-06"},
      {key::kHome, "2024-03-01"},     {key::kUp, "2024-02-23"},    {key::kEnd, "2024-02-29"},
      {key::kRight, "2024-03-01"},    {key::kPageUp, "2024-02-01"}};
  for (const auto& [tecla, hasta] : pasos) {
    mes.DefaultKey(tecla, 0);
    EXPECT_THAT(Toma(), ElementsAre(std::string("mes.DateClick ") + hasta));
  }
  mes.SetValue(dia("0100-01-01"));
  mes.DefaultKey(key::kPageUp, 0);
  EXPECT_EQ(mes.Value(), dia("0100-01-01"));
}

TEST_F(Controles, ABarStaysWithinItsEnds) {
  const auto barra = ventana->Add<ProgressBar>("barra");
  barra->SetValue(250);
  EXPECT_EQ(barra->Value(), 100);
  barra->SetMax(40);
  EXPECT_EQ(barra->Value(), 40);
  barra->SetMin(60);
  EXPECT_EQ(barra->Value(), 60);
  barra->SetMin(-10);
  barra->SetValue(std::nan(""));
  EXPECT_EQ(barra->Value(), -10);
}

TEST_F(Controles, APageIsReadAsText) {
  const auto visor = ventana->Add<WebBrowser>("visor");
  visor->SetHtml(
      "<!DOCTYPE html><html><head><title>x</title><style>p > b { color: red }</style>"
      "<script>if (1 < 2) document.write('<p>no</p>');</script></head>\r\n<body>"
      "<h1>Producci&oacute;n</h1><!-- a > b <p> -->\n\n<p title='a>b'>Art&iacute;culo   n&#186; "
      "<b>3</b>&nbsp;&lt;4"
      "<br/>5 &amp;&nada; R&D 6 < 7 "
      "&#x1F600;</p><table><tr><td>Kit</td><td>2.5</td></tr><TR><TD>Fin</TABLE>");
  EXPECT_EQ(visor->PlainText(), "Producción\nArtículo nº 3 <4\n5 &&nada; R&D 6 < 7 😀\nKit\t2.5\nFin");
  for (const char* rota : {"<", "<p", "a<!--", "&", "<script>x", "<p title='"})
    EXPECT_NO_THROW(PlainTextOfHtml(rota)) << rota;
  std::vector<Value> url{"http://localhost/"};
  visor->Call("Navigate", url);
  EXPECT_EQ(ToText(Value(ObjectPtr(visor))), "http://localhost/");
  EXPECT_EQ(visor->PlainText(), "");
}

}  // namespace
}  // namespace zuvi::pruebas
