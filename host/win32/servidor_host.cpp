#include "host/win32/servidor_host.h"

#include "host/win32/apartamento_host.h"

namespace zuvi::host {

std::shared_ptr<ApartamentoHost> ServidorHost::Actual() {
  const ThreadIdentity hilo = CurrentThread();
  const std::lock_guard cerrado(candado_);
  if (const auto suyo = apartamentos_.find(hilo); suyo != apartamentos_.end()) return suyo->second;
  auto nuevo = std::make_shared<ApartamentoHost>(
      servidor_,
      [this](IUnknown* exterior, REFIID iid, void** salida) {
        return Actual()->CreaRecordset(exterior, iid, salida);
      },
      [this] { Saca(); });
  return apartamentos_.emplace(hilo, std::move(nuevo)).first->second;
}

std::shared_ptr<ApartamentoHost> ServidorHost::Saca() {
  const ThreadIdentity hilo = CurrentThread();
  const std::lock_guard cerrado(candado_);
  const auto suyo = apartamentos_.find(hilo);
  if (suyo == apartamentos_.end() || suyo->second->EnUso()) return nullptr;
  auto sacado = std::move(suyo->second);
  apartamentos_.erase(suyo);
  return sacado;
}

ComPtr<IUnknown> ServidorHost::Crea(const ClaseHost& clase) { return Actual()->Crea(clase); }

bool ServidorHost::Descansa() {
  Saca();
  const std::lock_guard cerrado(candado_);
  return apartamentos_.empty() && servidor_.Idle();
}

}  // namespace zuvi::host
