// Processor probe, level choice and version records from synthetic CPUID
// answers (the golden cases and the edge cases of the level table).
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <set>

#include "core/cpu_probe.h"
#include "tests/support/golden.h"

namespace {

using vsps::cpu::CpuidRegs;

// CPUID answers from a table; records every leaf read so that the tests can
// check that the probe never reads a leaf it must not.
class TableCpuid final : public vsps::cpu::CpuidSource {
 public:
  bool present = true;
  std::map<uint32_t, CpuidRegs> leaves;
  uint64_t xcr0 = 0;
  mutable std::set<uint32_t> read;
  mutable bool xgetbvRead = false;

  bool available() const override { return present; }
  CpuidRegs cpuid(uint32_t leaf, uint32_t) const override {
    read.insert(leaf);
    auto it = leaves.find(leaf);
    return it == leaves.end() ? CpuidRegs{} : it->second;
  }
  uint64_t xgetbv0() const override {
    xgetbvRead = true;
    return xcr0;
  }
};

// The golden file's 26 register values, in its order.
TableCpuid from_golden(const std::vector<std::string>& v) {
  TableCpuid t;
  if (v.empty()) {
    t.present = false;
    return t;
  }
  auto r = [&](int k) { return static_cast<uint32_t>(vt::parse_int(v[static_cast<std::size_t>(k)])); };
  t.leaves[0] = {r(0), r(1), r(2), r(3)};
  t.leaves[1] = {r(4), r(5), r(6), r(7)};
  t.leaves[7] = {r(8), r(9), r(10), r(11)};
  t.leaves[0x80000000u] = {r(12), r(13), r(14), r(15)};
  t.leaves[0x80000001u] = {r(16), r(17), r(18), r(19)};
  t.leaves[0x20000001u] = {r(20), r(21), r(22), r(23)};
  t.xcr0 = (uint64_t(r(25)) << 32) | r(24);
  return t;
}

std::string name_with_underscores(const char* s) {
  std::string n(s);
  for (char& ch : n)
    if (ch == ' ') ch = '_';
  return n;
}

TEST(CpuLevel, GoldenCases) {
  const vt::GoldenFile f = vt::read_golden(vt::test_data_dir() + "/golden/core/cpu-level.txt");
  ASSERT_GT(f.cases.size(), 100u);
  for (const vt::GoldenCase& gc : f.cases) {
    SCOPED_TRACE("case " + gc.id);
    const TableCpuid cpu = from_golden(gc.in("cpuid")->values);
    const vsps::cpu::InitOutcome o = vsps::cpu::decide(cpu, ~uint64_t(0));
    if (const vt::GoldenArray* m = gc.out("mask")) EXPECT_EQ(o.probedMask, uint64_t(vt::parse_int(m->values[0])));
    EXPECT_EQ(o.choice.level, vt::parse_int(gc.out("level")->values[0]));
    EXPECT_EQ(o.choice.enabledMask, uint64_t(vt::parse_int(gc.out("enabledMask")->values[0])));
    const VspLibraryVersion* v = vsps::cpu::version_record(o.choice.level, o.choice.enabledMask);
    EXPECT_EQ(name_with_underscores(v->Name), gc.out("name")->values[0]);
    EXPECT_STREQ(v->targetCpu, gc.out("targetCpu")->values[0].c_str());
    if (gc.status) EXPECT_EQ(o.status, *gc.status);
    // Leaves the probe must not read.
    if (cpu.present) {
      const uint32_t maxStd = cpu.leaves.at(0).eax, maxExt = cpu.leaves.at(0x80000000u).eax;
      const uint32_t ecx1 = cpu.leaves.at(1).ecx;
      if (maxStd < 7) EXPECT_EQ(cpu.read.count(7), 0u);
      if (maxExt < 0x80000001u) EXPECT_EQ(cpu.read.count(0x80000001u), 0u);
      if (((cpu.leaves.at(1).eax >> 8) & 0xF) != 0xB) EXPECT_EQ(cpu.read.count(0x20000001u), 0u);
      if (((ecx1 >> 27) & 3) != 3) EXPECT_FALSE(cpu.xgetbvRead);
    }
  }
}

// A processor described by feature bits of leaf 1 ECX / leaf 7 EBX.
TableCpuid processor(uint32_t ecx1, uint32_t ebx7 = 0, uint64_t xcr0 = 0x7,
                     const char* vendor = vsps::cpu::tuned_vendor()) {
  TableCpuid t;
  CpuidRegs l0{13, 0, 0, 0};
  std::memcpy(&l0.ebx, vendor, 4);
  std::memcpy(&l0.edx, vendor + 4, 4);
  std::memcpy(&l0.ecx, vendor + 8, 4);
  t.leaves[0] = l0;
  t.leaves[1] = {0x000306C3, 0, ecx1, (1u << 23) | (1u << 25) | (1u << 26)};
  t.leaves[7] = {0, ebx7, 0, 0};
  t.leaves[0x80000000u] = {0x80000008u, 0, 0, 0};
  t.xcr0 = xcr0;
  return t;
}

constexpr uint32_t kSse3 = 1u << 0, kSsse3 = 1u << 9, kSse41 = 1u << 19, kSse42 = 1u << 20, kMovbe = 1u << 22,
                   kOsxsave = 1u << 27, kAvx = 1u << 28, kFma = 1u << 12;
constexpr uint32_t kAvx2 = 1u << 5, kBmi1 = 1u << 3, kBmi2 = 1u << 8;

struct LevelCase {
  const char* what;
  TableCpuid cpu;
  int level;
  const char* name;
};

TEST(CpuLevel, EdgeCasesOfTheLevelTable) {
  const uint32_t sse4 = kSse3 | kSsse3 | kSse41;
  const LevelCase cases[] = {
      {"SSE2 only", processor(0), 0, "vspSC PX (mx)"},
      {"SSE3", processor(kSse3), 1, "vspSC SSE3 (m7)"},
      {"MOVBE without SSSE3 falls to SSE3", processor(kSse3 | kMovbe), 1, "vspSC SSE3 (m7)"},
      {"SSSE3", processor(kSse3 | kSsse3), 2, "vspSC SSSE3 (u8)"},
      {"SSSE3 and MOVBE", processor(kSse3 | kSsse3 | kMovbe), 3, "vspSC Mote (n8)"},
      {"SSE4.1 without SSE4.2", processor(sse4), 4, "vspSC SSE4.1/4.2 (y8)"},
      {"SSE4.1 with SSE4.2", processor(sse4 | kSse42), 4, "vspSC SSE4.1/4.2 (y8)+"},
      {"AVX, OS state not enabled (OSXSAVE clear)", processor(sse4 | kSse42 | kAvx), 4, "vspSC SSE4.1/4.2 (y8)+"},
      {"AVX, XCR0 without YMM", processor(sse4 | kSse42 | kAvx | kOsxsave, 0, 0x3), 4, "vspSC SSE4.1/4.2 (y8)+"},
      {"AVX with OS support", processor(sse4 | kSse42 | kAvx | kOsxsave), 5, "vspSC AVX (e9)"},
      {"AVX2 without FMA", processor(sse4 | kSse42 | kAvx | kOsxsave, kAvx2 | kBmi1 | kBmi2), 5, "vspSC AVX (e9)"},
      {"AVX2 without BMI2", processor(sse4 | kSse42 | kAvx | kOsxsave | kFma, kAvx2 | kBmi1), 5, "vspSC AVX (e9)"},
      {"AVX2, FMA, BMI1, BMI2", processor(sse4 | kSse42 | kAvx | kOsxsave | kFma, kAvx2 | kBmi1 | kBmi2), 6,
       "vspSC AVX2 (l9)"},
  };
  for (const LevelCase& c : cases) {
    const vsps::cpu::InitOutcome o = vsps::cpu::decide(c.cpu, ~uint64_t(0));
    EXPECT_EQ(o.choice.level, c.level) << c.what;
    EXPECT_STREQ(vsps::cpu::version_record(o.choice.level, o.choice.enabledMask)->Name, c.name) << c.what;
    EXPECT_EQ(o.status, vspStsNoErr) << c.what;
  }
}

TEST(CpuLevel, NoCpuidGivesLevelZeroAndWarning36) {
  TableCpuid none;
  none.present = false;
  const vsps::cpu::InitOutcome o = vsps::cpu::decide(none, ~uint64_t(0));
  EXPECT_EQ(o.choice.level, 0);
  EXPECT_EQ(o.choice.enabledMask, 0x7u);
  EXPECT_EQ(o.status, vspStsNoCpuFeatures);
}

TEST(CpuLevel, ForeignVendorWarns20AndKeepsTheLevel) {
  const TableCpuid amd = processor(kSse3 | kSsse3, 0, 0x7, "OtherVendor!");
  const vsps::cpu::InitOutcome o = vsps::cpu::decide(amd, ~uint64_t(0));
  EXPECT_EQ(o.status, vspStsForeignCpu);
  EXPECT_EQ(o.choice.level, 2);
}

TEST(CpuLevel, RestrictMaskLowersTheLevel) {
  const TableCpuid cpu = processor(kSse3 | kSsse3 | kSse41 | kSse42 | kAvx | kOsxsave | kFma, kAvx2 | kBmi1 | kBmi2);
  EXPECT_EQ(vsps::cpu::decide(cpu, ~uint64_t(0)).choice.level, 6);
  EXPECT_EQ(vsps::cpu::decide(cpu, 0).choice.level, 0);
  EXPECT_EQ(vsps::cpu::decide(cpu, 0x1F).choice.level, 2);  // up to SSSE3
  EXPECT_EQ(vsps::cpu::decide(cpu, ~uint64_t(0x8000)).choice.level, 5);
}

TEST(CpuLevel, VersionRecordsAreConstantAndComplete) {
  for (int level = 0; level <= 6; ++level) {
    const VspLibraryVersion* v = vsps::cpu::version_record(level, ~uint64_t(0));
    EXPECT_EQ(v->major, 9);
    EXPECT_EQ(v->minor, 0);
    EXPECT_EQ(v->majorBuild, 0);
    EXPECT_EQ(v->build, -1);
    EXPECT_STREQ(v->Version, "9.0 Legacy (r48491) (-)");
    EXPECT_STREQ(v->BuildDate, "Oct 15 2015");
    EXPECT_EQ(v->targetCpu[3], '\0');
  }
}

}  // namespace
