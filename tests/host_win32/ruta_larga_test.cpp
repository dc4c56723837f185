#include <gtest/gtest.h>

#include "host/win32/ruta_larga.h"

#include <windows.h>

namespace zuvi::host {
namespace {

TEST(RutaLarga, SoloLaLargaCambiaDeForma) {
  const std::wstring a(100, L'a'), largo = a + L"\\" + a + L"\\" + a;
  const struct {
    std::wstring ruta, esperada;
  } casos[] = {
      {L"C:\\corta\\x.html", L"C:\\corta\\x.html"},
      {L"\\\\servidor\\papeles\\x", L"\\\\servidor\\papeles\\x"},
      {L"C:\\" + largo, L"\\\\?\\C:\\" + largo},
      {L"C:/" + largo + L"/./b/..\\c", L"\\\\?\\C:\\" + largo + L"\\c"},
      {L"\\\\servidor\\papeles\\" + largo, L"\\\\?\\UNC\\servidor\\papeles\\" + largo},
      {L"\\\\?\\C:\\" + largo, L"\\\\?\\C:\\" + largo},
      // Room for a file in a folder that is just short enough.
      {L"C:\\" + std::wstring(244, L'a'), L"C:\\" + std::wstring(244, L'a')},
      {L"C:\\" + std::wstring(245, L'a'), L"\\\\?\\C:\\" + std::wstring(245, L'a')},
  };
  for (const auto& caso : casos) EXPECT_EQ(RutaLarga(caso.ruta), caso.esperada);

  wchar_t actual[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, actual);
  EXPECT_EQ(RutaLarga(largo), std::wstring(L"\\\\?\\") + actual + L"\\" + largo)
      << "below the current folder";
  EXPECT_EQ(RutaCorta(L"C:\\corta"), L"C:\\corta");
  EXPECT_EQ(RutaCorta(L"C:\\" + largo), L"") << "nothing that other programs could open";
}

}  // namespace
}  // namespace zuvi::host
