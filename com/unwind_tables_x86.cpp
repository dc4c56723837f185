// x86 only. Exceptions are unwound by tables that the start-up code hands to the unwinder. The compiler's own
// hands them to libgcc_s_dw2-1.dll where the program has that library loaded, which the unwinder linked into
// this file then never sees: the first exception would end the program. The linker puts this in its place
// (--wrap): the tables of this file go to the unwinder of this file, whatever else is loaded.
#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" {

extern IMAGE_DOS_HEADER __ImageBase;

// The unwinder's own entry points; the table needs a place of theirs for as long as it is known to them.
void __register_frame_info(const void* table, void* place);
void* __deregister_frame_info(const void* table);

// What this file adds to the tables begins here.
asm(".section .eh_frame,\"dr\"\n_zuvi_within_tables:\n.text");
extern const std::byte zuvi_within_tables;
}

namespace {

/// Where the tables of the whole file begin. Sections are told by where they lie: the name of this one is too
/// long for the file's header, and what stands there instead depends on whether symbols were kept.
const void* Tables() {
  const auto* const base = reinterpret_cast<const std::byte*>(&__ImageBase);
  const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + __ImageBase.e_lfanew);
  const auto within = static_cast<std::size_t>(&zuvi_within_tables - base);
  const IMAGE_SECTION_HEADER* const first = IMAGE_FIRST_SECTION(headers);
  for (const auto* s = first; s != first + headers->FileHeader.NumberOfSections; ++s)
    if (within - s->VirtualAddress < s->Misc.VirtualSize) return base + s->VirtualAddress;
  return nullptr;
}

void Withdraw() { __deregister_frame_info(Tables()); }

}  // namespace

extern "C" void __wrap___gcc_register_frame() {
  alignas(std::max_align_t) static std::byte place[16 * sizeof(void*)];
  __register_frame_info(Tables(), place);
  // The first to be asked for, so the last to run: whatever is taken down before it may still throw.
  std::atexit(&Withdraw);
}
