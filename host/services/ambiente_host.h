#pragma once

#include "base/members.h"
#include "host/anfitrion/anfitrion.h"

namespace zuvi::host {

/// The environment object: what a session starts with. Besides its contract it publishes what a script
/// needs to prepare and to watch a run.
class AmbienteHost final : public Ambiente {
 public:
  explicit AmbienteHost(std::shared_ptr<Anfitrion> anfitrion) : anfitrion_(std::move(anfitrion)) {}

  std::shared_ptr<Conexion> TraeConexion() override;
  std::string UsuarioActual() override { return anfitrion_->TraeOpciones().usuario; }
  std::string RutaAplicacion() override { return anfitrion_->TraeOpciones().ruta; }
  void EjecutaSQL(const std::string& sql) override;
  /// Today as yyyymmdd, and the seconds since midnight.
  std::int32_t DatoFechaA() override;
  std::int32_t DatoFechaB() override;
  /// The number of the station: movements tell where they were made.
  Value DatoDocumento() override { return anfitrion_->TraeOpciones().estacion; }
  std::shared_ptr<Recordset> ParametrosEstacion() override;
  ObjectPtr ContenedorRutas() override { return nullptr; }

  /// Name of the SQLite file, or ODBC connection string without its password; setting it opens another
  /// database.
  std::string CadenaConexion() const;
  void PonCadenaConexion(const std::string& base);
  /// Makes the tables in a database that has none, with the example shop or empty.
  void CreaBase(bool ejemplo) { anfitrion_->CreaBase(ejemplo ? Contenido::Tienda : Contenido::Vacio); }
  /// Brings a database of an earlier version up to date, and returns which it was.
  std::int32_t ActualizaBase() { return anfitrion_->ActualizaBase(); }
  /// Who signs from now on.
  void PonUsuario(const std::string& usuario);
  /// Answers for the questions to come, like "si,no,si"; from then on messages are recorded, not shown.
  void PonRespuestas(const std::string& respuestas);
  /// Messages and questions since the last reading (`Anfitrion::TomaRegistro`).
  std::string Mensajes() { return anfitrion_->TomaRegistro(); }
  /// File that the trace is appended to; an empty name ends it.
  void PonTraza(const std::string& archivo) { anfitrion_->TrazaEnArchivo(archivo); }
  /// Stock of an article in a warehouse, 0 when there never was any.
  double Existencia(const std::string& articulo, std::int32_t almacen);
  /// Average unit cost of an article. Throws HostError for one that is not there.
  double Costo(const std::string& articulo);

  const MemberTable* Members() const override;

 private:
  void EjecutaConResultado(const std::string& sql, Value& filas);
  Value NoLegible() const { return {}; }

  std::shared_ptr<Anfitrion> anfitrion_;
};

}  // namespace zuvi::host
