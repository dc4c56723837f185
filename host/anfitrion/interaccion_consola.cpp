#include "host/anfitrion/interaccion_consola.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <iostream>

#include "host/anfitrion/consola.h"
#include "host/anfitrion/interaccion_respuestas.h"
#include "host/anfitrion/pdf.h"

namespace zuvi::host {
namespace {

// A signal handler can reach nothing but a variable of its own.
volatile std::sig_atomic_t cancelado = 0;

extern "C" void AlInterrumpir(int senal) {
  cancelado = 1;
  std::signal(senal, SIG_DFL);
}

/// One line that is written over on a terminal; elsewhere one line a step.
class BarraDeConsola final : public Progreso {
 public:
  BarraDeConsola(std::int32_t total, const std::string& titulo)
      : total_(std::max(total, 1)), terminal_(EsTerminal(stderr)) {
    std::cerr << titulo << '\n';
  }
  ~BarraDeConsola() override {
    if (terminal_ && pintada_) std::cerr << '\n';
  }
  void Avanza(std::int32_t paso, const std::string& texto, const std::string& texto2) override {
    constexpr std::int64_t kAncho = 20;
    const auto llenos = static_cast<std::size_t>(std::clamp<std::int64_t>(kAncho * paso / total_, 0, kAncho));
    // Past the stream, which shows what would move the cursor instead of moving it.
    if (terminal_) std::fputs("\r\033[K", stderr);
    std::cerr << '[' << std::string(llenos, '#') << std::string(kAncho - llenos, '.') << "] " << paso << '/'
              << total_ << "  " << texto;
    if (!texto2.empty()) std::cerr << "  " << texto2;
    if (terminal_)
      std::cerr << std::flush;
    else
      std::cerr << '\n';
    pintada_ = true;
  }

 private:
  std::int64_t total_;
  bool terminal_;
  bool pintada_ = false;
};

}  // namespace

ConsolaInteraccion::ConsolaInteraccion(std::optional<bool> respuesta) : respuesta_(respuesta) {
  std::signal(SIGINT, AlInterrumpir);
}

void ConsolaInteraccion::Mensaje(const std::string& texto, EstiloMensaje estilo) {
  std::cerr << (estilo == EstiloMensaje::Error ? "Error: " : "") << texto << '\n';
}

bool ConsolaInteraccion::Pregunta(const std::string& texto) {
  std::cerr << texto;
  if (respuesta_ || !EsTerminal(stdin)) {
    const bool respuesta = respuesta_.value_or(false);
    std::cerr << (respuesta ? " sí" : " no") << (respuesta_ ? "" : " (no hay a quién preguntar)") << '\n';
    return respuesta;
  }
  std::cerr << " (s/n) " << std::flush;
  std::string linea;
  return std::getline(std::cin, linea) && EsSi(linea);
}

std::unique_ptr<Progreso> ConsolaInteraccion::AbreProgreso(std::int32_t total, const std::string& titulo,
                                                           const std::string& /*animacion*/) {
  return std::make_unique<BarraDeConsola>(total, titulo);
}

void ConsolaInteraccion::MuestraDocumento(const std::string& archivo,
                                          const std::function<void(const std::string&)>& /*dice*/) {
  std::cout << "Reporte escrito en " << archivo << '\n';
#ifndef _WIN32
  HazPdf(archivo);
#endif
}

bool ConsolaInteraccion::Cancelado() { return cancelado != 0; }

}  // namespace zuvi::host
