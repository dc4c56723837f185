// The one place where the identifiers of the IDL get their storage.
#include "automation/windows_com.h"
// Only after the system's headers, so that no identifier of theirs is defined here.
#include <initguid.h>

#include "ZuviEnviroment.h"
#include "ZuviProduccion.h"
