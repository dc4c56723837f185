#include "host/cli/listados.h"

#include <array>

#include "host/celdas.h"
#include "host/cli/tabla.h"
#include "host/ocupadas.h"
#include "host/ordenes.h"
#include "host/revision.h"
#include "host/valuacion.h"

namespace zuvi::cli {
namespace {

using host::BaseDatos;
using host::DiaDe;
using host::Literal;
using host::NumeroDe;
using host::TextoDe;
using host::TextoImporte;

std::int64_t Centavos(const Value& valor) { return static_cast<std::int64_t>(NumeroDe(valor)); }
constexpr const char* kIso = "yyyy-MM-dd";

std::string EstadoDe(Recordset& orden) {
  std::string estado = TextoDe(orden.Campo("estado"));
  if (NumeroDe(orden.Campo("cerrado")) != 0) estado += " cerrada";
  if (NumeroDe(orden.Campo("ocupado")) != 0) estado += " ocupada";
  return estado;
}

}  // namespace

void EscribeConsulta(std::ostream& salida, BaseDatos& base, const std::string& sql) {
  const auto filas = base.Consulta(sql);
  const ObjectPtr campos = AObjeto(filas->Call("Fields"));
  const std::int32_t cuantos = AEntero32(campos->Call("Count"));
  std::vector<std::string> encabezados;
  for (std::int32_t i = 0; i < cuantos; ++i) {
    std::array<Value, 1> indice{i};
    encabezados.push_back(ATexto(AObjeto(campos->Call("Item", indice))->Call("Name")));
  }
  Tabla tabla(std::move(encabezados));
  for (; !filas->Eof(); filas->MoveNext()) {
    std::vector<std::string> fila;
    for (std::int32_t i = 0; i < cuantos; ++i) fila.push_back(TextoDe(filas->Campo(i)));
    tabla.Agrega(std::move(fila));
  }
  tabla.Escribe(salida);
}

void EscribeExistencias(std::ostream& salida, BaseDatos& base, const std::string& articulo) {
  const std::string condicion =
      articulo.empty() ? "" : " WHERE existencias.articulo = " + Literal(base.TraeMotor(), articulo);
  const auto filas = base.Consulta(
      "SELECT existencias.articulo, prods.descrip, existencias.almacen, existencias.cantidad, prods.unidad, "
      "existencias.valor, prods.costo FROM existencias LEFT JOIN prods ON prods.articulo = "
      "existencias.articulo" +
      condicion + " ORDER BY existencias.articulo, existencias.almacen");
  Tabla tabla({"Artículo", "Descripción", ">Almacén", ">Cantidad", "Unidad", ">Costo", ">Valor"});
  std::int64_t total = 0;
  for (; !filas->Eof(); filas->MoveNext()) {
    const std::int64_t valor = Centavos(filas->Campo("valor"));
    total += valor;
    tabla.Agrega({TextoDe(filas->Campo("articulo")), TextoDe(filas->Campo("descrip")),
                  TextoDe(filas->Campo("almacen")), TextoDeNumero(NumeroDe(filas->Campo("cantidad"))),
                  TextoDe(filas->Campo("unidad")),
                  TextoDeNumero(host::RedondeaCantidad(NumeroDe(filas->Campo("costo")))),
                  TextoImporte(valor)});
  }
  tabla.Agrega({"Total", "", "", "", "", "", TextoImporte(total)});
  tabla.Escribe(salida);
}

void EscribeOrdenes(std::ostream& salida, BaseDatos& base) {
  const auto filas = host::ResumenDeOrdenes(base);
  Tabla tabla({">Orden", "Estado", "Emitida", "Entrega", ">Almacén", "Usuario", ">Partidas", ">Cantidad",
               ">Terminado"});
  for (; !filas->Eof(); filas->MoveNext())
    tabla.Agrega({TextoDe(filas->Campo("op")), EstadoDe(*filas), DiaDe(filas->Campo("f_emision"), kIso),
                  DiaDe(filas->Campo("fechaEntrega"), kIso), TextoDe(filas->Campo("almacen")),
                  TextoDe(filas->Campo("usuario")), TextoDeNumero(NumeroDe(filas->Campo("partidas"))),
                  TextoDeNumero(NumeroDe(filas->Campo("cantidad"))),
                  TextoDeNumero(NumeroDe(filas->Campo("terminado")))});
  tabla.Escribe(salida);
}

void EscribeOrden(std::ostream& salida, BaseDatos& base, std::int32_t op) {
  const std::string numero = Decimal(op);
  const auto orden = base.Consulta("SELECT * FROM op WHERE op = " + numero);
  if (orden->Eof()) throw HostError("La orden " + numero + " no existe");
  salida << "Orden " << numero << "  " << EstadoDe(*orden) << "  almacén " << TextoDe(orden->Campo("almacen"))
         << "  emitida " << DiaDe(orden->Campo("f_emision"), kIso) << "  entrega "
         << DiaDe(orden->Campo("fechaEntrega"), kIso) << "  usuario " << TextoDe(orden->Campo("usuario"))
         << '\n';
  if (const std::string observ = TextoDe(orden->Campo("observ")); !observ.empty()) salida << observ << '\n';
  const auto filas = base.Consulta(
      "SELECT oppart.*, prods.descrip FROM oppart LEFT JOIN prods ON prods.articulo = oppart.articulo WHERE "
      "oppart.op = " +
      numero + " ORDER BY oppart.id_entrada");
  Tabla tabla({">Partida", "Artículo", "Descripción", ">Cantidad", ">Terminado", ">Precio", "Observaciones"});
  for (; !filas->Eof(); filas->MoveNext())
    tabla.Agrega({TextoDe(filas->Campo("id_entrada")), TextoDe(filas->Campo("articulo")),
                  TextoDe(filas->Campo("descrip")), TextoDeNumero(NumeroDe(filas->Campo("cantidad"))),
                  TextoDeNumero(NumeroDe(filas->Campo("terminado"))),
                  TextoDeNumero(NumeroDe(filas->Campo("precio"))), TextoDe(filas->Campo("observ"))});
  tabla.Escribe(salida);
}

void EscribeKit(std::ostream& salida, BaseDatos& base, const std::string& articulo) {
  const std::string literal = Literal(base.TraeMotor(), articulo);
  const auto receta = base.Consulta("SELECT Minimo FROM componen WHERE articulo = " + literal);
  const auto partes = base.Consulta(
      "SELECT comppart.Componente, prods.descrip, comppart.Cantidad, prods.unidad, comppart.Almacen, "
      "prods.costo "
      "FROM comppart LEFT JOIN prods ON prods.articulo = comppart.Componente WHERE comppart.articulo = " +
      literal + " ORDER BY comppart.renglon");
  if (partes->Eof()) throw HostError("El artículo " + articulo + " no tiene componentes");
  const double minimo = receta->Eof() ? 0 : NumeroDe(receta->Campo("Minimo"));
  salida << articulo << "  la receta rinde " << TextoDeNumero(minimo) << '\n';
  Tabla tabla({"Componente", "Descripción", ">Cantidad", "Unidad", ">Almacén", ">Costo", ">Importe"});
  std::int64_t total = 0;
  for (; !partes->Eof(); partes->MoveNext()) {
    const double cantidad = NumeroDe(partes->Campo("Cantidad"));
    const double costo = NumeroDe(partes->Campo("costo"));
    const std::int64_t importe = host::ACentavos(cantidad * costo);
    total += importe;
    tabla.Agrega({TextoDe(partes->Campo("Componente")), TextoDe(partes->Campo("descrip")),
                  TextoDeNumero(cantidad), TextoDe(partes->Campo("unidad")),
                  TextoDe(partes->Campo("Almacen")), TextoDeNumero(host::RedondeaCantidad(costo)),
                  TextoImporte(importe)});
  }
  tabla.Agrega({"Total de la receta", "", "", "", "", "", TextoImporte(total)});
  tabla.Escribe(salida);
}

bool EscribeRevision(std::ostream& salida, BaseDatos& base) {
  const auto existencias = host::ExistenciasSinMovimientos(base);
  Tabla diferencias(
      {"Artículo", ">Almacén", ">Cantidad", ">Según movimientos", ">Valor", ">Según movimientos"});
  for (; !existencias->Eof(); existencias->MoveNext())
    diferencias.Agrega({TextoDe(existencias->Campo("articulo")), TextoDe(existencias->Campo("almacen")),
                        TextoDeNumero(host::RedondeaCantidad(NumeroDe(existencias->Campo("cantidad")))),
                        TextoDeNumero(host::RedondeaCantidad(NumeroDe(existencias->Campo("movida")))),
                        TextoImporte(Centavos(existencias->Campo("valor"))),
                        TextoImporte(Centavos(existencias->Campo("importe")))});
  Tabla costos({"Artículo", ">Costo", ">Promedio"});
  for (const auto filas = host::CostosSinExplicar(base); !filas->Eof(); filas->MoveNext())
    costos.Agrega({TextoDe(filas->Campo("articulo")),
                   TextoDeNumero(host::RedondeaCantidad(NumeroDe(filas->Campo("costo")))),
                   TextoDeNumero(host::RedondeaCantidad(NumeroDe(filas->Campo("promedio"))))});
  const bool cuadra = diferencias.Vacia();
  if (cuadra)
    salida << "Las existencias cuadran con los movimientos\n";
  else
    diferencias.Escribe(salida);
  if (!costos.Vacia()) {
    salida << "Costos que no son el promedio de las existencias:\n";
    costos.Escribe(salida);
  }
  return cuadra;
}

void EscribeOcupadas(std::ostream& salida, BaseDatos& base) {
  Tabla tabla({">Orden", "Estado", "Usuario", "Fecha", "Hora"});
  for (const auto filas = host::OrdenesOcupadas(base); !filas->Eof(); filas->MoveNext())
    tabla.Agrega({TextoDe(filas->Campo("op")), TextoDe(filas->Campo("estado")),
                  TextoDe(filas->Campo("usuario")), DiaDe(filas->Campo("usufecha"), kIso),
                  TextoDe(filas->Campo("usuhora"))});
  if (tabla.Vacia())
    salida << "No hay órdenes ocupadas\n";
  else
    tabla.Escribe(salida);
}

}  // namespace zuvi::cli
