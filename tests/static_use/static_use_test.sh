#!/bin/sh
# Holds that a static object can use the library in its constructor and destructor: the program
# static_use does the same there as in main(), and every line of it is right.
#
#   static_use_test.sh PROGRAM
set -eu

work=$(mktemp -d)
trap 'rm -r "$work"' EXIT

# run WHEN: the lines of one use
run() {
    cat <<LINES
[INFO    ][Static object] $1
[INFO    ][ModeSDecoder ] Initialized.
[INFO    ][ADSBDecoder  ] Initialized.
[INFO    ][ADSBTracker  ] Initialized.
[INFO    ][DF17Message  ] Parity check failed.
[INFO    ][ModeSDecoder ] Fix 1 bit error in DF-17 message at 40.
Downlink, CA: 5; AA: 4840D6; ME: 202CC371C32CE0
  CA, Capability
  AA, Address announced
  ME, Message, extended squitter
  PI, Parity/interrogator identifier
[INFO    ][DF17Message  ] Parity check failed.
[INFO    ][ModeSDecoder ] Unable to fix error in DF-17 message.
refused
Downlink, CA: 5; AA: 40621D; ME: 58C382D690C8AC
  CA, Capability
  AA, Address announced
  ME, Message, extended squitter
  PI, Parity/interrogator identifier
Downlink, CA: 5; AA: 40621D; ME: 58C386435CC412
  CA, Capability
  AA, Address announced
  ME, Message, extended squitter
  PI, Parity/interrogator identifier
[INFO    ][ModeSDecoder ] Unable to fix error in DF-17 message.
refused
Downlink, FS: AIR; ID: 1200
  FS, Flight status
  ID, Identity
  AP, Address/parity
Downlink, FS: AIR; ID: 3600
  FS, Flight status
  ID, Identity
  MB, Message, Comm-B
  AP, Address/parity
[INFO    ][ADSBTarget   ] Squawk Change old = 1200 new = 3600
Downlink, VS: AIR; AC: 36000
  VS, Vertical status
  AC, Altitude code
  AP, Address/parity
Downlink, FS: AIR; AC: 36000
  FS, Flight status
  AC, Altitude code
  AP, Address/parity
Downlink, VS: AIR; AC: 36000
  VS, Vertical status
  AC, Altitude code
  MV, Message, ACAS
  AP, Address/parity
Downlink, FS: AIR; AC: 36000
  FS, Flight status
  AC, Altitude code
  MB, Message, Comm-B
  AP, Address/parity
Downlink, CA: 5; AA: 40621D; PI: 4F94D0
  CA, Capability
  AA, Address announced
  PI, Parity/interrogator identifier
Downlink, CF: 0; AA: 40621D; ME: 202CC371C32CE0
  CF, Control field
  AA, Address announced
  ME, Message, extended squitter
  PI, Parity/interrogator identifier
[WARNING ][ADSBTracker  ] Unsupported DF-18 message detected.
[INFO    ][DF19Message  ] AF = 1, reserved for military applications.
Downlink, AF: 1; AA: 00; ME: 
  AF, Application field
[WARNING ][ADSBTracker  ] Unsupported DF-19 message detected.
[DEBUG   ][ModeSDecoder ] Undefined DF-24 message detected.
refused
[INFO    ][ADSBDecoder  ] Initialized.
[WARNING ][ADSBAirVelMsg] Unsupported AIR_SPD message detected.
refused
[INFO    ][ADSBDecoder  ] Initialized.
[CRITICAL][ADSBAcStatMsg] Unknown Subtype=3.
refused
[INFO    ][ADSBDecoder  ] Initialized.
[CRITICAL][ADSBOpStatMsg] MOPS Version 0 detected.
refused
[INFO    ][ADSBDecoder  ] Initialized.
[CRITICAL][ADSBTgStatMsg] Unknown Subtype=3.
refused
[INFO    ][ADSBDecoder  ] Initialized.
[CRITICAL][ADSBGndPosMsg] Reserved Movement Code: 127.
Surface Position, TC=POS_GND, SPD=0, HDG=115.312, CPR=EVEN, LAT=68249, LON=14080
  TYPE, Type, POS_GND
  TYPE_CODE, TYPE_CODE, 7
  MOV_CODE, MOV_CODE, 127
  GND_SPD, GND_SPD, 0.000000
  HDG_STATE, HDG_STATE, 1
  HDG, HDG, 115.312500
  T, T, 1
  CPR_FMT, CPR_FMT, EVEN
  CPR_LAT, CPR_LAT, 68249
  CPR_LON, CPR_LON, 14080
[INFO    ][ADSBDecoder  ] Initialized.
[CRITICAL][ADSBTestMsg  ] Unknown Subtype=7.
Test, TC=TEST, ST=7
  TYPE, Type, TEST
  TYPE_CODE, TYPE_CODE, 23
  SUB_TYPE, SUB_TYPE, 7
  DATA, DATA, 000000000000
[INFO    ][ADSBDecoder  ] Initialized.
[WARNING ][ADSBDecoder  ] Unsupported type code = 25 (Reserved).
refused
[CRITICAL][ADSBMessage  ] Type code mismatch.
[INFO    ][DFMessage    ] DF format mismatch.
40621D  3600 521557N0035620E
page
4840D6 KLM1023  0000 000000S0000000W
page
[INFO    ][ADSBDecoder  ] Initialized.
[INFO    ][ADSBTracker  ] Initialized.
passed on: 521557N0035620E
passed on: 000000S0000000W
service 1
[DEBUG   ][ADSBTracker  ] Target #2 killed.
[DEBUG   ][ADSBTracker  ] Target #1 killed.
killed: 2
LINES
}

{
    cat <<'LINES'
[INFO    ][ModeSDecoder] Initialized.
[INFO    ][ADSBDecoder ] Initialized.
[INFO    ][ADSBTracker ] Initialized.
LINES
    run constructor
    run main
    run destructor
} >"$work/expected"

"$1" 2>"$work/found"
diff "$work/expected" "$work/found"
