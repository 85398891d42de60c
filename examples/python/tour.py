#!/usr/bin/env python3
"""The tour of the library from Python, by ctypes alone: what it finds it prints, and checks.

    tour.py [CARD]      tour.py saa7135,tuner=14

The environment variable ZELKAPI_LIBRARIES names the folder of the two libraries; without it they
are looked for where the system looks. The exit code is 0 when everything was as expected.
"""
import ctypes
import os
import sys
from ctypes import POINTER, Structure, byref, c_char_p, c_double, c_int32, c_uint32, c_void_p

S_OK = 0
S_FALSE = 1
E_NOTIMPL = 0x80004001 - 2**32  # result codes are signed
SCAN_STOP, SCAN_START = 0, 1
STARTED, PROGRESS, FOUND, POSITION, ENDED = range(1001, 1006)

ScanCallback = ctypes.CFUNCTYPE(None, c_uint32, c_uint32, c_uint32)


class HWInfo(Structure):
    _fields_ = [(name, c_uint32) for name in (
        "FmTuner", "BoardOptionCode", "BoardOptionBit", "FmLowKHz", "FmHighKHz", "BoardFlag5",
        "BoardCode6", "TvLowKHz", "TvHighKHz", "BoardCode9")]


class MpegParams(Structure):
    _fields_ = [(name, c_uint32) for name in (
        "StreamType", "Width", "Height", "Reserved3", "Reserved4", "BitRate", "MaxBitRate",
        "VariableBitRate", "Reserved8", "Option9", "Option10", "Reserved11", "Reserved12",
        "AudioSampleRate", "AudioBitRate", "AudioMode")]


def load(name):
    """One of the libraries, "ZElkAPI" or "ZElkVirtual"."""
    file = name + ".dll" if sys.platform == "win32" else f"lib{name.lower()}.so.0"
    return ctypes.CDLL(os.path.join(os.environ.get("ZELKAPI_LIBRARIES", ""), file))


def declare(library, functions):
    """What a function takes and answers: ctypes checks nothing that it is not told."""
    for name, (result, *arguments) in functions.items():
        function = getattr(library, name)
        function.restype = result
        function.argtypes = arguments


api = load("ZElkAPI")
declare(api, {
    "ZELK_HWInit": (c_int32, c_void_p, c_char_p, c_void_p, c_uint32),
    "ZELK_Free": (None,),
    "ZELK_GetHWInfo": (c_int32, POINTER(HWInfo)),
    "ZELK_GetTunerName": (c_int32, c_char_p, c_uint32),
    "ZELK_TVInit": (c_int32,),
    "ZELK_put_TVFormat": (c_int32, c_uint32, c_uint32),
    "ZELK_SetFreq": (c_int32, c_uint32, POINTER(c_uint32)),
    "ZELK_IsSignalPresent": (c_int32, POINTER(c_uint32), POINTER(c_uint32), POINTER(c_double)),
    "ZELK_AllFreqScan": (c_int32, ScanCallback, c_uint32),
    "ZELK_GetMPEGParam": (c_int32, POINTER(MpegParams)),
    "ZELK_SetMPEGParam": (c_int32, MpegParams),
})
virtual = load("ZElkVirtual")
declare(virtual, {
    "ZELKV_LastError": (c_char_p,),
    "ZELKV_PlugIn": (c_void_p, c_char_p, c_char_p),
    "ZELKV_Unplug": (None, c_void_p),
    "ZELKV_FriendlyName": (c_char_p, c_void_p),
    "ZELKV_CaptureFilter": (c_void_p, c_void_p),
    "ZELKV_TunerFilter": (c_void_p, c_void_p),
    "ZELKV_UseVirtualClock": (c_int32,),
    "ZELKV_LiveReferences": (c_int32, c_void_p),
})

mistakes = 0


def check(is_true, what):
    global mistakes
    print(f"  {'ok' if is_true else 'NOT OK'}: {what}")
    mistakes += not is_true


def show_board():
    info = HWInfo()
    tuner = ctypes.create_string_buffer(32)
    check(api.ZELK_GetHWInfo(byref(info)) == S_OK, "the board's record")
    check(api.ZELK_GetTunerName(tuner, len(tuner)) == S_OK, "the tuner's name")
    print(f"{tuner.value.decode()}, TV {info.TvLowKHz} to {info.TvHighKHz} kHz, "
          f"FM {info.FmLowKHz} to {info.FmHighKHz} kHz")
    check(40000 <= info.TvLowKHz < info.TvHighKHz <= 870000, "a TV band")
    check(62000 <= info.FmLowKHz < info.FmHighKHz <= 108500, "an FM band")


def show_signal(frequency, expected):
    """`expected`: strength and offset, where they are known."""
    present, strength, offset = c_uint32(99), c_uint32(99), c_double(float("nan"))
    check(api.ZELK_SetFreq(frequency, byref(present)) == S_OK and present.value == 1,
          "a channel is tuned")
    check(api.ZELK_IsSignalPresent(byref(present), byref(strength), byref(offset)) == S_OK,
          "its signal")
    print(f"{frequency} kHz: present {present.value}, strength {strength.value}, "
          f"AFC {offset.value:+.1f} kHz")
    if expected:
        check((strength.value, offset.value) == expected, "strength and offset")


def exchange_encoder_settings():
    wanted = MpegParams(4, 720, 576, 103, 104, 6000, 8000, 1, 108, 15, 110, 111, 112, 32000, 224, 2)
    found = MpegParams()
    code = api.ZELK_SetMPEGParam(wanted)
    if code == E_NOTIMPL:
        print("This card has no MPEG encoder: the settings' way there and back is not checked.")
        check(api.ZELK_GetMPEGParam(byref(found)) == E_NOTIMPL, "reading agrees that there is none")
        return
    check(code == S_OK, "the encoder takes sixteen words")
    check(api.ZELK_GetMPEGParam(byref(found)) == S_OK, "and gives them back")
    for name, _ in MpegParams._fields_:
        if not name.startswith("Reserved") and name != "Option10":
            check(getattr(found, name) == getattr(wanted, name), name)


def scan(end):
    """The channels below `end`, in kHz."""
    found, others = [], []

    def on_event(event, value, _):
        if event == FOUND:
            print(f"  {value / 1000:.3f} MHz")
            found.append(value)
        elif event == POSITION and value > end:
            api.ZELK_AllFreqScan(ScanCallback(), SCAN_STOP)
        elif event in (STARTED, ENDED):
            others.append(event)

    callback = ScanCallback(on_event)  # must outlive the scan
    check(api.ZELK_AllFreqScan(callback, SCAN_START) == S_FALSE, "the scan ends")
    check(others == [STARTED, ENDED], "it says when it starts and ends")
    return found


def main():
    description = sys.argv[1] if len(sys.argv) > 1 else "saa7134"
    figures = [(5, 0.0), (3, 62.5)] if len(sys.argv) == 1 else [None, None]
    virtual.ZELKV_UseVirtualClock()
    card = virtual.ZELKV_PlugIn(description.encode(), None)
    if not card:
        sys.exit(f"tour.py: {virtual.ZELKV_LastError().decode()}")
    name = virtual.ZELKV_FriendlyName(card)
    print(name.decode())
    check(api.ZELK_HWInit(virtual.ZELKV_CaptureFilter(card), name,
                          virtual.ZELKV_TunerFilter(card), 0) >= 0, "the library accepts the card")
    show_board()
    check(api.ZELK_TVInit() == S_OK, "TV mode")
    check(api.ZELK_put_TVFormat(0x10, 49) == S_OK, "PAL B, Germany")
    show_signal(175250, figures[0])
    show_signal(189250, figures[1])
    exchange_encoder_settings()
    print("Channels below 230 MHz:")
    check(scan(230000) == [55250, 175250, 189250, 203250, 210250, 224250],
          "it finds the channels that are on the air")

    api.ZELK_Free()
    check(virtual.ZELKV_LiveReferences(card) == 0, "the library has let go of the card")
    virtual.ZELKV_Unplug(card)
    print(f"{mistakes} checks failed" if mistakes else "Everything as expected")
    return 1 if mistakes else 0


if __name__ == "__main__":
    sys.exit(main())
