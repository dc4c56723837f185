#include "host/processes/turno_elegido.h"

namespace zuvi::host {

std::string TurnoElegido(Object& ventana) {
  Value indice = std::int32_t{0};
  const Value elegido = ToObject(ventana.Call("lv", std::span(&indice, 1)))->Call("SelectedItem");
  if (!elegido.IsObject() || !ToObject(elegido)) return {};
  // The list puts a letter before each key.
  const std::string clave = ToText(ToObject(elegido)->Call("Key"));
  return clave.empty() ? clave : clave.substr(1);
}

std::string TurnoDeQuienPregunta(const std::vector<ObjectPtr>& ventanas) {
  for (const ObjectPtr& ventana : ventanas) try {
      if (ToBool(ventana->Call("Handling")) && ToText(ventana->Call("Name")) == "frmTurnos")
        return TurnoElegido(*ventana);
    } catch (const HostError&) {
      // Of another make: it does not tell.
    }
  return {};
}

}  // namespace zuvi::host
