#!/bin/sh
# Holds that a shared library exports symbols of the listed classes, of all of them, and no others.
# A class with a ? behind it is exported by some compilers only.
#
#   exported_symbols_test.sh NM LIBRARY LIST
set -eu
export LC_ALL=C

work=$(mktemp -d)
trap 'rm -r "$work"' EXIT

# A class's functions, data, virtual table and type information all have the class's name behind the
# namespace, and a template's instance also a result type in front. What has another form stays as it
# is and shows up as a difference.
"$1" --dynamic --defined-only --demangle "$2" |
    sed -E -e 's/^[0-9a-f]* *[A-Za-z] //' \
        -e 's/^([^(]* )?tolvarin::ondrel::([A-Za-z0-9_]+)(::.*)?$/\2/' |
    sort -u >"$work/found"
sed -e 's/?$//' "$3" | sort >"$work/allowed"
sed -e '/?$/d' "$3" | sort >"$work/required"

failed=0
comm -13 "$work/allowed" "$work/found" | grep . >&2 && echo 'should not be exported' >&2 && failed=1
comm -23 "$work/required" "$work/found" | grep . >&2 && echo 'should be exported' >&2 && failed=1
exit $failed
