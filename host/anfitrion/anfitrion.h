// host/anfitrion/: the running host that all its objects share: settings, the open connection, hooks, the
// open windows, and how it talks to its user. The reference host is a small real back office, and depends on
// nothing of the component but the contract; windows and COM are in host/ventanas and host/win32.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/anfitrion/interaccion.h"
#include "host/odbc/base_datos.h"
#include "host/odbc/opciones.h"
#include "host/odbc/traza.h"
#include "host/shop/esquema.h"
#include "services/control_procesos.h"
#include "services/fabrica.h"

namespace zuvi::host {

class Ubicacion;

/// One per process: what all host objects of the process share.
class Anfitrion : public std::enable_shared_from_this<Anfitrion> {
 public:
  using Gancho = std::function<void(PeticionProceso&)>;
  /// What has come to pass since the host began: inventory movements posted, messages shown, windows of the
  /// module opened. Who wants to know what an operation did compares before and after.
  struct Sucedido {
    int movimientos = 0, mensajes = 0, ventanas = 0;
  };

  Anfitrion(Opciones opciones, std::unique_ptr<Interaccion> interaccion);

  /// The settings in force.
  const Opciones& TraeOpciones() const { return opciones_; }
  /// Changes settings; an open connection is closed when its string changes.
  void PonOpciones(Opciones opciones);
  /// The connection, opened on first use. Opening changes nothing: throws HostError for a database that
  /// cannot be worked with, but for a file that is to be made (`Opciones::crea_archivo`).
  const std::shared_ptr<BaseDatos>& Base();
  /// The database behind a connection object; the host's own when there is none. Throws HostError for a
  /// connection that another host made.
  BaseDatos& BaseDe(const std::shared_ptr<Conexion>& conexion);
  /// What the database holds; a file that is not there holds nothing, and is not made.
  Esquema ExaminaBase();
  /// Makes the schema in a database that has none, with the example shop or empty. Throws HostError for any
  /// other, and when it is there.
  void CreaBase(Contenido contenido);
  /// Brings a database of an earlier version up to date, and returns which it was. Throws HostError when the
  /// account may not.
  std::int32_t ActualizaBase();
  /// Whether this host made the tables of the open database.
  bool RecienCreada() const { return recien_creada_; }
  /// Throws everything in the database away and fills it anew, all or nothing. Throws HostError.
  void RehaceTienda(Contenido contenido = Contenido::Tienda);
  /// How the user is spoken to; another way from the next message on.
  Interaccion& Usuario() { return *interaccion_; }
  void PonInteraccion(std::unique_ptr<Interaccion> interaccion) { interaccion_ = std::move(interaccion); }
  /// The trace, for whoever listens or has something to note.
  Traza& TraeTraza() { return traza_; }
  /// Appends the trace to a file from now on; an empty name ends that. Throws HostError when it cannot be
  /// opened.
  void TrazaEnArchivo(const std::string& ruta);
  /// False when a line of it was lost.
  bool TrazaEntera() const { return !archivo_de_traza_ || archivo_de_traza_->Entera(); }
  /// Notes a call of a host operation in the trace.
  template <class... A>
  void Llamada(const char* operacion, const A&... argumentos) const {
    if (traza_.Activa()) AnotaLlamada(operacion, {Value(argumentos)...});
  }

  const Sucedido& LoSucedido() const { return sucedido_; }
  /// A movement of the inventory was posted.
  void AnotaMovimiento() { ++sucedido_.movimientos; }
  /// Shows a message; asks, and returns whether the user confirmed. Both are noted in the trace and kept for
  /// `TomaRegistro`.
  void Mensaje(const std::string& texto, EstiloMensaje estilo);
  bool Pregunta(const std::string& texto);
  /// Shows a written page to the user and notes it in the trace.
  void MuestraDocumento(const std::string& archivo);
  /// Messages and questions since the last call, one a line, a question with its answer; the newest 1,000.
  std::string TomaRegistro();

  /// A method of the module has begun. An earlier cancellation is settled, unless work is still going on
  /// behind an open progress display; so is a lost connection.
  void NuevaOperacion();
  /// Whether the connection was lost, or could not be opened again, since the running operation began: what
  /// is left of it should not be tried.
  bool SePerdioConexion() const { return base_ && base_->SePerdio(); }
  /// Throws HostError once the user wants running work to end.
  void ExigeNoCancelado();
  /// Opens the user's progress display. `Cancelado` keeps its answer while one is open.
  std::unique_ptr<Progreso> AbreProgreso(std::int32_t total, const std::string& titulo,
                                         const std::string& animacion);

  /// A process of the host's own that lets windows answer begins: false when it is running already.
  bool Empieza(const std::string& clave) { return en_curso_.insert(clave).second; }
  void Termina(const std::string& clave) { en_curso_.erase(clave); }

  /// Attaches a hook to a process key; it runs when the module starts that process and may veto or replace.
  /// Keys without a hook let the module's own action go ahead.
  void PonGancho(const std::string& clave, Gancho gancho) { ganchos_[clave] = std::move(gancho); }
  void QuitaGancho(const std::string& clave) { ganchos_.erase(clave); }
  /// The hook of a key; null when it has none.
  const Gancho* TraeGancho(const std::string& clave) const;
  /// Whether table `procesos` forbids a key; read when the connection is opened.
  bool Vetada(const std::string& clave);

  /// An object of a client is kept beyond the call that brought it. Told to who tends the boundary it came
  /// over: its code must be there for as long.
  void Retiene(const ObjectPtr& objeto) const {
    if (objeto && al_retener_) al_retener_(objeto);
  }
  /// Who tends that boundary: `aviso` runs for each object that is kept.
  void AlRetener(std::function<void(const ObjectPtr&)> aviso) { al_retener_ = std::move(aviso); }

  /// The main window, which gets the focus back when a window of the module closes; null without windows.
  const ObjectPtr& VentanaPrincipal() const { return ventana_principal_; }
  void PonVentanaPrincipal(ObjectPtr ventana) { ventana_principal_ = std::move(ventana); }

  /// The windows of the module that are open: they are noted when they have loaded and forgotten when they
  /// unload. A window that went away without a word is forgotten too.
  void AnotaVentana(const ObjectPtr& ventana);
  void OlvidaVentana(const ObjectPtr& ventana);
  std::vector<ObjectPtr> Ventanas();

  /// Number for a new movement, unique among all stations. Taken in blocks, so that a movement costs no
  /// further statement; what is left of a block at the end is lost.
  std::int32_t NumeroDeMovimiento();

 private:
  void AnotaLlamada(const char* operacion, std::initializer_list<Value> argumentos) const;
  void Registra(std::string linea);
  void LeeVetos(BaseDatos& base);
  /// Throws HostError where a file cannot be worked with because it lies on another machine's disk.
  void ExigeSitio(const Ubicacion& lugar) const;
  /// A connection that is not the host's own yet.
  std::shared_ptr<BaseDatos> Conecta(const Ubicacion& lugar) const;
  /// Makes a file with its tables. False when another program was faster.
  bool CreaArchivo(const Ubicacion& lugar, Contenido contenido) const;
  /// What a file holds that a program left in the middle of writing, or has open. To open it for work is to
  /// finish that writing, which is not done before it is known whose the file is.
  std::optional<Esquema> ExaminaIntacta(const Ubicacion& lugar) const;
  void ExigeNuestraOVacia(const Ubicacion& lugar) const;
  const std::shared_ptr<BaseDatos>& Adopta(std::shared_ptr<BaseDatos> base);
  /// Throws HostError unless a database reached by connecting again is one of ours.
  void CompruebaReabierta(BaseDatos& base);

  Opciones opciones_;
  std::unique_ptr<Interaccion> interaccion_;
  Sucedido sucedido_;
  Traza traza_;
  std::size_t traza_en_archivo_ = 0;
  std::shared_ptr<ArchivoDeTraza> archivo_de_traza_;
  std::shared_ptr<BaseDatos> base_;
  bool recien_creada_ = false;
  std::function<void(const ObjectPtr&)> al_retener_;
  std::map<std::string, Gancho> ganchos_;
  std::set<std::string> vetadas_, en_curso_;
  ObjectPtr ventana_principal_;
  std::vector<ObjectPtr> ventanas_;
  std::deque<std::string> registro_;
  std::shared_ptr<int> progresos_ = std::make_shared<int>(0);
  std::int32_t siguiente_movimiento_ = 0;
  std::int32_t fin_de_bloque_ = 0;
};

}  // namespace zuvi::host
