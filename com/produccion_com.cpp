#include "com/produccion_com.h"

#include "automation/handles.h"

namespace zuvi {
namespace {

/// The object needs its apartment's shared state for as long as anybody holds it.
std::shared_ptr<Produccion> NuevaProduccion(std::shared_ptr<Apartamento> apartamento) {
  Modulo& modulo = apartamento->ModuloDelComponente();
  return std::shared_ptr<Produccion>(new Produccion(modulo),
                                     [apartamento = std::move(apartamento)](Produccion* p) { delete p; });
}

/// An optional argument may come as no pointer at all.
std::int32_t Opcional(const LONG* n_op) { return n_op ? *n_op : 0; }

const ClassIds& IdsOfProduccion() {
  static const ClassIds ids{__uuidof(::Produccion), __uuidof(::_Produccion)};
  return ids;
}

}  // namespace

ProduccionCom::ProduccionCom(const std::shared_ptr<Produccion>& produccion, ComServer& server)
    : PublishedObject(produccion, server, &IdsOfProduccion()), produccion_(*produccion) {}

ProduccionCom::ProduccionCom(ComServer& server, std::shared_ptr<Apartamento> apartamento)
    : ProduccionCom(NuevaProduccion(std::move(apartamento)), server) {}

HRESULT ProduccionCom::Give(const ObjectPtr& objeto, IDispatch** out) noexcept {
  if (!out) return E_POINTER;
  *out = nullptr;
  return Run([&] { *out = Publish(objeto, Server()).detach(); });
}

// `Ambiente` is a dispatch interface: its pointers are plain IDispatch pointers.
STDMETHODIMP ProduccionCom::get_Ambiente(::Ambiente** ambiente) noexcept {
  return Give(produccion_.TraeAmbiente(), reinterpret_cast<IDispatch**>(ambiente));
}
STDMETHODIMP ProduccionCom::putref_Ambiente(::Ambiente* ambiente) noexcept {
  return Run([&] { produccion_.PonAmbiente(ObjectOf(ambiente, Server())); });
}
STDMETHODIMP ProduccionCom::get_Parent(IDispatch** parent) noexcept {
  return Give(produccion_.Parent(), parent);
}
STDMETHODIMP ProduccionCom::putref_Parent(IDispatch* parent) noexcept {
  return Run([&] { produccion_.PonParent(ObjectOf(parent, Server())); });
}

STDMETHODIMP ProduccionCom::NuevaOp() noexcept {
  return Run([&] { produccion_.NuevaOp(); });
}
STDMETHODIMP ProduccionCom::ModificaOp(LONG* n_op) noexcept {
  if (!n_op) return E_POINTER;
  return Run([&] { produccion_.ModificaOp(*n_op); });
}
STDMETHODIMP ProduccionCom::ConsultaOp(LONG* n_op) noexcept {
  if (!n_op) return E_POINTER;
  return Run([&] { produccion_.ConsultaOp(*n_op); });
}
STDMETHODIMP ProduccionCom::EntregaProductoTerminado(LONG* n_op) noexcept {
  if (!n_op) return E_POINTER;
  return Run([&] { produccion_.EntregaProductoTerminado(*n_op); });
}
STDMETHODIMP ProduccionCom::Ensamble(BSTR* articulo, LONG* n_almacen, LONG* n_cantidad, LONG* n_op) noexcept {
  if (!articulo || !n_almacen || !n_cantidad) return E_POINTER;
  return Run([&] { produccion_.Ensamble(FromBstr(*articulo), *n_almacen, *n_cantidad, Opcional(n_op)); });
}
STDMETHODIMP ProduccionCom::Desensamble(BSTR* articulo, double* n_cantidad, LONG* n_almacen,
                                        LONG* n_op) noexcept {
  if (!articulo || !n_cantidad || !n_almacen) return E_POINTER;
  return Run([&] { produccion_.Desensamble(FromBstr(*articulo), *n_cantidad, *n_almacen, Opcional(n_op)); });
}
STDMETHODIMP ProduccionCom::CancelaOp(LONG* n_op, VARIANT_BOOL* resultado) noexcept {
  if (!n_op || !resultado) return E_POINTER;
  *resultado = VARIANT_FALSE;
  return Run([&] { *resultado = produccion_.CancelaOp(*n_op) ? VARIANT_TRUE : VARIANT_FALSE; });
}
STDMETHODIMP ProduccionCom::MuestraCapturaDeFracciones() noexcept {
  return Run([&] { produccion_.MuestraCapturaDeFracciones(); });
}
STDMETHODIMP ProduccionCom::MuestraTurnos() noexcept {
  return Run([&] { produccion_.MuestraTurnos(); });
}

}  // namespace zuvi
