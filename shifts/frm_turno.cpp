#include "shifts/frm_turno.h"

#include <array>

#include "base/text.h"
#include "windows/sentencia.h"

namespace zuvi {
namespace {

/// The fields of a shift, by their index in `cmbFields`: the column as it is written and as it is read.
struct CampoTurno {
  const char* columna;
  FixedText leida;
  NumeroMensaje mensaje_vacio;
};
constexpr std::array<CampoTurno, 6> kCampos{{{"turno", "Turno", 833},
                                             {"entrada", "Entrada", 834},
                                             {"comida", "comida", 835},
                                             {"salida", "Salida", 837},
                                             {"descanso", "Descanso", 838},
                                             {"regcomida", "regcomida", 836}}};
/// The day names are values of the database: they stand as they are there.
constexpr std::array kDias{"Lunes", "Martes", "Miercoles", "Jueves", "Viernes", "Sabado", "Dimingo"};

}  // namespace

frmTurno::frmTurno(Modulo& modulo) : VentanaModulo(modulo, "frmTurno") {
  CreaControles();
  cmdButton->ForEach(
      [this](std::int16_t i, Button& boton) { boton.OnClick = [this, i] { cmdButton_Click(i); }; });
}

void frmTurno::CreaControles() {
  SetCaption("Turno");
  DesignClientSize(Dip(760), Dip(540));
  cmbFields = AddArray<ComboBox>("cmbFields");
  cmdButton = AddArray<Button>("cmdButton");
  lblTurno = AddArray<Label>("lblTurno");
  lv = AddArray<ListView>("lv");

  const auto campo = [this](std::int16_t rotulo, const char* titulo, std::int16_t indice, std::int32_t x,
                            std::int32_t y, std::int32_t ancho) {
    Etiqueta(rotulo, titulo, x, y + 4, 116);
    AddTo(*cmbFields, "cmbFields", indice).Design({Dip(x + 120), Dip(y), Dip(ancho), Dip(24)});
  };
  // In the order of a working day, which is the tab order.
  campo(0, "Turno:", kTurno, 16, 16, 220);
  campo(5, "Día de descanso", kDescanso, 392, 16, 140);
  campo(1, "Hora de entrada", kEntrada, 16, 50, 100);
  campo(2, "Hora de salida", kSalida, 392, 50, 100);
  campo(3, "Hora de comida", kComida, 16, 84, 100);
  campo(4, "Regreso de comida", kRegreso, 392, 84, 100);
  CreaEmpleados();

  ProgressBar1 = Add<ProgressBar>("ProgressBar1");
  ProgressBar1->Design({Dip(16), Dip(474), Dip(728), Dip(16)},
                       anchor::kLeft | anchor::kRight | anchor::kBottom);
  const auto boton = [this](std::int16_t indice, const char* titulo, std::int32_t x) {
    Button& control = AddTo(*cmdButton, "cmdButton", indice);
    control.SetCaption(titulo);
    control.Design({Dip(x), Dip(500), Dip(104), Dip(28)}, anchor::kRight | anchor::kBottom);
  };
  boton(kAceptar, "&Aceptar", 528);
  boton(kCancelar, "&Cancelar", 640);
  AutoResizer1 = Add<AutoResizer>("AutoResizer1");
}

void frmTurno::Etiqueta(std::int16_t indice, const char* titulo, std::int32_t x, std::int32_t y,
                        std::int32_t ancho) {
  Label& label = AddTo(*lblTurno, "lblTurno", indice);
  label.SetCaption(titulo);
  label.Design({Dip(x), Dip(y), Dip(ancho), Dip(20)});
}

void frmTurno::CreaEmpleados() {
  const auto lista = [this](std::int16_t indice, std::int32_t x, unsigned anclas) {
    AddTo(*lv, "lv", indice).Design({Dip(x), Dip(146), Dip(332), Dip(316)}, anclas);
  };
  const auto flecha = [this](std::int16_t indice, Glyph dibujo, const char* ayuda, std::int32_t y) {
    Button& boton = AddTo(*cmdButton, "cmdButton", indice);
    boton.SetPicture(dibujo);
    boton.SetToolTipText(ayuda);
    boton.Design({Dip(358), Dip(y), Dip(44), Dip(32)});
  };
  Etiqueta(6, "Empleado", 16, 124, 300);
  lista(0, 16, anchor::kLeft | anchor::kTop | anchor::kBottom);
  flecha(kAgregaTodos, Glyph::AllRight, "Agrega todos los empleados al turno", 200);
  flecha(kAgrega, Glyph::Right, "Agrega el empleado al turno", 240);
  flecha(kQuita, Glyph::Left, "Quita el empleado del turno", 290);
  flecha(kQuitaTodos, Glyph::AllLeft, "Quita todos los empleados del turno", 330);
  Etiqueta(7, "Empleados dentro del turno", 412, 124, 300);
  lista(1, 412, anchor::kAll);
}

const MemberTable* frmTurno::Members() const {
  using F = frmTurno;
  static const MemberTable table =
      WithFormMembers(MemberTable::Of<F>()
                          .Property<&F::TraeAmbiente, &F::PonAmbiente>("Ambiente")
                          .Property<&F::Modo, &F::PonModo>("Modo")
                          .Property<&F::Turno, &F::PonTurno>("Turno"));
  return &table;
}

void frmTurno::Form_Load() {
  Trata("Form_Load", [&] {
    for (const char* dia : kDias) (*cmbFields)(kDescanso).AddItem(dia);
    // There is no hour 0: the night shift's midnight is 24:00.
    for (std::int32_t hora = 1; hora <= 24; ++hora) {
      const std::string texto = Datos().TextoConCeros(hora, 2);
      for (const std::int16_t i : {kEntrada, kComida, kSalida, kRegreso}) {
        (*cmbFields)(i).AddItem(texto + ":00");
        (*cmbFields)(i).AddItem(texto + ":30");
      }
    }
    if (modo_ == kModificacion) {
      const auto turno = Consulta(EntreApostrofos("SELECT * FROM turnos WHERE turno = '", turno_));
      for (std::int16_t i = 0; const CampoTurno& campo : kCampos) {
        const Value valor = turno->Campo(campo.leida);
        (*cmbFields)(i++).SetText(valor.IsNull() ? std::string() : ToText(valor));
      }
    }
    LLenaEmpleados();
    LLenaEmpleadosTurno();
    RemueveEnTurno();
    Prepara();
  });
}

void frmTurno::Form_Unload(CancelEvent&) {
  Trata("Form_Unload", [&] { Libera(); });
}

void frmTurno::cmdButton_Click(std::int16_t index) {
  Trata("cmdButton_Click", [&] {
    switch (index) {
      case kAceptar:
        if (SalvaCambios()) Unload();
        break;
      case kCancelar:
        Unload();
        break;
      case kAgregaTodos:
        AgregaTodosLosUsuarios();
        break;
      case kAgrega:
        AgregaUsuario();
        break;
      case kQuita:
        QuitarUsuario();
        break;
      case kQuitaTodos:
        QuitaTodosLosUsuarios();
        break;
      default:
        break;
    }
  });
}

bool frmTurno::FaltaCampo() {
  for (const std::int16_t i : {kTurno, kEntrada, kComida, kRegreso, kSalida, kDescanso}) {
    if (!Datos().EstaVacio(Texto(i))) continue;
    Mensaje(kCampos[static_cast<std::size_t>(i)].mensaje_vacio);
    PonFoco((*cmbFields)(i));
    return true;
  }
  return false;
}

bool frmTurno::SalvaCambios() {
  bool salvado = false;
  Trata("SalvaCambios", [&] {
    if (modo_ == kAlta) {
      // The blank after the quote is part of the statement: a key that exists is left to the database.
      const auto existente =
          Consulta(EntreApostrofos("SELECT * FROM turnos WHERE turno = ' ", Trim(Texto(kTurno))));
      if (!existente->Eof()) {
        Mensaje(832);
        PonFoco((*cmbFields)(kTurno));
        return;
      }
    }
    if (FaltaCampo()) return;

    const auto constructor = ElModulo().Fabrica().Nuevo<ConstructorSql>();
    constructor->PonConexion(TraeConexion());
    if (modo_ == kModificacion) {
      constructor->Tipo("UPDATE");
      constructor->Condicion(EntreApostrofos("turno = '", turno_));
    } else {
      constructor->Tipo("INSERT");
    }
    for (std::int16_t i = 0; const CampoTurno& campo : kCampos)
      constructor->AgregaCampo("turnos", campo.columna, Texto(i++));
    constructor->Genera("turnos");
    constructor->Ejecuta();

    // From here on the key is the one in the field: members stored under an earlier one stay where they are.
    Entorno()->EjecutaSQL(EntreApostrofos("DELETE FROM turnoempleado WHERE turno = '", Texto(kTurno)));
    ListItems& miembros = Miembros().Items();
    for (std::int32_t i = 1; i <= miembros.Count(); ++i) {
      constructor->Limpia();
      constructor->Tipo("INSERT");
      constructor->AgregaCampo("turnoempleado", "turno", Texto(kTurno));
      constructor->AgregaCampo("turnoempleado", "empleado", Trim(miembros(i).Text()));
      constructor->Genera("turnoempleado");
      constructor->Ejecuta();
    }
    salvado = true;
  });
  return salvado;
}

void frmTurno::PonFoco(Control& objControl) {
  Trata("PonFoco", [&] { objControl.SetFocus(); });
}

}  // namespace zuvi
