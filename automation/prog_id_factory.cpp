#include "automation/prog_id_factory.h"

#include "automation/dispatch_object.h"
#include "automation/handles.h"

namespace zuvi {

HRESULT CreateByProgId(std::string_view prog_id, DWORD context, REFIID iid, void** out, CLSID& known) {
  *out = nullptr;
  if (known == CLSID_NULL) {
    CLSID found{};
    if (const HRESULT result = ::CLSIDFromProgID(Wide(prog_id).c_str(), &found); FAILED(result))
      return result;
    known = found;
  }
  return ::CoCreateInstance(known, nullptr, context, iid, out);
}

ObjectPtr ProgIdFactory::Crea(std::string_view prog_id) {
  auto known = clsids_.find(prog_id);
  if (known == clsids_.end()) known = clsids_.emplace(prog_id, CLSID_NULL).first;
  ComPtr<IDispatch> object;
  HRESULT result = CreateByProgId(prog_id, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                                  object.put_void(), known->second);
  if (SUCCEEDED(result) && !object) result = E_POINTER;
  if (FAILED(result))
    throw HostError(DescriptionOf(ErrorNumber::CannotCreateObject), ErrorNumber::CannotCreateObject, result);
  return ObjectOf(object.get(), server_);
}

}  // namespace zuvi
