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

void Mundo::Lanza() const {
  if (falla.clase == Clase::Texto) throw HostError(kTextoFalla);
  if (falla.clase == Clase::SinTexto) throw HostError("");
  if (falla.clase == Clase::SinMemoria) throw std::bad_alloc();
}

void Mundo::FallaDirecta() {
  if (falla.clase <= Clase::SinMemoria && Toca()) Lanza();
}

void Mundo::Linea(const std::string& nombre, std::initializer_list<std::string> args) {
  std::string linea = nombre + "(";
  const char* separador = "";
  for (const auto& arg : args) {
    linea += separador + arg;
    separador = ", ";
  }
  Anota(linea + ")");
}

std::string Mundo::Bitacora() const {
  std::string texto = "\n";
  for (const auto& linea : bitacora) texto += linea + "\n";
  return texto;
}

std::string Mundo::Texto(const Value& valor) {
  if (valor.IsNull()) return "Null";
  if (!valor.IsObject()) return ATexto(valor);
  ObjectPtr objeto = ReferenceOf(AObjeto(valor));
  if (!objeto) return "Nothing";
  if (const auto* oculto = dynamic_cast<PorNombre*>(objeto.get())) objeto = oculto->Dentro();
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
    const char* operator()(const Fecha&) const { return "fecha "; }
    const char* operator()(const ObjectPtr&) const { return ""; }
    const char* operator()(bool) const { return "bool "; }
    const char* operator()(Null) const { return ""; }
    const char* operator()(Empty) const { return ""; }
  };
  return std::visit(Tipo{}, valor.Get()) + Texto(valor);
}

ObjectPtr Entrega(Mundo& mundo, ObjectPtr objeto) {
  if (!mundo.por_nombre || !dynamic_cast<ConNombre*>(objeto.get()) || dynamic_cast<PorNombre*>(objeto.get()))
    return objeto;
  return std::make_shared<PorNombre>(mundo, std::move(objeto));
}

std::optional<MemberId> PorNombre::Find(std::string_view name) {
  if (mundo_.falla.clase == Clase::SinMiembro && mundo_.Toca()) return std::nullopt;
  return dentro_->Find(name);
}

void PorNombre::FallaAntes() {
  if (mundo_.falla.clase <= Clase::SinMemoria && mundo_.Toca()) mundo_.Lanza();
}

Value PorNombre::Read(MemberId id, std::span<Value> args, ByRef by_ref) {
  FallaAntes();
  Value resultado = dentro_->Read(id, args, by_ref);
  const Clase clase = mundo_.falla.clase;
  bool aplicable = Aplicable(clase, resultado);
  for (std::size_t i = 0; i < args.size(); ++i)
    aplicable |= ((by_ref >> i) & 1u) && Aplicable(clase, args[i]);
  // The host has acted by now: what it gives back is wrong, not what it did.
  const bool estropea = aplicable && mundo_.Toca();
  const auto devuelve = [&](Value& v) {
    if (estropea && Aplicable(clase, v))
      v = Estropeado(clase);
    else if (v.IsObject())
      v = Entrega(mundo_, AObjeto(v));
  };
  for (std::size_t i = 0; i < args.size(); ++i)
    if ((by_ref >> i) & 1u) devuelve(args[i]);
  devuelve(resultado);
  return resultado;
}

void PorNombre::Write(MemberId id, std::span<Value> args) {
  FallaAntes();
  dentro_->Write(id, args);
}

}  // namespace zuvi::pruebas
