#include "host/cli/listados.h"

#include <array>

#include "host/cli/tabla.h"
#include "host/ocupadas.h"
#include "host/valuacion.h"

namespace zuvi::cli {
namespace {

using host::BaseDatos;
using host::Literal;
using host::TextoImporte;

std::string Texto(const Value& valor) { return valor.IsNull() ? "" : ATexto(valor); }
double Numero(const Value& valor) { return valor.IsNull() ? 0 : ANumero(valor); }
std::int64_t Centavos(const Value& valor) { return static_cast<std::int64_t>(Numero(valor)); }
std::string Dia(const Value& valor) {
  return valor.IsNull() || ATexto(valor).empty() ? "" : AFecha(valor).Formatea("yyyy-MM-dd");
}

std::string EstadoDe(Recordset& orden) {
  std::string estado = Texto(orden.Campo("estado"));
  if (Numero(orden.Campo("cerrado")) != 0) estado += " cerrada";
  if (Numero(orden.Campo("ocupado")) != 0) estado += " ocupada";
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
    for (std::int32_t i = 0; i < cuantos; ++i) fila.push_back(Texto(filas->Campo(i)));
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
    tabla.Agrega({Texto(filas->Campo("articulo")), Texto(filas->Campo("descrip")),
                  Texto(filas->Campo("almacen")), TextoDeNumero(Numero(filas->Campo("cantidad"))),
                  Texto(filas->Campo("unidad")),
                  TextoDeNumero(host::RedondeaCantidad(Numero(filas->Campo("costo")))), TextoImporte(valor)});
  }
  tabla.Agrega({"Total", "", "", "", "", "", TextoImporte(total)});
  tabla.Escribe(salida);
}

void EscribeOrdenes(std::ostream& salida, BaseDatos& base) {
  const auto filas = base.Consulta(
      "SELECT op.op, op.estado, op.cerrado, op.ocupado, op.f_emision, op.fechaEntrega, op.almacen, "
      "op.usuario, "
      "COUNT(oppart.id_entrada) AS partidas, COALESCE(SUM(oppart.cantidad), 0) AS cantidad, "
      "COALESCE(SUM(oppart.terminado), 0) AS terminado FROM op LEFT JOIN oppart ON oppart.op = op.op GROUP "
      "BY "
      "op.op, op.estado, op.cerrado, op.ocupado, op.f_emision, op.fechaEntrega, op.almacen, op.usuario ORDER "
      "BY "
      "op.op");
  Tabla tabla({">Orden", "Estado", "Emitida", "Entrega", ">Almacén", "Usuario", ">Partidas", ">Cantidad",
               ">Terminado"});
  for (; !filas->Eof(); filas->MoveNext())
    tabla.Agrega({Texto(filas->Campo("op")), EstadoDe(*filas), Dia(filas->Campo("f_emision")),
                  Dia(filas->Campo("fechaEntrega")), Texto(filas->Campo("almacen")),
                  Texto(filas->Campo("usuario")), TextoDeNumero(Numero(filas->Campo("partidas"))),
                  TextoDeNumero(Numero(filas->Campo("cantidad"))),
                  TextoDeNumero(Numero(filas->Campo("terminado")))});
  tabla.Escribe(salida);
}

void EscribeOrden(std::ostream& salida, BaseDatos& base, std::int32_t op) {
  const std::string numero = Decimal(op);
  const auto orden = base.Consulta("SELECT * FROM op WHERE op = " + numero);
  if (orden->Eof()) throw HostError("La orden " + numero + " no existe");
  salida << "Orden " << numero << "  " << EstadoDe(*orden) << "  almacén " << Texto(orden->Campo("almacen"))
         << "  emitida " << Dia(orden->Campo("f_emision")) << "  entrega "
         << Dia(orden->Campo("fechaEntrega")) << "  usuario " << Texto(orden->Campo("usuario")) << '\n';
  if (const std::string observ = Texto(orden->Campo("observ")); !observ.empty()) salida << observ << '\n';
  const auto filas = base.Consulta(
      "SELECT oppart.*, prods.descrip FROM oppart LEFT JOIN prods ON prods.articulo = oppart.articulo WHERE "
      "oppart.op = " +
      numero + " ORDER BY oppart.id_entrada");
  Tabla tabla({">Partida", "Artículo", "Descripción", ">Cantidad", ">Terminado", ">Precio", "Observaciones"});
  for (; !filas->Eof(); filas->MoveNext())
    tabla.Agrega({Texto(filas->Campo("id_entrada")), Texto(filas->Campo("articulo")),
                  Texto(filas->Campo("descrip")), TextoDeNumero(Numero(filas->Campo("cantidad"))),
                  TextoDeNumero(Numero(filas->Campo("terminado"))),
                  TextoDeNumero(Numero(filas->Campo("precio"))), Texto(filas->Campo("observ"))});
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
  const double minimo = receta->Eof() ? 0 : Numero(receta->Campo("Minimo"));
  salida << articulo << "  la receta rinde " << TextoDeNumero(minimo) << '\n';
  Tabla tabla({"Componente", "Descripción", ">Cantidad", "Unidad", ">Almacén", ">Costo", ">Importe"});
  std::int64_t total = 0;
  for (; !partes->Eof(); partes->MoveNext()) {
    const double cantidad = Numero(partes->Campo("Cantidad"));
    const double costo = Numero(partes->Campo("costo"));
    const std::int64_t importe = host::ACentavos(cantidad * costo);
    total += importe;
    tabla.Agrega({Texto(partes->Campo("Componente")), Texto(partes->Campo("descrip")),
                  TextoDeNumero(cantidad), Texto(partes->Campo("unidad")), Texto(partes->Campo("Almacen")),
                  TextoDeNumero(host::RedondeaCantidad(costo)), TextoImporte(importe)});
  }
  tabla.Agrega({"Total de la receta", "", "", "", "", "", TextoImporte(total)});
  tabla.Escribe(salida);
}

void EscribeOcupadas(std::ostream& salida, BaseDatos& base) {
  Tabla tabla({">Orden", "Estado", "Usuario", "Fecha", "Hora"});
  for (const auto filas = host::OrdenesOcupadas(base); !filas->Eof(); filas->MoveNext())
    tabla.Agrega({Texto(filas->Campo("op")), Texto(filas->Campo("estado")), Texto(filas->Campo("usuario")),
                  Dia(filas->Campo("usufecha")), Texto(filas->Campo("usuhora"))});
  if (tabla.Vacia())
    salida << "No hay órdenes ocupadas\n";
  else
    tabla.Escribe(salida);
}

std::string PorEntregar(BaseDatos& base, std::int32_t op) {
  std::string resto;
  for (const auto filas = base.Consulta("SELECT articulo, cantidad, terminado FROM oppart WHERE (terminado "
                                        "IS NULL OR terminado <> cantidad) AND "
                                        "op = " +
                                        Decimal(op) + " ORDER BY id_entrada");
       !filas->Eof(); filas->MoveNext())
    resto += "  " + Texto(filas->Campo("articulo")) + ": " +
             TextoDeNumero(Numero(filas->Campo("terminado"))) + " de " +
             TextoDeNumero(Numero(filas->Campo("cantidad"))) + "\n";
  return resto;
}

}  // namespace zuvi::cli
