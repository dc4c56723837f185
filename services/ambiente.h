// services/: the contract of every object that the host supplies, as abstract classes. The module
// creates and calls host objects only through these; who implements them (a native host, objects reached by
// name across COM) is not its concern. Every operation may throw HostError; nothing it did before is undone.
#pragma once

#include <memory>
#include <string>

#include "base/object.h"
#include "services/recordset.h"

namespace zuvi {

/// The host environment: the open connection, who is signed in, the station's settings.
class Ambiente : public Object {
 public:
  static constexpr const char* kProgId = "ZuviEnviroment.Ambiente";

  /// The open database connection that the host holds. Never null.
  virtual std::shared_ptr<Conexion> TraeConexion() = 0;
  /// Identifier of the signed-in user, in the form of the `usuario` column of `op`.
  virtual std::string UsuarioActual() = 0;
  /// Folder of the host application, without trailing separator.
  virtual std::string RutaAplicacion() = 0;
  /// Runs one action statement (UPDATE, DELETE). The host's own result is not used.
  virtual void EjecutaSQL(const std::string& sql) = 0;
  /// The two inputs of `AccesoDatos::ComponeFecha`; the first also goes to the movement document.
  virtual std::int32_t DatoFechaA() = 0;
  virtual std::int32_t DatoFechaB() = 0;
  /// Handed to the movement document as it is.
  virtual Value DatoDocumento() = 0;
  /// The station's settings: one row with at least `Almacen` and `Lector`.
  virtual std::shared_ptr<Recordset> ParametrosEstacion() = 0;
  /// An object with a member "PathCollection", or null when the host has none.
  virtual ObjectPtr ContenedorRutas() = 0;
};

}  // namespace zuvi
