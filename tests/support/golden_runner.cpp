#include "tests/support/golden_runner.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <sstream>

#include "tests/support/levels.h"

namespace vt {

namespace {

std::map<std::string, GoldenAdapter>& adapters() {
  static std::map<std::string, GoldenAdapter> a;
  return a;
}

bool is_float(Elem e) {
  return e == Elem::F32 || e == Elem::F64 || e == Elem::C32F || e == Elem::Float || e == Elem::Double;
}

// One component of an element as double (exact for every integer type).
double read_component(const uint8_t* p, Elem e) {
  switch (e) {
    case Elem::U8:
      return *p;
    case Elem::S16:
    case Elem::Short: {
      int16_t v;
      std::memcpy(&v, p, 2);
      return v;
    }
    case Elem::U32: {
      uint32_t v;
      std::memcpy(&v, p, 4);
      return v;
    }
    case Elem::F32:
    case Elem::C32F:
    case Elem::Float: {
      float v;
      std::memcpy(&v, p, 4);
      return v;
    }
    case Elem::F64:
    case Elem::Double: {
      double v;
      std::memcpy(&v, p, 8);
      return v;
    }
    default: {
      int32_t v;
      std::memcpy(&v, p, 4);
      return v;
    }
  }
}

void write_component(uint8_t* p, Elem e, const std::string& token) {
  switch (e) {
    case Elem::U8: {
      const auto v = static_cast<uint8_t>(parse_int(token));
      *p = v;
      break;
    }
    case Elem::S16:
    case Elem::Short: {
      const auto v = static_cast<int16_t>(parse_int(token));
      std::memcpy(p, &v, 2);
      break;
    }
    case Elem::U32: {
      const auto v = static_cast<uint32_t>(parse_int(token));
      std::memcpy(p, &v, 4);
      break;
    }
    case Elem::F32:
    case Elem::C32F:
    case Elem::Float: {
      const float v = parse_float(token);
      std::memcpy(p, &v, 4);
      break;
    }
    case Elem::F64:
    case Elem::Double: {
      const double v = parse_double(token);
      std::memcpy(p, &v, 8);
      break;
    }
    default: {
      const auto v = static_cast<int32_t>(parse_int(token));
      std::memcpy(p, &v, 4);
      break;
    }
  }
}

bool handled_by(const GoldenAdapter* a, const std::string& name) {
  return a != nullptr && std::find(a->extraNames.begin(), a->extraNames.end(), name) != a->extraNames.end();
}

}  // namespace

GoldenAdapterRegistrar::GoldenAdapterRegistrar(const char* exportName, GoldenAdapter (*make)()) {
  adapters()[exportName] = make();
}

const GoldenAdapter* find_golden_adapter(const std::string& exportName) {
  auto it = adapters().find(exportName);
  return it == adapters().end() ? nullptr : &it->second;
}

void fill_from_tokens(Call& call, const std::string& param, const std::vector<std::string>& tokens, Role role) {
  const ParamInfo& p = call.fn().params[static_cast<std::size_t>(call.fn().index_of(param))];
  if (p.isFrames()) {
    // A pointer array: the adapter has set its frames (count and stride);
    // the tokens fill the frames one after the other.
    if (!call.has(param) || call.role(param) != Role::Frames)
      throw std::runtime_error(param + ": pointer array without frames (needs an adapter)");
    const std::size_t comp = component_size(p.frameElem);
    auto mem = call.buf<uint8_t>(param);
    if (tokens.size() * comp > mem.size()) throw std::runtime_error(param + ": more values than the frames hold");
    for (std::size_t k = 0; k < tokens.size(); ++k) write_component(mem.data() + k * comp, p.frameElem, tokens[k]);
    return;
  }
  const std::size_t comp = component_size(p.elem);
  const std::size_t elemSize = p.elemSize == 0 ? comp : p.elemSize;
  const std::size_t count = (tokens.size() * comp + elemSize - 1) / elemSize;
  if (role == Role::Out)
    call.out(param, count);
  else if (role == Role::InOut)
    call.inout(param, count);
  else
    call.in(param, count);
  auto mem = call.buf<uint8_t>(param);
  for (std::size_t k = 0; k < tokens.size(); ++k) write_component(mem.data() + k * comp, p.elem, tokens[k]);
}

std::string compare_tokens(Call& call, const std::string& param, const std::vector<std::string>& tokens,
                           const GoldenCase& gc) {
  const ParamInfo& p = call.fn().params[static_cast<std::size_t>(call.fn().index_of(param))];
  const Elem elem = p.isFrames() ? p.frameElem : p.elem;
  const std::size_t comp = component_size(elem);
  auto mem = call.buf<uint8_t>(param);
  if (mem.size() < tokens.size() * comp) return param + ": buffer shorter than the expected values";
  std::vector<double> expected(tokens.size());
  double peak = 0;
  for (std::size_t k = 0; k < tokens.size(); ++k) {
    expected[k] = is_float(elem) ? parse_double(tokens[k]) : static_cast<double>(parse_int(tokens[k]));
    peak = std::max(peak, std::fabs(expected[k]));
  }
  const double limit = gc.tol ? gc.tol->first + gc.tol->second * peak : 0.0;
  int bad = 0;
  std::ostringstream os;
  for (std::size_t k = 0; k < tokens.size(); ++k) {
    const double got = read_component(mem.data() + k * comp, elem);
    double want = expected[k];
    if (elem == Elem::F32 || elem == Elem::C32F) want = static_cast<float>(want);
    const bool ok = gc.tol ? std::fabs(got - want) <= limit : (got == want || (std::isnan(got) && std::isnan(want)));
    if (!ok) {
      if (bad < 4) os << (bad ? "; " : "") << param << "[" << k << "] = " << got << ", expected " << tokens[k];
      ++bad;
    }
  }
  if (bad > 4) os << "; ... " << bad << " values differ";
  return os.str();
}

Call bind_golden_case(const ExportInfo& fn, const GoldenCase& gc, const GoldenAdapter* adapter, SeqContext& seq) {
  Call call(fn);
  if (adapter != nullptr && adapter->bind) adapter->bind(call, gc, seq);
  for (const auto& [name, value] : gc.args)
    if (fn.index_of(name) < 0 && !handled_by(adapter, name))
      throw std::runtime_error("case " + gc.id + ": arg " + name + " is not a parameter");
  for (const auto* list : {&gc.ins, &gc.outs})
    for (const GoldenArray& a : *list)
      if (fn.index_of(a.name) < 0 && !handled_by(adapter, a.name))
        throw std::runtime_error("case " + gc.id + ": array " + a.name + " is not a parameter");
  for (const ParamInfo& p : fn.params) {
    if (call.has(p.name)) continue;
    const std::string* a = gc.arg(p.name);
    const GoldenArray* in = gc.in(p.name);
    const GoldenArray* out = gc.out(p.name);
    if (a != nullptr && *a == "null") {
      // A null argument keeps the memory of its listed array (if any) so that
      // the other outputs can be compared.
      call.null(p.name);
    } else if (a != nullptr && p.isPointer) {
      throw std::runtime_error("case " + gc.id + ": pointer " + p.name + " given as '" + *a + "'");
    } else if (a != nullptr) {
      if (p.elem == Elem::Float || p.elem == Elem::Double)
        call.scalar_f(p.name, parse_double(*a));
      else
        call.scalar(p.name, parse_int(*a));
    } else if (in != nullptr) {
      fill_from_tokens(call, p.name, in->values, out != nullptr ? Role::InOut : Role::In);
    } else if (out != nullptr) {
      fill_from_tokens(call, p.name, out->values, Role::Out);
      auto mem = call.buf<uint8_t>(p.name);
      std::fill(mem.begin(), mem.end(), kGuardByte);
    } else {
      throw std::runtime_error("case " + gc.id + ": parameter " + p.name + " not given");
    }
  }
  return call;
}

GoldenReport run_golden_file(const std::string& path) {
  GoldenReport report;
  const GoldenFile file = read_golden(path);
  const std::string exportName = std::filesystem::path(path).stem().string();
  const ExportInfo* fn = find_export(exportName);
  if (fn == nullptr) {
    report.failures.push_back(path + ": no export " + exportName);
    return report;
  }
  const GoldenAdapter* adapter = find_golden_adapter(exportName);
  report.cases = static_cast<int>(file.cases.size());
  // Outputs of every case at level 0, which the other levels must match bit
  // for bit (also where a tolerance applies to the expected values).
  std::vector<std::vector<std::vector<uint8_t>>> reference(file.cases.size());
  std::vector<int64_t> referenceStatus(file.cases.size());
  for (int level : supported_levels()) {
    ScopedLevel forced(level);
    ++report.levels;
    SeqContext seq;
    for (std::size_t k = 0; k < file.cases.size(); ++k) {
      const GoldenCase& gc = file.cases[k];
      const std::string where = exportName + " case " + gc.id + " at " + level_name(level) + ": ";
      if (gc.seq.empty() || gc.seq != seq.seq) seq = SeqContext{gc.seq, true, {}};
      try {
        Call call = bind_golden_case(*fn, gc, adapter, seq);
        const int64_t status = call.invoke();
        std::vector<std::string> errors;
        if (gc.status && status != *gc.status)
          errors.push_back("status " + std::to_string(status) + ", expected " + std::to_string(*gc.status));
        for (const GoldenArray& out : gc.outs) {
          if (fn->index_of(out.name) < 0 || handled_by(adapter, out.name)) continue;  // adapter's
          const std::string diff = compare_tokens(call, out.name, out.values, gc);
          if (!diff.empty()) errors.push_back(diff);
        }
        if (adapter != nullptr && adapter->after) adapter->after(call, gc, seq, errors);
        seq.first = false;
        const auto outputs = call.snapshot();
        if (level == 0) {
          reference[k] = outputs;
          referenceStatus[k] = status;
        } else if (outputs != reference[k] || status != referenceStatus[k]) {
          errors.push_back("differs from level mx");
        }
        for (const std::string& e : errors) report.failures.push_back(where + e);
      } catch (const std::exception& e) {
        report.failures.push_back(where + e.what());
      }
    }
  }
  return report;
}

}  // namespace vt
