#include "host/win32/recordset_indeciso.h"

#include <dispex.h>
#include <algorithm>
#include <array>

#include "automation/published_object.h"
#include "automation/variants.h"
#include "base/text.h"

namespace zuvi::host {
namespace {

constexpr WORD kPone = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;

/// Members that both know, by ADO's numbers. Programs are bound to those, so they never change.
struct Miembro {
  const char* nombre;
  DISPID id;
};
constexpr DISPID kConexion = 0x3E9, kCursor = 0x3ED, kBloqueo = 0x3F0, kFuente = 0x3F3, kAbre = 0x3FE,
                 kLugar = 0x41B, kEstado = 0x41E;
constexpr std::array kMiembros{Miembro{"Fields", 0},
                               Miembro{"ActiveConnection", kConexion},
                               Miembro{"BOF", 0x3EA},
                               Miembro{"CursorType", kCursor},
                               Miembro{"EOF", 0x3EE},
                               Miembro{"LockType", kBloqueo},
                               Miembro{"RecordCount", 0x3F2},
                               Miembro{"Source", kFuente},
                               Miembro{"Close", 0x3F6},
                               Miembro{"MoveNext", 0x3FA},
                               Miembro{"MovePrevious", 0x3FB},
                               Miembro{"MoveFirst", 0x3FC},
                               Miembro{"MoveLast", 0x3FD},
                               Miembro{"Open", kAbre},
                               Miembro{"CursorLocation", kLugar},
                               Miembro{"State", kEstado}};

/// The properties that are numbers, what they are when nobody has set them, and the range that is kept here;
/// what lies outside is the system's to refuse.
struct Numero {
  DISPID id;
  LONG inicial, menor, mayor;
};
constexpr std::array kNumeros{Numero{kCursor, 0, 0, 3}, Numero{kBloqueo, 1, 1, 4}, Numero{kLugar, 2, 2, 3}};

const Numero* NumeroDe(DISPID id) {
  const auto numero = std::ranges::find(kNumeros, id, &Numero::id);
  return numero == kNumeros.end() ? nullptr : &*numero;
}

/// Asked of every object by those who create and hold objects for others: no sign of ADO being meant.
const std::array kDeRutina{
    IID_IMarshal,
    IID_IStdMarshalInfo,
    IID_IExternalConnection,
    __uuidof(IDispatchEx),
    IID_ISupportErrorInfo,
    IID_IProvideClassInfo,
    IID_IProvideClassInfo2,
    IID_IRunnableObject,
    IID_IPersistStream,
    IID_IPersistStreamInit,
    IID_IPersistStorage,
    IID_IPersistPropertyBag,
    kIidZuviIdentity,
    IID{0xFC4801A3, 0x2BA9, 0x11CF, {0xA2, 0x29, 0x00, 0xAA, 0x00, 0x3D, 0x73, 0x52}},  // IObjectWithSite
    IID{0x94EA2B94, 0xE9CC, 0x49E0, {0xC0, 0xFF, 0xEE, 0x64, 0xCA, 0x8F, 0x5B, 0x90}},  // IAgileObject
    IID{0xECC8691B, 0xC1DB, 0x4DC0, {0x85, 0x5E, 0x65, 0xF6, 0xC5, 0x51, 0xAF, 0x49}},  // INoMarshal
    IID{0x0000001B, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}},  // identity
    IID{0x00000038, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}},  // weak references
    IID{0x00000040, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}},  // IFastRundown
    IID{0xAF86E2E0, 0xB12D, 0x4C6A, {0x9C, 0x5A, 0xD7, 0xAA, 0x65, 0x10, 0x1E, 0x90}},  // IInspectable
    IID{0xC3FCC19E, 0xA970, 0x11D2, {0x8B, 0x5A, 0x00, 0xA0, 0xC9, 0xB7, 0xC9, 0xC4}},  // IManagedObject
};

const Miembro* MiembroDe(const wchar_t* nombre) {
  const std::string texto = Narrow(nombre);
  const auto hallado =
      std::ranges::find_if(kMiembros, [&](const Miembro& m) { return EqualsIgnoringCase(m.nombre, texto); });
  return hallado == kMiembros.end() ? nullptr : &*hallado;
}

/// The member of a record set of ours; null for ADO's others.
const Member* MiembroPropio(const MemoryRecordset& propio, DISPID id) {
  const auto hallado = std::ranges::find(kMiembros, id, &Miembro::id);
  return hallado == kMiembros.end() ? nullptr : propio.Members()->ByName(hallado->nombre);
}

/// The object in a variant, whatever way it travels; null where there is none.
IUnknown* ObjetoEn(const VARIANT& variante) {
  const VARIANT& v = Followed(variante);
  switch (V_VT(&v)) {
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return V_UNKNOWN(&v);
    case VT_BYREF | VT_DISPATCH:
    case VT_BYREF | VT_UNKNOWN:
      return V_UNKNOWNREF(&v) ? *V_UNKNOWNREF(&v) : nullptr;
    default:
      return nullptr;
  }
}

/// An argument that names no connection: left out, Empty, Null, Nothing.
bool NoDiceNada(const VARIANT& variante) {
  const VARIANT& v = Followed(variante);
  const VARTYPE tipo = V_VT(&v) & ~VT_BYREF;
  if (tipo == VT_DISPATCH || tipo == VT_UNKNOWN) return !ObjetoEn(v);
  return tipo == VT_EMPTY || tipo == VT_NULL || IsMissing(v);
}

/// The argument of `Open` that is, or the value put that becomes, the connection; null for none.
const VARIANT* ConexionEn(DISPID miembro, WORD modo, const DISPPARAMS& dados) {
  if (miembro == kConexion && (modo & kPone)) return dados.cArgs > 0 ? &dados.rgvarg[0] : nullptr;
  if (miembro != kAbre) return nullptr;
  constexpr UINT kLugarDeLaConexion = 1;
  const UINT con_nombre = std::min(dados.cNamedArgs, dados.cArgs);
  for (UINT i = 0; i < con_nombre; ++i)
    if (dados.rgdispidNamedArgs[i] == DISPID{kLugarDeLaConexion}) return &dados.rgvarg[i];
  if (dados.cArgs - con_nombre <= kLugarDeLaConexion) return nullptr;
  return &dados.rgvarg[dados.cArgs - 1 - kLugarDeLaConexion];
}

}  // namespace

STDMETHODIMP RecordsetIndeciso::QueryInterface(REFIID iid, void** salida) noexcept {
  if (!salida) return E_POINTER;
  *salida = nullptr;
  if (iid == IID_IUnknown || iid == IID_IDispatch) {
    *salida = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  const ComPtr<IDispatch> yo(static_cast<IDispatch*>(this));
  try {
    // To the host itself it is the record set behind.
    if (propio_ && iid == kIidZuviIdentity) return Publish(propio_, servidor_)->QueryInterface(iid, salida);
    if (propio_) return E_NOINTERFACE;
    const bool rutina = std::ranges::find(kDeRutina, iid) != kDeRutina.end();
    if (rutina && !sistema_) return E_NOINTERFACE;
    if (FAILED(PideSistema(nullptr))) return E_NOINTERFACE;
    const HRESULT dada = sistema_->QueryInterface(iid, salida);
    if (SUCCEEDED(dada) && !rutina) entregado_ = true;
    return dada;
  } catch (...) {
    return CurrentError().code;
  }
}

STDMETHODIMP RecordsetIndeciso::GetTypeInfoCount(UINT* cuantas) noexcept {
  if (!cuantas) return E_POINTER;
  *cuantas = 0;
  // Its numbers are those of the system's type.
  return propio_ || FAILED(PideSistema(nullptr)) ? S_OK : sistema_->GetTypeInfoCount(cuantas);
}

STDMETHODIMP RecordsetIndeciso::GetTypeInfo(UINT indice, LCID region, ITypeInfo** info) noexcept {
  if (!info) return E_POINTER;
  *info = nullptr;
  return propio_ || FAILED(PideSistema(nullptr)) ? E_NOTIMPL : sistema_->GetTypeInfo(indice, region, info);
}

STDMETHODIMP RecordsetIndeciso::GetIDsOfNames(REFIID iid, LPOLESTR* nombres, UINT cuantos, LCID region,
                                              DISPID* ids) noexcept {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!nombres || !ids || cuantos == 0) return E_INVALIDARG;
  const ComPtr<IDispatch> yo(static_cast<IDispatch*>(this));
  try {
    std::fill_n(ids, cuantos, DISPID_UNKNOWN);
    const Miembro* const miembro = MiembroDe(nombres[0]);
    if (!propio_ && (!miembro || sistema_)) {
      const HRESULT sistema = PideSistema(nullptr);
      return FAILED(sistema) ? sistema : sistema_->GetIDsOfNames(iid, nombres, cuantos, region, ids);
    }
    if (!miembro) return DISP_E_UNKNOWNNAME;
    ids[0] = miembro->id;
    return IdsOfParameters(MiembroPropio(MemoryRecordset(), miembro->id), nombres, cuantos, ids);
  } catch (...) {
    return CurrentError().code;
  }
}

STDMETHODIMP RecordsetIndeciso::Invoke(DISPID miembro, REFIID iid, LCID region, WORD modo,
                                       DISPPARAMS* argumentos, VARIANT* resultado, EXCEPINFO* excepcion,
                                       UINT* malo) noexcept {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!argumentos) return E_INVALIDARG;
  // The callee may let go of the last reference to this object.
  const ComPtr<IDispatch> yo(static_cast<IDispatch*>(this));
  const ServerHold en_curso(servidor_, HoldKind::Method);
  try {
    const Llamada llamada{miembro, modo, argumentos};
    switch (Responde(llamada)) {
      case Quien::Nadie:
        if (!(modo & kPone)) return Lee(llamada, resultado) ? S_OK : E_UNEXPECTED;
        Guarda(llamada);
        return S_OK;
      case Quien::Propio: {
        HazPropio();
        const std::shared_ptr<MemoryRecordset> abierto = propio_;
        const Member* const propio = MiembroPropio(*abierto, miembro);
        if (!propio) return DISP_E_MEMBERNOTFOUND;
        const HRESULT hecho =
            InvokeOn(*abierto, servidor_, {propio->id, modo, argumentos, resultado, excepcion, malo});
        if (SUCCEEDED(hecho)) Guarda(llamada);
        return hecho;
      }
      case Quien::Sistema:
        break;
    }
    if (const HRESULT falla = PideSistema(excepcion); FAILED(falla)) return falla;
    propio_.reset();
    const ComPtr<IDispatch> sistema = sistema_;
    const HRESULT hecho = sistema->Invoke(miembro, iid, region, modo, argumentos, resultado, excepcion, malo);
    if (SUCCEEDED(hecho)) Guarda(llamada);
    return hecho;
  } catch (...) {
    return CurrentError().code;
  }
}

RecordsetIndeciso::Quien RecordsetIndeciso::Responde(const Llamada& llamada) {
  if (entregado_) return Quien::Sistema;
  const VARIANT* const conexion = ConexionEn(llamada.miembro, llamada.modo, *llamada.argumentos);
  if (conexion && !NoDiceNada(*conexion)) {
    // An open one refuses to be opened again, whoever it is.
    if (EsNuestra(*conexion)) return AbiertoEnElSistema() ? Quien::Sistema : Quien::Propio;
    return propio_ && propio_->State() != 0 ? Quien::Propio : Quien::Sistema;
  }
  if (propio_) return Quien::Propio;
  if (sistema_) return Quien::Sistema;
  const bool aqui = llamada.modo & kPone ? Guarda(llamada) : Lee(llamada, nullptr);
  return aqui ? Quien::Nadie : Quien::Sistema;
}

bool RecordsetIndeciso::EsNuestra(const VARIANT& conexion) const {
  IUnknown* const objeto = ObjetoEn(conexion);
  if (!objeto) return false;
  const auto por_nombre = ComPtr<IUnknown>(objeto).As<IDispatch>(IID_IDispatch);
  return std::dynamic_pointer_cast<BaseDatos>(ObjectOf(por_nombre.get(), servidor_)) != nullptr;
}

bool RecordsetIndeciso::AbiertoEnElSistema() const {
  if (propio_ || !sistema_) return false;
  DISPPARAMS nada{};
  UniqueVariant estado;
  return SUCCEEDED(sistema_->Invoke(kEstado, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &nada,
                                    &estado.get(), nullptr, nullptr)) &&
         V_VT(&estado.get()) == VT_I4 && V_I4(&estado.get()) != 0;
}

std::optional<LONG>* RecordsetIndeciso::NumeroGuardado(DISPID miembro) {
  if (miembro == kCursor) return &puesto_.cursor;
  if (miembro == kBloqueo) return &puesto_.bloqueo;
  return miembro == kLugar ? &puesto_.lugar : nullptr;
}

bool RecordsetIndeciso::Guarda(const Llamada& llamada) {
  if (!(llamada.modo & kPone) || llamada.argumentos->cArgs != 1) return false;
  const VARIANT& valor = Followed(llamada.argumentos->rgvarg[0]);
  if (llamada.miembro == kFuente && V_VT(&valor) == VT_BSTR) {
    puesto_.fuente = FromBstr(V_BSTR(&valor));
    return true;
  }
  const Numero* const numero = NumeroDe(llamada.miembro);
  if (!numero || (V_VT(&valor) != VT_I2 && V_VT(&valor) != VT_I4)) return false;
  const LONG n = V_VT(&valor) == VT_I2 ? V_I2(&valor) : V_I4(&valor);
  if (n < numero->menor || n > numero->mayor) return false;
  *NumeroGuardado(llamada.miembro) = n;
  return true;
}

bool RecordsetIndeciso::Lee(const Llamada& llamada, VARIANT* resultado) const {
  const Numero* const numero = NumeroDe(llamada.miembro);
  const bool estado = llamada.miembro == kEstado;
  if (llamada.argumentos->cArgs != 0 || (!numero && !estado)) return false;
  if (!resultado) return true;
  const auto* const guardado =
      numero ? const_cast<RecordsetIndeciso*>(this)->NumeroGuardado(numero->id) : nullptr;
  V_VT(resultado) = VT_I4;
  V_I4(resultado) = guardado ? guardado->value_or(numero->inicial) : 0;
  return true;
}

void RecordsetIndeciso::HazPropio() {
  if (propio_) return;
  propio_ = std::make_shared<MemoryRecordset>();
  al_dia_ = false;  // what is set from now on the system's object does not see
  if (puesto_.cursor) propio_->PonCursorType(*puesto_.cursor);
  if (puesto_.bloqueo) propio_->PonLockType(*puesto_.bloqueo);
  if (puesto_.lugar) propio_->PonCursorLocation(*puesto_.lugar);
  if (puesto_.fuente) propio_->PonSource(*puesto_.fuente);
}

HRESULT RecordsetIndeciso::PideSistema(EXCEPINFO* excepcion) {
  if (sistema_ && al_dia_) return S_OK;
  ComPtr<IDispatch> sistema = sistema_;
  if (!sistema)
    if (const HRESULT creado = clase_.CreaDelSistema(nullptr, IID_IDispatch, sistema.put_void());
        FAILED(creado))
      return creado;
  if (const HRESULT puesto = PonEnSistema(sistema.get(), excepcion); FAILED(puesto)) return puesto;
  sistema_ = std::move(sistema);
  al_dia_ = true;
  return S_OK;
}

HRESULT RecordsetIndeciso::PonEnSistema(IDispatch* sistema, EXCEPINFO* excepcion) const {
  const auto pon = [&](DISPID id, VARIANT valor) {
    DISPID nombre = DISPID_PROPERTYPUT;
    DISPPARAMS argumentos{&valor, &nombre, 1, 1};
    return sistema->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &argumentos, nullptr,
                           excepcion, nullptr);
  };
  HRESULT puesto = S_OK;
  const auto numero = [&](DISPID id, std::optional<LONG> guardado) {
    if (!guardado || FAILED(puesto)) return;
    VARIANT valor{};
    V_VT(&valor) = VT_I4;
    V_I4(&valor) = *guardado;
    puesto = pon(id, valor);
  };
  // The place first: it limits which cursors there are.
  numero(kLugar, puesto_.lugar);
  numero(kCursor, puesto_.cursor);
  numero(kBloqueo, puesto_.bloqueo);
  if (!puesto_.fuente || FAILED(puesto)) return puesto;
  const UniqueBstr fuente = ToBstr(*puesto_.fuente);
  VARIANT valor{};
  V_VT(&valor) = VT_BSTR;
  V_BSTR(&valor) = fuente.get();
  return pon(kFuente, valor);
}

}  // namespace zuvi::host
