// Which procedure a report names when a host call fails within it.
#include <set>

#include "tests/orders/captura.h"

namespace zuvi::pruebas {
namespace {

class Informes : public Captura {
 protected:
  void FallaElFormato() {
    t.mundo.formato = [](const std::string&, const std::string&) -> std::string {
      throw HostError("se cayó");
    };
  }
  void Finaliza() {
    C<CheckBox>("Check2").SetValue(1);
    t.mundo.respuestas = {true};
    C<Button>("Command5").Click();
  }
  /// Types into the cell of the first quantity.
  void Corrige(const char* texto) {
    Rejilla().SetFocus();
    Rejilla().MoveTo(1, 1);
    v->Type(texto);
  }
};
ZUVI_AMBOS_ANFITRIONES(Informes);

TEST_P(Informes, CadaProcedimientoInformaConSuNombre) {
  struct Caso {
    const char *procedimiento, *falla;
    std::function<void()> accion;
  };
  const std::set<std::string> al_finalizar{"SalvaOp", "SalvaPartidas", "Command5_Click", "ImprimeOp"};
  const auto finaliza = [this] { Finaliza(); };
  const auto corrige = [this] { Corrige("89"), v->Press(key::kEnter); };
  const auto agrega = [this] { Agrega("MESA", "1"); };
  const auto cierra = [this] { v->Unload(); };
  for (const Caso& caso : {
           Caso{"txtFields_KeyPress", "FiltroTecla", [this] { v->Type("1"); }},
           Caso{"txtFields_DblClick", "Busca.PonDestino", [this] { F(5).DblClick(); }},
           Caso{"txtFields_DblClick", "Busca.PonDestino", [this] { v->Press(key::kF2); }},
           Caso{"TraeSegundaClave", "Consulta",
                [this] { F(24).SetText("K1"), F(24).SetFocus(), v->Press(key::kF8); }},
           Caso{"txtFields_KeyDown", "Busca.PonFiltro", [this] { F(4).SetFocus(), v->Press(key::kDown); }},
           Caso{"PonDescripcion", "Consulta", [this] { F(4).SetFocus(), v->Press(key::kEnter); }},
           Caso{"txtFields_LostFocus", "ninguna", [this] { FallaElFormato(), F(0).SetFocus(); }},
           Caso{"txtFields_Change", "ninguna", [this] { v->Hide(), FallaElFormato(), F(5).SetText("3"); }},
           Caso{"CreaOp", "ninguna",
                [this] {
                  AbreCaptura("NuevaOp"), Falla("Genera(op)"), F(14).SetText("9"), Agrega("MESA", "1");
                }},
           Caso{"NuevaPartida", "Ejecuta", agrega},
           Caso{"MSFlexGridEdit", "FiltroTecla", [this] { Corrige("8"); }},
           Caso{"txtEdit_KeyPress", "FiltroTecla(txtEdit, 57", [this] { Corrige("89"); }},
           Caso{"SalvaCambios", "Ejecuta", corrige},
           Caso{"EditKeyCode", "ninguna",
                [this] { Corrige("8"), Rejilla().SetEnabled(false), v->Press(key::kEnter); }},
           Caso{"fg2_KeyDown", "EjecutaSQL", [this] { Rejilla().SetFocus(), v->Press(key::kDelete); }},
           Caso{"Command1_Click", "IniciaProceso", [this] { v->Press(key::kF6); }},
           Caso{"ValidaTab1", "ExisteClave", finaliza},
           Caso{"SalvaOp", "Genera(op)", finaliza},
           Caso{"SalvaOp", "Ejecuta()", finaliza},
           Caso{"SalvaPartidas", "Crea(ADODB.Recordset)", finaliza},
           Caso{"SalvaPartidas", "Open(", finaliza},
           Caso{"Command5_Click", "IniciaProceso(OP007", finaliza},
           Caso{"ImprimeOp", "ImprimeReporte", finaliza},
           Caso{"Form_Unload", "IniciaProceso(Op006", cierra},
           Caso{"Form_Unload", "EjecutaSQL", cierra},
           Caso{"Form_Unload", "LiberaVentana", cierra},
       }) {
    SCOPED_TRACE(caso.falla);
    AbreCaptura("ModificaOp", 1);
    F(5).SetFocus();
    Falla(caso.falla);
    caso.accion();
    EXPECT_THAT(Avisos(), testing::ElementsAre(testing::StartsWith(Informe(caso.procedimiento, ""))));
    const bool cerraba = caso.procedimiento == std::string("Form_Unload");
    EXPECT_EQ(v->Closed(), cerraba);
    // An order is finished once, whatever became of it.
    if (!cerraba) {
      EXPECT_EQ(C<Button>("Command5").Enabled(), !al_finalizar.contains(caso.procedimiento));
    }
    // Nobody is left to release the order: it is released whatever failed, and the statement tried once.
    EXPECT_EQ(Veces("EjecutaSQL(UPDATE Op SET ocupado = 0"), cerraba ? 1u : 0u);
  }
}

}  // namespace
}  // namespace zuvi::pruebas
