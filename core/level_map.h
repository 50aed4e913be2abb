// Level -> namespace of the variant that serves it. A build may compile a
// subset of the levels (sanitizer builds); the build system then defines
// VSPS_NS_FOR_LEVEL_<n> as the highest compiled level at or below n.
#pragma once

#ifndef VSPS_NS_FOR_LEVEL_0
#define VSPS_NS_FOR_LEVEL_0 mx
#define VSPS_NS_FOR_LEVEL_1 m7
#define VSPS_NS_FOR_LEVEL_2 u8
#define VSPS_NS_FOR_LEVEL_3 n8
#define VSPS_NS_FOR_LEVEL_4 y8
#define VSPS_NS_FOR_LEVEL_5 e9
#define VSPS_NS_FOR_LEVEL_6 l9
#endif

// The seven per-level objects of a variable declared in every level
// namespace, as an array indexed by level.
#define VSPS_PER_LEVEL_ADDRESSES(name)                                                                        \
  {                                                                                                           \
    &vsps::VSPS_NS_FOR_LEVEL_0::name, &vsps::VSPS_NS_FOR_LEVEL_1::name, &vsps::VSPS_NS_FOR_LEVEL_2::name,     \
        &vsps::VSPS_NS_FOR_LEVEL_3::name, &vsps::VSPS_NS_FOR_LEVEL_4::name, &vsps::VSPS_NS_FOR_LEVEL_5::name, \
        &vsps::VSPS_NS_FOR_LEVEL_6::name                                                                      \
  }

// Declares `decl` inside each of the seven level namespaces.
#define VSPS_DECLARE_IN_EVERY_LEVEL(decl) \
  namespace vsps::mx {                    \
  decl;                                   \
  }                                       \
  namespace vsps::m7 {                    \
  decl;                                   \
  }                                       \
  namespace vsps::u8 {                    \
  decl;                                   \
  }                                       \
  namespace vsps::n8 {                    \
  decl;                                   \
  }                                       \
  namespace vsps::y8 {                    \
  decl;                                   \
  }                                       \
  namespace vsps::e9 {                    \
  decl;                                   \
  }                                       \
  namespace vsps::l9 {                    \
  decl;                                   \
  }
