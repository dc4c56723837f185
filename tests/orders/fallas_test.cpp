// The editor with every host call being once the one that fails: what was done is a beginning of what would
// have been done, the user is told where it broke, and nothing stays behind.
#include <algorithm>
#include <array>
#include <set>

#include "tests/orders/editor.h"
#include "tests/support/fallas.h"

namespace zuvi::pruebas {
namespace {

/// Steps that leave the component: statements (a built one as a whole), numbers, processes, questions, paper.
Pasos PasosDe(const std::vector<std::string>& bitacora) {
  constexpr std::array kPasos{"Consulta(",     "EjecutaSQL(", "Open(",          "ExisteClave(",
                              "Ubicacion",     "Siguiente",   "IniciaProceso(", "ImprimeReporte(",
                              "Pregunta(",     "Padre.",      "LiberaVentana(", "PreparaVentana(",
                              "ParametrosEsta"};
  Pasos pasos;
  std::string construida;
  for (const auto& linea : bitacora) {
    if (linea == "Limpia()") construida.clear();
    if (linea == "Ejecuta()") pasos.push_back(construida);
    for (const char* parte : {"Tipo(", "AgregaCampo(", "Condicion(", "Genera("})
      if (linea.starts_with(parte)) construida += linea + " ";
    for (const char* paso : kPasos)
      if (linea.starts_with(paso)) pasos.push_back(linea);
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

/// Whether the failure is an error of the call; the others spoil what a call gives back.
bool EsError(Clase clase) { return clase <= Clase::SinMiembro; }

class Puesto : public Mesa {
 public:
  Puesto() {
    t.mundo.parametros = {{"Almacen", std::int32_t{9}}, {"Lector", std::int16_t{0}}};
    PonOrden({}, {Linea(71), Linea(72)});
    t.prod->PonParent(NuevoPadre(t.mundo));
  }
  Pasos TomaPasos() { return PasosDe(std::exchange(t.mundo.bitacora, {})); }
  /// Lets everything go; what is left of the host then.
  int Despide() {
    if (v) v->Unload();
    EXPECT_TRUE(t.escritorio.Forms().empty());
    v.reset();
    return t.Despide();
  }
};

// Loading.

struct Carga {
  const char* nombre;  // the method
};
const Carga kCargas[] = {{"NuevaOp"}, {"ModificaOp"}, {"ConsultaOp"}};

using ParametrosDeCarga = std::tuple<Carga, Modo>;
class FallasDeCarga : public testing::TestWithParam<ParametrosDeCarga> {};

TEST_P(FallasDeCarga, CallaYNoMuestraNadaAMedias) {
  const auto& [carga, modo] = GetParam();
  const auto& [clase, persistente] = modo;
  const char* const metodo = carga.nombre;
  const bool consulta = metodo == std::string("ConsultaOp");
  Puesto sano;
  ASSERT_TRUE(sano.Abre(metodo));
  const Pasos limpio = sano.TomaPasos();
  constexpr std::size_t kSaltables = 3;
  ASSERT_GT(limpio.size(), kSaltables);
  ASSERT_TRUE(limpio[limpio.size() - kSaltables].starts_with("ParametrosEstacion"));
  int n = 0;
  for (int fallas = 1; fallas > 0;) {
    SCOPED_TRACE(++n);
    Puesto p;
    p.t.mundo.falla = {n, persistente, clase};
    p.Abre(metodo);
    fallas = std::exchange(p.t.mundo.fallas_dadas, 0);
    p.t.mundo.falla = {};
    const Pasos hecho = p.TomaPasos();
    // A field that is filled formats itself, which ends with a report of its own and nothing else.
    const auto avisos = p.Avisos();
    for (const auto& aviso : avisos)
      EXPECT_EQ(aviso, Puesto::Informe("txtFields_Change", Descripcion(clase)));
    if (!persistente && !avisos.empty()) {
      EXPECT_EQ(avisos.size(), 1u);
      EXPECT_EQ(hecho, limpio);
    }
    if (p.v && consulta) {
      EXPECT_FALSE(p.C<Button>("Command5").Enabled());
      // Whatever fails from the switch of the mode on is passed over, step by step.
      ASSERT_GE(hecho.size(), limpio.size() - kSaltables);
      EXPECT_TRUE(std::equal(limpio.begin(), limpio.end() - kSaltables, hecho.begin()));
      if (!persistente) {
        EXPECT_GE(hecho.size() + 1, limpio.size());
      }
    } else if (p.v) {
      EXPECT_EQ(hecho, limpio);
    } else {
      EXPECT_GT(fallas, 0);
      EXPECT_TRUE(p.t.escritorio.Forms().empty());
      EXPECT_TRUE(EsComienzo(SinSoltar(hecho), limpio));
      if (consulta) {
        EXPECT_LE(hecho.size(), limpio.size() - kSaltables);
      }
      // A mark that nobody is left to take off is taken off at once, unless that fails too.
      if (!persistente || !EsError(clase)) {
        EXPECT_TRUE(Marcadas(hecho).empty());
      }
      EXPECT_LE(hecho.size() - SinSoltar(hecho).size(), 1u);
      ASSERT_TRUE(p.Abre(metodo));
      EXPECT_EQ(p.TomaPasos(), limpio);
    }
    EXPECT_TRUE(p.v->Visible());
    EXPECT_EQ(p.Despide(), 0);
    EXPECT_TRUE(p.Avisos().empty());
  }
  EXPECT_GT(n, consulta || EsError(clase) ? 10 : 1);
}

// Working.

/// Procedures whose failure leaves nothing undone, and those that end where they failed.
const std::set<std::string> kSiguen{"txtFields_KeyPress", "txtFields_LostFocus", "txtFields_DblClick",
                                    "txtFields_KeyDown",  "MSFlexGridEdit",      "txtEdit_KeyPress"};
const std::set<std::string> kTerminan{"LlenaPartida",    "NuevaPartida",   "CreaOp",        "SalvaCambios",
                                      "fg2_KeyDown",     "Command1_Click", "ValidaTab1",    "Command5_Click",
                                      "CuantasPartidas", "SalvaOp",        "SalvaPartidas", "ImprimeOp",
                                      "Form_Unload"};
/// After this one the line is entered all the same.
const std::string kDescribe = "PonDescripcion";

struct Trabajo {
  const char *nombre, *metodo;
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
    {"PrimeraLinea", "NuevaOp", "Tipo(INSERT) AgregaCampo(oppart",
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
    {"Celda", "ModificaOp", "Tipo(UPDATE) Condicion(id_entrada = 71)", &VeACelda,
     [](Puesto& p) { p.v->Type("07"), p.v->Press(key::kEnter); }},
    {"LineaBorrada", "ModificaOp", "EjecutaSQL(DELETE FROM oppart WHERE id_entrada = 71)", &VeACelda,
     [](Puesto& p) { p.v->Press(key::kDelete); }},
    {"Busquedas", "ModificaOp", "IniciaProceso(OP007", [](Puesto& p) { p.F(0).SetFocus(); },
     [](Puesto& p) {
       p.F(0).DblClick();
       for (const std::int16_t tecla : {key::kF2, key::kDown, key::kF6}) p.v->Press(tecla);
     }},
    {"Confirmada", "ModificaOp", kCerro, [](Puesto& p) { p.Casilla("Check2").SetValue(1); },
     [](Puesto& p) { p.Finaliza(); }},
    {"Cancelar", "ModificaOp", kCerro, [](Puesto&) {}, &Cancela},
    {"CerrarConsulta", "ConsultaOp", kCerro, [](Puesto&) {}, &Cancela},
};

/// What one failure leaves undone is one stretch: from the step that failed to the end of the procedure that
/// was reported.
void ExigeUnSoloHueco(const std::string& procedimiento, const Pasos& hecho, const Pasos& limpio) {
  const auto sigue = std::ranges::find_if(limpio, [&](const std::string& paso) {
    return kSiguen.contains(procedimiento) ||
           (procedimiento == kDescribe && paso.starts_with("ExisteClave("));
  });
  const auto resto = limpio.end() - sigue;
  ASSERT_GE(std::ssize(hecho), resto);
  const auto corte = hecho.end() - resto;
  EXPECT_TRUE(EsComienzo({hecho.begin(), corte}, {limpio.begin(), sigue})) << testing::PrintToString(hecho);
  EXPECT_TRUE(std::equal(corte, hecho.end(), sigue));
}

std::string ProcedimientoDe(const std::string& aviso) {
  const std::string marca = "Function: ";
  const auto desde = aviso.find(marca) + marca.size();
  return aviso.substr(desde, aviso.find("\r\n", desde) - desde);
}

using ParametrosDeUso = std::tuple<Trabajo, Modo>;
class FallasDeUso : public testing::TestWithParam<ParametrosDeUso> {};

TEST_P(FallasDeUso, SeInformanYSePuedeSeguir) {
  const auto& [trabajo, modo] = GetParam();
  const auto& [clase, persistente] = modo;
  Pasos limpio;
  int n = 0;
  for (int fallas = 1; fallas > 0; ++n) {
    SCOPED_TRACE(n);
    Puesto p;
    ASSERT_TRUE(p.Abre(trabajo.metodo));
    trabajo.prepara(p);
    const Pasos antes = p.TomaPasos();
    p.t.mundo.falla = {n, persistente, clase};
    trabajo.actua(p);
    // The first run is the clean one.
    if (n > 0) fallas = p.t.mundo.fallas_dadas;
    p.t.mundo.falla = {};
    const Pasos hecho = p.TomaPasos();
    const auto avisos = p.Avisos();
    if (n == 0) limpio = hecho;
    const bool cierra = trabajo.logro == kCerro;
    const auto logrado = [&](const Pasos& pasos) {
      return std::ranges::any_of(pasos,
                                 [&](const std::string& paso) { return paso.starts_with(trabajo.logro); });
    };

    for (const auto& aviso : avisos) {
      EXPECT_EQ(aviso, Puesto::Informe(ProcedimientoDe(aviso), Descripcion(clase)));
      const std::string cual = ProcedimientoDe(aviso);
      ASSERT_TRUE(kSiguen.contains(cual) || kTerminan.contains(cual) || cual == kDescribe) << aviso;
    }
    const bool al_cerrar = !avisos.empty() && ProcedimientoDe(avisos.back()) == "Form_Unload";
    if (avisos.empty()) {
      EXPECT_EQ(hecho, limpio);
      EXPECT_TRUE(logrado(hecho));
    } else if (!persistente) {
      ASSERT_EQ(avisos.size(), 1u);
      ExigeUnSoloHueco(ProcedimientoDe(avisos[0]), al_cerrar ? SinSoltar(hecho) : hecho,
                       al_cerrar ? SinSoltar(limpio) : limpio);
    } else if (EsError(clase)) {
      EXPECT_TRUE(EsComienzo(SinSoltar(hecho), SinSoltar(limpio)));
    }

    // Gone or still usable; finishing is tried once.
    Pasos todo = antes;
    todo.insert(todo.end(), hecho.begin(), hecho.end());
    const bool cerrada = p.v->Closed();
    EXPECT_EQ(cerrada, cierra && (al_cerrar || hecho == limpio));
    if (!cerrada) {
      if (!cierra || p.Boton("Command5").Enabled()) {
        trabajo.prepara(p);
        trabajo.actua(p);
        EXPECT_TRUE(logrado(hecho) || logrado(PasosDe(p.t.mundo.bitacora)));
        EXPECT_EQ(p.v->Closed(), cierra);
      }
      p.v->Unload();
      const Pasos resto = p.TomaPasos();
      todo.insert(todo.end(), resto.begin(), resto.end());
    }
    const auto suelta =
        std::ranges::find_if(limpio, [](const std::string& paso) { return paso.starts_with(kSuelta); });
    const bool sin_soltar = EsError(clase) && (persistente || hecho == Pasos(limpio.begin(), suelta));
    if (!cerrada || !sin_soltar) {
      EXPECT_TRUE(Marcadas(todo).empty()) << testing::PrintToString(todo);
    }
    EXPECT_TRUE(p.Avisos().empty());
    EXPECT_EQ(p.Despide(), 0);
  }
  if (EsError(clase)) {
    EXPECT_GT(n, 3);
  }
}

INSTANTIATE_TEST_SUITE_P(Modos, FallasDeCarga,
                         testing::Combine(testing::ValuesIn(kCargas), testing::ValuesIn(Modos())),
                         &NombreDeCaso<ParametrosDeCarga>);
INSTANTIATE_TEST_SUITE_P(Modos, FallasDeUso,
                         testing::Combine(testing::ValuesIn(kTrabajos), testing::ValuesIn(Modos())),
                         &NombreDeCaso<ParametrosDeUso>);

}  // namespace
}  // namespace zuvi::pruebas
