#include "com/servidor_produccion.h"

#include "base/stack.h"
#include "com/produccion_com.h"
#include "win32/text.h"

namespace zuvi {
namespace {

/// The calling thread's stack, as any address in it tells. It is one reservation, of which the upper part is
/// in use, all of it alike; at the lower end lie the page that makes it grow, the one that never becomes part
/// of it, and what the program has set aside for the end of the stack.
StackBounds Pila() {
  constexpr std::uintptr_t kGuardPages = std::uintptr_t{2} * 4096;
  MEMORY_BASIC_INFORMATION in_use{};
  if (::VirtualQuery(&in_use, &in_use, sizeof in_use) == 0) return {};
  ULONG guarantee = 0;  // no new size: tells the present one
  ::SetThreadStackGuarantee(&guarantee);
  return {reinterpret_cast<std::uintptr_t>(in_use.AllocationBase) + guarantee + kGuardPages,
          reinterpret_cast<std::uintptr_t>(in_use.BaseAddress) + in_use.RegionSize};
}

bool PilaCasiAgotada() {
  return StackNearlySpent(Pila(), reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)));
}

}  // namespace

Apartamento::Apartamento(ComServer& server)
    : server_(server),
      fabrica_(server),
      escritorio_(server.Instance()),
      modulo_(fabrica_, escritorio_, &PilaCasiAgotada) {
  modulo_.PonRetencion([this] { return RetieneVentana(); });
}

std::shared_ptr<void> Apartamento::RetieneVentana() {
  // The apartment goes before the count does: the DLL is not idle while it is being let go.
  struct Retencion {
    explicit Retencion(ComServer& server, std::shared_ptr<Apartamento> suyo)
        : ventana(server, HoldKind::Window), apartamento(std::move(suyo)) {}
    ServerHold ventana;
    std::shared_ptr<Apartamento> apartamento;
  };
  return std::make_shared<Retencion>(server_, shared_from_this());
}

Apartamento::~Apartamento() { modulo_.Suelta(); }

std::shared_ptr<Apartamento> ServidorProduccion::ApartamentoActual() {
  const std::lock_guard lock(mutex_);
  std::erase_if(apartamentos_, [](const auto& entry) { return entry.second.expired(); });
  auto& entry = apartamentos_[CurrentThread()];
  std::shared_ptr<Apartamento> current = entry.lock();
  if (!current) entry = current = std::make_shared<Apartamento>(server_);
  return current;
}

ComPtr<IUnknown> ServidorProduccion::CreaProduccion() {
  return ComPtr<IUnknown>::Adopt(
      static_cast<::_Produccion*>(new ProduccionCom(server_, ApartamentoActual())));
}

bool ServidorProduccion::Tiene(REFCLSID clsid) { return clsid == __uuidof(::Produccion); }

std::span<const RegisteredClass> ServidorProduccion::Clases() {
  static const RegisteredClass classes[] = {{__uuidof(::Produccion), ::LIBID_ZuviProduccion,
                                             Wide(Produccion::kProgId), L"Producción: órdenes y kits"}};
  return classes;
}

}  // namespace zuvi
