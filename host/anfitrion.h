// host/: the reference host, a small real back office. It offers every object of component/services on a real
// database through ODBC, and depends on nothing else of the component. Portable here; windows and COM in
// host/win32.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "component/services/control_procesos.h"
#include "component/services/fabrica.h"
#include "host/base_datos.h"
#include "host/interaccion.h"
#include "host/traza.h"

namespace zuvi::host {

/// Settings of one running host.
struct Opciones {
  /// ODBC connection string; empty means the SQLite file `archivo`.
  std::string cadena;
  /// SQLite file, created and filled with the example shop when it does not exist; ":memory:" is allowed.
  std::string archivo;
  std::string usuario = "ADMIN";
  /// Folder of the application, without trailing separator.
  std::string ruta;
  /// Language of the message catalogue, "es" or "en".
  std::string idioma = "es";
};

/// One per process: what all host objects of the process share.
class Anfitrion : public std::enable_shared_from_this<Anfitrion> {
 public:
  using Gancho = std::function<void(PeticionProceso&)>;

  Anfitrion(Opciones opciones, std::unique_ptr<Interaccion> interaccion);

  const Opciones& TraeOpciones() const { return opciones_; }
  /// Changes settings; an open connection is closed when its string changes.
  void PonOpciones(Opciones opciones);
  /// The connection, opened on first use. An empty database gets the schema and the example shop.
  const std::shared_ptr<BaseDatos>& Base();
  Interaccion& Usuario() { return *interaccion_; }
  void PonInteraccion(std::unique_ptr<Interaccion> interaccion) { interaccion_ = std::move(interaccion); }
  Traza& TraeTraza() { return traza_; }

  /// Attaches a hook to a process key; it runs when the module starts that process and may veto or replace.
  /// Keys without a hook let the module's own action go ahead.
  void PonGancho(const std::string& clave, Gancho gancho) { ganchos_[clave] = std::move(gancho); }
  const Gancho* TraeGancho(const std::string& clave) const;

 private:
  Opciones opciones_;
  std::unique_ptr<Interaccion> interaccion_;
  Traza traza_;
  std::shared_ptr<BaseDatos> base_;
  std::map<std::string, Gancho> ganchos_;
};

/// Makes the host's objects by programmatic name ("ZuviEnviroment.Ambiente", "ZuviQuery.AccesoDatos", …,
/// "ADODB.Recordset"). Every object publishes its members by name (base/members.h).
class FabricaAnfitrion final : public FabricaServicios {
 public:
  explicit FabricaAnfitrion(std::shared_ptr<Anfitrion> anfitrion) : anfitrion_(std::move(anfitrion)) {}
  ObjectPtr Crea(std::string_view prog_id) override;

 private:
  std::shared_ptr<Anfitrion> anfitrion_;
};

}  // namespace zuvi::host
