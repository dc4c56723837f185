#include "host/services/fabrica_anfitrion.h"

#include "base/text.h"
#include "host/services/acceso_datos_host.h"
#include "host/services/ambiente_host.h"
#include "host/services/constructor_sql_host.h"
#include "host/services/control_procesos_host.h"
#include "host/services/documento_inventario_host.h"
#include "host/services/ventanas_host.h"

namespace zuvi::host {

ObjectPtr FabricaAnfitrion::Crea(std::string_view prog_id) {
  if (EqualsIgnoringCase(prog_id, Ambiente::kProgId)) return std::make_shared<AmbienteHost>(anfitrion_);
  if (EqualsIgnoringCase(prog_id, AccesoDatos::kProgId)) return std::make_shared<AccesoDatosHost>(anfitrion_);
  if (EqualsIgnoringCase(prog_id, ControlProcesos::kProgId))
    return std::make_shared<ControlProcesosHost>(anfitrion_);
  if (EqualsIgnoringCase(prog_id, ConstructorSql::kProgId))
    return std::make_shared<ConstructorSqlHost>(anfitrion_);
  if (EqualsIgnoringCase(prog_id, DocumentoInventario::kProgId))
    return std::make_shared<DocumentoInventarioHost>(anfitrion_);
  if (EqualsIgnoringCase(prog_id, VentanaProgreso::kProgId))
    return std::make_shared<VentanaProgresoHost>(anfitrion_);
  if (EqualsIgnoringCase(prog_id, BuscaCatalogo::kProgId))
    return std::make_shared<BuscaCatalogoHost>(anfitrion_);
  if (EqualsIgnoringCase(prog_id, CapturaNumerica::kProgId)) return std::make_shared<CapturaNumericaHost>();
  if (EqualsIgnoringCase(prog_id, Recordset::kProgId)) return NuevoRecordset();
  throw HostError("El anfitrión no tiene la clase " + std::string(prog_id), ErrorNumber::CannotCreateObject);
}

}  // namespace zuvi::host
