// The tests' table of exports, generated from the list of exports: name,
// parameter names and types, and a generic invoker that calls the export
// with arguments given as slots. The argument harness, the cross-level
// harness and the golden-vector runner are all driven from this table.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "vsps.h"

namespace vt {

// What a parameter (or a pointer parameter's element) is.
enum class Elem { U8, S16, S32, U32, F32, F64, C32F, C32S, Pointer, Opaque, Int, Short, Float, Double };

struct ParamInfo {
  std::string name;
  bool isPointer = false;
  bool constPointee = false;  // pointer to const: an input
  Elem elem = Elem::Int;      // pointee for pointers, the scalar kind otherwise
  std::size_t elemSize = 0;   // bytes per pointee element (0 for opaque)
  // Pointer arrays (pointer to pointer): the element type of the frames the
  // entries point to.
  Elem frameElem = Elem::Opaque;
  std::size_t frameElemSize = 0;
  bool isFrames() const { return isPointer && elem == Elem::Pointer && frameElemSize != 0; }
};

// One argument value.
struct Slot {
  void* p = nullptr;
  int64_t i = 0;
  double f = 0;
};

struct ExportInfo {
  std::string name;
  bool dispatched = true;  // false for the services called directly
  std::vector<ParamInfo> params;
  bool returnsStatus = true;
  // Calls the export; returns its status (or, for a pointer result, the
  // pointer as an integer).
  int64_t (*invoke)(const void* fn, const Slot* slots) = nullptr;
  const void* fn = nullptr;

  int index_of(std::string_view param) const;  // -1 when absent
  int64_t call(const Slot* slots) const { return invoke(fn, slots); }
};

const std::vector<ExportInfo>& all_exports();
const ExportInfo* find_export(std::string_view name);

// Bytes of one scalar component of an element (complex: one part).
std::size_t component_size(Elem e);

namespace detail {

template <class T>
constexpr Elem elem_of() {
  using U = std::remove_cv_t<T>;
  if constexpr (std::is_pointer_v<U>)
    return Elem::Pointer;
  else if constexpr (std::is_same_v<U, Vsp8u>)
    return Elem::U8;
  else if constexpr (std::is_same_v<U, Vsp16s>)
    return Elem::S16;
  else if constexpr (std::is_same_v<U, Vsp32s>)
    return Elem::S32;
  else if constexpr (std::is_same_v<U, Vsp32u>)
    return Elem::U32;
  else if constexpr (std::is_same_v<U, Vsp32f>)
    return Elem::F32;
  else if constexpr (std::is_same_v<U, Vsp64f>)
    return Elem::F64;
  else if constexpr (std::is_same_v<U, Vsp32fc>)
    return Elem::C32F;
  else if constexpr (std::is_same_v<U, Vsp32sc>)
    return Elem::C32S;
  else
    return Elem::Opaque;
}

template <class T>
constexpr std::size_t size_of_complete() {
  if constexpr (std::is_void_v<T>)
    return 0;
  else if constexpr (requires { sizeof(T); })
    return sizeof(T);
  else
    return 0;
}

template <class A>
ParamInfo param_of() {
  ParamInfo p;
  if constexpr (std::is_pointer_v<A>) {
    using P = std::remove_pointer_t<A>;
    p.isPointer = true;
    p.constPointee = std::is_const_v<P>;
    p.elem = elem_of<P>();
    p.elemSize = size_of_complete<std::remove_cv_t<P>>();
    if constexpr (std::is_pointer_v<std::remove_cv_t<P>>) {
      using F = std::remove_cv_t<std::remove_pointer_t<std::remove_cv_t<P>>>;
      p.frameElem = elem_of<F>();
      p.frameElemSize = size_of_complete<F>();
    }
  } else if constexpr (std::is_floating_point_v<A>) {
    p.elem = sizeof(A) == 4 ? Elem::Float : Elem::Double;
    p.elemSize = sizeof(A);
  } else {
    p.elem = sizeof(A) == 2 ? Elem::Short : Elem::Int;
    p.elemSize = sizeof(A);
  }
  return p;
}

template <class T>
T from_slot(const Slot& s) {
  if constexpr (std::is_pointer_v<T>)
    return static_cast<T>(s.p);
  else if constexpr (std::is_floating_point_v<T>)
    return static_cast<T>(s.f);
  else
    return static_cast<T>(s.i);
}

template <class R, class... A, std::size_t... I>
int64_t call_with(R (*f)(A...), const Slot* s, std::index_sequence<I...>) {
  if constexpr (std::is_pointer_v<R>)
    return static_cast<int64_t>(reinterpret_cast<intptr_t>(f(from_slot<A>(s[I])...)));
  else
    return static_cast<int64_t>(f(from_slot<A>(s[I])...));
}

template <class R, class... A>
ExportInfo make_info(const char* name, bool dispatched, const char* paramsText, R (*f)(A...)) {
  ExportInfo info;
  info.name = name;
  info.dispatched = dispatched;
  info.params = {param_of<A>()...};
  info.returnsStatus = !std::is_pointer_v<R>;
  info.fn = reinterpret_cast<const void*>(f);
  info.invoke = [](const void* fn, const Slot* slots) -> int64_t {
    return call_with(reinterpret_cast<R (*)(A...)>(const_cast<void*>(fn)), slots, std::index_sequence_for<A...>{});
  };
  std::vector<std::string> names;
  std::string text(paramsText);
  // "(const Vsp16s* pSrc1, int len)" -> the last identifier of each part
  text = text.substr(1, text.size() - 2);
  std::size_t start = 0;
  while (start <= text.size() && text != "void" && !text.empty()) {
    std::size_t comma = text.find(',', start);
    std::string part = text.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
    std::size_t end = part.find_last_not_of(" \t\n");
    std::size_t begin = part.find_last_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_", end);
    names.push_back(part.substr(begin + 1, end - begin));
    if (comma == std::string::npos) break;
    start = comma + 1;
  }
  for (std::size_t k = 0; k < info.params.size() && k < names.size(); ++k) info.params[k].name = names[k];
  return info;
}

}  // namespace detail
}  // namespace vt
