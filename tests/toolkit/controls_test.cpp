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
  // Its caption may be a label of its own behind it.
  const auto sola = ventana->Add<CheckBox>("sola");
  ventana->Add<Label>("detras")->SetCaption("&Imprimir");
  EXPECT_EQ(sola->AccessibleName(), "Imprimir");
}

TEST_F(Controles, ComboBoxesOfferAndTakeTexts) {
  ComboBox& combo = *ventana->combo;
  combo.SetText("Mes");
  EXPECT_EQ(combo.ListIndex(), -1);
  combo.SetListIndex(1);
  EXPECT_EQ(combo.Text(), "Semana");
  EXPECT_THAT(Toma(), ElementsAre("combo.Change", "combo.Click"));
  EXPECT_THROW(combo.SetListIndex(2), HostError);
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
  AObjeto(ventana->b->Call("Container"))->Call("ShowData");
  EXPECT_TRUE(multi.DroppedDown());
  EXPECT_THAT(multi.Columns(), ElementsAre("articulo", "descrip"));
  EXPECT_EQ(multi.Rows().size(), 1000u);
  EXPECT_THAT(multi.Rows().back(), ElementsAre("A999", ""));
  multi.Choose(3);
  EXPECT_FALSE(multi.DroppedDown());
  EXPECT_EQ(ventana->b->Text(), "A3");
  EXPECT_TRUE(ventana->b->HasFocus());
  EXPECT_THROW(multi.Choose(1000), HostError);
  multi.SetRowSource("DELETE");
  multi.Click();
  EXPECT_THAT(escritorio.Avisos(), ElementsAre("no se puede leer"));
}

TEST_F(Controles, DatesMoveByTheCalendar) {
  const auto dia = [](const char* texto) { return Fecha::DesdeTexto(texto); };
  DatePicker& fecha = *ventana->fecha;
  fecha.UserPicked(dia("2024-01-31"));
  EXPECT_THAT(Toma(), IsEmpty());
  EXPECT_EQ(fecha.Value().Texto(), "2024-01-31 10:30:00");  // the same day keeps its time
  fecha.DefaultKey(key::kUp, 0);
  EXPECT_EQ(fecha.Value(), dia("2024-02-01"));
  EXPECT_THAT(Toma(), ElementsAre("fecha.Change"));

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
  std::vector<Value> url{"http://localhost/"};
  visor->Call("Navigate", url);
  EXPECT_EQ(ATexto(Value(ObjectPtr(visor))), "http://localhost/");
  EXPECT_EQ(visor->PlainText(), "");
}

// How the box edits by itself is for windows without a screen; there is the native control for the rest.
class Textos : public ConVentana {
 protected:
  TextBox& Caja() { return *ventana->a; }
  /// The selection and the text.
  std::string Marcado() {
    return std::to_string(Caja().SelStart()) + "+" + std::to_string(Caja().SelLength()) + "[" +
           Caja().SelText() + "]" + Caja().Text();
  }
};

TEST_F(Textos, LengthsCountUtf16AndPairsStayWhole) {
  ventana->Type("a😀ñ");
  EXPECT_EQ(Caja().Length(), 4);
  EXPECT_EQ(Marcado(), "4+0[]a😀ñ");
  for (const std::int16_t tecla : {key::kLeft, key::kLeft, key::kDelete}) Tecla(tecla);
  EXPECT_EQ(Marcado(), "1+0[]añ");
  Caja().SetMaxLength(3);
  ventana->Type("😀");  // a pair does not fit into what is left
  // Half a pair is no character, and does not join one that comes later.
  for (const char16_t unidad : {char16_t{0xD83D}, u'y', char16_t{0xDE00}}) Caja().DefaultChar(unidad);
  ventana->Type("z\t\x1b");
  EXPECT_EQ(Marcado(), "2+0[]ayñ");
  Caja().SetText("más largo");
  EXPECT_EQ(Caja().Length(), 9);  // the limit is for the user
}

TEST_F(Textos, CodeChoosesWhatIsSelected) {
  Caja().SetText("aX");
  Caja().SetSelStart(-5);
  Caja().SetSelLength(99);
  EXPECT_EQ(Marcado(), "0+2[aX]aX");
  EXPECT_EQ(Al([&] { Caja().SetSelText("largo"); }), Sucesos{"a.Change largo"});
  EXPECT_EQ(Marcado(), "5+0[]largo");
  Caja().SetText("corto");
  EXPECT_EQ(Marcado(), "0+0[]corto");
  Caja().UserEdited("cortos", 6, 7);
  EXPECT_EQ(Marcado(), "6+0[]cortos");
  Caja().SetLocked(true);
  for (const std::int16_t tecla : {key::kBack, key::kHome, key::kDelete}) Tecla(tecla);
  ventana->Type("c");
  EXPECT_EQ(Caja().Text(), "cortos");
}

TEST_F(Textos, WhatIsPastedPassesTheFilterOfWhatIsTyped) {
  Caja().OnKeyPress = [](std::int16_t& c) {
    if (c == 'a') c = 'A';
    if (c == 'x') c = 0;
  };
  Caja().SetMaxLength(7);
  Caja().SetText("1-2");
  Caja().SetSelStart(1);
  Caja().SetSelLength(1);
  for (const auto& [pegado, queda] :
       {std::pair("3x", "1-2"), std::pair("x", "1-2"), std::pair("  a \r\nx", "1A2"),
        std::pair("456789", "1A45672"), std::pair("0", "1A45672")}) {
    const bool entra = Caja().Paste(pegado);
    EXPECT_EQ(Caja().Text(), queda) << pegado;
    EXPECT_EQ(entra, std::string_view(pegado).find('x') > 2) << pegado;
  }
  Caja().SetLocked(true);
  EXPECT_FALSE(Caja().Paste("9"));
}

}  // namespace
}  // namespace zuvi::pruebas
