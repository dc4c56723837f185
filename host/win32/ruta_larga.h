// Paths of any length. A program may be marked for long paths, but a DLL lives in programs of others: nothing
// here depends on the mark.
#pragma once

#include <string>

namespace zuvi::host {

/// A path made absolute; itself where that fails.
std::wstring RutaCompleta(const std::wstring& ruta);
/// The form in which the system opens a path of any length: `\\?\…` or `\\?\UNC\…` for a long one, a short
/// one as it is.
std::wstring RutaLarga(const std::wstring& ruta);
/// What other programs can open of a long path: the one with short names of its folders, where the disk has
/// them. Empty where it has none, or they are not short enough.
std::wstring RutaCorta(const std::wstring& ruta);

}  // namespace zuvi::host
