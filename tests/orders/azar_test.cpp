// A user at random on the real shop: keys, typing, clicks, choices and closings in any order. A viewed order
// is never written; an edited one is shown as it is stored, and marked busy exactly while it is open.
#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <map>
#include <random>
#include <set>

#include "host/ventanas/fabrica_ventanas.h"
#include "orders/frm_op.h"
#include "tests/host/tienda.h"

namespace zuvi::host {
namespace {

constexpr int kSucesos = 10'000;
constexpr std::int32_t kOcupadaDesdeAntes = 106;

class Azar {
 public:
  explicit Azar(unsigned semilla) : motor_(semilla) {}
  /// From 0 to n - 1; the same on every system.
  std::int32_t operator()(std::size_t n) { return static_cast<std::int32_t>(motor_() % n); }
  bool Uno(std::size_t de) { return (*this)(de) == 0; }
  const auto& De(const auto& lista) { return lista[static_cast<std::size_t>((*this)(std::size(lista)))]; }

 private:
  std::mt19937 motor_;
};

/// What is there more than once is pressed more often.
constexpr std::int16_t kTeclas[] = {
    key::kTab,  key::kTab,   key::kTab,    key::kTab,  key::kEnter,    key::kEnter, key::kEnter, key::kEscape,
    key::kLeft, key::kRight, key::kUp,     key::kDown, key::kPageDown, key::kHome,  key::kEnd,   key::kSpace,
    key::kF2,   key::kF3,    key::kDelete, key::kBack, key::kF5,       key::kF6,    key::kF8,    key::kF8,
    key::kF9,   'C',         'F',          'G'};
constexpr std::int16_t kCon[] = {0, 0, 0, 0, 0, shift::kShift, shift::kCtrl, shift::kAlt};
constexpr const char* kTextos[] = {
    "1",   "2", "3.5",    "10",  "0",  ".",      "-", "1,5", "x'y",           "1,690.5", "1.2.3,4",
    "abc", " ", "TRUFAS", "ñÑ€", "😀é", "HARINA", "9", "99",  "7501000100011", "a",       "NAV"};
constexpr const char* kArticulos[] = {"TRUFAS", "NAV", "7501000100042", "HARINA", "NO-HAY", "x'y"};
constexpr const char* kCantidades[] = {"1", "2.5", "12", "0", "", "."};

/// The shop with the host's own windows, and one editor in it.
class Paseo : public Tienda {
 public:
  explicit Paseo(unsigned semilla) : Tienda(":memory:"), azar(semilla) {
    Opciones opciones = anfitrion->TraeOpciones();
    opciones.ruta = (std::filesystem::temp_directory_path() / "zuvi_azar").string();
    anfitrion->PonOpciones(opciones);
    for (const char* clave : {"Op001", "Op005", "Op006"})
      anfitrion->PonGancho(clave, [this](PeticionProceso& p) { p.bandera = azar.Uno(10); });
    anfitrion->TraeTraza().Escucha([this](Suceso suceso, const std::string& texto) {
      if (suceso != Suceso::Sentencia) return;
      for (const char* escribe : {"INSERT INTO op", "UPDATE op", "UPDATE Op ", "DELETE FROM op"})
        if (texto.starts_with(escribe)) escritas.push_back(texto);
    });
    editor_->PonAmbiente(produccion->TraeAmbiente());
    PonVisita();
  }
  ~Paseo() {
    for (int intento = 0; intento < 100 && !escritorio.Forms().empty(); ++intento)
      escritorio.Forms().back()->Unload();
    v.reset();
    editor_.reset();
    modulo_.Suelta();
    std::filesystem::remove_all(anfitrion->TraeOpciones().ruta);
  }

  /// Opens an order unless one is open: in "CONSULTA" any, otherwise a new or a free one.
  void Abre(bool consulta) {
    while (!v || v->Closed()) {
      v.reset();
      anfitrion->PonInteraccion(std::make_unique<RespuestasInteraccion>(azar.Uno(2) ? "no,si,si" : "si"));
      const std::int32_t ultima = static_cast<std::int32_t>(Numero("SELECT MAX(op) FROM op"));
      const std::int32_t op = 101 + azar(static_cast<std::size_t>(ultima - 100));
      if (consulta)
        editor_->ConsultaOp(op);
      else if (azar.Uno(3))
        editor_->NuevaOp();
      else if (Numero("SELECT COUNT(*) FROM op WHERE estado = 'PE' AND op = " + Decimal(op)) == 1)
        editor_->ModificaOp(op);
      if (!escritorio.Forms().empty()) v = std::dynamic_pointer_cast<frmOp>(escritorio.Forms().back());
    }
  }

  /// One of these, each as often in a hundred as it says.
  void Suceso1() {
    const std::pair<int, std::function<void()>> sucesos[] = {
        {32, [this] { v->Press(azar.De(kTeclas), azar.De(kCon)); }},
        {24, [this] { v->Type(azar.De(kTextos)); }},
        {13, [this] { azar.De(v->Controls())->Click(); }},
        {6, [this] { azar.De(v->Controls())->DblClick(); }},
        {11, [this] { PulsaCelda(); }},
        {8, [this] { AgregaLinea(); }},
        {1, [this] { C<DatePicker>("DTPicker1").UserPicked(Date::FromSerial(46000 + azar(60))); }},
        {1, [this] { v->FocusMoved(nullptr); }},
        {1, [this] { escritorio.Advance(azar(20)); }},
        {1, [this] { v->Resized(Dip(700 + azar(600)), Dip(500 + azar(400))); }},
        {2, [this] { v->Unload(azar.Uno(2) ? UnloadMode::TitleBar : UnloadMode::Code); }}};
    int resto = azar(100);
    for (const auto& [peso, suceso] : sucesos)
      if ((resto -= peso) < 0) return suceso();
  }

  /// What the open editor shows against what is stored.
  void CompruebaOrden() {
    ASSERT_LE(escritorio.Forms().size(), 1u);
    ASSERT_LE(anfitrion->Ventanas().size(), 1u);
    for (const auto& aviso : escritorio.Avisos())
      ASSERT_TRUE(aviso.starts_with("Error occured:\r\nModule: frmOp\r\nFunction: ")) << aviso;
    escritorio.Olvida();
    std::set<double> ocupadas;
    for (const auto r = Base().Consulta("SELECT op FROM op WHERE ocupado <> 0"); !r->Eof(); r->MoveNext())
      ocupadas.insert(ToNumber(r->Campo(0)));
    std::set<double> esperadas{kOcupadaDesdeAntes};
    if (v && !v->Closed() && v->Modo() == "MODIFICACION") {
      // Finishing releases the order; without lines its window stays.
      if (C<Button>("Command5").Enabled() || ocupadas.contains(v->Op())) esperadas.insert(v->Op());
    }
    ASSERT_EQ(ocupadas, esperadas);
    if (!v || v->Closed() || v->Op() == 0) return;

    std::map<std::string, std::string> mostradas;
    auto& rejilla = C<FlexGrid>("fg2");
    for (std::int32_t i = 1; i < rejilla.Rows() && !rejilla.TextMatrix(i, 0).empty(); ++i)
      ASSERT_TRUE(mostradas.emplace(rejilla.TextMatrix(i, 5), rejilla.TextMatrix(i, 1)).second);
    std::size_t guardadas = 0;
    for (const auto r =
             Base().Consulta("SELECT id_entrada, cantidad FROM oppart WHERE op = " + Decimal(v->Op()));
         !r->Eof(); r->MoveNext(), ++guardadas) {
      const auto fila = mostradas.find(ToText(r->Campo(0)));
      ASSERT_NE(fila, mostradas.end()) << "falta la partida " << ToText(r->Campo(0));
      // A text that is no quantity was reported and does not stay; numbers as texts have 15 digits.
      const double numero = datos_->ValorNumerico(fila->second);
      ASSERT_NEAR(numero, ToNumber(r->Campo(1)), 1e-14 * std::abs(numero));
    }
    ASSERT_EQ(guardadas, mostradas.size());
  }

  Azar azar;
  std::vector<std::string> escritas;
  int visitas = 0;  // to windows of the host
  std::shared_ptr<frmOp> v;

 private:
  template <class T>
  T& C(const char* nombre) {
    return Control<T>(*v, nombre);
  }
  TextBox& F(std::int32_t indice) { return Control<TextBox>(*v, "txtFields", indice); }
  void PulsaCelda() {
    auto& rejilla = C<FlexGrid>("fg2");
    if (!rejilla.Enabled()) return;
    rejilla.Click();
    // A user sees no hidden column.
    constexpr std::array<std::int32_t, 4> kVisibles{0, 1, 1, 4};
    if (rejilla.HasFocus()) rejilla.UserClicked(azar(azar.Uno(10) ? 105 : 5), azar.De(kVisibles));
    if (rejilla.HasFocus() && azar.Uno(2)) rejilla.DblClick();
    if (!v->Closed() && azar.Uno(20)) rejilla.SetTopRow(azar(101));
  }
  void AgregaLinea() {
    if (!F(4).CanFocus()) return;
    F(4).SetFocus();
    v->Type(azar.De(kArticulos));
    v->Press(key::kTab);
    v->Type(azar.De(kCantidades));
    v->Press(azar.Uno(4) ? key::kF9 : key::kEnter);
  }
  /// What the user does in the next window of the host: looks, types, chooses or goes away.
  void PonVisita() {
    escritorio.OnModal([this](Form& ventana) {
      PonVisita();
      ++visitas;
      for (int i = azar(5); i > 0 && !ventana.Closed(); --i)
        azar.Uno(2) ? ventana.Type(azar.De(kTextos)) : ventana.Press(azar.De(kTeclas));
      if (!ventana.Closed() && !azar.Uno(3)) ventana.Press(key::kEnter);
    });
  }

  FabricaVentanas ventanas_{anfitrion, escritorio, fabrica};
  Modulo modulo_{ventanas_, escritorio, PilaCasiAgotada};
  std::shared_ptr<Produccion> editor_ = std::make_shared<Produccion>(modulo_);
  std::shared_ptr<AccesoDatos> datos_ = Nuevo<AccesoDatos>();
};

/// In consultation or not, and the seed.
class PaseoAlAzar : public testing::TestWithParam<std::tuple<bool, unsigned>> {};
INSTANTIATE_TEST_SUITE_P(Semilla, PaseoAlAzar,
                         testing::Combine(testing::Bool(), testing::Values(20261u, 20262u)));

TEST_P(PaseoAlAzar, LoQueSeVeEsLoQueEstaGuardado) {
  const auto& [consulta, semilla] = GetParam();
  Paseo paseo(semilla);
  std::map<std::string, int> modos;
  for (int i = 0; i < kSucesos; ++i) {
    SCOPED_TRACE(i);
    const auto antes = paseo.v;
    paseo.Abre(consulta);
    modos[paseo.v->Modo()] += paseo.v != antes;
    paseo.Suceso1();
    paseo.CompruebaOrden();
    if (consulta) {
      ASSERT_THAT(paseo.escritas, testing::IsEmpty());
    }
    if (HasFatalFailure()) return;
  }
  // It was a walk through everything.
  EXPECT_GT(consulta ? modos["CONSULTA"] : std::min(modos["ALTA"], modos["MODIFICACION"]), 20);
  if (consulta) return;
  EXPECT_GT(paseo.visitas, 50);
  for (const char* que :
       {"INSERT INTO op ", "INSERT INTO oppart", "UPDATE oppart", "DELETE FROM oppart", "UPDATE op SET"})
    EXPECT_GT(std::ranges::count_if(paseo.escritas, [&](const std::string& s) { return s.starts_with(que); }),
              5)
        << que;
}

}  // namespace
}  // namespace zuvi::host
