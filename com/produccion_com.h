// com/: the edge of ZuviProduccion.dll: the type libraries' sources, the published class, the entry points.
#pragma once

#include <memory>

#include "automation/published_object.h"
#include "com/servidor_produccion.h"
#include "component/produccion.h"

// After the system's headers; made from the IDL.
#include "ZuviProduccion.h"

namespace zuvi {

/// The class `Produccion` as hosts see it: `_Produccion` by vtable, and the same members by name.
class ProduccionCom final : public PublishedObject<::_Produccion> {
 public:
  ProduccionCom(ComServer& server, std::shared_ptr<Apartamento> apartamento);

  STDMETHODIMP get_Ambiente(::Ambiente** ambiente) noexcept override;
  STDMETHODIMP putref_Ambiente(::Ambiente* ambiente) noexcept override;
  STDMETHODIMP get_Parent(IDispatch** parent) noexcept override;
  STDMETHODIMP putref_Parent(IDispatch* parent) noexcept override;
  STDMETHODIMP NuevaOp() noexcept override;
  STDMETHODIMP ModificaOp(LONG* n_op) noexcept override;
  STDMETHODIMP ConsultaOp(LONG* n_op) noexcept override;
  STDMETHODIMP EntregaProductoTerminado(LONG* n_op) noexcept override;
  STDMETHODIMP Ensamble(BSTR* articulo, LONG* n_almacen, LONG* n_cantidad, LONG* n_op) noexcept override;
  STDMETHODIMP Desensamble(BSTR* articulo, double* n_cantidad, LONG* n_almacen, LONG* n_op) noexcept override;
  STDMETHODIMP CancelaOp(LONG* n_op, VARIANT_BOOL* resultado) noexcept override;
  STDMETHODIMP MuestraCapturaDeFracciones() noexcept override;
  STDMETHODIMP MuestraTurnos() noexcept override;

 private:
  ProduccionCom(const std::shared_ptr<Produccion>& produccion, ComServer& server);
  HRESULT Give(const ObjectPtr& objeto, IDispatch** out) noexcept;

  Produccion& produccion_;
};

}  // namespace zuvi
