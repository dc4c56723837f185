#include "host/shop/catalogos.h"

#include <array>

#include "base/text.h"

namespace zuvi::host {
namespace {

constexpr std::array kCatalogos{
    Catalogo{"Articulos", "prods", "articulo", "descrip"},
    Catalogo{"Almacenes", "almacen", "almacen", "nombre"},
    // The key goes into a column of numbers: those of the movements, which are letters, are not offered.
    Catalogo{"Conceptos de Op al inventario", "conceptos", "concepto", "descrip", true},
    Catalogo{"Impuestos por porcentaje", "impuestos", "impuesto", "descrip"},
};

/// The text between wildcards, with the wildcards inside it taken literally.
std::string Patron(Engine motor, const std::string& busqueda) {
  std::string patron = "%";
  for (const char c : busqueda) {
    if (c == '%' || c == '_' || c == '!') patron += '!';
    patron += c;
  }
  return "UPPER(" + Literal(motor, patron + '%') + ")";
}

/// Digits and nothing else, said in what both engines know.
std::string SoloDigitos(const std::string& columna) {
  std::string resto = columna;
  for (char c = '0'; c <= '9'; ++c)
    resto = std::string("REPLACE(").append(resto).append(", '").append(1, c).append("', '')");
  return "(" + columna + " <> '' AND " + resto + " = '')";
}

}  // namespace

const Catalogo& CatalogoDe(std::string_view titulo) {
  for (const Catalogo& catalogo : kCatalogos)
    if (EqualsIgnoringCase(catalogo.titulo, titulo)) return catalogo;
  throw HostError("No hay un catálogo con el título \"" + std::string(titulo) + "\"");
}

std::shared_ptr<Recordset> BuscaEnCatalogo(BaseDatos& base, const Catalogo& catalogo,
                                           const std::string& filtro, const std::string& busqueda,
                                           std::int32_t maximo) {
  const std::string clave = catalogo.clave;
  const std::string descripcion = catalogo.descripcion;
  std::string condicion;
  const auto exige = [&](const std::string& otra) {
    condicion += (condicion.empty() ? " WHERE " : " AND ") + otra;
  };
  if (catalogo.numerico) exige(SoloDigitos(clave));
  if (!Trim(filtro).empty()) exige("(" + filtro + ")");
  if (!busqueda.empty()) {
    const std::string como = ") LIKE " + Patron(base.GetEngine(), busqueda) + " ESCAPE '!'";
    exige("(UPPER(" + clave + como + " OR UPPER(" + descripcion + como + ")");
  }
  return base.Consulta("SELECT " + clave + ", " + descripcion + " FROM " + catalogo.tabla + condicion +
                       " ORDER BY " + clave + (maximo > 0 ? " LIMIT " + Decimal(maximo) : std::string()));
}

}  // namespace zuvi::host
