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

bool EsFiltroDeTecla(const std::string& etiqueta) {
  return etiqueta == "N" || etiqueta == "D" || etiqueta == "SD" || etiqueta == "SN";
}

/// Whether a host could take it for a number: digits, no letters but an exponent's, and what parts the digits
/// more than once parts them in threes. All else is the host's to say.
bool PuedeSerNumero(std::string_view texto) {
  const auto letra = [](char c) { return c != 'e' && c != 'E' && (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; };
  if (texto.find_first_of("0123456789") == texto.npos || std::ranges::any_of(texto, letra)) return false;
  for (const char separador : {'.', ','}) {
    auto este = texto.find(separador);
    for (auto otro = este; este != texto.npos && (otro = texto.find(separador, este + 1)) != texto.npos;
         este = otro)
      if (otro - este != 4) return false;
  }
  return true;
}

}  // namespace

void frmOp::ExigeNumero(std::int16_t index) const {
  const std::string& texto = (*txtFields)(index).Text();
  if (!Recorta(texto).empty() && !PuedeSerNumero(texto))
    throw HostError("\"" + texto + "\" no es un número", ErrorNumber::TypeMismatch);
}

void frmOp::ConectaCampos() {
  txtFields->ForEach([this](std::int16_t i, TextBox& caja) {
    caja.OnGotFocus = [this, i] { txtFields_GotFocus(i); };
    caja.OnLostFocus = [this, i] { txtFields_LostFocus(i); };
    caja.OnDblClick = [this, i] { txtFields_DblClick(i); };
    caja.OnChange = [this, i] { txtFields_Change(i); };
    caja.OnKeyPress = [this, i](KeyPressEvent& event) { txtFields_KeyPress(i, event); };
    caja.OnKeyDown = [this, i](KeyEvent& event) { txtFields_KeyDown(i, event); };
    caja.OnKeyUp = [this, i](KeyEvent& event) { txtFields_KeyUp(i, event); };
  });
  RichTextBox2->OnKeyDown = [this](KeyEvent& event) { RichTextBox1_KeyDown(event); };
}

void frmOp::Selecciona(TextBox& caja) {
  caja.SetSelStart(0);
  caja.SetSelLength(caja.Length());
}

void frmOp::txtFields_GotFocus(std::int16_t index) {
  Trata("txtFields_GotFocus", [&] { Selecciona((*txtFields)(index)); });
}

void frmOp::txtFields_KeyPress(std::int16_t index, KeyPressEvent& event) {
  Trata("txtFields_KeyPress", [&] {
    TextBox& caja = (*txtFields)(index);
    if (caja.Tag() == "U")
      event.character = Datos().FiltroMayusculas(caja.shared_from_this(), event.character);
    else if (EsFiltroDeTecla(caja.Tag()))
      event.character = Datos().FiltroTecla(caja.shared_from_this(), event.character);
  });
}

void frmOp::Formatea(std::int16_t index) {
  Escribe(index, Datos().FormateaCampo((*txtFields)(index).shared_from_this(), Entorno()));
}

void frmOp::txtFields_Change(std::int16_t index) {
  if (escribiendo_) return;
  Trata("txtFields_Change", [&] {
    TextBox& caja = (*txtFields)(index);
    if (!Visible()) Formatea(index);
    if (caja.Length() != caja.MaxLength() || caja.Text().empty() || !Visible()) return;
    KeyEvent enter{key::kEnter, shift::kNone};
    txtFields_KeyDown(index, enter);
  });
}

void frmOp::txtFields_LostFocus(std::int16_t index) {
  Trata("txtFields_LostFocus", [&] {
    if (index == campo::kArticulo) PonDescripcion();
    Formatea(index);
  });
}

void frmOp::txtFields_KeyDown(std::int16_t index, KeyEvent& event) {
  Trata("txtFields_KeyDown", [&] {
    const auto enfoca = [this](std::int16_t campo) { EnfocaSiHabilitado((*txtFields)(campo)); };
    TextBox& articulo = (*txtFields)(campo::kArticulo);
    if (event.key == key::kF2) articulo.SetFocus();
    if (event.key == key::kF5) {
      Command5_Click();
      return;
    }
    if (event.key == key::kDown && index == campo::kArticulo) {
      event.Use();
      MuestraKits();
      articulo.SetFocus();
      return;
    }
    if (event.key == key::kF8) {
      switch (index) {
        case campo::kArticulo:
        case campo::kCantidad:
        case campo::kPrecio:
        case 7:
        case campo::kImpuesto:
        case 22:
        case 23:
          enfoca(campo::kClaveSecundaria);
          break;
        case campo::kClaveSecundaria:
          enfoca(campo::kPresentacion);
          TraeSegundaClave();
          break;
        case campo::kPresentacion:
          enfoca(campo::kUnidadDeClave);
          break;
        case campo::kUnidadDeClave:
          enfoca(campo::kPrecio);
          break;
        default:
          break;
      }
      return;
    }
    if (event.key == key::kF2) {
      txtFields_DblClick(index);
      return;
    }
    if (event.key == key::kEnter || (event.key == key::kTab && !(event.shift & shift::kShift)))
      Avanza(index, event);
  });
}

void frmOp::Avanza(std::int16_t index, KeyEvent& event) {
  const auto enfoca = [this](std::int16_t campo) { EnfocaSiHabilitado((*txtFields)(campo)); };
  // Where the focus stays because the next field is disabled, the key must not move it by tab order; and a
  // single line has no other use for Enter.
  const std::int16_t pulsada = std::exchange(event.key, std::int16_t{0});
  switch (index) {
    case campo::kConcepto:
      return enfoca(campo::kAlmacen);
    case campo::kArticulo: {
      TextBox& cantidad = (*txtFields)(campo::kCantidad);
      if (cantidad.Enabled()) {
        cantidad.SetFocus();
        Selecciona(cantidad);
      }
      if (Check4->Value() == 1) LlenaPartida();
      return;
    }
    case campo::kCantidad:
      return LlenaPartida();
    case 13:
      return enfoca(17);
    case campo::kAlmacen:
    case campo::kTipoCambio:
      return enfoca(campo::kArticulo);
    case campo::kMoneda:
      return enfoca((*txtFields)(campo::kTipoCambio).Enabled() ? campo::kTipoCambio : campo::kArticulo);
    case 18:
      return enfoca(19);
    case campo::kPresentacion:
      return enfoca(campo::kUnidadDeClave);
    case campo::kUnidadDeClave:
      return enfoca(campo::kPrecio);
    default:
      if (pulsada == key::kTab) event.key = pulsada;
  }
}

void frmOp::txtFields_KeyUp(std::int16_t index, KeyEvent& event) {
  Trata("txtFields_KeyUp", [&] {
    if (event.key != key::kDown) return;
    TextBox& caja = (*txtFields)(index);
    if (const ObjectPtr marco = caja.Container()) marco->Call("ShowData");
    caja.SetSelStart(0);
  });
}

void frmOp::txtFields_DblClick(std::int16_t index) {
  Trata("txtFields_DblClick", [&] {
    TextBox& caja = (*txtFields)(index);
    const auto busqueda = ElModulo().Fabrica().Nuevo<BuscaCatalogo>();
    busqueda->PonAmbiente(Entorno());
    busqueda->PonDestino(caja.shared_from_this());
    if (index <= kUltimoConCatalogo) {
      if (const char* titulo = CatalogoDe(index)) busqueda->Muestra(titulo);
      return;
    }
    if (caja.Tag() != "N") return;
    const auto teclado = ElModulo().Fabrica().Nuevo<CapturaNumerica>();
    teclado->PonAmbiente(Entorno());
    teclado->PonDestino(caja.shared_from_this());
    teclado->Muestra();
  });
}

void frmOp::MuestraKits() {
  const auto busqueda = ElModulo().Fabrica().Nuevo<BuscaCatalogo>();
  busqueda->PonAmbiente(Entorno());
  busqueda->PonDestino((*txtFields)(campo::kArticulo).shared_from_this());
  busqueda->PonFiltro("kit <> 0");
  busqueda->Muestra(CatalogoDe(campo::kArticulo));
}

void frmOp::TraeSegundaClave() {
  Trata("TraeSegundaClave", [&] {
    const std::string clave = (*txtFields)(campo::kClaveSecundaria).Text();
    const auto limpia = [this] {
      for (const std::int16_t campo : kDetallesDeClave) Escribe(campo, "");
    };
    if (clave.empty()) return limpia();
    const auto fila = Consulta(EntreApostrofos("SELECT * FROM clavesadd WHERE clave = '", clave));
    if (fila->Eof()) return limpia();
    const auto articulo = Consulta(EntreApostrofos("SELECT articulo,descrip FROM prods WHERE articulo = '",
                                                   ATexto(fila->Campo("Articulo"))));
    Escribe(campo::kArticulo, Datos().ValorTexto(articulo->Campo("Articulo")));
    Escribe(campo::kDescripcion, Datos().ValorTexto(articulo->Campo("descrip")));
    PonDescripcion();
  });
}

void frmOp::RichTextBox1_KeyDown(KeyEvent& event) {
  Trata("RichTextBox1_KeyDown", [&] {
    if (event.key == key::kF8) EnfocaSiHabilitado((*txtFields)(campo::kArticulo));
  });
}

}  // namespace zuvi
