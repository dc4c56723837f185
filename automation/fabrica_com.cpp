#include "automation/fabrica_com.h"

#include "automation/dispatch_object.h"
#include "automation/handles.h"

namespace zuvi {
namespace {

void Check(HRESULT result) {
  if (FAILED(result))
    throw HostError(DescripcionDe(ErrorNumber::CannotCreateObject), ErrorNumber::CannotCreateObject, result);
}

}  // namespace

ObjectPtr FabricaCom::Crea(std::string_view prog_id) {
  auto known = clsids_.find(prog_id);
  if (known == clsids_.end()) {
    CLSID clsid{};
    Check(::CLSIDFromProgID(Ancho(prog_id).c_str(), &clsid));
    known = clsids_.emplace(prog_id, clsid).first;
  }
  ComPtr<IDispatch> object;
  Check(::CoCreateInstance(known->second, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                           object.put_void()));
  Check(object ? S_OK : E_POINTER);
  return ObjectDe(object.get(), module_);
}

}  // namespace zuvi
