// The stage of the tests of ZuviHost.dll: the DLL as it is shipped, beside an ADO that tells what it is
// asked.
#pragma once

#include <gtest/gtest.h>

#include "tests/com/ado_falso.h"
#include "tests/com/cliente.h"

// After the system's headers.
#include "ZuviEnviroment.h"

namespace zuvi::prueba {
inline constexpr WORD kPon = DISPATCH_PROPERTYPUT;
inline constexpr wchar_t kServidor[] =
    L"Software\\Classes\\CLSID\\{00000535-0000-0010-8000-00AA006D2EA4}\\InprocServer32";

struct Departamento {
  Departamento() { ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  ~Departamento() { ::CoUninitialize(); }
};

/// The stand-in in the place of the system's ADO while it lives.
class EnLugarDeAdo {
 public:
  EnLugarDeAdo() {
    DWORD bytes = sizeof antes_;
    ::RegGetValueW(HKEY_LOCAL_MACHINE, kServidor, nullptr, RRF_RT_REG_SZ, nullptr, antes_, &bytes);
    wchar_t ruta[MAX_PATH];
    ::GetModuleFileNameW(dll_, ruta, MAX_PATH);
    Pon(ruta);
    Visto() = {};
  }
  ~EnLugarDeAdo() { Pon(antes_); }
  AdoVisto& Visto() const {
    return *reinterpret_cast<DameVisto>(reinterpret_cast<void*>(::GetProcAddress(dll_, "Visto")))();
  }
  /// The file of the one it stands in for.
  const wchar_t* Verdadero() const { return antes_; }
  /// What it was asked since the last time.
  std::string Toma() const {
    std::string llamadas = Visto().llamadas;
    Visto().llamadas[0] = 0;
    return llamadas;
  }

 private:
  static void Pon(const wchar_t* ruta) {
    ::RegSetKeyValueW(HKEY_LOCAL_MACHINE, kServidor, nullptr, REG_SZ, ruta,
                      static_cast<DWORD>((std::char_traits<wchar_t>::length(ruta) + 1) * sizeof(wchar_t)));
  }
  HMODULE dll_ = ::LoadLibraryW(kAdoFalso);
  wchar_t antes_[MAX_PATH] = {};
};

inline VARIANT Texto(const wchar_t* texto, UniqueBstr& duenio) {
  duenio = UniqueBstr(::SysAllocString(texto));
  return V(VT_BSTR, duenio.get());
}

class ConHost : public testing::Test {
 protected:
  void SetUp() override { Ambiente(ambiente); }
  void Ambiente(ComPtr<IDispatch>& nuevo) { Crea(__uuidof(::AmbienteHost), nuevo); }
  void TearDown() override {
    conexion = {};
    ambiente = {};
    EXPECT_EQ(PuedeDescargarse(), S_OK);
    EXPECT_EQ(ado.Visto().vivos, 0);
  }
  void Crea(REFCLSID clase, ComPtr<IDispatch>& nuevo) {
    const auto da = Entrada<HRESULT(WINAPI*)(REFCLSID, REFIID, void**)>("DllGetClassObject");
    ComPtr<IClassFactory> fabrica;
    ASSERT_EQ(da(clase, IID_IClassFactory, fabrica.put_void()), S_OK);
    ASSERT_EQ(fabrica->CreateInstance(nullptr, IID_IDispatch, nuevo.put_void()), S_OK);
  }
  HRESULT PuedeDescargarse() { return Entrada<HRESULT(WINAPI*)()>("DllCanUnloadNow")(); }
  IDispatch* Conexion() {
    if (!conexion) {
      Respuesta r;
      Llama(ambiente.get(), L"Conexion", kMetodo, {}, r);
      EXPECT_EQ(r.codigo, S_OK) << r.texto;
      if (r.codigo == S_OK) conexion = ComPtr<IDispatch>(V_DISPATCH(&r.valor.get()));
    }
    return conexion.get();
  }
  static ComPtr<IDispatch> Recordset() {
    ComPtr<IDispatch> nuevo;
    EXPECT_EQ(::CoCreateInstance(kClaseAdo, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, nuevo.put_void()),
              S_OK);
    return nuevo;
  }
  static HRESULT Hace(IDispatch* objeto, const wchar_t* nombre, WORD modo,
                      std::initializer_list<VARIANT> args) {
    Respuesta r;
    Llama(objeto, nombre, modo, args, r);
    return r.codigo == DISP_E_EXCEPTION ? r.scode : r.codigo;
  }
  static LONG Numero(IDispatch* objeto, const wchar_t* nombre) {
    Respuesta r;
    Llama(objeto, nombre, kMetodo, {}, r);
    EXPECT_EQ(r.codigo, S_OK) << r.texto;
    UniqueVariant numero;
    ::VariantChangeType(numero.put(), &r.valor.get(), 0, VT_I4);
    return V_I4(&numero.get());
  }
  HRESULT AbreConsulta(IDispatch* recordset) {
    UniqueBstr sql;
    return Hace(recordset, L"Open", kMetodo,
                {Texto(L"SELECT 42 AS uno", sql), V(Conexion()), V(-1), V(-1), V(1)});
  }
  /// Value of the first field.
  static LONG Campo(IDispatch* recordset) {
    Respuesta r;
    Llama(recordset, L"Fields", kMetodo, {V(0)}, r);
    EXPECT_EQ(r.codigo, S_OK);
    return r.codigo == S_OK ? Numero(V_DISPATCH(&r.valor.get()), L"Value") : -1;
  }
  template <class Funcion>
  Funcion Entrada(const char* nombre) const {
    return reinterpret_cast<Funcion>(reinterpret_cast<void*>(::GetProcAddress(dll, nombre)));
  }

  HMODULE dll = ::LoadLibraryW(L"ZuviHost.dll");
  EnLugarDeAdo ado;
  ComPtr<IDispatch> ambiente, conexion;
};

}  // namespace zuvi::prueba
