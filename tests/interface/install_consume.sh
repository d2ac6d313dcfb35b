#!/usr/bin/env bash
# Installs a built tree into a temporary prefix and builds and runs a
# one-file consumer three ways: find_package on the install, pkg-config on
# the install, and add_subdirectory of the source tree. Checks the SONAME,
# the installed file set, idempotent reinstall and version refusal.
#   install_consume.sh SOURCE_DIR BUILD_DIR VERSION C_COMPILER EXTRA_C_FLAGS SUBPROJECT_ARGS
set -euo pipefail
src=$1 build=$2 version=$3 cc=$4 cflags=$5 subargs=$6
major=${version%%.*}
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
prefix=$tmp/prefix
consumer=$src/tests/interface/consumer
launcher=()
if command -v ccache >/dev/null; then launcher=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache); fi
fail() { echo "FAIL: $*"; exit 1; }
step() { echo "-- $*"; }
for tool in pkg-config readelf; do
  command -v $tool >/dev/null || fail "$tool is needed by this test (Debian packages pkg-config, binutils)"
done

# Some machines cannot run programs of the requested target (an x86-64
# kernel without 32-bit support): then everything is still installed,
# configured, built and inspected, only the consumers are not run, and the
# test ends as skipped with that reason.
can_run=1
printf 'int main(void) { return 0; }\n' >"$tmp/probe.c"
# shellcheck disable=SC2086
"$cc" $cflags "$tmp/probe.c" -o "$tmp/probe" || fail "the C compiler cannot build with '$cflags'"
"$tmp/probe" 2>/dev/null || can_run=0

step "install into a fresh prefix, twice"
cmake --install "$build" --prefix "$prefix" >"$tmp/install1.log"
(cd "$prefix" && find . \( -type f -o -type l \) -printf '%p %l\n' | sort && find . -type f -exec md5sum {} + | sort) >"$tmp/tree1"
cmake --install "$build" --prefix "$prefix" >"$tmp/install2.log"
(cd "$prefix" && find . \( -type f -o -type l \) -printf '%p %l\n' | sort && find . -type f -exec md5sum {} + | sort) >"$tmp/tree2"
cmp -s "$tmp/tree1" "$tmp/tree2" || fail "second install changed the prefix"

step "installed files: public headers, library, CMake package, pkg-config file"
lib=$(cd "$prefix" && ls -d lib*/libryxcore.so."$version" 2>/dev/null | head -1)
[ -n "$lib" ] || fail "no libryxcore.so.$version under $prefix/lib*"
libdir=$(dirname "$lib")
while read -r path; do
  case $path in
    ./include/ryxcore.h | ./include/ryxcore/*.h) ;;
    ./"$libdir"/libryxcore.so | ./"$libdir"/libryxcore.so."$major" | ./"$libdir"/libryxcore.so."$version") ;;
    ./"$libdir"/cmake/ryxcore/ryxcore*.cmake | ./"$libdir"/pkgconfig/ryxcore.pc) ;;
    *) fail "unexpected installed file $path" ;;
  esac
done < <(cd "$prefix" && find . \( -type f -o -type l \))
for h in "$src"/include/ryxcore.h "$src"/include/ryxcore/*.h; do
  rel=${h#"$src"/}
  cmp -s "$h" "$prefix/$rel" || fail "header $rel not installed as in the source tree"
done
for f in ryxcoreConfig.cmake ryxcoreConfigVersion.cmake ryxcoreTargets.cmake; do
  [ -f "$prefix/$libdir/cmake/ryxcore/$f" ] || fail "missing $libdir/cmake/ryxcore/$f"
done
[ "$(readlink "$prefix/$libdir/libryxcore.so")" = "libryxcore.so.$major" ] || fail "libryxcore.so does not point at libryxcore.so.$major"
[ "$(readlink "$prefix/$libdir/libryxcore.so.$major")" = "libryxcore.so.$version" ] || fail "libryxcore.so.$major does not point at the versioned file"

step "SONAME"
soname=$(readelf -d "$prefix/$lib" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
[ "$soname" = "libryxcore.so.$major" ] || fail "SONAME is '$soname', expected libryxcore.so.$major"

# The consumer prints "ryxcore MAJOR.MINOR.BUILD ok"; its program must
# also record the SONAME, not the development link name, as its need.
check_run() {
  local name=$1 exe=$2 out
  readelf -d "$exe" | grep -q "(NEEDED).*\[libryxcore.so.$major\]" || fail "$name: program does not need libryxcore.so.$major"
  if [ $can_run -eq 0 ]; then echo "   $name: built, not run"; return; fi
  out=$(LD_LIBRARY_PATH=$3 "$exe") || fail "$name: consumer exited with an error: $out"
  echo "   $name: $out"
  [ "$out" = "ryxcore $version ok" ] || fail "$name: unexpected output '$out'"
}

want=${version%.*}
step "find_package(ryxcore $want) and ryxcore::ryxcore"
cmake -S "$consumer" -B "$tmp/package" -DRYX_CONSUME=package -DRYX_WANT_VERSION="$want" \
  -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_C_COMPILER="$cc" -DCMAKE_C_FLAGS="$cflags" \
  -DCMAKE_EXE_LINKER_FLAGS="$cflags" >"$tmp/package.log" 2>&1 || { cat "$tmp/package.log"; fail "find_package configure"; }
cmake --build "$tmp/package" >>"$tmp/package.log" 2>&1 || { cat "$tmp/package.log"; fail "find_package build"; }
check_run find_package "$tmp/package/consumer" ""

step "find_package(ryxcore $((major + 1)).0) is refused at configure time"
if cmake -S "$consumer" -B "$tmp/newer" -DRYX_CONSUME=package -DRYX_WANT_VERSION=$((major + 1)).0 \
     -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_C_COMPILER="$cc" -DCMAKE_C_FLAGS="$cflags" >"$tmp/newer.log" 2>&1; then
  fail "a newer major version was accepted"
fi
grep -q "version: $version" "$tmp/newer.log" || { cat "$tmp/newer.log"; fail "refusal does not name the installed version"; }

step "pkg-config"
export PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig
[ "$(pkg-config --modversion ryxcore)" = "$version" ] || fail "pkg-config --modversion gives $(pkg-config --modversion ryxcore)"
# shellcheck disable=SC2046,SC2086
"$cc" $cflags -std=c99 -Wall -Werror "$consumer/consumer.c" -o "$tmp/pc_consumer" $(pkg-config --cflags --libs ryxcore)
check_run pkg-config "$tmp/pc_consumer" "$prefix/$libdir"

step "add_subdirectory of the source tree"
# shellcheck disable=SC2086
cmake -S "$consumer" -B "$tmp/sub" -DRYX_CONSUME=subproject -DRYX_SOURCE_DIR="$src" \
  -DCMAKE_BUILD_TYPE=Release -DCMAKE_C_COMPILER="$cc" -DCMAKE_C_FLAGS="$cflags" -DCMAKE_CXX_FLAGS="$cflags" \
  -DCMAKE_EXE_LINKER_FLAGS="$cflags" "${launcher[@]}" $subargs >"$tmp/sub.log" 2>&1 || { cat "$tmp/sub.log"; fail "add_subdirectory configure"; }
cmake --build "$tmp/sub" -j2 >>"$tmp/sub.log" 2>&1 || { tail -40 "$tmp/sub.log"; fail "add_subdirectory build"; }
check_run add_subdirectory "$tmp/sub/consumer" ""
soname=$(readelf -d "$tmp/sub/ryxcore/libryxcore.so.$version" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
[ "$soname" = "libryxcore.so.$major" ] || fail "subproject library SONAME is '$soname'"
if [ $can_run -eq 0 ]; then
  echo "SKIPPED: installed, built and inspected, but this machine cannot run programs built with '$cflags'"
  exit 77
fi
echo "install and three consumers: ok"
