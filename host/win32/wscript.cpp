#include "host/win32/wscript.h"

#include <objbase.h>
#include <windows.h>

#include "automation/prog_id_factory.h"
#include "base/text.h"
#include "host/win32/guion.h"

namespace zuvi::host {
namespace {

class ArgumentosGuion final : public Object {
 public:
  explicit ArgumentosGuion(std::vector<std::string> valores) : valores_(std::move(valores)) {}
  std::int32_t Count() { return static_cast<std::int32_t>(valores_.size()); }
  std::string Item(std::int32_t indice) {
    if (indice < 0 || indice >= Count()) throw HostError(ErrorNumber::SubscriptOutOfRange);
    return valores_[static_cast<std::size_t>(indice)];
  }
  const MemberTable* Members() const override {
    static const MemberTable tabla = MemberTable::Of<ArgumentosGuion>()
                                         .Method<&ArgumentosGuion::Item>("Item", {"indice"})
                                         .AsDefault()
                                         .Property<&ArgumentosGuion::Count>("Count")
                                         .Property<&ArgumentosGuion::Count>("Length");
    return &tabla;
  }

 private:
  std::vector<std::string> valores_;
};

}  // namespace

void WScript::Echo(const Value& a, const Value& b, const Value& c, const Value& d) {
  std::string linea;
  for (const Value* valor : {&a, &b, &c, &d}) {
    if (valor->IsEmpty()) continue;
    if (!linea.empty()) linea += ' ';
    linea += valor->IsNull() ? std::string("Null") : ToText(*valor);
  }
  salida_.Escribe(linea);
}

void WScript::Sleep(std::int32_t milisegundos) {
  AtiendeMensajes(static_cast<unsigned>(std::max(0, milisegundos)));
}

void WScript::Quit(std::int32_t codigo) {
  // The engine offers no way to unwind a running script, so the process ends here as with the system's own
  // runner.
  ExitProcess(static_cast<UINT>(codigo));
}

ComPtr<IDispatch> CreaPorNombre(const std::string& prog_id) {
  CLSID clase{};
  ComPtr<IDispatch> objeto;
  const HRESULT codigo = CreateByProgId(prog_id, CLSCTX_ALL, IID_IDispatch, objeto.put_void(), clase);
  if (FAILED(codigo))
    throw HostError(DescriptionOf(ErrorNumber::CannotCreateObject) + ": " + prog_id,
                    ErrorNumber::CannotCreateObject, static_cast<std::int32_t>(codigo));
  return objeto;
}

ObjectPtr WScript::CreateObject(const std::string& prog_id) {
  return ObjectOf(CreaPorNombre(prog_id).get(), servidor_);
}

ObjectPtr WScript::Arguments() { return std::make_shared<ArgumentosGuion>(argumentos_); }

std::string WScript::ScriptName() {
  const auto barra = archivo_.find_last_of("\\/");
  return barra == std::string::npos ? archivo_ : archivo_.substr(barra + 1);
}

const MemberTable* WScript::Members() const {
  static const MemberTable tabla = MemberTable::Of<WScript>()
                                       .Method<&WScript::Echo>("Echo", {"a", "b", "c", "d"}, 4)
                                       .Method<&WScript::Sleep>("Sleep", {"ms"})
                                       .Method<&WScript::Quit>("Quit", {"codigo"}, 1)
                                       .Method<&WScript::CreateObject>("CreateObject", {"progid"})
                                       .Property<&WScript::Arguments>("Arguments")
                                       .Property<&WScript::ScriptFullName>("ScriptFullName")
                                       .Property<&WScript::ScriptName>("ScriptName");
  return &tabla;
}

}  // namespace zuvi::host
