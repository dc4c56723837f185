#pragma once

#include "host/anfitrion/anfitrion.h"

namespace zuvi::host {

/// Settings of a host that a script or a program starts without giving any: environment variables ZUVI_BASE
/// (SQLite file or ODBC connection string), ZUVI_USUARIO (else the Windows user), ZUVI_IDIOMA ("es" or "en"),
/// ZUVI_REPORTES (folder for pages, else those of `CarpetasDeReportes`); without ZUVI_BASE the file zuvi.db
/// in the user's own application data folder "Zuvi". The application folder is that of the program file.
Opciones OpcionesDeWindows();

/// What is done with a page that was written for printing: variable ZUVI_IMPRIME, "abre" (shown by the user's
/// browser, the default), "imprime" (sent to the printer) or "no" (left at the file).
enum class Impresion { Abre, Imprime, No };
Impresion ImpresionDeWindows();

}  // namespace zuvi::host
