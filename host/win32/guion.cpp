#include "host/win32/guion.h"

#include <activscp.h>
#include <objbase.h>
#include <windows.h>

#include <cstring>
#include <map>
#include <optional>

#include "automation/dispatch_object.h"
#include "automation/handles.h"
#include "automation/prog_id_factory.h"
#include "base/text.h"
#include "host/win32/ruta_larga.h"
#include "host/win32/wscript.h"
#include "toolkit/win32/message_loop.h"

namespace zuvi::host {
namespace {

[[noreturn]] void Falla(const std::string& texto, HRESULT codigo) {
  throw HostError(texto, ErrorNumber::AutomationFailure, static_cast<std::int32_t>(codigo));
}

void Exige(HRESULT codigo, const char* que) {
  if (FAILED(codigo)) Falla(std::string("El motor de guiones falló: ") + que, codigo);
}

/// The file's text: UTF-16 by its mark, else UTF-8 with or without mark, else the Western code page.
std::wstring LeeTexto(const std::wstring& archivo) {
  const UniqueFile abierto = Opened(CreateFileW(RutaLarga(archivo).c_str(), GENERIC_READ, FILE_SHARE_READ,
                                                nullptr, OPEN_EXISTING, 0, nullptr));
  if (!abierto) throw HostError("No se pudo abrir el guion " + Narrow(archivo));
  std::string bytes;
  char tramo[4096];
  DWORD leidos = 0;
  while (ReadFile(abierto.get(), tramo, sizeof tramo, &leidos, nullptr) && leidos > 0)
    bytes.append(tramo, leidos);
  if (bytes.starts_with("\xFF\xFE")) {
    std::wstring texto((bytes.size() - 2) / sizeof(wchar_t), L'\0');
    std::memcpy(texto.data(), bytes.data() + 2, texto.size() * sizeof(wchar_t));
    return texto;
  }
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.erase(0, 3);
  std::wstring texto = Wide(bytes);
  const bool utf8 = texto.find(L'\uFFFD') == std::wstring::npos;
  if (utf8 || bytes.empty()) return texto;
  const int largo = static_cast<int>(bytes.size());
  texto.assign(bytes.size(), L'\0');
  texto.resize(
      static_cast<std::size_t>(MultiByteToWideChar(1252, 0, bytes.data(), largo, texto.data(), largo)));
  return texto;
}

/// A script language: its engine comes with Windows, but may be missing.
struct Lenguaje {
  std::string_view extension;
  const char* nombre;  // its programmatic name too
  const char* remedio;
};
constexpr Lenguaje kLenguajes[] = {
    {".vbs", "VBScript",
     "Se instala en Configuración > Sistema (o Aplicaciones) > Características opcionales > Ver o agregar "
     "características: VBSCRIPT; o, como administrador, con\n"
     "DISM /Online /Add-Capability /CapabilityName:VBSCRIPT~~~~"},
    {".js", "JScript",
     "Es parte de Windows: una directiva del administrador lo tiene deshabilitado, o se repara, como "
     "administrador, con\nsfc /scannow"},
};

const Lenguaje& LenguajeDe(const std::string& archivo) {
  const auto punto = archivo.find_last_of('.');
  const std::string extension = punto == std::string::npos ? "" : ToLower(archivo.substr(punto));
  for (const Lenguaje& lenguaje : kLenguajes)
    if (lenguaje.extension == extension) return lenguaje;
  throw HostError("Un guion termina en .vbs o .js: " + archivo);
}

/// The engine is registered with or without its library; both ways it may not be there.
ComPtr<IActiveScript> MotorDe(const std::string& archivo) {
  const Lenguaje& lenguaje = LenguajeDe(archivo);
  CLSID clase{};
  ComPtr<IActiveScript> motor;
  const HRESULT codigo =
      CreateByProgId(lenguaje.nombre, CLSCTX_INPROC_SERVER, __uuidof(IActiveScript), motor.put_void(), clase);
  if (FAILED(codigo))
    Falla(std::string("Este Windows no tiene el motor de guiones ") + lenguaje.nombre + ", que necesita " +
              archivo + ".\n" + lenguaje.remedio,
          codigo);
  return motor;
}

/// What the engine asks of its host.
class Sitio final : public IActiveScriptSite, public IActiveScriptSiteWindow {
 public:
  explicit Sitio(std::string archivo) : archivo_(std::move(archivo)) {}

  void Publica(const wchar_t* nombre, ComPtr<IDispatch> objeto) { objetos_[nombre] = std::move(objeto); }
  const std::optional<std::string>& Error() const { return error_; }

  STDMETHODIMP QueryInterface(REFIID iid, void** salida) override {
    if (!salida) return E_POINTER;
    *salida = nullptr;
    if (iid == IID_IUnknown || iid == __uuidof(IActiveScriptSite))
      *salida = static_cast<IActiveScriptSite*>(this);
    if (iid == __uuidof(IActiveScriptSiteWindow)) *salida = static_cast<IActiveScriptSiteWindow*>(this);
    return *salida ? S_OK : E_NOINTERFACE;
  }
  // The site lives on the stack of the run and outlives its engine, so the counts have nothing to decide.
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }

  STDMETHODIMP GetLCID(LCID* lcid) override {
    *lcid = LOCALE_INVARIANT;
    return E_NOTIMPL;
  }
  STDMETHODIMP GetItemInfo(LPCOLESTR nombre, DWORD que, IUnknown** objeto, ITypeInfo** tipo) override {
    const auto hallado = objetos_.find(nombre);
    if (hallado == objetos_.end()) return TYPE_E_ELEMENTNOTFOUND;
    if (tipo) *tipo = nullptr;
    if ((que & SCRIPTINFO_IUNKNOWN) && objeto)
      return hallado->second.get()->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(objeto));
    return S_OK;
  }
  STDMETHODIMP GetDocVersionString(BSTR* version) override {
    *version = nullptr;
    return E_NOTIMPL;
  }
  STDMETHODIMP OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
  STDMETHODIMP OnStateChange(SCRIPTSTATE) override { return S_OK; }
  STDMETHODIMP OnScriptError(IActiveScriptError* error) override;
  STDMETHODIMP OnEnterScript() override { return S_OK; }
  STDMETHODIMP OnLeaveScript() override { return S_OK; }
  STDMETHODIMP GetWindow(HWND* ventana) override {
    *ventana = GetActiveWindow();
    return S_OK;
  }
  STDMETHODIMP EnableModeless(BOOL) override { return S_OK; }

 private:
  std::string archivo_;
  std::map<std::wstring, ComPtr<IDispatch>> objetos_;
  std::optional<std::string> error_;
};

STDMETHODIMP Sitio::OnScriptError(IActiveScriptError* error) {
  try {
    DWORD contexto = 0;
    ULONG linea = 0;
    LONG columna = 0;
    error->GetSourcePosition(&contexto, &linea, &columna);
    UniqueExcepInfo datos;
    std::string texto;
    if (SUCCEEDED(error->GetExceptionInfo(datos.put()))) {
      texto = FromBstr(datos.Told().bstrDescription);
      char codigo[32];
      std::snprintf(codigo, sizeof codigo, "0x%08lX", static_cast<unsigned long>(datos.Told().scode));
      texto = texto.empty() ? std::string("error ") + codigo : texto + " [" + codigo + "]";
    }
    // The engine counts lines from 0 and columns from 0; an editor counts both from 1.
    error_ = archivo_ + "(" + std::to_string(linea + 1) + "," + std::to_string(std::max(0L, columna) + 1) +
             "): " + texto;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
  return S_OK;
}

}  // namespace

void AtiendeMensajes(unsigned milisegundos) {
  const ULONGLONG fin = GetTickCount64() + milisegundos;
  for (;;) {
    MSG mensaje;
    while (PeekMessageW(&mensaje, nullptr, 0, 0, PM_REMOVE)) {
      if (mensaje.message == WM_QUIT) {
        PostQuitMessage(static_cast<int>(mensaje.wParam));
        return;
      }
      native::Serve(mensaje);
    }
    const ULONGLONG ahora = GetTickCount64();
    if (ahora >= fin) return;
    MsgWaitForMultipleObjectsEx(0, nullptr, static_cast<DWORD>(fin - ahora), QS_ALLINPUT,
                                MWMO_INPUTAVAILABLE);
  }
}

ResultadoGuion EjecutaGuion(ComServer& servidor, SalidaPrograma& salida, const std::wstring& archivo,
                            const std::vector<std::string>& argumentos) {
  const std::wstring texto = LeeTexto(archivo);
  const std::string nombre = Narrow(archivo);
  Sitio sitio(nombre);
  sitio.Publica(L"WScript",
                Publish(std::make_shared<WScript>(servidor, salida, nombre, argumentos), servidor));
  sitio.Publica(L"Ambiente", CreaPorNombre("ZuviEnviroment.Ambiente"));

  const ComPtr<IActiveScript> motor = MotorDe(nombre);
  ComPtr<IActiveScriptParse> analizador;
  Exige(motor->QueryInterface(__uuidof(IActiveScriptParse), analizador.put_void()), "no analiza texto");
  Exige(motor->SetScriptSite(&sitio), "no acepta el sitio");
  Exige(analizador->InitNew(), "no se inicia");
  for (const wchar_t* objeto : {L"WScript", L"Ambiente"})
    Exige(motor->AddNamedItem(objeto, SCRIPTITEM_ISVISIBLE), "no acepta un objeto");

  ResultadoGuion resultado;
  HRESULT codigo = analizador->ParseScriptText(texto.c_str(), nullptr, nullptr, nullptr, 0, 0,
                                               SCRIPTTEXT_ISVISIBLE, nullptr, nullptr);
  if (SUCCEEDED(codigo)) codigo = motor->SetScriptState(SCRIPTSTATE_STARTED);
  if (FAILED(codigo) || sitio.Error()) {
    resultado.codigo = 1;
    resultado.error = sitio.Error().value_or(nombre + ": el guion no se pudo ejecutar");
  }
  motor->Close();
  return resultado;
}

}  // namespace zuvi::host
