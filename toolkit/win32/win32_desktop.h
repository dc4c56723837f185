// toolkit/win32/: native peers, the only place of the toolkit that knows <windows.h>.
#pragma once

#include "toolkit/desktop.h"

namespace zuvi {

/// The real screen.
class Win32Desktop final : public Desktop {
 public:
  void Avisa(const std::string& text) noexcept override;
};

}  // namespace zuvi
