#include "host/services/acceso_datos_host.h"

#include <algorithm>
#include <string>

#include "base/text.h"
#include "host/processes/turno_elegido.h"
#include "host/services/constructor_sql_host.h"
#include "host/shop/filtros.h"
#include "host/shop/folios.h"
#include "host/shop/mensajes.h"
#include "host/shop/numero_escrito.h"
#include "services/by_name.h"

namespace zuvi::host {

const MemberTable* AccesoDatosHost::Members() const {
  using A = AccesoDatosHost;
  static const MemberTable table =
      MemberTable::Of<A>()
          .Method<&A::ConsultaConBandera>("Consulta", {"sql", "conexion", "bandera"}, 2)
          .Method<&A::ValorNumerico>("ValorNumerico", {"valor"})
          .Method<&A::ValorTexto>("ValorTexto", {"valor"})
          .Method<&A::EstaVacio>("EstaVacio", {"texto"})
          .Method<&A::TextoDeMensaje>("TraeMensaje", {"numero", "ambiente"}, 1)
          .Method<&A::MensajeConEstilo>("Mensaje", {"texto", "estilo", "ambiente"}, 1)
          .Method<&A::Pregunta>("Pregunta", {"texto", "modo"}, 1)
          .Method<&A::SiguienteFolio>("SiguienteFolio", {"clave", "conexion", "documento", "constructor"}, 3)
          .Method<&A::ComponeFecha>("ComponeFecha", {"a", "b"})
          .Method<&A::FechaSQL>("FechaSQL", {"conexion", "fecha"})
          .Method<&A::TextoConCeros>("TextoConCeros", {"numero", "ancho"})
          .Method<&A::ExisteClaveConBandera>("ExisteClave",
                                             {"valor", "tabla", "columna", "conexion", "bandera"}, 2)
          .Method<&A::UbicacionRestringida>("UbicacionRestringida", {"articulo", "almacen", "conexion"}, 1)
          .Method<&A::NuevoConstructorSql>("NuevoConstructorSql")
          .Method<&A::PreparaVentanaConTexto>("PreparaVentana", {"ventana", "ambiente", "texto"}, 1)
          .Method<&A::LiberaVentanaConDestino>("LiberaVentana", {"ventana", "ambiente", "destino"}, 1)
          .Method<&A::FormateaCampo>("FormateaCampo", {"caja", "ambiente"}, 1)
          .Method<&A::FiltraMayusculasEn>("FiltroMayusculas", {"caja", "caracter"})
          .Method<&A::FiltraTeclaEn>("FiltroTecla", {"bandera", "caja", "caracter"});
  return &table;
}

std::shared_ptr<Recordset> AccesoDatosHost::Consulta(const std::string& sql,
                                                     const std::shared_ptr<Conexion>& conexion) {
  anfitrion_->ExigeNoCancelado();
  return anfitrion_->BaseDe(conexion).Consulta(sql);
}

std::shared_ptr<Recordset> AccesoDatosHost::ConsultaConBandera(const std::string& sql,
                                                               const std::shared_ptr<Conexion>& conexion,
                                                               const Value&) {
  return Consulta(sql, conexion);
}

double AccesoDatosHost::ValorNumerico(const Value& valor) {
  if (valor.IsNull()) return 0;
  if (valor.IsObject()) return ValorNumerico(PlainValue(valor));
  const auto* texto = std::get_if<std::string>(&valor.Get());
  if (!texto) return ToNumber(valor);
  return EstaVacio(*texto) ? 0 : NumeroEscrito(*texto);
}

std::string AccesoDatosHost::ValorTexto(const Value& valor) {
  if (valor.IsNull()) return {};
  return valor.IsObject() ? ValorTexto(PlainValue(valor)) : ToText(valor);
}

bool AccesoDatosHost::EstaVacio(const std::string& texto) {
  return texto.find_first_not_of(" \t\r\n") == std::string::npos;
}

std::string AccesoDatosHost::TextoDeMensaje(std::int32_t numero, const std::shared_ptr<Ambiente>&) {
  return TextoMensaje(numero, anfitrion_->TraeOpciones().idioma, [this](std::string_view dato) {
    return dato == "clave" ? no_hallada_ : TurnoDeQuienPregunta(anfitrion_->Ventanas());
  });
}

void AccesoDatosHost::Mensaje(const std::string& texto, EstiloMensaje estilo,
                              const std::shared_ptr<Ambiente>&) {
  anfitrion_->Mensaje(texto, estilo);
}

void AccesoDatosHost::MensajeConEstilo(const std::string& texto, std::int16_t estilo,
                                       const std::shared_ptr<Ambiente>& ambiente) {
  Mensaje(texto, static_cast<EstiloMensaje>(estilo), ambiente);
}

bool AccesoDatosHost::Pregunta(const std::string& texto, std::int16_t) { return anfitrion_->Pregunta(texto); }

std::int32_t AccesoDatosHost::SiguienteFolio(const std::string& clave,
                                             const std::shared_ptr<Conexion>& conexion,
                                             std::int32_t& documento,
                                             const std::shared_ptr<ConstructorSql>&) {
  anfitrion_->Llamada("SiguienteFolio", clave);
  documento = TomaFolios(anfitrion_->BaseDe(conexion), clave);
  return documento;
}

Date AccesoDatosHost::ComponeFecha(std::int32_t a, std::int32_t b) {
  return Date::FromCivil({.anio = a / 10000,
                          .mes = a / 100 % 100,
                          .dia = a % 100,
                          .hora = b / 3600,
                          .minuto = b / 60 % 60,
                          .segundo = b % 60});
}

std::string AccesoDatosHost::FechaSQL(const std::shared_ptr<Conexion>& conexion, const Date& fecha) {
  return LiteralFecha(anfitrion_->BaseDe(conexion).GetEngine(), fecha);
}

std::string AccesoDatosHost::TextoConCeros(std::int32_t numero, std::int32_t ancho) {
  return ZeroPadded(numero, static_cast<std::size_t>(std::clamp(ancho, 0, 255)));
}

bool AccesoDatosHost::ExisteClave(const std::string& valor, const std::string& tabla,
                                  const std::string& columna, const std::shared_ptr<Conexion>& conexion) {
  anfitrion_->Llamada("ExisteClave", valor, tabla, columna);
  BaseDatos& base = anfitrion_->BaseDe(conexion);
  const bool existe = !base.Consulta("SELECT 1 FROM " + tabla + " WHERE " + columna + " = " +
                                     Literal(base.GetEngine(), valor) + " LIMIT 1")
                           ->Eof();
  no_hallada_ = existe ? "" : valor;
  return existe;
}

bool AccesoDatosHost::ExisteClaveConBandera(const std::string& valor, const std::string& tabla,
                                            const std::string& columna,
                                            const std::shared_ptr<Conexion>& conexion, const Value&) {
  return ExisteClave(valor, tabla, columna, conexion);
}

bool AccesoDatosHost::UbicacionRestringida(const std::string& articulo, std::int16_t almacen,
                                           const std::shared_ptr<Conexion>& conexion) {
  anfitrion_->Llamada("UbicacionRestringida", articulo, almacen);
  BaseDatos& base = anfitrion_->BaseDe(conexion);
  return !base.Consulta(
                  "SELECT 1 FROM restricciones INNER JOIN prods USING(ubicacion) WHERE prods.articulo = " +
                  Literal(base.GetEngine(), articulo) + " AND restricciones.almacen = " + Decimal(almacen) +
                  " LIMIT 1")
              ->Eof();
}

std::shared_ptr<ConstructorSql> AccesoDatosHost::NuevoConstructorSql() {
  return std::make_shared<ConstructorSqlHost>(anfitrion_);
}

void AccesoDatosHost::PreparaVentana(const ObjectPtr& ventana, const std::shared_ptr<Ambiente>&) {
  anfitrion_->Llamada("PreparaVentana");
  anfitrion_->AnotaVentana(ventana);
}

void AccesoDatosHost::LiberaVentana(const ObjectPtr& ventana, const std::shared_ptr<Ambiente>&) {
  anfitrion_->Llamada("LiberaVentana");
  anfitrion_->OlvidaVentana(ventana);
  const ObjectPtr principal = anfitrion_->VentanaPrincipal();
  if (!principal) return;
  principal->Call("SetFocus");
  // What the window has done shows in the list.
  if (principal->Find("Actualiza")) principal->Call("Actualiza");
}

void AccesoDatosHost::PreparaVentanaConTexto(const ObjectPtr& ventana,
                                             const std::shared_ptr<Ambiente>& ambiente, const Value&) {
  PreparaVentana(ventana, ambiente);
}

void AccesoDatosHost::LiberaVentanaConDestino(const ObjectPtr& ventana,
                                              const std::shared_ptr<Ambiente>& ambiente, const Value&) {
  LiberaVentana(ventana, ambiente);
}

std::string AccesoDatosHost::FormateaCampo(const ObjectPtr& caja, const std::shared_ptr<Ambiente>&) {
  return Formatea(ContenidoDe(caja));
}

std::int16_t AccesoDatosHost::FiltroMayusculas(const ObjectPtr&, std::int16_t caracter) {
  return Filtra({.etiqueta = "U", .texto = {}}, caracter);
}

std::int16_t AccesoDatosHost::FiltroTecla(const ObjectPtr& caja, std::int16_t caracter) {
  return Filtra(CajaDe(caja), caracter);
}

std::int16_t AccesoDatosHost::FiltraMayusculasEn(const ObjectPtr& caja, std::int16_t& caracter) {
  return caracter = FiltroMayusculas(caja, caracter);
}

std::int16_t AccesoDatosHost::FiltraTeclaEn(const Value&, const ObjectPtr& caja, std::int16_t& caracter) {
  return caracter = FiltroTecla(caja, caracter);
}

}  // namespace zuvi::host
