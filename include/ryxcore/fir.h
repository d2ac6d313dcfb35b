/*
 * FIR filters: caller-owned and library-owned forms, single-rate and multirate.
 * Included by ryxcore.h.
 */
#ifndef RYXCORE_FIR_H
#define RYXCORE_FIR_H

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_FIR_H */
