// Every host call of every batch operation is once the one that fails, in every way in which a host fails.
#include <gtest/gtest.h>

#include "tests/support/fallas.h"
#include "tests/support/taller.h"

namespace zuvi::pruebas {
namespace {

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

/// Statements and movements by the call of Ensamble or Desensamble that made them, in order; 0 is outside.
std::vector<Pasos> Marcos(const std::vector<std::string>& bitacora) {
  std::vector<Pasos> marcos(1);
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

using Parametros = std::tuple<Operacion, Modo>;
class Fallas : public testing::TestWithParam<Parametros> {};

TEST_P(Fallas, LoEjecutadoEsUnComienzoDeLoLimpio) {
  const auto& [operacion, modo] = GetParam();
  const auto& [clase, persistente] = modo;
  std::vector<Pasos> limpios;
  int n = 0;
  for (int fallas = 1; fallas > 0; ++n) {
    SCOPED_TRACE(n);
    Taller t;
    t.PonMesa();
    operacion.prepara(t);
    t.mundo.respuestas = {true, true};
    t.mundo.falla = {n, persistente, clase};
    const bool resultado = operacion.corre(*t.prod);
    const auto marcos = Marcos(t.mundo.bitacora);
    const auto avisos = t.escritorio.Avisos();
    EXPECT_EQ(t.Despide(), 0);
    if (n == 0) {
      limpios = marcos;
      EXPECT_TRUE(resultado && avisos.empty());
      continue;
    }
    fallas = t.mundo.fallas_dadas;
    ASSERT_LE(marcos.size(), limpios.size());
    std::size_t cortados = 0;
    for (std::size_t i = 0; i < marcos.size(); ++i) {
      const Pasos &marco = marcos[i], &completo = limpios[i];
      ASSERT_TRUE(EsComienzo(marco, completo));
      cortados += marco.size() < completo.size();
    }
    // Once: one call is cut short and says so, the rest goes on. The outside (0) always is silent.
    const std::size_t callados = marcos[0].size() < limpios[0].size();
    EXPECT_GE(avisos.size(), cortados - callados);
    if (!persistente) {
      EXPECT_LE(cortados, 1u);
      EXPECT_LE(avisos.size() + callados, 1u);
    }
    for (const auto& aviso : avisos)
      EXPECT_EQ(aviso, Reporte(operacion.reporta ? operacion.reporta : "", Descripcion(clase)));
    if (!operacion.reporta) {
      EXPECT_TRUE(avisos.empty());
      EXPECT_EQ(resultado, cortados == 0);
    }
    // Whoever was not told of a failure got everything done.
    EXPECT_TRUE(!avisos.empty() || callados == 1 || marcos == limpios);
  }
  EXPECT_GT(n, 3);
}

INSTANTIATE_TEST_SUITE_P(Modos, Fallas,
                         testing::Combine(testing::ValuesIn(kOperaciones), testing::ValuesIn(Modos())),
                         &NombreDeCaso<Parametros>);

}  // namespace
}  // namespace zuvi::pruebas
