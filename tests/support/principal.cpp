// Every test program takes on the regional settings of its environment, as a host program may have done:
// nothing may depend on them.
#include <gmock/gmock.h>

#include <clocale>
#include <cstdio>
#include <locale>
#include <stdexcept>

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  try {
    std::locale::global(std::locale(""));
  } catch (const std::runtime_error&) {
    std::fputs("Falta la configuración regional que pide el entorno (LC_ALL)\n", stderr);
    return 2;
  }
  return RUN_ALL_TESTS();
}
