#include "host/services/control_procesos_host.h"

#include <array>

#include "base/text.h"
#include "host/processes/procesos_propios.h"
#include "host/processes/reporte_orden.h"
#include "services/by_name.h"

namespace zuvi::host {
namespace {

Value Referencia(const ObjectPtr& objeto) { return Value(ReferenceOf(objeto)); }

}  // namespace

const MemberTable* ControlProcesosHost::Members() const {
  using C = ControlProcesosHost;
  static const MemberTable table =
      MemberTable::Of<C>()
          .Method<&C::IniciaConOnce>("IniciaProceso",
                                     {"clave", "objeto", "ambiente", "dato", "objeto2", "bandera", "numero",
                                      "texto", "nulo", "texto2", "objeto3"})
          .Method<&C::ConsultaProceso>("ConsultaProceso", {"bandera"})
          .Method<&C::CierraProceso>("CierraProceso", {"numero"})
          .Method<&C::ImprimeReporte>("ImprimeReporte", {"clave", "op", "ambiente", "ventana"}, 2)
          .Method<&C::PonGancho>("PonGancho", {"clave", "objeto"});
  return &table;
}

void ControlProcesosHost::IniciaProceso(PeticionProceso& peticion) {
  anfitrion_->Llamada("IniciaProceso", peticion.clave);
  peticion.bandera = anfitrion_->Vetada(peticion.clave);
  if (const auto* gancho = anfitrion_->TraeGancho(peticion.clave)) {
    // A copy: the hook may replace itself.
    const Anfitrion::Gancho propio = *gancho;
    propio(peticion);
  }
  if (peticion.bandera)
    AvisaRechazo(peticion);
  else
    CorreProcesoPropio(*anfitrion_, peticion);
}

void ControlProcesosHost::IniciaConOnce(Value& clave, Value& objeto, Value& ambiente, Value& dato,
                                        Value& objeto2, Value& bandera, Value& numero, Value& texto,
                                        Value& nulo, Value& texto2, Value& objeto3) {
  PeticionProceso peticion{.clave = ToText(clave),
                           .objeto = Conversion<ObjectPtr>::From(objeto),
                           .ambiente = Conversion<ObjectPtr>::From(ambiente),
                           .dato = dato,
                           .objeto2 = Conversion<ObjectPtr>::From(objeto2),
                           .bandera = ToBool(bandera),
                           .numero = ToInt32(numero),
                           .texto = ToText(texto),
                           .nulo = nulo,
                           .texto2 = ToText(texto2),
                           .objeto3 = Conversion<ObjectPtr>::From(objeto3)};
  IniciaProceso(peticion);
  objeto = Referencia(peticion.objeto);
  dato = peticion.dato;
  objeto2 = Referencia(peticion.objeto2);
  bandera = peticion.bandera;
  numero = peticion.numero;
  texto = peticion.texto;
  nulo = peticion.nulo;
  texto2 = peticion.texto2;
  objeto3 = Referencia(peticion.objeto3);
}

void ControlProcesosHost::ConsultaProceso(bool& bandera) { anfitrion_->Llamada("ConsultaProceso", bandera); }

void ControlProcesosHost::CierraProceso(std::int32_t numero) { anfitrion_->Llamada("CierraProceso", numero); }

void ControlProcesosHost::ImprimeReporte(const std::string& clave, std::int32_t op,
                                         const std::shared_ptr<Ambiente>&, const ObjectPtr&) {
  anfitrion_->Llamada("ImprimeReporte", clave, op);
  if (!EqualsIgnoringCase(clave, "ORDENP"))
    throw HostError("No hay un reporte con la clave \"" + clave + "\"");
  anfitrion_->MuestraDocumento(
      EscribeReporteOrden(*anfitrion_->Base(), op, anfitrion_->TraeOpciones().reportes));
}

void ControlProcesosHost::PonGancho(const std::string& clave, const ObjectPtr& objeto) {
  if (!objeto) {
    anfitrion_->QuitaGancho(clave);
    return;
  }
  anfitrion_->Retiene(objeto);
  anfitrion_->PonGancho(clave, [objeto](PeticionProceso& peticion) {
    std::array<Value, 2> argumentos{Referencia(peticion.objeto), Referencia(peticion.ambiente)};
    const Value veto = objeto->Read(objeto->Find("Ejecuta").value_or(kDefaultMember), argumentos);
    if (!veto.IsEmpty() && !veto.IsNull()) peticion.bandera = ToBool(veto);
  });
}

}  // namespace zuvi::host
