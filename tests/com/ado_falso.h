// A stand-in for the system's ADO: a DLL registered in its place, which notes what it is asked.
#pragma once

#include "automation/windows_com.h"

namespace zuvi::prueba {

struct AdoVisto {
  /// "nombre=valor" of each property put, "nombre/cuántos" of each other call, one after the other.
  wchar_t llamadas[2048];
  // The last call as it came.
  DISPPARAMS* argumentos;
  VARIANT* resultado;
  EXCEPINFO* excepcion;
  UINT* malo;
  LCID region;
  WORD modo;
  IUnknown* exterior;  // of the last creation
  LONG vivos, creados;
  /// What it answers: to creations, to the next call.
  HRESULT al_crear, al_llamar;
};

/// Exported by the DLL.
using DameVisto = AdoVisto* (*)();
inline constexpr const wchar_t* kAdoFalso = L"ado_falso.dll";

inline constexpr CLSID kClaseAdo = {
    0x00000535, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x6D, 0x2E, 0xA4}};
/// `_Recordset`, which early-bound programs ask for.
inline constexpr IID kInterfazAdo = {
    0x00000556, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x6D, 0x2E, 0xA4}};

}  // namespace zuvi::prueba
