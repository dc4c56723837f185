#include "tests/com/ado_falso.h"

#include <cwchar>
#include <iterator>
#include <utility>

namespace zuvi::prueba {
namespace {

AdoVisto visto{};

struct Nombre {
  const wchar_t* nombre;
  DISPID id;
};
constexpr Nombre kNombres[] = {{L"Fields", 0},
                               {L"ActiveConnection", 0x3E9},
                               {L"CursorType", 0x3ED},
                               {L"LockType", 0x3F0},
                               {L"Source", 0x3F3},
                               {L"AddNew", 0x3F4},
                               {L"Close", 0x3F6},
                               {L"Open", 0x3FE},
                               {L"CursorLocation", 0x41B},
                               {L"State", 0x41E},
                               {L"EOF", 0x3EE},
                               {L"Supports", 0x40C}};

void Anota(const wchar_t* nombre, WORD modo, const DISPPARAMS& dados) {
  wchar_t texto[80];
  VARIANT valor{};
  if (modo & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
    const bool se_lee = dados.cArgs == 1 && VariantChangeType(&valor, &dados.rgvarg[0], 0, VT_BSTR) == S_OK;
    std::swprintf(texto, 80, L"%ls=%ls ", nombre, se_lee ? V_BSTR(&valor) : L"?");
    VariantClear(&valor);
  } else {
    std::swprintf(texto, 80, L"%ls/%u ", nombre, dados.cArgs);
  }
  if (std::wcslen(visto.llamadas) + std::wcslen(texto) < std::size(visto.llamadas))
    std::wcscat(visto.llamadas, texto);
}

class RecordsetFalso final : public IDispatch {
 public:
  RecordsetFalso() {
    ++visto.vivos;
    ++visto.creados;
  }
  STDMETHODIMP QueryInterface(REFIID iid, void** salida) noexcept override {
    const bool mio = iid == IID_IUnknown || iid == IID_IDispatch || iid == kInterfazAdo;
    *salida = mio ? this : nullptr;
    if (mio) AddRef();
    return mio ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return static_cast<ULONG>(++cuenta_); }
  STDMETHODIMP_(ULONG) Release() noexcept override {
    const LONG quedan = --cuenta_;
    if (quedan == 0) delete this;
    return static_cast<ULONG>(quedan);
  }
  STDMETHODIMP GetTypeInfoCount(UINT* cuantas) noexcept override { return *cuantas = 7, S_OK; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return TYPE_E_ELEMENTNOTFOUND; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* nombres, UINT, LCID, DISPID* ids) noexcept override {
    ids[0] = DISPID_UNKNOWN;
    for (const Nombre& n : kNombres)
      if (_wcsicmp(n.nombre, nombres[0]) == 0) ids[0] = n.id;
    return ids[0] == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID region, WORD modo, DISPPARAMS* argumentos, VARIANT* resultado,
                      EXCEPINFO* excepcion, UINT* malo) noexcept override {
    const wchar_t* nombre = L"?";
    for (const Nombre& n : kNombres)
      if (n.id == id) nombre = n.nombre;
    Anota(nombre, modo, *argumentos);
    visto.argumentos = argumentos;
    visto.resultado = resultado;
    visto.excepcion = excepcion;
    visto.malo = malo;
    visto.region = region;
    visto.modo = modo;
    if (FAILED(visto.al_llamar)) return std::exchange(visto.al_llamar, S_OK);
    if (id == 0x3FE) abierto_ = true;
    if (id == 0x3F6) abierto_ = false;
    if (resultado) {
      V_VT(resultado) = VT_I4;
      V_I4(resultado) = id == 0x41E ? LONG{abierto_} : 4711;
    }
    return S_OK;
  }

 private:
  ~RecordsetFalso() { --visto.vivos; }
  LONG cuenta_ = 1;
  bool abierto_ = false;
};

class FabricaFalsa final : public IClassFactory {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** salida) noexcept override {
    const bool mio = iid == IID_IUnknown || iid == IID_IClassFactory;
    *salida = mio ? this : nullptr;
    return mio ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return 2; }
  STDMETHODIMP_(ULONG) Release() noexcept override { return 1; }
  STDMETHODIMP CreateInstance(IUnknown* exterior, REFIID iid, void** salida) noexcept override {
    *salida = nullptr;
    visto.exterior = exterior;
    if (FAILED(visto.al_crear)) return visto.al_crear;
    if (exterior) return CLASS_E_NOAGGREGATION;
    auto* const nuevo = new RecordsetFalso;
    const HRESULT dado = nuevo->QueryInterface(iid, salida);
    nuevo->Release();
    return dado;
  }
  STDMETHODIMP LockServer(BOOL) noexcept override { return S_OK; }
};

}  // namespace
}  // namespace zuvi::prueba

extern "C" {
zuvi::prueba::AdoVisto* Visto() { return &zuvi::prueba::visto; }
HRESULT WINAPI DllGetClassObject(REFCLSID, REFIID iid, void** salida) {
  static zuvi::prueba::FabricaFalsa fabrica;
  return fabrica.QueryInterface(iid, salida);
}
HRESULT WINAPI DllCanUnloadNow() { return S_FALSE; }
}
