// The batch operations call by call. Delivery and cancellation end silently, whatever happens.
#include "tests/support/taller.h"

namespace zuvi::pruebas {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Operaciones : public testing::Test {
 protected:
  Operaciones() { t.PonMesa(); }
  std::vector<std::string> Avisos() { return t.Avisos(); }
  /// Lines of the log that begin so, without the beginning and the closing parenthesis.
  std::vector<std::string> Valores(const std::string& comienzo) const {
    auto valores = t.Lineas(comienzo + "(");
    for (auto& valor : valores) valor = valor.substr(comienzo.size() + 1, valor.size() - comienzo.size() - 2);
    return valores;
  }
  Taller t;
};

const std::string kSinObjeto = "Object variable or With block variable not set";

TEST_F(Operaciones, EnsamblarSinOrdenNumeraYValuaElKitPorLoQueSalio) {
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
  // The second run finds the shared host objects made, and makes a document of its own. Under an order it is
  // not numbered: it refers to the first date value. None assembled moves zeros.
  t.mundo.bitacora.clear();
  t.prod->Ensamble("MESA", 9, 0, 120);
  EXPECT_THAT(Valores("Crea"), ElementsAre("ZuviQuery.DocumentoInventario"));
  EXPECT_THAT(t.Lineas("SiguienteFolio"), IsEmpty());
  EXPECT_THAT(Valores("Documento 2.PonConcepto"), ElementsAre("OP", "OP"));
  EXPECT_THAT(Valores("Documento 2.PonOrden"), ElementsAre("120"));
  EXPECT_THAT(Valores("Documento 2.PonDatoFecha"), ElementsAre("45"));
  EXPECT_THAT(Valores("Documento 2.PonFolio"), ElementsAre("45"));
  EXPECT_THAT(Valores("Documento 2.PonCantidad"), ElementsAre("0", "0", "0"));
  EXPECT_THAT(Avisos(), IsEmpty());
}

TEST_F(Operaciones, DesensamblarEsElReversoConProporcionesExactas) {
  t.prod->Desensamble("MESA", 1.5, 9, 0);
  EXPECT_EQ(t.Lineas("IniciaProceso(DESEM007, Produccion, Ambiente, ").size(), 1u);
  EXPECT_THAT(Valores("SiguienteFolio"), ElementsAre("DESENSAMB, Conexion, 0, Nothing"));
  EXPECT_THAT(Valores("Documento 1.PonTipo"), ElementsAre("E", "S"));
  EXPECT_THAT(Valores("Documento 1.PonConcepto"), ElementsAre("DES", "DEN"));
  EXPECT_THAT(Valores("Documento 1.PonCantidad"), ElementsAre("0.75", "0.375", "1.5"));
  EXPECT_THAT(Valores("Documento 1.PonCosto"), ElementsAre("10.5", "100", "45.375"));
  // Taking apart multiplies first, assembling divides first: they differ in the last bit.
  const double recibidas = 1.0 * 3 / 10, tomadas = 1.0 / 10 * 3;
  ASSERT_NE(recibidas, tomadas);
  t.PonKit("MESA", 10.0, {{"PATA", 1, 3}});
  t.mundo.cantidades.clear();
  t.prod->Desensamble("MESA", 3, 9, 120);
  t.prod->Ensamble("MESA", 9, 3, 0);
  EXPECT_EQ(t.mundo.cantidades, (std::vector<double>{recibidas, 3, tomadas, 3}));
  EXPECT_THAT(Valores("Documento 2.PonConcepto"), ElementsAre("COP", "COP"));
  // A piece is a kit of its own only where its row says so.
  for (const Value& kit : {Value(Null{}), Value(Empty{}), Value("0"), Value(false)}) {
    t.PonArticulo("PATA", 10.5, kit);
    t.mundo.bitacora.clear();
    t.prod->Desensamble("MESA", 1, 9, 1);
    EXPECT_EQ(t.Lineas("{").size(), 1u);
  }
  EXPECT_THAT(Avisos(), IsEmpty());
}

TEST_F(Operaciones, ElProcesoVetaOCambiaElDocumentoYSinComponentesNoSeMueveNada) {
  // A kit without components makes no document, and the host is not asked about assembling nothing.
  t.prod->Ensamble("NADA", 9, 1, 0);
  t.prod->Desensamble("NADA", 1, 9, 0);
  EXPECT_EQ(t.Lineas("Consulta(").size(), 4u);
  EXPECT_EQ(t.Lineas("IniciaProceso").size(), 1u);
  // A veto left standing closes the process and ends; a disassembly asks before it queries.
  t.mundo.vetos = {"OPAUTO002", "DESEM007"};
  t.mundo.bitacora.clear();
  t.prod->Ensamble("MESA", 9, 1, 0);
  t.prod->Desensamble("MESA", 1, 9, 0);
  EXPECT_THAT(Valores("ConsultaProceso"), ElementsAre("True", "True"));
  EXPECT_THAT(Valores("CierraProceso"), ElementsAre("0", "0"));
  EXPECT_EQ(t.Lineas("Consulta(").size(), 2u);
  EXPECT_THAT(t.Lineas("Documento"), IsEmpty());
  // The process may take the veto back, and bring a document of its own.
  t.mundo.vetos.clear();
  t.mundo.proceso = [this](PeticionProceso& p) {
    p.objeto = DocumentoMemoria(t.mundo);
    p.bandera = false;
  };
  t.prod->Ensamble("MESA", 9, 1, 7);
  EXPECT_EQ(Valores("ConsultaProceso").back(), "False");
  EXPECT_EQ(t.Lineas("Documento " + std::to_string(t.mundo.documentos) + ".Aplica").size(), 3u);
  EXPECT_THAT(Avisos(), IsEmpty());
  t.mundo.proceso = [](PeticionProceso& p) { p.objeto = nullptr; };
  t.prod->Ensamble("MESA", 9, 1, 7);
  EXPECT_THAT(Avisos(), ElementsAre(Reporte("Ensamble", kSinObjeto)));
}

TEST_F(Operaciones, UnErrorAMediasSeReportaYLoAplicadoQueda) {
  using Caso = std::tuple<Value, Value, const char*, std::size_t>;
  for (const auto& [minimo, costo, descripcion, aplicados] :
       {Caso{0.0, 1.0, "Division by zero", 0}, Caso{Null{}, 1.0, "Invalid use of Null", 0},
        Caso{4.0, Null{}, "Invalid use of Null", 1}})
    for (const bool ensambla : {true, false}) {
      SCOPED_TRACE(descripcion);
      t.PonArticulo("TABLA", costo);
      t.PonKit("MESA", minimo, {{"PATA", 2, 3}, {"TABLA", 1, 4}});
      ensambla ? t.prod->Ensamble("MESA", 9, 6, 0) : t.prod->Desensamble("MESA", 6, 9, 0);
      EXPECT_THAT(Avisos(), ElementsAre(Reporte(ensambla ? "Ensamble" : "Desensamble", descripcion)));
      EXPECT_EQ(t.Lineas("Documento " + std::to_string(t.mundo.documentos) + ".Aplica").size(), aplicados);
    }
  // What is no HostError is an error too, and so is no environment.
  t.mundo.gancho = [](const std::string&) { throw 42; };
  t.prod->Ensamble("MESA", 9, 6, 0);
  t.prod->PonAmbiente(nullptr);
  t.prod->Desensamble("MESA", 1, 9, 0);
  EXPECT_THAT(Avisos(),
              ElementsAre(Reporte("Ensamble", "Automation error"), Reporte("Desensamble", kSinObjeto)));
}

TEST_F(Operaciones, ElAnfitrionPuedeReentrarYSoltarloTodoEnCualquierLlamada) {
  for (const bool ensambla : {true, false}) {
    std::vector<std::string> limpias;
    // Run 0 is the clean one. Then, during the n-th call, the host sets another environment, cancels an
    // order, takes apart a kit of nothing, and lets go of everything, the component included.
    for (std::size_t n = 0, llamadas = 0; n <= llamadas; ++n) {
      SCOPED_TRACE(n);
      Taller otro;
      otro.PonMesa();
      std::size_t vista = 0;
      otro.mundo.gancho = [&](const std::string&) {
        if (++vista != n) return;
        otro.prod->PonAmbiente(AmbienteMemoria(otro.mundo, "Otro"));
        EXPECT_FALSE(otro.prod->CancelaOp(5));
        otro.prod->Desensamble("VACIO", 1, 1, 1);
        otro.ambiente.reset();
        otro.prod.reset();
      };
      ensambla ? otro.prod->Ensamble("MESA", 9, 6, 0) : otro.prod->Desensamble("MESA", 6, 9, 0);
      if (n == 0) limpias = otro.Lineas("Documento 1."), llamadas = vista;
      EXPECT_EQ(otro.Lineas("Documento 1."), limpias);
      EXPECT_THAT(otro.escritorio.Avisos(), IsEmpty());
      EXPECT_EQ(otro.Despide(), 0);
    }
  }
}

TEST_F(Operaciones, UnSubKitSeRepiteHastaQueElAnfitrionFalla) {
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
  EXPECT_EQ(Avisos(), (std::vector<std::string>(2, Reporte("Desensamble", "cancelado por el usuario"))));
  EXPECT_THAT(t.Lineas("Documento 1.Aplica"), IsEmpty());
  EXPECT_EQ(t.Lineas("Documento 2.Aplica").size(), 2u);
}

TEST_F(Operaciones, UnKitQueSeContieneTerminaEnUnReporte) {
  t.PonArticulo("MESA", 1.0, std::int16_t{-1});
  t.PonKit("MESA", 1.0, {{"SILLA", 1, 1}});
  t.PonArticulo("SILLA", 1.0, std::int16_t{-1});
  t.PonKit("SILLA", 1.0, {{"MESA", 1, 1}});
  // Twice: the second call must be an outermost one again.
  for (int vez = 1; vez <= 2; ++vez) {
    t.mundo.bitacora.clear();
    t.prod->Desensamble("MESA", 1, 9, 0);
    EXPECT_THAT(Avisos(), ElementsAre(Reporte("Desensamble", "Out of stack space")));
    EXPECT_GT(t.Lineas("{").size(), 20u);
  }
}

TEST_F(Operaciones, LaEntregaEnsamblaCadaLineaYTermina) {
  // Half quantities go to the even neighbour; texts are numbers too.
  t.PonOrden("7", "PE", {{"MESA", 2.5}, {"MESA", 3.5}, {"NADA", "4"}}, 3);
  t.prod->EntregaProductoTerminado(7);
  EXPECT_EQ(t.Lineas("Documento 2.Aplica").size(), 3u);
  const std::string marca = "EjecutaSQL(UPDATE oppart SET terminado = cantidad WHERE op = 7)";
  std::erase_if(t.mundo.bitacora, [](const std::string& linea) {
    return !linea.ends_with("op = 7)") && !linea.starts_with("{") && !linea.starts_with("Inicia(") &&
           !linea.starts_with("Avanza(") && !linea.starts_with("Cierra(");
  });
  EXPECT_THAT(
      t.mundo.bitacora,
      ElementsAre("Consulta(SELECT COUNT( * ) FROM oppart WHERE op = 7)",
                  "Consulta(SELECT oppart.articulo, oppart.cantidad, op.almacen FROM oppart INNER JOIN op "
                  "USING(op) WHERE op.op = 7)",
                  "Inicia(3, Entregando producto terminado, C:\\Tienda\\Images\\Gears.Avi)",
                  "Avanza(1, Procesando: MESA, )", "{ Ensamble MESA 9 2 7", "Avanza(2, Procesando: MESA, )",
                  "{ Ensamble MESA 9 4 7", "Avanza(3, Procesando: NADA, )", "{ Ensamble NADA 9 4 7", marca,
                  "Cierra()"));
  // Without lines there is nothing to announce: it is marked, and a window is made to be closed.
  t.PonOrden("7", "PE", {}, 0);
  t.prod->EntregaProductoTerminado(7);
  EXPECT_THAT(t.mundo.bitacora,
              testing::IsSupersetOf({marca, std::string("Crea(ZuviQuery.VentanaProgreso)")}));
  EXPECT_EQ(t.Lineas("Inicia(").size(), 1u);
  EXPECT_THAT(Avisos(), IsEmpty());
}

TEST_F(Operaciones, UnaEntregaQueFallaCallaYNoMarca) {
  // The count or a quantity overflows; an article or the count is null.
  using Caso = std::tuple<Value, Value, Value, std::size_t>;
  for (const auto& [cuenta, articulo, cantidad, ensambles] :
       {Caso{2147483647.5, "MESA", 1.0, 0}, Caso{Null{}, "MESA", 1.0, 0}, Caso{2, "MESA", 3e9, 1},
        Caso{2, Null{}, 1.0, 1}}) {
    t.PonOrden("7", "PE", {{"MESA", 1.0}, {articulo, cantidad}}, cuenta);
    t.mundo.bitacora.clear();
    t.prod->EntregaProductoTerminado(7);
    EXPECT_EQ(t.Lineas("{").size(), ensambles);
    EXPECT_EQ(t.Lineas("EjecutaSQL").size() + t.Lineas("Cierra()").size(), 0u);
  }
  t.prod->PonAmbiente(nullptr);
  t.mundo.bitacora.clear();
  t.prod->EntregaProductoTerminado(7);
  t.prod->MuestraTurnos();
  t.prod->MuestraCapturaDeFracciones();
  EXPECT_FALSE(t.prod->CancelaOp(-12));
  EXPECT_THAT(t.escritorio.Forms(), IsEmpty());
  EXPECT_THAT(t.mundo.bitacora, IsEmpty());
  EXPECT_THAT(Avisos(), IsEmpty());
}

TEST_F(Operaciones, CancelarBorraOCierraSegunElEstado) {
  const std::string pregunta = "Pregunta(mensaje 757, 2)";
  const std::string cerrar =
      "Pregunta(Esta orden de producción ya fue confirmada, Desea cerrar esta order de producción, 2)";
  const std::string op = "Consulta(SELECT * FROM op WHERE op = -12)";
  const std::string lineas = "Consulta(SELECT * FROM oppart WHERE op = -12)";
  const std::string cierra = "EjecutaSQL(UPDATE op SET cerrado = 1 WHERE op = -12)";
  const std::vector<std::string> borra{pregunta, op, lineas, "EjecutaSQL(DELETE FROM op WHERE op = -12)",
                                       "EjecutaSQL(DELETE FROM oppart WHERE op = -12)"};
  using Acciones = std::vector<std::string>;
  using Caso = std::tuple<Value, std::deque<bool>, Acciones, bool>;
  for (const auto& [estado, respuestas, acciones, resultado] :
       {Caso{"PE", {false}, {pregunta}, false}, Caso{"PE", {true}, borra, true},
        Caso{Null{}, {true}, borra, true}, Caso{"co", {true}, borra, true}, Caso{"CO ", {true}, borra, true},
        Caso{"CO", {true, true}, {pregunta, op, lineas, cerrar, cierra}, true},
        Caso{"CO", {true, false}, {pregunta, op, lineas, cerrar}, false}}) {
    SCOPED_TRACE(acciones.size());
    t.PonOrden("-12", estado, {}, 0);
    t.mundo.respuestas = respuestas;
    t.mundo.bitacora.clear();
    EXPECT_EQ(t.prod->CancelaOp(-12), resultado);
    std::erase_if(t.mundo.bitacora, [](const std::string& l) {
      return l.starts_with("Crea") || l.starts_with("Ambiente.") || l == "TraeMensaje(757, Ambiente)";
    });
    EXPECT_EQ(t.mundo.bitacora, acciones);
  }
  // What does not exist is looked for, and not cancelled.
  t.mundo.respuestas = {true};
  t.mundo.bitacora.clear();
  EXPECT_FALSE(t.prod->CancelaOp(99));
  EXPECT_EQ(t.Lineas("Consulta").size(), 2u);
  EXPECT_THAT(t.Lineas("EjecutaSQL"), IsEmpty());
}

}  // namespace
}  // namespace zuvi::pruebas
