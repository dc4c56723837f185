// Delivery and cancellation of orders: both end silently, whatever happens.
#include "tests/support/taller.h"

namespace zuvi::pruebas {
namespace {

class Ordenes : public EnTaller {
 protected:
  /// What the delivery of order 7 logged, without the inside of the assemblies.
  std::string Entrega() {
    t.mundo.bitacora.clear();
    t.prod->EntregaProductoTerminado(7);
    std::string texto = "\n";
    bool dentro = false;
    for (const auto& linea : t.mundo.bitacora) {
      if (!dentro || linea == "}") texto += linea + "\n";
      dentro = linea.starts_with("{") || (dentro && linea != "}");
    }
    return texto;
  }
};
ZUVI_AMBOS_ANFITRIONES(Ordenes);

TEST_P(Ordenes, LaEntregaEnsamblaCadaLineaYTermina) {
  // Half quantities go to the even neighbour; texts are numbers too.
  t.PonOrden("7", "PE", {{"MESA", 2.5}, {"MESA", 3.5}, {"NADA", "4"}}, 3);
  EXPECT_EQ(Entrega(), R"(
Ambiente.Conexion()
Crea(ZuviQuery.AccesoDatos)
Consulta(SELECT COUNT( * ) FROM oppart WHERE op = 7)
Consulta(SELECT oppart.articulo, oppart.cantidad, op.almacen FROM oppart INNER JOIN op USING(op) WHERE op.op = 7)
Crea(ZuviQuery.VentanaProgreso)
RutaAplicacion()
Inicia(3, Entregando producto terminado, C:\Tienda\Images\Gears.Avi)
Avanza(1, Procesando: MESA, )
{ Ensamble MESA 9 2 7
}
Avanza(2, Procesando: MESA, )
{ Ensamble MESA 9 4 7
}
Avanza(3, Procesando: NADA, )
{ Ensamble NADA 9 4 7
}
EjecutaSQL(UPDATE oppart SET terminado = cantidad WHERE op = 7)
Cierra()
)");
  EXPECT_EQ(t.Lineas("Documento 2.Aplica").size(), 3u);
  // Without lines there is nothing to announce: it is marked, and a window is made to be closed.
  t.PonOrden("7", "PE", {}, 0);
  Entrega();
  EXPECT_EQ(std::vector(t.mundo.bitacora.end() - 3, t.mundo.bitacora.end()),
            (std::vector<std::string>{"EjecutaSQL(UPDATE oppart SET terminado = cantidad WHERE op = 7)",
                                      "Crea(ZuviQuery.VentanaProgreso)", "Cierra()"}));
  EXPECT_TRUE(t.escritorio.Avisos().empty());
}

TEST_P(Ordenes, UnaEntregaQueFallaCallaYNoMarca) {
  const struct {
    const char* nombre;
    Value cuenta, articulo, cantidad;
    std::size_t ensambles;
  } casos[] = {{"cuenta desbordada", 2147483647.5, "MESA", 1.0, 0},
               {"cuenta nula", Null{}, "MESA", 1.0, 0},
               {"cantidad desbordada", 2, "MESA", 3e9, 1},
               {"artículo nulo", 2, Null{}, 1.0, 1}};
  for (const auto& caso : casos) {
    SCOPED_TRACE(caso.nombre);
    t.PonOrden("7", "PE", {{"MESA", 1.0}, {caso.articulo, caso.cantidad}}, caso.cuenta);
    Entrega();
    EXPECT_EQ(t.Lineas("{").size(), caso.ensambles);
    EXPECT_TRUE(t.Lineas("EjecutaSQL").empty());
    EXPECT_TRUE(t.Lineas("Cierra()").empty());
  }
  t.prod->PonAmbiente(nullptr);
  EXPECT_EQ(Entrega(), "\n");
  EXPECT_TRUE(t.escritorio.Avisos().empty());
}

TEST_P(Ordenes, CancelarBorraOCierraSegunElEstado) {
  const std::string pregunta = "Pregunta(mensaje 757, 2)";
  const std::string cerrar =
      "Pregunta(Esta orden de producción ya fue confirmada, Desea cerrar esta order de producción, 2)";
  const std::string op = "Consulta(SELECT * FROM op WHERE op = -12)";
  const std::string lineas = "Consulta(SELECT * FROM oppart WHERE op = -12)";
  const std::string cierra = "EjecutaSQL(UPDATE op SET cerrado = 1 WHERE op = -12)";
  const std::vector<std::string> borra{pregunta, op, lineas, "EjecutaSQL(DELETE FROM op WHERE op = -12)",
                                       "EjecutaSQL(DELETE FROM oppart WHERE op = -12)"};
  const struct {
    const char* nombre;
    Value estado;
    std::deque<bool> respuestas;
    std::vector<std::string> acciones;
    bool resultado;
  } casos[] = {{"dice que no", "PE", {false}, {pregunta}, false},
               {"pendiente", "PE", {true}, borra, true},
               {"estado nulo", Null{}, {true}, borra, true},
               {"otra caja", "co", {true}, borra, true},
               {"blanco al final", "CO ", {true}, borra, true},
               {"confirmada, sí", "CO", {true, true}, {pregunta, op, lineas, cerrar, cierra}, true},
               {"confirmada, no", "CO", {true, false}, {pregunta, op, lineas, cerrar}, false}};
  for (const auto& caso : casos) {
    SCOPED_TRACE(caso.nombre);
    t.PonOrden("-12", caso.estado, {}, 0);
    t.mundo.respuestas = caso.respuestas;
    t.mundo.bitacora.clear();
    EXPECT_EQ(t.prod->CancelaOp(-12), caso.resultado);
    std::erase_if(t.mundo.bitacora, [](const std::string& l) {
      return l.starts_with("Crea") || l.starts_with("Ambiente.") || l == "TraeMensaje(757, Ambiente)";
    });
    EXPECT_EQ(t.mundo.bitacora, caso.acciones);
  }
  // What does not exist is looked for, and not cancelled; nor is anything without an environment.
  t.mundo.respuestas = {true};
  t.mundo.bitacora.clear();
  EXPECT_FALSE(t.prod->CancelaOp(99));
  EXPECT_EQ(t.Lineas("Consulta").size(), 2u);
  EXPECT_TRUE(t.Lineas("EjecutaSQL").empty());
  t.prod->PonAmbiente(nullptr);
  EXPECT_FALSE(t.prod->CancelaOp(-12));
  EXPECT_TRUE(t.escritorio.Avisos().empty());
}

}  // namespace
}  // namespace zuvi::pruebas
