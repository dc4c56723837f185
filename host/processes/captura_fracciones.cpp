#include "host/processes/captura_fracciones.h"

#include "base/clock.h"
#include "base/text.h"
#include "host/processes/paginas.h"
#include "host/shop/celdas.h"
#include "host/shop/folios.h"

namespace zuvi::host {
namespace {

constexpr int kUltimas = 15;

/// What a scanned code stands for.
struct Articulo {
  std::string articulo, descripcion, unidad;
};

bool BuscaArticulo(BaseDatos& base, const std::string& clave, Articulo& hallado) {
  const auto fila = base.Consulta("SELECT articulo, descrip, unidad FROM prods WHERE articulo = " +
                                  Literal(base.GetEngine(), clave));
  if (fila->Eof()) return false;
  hallado = {TextOrNothing(fila->Campo(0)), TextOrNothing(fila->Campo(1)), TextOrNothing(fila->Campo(2))};
  return true;
}

bool Busca(BaseDatos& base, const std::string& codigo, Articulo& hallado) {
  if (BuscaArticulo(base, codigo, hallado)) return true;
  const auto segunda =
      base.Consulta("SELECT Articulo FROM clavesadd WHERE clave = " + Literal(base.GetEngine(), codigo));
  return !segunda->Eof() && BuscaArticulo(base, TextOrNothing(segunda->Campo(0)), hallado);
}

void Escribe(BaseDatos& base, const Captura& captura, const Articulo& articulo, const std::string& usuario) {
  const Engine motor = base.GetEngine();
  const std::int32_t id = TomaFolios(base, "fracciones");
  base.Ejecuta("INSERT INTO fracciones (id, codigo, articulo, cantidad, fecha, usuario) VALUES (" +
               Decimal(id) + ", " + Literal(motor, captura.codigo) + ", " +
               (articulo.articulo.empty() ? "NULL" : Literal(motor, articulo.articulo)) + ", " +
               NumberText(captura.cantidad) + ", " + LiteralFecha(motor, Date::FromCivil(Ahora())) + ", " +
               Literal(motor, usuario) + ")");
}

/// The newest captures, and above them what became of the one just made.
std::string Pagina(BaseDatos& base, const std::string& aviso, bool bien) {
  std::string html = InicioDePagina("Captura de fracciones",
                                    ".bien { color: #176117 } .mal { color: #b00020; font-weight: bold }");
  if (!aviso.empty())
    html += std::string("<p class=\"") + (bien ? "bien" : "mal") + "\">" + Html(aviso) + "</p>\n";
  const auto fila = base.Consulta(
      "SELECT fracciones.fecha, fracciones.codigo, fracciones.cantidad, prods.descrip, prods.unidad FROM "
      "fracciones LEFT JOIN prods ON prods.articulo = fracciones.articulo ORDER BY fracciones.id DESC "
      "LIMIT " +
      Decimal(kUltimas));
  html +=
      "<table>\n<thead><tr><th>Hora</th><th>Código</th><th>Descripción</th><th>Cantidad</th></tr></thead>\n";
  for (; !fila->Eof(); fila->MoveNext()) {
    const std::string descripcion = TextOrNothing(fila->Campo(3));
    html += "<tr><td>" + DiaDe(fila->Campo(0), "hh:mm:ss") + "</td><td>" +
            Html(TextOrNothing(fila->Campo(1))) + "</td><td>" +
            (descripcion.empty() ? "<span class=\"mal\">desconocido</span>" : Html(descripcion)) +
            "</td><td>" + NumberText(NumeroDe(fila->Campo(2))) + " " + Html(TextOrNothing(fila->Campo(4))) +
            "</td></tr>\n";
  }
  return html + "</table>\n" + kFinDePagina;
}

void Muestra(const ObjectPtr& ventana, const std::string& pagina) {
  if (const ObjectPtr visor = ToObject(ventana->Call("wb"))) visor->Put("Html", pagina);
}

const ObjectPtr& Ventana(const PeticionProceso& peticion) {
  if (!peticion.objeto) throw HostError(ErrorNumber::ObjectNotSet);
  return peticion.objeto;
}

}  // namespace

Captura LeeCaptura(const std::string& texto) {
  const auto marca = texto.find('*');
  if (marca != std::string::npos) {
    try {
      const double cantidad = ParseNumber(texto.substr(0, marca));
      const std::string codigo(Trim(std::string_view(texto).substr(marca + 1)));
      if (cantidad > 0 && !codigo.empty()) return {cantidad, codigo};
    } catch (const HostError&) {
      // A code with an asterisk in it.
    }
  }
  return {1, texto};
}

void ProcesoFraccionesInicio(Anfitrion& anfitrion, PeticionProceso& peticion) {
  Muestra(Ventana(peticion), Pagina(*anfitrion.Base(), "Lea un código, o escriba cantidad*código", true));
}

void ProcesoFracciones(Anfitrion& anfitrion, PeticionProceso& peticion) {
  const ObjectPtr& ventana = Ventana(peticion);
  const std::string texto = ToText(ventana->Call("Codigo"));
  // A bare Enter captures nothing.
  if (texto.empty()) return;
  BaseDatos& base = *anfitrion.Base();
  const Captura captura = LeeCaptura(texto);
  Articulo articulo;
  const bool conocido = Busca(base, captura.codigo, articulo);
  Escribe(base, captura, articulo, anfitrion.TraeOpciones().usuario);

  // Written; only now is the field free for the next code.
  Value indice = std::int32_t{0};
  if (const ObjectPtr campo = ToObject(ventana->Call("txtFields", std::span(&indice, 1))))
    campo->Put("Text", "");
  const std::string aviso =
      conocido ? NumberText(captura.cantidad) + " " + articulo.unidad + " de " + articulo.descripcion
               : "Código desconocido: " + captura.codigo;
  ventana->Put("Estado", conocido ? std::string("ESPERANDO USUARIO") : "CODIGO DESCONOCIDO");
  Muestra(ventana, Pagina(base, aviso, conocido));
}

}  // namespace zuvi::host
