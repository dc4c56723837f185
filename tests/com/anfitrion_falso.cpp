#include "tests/com/anfitrion_falso.h"

#include <dispex.h>

#include <atomic>
#include <functional>

#include "automation/class_factory.h"
#include "automation/com_object.h"
#include "automation/dispatch_object.h"
#include "automation/handles.h"
#include "base/object.h"
#include "base/text.h"

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
  Falso(Tienda& tienda, Estilo estilo, Respuestas responde, const IID* tipo)
      : tienda_(tienda), estilo_(estilo), responde_(std::move(responde)) {
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
      Llamada call(params, tienda_.Modulo());
      const Value value = responde_(nombre->second, call);
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
    *id = static_cast<DISPID>(std::hash<std::string>{}(Utf8De(name)) & 0x7FFFFFF) + 1;
    if (const HRESULT code = info_ ? info_->GetIDsOfNames(&name, 1, id) : S_OK; FAILED(code)) return code;
    nombres_[*id] = Utf8De(name);
    return S_OK;
  }

  std::atomic<ULONG> references_{1};
  Tienda& tienda_;
  Estilo estilo_;
  Respuestas responde_;
  ComPtr<ITypeInfo> info_;
  std::map<DISPID, std::string> nombres_;
};

}  // namespace

long Tienda::Vivos() { return vivos; }

CLSID Tienda::ClaseDe(std::size_t clase) {
  return {0x3f1a5c70, 0x91d2, 0x4be0, {0x8a, 0x10, 0x55, 0x0d, 0x4e, 0x2b, 0x70, static_cast<BYTE>(clase)}};
}

Tienda::Tienda(Estilo estilo) : estilo_(estilo) {
  for (std::size_t clase = 0; clase < std::size(kClases); ++clase) {
    const auto factory = ComPtr<IClassFactory>::Adopt(
        new ClassFactory(modulo_, [this, clase] { return Crea(clase).As<IUnknown>(IID_IUnknown); }));
    DWORD cookie = 0;
    ::CoRegisterClassObject(ClaseDe(clase), factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie);
    registradas_.push_back(cookie);
  }
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

Value Tienda::Objeto(Respuestas responde, const IID* tipo) {
  auto object = ComPtr<IDispatch>::Adopt(new Falso(*this, estilo_, std::move(responde), tipo));
  return ObjectPtr(std::make_shared<ComObject>(std::move(object), modulo_));
}

ComPtr<IDispatch> Tienda::Crea(std::size_t clase) {
  using Responde = Value (Tienda::*)(const std::string&, Llamada&);
  static constexpr std::pair<Responde, const IID*> kQuien[] = {
      {&Tienda::AccesoDatos, &__uuidof(::_AccesoDatos)},
      {&Tienda::Procesos, &__uuidof(::_ControlProcesos)},
      {&Tienda::Nada, &__uuidof(::_VentanaProgreso)},
      {&Tienda::Documento, &__uuidof(::_DocumentoInventario)}};
  const auto [responde, tipo] = kQuien[clase];
  return Publish(AObjeto(Objeto(std::bind_front(responde, this), tipo)), modulo_);
}

ComPtr<IDispatch> Tienda::Ambiente() {
  const std::map<std::string, Value> datos = {{"Conexion", Objeto(std::bind_front(&Tienda::Nada, this))},
                                              {"UsuarioActual", "ANA"},
                                              {"RutaAplicacion", "C:\\Tienda"},
                                              {"DatoFechaA", 7},
                                              {"DatoFechaB", 8},
                                              {"DatoDocumento", "D"},
                                              {"ContenedorRutas", ObjectPtr()}};
  return Publish(AObjeto(Objeto(
                     [this, datos](const std::string& nombre, Llamada& c) {
                       if (nombre == "EjecutaSQL") Ejecuta(c);
                       if (nombre == "ParametrosEstacion") return Filas({{"almacen", 1, "lector", Null{}}});
                       const auto dato = datos.find(nombre);
                       return dato == datos.end() ? Value() : dato->second;
                     },
                     &__uuidof(::Ambiente))),
                 modulo_);
}

void Tienda::Ejecuta(Llamada& c) {
  hechos.push_back(c.Texto(0));
  tipos.clear();
  for (std::size_t i = 0; i < c.Cuantos(); ++i) tipos.push_back(V_VT(&c.Crudo(i)));
  // What it leaves for an answer nobody can convert.
  if (tipos.size() > 1) V_VT(V_VARIANTREF(&c.Crudo(1))) = VT_ERROR;
}

Value Tienda::Filas(std::vector<Renglon> filas) {
  const auto en = std::make_shared<std::size_t>(0);
  const auto item = [this, filas, en](const std::string&, Llamada& c) {
    const Value clave = c.Arg(0);
    if (*en >= filas.size()) throw HostError("no hay registro actual");
    const Renglon& fila = filas[*en];
    auto campo = fila.begin();
    if (std::holds_alternative<std::string>(clave.Get()))
      for (const std::string columna = Minusculas(ATexto(clave)); *campo != Value(columna); campo += 2)
        if (fila.end() - campo == 2) throw HostError("no existe la columna " + columna);
    return Objeto([valor = campo[1]](const std::string&, Llamada&) { return valor; });
  };
  return Objeto([this, item, en, cuantas = filas.size()](const std::string& nombre, Llamada&) {
    if (nombre == "EOF") return Value(*en >= cuantas);
    if (nombre == "Fields") return Objeto(item);
    if ((*en)++ >= cuantas) throw HostError("fin del conjunto");
    return Value();
  });
}

Value Tienda::Consulta(const std::string& sql) {
  hechos.push_back(sql);
  if (durante_consulta) durante_consulta();
  const auto tiene = [&](const char* text) { return sql.find(text) != std::string::npos; };
  if (tiene("FROM comppart")) {
    if (kits_dentro > 0) return Filas({{"componente", "K", "cantidad", 1.0, "almacen", 1}});
    return Filas({{"componente", "C1", "cantidad", 2.0, "almacen", 3},
                  {"componente", "C2", "cantidad", 1.0, "almacen", 4}});
  }
  if (tiene("FROM componen")) return Filas({{"minimo", 4.0}});
  if (tiene("FROM prods")) {
    const std::int16_t es_kit = kits_dentro > 0;
    kits_dentro -= es_kit;
    return Filas({{"articulo", "K", "kit", es_kit, "costo", 2.5}});
  }
  if (tiene("COUNT( * )")) return Filas({{"n", 2}});
  if (tiene("FROM oppart WHERE Op = ("))
    return Filas({{"articulo", "K", "cantidad", 2.5, "precio", 10.0, "observ", "urge", "id_entrada", 71}});
  if (tiene("FROM op "))
    return Filas({{"op",           12,     "estado",  estado, "ocupado",    0,
                   "usuario",      "ANA",  "almacen", "1",    "f_emision",  Fecha::DesdeSerie(45000),
                   "fechaentrega", Null{}, "observ",  Null{}, "automatico", 1,
                   "ordencompra",  Null{}}});
  if (tiene("FROM turnos"))
    return Filas({{"turno", "Matutino", "entrada", "06:00", "comida", "10:00", "regcomida", "10:30", "salida",
                   "14:00"},
                  {"turno", "Nocturno", "entrada", "22:00", "comida", Null{}, "regcomida", Null{}, "salida",
                   "06:00"}});
  return Filas({});
}

Value Tienda::Nada(const std::string&, Llamada&) { return {}; }

Value Tienda::AccesoDatos(const std::string& nombre, Llamada& c) {
  static const std::map<std::string, Value> kFijas = {{"TraeMensaje", "¿Cancelar?"},
                                                      {"ComponeFecha", Fecha::DesdeSerie(45000)},
                                                      {"FechaSQL", "'2026-03-05'"},
                                                      {"ExisteClave", true},
                                                      {"UbicacionRestringida", false}};
  if (const auto fija = kFijas.find(nombre); fija != kFijas.end()) return fija->second;
  if (nombre == "Consulta") return Consulta(c.Texto(0));
  if (nombre == "ValorNumerico") return ANumero(c.Arg(0));
  if (nombre == "ValorTexto") return c.Arg(0).IsNull() ? std::string() : c.Texto(0);
  if (nombre == "EstaVacio") return Recorta(c.Texto(0)).empty();
  if (nombre == "Pregunta") return confirma;
  if (nombre == "SiguienteFolio") return c.Deja(2, 55), Value(900);
  if (nombre == "TextoConCeros") return c.Texto(0);
  if (nombre == "NuevoConstructorSql")
    return Objeto([this](const std::string& paso, Llamada&) {
      if (paso == "Ejecuta") hechos.push_back(paso);
      return Value();
    });
  if (nombre == "PreparaVentana" || nombre == "LiberaVentana") Recibe(nombre, c.Arg(0));
  if (nombre == "FormateaCampo") return AObjeto(c.Arg(0))->Call("Text");
  if (nombre == "FiltroMayusculas") return c.Arg(1);
  if (nombre == "FiltroTecla") return c.Arg(2);
  return {};
}

void Tienda::Recibe(const std::string& momento, const Value& ventana) {
  if (con_ventana) con_ventana(momento, Publish(AObjeto(ventana), modulo_));
}

Value Tienda::Procesos(const std::string& nombre, Llamada& c) {
  if (nombre == "IniciaProceso") {
    tipos.clear();
    for (std::size_t i = 0; i < c.Cuantos(); ++i) tipos.push_back(V_VT(&c.Crudo(i)));
    de_parte_de = Publish(AObjeto(c.Arg(1)), modulo_).As<IUnknown>(IID_IUnknown).get();
    c.Deja(5, veta);
    Recibe(c.Texto(0), c.Arg(1));
  }
  if (nombre == "ConsultaProceso") c.Deja(0, veta);
  if (nombre == "CierraProceso") hechos.push_back("CierraProceso " + c.Texto(0));
  return {};
}

Value Tienda::Documento(const std::string& nombre, Llamada& c) {
  auto& d = documento_;
  if (nombre != "AplicaMovimiento") {
    if (!c.Arg(0).IsObject()) d[nombre] = c.Texto(0);
    return {};
  }
  hechos.push_back(d["PonTipo"] + " " + d["PonConcepto"] + " " + d["PonAlmacen"] + " " + d["PonArticulo"] +
                   " " + d["PonCantidad"] + " " + d["PonCosto"]);
  // Where there is room for it, its numbers have a letter.
  if (V_VT(&c.Crudo(0)) == (VT_BYREF | VT_VARIANT)) c.Deja(0, "M-12");
  return NumeroDeTexto(d["PonCantidad"]) * NumeroDeTexto(d["PonCosto"]);
}

}  // namespace zuvi::prueba
