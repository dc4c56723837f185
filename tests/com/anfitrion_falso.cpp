#include "tests/com/anfitrion_falso.h"

#include <dispex.h>

#include <atomic>

#include "base/object.h"
#include "base/text.h"
#include "com/automation/class_factory.h"
#include "com/automation/com_object.h"
#include "com/automation/dispatch_object.h"
#include "com/automation/handles.h"

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
  switch (modo) {
    case Modo::ConTexto:
      if (exception) exception->bstrDescription = ::SysAllocString(kTextoError);
      if (exception) exception->scode = 0x80040E14;
      return DISP_E_EXCEPTION;
    case Modo::Diferido:
      if (exception) exception->pfnDeferredFillIn = &Rellena;
      return DISP_E_EXCEPTION;
    case Modo::SinTexto:
      if (exception) exception->scode = E_FAIL;
      return DISP_E_EXCEPTION;
    case Modo::SinMiembro:
      return DISP_E_MEMBERNOTFOUND;
    case Modo::TipoErroneo:
      return DISP_E_TYPEMISMATCH;
    case Modo::SinMemoria:
      return E_OUTOFMEMORY;
    case Modo::Desconectado:
      return RPC_E_DISCONNECTED;
    case Modo::OtroTipo:
      if (result) V_VT(result) = VT_BSTR, V_BSTR(result) = ::SysAllocString(L"otra cosa");
      return S_OK;
    case Modo::Nada:
      if (result) V_VT(result) = VT_DISPATCH, V_DISPATCH(result) = nullptr;
      return S_OK;
    case Modo::Vacio:
      break;
  }
  return S_OK;
}

class Falso final : public IDispatchEx {
 public:
  Falso(Tienda& tienda, Estilo estilo, Miembros miembros, const IID* tipo)
      : tienda_(tienda), estilo_(estilo), miembros_(std::move(miembros)), tipo_(tipo) {
    ++vivos;
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
    *count = Tipado() ? 1 : 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
    ComPtr<ITypeLib> library;
    if (!Tipado() || FAILED(::LoadTypeLibEx(L"" ZUVI_TLB_QUERY, REGKIND_NONE, library.put())))
      return E_NOTIMPL;
    return library->GetTypeInfoOfGuid(*tipo_, info);
  }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* id) override {
    if (estilo_ == Estilo::SoloEx) return E_NOTIMPL;
    return Find(names[0], id);
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT* result,
                      EXCEPINFO* exception, UINT*) override {
    if (id < 1 || static_cast<std::size_t>(id) > miembros_.size()) return DISP_E_MEMBERNOTFOUND;
    if (const auto modo = tienda_.Toca()) return Fallo(*modo, result, exception);
    try {
      const ComPtr<IDispatch> self(this);
      Llamada call(params, tienda_.Modulo());
      const Value value = miembros_[static_cast<std::size_t>(id) - 1].second(call);
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
  bool Tipado() const { return estilo_ == Estilo::ConTipos && tipo_; }
  HRESULT Find(const wchar_t* name, DISPID* id) const {
    const std::string wanted = Utf8De(name);
    for (std::size_t i = 0; i < miembros_.size(); ++i)
      if (IgualSinCaso(miembros_[i].first, wanted)) {
        *id = static_cast<DISPID>(i + 1);
        return S_OK;
      }
    *id = DISPID_UNKNOWN;
    return DISP_E_UNKNOWNNAME;
  }

  std::atomic<ULONG> references_{1};
  Tienda& tienda_;
  Estilo estilo_;
  Miembros miembros_;
  const IID* tipo_;
};

Accion Da(Value value) {
  return [value](Llamada&) { return value; };
}

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

Value Tienda::Objeto(Miembros miembros, const IID* tipo) {
  auto object = ComPtr<IDispatch>::Adopt(new Falso(*this, estilo_, std::move(miembros), tipo));
  return ObjectPtr(std::make_shared<ComObject>(std::move(object), modulo_));
}

ComPtr<IDispatch> Tienda::Crea(std::size_t clase) {
  static constexpr const IID* kTipos[] = {&__uuidof(::_AccesoDatos), &__uuidof(::_ControlProcesos),
                                          &__uuidof(::_VentanaProgreso), &__uuidof(::_DocumentoInventario)};
  Miembros miembros[] = {AccesoDatos(), Procesos(), Progreso(), Documento()};
  return Publish(AObjeto(Objeto(std::move(miembros[clase]), kTipos[clase])), modulo_);
}

ComPtr<IDispatch> Tienda::Ambiente() {
  const Value conexion = Objeto({});
  return Publish(AObjeto(Objeto({{"Conexion", Da(conexion)},
                                 {"UsuarioActual", Da("ANA")},
                                 {"RutaAplicacion", Da("C:\\Tienda")},
                                 {"EjecutaSQL",
                                  [this](Llamada& c) {
                                    hechos.push_back(c.Texto(0));
                                    return Value();
                                  }},
                                 {"DatoFechaA", Da(7)},
                                 {"DatoFechaB", Da(8)},
                                 {"DatoDocumento", Da("D")},
                                 {"ParametrosEstacion",
                                  [this](Llamada&) {
                                    return Filas({{{"almacen", 1}, {"lector", Null{}}}});
                                  }},
                                 {"ContenedorRutas", Da(ObjectPtr())}})),
                 modulo_);
}

Value Tienda::Filas(std::vector<std::map<std::string, Value>> filas) {
  struct Cursor {
    std::vector<std::map<std::string, Value>> filas;
    std::size_t en = 0;
  };
  auto cursor = std::make_shared<Cursor>(Cursor{std::move(filas)});
  const auto item = [this, cursor](Llamada& c) {
    const Value clave = c.Arg(0);
    if (cursor->en >= cursor->filas.size()) throw HostError("no hay registro actual");
    const auto& fila = cursor->filas[cursor->en];
    const bool ordinal = !std::holds_alternative<std::string>(clave.Get());
    const auto found = ordinal ? fila.begin() : fila.find(Minusculas(ATexto(clave)));
    if (found == fila.end()) throw HostError("no existe la columna " + ATexto(clave));
    return Objeto({{"Value", Da(found->second)}});
  };
  return Objeto({{"EOF", [cursor](Llamada&) { return Value(cursor->en >= cursor->filas.size()); }},
                 {"MoveNext",
                  [cursor](Llamada&) {
                    if (cursor->en++ >= cursor->filas.size()) throw HostError("fin del conjunto");
                    return Value();
                  }},
                 {"Fields", [this, item](Llamada&) {
                    return Objeto({{"Item", item}});
                  }}});
}

Value Tienda::Consulta(const std::string& sql) {
  hechos.push_back(sql);
  if (durante_consulta) durante_consulta();
  const auto tiene = [&](const char* text) { return sql.find(text) != std::string::npos; };
  if (tiene("FROM comppart")) {
    if (kit_de_si_mismo) return Filas({{{"componente", "K"}, {"cantidad", 1.0}, {"almacen", 1}}});
    std::vector<std::map<std::string, Value>> lineas{
        {{"componente", "C1"}, {"cantidad", 2.0}, {"almacen", 3}},
        {{"componente", "C2"}, {"cantidad", 1.0}, {"almacen", 4}}};
    lineas.resize(componentes);
    return Filas(std::move(lineas));
  }
  if (tiene("FROM componen")) return Filas({{{"minimo", 4.0}}});
  if (tiene("FROM prods"))
    return Filas({{{"articulo", "K"}, {"kit", std::int16_t{kit_de_si_mismo}}, {"costo", 2.5}}});
  if (tiene("COUNT( * )")) return Filas({{{"n", 2}}});
  if (tiene("oppart INNER JOIN"))
    return Filas({{{"articulo", "K"}, {"cantidad", 2.5}, {"almacen", 1}},
                  {{"articulo", "L"}, {"cantidad", 3.5}, {"almacen", 1}}});
  if (tiene("FROM oppart WHERE Op = ("))
    return Filas(
        {{{"articulo", "K"}, {"cantidad", 2.5}, {"precio", 10.0}, {"observ", "urge"}, {"id_entrada", 71}}});
  if (tiene("FROM op "))
    return Filas({{{"op", 12},
                   {"estado", estado},
                   {"ocupado", 0},
                   {"usuario", "ANA"},
                   {"almacen", "1"},
                   {"f_emision", Fecha::DesdeSerie(45000)},
                   {"fechaentrega", Null{}},
                   {"observ", Null{}},
                   {"automatico", 1},
                   {"ordencompra", Null{}}}});
  if (tiene("FROM turnos"))
    return Filas({{{"turno", "Matutino"},
                   {"entrada", "06:00"},
                   {"comida", "10:00"},
                   {"regcomida", "10:30"},
                   {"salida", "14:00"}},
                  {{"turno", "Nocturno"},
                   {"entrada", "22:00"},
                   {"comida", Null{}},
                   {"regcomida", Null{}},
                   {"salida", "06:00"}}});
  return Filas({});
}

Miembros Tienda::AccesoDatos() {
  const Accion nada = Da({});
  // In the order of the type library, whose dispids these are.
  return {{"Consulta", [this](Llamada& c) { return Consulta(c.Texto(0)); }},
          {"ValorNumerico", [](Llamada& c) { return Value(ANumero(c.Arg(0))); }},
          {"ValorTexto",
           [](Llamada& c) {
             const Value valor = c.Arg(0);
             return Value(valor.IsNull() ? std::string() : ATexto(valor));
           }},
          {"EstaVacio", [](Llamada& c) { return Value(Recorta(c.Texto(0)).empty()); }},
          {"TraeMensaje", Da("¿Cancelar?")},
          {"Mensaje", nada},
          {"Pregunta", [this](Llamada&) { return Value(confirma); }},
          {"SiguienteFolio",
           [](Llamada& c) {
             c.Deja(2, 55);
             return Value(900);
           }},
          {"ComponeFecha", Da(Fecha::DesdeSerie(45000))},
          {"FechaSQL", Da("'2026-03-05'")},
          {"TextoConCeros", [](Llamada& c) { return Value(c.Texto(0)); }},
          {"ExisteClave", Da(true)},
          {"UbicacionRestringida", Da(false)},
          {"NuevoConstructorSql", [this](Llamada&) { return Objeto(Constructor()); }},
          {"PreparaVentana",
           [this](Llamada& c) {
             Recibe("PreparaVentana", c.Arg(0));
             return Value();
           }},
          {"LiberaVentana",
           [this](Llamada& c) {
             Recibe("LiberaVentana", c.Arg(0));
             return Value();
           }},
          {"FormateaCampo", [](Llamada& c) { return AObjeto(c.Arg(0))->Call("Text"); }},
          {"FiltroMayusculas", [](Llamada& c) { return c.Arg(1); }},
          {"FiltroTecla", [](Llamada& c) { return c.Arg(2); }}};
}

void Tienda::Recibe(const std::string& momento, const Value& ventana) {
  if (con_ventana) con_ventana(momento, Publish(AObjeto(ventana), modulo_));
}

Miembros Tienda::Constructor() {
  const Accion nada = Da({});
  return {{"PonConexion", nada},
          {"PonRutas", nada},
          {"Limpia", nada},
          {"Tipo", nada},
          {"AgregaCampo", nada},
          {"Condicion", nada},
          {"Genera", nada},
          {"Ejecuta", [this](Llamada&) {
             hechos.push_back("Ejecuta");
             return Value();
           }}};
}

Miembros Tienda::Procesos() {
  return {{"IniciaProceso",
           [this](Llamada& c) {
             tipos.clear();
             for (std::size_t i = 0; i < c.Cuantos(); ++i) tipos.push_back(V_VT(&c.Crudo(i)));
             de_parte_de = Publish(AObjeto(c.Arg(1)), modulo_).As<IUnknown>(IID_IUnknown);
             c.Deja(5, veta);
             if (con_ventana) Recibe(c.Texto(0), c.Arg(1));
             return Value();
           }},
          {"ConsultaProceso",
           [this](Llamada& c) {
             c.Deja(0, veta);
             return Value();
           }},
          {"CierraProceso", [this](Llamada& c) {
             hechos.push_back("CierraProceso " + c.Texto(0));
             return Value();
           }}};
}

Miembros Tienda::Progreso() {
  const Accion nada = Da({});
  return {{"Inicia", nada}, {"Avanza", nada}, {"Cierra", nada}};
}

Miembros Tienda::Documento() {
  const Accion nada = Da({});
  const auto guarda = [](std::string& donde) {
    return [&donde](Llamada& c) {
      donde = c.Texto(0);
      return Value();
    };
  };
  return {{"PonAmbiente", nada},
          {"PonDatoDocumento", nada},
          {"PonDatoFecha", nada},
          {"PonFecha", nada},
          {"PonTipo", guarda(tipo_)},
          {"PonConcepto", guarda(concepto_)},
          {"PonOrden", nada},
          {"PonFolio", nada},
          {"PonUsuario", nada},
          {"PonAlmacen", guarda(almacen_)},
          {"PonArticulo", guarda(articulo_)},
          {"PonCantidad", guarda(cantidad_)},
          {"PonCosto", guarda(costo_)},
          {"AplicaMovimiento", [this](Llamada&) {
             hechos.push_back(tipo_ + " " + concepto_ + " " + almacen_ + " " + articulo_ + " " + cantidad_ +
                              " " + costo_);
             return Value(NumeroDeTexto(cantidad_) * NumeroDeTexto(costo_));
           }}};
}

}  // namespace zuvi::prueba
