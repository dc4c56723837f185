#include "automation/com_server.h"

#include <algorithm>

#include "win32/image.h"

namespace zuvi {

std::wstring ComServer::Path() const { return PathOf(instance_); }

std::wstring ComServer::TypeLibPath(int number) const {
  return number == 1 ? Path() : Path() + L"\\" + std::to_wstring(number);
}

ComPtr<ITypeInfo> ComServer::TypeInfo(REFGUID id) const {
  for (int number = 1; number <= type_libraries_; ++number) {
    ComPtr<ITypeLib> library;
    ComPtr<ITypeInfo> info;
    if (SUCCEEDED(::LoadTypeLibEx(TypeLibPath(number).c_str(), REGKIND_NONE, library.put())) &&
        SUCCEEDED(library->GetTypeInfoOfGuid(id, info.put())))
      return info;
  }
  return {};
}

bool ComServer::Idle() const noexcept {
  return std::all_of(holds_.begin(), holds_.end(), [](const auto& count) { return count == 0; });
}

}  // namespace zuvi
