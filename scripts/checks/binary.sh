#!/usr/bin/env bash
# The built modules: what they export, what they need, how they are protected, what the DLL says of
# itself.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1
# shellcheck source=tests/support/outcome.sh
. tests/support/outcome.sh

lists=scripts/checks/binary
dll=build/windows/exportIFC.dll
so=build/linux/libexportIFC.so
library_dll=build/windows/exportifc-1.dll
library_so=build/linux/libexportifc.so.1

# listed NAME LIST: standard input, sorted, equals the checked-in list.
listed() {
  if diff -u --label "$lists/$2" --label "$1" <(grep -v '^#' "$lists/$2" | sort) <(sort); then
    ((++passed))
  else
    ((++failed))
    echo "$1 differ from $lists/$2"
  fi
}

for file in "$dll" "$so" "$library_dll" "$library_so"; do
  if [[ ! -f $file ]]; then
    echo "not built: $file"
    echo "0 passed, 1 failed"
    exit 1
  fi
done

dll_exports() { sed -n '/\[Ordinal\/Name Pointer\] Table/,/^$/s/^.*\[ *[0-9]*\] //p'; }
dll_imports() { sed -n 's/^\tDLL Name: //p'; }
so_exports() { nm -D --defined-only --format=just-symbols "$1"; }
so_needs() { readelf -d "$1" | sed -n 's/.*(NEEDED).*\[\(.*\)\].*/\1/p'; }

headers=$(x86_64-w64-mingw32-objdump -p "$dll")
listed "the exports of the DLL" windows_exports.txt < <(dll_exports <<<"$headers")
listed "the imports of the DLL" windows_imports.txt < <(dll_imports <<<"$headers")
listed "the exports of the library" linux_exports.txt \
  < <(so_exports "$so")
listed "the needs of the library" linux_needs.txt \
  < <(so_needs "$so")

# ---- the library for other languages

# none_beside LIST: of standard input, every line stands in the checked-in list.
none_beside() { comm -13 <(grep -v '^#' "$lists/$1" | sort) <(sort); }
library_headers=$(x86_64-w64-mingw32-objdump -p "$library_dll")
listed "the exports of the library's DLL" library_exports.txt < <(dll_exports <<<"$library_headers")
listed "the exports of the library for other languages" library_exports.txt < <(so_exports "$library_so")
same "it needs no DLL beside it" "$(dll_imports <<<"$library_headers" | none_beside windows_imports.txt)" ''
same "it needs no library of others beyond the listed" "$(so_needs "$library_so" | none_beside library_needs.txt)" ''
same "its name carries the number of its interface" \
  "$(readelf -d "$library_so" | sed -n 's/.*(SONAME).*\[\(.*\)\].*/\1/p')" \
  "libexportifc.so.$(sed -n 's/^#define EXPORTIFC_LIBRARY_ABI //p' include/exportifc/library.h)"

# ---- how the modules are protected

for flag in HIGH_ENTROPY_VA DYNAMIC_BASE NX_COMPAT; do
  holds "the DLL is marked $flag" grep -qE "^[[:space:]]+$flag$" <<<"$headers"
done
holds "the DLL is 64-bit" grep -q 'pei-x86-64' <(x86_64-w64-mingw32-objdump -f "$dll")
holds "the DLL can be moved: it has relocations" grep -q '\.reloc' <(x86_64-w64-mingw32-objdump -h "$dll")
# A date would make each build another one; the linker writes zero.
holds "the DLL carries no date" grep -qE '^Time/Date[[:space:]]+(Thu Jan  1 00:00:00 1970|0+)$' <<<"$headers"
holds "the DLL names no folder of this machine" test -z "$(strings -a "$dll" | grep -F "$PWD")"
holds "the DLL has the version resource of plugin/version.rc" \
  "$lists/version_resource.py" "$dll" plugin/version.rc CMakeLists.txt

# Some 45 functions of each module keep arrays on the stack; without the option none is checked.
least_protected=20
protected_dll=$("$lists/protector_calls.py" "$dll" "$dll.map")
holds "functions of the DLL check their stack (found: $protected_dll)" \
  test "${protected_dll:-0}" -ge "$least_protected"
protected_so=$(objdump -d --no-show-raw-insn "$so" | grep -cE 'call +[0-9a-f]+ <__stack_chk_fail@plt>')
holds "functions of the library check their stack (found: $protected_so)" \
  test "$protected_so" -ge "$least_protected"
holds "the library makes checked copies" \
  grep -qE '^__(w?mem|w?str|vs?w?n?printf|v?sw?n?printf).*_chk(@|$)' \
  <(nm -D --undefined-only --format=just-symbols "$so")

end
