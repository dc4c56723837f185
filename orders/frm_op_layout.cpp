// The controls of the order editor, made in the order in which a user reads and tabs through them: header,
// entry of a line, lines, what happens on finishing. Places are in units of 1/96 inch on a raster of 8.
#include "orders/campos.h"
#include "orders/frm_op.h"

namespace zuvi {
namespace {

constexpr std::int32_t kAncho = 960, kAlto = 640, kMargen = 16, kDerecha = kAncho - kMargen;
constexpr std::int32_t kAltoRotulo = 16, kBajoRotulo = 18, kAltoCampo = 24, kAltoBoton = 28,
                       kAltoCasilla = 20;

constexpr unsigned kAbajoIzquierda = anchor::kLeft | anchor::kBottom;
constexpr unsigned kAbajoDerecha = anchor::kRight | anchor::kBottom;
constexpr unsigned kArribaDerecha = anchor::kTop | anchor::kRight;

/// Longest codes and remarks that the tables of the example shop hold.
constexpr std::int32_t kLargoClave = 60, kLargoObservacion = 255;

constexpr Rect En(std::int32_t x, std::int32_t y, std::int32_t ancho, std::int32_t alto) {
  return {Dip(x), Dip(y), Dip(ancho), Dip(alto)};
}

/// A text box of `txtFields`: its label stands above it.
struct DefCampo {
  std::int16_t indice;
  const char* rotulo;
  std::int32_t x, y, ancho;
  const char* filtro = "";
  std::int32_t largo = 0;
  bool solo_lectura = false;
  bool a_la_derecha = false;
  unsigned ancla = anchor::kTopLeft;
};

// Labels of `lblFields` that belong to no text box.
enum : std::int16_t { kRotuloFecha = 30, kRotuloEntrega, kRotuloPartidas, kRotuloCelda };

// Columns shared by the header and the entry line, and the tops of the rows of the window.
constexpr std::int32_t kColumna1 = kMargen, kColumna2 = 232, kColumna3 = 408;
constexpr std::int32_t kAncho1 = 200, kAncho2 = 160;
constexpr std::int32_t kFila1 = kMargen, kFila2 = 66, kFila3 = 124, kFila4 = 174, kPartidas = 232;
constexpr std::int32_t kBotones = kAlto - kMargen - kAltoBoton, kCasillas = kBotones - 12 - kAltoCasilla;

}  // namespace

/// Makes the controls of one window, each edit right after the label that names it.
class frmOp::Plano {
 public:
  explicit Plano(frmOp& ventana) : ventana_(ventana) {}

  Label& Rotulo(std::int16_t indice, const char* texto, const Rect& lugar,
                unsigned ancla = anchor::kTopLeft) {
    return Rotulo(*ventana_.lblFields, "lblFields", indice, texto, lugar, ancla);
  }
  Label& Rotulo(ControlArray<Label>& arreglo, const char* nombre, std::int16_t indice, const char* texto,
                const Rect& lugar, unsigned ancla) {
    Label& rotulo = ventana_.AddTo(arreglo, nombre, indice);
    rotulo.SetCaption(texto);
    rotulo.Design(lugar, ancla);
    return rotulo;
  }

  /// A field sits on a multi-column lookup of its own, in which a host may offer rows.
  TextBox& Pon(const DefCampo& campo) {
    const Rect lugar = En(campo.x, campo.y + kBajoRotulo, campo.ancho, kAltoCampo);
    MultiCombo& combo = ventana_.AddTo(*ventana_.MultiCombo1, "MultiCombo1", ventana_.MultiCombo1->Count());
    combo.Design(lugar, campo.ancla);
    if (*campo.rotulo)
      Rotulo(campo.indice, campo.rotulo, En(campo.x, campo.y, campo.ancho, kAltoRotulo), campo.ancla);
    TextBox& caja = ventana_.AddTo(*ventana_.txtFields, "txtFields", campo.indice);
    caja.Design(lugar, campo.ancla);
    caja.SetTag(campo.filtro);
    caja.SetMaxLength(campo.largo);
    caja.SetRightAligned(campo.a_la_derecha);
    caja.SetEnabled(!campo.solo_lectura);
    combo.SetBox(std::static_pointer_cast<TextBox>(caja.shared_from_this()));
    return caja;
  }

  /// A field that this window carries without showing it; "focus if enabled" passes it by.
  void PonOculto(std::int16_t indice, const char* filtro = "") {
    TextBox& caja = Pon({indice, "", 0, 0, 0, filtro});
    caja.SetEnabled(false);
    caja.SetVisible(false);
    (*ventana_.MultiCombo1)(ventana_.MultiCombo1->UBound()).SetVisible(false);
  }

  template <class T>
  std::shared_ptr<T> Pon(const char* nombre, const Rect& lugar, unsigned ancla = anchor::kTopLeft) {
    auto control = ventana_.Add<T>(nombre);
    control->Design(lugar, ancla);
    return control;
  }
  template <class T>
  std::shared_ptr<T> Pon(const char* nombre, const char* texto, const Rect& lugar,
                         unsigned ancla = anchor::kTopLeft) {
    auto control = Pon<T>(nombre, lugar, ancla);
    control->SetCaption(texto);
    return control;
  }

 private:
  frmOp& ventana_;
};

void frmOp::CreaControles() {
  SetCaption("Orden de fabricación");
  SetKeyPreview(true);
  DesignClientSize(Dip(kAncho), Dip(kAlto));
  txtFields = AddArray<TextBox>("txtFields");
  MultiCombo1 = AddArray<MultiCombo>("MultiCombo1");
  Label10 = AddArray<Label>("Label10");
  lblFields = AddArray<Label>("lblFields");
  Plano plano(*this);
  CreaEncabezado(plano);
  CreaCaptura(plano);
  CreaPartidas(plano);
  CreaPie(plano);

  // What is never seen, or only now and then.
  for (const std::int16_t indice : campo::kOcultos) plano.PonOculto(indice);
  plano.PonOculto(campo::kImporte, "SD");
  Timer1 = Add<Timer>("Timer1");
  Timer1->SetEnabled(false);
  AutoResizer1 = Add<AutoResizer>("AutoResizer1");
}

void frmOp::CreaEncabezado(Plano& plano) {
  plano.Pon({campo::kOrdenCompra, "No. de orden de compra", kColumna1, kFila1, kAncho1, "N"});
  const auto fecha = [&](const char* nombre, std::int16_t rotulo, const char* texto, std::int32_t x,
                         std::int32_t y, std::int32_t ancho) {
    plano.Rotulo(rotulo, texto, En(x, y, ancho, kAltoRotulo));
    return plano.Pon<DatePicker>(nombre, En(x, y + kBajoRotulo, ancho, kAltoCampo));
  };
  DTPicker1 = fecha("DTPicker1", kRotuloFecha, "Fecha del documento", kColumna2, kFila1, kAncho2);
  DTPicker2 = fecha("DTPicker2", kRotuloEntrega, "Fecha de entrega", kColumna1, kFila2, kAncho1);
  plano.Pon({campo::kAlmacen, "Entregar en almacen", kColumna2, kFila2, kAncho2, "N"});
  constexpr std::int32_t kAnchoObservaciones = kDerecha - kColumna3;
  plano.Rotulo(*Label10, "Label10", 0, "Observaciones a la orden de producción",
               En(kColumna3, kFila1, kAnchoObservaciones, kAltoRotulo), anchor::kAcross);
  RichTextBox2 = plano.Pon<RichTextBox>(
      "RichTextBox2", En(kColumna3, kFila1 + kBajoRotulo, kAnchoObservaciones, kFila2 - kFila1 + kAltoCampo),
      anchor::kAcross);
}

void frmOp::CreaCaptura(Plano& plano) {
  plano.Pon({campo::kArticulo, "Artículo", kColumna1, kFila3, kAncho1, "U", kLargoClave})
      .SetToolTipText("F2: catálogo de artículos; flecha abajo: sólo kits; F8: clave secundaria");
  plano.Pon({campo::kClaveSecundaria, "Clave secundaria", kColumna2, kFila3, kAncho2, "U", kLargoClave})
      .SetToolTipText("F8: trae el artículo de esta clave");
  for (const DefCampo& campo : {
           DefCampo{campo::kDato1, "Dato 1", kColumna3, kFila3, 128, "", 0, true},
           DefCampo{campo::kDato2, "Dato 2", kColumna3 + 144, kFila3, 128, "", 0, true},
           DefCampo{campo::kPresentacion, "Presentación", kColumna3 + 288, kFila3, 120},
           DefCampo{campo::kUnidadDeClave, "Unidad de la clave", kColumna3 + 424, kFila3, 112},
           DefCampo{campo::kCantidad, "Cantidad", kColumna1, kFila4, 104, "N", 0, false, true},
           DefCampo{campo::kUnidad, "Unidad", kColumna1 + 120, kFila4, 80, "", 0, true},
           DefCampo{campo::kPrecio, "Precio", kColumna2, kFila4, kAncho2, "SD", 0, false, true},
           DefCampo{campo::kDescripcion, "Descripción", kColumna3, kFila4, 216, "", kLargoObservacion, false,
                    false, anchor::kAcross},
       })
    plano.Pon(campo);
  Command6 =
      plano.Pon<Button>("Command6", "Ag&regar (F9)",
                        En(kColumna3 + 232, kFila4 + kBajoRotulo - 2, 112, kAltoBoton), kArribaDerecha);
  Check4 =
      plano.Pon<CheckBox>("Check4", "Lector de Código de Barras",
                          En(kColumna3 + 352, kFila4 + kBajoRotulo + 2, 184, kAltoCasilla), kArribaDerecha);
  Check4->SetToolTipText("F3");
}

void frmOp::CreaPartidas(Plano& plano) {
  plano.Rotulo(kRotuloPartidas, "Partidas de la orden", En(kMargen, kPartidas, kAncho1, kAltoRotulo));
  constexpr std::int32_t kRejilla = kPartidas + kBajoRotulo;
  fg2 = plano.Pon<FlexGrid>("fg2", En(kMargen, kRejilla, kDerecha - kMargen, kCasillas - 12 - kRejilla),
                            anchor::kAll);
  // The editor of a cell comes next, so that Tab leaves it for what is beside the grid.
  plano.Rotulo(kRotuloCelda, "Celda", {}).SetVisible(false);
  txtEdit = Add<TextBox>("txtEdit");
  txtEdit->SetTag("N");
  // A text that is put into a box without width stays scrolled out of sight when it gets one.
  txtEdit->Design(En(0, 0, 120, kAltoCampo));
  txtEdit->SetVisible(false);
  editor_ = std::make_unique<EditorCelda>(ElModulo(), *fg2, *txtEdit);
}

void frmOp::CreaPie(Plano& plano) {
  // The captions of two boxes are labels beside them, which can be clicked on their own.
  Check1 = plano.Pon<CheckBox>("Check1", "Producto terminado en automático",
                               En(kMargen, kCasillas, 232, kAltoCasilla), kAbajoIzquierda);
  const auto casilla = [&](const char* nombre, std::int16_t rotulo, const char* texto, std::int32_t x,
                           std::int32_t ancho) {
    plano.Rotulo(*Label10, "Label10", rotulo, texto, En(x + 20, kCasillas + 2, ancho - 20, kAltoRotulo),
                 kAbajoIzquierda);
    return plano.Pon<CheckBox>(nombre, En(x, kCasillas, kAltoCasilla, kAltoCasilla), kAbajoIzquierda);
  };
  Check3 = casilla("Check3", campo::kRotuloPendiente, "Dejar como movimiento pendiente", kMargen + 248, 232);
  Check2 = casilla("Check2", campo::kRotuloImprime, "Imprimir movimiento.", kMargen + 496, 168);
  const auto boton = [&](const char* nombre, const char* texto, std::int32_t hasta, std::int32_t ancho) {
    return plano.Pon<Button>(nombre, texto, En(hasta - ancho, kBotones, ancho, kAltoBoton), kAbajoDerecha);
  };
  Command1 = boton("Command1", "&Generar códigos  (F6)", kDerecha - 232, 168);
  Command5 = boton("Command5", "&Finalizar (F5)", kDerecha - 104, 120);
  Command2 = boton("Command2", "&Cancelar", kDerecha, 96);
}

}  // namespace zuvi
