// The shift windows on a screen, with many rows: whether twice the rows take twice the time, and what a list
// costs against a bare list view with the same rows. Runs under Wine: turnos_win32.exe [rounds]
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "bench/turnos_trabajos.h"
#include "toolkit/win32/win32_desktop.h"
#include "toolkit/win32/windows_ui.h"

namespace zuvi::bench {
namespace {

/// Knows when somebody last let events in: after each row that is listed.
class EscritorioConReloj : public Win32Desktop {
 public:
  using Win32Desktop::Win32Desktop;
  static double Ahora() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
  }
  void PumpIfDue() override {
    Win32Desktop::PumpIfDue();
    ultima_ = Ahora();
  }
  double Ultima() const { return ultima_; }

 private:
  double ultima_ = 0;
};

struct Pantalla {
  EscritorioConReloj escritorio{::GetModuleHandleW(nullptr)};
};

class Visible : private Pantalla, public Banco {
 public:
  explicit Visible(const std::string& base) : Banco(base, escritorio) {}

 protected:
  static double Ahora() { return EscritorioConReloj::Ahora(); }
  double Listadas() const { return escritorio.Ultima(); }
  /// Whoever asks for the rows has them brought in first.
  static void Pinta(const Control& lista) {
    const auto ventana = reinterpret_cast<HWND>(lista.NativeSide()->Handle());
    ::SendMessageW(ventana, LVM_GETITEMCOUNT, 0, 0);
    ::RedrawWindow(ventana, nullptr, nullptr, RDW_UPDATENOW);
  }
  // Whoever failed would have shown a box, and the run would stand still.
  void ExigeSinAvisos() { escritorio.PumpEvents(); }
};

/// The rows of `Lista` in a list view that nobody hears.
class ListaDesnuda : public Turnos<Visible> {
 public:
  ListaDesnuda(std::int64_t n, bool atiende) : atiende_(atiende) { PonTurnos(n); }
  double Corre() {
    const HWND marco = ::CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 700, 500,
                                         nullptr, nullptr, nullptr, nullptr);
    const HWND lista = ::CreateWindowExW(0, WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | LVS_REPORT, 0, 0, 680,
                                         460, marco, nullptr, nullptr, nullptr);
    LVCOLUMNW columna{};
    columna.mask = LVCF_WIDTH;
    columna.cx = 120;
    for (int i = 0; i < 5; ++i)
      ::SendMessageW(lista, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&columna));
    const double tiempo = Segundos([&] {
      ::SendMessageW(lista, WM_SETREDRAW, FALSE, 0);
      Llena(lista);
      ::SendMessageW(lista, WM_SETREDRAW, TRUE, 0);
      ::RedrawWindow(lista, nullptr, nullptr, RDW_UPDATENOW);
    });
    ::DestroyWindow(marco);
    return tiempo;
  }

 private:
  void Llena(HWND lista) {
    const auto filas = Base().Consulta("SELECT * FROM turnos ORDER BY turno");
    for (int i = 0; !filas->Eof(); filas->MoveNext(), ++i) {
      int columna = 0;
      for (const FixedText campo : {FixedText("turno"), FixedText("entrada"), FixedText("comida"),
                                    FixedText("regcomida"), FixedText("salida")}) {
        std::wstring texto = Wide(ToText(filas->Campo(campo)));
        LVITEMW celda{};
        celda.mask = LVIF_TEXT;
        celda.iItem = i;
        celda.iSubItem = columna;
        celda.pszText = texto.data();
        ::SendMessageW(lista, columna == 0 ? LVM_INSERTITEMW : LVM_SETITEMW, 0,
                       reinterpret_cast<LPARAM>(&celda));
        ++columna;
      }
      MSG mensaje;
      while (atiende_ && ::PeekMessageW(&mensaje, nullptr, 0, 0, PM_REMOVE)) ::DispatchMessageW(&mensaje);
    }
  }
  bool atiende_;
};

/// Middle times of works done by turns.
template <class... Trabajo>
std::array<double, sizeof...(Trabajo)> PorTurnos(int vueltas, Trabajo&... trabajos) {
  std::array<std::vector<double>, sizeof...(Trabajo)> tiempos;
  for (int vuelta = 0; vuelta < vueltas; ++vuelta) {
    std::size_t i = 0;
    (tiempos[i++].push_back(trabajos.Corre()), ...);
  }
  std::array<double, sizeof...(Trabajo)> medios{};
  for (std::size_t i = 0; i < medios.size(); ++i) medios[i] = Mediana(std::move(tiempos[i]));
  return medios;
}

template <class Trabajo>
void AlDoble(const char* nombre, std::int64_t n, int vueltas) {
  Trabajo mitad(n / 2), entero(n);
  const auto [la_mitad, todo] = PorTurnos(vueltas, mitad, entero);
  std::printf("%-24s %6lld rows %8.1f ms; against half of them %.2f\n", nombre, static_cast<long long>(n),
              todo * 1e3, todo / la_mitad);
}

void ContraDesnuda(std::int64_t n, int vueltas) {
  Lista<Visible> nuestra(n);
  ListaDesnuda ciega(n, false), atenta(n, true);
  const auto [llena, sin_atender, atendiendo] = PorTurnos(vueltas, nuestra, ciega, atenta);
  std::printf(
      "lv of %lld rows, %.1f ms; bare %.1f ms, ratio %.2f; bare that lets events "
      "in after each row %.1f ms, ratio %.2f\n",
      static_cast<long long>(n), llena * 1e3, sin_atender * 1e3, llena / sin_atender, atendiendo * 1e3,
      llena / atendiendo);
}

}  // namespace
}  // namespace zuvi::bench

int main(int argc, char** argv) {
  using namespace zuvi::bench;
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  const int vueltas = argc > 1 ? std::atoi(argv[1]) : 5;
  ContraDesnuda(10'000, vueltas);
  AlDoble<Lista<Visible>>("LlenaTurnos", 10'000, vueltas);
  AlDoble<LlenaEmpleados<Visible>>("LlenaEmpleados", 50'000, vueltas);
  AlDoble<LlenaYRemueve<Visible>>("LlenaEmpleadosYRemueve", 50'000, vueltas);
  AlDoble<MueveTodos<Visible>>("MueveTodosIdaYVuelta", 50'000, vueltas);
}
