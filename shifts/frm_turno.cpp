#include "shifts/frm_turno.h"

#include <array>

#include "base/text.h"
#include "windows/sentencia.h"

namespace zuvi {
namespace {

/// The fields of a shift, by their index in `cmbFields`.
struct CampoTurno {
  const char* columna;
  NumeroMensaje mensaje_vacio;
};
constexpr std::array<CampoTurno, 6> kCampos{{{"turno", 833},
                                             {"entrada", 834},
                                             {"comida", 835},
                                             {"salida", 837},
                                             {"descanso", 838},
                                             {"regcomida", 836}}};
/// The order in which they are asked for.
constexpr std::array<std::int16_t, 6> kOrdenDeRevision{0, 1, 2, 5, 3, 4};
/// The day names are values of the database: they stand as they are there.
constexpr std::array kDias{"Lunes", "Martes", "Miercoles", "Jueves", "Viernes", "Sabado", "Dimingo"};
constexpr std::array<std::int16_t, 4> kCamposDeHora{1, 2, 3, 5};

}  // namespace

frmTurno::frmTurno(Modulo& modulo) : VentanaModulo(modulo, "frmTurno") {
  CreaControles();
  cmdButton->ForEach(
      [this](std::int16_t i, Button& boton) { boton.OnClick = [this, i] { cmdButton_Click(i); }; });
}

void frmTurno::CreaControles() {
  SetCaption("Turno");
  DesignInside(Dip(760), Dip(540));
  cmbFields = AddArray<ComboBox>("cmbFields");
  cmdButton = AddArray<Button>("cmdButton");
  lblTurno = AddArray<Label>("lblTurno");
  lv = AddArray<ListView>("lv");

  const auto etiqueta = [this](std::int16_t indice, const char* titulo, std::int32_t x, std::int32_t y,
                               std::int32_t ancho) {
    Label& label = AddTo(*lblTurno, "lblTurno", indice);
    label.SetCaption(titulo);
    label.Design({Dip(x), Dip(y + 4), Dip(ancho), Dip(20)});
  };
  const auto campo = [this](std::int16_t indice, std::int32_t x, std::int32_t y, std::int32_t ancho) {
    AddTo(*cmbFields, "cmbFields", indice).Design({Dip(x), Dip(y), Dip(ancho), Dip(24)});
  };
  // In the order of a working day, which is the tab order.
  etiqueta(0, "Turno:", 16, 16, 116);
  campo(0, 136, 16, 220);
  etiqueta(5, "Día de descanso", 392, 16, 116);
  campo(4, 512, 16, 140);
  etiqueta(1, "Hora de entrada", 16, 50, 116);
  campo(1, 136, 50, 100);
  etiqueta(2, "Hora de salida", 392, 50, 116);
  campo(3, 512, 50, 100);
  etiqueta(3, "Hora de comida", 16, 84, 116);
  campo(2, 136, 84, 100);
  etiqueta(4, "Regreso de comida", 392, 84, 116);
  campo(5, 512, 84, 100);

  etiqueta(6, "Empleado", 16, 120, 300);
  AddTo(*lv, "lv", 0)
      .Design({Dip(16), Dip(146), Dip(332), Dip(316)}, anchor::kLeft | anchor::kTop | anchor::kBottom);
  const auto flecha = [this](std::int16_t indice, Glyph dibujo, const char* ayuda, std::int32_t y) {
    Button& boton = AddTo(*cmdButton, "cmdButton", indice);
    boton.SetPicture(dibujo);
    boton.SetToolTipText(ayuda);
    boton.Design({Dip(358), Dip(y), Dip(44), Dip(32)});
  };
  flecha(2, Glyph::AllRight, "Agrega todos los empleados al turno", 200);
  flecha(3, Glyph::Right, "Agrega el empleado al turno", 240);
  flecha(4, Glyph::Left, "Quita el empleado del turno", 290);
  flecha(5, Glyph::AllLeft, "Quita todos los empleados del turno", 330);
  etiqueta(7, "Empleados dentro del turno", 412, 120, 300);
  AddTo(*lv, "lv", 1).Design({Dip(412), Dip(146), Dip(332), Dip(316)}, anchor::kAll);

  ProgressBar1 = Add<ProgressBar>("ProgressBar1");
  ProgressBar1->Design({Dip(16), Dip(474), Dip(728), Dip(16)},
                       anchor::kLeft | anchor::kRight | anchor::kBottom);
  const auto boton = [this](std::int16_t indice, const char* titulo, std::int32_t x) {
    Button& control = AddTo(*cmdButton, "cmdButton", indice);
    control.SetCaption(titulo);
    control.Design({Dip(x), Dip(500), Dip(104), Dip(28)}, anchor::kRight | anchor::kBottom);
  };
  boton(0, "&Aceptar", 528);
  boton(1, "&Cancelar", 640);
  AutoResizer1 = Add<AutoResizer>("AutoResizer1");
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
    for (const char* dia : kDias) (*cmbFields)(4).AddItem(dia);
    // There is no hour 0: the night shift's midnight is 24:00.
    for (std::int32_t hora = 1; hora <= 24; ++hora) {
      const std::string texto = Datos().TextoConCeros(hora, 2);
      for (const std::int16_t i : kCamposDeHora) {
        (*cmbFields)(i).AddItem(texto + ":00");
        (*cmbFields)(i).AddItem(texto + ":30");
      }
    }
    if (modo_ == kModificacion) {
      const auto turno = Consulta(EntreApostrofos("SELECT * FROM turnos WHERE turno = '", turno_));
      constexpr FixedText kNombres[] = {"Turno", "Entrada", "comida", "Salida", "Descanso", "regcomida"};
      for (std::int16_t i = 0; const FixedText nombre : kNombres) {
        const Value valor = turno->Campo(nombre);
        (*cmbFields)(i++).SetText(valor.IsNull() ? std::string() : ATexto(valor));
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
      case 0:
        if (SalvaCambios()) Unload();
        break;
      case 1:
        Unload();
        break;
      case 2:
        AgregaTodosLosUsuarios();
        break;
      case 3:
        AgregaUsuario();
        break;
      case 4:
        QuitarUsuario();
        break;
      case 5:
        QuitaTodosLosUsuarios();
        break;
      default:
        break;
    }
  });
}

bool frmTurno::FaltaCampo() {
  for (const std::int16_t i : kOrdenDeRevision) {
    if (!Datos().EstaVacio((*cmbFields)(i).Text())) continue;
    Mensaje(kCampos[static_cast<std::size_t>(i)].mensaje_vacio);
    PonFoco((*cmbFields)(i));
    return true;
  }
  return false;
}

bool frmTurno::SalvaCambios() {
  bool salvado = false;
  Trata("SalvaCambios", [&] {
    const auto texto = [this](std::int16_t i) -> const std::string& { return (*cmbFields)(i).Text(); };
    if (modo_ == kAlta) {
      // The blank after the quote is part of the statement: a key that exists is left to the database.
      const auto existente =
          Consulta(EntreApostrofos("SELECT * FROM turnos WHERE turno = ' ", Recorta(texto(0))));
      if (!existente->Eof()) {
        Mensaje(832);
        PonFoco((*cmbFields)(0));
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
      constructor->AgregaCampo("turnos", campo.columna, texto(i++));
    constructor->Genera("turnos");
    constructor->Ejecuta();

    // From here on the key is the one in the field: members stored under an earlier one stay where they are.
    Entorno()->EjecutaSQL(EntreApostrofos("DELETE FROM turnoempleado WHERE turno = '", texto(0)));
    ListItems& miembros = (*lv)(1).Items();
    for (std::int32_t i = 1; i <= miembros.Count(); ++i) {
      constructor->Limpia();
      constructor->Tipo("INSERT");
      constructor->AgregaCampo("turnoempleado", "turno", texto(0));
      constructor->AgregaCampo("turnoempleado", "empleado", Recorta(miembros(i).Text()));
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
