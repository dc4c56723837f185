// Arguments that are numbers. What is none is bad usage, and told before anything is opened.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zuvi::cli {

/// A whole number of 32 bits; `que` names it in the error ("El almacén"). Throws MalUso.
std::int32_t Entero(const std::string& texto, const char* que);
/// A finite number with a decimal point; the same. Throws MalUso.
double Real(const std::string& texto, const char* que);
/// Refuses arguments that are no numbers, or no quantities that can be counted out, where the command wants
/// them: `forma` names its arguments as the help does, "ARTICULO ALMACEN KITS [OP]". Throws MalUso.
void ExigeNumeros(const std::string& forma, const std::vector<std::string>& argumentos);

}  // namespace zuvi::cli
