// Declarations of the seven per-level variants of every dispatched export,
// generated from the list of exports: vsps::mx::name .. vsps::l9::name.
#pragma once

#include "vsps.h"

#define VSPS_SERVICE(ret, name, params, args)
#define VSPS_FN(ret, name, params, args) ret name params;
namespace vsps::mx {
#include "vsps_functions.h"
}
namespace vsps::m7 {
#include "vsps_functions.h"
}
namespace vsps::u8 {
#include "vsps_functions.h"
}
namespace vsps::n8 {
#include "vsps_functions.h"
}
namespace vsps::y8 {
#include "vsps_functions.h"
}
namespace vsps::e9 {
#include "vsps_functions.h"
}
namespace vsps::l9 {
#include "vsps_functions.h"
}
#undef VSPS_SERVICE
#undef VSPS_FN
