#include "tests/com/anfitrion_falso.h"

#include <dispex.h>

#include <atomic>
#include <functional>

#include "automation/class_factory.h"
#include "automation/com_object.h"
#include "automation/dispatch_object.h"
#include "automation/handles.h"
#include "automation/variants.h"
#include "base/object.h"
#include "base/text.h"
#include "tests/support/anfitrion_memoria.h"

// After the system's headers.
#include "ZuviQuery.h"

namespace zuvi::prueba {
namespace {

std::atomic<long> vivos{0};

HRESULT WINAPI Rellena(EXCEPINFO* info) {
  info->bstrDescription = ::SysAllocString(kTextoError);
  return S_OK;
}

HRESULT Fallo(Modo modo, VARIANT* result, EXCEPINFO* exception) {
  static const std::map<Modo, HRESULT> kCodigos = {{Modo::SinMiembro, DISP_E_MEMBERNOTFOUND},
                                                   {Modo::TipoErroneo, DISP_E_TYPEMISMATCH},
                                                   {Modo::SinMemoria, E_OUTOFMEMORY},
                                                   {Modo::Desconectado, RPC_E_DISCONNECTED}};
  if (const auto codigo = kCodigos.find(modo); codigo != kCodigos.end()) return codigo->second;
  if (modo >= Modo::Vacio) {
    if (result && modo == Modo::OtroTipo)
      V_VT(result) = VT_BSTR, V_BSTR(result) = ::SysAllocString(L"otra cosa");
    if (result && modo == Modo::Nada) V_VT(result) = VT_DISPATCH, V_DISPATCH(result) = nullptr;
    return S_OK;
  }
  if (exception && modo == Modo::ConTexto) Rellena(exception);
  if (exception && modo == Modo::Diferido)
    exception->pfnDeferredFillIn = &Rellena;
  else if (exception)
    exception->scode = E_FAIL;
  return DISP_E_EXCEPTION;
}

class Falso final : public IDispatchEx {
 public:
  Falso(Tienda& tienda, Estilo estilo, ObjectPtr objeto, const IID* tipo)
      : tienda_(tienda), estilo_(estilo), objeto_(std::move(objeto)) {
    ++vivos;
    if (estilo != Estilo::ConTipos || !tipo) return;
    for (const wchar_t* file : {L"" ZUVI_TLB_QUERY, L"" ZUVI_TLB_FOLDER "ZuviEnviroment.tlb"}) {
      ComPtr<ITypeLib> library;
      if (SUCCEEDED(::LoadTypeLibEx(file, REGKIND_NONE, library.put())) &&
          SUCCEEDED(library->GetTypeInfoOfGuid(*tipo, info_.put())))
        return;
    }
  }

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch ||
                       (estilo_ == Estilo::SoloEx && iid == __uuidof(IDispatchEx));
    *out = known ? this : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    *count = info_ ? 1 : 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
    *info = ComPtr<ITypeInfo>(info_).detach();
    return info_ ? S_OK : E_NOTIMPL;
  }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* id) override {
    if (estilo_ == Estilo::SoloEx) return E_NOTIMPL;
    return Find(names[0], id);
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT* result,
                      EXCEPINFO* exception, UINT*) override {
    const auto nombre = nombres_.find(id);
    if (nombre == nombres_.end()) return DISP_E_MEMBERNOTFOUND;
    if (const auto modo = tienda_.Toca()) return Fallo(*modo, result, exception);
    try {
      const ComPtr<IDispatch> self(this);
      const Value value = tienda_.Atiende(*objeto_, nombre->second, *params);
      if (result) ToVariant(value, tienda_.Modulo(), *result);
      return S_OK;
    } catch (...) {
      FillExcepInfo(CurrentError(), "prueba", exception);
      return DISP_E_EXCEPTION;
    }
  }
  STDMETHODIMP GetDispID(BSTR name, DWORD, DISPID* id) override { return Find(name, id); }
  STDMETHODIMP InvokeEx(DISPID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, IServiceProvider*) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP DeleteMemberByName(BSTR, DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP DeleteMemberByDispID(DISPID) override { return E_NOTIMPL; }
  STDMETHODIMP GetMemberProperties(DISPID, DWORD, DWORD*) override { return E_NOTIMPL; }
  STDMETHODIMP GetMemberName(DISPID, BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP GetNextDispID(DWORD, DISPID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP GetNameSpaceParent(IUnknown**) override { return E_NOTIMPL; }

 private:
  ~Falso() { --vivos; }
  /// The type library's id where there is one, else every name is a member.
  HRESULT Find(wchar_t* name, DISPID* id) {
    *id = static_cast<DISPID>(std::hash<std::string>{}(Narrow(name)) & 0x7FFFFFF) + 1;
    if (const HRESULT code = info_ ? info_->GetIDsOfNames(&name, 1, id) : S_OK; FAILED(code)) return code;
    nombres_[*id] = Narrow(name);
    return S_OK;
  }

  std::atomic<ULONG> references_{1};
  Tienda& tienda_;
  Estilo estilo_;
  ObjectPtr objeto_;
  ComPtr<ITypeInfo> info_;
  std::map<DISPID, std::string> nombres_;
};

}  // namespace

long Tienda::Vivos() { return vivos; }

CLSID Tienda::ClaseDe(std::size_t clase) {
  return {0x3f1a5c70, 0x91d2, 0x4be0, {0x8a, 0x10, 0x55, 0x0d, 0x4e, 0x2b, 0x70, static_cast<BYTE>(clase)}};
}

Tienda::Tienda(Estilo estilo) : estilo_(estilo) {
  static const IID* const kTipos[] = {&__uuidof(::_AccesoDatos), &__uuidof(::_ControlProcesos),
                                      &__uuidof(::_VentanaProgreso), &__uuidof(::_DocumentoInventario)};
  for (std::size_t clase = 0; clase < std::size(kClases); ++clase) {
    const auto factory = ComPtr<IClassFactory>::Adopt(new ClassFactory(modulo_, [this, clase] {
      const Value nuevo = Objeto(pruebas::FabricaMemoria(mundo).Crea(Narrow(kClases[clase])), kTipos[clase]);
      return Publish(ToObject(nuevo), modulo_).As<IUnknown>(IID_IUnknown);
    }));
    DWORD cookie = 0;
    ::CoRegisterClassObject(ClaseDe(clase), factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie);
    registradas_.push_back(cookie);
  }
  mundo.proceso = [](PeticionProceso& p) { p.bandera = false; };
  mundo.tablas = {
      {"SELECT * FROM componen WHERE articulo =  'K'", {{{"Minimo", 4.0}}}},
      {"SELECT * FROM comppart WHERE articulo =  'K'",
       {{{"Componente", "C1"}, {"Cantidad", 2.0}, {"Almacen", 3}},
        {{"Componente", "C2"}, {"Cantidad", 1.0}, {"Almacen", 4}}}},
      {"SELECT COUNT( * ) FROM oppart WHERE op = 12", {{{"n", 1}}}},
      {"SELECT COUNT( * ) FROM turnos", {{{"n", 0}}}},
      {"SELECT * FROM oppart WHERE Op = (12)",
       {{{"Articulo", "K"}, {"Cantidad", 2.5}, {"Precio", 10.0}, {"Observ", "urge"}, {"id_entrada", 71}}}}};
  for (const char* articulo : {"C1", "C2"}) PonCosto(articulo, 0);
  for (const char* sql : {"SELECT * FROM op WHERE op = 12", "SELECT * FROM op WHERE (((op) = 12))"})
    mundo.tablas[sql] = {{{"op", 12},
                          {"estado", "PE"},
                          {"ocupado", 0},
                          {"usuario", "ANA"},
                          {"almacen", "1"},
                          {"f_emision", Date::FromSerial(45000)},
                          {"fechaEntrega", Null{}},
                          {"observ", Null{}},
                          {"automatico", 1},
                          {"ordencompra", Null{}}}};
}

void Tienda::PonCosto(const std::string& articulo, std::int16_t es_kit) {
  for (const char* columnas : {"kit, costo", "articulo, kit, costo"})
    mundo.tablas[std::string("SELECT ") + columnas + " FROM prods WHERE articulo = '" + articulo + "'"] = {
        {{"articulo", articulo}, {"kit", es_kit}, {"costo", 2.5}}};
}

Tienda::~Tienda() {
  for (const DWORD cookie : registradas_) ::CoRevokeClassObject(cookie);
}

std::optional<Modo> Tienda::Toca() {
  ++llamadas;
  if (llamadas > limite) return Modo::ConTexto;
  if (nth_ != 0 && (llamadas == nth_ || (siempre_ && llamadas > nth_))) return modo_;
  return std::nullopt;
}

Value Tienda::Objeto(ObjectPtr objeto, const IID* tipo) {
  auto publicado = ComPtr<IDispatch>::Adopt(new Falso(*this, estilo_, std::move(objeto), tipo));
  return ObjectPtr(std::make_shared<ComObject>(std::move(publicado), modulo_));
}

ComPtr<IDispatch> Tienda::Ambiente() {
  return Publish(ToObject(Objeto(pruebas::AmbienteMemoria(mundo), &__uuidof(::Ambiente))), modulo_);
}

Value Tienda::Atiende(Object& objeto, const std::string& nombre, const DISPPARAMS& params) {
  std::vector<VARIANT*> crudos;
  std::vector<Value> args;
  for (UINT i = params.cArgs; i-- > 0;) {
    crudos.push_back(&params.rgvarg[i]);
    args.push_back(FromVariant(params.rgvarg[i], modulo_));
  }
  const bool inicia = nombre == "IniciaProceso", ejecuta = nombre == "EjecutaSQL";
  if (inicia || ejecuta) {
    tipos.clear();
    for (const VARIANT* crudo : crudos) tipos.push_back(V_VT(crudo));
  }
  if (inicia || nombre == "PreparaVentana" || nombre == "LiberaVentana") {
    const auto ventana = Publish(ToObject(args.at(inicia)), modulo_);
    if (inicia) de_parte_de = ventana.As<IUnknown>(IID_IUnknown).get();
    if (con_ventana) con_ventana(inicia ? ToText(args[0]) : nombre, ventana);
  }
  const std::vector<Value> antes = args;
  Value resultado = objeto.Call(nombre, args, kAllByRef);
  // A document's number has letters, where there is room for them.
  for (std::size_t i = 0; i < args.size(); ++i)
    if (args[i] != antes[i] && V_VT(crudos[i]) != (VT_BYREF | VT_I4)) WriteBack(args[i], *crudos[i], modulo_);
  // What a statement leaves for an answer nobody can convert.
  if (ejecuta && crudos.size() > 1) V_VT(V_VARIANTREF(crudos[1])) = VT_ERROR;
  const ObjectPtr dado = resultado.IsObject() ? ToObject(resultado) : nullptr;
  return dado && !dado->Foreign() ? Objeto(dado) : resultado;
}

std::vector<std::string> Tienda::Hechos() const {
  std::vector<std::string> hechos;
  std::string movimiento;
  for (const std::string& linea : mundo.bitacora) {
    const auto tras = [&](const std::string& que) {
      const auto donde = linea.find(que + "(");
      return donde == std::string::npos
                 ? ""
                 : linea.substr(donde + que.size() + 1, linea.rfind(')') - donde - que.size() - 1);
    };
    if (const auto articulo = tras("PonArticulo"); !articulo.empty()) movimiento = articulo;
    for (const char* que : {"PonCantidad", "PonCosto"})
      if (const auto cuanto = tras(que); !cuanto.empty()) movimiento += " " + cuanto;
    if (!tras("AplicaMovimiento").empty()) hechos.push_back(movimiento);
    for (const char* que : {"Consulta(", "EjecutaSQL(", "CierraProceso("})
      if (linea.starts_with(que)) hechos.push_back(linea);
  }
  return hechos;
}

}  // namespace zuvi::prueba
