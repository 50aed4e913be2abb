// Processor probe and level choice. The pure parts (feature mask from CPUID
// answers, level and enabled mask from a feature mask, version record of a
// level) are separate from the instructions, so they can be driven by
// synthetic CPUID tables.
#pragma once

#include <cstdint>

#include "vsps.h"

namespace vsps::cpu {

// Feature-mask bits.
enum Feature : uint64_t {
  kMmx = 0x1,
  kSse = 0x2,
  kSse2 = 0x4,
  kSse3 = 0x8,
  kSsse3 = 0x10,
  kMovbe = 0x20,
  kSse41 = 0x40,
  kSse42 = 0x80,
  kAvx = 0x100,
  kAvxOsState = 0x200,  // OSXSAVE and AVX set, XCR0 bits 1 and 2 set
  kAes = 0x400,
  kPclmulqdq = 0x800,
  kFamilyBLeaf = 0x1000,  // leaf 0x20000001 EDX bit 1, family 0xB only
  kRdrand = 0x2000,
  kF16c = 0x4000,
  kAvx2Level = 0x8000,  // FMA, AVX2, BMI1 and BMI2 all present
  kAdx = 0x10000,
  kRdseed = 0x20000,
  kPrefetchw = 0x40000,
  kSha = 0x80000,
  kFamilyBModel1 = 0x80000000,  // leaf 1 EAX bits 4..11 equal 0xB1
};

struct CpuidRegs {
  uint32_t eax = 0, ebx = 0, ecx = 0, edx = 0;
};

// Where the probe gets its answers: the processor, or a table in tests.
// Never deleted through the base: the destructor is protected and not
// virtual, so the library emits no deleting destructor, which would need
// operator delete from the C++ runtime (a C program links the static
// library with the C compiler alone).
class CpuidSource {
 public:
  virtual bool available() const = 0;  // false: identification unavailable
  virtual CpuidRegs cpuid(uint32_t leaf, uint32_t subleaf) const = 0;
  virtual uint64_t xgetbv0() const = 0;  // XCR0

 protected:
  ~CpuidSource() = default;
};

// The processor itself.
class HardwareCpuid final : public CpuidSource {
 public:
  bool available() const override;
  CpuidRegs cpuid(uint32_t leaf, uint32_t subleaf) const override;
  uint64_t xgetbv0() const override;
};

// Steps 2..6 of the probe: the feature mask from the processor's answers
// (the source must be available). Reads leaf 7 only when the highest
// standard leaf is at least 7, leaf 0x80000001 only when the highest
// extended leaf is at least 0x80000001, leaf 0x20000001 only for family 0xB
// and XGETBV only when OSXSAVE and AVX are both set.
uint64_t feature_mask(const CpuidSource& src);

struct LevelChoice {
  int level;             // 0..6
  uint64_t enabledMask;  // probed mask restricted to what the level uses
};
// The level table, first match wins.
LevelChoice choose_level(uint64_t mask);
// The choice when processor identification is unavailable.
inline constexpr LevelChoice kNoCpuChoice{0, 0x7};

// The 12-character vendor string of leaf 0 (EBX, EDX, ECX).
void vendor_string(const CpuidSource& src, char out[13]);
// The vendor the variants are tuned for (a build-time setting).
const char* tuned_vendor();
// vspStsNoErr when the processor's vendor is the tuned one, else
// vspStsForeignCpu.
VspStatus vendor_status(const CpuidSource& src);

// Everything legacy90vspscInit derives from one processor: the probed mask,
// the level chosen from (probed mask AND restrictMask), the enabled mask and
// the status (0, 20 or 36).
struct InitOutcome {
  uint64_t probedMask;
  LevelChoice choice;
  VspStatus status;
};
InitOutcome decide(const CpuidSource& src, uint64_t restrictMask);

// Version record of a level; level 4 has two, chosen by SSE4.2 in the
// enabled mask.
const VspLibraryVersion* version_record(int level, uint64_t enabledMask);

// Three-letter level code ("mx" .. "l9").
const char* level_code(int level);

}  // namespace vsps::cpu
