#pragma once

#include <memory>
#include <string>

#include "services/acceso_datos.h"

namespace zuvi::pruebas {

/// The data access operations that only windows use, for hosts that serve the batch operations alone.
class AccesoDatosSinVentanas : public AccesoDatos {
 public:
  std::string ValorTexto(const Value& valor) override { return ToText(valor); }
  bool EstaVacio(const std::string& texto) override { return texto.empty(); }
  std::string FechaSQL(const std::shared_ptr<Conexion>&, const Date&) override { return {}; }
  std::string TextoConCeros(std::int32_t, std::int32_t) override { return {}; }
  bool ExisteClave(const std::string&, const std::string&, const std::string&,
                   const std::shared_ptr<Conexion>&) override {
    return false;
  }
  bool UbicacionRestringida(const std::string&, std::int16_t, const std::shared_ptr<Conexion>&) override {
    return false;
  }
  std::shared_ptr<ConstructorSql> NuevoConstructorSql() override { return nullptr; }
  void PreparaVentana(const ObjectPtr&, const std::shared_ptr<Ambiente>&) override {}
  void LiberaVentana(const ObjectPtr&, const std::shared_ptr<Ambiente>&) override {}
  std::string FormateaCampo(const ObjectPtr&, const std::shared_ptr<Ambiente>&) override { return {}; }
  std::int16_t FiltroMayusculas(const ObjectPtr&, std::int16_t caracter) override { return caracter; }
  std::int16_t FiltroTecla(const ObjectPtr&, std::int16_t caracter) override { return caracter; }
};

}  // namespace zuvi::pruebas
