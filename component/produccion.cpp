#include "component/produccion.h"

#include <limits>

#include "fractions/frm_fracciones.h"
#include "services/ventanas.h"
#include "shifts/frm_turnos.h"
#include "windows/reporta_error.h"

namespace zuvi {

const MemberTable* Produccion::Members() const {
  // The order is that of the interface: ids are promised to hosts.
  static const MemberTable table =
      MemberTable::Of<Produccion>()
          .Property<&Produccion::TraeAmbiente, &Produccion::PonAmbiente>("Ambiente")
          .Property<&Produccion::Parent, &Produccion::PonParent>("Parent")
          .Method<&Produccion::NuevaOp>("NuevaOp")
          .Method<&Produccion::ModificaOp>("ModificaOp", {"nOp"})
          .Method<&Produccion::ConsultaOp>("ConsultaOp", {"nOp"})
          .Method<&Produccion::EntregaProductoTerminado>("EntregaProductoTerminado", {"nOp"})
          .Method<&Produccion::Ensamble>("Ensamble", {"Articulo", "nAlmacen", "nCantidad", "nOp"}, 1)
          .Method<&Produccion::Desensamble>("Desensamble", {"Articulo", "nCantidad", "nAlmacen", "nOp"}, 1)
          .Method<&Produccion::CancelaOp>("CancelaOp", {"nOp"})
          .Method<&Produccion::MuestraCapturaDeFracciones>("MuestraCapturaDeFracciones")
          .Method<&Produccion::MuestraTurnos>("MuestraTurnos");
  return &table;
}

void Produccion::PonAmbiente(ObjectPtr ambiente) {
  servicio_ = ComoOpcional<Ambiente>(ambiente);
  ambiente_ = std::move(ambiente);
}

Produccion::Sesion Produccion::AbreSesion() {
  if (!servicio_) throw HostError(ErrorNumber::ObjectNotSet);
  Sesion sesion{shared_from_this(), servicio_, nullptr};
  sesion.conexion = sesion.ambiente->TraeConexion();
  modulo_.Datos();
  return sesion;
}

template <class Ventana>
void Produccion::MuestraVentana() noexcept {
  EnSilencio([&] {
    // A window without an environment could do nothing but report that.
    if (!servicio_) throw HostError(ErrorNumber::ObjectNotSet);
    const auto ventana = std::make_shared<Ventana>(modulo_);
    ventana->PonAmbiente(ambiente_);
    ventana->Show();
  });
}

void Produccion::MuestraCapturaDeFracciones() noexcept { MuestraVentana<frmFracciones>(); }
void Produccion::MuestraTurnos() noexcept { MuestraVentana<frmTurnos>(); }

bool Produccion::CancelaOp(std::int32_t n_op) noexcept {
  bool cancelada = false;
  EnSilencio([&] {
    const Sesion sesion = AbreSesion();
    AccesoDatos& datos = modulo_.Datos();
    constexpr std::int16_t kModo = 2;
    if (!datos.Pregunta(datos.TraeMensaje(757, sesion.ambiente), kModo)) return;

    const std::string op = Decimal(n_op);
    const auto orden = datos.Consulta("SELECT * FROM op WHERE op = " + op, sesion.conexion);
    const auto partidas = datos.Consulta("SELECT * FROM oppart WHERE op = " + op, sesion.conexion);
    if (orden->Eof()) return;

    if (const Value estado = orden->Campo("Estado"); !estado.IsNull() && ToText(estado) == "CO") {
      if (!datos.Pregunta("Esta orden de producción ya fue confirmada, Desea cerrar esta order de producción",
                          kModo))
        return;
      sesion.ambiente->EjecutaSQL("UPDATE op SET cerrado = 1 WHERE op = " + op);
      cancelada = true;
      return;
    }
    // Header first: when the second statement fails the lines are left without their order.
    sesion.ambiente->EjecutaSQL("DELETE FROM op WHERE op = " + op);
    sesion.ambiente->EjecutaSQL("DELETE FROM oppart WHERE op = " + op);
    cancelada = true;
  });
  return cancelada;
}

void Produccion::EntregaProductoTerminado(std::int32_t n_op) noexcept {
  EnSilencio([&] { Entrega(n_op); });
}

void Produccion::Entrega(std::int32_t n_op) {
  const Sesion sesion = AbreSesion();
  AccesoDatos& datos = modulo_.Datos();
  const std::string op = Decimal(n_op);

  const auto cuenta = datos.Consulta("SELECT COUNT( * ) FROM oppart WHERE op = " + op, sesion.conexion);
  const std::int32_t total = RoundToInt32(datos.ValorNumerico(cuenta->Campo(0)));
  const auto partidas = datos.Consulta(
      "SELECT oppart.articulo, oppart.cantidad, op.almacen "
      "FROM oppart INNER JOIN op USING(op) WHERE op.op = " +
          op,
      sesion.conexion);

  std::shared_ptr<VentanaProgreso> progreso;
  const auto avance = [&]() -> VentanaProgreso& {
    if (!progreso) progreso = modulo_.Fabrica().Nuevo<VentanaProgreso>();
    return *progreso;
  };
  if (total > 0)
    avance().Inicia(total, "Entregando producto terminado",
                    sesion.ambiente->RutaAplicacion() + "\\Images\\Gears.Avi");

  for (std::int32_t paso = 0; !partidas->Eof(); partidas->MoveNext()) {
    if (paso == std::numeric_limits<std::int32_t>::max()) throw HostError(ErrorNumber::Overflow);
    ++paso;
    avance().Avanza(paso, "Procesando: " + ToText(partidas->Campo("Articulo")), "");
    const std::string articulo = ToText(partidas->Campo("Articulo"));
    const std::int32_t almacen = ToInt32(partidas->Campo("Almacen"));
    // Ensamble takes whole kits, so a fractional line is delivered rounded.
    const std::int32_t cantidad = ToInt32(partidas->Campo("Cantidad"));
    Ensamble(articulo, almacen, cantidad, n_op);
  }
  sesion.ambiente->EjecutaSQL("UPDATE oppart SET terminado = cantidad WHERE op = " + op);
  avance().Cierra();
}

}  // namespace zuvi
