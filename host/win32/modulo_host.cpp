#include "host/win32/modulo_host.h"

#include <objbase.h>

#include "host/win32/opciones_windows.h"
#include "host/win32/ventanas_interaccion.h"

namespace zuvi::host {
namespace {

/// The data access objects' own class of record sets, by its well-known identifier.
constexpr CLSID kClaseRecordset = {
    0x00000535, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x6D, 0x2E, 0xA4}};

}  // namespace

ModuloHost::ModuloHost(HINSTANCE instancia)
    : modulo_("ZuviHost", instancia, 2), escritorio_(instancia), otras_(modulo_) {}

FabricaVentanas& ModuloHost::Fabrica() {
  if (!fabrica_) {
    Opciones opciones = OpcionesDeWindows();
    auto interaccion = std::make_unique<VentanasInteraccion>(ImpresionDeWindows(), escritorio_);
    anfitrion_ = std::make_shared<Anfitrion>(std::move(opciones), std::move(interaccion));
    fabrica_ = std::make_unique<FabricaVentanas>(anfitrion_, escritorio_, otras_, [this] {
      return std::make_shared<ModuleHold>(modulo_, HoldKind::Window);
    });
    PublicaRecordset();
  }
  return *fabrica_;
}

void ModuloHost::PublicaRecordset() {
  const auto fabrica = ComPtr<IClassFactory>::Adopt(new ClassFactory(modulo_, [this] {
    return Publish(Fabrica().Crea(Recordset::kProgId), modulo_).As<IUnknown>(IID_IUnknown);
  }));
  // Without it only what opens record sets of its own fails, and says so; everything else works.
  if (FAILED(CoRegisterClassObject(kClaseRecordset, fabrica.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                   &recordset_publicado_)))
    recordset_publicado_ = 0;
}

ComPtr<IUnknown> ModuloHost::Crea(const ClaseHost& clase) {
  const ObjectPtr objeto = Fabrica().Crea(clase.prog_id);
  return Publish(objeto, modulo_, &clase.ids).As<IUnknown>(IID_IUnknown);
}

bool ModuloHost::Descansa() {
  const long propias = recordset_publicado_ != 0 ? 1 : 0;
  const bool en_uso = modulo_.Holds(HoldKind::Object) > 0 || modulo_.Holds(HoldKind::ServerLock) > 0 ||
                      modulo_.Holds(HoldKind::Method) > 0 || modulo_.Holds(HoldKind::Window) > 0 ||
                      modulo_.Holds(HoldKind::Factory) > propias;
  if (en_uso) return false;
  if (recordset_publicado_ != 0) CoRevokeClassObject(std::exchange(recordset_publicado_, 0));
  fabrica_.reset();
  anfitrion_.reset();
  return modulo_.Idle();
}

}  // namespace zuvi::host
