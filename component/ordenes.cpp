// Opening an order in the editor.
#include "base/format.h"
#include "base/text.h"
#include "component/produccion.h"
#include "orders/frm_op.h"
#include "windows/reporta_error.h"

namespace zuvi {
namespace {

constexpr NumeroMensaje kFinDeOcupada = 76;

}  // namespace

void Produccion::NuevaOp() noexcept {
  EnSilencio([&] {
    const Sesion sesion = AbreSesion();
    // There is no order 0: an empty record set with the columns of `op`.
    const auto registro = modulo_.Datos().Consulta("SELECT * FROM op WHERE op = 0", sesion.conexion);
    const auto ventana = std::make_shared<frmOp>(modulo_);
    ventana->PonRegistro(registro);
    ventana->PonAmbiente(ambiente_);
    ventana->PonParent(parent_);
    ventana->PonModo(kAlta);
    ventana->Show();
  });
}

void Produccion::ModificaOp(std::int32_t n_op) noexcept {
  AbreOrden(n_op, {.no_existe = 754, .confirmada = 753, .ocupada_propia = 755, .ocupada_ajena = 756});
}

void Produccion::ConsultaOp(std::int32_t n_op) noexcept {
  AbreOrden(n_op, {.no_existe = 72, .confirmada = {}, .ocupada_propia = 74, .ocupada_ajena = 75});
}

void Produccion::AbreOrden(std::int32_t n_op, const MensajesDeApertura& mensajes) noexcept {
  EnSilencio([&] {
    const Sesion sesion = AbreSesion();
    AccesoDatos& datos = modulo_.Datos();
    const auto texto = [&](NumeroMensaje numero) { return datos.TraeMensaje(numero, sesion.ambiente); };
    const auto informa = [&](const std::string& aviso) {
      datos.Mensaje(aviso, EstiloMensaje::Informacion, sesion.ambiente);
    };

    const auto ventana = std::make_shared<frmOp>(modulo_);
    ventana->PonAmbiente(ambiente_);
    ventana->PonParent(parent_);
    const auto registro = datos.Consulta("SELECT * FROM op WHERE op = " + Decimal(n_op), sesion.conexion);
    if (registro->Eof()) {
      datos.Mensaje(texto(mensajes.no_existe), EstiloMensaje::Error, sesion.ambiente);
      return;
    }
    if (!mensajes.confirmada) {
      ventana->PonModo(kConsulta);
    } else if (TextOrNothing(registro->Campo("Estado")) == "CO") {
      informa(texto(mensajes.confirmada));
      ventana->PonModo(kConsulta);
    } else {
      ventana->PonModo(kModificacion);
    }

    const Value ocupado = registro->Campo("Ocupado");
    if (!ocupado.IsNull() && ToNumber(ocupado) != 0 && ventana->Modo() == kModificacion) {
      const Value usuario = registro->Campo("Usuario");
      if (!usuario.IsNull() && ToText(usuario) == sesion.ambiente->UsuarioActual()) {
        informa(texto(mensajes.ocupada_propia));
        return;
      }
      const std::string ocupada = texto(mensajes.ocupada_ajena);
      const std::string quien(Trim(TextOrNothing(usuario)));
      informa(ocupada + " " + quien + " " + texto(kFinDeOcupada));
      return;
    }

    ventana->PonRegistro(registro);
    ventana->PonOp(n_op);
    ventana->SetCaption("Orden de fabricación: " + ToText(registro->Campo("Op")));
    ventana->Show();
  });
}

}  // namespace zuvi
