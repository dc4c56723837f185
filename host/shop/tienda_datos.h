// The example shop "La Espiga": a pastry workshop that sells gift baskets. Materials stand in warehouse 2,
// the workshop is 3, the shop 1. Baskets and cakes are kits (kit = 1); what the workshop makes on the way
// (dough, biscuits, decorated baskets) has a recipe of its own but is an ordinary article (kit = 0).
#pragma once

#include <cstdint>

namespace zuvi::host::tienda {

/// An article; `costo` and `precio` for one unit.
struct Articulo {
  const char* clave;
  const char* descrip;
  const char* unidad;
  double costo;
  double precio;
  const char* ubicacion;
  std::int32_t kit;
};

inline constexpr Articulo kArticulos[] = {
    // Baking materials.
    {"HARINA", "Harina de trigo", "kg", 18.5, 0, "B-01", 0},
    {"AZUCAR", "Azúcar refinada", "kg", 24, 0, "B-01", 0},
    {"MANTEQUILLA", "Mantequilla sin sal", "kg", 142, 0, "B-FRIO", 0},
    {"HUEVO", "Huevo blanco", "pza", 3.2, 0, "B-FRIO", 0},
    {"LECHE", "Leche entera", "lt", 24.5, 0, "B-FRIO", 0},
    {"CREMA", "Crema para batir", "lt", 96, 0, "B-FRIO", 0},
    {"CHOCOLATE", "Chocolate amargo 70 %", "kg", 185, 0, "B-02", 0},
    {"NUEZ", "Nuez pecanera", "kg", 310, 0, "B-02", 0},
    {"ALMENDRA", "Almendra fileteada", "kg", 265, 0, "B-02", 0},
    {"VAINILLA", "Extracto de vainilla", "lt", 220, 0, "B-02", 0},
    {"CANELA", "Canela molida", "kg", 240, 0, "B-02", 0},
    {"CAJETA", "Cajeta quemada", "kg", 88, 0, "B-02", 0},
    // Packaging.
    {"CAJA-12", "Caja para 12 galletas", "pza", 8.5, 0, "B-03", 0},
    {"CAJA-PASTEL", "Caja para pastel", "pza", 14.9, 0, "B-03", 0},
    {"CANASTA-CH", "Canasta de mimbre chica", "pza", 65, 95, "B-03", 0},
    {"CANASTA-GDE", "Canasta de mimbre grande", "pza", 118, 170, "B-03", 0},
    {"CELOFAN", "Papel celofán", "m", 6.8, 0, "B-03", 0},
    {"LISTON", "Listón de satín", "m", 2.35, 0, "B-03", 0},
    {"MOÑO", "Moño dorado", "pza", 7.5, 12, "B-03", 0},
    {"ETIQUETA", "Etiqueta \"La Espiga\"", "pza", 0.85, 0, "B-03", 0},
    // Bought to be sold.
    {"VINO-TTO", "Vino tinto 750 ml", "pza", 186, 289, "T-01", 0},
    {"SIDRA", "Sidra rosada 750 ml", "pza", 92, 149, "T-01", 0},
    {"CAFE-250", "Café de altura 250 g", "pza", 74, 119, "T-02", 0},
    {"TE-LATA", "Té negro en lata", "pza", 68, 110, "T-02", 0},
    {"MIEL-300", "Miel de azahar 300 g", "pza", 59.9, 95, "T-02", 0},
    {"QUESO-MAN", "Queso manchego", "kg", 228, 340, "T-FRIO", 0},
    {"JAMON-SER", "Jamón serrano", "kg", 540, 820, "T-FRIO", 0},
    {"ACEITE-OL", "Aceite de oliva 500 ml", "pza", 145, 219, "T-02", 0},
    {"TURRON", "Turrón de almendra", "pza", 88, 139, "T-02", 0},
    {"ATE", "Ate de membrillo", "kg", 62, 98, "T-02", 0},
    // Made in the workshop on the way.
    {"MASA-GALLETA", "Masa para galleta", "kg", 54.5, 0, "O-FRIO", 0},
    {"GALLETA-NUEZ", "Galleta de nuez", "pza", 3.3, 8, "O-01", 0},
    {"CAJA-GALLETA", "Caja de 12 galletas de nuez", "pza", 50.4, 110, "O-01", 0},
    {"BASE-CH", "Canasta chica decorada", "pza", 88.84, 0, "O-02", 0},
    {"BASE-GDE", "Canasta grande decorada", "pza", 159.07, 0, "O-02", 0},
    // Kits that are sold.
    {"PASTEL-CHOC", "Pastel de chocolate", "pza", 180.1, 420, "O-FRIO", 1},
    {"PASTEL-NUEZ", "Pastel de nuez y cajeta", "pza", 178.78, 460, "O-FRIO", 1},
    {"TRUFAS", "Caja de trufas", "pza", 53.13, 135, "O-01", 1},
    {"CAN-DESAYUNO", "Canasta Desayuno", "pza", 304.14, 890, "T-03", 1},
    {"CAN-NAVIDAD", "Canasta Navidad", "pza", 808.87, 1690, "T-03", 1},
    {"CAN-GOURMET", "Canasta Gourmet", "pza", 697.07, 1590, "T-03", 1},
    {"PQ-EMPRESA", "Paquete empresarial", "paq", 3850.27, 9900, "T-03", 1},
};

/// A kit.
struct Receta {
  const char* articulo;
  double minimo;  // how many one batch yields
};

inline constexpr Receta kRecetas[] = {{"MASA-GALLETA", 10}, {"GALLETA-NUEZ", 48}, {"CAJA-GALLETA", 1},
                                      {"BASE-CH", 1},       {"BASE-GDE", 1},      {"PASTEL-CHOC", 2},
                                      {"PASTEL-NUEZ", 2},   {"TRUFAS", 6},        {"CAN-DESAYUNO", 1},
                                      {"CAN-NAVIDAD", 1},   {"CAN-GOURMET", 4},   {"PQ-EMPRESA", 1}};

/// What a recipe takes, in its order, and from which warehouse.
struct Parte {
  const char* articulo;
  const char* componente;
  double cantidad;
  std::int32_t almacen;
};

inline constexpr Parte kPartes[] = {
    {"MASA-GALLETA", "HARINA", 5, 2},
    {"MASA-GALLETA", "MANTEQUILLA", 2.5, 2},
    {"MASA-GALLETA", "AZUCAR", 2, 2},
    {"MASA-GALLETA", "HUEVO", 12, 2},
    {"MASA-GALLETA", "VAINILLA", 0.05, 2},
    {"GALLETA-NUEZ", "MASA-GALLETA", 1.2, 3},
    {"GALLETA-NUEZ", "NUEZ", 0.3, 2},
    {"CAJA-GALLETA", "GALLETA-NUEZ", 12, 3},
    {"CAJA-GALLETA", "CAJA-12", 1, 2},
    {"CAJA-GALLETA", "LISTON", 0.6, 2},
    {"CAJA-GALLETA", "ETIQUETA", 1, 2},
    {"BASE-CH", "CANASTA-CH", 1, 2},
    {"BASE-CH", "CELOFAN", 1.5, 2},
    {"BASE-CH", "LISTON", 2.25, 2},
    {"BASE-CH", "MOÑO", 1, 2},
    {"BASE-CH", "ETIQUETA", 1, 2},
    {"BASE-GDE", "CANASTA-GDE", 1, 2},
    {"BASE-GDE", "CELOFAN", 2.5, 2},
    {"BASE-GDE", "LISTON", 3.5, 2},
    {"BASE-GDE", "MOÑO", 2, 2},
    {"BASE-GDE", "ETIQUETA", 1, 2},
    {"PASTEL-CHOC", "HARINA", 0.9, 2},
    {"PASTEL-CHOC", "AZUCAR", 0.7, 2},
    {"PASTEL-CHOC", "MANTEQUILLA", 0.5, 2},
    {"PASTEL-CHOC", "HUEVO", 10, 2},
    {"PASTEL-CHOC", "CHOCOLATE", 0.65, 2},
    {"PASTEL-CHOC", "CREMA", 0.75, 2},
    {"PASTEL-CHOC", "CAJA-PASTEL", 2, 2},
    {"PASTEL-CHOC", "ETIQUETA", 2, 2},
    {"PASTEL-NUEZ", "HARINA", 0.9, 2},
    {"PASTEL-NUEZ", "AZUCAR", 0.5, 2},
    {"PASTEL-NUEZ", "MANTEQUILLA", 0.5, 2},
    {"PASTEL-NUEZ", "HUEVO", 10, 2},
    {"PASTEL-NUEZ", "NUEZ", 0.4, 2},
    {"PASTEL-NUEZ", "CAJETA", 0.8, 2},
    {"PASTEL-NUEZ", "CAJA-PASTEL", 2, 2},
    {"PASTEL-NUEZ", "ETIQUETA", 2, 2},
    {"TRUFAS", "CHOCOLATE", 0.9, 2},
    {"TRUFAS", "CREMA", 0.45, 2},
    {"TRUFAS", "ALMENDRA", 0.2, 2},
    {"TRUFAS", "CAJA-12", 6, 2},
    {"TRUFAS", "ETIQUETA", 6, 2},
    {"CAN-DESAYUNO", "BASE-CH", 1, 3},
    {"CAN-DESAYUNO", "CAFE-250", 1, 1},
    {"CAN-DESAYUNO", "MIEL-300", 1, 1},
    {"CAN-DESAYUNO", "CAJA-GALLETA", 1, 3},
    {"CAN-DESAYUNO", "ATE", 0.5, 1},
    {"CAN-NAVIDAD", "BASE-GDE", 1, 3},
    {"CAN-NAVIDAD", "SIDRA", 2, 1},
    {"CAN-NAVIDAD", "TURRON", 2, 1},
    {"CAN-NAVIDAD", "CAJA-GALLETA", 2, 3},
    {"CAN-NAVIDAD", "JAMON-SER", 0.35, 1},
    {"CAN-GOURMET", "BASE-GDE", 4, 3},
    {"CAN-GOURMET", "VINO-TTO", 4, 1},
    {"CAN-GOURMET", "QUESO-MAN", 1.5, 1},
    {"CAN-GOURMET", "ACEITE-OL", 4, 1},
    {"CAN-GOURMET", "JAMON-SER", 0.9, 1},
    // Kits in a kit: taking this one apart takes its baskets apart over and over, until the user cancels.
    {"PQ-EMPRESA", "CAN-DESAYUNO", 10, 1},
    {"PQ-EMPRESA", "CAN-NAVIDAD", 1, 1},
};

/// Stock of an article in a warehouse.
struct Existencia {
  const char* articulo;
  std::int32_t almacen;
  double cantidad;
};

inline constexpr Existencia kExistencias[] = {
    {"HARINA", 2, 150},      {"AZUCAR", 2, 80},        {"MANTEQUILLA", 2, 60},  {"HUEVO", 2, 720},
    {"LECHE", 2, 40},        {"CREMA", 2, 35},         {"CHOCOLATE", 2, 42.5},  {"NUEZ", 2, 28.75},
    {"ALMENDRA", 2, 12},     {"VAINILLA", 2, 3.5},     {"CANELA", 2, 1.25},     {"CAJETA", 2, 30},
    {"CAJA-12", 2, 400},     {"CAJA-PASTEL", 2, 120},  {"CANASTA-CH", 2, 90},   {"CANASTA-GDE", 2, 60},
    {"CELOFAN", 2, 350},     {"LISTON", 2, 600},       {"MOÑO", 2, 220},        {"ETIQUETA", 2, 2500},
    {"HARINA", 3, 12.5},     {"AZUCAR", 3, 8},         {"VINO-TTO", 1, 48},     {"SIDRA", 1, 60},
    {"CAFE-250", 1, 75},     {"TE-LATA", 1, 40},       {"MIEL-300", 1, 66},     {"QUESO-MAN", 1, 9.35},
    {"JAMON-SER", 1, 11.2},  {"ACEITE-OL", 1, 36},     {"TURRON", 1, 80},       {"ATE", 1, 25},
    {"MASA-GALLETA", 3, 30}, {"GALLETA-NUEZ", 3, 960}, {"CAJA-GALLETA", 3, 70}, {"CAJA-GALLETA", 1, 15},
    {"BASE-CH", 3, 40},      {"BASE-GDE", 3, 35},      {"PASTEL-CHOC", 1, 3},   {"TRUFAS", 1, 18},
    {"CAN-DESAYUNO", 1, 12}, {"CAN-NAVIDAD", 1, 4},    {"CAN-GOURMET", 1, 2},   {"MOÑO", 1, 30},
};

/// A production order; its days count from today.
struct Orden {
  std::int32_t op;
  const char* estado;
  std::int32_t ocupado;
  std::int32_t cerrado;
  std::int32_t automatico;
  std::int32_t almacen;
  const char* usuario;
  int emision;
  int entrega;
  double ordencompra;
  bool terminada;
  const char* observ;
};

inline constexpr Orden kOrdenes[] = {
    {101, "CO", 0, 1, 1, 1, "LUCIA", -30, -26, 8801, true, "Entregada completa"},
    {102, "CO", 0, 0, 1, 1, "RAUL", -14, -10, 8815, true, ""},
    {103, "CO", 0, 0, 0, 1, "LUCIA", -3, 2, 8830, false, "Cliente recoge en tienda"},
    {104, "PE", 0, 0, 0, 1, "ADMIN", -1, 4, 8834, false, ""},
    {105, "PE", 0, 0, 0, 3, "ADMIN", -1, 1, 0, false, "Producción interna"},
    {106, "PE", 1, 0, 0, 1, "LUCIA", -2, 6, 8835, false, "La estación se apagó con la orden abierta"},
    {107, "PE", 0, 0, 0, 1, "RAUL", 0, 7, 0, false, "Falta capturar las partidas"},
    {108, "PE", 0, 0, 0, 1, "ADMIN", 0, 5, 8840, false, ""},
    {109, "PE", 0, 0, 0, 1, "ADMIN", 0, 8, 8841, false, "Incluye artículos que no se fabrican"},
    {110, "PE", 0, 0, 0, 1, "RAUL", 0, 15, 8850, false, ""},
};

/// The lines of the orders, order by order.
struct Partida {
  std::int32_t op;
  const char* articulo;
  double cantidad;
  const char* observ;
};

inline constexpr Partida kPartidas[] = {
    {101, "CAN-DESAYUNO", 6, ""},
    {101, "TRUFAS", 12, ""},
    {102, "CAN-GOURMET", 4, "Con tarjeta"},
    {103, "CAN-NAVIDAD", 3, ""},
    {103, "CAN-DESAYUNO", 5, ""},
    {103, "PASTEL-CHOC", 2, "Sin nuez"},
    {104, "CAN-DESAYUNO", 4, ""},
    {104, "CAN-GOURMET", 2, ""},
    {104, "TRUFAS", 6, "Listón rojo"},
    {105, "MASA-GALLETA", 2.5, ""},
    {105, "GALLETA-NUEZ", 96, ""},
    {105, "MASA-GALLETA", 3.5, "Para congelar"},
    {106, "PASTEL-NUEZ", 2, ""},
    {108, "PASTEL-CHOC", 1, "Feliz cumpleaños, Begoña"},
    {109, "BASE-CH", 10, ""},
    {109, "MOÑO", 10, ""},
    {109, "CAJA-GALLETA", 20, ""},
    {110, "PQ-EMPRESA", 1, ""},
    {110, "CAN-NAVIDAD", 2, ""},
};

}  // namespace zuvi::host::tienda
