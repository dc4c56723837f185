#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

namespace zuvi {

/// Every message that the module asks a host's catalogue for, in the order of the numbers. The compiler
/// refuses a number that is not here, and builds no host of ours whose catalogue lacks one of them.
inline constexpr std::array<std::int32_t, 27> kMensajesDelModulo{1,   72,  74,  75,  76,  224, 234, 235, 236,
                                                                 240, 241, 343, 703, 753, 754, 755, 756, 757,
                                                                 759, 832, 833, 834, 835, 836, 837, 838, 839};

/// The number of a message; the compiler takes nothing but constants out of `kMensajesDelModulo`.
class NumeroMensaje {
 public:
  /// No message.
  consteval NumeroMensaje() = default;
  consteval NumeroMensaje(std::int32_t numero) : numero_(numero) {  // NOLINT: stands where a number does
    if (std::ranges::find(kMensajesDelModulo, numero) == kMensajesDelModulo.end())
      throw "a number that is not in kMensajesDelModulo";
  }

  constexpr std::int32_t Valor() const { return numero_; }
  constexpr explicit operator bool() const { return numero_ != 0; }

 private:
  std::int32_t numero_ = 0;
};

}  // namespace zuvi
