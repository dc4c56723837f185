// Numbers as people write them, by hand or pasted from a sheet or a mail.
#pragma once

#include <string>

namespace zuvi::host {

/// The number of a text. A point is the decimal mark, and so is a comma that stands alone ("2,5"); separators
/// that part the digits in threes are understood where there is only one way to read them: "1,690.50",
/// "1.690,50", "12,345,678". Throws HostError with a text for the user for anything else, among it what reads
/// two ways ("1,690") and what a column of numbers cannot hold.
double NumeroEscrito(const std::string& texto);

}  // namespace zuvi::host
