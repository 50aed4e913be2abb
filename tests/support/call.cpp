#include "tests/support/call.h"

#include <algorithm>
#include <sstream>

namespace vt {

Call::Call(const ExportInfo& fn) : fn_(&fn), args_(fn.params.size()) {}

Call::Call(std::string_view exportName) : fn_(find_export(exportName)) {
  if (fn_ == nullptr) throw std::runtime_error("no export " + std::string(exportName));
  args_.resize(fn_->params.size());
}

int Call::index(std::string_view name) const {
  const int k = fn_->index_of(name);
  if (k < 0) throw std::runtime_error(fn_->name + " has no parameter " + std::string(name));
  return k;
}

Call::Arg& Call::arg(std::string_view name) { return args_[static_cast<std::size_t>(index(name))]; }
const Call::Arg& Call::arg(std::string_view name) const { return args_[static_cast<std::size_t>(index(name))]; }

Call& Call::buffer(std::string_view name, Role role, std::size_t count, uint8_t fill) {
  const ParamInfo& p = fn_->params[static_cast<std::size_t>(index(name))];
  if (!p.isPointer) throw std::runtime_error(std::string(name) + " is not a pointer");
  Arg& a = arg(name);
  a = Arg{};
  a.role = role;
  a.set = true;
  a.mem.assign(count * (p.elemSize == 0 ? 1 : p.elemSize), fill);
  a.mem.resize(a.mem.size() + kCanaryBytes, kCanaryByte);
  a.guarded = true;
  return *this;
}

Call& Call::in(std::string_view name, std::size_t count) { return buffer(name, Role::In, count, 0); }
Call& Call::out(std::string_view name, std::size_t count) { return buffer(name, Role::Out, count, kGuardByte); }
Call& Call::inout(std::string_view name, std::size_t count) { return buffer(name, Role::InOut, count, 0); }

Call& Call::bytes(std::string_view name, std::size_t count, std::size_t misalign) {
  Arg& a = arg(name);
  a = Arg{};
  a.role = Role::InOut;
  a.set = true;
  a.misalign = misalign;
  a.mem.assign(count + misalign, kGuardByte);
  a.mem.resize(a.mem.size() + kCanaryBytes, kCanaryByte);
  a.guarded = true;
  return *this;
}

Call& Call::null(std::string_view name) {
  Arg& a = arg(name);
  a.role = Role::Null;
  a.set = true;
  return *this;
}

Call& Call::scalar(std::string_view name, int64_t value) {
  Arg& a = arg(name);
  a.role = Role::Scalar;
  a.set = true;
  a.scalar.i = value;
  a.scalar.f = static_cast<double>(value);
  return *this;
}

Call& Call::scalar_f(std::string_view name, double value) {
  Arg& a = arg(name);
  a.role = Role::Scalar;
  a.set = true;
  a.scalar.f = value;
  // The integer view of a float scalar; NaN and values beyond int64 (the
  // fuzzer's raw floats) have none.
  a.scalar.i = value > -9.2e18 && value < 9.2e18 ? static_cast<int64_t>(value) : 0;
  return *this;
}

Call& Call::frames(std::string_view name, std::string_view backing, std::size_t count, std::size_t stride) {
  Arg& a = arg(name);
  a = Arg{};
  a.role = Role::Frames;
  a.set = true;
  a.backing = index(backing);
  a.frameCount = count;
  a.frameStride = stride;
  a.mem.assign(count * sizeof(void*), 0);
  return *this;
}

Call& Call::frames(std::string_view name, std::size_t count, std::size_t stride, std::size_t minBacking) {
  const ParamInfo& p = fn_->params[static_cast<std::size_t>(index(name))];
  if (!p.isFrames()) throw std::runtime_error(std::string(name) + " is not a pointer array");
  Arg& a = arg(name);
  a = Arg{};
  a.role = Role::Frames;
  a.set = true;
  a.backing = kOwnBacking;
  a.frameCount = count;
  a.frameStride = stride;
  a.mem.assign(count * sizeof(void*), 0);
  a.own.assign(std::max(count * stride, minBacking) * p.frameElemSize, 0);
  a.own.resize(a.own.size() + kCanaryBytes, kCanaryByte);
  a.ownGuarded = true;
  return *this;
}

Call& Call::offset(std::string_view name, std::size_t count) {
  const ParamInfo& p = fn_->params[static_cast<std::size_t>(index(name))];
  Arg& a = arg(name);
  if (!a.set || a.role == Role::Null || a.role == Role::Frames || a.role == Role::Scalar)
    throw std::runtime_error(std::string(name) + ": offset() needs a buffer");
  a.misalign = count * (p.elemSize == 0 ? 1 : p.elemSize);
  a.offsetBytes = true;
  return *this;
}

Call& Call::self_pointers(std::string_view name, std::vector<std::size_t> offsets) {
  arg(name).selfPointers = std::move(offsets);
  return *this;
}

namespace {
uint8_t* aligned_start(std::vector<uint8_t>& mem, std::size_t misalign) {
  const auto p = reinterpret_cast<uintptr_t>(mem.data() + misalign);
  return reinterpret_cast<uint8_t*>((p + 15) & ~uintptr_t(15));
}
}  // namespace

Call::Call(const Call& other) : fn_(other.fn_), args_(other.args_) { rebase_self_pointers(other); }

Call& Call::operator=(const Call& other) {
  if (this != &other) {
    fn_ = other.fn_;
    args_ = other.args_;
    rebase_self_pointers(other);
  }
  return *this;
}

void Call::rebase_self_pointers(const Call& from) {
  for (std::size_t k = 0; k < args_.size(); ++k) {
    Arg& a = args_[k];
    if (a.selfPointers.empty() || a.mem.empty()) continue;
    const Arg& b = from.args_[k];
    const auto oldBase = reinterpret_cast<uintptr_t>(b.mem.data());
    const auto newBase = reinterpret_cast<uintptr_t>(a.mem.data());
    if ((oldBase & 15) != (newBase & 15)) throw std::runtime_error("self_pointers: copy with another alignment");
    uint8_t* start = aligned_start(a.mem, a.misalign);
    for (std::size_t off : a.selfPointers) {
      uintptr_t v;
      std::memcpy(&v, start + off, sizeof v);
      if (v >= oldBase && v < oldBase + b.mem.size()) v = v - oldBase + newBase;
      std::memcpy(start + off, &v, sizeof v);
    }
  }
}

int64_t Call::scalar_value(std::string_view name) const { return arg(name).scalar.i; }
Role Call::role(std::string_view name) const { return arg(name).role; }
bool Call::has(std::string_view name) const { return fn_->index_of(name) >= 0 && arg(name).set; }

int64_t Call::invoke() {
  std::vector<Slot> slots(args_.size());
  for (std::size_t k = 0; k < args_.size(); ++k) {
    Arg& a = args_[k];
    const ParamInfo& p = fn_->params[k];
    if (!a.set && p.isPointer) throw std::runtime_error(fn_->name + ": argument " + p.name + " not set");
    switch (a.role) {
      case Role::Scalar:
        slots[k] = a.scalar;
        break;
      case Role::Null:
        slots[k].p = nullptr;
        break;
      case Role::Frames: {
        const bool own = a.backing == kOwnBacking;
        Arg& b = own ? a : args_[static_cast<std::size_t>(a.backing)];
        uint8_t* backing = own ? a.own.data() : b.mem.data();
        const std::size_t backingSize = own ? a.own_size() : b.mem_size();
        const std::size_t skip = own ? 0 : args_[static_cast<std::size_t>(a.backing)].misalign;
        const std::size_t elem = own ? p.frameElemSize : fn_->params[static_cast<std::size_t>(a.backing)].elemSize;
        // The table entries point into the backing buffer (or at its start
        // when the backing is too short: placeholder frames of failing calls).
        auto** table = reinterpret_cast<uint8_t**>(a.mem.data());
        for (std::size_t m = 0; m < a.frameCount; ++m) {
          const std::size_t off = m * a.frameStride * elem;
          table[m] = backing + skip + (off + elem <= backingSize - skip ? off : 0);
        }
        slots[k].p = a.mem.data();
        break;
      }
      default: {
        // An empty buffer is still a valid, non-null pointer.
        static uint64_t emptyBuffer[2];
        slots[k].p = a.mem_size() == 0 && !a.guarded ? static_cast<void*>(emptyBuffer) : a.mem.data() + a.misalign;
        break;
      }
    }
  }
  const int64_t result = fn_->call(slots.data());
  check_canaries();
  return result;
}

void Call::check_canaries() const {
  auto intact = [](const std::vector<uint8_t>& v, std::size_t from) {
    return std::all_of(v.begin() + static_cast<std::ptrdiff_t>(from), v.end(),
                       [](uint8_t b) { return b == kCanaryByte; });
  };
  for (std::size_t k = 0; k < args_.size(); ++k) {
    const Arg& a = args_[k];
    if ((a.guarded && !intact(a.mem, a.mem_size())) || (a.ownGuarded && !intact(a.own, a.own_size())))
      throw std::runtime_error(describe() + " wrote past the end of " + fn_->params[k].name);
  }
}

std::vector<std::vector<uint8_t>> Call::snapshot() const {
  std::vector<std::vector<uint8_t>> s;
  for (const Arg& a : args_) {
    if (a.role == Role::Frames) {
      s.push_back(a.backing == kOwnBacking
                      ? std::vector<uint8_t>(a.own.begin(), a.own.begin() + static_cast<std::ptrdiff_t>(a.own_size()))
                      : std::vector<uint8_t>{});
      continue;
    }
    std::vector<uint8_t> bytes(a.mem.begin(), a.mem.begin() + static_cast<std::ptrdiff_t>(a.mem_size()));
    if (!a.selfPointers.empty() && !bytes.empty()) {
      const auto base = reinterpret_cast<uintptr_t>(a.mem.data());
      const auto startOff = ((base + a.misalign + 15) & ~uintptr_t(15)) - base;
      for (std::size_t off : a.selfPointers) {
        if (startOff + off + sizeof(uintptr_t) > bytes.size()) continue;
        uintptr_t v;
        std::memcpy(&v, bytes.data() + startOff + off, sizeof v);
        if (v >= base && v < base + a.mem.size()) v -= base;
        std::memcpy(bytes.data() + startOff + off, &v, sizeof v);
      }
    }
    s.push_back(std::move(bytes));
  }
  return s;
}

void Call::randomize_inputs(std::mt19937& rng) {
  for (std::size_t k = 0; k < args_.size(); ++k) {
    Arg& a = args_[k];
    const ParamInfo& p = fn_->params[k];
    const bool ownFrames = a.role == Role::Frames && a.backing == kOwnBacking;
    if (a.role != Role::In && a.role != Role::InOut && !ownFrames) continue;
    uint8_t* d = ownFrames ? a.own.data() : a.mem.data() + (a.offsetBytes ? 0 : a.misalign);
    const std::size_t n = ownFrames ? a.own_size() : a.mem_size() - (a.offsetBytes ? 0 : a.misalign);
    switch (ownFrames ? p.frameElem : p.elem) {
      case Elem::F32:
      case Elem::C32F: {
        std::uniform_real_distribution<float> u(-1.0f, 1.0f);
        for (std::size_t o = 0; o + 4 <= n; o += 4) {
          const float v = u(rng);
          std::memcpy(d + o, &v, 4);
        }
        break;
      }
      case Elem::F64: {
        std::uniform_real_distribution<double> u(-1.0, 1.0);
        for (std::size_t o = 0; o + 8 <= n; o += 8) {
          const double v = u(rng);
          std::memcpy(d + o, &v, 8);
        }
        break;
      }
      case Elem::Opaque:
      case Elem::Pointer:
        break;  // states are formatted by their Init
      default:
        for (std::size_t o = 0; o < n; ++o) d[o] = static_cast<uint8_t>(rng());
        break;
    }
  }
}

std::string Call::describe() const {
  std::ostringstream os;
  os << fn_->name << "(";
  for (std::size_t k = 0; k < args_.size(); ++k) {
    const Arg& a = args_[k];
    os << (k ? ", " : "") << fn_->params[k].name << "=";
    switch (a.role) {
      case Role::Scalar:
        os << a.scalar.i;
        break;
      case Role::Null:
        os << "null";
        break;
      case Role::Frames:
        os << "[" << a.frameCount << " frames of " << a.frameStride << "]";
        break;
      default:
        os << "[" << a.mem_size() - a.misalign << " bytes]";
        break;
    }
  }
  os << ")";
  return os.str();
}

}  // namespace vt
