/*
 * 16-bit arithmetic with scale modes, division, logic and shifts.
 * Included by ryxcore.h.
 */
#ifndef RYXCORE_VECTOR_INT16_H
#define RYXCORE_VECTOR_INT16_H

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_VECTOR_INT16_H */
