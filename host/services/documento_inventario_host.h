#pragma once

#include "base/members.h"
#include "host/anfitrion/anfitrion.h"
#include "services/documento_inventario.h"

namespace zuvi::host {

/// Inventory movement document. One movement is one transaction: the movement's row, the stock row of its
/// article and warehouse and the article's average cost change together or not at all. Stock may become
/// negative.
class DocumentoInventarioHost final : public DocumentoInventario {
 public:
  explicit DocumentoInventarioHost(std::shared_ptr<Anfitrion> anfitrion) : anfitrion_(std::move(anfitrion)) {}

  void PonAmbiente(const std::shared_ptr<Ambiente>&) override {}
  void PonDatoDocumento(const Value& dato) override { documento_ = dato; }
  void PonDatoFecha(std::int32_t dato) override { referencia_ = dato; }
  void PonFecha(const Date& fecha) override { fecha_ = fecha.Texto(); }
  void PonTipo(const std::string& tipo) override { tipo_ = tipo; }
  void PonConcepto(const std::string& concepto) override { concepto_ = concepto; }
  void PonOrden(std::int32_t orden) override { orden_ = orden; }
  void PonFolio(const std::string& folio) override { folio_ = folio; }
  void PonUsuario(const std::string& usuario) override { usuario_ = usuario; }
  void PonAlmacen(double almacen) override { almacen_ = almacen; }
  void PonArticulo(const std::string& articulo) override { articulo_ = articulo; }
  void PonCantidad(double cantidad) override { cantidad_ = cantidad; }
  void PonCosto(double costo) override { costo_ = costo; }
  /// Posts the movement and returns its amount, to the centavo; `numero` comes back with its number. Throws
  /// HostError for a type that is neither E nor S, for a quantity or an amount beyond what is kept exactly
  /// (Overflow), or when it was not saved.
  double AplicaMovimiento(std::int32_t& numero) override;

  const MemberTable* Members() const override;

 private:
  /// Writes the movement down, inside a transaction.
  void Asienta(BaseDatos& base, std::int32_t numero, double cantidad, std::int64_t importe) const;

  std::shared_ptr<Anfitrion> anfitrion_;
  Value documento_ = Null{};
  std::int32_t referencia_ = 0;
  std::string fecha_ = Date().Texto();
  std::string tipo_;
  std::string concepto_;
  std::int32_t orden_ = 0;
  std::string folio_;
  std::string usuario_;
  double almacen_ = 0;
  std::string articulo_;
  double cantidad_ = 0;
  double costo_ = 0;
};

}  // namespace zuvi::host
