// Every host call of every batch operation is once the one that fails, in every way in which a host fails.
#include "tests/support/fallas.h"

#include "tests/support/taller.h"

namespace zuvi::pruebas {
namespace {

/// A batch operation on a prepared shop; `reporta` is the procedure that its reports name, null for silence.
struct Operacion {
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
    {"Ensamble", [](Taller&) {}, [](Produccion& p) { return p.Ensamble("MESA", 9, 6, 0), true; }},
    {"Desensamble", &PonSubKit, [](Produccion& p) { return p.Desensamble("MESA", 1.5, 9, 0), true; }},
    {"Ensamble", &PonOrdenDeTres, [](Produccion& p) { return p.EntregaProductoTerminado(7), true; }},
    {nullptr, &PonOrdenDeTres, [](Produccion& p) { return p.CancelaOp(7); }},
    {nullptr, [](Taller& t) { t.PonOrden("7", "CO", {}, 0); }, [](Produccion& p) { return p.CancelaOp(7); }},
};

/// Statements and movements by the call of Ensamble or Desensamble that made them, in order; 0 is outside.
std::vector<Pasos> Marcos(const Pasos& bitacora) {
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

TEST(Fallas, LoEjecutadoEsUnComienzoDeLoLimpio) {
  for (const auto& [reporta, prepara, corre] : kOperaciones) {
    std::vector<Pasos> limpios;
    const int corridas = EnCadaLlamada([&](const Modo& modo, int n) {
      Taller t;
      t.PonMesa();
      prepara(t);
      t.mundo.respuestas = {true, true};
      t.mundo.falla = {n, modo.persistente, modo.clase};
      const bool resultado = corre(*t.prod);
      const int fallas = t.mundo.fallas_dadas;
      const auto marcos = Marcos(t.mundo.bitacora);
      const auto avisos = t.Avisos();
      EXPECT_EQ(t.Despide(), 0);
      if (n == 0) limpios = marcos;
      // Once: one call is cut short and says so, the rest goes on. The outside (0) always is silent.
      EXPECT_LE(marcos.size(), limpios.size());
      std::size_t cortados = 0;
      for (std::size_t i = 0; i < marcos.size(); ++i) {
        EXPECT_TRUE(EsComienzo(marcos[i], limpios[i]));
        cortados += marcos[i].size() < limpios[i].size();
      }
      const std::size_t callados = marcos[0].size() < limpios[0].size();
      EXPECT_GE(avisos.size(), cortados - callados);
      if (!modo.persistente) {
        EXPECT_LE(cortados, 1u);
        EXPECT_LE(avisos.size() + callados, fallas > 0 ? 1u : 0u);
      }
      for (const auto& aviso : avisos) EXPECT_EQ(aviso, Reporte(reporta ? reporta : "", modo.Descripcion()));
      EXPECT_EQ(resultado, reporta || cortados == 0);
      // Whoever was not told of a failure got everything done.
      EXPECT_TRUE(!avisos.empty() || callados == 1 || marcos == limpios);
      return fallas;
    });
    EXPECT_GT(corridas, 10);
  }
}

}  // namespace
}  // namespace zuvi::pruebas
