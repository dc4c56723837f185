// The operations of the main window. The component reports its own errors and refusals; what it ends silently
// is told here, from what it left in the database.
#include "host/shop/celdas.h"
#include "host/shop/ocupadas.h"
#include "host/shop/ordenes.h"
#include "host/ventanas/frm_kit.h"
#include "host/ventanas/frm_master.h"

namespace zuvi::host {
namespace {

constexpr const char* kComponente = "ZuviProduccion.Produccion";

}  // namespace

Late& frmMaster::Componente() {
  if (!componente_) {
    const ObjectPtr objeto = LaEscena().fabrica.Crea(kComponente);
    objeto->Put("Ambiente", LaEscena().fabrica.Crea(Ambiente::kProgId));
    objeto->Put("Parent", shared_from_this());
    componente_.emplace(objeto);
  }
  return *componente_;
}

void frmMaster::AbreEditor(const std::function<void(Late&)>& llamada) {
  Late& componente = Componente();
  const Anfitrion::Sucedido antes = ElAnfitrion().LoSucedido();
  if (!Trata([&] { llamada(componente); }) || Closed()) return;
  const Anfitrion::Sucedido& ahora = ElAnfitrion().LoSucedido();
  if (ahora.ventanas == antes.ventanas && ahora.mensajes == antes.mensajes)
    Dice("La orden no se pudo abrir. Actualice la lista y vea si la base responde.");
}

void frmMaster::Nueva() {
  nueva_tras_ = renglones_.empty() ? 1 : renglones_.front().op;
  AbreEditor([](Late& componente) { componente.Call("NuevaOp"); });
}
void frmMaster::Modifica() {
  if (const std::int32_t op = Orden())
    AbreEditor([op](Late& componente) { componente.Call("ModificaOp", op); });
}
void frmMaster::Consulta() {
  AbreEditor([op = Orden()](Late& componente) { componente.Call("ConsultaOp", op); });
}
void frmMaster::Fracciones() { Componente().Call("MuestraCapturaDeFracciones"); }
void frmMaster::Turnos() { Componente().Call("MuestraTurnos"); }

void frmMaster::Imprime() {
  LaEscena().fabrica.Nuevo<ControlProcesos>()->ImprimeReporte("ORDENP", Orden(), nullptr, shared_from_this());
  Dice("Se imprimió la orden " + Decimal(Orden()) + ".");
}

void frmMaster::Entrega() {
  const std::int32_t op = Orden();
  const DeOrden dice(op);
  const PartidasDeOrden partidas(Base(), op);
  if (partidas.cuantas == 0) {
    ElAnfitrion().Mensaje(dice.sin_partidas + ".", EstiloMensaje::Error);
    return;
  }
  if (!ElAnfitrion().Pregunta(partidas.por_entregar.empty()
                                  ? dice.ya_entregada
                                  : "¿Entregar el producto terminado de la orden " + Decimal(op) + "?"))
    return;
  const int antes = ElAnfitrion().LoSucedido().movimientos;
  Componente().Call("EntregaProductoTerminado", op);
  if (Closed()) return;
  Lee();
  const std::string cuantos = std::to_string(ElAnfitrion().LoSucedido().movimientos - antes) + " movimientos";
  if (const std::string resto = PartidasDeOrden(Base(), op).por_entregar; !resto.empty())
    return ElAnfitrion().Mensaje(
        "La entrega no terminó (" + cuantos + "). Queda por marcar como terminado:\n" + resto,
        EstiloMensaje::Error);
  Dice(dice.orden + " se entregó: " + cuantos + ".");
}

void frmMaster::Cancela() {
  const std::int32_t op = Orden();
  const DeOrden dice(op);
  // It asks by itself.
  const bool cancelada = ToBool(Componente().Call("CancelaOp", op));
  if (Closed()) return;
  Lee();
  Dice(!cancelada             ? dice.no_cancelada + "."
       : HayOrden(Base(), op) ? dice.orden + " estaba confirmada: quedó cerrada."
                              : dice.orden + " se canceló.");
}

void frmMaster::Libera() {
  const std::int32_t op = Orden();
  const DeOrden dice(op);
  const auto ocupadas = OrdenesOcupadas(Base());
  while (!ocupadas->Eof() && ToInt32(ocupadas->Campo("op")) != op) ocupadas->MoveNext();
  if (ocupadas->Eof()) return Dice(dice.no_ocupada + ".");
  const std::string ocupante = TextOrNothing(ocupadas->Campo("usuario"));
  const std::string pregunta = dice.orden + " está marcada como ocupada.\nLa guardó por última vez " +
                               (ocupante.empty() ? std::string("alguien sin nombre") : ocupante) + ", el " +
                               DiaDe(ocupadas->Campo("usufecha")) + " a las " +
                               TextOrNothing(ocupadas->Campo("usuhora")) +
                               ".\n\nLibérela sólo si nadie la tiene abierta: si no, dos personas la "
                               "cambiarían a la vez.\n¿Liberarla?";
  if (!ElAnfitrion().Pregunta(pregunta)) return;
  const bool liberada = LiberaOrden(Base(), op, ElAnfitrion().TraeOpciones().usuario);
  Lee();
  Dice(dice.orden + (liberada ? " quedó libre; se anotó en la bitácora." : " ya estaba libre."));
}

void frmMaster::Kits() {
  Late& componente = Componente();
  std::make_shared<frmKit>(LaEscena(), componente)->ShowModal(this, [this] {
    Trata([this] {
      if (!Closed()) Lee();
    });
  });
}

void frmMaster::Refresca() {
  // Who asks for the list wants the server tried now, though it did not answer a moment ago.
  ElAnfitrion().NuevaOperacion();
  Lee();
}

void frmMaster::Sale() { Unload(UnloadMode::TitleBar); }

}  // namespace zuvi::host
