// Every allocation of every batch operation is once the one that fails, the host's own included.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "tests/support/taller.h"

namespace {

thread_local long g_cuenta = 0;
thread_local long g_falla = 0;  // 0 never
thread_local bool g_persistente = false;

bool Falla() {
  if (g_falla == 0) return false;
  ++g_cuenta;
  return g_cuenta == g_falla || (g_persistente && g_cuenta > g_falla);
}

}  // namespace

// Not inlined: the compiler would see free() on what it still takes for the library's own operator new.
[[gnu::noinline]] void* operator new(std::size_t n) {
  void* p = Falla() ? nullptr : std::malloc(n != 0 ? n : 1);
  if (!p) throw std::bad_alloc();
  return p;
}
[[gnu::noinline]] void operator delete(void* p) noexcept { std::free(p); }
[[gnu::noinline]] void operator delete(void* p, std::size_t) noexcept { std::free(p); }

namespace zuvi::pruebas {
namespace {

TEST(SinMemoria, NiSeCaeNiPierdeObjetos) {
  void (*const operaciones[])(Produccion&) = {[](Produccion& p) { p.Ensamble("MESA", 9, 6, 0); },
                                              [](Produccion& p) { p.Desensamble("MESA", 1.5, 9, 0); },
                                              [](Produccion& p) { p.EntregaProductoTerminado(7); },
                                              [](Produccion& p) { p.CancelaOp(8); }};
  for (const bool persistente : {false, true})
    for (const auto operacion : operaciones) {
      Taller t;
      t.PonMesa();
      t.PonOrden("7", "PE", {{"MESA", 1.0}, {"MESA", 2.0}}, 2);
      t.PonOrden("8", "PE", {}, 0);
      const auto prod = std::make_shared<Produccion>(t.modulo);
      prod->PonAmbiente(t.ambiente);
      long n = 0;
      do {
        t.escritorio.Olvida();
        t.mundo.respuestas = {true};
        t.mundo.bitacora.clear();
        const int vivos = t.mundo.vivos;
        g_persistente = persistente;
        g_cuenta = 0;
        g_falla = ++n;
        operacion(*prod);
        g_falla = 0;
        t.modulo.Suelta();
        ASSERT_EQ(t.mundo.vivos, vivos) << n;
      } while (g_cuenta >= n);
      EXPECT_GT(n, 20);
      EXPECT_TRUE(t.escritorio.Avisos().empty()) << "the run without a failure reported one";
    }
}

}  // namespace
}  // namespace zuvi::pruebas
