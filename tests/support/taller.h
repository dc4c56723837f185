// One component bound to one memory host, with a small shop.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "component/produccion.h"
#include "host/system/pila.h"
#include "tests/support/anfitrion_memoria.h"
#include "tests/support/headless_desktop.h"

namespace zuvi::pruebas {

using host::PilaCasiAgotada;

/// Logs the calls that the component makes on itself through its own interface, as a nesting of { and }.
class ProduccionAnotada final : public Produccion {
 public:
  ProduccionAnotada(Modulo& modulo, Mundo& mundo) : Produccion(modulo), mundo_(mundo) {}
  void Ensamble(const std::string& articulo, std::int32_t almacen, std::int32_t cantidad,
                std::int32_t op) noexcept override {
    Mundo& mundo = mundo_;  // the host may let go of this object
    mundo.Anota("{ Ensamble " + articulo + " " + Decimal(almacen) + " " + Decimal(cantidad) + " " +
                Decimal(op));
    Produccion::Ensamble(articulo, almacen, cantidad, op);
    mundo.Anota("}");
  }
  void Desensamble(const std::string& articulo, double cantidad, std::int32_t almacen,
                   std::int32_t op) override {
    Mundo& mundo = mundo_;
    mundo.Anota("{ Desensamble " + articulo + " " + NumberText(cantidad) + " " + Decimal(almacen) + " " +
                Decimal(op));
    Produccion::Desensamble(articulo, cantidad, almacen, op);
    mundo.Anota("}");
  }

 private:
  Mundo& mundo_;
};

inline std::string Reporte(const std::string& funcion, const std::string& descripcion) {
  return "Error occured:\r\nModule: Produccion\r\nFunction: " + funcion + "\r\nDescription: " + descripcion;
}

struct Taller {
  Taller() { prod->PonAmbiente(ambiente); }

  Mundo mundo;
  FabricaMemoria fabrica{mundo};
  HeadlessDesktop escritorio;
  Modulo modulo{fabrica, escritorio, &PilaCasiAgotada};
  ObjectPtr ambiente = AmbienteMemoria(mundo);
  std::shared_ptr<Produccion> prod = std::make_shared<ProduccionAnotada>(modulo, mundo);

  void PonArticulo(const std::string& codigo, const Value& costo, const Value& kit = std::int16_t{0}) {
    const Fila fila{{"articulo", codigo}, {"kit", kit}, {"costo", costo}};
    mundo.tablas["SELECT kit, costo FROM prods WHERE articulo = '" + codigo + "'"] = {fila};
    mundo.tablas["SELECT articulo, kit, costo FROM prods WHERE articulo = '" + codigo + "'"] = {fila};
  }
  struct Parte {
    std::string componente;
    double cantidad;
    std::int32_t almacen;
  };
  void PonKit(const std::string& codigo, const Value& minimo, const std::vector<Parte>& partes) {
    Filas filas;
    for (const auto& p : partes)
      filas.push_back({{"articulo", codigo},
                       {"Componente", p.componente},
                       {"Cantidad", p.cantidad},
                       {"Almacen", p.almacen}});
    mundo.tablas["SELECT * FROM comppart WHERE articulo =  '" + codigo + "'"] = filas;
    mundo.tablas["SELECT * FROM componen WHERE articulo =  '" + codigo + "'"] = {
        {{"articulo", codigo}, {"Minimo", minimo}}};
  }
  /// One batch of this recipe gives four tables.
  void PonMesa() {
    PonArticulo("PATA", 10.5);
    PonArticulo("TABLA", 100.0);
    PonKit("MESA", 4.0, {{"PATA", 2, 3}, {"TABLA", 1, 4}});
  }
  void PonOrden(const std::string& op, const Value& estado,
                const std::vector<std::pair<Value, Value>>& lineas, const Value& cuenta) {
    mundo.tablas["SELECT * FROM op WHERE op = " + op] = {{{"op", op}, {"Estado", estado}}};
    mundo.tablas["SELECT COUNT( * ) FROM oppart WHERE op = " + op] = {{{"COUNT( * )", cuenta}}};
    Filas filas;
    for (const auto& [articulo, cantidad] : lineas)
      filas.push_back({{"articulo", articulo}, {"cantidad", cantidad}, {"almacen", 9.0}});
    mundo.tablas
        ["SELECT oppart.articulo, oppart.cantidad, op.almacen FROM oppart INNER JOIN op USING(op) WHERE "
         "op.op = " +
         op] = filas;
  }
  /// Reports since the last time.
  std::vector<std::string> Avisos() {
    auto avisos = escritorio.Avisos();
    escritorio.Olvida();
    return avisos;
  }
  /// Lets everything go; how much of the host is left then.
  int Despide() {
    prod.reset();
    ambiente.reset();
    modulo.Suelta();
    return mundo.vivos;
  }
  /// Lines of the log that begin so.
  std::vector<std::string> Lineas(const std::string& comienzo) const {
    std::vector<std::string> lineas;
    for (const auto& linea : mundo.bitacora)
      if (linea.starts_with(comienzo)) lineas.push_back(linea);
    return lineas;
  }
};

}  // namespace zuvi::pruebas
