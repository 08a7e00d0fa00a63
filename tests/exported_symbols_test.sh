#!/bin/sh
# Holds that a shared library exports the listed symbols and no others. A symbol with a ? behind it is
# exported by some compilers only: they differ in where they put what a class without a function of
# its own needs.
#
#   exported_symbols_test.sh NM LIBRARY LIST
#   exported_symbols_test.sh NM LIBRARY         prints the symbols, for the list
set -eu
export LC_ALL=C

work=$(mktemp -d)
trap 'rm -r "$work"' EXIT

# Names as in the headers, without what the C++ library or the size of a long adds to them. The ways in
# which one constructor or destructor is called have one name.
"$1" --dynamic --defined-only --demangle "$2" >"$work/symbols"
sed -E -e 's/^[0-9a-f]* *[A-Za-z] //' -e 's/tolvarin::ondrel:://g' -e 's/\[abi:[a-z0-9]+\]//g' \
    -e 's/std::(__cxx11|__1)::/std::/g' -e 's/unsigned long long/unsigned long/g' \
    -e 's/std::basic_string<char, std::char_traits<char>, std::allocator<char> ?>/std::string/g' \
    "$work/symbols" | sort -u >"$work/found"
if [ $# -eq 2 ]; then
    cat "$work/found"
    exit
fi
sed -e 's/?$//' "$3" | sort >"$work/allowed"
sed -e '/?$/d' "$3" | sort >"$work/required"

failed=0
comm -13 "$work/allowed" "$work/found" | grep . >&2 && echo 'is exported and not listed' >&2 && failed=1
comm -23 "$work/required" "$work/found" | grep . >&2 && echo 'is listed and not exported' >&2 && failed=1
exit $failed
