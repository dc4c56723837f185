#include "windows/ventana_modulo.h"

#include <algorithm>

#include "base/format.h"
#include "base/text.h"

namespace zuvi {
namespace {

/// So many rows may take their time to come: who waits for them is shown how it goes.
constexpr double kMuchasFilas = 2000;
/// No memory is set aside for more: the host may have counted wrong.
constexpr double kMasFilas = 200'000;

}  // namespace

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

void VentanaModulo::Mensaje(NumeroMensaje numero) const {
  AccesoDatos& datos = Datos();
  datos.Mensaje(datos.TraeMensaje(numero, Entorno()), EstiloMensaje::Informacion, Entorno());
}

bool VentanaModulo::Pregunta(NumeroMensaje numero, std::int16_t modo) const {
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

void VentanaModulo::Prepara() {
  // Closed while it was still loading: the host would keep what nobody takes back from it.
  if (!Closed()) Datos().PreparaVentana(shared_from_this(), Entorno());
}

void VentanaModulo::Libera() { Datos().LiberaVentana(shared_from_this(), Entorno()); }

void VentanaModulo::LlenaLista(ListView& lista, ProgressBar& barra, const std::string& cuenta,
                               const std::string& filas,
                               const std::function<void(ListItems&, Recordset&)>& agrega) {
  const int este = ++llenados_[&lista];
  const double total = Datos().ValorNumerico(Consulta(cuenta)->Campo(0));
  if (total > kMuchasFilas) ShowWhileLoading();
  const auto fila = Consulta(filas);
  lista.Items().Clear();
  if (total > 0) {
    barra.SetMax(total);
    lista.Items().Reserve(static_cast<std::size_t>(std::min(total, kMasFilas)));
  }
  for (double n = 1; !fila->Eof(); fila->MoveNext(), ++n) {
    barra.SetValue(n);
    agrega(lista.Items(), *fila);
    Screen().PumpIfDue();
    if (Closed() || llenados_[&lista] != este) return;
  }
  barra.SetValue(0);
}

std::string VentanaModulo::Campo(Recordset& fila, FixedText nombre) {
  return std::string(Trim(TextOrNothing(fila.Campo(nombre))));
}

void EnfocaSiHabilitado(Control& control) {
  const Form* const ventana = control.Window();
  if (control.Enabled() && ventana && !ventana->Closed()) control.SetFocus();
}

}  // namespace zuvi
