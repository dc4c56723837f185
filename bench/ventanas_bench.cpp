// The order editor on a screen: what opening it costs against making the very same native controls bare, and
// what a thousand openings leave behind. Runs under Wine: wine ventanas_bench.exe [orders…]
// With the numbers of orders, it opens and closes these a thousand times on the registered reference host.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/com/anfitrion_falso.h"
#include "tests/com/cliente.h"

// After the system's headers.
#include <commctrl.h>
#include <psapi.h>

namespace {

using namespace zuvi;
using namespace zuvi::prueba;
using Clock = std::chrono::steady_clock;

double Milliseconds(Clock::time_point from) {
  return std::chrono::duration<double, std::milli>(Clock::now() - from).count();
}

void Pump(int milliseconds) {
  const auto start = Clock::now();
  do {
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      ::TranslateMessage(&message);
      ::DispatchMessageW(&message);
    }
    if (milliseconds > 0) ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 2, QS_ALLINPUT);
  } while (Milliseconds(start) < milliseconds);
}

bool IsOurs(HWND window) {
  wchar_t name[64] = {};
  ::GetClassNameW(window, name, 64);
  return std::wstring_view(name).starts_with(L"Zuvi");
}

BOOL CALLBACK FindShown(HWND window, LPARAM out) {
  if (!::IsWindowVisible(window) || !IsOurs(window)) return TRUE;
  *reinterpret_cast<HWND*>(out) = window;
  return FALSE;
}
HWND Shown() {
  HWND window = nullptr;
  ::EnumThreadWindows(::GetCurrentThreadId(), &FindShown, reinterpret_cast<LPARAM>(&window));
  return window;
}

BOOL CALLBACK Count(HWND, LPARAM count) {
  ++*reinterpret_cast<int*>(count);
  return TRUE;
}
int WindowsOfThread() {
  int count = 0;
  ::EnumThreadWindows(::GetCurrentThreadId(), &Count, reinterpret_cast<LPARAM>(&count));
  return count;
}

/// One native window and how to make it again.
struct Plan {
  std::wstring window_class, text;
  DWORD style = 0, extended = 0;
  RECT place{};
  HFONT font = nullptr;
  std::size_t parent = 0;
};

/// A window of ours with all that it holds; what system controls make for themselves comes by itself.
void Describe(HWND window, std::size_t parent, std::vector<Plan>& out) {
  Plan plan;
  wchar_t text[256] = {};
  ::GetClassNameW(window, text, 256);
  plan.window_class = text;
  const bool ours = IsOurs(window);
  if (ours) plan.window_class = out.empty() ? L"#32770" : L"STATIC";
  ::GetWindowTextW(window, text, 256);
  plan.text = text;
  plan.style = static_cast<DWORD>(::GetWindowLongPtrW(window, GWL_STYLE));
  plan.extended = static_cast<DWORD>(::GetWindowLongPtrW(window, GWL_EXSTYLE));
  plan.font = reinterpret_cast<HFONT>(::SendMessageW(window, WM_GETFONT, 0, 0));
  plan.parent = parent;
  ::GetWindowRect(window, &plan.place);
  if (!out.empty()) ::MapWindowPoints(nullptr, ::GetParent(window), reinterpret_cast<POINT*>(&plan.place), 2);
  const std::size_t self = out.size();
  out.push_back(std::move(plan));
  if (!ours) return;
  std::vector<HWND> children;
  for (HWND child = ::GetWindow(window, GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT))
    children.push_back(child);
  for (const HWND child : children) Describe(child, self, out);
}

void Paint(HWND window) { ::RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN); }

LRESULT CALLBACK PassOn(HWND window, UINT id, WPARAM w, LPARAM l, UINT_PTR, DWORD_PTR) {
  return ::DefSubclassProc(window, id, w, l);
}

/// `heard` as by a program that hears the messages of its controls, as it has to for keys and focus.
HWND MakeBare(const std::vector<Plan>& plans, bool heard) {
  std::vector<HWND> made;
  for (const Plan& plan : plans) {
    const HWND parent = made.empty() ? nullptr : made[plan.parent];
    const DWORD style = parent ? plan.style : plan.style & ~static_cast<DWORD>(WS_VISIBLE);
    const HWND window =
        ::CreateWindowExW(plan.extended, plan.window_class.c_str(), plan.text.c_str(), style, plan.place.left,
                          plan.place.top, plan.place.right - plan.place.left,
                          plan.place.bottom - plan.place.top, parent, nullptr, nullptr, nullptr);
    if (!window) std::printf("cannot make a %ls\n", plan.window_class.c_str());
    if (plan.font) ::SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(plan.font), FALSE);
    if (heard) ::SetWindowSubclass(window, &PassOn, 1, 0);
    made.push_back(window);
  }
  ::ShowWindow(made[0], SW_SHOW);
  Paint(made[0]);
  ::SetFocus(::GetTopWindow(made[0]));
  return made[0];
}

bool Close(HWND window) {
  ::PostMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0);
  const auto start = Clock::now();
  while (::IsWindow(window) && Milliseconds(start) < 5000) Pump(2);
  return !::IsWindow(window);
}

double Middle(std::vector<double> times) {
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

int CompareOpening() {
  const NombresDePrueba names;
  Tienda tienda;
  tienda.limite = 1 << 30;
  Dll dll;
  {
    const auto produccion = dll.Crea();
    const auto ambiente = tienda.Ambiente();
    produccion->putref_Ambiente(reinterpret_cast<::Ambiente*>(ambiente.get()));
    std::vector<double> ours, bare, heard;
    std::size_t controls = 0;
    for (int round = 0; round < 25; ++round) {
      auto start = Clock::now();
      LONG op = 12;
      produccion->ConsultaOp(&op);
      const HWND window = Shown();
      if (!window) return std::puts("the editor did not open"), 1;
      Paint(window);
      ours.push_back(Milliseconds(start));
      std::vector<Plan> plans;
      Describe(window, 0, plans);
      controls = plans.size() - 1;
      Pump(20);
      for (const bool with_ears : {false, true}) {
        start = Clock::now();
        const HWND copy = MakeBare(plans, with_ears);
        (with_ears ? heard : bare).push_back(Milliseconds(start));
        ::DestroyWindow(copy);
        Pump(20);
      }
      if (!Close(window)) return std::puts("the editor did not close"), 1;
      Pump(20);
    }
    tienda.de_parte_de = {};
    std::printf(
        "editor of %zu native controls: %.1f ms; bare %.1f ms, ratio %.2f; bare and heard %.1f ms, ratio "
        "%.2f\n",
        controls, Middle(ours), Middle(bare), Middle(ours) / Middle(bare), Middle(heard),
        Middle(ours) / Middle(heard));
  }
  const bool idle = dll.PuedeDescargarse() == S_OK;
  if (!idle) std::puts("the DLL is still in use");
  return idle ? 0 : 1;
}

struct Left {
  int windows = 0;
  DWORD handles = 0, gdi = 0, user = 0;
  std::size_t kilobytes = 0;
};

Left Look() {
  Left left;
  left.windows = WindowsOfThread();
  ::GetProcessHandleCount(::GetCurrentProcess(), &left.handles);
  left.gdi = ::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS);
  left.user = ::GetGuiResources(::GetCurrentProcess(), GR_USEROBJECTS);
  PROCESS_MEMORY_COUNTERS memory{};
  ::K32GetProcessMemoryInfo(::GetCurrentProcess(), &memory, sizeof memory);
  left.kilobytes = memory.WorkingSetSize / 1024;
  return left;
}

ComPtr<IDispatch> Create(const wchar_t* name) {
  CLSID clsid{};
  ComPtr<IDispatch> object;
  if (SUCCEEDED(::CLSIDFromProgID(name, &clsid)))
    ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.put_void());
  return object;
}

/// What is left behind by as many openings of the same windows without anybody behind them: what the system
/// keeps for itself.
void CycleBare(std::vector<Plan> plans, int cycles) {
  // Fonts and the rich text class went with the windows they were taken from.
  ::LoadLibraryW(L"msftedit.dll");
  for (Plan& plan : plans) plan.font = nullptr;
  const auto kilobytes = [] { return static_cast<long long>(Look().kilobytes); };
  long long before = 0;
  for (int i = 0; i <= cycles; ++i) {
    ::DestroyWindow(MakeBare(plans, false));
    Pump(0);
    if (i == cycles / 2) before = kilobytes();
  }
  std::printf("the same windows bare, %d times more: %lld KB\n", cycles / 2, kilobytes() - before);
}

/// Cycles on the registered host; every window is closed as a user does. The orders are pending ones, 0 is a
/// new one.
int Cycle(const std::vector<int>& orders) {
  constexpr int kCycles = 1000;
  int failures = 0;
  std::vector<Plan> plans;
  {
    const auto ambiente = Create(L"ZuviEnviroment.Ambiente"),
               produccion = Create(L"ZuviProduccion.Produccion");
    if (!ambiente || !produccion) return std::puts("the classes are not registered"), 1;
    Respuesta r;
    Llama(produccion.get(), L"Ambiente", DISPATCH_PROPERTYPUTREF, {V(ambiente.get())}, r);
    for (int i = 0; i <= kCycles; ++i) {
      if (i == 100 || i == 200 || i % 250 == 0) {
        Pump(100);
        const Left left = Look();
        std::printf("after %4d: %d windows, %lu handles, %lu GDI, %lu USER, %zu KB\n", i, left.windows,
                    left.handles, left.gdi, left.user, left.kilobytes);
      }
      Respuesta abre;
      const int order = orders[static_cast<std::size_t>(i) % orders.size()];
      if (order == 0)
        Llama(produccion.get(), L"NuevaOp", kMetodo, {}, abre);
      else
        Llama(produccion.get(), i % 2 ? L"ConsultaOp" : L"ModificaOp", kMetodo, {V(order)}, abre);
      const HWND window = Shown();
      if (window && plans.empty()) Describe(window, 0, plans);
      if (!window || !Close(window)) ++failures;
      if (failures > 5) return std::puts("windows do not open or close"), 1;
    }
  }
  Pump(50);
  CycleBare(std::move(plans), kCycles);
  const auto idle = [](const wchar_t* file) {
    const HMODULE dll = ::GetModuleHandleW(file);
    const auto ask = reinterpret_cast<HRESULT(WINAPI*)()>(
        reinterpret_cast<void*>(dll ? ::GetProcAddress(dll, "DllCanUnloadNow") : nullptr));
    return ask && ask() == S_OK;
  };
  const bool component = idle(L"ZuviProduccion.dll"), host = idle(L"ZuviHost.dll");
  std::printf("%d cycles, %d failures; component %s, host %s\n", kCycles, failures,
              component ? "idle" : "in use", host ? "idle" : "in use");
  return failures == 0 && component ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  std::vector<int> orders;
  for (int i = 1; i < argc; ++i) orders.push_back(std::atoi(argv[i]));
  const int result = orders.empty() ? CompareOpening() : Cycle(orders);
  ::CoUninitialize();
  return result;
}
