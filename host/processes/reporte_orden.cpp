#include "host/processes/reporte_orden.h"

#include "host/processes/paginas.h"
#include "host/shop/celdas.h"
#include "host/shop/ordenes.h"
#include "host/shop/valuacion.h"

namespace zuvi::host {
namespace {

std::string Dato(const char* nombre, const std::string& html) {
  return std::string("<tr><th>") + nombre + "</th><td>" + html + "</td></tr>\n";
}
std::string Celda(const std::string& html) { return "<td>" + html + "</td>"; }
std::string CeldaN(const std::string& html) { return "<td class=\"n\">" + html + "</td>"; }

}  // namespace

std::string PaginaDeOrden(BaseDatos& base, std::int32_t op) {
  const std::string numero = Decimal(op);
  const auto orden = base.Consulta(
      "SELECT op.*, almacen.nombre FROM op LEFT JOIN almacen ON almacen.almacen = op.almacen WHERE op.op = " +
      numero);
  if (orden->Eof()) throw HostError("La orden de producción " + numero + " no existe");

  std::string html = InicioDePagina("Orden " + numero) + "<h1>Orden de producción " + numero +
                     "</h1>\n<table class=\"datos\">\n";
  html += Dato("Estado", EstadoEnPalabras(*orden));
  html += Dato("Fecha del documento", DiaDe(orden->Campo("f_emision")));
  html += Dato("Fecha de entrega", DiaDe(orden->Campo("fechaEntrega")));
  html += Dato("Entregar en almacén", Html(TextOrNothing(orden->Campo("almacen"))) + " " +
                                          Html(TextOrNothing(orden->Campo("nombre"))));
  html += Dato("Orden de compra", Html(TextOrNothing(orden->Campo("ordencompra"))));
  html +=
      Dato("Elaboró", Html(TextOrNothing(orden->Campo("usuario"))) + ", " + DiaDe(orden->Campo("usufecha")) +
                          " " + Html(TextOrNothing(orden->Campo("usuhora"))));
  html += Dato("Observaciones", Html(TextOrNothing(orden->Campo("observ"))));
  html +=
      "</table>\n<table>\n<thead><tr><th>Artículo</th><th>Descripción</th><th>Unidad</th><th "
      "class=\"n\">Cantidad</th><th class=\"n\">Terminado</th><th class=\"n\">Precio</th><th "
      "class=\"n\">Importe</th><th>Observaciones</th></tr></thead>\n<tbody>\n";

  double cantidad = 0, terminado = 0;
  std::int64_t importe = 0, impuesto = 0;
  const auto partidas = base.Consulta(
      "SELECT oppart.*, prods.descrip, prods.unidad FROM oppart LEFT JOIN prods ON prods.articulo = "
      "oppart.articulo WHERE oppart.op = " +
      numero + " ORDER BY oppart.id_entrada");
  for (; !partidas->Eof(); partidas->MoveNext()) {
    const double piezas = NumeroDe(partidas->Campo("cantidad"));
    const double precio = NumeroDe(partidas->Campo("precio"));
    const std::int64_t linea = ACentavos(piezas * precio);
    html += "<tr>" + Celda(Html(TextOrNothing(partidas->Campo("articulo")))) +
            Celda(Html(TextOrNothing(partidas->Campo("descrip")))) +
            Celda(Html(TextOrNothing(partidas->Campo("unidad")))) + CeldaN(NumberText(piezas)) +
            CeldaN(NumberText(NumeroDe(partidas->Campo("terminado")))) +
            CeldaN(TextoImporte(ACentavos(precio))) + CeldaN(TextoImporte(linea)) +
            Celda(Html(TextOrNothing(partidas->Campo("observ")))) + "</tr>\n";
    cantidad += piezas;
    terminado += NumeroDe(partidas->Campo("terminado"));
    importe += linea;
    impuesto += ACentavos(NumeroDe(partidas->Campo("impuesto")));
  }
  const auto total = [](const char* nombre, std::int64_t valor) {
    return std::string("<tr><td colspan=\"6\">") + nombre + "</td>" + CeldaN(TextoImporte(valor)) +
           "<td></td></tr>\n";
  };
  html += "</tbody>\n<tfoot>\n<tr><td colspan=\"3\">Piezas</td>" + CeldaN(NumberText(cantidad)) +
          CeldaN(NumberText(terminado)) + "<td></td><td></td><td></td></tr>\n" + total("Importe", importe) +
          total("Impuesto", impuesto) + total("Total", importe + impuesto) + "</tfoot>\n</table>\n" +
          kFinDePagina;
  return html;
}

std::string EscribeReporteOrden(BaseDatos& base, std::int32_t op, const std::vector<std::string>& carpetas) {
  return EscribePagina("ORDENP-" + Decimal(op) + ".html", PaginaDeOrden(base, op), carpetas);
}

}  // namespace zuvi::host
