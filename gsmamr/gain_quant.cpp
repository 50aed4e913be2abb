// The GSM-AMR encoder's gain quantisation exports: state block, scalar
// pitch-gain quantiser, and gainQuant of one subframe (TS 26.073).
#include <cstring>

#include "core/level_ns.h"
#include "gsmamr/dec_gain.h"
#include "gsmamr/gain_mr475.h"
#include "gsmamr/gain_mr795.h"
#include "vsps.h"

namespace vsps::VSPS_NS {
namespace {

using amr::gq::Block;
using amr::gq::State;

// Innovation energy of the code vector (mantissa, exponent) as gc_pred
// forms it at 7.95 kbit/s.
void innovation_energy(const int16_t* code, int16_t& frac_en, int16_t& exp_en) {
  int32_t L = 0;
  for (int i = 0; i < amr::kSubfr; ++i) L = bop::L_mac(L, code[i], code[i]);
  const int16_t e = bop::norm_l(L);
  frac_en = bop::extract_h(bop::L_shl(L, e));
  exp_en = bop::sub(-11, e);
}

// MR795_gain_quant: candidates, joint search, then the adaptive code gain.
void gain_quant_795(State& st, const int16_t* res, const int16_t* exc, const int16_t* code, const int16_t* frac_coeff,
                    const int16_t* exp_coeff, int16_t exp_gcode0, int16_t frac_gcode0, int16_t cod_gain_frac,
                    int16_t cod_gain_exp, int16_t gp_limit, int16_t gain_pit, int16_t* gains, int16_t* index,
                    int16_t& qua_ener_MR122, int16_t& qua_ener) {
  int16_t cand[3], cind[3];
  amr::gq::q_gain_pitch(amr::MR795, gp_limit, gain_pit, cand, cind);
  const int16_t gcode0 = bop::extract_l(amr::pow2(14, frac_gcode0));
  int16_t gain_cod, pit_ind, cod_ind;
  amr::gq::code_quant3(exp_gcode0, gcode0, cand, cind, frac_coeff, exp_coeff, gain_pit, pit_ind, gain_cod, cod_ind,
                       qua_ener_MR122, qua_ener);
  int16_t frac_en[4], exp_en[4], ltpg;
  amr::gq::calc_unfilt_energies(res, exc, code, gain_pit, frac_en, exp_en, ltpg);
  const int16_t alpha = amr::gq::gain_adapt(st, ltpg, gain_cod);
  if (frac_en[0] != 0 && alpha > 0) {
    innovation_energy(code, frac_en[3], exp_en[3]);
    const int16_t gain_cod_unq = bop::shl(cod_gain_frac, bop::add(bop::sub(cod_gain_exp, exp_gcode0), 10));
    cod_ind = amr::gq::code_quant_mod(gain_pit, exp_gcode0, gcode0, frac_en, exp_en, alpha, gain_cod_unq, gain_cod,
                                      qua_ener_MR122, qua_ener);
  }
  gains[0] = gain_pit;
  gains[1] = gain_cod;
  index[0] = pit_ind;
  index[1] = cod_ind;
}

}  // namespace

VspStatus legacy90vspsGainQuantStateSize_GSMAMR(int* pSize) {
  if (!pSize) return vspStsNullPtrErr;
  *pSize = static_cast<int>(sizeof(Block));
  return vspStsNoErr;
}

VspStatus legacy90vspsGainQuantInit_GSMAMR(Vsp8u* pState) {
  if (!pState) return vspStsNullPtrErr;
  Block s;
  amr::gq::reset(s);
  std::memcpy(pState, &s, sizeof s);
  return vspStsNoErr;
}

VspStatus legacy90vspsQuantPitchGain_GSMAMR_16s(Vsp16s gainPitch, Vsp16s gpLimit, Vsp16s* pDstGain, Vsp16s* pDstIndex,
                                                int mode) {
  if (!pDstGain || !pDstIndex) return vspStsNullPtrErr;
  const int16_t m = amr::ref_mode(mode);
  if (m != amr::MR122 && m != amr::MR795) return vspStsRangeErr;
  int16_t cand[3], cind[3];
  const int16_t index = amr::gq::q_gain_pitch(m, gpLimit, gainPitch, cand, cind);
  *pDstGain = gainPitch;
  *pDstIndex = index;
  return vspStsNoErr;
}

VspStatus legacy90vspsGainQuant_GSMAMR_16s(const Vsp16s* pTarget, const Vsp16s* pTarget2, const Vsp16s* pFiltAdapt,
                                           const Vsp16s* pFiltCode, const Vsp16s* pCode, const Vsp16s* pResidual,
                                           const Vsp16s* pAdapt, const Vsp16s* pCoeff, Vsp16s gainPitch, Vsp16s gpLimit,
                                           Vsp16s* pSrcDstPastQuaEn, Vsp8u* pState, Vsp16s* pDstGains,
                                           Vsp16s* pDstIndex, int subframe, int mode) {
  if (!pTarget || !pTarget2 || !pFiltAdapt || !pFiltCode || !pCode || !pResidual || !pAdapt || !pCoeff ||
      !pSrcDstPastQuaEn || !pState || !pDstGains || !pDstIndex)
    return vspStsNullPtrErr;
  const int16_t m = amr::ref_mode(mode);
  if (subframe < 0 || subframe > 3 || m < 0 || m == amr::MRDTX) return vspStsRangeErr;
  State st;
  std::memcpy(static_cast<Block*>(&st), pState, sizeof(Block));
  std::memcpy(st.past_qua_en, pSrcDstPastQuaEn, sizeof st.past_qua_en);
  std::memcpy(st.past_qua_en_MR122, pSrcDstPastQuaEn + 4, sizeof st.past_qua_en_MR122);
  int16_t gains[4] = {gainPitch, 0, 0, 0}, index[2] = {-1, -1};
  int16_t qua_ener_MR122 = 0, qua_ener = 0;
  bool update = true;
  if (m == amr::MR475) {
    if ((subframe & 1) == 0) {
      // even subframe: keep the energies, predict with the unquantised predictor
      std::memcpy(st.unq_qua_en, st.past_qua_en, sizeof st.unq_qua_en);
      std::memcpy(st.unq_qua_en_MR122, st.past_qua_en_MR122, sizeof st.unq_qua_en_MR122);
      amr::gc_pred(st.unq_qua_en, st.unq_qua_en_MR122, m, pCode, st.sf0_exp_gcode0, st.sf0_frac_gcode0);
      int16_t cgf = 0, cge = 0;
      amr::gq::calc_filt_energies(m, pTarget, pTarget2, pFiltAdapt, pFiltCode, pCoeff, st.sf0_frac_coeff,
                                  st.sf0_exp_coeff, cgf, cge);
      gains[1] = bop::shl(cgf, bop::add(cge, 1));
      amr::gq::calc_target_energy(pTarget, st.sf0_exp_target_en, st.sf0_frac_target_en);
      amr::gq::update_unq_pred(st, st.sf0_exp_gcode0, st.sf0_frac_gcode0, cge, cgf);
    } else {
      int16_t exp1, frac1, fc[5], ec[5], cgf = 0, cge = 0, et, ft;
      amr::gc_pred(st.unq_qua_en, st.unq_qua_en_MR122, m, pCode, exp1, frac1);
      amr::gq::calc_filt_energies(m, pTarget, pTarget2, pFiltAdapt, pFiltCode, pCoeff, fc, ec, cgf, cge);
      amr::gq::calc_target_energy(pTarget, et, ft);
      index[0] = amr::gq::mr475_gain_quant(st, pCode, exp1, frac1, ec, fc, et, ft, gpLimit, gains);
    }
    update = false;
  } else {
    int16_t exp_gcode0, frac_gcode0;
    amr::gc_pred(st.past_qua_en, st.past_qua_en_MR122, m, pCode, exp_gcode0, frac_gcode0);
    if (m == amr::MR122) {
      gains[1] = amr::gq::g_code(pTarget2, pFiltCode);
      index[0] = amr::gq::q_gain_code_122(exp_gcode0, frac_gcode0, gains[1], qua_ener_MR122, qua_ener);
    } else {
      int16_t fc[5], ec[5], cgf = 0, cge = 0;
      amr::gq::calc_filt_energies(m, pTarget, pTarget2, pFiltAdapt, pFiltCode, pCoeff, fc, ec, cgf, cge);
      if (m == amr::MR795) {
        gain_quant_795(st, pResidual, pAdapt, pCode, fc, ec, exp_gcode0, frac_gcode0, cgf, cge, gpLimit, gainPitch,
                       gains, index, qua_ener_MR122, qua_ener);
      } else {
        index[0] = amr::gq::qua_gain(m, exp_gcode0, frac_gcode0, fc, ec, gpLimit, gains[0], gains[1], qua_ener_MR122,
                                     qua_ener);
      }
    }
  }
  if (update) amr::gc_pred_update(st.past_qua_en, st.past_qua_en_MR122, qua_ener_MR122, qua_ener);
  if (!(m == amr::MR475 && (subframe & 1) != 0)) {
    gains[2] = gains[0];
    gains[3] = gains[1];
  }
  for (int i = 0; i < 4; ++i) pDstGains[i] = gains[i];
  pDstIndex[0] = index[0];
  pDstIndex[1] = index[1];
  std::memcpy(pState, static_cast<const Block*>(&st), sizeof(Block));
  std::memcpy(pSrcDstPastQuaEn, st.past_qua_en, sizeof st.past_qua_en);
  std::memcpy(pSrcDstPastQuaEn + 4, st.past_qua_en_MR122, sizeof st.past_qua_en_MR122);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
