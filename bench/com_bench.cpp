// What a kit assembly costs through COM with a host that does nothing, against two floors in the same run:
// the very calls the host received, with the ids that were kept, and the same calls by name, each looked up
// as a script does. Creating the document is a service of the system and told apart: it takes from a third to
// nine tenths of the time, as the machine happens to be idle or busy. Runs under Wine: wine com_bench.exe
// [runs]
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "automation/class_factory.h"
#include "automation/com_ptr.h"
#include "automation/handles.h"
#include "tests/com/anfitrion_falso.h"
#include "tests/com/cliente.h"

namespace {

using namespace zuvi;
using namespace zuvi::prueba;
using Clock = std::chrono::steady_clock;

/// One thing that was asked of the host.
struct Event {
  enum class Kind { Create, Name, Invoke } kind;
  IDispatch* object = nullptr;
  std::wstring name;
  DISPID id = 0;
  WORD flags = 0;
  std::vector<VARIANT> args;
};

struct Recorder {
  bool on = false;
  std::vector<Event> events;
};

/// An object of the host: each name it is asked for becomes a member, which answers the same value every
/// time.
class Null final : public IDispatch {
 public:
  using Answer = std::function<void(const std::wstring& name, const DISPPARAMS&, VARIANT* result)>;
  Null(Recorder& recorder, Answer answer) : recorder_(recorder), answer_(std::move(answer)) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    *out = iid == IID_IUnknown || iid == IID_IDispatch ? this : nullptr;
    return *out ? (AddRef(), S_OK) : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  STDMETHODIMP GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* id) override {
    auto found = std::find(names_.begin(), names_.end(), names[0]);
    if (found == names_.end()) found = names_.insert(names_.end(), names[0]);
    *id = static_cast<DISPID>(found - names_.begin()) + 1;
    if (recorder_.on) recorder_.events.push_back({Event::Kind::Name, this, names[0], *id, 0, {}});
    return S_OK;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result, EXCEPINFO*,
                      UINT*) override {
    if (recorder_.on) {
      Event event{Event::Kind::Invoke, this, names_[static_cast<std::size_t>(id) - 1], id, flags, {}};
      for (UINT i = 0; i < params->cArgs; ++i) {
        VARIANT copy{};
        ::VariantCopyInd(&copy, &params->rgvarg[i]);
        event.args.push_back(copy);
      }
      recorder_.events.push_back(std::move(event));
    }
    answer_(names_[static_cast<std::size_t>(id) - 1], *params, result);
    return S_OK;
  }

 private:
  ~Null() = default;
  ULONG references_ = 1;
  Recorder& recorder_;
  Answer answer_;
  std::vector<std::wstring> names_;
};

void Give(VARIANT* result, const ComPtr<IDispatch>& object) {
  V_VT(result) = VT_DISPATCH;
  V_DISPATCH(result) = ComPtr<IDispatch>(object).detach();
}

/// A host whose one kit has ten components. Columns hold what a shop's do: article codes are texts, all else
/// is numbers.
class Host {
 public:
  Host() {
    field_ = Make([](const std::wstring&, const DISPPARAMS&, VARIANT* r) { *r = V(2.0); });
    code_ = Make([](const std::wstring&, const DISPPARAMS&, VARIANT* r) {
      V_BSTR(r) = ::SysAllocString(L"TORN-0042");
      V_VT(r) = VT_BSTR;
    });
    fields_ = Make([this](const std::wstring&, const DISPPARAMS& p, VARIANT* r) {
      Give(r, wcscmp(V_BSTR(&p.rgvarg[0]), L"Componente") == 0 ? code_ : field_);
    });
    rows_ = Make([this](const std::wstring& name, const DISPPARAMS&, VARIANT* r) {
      if (name == L"EOF") *r = V(VT_BOOL, row_ >= 10 ? VARIANT_TRUE : VARIANT_FALSE);
      if (name == L"MoveNext") ++row_;
      if (name == L"Fields") Give(r, fields_);
    });
    environment = Make([this](const std::wstring& name, const DISPPARAMS&, VARIANT* r) {
      if (name == L"Conexion") return Give(r, field_);
      *r = V(1);
    });
    const Null::Answer answers[] = {[this](const std::wstring& name, const DISPPARAMS& p, VARIANT* r) {
                                      if (name != L"Consulta") return void(*r = V(1));
                                      const VARIANT& sql = p.rgvarg[p.cArgs - 1];
                                      if (wcsstr(V_BSTR(&sql), L"FROM comppart")) row_ = 0;
                                      Give(r, rows_);
                                    },
                                    [](const std::wstring& name, const DISPPARAMS& p, VARIANT*) {
                                      // The veto is taken back, in whatever form it came.
                                      const bool start = name == L"IniciaProceso";
                                      if (!start && name != L"ConsultaProceso") return;
                                      VARIANT& flag = p.rgvarg[start ? 5 : 0];
                                      if (V_VT(&flag) == (VT_BYREF | VT_VARIANT))
                                        *V_VARIANTREF(&flag) = V(VT_BOOL, VARIANT_FALSE);
                                    },
                                    [](const std::wstring&, const DISPPARAMS&, VARIANT*) {},
                                    [](const std::wstring&, const DISPPARAMS&, VARIANT* r) {
                                      if (r) *r = V(1.5);
                                    }};
    for (std::size_t i = 0; i < std::size(Tienda::kClases); ++i) {
      classes_.push_back(Make(answers[i]));
      const auto factory = ComPtr<IClassFactory>::Adopt(new ClassFactory(module_, [this, i] {
        if (recorder.on)
          recorder.events.push_back({Event::Kind::Create, nullptr, {}, static_cast<DISPID>(i), 0, {}});
        return classes_[i].As<IUnknown>(IID_IUnknown);
      }));
      DWORD cookie = 0;
      ::CoRegisterClassObject(Tienda::ClaseDe(i), factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                              &cookie);
    }
  }

  /// The objects that were created, once more.
  void Create() {
    for (const Event& event : recorder.events) {
      if (event.kind != Event::Kind::Create) continue;
      ComPtr<IDispatch> object;
      ::CoCreateInstance(Tienda::ClaseDe(static_cast<std::size_t>(event.id)), nullptr, CLSCTX_INPROC_SERVER,
                         IID_IDispatch, object.put_void());
    }
  }

  /// The recorded calls once more, made bare: with the look-ups that were recorded, or one for each call.
  void Repeat(bool each_by_name) {
    for (Event& event : recorder.events) {
      if (event.kind == (each_by_name ? Event::Kind::Invoke : Event::Kind::Name)) {
        LPOLESTR name = event.name.data();
        DISPID id = 0;
        event.object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
      }
      if (event.kind == Event::Kind::Invoke) {
        VARIANT args[16];
        for (std::size_t i = 0; i < event.args.size(); ++i) {
          ::VariantInit(&args[i]);
          ::VariantCopy(&args[i], &event.args[i]);
        }
        DISPPARAMS params{args, nullptr, static_cast<UINT>(event.args.size()), 0};
        UniqueVariant result;
        EXCEPINFO exception{};
        event.object->Invoke(event.id, IID_NULL, LOCALE_USER_DEFAULT, event.flags, &params, result.put(),
                             &exception, nullptr);
        for (std::size_t i = 0; i < event.args.size(); ++i) ::VariantClear(&args[i]);
      }
    }
  }

  Recorder recorder;
  ComPtr<IDispatch> environment;

 private:
  ComPtr<IDispatch> Make(Null::Answer answer) {
    return ComPtr<IDispatch>::Adopt(new Null(recorder, std::move(answer)));
  }
  ComServer module_{"bench", nullptr, 0};
  int row_ = 0;
  ComPtr<IDispatch> field_, code_, fields_, rows_;
  std::vector<ComPtr<IDispatch>> classes_;
};

double Time(int runs, const std::function<void()>& body) {
  const auto start = Clock::now();
  for (int i = 0; i < runs; ++i) body();
  return std::chrono::duration<double, std::micro>(Clock::now() - start).count() / runs;
}

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// Times of one kind, a round each.
using Series = std::vector<double>;

}  // namespace

int main(int argc, char** argv) {
  const int runs = argc > 1 ? std::atoi(argv[1]) : 100;
  ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  const NombresDePrueba names;
  Host host;
  Dll dll;
  const auto produccion = dll.Crea();
  produccion->putref_Ambiente(reinterpret_cast<::Ambiente*>(host.environment.get()));
  const UniqueBstr kit(::SysAllocString(L"K"));
  const auto assemble = [&] {
    BSTR articulo = kit.get();
    LONG almacen = 1, cantidad = 2;
    produccion->Ensamble(&articulo, &almacen, &cantidad, nullptr);
  };
  assemble();  // the shared host objects exist from here on
  host.recorder.on = true;
  assemble();
  host.recorder.on = false;
  // The speed of a shared machine changes from one second to the next, so what is compared is measured close
  // together and the middle of many rounds is told.
  Series ours, create, kept, named;
  for (int round = 0; round < 31; ++round) {
    ours.push_back(Time(runs, assemble));
    create.push_back(Time(runs, [&] { host.Create(); }));
    kept.push_back(Time(runs, [&] { host.Repeat(false); }));
    named.push_back(Time(runs, [&] { host.Repeat(true); }));
  }
  const auto calls = std::count_if(host.recorder.events.begin(), host.recorder.events.end(),
                                   [](const Event& event) { return event.kind == Event::Kind::Invoke; });
  const auto tell = [&](const char* what, const Series& floor) {
    Series whole, without;
    for (std::size_t i = 0; i < ours.size(); ++i) {
      whole.push_back(ours[i] / (create[i] + floor[i]));
      without.push_back((ours[i] - create[i]) / floor[i]);
    }
    std::printf("  %-20s %6.1f us; ratio %.2f, without the creation %.2f\n", what, Median(floor),
                Median(whole), Median(without));
  };
  std::printf("ensamble through COM: %.1f us; creating its document: %.1f us; its %lld calls bare:\n",
              Median(ours), Median(create), static_cast<long long>(calls));
  tell("with the ids kept", kept);
  tell("each by its name", named);
  return 0;
}
