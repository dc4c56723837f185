#include "com/modulo_produccion.h"

#include "com/automation/handles.h"
#include "com/produccion_com.h"

namespace zuvi {
namespace {

/// What is left for the host's own calls, the report and its message box once recursion is refused.
constexpr std::size_t kReservaDePila = 256 * 1024;

/// True when the calling thread has less than the reserve left. The stack is one reservation whose lowest
/// address is known from any address in it.
bool PilaCasiAgotada() {
  MEMORY_BASIC_INFORMATION stack{};
  if (::VirtualQuery(&stack, &stack, sizeof stack) == 0) return false;
  const auto here = reinterpret_cast<std::uintptr_t>(&stack);
  return here - reinterpret_cast<std::uintptr_t>(stack.AllocationBase) < kReservaDePila;
}

}  // namespace

Apartamento::Apartamento(ComModule& module)
    : module_(module),
      fabrica_(module),
      escritorio_(module.Instance()),
      modulo_(fabrica_, escritorio_, &PilaCasiAgotada) {
  modulo_.PonRetencion([this] { return RetieneVentana(); });
}

std::shared_ptr<void> Apartamento::RetieneVentana() {
  // The apartment goes before the count does: the DLL is not idle while it is being let go.
  struct Retencion {
    explicit Retencion(ComModule& module, std::shared_ptr<Apartamento> suyo)
        : ventana(module, HoldKind::Window), apartamento(std::move(suyo)) {}
    ModuleHold ventana;
    std::shared_ptr<Apartamento> apartamento;
  };
  return std::make_shared<Retencion>(module_, shared_from_this());
}

Apartamento::~Apartamento() { modulo_.Suelta(); }

std::shared_ptr<Apartamento> ModuloProduccion::ApartamentoActual() {
  const std::lock_guard lock(mutex_);
  std::erase_if(apartamentos_, [](const auto& entry) { return entry.second.expired(); });
  auto& entry = apartamentos_[::GetCurrentThreadId()];
  std::shared_ptr<Apartamento> current = entry.lock();
  if (!current) entry = current = std::make_shared<Apartamento>(module_);
  return current;
}

ComPtr<IUnknown> ModuloProduccion::CreaProduccion() {
  return ComPtr<IUnknown>::Adopt(
      static_cast<::_Produccion*>(new ProduccionCom(module_, ApartamentoActual())));
}

bool ModuloProduccion::Tiene(REFCLSID clsid) { return clsid == __uuidof(::Produccion); }

std::span<const RegisteredClass> ModuloProduccion::Clases() {
  static const RegisteredClass classes[] = {{__uuidof(::Produccion), ::LIBID_ZuviProduccion,
                                             Ancho(Produccion::kProgId), L"Producción: órdenes y kits"}};
  return classes;
}

}  // namespace zuvi
