#pragma once

#include <map>
#include <string>

#include "automation/com_server.h"
#include "services/fabrica.h"

namespace zuvi {

/// A new object of the class that a programmatic name stands for, by interface `iid`: the system's answer. A
/// class that is `known` already, unlike CLSID_NULL, is not looked up; one that was found is noted there.
HRESULT CreateByProgId(std::string_view prog_id, DWORD context, REFIID iid, void** out, CLSID& known);

/// Makes host objects with a plain create call by programmatic name.
class ProgIdFactory final : public FabricaServicios {
 public:
  explicit ProgIdFactory(ComServer& server) : server_(server) {}
  ObjectPtr Crea(std::string_view prog_id) override;

 private:
  ComServer& server_;
  std::map<std::string, CLSID, std::less<>> clsids_;  // names found once; the registry is slow
};

}  // namespace zuvi
