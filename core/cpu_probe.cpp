#include "core/cpu_probe.h"

#include <cpuid.h>

#include <cstring>

#ifndef VSPS_TUNED_VENDOR
#define VSPS_TUNED_VENDOR "AuthenticAMD"
#endif

namespace vsps::cpu {

bool HardwareCpuid::available() const { return __get_cpuid_max(0, nullptr) != 0; }

CpuidRegs HardwareCpuid::cpuid(uint32_t leaf, uint32_t subleaf) const {
  CpuidRegs r;
  __cpuid_count(leaf, subleaf, r.eax, r.ebx, r.ecx, r.edx);
  return r;
}

uint64_t HardwareCpuid::xgetbv0() const {
  uint32_t lo = 0, hi = 0;
  __asm__ volatile("xgetbv" : "=a"(lo), "=d"(hi) : "c"(0));
  return (uint64_t(hi) << 32) | lo;
}

namespace {
constexpr bool bit(uint32_t reg, int n) { return ((reg >> n) & 1u) != 0; }
}  // namespace

uint64_t feature_mask(const CpuidSource& src) {
  const CpuidRegs l0 = src.cpuid(0, 0);
  const CpuidRegs lx = src.cpuid(0x80000000u, 0);
  const CpuidRegs l1 = src.cpuid(1, 0);
  uint64_t m = 0;
  if (bit(l1.edx, 23)) m |= kMmx;
  if (bit(l1.edx, 25)) m |= kSse;
  if (bit(l1.edx, 26)) m |= kSse2;
  if (bit(l1.ecx, 0)) m |= kSse3;
  if (bit(l1.ecx, 9)) m |= kSsse3;
  if (bit(l1.ecx, 22)) m |= kMovbe;
  if (bit(l1.ecx, 19)) m |= kSse41;
  if (bit(l1.ecx, 20)) m |= kSse42;
  if (bit(l1.ecx, 28)) m |= kAvx;
  if (bit(l1.ecx, 27) && bit(l1.ecx, 28)) {
    const uint64_t xcr0 = src.xgetbv0();
    if ((xcr0 & 0x6) == 0x6) m |= kAvxOsState;
  }
  if (bit(l1.ecx, 25)) m |= kAes;
  if (bit(l1.ecx, 1)) m |= kPclmulqdq;
  const uint32_t family = (l1.eax >> 8) & 0xF;
  if (family == 0xB && bit(src.cpuid(0x20000001u, 0).edx, 1)) m |= kFamilyBLeaf;
  if (bit(l1.ecx, 30)) m |= kRdrand;
  if (bit(l1.ecx, 29)) m |= kF16c;

  bool avx2 = false, bmi1 = false, bmi2 = false;
  if (l0.eax >= 7) {
    const CpuidRegs l7 = src.cpuid(7, 0);
    if (bit(l7.ebx, 19)) m |= kAdx;
    if (bit(l7.ebx, 18)) m |= kRdseed;
    if (bit(l7.ebx, 29)) m |= kSha;
    avx2 = bit(l7.ebx, 5);
    bmi1 = bit(l7.ebx, 3);
    bmi2 = bit(l7.ebx, 8);
  }
  if (bit(l1.ecx, 12) && avx2 && bmi1 && bmi2) m |= kAvx2Level;
  if (lx.eax >= 0x80000001u && bit(src.cpuid(0x80000001u, 0).ecx, 8)) m |= kPrefetchw;
  if (((l1.eax >> 4) & 0xFF) == 0xB1) m |= kFamilyBModel1;
  return m;
}

LevelChoice choose_level(uint64_t m) {
  const bool avxOs = (m & kAvx) && (m & kAvxOsState);
  if (avxOs && (m & kAvx2Level)) return {6, m & 0xFEFFF};
  if (avxOs) return {5, m & 0x86FDF};
  if (m & kSse41) return {4, m & 0x80CDF};
  if ((m & kMovbe) && (m & kSsse3)) return {3, m & 0x3F};
  if (m & kSsse3) return {2, m & 0x1F};
  if (m & kSse3) return {1, m & 0xF};
  return {0, m & 0x7};
}

void vendor_string(const CpuidSource& src, char out[13]) {
  const CpuidRegs l0 = src.cpuid(0, 0);
  std::memcpy(out, &l0.ebx, 4);
  std::memcpy(out + 4, &l0.edx, 4);
  std::memcpy(out + 8, &l0.ecx, 4);
  out[12] = '\0';
}

const char* tuned_vendor() { return VSPS_TUNED_VENDOR; }

VspStatus vendor_status(const CpuidSource& src) {
  char vendor[13];
  vendor_string(src, vendor);
  return std::strcmp(vendor, tuned_vendor()) == 0 ? vspStsNoErr : vspStsForeignCpu;
}

InitOutcome decide(const CpuidSource& src, uint64_t restrictMask) {
  if (!src.available()) return {0, kNoCpuChoice, vspStsNoCpuFeatures};
  const uint64_t probed = feature_mask(src);
  return {probed, choose_level(probed & restrictMask), vendor_status(src)};
}

namespace {
constexpr const char* kVersion = "9.0 Legacy (r48491) (-)";
constexpr const char* kBuildDate = "Oct 15 2015";
constexpr VspLibraryVersion kRecords[8] = {
    {9, 0, 0, -1, "mx", "vspSC PX (mx)", kVersion, kBuildDate},
    {9, 0, 0, -1, "m7", "vspSC SSE3 (m7)", kVersion, kBuildDate},
    {9, 0, 0, -1, "u8", "vspSC SSSE3 (u8)", kVersion, kBuildDate},
    {9, 0, 0, -1, "n8", "vspSC Mote (n8)", kVersion, kBuildDate},
    {9, 0, 0, -1, "y8", "vspSC SSE4.1/4.2 (y8)", kVersion, kBuildDate},
    {9, 0, 0, -1, "e9", "vspSC AVX (e9)", kVersion, kBuildDate},
    {9, 0, 0, -1, "l9", "vspSC AVX2 (l9)", kVersion, kBuildDate},
    {9, 0, 0, -1, "y8", "vspSC SSE4.1/4.2 (y8)+", kVersion, kBuildDate},
};
}  // namespace

const VspLibraryVersion* version_record(int level, uint64_t enabledMask) {
  if (level < 0 || level > 6) level = 0;
  if (level == 4 && (enabledMask & kSse42) == kSse42) return &kRecords[7];
  return &kRecords[level];
}

const char* level_code(int level) { return version_record(level, 0)->targetCpu; }

}  // namespace vsps::cpu
