#include "host/processes/codigos.h"

#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "base/clock.h"
#include "base/text.h"
#include "host/processes/paginas.h"
#include "host/shop/celdas.h"
#include "host/shop/esquema.h"

namespace zuvi::host {
namespace {

/// Bars and spaces of a character, beginning with a bar; w is a wide one.
std::string_view Trazos(char c) {
  constexpr std::array<std::pair<char, std::string_view>, 12> kTrazos{{{'0', "nnnwwnwnn"},
                                                                       {'1', "wnnwnnnnw"},
                                                                       {'2', "nnwwnnnnw"},
                                                                       {'3', "wnwwnnnnn"},
                                                                       {'4', "nnnwwnnnw"},
                                                                       {'5', "wnnwwnnnn"},
                                                                       {'6', "nnwwwnnnn"},
                                                                       {'7', "nnnwnnwnw"},
                                                                       {'8', "wnnwnnwnn"},
                                                                       {'9', "nnwwnnwnn"},
                                                                       {'-', "nwnnnnwnw"},
                                                                       {'*', "nwnnwnwnn"}}};
  for (const auto& [caracter, trazos] : kTrazos)
    if (caracter == c) return trazos;
  throw HostError(ErrorNumber::InvalidCall);
}

constexpr const char* kEstiloEtiquetas = R"(body { margin: 0; display: flex; flex-wrap: wrap; gap: 4mm; }
.etiqueta { width: 62mm; border: 1px dashed #999; padding: 3mm; break-inside: avoid; }
.etiqueta b { display: block; font-size: 13pt; }
.etiqueta svg { display: block; width: 100%; height: 14mm; margin-top: 2mm; }
.codigo { text-align: center; letter-spacing: 2px; font-family: Consolas, monospace; }
)";

}  // namespace

std::int32_t GeneraCodigos(BaseDatos& base, std::int32_t op, const std::string& usuario) {
  const std::string numero = Decimal(op);
  Transaccion transaccion(base);
  const Value ultimo = base.Consulta("SELECT MAX(consecutivo) FROM codigos WHERE op = " + numero)->Campo(0);
  std::int32_t consecutivo = ultimo.IsNull() ? 0 : ToInt32(ultimo);
  std::vector<std::vector<Value>> filas;
  const auto faltan = base.Consulta(
      "SELECT oppart.id_entrada, oppart.articulo FROM oppart LEFT JOIN codigos ON codigos.id_entrada = "
      "oppart.id_entrada AND codigos.articulo = oppart.articulo WHERE oppart.op = " +
      numero + " AND codigos.codigo IS NULL AND oppart.articulo IS NOT NULL ORDER BY oppart.id_entrada");
  for (; !faltan->Eof(); faltan->MoveNext()) {
    ++consecutivo;
    filas.push_back({ZeroPadded(op, 6) + "-" + ZeroPadded(consecutivo, 3), op, consecutivo,
                     faltan->Campo("id_entrada"), faltan->Campo("articulo"), usuario,
                     Date::FromCivil(Ahora())});
  }
  InsertaFilas(base, "codigos", "(codigo, op, consecutivo, id_entrada, articulo, usuario, fecha)", filas);
  transaccion.Confirma();
  return static_cast<std::int32_t>(filas.size());
}

std::string PaginaDeCodigos(BaseDatos& base, std::int32_t op) {
  const auto filas = base.Consulta(
      "SELECT codigos.codigo, oppart.articulo, oppart.cantidad, prods.descrip, prods.unidad FROM oppart "
      "INNER JOIN codigos ON codigos.id_entrada = oppart.id_entrada AND codigos.articulo = oppart.articulo "
      "LEFT JOIN prods ON prods.articulo = oppart.articulo WHERE oppart.op = " +
      Decimal(op) + " ORDER BY codigos.consecutivo");
  if (filas->Eof())
    throw HostError("La orden de producción " + Decimal(op) + " no tiene partidas con código");
  std::string html = InicioDePagina("Códigos de la orden " + Decimal(op), kEstiloEtiquetas);
  for (; !filas->Eof(); filas->MoveNext()) {
    const std::string codigo = TextOrNothing(filas->Campo("codigo"));
    html += "<div class=\"etiqueta\"><b>" + Html(TextOrNothing(filas->Campo("articulo"))) + "</b>" +
            Html(TextOrNothing(filas->Campo("descrip"))) + "<br>Orden " + Decimal(op) + ", " +
            NumberText(NumeroDe(filas->Campo("cantidad"))) + " " +
            Html(TextOrNothing(filas->Campo("unidad"))) + Barras(codigo) + "<div class=\"codigo\">" + codigo +
            "</div></div>\n";
  }
  return html + kFinDePagina;
}

std::string Barras(const std::string& codigo) {
  constexpr int kAncho = 3;  // of a wide bar, in narrow ones
  std::string dibujo;
  int x = 0;
  for (const char c : "*" + codigo + "*") {
    bool barra = true;
    for (const char trazo : Trazos(c)) {
      const int ancho = trazo == 'w' ? kAncho : 1;
      if (barra)
        dibujo +=
            "<rect x=\"" + std::to_string(x) + "\" width=\"" + std::to_string(ancho) + "\" height=\"1\"/>";
      x += ancho;
      barra = !barra;
    }
    ++x;  // the gap between characters
  }
  return "<svg viewBox=\"0 0 " + std::to_string(x - 1) + " 1\" preserveAspectRatio=\"none\">" + dibujo +
         "</svg>";
}

}  // namespace zuvi::host
