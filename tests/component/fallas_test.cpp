// Every host call of every batch operation is once the one that fails, in every way in which a host fails.
#include <gtest/gtest.h>

#include "tests/support/fallas.h"
#include "tests/support/taller.h"

namespace zuvi::pruebas {
namespace {

using Marco = std::vector<std::string>;

/// A batch operation on a prepared shop; `reporta` is the procedure that its reports name, null for silence.
struct Operacion {
  const char* nombre;
  const char* reporta;
  void (*prepara)(Taller&);
  bool (*corre)(Produccion&);
};

void PonOrdenDeTres(Taller& t) { t.PonOrden("7", "PE", {{"MESA", 1.0}, {"MESA", 2.0}, {"MESA", 3.0}}, 3); }

/// A sub-kit that stops being one after it was taken apart twice, so that a clean run ends.
void PonSubKit(Taller& t) {
  t.PonArticulo("PATA", 10.5, std::int16_t{-1});
  t.PonArticulo("TORNILLO", 1.0);
  t.PonKit("PATA", 1.0, {{"TORNILLO", 8, 2}, {"TABLA", 1, 2}});
  t.mundo.gancho = [&t, vistas = 0](const std::string& linea) mutable {
    if (linea.find("prods WHERE articulo = 'PATA'") == std::string::npos) return;
    if (++vistas == 3) t.PonArticulo("PATA", 10.5);
  };
}

const Operacion kOperaciones[] = {
    {"Ensamble", "Ensamble", [](Taller&) {}, [](Produccion& p) { return p.Ensamble("MESA", 9, 6, 0), true; }},
    {"Desensamble", "Desensamble", &PonSubKit,
     [](Produccion& p) { return p.Desensamble("MESA", 1.5, 9, 0), true; }},
    {"Entrega", "Ensamble", &PonOrdenDeTres,
     [](Produccion& p) { return p.EntregaProductoTerminado(7), true; }},
    {"CancelaPendiente", nullptr, &PonOrdenDeTres, [](Produccion& p) { return p.CancelaOp(7); }},
    {"CancelaConfirmada", nullptr, [](Taller& t) { t.PonOrden("7", "CO", {}, 0); },
     [](Produccion& p) { return p.CancelaOp(7); }},
};

struct Corrida {
  std::vector<Marco>
      marcos;  // what each call of Ensamble or Desensamble did by itself, in order; 0 is outside
  std::vector<std::string> avisos;
  bool resultado = false;
  int fallas = 0;
  int vivos = 0;
  bool operator==(const Corrida&) const = default;
};

/// Statements and movements by the call that made them.
std::vector<Marco> Marcos(const std::vector<std::string>& bitacora) {
  std::vector<Marco> marcos(1);
  std::vector<std::size_t> abiertos{0};
  for (const auto& linea : bitacora) {
    if (linea.starts_with("{")) {
      abiertos.push_back(marcos.size());
      marcos.emplace_back();
    } else if (linea == "}") {
      abiertos.pop_back();
    } else if (linea.starts_with("Consulta(") || linea.starts_with("EjecutaSQL(")) {
      marcos[abiertos.back()].push_back(linea);
    } else if (linea.starts_with("Documento") && linea.find(".Aplica") != std::string::npos) {
      marcos[abiertos.back()].push_back("movimiento");
    }
  }
  return marcos;
}

Corrida Corre(const Operacion& operacion, bool por_nombre, Falla falla) {
  Taller t(por_nombre);
  t.PonMesa();
  operacion.prepara(t);
  t.mundo.respuestas = {true, true};
  t.mundo.falla = falla;
  Corrida c;
  c.resultado = operacion.corre(*t.prod);
  c.marcos = Marcos(t.mundo.bitacora);
  c.avisos = t.escritorio.Avisos();
  c.fallas = t.mundo.fallas_dadas;
  t.prod.reset();
  t.ambiente.reset();
  t.modulo.Suelta();
  c.vivos = t.mundo.vivos;
  return c;
}

using Parametros = std::tuple<Operacion, Modo>;
class Fallas : public testing::TestWithParam<Parametros> {};

TEST_P(Fallas, LoEjecutadoEsUnComienzoDeLoLimpio) {
  const auto& [operacion, modo] = GetParam();
  const auto& [por_nombre, clase, persistente] = modo;
  const Corrida limpia = Corre(operacion, por_nombre, {});
  ASSERT_TRUE(limpia.avisos.empty());
  ASSERT_TRUE(limpia.resultado);
  int n = 0;
  for (;;) {
    SCOPED_TRACE(++n);
    const Corrida c = Corre(operacion, por_nombre, {n, persistente, clase});
    EXPECT_EQ(c.vivos, 0);
    if (c.fallas == 0) break;
    ASSERT_LE(c.marcos.size(), limpia.marcos.size());
    std::size_t cortados = 0;
    for (std::size_t i = 0; i < c.marcos.size(); ++i) {
      const Marco &marco = c.marcos[i], &completo = limpia.marcos[i];
      ASSERT_LE(marco.size(), completo.size());
      EXPECT_TRUE(std::equal(marco.begin(), marco.end(), completo.begin()));
      cortados += marco.size() < completo.size();
    }
    // Once: one call is cut short and says so, the rest goes on. The outside (0) always is silent.
    const std::size_t callados = c.marcos[0].size() < limpia.marcos[0].size();
    EXPECT_GE(c.avisos.size(), cortados - callados);
    if (!persistente) {
      EXPECT_LE(cortados, 1u);
      EXPECT_LE(c.avisos.size() + callados, 1u);
    }
    for (const auto& aviso : c.avisos)
      EXPECT_EQ(aviso, Reporte(operacion.reporta ? operacion.reporta : "", Descripcion(clase)));
    if (!operacion.reporta) {
      EXPECT_TRUE(c.avisos.empty());
      EXPECT_EQ(c.resultado, cortados == 0);
    }
    // Whoever was not told of a failure got everything done.
    EXPECT_TRUE(!c.avisos.empty() || callados == 1 || c.marcos == limpia.marcos);
  }
  EXPECT_GT(n, 2);
}

INSTANTIATE_TEST_SUITE_P(Modos, Fallas,
                         testing::Combine(testing::ValuesIn(kOperaciones), testing::ValuesIn(Modos())),
                         &NombreDeCaso<Parametros>);

}  // namespace
}  // namespace zuvi::pruebas
