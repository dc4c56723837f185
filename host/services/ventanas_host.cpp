#include "host/services/ventanas_host.h"

#include "host/shop/catalogos.h"
#include "services/by_name.h"

namespace zuvi::host {
namespace {

[[noreturn]] void SinVentanas() { throw HostError("Esta estación no tiene ventanas"); }

void EscribeEn(const ObjectPtr& caja, const std::string& texto) {
  if (!caja) throw HostError(ErrorNumber::ObjectNotSet);
  caja->Put("Text", texto);
}

}  // namespace

const MemberTable* VentanaProgresoHost::Members() const {
  using V = VentanaProgresoHost;
  static const MemberTable table = MemberTable::Of<V>()
                                       .Method<&V::Inicia>("Inicia", {"total", "titulo", "animacion"}, 2)
                                       .Method<&V::Avanza>("Avanza", {"paso", "texto", "texto2"}, 2)
                                       .Method<&V::Cierra>("Cierra");
  return &table;
}

void VentanaProgresoHost::Inicia(std::int32_t total, const std::string& titulo,
                                 const std::string& animacion) {
  anfitrion_->Llamada("Inicia", total, titulo, animacion);
  progreso_.reset();
  progreso_ = anfitrion_->AbreProgreso(total, titulo, animacion);
}

void VentanaProgresoHost::Avanza(std::int32_t paso, const std::string& texto, const std::string& texto2) {
  anfitrion_->Llamada("Avanza", paso, texto, texto2);
  if (progreso_) progreso_->Avanza(paso, texto, texto2);
  // Else a delivery that was cancelled, or whose server is gone, would go on to every line left, each with an
  // error of its own.
  anfitrion_->ExigeNoCancelado();
  if (anfitrion_->SePerdioConexion())
    throw HostError("Se perdió la conexión con la base de datos; lo que quedaba no se intentó");
}

void VentanaProgresoHost::Cierra() {
  anfitrion_->Llamada("Cierra");
  progreso_.reset();
}

const MemberTable* BuscaCatalogoHost::Members() const {
  using B = BuscaCatalogoHost;
  static const MemberTable table =
      MemberTable::Of<B>()
          .Method<&B::PonAmbiente>("PonAmbiente", {"ambiente"})
          .Method<&B::PonDestino>("PonDestino", {"caja"})
          .Method<&B::PonFiltro>("PonFiltro", {"filtro"})
          .Method<&B::MuestraConTextos>("Muestra", {"titulo", "texto1", "texto2", "texto3", "opcional"}, 4)
          .Method<&B::Busca>("Busca", {"titulo", "busqueda"}, 1)
          .Method<&B::Elige>("Elige", {"clave"});
  return &table;
}

void BuscaCatalogoHost::Muestra(const std::string& titulo) {
  anfitrion_->Llamada("BuscaCatalogo", titulo, filtro_);
  CatalogoDe(titulo);
  SinVentanas();
}

void BuscaCatalogoHost::MuestraConTextos(const std::string& titulo, const Value&, const Value&, const Value&,
                                         const Value&) {
  Muestra(titulo);
}

std::shared_ptr<Recordset> BuscaCatalogoHost::Busca(const std::string& titulo, const std::string& busqueda) {
  return BuscaEnCatalogo(*anfitrion_->Base(), CatalogoDe(titulo), filtro_, busqueda);
}

void BuscaCatalogoHost::Elige(const std::string& clave) { EscribeEn(destino_, clave); }

const MemberTable* CapturaNumericaHost::Members() const {
  using C = CapturaNumericaHost;
  static const MemberTable table = MemberTable::Of<C>()
                                       .Method<&C::PonAmbiente>("PonAmbiente", {"ambiente"})
                                       .Method<&C::PonDestino>("PonDestino", {"caja"})
                                       .Method<&C::Muestra>("Muestra")
                                       .Method<&C::Captura>("Captura", {"numero"});
  return &table;
}

void CapturaNumericaHost::Muestra() { SinVentanas(); }

void CapturaNumericaHost::Captura(double numero) { EscribeEn(destino_, NumberText(numero)); }

}  // namespace zuvi::host
