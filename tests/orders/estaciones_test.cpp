// Two stations on one database: an order is open for modification at one of them at a time, and a station
// that died does not keep it for ever.
#include <sys/socket.h>

#include <array>
#include <csignal>
#include <utility>

#include "host/mensajes.h"
#include "host/ocupadas.h"
#include "orders/frm_op.h"
#include "tests/host/procesos.h"
#include "tests/host/tienda.h"

namespace zuvi::host {
namespace {

constexpr std::int32_t kOrden = 110;  // last saved by RAUL

class Estacion : public Tienda {
 public:
  Estacion(const std::string& base, const std::string& usuario) : Tienda(AnfitrionEn(base, usuario)) {}
  /// The editor that was opened; null when the order was refused.
  std::shared_ptr<Form> Modifica() {
    Mensajes();
    produccion->ModificaOp(kOrden);
    return escritorio.Forms().empty() ? nullptr : escritorio.Forms().back();
  }
  std::string Mensajes() { return anfitrion->TomaRegistro(); }
  double Ocupado() { return Numero("SELECT ocupado FROM op WHERE op = " + Decimal(kOrden)); }
};

/// RAUL's station in a process of its own. To be started before the own process opens the database.
class EstacionAparte {
 public:
  explicit EstacionAparte(const std::string& base) {
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, extremos_.data()) != 0) throw HostError("socketpair");
    pid_ = Hijo([&] {
      // Whatever becomes of the test, no station stays behind.
      alarm(60);
      Recibe(1);
      Estacion estacion(base, "RAUL");
      const auto ventana = estacion.Modifica();
      Manda(1, ventana ? 'A' : 'N');
      Recibe(1);
      Manda(1, ventana && ventana->Unload() ? 'C' : 'N');
      return 0;
    });
  }
  EstacionAparte(const EstacionAparte&) = delete;
  ~EstacionAparte() {
    Mata();
    for (const int extremo : extremos_) close(extremo);
  }
  /// Goes on to its next step: opens the order ('A'), then closes it ('C').
  char Sigue() {
    Manda(0, '.');
    return Recibe(0);
  }
  void Mata() {
    if (pid_ == 0) return;
    kill(pid_, SIGKILL);
    Espera(std::exchange(pid_, 0));
  }

 private:
  void Manda(std::size_t extremo, char c) {
    if (write(extremos_[extremo], &c, 1) != 1) throw HostError("write");
  }
  char Recibe(std::size_t extremo) {
    char c = 0;
    return read(extremos_[extremo], &c, 1) == 1 ? c : '?';
  }
  std::array<int, 2> extremos_{};
  pid_t pid_ = 0;
};

void SeTurnanLaOrden(const std::string& base) {
  EstacionAparte una(base), otra(base);
  Estacion lucia(base, "LUCIA"), raul(base, "RAUL");
  const std::string ocupada = TextoMensaje(756, "es") + " RAUL " + TextoMensaje(76, "es") + "\n";

  ASSERT_EQ(una.Sigue(), 'A');
  EXPECT_EQ(lucia.Ocupado(), 1);
  EXPECT_EQ(lucia.Modifica(), nullptr);
  EXPECT_EQ(lucia.Mensajes(), ocupada);
  EXPECT_EQ(raul.Modifica(), nullptr);
  EXPECT_EQ(raul.Mensajes(), TextoMensaje(755, "es") + "\n");

  ASSERT_EQ(una.Sigue(), 'C');
  EXPECT_EQ(lucia.Ocupado(), 0);
  const auto ventana = lucia.Modifica();
  ASSERT_TRUE(ventana);
  EXPECT_EQ(lucia.Mensajes(), "");
  EXPECT_EQ(raul.Ocupado(), 1);
  EXPECT_TRUE(ventana->Unload());
  EXPECT_EQ(raul.Ocupado(), 0);

  ASSERT_EQ(otra.Sigue(), 'A');
  otra.Mata();
  EXPECT_EQ(lucia.Ocupado(), 1);
  EXPECT_EQ(lucia.Modifica(), nullptr);
  EXPECT_EQ(lucia.Mensajes(), ocupada);
  EXPECT_TRUE(LiberaOrden(lucia.Base(), kOrden, "LUCIA"));
  EXPECT_FALSE(LiberaOrden(lucia.Base(), kOrden, "LUCIA"));
  const auto liberada = lucia.Modifica();
  ASSERT_TRUE(liberada);
  EXPECT_TRUE(liberada->Unload());
}

TEST(DosEstaciones, SeTurnanUnaOrdenEnUnArchivo) {
  const Archivo archivo("zuvi_dos_estaciones.db");
  Estacion(archivo.Texto(), "ADMIN");
  SeTurnanLaOrden(archivo.Texto());
}

TEST(DosEstaciones, SeTurnanUnaOrdenEnElServidor) {
  const char* servidor = std::getenv("ZUVI_MARIADB");
  if (!servidor || !*servidor) GTEST_SKIP() << "ZUVI_MARIADB is not set";
  { Tienda nueva(servidor); }
  SeTurnanLaOrden(servidor);
}

}  // namespace
}  // namespace zuvi::host
