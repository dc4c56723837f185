#include "host/reporte_orden.h"

#include <fstream>

#include "host/rutas.h"
#include "host/valuacion.h"

namespace zuvi::host {
namespace {

constexpr const char* kEstilo = R"(<style>
body { font: 11pt "Segoe UI", Arial, sans-serif; margin: 2cm; }
h1 { font-size: 16pt; }
table { border-collapse: collapse; width: 100%; margin-top: 1em; }
th, td { border-bottom: 1px solid #bbb; padding: 4px 6px; text-align: left; }
thead { display: table-header-group; }
tr { break-inside: avoid; }
.n { text-align: right; font-variant-numeric: tabular-nums; }
.datos th { width: 11em; border: 0; }
.datos td { border: 0; }
tfoot td { font-weight: bold; border-top: 2px solid #333; }
@page { margin: 1.5cm; }
</style>)";

std::string Html(const std::string& texto) {
  std::string html;
  for (const char c : texto) {
    switch (c) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      default:
        html += c;
    }
  }
  return html;
}

std::string Texto(const Value& valor) { return valor.IsNull() ? "" : Html(ATexto(valor)); }
double Numero(const Value& valor) { return valor.IsNull() ? 0 : ANumero(valor); }
std::string Dia(const Value& valor) {
  return valor.IsNull() || ATexto(valor).empty() ? "" : AFecha(valor).Formatea("dd-MM-yyyy");
}

std::string Dato(const char* nombre, const std::string& html) {
  return std::string("<tr><th>") + nombre + "</th><td>" + html + "</td></tr>\n";
}
std::string Celda(const std::string& html) { return "<td>" + html + "</td>"; }
std::string CeldaN(const std::string& html) { return "<td class=\"n\">" + html + "</td>"; }

std::string Estado(Recordset& orden) {
  std::string estado = ATexto(orden.Campo("estado")) == "CO" ? "Confirmada" : "Pendiente";
  if (Numero(orden.Campo("cerrado")) != 0) estado += ", cerrada";
  return estado;
}

}  // namespace

std::string PaginaDeOrden(BaseDatos& base, std::int32_t op) {
  const std::string numero = Decimal(op);
  const auto orden = base.Consulta(
      "SELECT op.*, almacen.nombre FROM op LEFT JOIN almacen ON almacen.almacen = op.almacen WHERE op.op = " +
      numero);
  if (orden->Eof()) throw HostError("La orden de producción " + numero + " no existe");

  std::string html = "<!DOCTYPE html>\n<html lang=\"es\">\n<head>\n<meta charset=\"utf-8\">\n<title>Orden " +
                     numero + "</title>\n" + kEstilo + "\n</head>\n<body>\n<h1>Orden de producción " +
                     numero + "</h1>\n<table class=\"datos\">\n";
  html += Dato("Estado", Estado(*orden));
  html += Dato("Fecha del documento", Dia(orden->Campo("f_emision")));
  html += Dato("Fecha de entrega", Dia(orden->Campo("fechaEntrega")));
  html += Dato("Entregar en almacén", Texto(orden->Campo("almacen")) + " " + Texto(orden->Campo("nombre")));
  html += Dato("Orden de compra", Texto(orden->Campo("ordencompra")));
  html += Dato("Elaboró", Texto(orden->Campo("usuario")) + ", " + Dia(orden->Campo("usufecha")) + " " +
                              Texto(orden->Campo("usuhora")));
  html += Dato("Observaciones", Texto(orden->Campo("observ")));
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
    const double piezas = Numero(partidas->Campo("cantidad"));
    const double precio = Numero(partidas->Campo("precio"));
    const std::int64_t linea = ACentavos(piezas * precio);
    html += "<tr>" + Celda(Texto(partidas->Campo("articulo"))) + Celda(Texto(partidas->Campo("descrip"))) +
            Celda(Texto(partidas->Campo("unidad"))) + CeldaN(TextoDeNumero(piezas)) +
            CeldaN(TextoDeNumero(Numero(partidas->Campo("terminado")))) +
            CeldaN(TextoImporte(ACentavos(precio))) + CeldaN(TextoImporte(linea)) +
            Celda(Texto(partidas->Campo("observ"))) + "</tr>\n";
    cantidad += piezas;
    terminado += Numero(partidas->Campo("terminado"));
    importe += linea;
    impuesto += ACentavos(Numero(partidas->Campo("impuesto")));
  }
  const auto total = [](const char* nombre, std::int64_t valor) {
    return std::string("<tr><td colspan=\"6\">") + nombre + "</td>" + CeldaN(TextoImporte(valor)) +
           "<td></td></tr>\n";
  };
  html += "</tbody>\n<tfoot>\n<tr><td colspan=\"3\">Piezas</td>" + CeldaN(TextoDeNumero(cantidad)) +
          CeldaN(TextoDeNumero(terminado)) + "<td></td><td></td><td></td></tr>\n" +
          total("Importe", importe) + total("Impuesto", impuesto) + total("Total", importe + impuesto) +
          "</tfoot>\n</table>\n</body>\n</html>\n";
  return html;
}

std::string EscribeReporteOrden(BaseDatos& base, std::int32_t op, const std::string& ruta) {
  const std::string pagina = PaginaDeOrden(base, op);
  const std::filesystem::path carpeta = Ruta(ruta.empty() ? "." : ruta) / "Reportes";
  std::error_code fallo;
  std::filesystem::create_directories(carpeta, fallo);
  const std::filesystem::path archivo = carpeta / ("ORDENP-" + Decimal(op) + ".html");
  std::ofstream salida(archivo, std::ios::binary | std::ios::trunc);
  salida << pagina;
  salida.close();
  if (!salida) throw HostError("No se pudo escribir el reporte " + TextoDeRuta(archivo));
  return TextoDeRuta(archivo);
}

}  // namespace zuvi::host
