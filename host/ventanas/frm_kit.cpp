#include "host/ventanas/frm_kit.h"

#include "base/text.h"
#include "host/shop/celdas.h"
#include "host/shop/filtros.h"
#include "host/shop/numero_escrito.h"
#include "services/ventanas.h"

namespace zuvi::host {
namespace {

constexpr const char* kSinArticulo = "No hay un artículo con esa clave.";
constexpr const char* kSinAlmacen = "No hay un almacén con ese número.";

/// The whole number of a text, when it is one.
std::optional<std::int32_t> Entero(const std::string& texto) {
  try {
    const double numero = NumeroEscrito(texto);
    if (const std::int32_t entero = RoundToInt32(numero); entero == numero) return entero;
  } catch (const HostError&) {
    // No number, or too large a one.
  }
  return std::nullopt;
}

}  // namespace

frmKit::frmKit(const Escena& escena, Late& componente)
    : VentanaHost(escena, "frmKit"), componente_(componente) {
  SetCaption("Ensamblar y desensamblar kit");
  SetSizable(false);
  SetKeyPreview(true);
  DesignClientSize(Dip(520), Dip(236));

  const auto fila = [this](const char* nombre, const char* rotulo, const char* etiqueta, std::int32_t y,
                           std::int32_t ancho) {
    Rotulo(rotulo, EnDips(16, y + 4, 80, 20));
    auto caja = CajaTexto(nombre, EnDips(100, y, ancho, 24));
    caja->SetTag(etiqueta);
    FiltraPorEtiqueta(*caja);
    return caja;
  };
  const auto dato = [this](const char* nombre, const Rect& lugar) {
    auto label = Add<Label>(nombre);
    label->Design(lugar);
    return label;
  };
  txtArticulo = fila("txtArticulo", "A&rtículo:", "U", 16, 180);
  lblArticulo = dato("lblArticulo", EnDips(288, 20, 216, 20));
  txtAlmacen = fila("txtAlmacen", "A&lmacén:", "N", 52, 80);
  lblAlmacen = dato("lblAlmacen", EnDips(188, 56, 316, 20));
  txtCantidad = fila("txtCantidad", "C&antidad:", "N", 88, 80);
  txtCantidad->SetRightAligned(true);
  Rotulo("F2: busca en el catálogo, o abre el teclado numérico", EnDips(188, 92, 316, 20));
  lblResultado = dato("lblResultado", EnDips(16, 128, 488, 44));
  lblResultado->SetLongest(
      "No se hizo nada: el proceso está vetado o falló. Existencia en el almacén: 99999.99 PZA");

  cmdEnsamblar = Boton("cmdEnsamblar", "&Ensamblar (F7)", EnDips(16, 192, 152, 28), anchor::kTopLeft,
                       [this] { Ensambla(); });
  cmdDesensamblar = Boton("cmdDesensamblar", "&Desensamblar (F8)", EnDips(176, 192, 152, 28),
                          anchor::kTopLeft, [this] { Desensambla(); });
  cmdCerrar =
      Boton("cmdCerrar", "&Cerrar", EnDips(404, 192, 100, 28), anchor::kTopLeft, [this] { Unload(); });
  SetCancelButton(cmdCerrar.get());

  txtArticulo->OnChange = [this] { Trata([this] { DescribeArticulo(); }); };
  txtAlmacen->OnChange = [this] {
    Trata([this] {
      DescribeAlmacen();
      DescribeArticulo();
    });
  };
}

void frmKit::Form_Load() {
  const auto parametros = Base().Consulta("SELECT Almacen FROM parametros WHERE estacion = " +
                                          Decimal(ElAnfitrion().TraeOpciones().estacion));
  if (!parametros->Eof()) txtAlmacen->SetText(TextOrNothing(parametros->Campo(0)));
  txtCantidad->SetText("1");
}

void frmKit::Form_KeyDown(KeyEvent& event) {
  if (event.shift != shift::kNone) return;
  const std::int16_t pulsada = event.key;
  if (pulsada != key::kF2 && pulsada != key::kF7 && pulsada != key::kF8 && pulsada != key::kEnter) return;
  // Enter goes from field to field; on a button it presses that.
  if (pulsada == key::kEnter && !dynamic_cast<TextBox*>(ActiveControl())) return;
  event.Use();
  Trata([&] {
    if (pulsada == key::kF2) Ayuda();
    if (pulsada == key::kF7) Ensambla();
    if (pulsada == key::kF8) Desensambla();
    if (pulsada == key::kEnter) FocusNext();
  });
}

void frmKit::Ayuda() {
  const auto caja = ActiveControl() ? ActiveControl()->shared_from_this() : nullptr;
  if (caja == txtCantidad) {
    const auto teclado = LaEscena().fabrica.Nuevo<CapturaNumerica>();
    teclado->PonDestino(caja);
    teclado->Muestra();
    return;
  }
  if (caja != txtArticulo && caja != txtAlmacen) return;
  const auto busca = LaEscena().fabrica.Nuevo<BuscaCatalogo>();
  busca->PonDestino(caja);
  if (caja == txtArticulo) busca->PonFiltro("articulo IN (SELECT articulo FROM comppart)");
  busca->Muestra(caja == txtArticulo ? "Articulos" : "Almacenes");
}

void frmKit::DescribeArticulo() {
  BaseDatos& base = Base();
  const std::string articulo = Literal(base.GetEngine(), Trim(txtArticulo->Text()));
  const auto fila = base.Consulta("SELECT descrip, unidad FROM prods WHERE articulo = " + articulo);
  lblArticulo->SetCaption(fila->Eof() ? "" : TextOrNothing(fila->Campo("descrip")));
  const auto almacen = Entero(txtAlmacen->Text());
  if (fila->Eof() || !almacen) {
    lblResultado->SetCaption("");
    return;
  }
  const auto existencia = base.Consulta("SELECT cantidad FROM existencias WHERE articulo = " + articulo +
                                        " AND almacen = " + Decimal(*almacen));
  lblResultado->SetCaption(
      "Existencia en el almacén: " + NumberText(existencia->Eof() ? 0 : NumeroDe(existencia->Campo(0))) +
      " " + TextOrNothing(fila->Campo("unidad")));
}

void frmKit::DescribeAlmacen() {
  const auto almacen = Entero(txtAlmacen->Text());
  const auto fila = Base().Consulta("SELECT nombre FROM almacen WHERE almacen = " +
                                    (almacen ? Decimal(*almacen) : std::string("NULL")));
  lblAlmacen->SetCaption(fila->Eof() ? "" : TextOrNothing(fila->Campo(0)));
}

void frmKit::Rechaza(TextBox& caja, const std::string& texto) {
  ElAnfitrion().Mensaje(texto, EstiloMensaje::Error);
  caja.SetFocus();
}

std::optional<frmKit::Entrada> frmKit::Lee() {
  BaseDatos& base = Base();
  Entrada entrada{.articulo = std::string(Trim(txtArticulo->Text()))};
  const std::string clave = Literal(base.GetEngine(), entrada.articulo);
  if (base.Consulta("SELECT articulo FROM prods WHERE articulo = " + clave)->Eof())
    return Rechaza(*txtArticulo, kSinArticulo), std::nullopt;
  // What the workshop makes on the way has components too, without being sold as a kit.
  if (base.Consulta("SELECT articulo FROM comppart WHERE articulo = " + clave)->Eof())
    return Rechaza(*txtArticulo, "El artículo " + entrada.articulo + " no tiene componentes."), std::nullopt;
  const auto almacen = Entero(txtAlmacen->Text());
  if (!almacen || base.Consulta("SELECT almacen FROM almacen WHERE almacen = " + Decimal(*almacen))->Eof())
    return Rechaza(*txtAlmacen, kSinAlmacen), std::nullopt;
  entrada.almacen = *almacen;
  try {
    entrada.cantidad = NumeroEscrito(txtCantidad->Text());
  } catch (const HostError& error) {
    // A blank is told below, as a quantity that is none.
    if (!Trim(txtCantidad->Text()).empty())
      return Rechaza(*txtCantidad, std::string(error.what()) + "."), std::nullopt;
  }
  if (entrada.cantidad <= 0)
    return Rechaza(*txtCantidad, "La cantidad debe ser mayor que cero."), std::nullopt;
  return entrada;
}

void frmKit::Ensambla() {
  const auto entrada = Lee();
  if (!entrada) return;
  const auto piezas = Entero(txtCantidad->Text());
  if (!piezas) return Rechaza(*txtCantidad, "Sólo se ensamblan kits enteros.");
  Corre(*entrada, "Ensamblado",
        [&] { componente_.Call("Ensamble", entrada->articulo, entrada->almacen, *piezas); });
}

void frmKit::Desensambla() {
  const auto entrada = Lee();
  if (!entrada) return;
  Corre(*entrada, "Desensamblado",
        [&] { componente_.Call("Desensamble", entrada->articulo, entrada->cantidad, entrada->almacen); });
}

void frmKit::Corre(const Entrada& entrada, const char* hecho, const std::function<void()>& llamada) {
  const int antes = ElAnfitrion().LoSucedido().movimientos;
  llamada();
  if (Closed()) return;
  DescribeArticulo();
  const std::string existencia = lblResultado->CaptionText();
  const int movimientos = ElAnfitrion().LoSucedido().movimientos - antes;
  lblResultado->SetCaption(movimientos == 0
                               ? "No se hizo nada: el proceso está vetado o falló. " + existencia
                               : std::string(hecho) + ": " + NumberText(entrada.cantidad) + " de " +
                                     entrada.articulo + ", " + std::to_string(movimientos) +
                                     " movimientos. " + existencia);
  txtArticulo->SetFocus();
}

}  // namespace zuvi::host
