#include "host/ventanas/fabrica_ventanas.h"

#include "base/text.h"
#include "host/ventanas/frm_busca.h"
#include "host/ventanas/frm_captura.h"
#include "host/ventanas/pregunta_base.h"

namespace zuvi::host {
namespace {

/// A text member of a box, whoever made it; empty where it has none.
std::string TextoDeCaja(const ObjectPtr& caja, std::string_view miembro) {
  if (!caja) throw HostError(ErrorNumber::ObjectNotSet);
  return caja->Find(miembro) ? ToText(caja->Call(miembro)) : std::string();
}

}  // namespace

void BuscaCatalogoVentana::Muestra(const std::string& titulo) {
  escena_.anfitrion->Llamada("BuscaCatalogo", titulo, Filtro());
  const auto ventana = std::make_shared<frmBusca>(escena_, CatalogoDe(titulo), Filtro(),
                                                  std::string(Trim(TextoDeCaja(Destino(), "Text"))));
  ventana->ShowModal(nullptr);
  // Written only now: the box may move the focus on, which the lookup would take away again.
  if (!ventana->Elegida()) return;
  Elige(*ventana->Elegida());
  // As on coming to the box: typing on replaces the choice.
  if (Destino()->Find("SelLength")) {
    Destino()->Put("SelStart", std::int32_t{0});
    Destino()->Put("SelLength", static_cast<std::int32_t>(Utf16(*ventana->Elegida()).size()));
  }
}

void CapturaNumericaVentana::Muestra() {
  escena_.anfitrion->Llamada("CapturaNumerica");
  const std::string etiqueta = TextoDeCaja(Destino(), "Tag");
  const bool numerica = etiqueta == "N" || etiqueta == "SD";
  const auto ventana = std::make_shared<frmCaptura>(escena_, numerica ? etiqueta : "SN",
                                                    std::string(Trim(TextoDeCaja(Destino(), "Text"))));
  ventana->ShowModal(nullptr);
  if (ventana->Numero()) Captura(*ventana->Numero());
}

void Principal::Abre() {
  if (const ObjectPtr abierta = Ventana()) {
    abierta->Call("SetFocus");
    return;
  }
  if (AseguraBase(*escena_.anfitrion)) std::make_shared<frmMaster>(escena_)->Show();
}

const MemberTable* Principal::Members() const {
  static const MemberTable table = MemberTable::Of<Principal>()
                                       .Method<&Principal::Abre>("Abre")
                                       .Property<&Principal::Abierta>("Abierta")
                                       .Property<&Principal::Ventana>("Ventana");
  return &table;
}

FabricaVentanas::FabricaVentanas(std::shared_ptr<Anfitrion> anfitrion, Desktop& escritorio,
                                 FabricaServicios& otras, std::function<std::shared_ptr<void>()> retiene)
    : escena_{std::move(anfitrion), escritorio, *this, std::move(retiene)},
      sin_ventanas_(escena_.anfitrion),
      otras_(otras) {}

ObjectPtr FabricaVentanas::Crea(std::string_view prog_id) {
  if (EqualsIgnoringCase(prog_id, BuscaCatalogo::kProgId))
    return std::make_shared<BuscaCatalogoVentana>(escena_);
  if (EqualsIgnoringCase(prog_id, CapturaNumerica::kProgId))
    return std::make_shared<CapturaNumericaVentana>(escena_);
  if (EqualsIgnoringCase(prog_id, Principal::kProgId)) return std::make_shared<Principal>(escena_);
  const std::string clase = ToLower(prog_id);
  const bool propia =
      clase.starts_with("zuviquery.") || clase.starts_with("zuvienviroment.") || clase.starts_with("adodb.");
  return propia ? sin_ventanas_.Crea(prog_id) : otras_.Crea(prog_id);
}

}  // namespace zuvi::host
