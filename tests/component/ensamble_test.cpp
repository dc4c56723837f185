#include "tests/support/taller.h"

namespace zuvi::pruebas {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Ensambles = EnTaller;
ZUVI_AMBOS_ANFITRIONES(Ensambles);

TEST_P(Ensambles, SinOrdenNumeraYValuaElKitPorLoQueSalio) {
  t.prod->Ensamble("MESA", 9, 6, 0);
  EXPECT_EQ(t.mundo.Bitacora(), R"(
{ Ensamble MESA 9 6 0
Ambiente.Conexion()
Crea(ZuviQuery.AccesoDatos)
Consulta(SELECT * FROM comppart WHERE articulo =  'MESA')
Consulta(SELECT * FROM componen WHERE articulo =  'MESA')
Crea(ZuviQuery.DocumentoInventario)
Crea(ZuviQuery.ControlProcesos)
IniciaProceso(OPAUTO002, Documento 1, Ambiente, , Nothing, True, 0, , Null, , Nothing)
ConsultaProceso(True)
Documento 1.PonAmbiente(Ambiente)
DatoDocumento()
Documento 1.PonDatoDocumento(DD)
Documento 1.PonTipo(S)
DatoFechaA()
DatoFechaB()
ComponeFecha(45, 931)
Documento 1.PonFecha(2025-10-01)
SiguienteFolio(ENSAMBLE, Conexion, 0, Nothing)
Documento 1.PonOrden(501)
Documento 1.PonConcepto(EN)
UsuarioActual()
Documento 1.PonUsuario(ADMIN)
Documento 1.PonDatoFecha(8801)
Documento 1.PonFolio(8801)
Consulta(SELECT kit, costo FROM prods WHERE articulo = 'PATA')
Documento 1.PonAlmacen(3)
Documento 1.PonArticulo(PATA)
Documento 1.PonCantidad(3)
Documento 1.PonCosto(10.5)
Documento 1.AplicaMovimiento(0)
Consulta(SELECT kit, costo FROM prods WHERE articulo = 'TABLA')
Documento 1.PonAlmacen(4)
Documento 1.PonArticulo(TABLA)
Documento 1.PonCantidad(1.5)
Documento 1.PonCosto(100)
Documento 1.AplicaMovimiento(0)
Documento 1.PonConcepto(DE)
Documento 1.PonTipo(E)
Documento 1.PonAlmacen(9)
Documento 1.PonArticulo(MESA)
Documento 1.PonCantidad(6)
Documento 1.PonCosto(181.5)
Documento 1.AplicaMovimiento(0)
}
)");
  EXPECT_TRUE(t.escritorio.Avisos().empty());
}

TEST_P(Ensambles, ConOrdenNoNumeraYLaReferenciaEsElDatoDeFecha) {
  t.prod->Ensamble("MESA", 9, 6, 120);
  EXPECT_THAT(t.Lineas("SiguienteFolio"), IsEmpty());
  EXPECT_THAT(Valores("Documento 1.PonConcepto"), ElementsAre("OP", "OP"));
  EXPECT_THAT(Valores("Documento 1.PonOrden"), ElementsAre("120"));
  EXPECT_THAT(Valores("Documento 1.PonDatoFecha"), ElementsAre("45"));
  EXPECT_THAT(Valores("Documento 1.PonFolio"), ElementsAre("45"));
  // The second run finds the shared host objects made, and makes a document of its own; zero moves zeros.
  t.mundo.bitacora.clear();
  t.prod->Ensamble("MESA", 9, 0, 120);
  EXPECT_THAT(Valores("Crea"), ElementsAre("ZuviQuery.DocumentoInventario"));
  EXPECT_THAT(Valores("Documento 2.PonCantidad"), ElementsAre("0", "0", "0"));
  EXPECT_EQ(Valores("Documento 2.PonCosto").back(), "0");
  EXPECT_EQ(t.Lineas("Documento 2.AplicaMovimiento").size(), 3u);
}

TEST_P(Ensambles, LoQueNoSeEnsamblaNoMueveNadaNiAvisa) {
  // Without components the host is not even asked.
  t.PonKit("VACIO", 1.0, {});
  t.prod->Ensamble("VACIO", 9, 1, 0);
  EXPECT_EQ(t.mundo.bitacora.size(), 6u) << t.mundo.Bitacora();
  // A veto left standing closes the process and ends.
  t.mundo.vetos = {"OPAUTO002"};
  t.mundo.bitacora.clear();
  t.prod->Ensamble("MESA", 9, 1, 0);
  EXPECT_EQ(t.mundo.bitacora[t.mundo.bitacora.size() - 3], "ConsultaProceso(True)");
  EXPECT_EQ(t.mundo.bitacora[t.mundo.bitacora.size() - 2], "CierraProceso(0)");
  EXPECT_TRUE(t.Lineas("Documento").empty());
  EXPECT_TRUE(t.escritorio.Avisos().empty());
}

TEST_P(Ensambles, ElProcesoPuedeCambiarElDocumentoYQuitarElVeto) {
  t.mundo.proceso = [this](PeticionProceso& p) {
    p.objeto = DocumentoMemoria(t.mundo);
    p.bandera = false;
  };
  t.prod->Ensamble("MESA", 9, 1, 7);
  EXPECT_THAT(Valores("ConsultaProceso"), ElementsAre("False"));
  EXPECT_TRUE(t.Lineas("Documento 1.").empty());
  EXPECT_EQ(t.Lineas("Documento 2.Aplica").size(), 3u);
  // Taken away altogether it is an error, not a crash.
  t.mundo.proceso = [](PeticionProceso& p) { p.objeto = nullptr; };
  t.prod->Ensamble("MESA", 9, 1, 7);
  EXPECT_THAT(Avisos(), ElementsAre(Reporte("Ensamble", "Object variable or With block variable not set")));
}

struct Receta {
  const char* caso;
  Value minimo;
  Value costo_tabla;
  const char* descripcion;
  std::size_t aplicados;
};

TEST_P(Ensambles, UnErrorAMediasSeReportaYLoAplicadoQueda) {
  const Receta casos[] = {{"sin rendimiento", 0.0, 1.0, "Division by zero", 0},
                          {"rendimiento nulo", Null{}, 1.0, "Invalid use of Null", 0},
                          {"rendimiento en texto", "cuatro", 1.0, "Type mismatch", 0},
                          {"costo nulo", 4.0, Null{}, "Invalid use of Null", 1}};
  for (const auto& caso : casos) {
    SCOPED_TRACE(caso.caso);
    Taller otro(GetParam());
    otro.PonMesa();
    otro.PonArticulo("TABLA", caso.costo_tabla);
    otro.PonKit("MESA", caso.minimo, {{"PATA", 2, 3}, {"TABLA", 1, 4}});
    otro.prod->Ensamble("MESA", 9, 6, 0);
    EXPECT_EQ(otro.escritorio.Avisos(), std::vector<std::string>{Reporte("Ensamble", caso.descripcion)});
    EXPECT_EQ(otro.Lineas("Documento 1.Aplica").size(), caso.aplicados);
  }
  // The article of the second line does not exist.
  t.mundo.tablas.erase("SELECT kit, costo FROM prods WHERE articulo = 'TABLA'");
  t.prod->Ensamble("MESA", 9, 6, 0);
  EXPECT_EQ(Avisos().size(), 1u);
  EXPECT_EQ(t.Lineas("Documento 1.Aplica").size(), 1u);
  // What is no HostError is an error too, and so is no environment.
  t.mundo.gancho = [](const std::string&) { throw 42; };
  t.prod->Ensamble("MESA", 9, 6, 0);
  EXPECT_THAT(Avisos(), ElementsAre(Reporte("Ensamble", "Automation error")));
  t.prod->PonAmbiente(nullptr);
  t.mundo.bitacora.clear();
  t.prod->Ensamble("MESA", 9, 1, 0);
  t.prod->Desensamble("MESA", 1, 9, 0);
  EXPECT_THAT(Avisos(),
              ElementsAre(Reporte("Ensamble", "Object variable or With block variable not set"),
                          Reporte("Desensamble", "Object variable or With block variable not set")));
  EXPECT_EQ(t.mundo.bitacora.size(), 4u) << t.mundo.Bitacora();
}

TEST_P(Ensambles, LasClavesVanTalCualEnLaSentencia) {
  const std::string clave = "O'X \"ñ\" ;-- \xFF" + std::string(10000, 'k');
  t.prod->Ensamble(clave, 9, 1, 0);
  EXPECT_EQ(t.Lineas("Consulta").front(),
            "Consulta(SELECT * FROM comppart WHERE articulo =  '" + clave + "')");
}

TEST_P(Ensambles, ElAnfitrionPuedeReentrarEnCualquierLlamada) {
  t.mundo.vetos = {"DESEM007"};
  t.prod->Ensamble("MESA", 9, 6, 0);
  const auto limpias = t.Lineas("Documento 1.");
  const std::size_t llamadas = t.mundo.bitacora.size();
  for (std::size_t n = 0; n < llamadas; ++n) {
    SCOPED_TRACE(n);
    Taller otro(GetParam());
    otro.PonMesa();
    otro.mundo.vetos = {"DESEM007"};
    std::size_t vista = 0;
    // During one call the host sets another environment, cancels an order, starts a disassembly and lets
    // everything go that it holds, the component included.
    otro.mundo.gancho = [&](const std::string&) {
      if (vista++ != n) return;
      if (!otro.prod) return;
      otro.prod->PonAmbiente(AmbienteMemoria(otro.mundo, "Otro"));
      EXPECT_FALSE(otro.prod->CancelaOp(5));
      otro.prod->Desensamble("MESA", 1, 1, 1);
      otro.ambiente.reset();
      otro.prod.reset();
    };
    otro.prod->Ensamble("MESA", 9, 6, 0);
    EXPECT_EQ(otro.Lineas("Documento 1."), limpias);
    EXPECT_TRUE(otro.escritorio.Avisos().empty());
    otro.prod.reset();
    otro.modulo.Suelta();
    otro.ambiente.reset();
    EXPECT_EQ(otro.mundo.vivos, 0);
  }
}

/// Keeps what a call by name carried, to see the types.
class Testigo final : public Object {
 public:
  std::vector<Value> inicia;
  ByRef por_referencia = 0;
  std::optional<MemberId> Find(std::string_view name) override {
    return name == "IniciaProceso" ? 1 : name == "ConsultaProceso" ? 2 : 3;
  }
  Value Read(MemberId id, std::span<Value> args, ByRef by_ref) override {
    if (id == 1) inicia.assign(args.begin(), args.end()), por_referencia = by_ref;
    return {};
  }
};

TEST(ControlProcesosPorNombre, ElVetoViajaConOnceArgumentosPorReferencia) {
  Mundo mundo;
  const auto testigo = std::make_shared<Testigo>();
  const ObjectPtr objeto = std::make_shared<Testigo>(), ambiente = std::make_shared<Testigo>();
  PeticionProceso p;
  p.clave = "OPAUTO002";
  p.objeto = objeto;
  p.ambiente = ambiente;
  Como<ControlProcesos>(testigo)->IniciaProceso(p);
  EXPECT_EQ(testigo->inicia, (std::vector<Value>{"OPAUTO002", objeto, ambiente, "", ObjectPtr(), true,
                                                 std::int32_t{0}, "", Null{}, "", ObjectPtr()}));
  EXPECT_EQ(testigo->por_referencia & 0x7FFu, 0x7FFu);
}

}  // namespace
}  // namespace zuvi::pruebas
