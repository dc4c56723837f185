#include "component/services/ventana_modulo.h"

namespace zuvi {

VentanaModulo::VentanaModulo(Modulo& modulo, const char* nombre)
    : Form(modulo.Escritorio(), nombre, modulo.Retiene()), modulo_(modulo) {}

void VentanaModulo::PonAmbiente(ObjectPtr ambiente) {
  entorno_ = ComoOpcional<Ambiente>(ambiente);
  ambiente_ = std::move(ambiente);
}

const std::shared_ptr<Ambiente>& VentanaModulo::Entorno() const {
  if (!entorno_) throw HostError(ErrorNumber::ObjectNotSet);
  return entorno_;
}

std::shared_ptr<Recordset> VentanaModulo::Consulta(const std::string& sql) const {
  return Datos().Consulta(sql, TraeConexion());
}

void VentanaModulo::Mensaje(std::int32_t numero) const {
  AccesoDatos& datos = Datos();
  datos.Mensaje(datos.TraeMensaje(numero, Entorno()), EstiloMensaje::Informacion, Entorno());
}

bool VentanaModulo::Pregunta(std::int32_t numero, std::int16_t modo) const {
  AccesoDatos& datos = Datos();
  return datos.Pregunta(datos.TraeMensaje(numero, Entorno()), modo);
}

PeticionProceso VentanaModulo::IniciaProceso(const char* clave) {
  PeticionProceso peticion;
  peticion.clave = clave;
  peticion.objeto = shared_from_this();
  peticion.ambiente = ambiente_;
  modulo_.Procesos().IniciaProceso(peticion);
  return peticion;
}

void VentanaModulo::Prepara() { Datos().PreparaVentana(shared_from_this(), Entorno()); }

void VentanaModulo::Libera() { Datos().LiberaVentana(shared_from_this(), Entorno()); }

void VentanaModulo::EnfocaSiHabilitado(Control& control) {
  if (control.Enabled()) control.SetFocus();
}

}  // namespace zuvi
