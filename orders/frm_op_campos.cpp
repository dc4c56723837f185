// The text fields: what Enter, the function keys and the lookups do in them.
#include <algorithm>
#include <array>
#include <utility>

#include "base/text.h"
#include "orders/campos.h"
#include "orders/frm_op.h"
#include "services/ventanas.h"
#include "windows/sentencia.h"

namespace zuvi {
namespace {

constexpr std::array kDetallesDeClave{campo::kDato1, campo::kDato2, campo::kPresentacion,
                                      campo::kUnidadDeClave};

/// Fields up to this index have a catalogue or nothing; those after it a numeric pad or nothing.
constexpr std::int16_t kUltimoConCatalogo = 14;

const char* CatalogoDe(std::int16_t index) {
  switch (index) {
    case campo::kConcepto:
      return "Conceptos de Op al inventario";
    case campo::kArticulo:
      return "Articulos";
    case campo::kImpuesto:
      return "Impuestos por porcentaje";
    case campo::kAlmacen:
      return "Almacenes";
    default:
      return nullptr;
  }
}

/// Whether a host could take it for a number: digits, no letters but an exponent's, and what parts the digits
/// more than once parts them in threes. All else is the host's to say.
bool PuedeSerNumero(std::string_view texto) {
  const auto letra = [](char c) { return c != 'e' && c != 'E' && (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; };
  if (texto.find_first_of("0123456789") == texto.npos || std::ranges::any_of(texto, letra)) return false;
  for (const char separador : {'.', ','}) {
    for (auto este = texto.find(separador); este != texto.npos;) {
      const auto otro = texto.find(separador, este + 1);
      if (otro != texto.npos && otro - este != 4) return false;
      este = otro;
    }
  }
  return true;
}

}  // namespace

void frmOp::ExigeNumero(std::int16_t index) const {
  const std::string& texto = Texto(index);
  if (!Trim(texto).empty() && !PuedeSerNumero(texto))
    throw HostError("\"" + texto + "\" no es un número", ErrorNumber::TypeMismatch);
}

void frmOp::Selecciona(TextBox& caja) {
  caja.SetSelStart(0);
  caja.SetSelLength(caja.Length());
}

void frmOp::Escribe(std::int16_t index, const std::string& texto) {
  // What the window itself writes is no entry of the user's: a field filled by it does not move on, which
  // would add the line before the rest of it is there, or add it twice.
  const struct Restaura {
    bool& donde;
    bool antes;
    ~Restaura() { donde = antes; }
  } restaura{escribiendo_, std::exchange(escribiendo_, true)};
  Caja(index).SetText(texto);
}

void frmOp::Formatea(std::int16_t index) {
  Escribe(index, Datos().FormateaCampo(Caja(index).shared_from_this(), Entorno()));
}

void frmOp::CambiaLector() {
  if (Check4->Value() == 1) {
    Check4->SetValue(0);
    return;
  }
  Check4->SetValue(1);
  Enfoca(campo::kArticulo);
}

bool frmOp::AvanzaCampo(std::int16_t index) {
  bool tiene_siguiente = true;
  Trata("txtFields_KeyDown", [&] {
    switch (index) {
      case campo::kConcepto:
        return Enfoca(campo::kAlmacen);
      case campo::kArticulo: {
        TextBox& cantidad = Caja(campo::kCantidad);
        if (cantidad.Enabled()) {
          cantidad.SetFocus();
          Selecciona(cantidad);
        }
        if (Check4->Value() == 1) AgregaPartida();
        return;
      }
      case campo::kCantidad:
        return AgregaPartida();
      case campo::kLibre13:
        return Enfoca(campo::kLibre17);
      case campo::kAlmacen:
      case campo::kTipoCambio:
        return Enfoca(campo::kArticulo);
      case campo::kMoneda:
        return Enfoca(Caja(campo::kTipoCambio).Enabled() ? campo::kTipoCambio : campo::kArticulo);
      case campo::kLibre18:
        return Enfoca(campo::kLibre19);
      case campo::kPresentacion:
        return Enfoca(campo::kUnidadDeClave);
      case campo::kUnidadDeClave:
        return Enfoca(campo::kPrecio);
      default:
        tiene_siguiente = false;
    }
  });
  return tiene_siguiente;
}

void frmOp::AvanzaClave(std::int16_t index) {
  switch (index) {
    case campo::kArticulo:
    case campo::kCantidad:
    case campo::kPrecio:
    case campo::kLibre7:
    case campo::kImpuesto:
    case campo::kLibre22:
    case campo::kLibre23:
      return Enfoca(campo::kClaveSecundaria);
    case campo::kClaveSecundaria:
      Enfoca(campo::kPresentacion);
      return TraeSegundaClave();
    case campo::kPresentacion:
      return Enfoca(campo::kUnidadDeClave);
    case campo::kUnidadDeClave:
      return Enfoca(campo::kPrecio);
    default:
      return;
  }
}

template <class Servicio>
std::shared_ptr<Servicio> frmOp::NuevaBusqueda(std::int16_t index) {
  auto busqueda = ElModulo().Fabrica().Nuevo<Servicio>();
  busqueda->PonAmbiente(Entorno());
  busqueda->PonDestino(Caja(index).shared_from_this());
  return busqueda;
}

void frmOp::BuscaValor(std::int16_t index) {
  Trata("txtFields_DblClick", [&] {
    const auto busqueda = NuevaBusqueda<BuscaCatalogo>(index);
    if (index <= kUltimoConCatalogo) {
      if (const char* titulo = CatalogoDe(index)) busqueda->Muestra(titulo);
      return;
    }
    if (Caja(index).Tag() == "N") NuevaBusqueda<CapturaNumerica>(index)->Muestra();
  });
}

void frmOp::BuscaKit() {
  const auto busqueda = NuevaBusqueda<BuscaCatalogo>(campo::kArticulo);
  busqueda->PonFiltro("kit <> 0");
  busqueda->Muestra(CatalogoDe(campo::kArticulo));
  Caja(campo::kArticulo).SetFocus();
}

void frmOp::TraeSegundaClave() {
  Trata("TraeSegundaClave", [&] {
    const std::string clave = Texto(campo::kClaveSecundaria);
    const auto limpia = [this] {
      for (const std::int16_t campo : kDetallesDeClave) Escribe(campo, "");
    };
    if (clave.empty()) return limpia();
    const auto fila = Consulta(EntreApostrofos("SELECT * FROM clavesadd WHERE clave = '", clave));
    if (fila->Eof()) return limpia();
    const auto articulo = Consulta(EntreApostrofos("SELECT articulo,descrip FROM prods WHERE articulo = '",
                                                   ToText(fila->Campo("Articulo"))));
    Escribe(campo::kArticulo, Datos().ValorTexto(articulo->Campo("Articulo")));
    Escribe(campo::kDescripcion, Datos().ValorTexto(articulo->Campo("descrip")));
    PonDescripcion();
  });
}

void frmOp::PonTC() {
  Trata("PonTC", [&] {
    TextBox& tipo_cambio = Caja(campo::kTipoCambio);
    const auto moneda =
        Consulta(EntreApostrofos("SELECT * FROM monedas WHERE moneda = '", Texto(campo::kMoneda)));
    if (moneda->Eof()) {
      Escribe(campo::kTipoCambio, "");
      return;
    }
    Escribe(campo::kTipoCambio, Datos().ValorTexto(moneda->Campo("Tc")));
    if (Datos().ValorNumerico(moneda->Campo("Base")) != 0) tipo_cambio.SetEnabled(false);
  });
}

std::string frmOp::TraeVends() {
  std::string nombre;
  Trata("TraeVends", [&] {
    if (Datos().EstaVacio(Texto(campo::kConcepto))) return;
    const auto vendedor =
        Consulta(EntreApostrofos("SELECT * FROM vends WHERE vend = '", Texto(campo::kDescripcion)));
    if (!vendedor->Eof()) nombre = Datos().ValorTexto(vendedor->Campo("Nombre"));
  });
  return nombre;
}

}  // namespace zuvi
