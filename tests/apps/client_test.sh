#!/bin/bash
# Runs the client program as its users do.
#
#   client_test.sh CLIENT    the path of the program
#
# Prints each expectation that fails; the status is 0 if none did.
set -u

client=$(realpath "$1")
examples=$(realpath "$(dirname "$0")")/../../examples
[[ -x $client ]] || { echo "there is no program $client"; exit 1; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
checks=0
failures=0

# run ARGUMENT...: the status of the client goes to $status, its output to the files out and err.
run() {
    "$client" "$@" >out 2>err
    status=$?
}

# expect WHAT EXPECTED ACTUAL
expect() {
    checks=$((checks + 1))
    if [[ "$2" != "$3" ]]; then
        failures=$((failures + 1))
        printf 'FAILED: %s\n--- expected\n%s\n--- actual\n%s\n' "$1" "$2" "$3"
    fi
}

# expect_line WHAT FILE REGEX: some line of the file matches, whole.
expect_line() {
    checks=$((checks + 1))
    if ! grep -Eqx -- "$3" "$2"; then
        failures=$((failures + 1))
        printf 'FAILED: %s\n--- no such line\n%s\n--- in\n%s\n' "$1" "$3" "$(head -c 2000 "$2")"
    fi
}

# counted LABEL: the number behind a label of the summary in err.
counted() {
    sed -n "s/^ *$1  *\([0-9][0-9]*\).*/\1/p" err
}

# rows: the lines of aircraft in the table in out.
rows() {
    grep -E '^[0-9A-F]{6}( |$)' out
}

# await REGEX FILE: waits for such a line, ten seconds at most.
await() {
    for _ in {1..200}; do
        grep -qs -e "$1" "$2" && break
        sleep 0.05
    done
}

# is_json FILE: the file is whole.
is_json() {
    if command -v python3 >/dev/null; then
        python3 -m json.tool "$1" >/dev/null
    else
        grep -qx '{.*}' "$1"
    fi
}

good=8D40621D58C382D690C8AC2863A7
text="DF-17  40621D  High     CA: 5; AA: 40621D; ME: 58C382D690C8AC | TC=POS_AIR, AT=BARO, \
ALT=38000, CPR=EVEN, LAT=93000, LON=51372"

# -- decode: every form of line, line by line --------------------------------------------------

printf '%s\n' "# a comment" "" "*$good;" "@000000B71B00$good;" "$good" "1700000000.25,$good" \
    "*8D40621D59C382D690C8AC2863A7;" "*FF00000000000000000000000000;" >forms.txt
run decode forms.txt
expect "forms: status" 0 "$status"
expect "forms: output" \
"             -  $text
         1.000  $text
             -  $text
1700000000.250  $text
             -  $text [repaired]
             -  DF-24  ------  refused  FF00000000000000000000000000" "$(cat out)"
expect "forms: summary" "6 5 1 1 5 5 5 0 0" "$(counted 'replies read') $(counted decoded) \
$(counted repaired) $(counted refused) $(counted DF-17) $(counted High) \
$(counted 'ADS-B payloads') $(counted 'not decoded') $(counted 'not readable')"

cp out expected
"$client" decode - <forms.txt >out 2>err
expect "standard input" "$(cat expected)" "$(cat out)"

run decode --json forms.txt
expect "JSON: one object a line" 6 "$(grep -c '^{"schema":1,.*}$' out)"
expect_line "JSON: repaired" out \
    '\{"schema":1,"format":"DF-17",.*"received":"8D40621D59[0-9A-F]{18}",.*"repaired":true,.*'

# -- decode: payloads --------------------------------------------------------------------------

echo "8DA2C1B6E112B600000000760759" >emergency.txt # an aircraft status
run decode --mops 2 emergency.txt
expect_line "read as of version 2" out '.* \| TC=AC_STATUS, ST=EMG, EMG=0, MA=6513'
run decode --mops 2 --fields emergency.txt
expect "the fields behind each line" "1 9" \
    "$(grep -c '^ *- ' out) $(grep -cE '^ {6,7}[0-9]+  +[0-9]+  [A-Z_]+ ' out)"
run decode --mops 2 --json emergency.txt
expect_line "JSON: with the payload" out \
    '.*"type":"AC_STATUS","type_code":28,"mops_version":2,"subtype":1,"squawk":"6513"\}'
run decode --mops 2 --json --fields emergency.txt
expect_line "JSON: with the fields" out \
    '.*,"squawk":"6513","fields":\[\{.*\}\],"payload_fields":\[.*\{"name":"MODE_A",.*\}\]\}'

even=8D40621D58C382D690C8AC2863A7
odd=8D40621D58C386435CC412692AD6
printf '%s,%s\n' 1 $even 2 $odd 3 $even >pair.txt # the second position confirms the first one
run decode --json pair.txt
expect "JSON: the position of a pair" "1 3 0" "$(grep -c '"latitude":52\.2[0-9]*,"longitude":3\.9' out) \
$(sed -nE 's/.*"stamp_ms":([0-9])000,.*"latitude".*/\1/p' out) $(grep -c pair.txt err)"
run decode --json $even $odd $even
expect "JSON: positions without stamps are told of" 1 \
    "$(grep -c ': positions: the first reply has no time stamp; .* wrong or missing$' err)"
run decode --json $even
expect "JSON: one reply has no position" 0 "$(grep -c 'time stamp' err)"

# -- decode: lines that cannot be read ---------------------------------------------------------

printf '%s\r\n' "*$good;" "*8D4;" "nonsense" "*$good;" >bad.txt
printf '%s' "*$good" >>bad.txt
run decode bad.txt
expect "bad lines: the run goes on" "0 2" "$status $(wc -l <out)"
expect_line "bad lines: digit" err "bad.txt:3: 'n' is not a hexadecimal digit; expected .*"
expect "bad lines: counted" 3 "$(counted 'not readable')"
"$client" decode bad.txt >all 2>&1
expect "bad lines: messages and replies in order" "DF-17 bad.txt:2: bad.txt:3: DF-17 bad.txt:5:" \
    "$(grep -Eo 'bad.txt:[0-9]:|DF-17 .*:' all | sed 's/ .*//' | tr '\n' ' ' | sed 's/ $//')"

printf '%s\n' "$good" "*8D40;" "@000000000001$good;" "8D4840D6202CC3" "02E197B0C4CF0D00" >bad.txt
for _ in {1..20}; do echo "1.5,${good}FF"; done >>bad.txt
printf '%s\n' "*FF" "nonsense" >>bad.txt
run decode bad.txt
expect "equal complaints are shown ten times" "10 12 25 13" \
    "$(grep -c 'the length of the reply does not fit' err) $(grep -c '^bad' err) \
$(counted 'not readable') $(counted 'not shown')"
for digit in {g..z}; do printf "$digit%.0s\n" {1..10}; done >bad.txt
run decode bad.txt
expect "not all complaints are shown" "100 200 100" \
    "$(grep -c '^bad' err) $(counted 'not readable') $(counted 'not shown')"

printf '\xEF\xBB\xBF*%s;\n' $good >mark.txt
run decode mark.txt
expect "a byte-order mark is skipped" "1 0" \
    "$(counted 'replies read') $(counted 'not readable')"
printf '%s\n' "# names" "time,\"raw reply\"" "1.5,$good" "time,raw" >header.txt
run decode header.txt
expect_line "a header line is named" err 'header.txt:2: the line names columns and is skipped'
expect "a header line is not counted" "1 1" \
    "$(counted 'replies read') $(counted 'not readable')"

echo nonsense | "$client" decode - >out 2>err
expect "nothing but bad lines" 1 $?
expect_line "standard input has a name" err "<stdin>:1: .*"

run decode /dev/null
expect "an empty recording" "0 0" "$status $(counted 'replies read')"

head -c 3000000 /dev/zero | tr '\0' 8 >long.txt
printf '\n*%s;\n' $good >>long.txt
run decode long.txt
expect "one huge line" "0 1" "$status $(counted 'not readable')"
expect_line "one huge line is named" err "long.txt:1: the line has more than 4096 characters.*"
expect "the lines behind it are read" 1 "$(counted 'replies read')"

run decode "$client"
expect "binary input ends" 1 "$((status < 2))"
expect "binary input: the terminal is safe" "" "$(LC_ALL=C tr -d '\n -~' <err)"

# -- decode: packed recordings, and what is no recording ---------------------------------------

"$client" simulate --seconds 300 --seed 7 >plain.txt
run decode plain.txt
cp out expected
if "$client" --version | grep -q "with zlib"; then
    pack() { gzip -c "$@"; }
    gzip -c plain.txt >packed.gz
    { head -500 plain.txt | gzip -c; tail -n +501 plain.txt | gzip -c; } >members.gz
    for recording in packed.gz members.gz; do
        run decode $recording
        expect "$recording: all replies" "0 0" "$status $(cmp out expected; echo $?)"
    done
    half=$(($(wc -c <packed.gz) / 2))
    head -c $half packed.gz >cut.gz
    run decode cut.gz
    expect "cut.gz: what is there" "1 1 0" "$status $(($(wc -l <out) > 1000)) \
$(cmp -n "$(wc -c <out)" out expected; echo $?)"
    expect_line "cut.gz: said" err 'ondrel: cannot read cut.gz any further: its gzip data are cut off'
    expect "cut.gz: summary" "$(wc -l <out)" "$(counted 'replies read')"
    { cat packed.gz; echo garbage; } >damaged.gz
    run track damaged.gz
    expect_line "damaged.gz: said" err '.* cannot read damaged.gz any further: its gzip data are damaged .*'
    expect "damaged.gz: the table" "1 $(counted aircraft)" "$status $(rows | wc -l)"
else
    pack() { cat "$@"; }
    echo "skipped: packed recordings"
fi
tar -cf archive.tar forms.txt
for content in 'zip:PK\x03\x04 zip' 'UTF-16:\xFF\xFE8\x00D\x00' \
    "tar:$(head -c 257 /dev/zero | tr '\0' x)ustar"; do
    printf "${content#*:}" | pack >content
    run track content
    expect "${content%%:*}: status and output" "1 0" "$status $(wc -c <out)"
    expect_line "${content%%:*}: named" err "ondrel: cannot read content: it is .*${content%%:*}.*; .*"
done

for start in "# a comment" "$good"; do
    printf '%s\r' "$start" "*$good;" "*$good;" >old.txt
    run decode old.txt
    expect_line "line ends of CR alone, $start" err "ondrel: cannot read old.txt: it is text whose lines .*"
    tr '\r' '\n' <old.txt | "$client" decode - >out 2>err
    expect "line ends of CR alone, $start: converted" 0 "$?"
done

# -- binary frames -----------------------------------------------------------------------------

for form in binary ticks; do
    "$client" simulate --seconds 20 --damage 0 --form $form >frames.$form
    run track frames.$form
    cp out table.$form
done
expect "frames give the table of lines" "" "$(diff table.binary table.ticks)"
"$client" simulate --seconds 20 --damage 0.2 --form binary | pack >frames.gz
run decode frames.gz
expect "frames that were cut short" "0 1 1" \
    "$status $(($(counted 'not readable') > 20)) $(($(counted 'replies read') > 1000))"

# -- decode: replies on the command line -------------------------------------------------------

run decode $good "*8D40621D59C382D690C8AC2863A7;"
expect "two replies" "0 2" "$status $(grep -c 'DF-17  40621D' out)"
run decode 8D40621D58C382D690C8AC28
expect "a reply of a wrong length" "1 0" "$status $(wc -c <out)"
expect_line "a reply of a wrong length: said" err '<arguments>:1: the length of the reply .*'
echo "1.5,$good" >$good
run decode $good
expect_line "a file of such a name comes first" out '         1.500  DF-17 .*'
rm $good

# -- the command line and files ----------------------------------------------------------------

# refuse STATUS REGEX ARGUMENT...: nothing on standard output, and a message.
refuse() {
    local wanted=$1 regex=$2
    shift 2
    run "$@"
    expect "$*: status and output" "$wanted 0" "$status $(wc -c <out)"
    expect_line "$*: message" err "$regex"
}
refuse 1 "ondrel: cannot open nowhere.txt: No such file or directory" decode nowhere.txt
refuse 1 "ondrel: cannot read .: Is a directory" decode .
refuse 1 "ondrel: cannot create no/where: No such file or directory" simulate -o no/where
refuse 2 "ondrel: A subcommand is required"
refuse 2 "ondrel: there is no 'bogus'" bogus
refuse 2 "ondrel decode: SOURCE is required" decode
refuse 1 "ondrel: cannot open $good: No such file or directory" decode $good forms.txt
refuse 2 "ondrel decode: .* not expected: --bogus" decode --bogus forms.txt
refuse 2 "ondrel decode: --log: loud not in .*" decode --log loud forms.txt
refuse 2 "ondrel decode: --mops: 3 not in .*" decode --mops 3 forms.txt
refuse 2 "ondrel decode: --confidence: best not in .*" decode --confidence best forms.txt
refuse 2 "ondrel simulate: --form: x not in .*" simulate --form x
refuse 2 "ondrel simulate: --seed: expected a whole number from 0 .*, not '-1'" simulate --seed -1
refuse 2 "ondrel simulate: --receiver: expected LAT,LON in degrees, not '5'" simulate --receiver 5
refuse 2 "ondrel simulate: --range requires --receiver" simulate --range 5
for share in 1.1 -0.1 nan inf x 0x1 ""; do
    refuse 2 "ondrel simulate: --damage: expected a number from 0 to 1, not '$share'" \
        simulate --damage "$share"
done
for count in 0 1048577 1e3 2.5 99999999999999999999; do
    refuse 2 "ondrel simulate: --aircraft: expected a whole number .*, not '$count'" \
        simulate --aircraft "$count"
done

refuse 2 "ondrel track: --sort: size not in .*" track --sort size forms.txt
for seconds in 0 -1 x; do
    refuse 2 "ondrel track: --every: expected a number from 0.001 to .*, not '$seconds'" \
        track --every "$seconds" forms.txt
done
refuse 2 "ondrel track: --altitude-check: expected SECONDS,FEET, not '4'" \
    track --altitude-check 4 forms.txt
refuse 2 "ondrel track: --altitude-check: expected a whole number from 0 to .*, not '-1'" \
    track --altitude-check 4,-1 forms.txt
refuse 2 "ondrel track: --report: expected six hexadecimal digits, not '4840D'" \
    track --report 4840D forms.txt
refuse 2 "ondrel track: --json excludes --report" track --json --report 4840D6 forms.txt
refuse 2 "ondrel track: --location: expected LAT,LON in degrees, not .51.5." track --location 51.5 forms.txt
refuse 2 "ondrel track: --location: expected a number from -90 to 90, not .91." track --location 91,0 forms.txt
for place in "++5,0" "+-5,0" "5,+" "," "5,4,3" "5 1,4"; do
    refuse 2 "ondrel track: --location: expected a number from .*" track --location "$place" forms.txt
done
refuse 2 "ondrel track: --sort: distance is counted from the receiver; --location .*" \
    track --sort distance forms.txt
refuse 1 "ondrel: cannot create forms.txt: Not a directory" track --html forms.txt forms.txt
refuse 1 "ondrel: cannot create /proc/x: .*" track --html /proc/x forms.txt
mkdir -p taken/index.html
refuse 1 "ondrel: cannot write taken/index.html: it is a directory; .*" track --html taken /dev/null
refuse 1 "ondrel: cannot replay forms.txt: its first reply has no time stamp" \
    track --pace 1 forms.txt

for arguments in --help --version "decode --help" "track --help" "simulate --help" -V help; do
    # shellcheck disable=SC2086
    run $arguments
    expect "$arguments" "0 0" "$status $(wc -c <err)"
done

escape=$'\e[2J\x9b\n.txt'
shown='\\x1B\[2J\\x9B\\x0A\.txt'
refuse 1 "ondrel: cannot open $shown: No such file or directory" decode "$escape"
refuse 2 "ondrel: there is no .$shown." "$escape"
refuse 2 "ondrel decode: .*$shown.*" decode --record "$escape" "$escape"
printf 'bad\n%s\n' "$good" >"$escape"
run decode "$escape"
expect_line "a name with control characters" err "$shown:1: .*"
run track --min-messages 1 --html "pages$escape" --json-dir "json$escape" "$escape" "$escape"
expect_line "such names: messages" err "$shown, $shown: the first reply has no time stamp; .*"
expect_line "such names: pages" err "pages for a browser: pages$shown/index.html"
run track --min-messages 1 --html pages "$escape"
expect "such names: in a page" "0 1" "$status $(grep -c "$shown" pages/index.html)"
for file in out err pages/index.html; do
    expect "such names: raw in $file" 0 "$(tr -d '[\n -~]' <"$file" | LC_ALL=C grep -c $'[\x01-\x1f\x9b]')"
done
run simulate --seconds 10 -o "$escape"
expect_line "such names: the simulator" err "$shown: .*"
rm -r "$escape" pages "pages$escape" "json$escape"

for command in "" decode track simulate; do
    # shellcheck disable=SC2086
    expect "help $command" "$("$client" $command --help)" "$("$client" help $command)"
done
refuse 2 "ondrel help: COMMAND: bogus not in .*" help bogus

# -- output into a closed pipe or onto a full disk --------------------------------------------

run simulate --seconds 60 --seed 7 -o long.txt
expect "simulate" "0 0" "$status $(wc -c <out)"
"$client" simulate --seconds 60 --damage 0 >whole.txt # without lines that are not readable
for command in "decode whole.txt" "decode --fields whole.txt" "decode --json whole.txt" \
    "track --json --every 1 whole.txt" "simulate --seconds 1000000"; do
    # shellcheck disable=SC2086
    "$client" $command 2>err | head -1 >out
    expect "$command into a closed pipe" "0 1 0" "${PIPESTATUS[0]} $(wc -l <out) $(wc -c <err)"
    # shellcheck disable=SC2086
    "$client" $command >/dev/full 2>err
    expect "$command onto a full disk" \
        "1 ondrel: cannot write <stdout>: No space left on device" "$? $(cat err)"
done

# A file that may not grow any more ends with a whole line.
(ulimit -f 8 && exec "$client" simulate --seconds 60 --seed 7 -o limited.txt 2>err)
expect "simulate beyond the allowed size of a file" \
    "1 ondrel: cannot write limited.txt: File too large 0" \
    "$? $(cat err) $(cmp -n "$(wc -c <limited.txt)" limited.txt long.txt; echo $?)"
expect "its last line is whole" "$(wc -l <limited.txt)" "$(grep -c '' limited.txt)"

# -- standard streams that are closed, and memory that is exhausted ----------------------------

for command in decode track; do
    timeout 20 "$client" $command - <&- >out 2>err
    expect "$command: standard input closed" "1 0 ondrel: cannot read <stdin>: it is closed or not \
open for reading" "$? $(wc -c <out) $(cat err)"
    "$client" $command forms.txt >&- 2>err
    expect "$command: standard output closed" "1 ondrel: cannot write <stdout>: it is closed or not \
open for writing" "$? $(tail -1 err)"
    "$client" $command forms.txt 2>err >out
    "$client" $command forms.txt <&- 2>&- >out2
    expect "$command: standard error closed" "0 $(wc -l <out)" "$? $(wc -l <out2)"
done
"$client" simulate --seconds 60 --seed 7 -o closed.txt <&- >&- 2>&-
expect "simulate: nothing open" "0 0" "$? $(cmp closed.txt long.txt; echo $?)"
for arguments in --help --version; do
    "$client" $arguments >/dev/full 2>err
    expect_line "$arguments onto a full disk" err 'ondrel: cannot write <stdout>: No space left .*'
done
if ! grep -q __asan_init "$client"; then # its shadow takes more memory than any limit leaves
    (ulimit -v 60000 && exec "$client" simulate --aircraft 1048576 >out 2>err)
    expect "out of memory" "1 ondrel: out of memory" "$? $(cat err)"
fi

# A live source: a reply is shown before the next one comes.
mkfifo source
"$client" decode - <source >live 2>err &
exec 3>source
echo "*$good;" >&3
for _ in {1..100}; do
    [[ -s live ]] && break
    sleep 0.05
done
expect "a reply of a live source shows at once" 1 "$(wc -l <live)"
exec 3>&-
wait $!

# -- progress ----------------------------------------------------------------------------------

for _ in {1..5}; do cat long.txt; echo bad; done >longer.txt
run decode longer.txt
expect "no bar where no terminal is" "" "$(tr -cd '\r' <err)"
if command -v script >/dev/null; then
    # on_terminal COMMAND: what a terminal would show goes to err.
    on_terminal() { timeout 60 script -qec "$1" /dev/null >err </dev/null; }
    on_terminal "$client decode longer.txt >/dev/null"
    expect_line "the bar is erased before a message" err $'.*%\r +\rlonger.txt:[0-9]+: .*'
    expect "a bar on a terminal" 1 "$(($(grep -ao '\[#*\.*\] *[0-9]* %' err | wc -l) > 2))"
    # What stands on the lines of the terminal at the end: each \r writes over the line.
    on_screen() {
        sed 's/\r$//' "$1" | awk -F '\r' '{ line = ""
            for (i = 1; i <= NF; ++i) line = $i substr(line, length($i) + 1)
            sub(/ +$/, "", line); print line }'
    }
    "$client" decode longer.txt >all 2>&1
    on_terminal "$client decode longer.txt"
    expect "a bar between lines of output" "1 $(on_screen all | cksum)" \
        "$(grep -aq '#\.' err; echo $((! $?))) $(on_screen err | cksum)"
    on_terminal "cat longer.txt | $client track -"
    expect_line "a count where the size is not known" err $'.*\r[0-9]+ replies\r.*'
    on_terminal "$client simulate --seconds 300 -o simulated.txt"
    expect "a bar of simulate" 1 "$(($(grep -ao '\[#*\.*\] *[0-9]* %' err | wc -l) > 10))"
fi

# -- simulate, then decode ---------------------------------------------------------------------

expect "the same seed, the same bytes" "$(cksum <long.txt)" \
    "$("$client" simulate --seconds 060 --seed 7 2>err | cksum)"
read -ra again < <(sed -n '1s/^# ondrel//p' long.txt)
expect "the first line tells how to make it again" "$(cksum <long.txt)" \
    "$("$client" "${again[@]}" | cksum)"
expect "another seed, other bytes" 1 \
    "$("$client" simulate --seconds 60 --seed 8 | cmp -s - long.txt; echo $?)"

declare -A looks=([seconds]='[0-9]{10}[.][0-9]{3},[0-9A-F]+' [ticks]='@[0-9A-F]+;'
    [star]='[*][0-9A-F]+;' [bare]='[0-9A-F]+')
for form in seconds ticks star bare; do
    "$client" simulate --seconds 60 --seed 7 --form $form >recording.txt
    run decode recording.txt
    cut -c 17- out >decoded.$form
    awk '{ printf "%.3f\n", $1 % 1700000000 }' out >times.$form # since the start
    expect "$form: all lines look alike" 0 \
        "$(grep -v '^#' recording.txt | grep -cvEx "${looks[$form]}")"
    expect "$form: all lines decode alike, but those cut short" "0 $(grep -vc '^#' recording.txt)" \
        "$(cmp decoded.$form decoded.seconds; echo $?) $(($(counted 'not readable') +
            $(counted 'replies read')))"
done
expect "ticks: they tell the same time" 0 "$(cmp times.ticks times.seconds; echo $?)"

"$client" simulate --seconds 60 --damage 0 --form star >recording.txt
run decode recording.txt
expect "no damage, nothing repaired or refused" "0 0" "$(counted repaired) $(counted refused)"
expect "all ten formats" 10 "$(grep -c '^  DF-' err)"
"$client" simulate --seconds 60 --damage 1 --form star >recording.txt
run decode recording.txt
expect "all damaged, many repaired and many refused" 1 \
    "$(($(counted repaired) > 1000 && $(counted refused) > 1000))"

# -- decode: grades ----------------------------------------------------------------------------

read_replies=$(counted 'replies read')
decoded=$(counted decoded)
for row in "None $read_replies 0" "low $((decoded - $(counted None))) 1" "HIGH $(counted High) 1"; do
    read -r level shown hides <<<"$row"
    for form in "" --json; do
        # shellcheck disable=SC2086
        run decode --confidence "$level" $form recording.txt
        expect "--confidence $level $form" "$shown $read_replies $((hides * (read_replies - shown)))" \
            "$(wc -l <out) $(counted 'replies read') $(($(counted 'replies not shown')))"
    done
done

# -- track -------------------------------------------------------------------------------------

run track long.txt
aircraft=$(($(counted aircraft) - $(counted hidden)))
expect "track: a line for each aircraft" "0 1 $aircraft" \
    "$status $((aircraft > 10)) $(rows | wc -l)"
expect "track: summary" "$(grep -vc '^#' long.txt) 1 0" \
    "$(($(counted 'replies read') + $(counted 'not readable'))) \
$(($(counted tracked) > 1000)) $(counted killed)"
run track --json long.txt
expect "JSON: one object a line" "$aircraft" "$(grep -c '^{"schema":1,"showing":1,.*"messages_by_type":.*}$' out)"
# positions: the last one of each aircraft
positions() {
    sed -E 's/,"updated_ms".*//' |
        sed -nE 's/.*"address":"([0-9A-F]+)".*("latitude":[^,]*).*("longitude":[^,}]*).*/\1 \2 \3/p' |
        tac | sort -u -k 1,1
}
positions <out >tracked.txt
run decode --json long.txt
expect "decode and track solve the same positions" "1 $(cat tracked.txt)" \
    "$(($(wc -l <tracked.txt) > 10)) $(positions <out)"
run track --json --every 20 long.txt
expect "JSON: the showings" "1 2 3" \
    "$(sed -nE 's/.*"showing":([0-9]+).*/\1/p' out | sort -u | tr '\n' ' ' | sed 's/ $//')"
run track --sort altitude --reverse long.txt
expect "sorted" "" "$(rows | cut -c 38-45 | grep -v -- - | sort -nrc 2>&1)"
run track --every 20 long.txt
expect "a table each 20 of 60 seconds" 3 "$(grep -cE '^[0-9.]+: [0-9]+ aircraft$' out)"

printf '%s\n' "1.000,$good" "2.000,8D4840D6202CC371C32CE0576098" \
    31.500,8D4840D6202CC371C32CE0576098{,,} >two.txt
run track --silent-after 30 --min-messages 1 two.txt
expect "silent: killed with a line" \
    "31.500  40621D  -  killed, silent for 30.500 s 1 1" \
    "$(head -1 out) $(counted aircraft) $(counted killed)"
run track --silent-after 30 --min-messages 1 --json two.txt
expect "silent: the last of it" "true false" \
    "$(sed -E 's/.*"killed":([a-z]*).*/\1/' out | tr '\n' ' ' | sed 's/ $//')"

# -- track: a terminal ------------------------------------------------------------------------

# A minute after the altitude of one aircraft, the other one tells an emergency.
printf '%s\n' {1,2}.000,$good 3.000,8D4840D6202CC371C32CE0576098 65.000,28000AAA02E41F >alarm.txt
escape=$'\033'
for variables in TERM=xterm NO_COLOR=; do
    env -u NO_COLOR $variables "$client" track alarm.txt >out 2>err
    expect "no colour in a file, $variables" 0 "$(grep -c "$escape" out)"
done
expect "all columns in a file" "17 * received more than 60 s ago" \
    "$(head -1 out | wc -w) $(tail -1 out)"
if command -v script >/dev/null; then
    for row in "TERM=xterm:1 2" "TERM=xterm NO_COLOR=:1 2" "TERM=xterm NO_COLOR=1:0 0" \
        "TERM=dumb:0 0" "TERM=:0 0"; do
        on_terminal "stty cols 80; env -u NO_COLOR ${row%:*} $client track alarm.txt 2>/dev/null"
        expect "colours with ${row%:*}" "${row#*:}" "$(grep -c "$escape\[2m38000\*$escape\[0m" err) \
$(grep -oE "$escape\[1;31m(general|7700)" err | wc -l)"
    done
    expect "80 columns" "1 1" "$(($(tr -d '\r' <err | wc -L) <= 80)) \
$(grep -c '^No room for MOPS version, PIC, .*' err)"
    on_terminal "stty cols 3; $client track alarm.txt 2>/dev/null"
    expect "3 columns" 1 "$(grep -c 4840D6 err)"
fi

# -- several recordings, and feeds ---------------------------------------------------------------

# Another recording of the same replies, half a second late, and one without a stamp in it.
sed 's/^\([0-9]*\)\.000/\1.400/' two.txt >late.txt
run track --min-messages 1 two.txt late.txt
expect "two recordings: each reply once" "10 5 5" \
    "$(counted 'replies read') $(counted tracked) $(counted 'heard elsewhere')"
refuse 1 "ondrel: cannot open nothing: No such file or directory" track two.txt nothing
refuse 2 "ondrel track: SOURCE: expected tcp://HOST:PORT, not 'tcp://nowhere'" track tcp://nowhere
refuse 2 "ondrel track: SOURCE: standard input cannot be read beside other sources" track - two.txt
refuse 2 "ondrel track: SOURCE: --record would write over 'two.txt'" track --record two.txt two.txt
refuse 2 "ondrel track: --worker: it is for a message server: nats://HOST:PORT" track --worker a two.txt
refuse 2 "ondrel track: SOURCE: --record would write over './two.txt'" track --record two.txt ./two.txt
for source in tcp://127.0.0.1:1 nats://127.0.0.1:1; do
    refuse 2 "ondrel track: --pace: it is for recordings; a feed has the time of the clock" \
        track --pace 1 $source
done
for parts in 8 3-2 0-7/65 0- 0-3/ "0-3 " 0-3/8x; do
    refuse 2 "ondrel track: --partitions: expected FIRST\\[-LAST\\]\\[/N\\], not '$parts'" \
        track --partitions "$parts" nats://127.0.0.1:1
done
refuse 2 "ondrel track: --view: it shows what is on a message server: nats://..." \
    track --view two.txt
for option in "--sbs 127.0.0.1:0" "--partitions 0-3" "--pace 1"; do
    refuse 2 "ondrel track: --view: ${option%% *} is for replies; a viewer gets only reports of aircraft" \
        track --view $option nats://127.0.0.1:1
done

if "$client" --version | grep -q Asio; then
    "$client" simulate --serve 127.0.0.1:0 --seconds 5 --aircraft 100 --damage 0 --form binary \
        2>feed.log &
    server=$!
    until grep -qs '^serving' feed.log; do sleep 0.05; done
    feed=tcp://$(sed -n 's/^serving //p' feed.log)
    "$client" track --json "$feed" "$feed" --record heard >out 2>err &
    live=$!
    wait $server
    until grep -q 'trying again' err; do sleep 0.05; done
    kill -TERM $live
    wait $live
    expect "a feed: interrupted" 130 $?
    expect "a feed: heard twice, tracked once" "1 1 1" \
        "$(($(counted 'replies read') > 1000)) $(($(counted 'heard elsewhere') > 500)) \
$((2 * $(counted tracked) < $(counted 'replies read') + 500))"
    sed 's/"time_ms":[0-9]*,//; s/"seen[a-z_]*":[0-9.]*,//g; s/"age_ms":[0-9]*,//' out >live.json
    "$client" track --json heard 2>/dev/null |
        sed 's/"time_ms":[0-9]*,//; s/"seen[a-z_]*":[0-9.]*,//g; s/"age_ms":[0-9]*,//' >again.json
    expect "a feed: its record gives the same aircraft" "20 " \
        "$(($(wc -l <live.json) > 20 ? 20 : 0)) $(diff live.json again.json | head -c 500)"
fi

# -- live pages -------------------------------------------------------------------------------

# get PATH [METHOD] [HOST]: the answer to a request, with its head, goes to the file page. In a shell of its
# own, since the server may close the connection first.
get() {
    (
        exec 3<>"/dev/tcp/127.0.0.1/$port"
        printf '%s\r\n' "${2:-GET} $1 HTTP/1.1" "Host: ${3-localhost}" "Connection: close" "" >&3
        cat <&3
    ) >page
}

refuse 2 "ondrel track: --serve: expected .ADDRESS:.PORT, not 'nowhere'" track --serve nowhere two.txt
refuse 2 "ondrel track: --allow-origin requires --serve" track --allow-origin '*' two.txt
for origin in map.example https://map.example/ https:// ://map.example https://Map.example \
    https://map.example:x 'https://map.example x' null ''; do
    refuse 2 "ondrel track: --allow-origin: expected . or SCHEME://HOST.:PORT. in small letters, not '$origin'" \
        track --serve 0 --allow-origin "$origin" two.txt
done
if "$client" --version | grep -q 'Asio.*libmicrohttpd'; then
    for origin in https://map.example http://127.0.0.1:8000 'http://[::1]:8000'; do
        refuse 1 "ondrel: cannot serve 192.0.2.1:0: .*" \
            track --serve 192.0.2.1:0 --allow-origin "$origin" two.txt
    done
    "$client" simulate --serve 127.0.0.1:0 --seconds 600 --damage 0 2>server.log &
    server=$!
    until grep -qs '^serving' server.log; do sleep 0.05; done
    feed=tcp://$(sed -n 's/^serving //p' server.log)
    "$client" track --serve 0 --html feed_pages --allow-origin '*' "$feed" >out 2>err &
    live=$!
    until grep -qs 'http://127' err; do sleep 0.05; done
    port=$(sed -n 's/.*http:.*:\([0-9]*\)\/$/\1/p' err)
    for _ in {1..100}; do
        get /index.body
        grep -q 'class="aircraft"' page && [[ $(grep -c '<tr' page) -gt 10 ]] && break
        sleep 0.1
    done
    expect "live: aircraft come" 1 "$(($(grep -c '<tr' page) > 10))"
    expect_line "live: the head of an answer" page "HTTP/1.1 200 OK.?"
    expect_line "live: nothing from elsewhere" page "Content-Security-Policy: default-src 'none'; .*"
    expect "live: nothing for elsewhere" 0 "$(grep -c '^Access-Control' page)"
    address=$(grep -oE '[0-9A-F]{6}\.html' page | head -1)
    get "/$address"
    expect "live: the page of an aircraft" 1 "$(grep -c '<noscript>' page)"
    get /status
    expect_line "live: the state" page '\{"schema":1,.*"sources":\[\{"name":"'"$feed"'","up":true\}\]\}'
    get /data/aircraft.json
    expect_line "live: the data of map pages" page \
        '\{"now":[0-9.]+,"messages":[0-9]+,"aircraft":\[\{"hex":.*\}\]\}'
    expect_line "live: they are for all" page "Access-Control-Allow-Origin: \*.?"
    for request in "/etc/passwd 404" "/../index.html 404" "/%2e%2e/x 404" "/%00 404" "/$(printf 'x%.0s' {1..9000}) 404"; do
        get "${request% *}"
        expect_line "live: ${request:0:20}" page "HTTP/1.1 ${request##* } .*"
    done
    get "/$(printf 'x%.0s' {1..100000})" 2>/dev/null # too long: the server hangs up
    get / DELETE
    expect_line "live: only reading" page "HTTP/1.1 405 .*"
    (
        exec 3<>"/dev/tcp/127.0.0.1/$port"
        printf '%b\r\n' "HEAD /live.js HTTP/1.1\r\nHost: localhost\r\n" \
            "GET /live.js HTTP/1.1\r\nHost: localhost\r\nContent-Length: 6\r\n\r\nbody" \
            "GET /x HTTP/1.1\r\nHost: localhost\r\n" \
            "GET /live.js HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n" >&3
        cat <&3
    ) >page
    expect "live: requests in one connection" "200 200 404 200" \
        "$(echo $(sed -n 's/^HTTP.1.1 \([0-9]*\) .*/\1/p' page))"
    expect "live: the length of what HEAD leaves out" "3 2" \
        "$(grep '^Content-Length' page | sort | uniq -c | sort -rn | awk 'NR == 1 { print $1 }') \
$(grep -c '^"use strict"' page)"
    silent=$(
        for _ in {1..400}; do exec {fd}<>"/dev/tcp/127.0.0.1/$port"; done
        printf '%s\r\n' "GET /status HTTP/1.0" "" >&"$fd"
        read -rt 5 line <&"$fd"
        echo "$line"
    )
    expect "live: silent connections make room" $'HTTP/1.1 200 OK\r' "$silent"
    for host in LOCALHOST "localhost:$port" 127.0.0.1 192.0.2.1:80 "[::1]:$port"; do
        get /status GET "$host"
        expect_line "live: a request for $host" page "HTTP/1.1 200 OK.?"
    done
    for host in map.example "map.example:$port" localhost.map.example 127.0.0.1.map.example 127.0.0.1x ''; do
        get /data/aircraft.json GET "$host"
        expect_line "live: a request for $host" page "HTTP/1.1 403 Forbidden.?"
        expect "live: it is told why, and no more" \
            "This server can be asked as 127.0.0.1, as localhost, or by a number." \
            "$(tail -1 page | cut -d. -f1-4).$(grep -o '^Access-Control' page)"
    done
    expect "live: pages in a folder" 1 "$(($(find feed_pages -name '*.html' | wc -l) > 10))"
    kill -TERM $live
    wait $live
    expect "live: interrupted" "130 0" "$? $(find feed_pages -name '.*' -type f | wc -l)"
    expect "live: whole pages" 0 "$(grep -L '</html>' feed_pages/*.html | wc -l)"
    kill $server
    wait $server
fi

# -- track: the live table ---------------------------------------------------------------------

# on_tmux ARGUMENT...: a terminal of its own, and a server of its own for each.
terminals=0
on_tmux() { tmux -S "$work/tmux$terminals" -f /dev/null "$@"; }

# until_screen REGEX: waits until a line of the screen matches, which then is in the file screen.
until_screen() {
    for _ in {1..200}; do
        on_tmux capture-pane -p -t live >screen
        grep -Eq -- "$1" screen && return
        sleep 0.05
    done
    expect "the screen gets a line $1" "" "$(cat screen)"
}

# live ARGUMENT...: starts the client in that terminal; its process is in the file pid.
live() {
    terminals=$((terminals + 1))
    rm -f pid
    printf '%s\n' "stty -g >before; bash -c 'echo \$\$ >pid; exec $client track $*'" \
        'echo "status $?"; stty -g >after; echo left; read -r' >session
    on_tmux new-session -d -s live -x 100 -y 24 "bash session"
}

# expect_left WHAT STATUS: the client has ended and left the terminal as it was.
expect_left() {
    until_screen '^left$'
    expect "$1: status" "status $2" "$(grep '^status' screen)"
    expect "$1: modes, screen and cursor" "$(cat before) 0 1" \
        "$(cat after) $(on_tmux display -p -t live '#{alternate_on} #{cursor_flag}')"
}

if ! command -v tmux >/dev/null || ! "$client" --version | grep -q 'with .*Asio.*, ncurses'; then
    echo "skipped: the live table"
else
    rm -f server.log
    "$client" simulate --serve 127.0.0.1:0 --seconds 3600 --aircraft 9 --damage 0 --form binary \
        2>server.log &
    server=$!
    until grep -qs '^serving' server.log; do sleep 0.05; done
    feed=tcp://$(sed -n 's/^serving //p' server.log)
    live "$feed"
    until_screen "^$feed: connected$"
    until_screen "^$feed +[5-9] aircraft, [0-9]+ hidden  [0-9]+ replies/s  [0-9:]{8} UTC$"
    addresses() { grep -Eo '^[0-9A-F]{6} ' screen; }
    expect "live: sorted by address" "$(addresses | sort)" "$(addresses)"
    on_tmux send-keys -t live r
    until_screen 'sorted by address, reversed'
    expect "live: reversed by a key" "$(addresses | sort -r)" "$(addresses)"
    on_tmux send-keys -t live s
    until_screen 'sorted by callsign, reversed'
    on_tmux send-keys -t live Down Enter
    until_screen '^Aircraft [0-9A-F]{6}, track number'
    expect_line "live: one aircraft in full" screen 'Callsign .*'
    on_tmux send-keys -t live '?'
    until_screen '^page up, page down '
    on_tmux send-keys -t live Escape
    until_screen '^address'
    on_tmux resize-window -t live -x 40 -y 15
    until_screen '^[0-9] aircraft, [0-9]+ hidden  [0-9]+/s  [0-9:]{8}$'
    expect_line "live: the columns fit into 40" screen 'address  callsign  squawk  altitude'
    on_tmux send-keys -t live q
    expect_left "live: ended by a key" 0
    on_tmux capture-pane -p -S - -t live >screen
    expect_line "live: messages come at the end" screen "$feed: connected"
    expect_line "live: then the table" screen '[0-9A-F]{6}  .*'
    expect_line "live: then the summary" screen 'replies read +[0-9]+'
    on_tmux kill-server
    for end in "TERM 130" "HUP 130" "QUIT 131"; do
        live "$feed"
        until_screen '^address'
        kill -"${end% *}" "$(cat pid)"
        expect_left "live: ${end% *}" "${end#* }"
        on_tmux kill-server
    done
    live --once "$feed"
    until_screen '^[0-9]+ replies$'
    kill "$(cat pid)"
    expect_left "live: --once" 130
    on_tmux kill-server
    live "$feed"
    until_screen "^$feed: connected$"
    kill $server
    until_screen '^tcp.* 1 not connected  [0-9] aircraft'
    on_tmux send-keys -t live q
    expect_left "live: without its feed" 0
    on_tmux kill-server
    wait $server
fi

# -- for other programs --------------------------------------------------------------------------

run track --json-dir made/data --location 50,8.5 long.txt
expect "map files: both, and nothing else" "0 aircraft.json receiver.json" \
    "$status $(echo $(ls -A made/data))"
expect "map files: they are whole" "0 0" \
    "$(is_json made/data/aircraft.json; echo $?) $(is_json made/data/receiver.json; echo $?)"
expect "map files: the aircraft of the table, and all that was tracked" \
    "$(rows | wc -l) $(counted tracked)" "$(grep -o '"hex":' made/data/aircraft.json | wc -l) \
$(sed -E 's/.*"messages":([0-9]+),"aircraft".*/\1/' made/data/aircraft.json)"
expect_line "map files: the receiver" made/data/receiver.json '.*,"lat":50.0+,"lon":8.50+\}'
refuse 1 "ondrel: cannot create forms.txt: Not a directory" track --json-dir forms.txt forms.txt
mkdir -p held/aircraft.json
refuse 1 "ondrel: cannot write held/aircraft.json: Is a directory" track --json-dir held /dev/null
expect "map files: nothing begun stays" "aircraft.json receiver.json" \
    "$(echo $(ls -A held))"
refuse 2 "ondrel track: --sbs: expected ADDRESS:PORT, not 'nowhere'" track --sbs nowhere forms.txt

"$client" track --help >help
for option in $(grep '^ExecStart=' "$examples/ondrel.service" | grep -o -e ' --[a-z-]*'); do
    expect "the service knows $option" 1 "$(grep -c -e "^  $option " help)"
done

if "$client" --version | grep -q Asio; then
    rm -f server.log err # of those before
    "$client" simulate --serve 127.0.0.1:0 --seconds 3600 --damage 0 --form binary 2>server.log &
    server=$!
    await '^serving' server.log
    "$client" track "tcp://$(sed -n 's/^serving //p' server.log)" --json-dir live_data \
        --sbs 127.0.0.1:0 >out 2>err &
    live=$!
    await '^SBS: serving' err
    address=$(sed -n 's/^SBS: serving //p' err)
    exec 5<>"/dev/tcp/${address%:*}/${address##*:}"
    timeout 30 head -n 500 <&5 >sbs.txt
    exec 5>&-
    expect "SBS: 22 columns, CR LF" "500 500" "$(wc -l <sbs.txt) \
$(grep -cE $'^MSG,[134568],1,1,[0-9A-F]{6},1(,[^,]*){15},(0|-1|)\r$' sbs.txt)"
    expect "SBS: each type" 6 "$(cut -d, -f2 sbs.txt | sort -u | wc -l)"
    broken=0
    for _ in {1..40}; do
        is_json live_data/aircraft.json || broken=$((broken + 1))
        sleep 0.05
    done
    expect "map files: whole at any time" 0 "$broken"
    now=$(sed -E 's/\{"now":([0-9]+).*/\1/' live_data/aircraft.json)
    expect "map files: current" 1 "$((EPOCHSECONDS - now <= 3))"
    kill -TERM $live
    wait $live
    expect "map files: after a signal" "130 0 aircraft.json receiver.json" \
        "$? $(is_json live_data/aircraft.json; echo $?) $(echo $(ls -A live_data))"
    expect "map files: the last state" "$(counted tracked)" \
        "$(sed -E 's/.*"messages":([0-9]+),"aircraft".*/\1/' live_data/aircraft.json)"
    kill -TERM $server
    wait $server
fi

# -- track: time ------------------------------------------------------------------------------

# The counter of the first line reads 2 s, that of the last one 5 s.
counter="@0000016E3600$good; @000001C9C380$good; @000002255100$good; @000003938700$good;"
# shellcheck disable=SC2086
printf '%s\n' $counter >counter.txt
touch -d @1700000003 counter.txt
for row in "0:5.000" "1700000000:2023-11-14T22:13:23.000Z" "mtime:2023-11-14T22:13:23.000Z"; do
    start=${row%%:*}
    # shellcheck disable=SC2046
    run track --report 40621D $([[ $start == 0 ]] || echo "--start $start") counter.txt
    expect "a counter that starts at $start" \
        "Aircraft 40621D, track number 1, last heard ${row#*:}, 0.000 s ago" "$(head -1 out)"
done
"$client" track --start mtime - <counter.txt >out 2>err
expect "no file, no time of its own" "1 ondrel: cannot tell when - was modified; --start mtime \
needs a file" "$? $(cat err)"
refuse 1 "ondrel: --start is for stamps of a counter; those of two.txt are seconds since 1970, .*" \
    track --start 1 two.txt
refuse 1 "ondrel: --start is for stamps of a counter; the first reply of forms.txt has no stamp" \
    track --start 1 forms.txt
refuse 2 "ondrel track: --start: expected mtime or a number from 0 to 9999999999, not '2023-11-14'" \
    track --start 2023-11-14 two.txt
refuse 2 "ondrel track: --silent-after: expected never or a number from 0.001 to 1000000000, not 'nev'" \
    track --silent-after nev two.txt

head -3 counter.txt >mixed.txt
for i in 0 1 2; do echo "170000000$i,$good"; done >>mixed.txt
run track mixed.txt
expect "two kinds of stamps" "6 3 1" "$(counted 'replies read') $(counted 'stamps of other kind') \
$(grep -c '^mixed.txt: reply 4 has seconds since 1970, .* left out$' err)"

run decode --json mixed.txt
expect "JSON: two kinds of stamps" "0 3 1" "$status $(grep -c '"stamp_ms":170000000[0-2]000,' out) \
$(grep -c '^mixed.txt: positions: reply 4 has seconds since 1970, .* left out$' err)"

# One line a day ahead; its time is that of the line before it.
for i in 0 1 86400 2 3; do echo "$((1700000000 + i)),$good"; done >wild.txt
run track --silent-after 300 wild.txt
expect "a wild stamp" "0 1 0 1" "$(counted killed) $(counted 'stamps not believed') \
$(awk '/^40621D/ { print $NF }' out) $(grep -c '^wild.txt: the stamp of reply 3 is 86399.000 s ahead' err)"
run decode --json wild.txt
expect "JSON: a wild stamp is as it was sent" 1 "$(grep -c '"stamp_ms":1700086400000,' out)"
# Half an hour ahead is a gap that can be; one reply alone removes no aircraft for it.
printf '%s\n' "1700000000,$good" "1700001800,8D4840D6202CC371C32CE0576098" >gap.txt
for silence in 300 never; do
    run track --silent-after $silence gap.txt
    expect "a gap, --silent-after $silence" "0 2" "$(counted killed) $(counted aircraft)"
done
echo "1700000000000,$good" >milliseconds.txt
run track milliseconds.txt
expect "milliseconds are no seconds" "1 1" "$status $(grep -c 'expected seconds: put a point' err)"

# -- track: limits and reports -----------------------------------------------------------------

printf '%s\n' "1,8D40621D580B0000000000599BF2" "2,8D40621D580F80000000000878A1" >jump.txt
for limits in 4,1000 4,999; do # the altitude jumps by 1000 ft
    run track --altitude-check $limits --json jump.txt
    expect_line "altitude check $limits" out \
        ".*\"altitude_ft\":$([[ $limits == 4,999 ]] && echo 1000 || echo 2000),.*"
done

for row in "1 2 0" "2 1 1" "4 1 1" "5 0 2"; do # 40621D has one message, 4840D6 four
    read -r least shown hidden <<<"$row"
    run track --min-messages "$least" --html least two.txt
    expect "--min-messages $least" "$shown $shown $hidden 2" \
        "$(grep -c '^4' out) $(grep -c 'class="address"><a' least/index.html) $(counted hidden) \
$(counted aircraft)"
done
run track two.txt
expect "one message is too few" "4840D6" "$(rows | cut -c 1-6)"
run track --json two.txt
expect "one message is too few, JSON" 1 "$(wc -l <out)"
run track --report 40621D two.txt
expect "a report of one message" "0 1" "$status $(grep -c '^Aircraft 40621D' out)"
refuse 2 "ondrel track: --min-messages: expected a whole number from 1 .*, not '0'" \
    track --min-messages 0 two.txt

run track --location 52.3,4 --json two.txt
cp out expected
for place in "52.3, 4" " 52.3 , 4 " "+52.3,+4.0"; do
    run track --location "$place" --json --sort distance two.txt
    expect "--location '$place'" "0 $(cat expected)" "$status $(cat out)"
done

run track --report 4840d6 two.txt
expect "one aircraft" "0 Aircraft 4840D6, track number 2, last heard 31.500, 0.000 s ago 3" \
    "$status $(head -1 out) $(grep -cEx -e 'Callsign +KLM1023 +yes +0.0  31.500 +2.000' \
        -e 'Altitude +- +no +-  -' -e '  ACID +4' out)"
run track --report 4840D7 two.txt
expect "one aircraft that is not there" "1 0 2 ondrel: no aircraft 4840D7 is tracked" \
    "$status $(wc -c <out) $(counted aircraft) $(tail -1 err)"

run track --html new/pages long.txt
expect "pages: the table comes as well" "0 $aircraft" "$status $(rows | wc -l)"
expect_line "pages: where" err 'pages for a browser: new/pages/index.html'
expect "pages: one each, and the index" "$((aircraft + 1))" "$(find new/pages -name '*.html' | wc -l)"
expect "pages: all links lead somewhere" "$aircraft 0" \
    "$(grep -o 'class="address"><a href' new/pages/index.html | wc -l) \
$(grep -oh 'href="[^"]*"' new/pages/*.html | sort -u | sed 's/href="\(.*\)"/new\/pages\/\1/' |
        xargs ls 2>&1 >/dev/null | wc -l)"
run track --html new/pages two.txt
expect "pages: those of the run before are gone" "0 2" "$status $(find new/pages -mindepth 1 | wc -l)"
echo mine >new/pages/index.html
refuse 1 "ondrel: will not replace new/pages/index.html, which ondrel did not make; .* --force" \
    track --html new/pages two.txt
expect "pages: refused before anything is read" "1 mine" \
    "$(wc -l <err) $(cat new/pages/index.html)"
run track --html new/pages --force two.txt
expect "pages: replaced when told" "0 0" "$status $(grep -c mine new/pages/index.html)"
refuse 2 "ondrel track: --force requires --html" track --force two.txt
(ulimit -f 1 && exec "$client" track --html new/pages two.txt >out 2>err)
expect "pages: on a full disk, old ones stay whole" "1 2 0" \
    "$? $(find new/pages -mindepth 1 | wc -l) $(grep -L '</html>' new/pages/*.html | wc -l)"
expect_line "pages: on a full disk, said so" err 'ondrel: cannot write new/pages/[0-9A-F]{6}\.html: File too large'
expect "pages: on a full disk, the table comes" 1 "$(grep -c '^4' out)"

run track forms.txt
expect_line "no stamps" err 'forms.txt: the first reply has no time stamp; all are stamped .*'
expect "no stamps: tracked" "0 1" "$status $(counted aircraft)"

# Half a second of recording at half the speed. Tables are shown when they are due.
printf '%s\n' "1.000,$good" "1.100,$good" "1.500,$good" >half.txt
begin=${EPOCHREALTIME/[.,]/}
"$client" track --every 0.1 --pace 0.5 half.txt 2>err |
    while read -r line; do echo "$(((${EPOCHREALTIME/[.,]/} - begin) / 1000)) $line"; done >out
expect "paced: it takes its time" 1 "$(($(sed -n '$s/ .*//p' out) >= 1000))"
expect "paced: the first table comes at its time" 1 \
    "$(($(sed -n '1s/ .*//p' out) + 300 < $(sed -n '$s/ .*//p' out)))"

# Interrupted while it waits for the time of a reply, and while it waits for the next line of a live
# source. The first reply needs repair, so the log shows that it has been read. The line behind it
# has begun and looks like a reply.
wrong=8D40621D59C382D690C8AC2863A7
printf '%s\n' "1.000,$wrong" "3500.000,$wrong" >hours.txt
mkfifo live_source
exec 4<>live_source
for arguments in "TERM track --min-messages 1 --pace 1 hours.txt" \
    "INT track --min-messages 1 --html interrupted -" "HUP track --min-messages 1 -" "TERM decode -" \
    "HUP decode -"; do
    read -r signal arguments <<<"$arguments"
    rm err # of the one before
    [[ $arguments == *- ]] && printf '%s\n02E197B0C4CF' "$wrong" >&4
    # Bash lets what runs in the background ignore SIGINT.
    # shellcheck disable=SC2086
    env --default-signal=INT "$client" $arguments --log info <live_source >live 2>err &
    for _ in {1..200}; do
        grep -qs 'Fix 1 bit' err && break
        sleep 0.05
    done
    kill -"$signal" $!
    wait $!
    expect "$arguments: interrupted by $signal" "130 1 1 0" \
        "$? $(grep -c 40621D live) $(counted 'replies read') $(counted 'not readable')"
done
exec 4>&-
expect "pages: whole when interrupted" "40621D.html index.html 2" \
    "$(find interrupted -type f -printf '%f\n' | sort | tr '\n' ' ')$(cat interrupted/* | grep -c '</html>')"
# The signal comes while the pipe is full. Its reader takes one line and then stands still.
mkfifo full
for arguments in "TERM decode whole.txt" "HUP simulate --seconds 1000000"; do
    read -r signal arguments <<<"$arguments"
    # shellcheck disable=SC2086
    "$client" $arguments >full 2>err &
    exec 5<full
    read -r _ <&5
    kill -"$signal" $!
    wait $!
    expect "$arguments: interrupted by $signal while its reader stands still" 130 $?
    exec 5<&-
done
for signal in INT TERM HUP; do
    rm -f endless.txt
    env --default-signal=INT "$client" simulate --seconds 1000000 -o endless.txt 2>err &
    for _ in {1..200}; do
        [[ -s endless.txt ]] && break
        sleep 0.05
    done
    kill -$signal $!
    wait $!
    status=$?
    expect "simulate: interrupted by $signal" "130 $(grep -vc '^#' endless.txt)" \
        "$status $(sed -n 's/endless.txt: \([0-9]*\) replies, interrupted/\1/p' err)"
    expect "simulate: the last line is whole" "$(grep -c '' endless.txt)" "$(wc -l <endless.txt)"
done

# -- the library's log -------------------------------------------------------------------------

run decode forms.txt
expect "silent unless asked" 0 "$(grep -c '^\[' err)"
run decode --log info forms.txt
expect_line "asked for" err '\[INFO *\]\[ModeSDecoder\] Fix 1 bit error in DF-17 message at 39\.'
expect "less on a higher level" 0 "$("$client" decode --log warning forms.txt 2>&1 >out |
    grep -c '^\[')"

echo "$checks checks, $failures failed"
exit $((failures > 0))
