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
    std::string llamadas = Narrow(Visto().llamadas);
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

class ConHost : public testing::Test {
 protected:
  void TearDown() override {
    conexion = {};
    ambiente = {};
    EXPECT_EQ(PuedeDescargarse(), S_OK);
    EXPECT_EQ(ado.Visto().vivos, 0);
  }
  ComPtr<IDispatch> Crea(REFCLSID clase) { return dll.Crea(clase).As<IDispatch>(IID_IDispatch); }
  ComPtr<IDispatch> Ambiente() { return Crea(__uuidof(::AmbienteHost)); }
  HRESULT PuedeDescargarse() { return dll.PuedeDescargarse(); }
  static ComPtr<IDispatch> ConexionDe(IDispatch* de) {
    Respuesta r;
    Llama(de, L"Conexion", kMetodo, {}, r);
    EXPECT_EQ(r.codigo, S_OK) << r.texto;
    return r.codigo == S_OK ? ComPtr<IDispatch>(V_DISPATCH(&r.valor.get())) : ComPtr<IDispatch>();
  }
  IDispatch* Conexion() {
    if (!conexion) conexion = ConexionDe(ambiente.get());
    return conexion.get();
  }
  static ComPtr<IDispatch> Recordset(REFIID iid = IID_IDispatch, HRESULT esperado = S_OK) {
    ComPtr<IDispatch> nuevo;
    EXPECT_EQ(::CoCreateInstance(kClaseAdo, nullptr, CLSCTX_INPROC_SERVER, iid, nuevo.put_void()), esperado);
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
  static HRESULT AbreConsulta(IDispatch* recordset, IDispatch* en) {
    return Hace(recordset, L"Open", kMetodo, {Texto(L"SELECT 42 AS uno"), V(en), V(-1), V(-1), V(1)});
  }
  HRESULT AbreConsulta(const ComPtr<IDispatch>& recordset) {
    return AbreConsulta(recordset.get(), Conexion());
  }
  /// Value of the first field.
  static LONG Campo(const ComPtr<IDispatch>& recordset) {
    Respuesta r;
    Llama(recordset.get(), L"Fields", kMetodo, {V(0)}, r);
    EXPECT_EQ(r.codigo, S_OK);
    return r.codigo == S_OK ? Numero(V_DISPATCH(&r.valor.get()), L"Value") : -1;
  }

  Dll dll{L"ZuviHost.dll"};
  EnLugarDeAdo ado;
  ComPtr<IDispatch> ambiente = Ambiente(), conexion;
};

}  // namespace zuvi::prueba
