#include "host/services/ambiente_host.h"

#include "base/clock.h"
#include "host/anfitrion/interaccion_respuestas.h"
#include "host/odbc/odbc_attributes.h"
#include "services/by_name.h"

namespace zuvi::host {

const MemberTable* AmbienteHost::Members() const {
  static const MemberTable table =
      MemberTable::Of<AmbienteHost>()
          .Property<&AmbienteHost::TraeConexion>("Conexion")
          .Property<&AmbienteHost::UsuarioActual>("UsuarioActual")
          .Property<&AmbienteHost::RutaAplicacion>("RutaAplicacion")
          .Method<&AmbienteHost::EjecutaConResultado>("EjecutaSQL", {"sql", "resultado"}, 1)
          .Property<&AmbienteHost::DatoFechaA>("DatoFechaA")
          .Property<&AmbienteHost::DatoFechaB>("DatoFechaB")
          .Property<&AmbienteHost::DatoDocumento>("DatoDocumento")
          .Method<&AmbienteHost::ParametrosEstacion>("ParametrosEstacion")
          .Method<&AmbienteHost::ContenedorRutas>("ContenedorRutas")
          .Property<&AmbienteHost::CadenaConexion, &AmbienteHost::PonCadenaConexion>("CadenaConexion")
          .Method<&AmbienteHost::CreaBase>("CreaBase", {"ejemplo"})
          .Method<&AmbienteHost::ActualizaBase>("ActualizaBase")
          .Property<&AmbienteHost::UsuarioActual, &AmbienteHost::PonUsuario>("Usuario")
          .Property<&AmbienteHost::NoLegible, &AmbienteHost::PonRespuestas>("Respuestas")
          .Property<&AmbienteHost::Mensajes>("Mensajes")
          .Property<&AmbienteHost::NoLegible, &AmbienteHost::PonTraza>("Traza")
          .Method<&AmbienteHost::Existencia>("Existencia", {"articulo", "almacen"})
          .Method<&AmbienteHost::Costo>("Costo", {"articulo"});
  return &table;
}

std::shared_ptr<Conexion> AmbienteHost::TraeConexion() {
  anfitrion_->NuevaOperacion();
  return anfitrion_->Base();
}

void AmbienteHost::EjecutaSQL(const std::string& sql) {
  Value filas;
  EjecutaConResultado(sql, filas);
}

void AmbienteHost::EjecutaConResultado(const std::string& sql, Value& filas) {
  // Work that was cancelled must not go on to write down that it is done.
  anfitrion_->ExigeNoCancelado();
  filas = Value(static_cast<double>(anfitrion_->Base()->Ejecuta(sql)));
}

std::int32_t AmbienteHost::DatoFechaA() {
  const CivilDate ahora = Ahora();
  return ahora.anio * 10000 + ahora.mes * 100 + ahora.dia;
}

std::int32_t AmbienteHost::DatoFechaB() {
  const CivilDate ahora = Ahora();
  return ahora.hora * 3600 + ahora.minuto * 60 + ahora.segundo;
}

std::shared_ptr<Recordset> AmbienteHost::ParametrosEstacion() {
  return anfitrion_->Base()->Consulta("SELECT * FROM parametros WHERE estacion = " +
                                      Decimal(anfitrion_->TraeOpciones().estacion));
}

std::string AmbienteHost::CadenaConexion() const {
  const Opciones& opciones = anfitrion_->TraeOpciones();
  return opciones.cadena.empty() ? opciones.archivo : WithoutPassword(opciones.cadena);
}

void AmbienteHost::PonCadenaConexion(const std::string& base) {
  // What was read here names the same database, although the password was left out of it.
  if (base == CadenaConexion()) return;
  Opciones opciones = anfitrion_->TraeOpciones();
  PonBase(opciones, base);
  anfitrion_->PonOpciones(std::move(opciones));
}

void AmbienteHost::PonUsuario(const std::string& usuario) {
  Opciones opciones = anfitrion_->TraeOpciones();
  opciones.usuario = usuario;
  anfitrion_->PonOpciones(std::move(opciones));
}

void AmbienteHost::PonRespuestas(const std::string& respuestas) {
  anfitrion_->PonInteraccion(std::make_unique<RespuestasInteraccion>(respuestas));
}

double AmbienteHost::Existencia(const std::string& articulo, std::int32_t almacen) {
  BaseDatos& base = *anfitrion_->Base();
  const auto fila = base.Consulta("SELECT cantidad FROM existencias WHERE articulo = " +
                                  Literal(base.GetEngine(), articulo) + " AND almacen = " + Decimal(almacen));
  return fila->Eof() ? 0 : ToNumber(fila->Campo(0));
}

double AmbienteHost::Costo(const std::string& articulo) {
  BaseDatos& base = *anfitrion_->Base();
  const auto fila =
      base.Consulta("SELECT costo FROM prods WHERE articulo = " + Literal(base.GetEngine(), articulo));
  if (fila->Eof()) throw HostError("El artículo " + articulo + " no existe");
  return ToNumber(fila->Campo(0));
}

}  // namespace zuvi::host
