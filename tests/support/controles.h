// Controls of a window as scripts reach them: by name, and by index in an array.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "toolkit/form.h"

namespace zuvi::pruebas {

template <class T>
T& Control(Form& ventana, const char* nombre, std::optional<std::int32_t> indice = {}) {
  Value i = indice.value_or(0);
  return dynamic_cast<T&>(*ToObject(ventana.Call(nombre, std::span(&i, indice ? 1 : 0))));
}

/// Counts what the native side of a control is told.
class Contador final : public Peer {
 public:
  explicit Contador(std::int64_t& avisos) : avisos_(avisos) {}
  void Update(Aspect) override { ++avisos_; }
  void TakeFocus() override {}

 private:
  std::int64_t& avisos_;
};

}  // namespace zuvi::pruebas
