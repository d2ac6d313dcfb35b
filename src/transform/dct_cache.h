// The DCT's table caches in the thread's record, one entry each: the
// cosine table of the direct path (keyed on 4n), the double secant tables
// of the fast path and their Q9 16-bit twins (both keyed on the stage
// count L, the number of halvings from n down to 8). Table l holds, for
// m = 8 * 2^l, entry j = 0.5 / cos((2j+1) pi / (4m)).
#pragma once

// Each yields false when memory is short; the cache is then empty.
bool ownPrepareDctCosTbl(int n);             // dctCosTbl, dctScaleA
bool ownPrepareDctStageTbls(int stages);     // dctStageTbls, dctScaleB
bool ownPrepareDctFastTbl(int stages);       // dctFastTbl
