/*
 * vsps_functions.h - the list of exported functions, included by vsps.h.
 *
 * The library's exports are listed family by family, one file each under
 * vsps/: this file only includes them, in a fixed order. Each entry is
 *     VSPS_FN(return type, name, (parameters), (argument names))
 * for a primitive routed through the processor dispatch (seven variants), or
 *     VSPS_SERVICE(return type, name, (parameters), (argument names))
 * for a library service exported directly. The includer defines both macros;
 * from the lists come the declarations of vsps.h, the per-level variant
 * declarations, the exported dispatch stubs and their tables, the Windows
 * export definition file, the API reference and the tests' table of symbols.
 * Adding a function means adding its entry to its family's list and its
 * implementation in its family folder; adding a family means adding its list
 * here.
 *
 * Parameter names are part of the contract: the tests bind test-vector
 * arrays to arguments by these names.
 *
 * No include guard: this file and the lists are meant to be included more
 * than once.
 */
#include "vsps/core.h"
#include "vsps/speech.h"
#include "vsps/g729.h"
#include "vsps/gsmamr.h"
#include "vsps/ec.h"
#include "vsps/g711.h"
#include "vsps/g722.h"
#include "vsps/g726.h"
#include "vsps/gsmfr.h"
