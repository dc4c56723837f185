// Entry of lines: what is refused, what is written, what the grid shows of it.
#include "tests/orders/captura.h"

namespace zuvi::pruebas {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Partida : public Captura {};
ZUVI_AMBOS_ANFITRIONES(Partida);

TEST_P(Partida, LaCapturaIncompletaSeRechazaYElFocoVaAlCampo) {
  t.mundo.claves.insert("prods.articulo=PROHIBIDO");
  t.mundo.restringidos = {"PROHIBIDO"};
  t.mundo.tablas["SELECT ubicacion FROM prods WHERE articulo = 'PROHIBIDO'"] = {{{"ubicacion", Null{}}}};
  struct Caso {
    const char *articulo, *cantidad;
    int mensaje;
    const char* foco;
  };
  for (const Caso& caso : {
           Caso{" ", "1", 234, "txtFields(4)"},
           Caso{"SILLA", "1", 235, "txtFields(4)"},
           Caso{"MESA", "", 236, "txtFields(5)"},
           Caso{"MESA", "0", 236, "txtFields(5)"},
           Caso{"MESA", "-1", 236, "txtFields(5)"},
           Caso{"PROHIBIDO", "1", 703, "txtFields(4)"},
       }) {
    SCOPED_TRACE(std::string(caso.articulo) + " " + caso.cantidad);
    AbreCaptura();
    Agrega(caso.articulo, caso.cantidad);
    EXPECT_THAT(t.Lineas("Mensaje"),
                ElementsAre("Mensaje(mensaje " + Decimal(caso.mensaje) + ", 64, Ambiente)"));
    EXPECT_EQ(Foco(), caso.foco);
    EXPECT_EQ(F(4).Text(), caso.articulo);
    EXPECT_EQ(F(1).Text(), "nota");
    EXPECT_EQ(Veces("Limpia"), 0u);
    EXPECT_EQ(Veces("ExisteClave"), caso.mensaje == 234 ? 0u : 1u);
    EXPECT_THAT(Avisos(), IsEmpty());
  }
  // A disabled quantity cannot take the focus.
  AbreCaptura();
  F(5).SetEnabled(false);
  Agrega("MESA", "0");
  EXPECT_EQ(Foco(), "Command6");
  EXPECT_THAT(Avisos(), IsEmpty());
}

TEST_P(Partida, LoQueNoSeEntiendeSeInformaYNoSeGuarda) {
  struct Caso {
    const char *cantidad, *almacen, *error;
  };
  for (const Caso& caso :
       {Caso{"1", "", "Type mismatch"}, Caso{"1", "40000", "Overflow"}, Caso{"uno", "9", "Type mismatch"}}) {
    AbreCaptura();
    F(14).SetText(caso.almacen);
    Agrega("MESA", caso.cantidad);
    EXPECT_THAT(Avisos(), ElementsAre(Informe("LlenaPartida", caso.error)));
    EXPECT_EQ(Veces("Limpia"), 0u);
  }
}

TEST_P(Partida, UnaLineaSeGuardaYSeMuestra) {
  t.mundo.claves.insert("prods.articulo=MESA ");
  AbreCaptura("ModificaOp", 1);
  Agrega("MESA ", "1200");
  EXPECT_EQ(Hecho(), R"(
ExisteClave(MESA , prods, articulo, Conexion)
Consulta(SELECT ubicacion FROM prods WHERE articulo = 'MESA')
UbicacionRestringida(MESA, 9, Conexion)
IniciaProceso(Op005, frmOp, Ambiente, , Nothing, True, 0, , Null, , Nothing)
Consulta(SELECT * FROM op WHERE (((op) = 120)))
Limpia()
Tipo(INSERT)
SiguienteFolio(oppart, Conexion, 0, Nothing)
AgregaCampo(oppart, id_entrada, i4 501)
AgregaCampo(oppart, op, i4 120)
AgregaCampo(oppart, tipo_doc, txt OP)
AgregaCampo(oppart, no_referen, i4 120)
AgregaCampo(oppart, articulo, txt MESA )
AgregaCampo(oppart, cantidad, r8 1200)
AgregaCampo(oppart, precio, r8 2.5)
AgregaCampo(oppart, observ, txt nota)
AgregaCampo(oppart, partida, i2 0)
UsuarioActual()
AgregaCampo(oppart, usuario, txt ADMIN)
AgregaCampo(oppart, usufecha, fecha 2026-03-05)
AgregaCampo(oppart, usuhora, txt 14:07:09)
Genera(oppart)
Ejecuta()
)");
  const char* const celdas[] = {"MESA ", "1200", "", "3,000.00", "nota", "501", "", ""};
  for (std::int32_t col = 0; col < 8; ++col) EXPECT_EQ(Celda(2, col), celdas[col]) << col;
  EXPECT_EQ(Rejilla().Row(), 2);
  EXPECT_EQ(Foco(), "txtFields(4)");
  for (const int i : {1, 4, 5, 6}) EXPECT_EQ(F(i).Text(), "") << i;
  EXPECT_THAT(Avisos(), IsEmpty());
}

TEST_P(Partida, UnRechazoDelHostDetieneUnaSolaLinea) {
  using Proceso = std::function<void(PeticionProceso&)>;
  const auto rechaza = [](PeticionProceso& p) { p.objeto->Put("Rechazado", true); };
  for (const Proceso& rechazo :
       {Proceso([](PeticionProceso&) {}), Proceso(rechaza), Proceso([rechaza](PeticionProceso& p) {
          rechaza(p);
          p.bandera = false;
        })}) {
    AbreCaptura();
    const auto acepta = std::exchange(t.mundo.proceso, rechazo);
    Agrega("MESA", "1");
    EXPECT_EQ(Veces("SiguienteFolio"), 0u);
    EXPECT_FALSE(v->Rechazado());
    EXPECT_EQ(Celda(1, 0), "");
    t.mundo.proceso = acepta;
    Agrega("MESA", "1");
    EXPECT_EQ(Celda(1, 0), "MESA");
    EXPECT_THAT(Avisos(), IsEmpty());
  }
}

TEST_P(Partida, ConLaRejillaLlenaLaLineaSeGuardaSinMostrarse) {
  AbreCaptura("ModificaOp", 100);
  Rejilla().MoveTo(3, 1);
  Agrega("MESA", "1");
  EXPECT_EQ(Veces("Ejecuta"), 1u);
  EXPECT_EQ(Rejilla().Rows(), 101);
  EXPECT_EQ(Rejilla().Row(), 3);
  EXPECT_EQ(F(4).Text(), "");
  EXPECT_THAT(Avisos(), IsEmpty());
}

TEST_P(Partida, LaTeclaSuprimirBorraLaLineaActual) {
  struct Caso {
    const char* metodo;
    std::int32_t fila;
    std::int16_t tecla;
    bool borra;
  };
  for (const Caso& caso :
       {Caso{"ModificaOp", 2, key::kDelete, true}, Caso{"ModificaOp", 4, key::kDelete, false},
        Caso{"ModificaOp", 2, key::kBack, false}, Caso{"ConsultaOp", 2, key::kDelete, false}}) {
    AbreCaptura(caso.metodo, 3);
    Rejilla().MoveTo(caso.fila, 0);
    std::int16_t tecla = caso.tecla;
    Rejilla().OnKeyDown(tecla, shift::kNone);
    EXPECT_EQ(Hecho(),
              caso.borra ? "\nEjecutaSQL(DELETE FROM oppart WHERE id_entrada = 72)\n" : std::string("\n"));
    EXPECT_EQ(Celda(2, 0), caso.borra ? "ART73" : "ART72");
    EXPECT_EQ(Celda(3, 0), caso.borra ? "" : "ART73");
  }
}

TEST_P(Partida, LaDescripcionVieneDelArticuloODeSuClave) {
  PonClave("K1", "MESA");
  PonClave("K2", "NADA");
  struct Caso {
    const char* escrito;
    std::vector<std::string> campos;  // 4, 1, 27, 24, 25, 26, 28, 29
    std::size_t consultas;
  };
  for (const Caso& caso : {
           Caso{"MESA", {"MESA", "Mesa de pino", "PZA", "", "", "", "", ""}, 1},
           Caso{"K1", {"MESA", "Mesa de pino", "PZA", "K1", "Caja", "", "Caja", "PZA"}, 3},
           // A key whose article is gone, and a code that is neither.
           Caso{"K2", {"NADA", "", "", "K2", "Caja", "", "Caja", ""}, 3},
           Caso{"K3", {"K3", "", "", "", "", "", "", ""}, 2},
       }) {
    AbreCaptura();
    F(4).SetFocus();
    F(4).SetText(caso.escrito);
    v->Press(key::kEnter);
    std::vector<std::string> campos;
    for (const int i : {4, 1, 27, 24, 25, 26, 28, 29}) campos.push_back(F(i).Text());
    EXPECT_EQ(campos, caso.campos);
    EXPECT_EQ(Veces("Consulta"), caso.consultas);
    EXPECT_EQ(F(5).Text(), "");
    EXPECT_EQ(Foco(), "txtFields(5)");
    EXPECT_THAT(Avisos(), IsEmpty());
  }
}

TEST_P(Partida, ConElLectorCadaCodigoAgregaUnaPieza) {
  PonClave("K1", "MESA");
  AbreCaptura();
  F(4).SetMaxLength(4);  // also the length of the code that the key turns into
  v->Press(key::kF3);
  v->Type("mesa");
  v->Type("K1");
  v->Press(key::kEnter);
  for (const std::int32_t fila : {1, 2}) {
    EXPECT_EQ(Celda(fila, 0), "MESA");
    EXPECT_EQ(Celda(fila, 1), "1");
    EXPECT_EQ(Celda(fila, 4), "Mesa de pino");
  }
  EXPECT_EQ(Celda(3, 0), "");
  EXPECT_EQ(Foco(), "txtFields(4)");
  EXPECT_EQ(Veces("Mensaje"), 0u);
  // A quantity that was there before is the one that counts.
  F(5).SetText("6");
  v->Type("MESA");
  EXPECT_EQ(Celda(3, 1), "6");
  // With the quantity out of reach the line is added all the same.
  F(5).SetText("7");
  F(5).SetEnabled(false);
  v->Type("MESA");
  EXPECT_EQ(Celda(4, 1), "7");
  EXPECT_THAT(Avisos(), IsEmpty());
}

TEST_P(Partida, TipoDeCambioYVendedor) {
  auto& tablas = t.mundo.tablas;
  tablas["SELECT * FROM monedas WHERE moneda = 'USD'"] = {{{"Tc", 17.25}, {"Base", std::int16_t{0}}}};
  tablas["SELECT * FROM monedas WHERE moneda = 'MXN'"] = {{{"Tc", 1.0}, {"Base", std::int16_t{1}}}};
  tablas["SELECT * FROM vends WHERE vend = 'V1'"] = {{{"Nombre", "Ana"}}};
  AbreCaptura();
  F(16).SetEnabled(true);
  struct Caso {
    const char *moneda, *tc;
    bool habilitado;
  };
  for (const Caso& caso : {Caso{"USD", "17.25", true}, Caso{"?", "", true}, Caso{"MXN", "1", false},
                           Caso{"USD", "17.25", false}}) {
    F(15).SetText(caso.moneda);
    v->Call("PonTC");
    EXPECT_EQ(F(16).Text(), caso.tc);
    EXPECT_EQ(F(16).Enabled(), caso.habilitado);
  }
  F(1).SetText("V1");
  EXPECT_EQ(ATexto(v->Call("TraeVends")), "");  // field 0 is blank
  F(0).SetText("1");
  EXPECT_EQ(ATexto(v->Call("TraeVends")), "Ana");
  F(1).SetText("V2");
  EXPECT_EQ(ATexto(v->Call("TraeVends")), "");
  EXPECT_THAT(Avisos(), IsEmpty());
}

}  // namespace
}  // namespace zuvi::pruebas
