/*
 * Transform tables, complex FFT engine, real FFT and packed spectra.
 * Included by ryxcore.h.
 */
#ifndef RYXCORE_TRANSFORM_H
#define RYXCORE_TRANSFORM_H

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_TRANSFORM_H */
