#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <thread>
#include <vector>

#include "host/anfitrion/pdf.h"
#include "host/system/rutas.h"

namespace zuvi::host {
namespace {

/// Runs a program without input and output. False when it cannot be started, fails or overruns its time.
bool Corre(std::vector<std::string> orden) {
  // One more: the null that ends them.
  std::vector<char*> argumentos(orden.size() + 1);
  std::ranges::transform(orden, argumentos.begin(), [](std::string& argumento) { return argumento.data(); });
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

bool Imprime(const std::string& pagina, const std::string& pdf, const std::string& carpeta) {
  for (const char* navegador : {"chromium", "chromium-browser", "google-chrome"})
    if (Corre({navegador, "--headless", "--disable-gpu", "--no-pdf-header-footer", "--print-to-pdf=" + pdf,
               "file://" + pagina}))
      return true;
  return Corre({"wkhtmltopdf", "-q", pagina, pdf}) ||
         Corre({"soffice", "--headless", "--convert-to", "pdf", "--outdir", carpeta, pagina});
}

}  // namespace

bool HazPdf(const std::string& pagina) {
  const std::filesystem::path html = Ruta(pagina);
  // In a folder of its own first: a printer that breaks off leaves no half page behind, and writes through no
  // link.
  std::string carpeta = TextoDeRuta(html.parent_path() / ".pdf-XXXXXX");
  if (!mkdtemp(carpeta.data())) return false;
  const std::filesystem::path hecho = Ruta(carpeta) / html.filename().replace_extension(".pdf");
  std::error_code fallo;
  const bool bien = Imprime(pagina, TextoDeRuta(hecho), carpeta) && std::filesystem::exists(hecho, fallo);
  if (bien) std::filesystem::rename(hecho, std::filesystem::path(html).replace_extension(".pdf"), fallo);
  const bool movido = bien && !fallo;
  std::filesystem::remove_all(Ruta(carpeta), fallo);
  return movido;
}

}  // namespace zuvi::host
