#include <gmock/gmock.h>

#include "tests/support/letra.h"
#include "tests/toolkit/ventana.h"

namespace zuvi::pruebas {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Formas : public ConVentana {
 protected:
  /// Does something the next time an event of that name happens.
  void Cuando(const std::string& suceso, std::function<void()> accion) {
    diario.al_suceder = [this, suceso, accion = std::move(accion)](const std::string& este) {
      if (este != suceso) return;
      diario.al_suceder = nullptr;
      accion();
    };
  }
  /// Uses up what comes to one station.
  void Gasta(const std::string& estacion) {
    diario.filtro = [estacion](const std::string& suceso, std::int16_t& codigo) {
      if (suceso == estacion) codigo = 0;
    };
  }
};

TEST_F(Formas, AKeyGoesThroughItsStationsInOrder) {
  EXPECT_THAT(Al([&] { ventana->Type("x"); }),
              ElementsAre("KeyDown 88", "a.KeyDown 88", "a.KeyPress 120", "a.Change x", "a.KeyUp 88"));
  // Another character in its place, or none.
  diario.filtro = [](const std::string& suceso, std::int16_t& codigo) {
    if (suceso == "a.KeyPress") codigo = 'Y';
  };
  EXPECT_THAT(Al([&] { ventana->Type("y"); }),
              ElementsAre("KeyDown 89", "a.KeyDown 89", "a.KeyPress 121", "a.Change xY", "a.KeyUp 89"));
  Gasta("a.KeyPress");
  EXPECT_THAT(Al([&] { ventana->Type("z"); }),
              ElementsAre("KeyDown 90", "a.KeyDown 90", "a.KeyPress 122", "a.KeyUp 90"));
  // Used up by the window's preview, the control hears only the end of it; by the control, no character
  // comes.
  Gasta("KeyDown");
  EXPECT_THAT(Tecla(key::kEnter), ElementsAre("KeyDown 13", "a.KeyUp 13"));
  EXPECT_THAT(Tecla(key::kTab), ElementsAre("KeyDown 9", "a.KeyUp 9"));
  Gasta("a.KeyDown");
  EXPECT_THAT(Al([&] { ventana->Type("q"); }), ElementsAre("KeyDown 81", "a.KeyDown 81", "a.KeyUp 81"));
  EXPECT_EQ(ventana->a->Text(), "xY");
  // Setting the text by code tells of a change once, and only of a change.
  EXPECT_THAT(Al([&] {
                ventana->a->SetText("1");
                ventana->a->SetText("1");
              }),
              ElementsAre("a.Change 1"));
}

TEST_F(Formas, FocusIsLostBeforeItIsGot) {
  EXPECT_THAT(Tecla(key::kTab),
              ElementsAre("KeyDown 9", "a.KeyDown 9", "a.LostFocus", "b.GotFocus", "b.KeyUp 9"));
  EXPECT_THAT(Al([&] { ventana->b->SetFocus(); }), IsEmpty());
  // A handler that takes the focus back: who never heard of getting it does not hear of losing it, and the
  // click that wanted it comes to nothing.
  Cuando("b.LostFocus", [&] { ventana->b->SetFocus(); });
  EXPECT_THAT(Al([&] { ventana->boton->Click(); }), ElementsAre("b.LostFocus", "b.GotFocus"));
  // Two that throw it at each other come to an end.
  Cuando("b.LostFocus", [&] {
    Cuando("b.GotFocus", [&] { ventana->a->SetFocus(); });
    ventana->b->SetFocus();
  });
  ventana->boton->SetFocus();
  EXPECT_TRUE(ventana->a->HasFocus());
  // A handler that moves the focus uses up the key, and the character reaches neither.
  Cuando("a.KeyDown", [&] { ventana->b->SetFocus(); });
  EXPECT_THAT(Tecla(key::kEnter),
              ElementsAre("KeyDown 13", "a.KeyDown 13", "a.LostFocus", "b.GotFocus", "b.KeyUp 13"));
  Cuando("b.KeyDown", [&] { ventana->casilla->SetFocus(); });
  Tecla(key::kTab);
  EXPECT_TRUE(ventana->casilla->HasFocus());
  ventana->a->SetFocus();
  Cuando("a.KeyPress", [&] { ventana->b->SetFocus(); });
  ventana->Type("k");
  EXPECT_EQ(ventana->a->Text() + ventana->b->Text(), "");
}

TEST_F(Formas, TabPassesByWhoCannotTakeTheFocus) {
  const auto orden = [&](std::int16_t con) {
    std::vector<std::string> nombres;
    for (int i = 0; i < 7; ++i) {
      ventana->Press(key::kTab, con);
      nombres.push_back(ventana->ActiveControl()->Name());
    }
    return nombres;
  };
  ventana->b->SetEnabled(false);
  ventana->casilla->SetVisible(false);
  ventana->mes->SetTabStop(false);
  EXPECT_THAT(orden(shift::kNone), ElementsAre("boton", "combo", "fecha", "lista", "rejilla", "a", "boton"));
  EXPECT_THAT(orden(shift::kShift), ElementsAre("a", "rejilla", "lista", "fecha", "combo", "boton", "a"));
  EsperaError(ErrorNumber::InvalidCall, [&] { ventana->b->SetFocus(); });
  EsperaError(ErrorNumber::InvalidCall, [&] { ventana->casilla->SetFocus(); });
  EsperaError(ErrorNumber::InvalidCall, [&] { ventana->etiqueta->SetFocus(); });
  EXPECT_NO_THROW(ventana->mes->SetFocus());
  // Disabled with the focus, the next one has it; hidden, nobody until a key comes.
  ventana->a->SetFocus();
  ventana->a->SetEnabled(false);
  EXPECT_TRUE(ventana->boton->HasFocus());
  EXPECT_THAT(Al([&] { ventana->boton->SetVisible(false); }), ElementsAre("boton.LostFocus"));
  EXPECT_EQ(ventana->ActiveControl(), nullptr);
  ventana->Press(key::kInsert);
  EXPECT_TRUE(ventana->combo->HasFocus());
  // Clicks on what is disabled or hidden are none.
  EXPECT_THAT(Al([&] {
                ventana->boton->Click();
                ventana->b->DblClick();
                ventana->casilla->Mnemonic();
              }),
              IsEmpty());
}

TEST_F(Formas, MnemonicsEnterAndEscapeReachTheirControls) {
  ventana->b->SetFocus();
  EXPECT_TRUE(ventana->Mnemonic(u'p'));  // of a label: to the control behind
  EXPECT_TRUE(ventana->a->HasFocus());
  ventana->a->SetEnabled(false);
  ventana->boton->SetFocus();
  ventana->Press('P', shift::kAlt);
  EXPECT_TRUE(ventana->b->HasFocus());
  EXPECT_THAT(Al([&] { ventana->Mnemonic(u'h'); }),
              ElementsAre("b.LostFocus", "boton.GotFocus", "boton.Click"));
  ventana->Mnemonic(u'Ñ');
  EXPECT_EQ(ventana->casilla->Value(), 1);
  EXPECT_FALSE(ventana->Mnemonic(u'y'));  // behind "&&" there is none
  EXPECT_FALSE(ventana->Mnemonic(u'\0'));
  EXPECT_EQ(MnemonicOf("Fin&"), 0);
  EXPECT_EQ(WithoutMnemonic("A && &B&"), "A & B");

  int cancelados = 0;
  const auto cancelar = ventana->Add<Button>("cancelar");
  cancelar->OnClick = [&] { ++cancelados; };
  ventana->SetDefaultButton(ventana->boton.get());
  ventana->SetCancelButton(cancelar.get());
  ventana->b->SetFocus();
  EXPECT_THAT(Tecla(key::kEnter), ElementsAre("KeyDown 13", "b.KeyDown 13", "b.LostFocus", "boton.GotFocus",
                                              "boton.Click", "boton.KeyUp 13"));
  EXPECT_THAT(Tecla(key::kSpace), testing::Contains("boton.Click"));
  cancelar->SetFocus();
  Tecla(key::kEnter);  // a button with the focus is its own default
  EXPECT_EQ(cancelados, 1);
  ventana->rejilla->SetFocus();
  Tecla(key::kEscape);  // wanted by the grid itself
  EXPECT_EQ(cancelados, 1);
  ventana->b->SetFocus();
  Tecla(key::kEscape);
  EXPECT_EQ(cancelados, 2);
}

TEST_F(Formas, UnloadCanBeCancelled) {
  ventana->cancela = true;
  EXPECT_FALSE(ventana->Unload(UnloadMode::TitleBar));
  EXPECT_TRUE(ventana->Loaded() && ventana->Visible());
  EXPECT_TRUE(ventana->a->HasFocus());
  ventana->cancela = false;
  EXPECT_THAT(Al([&] { EXPECT_TRUE(ventana->Unload(UnloadMode::System)); }),
              ElementsAre("QueryUnload 2", "Unload"));
  // Gone, it can be read but does nothing any more.
  EXPECT_THAT(Al([&] {
                EXPECT_TRUE(ventana->Unload());
                ventana->Press(key::kTab);
                ventana->Type("x");
                ventana->boton->Click();
                ventana->Paint();
                ventana->FocusMoved(ventana->b.get());
              }),
              IsEmpty());
  EsperaError(ErrorNumber::InvalidCall, [&] { ventana->b->SetFocus(); });
  EsperaError(ErrorNumber::InvalidCall, [&] { ventana->Show(); });
  const auto boton = ventana->boton;
  ventana.reset();
  EXPECT_EQ(boton->Window(), nullptr);
  EXPECT_EQ(boton->Container(), nullptr);
  EXPECT_EQ(boton->AccessibleName(), "Hacer & ya");
}

TEST_F(Formas, AModalWindowThatWillNotCloseIsHidden) {
  const auto otra = std::make_shared<Ventana>(escritorio, diario);
  otra->cancela = true;
  escritorio.OnModal([&](Form&) {
    // The owner takes no input meanwhile.
    EXPECT_THAT(Al([&] {
                  ventana->Type("x");
                  ventana->boton->Click();
                  EXPECT_FALSE(ventana->Mnemonic(u'h'));
                }),
                IsEmpty());
  });
  otra->ShowModal(ventana.get());
  EXPECT_FALSE(otra->Visible());
  EXPECT_TRUE(otra->Loaded());
  EXPECT_TRUE(ventana->Enabled());
  // Hidden while it is shown, it does not wait for a user.
  Cuando("Paint", [&] { otra->Hide(); });
  escritorio.OnModal([&](Form&) { ADD_FAILURE(); });
  otra->ShowModal(nullptr);
}

TEST_F(Formas, ALongLoadIsSeenButTakesNoInput) {
  for (const bool fails : {false, true}) {
    SCOPED_TRACE(fails);
    const auto otra = std::make_shared<Ventana>(escritorio, diario);
    Cuando("Load", [&] {
      otra->ShowWhileLoading();
      EXPECT_TRUE(otra->Visible());
      EXPECT_FALSE(otra->Enabled() || ventana->Enabled());
      EXPECT_THAT(Al([&] { otra->Type("x"); }), IsEmpty());
      if (fails) throw HostError("sin datos");
    });
    bool loaded = false;
    escritorio.OnModal([&](Form&) {
      loaded = true;
      otra->Type("x");
      EXPECT_EQ(otra->a->Text(), "x");
    });
    if (fails)
      EXPECT_THROW(otra->ShowModal(ventana.get()), HostError);
    else
      otra->ShowModal(ventana.get());
    EXPECT_NE(loaded, fails);
    EXPECT_TRUE(otra->Closed() && ventana->Enabled());
  }
}

TEST_F(Formas, ATimerThatIsSwitchedOnBeginsItsIntervalAnew) {
  const auto otro = ventana->Add<Timer>("otro");
  otro->OnTimer = [&] { diario.Anota("otro"); };
  ventana->reloj->SetInterval(30);
  otro->SetInterval(30);
  Cuando("reloj.Timer", [&] { otro->SetEnabled(true); });
  EXPECT_THAT(Al([&] { escritorio.Advance(61); }), ElementsAre("reloj.Timer", "reloj.Timer", "otro"));
  ventana->reloj->SetInterval(0);
  otro->SetEnabled(false);
  EXPECT_THAT(Al([&] { escritorio.Advance(1000); }), IsEmpty());
}

TEST_F(Formas, ControlsFollowTheWindowByTheirAnchors) {
  ventana->DesignClientSize(Dip(800), Dip(600));
  const auto en = [](std::int32_t x, std::int32_t y, std::int32_t ancho, std::int32_t alto) {
    return Rect{Dip(x), Dip(y), Dip(ancho), Dip(alto)};
  };
  for (const auto& otro : ventana->Controls())
    otro->SetVisible(otro == ventana->a || otro == ventana->rejilla);
  ventana->a->Design(en(20, 100, 200, 50), anchor::kAcross);
  ventana->b->Design(en(100, 500, 200, 50), anchor::kBottom | anchor::kRight);
  ventana->rejilla->Design(en(0, 200, 800, 200), anchor::kAll);
  const auto crece = [&](std::int32_t dx, std::int32_t dy) {
    ventana->Resized(Dip(800 + dx), Dip(600 + dy));
  };
  crece(30, 20);
  EXPECT_EQ(ventana->a->Width(), Dip(200));  // nobody lays out
  const auto ajuste = ventana->Add<AutoResizer>("ajuste");
  ajuste->SetEnabled(false);
  ajuste->SetEnabled(true);
  EXPECT_EQ(ventana->a->Bounds(), en(20, 100, 230, 50));
  EXPECT_EQ(ventana->b->Bounds(), en(130, 520, 200, 50));
  EXPECT_EQ(ventana->rejilla->Bounds(), en(0, 200, 830, 220));
  ventana->b->Move({1, 2, 3, 4});  // code's from now on
  // Smaller than designed, the grid gives way and the rest keeps its size.
  crece(0, -80);
  EXPECT_EQ(ventana->rejilla->Bounds(), en(0, 200, 800, 120));
  crece(-100, -500);
  EXPECT_EQ(ventana->rejilla->Width(), Dip(700));
  EXPECT_EQ(ventana->rejilla->Height(), kMinimumStretched);
  EXPECT_EQ(ventana->a->Left(), Dip(20));
  EXPECT_EQ(ventana->a->Height(), Dip(50));
  EXPECT_LT(ventana->a->Width(), Dip(200));
  EXPECT_EQ(ventana->b->Bounds(), (Rect{1, 2, 3, 4}));
  crece(0, 0);
  EXPECT_EQ(ventana->a->Bounds(), ventana->a->DesignBounds());
}

TEST_F(Formas, AFieldGetsItsRowsInASqueezedWindow) {
  ventana->Add<AutoResizer>("ajuste");
  ventana->multi->SetBox(ventana->b);
  ventana->mes->SetVisible(false);  // beside the list, which it would keep from giving way
  ventana->FitTo(std::make_shared<Letra>(9, 96));
  const std::int32_t ancho = ventana->DesignWidth() - Dip(20), alto = ventana->DesignHeight() - Dip(80);
  const std::int32_t entera = ventana->lista->Height();
  ventana->Resized(ancho, alto);
  const Rect caja = ventana->b->Bounds(), lista = ventana->lista->Bounds();
  ASSERT_LT(lista.height, entera);
  for (const char* filas : {"SELECT", "", "SELECT"}) {
    ventana->multi->SetRowSource(filas);
    EXPECT_EQ(ventana->ClientWidth(), ancho);
    EXPECT_EQ(ventana->ClientHeight(), alto);
    EXPECT_EQ(ventana->lista->Bounds(), lista);
    EXPECT_EQ(ventana->b->Left(), caja.left);
    EXPECT_EQ(ventana->b->Width() < caja.width, *filas != 0);
  }
}

/// A native side that moves the focus as a real one does: the model hears of it from within.
class Nativo final : public Peer {
 public:
  Nativo(Ventana& ventana, zuvi::Control& control) : ventana_(ventana), control_(control) {}
  void Update(Aspect) override {}
  void TakeFocus() override { ventana_.FocusMoved(&control_); }

 private:
  Ventana& ventana_;
  zuvi::Control& control_;
};

TEST_F(Formas, WhatHandlersDecideWhileTheNativeFocusMovesStands) {
  for (const auto& caja : {ventana->a, ventana->b}) caja->SetPeer(std::make_unique<Nativo>(*ventana, *caja));
  Cuando("a.LostFocus", [&] { ventana->a->SetFocus(); });
  EXPECT_THAT(Al([&] { ventana->b->SetFocus(); }), ElementsAre("a.LostFocus", "a.GotFocus"));
  EXPECT_TRUE(ventana->a->HasFocus());
}

TEST_F(Formas, ControlsAreReachedByName) {
  const auto campos = ventana->AddArray<TextBox>("txtCampos");
  for (const std::int16_t indice : {std::int16_t{0}, std::int16_t{4}, std::int16_t{29}})
    ventana->AddTo(*campos, "txtCampos", indice).SetText(std::to_string(indice));
  const auto lee = [](const ObjectPtr& objeto, const char* nombre, std::vector<Value> args = {}) {
    return objeto->Call(nombre, args);
  };
  EXPECT_EQ(lee(ToObject(lee(ventana, "TXTCAMPOS", {4})), "Text"), Value("4"));
  const ObjectPtr arreglo = ToObject(lee(ventana, "txtCampos"));
  EXPECT_EQ(ToText(lee(arreglo, "Item", {0})), "0");
  EXPECT_EQ(ToInt32(lee(arreglo, "Count")), 3);
  EXPECT_EQ(ToInt32(lee(arreglo, "UBound")), 29);
  EsperaError(ErrorNumber::SubscriptOutOfRange, [&] { lee(ventana, "txtCampos", {1}); });
  const ObjectPtr cuarto = (*campos)(4).shared_from_this();
  EXPECT_EQ(ToObject(lee(cuarto, "Container")), ventana);
  EXPECT_EQ(ToInt32(lee(cuarto, "Index")), 4);
  ventana->boton->Put("Caption", "&Otro");
  EXPECT_EQ(ventana->boton->AccessibleName(), "Otro");
  EsperaError(ErrorNumber::NoSuchMember, [&] { ventana->a->Put("Name", "otro"); });
  EsperaError(ErrorNumber::InvalidCall, [&] { ventana->casilla->Put("Value", 3); });
}

}  // namespace
}  // namespace zuvi::pruebas
