#pragma once

#include <string>
#include <vector>

#include "toolkit/desktop.h"

namespace zuvi {

/// A desktop without a screen: it keeps what would have been shown, for tests and for the command line.
class HeadlessDesktop final : public Desktop {
 public:
  void Avisa(const std::string& text) noexcept override {
    try {
      avisos_.push_back(text);
    } catch (...) {
      // Out of memory: what cannot be kept is lost, and whoever reports goes on.
    }
  }
  const std::vector<std::string>& Avisos() const { return avisos_; }
  void Olvida() { avisos_.clear(); }

 private:
  std::vector<std::string> avisos_;
};

}  // namespace zuvi
