// The server's doorkeeper: a program connects to it instead of the server, and it fails as servers and
// networks do, at the place that a test names.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <list>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

namespace zuvi::host {

/// How the connection fails: cut off; cut off in the middle of a statement or of a reply; one connection that
/// never answers again; the server dead; the whole server frozen, its port open.
enum class Averia { Ninguna, Corte, Mitad, Silencio, Muerte, Pasmo };

class Portero {
 public:
  /// In front of the server at this port of the loopback.
  explicit Portero(std::uint16_t servidor) : servidor_(servidor) {
    escucha_ = Abre(0);
    sockaddr_in lugar{};
    socklen_t largo = sizeof lugar;
    getsockname(escucha_, reinterpret_cast<sockaddr*>(&lugar), &largo);
    puerto_ = ntohs(lugar.sin_port);
    hilo_ = std::thread([this] { Trabaja(); });
  }
  Portero(const Portero&) = delete;
  Portero& operator=(const Portero&) = delete;
  ~Portero() {
    fin_ = true;
    hilo_.join();
    for (Par& par : pares_) Cierra(par);
    if (escucha_ >= 0) close(escucha_);
  }

  std::uint16_t Puerto() const { return puerto_; }
  /// Fails at the n-th piece from now that a side sends, counted from 1; 0 only counts.
  void Prepara(Averia averia, int trozo) {
    const std::scoped_lock candado(mutex_);
    Sana();
    averia_ = averia;
    trozo_ = trozo;
    trozos_ = 0;
  }
  /// At once, whatever is being sent.
  void Rompe(Averia averia) {
    Prepara(averia, 0);
    const std::scoped_lock candado(mutex_);
    for (Par& par : pares_) Falla(par);
    if (averia == Averia::Pasmo) pasmado_ = true;
  }
  /// The server is back; connections that did not answer are closed.
  void Repara() { Prepara(Averia::Ninguna, 0); }
  int Trozos() const { return trozos_; }

 private:
  struct Par {
    std::array<int, 2> lados{-1, -1};  // the program's, the server's
    bool mudo = false;
  };

  static int Abre(std::uint16_t puerto) {
    const int s = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int si = 1;
    setsockopt(s, SOL_SOCKET, SO_REUSEADDR, &si, sizeof si);
    const sockaddr_in lugar = Lugar(puerto);
    if (bind(s, reinterpret_cast<const sockaddr*>(&lugar), sizeof lugar) != 0 || listen(s, 16) != 0)
      throw std::runtime_error("no hay puerto para el portero");
    return s;
  }
  static sockaddr_in Lugar(std::uint16_t puerto) {
    sockaddr_in lugar{};
    lugar.sin_family = AF_INET;
    lugar.sin_port = htons(puerto);
    lugar.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return lugar;
  }
  static void Cierra(Par& par, bool de_golpe = false) {
    for (int& lado : par.lados) {
      if (lado < 0) continue;
      const linger ya{1, 0};
      if (de_golpe) setsockopt(lado, SOL_SOCKET, SO_LINGER, &ya, sizeof ya);
      close(std::exchange(lado, -1));
    }
  }

  /// Ends what failed before.
  void Sana() {
    if (escucha_ < 0) escucha_ = Abre(puerto_);
    for (Par& par : pares_)
      if (par.mudo) Cierra(par);
    pasmado_ = false;
    averia_ = Averia::Ninguna;
  }
  void Falla(Par& par) {
    const bool todos = averia_ == Averia::Muerte || averia_ == Averia::Pasmo;
    const bool calla = averia_ == Averia::Silencio || averia_ == Averia::Pasmo;
    if (averia_ == Averia::Ninguna) return;
    for (Par& otro : pares_) {
      if (!todos && &otro != &par) continue;
      otro.mudo = otro.mudo || calla;
      if (!calla) Cierra(otro, averia_ != Averia::Mitad);
    }
    pasmado_ = averia_ == Averia::Pasmo;
    if (averia_ == Averia::Muerte && escucha_ >= 0) close(std::exchange(escucha_, -1));
  }

  void Trabaja() {
    while (!fin_) {
      std::vector<pollfd> espera;
      {
        const std::scoped_lock candado(mutex_);
        pares_.remove_if([](const Par& par) { return par.lados[0] < 0; });
        espera.push_back({escucha_, POLLIN, 0});
        for (const Par& par : pares_)
          for (const int lado : par.lados)
            espera.push_back({lado, static_cast<short>(par.mudo ? POLLRDHUP : POLLIN), 0});
      }
      if (poll(espera.data(), espera.size(), 10) <= 0) continue;
      const std::scoped_lock candado(mutex_);
      std::size_t i = 1;
      for (auto par = pares_.begin(); par != pares_.end() && i < espera.size(); ++par, i += 2)
        for (const std::size_t lado : {0u, 1u})
          if (espera[i + lado].revents != 0 && espera[i + lado].fd == par->lados[lado]) Pasa(*par, lado);
      if ((espera[0].revents & POLLIN) != 0 && escucha_ == espera[0].fd) Recibe();
    }
  }
  void Recibe() {
    Par par;
    par.lados[0] = accept4(escucha_, nullptr, nullptr, SOCK_CLOEXEC);
    par.mudo = pasmado_;
    par.lados[1] = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in lugar = Lugar(servidor_);
    if (!pasmado_ && connect(par.lados[1], reinterpret_cast<const sockaddr*>(&lugar), sizeof lugar) != 0)
      Cierra(par);
    pares_.push_back(par);
  }
  void Pasa(Par& par, std::size_t lado) {
    std::array<char, 65536> bloque;
    // A side that went away takes the other one with it, so that the server undoes what was open.
    const ssize_t n = par.mudo ? 0 : recv(par.lados[lado], bloque.data(), bloque.size(), 0);
    if (n <= 0) return Cierra(par);
    const bool ahora = ++trozos_ == trozo_;
    const ssize_t pasan = !ahora ? n : averia_ == Averia::Mitad ? n / 2 : 0;
    for (ssize_t hechos = 0; hechos < pasan;) {
      const ssize_t k = send(par.lados[1 - lado], bloque.data() + hechos,
                             static_cast<std::size_t>(pasan - hechos), MSG_NOSIGNAL);
      if (k <= 0) return Cierra(par);
      hechos += k;
    }
    if (ahora) Falla(par);
  }

  std::uint16_t servidor_;
  std::uint16_t puerto_ = 0;
  int escucha_ = -1;
  std::mutex mutex_;
  std::list<Par> pares_;
  Averia averia_ = Averia::Ninguna;
  int trozo_ = 0;
  std::atomic<int> trozos_ = 0;
  bool pasmado_ = false;
  std::atomic<bool> fin_ = false;
  std::thread hilo_;
};

}  // namespace zuvi::host
