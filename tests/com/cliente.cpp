#include "tests/com/cliente.h"

#include "tests/com/anfitrion_falso.h"

namespace zuvi::prueba {
namespace {

std::vector<std::string>& Textos() {
  static std::vector<std::string> textos;
  return textos;
}

/// Answers a box as soon as it is made, before it is drawn: thousands of them are shown.
LRESULT CALLBACK AlIniciar(int code, WPARAM sender, LPARAM data) {
  const auto& mensaje = *reinterpret_cast<const CWPRETSTRUCT*>(data);
  wchar_t clase[16] = {};
  if (code == HC_ACTION && mensaje.message == WM_INITDIALOG && ::GetClassNameW(mensaje.hwnd, clase, 16) &&
      std::wstring_view(clase) == L"#32770") {
    wchar_t texto[2048] = {};
    ::GetDlgItemTextW(mensaje.hwnd, 0xFFFF, texto, 2048);
    Textos().push_back(Narrow(texto));
    ::EndDialog(mensaje.hwnd, IDOK);
  }
  return ::CallNextHookEx(nullptr, code, sender, data);
}

std::wstring Clave(std::size_t clase) {
  return L"Software\\Classes\\" + std::wstring(Tienda::kClases[clase]);
}

void Pon(std::size_t clase, const std::wstring& valor) {
  ::RegSetKeyValueW(HKEY_LOCAL_MACHINE, (Clave(clase) + L"\\CLSID").c_str(), nullptr, REG_SZ, valor.c_str(),
                    static_cast<DWORD>((valor.size() + 1) * sizeof(wchar_t)));
}

}  // namespace

NombresDePrueba::NombresDePrueba() {
  for (std::size_t clase = 0; clase < std::size(Tienda::kClases); ++clase) {
    wchar_t antes[64] = {}, texto[40];
    DWORD bytes = sizeof antes;
    ::RegGetValueW(HKEY_LOCAL_MACHINE, (Clave(clase) + L"\\CLSID").c_str(), nullptr, RRF_RT_REG_SZ, nullptr,
                   antes, &bytes);
    antes_.emplace_back(antes);
    ::StringFromGUID2(Tienda::ClaseDe(clase), texto, 40);
    Pon(clase, texto);
  }
}

NombresDePrueba::~NombresDePrueba() {
  for (std::size_t clase = 0; clase < antes_.size(); ++clase)
    if (antes_[clase].empty())
      ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, Clave(clase).c_str());
    else
      Pon(clase, antes_[clase]);
}

BibliotecaDelEntorno::BibliotecaDelEntorno() {
  ComPtr<ITypeLib> library;
  if (SUCCEEDED(::LoadRegTypeLib(::LIBID_ZuviEnviroment, 1, 0, 0, library.put()))) return;
  std::wstring path = L"" ZUVI_TLB_FOLDER "ZuviEnviroment.tlb";
  registrada_ = SUCCEEDED(::LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.put())) &&
                SUCCEEDED(::RegisterTypeLib(library.get(), path.data(), nullptr));
}

BibliotecaDelEntorno::~BibliotecaDelEntorno() {
  constexpr SYSKIND kSysKind = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
  if (registrada_) ::UnRegisterTypeLib(::LIBID_ZuviEnviroment, 1, 0, 0, kSysKind);
}

Cajas::Cajas() : hook_(::SetWindowsHookExW(WH_CALLWNDPROCRET, &AlIniciar, nullptr, ::GetCurrentThreadId())) {
  Toma();
}
Cajas::~Cajas() { ::UnhookWindowsHookEx(hook_); }
std::vector<std::string> Cajas::Toma() { return std::exchange(Textos(), {}); }

void Atiende(int milisegundos) {
  const DWORD hasta = ::GetTickCount() + static_cast<DWORD>(milisegundos);
  while (static_cast<LONG>(hasta - ::GetTickCount()) > 0) {
    MSG mensaje;
    while (::PeekMessageW(&mensaje, nullptr, 0, 0, PM_REMOVE)) {
      ::TranslateMessage(&mensaje);
      ::DispatchMessageW(&mensaje);
    }
    ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
  }
}

SinRegistro::SinRegistro() {
  wchar_t carpeta[MAX_PATH] = {};
  ::GetModuleFileNameW(nullptr, carpeta, MAX_PATH);
  *wcsrchr(carpeta, L'\\') = 0;
  const std::wstring archivo = std::wstring(carpeta) + L"\\ZuviProduccion.SxS.manifest";
  ACTCTXW contexto{};
  contexto.cbSize = sizeof contexto;
  contexto.lpSource = archivo.c_str();
  contexto_ = ::CreateActCtxW(&contexto);
  ::ActivateActCtx(contexto_, &activo_);
}
SinRegistro::~SinRegistro() {
  ::DeactivateActCtx(0, activo_);
  ::ReleaseActCtx(contexto_);
}

ComPtr<::_Produccion> SinRegistro::Crea() const {
  CLSID clase{};
  ComPtr<::_Produccion> objeto;
  if (SUCCEEDED(::CLSIDFromProgID(L"ZuviProduccion.Produccion", &clase)))
    ::CoCreateInstance(clase, nullptr, CLSCTX_INPROC_SERVER, __uuidof(::_Produccion), objeto.put_void());
  return objeto;
}

Dll::Dll(const wchar_t* archivo) : dll_(::LoadLibraryW(archivo)) {}
Dll::~Dll() { ::FreeLibrary(dll_); }

ComPtr<IUnknown> Dll::Crea(REFCLSID clase) {
  const auto get = Entrada<HRESULT(WINAPI*)(REFCLSID, REFIID, void**)>("DllGetClassObject");
  ComPtr<IClassFactory> factory;
  ComPtr<IUnknown> object;
  if (get && SUCCEEDED(get(clase, IID_IClassFactory, factory.put_void())))
    factory->CreateInstance(nullptr, IID_IUnknown, object.put_void());
  return object;
}

ComPtr<::_Produccion> Dll::Crea() {
  const auto object = Crea(__uuidof(::Produccion));
  return object ? object.As<::_Produccion>(__uuidof(::_Produccion)) : ComPtr<::_Produccion>();
}

HRESULT Dll::PuedeDescargarse() const { return Entrada<HRESULT(WINAPI*)()>("DllCanUnloadNow")(); }

void Llama(IDispatch* objeto, const wchar_t* nombre, WORD flags, std::span<const VARIANT> args,
           Respuesta& r) {
  std::wstring copia = nombre;
  LPOLESTR texto = copia.data();
  DISPID id = DISPID_UNKNOWN, put = DISPID_PROPERTYPUT;
  r.codigo = objeto->GetIDsOfNames(IID_NULL, &texto, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(r.codigo)) return;
  std::vector<VARIANT> reversed(args.rbegin(), args.rend());
  const bool is_put = !(flags & kMetodo);
  DISPPARAMS params{reversed.data(), is_put ? &put : nullptr, static_cast<UINT>(reversed.size()),
                    is_put ? 1u : 0u};
  EXCEPINFO exception{};
  r.codigo = objeto->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params,
                            is_put ? nullptr : r.valor.put(), &exception, &r.argumento);
  const UniqueBstr text(exception.bstrDescription), source(exception.bstrSource),
      help(exception.bstrHelpFile);
  r.scode = exception.scode;
  r.texto = Narrow(text.get());
}

Texto::operator VARIANT() const { return V(VT_BSTR, texto_.get()); }
VARIANT V(int n) { return V(VT_I4, static_cast<LONG>(n)); }
VARIANT V(double n) { return V(VT_R8, n); }
VARIANT V(IDispatch* d) { return V(VT_DISPATCH, d); }

}  // namespace zuvi::prueba
