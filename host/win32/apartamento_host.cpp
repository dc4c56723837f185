#include "host/win32/apartamento_host.h"

#include "automation/com_error.h"
#include "host/win32/opciones_windows.h"
#include "host/win32/recordset_indeciso.h"
#include "host/win32/servidor_host.h"
#include "host/win32/ventanas_interaccion.h"
#include "win32/image.h"

namespace zuvi::host {

ApartamentoHost::ApartamentoHost(ComServer& dll, ClaseRecordset::Crea nuevo,
                                 std::function<void()> al_terminar)
    : servidor_(dll.Source(), dll.Instance(), dll.TypeLibraries()),
      escritorio_(dll.Instance()),
      otras_(servidor_),
      recordset_(dll, std::move(nuevo), std::move(al_terminar)) {}

FabricaVentanas& ApartamentoHost::Fabrica() {
  if (!fabrica_) {
    auto interaccion = std::make_unique<VentanasInteraccion>(ImpresionDeWindows(), escritorio_);
    anfitrion_ = std::make_shared<Anfitrion>(OpcionesDeWindows(), std::move(interaccion));
    anfitrion_->AlRetener([this](const ObjectPtr& objeto) {
      PinImageOf(*reinterpret_cast<void**>(Publish(objeto, servidor_).get()));
    });
    fabrica_ = std::make_unique<FabricaVentanas>(anfitrion_, escritorio_, otras_, [this] {
      return std::make_shared<ServerHold>(servidor_, HoldKind::Window);
    });
  }
  recordset_.Publica();
  return *fabrica_;
}

ComPtr<IUnknown> ApartamentoHost::Crea(const ClaseHost& clase) {
  const ServerHold en_curso(servidor_, HoldKind::Method);
  const ObjectPtr objeto = Fabrica().Crea(clase.prog_id);
  return Publish(objeto, servidor_, &clase.ids).As<IUnknown>(IID_IUnknown);
}

HRESULT ApartamentoHost::CreaRecordset(IUnknown* exterior, REFIID iid, void** salida) {
  const ServerHold en_curso(servidor_, HoldKind::Method);
  // Who knows more of ADO than its names works with the system's objects.
  if (exterior || (iid != IID_IUnknown && iid != IID_IDispatch))
    return recordset_.CreaDelSistema(exterior, iid, salida);
  return Guarded(servidor_.Source(), [&] {
    const auto nuevo = NewCounted<IDispatch, RecordsetIndeciso>(servidor_, recordset_);
    return nuevo->QueryInterface(iid, salida);
  });
}

}  // namespace zuvi::host
