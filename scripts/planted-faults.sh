#!/usr/bin/env bash
# Plants small independent faults in the library one at a time and counts
# how many the tests catch. Each fault is a text replacement in one source
# file of a private copy of the tree (build/faults/tree); only the library
# and the one test program that covers it are rebuilt (the compiler cache
# keeps the rest), and only that program runs.
#   scripts/planted-faults.sh [part of a fault's name, or a test program]
# Prints one line per fault (caught / MISSED) and the totals; exits 0.
set -uo pipefail
cd "$(dirname "$0")/.."
root=$PWD
# RYX_FAULTS_IN_PLACE=1 plants the faults in this checkout and builds in
# build/x64 (every object but the planted one is then up to date; each file
# is restored after its run). The default copy needs a first build of each
# test program (the build path is part of their compile flags).
export CCACHE_DIR=${CCACHE_DIR:-$HOME/.cache/ryxcore-ccache} CCACHE_NOHASHDIR=1
if [ "${RYX_FAULTS_IN_PLACE:-0}" = 1 ]; then
  tree=$root
  bdir=$root/${RYX_BUILD_ROOT:-build}/x64
else
  work=${RYX_BUILD_ROOT:-build}/faults
  mkdir -p "$work"
  work=$(cd "$work" && pwd)
  tree=$work/tree
  bdir=$work/build
  rm -rf "$tree" && mkdir -p "$tree"
  cp -rp CMakeLists.txt cmake include src tests "$tree"/
  [ -d bench ] && cp -rp bench "$tree"/
fi
export CCACHE_BASEDIR=$tree
cmake -S "$tree" -B "$bdir" -DRYX_EXAMPLES=OFF >"$bdir.cmake.log" 2>&1 || { cat "$bdir.cmake.log"; exit 1; }
exec python3 -u - "$tree" "$bdir" "${1:-}" <<'PY'
import subprocess, sys, time
tree, bdir, only = sys.argv[1], sys.argv[2], sys.argv[3]

# name, file under src/, text, replacement, test program
FAULTS = [
    ("div16-block-wraps", "vector/division_int16.cpp",
     "dst[i] = i >= singles ? WCplx{sat16(re), sat16(im)} : WCplx{low16(re), low16(im)};\n  }\n  return false;",
     "dst[i] = i >= singles ? WCplx{low16(re), sat16(im)} : WCplx{low16(re), low16(im)};\n  }\n  return false;",
     "test_vector"),
    ("div16-halves-away-from-zero", "vector/division_int16.cpp",
     "inline std::int32_t roundToInt(float q) { return _mm_cvtss_si32(_mm_set_ss(q)); }",
     "inline std::int32_t roundToInt(float q) { return static_cast<std::int32_t>(q < 0 ? q - 0.5f : q + 0.5f); }",
     "test_vector"),
    ("complex-div-divides", "vector/complex_scalar.cpp",
     "const double f = 1.0 / (y.im * y.im + y.re * y.re);\n  return narrow<C>({(y.im * x.im + x.re * y.re) * f, (y.re * x.im - y.im * x.re) * f});",
     "const double f = y.im * y.im + y.re * y.re;\n  return narrow<C>({(y.im * x.im + x.re * y.re) / f, (y.re * x.im - y.im * x.re) / f});",
     "test_vector"),
    ("div16-scalar-tail-saturates", "vector/division_int16.cpp",
     "    dst[i] = low16(roundToInt(static_cast<float>(dst[i]) * inv));",
     "    dst[i] = sat16(roundToInt(static_cast<float>(dst[i]) * inv));",
     "test_vector"),
    ("float-arith-tail-skips-last", "vector/arith_float_sse2.cpp",
     "inline void singlesToBottom(const A& a, const B& b, float* dst, int i) {\n  while (i > 0) {",
     "inline void singlesToBottom(const A& a, const B& b, float* dst, int i) {\n  while (i > 1) {",
     "test_vector"),
    ("stddev-divides-by-n", "vector/statistics.cpp",
     "const long double var = (squares - sum * sum / len) / (len - 1);",
     "const long double var = (squares - sum * sum / len) / len;",
     "test_vector"),
    ("exp16-factor-range", "vector/log_exp_entries.cpp",
     "{{f < -31, \"sorry", "{{f < -30, \"sorry", "test_vector"),
    ("sqrt-message-text", "vector/sqrt_thresh_abs.cpp",
     "\"Element of input vector is negative\"", "\"Element of input vector is negativ\"", "test_vector"),
    ("dot-mixed-tail-drops-im", "vector/dot_kernels.cpp",
     "    out.re += r[i] * c[i].re;\n    out.im += r[i] * c[i].im;\n  }\n  return out;",
     "    out.re += r[i] * c[i].re;\n  }\n  return out;",
     "test_vector"),
    ("shift-right-logical-tail", "vector/logic.cpp",
     "for (; i < n; ++i) dst[i] = static_cast<short>(dst[i] >> count);",
     "for (; i < n; ++i) dst[i] = static_cast<short>(static_cast<std::uint16_t>(dst[i]) >> count);",
     "test_vector"),
    ("int16-saturation-wraps-low", "vector/int16_ref.h",
     "  if (r < -32768) return -32768;\n  return static_cast<short>(r);",
     "  return static_cast<short>(r);",
     "test_vector"),
    ("transcode-pairs-bound", "convert/companding.cpp",
     "for (; i + 2 <= len; i += 2) {", "for (; i + 2 < len; i += 2) {", "test_convert"),
    ("companding-check-order", "convert/companding.cpp",
     "{{len <= 0, \"len<=0\"}, {src == nullptr, \"src==0\"}, {dst == nullptr, \"dst==0\"}});\n}",
     "{{len <= 0, \"len<=0\"}, {dst == nullptr, \"dst==0\"}, {src == nullptr, \"src==0\"}});\n}",
     "test_convert"),
    ("widening-flag-check", "convert/float_int_convert.cpp",
     "bool badWidening(int flags) { return flags != 0 && flags != RYX_UnsignedInt; }",
     "bool badWidening(int flags) { return flags != 0 && flags != RYX_UnsignedInt && flags != RYX_RoundZero; }",
     "test_convert"),
    ("fract-bits-bound", "convert/float_int_convert.cpp",
     "return fractBits < 0 || fractBits > (unsignedInt(flags) ? bits : bits - 1);",
     "return fractBits < 0 || fractBits > bits;", "test_convert"),
    ("fir-odd-taps-start", "fir/firl_core.h",
     "    y1 = mul(ext(src[o + 1]), ext(taps[0]));\n    k = 1;",
     "    y1 = mul(ext(src[o + 1]), ext(taps[0]));\n    k = 2;", "test_fir"),
    ("fir-line-order", "fir/firl_core.h",
     "for (int i = 0; i < count; ++i) dlyl[i] = own[count - 1 - i];",
     "for (int i = 0; i < count; ++i) dlyl[i] = own[i];", "test_fir"),
    ("iir-normalise-skips-last", "iir/iirl_core.h",
     "for (int i = 1; i <= order; ++i) t[order + i] = scale(t[order + 1 + i], f);",
     "for (int i = 1; i < order; ++i) t[order + i] = scale(t[order + 1 + i], f);", "test_iir"),
    ("window-middle-zeroed", "generate/window.cpp",
     "dst[(n / 2) * P + p] = src[(n / 2) * P + p];",
     "dst[(n / 2) * P + p] = R{};", "test_generate"),
    ("random-borrow-constant", "generate/random.cpp",
     "n = static_cast<std::int32_t>(static_cast<u32>(n) - 18u);",
     "n = static_cast<std::int32_t>(static_cast<u32>(n) - 17u);", "test_generate"),
    ("lms-leak-sign", "adaptive/lms_core.h",
     "const double keep = 1.0 - double(leak);", "const double keep = 1.0 + double(leak);", "test_adaptive"),
    ("fft-inverse-scale", "transform/complex_fft.cpp",
     "if (Split) P::scale(a.outIm, n, n);", "", "test_transform"),
    ("aligned-malloc-16", "frame/aligned_memory.cpp",
     "(reinterpret_cast<std::uintptr_t>(raw) + kAlign - 1 + sizeof(void*)) & ~std::uintptr_t{kAlign - 1};",
     "(reinterpret_cast<std::uintptr_t>(raw) + 15 + sizeof(void*)) & ~std::uintptr_t{15};", "test_frame"),
    ("polar-phase-rounds", "convert/polar_kernels.h",
     "return static_cast<R>(std::atan2(static_cast<long double>(y), static_cast<long double>(x)));",
     "return static_cast<R>(std::atan2(static_cast<float>(y), static_cast<float>(x)));", "test_convert"),
]

def run(cmd, **kw):
    return subprocess.run(cmd, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **kw)

def build(target):
    return run(["cmake", "--build", bdir, "-j2", "--target", target, "ryxcore"])

caught = missed = 0
start = time.time()
for name, rel, old, new, target in FAULTS:
    if only and only not in name and only != target:
        continue
    path = f"{tree}/src/{rel}"
    text = open(path).read()
    if text.count(old) != 1:
        print(f"STALE   {name}: the text to replace occurs {text.count(old)} times in src/{rel}")
        continue
    try:
        open(path, "w").write(text.replace(old, new))
        b = build(target)
        if b.returncode != 0:
            print(f"NOBUILD {name}: the planted fault does not compile")
            print(b.stdout[-2000:])
            continue
        t = run([f"{bdir}/{target}"], cwd=bdir, timeout=600)
        if t.returncode != 0:
            caught += 1
            print(f"caught  {name} ({target})")
        else:
            missed += 1
            print(f"MISSED  {name} ({target})")
    except subprocess.TimeoutExpired:
        caught += 1
        print(f"caught  {name} ({target}, timed out)")
    finally:
        open(path, "w").write(text)
build("ryxcore")
print(f"planted faults: {caught} caught, {missed} missed, {caught + missed} run, {time.time() - start:.0f} s")
PY
