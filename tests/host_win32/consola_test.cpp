// Zuvi.exe started from a console, which this program makes for itself.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

constexpr UINT kPagina = 850;

/// A console with one code page, and nothing redirected.
class Consola {
 public:
  Consola() : hecha_(AllocConsole()) {
    SetConsoleOutputCP(kPagina);
    SetConsoleCP(kPagina);
    salida_ = CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                          nullptr, OPEN_EXISTING, 0, nullptr);
  }
  Consola(const Consola&) = delete;
  Consola& operator=(const Consola&) = delete;
  ~Consola() {
    CloseHandle(salida_);
    FreeConsole();
  }
  bool Hecha() const { return hecha_ && salida_ != INVALID_HANDLE_VALUE; }
  HANDLE Salida() const { return salida_; }
  /// What stands in the first line; then it is empty.
  std::wstring Toma() {
    std::wstring texto(60, L' ');
    DWORD n = 0;
    ReadConsoleOutputCharacterW(salida_, texto.data(), static_cast<DWORD>(texto.size()), {0, 0}, &n);
    FillConsoleOutputCharacterW(salida_, L' ', 80 * 20, {0, 0}, &n);
    SetConsoleCursorPosition(salida_, {0, 0});
    texto.resize(texto.find_last_not_of(L' ') + 1);
    return texto;
  }

 private:
  bool hecha_;
  HANDLE salida_ = INVALID_HANDLE_VALUE;
};

/// The text of the program's message box, which is answered; empty when none came up before the program
/// ended.
std::wstring TextoDeCaja(HANDLE proceso) {
  constexpr int kTextoDeCaja = 0xFFFF;
  while (WaitForSingleObject(proceso, 50) == WAIT_TIMEOUT) {
    const HWND caja = FindWindowW(L"#32770", L"Zuvi");
    DWORD suyo = 0;
    GetWindowThreadProcessId(caja, &suyo);
    wchar_t texto[500] = L"";
    if (suyo != GetProcessId(proceso) || GetDlgItemTextW(caja, kTextoDeCaja, texto, 500) == 0) continue;
    PostMessageW(caja, WM_COMMAND, IDOK, 0);
    return texto;
  }
  return {};
}

/// How the program is started.
struct Arranque {
  /// As a program of windows it is not part of our console until it joins; not every system leaves it out by
  /// itself.
  DWORD modo = DETACHED_PROCESS;
  HANDLE salida = nullptr;       // where its standard output goes
  std::wstring* caja = nullptr;  // takes the text of the message box that shows
};

/// Runs the program beside this one on a script; its exit code.
DWORD Corre(const std::string& guion, const Arranque& arranque = {}) {
  const std::filesystem::path ruta = std::filesystem::temp_directory_path() / "zuvi_consola.vbs";
  std::ofstream(ruta, std::ios::binary) << guion;
  std::wstring orden = L"Zuvi.exe \"" + ruta.wstring() + L"\"";
  STARTUPINFOW inicio{};
  inicio.cb = sizeof inicio;
  if (arranque.salida || arranque.caja) {
    if (arranque.salida) SetHandleInformation(arranque.salida, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    inicio.dwFlags = STARTF_USESTDHANDLES;
    inicio.hStdOutput = arranque.salida;
  }
  PROCESS_INFORMATION proceso{};
  DWORD codigo = STILL_ACTIVE;
  if (CreateProcessW(nullptr, orden.data(), nullptr, nullptr, arranque.salida != nullptr, arranque.modo,
                     nullptr, nullptr, &inicio, &proceso)) {
    if (arranque.caja) *arranque.caja = TextoDeCaja(proceso.hProcess);
    if (WaitForSingleObject(proceso.hProcess, 60000) != WAIT_OBJECT_0) TerminateProcess(proceso.hProcess, 99);
    GetExitCodeProcess(proceso.hProcess, &codigo);
    CloseHandle(proceso.hThread);
    CloseHandle(proceso.hProcess);
  } else {
    ADD_FAILURE() << "not started, error " << GetLastError();
  }
  std::filesystem::remove(ruta);
  return codigo;
}

TEST(Consola, ZuviEscribeEnLaQueLoAbrioYLaDejaComoEstaba) {
  SetEnvironmentVariableW(L"ZUVI_BASE", L":memory:");
  FreeConsole();
  Consola consola;
  ASSERT_TRUE(consola.Hecha());
  consola.Toma();
  const auto como_estaba = [] { return GetConsoleOutputCP() == kPagina && GetConsoleCP() == kPagina; };
  ASSERT_TRUE(como_estaba());

  EXPECT_EQ(Corre("WScript.Echo \"ñandú € Ω\""), 0U);
  EXPECT_EQ(consola.Toma(), L"ñandú € Ω") << "also what its code page does not have";
  EXPECT_TRUE(como_estaba());
  EXPECT_EQ(Corre("WScript.Echo \"suya\"", {.modo = 0}), 0U);
  EXPECT_EQ(consola.Toma(), L"suya") << "one that it was born into";
  EXPECT_EQ(Corre("WScript.Echo \"dada\"", {.salida = consola.Salida()}), 0U);
  EXPECT_EQ(consola.Toma(), L"dada") << "one whose handle it was born with";
  EXPECT_EQ(Corre("WScript.Echo \"sale\"\r\nWScript.Quit 5"), 5U);
  EXPECT_EQ(consola.Toma(), L"sale");
  EXPECT_TRUE(como_estaba()) << "also after WScript.Quit";

  const std::filesystem::path ruta = std::filesystem::temp_directory_path() / "zuvi_consola.txt";
  const HANDLE archivo =
      CreateFileW(ruta.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, 0, nullptr);
  EXPECT_EQ(Corre("WScript.Echo \"ñandú\"\r\nErr.Raise 1000, \"guion\", \"adiós\"", {.salida = archivo}), 1U);
  CloseHandle(archivo);
  std::ifstream escrito(ruta, std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(escrito), {}), "ñandú\r\n")
      << "what was redirected stays so";
  EXPECT_NE(consola.Toma(), L"") << "the error is not";
  escrito.close();
  std::filesystem::remove(ruta);
}

TEST(Consola, SinNingunaLoQueDiceSaleEnUnaCaja) {
  SetEnvironmentVariableW(L"ZUVI_BASE", L":memory:");
  FreeConsole();
  std::wstring caja;
  EXPECT_EQ(Corre("WScript.Echo \"ñandú\"\r\nWScript.Quit 3", {.caja = &caja}), 3U);
  EXPECT_EQ(caja, L"ñandú");
  EXPECT_EQ(Corre("Err.Raise 1000, \"guion\", \"adiós\"", {.caja = &caja}), 1U);
  EXPECT_NE(caja.find(L"zuvi_consola.vbs(1,1): adiós"), std::wstring::npos) << caja;
  EXPECT_EQ(Corre("x = 1", {.caja = &caja}), 0U);
  EXPECT_EQ(caja, L"") << "nothing to say, nothing to show";
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
