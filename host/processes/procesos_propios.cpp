#include "host/processes/procesos_propios.h"

#include <array>
#include <string_view>

#include "host/processes/captura_fracciones.h"
#include "host/processes/codigos.h"
#include "host/processes/genera_horarios.h"
#include "host/processes/paginas.h"

namespace zuvi::host {
namespace {

/// Gives the list around a field of the window its rows.
void PonLista(Object& ventana, std::int16_t campo, const char* filas) {
  if (!ventana.Find("txtFields")) return;
  std::array<Value, 1> indice{campo};
  const ObjectPtr caja = ToObject(ventana.Call("txtFields", indice));
  const ObjectPtr combo = caja && caja->Find("Container") ? ToObject(caja->Call("Container")) : nullptr;
  if (combo && combo->Find("RowSource")) combo->Put("RowSource", filas);
}

void PonListas(Anfitrion& anfitrion, Object& ventana) {
  try {
    PonLista(ventana, 14, "SELECT almacen, nombre FROM almacen ORDER BY almacen");
    PonLista(ventana, 4, "SELECT articulo, descrip FROM prods ORDER BY articulo");
  } catch (const HostError& error) {
    // A window of another make may lack such a field; it opens all the same, without lists.
    anfitrion.TraeTraza().Anota(Suceso::Bitacora, std::string("Op001: ") + error.what());
  }
}

void GeneraCodigosDe(Anfitrion& anfitrion, Object& ventana) {
  const std::int32_t op = ToInt32(ventana.Call("Op"));
  if (op == 0) throw HostError("La orden no se ha guardado: todavía no hay partidas que codificar");
  BaseDatos& base = *anfitrion.Base();
  const std::int32_t nuevos = GeneraCodigos(base, op, anfitrion.TraeOpciones().usuario);
  const std::string archivo = EscribePagina("CODIGOS-" + Decimal(op) + ".html", PaginaDeCodigos(base, op),
                                            anfitrion.TraeOpciones().reportes);
  // Finishing an order generates codes too; labels that were shown before are shown again only to somebody
  // who looks the order up.
  const bool consulta = ventana.Find("Modo") && ToText(ventana.Call("Modo")) == "CONSULTA";
  if (nuevos > 0 || consulta) anfitrion.MuestraDocumento(archivo);
}

}  // namespace

void CorreProcesoPropio(Anfitrion& anfitrion, PeticionProceso& peticion) {
  if (!peticion.objeto) return;
  if (peticion.clave == "Op001") PonListas(anfitrion, *peticion.objeto);
  if (peticion.clave == "OP007" && peticion.objeto->Find("Op")) GeneraCodigosDe(anfitrion, *peticion.objeto);
  if (peticion.clave == "TURNOS003") ProcesoHorarios(anfitrion, peticion);
  if (peticion.clave == "FRACCIONES001") ProcesoFraccionesInicio(anfitrion, peticion);
  if (peticion.clave == "FRACCIONES") ProcesoFracciones(anfitrion, peticion);
}

void AvisaRechazo(const PeticionProceso& peticion) {
  constexpr std::array<std::string_view, 3> kConRechazo{"Op001", "Op005", "Op006"};
  for (const std::string_view clave : kConRechazo)
    if (peticion.clave == clave && peticion.objeto && peticion.objeto->Find("Rechazado"))
      peticion.objeto->Put("Rechazado", true);
}

}  // namespace zuvi::host
