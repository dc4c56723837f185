#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <array>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <thread>
#include <vector>

#include "host/pdf.h"
#include "host/rutas.h"

extern char** environ;

namespace zuvi::host {
namespace {

/// Runs a program without input and output. False when it cannot be started, fails or overruns its time.
bool Corre(std::vector<std::string> orden) {
  std::vector<char*> argumentos;
  for (std::string& argumento : orden) argumentos.push_back(argumento.data());
  argumentos.push_back(nullptr);
  posix_spawn_file_actions_t acciones;
  posix_spawn_file_actions_init(&acciones);
  for (const int canal : {0, 1, 2})
    posix_spawn_file_actions_addopen(&acciones, canal, "/dev/null", canal == 0 ? O_RDONLY : O_WRONLY, 0);
  pid_t pid = 0;
  const int fallo = posix_spawnp(&pid, argumentos[0], &acciones, nullptr, argumentos.data(), environ);
  posix_spawn_file_actions_destroy(&acciones);
  if (fallo != 0) return false;
  const auto limite = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  int estado = 0;
  while (waitpid(pid, &estado, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > limite) {
      kill(pid, SIGKILL);
      waitpid(pid, &estado, 0);
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return WIFEXITED(estado) && WEXITSTATUS(estado) == 0;
}

}  // namespace

bool HazPdf(const std::string& pagina) {
  const std::filesystem::path html = Ruta(pagina);
  const std::string pdf = TextoDeRuta(std::filesystem::path(html).replace_extension(".pdf"));
  for (const char* navegador : {"chromium", "chromium-browser", "google-chrome"})
    if (Corre({navegador, "--headless", "--disable-gpu", "--no-pdf-header-footer", "--print-to-pdf=" + pdf,
               "file://" + pagina}))
      return true;
  return Corre({"wkhtmltopdf", "-q", pagina, pdf}) ||
         Corre({"soffice", "--headless", "--convert-to", "pdf", "--outdir", TextoDeRuta(html.parent_path()),
                pagina});
}

}  // namespace zuvi::host
