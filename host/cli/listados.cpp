#include "host/cli/listados.h"

#include <array>
#include <cmath>

#include "host/cli/tabla.h"
#include "host/shop/celdas.h"
#include "host/shop/ocupadas.h"
#include "host/shop/ordenes.h"
#include "host/shop/revision.h"
#include "host/shop/valuacion.h"

namespace zuvi::cli {
namespace {

using host::BaseDatos;
using host::DiaDe;
using host::Literal;
using host::NumeroDe;
using host::TextoImporte;

constexpr const char* kIso = "yyyy-MM-dd";

/// Whole centavos; Overflow for what another program wrote past the amounts that are kept exactly.
std::int64_t Centavos(const Value& valor) {
  constexpr double kMaximo = 9007199254740992.0;
  const double centavos = NumeroDe(valor);
  if (!(std::abs(centavos) <= kMaximo)) throw HostError(ErrorNumber::Overflow);
  return static_cast<std::int64_t>(centavos);
}

/// A cell as people read it. One that another program filled with something else is shown as it stands: the
/// rest of the list is to be seen too.
template <class Forma>
std::string Escrita(const Value& celda, Forma forma) {
  try {
    return forma(celda);
  } catch (const HostError&) {
    return TextOrNothing(celda);
  }
}

std::string Numero(const Value& celda) {
  return Escrita(celda, [](const Value& v) { return NumberText(NumeroDe(v)); });
}
std::string Cantidad(const Value& celda) {
  return Escrita(celda, [](const Value& v) { return NumberText(host::RedondeaCantidad(NumeroDe(v))); });
}
std::string Importe(const Value& celda) {
  return Escrita(celda, [](const Value& v) { return TextoImporte(Centavos(v)); });
}
std::string Dia(const Value& celda) {
  return Escrita(celda, [](const Value& v) { return DiaDe(v, kIso); });
}

std::string EstadoDe(Recordset& orden) {
  const auto marcada = [](const Value& celda) { return Numero(celda) != "0"; };
  std::string estado = TextOrNothing(orden.Campo("estado"));
  if (marcada(orden.Campo("cerrado"))) estado += " cerrada";
  if (marcada(orden.Campo("ocupado"))) estado += " ocupada";
  return estado;
}

/// A sum of amounts; what is no amount is left out, and said to be.
class Suma {
 public:
  template <class Importe>
  void Agrega(Importe importe) {
    try {
      total_ += importe();
    } catch (const HostError&) {
      entera_ = false;
    }
  }
  std::string Texto() const { return TextoImporte(total_); }
  std::string Nombre(const std::string& nombre) const {
    return entera_ ? nombre : nombre + " (sin lo ilegible)";
  }

 private:
  std::int64_t total_ = 0;
  bool entera_ = true;
};

}  // namespace

void EscribeConsulta(std::ostream& salida, BaseDatos& base, const std::string& sql) {
  const auto filas = base.Consulta(sql);
  const ObjectPtr campos = ToObject(filas->Call("Fields"));
  const std::int32_t cuantos = ToInt32(campos->Call("Count"));
  std::vector<std::string> encabezados;
  for (std::int32_t i = 0; i < cuantos; ++i) {
    std::array<Value, 1> indice{i};
    encabezados.push_back(ToText(ToObject(campos->Call("Item", indice))->Call("Name")));
  }
  Tabla tabla(std::move(encabezados));
  for (; !filas->Eof(); filas->MoveNext()) {
    std::vector<std::string> fila(static_cast<std::size_t>(cuantos));
    for (std::int32_t i = 0; std::string & celda : fila) celda = TextOrNothing(filas->Campo(i++));
    tabla.Agrega(std::move(fila));
  }
  tabla.Escribe(salida);
}

void EscribeExistencias(std::ostream& salida, BaseDatos& base, const std::string& articulo) {
  const std::string condicion =
      articulo.empty() ? "" : " WHERE existencias.articulo = " + Literal(base.GetEngine(), articulo);
  const auto filas = base.Consulta(
      "SELECT existencias.articulo, prods.descrip, existencias.almacen, existencias.cantidad, prods.unidad, "
      "existencias.valor, prods.costo FROM existencias LEFT JOIN prods ON prods.articulo = "
      "existencias.articulo" +
      condicion + " ORDER BY existencias.articulo, existencias.almacen");
  Tabla tabla({"Artículo", "Descripción", ">Almacén", ">Cantidad", "Unidad", ">Costo", ">Valor"});
  Suma total;
  for (; !filas->Eof(); filas->MoveNext()) {
    total.Agrega([&] { return Centavos(filas->Campo("valor")); });
    tabla.Agrega({TextOrNothing(filas->Campo("articulo")), TextOrNothing(filas->Campo("descrip")),
                  TextOrNothing(filas->Campo("almacen")), Numero(filas->Campo("cantidad")),
                  TextOrNothing(filas->Campo("unidad")), Cantidad(filas->Campo("costo")),
                  Importe(filas->Campo("valor"))});
  }
  tabla.Agrega({total.Nombre("Total"), "", "", "", "", "", total.Texto()});
  tabla.Escribe(salida);
}

void EscribeOrdenes(std::ostream& salida, BaseDatos& base) {
  const auto filas = host::ResumenDeOrdenes(base);
  Tabla tabla({">Orden", "Estado", "Emitida", "Entrega", ">Almacén", "Usuario", ">Partidas", ">Cantidad",
               ">Terminado"});
  for (; !filas->Eof(); filas->MoveNext())
    tabla.Agrega({TextOrNothing(filas->Campo("op")), EstadoDe(*filas), Dia(filas->Campo("f_emision")),
                  Dia(filas->Campo("fechaEntrega")), TextOrNothing(filas->Campo("almacen")),
                  TextOrNothing(filas->Campo("usuario")), Numero(filas->Campo("partidas")),
                  Numero(filas->Campo("cantidad")), Numero(filas->Campo("terminado"))});
  tabla.Escribe(salida);
}

void EscribeOrden(std::ostream& salida, BaseDatos& base, std::int32_t op) {
  const std::string numero = Decimal(op);
  const auto orden = base.Consulta("SELECT * FROM op WHERE op = " + numero);
  if (orden->Eof()) throw HostError(host::DeOrden(op).no_existe);
  salida << "Orden " << numero << "  " << EstadoDe(*orden) << "  almacén "
         << TextOrNothing(orden->Campo("almacen")) << "  emitida " << Dia(orden->Campo("f_emision"))
         << "  entrega " << Dia(orden->Campo("fechaEntrega")) << "  usuario "
         << TextOrNothing(orden->Campo("usuario")) << '\n';
  if (const std::string observ = TextOrNothing(orden->Campo("observ")); !observ.empty())
    salida << observ << '\n';
  const auto filas = base.Consulta(
      "SELECT oppart.*, prods.descrip FROM oppart LEFT JOIN prods ON prods.articulo = oppart.articulo WHERE "
      "oppart.op = " +
      numero + " ORDER BY oppart.id_entrada");
  Tabla tabla({">Partida", "Artículo", "Descripción", ">Cantidad", ">Terminado", ">Precio", "Observaciones"});
  for (; !filas->Eof(); filas->MoveNext())
    tabla.Agrega({TextOrNothing(filas->Campo("id_entrada")), TextOrNothing(filas->Campo("articulo")),
                  TextOrNothing(filas->Campo("descrip")), Numero(filas->Campo("cantidad")),
                  Numero(filas->Campo("terminado")), Numero(filas->Campo("precio")),
                  TextOrNothing(filas->Campo("observ"))});
  tabla.Escribe(salida);
}

void EscribeKit(std::ostream& salida, BaseDatos& base, const std::string& articulo) {
  const std::string literal = Literal(base.GetEngine(), articulo);
  const auto receta = base.Consulta("SELECT Minimo FROM componen WHERE articulo = " + literal);
  const auto partes = base.Consulta(
      "SELECT comppart.Componente, prods.descrip, comppart.Cantidad, prods.unidad, comppart.Almacen, "
      "prods.costo "
      "FROM comppart LEFT JOIN prods ON prods.articulo = comppart.Componente WHERE comppart.articulo = " +
      literal + " ORDER BY comppart.renglon");
  if (partes->Eof()) throw HostError("El artículo " + articulo + " no tiene componentes");
  salida << articulo << "  la receta rinde " << (receta->Eof() ? "0" : Numero(receta->Campo("Minimo")))
         << '\n';
  Tabla tabla({"Componente", "Descripción", ">Cantidad", "Unidad", ">Almacén", ">Costo", ">Importe"});
  Suma total;
  for (; !partes->Eof(); partes->MoveNext()) {
    const auto importe = [&] {
      return host::ACentavos(NumeroDe(partes->Campo("Cantidad")) * NumeroDe(partes->Campo("costo")));
    };
    total.Agrega(importe);
    tabla.Agrega({TextOrNothing(partes->Campo("Componente")), TextOrNothing(partes->Campo("descrip")),
                  Numero(partes->Campo("Cantidad")), TextOrNothing(partes->Campo("unidad")),
                  TextOrNothing(partes->Campo("Almacen")), Cantidad(partes->Campo("costo")),
                  Escrita(Null{}, [&](const Value&) { return TextoImporte(importe()); })});
  }
  tabla.Agrega({total.Nombre("Total de la receta"), "", "", "", "", "", total.Texto()});
  tabla.Escribe(salida);
}

bool EscribeRevision(std::ostream& salida, BaseDatos& base) {
  const auto existencias = host::ExistenciasSinMovimientos(base);
  Tabla diferencias(
      {"Artículo", ">Almacén", ">Cantidad", ">Según movimientos", ">Valor", ">Según movimientos"});
  for (; !existencias->Eof(); existencias->MoveNext())
    diferencias.Agrega({TextOrNothing(existencias->Campo("articulo")),
                        TextOrNothing(existencias->Campo("almacen")),
                        Cantidad(existencias->Campo("cantidad")), Cantidad(existencias->Campo("movida")),
                        Importe(existencias->Campo("valor")), Importe(existencias->Campo("importe"))});
  Tabla costos({"Artículo", ">Costo", ">Promedio"});
  for (const auto filas = host::CostosSinExplicar(base); !filas->Eof(); filas->MoveNext())
    costos.Agrega({TextOrNothing(filas->Campo("articulo")), Cantidad(filas->Campo("costo")),
                   Cantidad(filas->Campo("promedio"))});
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
    tabla.Agrega({TextOrNothing(filas->Campo("op")), TextOrNothing(filas->Campo("estado")),
                  TextOrNothing(filas->Campo("usuario")), Dia(filas->Campo("usufecha")),
                  TextOrNothing(filas->Campo("usuhora"))});
  if (tabla.Vacia())
    salida << "No hay órdenes ocupadas\n";
  else
    tabla.Escribe(salida);
}

}  // namespace zuvi::cli
