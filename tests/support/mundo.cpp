#include "tests/support/mundo.h"

#include <new>

#include "component/produccion.h"
#include "toolkit/form.h"

namespace zuvi::pruebas {
namespace {

bool EsNumero(const Value& v) {
  return !v.IsEmpty() && !v.IsNull() && !v.IsObject() && !std::holds_alternative<std::string>(v.Get());
}

bool EsReferencia(const Value& v) { return v.IsObject() && std::get<ObjectPtr>(v.Get()); }

/// Whether the value is one that this kind of failure spoils.
bool Aplicable(Clase clase, const Value& v) {
  return clase == Clase::TextoPorNumero
             ? EsNumero(v)
             : (clase == Clase::NumeroPorObjeto || clase == Clase::NadaPorObjeto) && EsReferencia(v);
}

Value Estropeado(Clase clase) {
  if (clase == Clase::TextoPorNumero) return "abc";
  if (clase == Clase::NumeroPorObjeto) return 7;
  return ObjectPtr();
}

}  // namespace

bool Mundo::Toca() {
  if (falla.n == 0) return false;
  ++cuenta_;
  const bool toca = cuenta_ == falla.n || (falla.persistente && cuenta_ > falla.n);
  fallas_dadas += toca;
  return toca;
}

void Mundo::FallaAntes() {
  if (falla.clase > Clase::SinMemoria || !Toca()) return;
  if (falla.clase == Clase::SinMemoria) throw std::bad_alloc();
  throw HostError(falla.clase == Clase::Texto ? kTextoFalla : "");
}

void Mundo::Llama(const std::string& nombre, std::span<const Value> args) {
  std::string linea = nombre + "(";
  const char* separador = "";
  for (const Value& arg : args) {
    linea += separador + Texto(arg);
    separador = ", ";
  }
  Anota(linea + ")");
  if (gancho) gancho(bitacora.back());
}

std::string Mundo::Bitacora() const {
  std::string texto = "\n";
  for (const auto& linea : bitacora) texto += linea + "\n";
  return texto;
}

std::string Mundo::Texto(const Value& valor) {
  if (valor.IsNull()) return "Null";
  if (!valor.IsObject()) return ToText(valor);
  const ObjectPtr objeto = ReferenceOf(ToObject(valor));
  if (!objeto) return "Nothing";
  if (const auto* con_nombre = dynamic_cast<ConNombre*>(objeto.get())) return con_nombre->Nombre();
  if (const auto* ventana = dynamic_cast<Form*>(objeto.get())) return ventana->Name();
  if (const auto* control = dynamic_cast<Control*>(objeto.get()))
    return control->Index() == Control::kNoIndex ? control->Name()
                                                 : control->Name() + "(" + Decimal(control->Index()) + ")";
  return dynamic_cast<Produccion*>(objeto.get()) ? "Produccion" : "?";
}

std::string Mundo::TextoConTipo(const Value& valor) {
  struct Tipo {
    const char* operator()(std::int16_t) const { return "i2 "; }
    const char* operator()(std::int32_t) const { return "i4 "; }
    const char* operator()(double) const { return "r8 "; }
    const char* operator()(const std::string&) const { return "txt "; }
    const char* operator()(const Date&) const { return "fecha "; }
    const char* operator()(const ObjectPtr&) const { return ""; }
    const char* operator()(bool) const { return "bool "; }
    const char* operator()(Null) const { return ""; }
    const char* operator()(Empty) const { return ""; }
  };
  return std::visit(Tipo{}, valor.Get()) + Texto(valor);
}

std::optional<MemberId> ObjetoMemoria::Find(std::string_view name) {
  if (mundo_.falla.clase == Clase::SinMiembro && mundo_.Toca()) return std::nullopt;
  nombres_.emplace_back(name);
  return static_cast<MemberId>(nombres_.size());
}

Value ObjetoMemoria::Read(MemberId id, std::span<Value> args, ByRef by_ref) {
  mundo_.FallaAntes();
  // Host code within the call may call this object again.
  const std::string nombre = nombres_.at(static_cast<std::size_t>(id) - 1);
  // What travels by value is not seen again.
  std::vector<Value> locales(args.begin(), args.end());
  Value resultado = responde_(nombre, locales);
  for (std::size_t i = 0; i < args.size(); ++i)
    if ((by_ref >> i) & 1u) args[i] = std::move(locales[i]);
  const Clase clase = mundo_.falla.clase;
  std::vector<Value*> estropeables;
  if (Aplicable(clase, resultado)) estropeables.push_back(&resultado);
  for (std::size_t i = 0; i < args.size(); ++i)
    if (((by_ref >> i) & 1u) && Aplicable(clase, args[i])) estropeables.push_back(&args[i]);
  // The host has acted by now: what it gives back is wrong, not what it did.
  if (!estropeables.empty() && mundo_.Toca())
    for (Value* const valor : estropeables) *valor = Estropeado(clase);
  return resultado;
}

void ObjetoMemoria::Write(MemberId id, std::span<Value> args) { Read(id, args, 0); }

}  // namespace zuvi::pruebas
