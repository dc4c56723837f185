// Ensambla seis kits por la interfaz binaria. Con mingw-w64, y los encabezados que produce widl de los IDL:
//   x86_64-w64-mingw32-g++ -std=c++20 ensambla.cpp -I<carpeta con ZuviProduccion.h> -lole32 -loleaut32 -luuid
//   -static
#include <windows.h>

#include <oleauto.h>

#include <cstdio>

#include "ZuviProduccion.h"

int main() {
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
  int result = 1;
  CLSID clase;
  IDispatch* ambiente = nullptr;
  _Produccion* produccion = nullptr;
  if (SUCCEEDED(CLSIDFromProgID(L"ZuviEnviroment.Ambiente", &clase)) &&
      SUCCEEDED(CoCreateInstance(clase, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                 reinterpret_cast<void**>(&ambiente))) &&
      SUCCEEDED(CoCreateInstance(__uuidof(Produccion), nullptr, CLSCTX_INPROC_SERVER, __uuidof(_Produccion),
                                 reinterpret_cast<void**>(&produccion)))) {
    BSTR articulo = SysAllocString(L"KIT1");
    long almacen = 1, cantidad = 6, orden = 0;
    HRESULT hr = produccion->putref_Ambiente(reinterpret_cast<Ambiente*>(ambiente));
    if (SUCCEEDED(hr)) hr = produccion->Ensamble(&articulo, &almacen, &cantidad, &orden);
    std::printf("Ensamble: 0x%08lX\n", static_cast<unsigned long>(hr));
    result = FAILED(hr);
    SysFreeString(articulo);
  }
  if (produccion) produccion->Release();
  if (ambiente) ambiente->Release();
  CoUninitialize();
  return result;
}
