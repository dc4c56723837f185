#include "host/win32/modulo_host.h"

#include "host/win32/apartamento_host.h"

namespace zuvi::host {

ModuloHost::Hilo ModuloHost::HiloActual() {
  FILETIME nacido{}, resto{};
  GetThreadTimes(GetCurrentThread(), &nacido, &resto, &resto, &resto);
  return {GetCurrentThreadId(), ULONGLONG{nacido.dwHighDateTime} << 32 | nacido.dwLowDateTime};
}

std::shared_ptr<ApartamentoHost> ModuloHost::Actual() {
  const Hilo hilo = HiloActual();
  const std::lock_guard cerrado(candado_);
  auto& apartamento = apartamentos_[hilo];
  if (!apartamento)
    apartamento = std::make_shared<ApartamentoHost>(
        modulo_,
        [this](IUnknown* exterior, REFIID iid, void** salida) {
          return Actual()->CreaRecordset(exterior, iid, salida);
        },
        [this] { Saca(); });
  return apartamento;
}

std::shared_ptr<ApartamentoHost> ModuloHost::Saca() {
  const Hilo hilo = HiloActual();
  const std::lock_guard cerrado(candado_);
  const auto suyo = apartamentos_.find(hilo);
  if (suyo == apartamentos_.end() || suyo->second->EnUso()) return nullptr;
  auto sacado = std::move(suyo->second);
  apartamentos_.erase(suyo);
  return sacado;
}

ComPtr<IUnknown> ModuloHost::Crea(const ClaseHost& clase) { return Actual()->Crea(clase); }

bool ModuloHost::Descansa() {
  Saca();
  const std::lock_guard cerrado(candado_);
  return apartamentos_.empty() && modulo_.Idle();
}

}  // namespace zuvi::host
