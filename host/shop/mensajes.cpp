#include "host/shop/mensajes.h"

#include <algorithm>
#include <iterator>

#include "services/numero_mensaje.h"

namespace zuvi::host {
namespace {

// 75 and 756 are followed by the name of the user who holds the order, and that by 76. What stands in braces
// is asked of the host when the text is fetched.
constexpr MensajeCatalogo kCatalogo[] = {
    {1, "¿Desea eliminar el turno {turno}, con su lista de empleados y todos sus horarios?",
     "Do you want to delete shift {turno}, with its list of members and all of its schedules?"},
    {72, "La orden de producción que desea consultar no existe.",
     "The production order you want to view does not exist."},
    {74, "Usted ya tiene abierta esta orden de producción en otra ventana.",
     "You already have this production order open in another window."},
    {75, "La orden de producción está siendo usada por", "The production order is in use by"},
    {76, "en otra estación.", "at another station."},
    {224, "La fecha del documento no es válida. Por favor, revísela.",
     "The document date is not valid. Please check it."},
    {234, "Escriba la clave del artículo.", "Please enter the article code."},
    {235, "El artículo {clave} no existe en el catálogo.", "Article {clave} is not in the catalogue."},
    {236, "La cantidad debe ser mayor que cero.", "The quantity must be greater than zero."},
    {240, "Indique el almacén en que se entregará el producto.",
     "Please enter the warehouse that will receive the product."},
    {241, "El almacén {clave} no existe.", "Warehouse {clave} does not exist."},
    {343, "La orden no tiene partidas, por lo que se guardará como pendiente.",
     "The order has no lines, so it will be saved as pending."},
    {703, "Este artículo no puede manejarse en el almacén de la orden.",
     "This article may not be kept in the order's warehouse."},
    {753, "La orden de producción ya fue confirmada: se abrirá solo para consulta.",
     "The production order is already confirmed: it opens for viewing only."},
    {754, "La orden de producción que desea modificar no existe.",
     "The production order you want to change does not exist."},
    {755, "Usted ya está modificando esta orden de producción en otra ventana.",
     "You are already changing this production order in another window."},
    {756, "La orden de producción está siendo modificada por", "The production order is being changed by"},
    {757, "¿Desea cancelar la orden de producción?", "Do you want to cancel the production order?"},
    {759, "¿Desea confirmar la orden de producción? Una vez confirmada no podrá modificarse.",
     "Do you want to confirm the production order? It cannot be changed afterwards."},
    {832, "Ya existe un turno con ese nombre.", "A shift of that name already exists."},
    {833, "Escriba el nombre del turno.", "Please enter the name of the shift."},
    {834, "Indique la hora de entrada.", "Please enter the start time."},
    {835, "Indique la hora de comida.", "Please enter the time of the meal break."},
    {836, "Indique la hora de regreso de la comida.", "Please enter the time of return from the meal break."},
    {837, "Indique la hora de salida.", "Please enter the end time."},
    {838, "Indique el día de descanso.", "Please enter the day of rest."},
    {839, "Hay un empleado sin nombre en la lista. Corríjalo en el catálogo de empleados.",
     "An employee in the list has no name. Please correct the employee catalogue."},
};

constexpr bool Tiene(std::int32_t numero) {
  return std::ranges::find(kCatalogo, numero, &MensajeCatalogo::numero) != std::end(kCatalogo);
}
static_assert(std::ranges::all_of(kMensajesDelModulo, Tiene), "the module asks for a message without a text");

}  // namespace

std::span<const MensajeCatalogo> CatalogoMensajes() { return kCatalogo; }

std::string TextoMensaje(std::int32_t numero, std::string_view idioma,
                         const std::function<std::string(std::string_view)>& dato) {
  const bool ingles = idioma == "en";
  const auto hallado = std::ranges::find(kCatalogo, numero, &MensajeCatalogo::numero);
  if (hallado == std::end(kCatalogo))
    return (ingles ? "Message " : "Mensaje ") + std::to_string(numero) +
           (ingles ? " is not in the catalogue." : " no está en el catálogo.");
  std::string texto(ingles ? hallado->en : hallado->es);
  const auto abre = texto.find('{');
  if (abre == std::string::npos) return texto;
  const auto cierra = texto.find('}', abre);
  const std::string valor = dato ? dato(std::string_view(texto).substr(abre + 1, cierra - abre - 1)) : "";
  if (!valor.empty()) return texto.replace(abre, cierra + 1 - abre, '"' + valor + '"');
  // Without it the text stands as if it spoke of what everybody sees.
  const auto blanco = abre > 0 && texto[abre - 1] == ' ' ? abre - 1 : abre;
  return texto.erase(blanco, cierra + 1 - blanco);
}

}  // namespace zuvi::host
