#!/usr/bin/env python3
"""Generates gsmamr/amr_tables.cpp from the plain-number TS 26.073 tables.

Usage: tools/gen_gsmamr_tables.py <folder of the gsmamr table files> > gsmamr/amr_tables.cpp
       tools/gen_gsmamr_tables.py <folder> --codec-header > gsmamr/amr_codec_tables.h
       tools/gen_gsmamr_tables.py <folder> --codec gsmamr/amr_codec_tables.h > gsmamr/amr_codec_tables.cpp
       tools/gen_gsmamr_tables.py <folder> --format-header > codecs/gsmamr/amr_format_tables.h
       tools/gen_gsmamr_tables.py <folder> --format codecs/gsmamr/amr_format_tables.h > codecs/gsmamr/amr_format_tables.cpp
Each input file holds '#' header lines followed by rows of decimal numbers.
The declarations are in gsmamr/amr_tables.h (written by hand).
"""
import os
import sys

# (file, C++ name, rows, columns, comment)
TABLES = [
    ("window_200_40", "kWindow200_40", 240, 1, "LP analysis window, all modes except 12.2 kbit/s (Q15)"),
    ("window_160_80", "kWindow160_80", 240, 1, "LP analysis window, first analysis at 12.2 kbit/s (Q15)"),
    ("window_232_8", "kWindow232_8", 240, 1, "LP analysis window, second analysis at 12.2 kbit/s (Q15)"),
    ("lag_h", "kLagWindowHi", 10, 1, "lag window for r[1..10], DPF high words"),
    ("lag_l", "kLagWindowLo", 10, 1, "lag window for r[1..10], DPF low words"),
    ("lsp_lsf_cos_table", "kCosTable", 65, 1, "cos(i*pi/64), i = 0..64 (Q15)"),
    ("lsp_lsf_acos_slope", "kAcosSlope", 64, 1, "arc-cosine slopes of Lsp_lsf"),
    ("lsf_lsp_cos_slope", "kCosSlope", 64, 1, "kCosTable[i+1] - kCosTable[i], i = 0..63"),
    ("dico1_lsf_3", "kDico1Lsf3", 256, 3, "3-split, first sub-vector (Q15 LSF residual)"),
    ("dico2_lsf_3", "kDico2Lsf3", 512, 3, "3-split, second sub-vector"),
    ("dico3_lsf_3", "kDico3Lsf3", 512, 4, "3-split, third sub-vector"),
    ("mr515_3_lsf", "kMr515Lsf3", 128, 4, "3-split, third sub-vector at 4.75 and 5.15 kbit/s"),
    ("mr795_1_lsf", "kMr795Lsf1", 512, 3, "3-split, first sub-vector at 7.95 kbit/s"),
    ("mean_lsf_3", "kMeanLsf3", 10, 1, "LSF mean of the 3-split modes (Q15)"),
    ("pred_fac_3", "kPredFac3", 10, 1, "MA prediction factors of the 3-split modes (Q15)"),
    ("dico1_lsf_5", "kDico1Lsf5", 128, 4, "12.2 kbit/s split matrix, coefficients 0-1 of both vectors"),
    ("dico2_lsf_5", "kDico2Lsf5", 256, 4, "12.2 kbit/s split matrix, coefficients 2-3"),
    ("dico3_lsf_5", "kDico3Lsf5", 256, 4, "12.2 kbit/s split matrix, coefficients 4-5 (signed search)"),
    ("dico4_lsf_5", "kDico4Lsf5", 256, 4, "12.2 kbit/s split matrix, coefficients 6-7"),
    ("dico5_lsf_5", "kDico5Lsf5", 64, 4, "12.2 kbit/s split matrix, coefficients 8-9"),
    ("mean_lsf_5", "kMeanLsf5", 10, 1, "LSF mean at 12.2 kbit/s, also the decoder's reset past_lsf_q (Q15)"),
    ("lsp_init_data", "kLspInit", 10, 1, "reset value of the previous-frame LSP (Q15)"),
    ("chebyshev_grid", "kChebyshevGrid", 61, 1, "Az_lsp search grid: cos(pi i/60), i = 0..60, ends 32760 (Q15)"),
]

# 3-column tables also emitted padded to 4 columns.
PADDED = ("kDico1Lsf3", "kDico2Lsf3", "kMr795Lsf1")


def read_rows(path):
    rows = []
    with open(path) as f:
        for line in f:
            line = line.strip()
            if not line or line.startswith("#"):
                continue
            rows.append([int(v) for v in line.split()])
    return rows


def emit(out, name, rows, cols, comment):
    out.write(f"// {comment}\n")
    if cols == 1:
        items = [str(r[0]) + "," for r in rows]
        out.write(f"const int16_t {name}[{len(rows)}] = {{\n")
    else:
        items = ["{" + ", ".join(str(v) for v in r) + "}," for r in rows]
        out.write(f"const int16_t {name}[{len(rows)}][{cols}] = {{\n")
    line = "   "
    for it in items:  # greedy packing within 120 columns
        if len(line) + 1 + len(it) > 120:
            out.write(line + "\n")
            line = "   "
        line += " " + it
    out.write(line + "\n")
    out.write("};\n\n")


# Whole-codec tables (pre/post-processing to comfort noise), emitted flat as
# int16_t arrays (row-major) into gsmamr/amr_codec_tables.{h,cpp} with --codec,
# and the bit-stream formats' tables into codecs/gsmamr/amr_format_tables.{h,cpp}
# with --format. (file, C++ name, comment); the shapes come from the files.
CODEC_TABLES = [
    ("gamma1", "kGamma1", "weighting g1 = 0.94^i, modes 4.75-7.95 (Q15)"),
    ("gamma1_12k2", "kGamma1_12k2", "weighting g1 = 0.9^i, 10.2 and 12.2 (Q15)"),
    ("gamma2", "kGamma2", "weighting g2 = 0.6^i (Q15)"),
    ("gamma3", "kGamma3", "post-filter numerator (Q15)"),
    ("gamma4", "kGamma4", "post-filter denominator (Q15)"),
    ("gamma3_mr122", "kGamma3_MR122", "post-filter numerator, 10.2 and 12.2 (Q15)"),
    ("gamma4_mr122", "kGamma4_MR122", "post-filter denominator, 10.2 and 12.2 (Q15)"),
    ("corrweight", "kCorrWeight", "open-loop lag weighting of 10.2"),
    ("inter_6_interpol", "kInter6Interpol", "1/6 interpolation filter of the correlation (Q15)"),
    ("inter_6_pred_lt", "kInter6PredLt", "1/6 interpolation filter of the past excitation (Q15)"),
    ("qua_gain_pitch", "kQuaGainPitch", "scalar pitch gains (Q14)"),
    ("qua_gain_code", "kQuaGainCode", "scalar code-gain factors (Q11) and their energies (32x3)"),
    ("table_gain_highrates", "kGainHighRates", "joint gains 6.7, 7.4, 10.2 (128x4)"),
    ("table_gain_lowrates", "kGainLowRates", "joint gains 5.15, 5.9 (64x4)"),
    ("table_gain_mr475", "kGainMr475", "joint gains of two subframes, 4.75 (256x4)"),
    ("gc_pred_coef", "kGcPredCoef", "code-gain MA predictor (Q13)"),
    ("gc_pred_coef_mr122", "kGcPredCoefMr122", "code-gain MA predictor of 12.2 (Q6)"),
    ("ec_gain_pdown", "kEcGainPdown", "pitch-gain attenuation per concealment state (Q15)"),
    ("ec_gain_cdown", "kEcGainCdown", "code-gain attenuation per concealment state (Q15)"),
    ("ph_imp_low", "kPhImpLow", "phase dispersion, strong (Q15)"),
    ("ph_imp_mid", "kPhImpMid", "phase dispersion, medium (Q15)"),
    ("ph_imp_low_mr795", "kPhImpLowMr795", "phase dispersion, strong, 7.95 (Q15)"),
    ("ph_imp_mid_mr795", "kPhImpMidMr795", "phase dispersion, medium, 7.95 (Q15)"),
    ("c2_9pf_startpos", "kC2_9pfStartPos", "track start positions of the 2-pulse 9-bit codebook (2x8)"),
    ("c2_11pf_startpos1", "kC2_11pfStartPos1", "first-pulse tracks of the 2-pulse 11-bit codebook"),
    ("c2_11pf_startpos2", "kC2_11pfStartPos2", "second-pulse tracks of the 2-pulse 11-bit codebook"),
    ("gray", "kGray", "Gray code of 3 bits"),
    ("dgray", "kDgray", "inverse Gray code of 3 bits"),
    ("inv_sqrt_table", "kInvSqrtTab", "Inv_sqrt interpolation table"),
    ("log2_table", "kLog2Tab", "Log2 interpolation table"),
    ("pow2_table", "kPow2Tab", "Pow2 interpolation table"),
    ("sqrt_l_table", "kSqrtLTab", "sqrt_l_exp interpolation table"),
    ("lsf_hist_mean_scale", "kLsfHistMeanScale", "comfort-noise LSF variability scale"),
    ("dtx_log_en_adjust", "kDtxLogEnAdjust", "comfort-noise energy adjustment per mode"),
    ("past_rq_init", "kPastRqInit", "SID LSF quantiser: initial past residuals (8x10)"),
    ("prmno", "kPrmNo", "parameters per mode, 4.75 .. 12.2, SID"),
    ("prmnofsf", "kPrmNoFsf", "parameters of the first subframe per mode"),
    ("bitno_mr475", "kBitNoMr475", "bit widths per parameter, 4.75"),
    ("bitno_mr515", "kBitNoMr515", "bit widths per parameter, 5.15"),
    ("bitno_mr59", "kBitNoMr59", "bit widths per parameter, 5.9"),
    ("bitno_mr67", "kBitNoMr67", "bit widths per parameter, 6.7"),
    ("bitno_mr74", "kBitNoMr74", "bit widths per parameter, 7.4"),
    ("bitno_mr795", "kBitNoMr795", "bit widths per parameter, 7.95"),
    ("bitno_mr102", "kBitNoMr102", "bit widths per parameter, 10.2"),
    ("bitno_mr122", "kBitNoMr122", "bit widths per parameter, 12.2"),
    ("bitno_mrdtx", "kBitNoMrDtx", "bit widths per parameter, SID"),
    ("dhf_mr475", "kDhfMr475", "decoder homing frame, 4.75"),
    ("dhf_mr515", "kDhfMr515", "decoder homing frame, 5.15"),
    ("dhf_mr59", "kDhfMr59", "decoder homing frame, 5.9"),
    ("dhf_mr67", "kDhfMr67", "decoder homing frame, 6.7"),
    ("dhf_mr74", "kDhfMr74", "decoder homing frame, 7.4"),
    ("dhf_mr795", "kDhfMr795", "decoder homing frame, 7.95"),
    ("dhf_mr102", "kDhfMr102", "decoder homing frame, 10.2"),
    ("dhf_mr122", "kDhfMr122", "decoder homing frame, 12.2"),
    ("vad2_phs_tbl", "kVad2PhsTbl", "VAD2 FFT phases, cos/-sin interleaved"),
    ("vad2_ch_tbl", "kVad2ChTbl", "VAD2 channel bin ranges (16x2)"),
    ("vad2_ch_tbl_sh", "kVad2ChTblSh", "VAD2 channel gains"),
    ("vad2_vm_tbl", "kVad2VmTbl", "VAD2 voice-metric table"),
    ("vad2_hangover_table", "kVad2HangoverTable", "VAD2 hangover per SNR class"),
    ("vad2_burstcount_table", "kVad2BurstcountTable", "VAD2 burst count per SNR class"),
    ("vad2_vm_threshold_table", "kVad2VmThresholdTable", "VAD2 voice-metric threshold per SNR class"),
]

FORMAT_TABLES = [
    ("storage_order_mr475", "kStorageOrderMr475", "storage-format bit order, 4.75"),
    ("storage_order_mr515", "kStorageOrderMr515", "storage-format bit order, 5.15"),
    ("storage_order_mr59", "kStorageOrderMr59", "storage-format bit order, 5.9"),
    ("storage_order_mr67", "kStorageOrderMr67", "storage-format bit order, 6.7"),
    ("storage_order_mr74", "kStorageOrderMr74", "storage-format bit order, 7.4"),
    ("storage_order_mr795", "kStorageOrderMr795", "storage-format bit order, 7.95"),
    ("storage_order_mr102", "kStorageOrderMr102", "storage-format bit order, 10.2"),
    ("storage_order_mr122", "kStorageOrderMr122", "storage-format bit order, 12.2"),
] + [t for t in CODEC_TABLES if t[0].startswith("bitno_")]


def emit_flat(folder, tables, header, ns):
    """Writes a header (--*-header) or the definitions of flat int16_t tables."""
    out = sys.stdout
    out.write("// GSM-AMR (TS 26.073) tables. Generated by tools/gen_gsmamr_tables.py; do not edit by hand.\n")
    out.write("// clang-format off\n")
    if header:
        out.write("#pragma once\n\n#include <cstdint>\n\n")
    else:
        out.write(f'#include "{sys.argv[3]}"\n\n')
    out.write(f"namespace {ns} {{\n\n")
    for fname, name, comment in tables:
        rows = read_rows(os.path.join(folder, fname + ".txt"))
        flat = [v for r in rows for v in r]
        shape = f"{len(rows)}x{len(rows[0])}"
        if header:
            out.write(f"extern const int16_t {name}[{len(flat)}];  // {comment} ({shape})\n")
        else:
            emit(out, name, [[v] for v in flat], 1, f"{comment} ({shape}, row-major)")
    out.write(f"\n}}  // namespace {ns}\n")


def main():
    folder = sys.argv[1]
    if len(sys.argv) > 2 and sys.argv[2] in ("--codec", "--codec-header", "--format", "--format-header"):
        codec = sys.argv[2].startswith("--codec")
        emit_flat(folder, CODEC_TABLES if codec else FORMAT_TABLES, sys.argv[2].endswith("-header"),
                  "vsps::gsmamr" if codec else "vsps::codecs::amr")
        return
    out = sys.stdout
    out.write("// GSM-AMR (TS 26.073) constant tables. Generated by tools/gen_gsmamr_tables.py\n")
    out.write("// from the plain-number tables; do not edit by hand.\n")
    out.write("// clang-format off\n")
    out.write('#include "gsmamr/amr_tables.h"\n\nnamespace vsps::gsmamr {\n\n')
    for fname, name, nrows, cols, comment in TABLES:
        rows = read_rows(os.path.join(folder, fname + ".txt"))
        if len(rows) != nrows or any(len(r) != cols for r in rows):
            sys.exit(f"{fname}: expected {nrows}x{cols}")
        emit(out, name, rows, cols, comment)
        if name in PADDED:  # 4-column copy for the vector searches: a zero that adds exactly 0
            emit(out, name + "Pad4", [r + [0] for r in rows], 4, comment + ", padded with a zero column")
    out.write("}  // namespace vsps::gsmamr\n")


if __name__ == "__main__":
    main()
