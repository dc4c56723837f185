#include <pthread.h>

#include "tests/support/taller.h"

namespace zuvi::pruebas {
namespace {

using testing::ElementsAre;

using Desensambles = EnTaller;
ZUVI_AMBOS_ANFITRIONES(Desensambles);

TEST_P(Desensambles, SinOrdenEsElReversoConProporcionesExactas) {
  t.prod->Desensamble("MESA", 1.5, 9, 0);
  EXPECT_EQ(t.mundo.Bitacora(), R"(
{ Desensamble MESA 1.5 9 0
Ambiente.Conexion()
Crea(ZuviQuery.AccesoDatos)
Crea(ZuviQuery.ControlProcesos)
IniciaProceso(DESEM007, Produccion, Ambiente, , Nothing, True, 0, , Null, , Nothing)
ConsultaProceso(True)
Consulta(SELECT * FROM componen WHERE articulo =  'MESA')
Consulta(SELECT * FROM comppart WHERE articulo =  'MESA')
Crea(ZuviQuery.DocumentoInventario)
Documento 1.PonAmbiente(Ambiente)
DatoDocumento()
Documento 1.PonDatoDocumento(DD)
Documento 1.PonTipo(E)
DatoFechaA()
DatoFechaB()
ComponeFecha(45, 931)
Documento 1.PonFecha(2025-10-01)
SiguienteFolio(DESENSAMB, Conexion, 0, Nothing)
Documento 1.PonOrden(501)
Documento 1.PonConcepto(DES)
UsuarioActual()
Documento 1.PonUsuario(ADMIN)
Documento 1.PonDatoFecha(8801)
Documento 1.PonFolio(8801)
Consulta(SELECT articulo, kit, costo FROM prods WHERE articulo = 'PATA')
Documento 1.PonAlmacen(3)
Documento 1.PonArticulo(PATA)
Documento 1.PonCantidad(0.75)
Documento 1.PonCosto(10.5)
Documento 1.AplicaMovimiento(0)
Consulta(SELECT articulo, kit, costo FROM prods WHERE articulo = 'TABLA')
Documento 1.PonAlmacen(4)
Documento 1.PonArticulo(TABLA)
Documento 1.PonCantidad(0.375)
Documento 1.PonCosto(100)
Documento 1.AplicaMovimiento(0)
Documento 1.PonConcepto(DEN)
Documento 1.PonTipo(S)
Documento 1.PonAlmacen(9)
Documento 1.PonArticulo(MESA)
Documento 1.PonCantidad(1.5)
Documento 1.PonCosto(45.375)
Documento 1.AplicaMovimiento(0)
}
)");
  EXPECT_TRUE(t.escritorio.Avisos().empty());
}

TEST_P(Desensambles, ConOrdenLosConceptosSonLosDeLaOrden) {
  t.prod->Desensamble("MESA", 1, 9, 120);
  EXPECT_TRUE(t.Lineas("SiguienteFolio").empty());
  EXPECT_THAT(Valores("Documento 1.PonConcepto"), ElementsAre("COP", "COP"));
  EXPECT_THAT(Valores("Documento 1.PonFolio"), ElementsAre("45"));
}

TEST_P(Desensambles, ConVetoNoConsultaNada) {
  t.mundo.vetos = {"DESEM007"};
  t.prod->Desensamble("MESA", 1, 9, 0);
  EXPECT_TRUE(t.Lineas("Consulta(").empty());
  EXPECT_EQ(t.mundo.bitacora[t.mundo.bitacora.size() - 2], "CierraProceso(0)");
  // A kit without components is queried and left.
  t.mundo.vetos.clear();
  t.prod->Desensamble("NADA", 1, 9, 0);
  EXPECT_EQ(t.Lineas("Consulta(").size(), 2u);
  EXPECT_TRUE(t.Lineas("Documento").empty());
  EXPECT_TRUE(t.escritorio.Avisos().empty());
}

TEST_P(Desensambles, ElOrdenDeLasOperacionesDecideElUltimoBit) {
  // Taking apart multiplies first, assembling divides first.
  const double recibidas = 1.0 * 3 / 10, tomadas = 1.0 / 10 * 3;
  ASSERT_NE(recibidas, tomadas);
  t.PonKit("MESA", 10.0, {{"PATA", 1, 3}});
  t.prod->Desensamble("MESA", 3, 9, 0);
  t.prod->Ensamble("MESA", 9, 3, 0);
  EXPECT_EQ(t.mundo.cantidades, (std::vector<double>{recibidas, 3, tomadas, 3}));
}

TEST_P(Desensambles, UnaPiezaConKitNuloEsArticuloSencillo) {
  for (const Value& kit : {Value(Null{}), Value(Empty{}), Value("0"), Value(false)}) {
    t.PonArticulo("PATA", 10.5, kit);
    t.mundo.bitacora.clear();
    t.prod->Desensamble("MESA", 1, 9, 1);
    EXPECT_EQ(t.Lineas("{").size(), 1u);
  }
  EXPECT_TRUE(Avisos().empty());
  // A piece without an article is reported, what was applied before it stays.
  t.mundo.tablas.erase("SELECT articulo, kit, costo FROM prods WHERE articulo = 'TABLA'");
  t.mundo.bitacora.clear();
  t.prod->Desensamble("MESA", 1, 9, 1);
  EXPECT_EQ(t.Lineas("Documento 5.Aplica").size(), 1u);
  EXPECT_THAT(Avisos(), ElementsAre(testing::StartsWith(Reporte("Desensamble", ""))));
}

TEST_P(Desensambles, UnSubKitSeRepiteHastaQueElAnfitrionFalla) {
  t.PonArticulo("PATA", 10.5, std::int16_t{-1});
  t.PonArticulo("TORNILLO", 1.0);
  t.PonKit("PATA", 1.0, {{"TORNILLO", 8, 2}});
  int consultas = 0;
  t.mundo.gancho = [&](const std::string& linea) {
    if (linea.ends_with("'PATA')") && ++consultas > 10) throw HostError("cancelado por el usuario");
  };
  t.prod->Desensamble("MESA", 2, 9, 0);
  // Three statements name the sub-kit per round: its article row, its recipe and its lines.
  const char* const pata = "{ Desensamble PATA 1 9 0";
  EXPECT_THAT(t.Lineas("{ Desensamble"), ElementsAre("{ Desensamble MESA 2 9 0", pata, pata, pata, pata));
  // The fourth round reports and returns to the outer loop, whose next query fails as well.
  EXPECT_EQ(t.escritorio.Avisos(),
            (std::vector<std::string>(2, Reporte("Desensamble", "cancelado por el usuario"))));
  EXPECT_EQ(t.Lineas("Documento 1.Aplica").size(), 0u);
  EXPECT_EQ(t.Lineas("Documento 2.Aplica").size(), 2u);
}

TEST_P(Desensambles, UnKitQueSeContieneTerminaEnUnReporte) {
  t.PonArticulo("MESA", 1.0, std::int16_t{-1});
  t.PonKit("MESA", 1.0, {{"SILLA", 1, 1}});
  t.PonArticulo("SILLA", 1.0, std::int16_t{-1});
  t.PonKit("SILLA", 1.0, {{"MESA", 1, 1}});
  const auto desensambla = [this] { t.prod->Desensamble("MESA", 1, 9, 0); };
  // On a thread with little stack, twice: the second call must be an outermost one again.
  pthread_attr_t atributos;
  pthread_attr_init(&atributos);
  pthread_attr_setstacksize(&atributos, 768 * 1024);
  pthread_t hilo;
  for (int vez = 1; vez <= 2; ++vez) {
    t.mundo.bitacora.clear();
    ASSERT_EQ(pthread_create(
                  &hilo, &atributos,
                  [](void* f) -> void* {
                    (*static_cast<decltype(desensambla)*>(f))();
                    return nullptr;
                  },
                  const_cast<void*>(static_cast<const void*>(&desensambla))),
              0);
    pthread_join(hilo, nullptr);
    ASSERT_THAT(Avisos(), ElementsAre(Reporte("Desensamble", "Out of stack space")));
    EXPECT_GT(t.Lineas("{").size(), 20u);
  }
  pthread_attr_destroy(&atributos);
  // And on this one, with its full stack.
  desensambla();
  EXPECT_THAT(Avisos(), ElementsAre(Reporte("Desensamble", "Out of stack space")));
  // Afterwards the component works, and an error is reported by the call it happens in.
  t.PonKit("MESA", 0.0, {{"PATA", 1, 1}});
  desensambla();
  EXPECT_THAT(Avisos(), ElementsAre(Reporte("Desensamble", "Division by zero")));
}

TEST_P(Desensambles, ElAnfitrionPuedeSoltarElComponenteAMedias) {
  t.mundo.proceso = [this](PeticionProceso& p) {
    p.objeto = nullptr;
    t.ambiente.reset();
    t.prod.reset();
  };
  t.prod->Desensamble("MESA", 1, 9, 0);
  EXPECT_EQ(t.Lineas("Documento 1.Aplica").size(), 3u);
  t.modulo.Suelta();
  EXPECT_EQ(t.mundo.vivos, 0);
}

}  // namespace
}  // namespace zuvi::pruebas
