// What an attacker would have SQLite load: that it ran shows in a file.
#include <cstdio>
#include <cstdlib>

extern "C" int sqlite3_extension_init(void*, char**, const void*) {
  if (const char* marca = std::getenv("ZUVI_HOSTIL_MARCA"))
    if (std::FILE* archivo = std::fopen(marca, "w")) std::fclose(archivo);
  return 0;
}
