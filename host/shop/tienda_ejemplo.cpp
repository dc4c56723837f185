// The example shop "La Espiga": a pastry workshop that sells gift baskets. Materials stand in warehouse 2,
// the workshop is 3, the shop 1. Baskets and cakes are kits (kit = 1); what the workshop makes on the way
// (dough, biscuits, decorated baskets) has a recipe of its own but is an ordinary article (kit = 0).
#include <array>

#include "host/shop/esquema.h"
#include "host/shop/valuacion.h"

namespace zuvi::host {
namespace {

using Filas = std::vector<std::vector<Value>>;

struct Articulo {
  const char* clave;
  const char* descrip;
  const char* unidad;
  double costo;
  double precio;
  const char* ubicacion;
  std::int32_t kit;
};

constexpr std::array kArticulos{
    // Baking materials.
    Articulo{"HARINA", "Harina de trigo", "kg", 18.5, 0, "B-01", 0},
    Articulo{"AZUCAR", "Azúcar refinada", "kg", 24, 0, "B-01", 0},
    Articulo{"MANTEQUILLA", "Mantequilla sin sal", "kg", 142, 0, "B-FRIO", 0},
    Articulo{"HUEVO", "Huevo blanco", "pza", 3.2, 0, "B-FRIO", 0},
    Articulo{"LECHE", "Leche entera", "lt", 24.5, 0, "B-FRIO", 0},
    Articulo{"CREMA", "Crema para batir", "lt", 96, 0, "B-FRIO", 0},
    Articulo{"CHOCOLATE", "Chocolate amargo 70 %", "kg", 185, 0, "B-02", 0},
    Articulo{"NUEZ", "Nuez pecanera", "kg", 310, 0, "B-02", 0},
    Articulo{"ALMENDRA", "Almendra fileteada", "kg", 265, 0, "B-02", 0},
    Articulo{"VAINILLA", "Extracto de vainilla", "lt", 220, 0, "B-02", 0},
    Articulo{"CANELA", "Canela molida", "kg", 240, 0, "B-02", 0},
    Articulo{"CAJETA", "Cajeta quemada", "kg", 88, 0, "B-02", 0},
    // Packaging.
    Articulo{"CAJA-12", "Caja para 12 galletas", "pza", 8.5, 0, "B-03", 0},
    Articulo{"CAJA-PASTEL", "Caja para pastel", "pza", 14.9, 0, "B-03", 0},
    Articulo{"CANASTA-CH", "Canasta de mimbre chica", "pza", 65, 95, "B-03", 0},
    Articulo{"CANASTA-GDE", "Canasta de mimbre grande", "pza", 118, 170, "B-03", 0},
    Articulo{"CELOFAN", "Papel celofán", "m", 6.8, 0, "B-03", 0},
    Articulo{"LISTON", "Listón de satín", "m", 2.35, 0, "B-03", 0},
    Articulo{"MOÑO", "Moño dorado", "pza", 7.5, 12, "B-03", 0},
    Articulo{"ETIQUETA", "Etiqueta \"La Espiga\"", "pza", 0.85, 0, "B-03", 0},
    // Bought to be sold.
    Articulo{"VINO-TTO", "Vino tinto 750 ml", "pza", 186, 289, "T-01", 0},
    Articulo{"SIDRA", "Sidra rosada 750 ml", "pza", 92, 149, "T-01", 0},
    Articulo{"CAFE-250", "Café de altura 250 g", "pza", 74, 119, "T-02", 0},
    Articulo{"TE-LATA", "Té negro en lata", "pza", 68, 110, "T-02", 0},
    Articulo{"MIEL-300", "Miel de azahar 300 g", "pza", 59.9, 95, "T-02", 0},
    Articulo{"QUESO-MAN", "Queso manchego", "kg", 228, 340, "T-FRIO", 0},
    Articulo{"JAMON-SER", "Jamón serrano", "kg", 540, 820, "T-FRIO", 0},
    Articulo{"ACEITE-OL", "Aceite de oliva 500 ml", "pza", 145, 219, "T-02", 0},
    Articulo{"TURRON", "Turrón de almendra", "pza", 88, 139, "T-02", 0},
    Articulo{"ATE", "Ate de membrillo", "kg", 62, 98, "T-02", 0},
    // Made in the workshop on the way.
    Articulo{"MASA-GALLETA", "Masa para galleta", "kg", 54.5, 0, "O-FRIO", 0},
    Articulo{"GALLETA-NUEZ", "Galleta de nuez", "pza", 3.3, 8, "O-01", 0},
    Articulo{"CAJA-GALLETA", "Caja de 12 galletas de nuez", "pza", 50.4, 110, "O-01", 0},
    Articulo{"BASE-CH", "Canasta chica decorada", "pza", 88.84, 0, "O-02", 0},
    Articulo{"BASE-GDE", "Canasta grande decorada", "pza", 159.07, 0, "O-02", 0},
    // Kits that are sold.
    Articulo{"PASTEL-CHOC", "Pastel de chocolate", "pza", 180.1, 420, "O-FRIO", 1},
    Articulo{"PASTEL-NUEZ", "Pastel de nuez y cajeta", "pza", 178.78, 460, "O-FRIO", 1},
    Articulo{"TRUFAS", "Caja de trufas", "pza", 53.13, 135, "O-01", 1},
    Articulo{"CAN-DESAYUNO", "Canasta Desayuno", "pza", 304.14, 890, "T-03", 1},
    Articulo{"CAN-NAVIDAD", "Canasta Navidad", "pza", 808.87, 1690, "T-03", 1},
    Articulo{"CAN-GOURMET", "Canasta Gourmet", "pza", 697.07, 1590, "T-03", 1},
    Articulo{"PQ-EMPRESA", "Paquete empresarial", "paq", 3850.27, 9900, "T-03", 1},
};

struct Parte {
  const char* componente;
  double cantidad;
  std::int32_t almacen;
};
struct Receta {
  const char* articulo;
  double minimo;  // how many one batch yields
  std::array<Parte, 8> partes;
};

constexpr std::array kRecetas{
    Receta{"MASA-GALLETA",
           10,
           {{{"HARINA", 5, 2},
             {"MANTEQUILLA", 2.5, 2},
             {"AZUCAR", 2, 2},
             {"HUEVO", 12, 2},
             {"VAINILLA", 0.05, 2}}}},
    Receta{"GALLETA-NUEZ", 48, {{{"MASA-GALLETA", 1.2, 3}, {"NUEZ", 0.3, 2}}}},
    Receta{"CAJA-GALLETA",
           1,
           {{{"GALLETA-NUEZ", 12, 3}, {"CAJA-12", 1, 2}, {"LISTON", 0.6, 2}, {"ETIQUETA", 1, 2}}}},
    Receta{"BASE-CH",
           1,
           {{{"CANASTA-CH", 1, 2},
             {"CELOFAN", 1.5, 2},
             {"LISTON", 2.25, 2},
             {"MOÑO", 1, 2},
             {"ETIQUETA", 1, 2}}}},
    Receta{"BASE-GDE",
           1,
           {{{"CANASTA-GDE", 1, 2},
             {"CELOFAN", 2.5, 2},
             {"LISTON", 3.5, 2},
             {"MOÑO", 2, 2},
             {"ETIQUETA", 1, 2}}}},
    Receta{"PASTEL-CHOC",
           2,
           {{{"HARINA", 0.9, 2},
             {"AZUCAR", 0.7, 2},
             {"MANTEQUILLA", 0.5, 2},
             {"HUEVO", 10, 2},
             {"CHOCOLATE", 0.65, 2},
             {"CREMA", 0.75, 2},
             {"CAJA-PASTEL", 2, 2},
             {"ETIQUETA", 2, 2}}}},
    Receta{"PASTEL-NUEZ",
           2,
           {{{"HARINA", 0.9, 2},
             {"AZUCAR", 0.5, 2},
             {"MANTEQUILLA", 0.5, 2},
             {"HUEVO", 10, 2},
             {"NUEZ", 0.4, 2},
             {"CAJETA", 0.8, 2},
             {"CAJA-PASTEL", 2, 2},
             {"ETIQUETA", 2, 2}}}},
    Receta{"TRUFAS",
           6,
           {{{"CHOCOLATE", 0.9, 2},
             {"CREMA", 0.45, 2},
             {"ALMENDRA", 0.2, 2},
             {"CAJA-12", 6, 2},
             {"ETIQUETA", 6, 2}}}},
    Receta{"CAN-DESAYUNO",
           1,
           {{{"BASE-CH", 1, 3},
             {"CAFE-250", 1, 1},
             {"MIEL-300", 1, 1},
             {"CAJA-GALLETA", 1, 3},
             {"ATE", 0.5, 1}}}},
    Receta{"CAN-NAVIDAD",
           1,
           {{{"BASE-GDE", 1, 3},
             {"SIDRA", 2, 1},
             {"TURRON", 2, 1},
             {"CAJA-GALLETA", 2, 3},
             {"JAMON-SER", 0.35, 1}}}},
    Receta{"CAN-GOURMET",
           4,
           {{{"BASE-GDE", 4, 3},
             {"VINO-TTO", 4, 1},
             {"QUESO-MAN", 1.5, 1},
             {"ACEITE-OL", 4, 1},
             {"JAMON-SER", 0.9, 1}}}},
    // Kits in a kit: taking this one apart takes its baskets apart over and over, until the user cancels.
    Receta{"PQ-EMPRESA", 1, {{{"CAN-DESAYUNO", 10, 1}, {"CAN-NAVIDAD", 1, 1}}}},
};

struct Existencia {
  const char* articulo;
  std::int32_t almacen;
  double cantidad;
};

constexpr std::array kExistencias{
    Existencia{"HARINA", 2, 150},       Existencia{"AZUCAR", 2, 80},       Existencia{"MANTEQUILLA", 2, 60},
    Existencia{"HUEVO", 2, 720},        Existencia{"LECHE", 2, 40},        Existencia{"CREMA", 2, 35},
    Existencia{"CHOCOLATE", 2, 42.5},   Existencia{"NUEZ", 2, 28.75},      Existencia{"ALMENDRA", 2, 12},
    Existencia{"VAINILLA", 2, 3.5},     Existencia{"CANELA", 2, 1.25},     Existencia{"CAJETA", 2, 30},
    Existencia{"CAJA-12", 2, 400},      Existencia{"CAJA-PASTEL", 2, 120}, Existencia{"CANASTA-CH", 2, 90},
    Existencia{"CANASTA-GDE", 2, 60},   Existencia{"CELOFAN", 2, 350},     Existencia{"LISTON", 2, 600},
    Existencia{"MOÑO", 2, 220},         Existencia{"ETIQUETA", 2, 2500},   Existencia{"HARINA", 3, 12.5},
    Existencia{"AZUCAR", 3, 8},         Existencia{"VINO-TTO", 1, 48},     Existencia{"SIDRA", 1, 60},
    Existencia{"CAFE-250", 1, 75},      Existencia{"TE-LATA", 1, 40},      Existencia{"MIEL-300", 1, 66},
    Existencia{"QUESO-MAN", 1, 9.35},   Existencia{"JAMON-SER", 1, 11.2},  Existencia{"ACEITE-OL", 1, 36},
    Existencia{"TURRON", 1, 80},        Existencia{"ATE", 1, 25},          Existencia{"MASA-GALLETA", 3, 30},
    Existencia{"GALLETA-NUEZ", 3, 960}, Existencia{"CAJA-GALLETA", 3, 70}, Existencia{"CAJA-GALLETA", 1, 15},
    Existencia{"BASE-CH", 3, 40},       Existencia{"BASE-GDE", 3, 35},     Existencia{"PASTEL-CHOC", 1, 3},
    Existencia{"TRUFAS", 1, 18},        Existencia{"CAN-DESAYUNO", 1, 12}, Existencia{"CAN-NAVIDAD", 1, 4},
    Existencia{"CAN-GOURMET", 1, 2},    Existencia{"MOÑO", 1, 30},
};

struct Partida {
  const char* articulo;
  double cantidad;
  const char* observ;
};
struct Orden {
  std::int32_t op;
  const char* estado;
  std::int32_t ocupado;
  std::int32_t cerrado;
  std::int32_t automatico;
  std::int32_t almacen;
  const char* usuario;
  int emision;  // days from today
  int entrega;
  double ordencompra;
  bool terminada;
  const char* observ;
  std::array<Partida, 4> partidas;
};

constexpr std::array kOrdenes{
    Orden{101,
          "CO",
          0,
          1,
          1,
          1,
          "LUCIA",
          -30,
          -26,
          8801,
          true,
          "Entregada completa",
          {{{"CAN-DESAYUNO", 6, ""}, {"TRUFAS", 12, ""}}}},
    Orden{102, "CO", 0, 0, 1, 1, "RAUL", -14, -10, 8815, true, "", {{{"CAN-GOURMET", 4, "Con tarjeta"}}}},
    Orden{103,
          "CO",
          0,
          0,
          0,
          1,
          "LUCIA",
          -3,
          2,
          8830,
          false,
          "Cliente recoge en tienda",
          {{{"CAN-NAVIDAD", 3, ""}, {"CAN-DESAYUNO", 5, ""}, {"PASTEL-CHOC", 2, "Sin nuez"}}}},
    Orden{104,
          "PE",
          0,
          0,
          0,
          1,
          "ADMIN",
          -1,
          4,
          8834,
          false,
          "",
          {{{"CAN-DESAYUNO", 4, ""}, {"CAN-GOURMET", 2, ""}, {"TRUFAS", 6, "Listón rojo"}}}},
    Orden{105,
          "PE",
          0,
          0,
          0,
          3,
          "ADMIN",
          -1,
          1,
          0,
          false,
          "Producción interna",
          {{{"MASA-GALLETA", 2.5, ""}, {"GALLETA-NUEZ", 96, ""}, {"MASA-GALLETA", 3.5, "Para congelar"}}}},
    Orden{106,
          "PE",
          1,
          0,
          0,
          1,
          "LUCIA",
          -2,
          6,
          8835,
          false,
          "La estación se apagó con la orden abierta",
          {{{"PASTEL-NUEZ", 2, ""}}}},
    Orden{107, "PE", 0, 0, 0, 1, "RAUL", 0, 7, 0, false, "Falta capturar las partidas", {}},
    Orden{108,
          "PE",
          0,
          0,
          0,
          1,
          "ADMIN",
          0,
          5,
          8840,
          false,
          "",
          {{{"PASTEL-CHOC", 1, "Feliz cumpleaños, Begoña"}}}},
    Orden{109,
          "PE",
          0,
          0,
          0,
          1,
          "ADMIN",
          0,
          8,
          8841,
          false,
          "Incluye artículos que no se fabrican",
          {{{"BASE-CH", 10, ""}, {"MOÑO", 10, ""}, {"CAJA-GALLETA", 20, ""}}}},
    Orden{110,
          "PE",
          0,
          0,
          0,
          1,
          "RAUL",
          0,
          15,
          8850,
          false,
          "",
          {{{"PQ-EMPRESA", 1, ""}, {"CAN-NAVIDAD", 2, ""}}}},
};

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
    for (const Parte& parte : receta.partes)
      if (parte.componente)
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
void LlenaExistencias(BaseDatos& base, const Fecha& hoy) {
  const Fecha inicio = hoy.MasDias(-60);
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
void LlenaOrdenes(BaseDatos& base, const Fecha& hoy) {
  const auto dia = [&](int dias) { return hoy.MasDias(dias); };
  Filas ordenes, partidas;
  std::int32_t entrada = 0;
  for (const Orden& o : kOrdenes) {
    double importe = 0, costo = 0;
    for (const Partida& p : o.partidas) {
      if (!p.articulo) continue;
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
               {{"Op", kOrdenes.back().op},
                {"oppart", entrada},
                {"ENSAMBLE", std::int32_t{0}},
                {"DESENSAMB", std::int32_t{0}},
                {"movimientos", static_cast<std::int32_t>(kExistencias.size())},
                {"horarios", std::int32_t{4}},
                {"bitacora", std::int32_t{0}}});
}

void LlenaTurnos(BaseDatos& base, const Fecha& hoy) {
  const Fecha manana = hoy.MasDias(1);
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

void LlenaTienda(BaseDatos& base, const Fecha& hoy) {
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
