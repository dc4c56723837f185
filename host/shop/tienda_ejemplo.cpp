// Fills an empty database with the example shop, or with what every shop needs.
#include <iterator>
#include <string_view>

#include "host/shop/esquema.h"
#include "host/shop/tienda_datos.h"
#include "host/shop/valuacion.h"

namespace zuvi::host {
namespace {

using namespace tienda;  // NOLINT: the tables that this file is about
using Filas = std::vector<std::vector<Value>>;

const Articulo& ArticuloDe(std::string_view clave) {
  for (const Articulo& articulo : kArticulos)
    if (clave == articulo.clave) return articulo;
  throw HostError("El artículo " + std::string(clave) + " no está entre los de la tienda de ejemplo");
}

void LlenaArticulos(BaseDatos& base) {
  Filas articulos, recetas, partes;
  for (const Articulo& a : kArticulos)
    articulos.push_back({a.clave, a.descrip, a.unidad, a.costo, a.ubicacion, a.kit, a.costo, a.precio});
  for (const Receta& receta : kRecetas) {
    recetas.push_back({receta.articulo, receta.minimo});
    std::int32_t renglon = 0;
    for (const Parte& parte : kPartes)
      if (parte.articulo == std::string_view(receta.articulo))
        partes.push_back({receta.articulo, ++renglon, parte.componente, parte.cantidad, parte.almacen});
  }
  InsertaFilas(base, "prods", "(articulo, descrip, unidad, costo_u, ubicacion, kit, costo, precio)",
               articulos);
  InsertaFilas(base, "componen", "(articulo, Minimo)", recetas);
  InsertaFilas(base, "comppart", "(articulo, renglon, Componente, Cantidad, Almacen)", partes);
  InsertaFilas(base, "clavesadd", "(clave, Articulo, Dato1, Dato2)",
               {{"7501000100011", "CAN-DESAYUNO", "Código de barras", "pieza"},
                {"7501000100028", "CAN-NAVIDAD", "Código de barras", "pieza"},
                {"7501000100035", "CAN-GOURMET", "Código de barras", "pieza"},
                {"7501000100042", "TRUFAS", "Código de barras", "caja"},
                {"7501000100059", "PASTEL-CHOC", "Código de barras", "pieza"},
                {"7501000100066", "PASTEL-NUEZ", "Código de barras", "pieza"},
                {"NAV", "CAN-NAVIDAD", "Clave corta", "mostrador"},
                {"DES", "CAN-DESAYUNO", "Clave corta", "mostrador"}});
}

/// The stock and, for each row of it, the movement by which it came in: at cost, so that the average cost is
/// that of the article.
void LlenaExistencias(BaseDatos& base, const Date& hoy) {
  const Date inicio = hoy.PlusDays(-60);
  Filas existencias, movimientos;
  std::int32_t id = 0;
  for (const Existencia& e : kExistencias) {
    const double costo = ArticuloDe(e.articulo).costo;
    // Centavos are whole, and so is the column.
    const auto centavos = static_cast<double>(ACentavos(e.cantidad * costo));
    ++id;
    existencias.push_back({e.articulo, e.almacen, e.cantidad, centavos, id});
    movimientos.push_back({id, inicio, "E", "INI", std::int32_t{0}, "0", std::int32_t{0}, "1", "ADMIN",
                           e.almacen, e.articulo, e.cantidad, costo, centavos});
  }
  InsertaFilas(base, "movimientos",
               "(id, fecha, tipo, concepto, orden, folio, referencia, documento, usuario, almacen, articulo, "
               "cantidad, costo, importe)",
               movimientos);
  InsertaFilas(base, "existencias", "(articulo, almacen, cantidad, valor, movimiento)", existencias);
}

/// Orders with their lines, and the numbering in step with them.
void LlenaOrdenes(BaseDatos& base, const Date& hoy) {
  const auto dia = [&](int dias) { return hoy.PlusDays(dias); };
  Filas ordenes, partidas;
  std::int32_t entrada = 0;
  for (const Orden& o : kOrdenes) {
    double importe = 0, costo = 0;
    for (const Partida& p : kPartidas) {
      if (p.op != o.op) continue;
      const Articulo& articulo = ArticuloDe(p.articulo);
      importe += p.cantidad * articulo.precio;
      costo += p.cantidad * articulo.costo;
      partidas.push_back({++entrada, o.op, "OP", o.op, p.articulo, p.cantidad, articulo.precio, 0.0, p.observ,
                          std::int32_t{0}, o.terminada ? p.cantidad : 0.0, o.usuario, dia(o.emision),
                          "10:15:00"});
    }
    ordenes.push_back({o.op, o.estado, o.ocupado, o.usuario, dia(o.emision), "10:20:00", dia(o.emision),
                       dia(o.entrega), importe, costo, o.almacen, o.observ, o.automatico, o.ordencompra,
                       o.cerrado, "OP"});
  }
  InsertaFilas(base, "op",
               "(op, estado, ocupado, usuario, usufecha, usuhora, f_emision, fechaEntrega, importe, costo, "
               "almacen, observ, automatico, ordencompra, cerrado, Tipo_doc)",
               ordenes);
  InsertaFilas(
      base, "oppart",
      "(id_entrada, op, tipo_doc, no_referen, articulo, cantidad, precio, impuesto, observ, partida, "
      "terminado, usuario, usufecha, usuhora)",
      partidas);
  InsertaFilas(base, "folios", "(clave, ultimo)",
               {{"Op", std::rbegin(kOrdenes)->op},
                {"oppart", entrada},
                {"ENSAMBLE", std::int32_t{0}},
                {"DESENSAMB", std::int32_t{0}},
                {"movimientos", static_cast<std::int32_t>(std::size(kExistencias))},
                {"horarios", std::int32_t{4}},
                {"bitacora", std::int32_t{0}}});
}

void LlenaTurnos(BaseDatos& base, const Date& hoy) {
  const Date manana = hoy.PlusDays(1);
  InsertaFilas(base, "empleados", "(empleado, nombre)",
               {{"E01", "Lucía Méndez Ortega"},
                {"E02", "Raúl Íñiguez Peña"},
                {"E03", "Begoña Ruiz Lara"},
                {"E04", "Tomás Aguirre Solís"},
                {"E05", "María José Núñez"},
                {"E06", "Óscar Villalobos"}});
  InsertaFilas(base, "turnos", "(turno, entrada, comida, salida, descanso, regcomida)",
               {{"Matutino", "06:00", "10:00", "14:00", "Dimingo", "10:30"},
                {"Vespertino", "14:00", "18:00", "22:00", "Lunes", "18:30"},
                {"Reparto", "09:00", "14:00", "18:00", "Sabado", "15:00"}});
  InsertaFilas(base, "turnoempleado", "(turno, empleado)",
               {{"Matutino", "E01"}, {"Matutino", "E03"}, {"Vespertino", "E02"}, {"Reparto", "E04"}});
  InsertaFilas(base, "horarios", "(id, turno, fecha, Empleado, HoraEntrada, comida, HoraSalida)",
               {{1, "Matutino", hoy, "E01", "06:00", "10:00", "14:00"},
                {2, "Matutino", hoy, "E03", "06:00", "10:00", "14:00"},
                {3, "Vespertino", hoy, "E02", "14:00", "18:00", "22:00"},
                {4, "Matutino", manana, "E01", "06:00", "10:00", "14:00"}});
}

/// What every shop has, the example and an empty one.
void LlenaCatalogos(BaseDatos& base) {
  InsertaFilas(base, "conceptos", "(concepto, descrip)",
               {{"OP", "Orden de producción"},
                {"COP", "Cancelación de orden de producción"},
                {"EN", "Componentes de un ensamble"},
                {"DE", "Entrada del kit ensamblado"},
                {"DES", "Componentes de un desensamble"},
                {"DEN", "Salida del kit desensamblado"},
                {"INI", "Inventario inicial"},
                // What an order is made for: these are what the order itself is given.
                {"1", "Producción para existencias"},
                {"2", "Pedido de cliente"},
                {"3", "Reposición de piso de venta"},
                {"4", "Muestras y degustaciones"}});
  InsertaFilas(base, "impuestos", "(impuesto, descrip, porcentaje)",
               {{"IVA16", "IVA 16 %", 16.0}, {"IVA8", "IVA frontera 8 %", 8.0}, {"EXENTO", "Exento", 0.0}});
}

}  // namespace

void LlenaVacia(BaseDatos& base) {
  LlenaCatalogos(base);
  InsertaFilas(base, "almacen", "(almacen, nombre)", {{1, "Almacén general"}});
  InsertaFilas(base, "monedas", "(moneda, descrip, Tc, Base)", {{"MXN", "Peso mexicano", 1.0, 1}});
  InsertaFilas(base, "parametros", "(estacion, Almacen, Lector)", {{1, 1, 0}});
}

void LlenaTienda(BaseDatos& base, const Date& hoy) {
  InsertaFilas(base, "almacen", "(almacen, nombre)",
               {{1, "Tienda"}, {2, "Bodega de materia prima"}, {3, "Taller de repostería"}});
  InsertaFilas(base, "monedas", "(moneda, descrip, Tc, Base)",
               {{"MXN", "Peso mexicano", 1.0, 1}, {"USD", "Dólar", 17.25, 0}, {"EUR", "Euro", 18.9, 0}});
  InsertaFilas(base, "vends", "(vend, Nombre)",
               {{"V01", "Ana Sofía Torres"}, {"V02", "Ernesto Peña"}, {"V03", "Mostrador"}});
  LlenaCatalogos(base);
  InsertaFilas(base, "parametros", "(estacion, Almacen, Lector)", {{1, 1, 0}, {2, 3, 1}});
  // What has to be kept cold may not be delivered into the store room.
  InsertaFilas(base, "restricciones", "(ubicacion, almacen)", {{"O-FRIO", 2}, {"T-FRIO", 2}});
  LlenaArticulos(base);
  LlenaExistencias(base, hoy);
  LlenaOrdenes(base, hoy);
  LlenaTurnos(base, hoy);
}

}  // namespace zuvi::host
