// How a compiled host drives the component: the DLL as it is shipped, by vtable and by name.
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <vector>

#include "automation/com_ptr.h"
#include "automation/handles.h"

// After the system's headers.
#include "ZuviProduccion.h"

namespace zuvi::prueba {

/// Lets the programmatic names of host objects lead to the test host while it lives, and puts back what was.
class NombresDePrueba {
 public:
  NombresDePrueba();
  ~NombresDePrueba();

 private:
  std::vector<std::wstring> antes_;
};

/// The host library that the component's own refers to, registered while it lives unless it is already.
class BibliotecaDelEntorno {
 public:
  BibliotecaDelEntorno();
  ~BibliotecaDelEntorno();

 private:
  bool registrada_ = false;
};

/// Reads and answers every message box of this thread.
class Cajas {
 public:
  Cajas();
  ~Cajas();
  /// Texts shown since the last call.
  std::vector<std::string> Toma();

 private:
  HHOOK hook_;
};

/// Runs this thread's message loop for so long.
void Atiende(int milisegundos);

/// What the manifest beside the component makes known, on this thread while it lives: it needs no
/// registration.
class SinRegistro {
 public:
  SinRegistro();
  ~SinRegistro();
  /// A new object, made as any client makes one.
  ComPtr<::_Produccion> Crea() const;

 private:
  HANDLE contexto_;
  ULONG_PTR activo_ = 0;
};

/// A loaded DLL, the component's unless it is told.
class Dll {
 public:
  explicit Dll(const wchar_t* archivo = L"ZuviProduccion.dll");
  ~Dll();
  ComPtr<::_Produccion> Crea();
  /// A new object of one of its classes; null when there is none.
  ComPtr<IUnknown> Crea(REFCLSID clase);
  HRESULT PuedeDescargarse() const;
  template <class Funcion>
  Funcion Entrada(const char* nombre) const {
    return reinterpret_cast<Funcion>(reinterpret_cast<void*>(::GetProcAddress(dll_, nombre)));
  }

 private:
  HMODULE dll_;
};

/// What a call by name gave back.
struct Respuesta {
  HRESULT codigo = S_OK;
  HRESULT scode = S_OK;
  std::string texto;
  UINT argumento = 99;
  UniqueVariant valor;
};

/// A call by name; arguments in declaration order.
void Llama(IDispatch* objeto, const wchar_t* nombre, WORD flags, std::span<const VARIANT> args, Respuesta& r);
inline void Llama(IDispatch* objeto, const wchar_t* nombre, WORD flags, std::initializer_list<VARIANT> args,
                  Respuesta& r) {
  Llama(objeto, nombre, flags, std::span(args.begin(), args.size()), r);
}
inline constexpr WORD kMetodo = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

VARIANT V(int n);
VARIANT V(double n);
VARIANT V(IDispatch* d);
/// A text as an argument, as long as it lives.
class Texto {
 public:
  explicit Texto(const wchar_t* texto) : texto_(::SysAllocString(texto)) {}
  BSTR get() const { return texto_.get(); }
  operator VARIANT() const;

 private:
  UniqueBstr texto_;
};
/// A variant of any type that fits in eight bytes.
template <class T>
VARIANT V(VARTYPE type, T value) {
  VARIANT v{};
  V_VT(&v) = type;
  static_assert(sizeof(T) <= sizeof(V_I8(&v)));
  __builtin_memcpy(&V_I8(&v), &value, sizeof value);
  return v;
}

}  // namespace zuvi::prueba
