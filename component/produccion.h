// component/: the class `Produccion`, which the host drives, and the batch operations on orders and kits.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "base/members.h"
#include "services/ambiente.h"
#include "windows/modulo.h"

namespace zuvi {

/// The module's one public class. The host sets `Ambiente` (and `Parent`), then calls one method at a time.
/// Only `Ensamble` and `Desensamble` report errors; every other method ends silently. Nothing is rolled back.
class Produccion : public Object {
 public:
  static constexpr const char* kProgId = "ZuviProduccion.Produccion";

  explicit Produccion(Modulo& modulo) : modulo_(modulo) {}

  const ObjectPtr& TraeAmbiente() const { return ambiente_; }
  void PonAmbiente(ObjectPtr ambiente);
  const ObjectPtr& Parent() const { return parent_; }
  void PonParent(ObjectPtr parent) { parent_ = std::move(parent); }

  /// The order editor, for a new order, for changing one and for viewing one; modeless. A confirmed order is
  /// only shown; a busy one cannot be changed.
  void NuevaOp() noexcept;
  void ModificaOp(std::int32_t n_op) noexcept;
  void ConsultaOp(std::int32_t n_op) noexcept;
  /// The fraction capture window and the shift catalogue, a new one at every call; modeless.
  void MuestraCapturaDeFracciones() noexcept;
  void MuestraTurnos() noexcept;

  /// Delivers the finished product of an order: assembles every line and marks them finished.
  virtual void EntregaProductoTerminado(std::int32_t n_op) noexcept;
  /// Assembles kits into warehouse `n_almacen`; `n_op` 0 means without an order.
  virtual void Ensamble(const std::string& articulo, std::int32_t n_almacen, std::int32_t n_cantidad,
                        std::int32_t n_op) noexcept;
  /// Takes kits apart; sub-kits by a recursive call. Unlike every other method it may throw StackSpent, but
  /// only to the call of its own that started the recursion.
  virtual void Desensamble(const std::string& articulo, double n_cantidad, std::int32_t n_almacen,
                           std::int32_t n_op);
  /// Cancels an order; true when it was deleted or closed.
  virtual bool CancelaOp(std::int32_t n_op) noexcept;

  const MemberTable* Members() const override;

 private:
  /// What every method starts with: the environment and its open connection. It keeps this object alive, as
  /// a host may let go of it during any call.
  struct Sesion {
    ObjectPtr yo;
    std::shared_ptr<Ambiente> ambiente;
    std::shared_ptr<Conexion> conexion;
  };
  Sesion AbreSesion();

  template <class Ventana>
  void MuestraVentana() noexcept;
  /// The messages with which an order is refused, or told to be only shown; without `confirmada` every order
  /// is shown.
  struct MensajesDeApertura {
    NumeroMensaje no_existe, confirmada, ocupada_propia, ocupada_ajena;
  };
  void AbreOrden(std::int32_t n_op, const MensajesDeApertura& mensajes) noexcept;
  void Entrega(std::int32_t n_op);
  void EnsambleKit(const std::string& articulo, std::int32_t n_almacen, std::int32_t n_cantidad,
                   std::int32_t n_op);
  void DesensambleKit(const std::string& articulo, double n_cantidad, std::int32_t n_almacen,
                      std::int32_t n_op);

  Modulo& modulo_;
  ObjectPtr ambiente_;
  std::shared_ptr<Ambiente> servicio_;  // the same object as ambiente_, seen through its contract
  ObjectPtr parent_;
  bool llamada_propia_ = false;  // the next Desensamble is a call by this object itself
};

}  // namespace zuvi
