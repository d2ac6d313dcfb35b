#!/usr/bin/env bash
# Makes sure i386 test programs can run on this machine. Some x86-64
# kernels are built without 32-bit emulation and refuse i386 binaries
# ("Exec format error"); there the binaries run under Debian's user-mode
# emulator, registered with the kernel's binfmt_misc so that programs that
# re-execute themselves (GoogleTest death tests) work too. Exits non-zero,
# saying why, when neither is possible.
set -euo pipefail
cd "$(dirname "$0")/.."

probe=$(mktemp -d)
trap 'rm -rf "$probe"' EXIT
printf 'int main(void) { return 0; }\n' >"$probe/p.c"
gcc -m32 -o "$probe/p" "$probe/p.c"
if "$probe/p" 2>/dev/null; then exit 0; fi

echo "   i386 binaries do not run natively here: running them under qemu-i386"
scripts/setup-packages.sh qemu-user
bf=/proc/sys/fs/binfmt_misc
[ -e "$bf/register" ] || mount -t binfmt_misc binfmt_misc "$bf" 2>/dev/null || true
if [ -e "$bf/register" ] && [ ! -e "$bf/ryx-i386" ]; then
  # ELF, 32-bit, little-endian, executable or shared object, machine 3 (i386).
  printf '%s' ':ryx-i386:M::\x7fELF\x01\x01\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x02\x00\x03\x00:\xff\xff\xff\xff\xff\xfe\xfe\x00\xff\xff\xff\xff\xff\xff\xff\xff\xfe\xff\xff\xff:/usr/bin/qemu-i386:F' \
    >"$bf/register" 2>/dev/null || true
fi
if "$probe/p" 2>/dev/null; then exit 0; fi
echo "   cannot register qemu-i386 with binfmt_misc: i386 tests cannot run on this machine"
exit 1
