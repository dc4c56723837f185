#pragma once

#include <memory>
#include <string>

#include "services/ambiente.h"

namespace zuvi {

/// Direction of an inventory movement, as `PonTipo` takes it: out of the stock, into the stock.
inline constexpr const char* kSalida = "S";
inline constexpr const char* kEntrada = "E";

/// The host's inventory movement document: header values are set, then movement lines are posted one by one.
/// What is set stays set for the lines that follow. A setter only keeps its value; a host that refuses one
/// may throw HostError there or when the line is posted. The calls and their order: services/call_shapes.h.
class DocumentoInventario : public Object {
 public:
  static constexpr const char* kProgId = "ZuviQuery.DocumentoInventario";

  /// The environment that the operation runs in; set first.
  virtual void PonAmbiente(const std::shared_ptr<Ambiente>& ambiente) = 0;
  /// `Ambiente::DatoDocumento`, handed on as it is: only the host knows what it means.
  virtual void PonDatoDocumento(const Value& dato) = 0;
  /// The document's reference: `Ambiente::DatoFechaA`, or, for an operation without an order, the number that
  /// `AccesoDatos::SiguienteFolio` left in its in/out argument (0 when it left none).
  virtual void PonDatoFecha(std::int32_t dato) = 0;
  /// Day of the movement: `AccesoDatos::ComponeFecha` of the environment's two parts.
  virtual void PonFecha(const Date& fecha) = 0;
  /// `kSalida` or `kEntrada`: whether the lines that follow leave the stock or enter it.
  virtual void PonTipo(const std::string& tipo) = 0;
  /// Why the stock moves: "OP" and "COP" with an order; without one "EN" (components) and "DE" (kit) of an
  /// assembly, "DES" (components) and "DEN" (kit) of a disassembly.
  virtual void PonConcepto(const std::string& concepto) = 0;
  /// Number of the production order, or, without one, the next number of "ENSAMBLE" or "DESENSAMB". Above 0.
  virtual void PonOrden(std::int32_t orden) = 0;
  /// The reference of `PonDatoFecha` in decimal.
  virtual void PonFolio(const std::string& folio) = 0;
  /// `Ambiente::UsuarioActual`.
  virtual void PonUsuario(const std::string& usuario) = 0;
  /// Number of the warehouse: of a component that of its line in `comppart`, of the kit that of the call. A
  /// whole number, in a real as the column may be one.
  virtual void PonAlmacen(double almacen) = 0;
  /// Key of the article: `comppart.Componente`, or the kit's.
  virtual void PonArticulo(const std::string& articulo) = 0;
  /// How much moves, in the article's unit, fractions allowed and not rounded; the direction is that of
  /// `PonTipo`. Of a component `Cantidad` / `Minimo` for each kit. 0 is a movement too; a negative quantity
  /// of the caller is handed on.
  virtual void PonCantidad(double cantidad) = 0;
  /// In the shop's currency: of a component its cost per unit (`prods.costo`); of the kit's own movement the
  /// amount of the whole line, which is the sum of what the components' lines returned.
  virtual void PonCosto(double costo) = 0;
  /// Posts one line with the values set so far; returns its valued amount in the shop's currency. `numero`
  /// goes in as 0; what a host leaves there is its own affair and is not read. Throws HostError: that line is
  /// not posted, the ones before it stay.
  virtual double AplicaMovimiento(std::int32_t& numero) = 0;
};

}  // namespace zuvi
