#include "host/ventanas/pregunta_base.h"

#include "host/odbc/ubicacion.h"

namespace zuvi::host {
namespace {

bool Crea(Anfitrion& anfitrion, const std::string& pregunta) {
  if (!anfitrion.Pregunta(pregunta)) return false;
  const bool ejemplo = anfitrion.Pregunta(
      "¿Llenarla con la tienda de ejemplo?\n\nSí: con artículos, existencias y órdenes para probar.\nNo: "
      "vacía, para "
      "empezar a trabajar.");
  anfitrion.CreaBase(ejemplo ? Contenido::Tienda : Contenido::Vacio);
  return true;
}

}  // namespace

bool AseguraBase(Anfitrion& anfitrion) {
  const Opciones& opciones = anfitrion.TraeOpciones();
  const Ubicacion lugar(opciones);
  const bool falta = lugar.Falta();
  if (lugar.EnMemoria() || (falta && opciones.archivo_por_omision)) return true;
  const Esquema esquema = anfitrion.ExaminaBase();
  switch (esquema.estado) {
    case EstadoEsquema::Falta:
      return Crea(anfitrion, falta ? "No existe la base de datos " + lugar.Archivo() + ". ¿Crearla?"
                                   : "La base de datos no tiene las tablas de Zuvi. ¿Crearlas en ella?");
    case EstadoEsquema::AMedias:
      return Crea(anfitrion, "Las tablas de Zuvi quedaron a medio crear. ¿Terminarlas?");
    case EstadoEsquema::Antiguo: {
      const std::string version = Decimal(esquema.version);
      if (!anfitrion.Pregunta("La base de datos es de la versión " + version + " y este programa usa la " +
                              Decimal(kVersionEsquema) +
                              ".\n\nLos programas anteriores de otras estaciones deben actualizarse también. "
                              "¿Actualizarla?"))
        return false;
      anfitrion.ActualizaBase();
      anfitrion.Mensaje("La base de datos era de la versión " + version + " y quedó en la " +
                            Decimal(kVersionEsquema) + ".",
                        EstiloMensaje::Informacion);
      return true;
    }
    default:
      return true;
  }
}

}  // namespace zuvi::host
