#pragma once

#include <memory>
#include <string>

#include "services/ambiente.h"

namespace zuvi {

/// Direction of an inventory movement, as `PonTipo` takes it.
inline constexpr const char* kSalida = "S";
inline constexpr const char* kEntrada = "E";

/// The host's inventory movement document: header values are set, then movement lines are posted one by one.
class DocumentoInventario : public Object {
 public:
  static constexpr const char* kProgId = "ZuviQuery.DocumentoInventario";

  virtual void PonAmbiente(const std::shared_ptr<Ambiente>& ambiente) = 0;
  virtual void PonDatoDocumento(const Value& dato) = 0;
  virtual void PonDatoFecha(std::int32_t dato) = 0;
  virtual void PonFecha(const Fecha& fecha) = 0;
  /// "S" out, "E" in.
  virtual void PonTipo(const std::string& tipo) = 0;
  virtual void PonConcepto(const std::string& concepto) = 0;
  virtual void PonOrden(std::int32_t orden) = 0;
  virtual void PonFolio(const std::string& folio) = 0;
  virtual void PonUsuario(const std::string& usuario) = 0;
  virtual void PonAlmacen(double almacen) = 0;
  virtual void PonArticulo(const std::string& articulo) = 0;
  virtual void PonCantidad(double cantidad) = 0;
  /// Unit cost of a component; for the kit's own movement the amount of the whole line.
  virtual void PonCosto(double costo) = 0;
  /// Posts one line with the values set so far; returns its valued amount. `numero` goes in as 0.
  virtual double AplicaMovimiento(std::int32_t& numero) = 0;
};

}  // namespace zuvi
