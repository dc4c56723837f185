// Opens the sample window and runs until it is closed: `toolkit_muestra [dialog]`, where "dialog" offers
// every message to IsDialogMessage first, as many hosts do.
#include <cstdio>
#include <cstring>

#include "tests/toolkit_win32/sample_form.h"
#include "toolkit/win32/win32_desktop.h"
#include "toolkit/win32/windows_ui.h"

int main(int argc, char** argv) {
  const bool dialog = argc > 1 && std::strcmp(argv[1], "dialog") == 0;
  zuvi::Win32Desktop desktop(::GetModuleHandleW(nullptr));
  const auto form = std::make_shared<zuvi::sample::SampleForm>(desktop);
  form->Show();
  std::size_t told = 0;
  MSG message;
  while (form->Visible() && ::GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (!dialog || !::IsDialogMessageW(::GetActiveWindow(), &message)) {
      ::TranslateMessage(&message);
      ::DispatchMessageW(&message);
    }
    for (; told < form->log.size(); ++told) std::printf("%s\n", form->log[told].c_str());
    std::fflush(stdout);
  }
  return 0;
}
