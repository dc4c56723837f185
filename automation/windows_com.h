// The system's headers in the one order in which they compile.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleauto.h>
#include <olectl.h>
#include <unknwn.h>
