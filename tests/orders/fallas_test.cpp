// The editor with every host call being once the one that fails: what was done is a beginning of what would
// have been done, the user is told where it broke, and nothing stays behind.
#include "tests/support/fallas.h"

#include <map>
#include <set>

#include "tests/orders/editor.h"

namespace zuvi::pruebas {
namespace {

/// Steps that leave the component: statements (a built one as a whole), numbers, processes, questions, paper.
Pasos TomaPasos(Mesa& p) {
  Pasos pasos;
  std::string construida;
  for (const auto& linea : std::exchange(p.t.mundo.bitacora, {})) {
    if (linea == "Limpia()") construida.clear();
    if (linea == "Ejecuta()") pasos.push_back(construida);
    if (!PasosDe({linea}, {"Tipo(", "AgregaCampo(", "Condicion(", "Genera("}).empty())
      construida += linea + " ";
    else if (!PasosDe({linea}, {"Consulta(", "EjecutaSQL(", "Open(", "ExisteClave(", "Ubicacion", "Siguiente",
                                "IniciaProceso(", "ImprimeReporte(", "Pregunta(", "Padre.", "LiberaVentana(",
                                "PreparaVentana(", "ParametrosEsta"})
                  .empty())
      pasos.push_back(linea);
  }
  return pasos;
}

/// Orders that were marked busy and not released since: a new one that failed half-way may be numbered twice.
std::set<std::string> Marcadas(const Pasos& pasos) {
  std::set<std::string> marcadas;
  for (const auto& paso : pasos) {
    const auto desde = paso.find_first_of("0123456789", paso.find("p = "));
    if (desde == std::string::npos) continue;
    const std::string op = paso.substr(desde, paso.find(')', desde) - desde);
    if (paso.find(", ocupado, i2 1)") != std::string::npos) marcadas.insert(op);
    if (paso.find(", ocupado, i2 0)") != std::string::npos || paso.starts_with(kSuelta)) marcadas.erase(op);
  }
  return marcadas;
}

Pasos SinSoltar(Pasos pasos) {
  std::erase_if(pasos, [](const std::string& paso) { return paso.starts_with(kSuelta); });
  return pasos;
}

class Puesto : public Mesa {
 public:
  Puesto() {
    t.mundo.parametros = {{"Almacen", std::int32_t{9}}, {"Lector", std::int16_t{0}}};
    PonOrden({}, {Linea(71), Linea(72)});
    t.prod->PonParent(NuevoPadre(t.mundo));
  }
  /// Begins to fail; how many calls did when it ends.
  void Falla(const Modo& modo, int n) { t.mundo.falla = {n, modo.persistente, modo.clase}; }
  int Sana() {
    t.mundo.falla = {};
    return std::exchange(t.mundo.fallas_dadas, 0);
  }
  ~Puesto() {
    if (v) v->Unload();
    EXPECT_TRUE(t.escritorio.Forms().empty());
    v.reset();
    EXPECT_TRUE(Avisos().empty());
    EXPECT_EQ(t.Despide(), 0);
  }
};

TEST(FallasDelEditor, LaCargaCallaYNoMuestraNadaAMedias) {
  constexpr std::ptrdiff_t kSaltables = 3;  // of a viewed order: from the switch of the mode on
  for (const char* metodo : {"NuevaOp", "ModificaOp", "ConsultaOp"}) {
    const bool consulta = metodo == std::string("ConsultaOp");
    Pasos limpio;
    const int corridas = EnCadaLlamada([&](const Modo& modo, int n) {
      Puesto p;
      p.Falla(modo, n);
      p.Abre(metodo);
      const int fallas = p.Sana();
      const Pasos hecho = TomaPasos(p);
      if (n == 0) limpio = hecho;
      // A field that is filled formats itself, which ends with a report of its own and nothing else.
      const auto avisos = p.Avisos();
      for (const auto& aviso : avisos)
        EXPECT_EQ(aviso, Puesto::Informe("txtFields_Change", modo.Descripcion()));
      EXPECT_TRUE(modo.persistente || avisos.empty() || (avisos.size() == 1 && hecho == limpio));
      if (p.v && consulta) {
        EXPECT_FALSE(p.C<Button>("Command5").Enabled());
        EXPECT_TRUE(EsComienzo({limpio.begin(), limpio.end() - kSaltables}, hecho));
        EXPECT_TRUE(modo.persistente || hecho.size() + 1 >= limpio.size());
      } else if (p.v) {
        EXPECT_EQ(hecho, limpio);
      } else {
        EXPECT_TRUE(fallas > 0 && p.t.escritorio.Forms().empty());
        EXPECT_TRUE(EsComienzo(SinSoltar(hecho), limpio));
        EXPECT_TRUE(!consulta || std::ssize(hecho) <= std::ssize(limpio) - kSaltables);
        // A mark that nobody is left to take off is taken off at once, unless that fails too.
        EXPECT_TRUE((modo.persistente && modo.EsError()) || Marcadas(hecho).empty());
        EXPECT_LE(hecho.size() - SinSoltar(hecho).size(), 1u);
        EXPECT_TRUE(p.Abre(metodo));
        EXPECT_EQ(TomaPasos(p), limpio);
      }
      EXPECT_TRUE(p.v && p.v->Visible());
      return fallas;
    });
    EXPECT_GT(corridas, 10);
  }
}

/// Procedures that report, and the step with which the work goes on after them: the whole of it (""), none.
const char* const kNada = "-";
const std::map<std::string, std::string> kProcedimientos{{"frmOp.txtFields_KeyPress", ""},
                                                         {"frmOp.txtFields_LostFocus", ""},
                                                         {"frmOp.txtFields_DblClick", ""},
                                                         {"frmOp.txtFields_KeyDown", ""},
                                                         {"frmOp.MSFlexGridEdit", ""},
                                                         {"frmOp.txtEdit_KeyPress", ""},
                                                         {"frmOp.PonDescripcion", "ExisteClave("},
                                                         {"frmOp.LlenaPartida", kNada},
                                                         {"frmOp.NuevaPartida", kNada},
                                                         {"frmOp.CreaOp", kNada},
                                                         {"frmOp.SalvaCambios", kNada},
                                                         {"frmOp.fg2_KeyDown", kNada},
                                                         {"frmOp.Command1_Click", kNada},
                                                         {"frmOp.ValidaTab1", kNada},
                                                         {"frmOp.Command5_Click", kNada},
                                                         {"frmOp.CuantasPartidas", kNada},
                                                         {"frmOp.SalvaOp", kNada},
                                                         {"frmOp.SalvaPartidas", kNada},
                                                         {"frmOp.ImprimeOp", kNada},
                                                         {"frmOp.Form_Unload", kNada}};

struct Trabajo {
  const char* metodo;
  /// Begins the step that shows that the work was done.
  const char* logro;
  void (*prepara)(Puesto&);
  void (*actua)(Puesto&);
};

constexpr const char* kCerro = "LiberaVentana(";

void VeACelda(Puesto& p) {
  p.Rejilla().SetFocus();
  p.Rejilla().MoveTo(1, 1);
}
void Cancela(Puesto& p) { p.Boton("Command2").Click(); }

const Trabajo kTrabajos[] = {
    {"NuevaOp", "Tipo(INSERT) AgregaCampo(oppart",
     [](Puesto& p) {
       // The description is there already: whether it was looked up again changes nothing in the line.
       p.F(0).SetFocus();
       p.F(1).SetText("Mesa de pino");
       for (const int i : {4, 5}) p.F(i).SetText("");
     },
     [](Puesto& p) {
       p.F(4).SetFocus();
       p.v->Type("MESA");
       p.v->Press(key::kTab);
       p.v->Type("3");
       p.v->Press(key::kEnter);
     }},
    // The first digit opens the editor of the cell; without it the number is the same.
    {"ModificaOp", "Tipo(UPDATE) Condicion(id_entrada = 71)", &VeACelda,
     [](Puesto& p) { p.v->Type("07"), p.v->Press(key::kEnter); }},
    {"ModificaOp", "EjecutaSQL(DELETE FROM oppart WHERE id_entrada = 71)", &VeACelda,
     [](Puesto& p) { p.v->Press(key::kDelete); }},
    {"ModificaOp", "IniciaProceso(OP007", [](Puesto& p) { p.F(0).SetFocus(); },
     [](Puesto& p) {
       p.F(0).DblClick();
       for (const std::int16_t tecla : {key::kF2, key::kDown, key::kF6}) p.v->Press(tecla);
     }},
    {"ModificaOp", kCerro, [](Puesto& p) { p.Casilla("Check2").SetValue(1); },
     [](Puesto& p) { p.Finaliza(); }},
    {"ModificaOp", kCerro, [](Puesto&) {}, &Cancela},
    {"ConsultaOp", kCerro, [](Puesto&) {}, &Cancela},
};

/// What one failure leaves undone is one stretch: from the step that failed to the one with which the work
/// goes on after the procedure.
void ExigeUnSoloHueco(const std::string& procedimiento, const Pasos& hecho, const Pasos& limpio) {
  const std::string& sigue = kProcedimientos.at(procedimiento);
  const auto resto = limpio.end() - std::ranges::find_if(limpio, [&](const std::string& paso) {
                       return paso.starts_with(sigue);
                     });
  ASSERT_GE(std::ssize(hecho), resto);
  EXPECT_TRUE(EsComienzo({hecho.begin(), hecho.end() - resto}, {limpio.begin(), limpio.end() - resto}))
      << testing::PrintToString(hecho);
  EXPECT_TRUE(std::equal(hecho.end() - resto, hecho.end(), limpio.end() - resto));
}

TEST(FallasDelEditor, ElTrabajoSeInformaYSePuedeSeguir) {
  std::set<std::string> informaron, todos;
  for (const auto& [procedimiento, sigue] : kProcedimientos) todos.insert(procedimiento);
  for (const auto& [metodo, logro, prepara, actua] : kTrabajos) {
    const bool cierra = logro == kCerro;
    const auto logrado = [logro = logro](const Pasos& pasos) { return !PasosDe(pasos, {logro}).empty(); };
    SCOPED_TRACE(logro);
    Pasos limpio;
    EnCadaLlamada([&](const Modo& modo, int n) {
      Puesto p;
      EXPECT_TRUE(p.Abre(metodo));
      prepara(p);
      Pasos todo = TomaPasos(p);
      p.Falla(modo, n);
      actua(p);
      const int fallas = p.Sana();
      const Pasos hecho = TomaPasos(p);
      if (n == 0) limpio = hecho;
      const auto avisos = p.Avisos();
      std::string ultimo;
      for (const auto& aviso : avisos) {
        informaron.insert(ultimo = LugarDe(aviso));
        EXPECT_TRUE(todos.contains(ultimo)) << aviso;
        EXPECT_TRUE(aviso.ends_with("\r\nDescription: " + modo.Descripcion())) << aviso;
      }
      const bool al_cerrar = ultimo == "frmOp.Form_Unload";
      if (avisos.empty()) {
        EXPECT_EQ(hecho, limpio);
        EXPECT_TRUE(logrado(hecho));
      } else if (!modo.persistente) {
        EXPECT_EQ(avisos.size(), 1u);
        ExigeUnSoloHueco(ultimo, al_cerrar ? SinSoltar(hecho) : hecho,
                         al_cerrar ? SinSoltar(limpio) : limpio);
      } else if (modo.EsError()) {
        EXPECT_TRUE(EsComienzo(SinSoltar(hecho), SinSoltar(limpio)));
      }

      // Gone or still usable; finishing is tried once.
      todo.insert(todo.end(), hecho.begin(), hecho.end());
      const bool cerrada = p.v->Closed();
      EXPECT_EQ(cerrada, cierra && (al_cerrar || hecho == limpio));
      if (!cerrada) {
        if (!cierra || p.Boton("Command5").Enabled()) {
          prepara(p);
          actua(p);
          EXPECT_TRUE(logrado(hecho) || logrado(p.t.mundo.bitacora) || logrado(TomaPasos(p)));
          EXPECT_EQ(p.v->Closed(), cierra);
        }
        p.v->Unload();
        const Pasos resto = TomaPasos(p);
        todo.insert(todo.end(), resto.begin(), resto.end());
      }
      // Only who could not release it leaves an order marked.
      const auto suelta =
          std::ranges::find_if(limpio, [](const std::string& paso) { return paso.starts_with(kSuelta); });
      const bool sin_soltar =
          cerrada && modo.EsError() && (modo.persistente || hecho == Pasos(limpio.begin(), suelta));
      EXPECT_TRUE(sin_soltar || Marcadas(todo).empty()) << testing::PrintToString(todo);
      return fallas;
    });
  }
  EXPECT_EQ(informaron, todos);
}

}  // namespace
}  // namespace zuvi::pruebas
