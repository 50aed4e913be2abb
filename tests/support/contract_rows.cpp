#include "tests/support/contract_rows.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <tuple>

#include "tests/support/contract.h"
#include "tests/support/fuzz_hooks.h"

namespace vt {

namespace {

std::map<std::string, Generator, std::less<>>& generators() {
  static std::map<std::string, Generator, std::less<>> g;
  return g;
}

const std::map<std::string, int, std::less<>> kStatuses = {
#define VT_STATUS(s) \
  { #s, vspSts##s }
    VT_STATUS(NoErr),          VT_STATUS(Err),
    VT_STATUS(BadArgErr),      VT_STATUS(SizeErr),
    VT_STATUS(RangeErr),       VT_STATUS(NullPtrErr),
    VT_STATUS(BadIndexErr),    VT_STATUS(LSFRangeErr),
    VT_STATUS(OutOfRangeErr),  VT_STATUS(FIRLenErr),
    VT_STATUS(LPCUnstable),    VT_STATUS(LsfLowClamped),
    VT_STATUS(LsfHighClamped), VT_STATUS(LsfBothClamped),
    VT_STATUS(Overflow),       VT_STATUS(ForeignCpu),
#undef VT_STATUS
};

// A buffer size: a count, or a scalar's value times `mul` plus `add`.
// `A?P@V/B`: A when scalar P is V, else B.
struct Size {
  std::string scalar;
  int64_t mul = 1, add = 0;
  std::string when;
  int64_t whenValue = 0, otherwise = 0;
  int64_t of(const std::map<std::string, int64_t>& v) const {
    if (!when.empty() && v.at(when) != whenValue) return otherwise;
    return scalar.empty() ? add : v.at(scalar) * mul + add;
  }
};

struct Buffer {
  Role role = Role::In;
  bool opaque = false;
  std::string param, gen;
  bool genInTrials = false;     // `~gen`: random trials use the generator too
  std::vector<double> literal;  // `=v,v,v`: the valid call's contents
  std::string trialGen;         // trial:NAME=GEN: random trials' generator
  bool keep = false;            // keep:NAME: random trials keep the valid contents
  Size size;
  std::size_t misalign = 0;
};

// A scalar rule: value >= bound, <= bound, or one of a set.
struct Rule {
  std::string param;
  char kind = '>';  // '>' (>=), '<' (<=), '@' (one of)
  std::vector<int64_t> values;
  int status = 0;
  bool holds(int64_t v) const {
    if (kind == '>') return v >= values[0];
    if (kind == '<') return v <= values[0];
    return std::find(values.begin(), values.end(), v) != values.end();
  }
};

struct Row {
  std::string where, name;
  std::vector<Buffer> buffers;
  std::vector<std::pair<std::string, double>> floats;
  std::map<std::string, int64_t> ints;
  std::vector<std::string> intOrder;
  std::vector<Rule> rules;
  std::vector<Check> checks;
  std::map<std::string, std::vector<int64_t>> rand;  // one of, for random trials
  // Element ranges of random trials: buffer, element (-1: all), lo, hi.
  std::vector<std::tuple<std::string, int64_t, int64_t, int64_t>> randElems;
  std::map<std::string, std::pair<int64_t, int64_t>> fuzzRange;
  std::map<std::string, std::tuple<int64_t, int64_t, double>> randFloat;  // lo..hi / divisor
  std::vector<std::string> fuzzFloats;  // float scalars the fuzzer chooses (finite, |x| <= 1e18)
  std::vector<std::string> magnitudes;  // float buffers whose random trials are |x|
  std::vector<std::string> nullable;
  std::vector<int> statuses = {0};
  bool same = true;
  bool fuzz = false;  // the fuzzer derives its calls from the row
  int trials = 0, hostile = 0;
};

// Element k of an integer buffer, by its element size.
void set_element(Call& call, const std::string& param, std::size_t k, double v) {
  const auto mem = call.buf<uint8_t>(param);
  const ParamInfo& info = call.fn().params[std::size_t(call.fn().index_of(param))];
  const std::size_t size = std::max<std::size_t>(1, info.elemSize);
  if (k == SIZE_MAX) {  // every element
    for (std::size_t e = 0; e < mem.size() / size; ++e) set_element(call, param, e, v);
    return;
  }
  if ((k + 1) * size > mem.size()) throw std::runtime_error(param + "[" + std::to_string(k) + "] is outside it");
  if (info.elem == Elem::F32) {
    reinterpret_cast<float*>(mem.data())[k] = static_cast<float>(v);
  } else if (info.elem == Elem::F64) {
    reinterpret_cast<double*>(mem.data())[k] = v;
  } else {
    const auto i = static_cast<int64_t>(v);
    if (size == 1) mem[k] = static_cast<uint8_t>(i);
    if (size == 2) reinterpret_cast<int16_t*>(mem.data())[k] = static_cast<int16_t>(i);
    if (size == 4) reinterpret_cast<int32_t*>(mem.data())[k] = static_cast<int32_t>(i);
  }
}

[[noreturn]] void fail(const std::string& where, const std::string& what) {
  throw std::runtime_error(where + ": " + what);
}

int64_t number(const std::string& where, const std::string& s) {
  if (s == "INT32_MIN") return INT32_MIN;
  if (s == "INT32_MAX") return INT32_MAX;
  std::size_t used = 0;
  int64_t v = 0;
  try {
    v = std::stoll(s, &used, 0);
  } catch (const std::exception&) {
    fail(where, "not a number: '" + s + "'");
  }
  if (used != s.size()) fail(where, "not a number: '" + s + "'");
  return v;
}

std::vector<int64_t> numbers(const std::string& where, const std::string& s, char sep) {
  std::vector<int64_t> v;
  std::stringstream in(s);
  for (std::string part; std::getline(in, part, sep);) v.push_back(number(where, part));
  return v;
}

int status(const std::string& where, const std::string& s) {
  const auto it = kStatuses.find(s);
  if (it != kStatuses.end()) return it->second;
  return static_cast<int>(number(where, s));
}

Size size_of(const std::string& where, const std::string& text) {
  Size z;
  std::string s = text;
  if (const std::size_t q = s.find('?'); q != std::string::npos) {
    const std::size_t eq = s.find('@', q), slash = s.find('/', q);
    if (eq == std::string::npos || slash == std::string::npos) fail(where, text + ": expected A?P@V/B");
    z.when = s.substr(q + 1, eq - q - 1);
    z.whenValue = number(where, s.substr(eq + 1, slash - eq - 1));
    z.otherwise = number(where, s.substr(slash + 1));
    s.resize(q);
  }
  if (s.rfind("size(", 0) == 0 && s.back() == ')') {  // what a ...GetStateSize export reports
    const std::string fn = s.substr(5, s.size() - 6);
    if (find_export(fn) == nullptr) fail(where, "no export named " + fn);
    Call call(fn);
    call.out("pSize", 1);
    if (call.invoke() != 0) fail(where, fn + " failed");
    z.add = call.buf<int32_t>("pSize")[0];
    return z;
  }
  if (!s.empty() && (std::isdigit(static_cast<unsigned char>(s[0])) != 0)) {
    z.add = number(where, s);
    return z;
  }
  const std::size_t op = s.find_first_of("*+-");
  z.scalar = s.substr(0, op);
  if (op != std::string::npos) {
    const int64_t k = number(where, s.substr(op + 1));
    if (s[op] == '*')
      z.mul = k;
    else
      z.add = s[op] == '+' ? k : -k;
  }
  return z;
}

void parse_buffer(Row& r, const std::string& kind, const std::string& rest) {
  Buffer b;
  std::string shape = rest;
  const std::size_t g = shape.find_first_of("=~");
  if (g != std::string::npos) {
    b.gen = shape.substr(g + 1);
    b.genInTrials = shape[g] == '~';
    shape.resize(g);
    if (!b.gen.empty() && (b.gen[0] == '-' || std::isdigit(static_cast<unsigned char>(b.gen[0])) != 0)) {
      std::stringstream in(b.gen);
      for (std::string v; std::getline(in, v, ',');) b.literal.push_back(std::stod(v));
      b.gen.clear();
      if (shape.find(':') == std::string::npos) shape.append(":").append(std::to_string(b.literal.size()));
    } else if (generators().find(b.gen) == generators().end()) {
      fail(r.where, "unknown generator '" + b.gen + "'");
    }
  }
  const std::size_t c1 = shape.find(':');
  if (c1 == std::string::npos) fail(r.where, kind + ":" + rest + ": expected NAME:SIZE");
  b.param = shape.substr(0, c1);
  std::string size = shape.substr(c1 + 1);
  const std::size_t c2 = size.find(':');
  if (c2 != std::string::npos) {
    b.misalign = static_cast<std::size_t>(number(r.where, size.substr(c2 + 1)));
    size.resize(c2);
  }
  b.size = size_of(r.where, size);
  b.role = kind == "out" ? Role::Out : kind == "in" ? Role::In : Role::InOut;
  b.opaque = kind == "bytes";
  r.buffers.push_back(b);
}

// Boundary checks of a rule: just outside each bound, and the first gap of a set.
void rule_checks(Row& r, const Rule& rule) {
  std::vector<int64_t> bad;
  if (rule.kind == '>') bad = {rule.values[0] - 1};
  if (rule.kind == '<') bad = {rule.values[0] + 1};
  if (rule.kind == '@') {
    const auto [lo, hi] = std::minmax_element(rule.values.begin(), rule.values.end());
    bad = {*lo - 1, *hi + 1};
    for (int64_t v = *lo; v < *hi; ++v)
      if (!rule.holds(v)) {
        bad.push_back(v);
        break;
      }
  }
  for (int64_t v : bad) r.checks.push_back(vt::bad(rule.param, v, rule.status));
}

// Tokens: in:/out:/inout:NAME:SIZE[=GEN|~GEN], bytes:NAME:SIZE[:MISALIGN][=GEN],
// NAME=VALUE, NAME>=V:STATUS, NAME<=V:STATUS, NAME@a|b|c:STATUS,
// !NAME=V:STATUS, !null:NAME, nullable:A,B, status:S,T, levels:differ,
// trials:N, hostile:N, rand:NAME=a|b|c or rand:NAME=lo..hi, fuzz:NAME=lo..hi.
void parse_token(Row& r, const std::string& t) {
  const std::size_t colon = t.find(':');
  const std::string head = colon == std::string::npos ? t : t.substr(0, colon);
  const std::string rest = colon == std::string::npos ? "" : t.substr(colon + 1);
  if (head == "in" || head == "out" || head == "inout" || head == "bytes") return parse_buffer(r, head, rest);
  if (head == "nullable") {
    std::stringstream in(rest);
    for (std::string p; std::getline(in, p, ',');) r.nullable.push_back(p);
    return;
  }
  if (head == "status") {
    std::stringstream in(rest);
    r.statuses.clear();
    for (std::string s; std::getline(in, s, ',');) r.statuses.push_back(status(r.where, s));
    return;
  }
  if (t == "levels:differ") {
    r.same = false;
    return;
  }
  if (head == "trials" || head == "hostile") {
    (head == "trials" ? r.trials : r.hostile) = static_cast<int>(number(r.where, rest));
    return;
  }
  if (head == "!null") {
    r.checks.push_back(null_check(rest));
    return;
  }
  if (head == "trial") {
    const std::size_t eq = rest.find('=');
    auto b = std::find_if(r.buffers.begin(), r.buffers.end(),
                          [&](const Buffer& x) { return eq != std::string::npos && x.param == rest.substr(0, eq); });
    if (b == r.buffers.end()) fail(r.where, t + ": expected trial:BUFFER=GEN after the buffer");
    b->trialGen = rest.substr(eq + 1);
    if (generators().find(b->trialGen) == generators().end()) fail(r.where, "unknown generator '" + b->trialGen + "'");
    return;
  }
  if (head == "abs") {
    r.magnitudes.push_back(rest);
    return;
  }
  if (head == "keep") {
    std::stringstream in(rest);
    for (std::string p; std::getline(in, p, ',');) {
      auto b = std::find_if(r.buffers.begin(), r.buffers.end(), [&](const Buffer& x) { return x.param == p; });
      if (b == r.buffers.end()) fail(r.where, t + ": " + p + " is not a buffer named before");
      b->keep = true;
    }
    return;
  }
  if (t == "fuzz") {
    r.fuzz = true;
    return;
  }
  if (head == "fuzz" && t.size() > 6 && t.compare(t.size() - 6, 6, "=float") == 0) {
    r.fuzzFloats.push_back(rest.substr(0, rest.size() - 6));
    r.fuzz = true;
    return;
  }
  if (head == "rand" || head == "fuzz") {
    const std::size_t eq = rest.find('=');
    if (eq == std::string::npos) fail(r.where, t + ": expected NAME=...");
    const std::string name = rest.substr(0, eq);
    std::string values = rest.substr(eq + 1);
    const std::size_t dots = values.find("..");
    if (const std::size_t slash = values.find('/'); head == "rand" && slash != std::string::npos) {
      r.randFloat[name] = {number(r.where, values.substr(0, dots)),
                           number(r.where, values.substr(dots + 2, slash - dots - 2)),
                           static_cast<double>(number(r.where, values.substr(slash + 1)))};
      return;
    }
    std::vector<int64_t> v;
    if (dots != std::string::npos) {
      v = {number(r.where, values.substr(0, dots)), number(r.where, values.substr(dots + 2))};
      if (head == "rand") v.insert(v.begin(), INT64_MIN);  // marks a range
    } else {
      v = numbers(r.where, values, '|');
    }
    if (head == "rand" && name.find('[') != std::string::npos) {
      if (v.size() != 3) fail(r.where, t + ": expected rand:NAME[k]=lo..hi");
      const std::string idx = name.substr(name.find('[') + 1, name.find(']') - name.find('[') - 1);
      r.randElems.emplace_back(name.substr(0, name.find('[')), idx == "*" ? -1 : number(r.where, idx), v[1], v[2]);
      return;
    }
    if (head == "rand") r.rand[name] = v;
    if (head == "fuzz") {
      if (v.size() != 2) fail(r.where, t + ": expected fuzz:NAME=lo..hi");
      r.fuzzRange[name] = {v[0], v[1]};
      r.fuzz = true;
    }
    return;
  }
  const bool check = t[0] == '!';
  const std::string body = check ? t.substr(1) : t;
  const std::size_t op = body.find_first_of("=<>@");
  if (op == std::string::npos || op == 0) fail(r.where, "cannot read '" + t + "'");
  const std::string name = body.substr(0, op);
  if (check && name.find('[') != std::string::npos) {  // !NAME[k]=V:STATUS
    const std::size_t c = body.find(':');
    if (c == std::string::npos) fail(r.where, t + ": expected !NAME[k]=VALUE:STATUS");
    const std::string param = name.substr(0, name.find('['));
    const std::string idx = name.substr(param.size() + 1, name.size() - param.size() - 2);
    const std::size_t k = idx == "*" ? SIZE_MAX : static_cast<std::size_t>(number(r.where, idx));
    const int64_t v = number(r.where, body.substr(op + 1, c - op - 1));
    r.checks.push_back(custom(
        name + "=" + std::to_string(v), {param},
        [param, k, v](Call& call) { set_element(call, param, k, static_cast<double>(v)); },
        status(r.where, body.substr(c + 1))));
    return;
  }
  if (check) {  // !NAME=V:STATUS
    const std::size_t c = body.find(':');
    if (body[op] != '=' || c == std::string::npos) fail(r.where, t + ": expected !NAME=VALUE:STATUS");
    const std::string v = body.substr(op + 1, c - op - 1);
    if (v.find('.') != std::string::npos || v.find("nan") != std::string::npos || v.find("inf") != std::string::npos) {
      const double f = std::stod(v);
      r.checks.push_back(custom(
          name + "=" + v, {name}, [name, f](Call& call) { call.scalar_f(name, f); },
          status(r.where, body.substr(c + 1))));
      return;
    }
    r.checks.push_back(
        bad(name, number(r.where, body.substr(op + 1, c - op - 1)), status(r.where, body.substr(c + 1))));
    return;
  }
  if (body[op] == '=') {  // NAME=VALUE
    const std::string v = body.substr(op + 1);
    if (v.find('.') != std::string::npos) {
      r.floats.emplace_back(name, std::stod(v));
    } else {
      r.ints[name] = number(r.where, v);
      r.intOrder.push_back(name);
    }
    return;
  }
  Rule rule;
  rule.param = name;
  const std::size_t c = body.rfind(':');
  if (c == std::string::npos) fail(r.where, t + ": a rule needs :STATUS");
  rule.status = status(r.where, body.substr(c + 1));
  if (body[op] == '@') {
    rule.kind = '@';
    rule.values = numbers(r.where, body.substr(op + 1, c - op - 1), '|');
  } else {
    if (body[op + 1] != '=') fail(r.where, t + ": expected >= or <=");
    rule.kind = body[op];
    rule.values = {number(r.where, body.substr(op + 2, c - op - 2))};
  }
  r.rules.push_back(rule);
  rule_checks(r, rule);
}

// The call for the given scalar values; `fuzzed` sizes every buffer with
// fz::count (one element when the call is invalid) and takes the state
// blocks' misalignment from the fuzzer.
Call build(const Row& r, const std::map<std::string, int64_t>& ints, std::mt19937* rng, FuzzInput* fuzz, bool valid) {
  Call call(r.name);
  for (const auto& [name, v] : ints) call.scalar(name, v);
  for (const auto& [name, v] : r.floats) call.scalar_f(name, v);
  for (const Buffer& b : r.buffers) {
    const int64_t n = b.size.of(ints);
    if (!fuzz && n < 1) fail(r.where, b.param + " has size " + std::to_string(n));
    const std::size_t elem =
        std::max<std::size_t>(1, call.fn().params[std::size_t(call.fn().index_of(b.param))].elemSize);
    const std::size_t count = fuzz ? fz::count(valid, n, int64_t(elem)) : std::size_t(n);
    if (b.opaque)
      call.bytes(b.param, count, fuzz && b.misalign ? fz::misalign(*fuzz) : b.misalign);
    else if (b.role == Role::In)
      call.in(b.param, count);
    else if (b.role == Role::Out)
      call.out(b.param, count);
    else
      call.inout(b.param, count);
  }
  auto literal = [&call](const Buffer& b) {
    for (std::size_t k = 0; k < b.literal.size() && k < call.buf<uint8_t>(b.param).size(); ++k)
      set_element(call, b.param, k, b.literal[k]);
  };
  for (const Buffer& b : r.buffers) literal(b);
  if (rng) call.randomize_inputs(*rng);
  for (const Buffer& b : r.buffers)
    if (rng && b.keep) {
      std::fill(call.buf<uint8_t>(b.param).begin(), call.buf<uint8_t>(b.param).end(), uint8_t{0});
      literal(b);
      if (!b.gen.empty()) generators().find(b.gen)->second(call, b.param, nullptr);
    }
  if (rng)
    for (const auto& [param, k, lo, hi] : r.randElems) {
      const std::size_t size = call.fn().params[std::size_t(call.fn().index_of(param))].elemSize;
      const std::size_t n = k < 0 ? call.buf<uint8_t>(param).size() / size : 1;
      for (std::size_t e = 0; e < n; ++e)
        set_element(call, param, k < 0 ? e : std::size_t(k),
                    static_cast<double>(lo + int64_t((*rng)() % uint64_t(hi - lo + 1))));
    }
  if (fuzz) fz::fill_inputs(call, *fuzz);
  if (!valid) return call;
  for (const Buffer& b : r.buffers) {
    if (rng && !b.trialGen.empty()) generators().find(b.trialGen)->second(call, b.param, rng);
    if (b.gen.empty() || (rng && !b.genInTrials)) continue;
    if (fuzz && !b.opaque && !fuzz->choice(b.param + " generated")) continue;
    generators().find(b.gen)->second(call, b.param, rng);
    if (fuzz && b.opaque && fuzz->choice("corrupt " + b.param)) fuzz->fill(b.param, call.buf<uint8_t>(b.param));
  }
  return call;
}

bool first_failing(const Row& r, const std::map<std::string, int64_t>& ints, int& st) {
  for (const Rule& rule : r.rules)
    if (!rule.holds(ints.at(rule.param))) {
      st = rule.status;
      return true;
    }
  return false;
}

Contract to_contract(const std::shared_ptr<const Row>& row) {
  const Row& r = *row;
  Contract c;
  c.name = r.name;
  c.valid = [row] { return build(*row, row->ints, nullptr, nullptr, true); };
  c.checks = r.checks;
  c.nullable = r.nullable;
  c.validStatuses = r.statuses;
  c.sameAtEveryLevel = r.same;
  if (r.trials) c.randomTrials = r.trials;
  if (r.hostile) c.hostileTrials = r.hostile;
  c.randomize = [row](Call& call, std::mt19937& rng) {
    std::map<std::string, int64_t> ints = row->ints;
    for (const auto& [name, v] : row->rand)
      ints[name] = v[0] == INT64_MIN ? v[1] + int64_t(rng() % uint64_t(v[2] - v[1] + 1)) : v[rng() % v.size()];
    call = build(*row, ints, &rng, nullptr, true);
    for (const auto& [name, v] : row->randFloat) {
      const auto [lo, hi, divisor] = v;
      call.scalar_f(name, static_cast<double>(lo + int64_t(rng() % uint64_t(hi - lo + 1))) / divisor);
    }
    for (const std::string& name : row->magnitudes)
      for (float& x : call.buf<float>(name)) x = std::fabs(x);
  };
  if (r.fuzz)
    c.fuzz = [row](Call& call, FuzzInput& in) {
      std::map<std::string, int64_t> ints = row->ints;
      std::vector<std::string> picked;
      for (const Rule& rule : row->rules)
        if (std::find(picked.begin(), picked.end(), rule.param) == picked.end()) picked.push_back(rule.param);
      for (const auto& [name, range] : row->fuzzRange)
        if (std::find(picked.begin(), picked.end(), name) == picked.end()) picked.push_back(name);
      for (const std::string& param : picked) {
        auto range = row->fuzzRange.find(param);
        int64_t lo = INT64_MAX, hi = INT64_MIN;
        for (const Rule& q : row->rules)
          if (q.param == param) {
            const auto [a, b] = std::minmax_element(q.values.begin(), q.values.end());
            if (q.kind != '<') lo = std::min(lo, *a - 2);
            if (q.kind != '>') hi = std::max(hi, *b + 2);
          }
        if (range != row->fuzzRange.end()) {
          std::tie(lo, hi) = range->second;
        } else if (lo == INT64_MAX) {
          lo = hi - 5000;
        } else if (hi == INT64_MIN) {
          hi = lo + 5000;
        }
        ints[param] = fz::pick(in, param, lo, hi);
        for (const Rule& q : row->rules)  // a set: by choice one of its values or a neighbour
          if (q.param == param && q.kind == '@' && in.choice(param + " near a member")) {
            const auto k = static_cast<std::size_t>(in.scalar(param + " member", 0, int64_t(q.values.size()) - 1));
            ints[param] = q.values[k] + in.scalar(param + " offset", -1, 1);
          }
      }
      int st = FuzzInput::kAnyValid;
      const bool failing = first_failing(*row, ints, st);
      call = build(*row, ints, nullptr, &in, !failing);
      for (const std::string& name : row->fuzzFloats) {
        float v = 0;
        in.fill(name, {reinterpret_cast<uint8_t*>(&v), sizeof v});
        fz::finite({&v, 1}, 1e18f);
        call.scalar_f(name, v);
      }
      if (fz::nulls(call, in, {})) {
        for (const ParamInfo& p : call.fn().params)
          if (p.isPointer && call.role(p.name) == Role::Null &&
              std::find(row->nullable.begin(), row->nullable.end(), p.name) == row->nullable.end())
            st = vspStsNullPtrErr;
      }
      return fz::Expect().fail_if(st != FuzzInput::kAnyValid, st).to(in);
    };
  return c;
}

}  // namespace

GeneratorRegistrar::GeneratorRegistrar(const char* name, Generator g) { generators()[name] = std::move(g); }

void load_contract_rows(std::vector<Contract>& into) {
  namespace fs = std::filesystem;
  std::vector<fs::path> files;
  for (const auto& dir : fs::directory_iterator(VSPS_TEST_ROWS_DIR))
    if (fs::exists(dir.path() / "contracts.txt")) files.push_back(dir.path() / "contracts.txt");
  std::sort(files.begin(), files.end());
  for (const fs::path& file : files) {
    std::ifstream in(file);
    std::vector<std::pair<std::string, std::string>> rows;  // where, text
    int lineNo = 0;
    for (std::string line; std::getline(in, line);) {
      ++lineNo;
      if (const std::size_t hash = line.find('#'); hash != std::string::npos) line.resize(hash);
      if (line.find_first_not_of(" \t") == std::string::npos) continue;
      if (line[0] == ' ' || line[0] == '\t') {
        if (rows.empty()) fail(file.string() + ":" + std::to_string(lineNo), "continuation line without a row");
        rows.back().second += " " + line;
      } else {
        rows.emplace_back(file.string() + ":" + std::to_string(lineNo), line);
      }
    }
    for (const auto& [where, text] : rows) {
      auto row = std::make_shared<Row>();
      row->where = where;
      std::stringstream tokens(text);
      tokens >> row->name;
      if (find_export(row->name) == nullptr) fail(where, "no export named " + row->name);
      for (const Contract& c : into)
        if (c.name == row->name) fail(where, row->name + " has a contract already");
      for (std::string t; tokens >> t;) parse_token(*row, t);
      for (const Buffer& b : row->buffers) {
        if (find_export(row->name)->index_of(b.param) < 0) fail(where, "no parameter " + b.param);
        if ((!b.size.scalar.empty() && row->ints.count(b.size.scalar) == 0) ||
            (!b.size.when.empty() && row->ints.count(b.size.when) == 0))
          fail(where, b.param + " is sized by " + b.size.scalar + ", which the row does not set");
      }
      for (const auto& [name, range] : row->fuzzRange)
        if (row->ints.count(name) == 0) fail(where, "fuzz range of " + name + ", which the row does not set");
      for (const Rule& rule : row->rules)
        if (row->ints.count(rule.param) == 0) fail(where, "rule on " + rule.param + ", which the row does not set");
      try {
        (void)build(*row, row->ints, nullptr, nullptr, true);
      } catch (const std::exception& e) {
        fail(where, e.what());
      }
      into.push_back(to_contract(row));
    }
  }
}

}  // namespace vt
