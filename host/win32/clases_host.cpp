#include "automation/windows_com.h"
// Only after the system's headers: here the identifiers of the libraries get their storage.
#include <initguid.h>

#include "ZuviEnviroment.h"
#include "ZuviQuery.h"
#include "host/win32/servidor_host.h"

namespace zuvi::host {

std::span<const ClaseHost> ClasesHost() {
  static const ClaseHost clases[] = {
      {"ZuviEnviroment.Ambiente",
       {__uuidof(::AmbienteHost), __uuidof(::Ambiente)},
       ::LIBID_ZuviEnviroment,
       L"Zuvi: ambiente de trabajo"},
      {"ZuviQuery.AccesoDatos",
       {__uuidof(::AccesoDatos), __uuidof(::_AccesoDatos)},
       ::LIBID_ZuviQuery,
       L"Zuvi: acceso a datos"},
      {"ZuviQuery.ControlProcesos",
       {__uuidof(::ControlProcesos), __uuidof(::_ControlProcesos)},
       ::LIBID_ZuviQuery,
       L"Zuvi: control de procesos"},
      {"ZuviQuery.ConstructorSql",
       {__uuidof(::ConstructorSql), __uuidof(::_ConstructorSql)},
       ::LIBID_ZuviQuery,
       L"Zuvi: constructor de sentencias"},
      {"ZuviQuery.VentanaProgreso",
       {__uuidof(::VentanaProgreso), __uuidof(::_VentanaProgreso)},
       ::LIBID_ZuviQuery,
       L"Zuvi: ventana de progreso"},
      {"ZuviQuery.DocumentoInventario",
       {__uuidof(::DocumentoInventario), __uuidof(::_DocumentoInventario)},
       ::LIBID_ZuviQuery,
       L"Zuvi: documento de inventario"},
      {"ZuviQuery.BuscaCatalogo",
       {__uuidof(::BuscaCatalogo), __uuidof(::_BuscaCatalogo)},
       ::LIBID_ZuviQuery,
       L"Zuvi: consulta de catálogo"},
      {"ZuviQuery.CapturaNumerica",
       {__uuidof(::CapturaNumerica), __uuidof(::_CapturaNumerica)},
       ::LIBID_ZuviQuery,
       L"Zuvi: teclado numérico"},
      {"ZuviQuery.Principal",
       {__uuidof(::Principal), __uuidof(::_Principal)},
       ::LIBID_ZuviQuery,
       L"Zuvi: ventana principal"},
  };
  return clases;
}

}  // namespace zuvi::host
